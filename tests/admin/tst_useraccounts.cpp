// Users and their rights without screens, on both engines: each command,
// each refusal in its order, the last-administrator guard, the log-on of a
// locked user, and the rights list as stored.
#include "admin/UserAccounts.h"
#include "admin/UserRights.h"
#include "foundation/Logon.h"
#include "foundation/PasswordHash.h"
#include "foundation/SessionConnection.h"
#include "support/TestDb.h"

#include <QtTest>

using namespace UserAccounts;
using TestDb::count;

namespace {

const Actor kAdmin{QStringLiteral("ADMIN"), administrator()};

Actor common(const char *name)
{
    return {QString::fromLatin1(name), commonUser()};
}

void addUser(SessionConnection &db, const QString &name, const QString &password, const QString &type)
{
    const Outcome r = createUser(db, kAdmin, name, password, type);
    QVERIFY2(r.ok, qPrintable(r.message));
}

QString storedPassword(SessionConnection &db, const QString &user)
{
    return db.scalar(QStringLiteral("SELECT Password FROM tblLogon WHERE UserName = ?"), {user}).toString();
}

bool logsOn(SessionConnection &db, const QString &user, const QString &password)
{
    return Logon::check(db, user, password).ok;
}

// One command of a table: who, what, and the outcome's words and field.
struct Case
{
    const char *what;
    std::function<Outcome(SessionConnection &)> run;
    QString message;
    QString field;
};

void runCases(SessionConnection &db, const QVector<Case> &cases)
{
    for (const Case &c : cases) {
        const Outcome r = c.run(db);
        QVERIFY2(r.message == c.message, qPrintable(QStringLiteral("%1: %2").arg(QLatin1String(c.what), r.message)));
        QVERIFY2(r.field == c.field, qPrintable(QStringLiteral("%1: field %2").arg(QLatin1String(c.what), r.field)));
    }
}

} // namespace

class TestUserAccounts : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void createUser_data() { TestDb::addBackends(); }
    void createUser();
    void changePassword_data() { TestDb::addBackends(); }
    void changePassword();
    void lastAdministrator_data() { TestDb::addBackends(); }
    void lastAdministrator();
    void lockedUserCannotLogOn_data() { TestDb::addBackends(); }
    void lockedUserCannotLogOn();
    void rightsSaved_data() { TestDb::addBackends(); }
    void rightsSaved();
    void failedRightsSaveKeepsTheOldList_data() { TestDb::addBackends(); }
    void failedRightsSaveKeepsTheOldList();
    void boxes();
};

void TestUserAccounts::createUser()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    const QString A = administrator(), C = commonUser();
    runCases(*db, {
        {"common user", [&](SessionConnection &d) { return UserAccounts::createUser(d, common("CLERK"), "NEW", "x", C); },
         Msg::administratorsOnly(), "txtNewUser"},
        {"no name", [&](SessionConnection &d) { return UserAccounts::createUser(d, kAdmin, "", "x", C); },
         Msg::nameMissing(), "txtNewUser"},
        {"blank name", [&](SessionConnection &d) { return UserAccounts::createUser(d, kAdmin, "   ", "", C); },
         Msg::nameMissing(), "txtNewUser"},
        {"no password", [&](SessionConnection &d) { return UserAccounts::createUser(d, kAdmin, "NEW", "", C); },
         Msg::passwordMissing(), "txtPassword"},
        {"no type", [&](SessionConnection &d) { return UserAccounts::createUser(d, kAdmin, "NEW", "x", ""); },
         Msg::typeMissing(), "optAdministrator"},
        {"taken", [&](SessionConnection &d) { return UserAccounts::createUser(d, kAdmin, "ADMIN", "x", A); },
         Msg::duplicate(), "txtNewUser"},
        {"taken, trailing blanks", [&](SessionConnection &d) { return UserAccounts::createUser(d, kAdmin, "ADMIN  ", "x", C); },
         Msg::duplicate(), "txtNewUser"},
        {"created", [&](SessionConnection &d) { return UserAccounts::createUser(d, kAdmin, " CLERK", " ink ", C); },
         Msg::created(), ""},
        {"created twice", [&](SessionConnection &d) { return UserAccounts::createUser(d, kAdmin, "CLERK", "y", A); },
         Msg::duplicate(), "txtNewUser"},
    });
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblLogon")), 2);
    const auto clerk = find(*db, QStringLiteral("CLERK"));
    QVERIFY(clerk);
    QCOMPARE(clerk->type, commonUser());
    QVERIFY(!clerk->locked);
    QVERIFY(!clerk->lastLogOn.isValid());
    // Stored as a salted hash, never as the text, and checked exactly.
    const QString stored = storedPassword(*db, QStringLiteral("CLERK"));
    QVERIFY(!stored.contains(QStringLiteral("ink")));
    QVERIFY(stored.startsWith(QStringLiteral("pbkdf2-sha256$")));
    QVERIFY(logsOn(*db, QStringLiteral("CLERK"), QStringLiteral(" ink ")));
    QVERIFY(!logsOn(*db, QStringLiteral("CLERK"), QStringLiteral("ink")));
}

