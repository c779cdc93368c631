#include "foundation/ui/MenuRouter.h"

#include "admin/ui/frmClosingDate.h"
#include "admin/ui/frmIdentification.h"

// The menu entries of this subsystem and the screens they open.
void registerAdminMenu(MenuRouter &router)
{
    router.on(QStringLiteral("mnuUClosingDate"), [](MdiHost &host) {
        frmIdentification::open(host, GateButton::Closing, Identification::Texts::closingTitle(),
                                Identification::Texts::closingWarning(), [](MdiHost &h) {
                                    h.showScreen<frmClosingDate>(QStringLiteral("frmClosingDate"));
                                });
    });
}
