#include "admin/YearBackup.h"

#include "foundation/AccountYear.h"
#include "foundation/Schema.h"
#include "foundation/SessionConnection.h"

#include <QCollator>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryFile>
#include <QThread>
#include <QUrl>
#include <cstdio>
#include <sqlite3.h>

namespace YearBackup {

using AccountYear::Error;

namespace {

const QStringList kSqliteSuffixes = {QString(), QStringLiteral("-wal"), QStringLiteral("-shm"),
                                     QStringLiteral("-journal")};

QString native(const QString &path) { return QDir::toNativeSeparators(path); }

void checkName(const QString &name)
{
    if (!AccountYear::isValidName(name))
        throw Error(QStringLiteral("\"%1\" is not an account-year name: it must begin with \"Tessel\" and hold only "
                                   "letters, digits and underscores.").arg(name));
}

Error notFound(const QString &year) { return Error(QStringLiteral("The account year %1 was not found.").arg(year)); }
Error alreadyThere(const QString &year) { return Error(QStringLiteral("The account year %1 already exists.").arg(year)); }
Error inUseElsewhere(const QString &year)
{
    return Error(QStringLiteral("The account year %1 is open on other workstations: they must log off from it before "
                                "it can be replaced.").arg(year));
}

// Reports progress within a share of the whole: a stage that fills
// `from`..`to` percent of the bar.
Progress share(const Progress &progress, int from, int to)
{
    if (!progress)
        return {};
    return [=](int percent, const QString &what) { progress(from + (to - from) * qBound(0, percent, 100) / 100, what); };
}

void say(const Progress &progress, int percent, const QString &what)
{
    if (progress)
        progress(percent, what);
}

// The effective server password: the one asked for, else the profile's.
QString passwordFor(const ConnectionProfile &profile, const QString &serverPassword)
{
    return serverPassword.isEmpty() ? profile.password : serverPassword;
}

// Only names that passed isValidName(), or that name with "~" or "~~"
// before it, reach SQL text: letters, digits, "_" and "~".
QString quoted(const QString &name) { return QLatin1Char('"') + name + QLatin1Char('"'); }

// A year being made on a server lives under this name until it is whole:
// it does not begin with "Tessel", so no workstation lists it.
QString serverWorkName(const QString &year) { return QLatin1Char('~') + year; }

// A year being replaced on a server waits under this name until the new
// one holds its name.
QString serverAsideName(const QString &year) { return QStringLiteral("~~") + year; }

// ------------------------------------------------------------ embedded store

QString yearFile(const ConnectionProfile &profile, const QString &year)
{
    return QDir(profile.dataDir).filePath(year + QStringLiteral(".sqlite"));
}

void removeYearFiles(const QString &file)
{
    for (const QString &suffix : kSqliteSuffixes)
        QFile::remove(file + suffix);
}

class SqliteFile
{
public:
    SqliteFile() = default;
    ~SqliteFile()
    {
        if (h)
            sqlite3_close_v2(h);
    }
    SqliteFile(const SqliteFile &) = delete;
    SqliteFile &operator=(const SqliteFile &) = delete;

    // A year or backup file, opened for reading. A file this workstation
    // may write opens as usual so that a year's write-ahead file is read
    // with it; one it may not (a backup on read-only media) as a file that
    // does not change.
    void openSource(const QString &path)
    {
        if (QFileInfo(path).isWritable()) {
            open(path, SQLITE_OPEN_READWRITE);
        } else {
            QUrl url = QUrl::fromLocalFile(path);
            url.setQuery(QStringLiteral("immutable=1"));
            open(url.toString(QUrl::FullyEncoded), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
        }
    }
    void open(const QString &path, int flags)
    {
        const int rc = sqlite3_open_v2(QFile::encodeName(path).constData(), &h, flags, nullptr);
        if (rc != SQLITE_OK)
            fail(rc);
        sqlite3_busy_timeout(h, 15000);
    }
    void exec(const char *sql)
    {
        const int rc = sqlite3_exec(h, sql, nullptr, nullptr, nullptr);
        if (rc != SQLITE_OK)
            fail(rc);
    }
    // The first column of the rows of a statement, as text.
    QStringList column(const char *sql)
    {
        sqlite3_stmt *st = nullptr;
        int rc = sqlite3_prepare_v2(h, sql, -1, &st, nullptr);
        if (rc != SQLITE_OK)
            fail(rc);
        QStringList out;
        while ((rc = sqlite3_step(st)) == SQLITE_ROW)
            out << QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(st, 0)));
        sqlite3_finalize(st);
        if (rc != SQLITE_DONE)
            fail(rc);
        return out;
    }
    [[noreturn]] void fail(int rc) const
    {
        if (rc == SQLITE_BUSY || rc == SQLITE_LOCKED)
            throw DbError(QStringLiteral("Another workstation is saving in the account year; try again in a moment."),
                          QString(), DbError::Kind::Busy);
        const QString words = h ? QString::fromUtf8(sqlite3_errmsg(h)) : QString::fromUtf8(sqlite3_errstr(rc));
        throw DbError(words);
    }

