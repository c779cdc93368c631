// The identification gate's rule: who may pass which button, the one
// message for every refusal, and the failures it counts like a log-on.
#include "support/TestDb.h"

#include "admin/Identification.h"
#include "foundation/Logon.h"
#include "foundation/PasswordHash.h"

#include <QtTest>

Q_DECLARE_METATYPE(GateButton)

using TestDb::count;

namespace {

void addUser(SessionConnection &db, const QString &name, const QString &password, const QString &type)
{
    db.execute(QStringLiteral("INSERT INTO tblLogon (UserName, Password, UserType) VALUES (?, ?, ?)"),
               {name, PasswordHash::hash(password), type});
}

} // namespace

class TestIdentification : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void whoPasses_data();
    void whoPasses();
    void failuresAreThrottled_data() { TestDb::addBackends(); }
    void failuresAreThrottled();
    void passIsNotALogOn_data() { TestDb::addBackends(); }
    void passIsNotALogOn();
};

void TestIdentification::whoPasses_data()
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
        const char *user;
        const char *password;
        bool passes;
    };
    const Case cases[] = {
        {"balance: administrator", GateButton::Balance, "ADMIN", "secret", true},
        {"balance: blanks around the name", GateButton::Balance, " ADMIN ", "secret", true},
        {"balance: wrong password", GateButton::Balance, "ADMIN", "secreT", false},
        {"balance: password with a blank", GateButton::Balance, "ADMIN", "secret ", false},
        {"balance: unknown user", GateButton::Balance, "NOBODY", "secret", false},
        {"balance: common user", GateButton::Balance, "CLERK", "clerk", false},
        {"closing: common user", GateButton::Closing, "CLERK", "clerk", false},
        {"closing: administrator's password, common name", GateButton::Closing, "CLERK", "secret", false},
        {"closing: administrator", GateButton::Closing, "ADMIN", "secret", true},
        {"update user: common user", GateButton::UpdateUser, "CLERK", "clerk", false},
        {"update user: administrator", GateButton::UpdateUser, "ADMIN", "secret", true},
        {"end year: common user", GateButton::EndYear, "CLERK", "clerk", true},
        {"end year: administrator", GateButton::EndYear, "ADMIN", "secret", true},
        {"end year: common user, wrong password", GateButton::EndYear, "CLERK", "secret", false},
        {"end year: empty name", GateButton::EndYear, "", "", false},
    };
    for (const char *backend : {"sqlite", "postgres"})
        for (const Case &c : cases)
            QTest::addRow("%s: %s", backend, c.name)
                << QString::fromLatin1(backend) << c.button << QString::fromLatin1(c.user)
                << QString::fromLatin1(c.password) << c.passes;
}

void TestIdentification::whoPasses()
{
    TESSEL_YEAR(year);
    QFETCH(GateButton, button);
    QFETCH(QString, user);
    QFETCH(QString, password);
    QFETCH(bool, passes);
    auto db = year.connect();
    addUser(*db, QStringLiteral("CLERK"), QStringLiteral("clerk"), QStringLiteral("COMMON USER"));

    const Outcome r = Identification::check(*db, user, password, button);
    QCOMPARE(r.ok, passes);
    if (!passes) {
        // The same words whatever was wrong, so the gate tells nothing.
        QCOMPARE(r.message, Logon::invalidMessage());
        QCOMPARE(r.field, QStringLiteral("txtUserName"));
    }
}

void TestIdentification::failuresAreThrottled()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    const QDateTime t0 = QDateTime::currentDateTimeUtc();
    // Two failures go by without a wait; the third makes the name wait.
    for (int i = 0; i < 3; ++i)
        QVERIFY(!Identification::check(*db, QStringLiteral("ADMIN"), QStringLiteral("guess"), GateButton::Balance, t0));
    QCOMPARE(count(*db, QStringLiteral("SELECT Failures FROM tblLogonAttempt WHERE UserName = 'ADMIN'")), 3);

    // While the name waits even the right password is refused, with the
    // log-on's words; the log-on itself is held back just the same.
    const Outcome waiting = Identification::check(*db, QStringLiteral("ADMIN"), QStringLiteral("secret"),
                                                  GateButton::Balance, t0.addMSecs(500));
    QVERIFY(!waiting.ok);
    QVERIFY(waiting.message.startsWith(QStringLiteral("Too many failed attempts")));
    QVERIFY(!Logon::check(*db, QStringLiteral("ADMIN"), QStringLiteral("secret"), t0.addMSecs(500)).ok);

    // After the wait the right password passes and clears the count.
    QVERIFY(Identification::check(*db, QStringLiteral("ADMIN"), QStringLiteral("secret"), GateButton::Balance,
                                  t0.addSecs(60)));
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblLogonAttempt WHERE UserName = 'ADMIN'")), 0);
}

void TestIdentification::passIsNotALogOn()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    addUser(*db, QStringLiteral("CLERK"), QStringLiteral("clerk"), QStringLiteral("COMMON USER"));
    const QDateTime t0 = QDateTime::currentDateTimeUtc();
    const auto lastLogOn = [&](const char *user) {
        const auto row = db->selectOne(QStringLiteral("SELECT LastLogOnAt FROM tblLogon WHERE UserName = ?"),
                                       {QString::fromLatin1(user)});
        return row ? row->value(0) : QVariant();
    };

    // One who never logged on stays so; one who did keeps his time.
    QVERIFY(Identification::check(*db, QStringLiteral("CLERK"), QStringLiteral("clerk"), GateButton::EndYear, t0));
    QVERIFY(lastLogOn("CLERK").isNull());
    QVERIFY(Logon::check(*db, QStringLiteral("ADMIN"), QStringLiteral("secret"), t0).ok);
    QCOMPARE(lastLogOn("ADMIN").toLongLong(), t0.toMSecsSinceEpoch());
    QVERIFY(Identification::check(*db, QStringLiteral("ADMIN"), QStringLiteral("secret"), GateButton::Balance,
                                  t0.addSecs(60)));
    QCOMPARE(lastLogOn("ADMIN").toLongLong(), t0.toMSecsSinceEpoch());

    // A failure at the gate is still counted against the name.
    QVERIFY(!Identification::check(*db, QStringLiteral("CLERK"), QStringLiteral("guess"), GateButton::EndYear, t0));
    QCOMPARE(count(*db, QStringLiteral("SELECT Failures FROM tblLogonAttempt WHERE UserName = 'CLERK'")), 1);

    // A locked user does not pass with the right password, and is not stamped.
    db->execute(QStringLiteral("UPDATE tblLogon SET Locked = 1 WHERE UserName = 'CLERK'"));
    const Outcome locked =
        Identification::check(*db, QStringLiteral("CLERK"), QStringLiteral("clerk"), GateButton::EndYear, t0);
    QVERIFY(!locked.ok);
    QCOMPARE(locked.message, Logon::lockedMessage());
    QVERIFY(lastLogOn("CLERK").isNull());

    // The log-on itself still stamps.
    QVERIFY(Logon::check(*db, QStringLiteral("ADMIN"), QStringLiteral("secret"), t0.addSecs(120)).ok);
    QCOMPARE(lastLogOn("ADMIN").toLongLong(), t0.addSecs(120).toMSecsSinceEpoch());
}

QTEST_GUILESS_MAIN(TestIdentification)
#include "tst_identification.moc"
