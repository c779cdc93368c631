// Whole copies of a year: into another year, into a backup file and back,
// with the refusals that must leave nothing behind.
#include "support/TestDb.h"

#include "admin/YearBackup.h"
#include "reports/LedgerStatements.h"
#include "reports/ReportFrame.h"
#include "vouchers/DemoGenerator.h"

#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QtTest>

using TestDb::count;

namespace {

// What a year holds, to compare a copy with its original: the rows of
// every table, the ledger's balance per account to the cent and the
// trial balance as printed.
struct Snapshot
{
    QMap<QString, int> rows;
    QMap<QString, QString> balances;
    QStringList trialBalance;
};

Snapshot snapshot(SessionConnection &db)
{
    Snapshot s;
    const QString tables = db.isSQLite()
        ? QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite_%'")
        : QStringLiteral("SELECT tablename FROM pg_tables WHERE schemaname = 'public'");
    for (const Row &r : db.select(tables))
        s.rows[r.text(0).toLower()] = count(db, QStringLiteral("SELECT COUNT(*) FROM ") + r.text(0));
    for (const Row &r : db.select(QStringLiteral("SELECT PartyCode, SUM(PartyBalance) AS B FROM tblPartyBalance "
                                                 "GROUP BY PartyCode ORDER BY PartyCode")))
        s.balances[r.text(0)] = r.moneyOrZero(QStringLiteral("B")).toPlainString();
    Reports::ReportRequest req = LedgerStatements::trialBalance(
        LedgerStatements::TrialBalanceKind::WithoutContact,
        LedgerStatements::Period::of(QDate(2026, 1, 1), QDate(2026, 12, 31)));
    req.writePeriodRow = false;
    for (const Reports::ReportLine &l : Reports::ReportFrame::render(db, req).lines)
        s.trialBalance << l.texts.join(QLatin1Char('|'));
    return s;
}

// A year with a press's accounts and some months of its work.
void fill(const TestDb::Year &year)
{
    auto db = year.connect();
    DemoOptions d;
    d.rows = 300;
    d.from = QDate(2026, 1, 1);
    d.to = QDate(2026, 6, 30);
    DemoGenerator g(*db, d);
    g.addStandardParts();
    g.run();
}

void compare(const Snapshot &a, const Snapshot &b)
{
    QCOMPARE(b.rows, a.rows);
    QCOMPARE(b.balances, a.balances);
    QCOMPARE(b.trialBalance, a.trialBalance);
}

// Nothing of the year `name`, whole or half made, is on the profile.
void verifyNothingOf(const ConnectionProfile &profile, const QString &name)
{
    if (profile.isEmbedded()) {
        QCOMPARE(QDir(profile.dataDir).entryList({name + QStringLiteral("*")}, QDir::Files), QStringList());
        return;
    }
    auto admin = SessionConnection::openMaintenance(profile);
    QCOMPARE(count(*admin, QStringLiteral("SELECT COUNT(*) FROM pg_database WHERE datname = ? OR datname = ?"),
                   {name, QStringLiteral("~") + name}),
             0);
}

// Drops the years a test made, whatever happened.
struct Cleanup
{
    ConnectionProfile profile;
    QStringList names;
    ~Cleanup()
    {
        for (const QString &n : names) {
            try {
                AccountYear::drop(profile, n);
            } catch (...) {
            }
        }
    }
};

// The words of a table row, with %1 and %2 put in (either may be missing).
QString filled(QString words, const QString &one, const QString &two)
{
    return words.replace(QLatin1String("%1"), one).replace(QLatin1String("%2"), two);
}

// Sessions to a year are seen, and refused, only by a server.
void serverOnly()
{
    QTest::addColumn<QString>("backend");
    QTest::newRow("postgres") << QStringLiteral("postgres");
}

// A year with an account added after `file` was written from it.
void backupThenAddLater(const TestDb::Year &year, const QString &file)
{
    YearBackup::backupYear(year.profile(), year.name(), file);
    auto db = year.connect();
    db->execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES ('17-10-001', 'LATER')"));
}

QString refusalOf(const std::function<void()> &f)
{
    try {
        f();
    } catch (const AccountYear::Error &e) {
        return e.message();
    }
    return QStringLiteral("(not refused)");
}

} // namespace

