// The user screens headless, opened through their menu entries and driven
// through their controls' names: the frames each entry shows, the checks
// and their words, the fields cleared, the rights boxes saved, the user
// list's locks.
#include "support/ui/ScreenKit.h"
#include "support/ui/ScreenTest.h"

#include "admin/UserAccounts.h"
#include "admin/UserRights.h"
#include "admin/ui/frmUser.h"
#include "admin/ui/frmUserList.h"
#include "admin/ui/frmUserRights.h"
#include "foundation/Logon.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QtTest>

using namespace ScreenKit;
using TestDb::count;
namespace Msg = UserAccounts::Msg;

namespace {

struct Screens
{
    explicit Screens(const QString &backend, const QString &user = QStringLiteral("ADMIN"),
                     const QString &type = QStringLiteral("ADMINISTRATOR"))
        : t(backend, QDate(2026, 3, 10), user, type)
    {
        registerAdminMenu(host.router);
        host.show();
        QApplication::setActiveWindow(&host);
        active = QTest::qWaitForWindowActive(&host);
    }
    void addUser(const QString &name, const QString &password, const QString &type)
    {
        QVERIFY(UserAccounts::createUser(t.db(), {QStringLiteral("ADMIN"), UserAccounts::administrator()}, name,
                                         password, type)
                    .ok);
    }
    frmUser *open(const char *entry) { return host.open<frmUser>(QString::fromLatin1(entry), QStringLiteral("frmUser")); }

    ScreenTest t;
    MenuHost host;
    bool active = false;
};

void type(QLineEdit *e, const QString &text)
{
    e->setFocus();
    e->clear();
    QTest::keyClicks(e, text);
}

} // namespace

class TestUserScreens : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void newUser_data() { TestDb::addBackends(); }
    void newUser();
    void commonUserCannotCreate_data() { TestDb::addBackends(); }
    void commonUserCannotCreate();
    void changePasswordByAdministrator_data() { TestDb::addBackends(); }
    void changePasswordByAdministrator();
    void changePasswordByCommonUser_data() { TestDb::addBackends(); }
    void changePasswordByCommonUser();
    void updateUserThenRights_data() { TestDb::addBackends(); }
    void updateUserThenRights();
    void userListLocks_data() { TestDb::addBackends(); }
    void userListLocks();
};

void TestUserScreens::newUser()
{
    TESSEL_BACKEND()
    Screens s(backend);
    QVERIFY(s.active);
    frmUser *f = s.open("mnuUNewUser");
    QVERIFY(f);
    QCOMPARE(f->windowTitle(), QStringLiteral("USER ACCOUNTS"));
    QCOMPARE(f->lblNewUser->text(), QStringLiteral("NEW USER"));
    QVERIFY(f->FrameNewUser->isVisible());
    QVERIFY(!f->FrameChangePassword->isVisible());
    QVERIFY(f->cmdNewUser->isVisible() && f->cmdNewUser->isEnabled());
    QVERIFY(!f->cmdUpdateUser->isVisible());
    QVERIFY(f->txtPassword->isVisible() && f->lblPassword->isVisible());
    QCOMPARE(f->txtPassword->echoMode(), QLineEdit::Password);

    // Checks in order, each sending the focus to its field.
    click(f->cmdNewUser);
    QCOMPARE(s.t.rec.last().text, Msg::nameMissing());
    QVERIFY(f->txtNewUser->hasFocus());
    type(f->txtNewUser, QStringLiteral("new clerk"));
    QCOMPARE(f->txtNewUser->text(), QStringLiteral("NEWCLERK")); // no blanks, raised
    click(f->cmdNewUser);
    QCOMPARE(s.t.rec.last().text, Msg::passwordMissing());
    QVERIFY(f->txtPassword->hasFocus());
    type(f->txtPassword, QStringLiteral("Ink 1"));
    QCOMPARE(f->txtPassword->text(), QStringLiteral("Ink 1")); // passwords as typed
    f->optAdministrator->setChecked(true);
    const int before = s.t.rec.count();
    click(f->cmdNewUser);
    QCOMPARE(s.t.rec.count(), before + 1);
    QVERIFY(s.t.rec.last().isInformation());
    QCOMPARE(s.t.rec.last().text, Msg::created());
    QVERIFY(f->txtNewUser->text().isEmpty() && f->txtPassword->text().isEmpty());
    QCOMPARE(UserAccounts::find(s.t.db(), QStringLiteral("NEWCLERK"))->type, UserAccounts::administrator());
    QVERIFY(Logon::check(s.t.db(), QStringLiteral("NEWCLERK"), QStringLiteral("Ink 1")).ok);

    type(f->txtNewUser, QStringLiteral("NEWCLERK"));
    type(f->txtPassword, QStringLiteral("x"));
    click(f->cmdNewUser);
    QVERIFY(s.t.rec.last().isCritical());
    QCOMPARE(s.t.rec.last().text, Msg::duplicate());
    QCOMPARE(count(s.t.db(), QStringLiteral("SELECT COUNT(*) FROM tblLogon")), 2);
    shoot(f, QStringLiteral("user-new"));
}

