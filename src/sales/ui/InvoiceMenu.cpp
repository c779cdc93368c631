#include "foundation/ui/MenuRouter.h"
#include "sales/ui/frmInvoice.h"
#include "sales/ui/frmInvoiceGenerate.h"

// "ENTER INVOICE" and "MODIFY INVOICE".
void registerInvoiceMenu(MenuRouter &router)
{
    router.on(QStringLiteral("mnuEnterInvoice"),
        [](MdiHost &host) { host.showScreen<frmInvoice>(QStringLiteral("frmInvoice"))->startNew(); });
    router.on(QStringLiteral("mnuModifyInvoice"),
        [](MdiHost &host) { host.showScreen<frmInvoice>(QStringLiteral("frmInvoice"))->startModify(); });
    // The printed documents, each entry offering its forms.
    for (const char *entry : {"mnuViewInvoice", "mnuViewPrintInvoice", "mnuViewPrintBill", "mnuViewDeliveryChallan",
                              "mnuViewPurchaseOrder"})
        router.on(QString::fromLatin1(entry), [entry](MdiHost &host) {
            host.showScreen<frmInvoiceGenerate>(QStringLiteral("frmInvoiceGenerate"))->offer(QString::fromLatin1(entry));
        });
}