class TestYearBackup : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void copyIsWhole_data();
    void copyIsWhole();
    void copyRefusals_data();
    void copyRefusals();
    void backupRestoreRoundTrip_data() { TestDb::addBackends(); }
    void backupRestoreRoundTrip();
    void restoreRefusals_data();
    void restoreRefusals();
    void replaceOnlyWhenAsked_data() { TestDb::addBackends(); }
    void replaceOnlyWhenAsked();
    void replaceRefusedWhileInUse_data() { serverOnly(); }
    void replaceRefusedWhileInUse();
    void failedReplaceKeepsTheYear_data() { serverOnly(); }
    void failedReplaceKeepsTheYear();
    void damagedBackupLeavesNothing_data() { TestDb::addBackends(); }
    void damagedBackupLeavesNothing();
};

void TestYearBackup::copyIsWhole_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<bool>("inUse");   // another workstation works in the year meanwhile
    for (const char *b : {"sqlite", "postgres"}) {
        QTest::addRow("%s: nobody in the year", b) << QString::fromLatin1(b) << false;
        QTest::addRow("%s: a workstation in the year", b) << QString::fromLatin1(b) << true;
    }
}

void TestYearBackup::copyIsWhole()
{
    QFETCH(bool, inUse);
    TESSEL_YEAR(year);
    fill(year);
    Cleanup made{year.profile(), {TestDb::uniqueName()}};
    const QString to = made.names.first();
    std::unique_ptr<SessionConnection> workstation;
    if (inUse)
        workstation = year.connect();
    const Snapshot before = snapshot(*year.connect());
    QVERIFY(before.rows.value(QStringLiteral("tblpartyinfo")) > 20);

    QList<int> percents;
    YearBackup::copyYear(year.profile(), year.name(), to, QString(), [&](int p, const QString &) {
        // On the embedded store the copy reads one state of the year from
        // its start, while the workstation goes on writing.
        if (inUse && percents.isEmpty() && workstation->isSQLite())
            workstation->execute(
                QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES ('17-10-999', 'WRITTEN MEANWHILE')"));
        percents << p;
    });
    QCOMPARE(percents.last(), 100);
    QVERIFY(std::is_sorted(percents.begin(), percents.end()));

    auto copy = SessionConnection::open(year.profile(), to);
    compare(before, snapshot(*copy));

    // The copy is a year of its own: a change to it leaves the original.
    copy->execute(QStringLiteral("DELETE FROM tblPartyBalance"));
    QCOMPARE(snapshot(*year.connect()).balances, before.balances);
    if (year.profile().isEmbedded())
        QCOMPARE(QFile::permissions(QDir(year.profile().dataDir).filePath(to + QStringLiteral(".sqlite")))
                     & (QFileDevice::ReadGroup | QFileDevice::ReadOther),
                 QFileDevice::Permissions());
}

void TestYearBackup::copyRefusals_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("target");   // "existing", "new" or a literal name
    QTest::addColumn<bool>("sourceExists");
    QTest::addColumn<QString>("message");  // %1 the source, %2 the target
    for (const char *b : {"sqlite", "postgres"}) {
        const QString backend = QString::fromLatin1(b);
        QTest::addRow("%s: the target exists", b) << backend << "existing" << true
                                                  << "The account year %2 already exists.";
        QTest::addRow("%s: not a year name", b) << backend << "Press2026" << true
                                                << "\"%2\" is not an account-year name: it must begin with \"Tessel\" "
                                                   "and hold only letters, digits and underscores.";
        QTest::addRow("%s: a name with a path", b) << backend << "Tessel/../x" << true
                                                   << "\"%2\" is not an account-year name: it must begin with "
                                                      "\"Tessel\" and hold only letters, digits and underscores.";
        QTest::addRow("%s: no such source", b) << backend << "new" << false << "The account year %1 was not found.";
    }
}