void TestUserScreens::commonUserCannotCreate()
{
    TESSEL_BACKEND()
    Screens s(backend, QStringLiteral("CLERK"), QStringLiteral("COMMON USER"));
    frmUser *f = s.open("mnuUNewUser");
    QVERIFY(!f->cmdNewUser->isEnabled());
    // The rule beneath holds whatever calls it.
    const Outcome r = UserAccounts::createUser(s.t.db(), {QStringLiteral("CLERK"), UserAccounts::commonUser()},
                                               QStringLiteral("X"), QStringLiteral("x"), UserAccounts::commonUser());
    QCOMPARE(r.message, Msg::administratorsOnly());
    QCOMPARE(count(s.t.db(), QStringLiteral("SELECT COUNT(*) FROM tblLogon")), 1);
}

void TestUserScreens::changePasswordByAdministrator()
{
    TESSEL_BACKEND()
    Screens s(backend);
    s.addUser(QStringLiteral("CLERK"), QStringLiteral("ink"), UserAccounts::commonUser());
    frmUser *f = s.open("mnuUChangePassword");
    QCOMPARE(f->title(), QStringLiteral("CHANGE PASSWORD"));
    QVERIFY(!f->FrameNewUser->isVisible() && f->FrameChangePassword->isVisible());
    QVERIFY(!f->txtOldPassword->isVisible() && !f->lblOldPassword->isVisible());

    type(f->txtUserName, QStringLiteral("CLERK"));
    type(f->txtNewPassword, QStringLiteral("one"));
    type(f->txtConfirmPassword, QStringLiteral("two"));
    click(f->cmdChangePassword);
    QCOMPARE(s.t.rec.last().text, Msg::mismatch());
    QVERIFY(f->txtNewPassword->text().isEmpty() && f->txtConfirmPassword->text().isEmpty());
    QVERIFY(f->txtNewPassword->hasFocus());
    QCOMPARE(f->txtUserName->text(), QStringLiteral("CLERK"));

    type(f->txtNewPassword, QStringLiteral("two"));
    type(f->txtConfirmPassword, QStringLiteral("two"));
    click(f->cmdChangePassword);
    QCOMPARE(s.t.rec.last().text, Msg::passwordChanged());
    for (QLineEdit *e : {f->txtUserName, f->txtOldPassword, f->txtNewPassword, f->txtConfirmPassword})
        QVERIFY(e->text().isEmpty());
    QVERIFY(Logon::check(s.t.db(), QStringLiteral("CLERK"), QStringLiteral("two")).ok);
    shoot(f, QStringLiteral("user-password"));
}

