#include "support/TestDb.h"

#include "foundation/PasswordHash.h"

#include <QCoreApplication>
#include <QRandomGenerator>

namespace {
// The tests make hundreds of years and users: hash their passwords with
// little work (the program's own work is tested where hashes are).
[[maybe_unused]] const bool g_fastHashes = [] {
    PasswordHash::setIterationsForTests(1000);
    return true;
}();
} // namespace

namespace TestDb {

bool postgresConfigured() { return !qEnvironmentVariableIsEmpty("TESSEL_TEST_PG_PORT"); }
bool postgresRequired() { return !qEnvironmentVariableIsEmpty("TESSEL_REQUIRE_PG"); }

ConnectionProfile postgresProfile()
{
    ConnectionProfile p;
    p.name = QStringLiteral("TESTSERVER");
    p.kind = ConnectionProfile::Kind::PostgreSQL;
    p.host = qEnvironmentVariable("TESSEL_TEST_PG_HOST", QStringLiteral("127.0.0.1"));
    p.port = qEnvironmentVariableIntValue("TESSEL_TEST_PG_PORT");
    p.user = qEnvironmentVariable("TESSEL_TEST_PG_USER", QStringLiteral("postgres"));
    p.password = qEnvironmentVariable("TESSEL_TEST_PG_PASSWORD");
    p.sslMode = QStringLiteral("disable");
    return p;
}

ConnectionProfile sqliteProfile()
{
    static QTemporaryDir dir(QDir::tempPath() + QStringLiteral("/tessel-test-XXXXXX"));
    ConnectionProfile p = ConnectionProfile::embeddedDefault();
    p.dataDir = dir.path();
    return p;
}

void addBackends()
{
    QTest::addColumn<QString>("backend");
    QTest::newRow("sqlite") << QStringLiteral("sqlite");
    QTest::newRow("postgres") << QStringLiteral("postgres");
}

ConnectionProfile profileFor(const QString &backend)
{
    return backend == QLatin1String("postgres") ? postgresProfile() : sqliteProfile();
}

QString uniqueName(const QString &prefix)
{
    return QStringLiteral("%1_%2_%3")
        .arg(prefix)
        .arg(QCoreApplication::applicationPid())
        .arg(QRandomGenerator::global()->bounded(100000000));
}

Year::Year(const QString &backend, const QString &adminPassword)
    : m_backend(backend), m_name(uniqueName()), m_profile(profileFor(backend))
{
    AccountYear::CreateOptions o;
    o.adminPassword = adminPassword;
    o.closingDate = QDate(2025, 12, 31);
    AccountYear::create(m_profile, m_name, o);
}

Year::~Year()
{
    try {
        AccountYear::drop(m_profile, m_name);
    } catch (...) {
    }
}

std::unique_ptr<SessionConnection> Year::connect() const
{
    return SessionConnection::open(m_profile, m_name);
}

} // namespace TestDb