    sqlite3 *h = nullptr;
};

// Copies the whole database in `source` into the file `dest`, which must
// be new or empty. The source is read in one read transaction, so the copy
// is one consistent state of it however long it takes, and other
// connections go on reading and writing meanwhile.
void sqliteCopy(const QString &source, const QString &dest, const Progress &progress, const QString &what)
{
    SqliteFile src;
    src.openSource(source);
    src.exec("BEGIN");
    src.column("SELECT count(*) FROM sqlite_master");

    SqliteFile dst;
    dst.open(dest, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);

    sqlite3_backup *b = sqlite3_backup_init(dst.h, "main", src.h, "main");
    if (!b)
        dst.fail(sqlite3_errcode(dst.h));
    say(progress, 0, what);
    QDeadlineTimer patience(15000);
    int rc = SQLITE_OK;
    for (;;) {
        rc = sqlite3_backup_step(b, 1024);
        if (rc == SQLITE_BUSY || rc == SQLITE_LOCKED) {
            if (patience.hasExpired())
                break;
            sqlite3_sleep(25);
            continue;
        }
        if (rc != SQLITE_OK && rc != SQLITE_DONE)
            break;
        patience.setRemainingTime(15000);
        const int total = sqlite3_backup_pagecount(b);
        const int left = sqlite3_backup_remaining(b);
        say(progress, total > 0 ? int(qint64(total - left) * 100 / total) : 100, what);
        if (rc == SQLITE_DONE)
            break;
    }
    sqlite3_backup_finish(b);
    if (rc != SQLITE_DONE)
        dst.fail(rc);
    src.exec("COMMIT");
    // A copy stands alone in its file, with no write-ahead file beside it.
    dst.exec("PRAGMA journal_mode=DELETE");
}

// A new file `work`, readable by its owner only, made a copy of the year
// or backup `source`.
void copyIntoNewFile(const QString &source, const QString &work, const Progress &progress, const QString &what)
{
    {
        QFile f(work);
        if (!f.open(QIODevice::WriteOnly))
            throw Error(QStringLiteral("The file %1 cannot be written.").arg(native(work)));
    }
    AccountYear::restrictToOwner(work);
    sqliteCopy(source, work, progress, what);
}

// A file that holds an account year: the tables every year has, and a
// database that passes the store's integrity check.
void checkEmbeddedYear(const QString &path, const QString &shownName)
{
    SqliteFile f;
    f.open(path, SQLITE_OPEN_READWRITE);
    const QStringList tables = f.column(
        "SELECT name FROM sqlite_master WHERE type = 'table' AND lower(name) IN "
        "('tblpartybalance', 'tblpartyinfo', 'tbllogon', 'tblclosingdate', 'tbltlclientinfo')");
    if (tables.size() != 5)
        throw Error(QStringLiteral("The file %1 is not a backup of an account year.").arg(native(shownName)));
    const QStringList check = f.column("PRAGMA integrity_check");
    if (check.size() != 1 || check.first() != QLatin1String("ok"))
        throw Error(QStringLiteral("The backup %1 is damaged: %2").arg(native(shownName), check.value(0)));
}

// ------------------------------------------------------------ server

QProcessEnvironment toolEnvironment(const ConnectionProfile &profile, const QString &password)
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    if (!profile.host.isEmpty())
        env.insert(QStringLiteral("PGHOST"), profile.host);
    if (profile.port > 0)
        env.insert(QStringLiteral("PGPORT"), QString::number(profile.port));
    if (!profile.user.isEmpty())
        env.insert(QStringLiteral("PGUSER"), profile.user);
    if (!password.isEmpty())
        env.insert(QStringLiteral("PGPASSWORD"), password);
    if (!profile.sslMode.isEmpty())
        env.insert(QStringLiteral("PGSSLMODE"), profile.sslMode);
    env.insert(QStringLiteral("PGCONNECT_TIMEOUT"), QString::number(qMax(1, profile.connectTimeoutSeconds)));
    env.insert(QStringLiteral("PGAPPNAME"), QStringLiteral("tessel"));
    // Their words in plain English, which the progress reading relies on.
    env.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
    env.insert(QStringLiteral("LANG"), QStringLiteral("C"));
    env.remove(QStringLiteral("LANGUAGE"));
    return env;
}

