#pragma once

#include "foundation/ConnectionProfile.h"
#include "foundation/Money.h"

#include <QDate>
#include <QHash>
#include <QSqlDatabase>
#include <QSqlError>
#include <QStringList>
#include <QVariant>
#include <QVector>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>

// A failed database operation: the words the database gave, and the
// statement it was running.
class DbError : public std::runtime_error
{
public:
    enum class Kind {
        Refused,         // the database refused the statement
        ConnectionLost,  // the server went away; the next command connects again
        Busy,            // another workstation holds the year's file
        FileChanged,     // the year's file was removed or replaced
    };
    // An empty text is replaced by words that say so: a message box is
    // never blank.
    DbError(const QString &driverText, const QString &sql = QString(), Kind kind = Kind::Refused);
    Kind kind() const { return m_kind; }
    QString driverText() const { return m_driverText; }
    QString sql() const { return m_sql; }
    // True when the database refused a row because a unique key holds it
    // already (a duplicate code or name saved by two workstations at once).
    bool isUniqueViolation() const;

private:
    QString m_driverText;
    QString m_sql;
    Kind m_kind = Kind::Refused;
};

// One row read from a query. Column names are matched without regard to
// case (PostgreSQL hands them back in lower case).
class Row
{
public:
    Row() = default;
    Row(std::shared_ptr<const QHash<QString, int>> index, QVector<QVariant> values);

    int columnCount() const { return m_values.size(); }
    int indexOf(const QString &column) const;
    bool has(const QString &column) const { return indexOf(column) >= 0; }

    QVariant value(int i) const { return i >= 0 && i < m_values.size() ? m_values.at(i) : QVariant(); }
    QVariant value(const QString &column) const;
    bool isNull(const QString &column) const;
    bool isNull(int i) const;

    QString text(const QString &column) const;          // null reads as ""
    QString text(int i) const;
    std::optional<Money> money(const QString &column) const; // null reads as nothing
    std::optional<Money> money(int i) const;
    Money moneyOrZero(const QString &column) const { return money(column).value_or(Money()); }
    QDate date(const QString &column) const;            // null reads as an invalid date
    QDate date(int i) const;
    qint64 integer(const QString &column, qint64 ifNull = 0) const;
    qint64 integer(int i, qint64 ifNull = 0) const;
    double number(const QString &column) const;

    const QVector<QVariant> &values() const { return m_values; }

private:
    std::shared_ptr<const QHash<QString, int>> m_index;
    QVector<QVariant> m_values;
};

// All rows of a query, read into memory.
class QueryResult
{
public:
    QStringList columns;
    QVector<Row> rows;

    bool isEmpty() const { return rows.isEmpty(); }
    int size() const { return rows.size(); }
    const Row &at(int i) const { return rows.at(i); }
    const Row &first() const { return rows.first(); }
    QVector<Row>::const_iterator begin() const { return rows.cbegin(); }
    QVector<Row>::const_iterator end() const { return rows.cend(); }
};

// The one connection of a workstation to its account year. Every statement
// the program runs goes through here, and values only ever reach SQL as
// bound parameters: positional ("?") with a QVariantList, or named
// (":name") with a QVariantMap. Money, QDate and text bind as themselves;
// this class converts them for the engine underneath.
//
// Opening a session also makes its private work tables (the staging tables
// for documents being typed) and registers the SQL functions the views use.
class SessionConnection
{
public:
    enum class Dialect { SQLite, PostgreSQL };

    struct OpenOptions
    {
        bool prepareSession = true;   // private staging tables and SQL functions
        QString password;             // overrides the profile's password when set
    };

    // Opens the account year `database` of `profile`. Throws DbError with
    // the driver's words when it cannot.
    static std::unique_ptr<SessionConnection> open(const ConnectionProfile &profile,
                                                   const QString &database);
    static std::unique_ptr<SessionConnection> open(const ConnectionProfile &profile,
                                                   const QString &database,
                                                   const OpenOptions &options);
    // The server's maintenance database (for listing, creating, dropping
    // account years). PostgreSQL only.
    static std::unique_ptr<SessionConnection> openMaintenance(const ConnectionProfile &profile,
                                                              const QString &password = QString());

    ~SessionConnection();
    SessionConnection(const SessionConnection &) = delete;
    SessionConnection &operator=(const SessionConnection &) = delete;

    Dialect dialect() const { return m_dialect; }
    // Rises each time the connection is made again after the server went
    // away. Whatever lived in the old server session (the private staging
    // tables above all) is then gone: a holder of such state compares the
    // epoch it saw with this one and writes its state again.
    quint64 connectionEpoch() const { return m_epoch; }
    // True after a statement found the server gone, until the next command
    // connects again.
    bool connectionLost() const { return m_lost; }
    // An embedded year opened from a file this workstation cannot write (an
    // archived copy): reports read it, nothing writes to it.
    bool isReadOnly() const { return m_readOnly; }
    bool isSQLite() const { return m_dialect == Dialect::SQLite; }
    bool isPostgres() const { return m_dialect == Dialect::PostgreSQL; }
    QString databaseName() const { return m_databaseName; }
    const ConnectionProfile &profile() const { return m_profile; }
    QSqlDatabase &database() { return m_db; }

