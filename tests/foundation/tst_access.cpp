// Who may reach a year and how: the settings file's password, the server's
// sslmode, password hashes and their upgrade, the log-on wait kept in the
// year, passwords given to the tools, and names that stay in the data
// folder.
#include "foundation/AccountYear.h"
#include "foundation/CommandLine.h"
#include "foundation/ConnectionProfile.h"
#include "foundation/Logon.h"
#include "foundation/PasswordHash.h"
#include "support/TestDb.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QString writeSettings(const QTemporaryDir &dir, const QString &text, QFileDevice::Permissions perms)
{
    const QString path = dir.filePath(QStringLiteral("tessel.ini"));
    QFile f(path);
    f.open(QIODevice::WriteOnly | QIODevice::Truncate);
    f.write(text.toUtf8());
    f.close();
    QFile::setPermissions(path, perms);
    return path;
}

const QFileDevice::Permissions kOwnerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
const QFileDevice::Permissions kWorldReadable = kOwnerOnly | QFileDevice::ReadGroup | QFileDevice::ReadOther;

struct ToolRun { int code; QString out; QString err; };
ToolRun runTool(const QString &tool, const QStringList &args, const QProcessEnvironment &env, const QByteArray &input = {})
{
    QProcess p;
    p.setProcessEnvironment(env);
    p.start(QStringLiteral(TESSEL_BIN_DIR "/") + tool, args);
    p.write(input);
    p.closeWriteChannel();
    if (!p.waitForFinished(120000))
        return {-1, QString(), QStringLiteral("timed out")};
    return {p.exitCode(), QString::fromUtf8(p.readAllStandardOutput()), QString::fromUtf8(p.readAllStandardError())};
}

QString storedPassword(SessionConnection &db, const QString &user)
{
    return db.scalar(QStringLiteral("SELECT Password FROM tblLogon WHERE UserName = ?"), {user}).toString();
}

} // namespace

class TestAccess : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void settingsFileWithPassword_data();
    void settingsFileWithPassword();
    void sslModes_data();
    void sslModes();
    void hashWorkAndUpgrade();
    void logonWaitIsKeptInTheYear_data() { TestDb::addBackends(); }
    void logonWaitIsKeptInTheYear();
    void toolsTakePasswordsFromStandardInput();
    void namesStayInTheDataFolder();
};

void TestAccess::settingsFileWithPassword_data()
{
    QTest::addColumn<QString>("password");
    QTest::addColumn<bool>("worldReadable");
    QTest::addColumn<bool>("refused");
    QTest::newRow("password, owner only") << "pw" << false << false;
    QTest::newRow("password, others read") << "pw" << true << true;
    QTest::newRow("no password, others read") << "" << true << false;
}

void TestAccess::settingsFileWithPassword()
{
    QFETCH(QString, password);
    QFETCH(bool, worldReadable);
    QFETCH(bool, refused);
    QTemporaryDir dir;
    const QString path = writeSettings(
        dir, QStringLiteral("profiles=OFFICE\n[OFFICE]\ntype=postgres\nhost=db.example\nuser=press\npassword=%1\n").arg(password),
        worldReadable ? kWorldReadable : kOwnerOnly);
    const AppSettings s = AppSettings::load(path);
    if (refused) {
        QVERIFY(s.error.contains(QLatin1String("chmod 600")));
        QVERIFY(!s.profile(QStringLiteral("OFFICE")));
        // The tools refuse it too, with the same words.
        ConnectionProfile p;
        QString error;
        QVERIFY(!CommandLine::resolveProfile(QStringLiteral("OFFICE"), path, p, error));
        QCOMPARE(error, s.error);
    } else {
        QVERIFY(s.error.isEmpty());
        QCOMPARE(s.profile(QStringLiteral("OFFICE"))->password, password);
    }
}

void TestAccess::sslModes_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<bool>("known");
    for (const char *m : {"disable", "allow", "prefer", "require", "verify-ca", "verify-full", ""})
        QTest::newRow(*m ? m : "default") << QString::fromLatin1(m) << true;
    QTest::newRow("unknown word") << "secure" << false;
    QTest::newRow("another option smuggled in") << "disable host=elsewhere" << false;
    QTest::newRow("case counts") << "Require" << false;
}

void TestAccess::sslModes()
{
    QFETCH(QString, mode);
    QFETCH(bool, known);
    QCOMPARE(ConnectionProfile::isValidSslMode(mode), known);
    QTemporaryDir dir;
    const QString path = writeSettings(dir, QStringLiteral("profiles=OFFICE\n[OFFICE]\ntype=postgres\nsslmode=%1\n").arg(mode),
                                       kOwnerOnly);
    QCOMPARE(AppSettings::load(path).error.isEmpty(), known);
    if (!known) { // whoever builds the profile, the connection refuses it
        ConnectionProfile p = TestDb::postgresProfile();
        p.port = 1;
        p.sslMode = mode;
        try {
            SessionConnection::open(p, QStringLiteral("TesselX"));
            QFAIL("opened with an unknown sslmode");
        } catch (const DbError &e) {
            QVERIFY(e.driverText().contains(QLatin1String("sslmode")));
        }
    }
}

