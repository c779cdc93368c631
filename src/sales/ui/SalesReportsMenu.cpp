#include "foundation/ui/MenuRouter.h"
#include "sales/ui/frmSalesReports.h"

// The sales registers and the status reports of the job's paperwork.
void registerSalesReportsMenu(MenuRouter &router)
{
    router.on(QStringLiteral("mnuViewPrintSaleRegister"),
        [](MdiHost &host) { host.showScreen<frmSaleRegister>(QStringLiteral("frmSaleRegister")); });
    router.on(QStringLiteral("mnuViewSaleRegisterSummary"),
        [](MdiHost &host) { host.showScreen<frmSaleRegister>(QStringLiteral("frmSaleRegister"))->startSummary(); });
    router.on(QStringLiteral("mnuViewPrintClientDetail"),
        [](MdiHost &host) { host.showScreen<frmClientDetail>(QStringLiteral("frmClientDetail")); });
    router.on(QStringLiteral("mnuViewPrintSaleSummary"), [](MdiHost &host) {
        auto *f = host.showScreen<frmSummary>(QStringLiteral("frmSummary"));
        f->setTitle(QStringLiteral("SALE"));
        f->setWindowTitle(QStringLiteral("SALE SUMMARY"));
        f->showOnlyButtons({QStringLiteral("cmdSaleSummary"), QStringLiteral("cmdCancel")});
    });
    router.on(QStringLiteral("mnuViewDeliveryInvoiceStatusReport"),
        [](MdiHost &host) { host.showScreen<frmStatusReport>(QStringLiteral("frmStatusReport")); });
    router.on(QStringLiteral("mnuViewDeliveryChallanSummary"), [](MdiHost &host) {
        host.showScreen<frmStatusReport>(QStringLiteral("frmStatusReport"))->startChallanSummary();
    });
    router.on(QStringLiteral("mnuViewPurchaseOrderStatusReport"),
        [](MdiHost &host) { host.showScreen<frmPartyPO>(QStringLiteral("frmPartyPO")); });
}