void TestUserAccounts::changePassword()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    addUser(*db, QStringLiteral("CLERK"), QStringLiteral("ink "), commonUser());
    addUser(*db, QStringLiteral("PRINTER"), QStringLiteral("press"), commonUser());
    const QString before = storedPassword(*db, QStringLiteral("PRINTER"));
    runCases(*db, {
        {"no name", [](SessionConnection &d) { return UserAccounts::changePassword(d, kAdmin, " ", "", "a", "a"); },
         Msg::nameMissing(), "txtUserName"},
        {"no match", [](SessionConnection &d) { return UserAccounts::changePassword(d, kAdmin, "CLERK", "", "a", "b"); },
         Msg::mismatch(), "txtNewPassword"},
        {"no match by case", [](SessionConnection &d) { return UserAccounts::changePassword(d, kAdmin, "CLERK", "", "a", "A"); },
         Msg::mismatch(), "txtNewPassword"},
        {"empty new", [](SessionConnection &d) { return UserAccounts::changePassword(d, kAdmin, "CLERK", "", "", ""); },
         Msg::passwordMissing(), "txtNewPassword"},
        {"admin, unknown user", [](SessionConnection &d) { return UserAccounts::changePassword(d, kAdmin, "NOBODY", "", "a", "a"); },
         Msg::oldIncorrect(), "txtUserName"},
        {"common, wrong old", [](SessionConnection &d) { return UserAccounts::changePassword(d, common("CLERK"), "CLERK", "ink", "a", "a"); },
         Msg::oldIncorrect(), "txtUserName"},
        {"common, old trimmed", [](SessionConnection &d) { return UserAccounts::changePassword(d, common("CLERK"), "CLERK", "INK ", "a", "a"); },
         Msg::oldIncorrect(), "txtUserName"},
        {"common, another's name and his old", [](SessionConnection &d) { return UserAccounts::changePassword(d, common("CLERK"), "PRINTER", "press", "a", "a"); },
         Msg::oldIncorrect(), "txtUserName"},
        {"common, own", [](SessionConnection &d) { return UserAccounts::changePassword(d, common("CLERK"), "CLERK", "ink ", "new1", "new1"); },
         Msg::passwordChanged(), ""},
        {"admin, anyone's without the old", [](SessionConnection &d) { return UserAccounts::changePassword(d, kAdmin, "PRINTER", "wrong", "new2", "new2"); },
         Msg::passwordChanged(), ""},
    });
    QVERIFY(logsOn(*db, QStringLiteral("CLERK"), QStringLiteral("new1")));
    QVERIFY(!logsOn(*db, QStringLiteral("CLERK"), QStringLiteral("ink ")));
    QVERIFY(logsOn(*db, QStringLiteral("PRINTER"), QStringLiteral("new2")));
    QVERIFY(storedPassword(*db, QStringLiteral("PRINTER")) != before);
    QVERIFY(!storedPassword(*db, QStringLiteral("PRINTER")).contains(QStringLiteral("new2")));
}

