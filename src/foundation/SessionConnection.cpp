#include "foundation/SessionConnection.h"
#include "foundation/Schema.h"

#include <QAtomicInteger>
#include <QCoreApplication>
#include <QSysInfo>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QRegularExpression>
#include <QSet>
#include <QUrl>
#include <list>
#include <sqlite3.h>
#include <sys/stat.h>

// ---------------------------------------------------------------- DbError

namespace {
QString nonEmpty(const QString &text)
{
    return text.trimmed().isEmpty() ? QStringLiteral("The database refused the command and gave no reason.") : text;
}
} // namespace

DbError::DbError(const QString &driverText, const QString &sql, Kind kind)
    : std::runtime_error(nonEmpty(driverText).toStdString()), m_driverText(nonEmpty(driverText)), m_sql(sql),
      m_kind(kind)
{
}

bool DbError::isUniqueViolation() const
{
    return m_driverText.contains(QLatin1String("UNIQUE constraint failed"), Qt::CaseInsensitive)
        || m_driverText.contains(QLatin1String("duplicate key value"), Qt::CaseInsensitive)
        || m_driverText.contains(QLatin1String("unique constraint"), Qt::CaseInsensitive);
}

// ---------------------------------------------------------------- Row

Row::Row(std::shared_ptr<const QHash<QString, int>> index, QVector<QVariant> values)
    : m_index(std::move(index)), m_values(std::move(values))
{
}

int Row::indexOf(const QString &column) const
{
    if (!m_index)
        return -1;
    return m_index->value(column.toLower(), -1);
}

QVariant Row::value(const QString &column) const { return value(indexOf(column)); }
bool Row::isNull(int i) const { const QVariant v = value(i); return !v.isValid() || v.isNull(); }
bool Row::isNull(const QString &column) const { return isNull(indexOf(column)); }

QString Row::text(int i) const
{
    const QVariant v = value(i);
    if (!v.isValid() || v.isNull())
        return QString();
    if (v.metaType().id() == QMetaType::QDate)
        return v.toDate().toString(QStringLiteral("dd/MM/yyyy"));
    return v.toString();
}
QString Row::text(const QString &column) const { return text(indexOf(column)); }

std::optional<Money> Row::money(int i) const { return Money::fromVariant(value(i)); }
std::optional<Money> Row::money(const QString &column) const { return money(indexOf(column)); }

QDate Row::date(int i) const
{
    const QVariant v = value(i);
    if (!v.isValid() || v.isNull())
        return QDate();
    if (v.metaType().id() == QMetaType::QDate)
        return v.toDate();
    if (v.metaType().id() == QMetaType::QDateTime)
        return v.toDateTime().date();
    const QString s = v.toString().trimmed();
    QDate d = QDate::fromString(s.left(10), QStringLiteral("yyyy-MM-dd"));
    if (!d.isValid())
        d = QDate::fromString(s.left(10), QStringLiteral("dd/MM/yyyy"));
    return d;
}
QDate Row::date(const QString &column) const { return date(indexOf(column)); }

qint64 Row::integer(int i, qint64 ifNull) const
{
    const QVariant v = value(i);
    if (!v.isValid() || v.isNull())
        return ifNull;
    bool ok = false;
    qint64 n = v.toLongLong(&ok);
    if (ok)
        return n;
    double d = v.toString().toDouble(&ok);
    return ok ? static_cast<qint64>(d) : ifNull;
}
qint64 Row::integer(const QString &column, qint64 ifNull) const { return integer(indexOf(column), ifNull); }

double Row::number(const QString &column) const
{
    const QVariant v = value(column);
    return v.isNull() ? 0.0 : v.toString().toDouble();
}

// ---------------------------------------------------------------- cache

// Prepared statements, kept for reuse: a voucher save runs the same few
// statements many times, and re-preparing costs a round trip on a server.
struct SessionConnection::PreparedCache
{
    static constexpr int kLimit = 96;
    std::list<std::pair<QString, QSqlQuery>> entries; // most recent first

