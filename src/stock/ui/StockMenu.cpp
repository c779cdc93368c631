#include "foundation/ui/MenuRouter.h"

void registerItemCodingMenu(MenuRouter &router);
void registerPurchaseStockMenu(MenuRouter &router);
void registerConsumablesMenu(MenuRouter &router);

// The menu entries of this subsystem and the screens they open.
void registerStockMenu(MenuRouter &router)
{
    registerItemCodingMenu(router);
    registerPurchaseStockMenu(router);
    registerConsumablesMenu(router);
}