void TestUserAccounts::lastAdministrator()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    addUser(*db, QStringLiteral("CLERK"), QStringLiteral("ink"), commonUser());
    addUser(*db, QStringLiteral("BOSS"), QStringLiteral("boss"), administrator());
    const QString A = administrator(), C = commonUser();
    runCases(*db, {
        {"type by a common user", [&](SessionConnection &d) { return changeType(d, common("CLERK"), "CLERK", A); },
         Msg::administratorsOnly(), "txtNewUser"},
        {"lock by a common user", [&](SessionConnection &d) { return setLocked(d, common("CLERK"), "ADMIN", true); },
         Msg::administratorsOnly(), ""},
        {"unknown user", [&](SessionConnection &d) { return changeType(d, kAdmin, "NOBODY", A); },
         Msg::invalidUser(), "txtNewUser"},
        {"no user", [&](SessionConnection &d) { return changeType(d, kAdmin, "", A); },
         Msg::invalidUser(), "txtNewUser"},
        {"no type", [&](SessionConnection &d) { return changeType(d, kAdmin, "CLERK", ""); },
         Msg::typeMissing(), "optAdministrator"},
        {"lock unknown", [&](SessionConnection &d) { return setLocked(d, kAdmin, "NOBODY", true); },
         Msg::invalidUser(), ""},
        // Two administrators: one may go, and then the other is the last.
        {"lock BOSS", [&](SessionConnection &d) { return setLocked(d, kAdmin, "BOSS", true); }, Msg::locked(), ""},
        {"demote the last who can log on", [&](SessionConnection &d) { return changeType(d, kAdmin, "ADMIN", C); },
         Msg::lastAdministrator(), "optAdministrator"},
        {"lock the last", [&](SessionConnection &d) { return setLocked(d, kAdmin, "ADMIN", true); },
         Msg::lastAdministrator(), ""},
        {"unlock BOSS", [&](SessionConnection &d) { return setLocked(d, kAdmin, "BOSS", false); }, Msg::unlocked(), ""},
        {"demote BOSS", [&](SessionConnection &d) { return changeType(d, kAdmin, "BOSS", C); }, Msg::updated(), ""},
        {"lock ADMIN, the last", [&](SessionConnection &d) { return setLocked(d, kAdmin, "ADMIN", true); },
         Msg::lastAdministrator(), ""},
        {"ADMIN stays ADMIN", [&](SessionConnection &d) { return changeType(d, kAdmin, "ADMIN", A); }, Msg::updated(), ""},
        {"promote CLERK", [&](SessionConnection &d) { return changeType(d, kAdmin, "CLERK", A); }, Msg::updated(), ""},
        {"demote ADMIN now", [&](SessionConnection &d) { return changeType(d, kAdmin, "ADMIN", C); }, Msg::updated(), ""},
        {"demote CLERK, the last", [&](SessionConnection &d) { return changeType(d, kAdmin, "CLERK", C); },
         Msg::lastAdministrator(), "optAdministrator"},
    });
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblLogon WHERE UserType = 'ADMINISTRATOR' AND Locked = 0")), 1);
    QCOMPARE(find(*db, QStringLiteral("CLERK"))->type, administrator());
}

void TestUserAccounts::lockedUserCannotLogOn()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    addUser(*db, QStringLiteral("CLERK"), QStringLiteral("ink"), commonUser());
    const QDateTime at(QDate(2026, 3, 10), QTime(9, 30), Qt::UTC);
    QVERIFY(setLocked(*db, kAdmin, QStringLiteral("CLERK"), true).ok);
    const Logon::Result right = Logon::check(*db, QStringLiteral("CLERK"), QStringLiteral("ink"), at);
    QVERIFY(!right.ok);
    QCOMPARE(right.message, Logon::lockedMessage());
    // A wrong password learns nothing of the lock.
    const Logon::Result wrong = Logon::check(*db, QStringLiteral("CLERK"), QStringLiteral("inc"), at);
    QCOMPARE(wrong.message, Logon::invalidMessage());
    QVERIFY(!find(*db, QStringLiteral("CLERK"))->lastLogOn.isValid());

    QVERIFY(setLocked(*db, kAdmin, QStringLiteral("CLERK"), false).ok);
    QVERIFY(Logon::check(*db, QStringLiteral("CLERK"), QStringLiteral("ink"), at.addSecs(5)).ok);
    QCOMPARE(find(*db, QStringLiteral("CLERK"))->lastLogOn, at.addSecs(5));
    const QVector<User> all = list(*db);
    QCOMPARE(all.size(), 2);
    QCOMPARE(all.at(0).name, QStringLiteral("ADMIN"));
    QCOMPARE(all.at(1).name, QStringLiteral("CLERK"));
}

