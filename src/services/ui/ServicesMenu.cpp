#include "foundation/Session.h"
#include "foundation/ui/MenuRouter.h"
#include "services/ui/frmOtherServices.h"

#include "foundation/ui/MaskedLineEdit.h"

// The menu entries of this subsystem and the screens they open.
void registerServicesMenu(MenuRouter &router)
{
    router.on(QStringLiteral("mnuEnterOtherServices"), [](MdiHost &host) {
        auto *f = host.showScreen<frmOtherServices>(QStringLiteral("frmOtherServices"));
        f->mskDate->setDate(session().dateToday());
    });
    router.on(QStringLiteral("mnuModifyOtherServices"), [](MdiHost &host) {
        host.showScreen<frmModifyOtherServices>(QStringLiteral("frmModifyOtherServices"));
    });
    router.on(QStringLiteral("mnuViewOtherServicesRegister"), [](MdiHost &host) {
        host.showScreen<frmPrintOtherServices>(QStringLiteral("frmPrintOtherServices"));
    });
}