void TestYearBackup::copyRefusals()
{
    QFETCH(QString, target);
    QFETCH(bool, sourceExists);
    QFETCH(QString, message);
    TESSEL_YEAR(year);
    TestDb::Year other(backend);
    const QString from = sourceExists ? year.name() : TestDb::uniqueName();
    const QString to = target == QLatin1String("existing") ? other.name()
        : target == QLatin1String("new")                   ? TestDb::uniqueName()
                                                           : target;
    Cleanup made{year.profile(), {}};
    if (target == QLatin1String("new"))
        made.names << to;
    other.connect()->execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES ('17-10-001', 'KEPT')"));

    QCOMPARE(refusalOf([&] { YearBackup::copyYear(year.profile(), from, to); }), filled(message, from, to));
    // The existing year is as it was, and nothing else was made.
    QCOMPARE(count(*other.connect(), QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo WHERE PartyName = 'KEPT'")), 1);
    if (target == QLatin1String("new"))
        verifyNothingOf(year.profile(), to);
}

void TestYearBackup::backupRestoreRoundTrip()
{
    TESSEL_YEAR(year);
    fill(year);
    QTemporaryDir dir;
    const QString file = dir.filePath(year.name() + QStringLiteral(".bak"));
    QList<int> percents;
    YearBackup::backupYear(year.profile(), year.name(), file, false, QString(),
                           [&](int p, const QString &) { percents << p; });
    QCOMPARE(percents.last(), 100);
    QCOMPARE(YearBackup::fileKind(file),
             year.profile().isEmbedded() ? YearBackup::FileKind::Embedded : YearBackup::FileKind::Server);
    // The backup holds the books: for its owner's eyes only.
    QCOMPARE(QFile::permissions(file) & (QFileDevice::ReadGroup | QFileDevice::ReadOther), QFileDevice::Permissions());
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{year.name() + QStringLiteral(".bak")});

    // A second backup to the same file only when the dialogue asked.
    QCOMPARE(refusalOf([&] { YearBackup::backupYear(year.profile(), year.name(), file); }),
             QStringLiteral("The file %1 already exists.").arg(QDir::toNativeSeparators(file)));
    YearBackup::backupYear(year.profile(), year.name(), file, true);

    Cleanup made{year.profile(), {TestDb::uniqueName()}};
    percents.clear();
    YearBackup::restoreYear(year.profile(), file, made.names.first(), false, QString(),
                            [&](int p, const QString &) { percents << p; });
    QCOMPARE(percents.last(), 100);
    QVERIFY(std::is_sorted(percents.begin(), percents.end()));
    auto original = year.connect();
    auto restored = SessionConnection::open(year.profile(), made.names.first());
    compare(snapshot(*original), snapshot(*restored));
}

void TestYearBackup::restoreRefusals_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("fileHolds");   // "none", "text", "embedded", "server", "backup"
    QTest::addColumn<QString>("target");      // "new", "existing" or a literal name
    QTest::addColumn<QString>("message");     // %1 the file, %2 the target
    for (const char *b : {"sqlite", "postgres"}) {
        const QString backend = QString::fromLatin1(b);
        const bool embedded = backend == QLatin1String("sqlite");
        QTest::addRow("%s: the year exists", b) << backend << "backup" << "existing"
                                                << "The account year %2 already exists.";
        QTest::addRow("%s: not a year name", b) << backend << "backup" << "Tessel-2026"
                                                << "\"%2\" is not an account-year name: it must begin with \"Tessel\" "
                                                   "and hold only letters, digits and underscores.";
        QTest::addRow("%s: no file", b) << backend << "none" << "new" << "The file %1 was not found.";
        QTest::addRow("%s: not a backup", b) << backend << "text" << "new"
                                             << "The file %1 is not a backup of an account year.";
        if (embedded)
            QTest::addRow("%s: a server's backup", b)
                << backend << "server" << "new"
                << "The file %1 is a backup of an account year of a server: restore it with that server's profile.";
        else
            QTest::addRow("%s: an embedded year's backup", b)
                << backend << "embedded" << "new"
                << "The file %1 is a backup of an account year of the embedded store: restore it on the embedded store.";
        // A database file of another program.
        if (embedded)
            QTest::addRow("%s: another database", b) << backend << "otherdb" << "new"
                                                     << "The file %1 is not a backup of an account year.";
    }
}

void TestYearBackup::restoreRefusals()
{
    QFETCH(QString, fileHolds);
    QFETCH(QString, target);
    QFETCH(QString, message);
    TESSEL_YEAR(year);
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("year.bak"));
    if (fileHolds == QLatin1String("backup")) {
        YearBackup::backupYear(year.profile(), year.name(), file);
    } else if (fileHolds == QLatin1String("otherdb")) {
        auto other = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("other"));
        other.setDatabaseName(file);
        QVERIFY(other.open());
        QSqlQuery(other).exec(QStringLiteral("CREATE TABLE notes (t TEXT)"));
        other.close();
    } else if (fileHolds != QLatin1String("none")) {
        QFile f(file);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(fileHolds == QLatin1String("embedded") ? QByteArray("SQLite format 3\0 and then nothing", 33)
                : fileHolds == QLatin1String("server") ? QByteArray("PGDMP and then nothing")
                                                       : QByteArray("Dear sir, your order is ready.\n"));
    }
    QSqlDatabase::removeDatabase(QStringLiteral("other"));
    // The existing year gets a row the backup does not have.
    auto db = year.connect();
    db->execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES ('17-10-001', 'KEPT')"));
    const QString to = target == QLatin1String("existing") ? year.name()
        : target == QLatin1String("new")                   ? TestDb::uniqueName()
                                                           : target;
    Cleanup made{year.profile(), {}};
    if (target == QLatin1String("new"))
        made.names << to;

    QCOMPARE(refusalOf([&] { YearBackup::restoreYear(year.profile(), file, to); }),
             filled(message, QDir::toNativeSeparators(file), to));
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo WHERE PartyName = 'KEPT'")), 1);
    if (target == QLatin1String("new"))
        verifyNothingOf(year.profile(), to);
}

