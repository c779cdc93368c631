#include "foundation/ui/MenuRouter.h"

// The menu entries of this subsystem and the screens they open.
void registerSalesMenu(MenuRouter &router)
{
    Q_UNUSED(router);
}
