#pragma once

#include "foundation/AccountYear.h"
#include "foundation/ConnectionProfile.h"
#include "foundation/SessionConnection.h"

#include <QString>
#include <QTemporaryDir>
#include <QtTest>
#include <memory>

// Account years for tests, on both engines. A test that should run on both
// takes the "backend" column:
//
//   void tst::foo_data() { TestDb::addBackends(); }
//   void tst::foo() { TESSEL_YEAR(year); auto db = year.connect(); ... }
//
// The PostgreSQL rows need a server: the test script starts a throwaway one
// and names it in TESSEL_TEST_PG_HOST / _PORT / _USER. Without it those
// rows are skipped, unless TESSEL_REQUIRE_PG is set, when they fail.
namespace TestDb {

bool postgresConfigured();
bool postgresRequired();
ConnectionProfile postgresProfile();
ConnectionProfile sqliteProfile(); // a data folder private to this test run

void addBackends(); // adds the "backend" column and its rows
ConnectionProfile profileFor(const QString &backend);

// A fresh account year, removed when the object goes.
class Year
{
public:
    explicit Year(const QString &backend, const QString &adminPassword = QStringLiteral("secret"));
    ~Year();
    Year(const Year &) = delete;
    Year &operator=(const Year &) = delete;

    std::unique_ptr<SessionConnection> connect() const;
    QString name() const { return m_name; }
    const ConnectionProfile &profile() const { return m_profile; }
    QString backend() const { return m_backend; }

private:
    QString m_backend;
    QString m_name;
    ConnectionProfile m_profile;
};

QString uniqueName(const QString &prefix = QStringLiteral("Tessel_t"));

// The first column of the first row as a count (a SELECT COUNT(*)).
inline int count(SessionConnection &db, const QString &sql, const QVariantList &params = {})
{
    return int(db.scalar(sql, params).toLongLong());
}

} // namespace TestDb

// Declares `backend` from the row's column, skipping the row when its
// server is not there (failing instead under TESSEL_REQUIRE_PG).
#define TESSEL_BACKEND()                                                                          \
    QFETCH(QString, backend);                                                                     \
    if (backend == QLatin1String("postgres") && !TestDb::postgresConfigured()) {                  \
        if (TestDb::postgresRequired())                                                           \
            QFAIL("TESSEL_REQUIRE_PG is set but no PostgreSQL test server is configured");        \
        QSKIP("no PostgreSQL test server (run the test script)");                                 \
    }

// Declares `var`, a fresh year on the row's backend, skipping the row as
// TESSEL_BACKEND does.
#define TESSEL_YEAR(var)                                                                          \
    TESSEL_BACKEND()                                                                              \
    TestDb::Year var(backend)
