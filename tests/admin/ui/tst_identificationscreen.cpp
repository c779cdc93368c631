// The identification gate and the closing date screen, headless, through
// the menu entries and the controls' names.
#include "support/TestDb.h"
#include "support/ui/MessageRecorder.h"
#include "support/ui/ScreenKit.h"
#include "support/ui/ScreenTest.h"

#include "admin/ClosingDate.h"
#include "admin/ui/frmClosingDate.h"
#include "admin/ui/frmIdentification.h"
#include "foundation/DateRules.h"
#include "foundation/Logon.h"
#include "foundation/PasswordHash.h"
#include "foundation/Session.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/ScreenServices.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

Q_DECLARE_METATYPE(GateButton)

using ScreenKit::click;
using TestDb::count;

namespace {

class Host : public MenuHost
{
public:
    Host() { registerAdminMenu(router); }
};

void addClerk(SessionConnection &db)
{
    db.execute(QStringLiteral("INSERT INTO tblLogon (UserName, Password, UserType) VALUES (?, ?, ?)"),
               {QStringLiteral("CLERK"), PasswordHash::hash(QStringLiteral("clerk")), QStringLiteral("COMMON USER")});
}

QStringList visibleButtons(frmIdentification *f)
{
    QStringList out;
    for (QPushButton *b : {f->cmdBalanceOkay, f->cmdClosingOkay, f->cmdUpdateUserOkay, f->cmdEndYearClosing,
                           f->cmdCancel})
        if (!b->isHidden())
            out << b->objectName();
    return out;
}

void typeUser(frmIdentification *f, const QString &user, const QString &password)
{
    f->txtUserName->setFocus();
    QTest::keyClicks(f->txtUserName, user);
    f->txtPassword->setText(password);
}

} // namespace

class TestIdentificationScreen : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void eachButton_data();
    void eachButton();
    void refusedUserStays_data() { TestDb::addBackends(); }
    void refusedUserStays();
    void cancelOpensNothing_data() { TestDb::addBackends(); }
    void cancelOpensNothing();
    void closingDateThroughTheMenu_data() { TestDb::addBackends(); }
    void closingDateThroughTheMenu();
};

void TestIdentificationScreen::eachButton_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<GateButton>("button");
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("password");
    QTest::addColumn<bool>("passes");
    struct Case
    {
        const char *name;
        GateButton button;
        const char *user, *password;
        bool passes;
    };
    const Case cases[] = {
        {"balance, administrator", GateButton::Balance, "ADMIN", "secret", true},
        {"balance, common user", GateButton::Balance, "CLERK", "clerk", false},
        {"closing, administrator", GateButton::Closing, "ADMIN", "secret", true},
        {"update user, administrator", GateButton::UpdateUser, "ADMIN", "secret", true},
        {"update user, common user", GateButton::UpdateUser, "CLERK", "clerk", false},
        {"end year, common user", GateButton::EndYear, "CLERK", "clerk", true},
    };
    for (const char *backend : {"sqlite", "postgres"})
        for (const Case &c : cases)
            QTest::addRow("%s: %s", backend, c.name) << QString::fromLatin1(backend) << c.button
                                                     << QString::fromLatin1(c.user)
                                                     << QString::fromLatin1(c.password) << c.passes;
}

void TestIdentificationScreen::eachButton()
{
    TESSEL_BACKEND()
    QFETCH(GateButton, button);
    QFETCH(QString, user);
    QFETCH(QString, password);
    QFETCH(bool, passes);
    ScreenTest t(backend, QDate(2026, 3, 10), QStringLiteral("CLERK"), QStringLiteral("COMMON USER"));
    addClerk(t.db());
    Host host;
    host.show();

    int opened = 0;
    frmIdentification::open(host, button, QStringLiteral("A TITLE"), QStringLiteral("A WARNING"),
                            [&](MdiHost &) { ++opened; });
    auto *f = qobject_cast<frmIdentification *>(host.findScreen(QStringLiteral("frmIdentification")));
    QVERIFY(f);
    QCOMPARE(f->lblRestore->text(), QStringLiteral("A TITLE"));
    QCOMPARE(f->lblWarning->text(), QStringLiteral("A WARNING"));
    const QString name = Identification::buttonName(button);
    QCOMPARE(visibleButtons(f), QStringList({name, QStringLiteral("cmdCancel")}));

    typeUser(f, user, password);
    click(f->findChild<QPushButton *>(name));
    QCOMPARE(opened, passes ? 1 : 0);
    if (passes) {
        QVERIFY(t.rec.messages().isEmpty());
        QTRY_VERIFY(!host.findScreen(QStringLiteral("frmIdentification")));
    } else {
        QCOMPARE(t.rec.last().text, Logon::invalidMessage());
    }
    // The user of the session is not the one named at the gate.
    QCOMPARE(session().currentUserName, QStringLiteral("CLERK"));
}

