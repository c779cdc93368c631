#include "foundation/ui/MenuRouter.h"
#include "sales/ui/frmDeliveryChallan.h"
#include "sales/ui/frmJobCard.h"
#include "sales/ui/frmPurchaseOrder.h"

namespace {

// An entry that opens screen T (objectName `name`) and starts its mode.
template <class T>
void entry(MenuRouter &router, const char *menu, const char *name, void (T::*start)())
{
    const QString screen = QString::fromLatin1(name);
    router.on(QString::fromLatin1(menu), [screen, start](MdiHost &host) { (host.showScreen<T>(screen)->*start)(); });
}

} // namespace

// The entries of the job's paperwork: purchase orders, job cards and
// delivery challans, each opened in the mode its entry names.
void registerJobPaperMenu(MenuRouter &router)
{
    entry(router, "mnuEnterPurchaseOrder", "frmPurchaseOrder", &frmPurchaseOrder::startEnter);
    entry(router, "mnuModifyPurchaseOrder", "frmPurchaseOrder", &frmPurchaseOrder::startModify);
    entry(router, "mnuDeletePurchaseOrder", "frmPurchaseOrder", &frmPurchaseOrder::startDelete);
    entry(router, "mnuEnterJobCard", "frmJobCard", &frmJobCard::startEnter);
    entry(router, "mnuModifyJobCard", "frmJobCard", &frmJobCard::startModify);
    entry(router, "mnuDeleteJobCard", "frmJobCard", &frmJobCard::startDelete);
    entry(router, "mnuViewJobCard", "frmJobCard", &frmJobCard::startView);
    entry(router, "mnuEnterDeliveryChallan", "frmDeliveryChallan", &frmDeliveryChallan::startEnter);
    entry(router, "mnuModifyDeliveryChallan", "frmDeliveryChallan", &frmDeliveryChallan::startModify);
    entry(router, "mnuDeleteDeliveryChallan", "frmDeliveryChallan", &frmDeliveryChallan::startDelete);
}