    QSqlQuery *find(const QString &sql)
    {
        for (auto it = entries.begin(); it != entries.end(); ++it) {
            if (it->first == sql) {
                entries.splice(entries.begin(), entries, it);
                return &entries.front().second;
            }
        }
        return nullptr;
    }
    QSqlQuery *add(const QString &sql, QSqlQuery q)
    {
        entries.emplace_front(sql, std::move(q));
        while (static_cast<int>(entries.size()) > kLimit)
            entries.pop_back();
        return &entries.front().second;
    }
    void clear() { entries.clear(); }
};

// ---------------------------------------------------------------- SQLite functions

namespace {

QAtomicInteger<quint64> g_connectionCounter;

int dateField(sqlite3_value *v, int start, int len)
{
    if (sqlite3_value_type(v) == SQLITE_NULL)
        return -1;
    const unsigned char *t = sqlite3_value_text(v);
    if (!t)
        return -1;
    QByteArray s(reinterpret_cast<const char *>(t));
    s = s.trimmed();
    if (s.size() < 10)
        return -1;
    if (s.at(4) == '-') // yyyy-MM-dd
        return s.mid(start, len).toInt();
    if (s.at(2) == '/') { // dd/MM/yyyy
        if (start == 0)
            return s.mid(6, 4).toInt();
        if (start == 5)
            return s.mid(3, 2).toInt();
        return s.mid(0, 2).toInt();
    }
    return -1;
}

void sqlMonth(sqlite3_context *ctx, int, sqlite3_value **argv)
{
    int m = dateField(argv[0], 5, 2);
    if (m < 0) sqlite3_result_null(ctx); else sqlite3_result_int(ctx, m);
}
void sqlYear(sqlite3_context *ctx, int, sqlite3_value **argv)
{
    int y = dateField(argv[0], 0, 4);
    if (y < 0) sqlite3_result_null(ctx); else sqlite3_result_int(ctx, y);
}
void sqlDay(sqlite3_context *ctx, int, sqlite3_value **argv)
{
    int d = dateField(argv[0], 8, 2);
    if (d < 0) sqlite3_result_null(ctx); else sqlite3_result_int(ctx, d);
}

struct PeriodRef { const SessionConnection *session; bool from; };

void sqlReportDate(sqlite3_context *ctx, int, sqlite3_value **)
{
    auto *ref = static_cast<PeriodRef *>(sqlite3_user_data(ctx));
    const QDate d = ref->from ? ref->session->reportFrom() : ref->session->reportTo();
    if (!d.isValid()) {
        sqlite3_result_null(ctx);
        return;
    }
    const QByteArray t = d.toString(Qt::ISODate).toLatin1();
    sqlite3_result_text(ctx, t.constData(), t.size(), SQLITE_TRANSIENT);
}

// The edit log's triggers ask the connection who is working and whether
// rows are logged.
void sqlLogUser(sqlite3_context *ctx, int, sqlite3_value **)
{
    const QByteArray t = static_cast<const SessionConnection *>(sqlite3_user_data(ctx))->actorUser().toUtf8();
    sqlite3_result_text(ctx, t.constData(), t.size(), SQLITE_TRANSIENT);
}
void sqlLogWorkstation(sqlite3_context *ctx, int, sqlite3_value **)
{
    const QByteArray t = static_cast<const SessionConnection *>(sqlite3_user_data(ctx))->actorWorkstation().toUtf8();
    sqlite3_result_text(ctx, t.constData(), t.size(), SQLITE_TRANSIENT);
}
void sqlRowLog(sqlite3_context *ctx, int, sqlite3_value **)
{
    sqlite3_result_int(ctx, static_cast<const SessionConnection *>(sqlite3_user_data(ctx))->rowLogPaused() ? 0 : 1);
}

sqlite3 *sqliteHandle(QSqlDatabase &db)
{
    QVariant v = db.driver()->handle();
    if (!v.isValid() || qstrcmp(v.typeName(), "sqlite3*") != 0)
        return nullptr;
    return *static_cast<sqlite3 **>(v.data());
}

bool isDdl(const QString &sql)
{
    const QString head = sql.trimmed().left(8).toUpper();
    return head.startsWith(QLatin1String("CREATE")) || head.startsWith(QLatin1String("DROP"))
        || head.startsWith(QLatin1String("ALTER"));
}

QString errorText(const QSqlError &e)
{
    QString t = e.databaseText().trimmed();
    if (t.isEmpty())
        t = e.text().trimmed();
    if (t.isEmpty())
        t = e.driverText().trimmed();
    return t;
}

} // namespace