// The server, reached for the work around a copy.
struct Server
{
    Server(const ConnectionProfile &p, const QString &serverPassword)
        : profile(p), password(passwordFor(p, serverPassword))
    {
        admin = SessionConnection::openMaintenance(profile, password);
        major = admin->scalar(QStringLiteral("SHOW server_version_num")).toInt() / 10000;
    }

    bool exists(const QString &name)
    {
        return admin->scalar(QStringLiteral("SELECT 1 FROM pg_database WHERE datname = ?"), {name}).isValid();
    }
    // True when any session is connected to the database `name`.
    bool inUse(const QString &name)
    {
        return admin->scalar(QStringLiteral("SELECT COUNT(*) FROM pg_stat_activity WHERE datname = ?"), {name})
                   .toLongLong() > 0;
    }
    void drop(const QString &name)
    {
        admin->execute(QStringLiteral("DROP DATABASE IF EXISTS ") + quoted(name) + QStringLiteral(" WITH (FORCE)"));
    }
    void dropQuietly(const QString &name)
    {
        try {
            drop(name);
        } catch (...) {
        }
    }
    // A new, empty database under the work name of `year`.
    QString makeWork(const QString &year)
    {
        const QString work = serverWorkName(year);
        drop(work); // left by a copy that was cut off
        admin->execute(QStringLiteral("CREATE DATABASE ") + quoted(work)
                       + QStringLiteral(" TEMPLATE template0 ENCODING 'UTF8'"));
        return work;
    }
    void rename(const QString &from, const QString &to)
    {
        admin->execute(QStringLiteral("ALTER DATABASE ") + quoted(from) + QStringLiteral(" RENAME TO ") + quoted(to));
    }
    // Gives the finished work database the year's name, in place of the
    // year when `replacing`. The year being replaced steps aside first and
    // is dropped only once the work database holds its name; should that
    // fail, it takes its name back, so the year is never lost.
    void finish(const QString &work, const QString &year, bool replacing)
    {
        if (!replacing) {
            if (exists(year))
                throw alreadyThere(year);
            rename(work, year);
            return;
        }
        const QString old = serverAsideName(year);
        drop(old); // a replaced year left by a replacement that was cut off
        rename(year, old);
        try {
            rename(work, year);
        } catch (...) {
            try {
                rename(old, year);
            } catch (...) {
            }
            throw;
        }
        // The restored year is in place: a former copy that cannot be
        // dropped now goes with the next replacement of the year.
        dropQuietly(old);
    }
    std::unique_ptr<SessionConnection> open(const QString &name)
    {
        SessionConnection::OpenOptions o;
        o.prepareSession = false;
        o.password = password;
        return SessionConnection::open(profile, name, o);
    }
    QString tool(const QString &name) const
    {
        const QString path = serverTool(name, major);
        if (path.isEmpty())
            throw Error(QStringLiteral("The program %1 of PostgreSQL %2 or later was not found: install the "
                                       "PostgreSQL client programs.").arg(name).arg(major));
        return path;
    }

    ConnectionProfile profile;
    QString password;
    std::unique_ptr<SessionConnection> admin;
    int major = 0;
};

// One run of pg_dump, pg_restore or both piped together. Progress comes
// from the verbose lines of the last program, one per table.
class ToolRun
{
public:
    ToolRun(const Server &server, Progress progress, int tables, const QString &what)
        : m_env(toolEnvironment(server.profile, server.password)), m_progress(std::move(progress)),
          m_tables(qMax(1, tables)), m_what(what)
    {
    }

    void run(const QString &program, const QStringList &args) { run({{program, args}}); }