void TestIdentificationScreen::refusedUserStays()
{
    TESSEL_BACKEND()
    ScreenTest t(backend);
    Host host;
    host.show();
    int opened = 0;
    frmIdentification::open(host, GateButton::Closing, QStringLiteral("CLOSING DATE"), QString(),
                            [&](MdiHost &) { ++opened; });
    auto *f = qobject_cast<frmIdentification *>(host.findScreen(QStringLiteral("frmIdentification")));
    QVERIFY(f);

    // The name filter lifts the typed name; a wrong password is refused,
    // both fields are emptied and the name takes the focus again.
    typeUser(f, QStringLiteral("admin"), QStringLiteral("wrong"));
    QCOMPARE(f->txtUserName->text(), QStringLiteral("ADMIN"));
    click(f->cmdClosingOkay);
    QCOMPARE(opened, 0);
    QCOMPARE(t.rec.last().text, Logon::invalidMessage());
    QVERIFY(f->txtUserName->text().isEmpty());
    QVERIFY(f->txtPassword->text().isEmpty());
    QTRY_VERIFY(f->txtUserName->hasFocus());

    // The same gate lets the right password through.
    typeUser(f, QStringLiteral("ADMIN"), QStringLiteral("secret"));
    click(f->cmdClosingOkay);
    QCOMPARE(opened, 1);
}

void TestIdentificationScreen::cancelOpensNothing()
{
    TESSEL_BACKEND()
    ScreenTest t(backend);
    Host host;
    host.show();
    int opened = 0;
    frmIdentification::open(host, GateButton::EndYear, QString(), QString(), [&](MdiHost &) { ++opened; });
    auto *f = qobject_cast<frmIdentification *>(host.findScreen(QStringLiteral("frmIdentification")));
    QVERIFY(f);
    typeUser(f, QStringLiteral("ADMIN"), QStringLiteral("secret"));
    click(f->cmdCancel);
    QTRY_VERIFY(!host.findScreen(QStringLiteral("frmIdentification")));
    QCOMPARE(opened, 0);
    QVERIFY(t.rec.messages().isEmpty());
    QCOMPARE(count(t.db(), QStringLiteral("SELECT COUNT(*) FROM tblLogonAttempt")), 0);
}

void TestIdentificationScreen::closingDateThroughTheMenu()
{
    TESSEL_BACKEND()
    ScreenTest t(backend);
    t.db().execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {QDate(2025, 12, 31)});
    Host host;
    host.show();
    host.router.trigger(QStringLiteral("mnuUClosingDate"), host);
    auto *gate = qobject_cast<frmIdentification *>(host.findScreen(QStringLiteral("frmIdentification")));
    QVERIFY(gate);
    QCOMPARE(gate->lblRestore->text(), QStringLiteral("CLOSING DATE"));
    QVERIFY(gate->lblWarning->text().startsWith(QStringLiteral("End year closing is a process")));
    QCOMPARE(visibleButtons(gate), QStringList({QStringLiteral("cmdClosingOkay"), QStringLiteral("cmdCancel")}));
    ScreenKit::shoot(host.mainWindow(), QStringLiteral("identification"));
    typeUser(gate, QStringLiteral("ADMIN"), QStringLiteral("secret"));
    click(gate->cmdClosingOkay);

    auto *f = qobject_cast<frmClosingDate *>(host.findScreen(QStringLiteral("frmClosingDate")));
    QVERIFY(f);
    QCOMPARE(f->mskDate->maskText(), QStringLiteral("31/12/2025"));
    QCOMPARE(f->lblClosingDate->text(), QStringLiteral("CLOSING DATE"));

    // A date that is not one is refused by the button; nothing is written.
    f->mskDate->setMaskText(QStringLiteral("31/02/2026"));
    click(f->cmdClosingOkay);
    QCOMPARE(t.rec.last().text, DateRules::wrongDateMessage());
    QCOMPARE(*ClosingDate::current(t.db()), QDate(2025, 12, 31));

    f->mskDate->setMaskText(QStringLiteral("28/02/2026"));
    click(f->cmdClosingOkay);
    QCOMPARE(t.rec.last().text, QStringLiteral("The process of end year closing date has completed"));
    ScreenKit::shoot(host.mainWindow(), QStringLiteral("closingdate"));
    QCOMPARE(session().firstOpenDate, QDate(2026, 3, 1));

    // Every date check follows at once: the new closing date is closed,
    // the day after is open.
    MaskedLineEdit probe(MaskedLineEdit::dateMask());
    probe.setMaskText(QStringLiteral("28/02/2026"));
    QVERIFY(!CheckClosingDate(&probe));
    QCOMPARE(t.rec.last().text, DateRules::closedPeriodMessage());
    probe.setMaskText(QStringLiteral("01/03/2026"));
    QVERIFY(CheckClosingDate(&probe));

    // Another workstation's change is seen at the next check.
    t.db().execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {QDate(2026, 3, 5)});
    QVERIFY(!CheckClosingDate(&probe));
    QCOMPARE(session().firstOpenDate, QDate(2026, 3, 6));
}

QTEST_MAIN(TestIdentificationScreen)
#include "tst_identificationscreen.moc"