// ---------------------------------------------------------------- open

std::unique_ptr<SessionConnection> SessionConnection::open(const ConnectionProfile &profile,
                                                           const QString &database)
{
    return open(profile, database, OpenOptions());
}

std::unique_ptr<SessionConnection> SessionConnection::open(const ConnectionProfile &profile,
                                                           const QString &database,
                                                           const OpenOptions &options)
{
    std::unique_ptr<SessionConnection> s(new SessionConnection());
    s->m_profile = profile;
    s->m_databaseName = database;
    s->m_cache = std::make_unique<PreparedCache>();
    s->m_connectionName = QStringLiteral("tessel-%1").arg(++g_connectionCounter);

    if (profile.isEmbedded()) {
        s->m_dialect = Dialect::SQLite;
        // A year is a file of the data folder, named by its year name alone.
        if (database.isEmpty() || database.startsWith(QLatin1Char('.')) || database.contains(QLatin1Char('/'))
            || database.contains(QLatin1Char('\\')))
            throw DbError(QStringLiteral("\"%1\" is not an account-year name.").arg(database));
        const QString file = QDir(profile.dataDir).filePath(database + QStringLiteral(".sqlite"));
        if (!QFileInfo::exists(file))
            throw DbError(QStringLiteral("The account year %1 was not found in %2.")
                              .arg(database, QDir::toNativeSeparators(profile.dataDir)));
        s->m_db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), s->m_connectionName);
        // An archived copy the workstation cannot write opens for reading,
        // as a file that does not change (no write-ahead files are made
        // beside it, so a read-only folder or disc serves too).
        s->m_readOnly = !QFileInfo(file).isWritable();
        if (s->m_readOnly) {
            QUrl url = QUrl::fromLocalFile(file);
            url.setQuery(QStringLiteral("immutable=1"));
            s->m_db.setDatabaseName(url.toString(QUrl::FullyEncoded));
            s->m_db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_URI;QSQLITE_OPEN_READONLY"));
        } else {
            s->m_db.setDatabaseName(file);
            s->m_db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=15000"));
        }
        s->m_file = file;
        struct stat st {};
        if (::stat(QFile::encodeName(file).constData(), &st) == 0) {
            s->m_fileDevice = quint64(st.st_dev);
            s->m_fileInode = quint64(st.st_ino);
        }
    } else {
        s->m_dialect = Dialect::PostgreSQL;
        if (!ConnectionProfile::isValidSslMode(profile.sslMode))
            throw DbError(QStringLiteral("The sslmode \"%1\" is not one the server driver knows: use disable, allow, "
                                         "prefer, require, verify-ca or verify-full.").arg(profile.sslMode));
        s->m_db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), s->m_connectionName);
        s->m_db.setDatabaseName(database);
        if (!profile.host.isEmpty())
            s->m_db.setHostName(profile.host);
        if (profile.port > 0)
            s->m_db.setPort(profile.port);
        if (!profile.user.isEmpty())
            s->m_db.setUserName(profile.user);
        const QString password = options.password.isEmpty() ? profile.password : options.password;
        if (!password.isEmpty())
            s->m_db.setPassword(password);
        QStringList opts;
        opts << QStringLiteral("connect_timeout=%1").arg(qMax(1, profile.connectTimeoutSeconds));
        if (!profile.sslMode.isEmpty())
            opts << QStringLiteral("sslmode=%1").arg(profile.sslMode);
        opts << QStringLiteral("application_name=tessel");
        s->m_db.setConnectOptions(opts.join(QLatin1Char(';')));
    }
    s->m_db.setNumericalPrecisionPolicy(QSql::HighPrecision);

    if (!s->m_db.open()) {
        const QString why = errorText(s->m_db.lastError());
        throw DbError(why.isEmpty() ? QStringLiteral("The database could not be opened.") : why);
    }

    if (s->isSQLite()) {
        sqlite3 *h = sqliteHandle(s->m_db);
        if (!h)
            throw DbError(QStringLiteral("The SQLite driver gave no handle."));
        const int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC;
        sqlite3_create_function_v2(h, "Month", 1, flags, nullptr, sqlMonth, nullptr, nullptr, nullptr);
        sqlite3_create_function_v2(h, "Year", 1, flags, nullptr, sqlYear, nullptr, nullptr, nullptr);
        sqlite3_create_function_v2(h, "Day", 1, flags, nullptr, sqlDay, nullptr, nullptr, nullptr);
        auto *fromRef = new PeriodRef{s.get(), true};
        auto *toRef = new PeriodRef{s.get(), false};
        auto destroy = [](void *p) { delete static_cast<PeriodRef *>(p); };
        sqlite3_create_function_v2(h, "ReportSDate", 0, SQLITE_UTF8, fromRef, sqlReportDate, nullptr, nullptr, destroy);
        sqlite3_create_function_v2(h, "ReportEDate", 0, SQLITE_UTF8, toRef, sqlReportDate, nullptr, nullptr, destroy);
        sqlite3_create_function_v2(h, "TesselLogUser", 0, SQLITE_UTF8, s.get(), sqlLogUser, nullptr, nullptr, nullptr);
        sqlite3_create_function_v2(h, "TesselLogWorkstation", 0, SQLITE_UTF8, s.get(), sqlLogWorkstation, nullptr,
                                   nullptr, nullptr);
        sqlite3_create_function_v2(h, "TesselRowLog", 0, SQLITE_UTF8, s.get(), sqlRowLog, nullptr, nullptr, nullptr);
        if (!s->m_readOnly)
            s->runDirect(QStringLiteral("PRAGMA journal_mode=WAL"));
        s->runDirect(QStringLiteral("PRAGMA synchronous=NORMAL"));
        s->runDirect(QStringLiteral("PRAGMA temp_store=MEMORY"));
        s->runDirect(QStringLiteral("PRAGMA cache_size=-65536"));
    }
    s->m_prepareSession = options.prepareSession;
    s->m_actorUser = QCoreApplication::applicationName().toUpper();
    s->m_actorWorkstation = QSysInfo::machineHostName().toUpper();
    s->setUpConnection();
    return s;
}