void TestUserAccounts::rightsSaved()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    addUser(*db, QStringLiteral("CLERK"), QStringLiteral("ink"), commonUser());
    const QString clerk = QStringLiteral("CLERK");
    QCOMPARE(UserRights::switchedOff(*db, clerk), QStringList());

    // Nothing switched off still writes the row.
    QCOMPARE(UserRights::save(*db, kAdmin, clerk, {}).message, UserRights::Msg::updated());
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblUserRights WHERE USERNAME = 'CLERK'")), 1);
    QCOMPARE(UserRights::switchedOff(*db, clerk), QStringList());

    // Kept in the boxes' order, once each; names the screen has no box for are dropped.
    const QStringList off{QStringLiteral("mnuUBackUp"), QStringLiteral("mnuAccount"), QStringLiteral("mnuBogus"),
                          QStringLiteral("mnuAccount"), QStringLiteral("mnuURestore")};
    QVERIFY(UserRights::save(*db, kAdmin, clerk, off).ok);
    QCOMPARE(db->scalar(QStringLiteral("SELECT Menu FROM tblUserRights WHERE USERNAME = 'CLERK'")).toString(),
             QStringLiteral("mnuAccount,mnuUBackUp,mnuURestore"));
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblUserRights")), 1);
    QCOMPARE(Logon::disabledMenus(*db, clerk),
             (QStringList{QStringLiteral("mnuAccount"), QStringLiteral("mnuUBackUp"), QStringLiteral("mnuURestore")}));

    // Refusals write nothing.
    QCOMPARE(UserRights::save(*db, common("CLERK"), clerk, {}).message, Msg::administratorsOnly());
    QCOMPARE(UserRights::save(*db, kAdmin, QStringLiteral("NOBODY"), off).message, Msg::invalidUser());
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblUserRights")), 1);
    QCOMPARE(UserRights::switchedOff(*db, clerk).size(), 3);
    // The edit log and the books check are switched off like any entry.
    QVERIFY(UserRights::save(*db, kAdmin, clerk, {QStringLiteral("mnuUEditLog"), QStringLiteral("mnuUCheckBooks")}).ok);
    QCOMPARE(Logon::disabledMenus(*db, clerk),
             (QStringList{QStringLiteral("mnuUCheckBooks"), QStringLiteral("mnuUEditLog")}));
    // An administrator's list is kept as any other's.
    QVERIFY(UserRights::save(*db, kAdmin, QStringLiteral("ADMIN"), {QStringLiteral("mnuStock")}).ok);
    QCOMPARE(UserRights::switchedOff(*db, QStringLiteral("ADMIN")), QStringList{QStringLiteral("mnuStock")});
}

void TestUserAccounts::failedRightsSaveKeepsTheOldList()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    QVERIFY(UserRights::save(*db, kAdmin, QStringLiteral("ADMIN"), {QStringLiteral("mnuStock")}).ok);
    db->setStatementHook([](const QString &sql) {
        if (sql.startsWith(QStringLiteral("INSERT INTO tblUserRights")))
            throw DbError(QStringLiteral("disk full"), sql);
    });
    bool failed = false;
    try {
        UserRights::save(*db, kAdmin, QStringLiteral("ADMIN"), {QStringLiteral("mnuTitle")});
    } catch (const DbError &e) {
        failed = e.driverText() == QStringLiteral("disk full");
    }
    db->setStatementHook({});
    QVERIFY(failed);
    QCOMPARE(UserRights::switchedOff(*db, QStringLiteral("ADMIN")), QStringList{QStringLiteral("mnuStock")});
}

void TestUserAccounts::boxes()
{
    const QStringList &names = UserRights::boxNames();
    QCOMPARE(names.size(), 94);
    QCOMPARE(QSet<QString>(names.cbegin(), names.cend()).size(), 94);
}

QTEST_GUILESS_MAIN(TestUserAccounts)
#include "tst_useraccounts.moc"