void TestUserScreens::changePasswordByCommonUser()
{
    TESSEL_BACKEND()
    Screens s(backend, QStringLiteral("CLERK"), QStringLiteral("COMMON USER"));
    s.addUser(QStringLiteral("CLERK"), QStringLiteral("ink "), UserAccounts::commonUser());
    s.addUser(QStringLiteral("PRINTER"), QStringLiteral("press"), UserAccounts::commonUser());
    frmUser *f = s.open("mnuUChangePassword");
    QVERIFY(f->txtOldPassword->isVisible() && f->lblOldPassword->isVisible());

    // Another's name with his right password, then one's own with the old one trimmed.
    for (const auto &[user, old] : {std::pair{"PRINTER", "press"}, std::pair{"CLERK", "ink"}}) {
        type(f->txtUserName, QString::fromLatin1(user));
        type(f->txtOldPassword, QString::fromLatin1(old));
        type(f->txtNewPassword, QStringLiteral("new"));
        type(f->txtConfirmPassword, QStringLiteral("new"));
        click(f->cmdChangePassword);
        QVERIFY(s.t.rec.last().isCritical());
        QCOMPARE(s.t.rec.last().text, Msg::oldIncorrect());
        QVERIFY(f->txtUserName->text().isEmpty() && f->txtOldPassword->text().isEmpty());
        QVERIFY(f->txtUserName->hasFocus());
    }
    QVERIFY(Logon::check(s.t.db(), QStringLiteral("PRINTER"), QStringLiteral("press")).ok);

    type(f->txtUserName, QStringLiteral("CLERK"));
    type(f->txtOldPassword, QStringLiteral("ink "));
    type(f->txtNewPassword, QStringLiteral("new"));
    type(f->txtConfirmPassword, QStringLiteral("new"));
    click(f->cmdChangePassword);
    QCOMPARE(s.t.rec.last().text, Msg::passwordChanged());
    QVERIFY(Logon::check(s.t.db(), QStringLiteral("CLERK"), QStringLiteral("new")).ok);
}

void TestUserScreens::updateUserThenRights()
{
    TESSEL_BACKEND()
    Screens s(backend);
    s.addUser(QStringLiteral("CLERK"), QStringLiteral("ink"), UserAccounts::commonUser());
    frmUser *f = openUpdateUser(s.host);
    QCOMPARE(f->title(), QStringLiteral("UPDATE USER"));
    QCOMPARE(f->lblNewUser->text(), QStringLiteral("UPDATE USER"));
    QVERIFY(f->cmdUpdateUser->isVisible() && !f->cmdNewUser->isVisible());
    QVERIFY(!f->txtPassword->isVisible() && !f->lblPassword->isVisible());
    QVERIFY(f->txtNewUser->hasFocus());

    type(f->txtNewUser, QStringLiteral("NOBODY"));
    click(f->cmdUpdateUser);
    QCOMPARE(s.t.rec.last().text, Msg::invalidUser());
    QVERIFY(f->txtNewUser->hasFocus());
    QVERIFY(!s.host.findScreen(QStringLiteral("frmUserRights")));

    // The last administrator is never made a common user.
    type(f->txtNewUser, QStringLiteral("ADMIN"));
    f->optCommonUser->setChecked(true);
    click(f->cmdUpdateUser);
    QCOMPARE(s.t.rec.last().text, Msg::lastAdministrator());
    QCOMPARE(UserAccounts::find(s.t.db(), QStringLiteral("ADMIN"))->type, UserAccounts::administrator());

    type(f->txtNewUser, QStringLiteral("CLERK"));
    f->optCommonUser->setChecked(true);
    click(f->cmdUpdateUser);
    QCOMPARE(s.t.rec.last().text, Msg::updated());
    QVERIFY(f->txtNewUser->text().isEmpty());
    auto *r = qobject_cast<frmUserRights *>(s.host.findScreen(QStringLiteral("frmUserRights")));
    QVERIFY(r);
    QCOMPARE(r->title(), QStringLiteral("USER RIGHTS"));
    QCOMPARE(r->rightsUser(), QStringLiteral("CLERK"));

    // Ninety-four boxes, each named after its entry, all ticked for a user without a list.
    const auto boxes = r->tabMenu->findChildren<QCheckBox *>();
    QCOMPARE(boxes.size(), 94);
    for (QCheckBox *b : boxes)
        QVERIFY2(b->isChecked(), qPrintable(b->objectName()));
    QCOMPARE(r->box(QStringLiteral("mnuPBankPaidVoucher"))->text(), QStringLiteral("BANK PAID VOUCHER"));
    QCOMPARE(r->box(QStringLiteral("mnuPrintStockRequest"))->text(), QStringLiteral("VIEW SALE REGISTER"));
    QCOMPARE(r->box(QStringLiteral("mnuPPrintParty"))->text(), QStringLiteral("VIEW / PRINT REPORTS"));
    QCOMPARE(r->box(QStringLiteral("mnuUEditLog"))->text(), QStringLiteral("EDIT LOG"));
    QCOMPARE(r->box(QStringLiteral("mnuUCheckBooks"))->text(), QStringLiteral("CHECK BOOKS"));
    QCOMPARE(r->box(QStringLiteral("mnuUEditLog"))->parentWidget()->objectName(), QStringLiteral("tabUtilities"));

    // A row for nothing switched off still shows every box ticked.
    click(r->cmdUpdateUser);
    QCOMPARE(s.t.rec.last().text, UserRights::Msg::updated());
    QCOMPARE(count(s.t.db(), QStringLiteral("SELECT COUNT(*) FROM tblUserRights WHERE USERNAME = 'CLERK'")), 1);

    for (const char *name : {"mnuUBackUp", "mnuAccount", "mnuPBankPaidVoucher"})
        r->box(QString::fromLatin1(name))->setChecked(false);
    click(r->cmdUpdateUser);
    QCOMPARE(s.t.db().scalar(QStringLiteral("SELECT Menu FROM tblUserRights WHERE USERNAME = 'CLERK'")).toString(),
             QStringLiteral("mnuAccount,mnuPBankPaidVoucher,mnuUBackUp"));

    // Opened again for the user, the boxes show the list; Cancel writes nothing.
    r->box(QStringLiteral("mnuTitle"))->setChecked(false);
    click(r->cmdCancel);
    QTRY_VERIFY(!s.host.findScreen(QStringLiteral("frmUserRights")));
    r = frmUserRights::openFor(s.host, QStringLiteral("CLERK"));
    QCOMPARE(r->untickedEntries(),
             (QStringList{QStringLiteral("mnuAccount"), QStringLiteral("mnuPBankPaidVoucher"), QStringLiteral("mnuUBackUp")}));

    // Every box readable on a 1366 x 768 screen: the screen fits and no
    // caption is cut.
    s.host.resize(1366, 768);
    r->parentWidget()->showMaximized();
    QApplication::processEvents();
    for (int i = 0; i < r->tabMenu->count(); ++i) {
        r->tabMenu->setCurrentIndex(i);
        QApplication::processEvents();
        for (QCheckBox *b : r->tabMenu->widget(i)->findChildren<QCheckBox *>()) {
            QVERIFY2(b->width() >= b->sizeHint().width(), qPrintable(b->objectName()));
            const QRect inTab(b->mapTo(r->tabMenu, QPoint(0, 0)), b->size());
            QVERIFY2(r->tabMenu->rect().contains(inTab), qPrintable(b->objectName()));
        }
        shoot(&s.host, QStringLiteral("user-rights-%1").arg(i, 2, 10, QLatin1Char('0')));
    }
}