void TestYearBackup::replaceOnlyWhenAsked()
{
    TESSEL_YEAR(year);
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("before.bak"));
    YearBackup::backupYear(year.profile(), year.name(), file);
    const int accounts = count(*year.connect(), QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo"));
    {
        auto db = year.connect();
        db->execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES ('17-10-001', 'LATER')"));
    }
    // Asked: the year becomes what the backup holds.
    YearBackup::restoreYear(year.profile(), file, year.name(), true);
    auto db = year.connect();
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo")), accounts);
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo WHERE PartyName = 'LATER'")), 0);
    db->execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES ('17-10-001', 'AFTER')"));
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo")), accounts + 1);
    if (year.profile().isEmbedded())
        QCOMPARE(QDir(year.profile().dataDir).entryList({year.name() + QStringLiteral(".*")}, QDir::Files).filter(
                     QStringLiteral(".replaced")),
                 QStringList());
    else
        verifyNothingOf(year.profile(), QStringLiteral("~") + year.name());
}

void TestYearBackup::replaceRefusedWhileInUse()
{
    TESSEL_YEAR(year);
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("before.bak"));
    backupThenAddLater(year, file);
    auto other = year.connect();
    QCOMPARE(refusalOf([&] { YearBackup::restoreYear(year.profile(), file, year.name(), true); }),
             QStringLiteral("The account year %1 is open on other workstations: they must log off from it before it "
                            "can be replaced.").arg(year.name()));
    QCOMPARE(count(*other, QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo WHERE PartyName = 'LATER'")), 1);
    verifyNothingOf(year.profile(), QStringLiteral("~") + year.name());
}

// The restored copy cannot take the year's name (a session holds it open
// at the last moment): the year stays as it was, and nothing else is left.
void TestYearBackup::failedReplaceKeepsTheYear()
{
    TESSEL_YEAR(year);
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("before.bak"));
    backupThenAddLater(year, file);
    std::unique_ptr<SessionConnection> intruder;
    const YearBackup::Progress progress = [&](int percent, const QString &) {
        if (percent >= 95 && !intruder) {
            SessionConnection::OpenOptions o;
            o.prepareSession = false;
            intruder = SessionConnection::open(year.profile(), QStringLiteral("~") + year.name(), o);
        }
    };
    bool failed = false;
    try {
        YearBackup::restoreYear(year.profile(), file, year.name(), true, QString(), progress);
    } catch (const DbError &) {
        failed = true;
    }
    QVERIFY(intruder);
    QVERIFY(failed);
    intruder.reset();
    auto db = year.connect();
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo WHERE PartyName = 'LATER'")), 1);
    verifyNothingOf(year.profile(), QStringLiteral("~") + year.name());
}

void TestYearBackup::damagedBackupLeavesNothing()
{
    TESSEL_YEAR(year);
    fill(year);
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("whole.bak"));
    YearBackup::backupYear(year.profile(), year.name(), file);
    QFile f(file);
    QVERIFY(f.open(QIODevice::ReadWrite));
    QVERIFY(f.resize(f.size() / 2));
    f.close();

    const QString to = TestDb::uniqueName();
    Cleanup made{year.profile(), {to}};
    bool refused = false;
    try {
        YearBackup::restoreYear(year.profile(), file, to);
    } catch (const AccountYear::Error &) {
        refused = true;
    } catch (const DbError &) {
        refused = true;
    }
    QVERIFY(refused);
    verifyNothingOf(year.profile(), to);
}

QTEST_GUILESS_MAIN(TestYearBackup)
#include "tst_yearbackup.moc"