    void run(const QList<QPair<QString, QStringList>> &steps)
    {
        std::vector<std::unique_ptr<QProcess>> procs;
        for (const auto &step : steps) {
            auto p = std::make_unique<QProcess>();
            p->setProcessEnvironment(m_env);
            p->setProgram(step.first);
            p->setArguments(step.second);
            p->setStandardInputFile(QProcess::nullDevice());
            if (!procs.empty())
                procs.back()->setStandardOutputProcess(p.get());
            procs.push_back(std::move(p));
        }
        // The reader first, so the writer's output has somewhere to go.
        for (auto it = procs.rbegin(); it != procs.rend(); ++it) {
            (*it)->start();
            if (!(*it)->waitForStarted(30000)) {
                const QString why = (*it)->errorString();
                for (auto &p : procs) {
                    p->kill();
                    p->waitForFinished(5000);
                }
                throw Error(QStringLiteral("The program %1 could not be started: %2").arg(native((*it)->program()), why));
            }
        }
        QProcess &last = *procs.back();
        say(m_progress, 0, m_what);
        while (last.state() != QProcess::NotRunning) {
            last.waitForFinished(100);
            read(last, true);
            for (std::size_t i = 0; i + 1 < procs.size(); ++i)
                read(*procs[i], false);
        }
        read(last, true);
        // A reader that failed leaves its writer blocked on a full pipe.
        const bool lastFailed = last.exitStatus() != QProcess::NormalExit || last.exitCode() != 0;
        QStringList words;
        for (std::size_t i = 0; i + 1 < procs.size(); ++i) {
            QProcess &p = *procs[i];
            if (lastFailed)
                p.kill();
            p.waitForFinished(-1);
            read(p, false);
            const bool ownFailure = p.exitStatus() == QProcess::NormalExit && p.exitCode() != 0;
            if (ownFailure || (!lastFailed && p.exitStatus() != QProcess::NormalExit))
                words << failureWords(p);
        }
        if (lastFailed)
            words << failureWords(last);
        if (!words.isEmpty())
            throw DbError(words.join(QLatin1Char('\n')));
        say(m_progress, 100, m_what);
    }

private:
    void read(QProcess &p, bool counts)
    {
        QByteArray &buf = m_buffers[&p];
        buf += p.readAllStandardError();
        int nl;
        while ((nl = buf.indexOf('\n')) >= 0) {
            const QString line = QString::fromUtf8(buf.left(nl)).trimmed();
            buf.remove(0, nl + 1);
            m_lines[&p] << line;
            if (m_lines[&p].size() > 200)
                m_lines[&p].removeFirst();
            static const QRegularExpression table(
                QStringLiteral("(?:dumping contents of|processing data for) table \"?([^\"]+)\"?"));
            const auto m = table.match(line);
            if (counts && m.hasMatch()) {
                ++m_done;
                QString name = m.captured(1);
                name = name.mid(name.lastIndexOf(QLatin1Char('.')) + 1);
                say(m_progress, qMin(99, m_done * 100 / m_tables), m_what + QStringLiteral(": ") + name);
            }
        }
    }

    QString failureWords(QProcess &p)
    {
        const QStringList lines = m_lines[&p];
        QStringList errors;
        for (const QString &l : lines) {
            if (l.contains(QLatin1String("error:")) || l.contains(QLatin1String("FATAL")) || l.contains(QLatin1String("fatal:"))
                || l.contains(QLatin1String("DETAIL:")))
                errors << l;
        }
        if (errors.isEmpty())
            errors = lines.mid(qMax(0, lines.size() - 3));
        const QString name = QFileInfo(p.program()).fileName();
        if (errors.isEmpty())
            return p.exitStatus() != QProcess::NormalExit ? QStringLiteral("%1 stopped unexpectedly.").arg(name)
                                                          : QStringLiteral("%1 ended with code %2.").arg(name).arg(p.exitCode());
        return errors.join(QLatin1Char('\n'));
    }

    QProcessEnvironment m_env;
    Progress m_progress;
    int m_tables;
    int m_done = 0;
    QString m_what;
    QHash<QProcess *, QByteArray> m_buffers;
    QHash<QProcess *, QStringList> m_lines;
};

int tableCount(Server &server, const QString &year)
{
    auto s = server.open(year);
    return int(s->scalar(QStringLiteral("SELECT COUNT(*) FROM pg_class c JOIN pg_namespace n ON n.oid = c.relnamespace "
                                        "WHERE c.relkind = 'r' AND n.nspname NOT IN ('pg_catalog', 'information_schema') "
                                        "AND n.nspname NOT LIKE 'pg\\_%'"))
                   .toLongLong());
}

QStringList restoreArguments(const QString &work)
{
    return {QStringLiteral("--no-owner"),       QStringLiteral("--no-privileges"),
            QStringLiteral("--exit-on-error"),  QStringLiteral("--single-transaction"),
            QStringLiteral("--no-password"),    QStringLiteral("--verbose"),
            QStringLiteral("--dbname=") + work};
}

// A year restored from a file must be one this program can open.
void checkStamp(Server *server, const ConnectionProfile &profile, const QString &name)
{
    std::unique_ptr<SessionConnection> s;
    if (server) {
        s = server->open(name);
    } else {
        SessionConnection::OpenOptions o;
        o.prepareSession = false;
        s = SessionConnection::open(profile, name, o);
    }
    const QString stamp = Schema::storedStamp(*s);
    if (Schema::compareStamp(stamp) == Schema::VersionCheck::Newer)
        throw Error(QStringLiteral("The backup was made by a newer program (schema %1, this program %2).")
                        .arg(stamp, QString::fromLatin1(Schema::kStamp)));
}

