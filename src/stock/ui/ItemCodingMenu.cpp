#include "foundation/ui/MenuRouter.h"

#include "stock/ui/frmItemCoding.h"

// The item coding entries of the stock menu.
void registerItemCodingMenu(MenuRouter &router)
{
    router.on(QStringLiteral("mnuEnterItemCoding"), [](MdiHost &host) {
        host.showScreen<frmItemCoding>(QStringLiteral("frmItemCoding"));
    });
    router.on(QStringLiteral("mnuModifyItemCoding"), [](MdiHost &host) {
        host.showScreen<frmModifyItemCoding>(QStringLiteral("frmModifyItemCoding"));
    });
}