    QueryResult select(const QString &sql, const QVariantList &params = {});
    QueryResult select(const QString &sql, const QVariantMap &params);
    std::optional<Row> selectOne(const QString &sql, const QVariantList &params = {});
    std::optional<Row> selectOne(const QString &sql, const QVariantMap &params);
    // First column of the first row; a null QVariant when there is no row
    // or the value is null (so a SUM over no rows is "no value", not 0).
    QVariant scalar(const QString &sql, const QVariantList &params = {});
    QVariant scalar(const QString &sql, const QVariantMap &params);
    std::optional<Money> scalarMoney(const QString &sql, const QVariantList &params = {});

    // Reads a SELECT forward only without holding its result: `each` gets
    // the rows one after another, and only the row in hand is in memory
    // (the embedded store steps its statement; a server hands the rows over
    // one at a time). `started`, when given, gets the column names before
    // the first row. Returns the number of rows read. While it reads, the
    // connection is busy: `each` must not run statements of its own.
    // A DbError thrown by the engine, or anything `each` throws, ends the
    // read and goes on to the caller.
    qint64 forEachRow(const QString &sql, const QVariantList &params, const std::function<void(const Row &)> &each,
                      const std::function<void(const QStringList &columns)> &started = {});

    // Runs a writing statement; returns the number of rows it touched.
    int execute(const QString &sql, const QVariantList &params = {});
    int execute(const QString &sql, const QVariantMap &params);
    // Runs an INSERT into a table with an identity `SrNo` and returns the
    // new key.
    qint64 insertReturningKey(const QString &sql, const QVariantList &params,
                              const QString &keyColumn = QStringLiteral("SrNo"));

    // Transactions nest: the outermost begins and commits, inner ones are
    // savepoints. Use the Transaction guard rather than these.
    void begin();
    void commit();
    void rollback();
    int transactionDepth() const { return m_depth; }

    // The report period read by the period views through ReportSDate() and
    // ReportEDate(). It belongs to this session alone.
    void setReportPeriod(const QDate &from, const QDate &to);
    QDate reportFrom() const { return m_reportFrom; }
    QDate reportTo() const { return m_reportTo; }

    // Who works through this connection, as the edit log's triggers write
    // it beside every change: the user logged on and the workstation (the
    // machine's name when none is given). Until a log-on it is the
    // program's own name. Private to this connection.
    void setActor(const QString &user, const QString &workstation = QString());
    QString actorUser() const { return m_actorUser; }
    QString actorWorkstation() const { return m_actorWorkstation; }
    // The triggers log no row while paused (EditLog::BulkScope, which logs
    // one step instead). Pauses nest; private to this connection and,
    // on the server, ended with the transaction they were made in.
    void pauseRowLog();
    void resumeRowLog();
    bool rowLogPaused() const { return m_rowLogPauses > 0; }

    // For tests: called with each statement before it runs; may throw
    // DbError to make that statement fail.
    void setStatementHook(std::function<void(const QString &sql)> hook) { m_hook = std::move(hook); }

    // The value as it should be bound for this engine.
    QVariant toBindable(const QVariant &value) const;

    // "Case-insensitive LIKE" and other small dialect differences.
    QString likeOperatorCaseInsensitive() const { return isPostgres() ? QStringLiteral("ILIKE") : QStringLiteral("LIKE"); }

private:
    SessionConnection() = default;
    struct PreparedCache;

    template <typename Params>
    QueryResult run(const QString &sql, const Params &params, bool wantRows, int *affected);
    void prepareSession();
    void setUpConnection();
    void runDirect(const QString &sql);
    [[noreturn]] void fail(const QSqlError &error, const QString &sql);
    bool looksLost(const QSqlError &error);
    void reconnectIfLost();
    bool touchesYearFile(const QString &sql);
    void lockYearFile();
    void checkYearFile();

    QSqlDatabase m_db;
    QString m_connectionName;
    QString m_databaseName;
    ConnectionProfile m_profile;
    Dialect m_dialect = Dialect::SQLite;
    int m_depth = 0;
    QDate m_reportFrom;
    QDate m_reportTo;
    std::function<void(const QString &)> m_hook;
    std::unique_ptr<PreparedCache> m_cache;
    bool m_prepareSession = true;
    quint64 m_epoch = 1;
    bool m_lost = false;
    bool m_readOnly = false;
    // The embedded year's file as opened: the session writes only while the
    // path still names that same file.
    QString m_file;
    quint64 m_fileDevice = 0;
    quint64 m_fileInode = 0;
    // The open transaction holds the year file's write lock (taken at its
    // first statement on the year's own tables, never for private work).
    bool m_yearLocked = false;
    QHash<QString, bool> m_touchesYear;
    QString m_actorUser;
    QString m_actorWorkstation;
    int m_rowLogPauses = 0;
    void applyActor();
};

// Scoped transaction: rolls back unless commit() was called. Nested guards
// become savepoints, so a rule that writes in a transaction can be called
// from another that has one open.
class Transaction
{
public:
    explicit Transaction(SessionConnection &session);
    ~Transaction();
    void commit();
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;

private:
    SessionConnection &m_session;
    bool m_done = false;
};