// The folder and a private working file beside the chosen backup file.
std::unique_ptr<QTemporaryFile> workFileBeside(const QString &file)
{
    const QFileInfo fi(file);
    if (!fi.absoluteDir().exists())
        throw Error(QStringLiteral("The folder %1 does not exist.").arg(native(fi.absolutePath())));
    auto tmp = std::make_unique<QTemporaryFile>(fi.absoluteDir().filePath(fi.fileName() + QStringLiteral(".XXXXXX")));
    if (!tmp->open())
        throw Error(QStringLiteral("The file %1 cannot be written: %2").arg(native(file), tmp->errorString()));
    tmp->close();
    return tmp;
}

// Puts the written work file in place under the chosen name.
void installBackupFile(QTemporaryFile &tmp, const QString &file, bool replaceFile)
{
    const QByteArray from = QFile::encodeName(tmp.fileName());
    const QByteArray to = QFile::encodeName(QFileInfo(file).absoluteFilePath());
    if (!replaceFile && QFileInfo::exists(file))
        throw Error(QStringLiteral("The file %1 already exists.").arg(native(file)));
    if (std::rename(from.constData(), to.constData()) != 0)
        throw Error(QStringLiteral("The file %1 cannot be written.").arg(native(file)));
    tmp.setAutoRemove(false);
}

void checkBackupTarget(const ConnectionProfile &profile, const QString &file, bool replaceFile)
{
    if (file.trimmed().isEmpty())
        throw Error(cancelledMessage());
    const QFileInfo fi(file);
    if (fi.isDir())
        throw Error(QStringLiteral("%1 is a folder: choose a file name.").arg(native(file)));
    if (fi.exists() && !replaceFile)
        throw Error(QStringLiteral("The file %1 already exists.").arg(native(file)));
    if (profile.isEmbedded() && fi.absoluteDir() == QDir(profile.dataDir)
        && fi.fileName().contains(QLatin1String(".sqlite")))
        throw Error(QStringLiteral("A backup cannot be written over an account year's own file."));
}

void checkBackupSource(const ConnectionProfile &profile, const QString &file)
{
    switch (fileKind(file)) {
    case FileKind::Missing:
        throw Error(QStringLiteral("The file %1 was not found.").arg(native(file)));
    case FileKind::Unreadable:
        throw Error(QStringLiteral("The file %1 cannot be read.").arg(native(file)));
    case FileKind::Other:
        throw Error(QStringLiteral("The file %1 is not a backup of an account year.").arg(native(file)));
    case FileKind::Embedded:
        if (!profile.isEmbedded())
            throw Error(QStringLiteral("The file %1 is a backup of an account year of the embedded store: restore it "
                                       "on the embedded store.").arg(native(file)));
        break;
    case FileKind::Server:
        if (profile.isEmbedded())
            throw Error(QStringLiteral("The file %1 is a backup of an account year of a server: restore it with that "
                                       "server's profile.").arg(native(file)));
        break;
    }
}

// The year copied by the server from its files. False when the server
// refused (someone connected meanwhile, or no right to); nothing is left.
bool copyByTemplate(Server &server, const QString &from, const QString &to)
{
    const QString work = serverWorkName(to);
    try {
        server.drop(work);
        server.admin->execute(QStringLiteral("CREATE DATABASE ") + quoted(work) + QStringLiteral(" TEMPLATE ") + quoted(from));
    } catch (const DbError &) {
        server.dropQuietly(work);
        return false;
    }
    try {
        server.finish(work, to, false);
    } catch (...) {
        server.dropQuietly(work);
        throw;
    }
    return true;
}

void copyByDump(Server &server, const QString &from, const QString &to, const Progress &progress, const QString &what)
{
    const int tables = tableCount(server, from);
    const QString dump = server.tool(QStringLiteral("pg_dump"));
    const QString restore = server.tool(QStringLiteral("pg_restore"));
    const QString work = server.makeWork(to);
    try {
        ToolRun run(server, progress, tables, what);
        run.run({{dump, {QStringLiteral("--format=custom"), QStringLiteral("--no-password"), QStringLiteral("--dbname=") + from}},
                 {restore, restoreArguments(work)}});
        server.finish(work, to, false);
    } catch (...) {
        server.dropQuietly(work);
        throw;
    }
}

} // namespace

