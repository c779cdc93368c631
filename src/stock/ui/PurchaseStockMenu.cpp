#include "foundation/ui/MenuRouter.h"

#include "stock/ui/frmClosingStock.h"
#include "stock/ui/frmPurchaseRegister.h"
#include "stock/ui/frmPurchaseStock.h"

// The purchase and closing stock entries of the stock menu.
void registerPurchaseStockMenu(MenuRouter &router)
{
    const auto purchase = [&router](const char *entry, frmStock::Mode mode) {
        router.on(QString::fromLatin1(entry), [mode](MdiHost &host) {
            host.showScreen<frmStock>(QStringLiteral("frmStock"))->start(mode);
        });
    };
    purchase("mnuSEnterStock", frmStock::Mode::Enter);
    purchase("mnuSModifyStock", frmStock::Mode::Modify);
    purchase("mnuDeletePurchaseStock", frmStock::Mode::Delete);
    const auto closing = [&router](const char *entry, frmClosingStock::Mode mode) {
        router.on(QString::fromLatin1(entry), [mode](MdiHost &host) {
            host.showScreen<frmClosingStock>(QStringLiteral("frmClosingStock"))->start(mode);
        });
    };
    closing("mnuEnterClosingStock", frmClosingStock::Mode::Enter);
    closing("mnuModifyClosingStock", frmClosingStock::Mode::Modify);
    closing("mnuDeleteClosingStock", frmClosingStock::Mode::Delete);
    router.on(QStringLiteral("mnuViewPurchaseRegister"), [](MdiHost &host) {
        host.showScreen<frmPurchaseRegister>(QStringLiteral("frmPurchaseRegister"));
    });
}
