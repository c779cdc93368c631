#include "foundation/ui/MenuRouter.h"

// The subsystems of the program, each registering the menu entries it
// handles. A new subsystem adds its line here.
void MenuRouter::registerAll()
{
    registerAccountsMenu(*this);
    registerVouchersMenu(*this);
    registerSalesMenu(*this);
    registerStockMenu(*this);
    registerPayrollMenu(*this);
    registerReportsMenu(*this);
    registerAdminMenu(*this);
    registerServicesMenu(*this);
}