// ------------------------------------------------------------ public

FileKind fileKind(const QString &file)
{
    const QFileInfo fi(file);
    if (file.isEmpty() || !fi.exists())
        return FileKind::Missing;
    if (fi.isDir())
        return FileKind::Other;
    QFile f(file);
    if (!f.open(QIODevice::ReadOnly))
        return FileKind::Unreadable;
    const QByteArray head = f.read(16);
    if (head == QByteArray("SQLite format 3\0", 16))
        return FileKind::Embedded;
    if (head.startsWith("PGDMP"))
        return FileKind::Server;
    return FileKind::Other;
}

bool yearExists(const ConnectionProfile &profile, const QString &year, const QString &serverPassword)
{
    if (!AccountYear::isValidName(year))
        return false;
    if (profile.isEmbedded())
        return QFileInfo::exists(yearFile(profile, year));
    Server server(profile, serverPassword);
    return server.exists(year);
}

QString serverTool(const QString &tool, int serverMajorVersion)
{
    QStringList dirs;
    const QString own = qEnvironmentVariable("TESSEL_PG_BINDIR");
    if (!own.isEmpty())
        dirs << own;
    // The server packages' folders, the server's own version first, then
    // newer ones (a newer pg_dump reads an older server; never the reverse).
    QDir packages(QStringLiteral("/usr/lib/postgresql"));
    QStringList versions = packages.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    QCollator numeric;
    numeric.setNumericMode(true);
    std::sort(versions.begin(), versions.end(), numeric);
    dirs << packages.filePath(QString::number(serverMajorVersion) + QStringLiteral("/bin"));
    for (const QString &v : versions) {
        if (v.toInt() > serverMajorVersion)
            dirs << packages.filePath(v + QStringLiteral("/bin"));
    }
    for (const QString &d : dirs) {
        const QString path = QDir(d).filePath(tool);
        if (QFileInfo(path).isExecutable())
            return path;
    }
    return QStandardPaths::findExecutable(tool);
}

void copyYear(const ConnectionProfile &profile, const QString &from, const QString &to, const QString &serverPassword,
              const Progress &progress)
{
    checkName(from);
    checkName(to);
    const QString what = QStringLiteral("Copying %1 into %2").arg(from, to);
    if (profile.isEmbedded()) {
        const QString source = yearFile(profile, from);
        const QString target = yearFile(profile, to);
        if (!QFileInfo::exists(source))
            throw notFound(from);
        if (QFileInfo::exists(target))
            throw alreadyThere(to);
        // Made under a working name and renamed when whole, as a new year is.
        const QString work = yearFile(profile, to + QStringLiteral(".creating"));
        removeYearFiles(work);
        try {
            copyIntoNewFile(source, work, progress, what);
            if (!QFile::rename(work, target)) {
                if (QFileInfo::exists(target))
                    throw alreadyThere(to);
                throw Error(QStringLiteral("The file %1 cannot be written.").arg(native(target)));
            }
        } catch (...) {
            removeYearFiles(work);
            throw;
        }
        return;
    }

    Server server(profile, serverPassword);
    if (!server.exists(from))
        throw notFound(from);
    if (server.exists(to))
        throw alreadyThere(to);
    // When no workstation is connected to the year the server copies its
    // files itself, keeping new connections out meanwhile: far quicker
    // than a dump. Otherwise (or when this user may not) through pg_dump.
    // The server waits some seconds for connections to go before it gives
    // up, so a year in use goes straight to the dump.
    say(progress, 0, what);
    if (server.inUse(from) || !copyByTemplate(server, from, to))
        copyByDump(server, from, to, progress, what);
    say(progress, 100, what);
}

void backupYear(const ConnectionProfile &profile, const QString &year, const QString &file, bool replaceFile,
                const QString &serverPassword, const Progress &progress)
{
    checkName(year);
    checkBackupTarget(profile, file, replaceFile);
    const QString what = QStringLiteral("Backing up %1").arg(year);
    if (profile.isEmbedded()) {
        const QString source = yearFile(profile, year);
        if (!QFileInfo::exists(source))
            throw notFound(year);
        auto tmp = workFileBeside(file);
        sqliteCopy(source, tmp->fileName(), progress, what);
        installBackupFile(*tmp, file, replaceFile);
        return;
    }

    Server server(profile, serverPassword);
    if (!server.exists(year))
        throw notFound(year);
    const int tables = tableCount(server, year);
    const QString dump = server.tool(QStringLiteral("pg_dump"));
    auto tmp = workFileBeside(file);
    ToolRun run(server, progress, tables, what);
    run.run(dump, {QStringLiteral("--format=custom"), QStringLiteral("--no-password"), QStringLiteral("--verbose"),
                   QStringLiteral("--file=") + tmp->fileName(), QStringLiteral("--dbname=") + year});
    installBackupFile(*tmp, file, replaceFile);
}

