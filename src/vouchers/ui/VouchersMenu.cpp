#include "foundation/Session.h"
#include "foundation/ui/MenuRouter.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/frmMDITessel.h"
#include "vouchers/VoucherStaging.h"
#include "reports/ui/frmViewReport.h"
#include "vouchers/ui/frmBillWisePayment.h"
#include "vouchers/ui/frmChequeDueList.h"
#include "vouchers/ui/frmJournalVoucher.h"
#include "vouchers/ui/frmPostDatedCheque.h"

#include <QMainWindow>

namespace {

// A voucher screen that is open with lines typed is not restarted without
// asking: the menu would empty its staging.
bool mayRestart(MdiHost &host)
{
    auto *open = qobject_cast<frmJournalVoucher *>(host.findScreen(QStringLiteral("frmJournalVoucher")));
    if (!open || VoucherStaging(session().db()).lines().isEmpty())
        return true;
    if (MessageService::askYesNoCritical(open, QStringLiteral("Are you sure you want to close this voucher")))
        return true;
    host.bringForward(open);
    return false;
}

void openVoucher(MdiHost &host, const QStringList &types, const QString &start)
{
    if (!mayRestart(host))
        return;
    session().voucherMode = QStringLiteral("NEW");
    auto *f = host.showScreen<frmJournalVoucher>(QStringLiteral("frmJournalVoucher"));
    StartVoucherScreen(f);
    f->setVoucherTypes(types, start);
}

} // namespace

frmJournalVoucher *openReadyVoucher(MdiHost &host, const Voucher &voucher)
{
    if (!mayRestart(host))
        return nullptr;
    session().voucherMode = QStringLiteral("NEW");
    auto *f = host.showScreen<frmJournalVoucher>(QStringLiteral("frmJournalVoucher"));
    f->loadReadyVoucher(voucher);
    return f;
}

frmJournalVoucher *openPostedVoucher(frmMDITessel &main, const VoucherKey &key)
{
    if (!main.runMenuEntry(QStringLiteral("mnuPModifyJournalVoucher")))
        return nullptr;
    auto *f = qobject_cast<frmJournalVoucher *>(main.findScreen(QStringLiteral("frmJournalVoucher")));
    if (!f || f->mode() != frmJournalVoucher::Mode::Modify)
        return nullptr;
    f->cmbModifyVoucherType->setCurrentText(key.type);
    f->txtShowVoucherNo->setText(QString::number(key.number));
    f->mskDateModifyVoucher->setDate(key.date);
    f->cmdVoucherNoOkay->click();
    return f;
}

// The menu entries of this subsystem and the screens they open.
void registerVouchersMenu(MenuRouter &router)
{
    router.on(QStringLiteral("mnuPJournalVoucher"),
              [](MdiHost &host) { openVoucher(host, {QStringLiteral("JV")}, QStringLiteral("JV")); });
    router.on(QStringLiteral("mnuPCashPaidVoucher"),
              [](MdiHost &host) { openVoucher(host, {QStringLiteral("CP")}, QStringLiteral("CP")); });
    router.on(QStringLiteral("mnuPCashReceivedVoucher"),
              [](MdiHost &host) { openVoucher(host, {QStringLiteral("CR")}, QStringLiteral("CR")); });
    router.on(QStringLiteral("mnuBankPaidVoucher"), [](MdiHost &host) {
        openVoucher(host, {QStringLiteral("BP"), QStringLiteral("JV")}, QStringLiteral("BP"));
    });
    router.on(QStringLiteral("mnuBankReceivedVoucher"), [](MdiHost &host) {
        openVoucher(host, {QStringLiteral("BR"), QStringLiteral("JV")}, QStringLiteral("BR"));
    });
    router.on(QStringLiteral("mnuPModifyJournalVoucher"), [](MdiHost &host) {
        if (!mayRestart(host))
            return;
        session().voucherMode = QStringLiteral("MODIFY");
        auto *f = host.showScreen<frmJournalVoucher>(QStringLiteral("frmJournalVoucher"));
        f->startModify();
    });
    router.on(QStringLiteral("mnuPostDatedCheque"), [](MdiHost &host) {
        host.showScreen<frmPostDatedCheque>(QStringLiteral("frmPostDatedCheque"));
    });
    router.on(QStringLiteral("mnuModifyPostDatedCheque"), [](MdiHost &host) {
        host.showScreen<frmModifyPostDatedCheque>(QStringLiteral("frmModifyPostDatedCheque"));
    });
    router.on(QStringLiteral("mnuPrintPostDatedCheque"), [](MdiHost &host) {
        Reports::ReportRequest req;
        req.design = QStringLiteral("crPostDatedCheque");
        req.title = QStringLiteral("POST DATED CHEQUE");
        Reports::showReport(host.mainWindow(), req);
    });
    router.on(QStringLiteral("mnuBillWisePayment"), [](MdiHost &host) {
        host.showScreen<frmBillWisePayment>(QStringLiteral("frmBillWisePayment"));
    });
}