// What every new server session needs: the date style, this session's
// report period, and the private staging tables and views.
void SessionConnection::setUpConnection()
{
    if (isPostgres()) {
        runDirect(QStringLiteral("SET DateStyle TO ISO, DMY"));
        runDirect(QStringLiteral("SET client_min_messages TO WARNING"));
        if (m_reportFrom.isValid() || m_reportTo.isValid())
            setReportPeriod(m_reportFrom, m_reportTo);
        applyActor();
    }
    if (m_prepareSession)
        prepareSession();
}

void SessionConnection::reconnectIfLost()
{
    if (!m_lost || m_depth > 0)
        return;
    m_cache->clear();
    m_db.close();
    if (!m_db.open())
        throw DbError(QStringLiteral("The connection to the database server was lost and could not be made again "
                                     "(%1). Nothing was saved; please try again when the server is back.")
                          .arg(nonEmpty(errorText(m_db.lastError()))),
                      QString(), DbError::Kind::ConnectionLost);
    m_lost = false;
    ++m_epoch;
    try {
        setUpConnection();
    } catch (const DbError &) {
        m_lost = true;
        throw;
    }
}

// A statement failed: was it the server going away? The client library
// gives connection failures no SQLSTATE, the server says class 08 or
// 57P01..57P03 (shut down, crashed, cannot connect now).
bool SessionConnection::looksLost(const QSqlError &error)
{
    if (!isPostgres())
        return false;
    const QString state = error.nativeErrorCode().trimmed();
    if (state.startsWith(QLatin1String("08")) || state.startsWith(QLatin1String("57P0")))
        return true;
    if (!state.isEmpty() && state.size() == 5)
        return false;
    QSqlQuery probe(m_db);
    if (probe.exec(QStringLiteral("SELECT 1")))
        return false;
    const QString probeState = probe.lastError().nativeErrorCode().trimmed();
    return probeState.size() != 5 || probeState.startsWith(QLatin1String("08"))
        || probeState.startsWith(QLatin1String("57P0"));
}

