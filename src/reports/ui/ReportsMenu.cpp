#include "foundation/Session.h"
#include "foundation/ui/MenuRouter.h"
#include "reports/ui/frmPrintVoucher.h"
#include "reports/ui/frmViewReport.h"

#include <QMainWindow>

namespace {

void openReport(MdiHost &host, const QString &design, const QString &title)
{
    Reports::ReportRequest req;
    req.design = design;
    req.title = title;
    Reports::showReport(host.mainWindow(), req);
}

} // namespace

void registerLedgerStatementsMenu(MenuRouter &router); // LedgerStatementsMenu.cpp
void registerPositionReportsMenu(MenuRouter &router);   // PositionReportsMenu.cpp

// The menu entries of this subsystem and the screens they open.
void registerReportsMenu(MenuRouter &router)
{
    registerLedgerStatementsMenu(router);
    registerPositionReportsMenu(router);
    router.on(QStringLiteral("mnuPrintVoucher"), [](MdiHost &host) {
        auto *f = host.showScreen<frmPrintVoucher>(QStringLiteral("frmPrintVoucher"));
        f->setTitle(QStringLiteral("PRINT VOUCHER"));
        f->showVoucherNoPanel();
    });
    router.on(QStringLiteral("mnuVoucherListing"), [](MdiHost &host) {
        auto *f = host.showScreen<frmPrintVoucher>(QStringLiteral("frmPrintVoucher"));
        f->setTitle(QStringLiteral("VOUCHER LISTING"));
        f->showVoucherDatePanel(false);
    });
    router.on(QStringLiteral("mnuRecordTracking"), [](MdiHost &host) {
        auto *f = host.showScreen<frmPrintVoucher>(QStringLiteral("frmPrintVoucher"));
        f->setTitle(QStringLiteral("VOUCHER LISTING"));
        f->showVoucherDatePanel(true);
    });
    router.on(QStringLiteral("mnuChartOfAccountByAccount"), [](MdiHost &host) {
        openReport(host, QStringLiteral("crChartOfAccount"), QStringLiteral("CHART OF ACCOUNT BY CODE"));
    });
    router.on(QStringLiteral("mnuChartOfAccountByName"), [](MdiHost &host) {
        openReport(host, QStringLiteral("crChartOfAccountByName"), QStringLiteral("CHART OF ACCOUNT BY NAME"));
    });
    router.on(QStringLiteral("mnuCashAndBankUptoDate"), [](MdiHost &host) {
        // Up to today, read through this session's own period.
        Reports::ReportRequest req;
        req.design = QStringLiteral("crCashAndBankUptoDate");
        req.title = QStringLiteral("CASH AND BANK UPTO DATE");
        req.to = session().dateToday();
        req.writePeriodRow = false;
        Reports::showReport(host.mainWindow(), req);
    });
    router.on(QStringLiteral("mnuViewItemCoding"), [](MdiHost &host) {
        openReport(host, QStringLiteral("crItemCoding"), QStringLiteral("ITEM CODING"));
    });
}
