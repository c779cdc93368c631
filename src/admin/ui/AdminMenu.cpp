#include "admin/ui/frmBackup.h"
#include "admin/ui/frmCheckBooks.h"
#include "admin/ui/frmClosingDate.h"
#include "admin/ui/frmEndYearProcessing.h"
#include "admin/ui/frmEditLog.h"
#include "admin/ui/frmIdentification.h"
#include "admin/ui/frmRestore.h"
#include "admin/ui/frmUser.h"
#include "admin/ui/frmUserList.h"
#include "foundation/ui/MenuRouter.h"

frmUser *openNewUser(MdiHost &host)
{
    auto *f = host.showScreen<frmUser>(QStringLiteral("frmUser"));
    f->setHost(&host);
    f->startNewUser();
    return f;
}

frmUser *openUpdateUser(MdiHost &host)
{
    auto *f = host.showScreen<frmUser>(QStringLiteral("frmUser"));
    f->setHost(&host);
    f->startUpdateUser();
    return f;
}

frmUser *openChangePassword(MdiHost &host)
{
    auto *f = host.showScreen<frmUser>(QStringLiteral("frmUser"));
    f->setHost(&host);
    f->startChangePassword();
    return f;
}

// The menu entries of this subsystem and the screens they open.
void registerAdminMenu(MenuRouter &router)
{
    router.on(QStringLiteral("mnuUClosingDate"), [](MdiHost &host) {
        frmIdentification::open(host, GateButton::Closing, Identification::Texts::closingTitle(),
                                Identification::Texts::closingWarning(), [](MdiHost &h) {
                                    h.showScreen<frmClosingDate>(QStringLiteral("frmClosingDate"));
                                });
    });
    // End-year processing takes any valid user through the gate.
    router.on(QStringLiteral("mnuEndYearProcessing"), [](MdiHost &host) {
        frmIdentification::open(host, GateButton::EndYear, Identification::Texts::closingTitle(),
                                Identification::Texts::closingWarning(), [](MdiHost &h) {
                                    h.showScreen<frmEndYearProcessing>(QStringLiteral("frmEndYearProcessing"));
                                });
    });
    router.on(QStringLiteral("mnuUNewUser"), [](MdiHost &host) { openNewUser(host); });
    router.on(QStringLiteral("mnuUChangePassword"), [](MdiHost &host) { openChangePassword(host); });
    // Updating a user asks an administrator's name and password again.
    router.on(QStringLiteral("mnuUUpdateUser"), [](MdiHost &host) {
        frmIdentification::open(host, GateButton::UpdateUser, Identification::Texts::updateUserTitle(),
                                Identification::Texts::updateUserWarning(), [](MdiHost &h) { openUpdateUser(h); });
    });
    router.on(QStringLiteral("mnuUUserList"), [](MdiHost &host) {
        host.showScreen<frmUserList>(QStringLiteral("frmUserList"));
    });
    router.on(QStringLiteral("mnuUBackUp"), [](MdiHost &host) { host.showScreen<frmBackup>(QStringLiteral("frmBackup")); });
    router.on(QStringLiteral("mnuURestore"), [](MdiHost &host) {
        host.showScreen<frmRestore>(QStringLiteral("frmRestore"));
    });
    router.on(QStringLiteral("mnuUCheckBooks"),
              [](MdiHost &host) { host.showScreen<frmCheckBooks>(QStringLiteral("frmCheckBooks")); });
    router.on(QStringLiteral("mnuUEditLog"), [](MdiHost &host) { openEditLog(host); });
    installEditLogHistoryKey();
}