void TestUserScreens::userListLocks()
{
    TESSEL_BACKEND()
    Screens s(backend);
    s.addUser(QStringLiteral("CLERK"), QStringLiteral("ink"), UserAccounts::commonUser());
    QVERIFY(Logon::check(s.t.db(), QStringLiteral("CLERK"), QStringLiteral("ink")).ok);
    auto *f = s.host.open<frmUserList>(QStringLiteral("mnuUUserList"), QStringLiteral("frmUserList"));
    QVERIFY(f);
    auto *model = f->dgUsers->model();
    QCOMPARE(model->rowCount(), 2);
    QCOMPARE(model->index(0, 0).data().toString(), QStringLiteral("ADMIN"));
    QCOMPARE(model->index(0, 2).data().toString(), QStringLiteral("NEVER"));
    QCOMPARE(model->index(1, 1).data().toString(), QStringLiteral("COMMON USER"));
    QVERIFY(model->index(1, 2).data().toString().contains(QLatin1Char('/')));

    QVERIFY(f->selectUser(QStringLiteral("ADMIN")));
    click(f->cmdLock);
    QCOMPARE(s.t.rec.last().text, Msg::lastAdministrator());
    QVERIFY(f->selectUser(QStringLiteral("CLERK")));
    click(f->cmdLock);
    QCOMPARE(s.t.rec.last().text, Msg::locked());
    QCOMPARE(f->selectedUser(), QStringLiteral("CLERK"));
    QCOMPARE(model->index(1, 3).data().toString(), QStringLiteral("LOCKED"));
    QCOMPARE(Logon::check(s.t.db(), QStringLiteral("CLERK"), QStringLiteral("ink")).message, Logon::lockedMessage());
    shoot(f, QStringLiteral("user-list"));
    click(f->cmdUnlock);
    QCOMPARE(s.t.rec.last().text, Msg::unlocked());
    QCOMPARE(model->index(1, 3).data().toString(), QString());
}

QTEST_MAIN(TestUserScreens)
#include "tst_userscreens.moc"
