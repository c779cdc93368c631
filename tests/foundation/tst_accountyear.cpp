#include "foundation/AccountYear.h"
#include "foundation/PasswordHash.h"
#include "foundation/SessionConnection.h"
#include "support/TestDb.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

class TestAccountYear : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void createAndList_data() { TestDb::addBackends(); }
    void createAndList();
    void refusesBadNamesAndDuplicates_data() { TestDb::addBackends(); }
    void refusesBadNamesAndDuplicates();
    void unreachableServerSaysWhy();
    void defaultClosingDate_data();
    void defaultClosingDate();
    void passwordHash();
    void adminToolEmbedded();
    void adminToolServer();
};

void TestAccountYear::createAndList()
{
    TESSEL_BACKEND()
    const ConnectionProfile profile = TestDb::profileFor(backend);
    const QString name = TestDb::uniqueName(QStringLiteral("TesselCreate"));
    AccountYear::CreateOptions o;
    o.adminUser = QStringLiteral("boss");
    o.adminPassword = QStringLiteral("pa ss ");
    o.companyName = QStringLiteral("THE PRESS");
    AccountYear::create(profile, name, o);
    auto cleanup = qScopeGuard([&] { AccountYear::drop(profile, name); });

    const QStringList years = AccountYear::list(profile);
    QVERIFY(years.contains(name));
    QVERIFY(std::is_sorted(years.begin(), years.end()));

    auto db = SessionConnection::open(profile, name);
    const QHash<QString, QString> fixed = {{QStringLiteral("19-10-001"), QStringLiteral("CASH IN HAND")},
                                           {QStringLiteral("20-10-002"), QStringLiteral("INVOICE BALANCE")},
                                           {QStringLiteral("20-10-001"), QStringLiteral("OTHER SERVICES INCOM")},
                                           {QStringLiteral("20-01-001"), QStringLiteral("PROFIT AND LOSS ACCOUNT")}};
    for (auto it = fixed.cbegin(); it != fixed.cend(); ++it) {
        QCOMPARE(db->scalar(QStringLiteral("SELECT PartyName FROM tblPartyInfo WHERE PartyCode = ?"), {it.key()})
                     .toString().trimmed(), it.value());
        // Each under a heading of its group.
        const QString heading = it.key().left(6) + QStringLiteral("000");
        QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo WHERE PartyCode = ?"), {heading}).toInt(), 1);
    }
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblTLClientInfo")).toInt(), 1);
    QCOMPARE(db->scalar(QStringLiteral("SELECT TLClientName FROM tblTLClientInfo")).toString(), QStringLiteral("THE PRESS"));
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblConfig")).toInt(), 1);
    QVERIFY(db->selectOne(QStringLiteral("SELECT ClosingDate FROM tblClosingDate"))->date(0).isValid());
    const auto user = db->selectOne(QStringLiteral("SELECT UserName, Password, UserType FROM tblLogon"));
    QVERIFY(user);
    QCOMPARE(user->text(QStringLiteral("UserName")).trimmed(), QStringLiteral("BOSS"));
    QCOMPARE(user->text(QStringLiteral("UserType")), QStringLiteral("ADMINISTRATOR"));
    QVERIFY(!user->text(QStringLiteral("Password")).contains(QLatin1String("pa ss")));
    QVERIFY(PasswordHash::verify(QStringLiteral("pa ss "), user->text(QStringLiteral("Password"))));
    QVERIFY(!PasswordHash::verify(QStringLiteral("pa ss"), user->text(QStringLiteral("Password"))));
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")).toInt(), 0);
}

void TestAccountYear::refusesBadNamesAndDuplicates()
{
    TESSEL_YEAR(year);
    AccountYear::CreateOptions o;
    o.adminPassword = QStringLiteral("x");
    const QStringList badNames = {QStringLiteral("Accounts2026"), QStringLiteral("tessel2026"), QStringLiteral("Tessel 2026"),
                             QStringLiteral("Tessel2026;DROP"), QStringLiteral("Tessel\"x"), QString()};
    for (const QString &bad : badNames) {
        try {
            AccountYear::create(year.profile(), bad, o);
            QFAIL(qPrintable(QStringLiteral("accepted the name ") + bad));
        } catch (const AccountYear::Error &e) {
            QVERIFY(e.message().contains(QLatin1String("Tessel")));
        }
    }
    try {
        AccountYear::create(year.profile(), year.name(), o);
        QFAIL("created an existing year again");
    } catch (const AccountYear::Error &e) {
        QVERIFY(e.message().contains(QLatin1String("already exists")));
    }
    // Other tests make and drop years on the same server meanwhile: look
    // only at the names this test tried.
    const QStringList after = AccountYear::list(year.profile());
    QCOMPARE(after.count(year.name()), 1);
    for (const QString &name : badNames)
        QVERIFY(!after.contains(name));
}

void TestAccountYear::unreachableServerSaysWhy()
{
    ConnectionProfile p = TestDb::postgresProfile();
    p.host = QStringLiteral("127.0.0.1");
    p.port = 1; // nothing listens there
    p.connectTimeoutSeconds = 2;
    try {
        AccountYear::list(p);
        QFAIL("listed years of a server that is not there");
    } catch (const DbError &e) {
        QVERIFY(!e.driverText().isEmpty());
    }
    AccountYear::CreateOptions o;
    o.adminPassword = QStringLiteral("x");
    QVERIFY_THROWS_EXCEPTION(DbError, AccountYear::create(p, QStringLiteral("TesselNowhere"), o));
    // And a missing embedded year is an error, not a new empty file.
    ConnectionProfile e = TestDb::sqliteProfile();
    QVERIFY_THROWS_EXCEPTION(DbError, SessionConnection::open(e, QStringLiteral("TesselNotThere")));
    QVERIFY(!AccountYear::list(e).contains(QStringLiteral("TesselNotThere")));
}

