#include "foundation/ui/MenuRouter.h"

void registerTitleMenu(MenuRouter &router);
void registerJobPaperMenu(MenuRouter &router);
void registerInvoiceMenu(MenuRouter &router);
void registerSalesReportsMenu(MenuRouter &router);

// The menu entries of this subsystem and the screens they open.
void registerSalesMenu(MenuRouter &router)
{
    registerTitleMenu(router);
    registerJobPaperMenu(router);
    registerInvoiceMenu(router);
    registerSalesReportsMenu(router);
}
