#include "foundation/ui/MenuRouter.h"

#include "accounts/ui/frmDBCRAccount.h"
#include "accounts/ui/frmModPartyInfo.h"
#include "accounts/ui/frmOpeningBalance.h"
#include "admin/ui/frmIdentification.h"
#include "accounts/ui/frmPartyInfo.h"
#include "accounts/ui/frmTitleScreens.h"
#include "foundation/Session.h"
#include "foundation/ui/MessageService.h"

#include <QMainWindow>

// The menu entries of this subsystem and the screens they open.
void registerAccountsMenu(MenuRouter &router)
{
    router.on(QStringLiteral("mnuPPartyInfo"), [](MdiHost &host) {
        host.showScreen<frmPartyInfo>(QStringLiteral("frmPartyInfo"));
    });
    router.on(QStringLiteral("mnuPModifyPartyInfo"), [](MdiHost &host) {
        host.showScreen<frmModPartyInfo>(QStringLiteral("frmModPartyInfo"));
    });
    router.on(QStringLiteral("mnuPOpeningBalance"), [](MdiHost &host) {
        host.showScreen<frmOpeningBalance>(QStringLiteral("frmOpeningBalance"))->startNew();
    });
    // A change of opening balance asks for an administrator first.
    router.on(QStringLiteral("mnuPModifyBalance"), [](MdiHost &host) {
        frmIdentification::open(host, GateButton::Balance, Identification::Texts::balanceTitle(),
                                Identification::Texts::balanceWarning(), [](MdiHost &h) {
                                    h.showScreen<frmOpeningBalance>(QStringLiteral("frmOpeningBalance"))->startModify();
                                });
    });
    router.on(QStringLiteral("mnuPDebitCreditAccount"), [](MdiHost &host) {
        host.showScreen<frmDBCRAccount>(QStringLiteral("frmDBCRAccount"));
    });
    router.on(QStringLiteral("mnuCareOf"), [](MdiHost &host) {
        host.showScreen<frmCareOf>(QStringLiteral("frmCareOf"));
    });
}

// The title menu: adding titles, choosing the working one, and (for
// administrators) the letterhead of each.
void registerTitleMenu(MenuRouter &router)
{
    router.on(QStringLiteral("mnuAddTitleName"), [](MdiHost &host) {
        host.showScreen<frmAddTitleName>(QStringLiteral("frmAddTitleName"));
    });
    router.on(QStringLiteral("mnuTitleName"), [](MdiHost &host) {
        host.showScreen<frmTitleName>(QStringLiteral("frmTitleName"));
    });
    router.on(QStringLiteral("mnuLetterhead"), [](MdiHost &host) {
        if (!session().isAdministrator()) {
            MessageService::critical(host.mainWindow(),
                                     QStringLiteral("Only an administrator can change the letterhead."));
            return;
        }
        host.showScreen<frmLetterhead>(QStringLiteral("frmLetterhead"));
    });
}
