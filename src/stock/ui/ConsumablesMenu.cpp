#include "foundation/ui/MenuRouter.h"

#include "stock/ui/frmEmployeeStock.h"
#include "stock/ui/frmEmployeeStockFinished.h"
#include "stock/ui/frmStockModify.h"
#include "stock/ui/frmStockPrint.h"
#include "stock/ui/frmStockReceipt.h"
#include "stock/ui/frmStockSearch.h"

// The consumables entries of the stock menu.
void registerConsumablesMenu(MenuRouter &router)
{
    router.on(QStringLiteral("mnuSEnterConsumables"), [](MdiHost &host) {
        host.showScreen<frmStockReceipt>(QStringLiteral("frmStockReceipt"))->startNew();
    });
    router.on(QStringLiteral("mnuSModifyConsumables"), [](MdiHost &host) {
        host.showScreen<frmStockModify>(QStringLiteral("frmStockModify"))->startNew();
    });
    router.on(QStringLiteral("mnuSEmployeeStock"), [](MdiHost &host) {
        host.showScreen<frmEmployeeStock>(QStringLiteral("frmEmployeeStock"))->startNew();
    });
    router.on(QStringLiteral("mnuSPrintStock"), [](MdiHost &host) {
        host.showScreen<frmStockPrint>(QStringLiteral("frmStockPrint"));
    });
    router.on(QStringLiteral("mnuSEmployeeStockFinished"), [](MdiHost &host) {
        host.showScreen<frmEmployeeStockFinished>(QStringLiteral("frmEmployeeStockFinished"))->startNew();
    });
    router.on(QStringLiteral("mnuSViewEmployeeStock"), [](MdiHost &host) {
        host.showScreen<frmStockSearch>(QStringLiteral("frmStockSearch"))->startEmployeeStock();
    });
}