void TestAccess::hashWorkAndUpgrade()
{
    QVERIFY(PasswordHash::kIterations >= 600000);
    PasswordHash::setIterationsForTests(PasswordHash::kIterations);
    const QString strong = PasswordHash::hash(QStringLiteral("secret"));
    QVERIFY(strong.startsWith(QStringLiteral("pbkdf2-sha256$%1$").arg(PasswordHash::kIterations)));
    QVERIFY(PasswordHash::verify(QStringLiteral("secret"), strong));
    QVERIFY(!PasswordHash::needsUpgrade(strong));

    // A year whose hashes are older, weaker ones: the next good log-on
    // stores the password again with today's work; a bad one changes nothing.
    PasswordHash::setIterationsForTests(1000);
    TestDb::Year year(QStringLiteral("sqlite"));
    auto db = year.connect();
    const QString weak = storedPassword(*db, QStringLiteral("ADMIN"));
    PasswordHash::setIterationsForTests(2000);
    QVERIFY(PasswordHash::needsUpgrade(weak));
    QVERIFY(!Logon::check(*db, QStringLiteral("ADMIN"), QStringLiteral("wrong")).ok);
    QCOMPARE(storedPassword(*db, QStringLiteral("ADMIN")), weak);
    QVERIFY(Logon::check(*db, QStringLiteral("ADMIN"), QStringLiteral("secret")).ok);
    const QString upgraded = storedPassword(*db, QStringLiteral("ADMIN"));
    QVERIFY(upgraded.startsWith(QLatin1String("pbkdf2-sha256$2000$")));
    QVERIFY(PasswordHash::verify(QStringLiteral("secret"), upgraded));
    PasswordHash::setIterationsForTests(1000);
}

void TestAccess::logonWaitIsKeptInTheYear()
{
    TESSEL_YEAR(year); // ADMIN / "secret"
    const QDateTime t0 = QDateTime::currentDateTimeUtc();
    {
        auto db = year.connect();
        for (int i = 0; i < 3; ++i) {
            const Logon::Result r = Logon::check(*db, QStringLiteral("ADMIN"), QStringLiteral("guess"), t0);
            QVERIFY(!r.ok);
            QCOMPARE(r.message, Logon::invalidMessage());
        }
    }
    // The program is started again: the wait still holds, even for the right password.
    auto db = year.connect();
    Logon::Result r = Logon::check(*db, QStringLiteral("  ADMIN "), QStringLiteral("secret"), t0.addMSecs(10));
    QVERIFY(!r.ok);
    QVERIFY(r.waitMs > 0 && r.waitMs <= Logon::delayMsAfterFailures(3));
    QCOMPARE(r.message, Logon::waitMessage(r.waitMs));
    // Another name does not wait for this one.
    QCOMPARE(Logon::check(*db, QStringLiteral("CLERK"), QStringLiteral("x"), t0.addMSecs(10)).message, Logon::invalidMessage());
    // Once the wait is over the right password passes and the count starts again.
    r = Logon::check(*db, QStringLiteral("ADMIN"), QStringLiteral("secret"), t0.addSecs(60));
    QVERIFY(r.ok);
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblLogonAttempt WHERE UserName = 'ADMIN'")), 0);
    QVERIFY(!Logon::check(*db, QStringLiteral("ADMIN"), QStringLiteral("guess"), t0.addSecs(61)).waitMs);
}

void TestAccess::toolsTakePasswordsFromStandardInput()
{
    QTemporaryDir dir;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("TESSEL_DATA_DIR"), dir.path());
    env.insert(QStringLiteral("TESSEL_CONFIG"), dir.filePath(QStringLiteral("none.ini")));
    struct Case { const char *year; QStringList args; };
    const Case cases[] = {
        {"TesselDash", {QStringLiteral("--password"), QStringLiteral("-")}},
        {"TesselAsked", {}},
    };
    for (const Case &c : cases) {
        const QString name = QString::fromLatin1(c.year);
        const ToolRun r = runTool(QStringLiteral("tessel-admin"), QStringList{QStringLiteral("create"), name} + c.args, env,
                                  "from stdin\n");
        QVERIFY2(r.code == 0, qPrintable(r.err));
        ConnectionProfile profile = ConnectionProfile::embeddedDefault();
        profile.dataDir = dir.path();
        auto db = SessionConnection::open(profile, name);
        QVERIFY(PasswordHash::verify(QStringLiteral("from stdin"), storedPassword(*db, QStringLiteral("ADMIN"))));
    }
}

void TestAccess::namesStayInTheDataFolder()
{
    QTemporaryDir root;
    const QString data = root.filePath(QStringLiteral("data"));
    QDir().mkpath(data);
    ConnectionProfile profile = ConnectionProfile::embeddedDefault();
    profile.dataDir = data;
    // A file beside the data folder that a crafted name would reach.
    QFile outside(root.filePath(QStringLiteral("Tessel2026.creating.sqlite")));
    QVERIFY(outside.open(QIODevice::WriteOnly));
    outside.close();
    for (const QString &bad : {QStringLiteral("../Tessel2026.creating"), QStringLiteral("Tessel2026/../../x.creating"),
                               QStringLiteral("/tmp/Tessel2026"), QStringLiteral("x.creating")})
        QVERIFY_THROWS_EXCEPTION(AccountYear::Error, AccountYear::drop(profile, bad));
    QVERIFY(outside.exists());
    QVERIFY_THROWS_EXCEPTION(DbError, SessionConnection::open(profile, QStringLiteral("../Tessel2026.creating")));

    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("TESSEL_DATA_DIR"), data);
    env.insert(QStringLiteral("TESSEL_CONFIG"), root.filePath(QStringLiteral("none.ini")));
    for (const QString &year : {QStringLiteral("../Tessel2026.creating"), root.filePath(QStringLiteral("Tessel2026"))}) {
        const ToolRun r = runTool(QStringLiteral("tessel-report"),
                                  {QStringLiteral("--year"), year, QStringLiteral("--design"), QStringLiteral("crChartOfAccount"),
                                   QStringLiteral("--out"), root.filePath(QStringLiteral("x.csv"))},
                                  env);
        QCOMPARE(r.code, 2);
        QVERIFY(r.err.contains(QLatin1String("is not an account-year name")));
    }
}

QTEST_GUILESS_MAIN(TestAccess)
#include "tst_access.moc"
