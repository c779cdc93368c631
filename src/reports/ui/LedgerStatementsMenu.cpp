#include "foundation/Session.h"
#include "foundation/ui/MenuRouter.h"
#include "reports/LedgerStatements.h"
#include "reports/ui/frmPartySearch.h"
#include "reports/ui/frmProfitAndLoss.h"
#include "reports/ui/frmSingleDateReport.h"
#include "reports/ui/frmTrialBalance.h"
#include "reports/ui/frmViewReport.h"

#include <QMainWindow>
#include <QRadioButton>

namespace {

void openPartySearch(MdiHost &host, const QString &title, bool voucherWise, bool ageing)
{
    auto *f = host.showScreen<frmPartySearch>(QStringLiteral("frmPartySearch"));
    f->setTitle(title);
    f->setVoucherWise(voucherWise);
    (ageing ? f->optAgingReport : f->optLedger)->setChecked(true);
}

void openProfitAndLoss(MdiHost &host, frmProfitAndLoss::Frame frame)
{
    auto *f = host.showScreen<frmProfitAndLoss>(QStringLiteral("frmProfitAndLoss"));
    f->showFrame(frame);
}

} // namespace

// The ledger, ageing and statement entries of the menu.
void registerLedgerStatementsMenu(MenuRouter &router)
{
    router.on(QStringLiteral("mnuPPLedgerOfAccount"), [](MdiHost &host) {
        openPartySearch(host, QStringLiteral("LEDGER OF ACCOUNT"), false, false);
    });
    router.on(QStringLiteral("mnuPPLedgerOfAccountVW"), [](MdiHost &host) {
        openPartySearch(host, QStringLiteral("LEDGER OF ACCOUNT VOUCHER WISE"), true, false);
    });
    router.on(QStringLiteral("mnuAgingReport"), [](MdiHost &host) {
        openPartySearch(host, QStringLiteral("AGING REPORT"), false, true);
    });
    router.on(QStringLiteral("mnuTrialBalance"), [](MdiHost &host) {
        host.showScreen<frmTrialBalance>(QStringLiteral("frmTrialBalance"));
    });
    router.on(QStringLiteral("mnuBalanceSheetSingleDate"), [](MdiHost &host) {
        auto *f = host.showScreen<frmSingleDateReport>(QStringLiteral("frmSingleDateReport"));
        f->showBalanceSheetForm();
    });
    router.on(QStringLiteral("mnuPPBalanceSheet"), [](MdiHost &host) {
        Reports::showReport(host.mainWindow(), LedgerStatements::balanceSheetAll());
    });
    router.on(QStringLiteral("mnuProfitAndLoss"), [](MdiHost &host) {
        openProfitAndLoss(host, frmProfitAndLoss::Frame::ProfitAndLoss);
    });
    router.on(QStringLiteral("mnuPPCreditList"), [](MdiHost &host) {
        openProfitAndLoss(host, frmProfitAndLoss::Frame::CreditList);
    });
    router.on(QStringLiteral("mnuPPDebitList"), [](MdiHost &host) {
        openProfitAndLoss(host, frmProfitAndLoss::Frame::DebitList);
    });
}