void SessionConnection::fail(const QSqlError &error, const QString &sql)
{
    const QString why = nonEmpty(errorText(error));
    if (looksLost(error)) {
        m_lost = true;
        m_cache->clear();
        throw DbError(QStringLiteral("The connection to the database server was lost (%1). Nothing of this command "
                                     "was saved; the next command connects again.").arg(why),
                      sql, DbError::Kind::ConnectionLost);
    }
    const QString code = error.nativeErrorCode();
    const bool busy = code == QLatin1String("5") || code == QLatin1String("6") || code == QLatin1String("517")
        || why.contains(QLatin1String("database is locked")) || why.contains(QLatin1String("database table is locked"));
    if (isSQLite() && busy)
        throw DbError(QStringLiteral("Another workstation is saving to this account year at the moment, so nothing "
                                     "was saved. Please try again in a moment; what you typed is kept (%1).").arg(why),
                      sql, DbError::Kind::Busy);
    throw DbError(why, sql);
}

// True when a statement reads or writes the year's own tables or views,
// not only this session's private staging.
bool SessionConnection::touchesYearFile(const QString &sql)
{
    auto it = m_touchesYear.constFind(sql);
    if (it != m_touchesYear.constEnd())
        return *it;
    // The year's permanent tables and views; the staging tables and the
    // session's views over them are not among them.
    static const QSet<QString> yearNames = [] {
        QSet<QString> names;
        for (const Schema::Table &t : Schema::tables())
            names.insert(t.name.toLower());
        for (const Schema::ViewFile &v : Schema::viewFiles(QStringLiteral("views"), false))
            names.insert(v.name.toLower());
        return names;
    }();
    static const QRegularExpression word(QStringLiteral("[A-Za-z_][A-Za-z0-9_]*"));
    bool touches = false;
    for (auto m = word.globalMatch(sql); m.hasNext();) {
        const QString w = m.next().captured(0).toLower();
        if (yearNames.contains(w)) {
            touches = true;
            break;
        }
    }
    m_touchesYear.insert(sql, touches);
    return touches;
}

void SessionConnection::checkYearFile()
{
    if (m_file.isEmpty())
        return;
    struct stat st {};
    if (::stat(QFile::encodeName(m_file).constData(), &st) != 0 || quint64(st.st_dev) != m_fileDevice
        || quint64(st.st_ino) != m_fileInode)
        throw DbError(QStringLiteral("The account year file %1 was removed or replaced after this program opened "
                                     "it, so nothing was saved. Close the program and open the year again.")
                          .arg(QDir::toNativeSeparators(m_file)),
                      QString(), DbError::Kind::FileChanged);
}

// The embedded store: a transaction takes the year file's write lock at its
// first statement on the year's tables (as BEGIN IMMEDIATE would), so that
// work on the private staging tables never waits for another workstation.
// A write that changes nothing takes the lock without reading first, so no
// other writer can slip in between.
void SessionConnection::lockYearFile()
{
    checkYearFile();
    m_yearLocked = true;
    if (m_readOnly)
        return; // a read-only year is only read; a write fails with the driver's words
    try {
        runDirect(QStringLiteral("UPDATE tblConfig SET UpdateStatus = UpdateStatus WHERE 0 = 1"));
    } catch (const DbError &e) {
        // A year still being made has no tables yet: its first statement
        // creates one and so takes the lock itself.
        if (!e.driverText().contains(QLatin1String("no such table")))
            throw;
    }
}