void restoreYear(const ConnectionProfile &profile, const QString &file, const QString &to, bool replaceYear,
                 const QString &serverPassword, const Progress &progress)
{
    checkName(to);
    checkBackupSource(profile, file);
    const QString what = QStringLiteral("Restoring %1").arg(to);
    if (profile.isEmbedded()) {
        if (!QDir(profile.dataDir).exists()) {
            if (!QDir().mkpath(profile.dataDir))
                throw Error(QStringLiteral("The data folder %1 cannot be made.").arg(native(profile.dataDir)));
            QFile::setPermissions(profile.dataDir, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        }
        const QString target = yearFile(profile, to);
        const bool replacing = QFileInfo::exists(target);
        if (replacing && !replaceYear)
            throw alreadyThere(to);
        const QString workName = to + QStringLiteral(".creating");
        const QString work = yearFile(profile, workName);
        removeYearFiles(work);
        try {
            copyIntoNewFile(file, work, share(progress, 0, 80), what);
            say(progress, 80, QStringLiteral("Checking the restored year"));
            checkEmbeddedYear(work, file);
            checkStamp(nullptr, profile, workName);
            if (replacing) {
                // The year steps aside with its write-ahead and journal
                // files, so that no workstation ever opens the new file with
                // the old year's unwritten pages beside it, and so that the
                // year goes back whole should the new file not take its
                // place.
                const QString aside = yearFile(profile, to + QStringLiteral(".replaced"));
                removeYearFiles(aside);
                if (!QFile::rename(target, aside))
                    throw Error(QStringLiteral("The file %1 cannot be replaced.").arg(native(target)));
                const QStringList kept = {QStringLiteral("-wal"), QStringLiteral("-journal")};
                for (const QString &suffix : kept) {
                    if (!QFile::rename(target + suffix, aside + suffix))
                        QFile::remove(target + suffix);
                }
                QFile::remove(target + QStringLiteral("-shm"));
                if (!QFile::rename(work, target)) {
                    if (QFile::rename(aside, target)) {
                        for (const QString &suffix : kept)
                            QFile::rename(aside + suffix, target + suffix);
                    }
                    throw Error(QStringLiteral("The file %1 cannot be written.").arg(native(target)));
                }
                removeYearFiles(aside);
            } else if (!QFile::rename(work, target)) {
                if (QFileInfo::exists(target))
                    throw alreadyThere(to);
                throw Error(QStringLiteral("The file %1 cannot be written.").arg(native(target)));
            }
        } catch (...) {
            removeYearFiles(work);
            throw;
        }
        say(progress, 100, what);
        return;
    }

    Server server(profile, serverPassword);
    const bool replacing = server.exists(to);
    if (replacing && !replaceYear)
        throw alreadyThere(to);
    // A year others work in is not pulled from under them. A session that
    // has just ended stays listed for a moment, so it is given the few
    // seconds the server itself waits before refusing to rename a year.
    if (replacing) {
        QDeadlineTimer patience(5000);
        while (server.inUse(to)) {
            if (patience.hasExpired())
                throw inUseElsewhere(to);
            QThread::msleep(100);
        }
    }
    const QString restore = server.tool(QStringLiteral("pg_restore"));
    const QString path = QFileInfo(file).absoluteFilePath();
    // The file's table of contents: a file pg_restore cannot read, or one
    // without the ledger, is no backup of a year.
    QProcess list;
    list.setProcessEnvironment(toolEnvironment(profile, server.password));
    list.start(restore, {QStringLiteral("--list"), path});
    if (!list.waitForFinished(-1) || list.exitStatus() != QProcess::NormalExit)
        throw Error(QStringLiteral("The program %1 could not be run: %2").arg(native(restore), list.errorString()));
    const QString contents = QString::fromUtf8(list.readAllStandardOutput());
    if (list.exitCode() != 0 || !contents.contains(QLatin1String("TABLE DATA public tblpartybalance"), Qt::CaseInsensitive))
        throw Error(QStringLiteral("The file %1 is not a backup of an account year.").arg(native(file)));
    const int tables = int(contents.count(QLatin1String(" TABLE DATA ")));

    const QString work = server.makeWork(to);
    try {
        ToolRun run(server, share(progress, 0, 95), tables, what);
        run.run(restore, restoreArguments(work) << path);
        checkStamp(&server, profile, work);
        server.finish(work, to, replacing);
    } catch (...) {
        server.dropQuietly(work);
        throw;
    }
    say(progress, 100, what);
}

QString asideName(const ConnectionProfile &profile, const QString &year)
{
    // A "." is in no year's name, so the embedded lists pass over the file
    // and no other working name is the same. On a server the "~" keeps the
    // list from it, as with a year being made, and the name stays within
    // the server's 63 characters with the "~" of its own copy before it.
    return profile.isEmbedded() ? year + QStringLiteral(".closing") : QStringLiteral("~.") + year;
}

QString copyYearAside(const ConnectionProfile &profile, const QString &from, const QString &to,
                      const QString &serverPassword, const Progress &progress)
{
    checkName(from);
    checkName(to);
    const QString aside = asideName(profile, to);
    const QString what = QStringLiteral("Copying %1 into %2").arg(from, to);
    if (profile.isEmbedded()) {
        const QString source = yearFile(profile, from);
        if (!QFileInfo::exists(source))
            throw notFound(from);
        if (QFileInfo::exists(yearFile(profile, to)))
            throw alreadyThere(to);
        const QString work = yearFile(profile, aside);
        removeYearFiles(work);
        try {
            copyIntoNewFile(source, work, progress, what);
        } catch (...) {
            removeYearFiles(work);
            throw;
        }
        return aside;
    }

    Server server(profile, serverPassword);
    if (!server.exists(from))
        throw notFound(from);
    if (server.exists(to))
        throw alreadyThere(to);
    say(progress, 0, what);
    server.drop(aside); // left by a new year that was cut off
    if (server.inUse(from) || !copyByTemplate(server, from, aside))
        copyByDump(server, from, aside, progress, what);
    say(progress, 100, what);
    return aside;
}

void finishYearAside(const ConnectionProfile &profile, const QString &to, const QString &serverPassword)
{
    checkName(to);
    const QString aside = asideName(profile, to);
    if (profile.isEmbedded()) {
        const QString work = yearFile(profile, aside);
        const QString target = yearFile(profile, to);
        // Every connection to the copy is closed, so its write-ahead file
        // holds nothing the year needs; the year goes without it.
        if (QFileInfo(work + QStringLiteral("-wal")).size() > 0)
            throw Error(QStringLiteral("The account year %1 could not be written out in full.").arg(to));
        if (QFileInfo::exists(target))
            throw alreadyThere(to);
        for (const QString &suffix : {QStringLiteral("-wal"), QStringLiteral("-shm"), QStringLiteral("-journal")})
            QFile::remove(work + suffix);
        if (!QFile::rename(work, target)) {
            if (QFileInfo::exists(target))
                throw alreadyThere(to);
            throw Error(QStringLiteral("The file %1 cannot be written.").arg(native(target)));
        }
        return;
    }
    Server server(profile, serverPassword);
    // Sessions of this workstation that have just closed stay listed for a
    // moment; anyone else still connected after that is refused.
    QDeadlineTimer patience(5000);
    while (server.inUse(aside)) {
        if (patience.hasExpired())
            throw Error(QStringLiteral("The new year %1 was opened by another connection while it was being "
                                       "made, so it has not been made.").arg(to));
        QThread::msleep(100);
    }
    server.finish(aside, to, false);
}

void dropYearAside(const ConnectionProfile &profile, const QString &to, const QString &serverPassword)
{
    checkName(to);
    const QString aside = asideName(profile, to);
    if (profile.isEmbedded()) {
        removeYearFiles(yearFile(profile, aside));
        return;
    }
    Server server(profile, serverPassword);
    server.drop(aside);
}

QString dialogTitle(const QString &year) { return QStringLiteral("%1 (BACKUP) *AVOID SPACE IN BACKUP NAME").arg(year); }
QString fileFilter(const QString &year) { return QStringLiteral("%1(*.bak)").arg(year); }
QString cancelledMessage() { return QStringLiteral("Backup command cancelled, so backup not completed"); }
QString completedMessage() { return QStringLiteral("Congradulation, process of Backup has completed"); }

QString restoreQuestion(const QString &file, const QString &year)
{
    return QStringLiteral("Are you sure to restore the backup %1 into the account year %2?").arg(native(file), year);
}

QString replaceQuestion(const QString &year)
{
    return QStringLiteral("The account year %1 already exists. Are you sure to replace everything in it with the "
                          "backup? What it holds now will be lost.").arg(year);
}

QString restoredMessage(const QString &year)
{
    return QStringLiteral("The account year %1 has been restored from the backup.").arg(year);
}

} // namespace YearBackup
