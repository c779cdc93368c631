#include "foundation/ui/MenuRouter.h"
#include "sales/ui/frmInvoice.h"

// "ENTER INVOICE" and "MODIFY INVOICE".
void registerInvoiceMenu(MenuRouter &router)
{
    router.on(QStringLiteral("mnuEnterInvoice"),
        [](MdiHost &host) { host.showScreen<frmInvoice>(QStringLiteral("frmInvoice"))->startNew(); });
    router.on(QStringLiteral("mnuModifyInvoice"),
        [](MdiHost &host) { host.showScreen<frmInvoice>(QStringLiteral("frmInvoice"))->startModify(); });
}