std::unique_ptr<SessionConnection> SessionConnection::openMaintenance(const ConnectionProfile &profile,
                                                                      const QString &password)
{
    if (!profile.isPostgres())
        throw DbError(QStringLiteral("The embedded store has no server to connect to."));
    OpenOptions o;
    o.prepareSession = false;
    o.password = password;
    return open(profile, profile.maintenanceDatabase, o);
}

SessionConnection::~SessionConnection()
{
    if (m_cache)
        m_cache->clear();
    if (m_db.isValid()) {
        if (m_depth > 0) {
            QSqlQuery q(m_db);
            q.exec(QStringLiteral("ROLLBACK"));
        }
        m_db.close();
    }
    m_db = QSqlDatabase();
    if (!m_connectionName.isEmpty())
        QSqlDatabase::removeDatabase(m_connectionName);
}

void SessionConnection::prepareSession()
{
    Schema::createSessionObjects(*this);
}

void SessionConnection::runDirect(const QString &sql)
{
    if (m_hook)
        m_hook(sql);
    QSqlQuery q(m_db);
    if (!q.exec(sql))
        fail(q.lastError(), sql);
    if (isDdl(sql))
        m_cache->clear();
}

// ---------------------------------------------------------------- statements

QVariant SessionConnection::toBindable(const QVariant &value) const
{
    if (!value.isValid())
        return QVariant(QMetaType::fromType<QString>());
    const int type = value.metaType().id();
    if (value.metaType() == QMetaType::fromType<Money>()) {
        const Money m = value.value<Money>();
        if (isSQLite()) {
            if (m.cents() % 100 == 0)
                return QVariant(static_cast<qlonglong>(m.cents() / 100));
            return QVariant(m.toDouble());
        }
        return QVariant(m.toPlainString());
    }
    if (type == QMetaType::QDate) {
        const QDate d = value.toDate();
        if (!d.isValid() || value.isNull())
            return QVariant(QMetaType::fromType<QString>());
        return isSQLite() ? QVariant(d.toString(Qt::ISODate)) : QVariant(d);
    }
    if (type == QMetaType::QDateTime && isSQLite()) {
        return QVariant(value.toDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")));
    }
    if (type == QMetaType::Bool)
        return QVariant(value.toBool() ? 1 : 0);
    if (type == QMetaType::Int || type == QMetaType::UInt || type == QMetaType::Long)
        return QVariant(value.toLongLong());
    return value;
}

namespace {
void bindAll(QSqlQuery &q, const QVariantList &params, const SessionConnection &s)
{
    for (int i = 0; i < params.size(); ++i)
        q.bindValue(i, s.toBindable(params.at(i)));
}
void bindAll(QSqlQuery &q, const QVariantMap &params, const SessionConnection &s)
{
    for (auto it = params.cbegin(); it != params.cend(); ++it) {
        const QString key = it.key().startsWith(QLatin1Char(':')) ? it.key() : QLatin1Char(':') + it.key();
        q.bindValue(key, s.toBindable(it.value()));
    }
}
} // namespace

template <typename Params>
QueryResult SessionConnection::run(const QString &sql, const Params &params, bool wantRows, int *affected)
{
    reconnectIfLost();
    if (isSQLite() && m_depth > 0 && !m_yearLocked && touchesYearFile(sql))
        lockYearFile();
    if (m_hook)
        m_hook(sql);

    QueryResult result;
    QSqlQuery direct(m_db);
    QSqlQuery *q = nullptr;
    const bool ddl = isDdl(sql);
    if (params.isEmpty() || ddl) {
        q = &direct;
        q->setForwardOnly(true);
        if (!q->exec(sql))
            fail(q->lastError(), sql);
    } else {
        q = m_cache->find(sql);
        if (!q) {
            QSqlQuery fresh(m_db);
            fresh.setForwardOnly(true);
            if (!fresh.prepare(sql))
                fail(fresh.lastError(), sql);
            q = m_cache->add(sql, std::move(fresh));
        }
        bindAll(*q, params, *this);
        if (!q->exec()) {
            const QSqlError error = q->lastError();
            q->finish();
            fail(error, sql);
        }
    }

    if (q->isSelect()) {
        const QSqlRecord rec = q->record();
        auto index = std::make_shared<QHash<QString, int>>();
        for (int i = 0; i < rec.count(); ++i) {
            result.columns << rec.fieldName(i);
            const QString key = rec.fieldName(i).toLower();
            if (!index->contains(key))
                index->insert(key, i);
        }
        if (wantRows) {
            std::shared_ptr<const QHash<QString, int>> shared = index;
            const int n = rec.count();
            while (q->next()) {
                QVector<QVariant> values(n);
                for (int i = 0; i < n; ++i)
                    values[i] = q->value(i);
                result.rows.append(Row(shared, std::move(values)));
            }
        }
    }
    if (affected)
        *affected = q->numRowsAffected();
    q->finish();
    if (ddl)
        m_cache->clear();
    return result;
}

qint64 SessionConnection::forEachRow(const QString &sql, const QVariantList &params,
                                     const std::function<void(const Row &)> &each,
                                     const std::function<void(const QStringList &)> &started)
{
    reconnectIfLost();
    if (isSQLite() && m_depth > 0 && !m_yearLocked && touchesYearFile(sql))
        lockYearFile();
    if (m_hook)
        m_hook(sql);
    // A statement of its own, not the prepared cache: it stays open while
    // the rows are handed over.
    QSqlQuery q(m_db);
    q.setForwardOnly(true);
    if (!q.prepare(sql))
        fail(q.lastError(), sql);
    bindAll(q, params, *this);
    if (!q.exec()) {
        const QSqlError error = q.lastError();
        q.finish();
        fail(error, sql);
    }
    const QSqlRecord rec = q.record();
    QStringList columns;
    auto index = std::make_shared<QHash<QString, int>>();
    for (int i = 0; i < rec.count(); ++i) {
        columns << rec.fieldName(i);
        const QString key = rec.fieldName(i).toLower();
        if (!index->contains(key))
            index->insert(key, i);
    }
    if (started)
        started(columns);
    const std::shared_ptr<const QHash<QString, int>> shared = index;
    const int n = rec.count();
    qint64 count = 0;
    while (q.next()) {
        QVector<QVariant> values(n);
        for (int i = 0; i < n; ++i)
            values[i] = q.value(i);
        each(Row(shared, std::move(values)));
        ++count;
    }
    // A read cut short by the engine (a server gone away) is an error, not
    // a shorter report.
    if (q.lastError().isValid()) {
        const QSqlError error = q.lastError();
        q.finish();
        fail(error, sql);
    }
    q.finish();
    return count;
}

QueryResult SessionConnection::select(const QString &sql, const QVariantList &params)
{
    return run(sql, params, true, nullptr);
}
QueryResult SessionConnection::select(const QString &sql, const QVariantMap &params)
{
    return run(sql, params, true, nullptr);
}
std::optional<Row> SessionConnection::selectOne(const QString &sql, const QVariantList &params)
{
    QueryResult r = select(sql, params);
    if (r.isEmpty())
        return std::nullopt;
    return r.first();
}
std::optional<Row> SessionConnection::selectOne(const QString &sql, const QVariantMap &params)
{
    QueryResult r = select(sql, params);
    if (r.isEmpty())
        return std::nullopt;
    return r.first();
}
QVariant SessionConnection::scalar(const QString &sql, const QVariantList &params)
{
    auto row = selectOne(sql, params);
    if (!row || row->columnCount() == 0 || row->isNull(0))
        return QVariant();
    return row->value(0);
}
QVariant SessionConnection::scalar(const QString &sql, const QVariantMap &params)
{
    auto row = selectOne(sql, params);
    if (!row || row->columnCount() == 0 || row->isNull(0))
        return QVariant();
    return row->value(0);
}
std::optional<Money> SessionConnection::scalarMoney(const QString &sql, const QVariantList &params)
{
    return Money::fromVariant(scalar(sql, params));
}

int SessionConnection::execute(const QString &sql, const QVariantList &params)
{
    int n = 0;
    run(sql, params, false, &n);
    return n;
}
int SessionConnection::execute(const QString &sql, const QVariantMap &params)
{
    int n = 0;
    run(sql, params, false, &n);
    return n;
}

qint64 SessionConnection::insertReturningKey(const QString &sql, const QVariantList &params,
                                             const QString &keyColumn)
{
    QueryResult r = run(sql + QStringLiteral(" RETURNING ") + keyColumn, params, true, nullptr);
    if (r.isEmpty())
        throw DbError(QStringLiteral("The new row's key was not returned."), sql);
    return r.first().integer(0);
}

// ---------------------------------------------------------------- transactions

void SessionConnection::begin()
{
    if (m_depth == 0) {
        reconnectIfLost();
        m_yearLocked = false;
        runDirect(QStringLiteral("BEGIN"));
    } else
        runDirect(QStringLiteral("SAVEPOINT tessel_sp%1").arg(m_depth));
    ++m_depth;
}

void SessionConnection::commit()
{
    if (m_depth <= 0)
        throw DbError(QStringLiteral("No transaction is open."));
    if (m_depth == 1)
        runDirect(QStringLiteral("COMMIT"));
    else
        runDirect(QStringLiteral("RELEASE SAVEPOINT tessel_sp%1").arg(m_depth - 1));
    --m_depth;
}

void SessionConnection::rollback()
{
    if (m_depth <= 0)
        return;
    if (m_lost) { // the server ended the transaction with the connection
        --m_depth;
        return;
    }
    QSqlQuery q(m_db);
    if (m_depth == 1) {
        q.exec(QStringLiteral("ROLLBACK"));
    } else {
        q.exec(QStringLiteral("ROLLBACK TO SAVEPOINT tessel_sp%1").arg(m_depth - 1));
        q.exec(QStringLiteral("RELEASE SAVEPOINT tessel_sp%1").arg(m_depth - 1));
    }
    --m_depth;
}

void SessionConnection::setReportPeriod(const QDate &from, const QDate &to)
{
    m_reportFrom = from;
    m_reportTo = to;
    if (isPostgres()) {
        select(QStringLiteral("SELECT set_config('tessel.sdate', ?, false), set_config('tessel.edate', ?, false)"),
               {from.isValid() ? from.toString(Qt::ISODate) : QString(QLatin1String("")),
                to.isValid() ? to.toString(Qt::ISODate) : QString(QLatin1String(""))});
    }
}

void SessionConnection::setActor(const QString &user, const QString &workstation)
{
    m_actorUser = user.trimmed();
    if (!workstation.trimmed().isEmpty())
        m_actorWorkstation = workstation.trimmed();
    if (isPostgres())
        applyActor();
}

void SessionConnection::applyActor()
{
    select(QStringLiteral("SELECT set_config('tessel.user', ?, false), set_config('tessel.workstation', ?, false)"),
           {m_actorUser, m_actorWorkstation});
}

// On the server the pause is a setting of the session; made inside a
// transaction it ends with it, so a rolled-back pause never outlives it.
void SessionConnection::pauseRowLog()
{
    if (++m_rowLogPauses == 1 && isPostgres())
        select(m_depth > 0 ? QStringLiteral("SELECT set_config('tessel.nolog', '1', true)")
                           : QStringLiteral("SELECT set_config('tessel.nolog', '1', false)"));
}

void SessionConnection::resumeRowLog()
{
    if (m_rowLogPauses <= 0)
        return;
    if (--m_rowLogPauses == 0 && isPostgres())
        select(m_depth > 0 ? QStringLiteral("SELECT set_config('tessel.nolog', '', true)")
                           : QStringLiteral("SELECT set_config('tessel.nolog', '', false)"));
}

// ---------------------------------------------------------------- Transaction

Transaction::Transaction(SessionConnection &session) : m_session(session)
{
    m_session.begin();
}

Transaction::~Transaction()
{
    if (!m_done)
        m_session.rollback();
}

void Transaction::commit()
{
    m_session.commit();
    m_done = true;
}

