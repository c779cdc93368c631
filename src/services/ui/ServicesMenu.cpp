#include "foundation/ui/MenuRouter.h"

// The menu entries of this subsystem and the screens they open.
void registerServicesMenu(MenuRouter &router)
{
    Q_UNUSED(router);
}