void TestAccountYear::defaultClosingDate_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QDate>("date");
    QTest::newRow("year in name") << "Tessel2026" << QDate(2025, 12, 31);
    QTest::newRow("year inside") << "TesselAcc2030B" << QDate(2029, 12, 31);
    QTest::newRow("no year") << "TesselDemo" << QDate::currentDate().addDays(-1);
}

void TestAccountYear::defaultClosingDate()
{
    QFETCH(QString, name);
    QFETCH(QDate, date);
    QCOMPARE(AccountYear::defaultClosingDate(name), date);
}

void TestAccountYear::passwordHash()
{
    const QString a = PasswordHash::hash(QStringLiteral("secret"));
    const QString b = PasswordHash::hash(QStringLiteral("secret"));
    QVERIFY(a != b); // salted
    QVERIFY(a.startsWith(QLatin1String("pbkdf2-sha256$")));
    QVERIFY(PasswordHash::verify(QStringLiteral("secret"), a));
    QVERIFY(!PasswordHash::verify(QStringLiteral("Secret"), a));
    QVERIFY(!PasswordHash::verify(QStringLiteral("secret "), a));
    QVERIFY(!PasswordHash::verify(QStringLiteral("secret"), QStringLiteral("secret"))); // a plain stored text never matches
    QVERIFY(!PasswordHash::verify(QString(), QString()));
}

namespace {
struct ToolRun { int code; QString out; QString err; };
ToolRun runTool(const QStringList &args, const QProcessEnvironment &env)
{
    QProcess p;
    p.setProcessEnvironment(env);
    p.start(QStringLiteral(TESSEL_BIN_DIR "/tessel-admin"), args);
    p.closeWriteChannel();
    if (!p.waitForFinished(60000))
        return {-1, QString(), QStringLiteral("timed out")};
    return {p.exitCode(), QString::fromUtf8(p.readAllStandardOutput()), QString::fromUtf8(p.readAllStandardError())};
}
} // namespace

void TestAccountYear::adminToolEmbedded()
{
    QTemporaryDir dir;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("TESSEL_DATA_DIR"), dir.path());
    env.insert(QStringLiteral("TESSEL_CONFIG"), dir.filePath(QStringLiteral("none.ini")));

    ToolRun r = runTool({QStringLiteral("create"), QStringLiteral("Tessel2026"), QStringLiteral("--password"), QStringLiteral("secret")}, env);
    QCOMPARE(r.code, 0);
    r = runTool({QStringLiteral("list")}, env);
    QCOMPARE(r.code, 0);
    QCOMPARE(r.out, QStringLiteral("Tessel2026\n"));
    r = runTool({QStringLiteral("create"), QStringLiteral("Tessel2026"), QStringLiteral("--password"), QStringLiteral("x")}, env);
    QCOMPARE(r.code, 1);
    QVERIFY(r.err.contains(QLatin1String("already exists")));
    r = runTool({QStringLiteral("create"), QStringLiteral("Books2026"), QStringLiteral("--password"), QStringLiteral("x")}, env);
    QCOMPARE(r.code, 2);
    QVERIFY(r.err.contains(QLatin1String("must begin with \"Tessel\"")));
    r = runTool({QStringLiteral("list"), QStringLiteral("--profile"), QStringLiteral("NOWHERE")}, env);
    QCOMPARE(r.code, 2);
    QVERIFY(r.err.contains(QLatin1String("NOWHERE")));
    // Nothing but the one year's file is left in the folder.
    QCOMPARE(QDir(dir.path()).entryList({QStringLiteral("*.sqlite*")}, QDir::Files), QStringList{QStringLiteral("Tessel2026.sqlite")});
}

void TestAccountYear::adminToolServer()
{
    if (!TestDb::postgresConfigured()) {
        if (TestDb::postgresRequired())
            QFAIL("no PostgreSQL test server");
        QSKIP("no PostgreSQL test server");
    }
    QTemporaryDir dir;
    const ConnectionProfile pg = TestDb::postgresProfile();
    const QString ini = dir.filePath(QStringLiteral("tessel.ini"));
    {
        QFile f(ini);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(QStringLiteral("profiles=LOCAL\n[LOCAL]\ntype=postgres\nhost=%1\nport=%2\nuser=%3\nsslmode=disable\n")
                    .arg(pg.host).arg(pg.port).arg(pg.user).toUtf8());
    }
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("TESSEL_CONFIG"), ini);
    const QString name = TestDb::uniqueName(QStringLiteral("TesselTool"));
    ToolRun r = runTool({QStringLiteral("--profile"), QStringLiteral("LOCAL"), QStringLiteral("create"), name,
                         QStringLiteral("--password"), QStringLiteral("secret")}, env);
    QCOMPARE(r.code, 0);
    auto cleanup = qScopeGuard([&] { AccountYear::drop(pg, name); });
    r = runTool({QStringLiteral("--profile"), QStringLiteral("LOCAL"), QStringLiteral("list")}, env);
    QCOMPARE(r.code, 0);
    QVERIFY(r.out.split(QLatin1Char('\n')).contains(name));
}

QTEST_GUILESS_MAIN(TestAccountYear)
#include "tst_accountyear.moc"
