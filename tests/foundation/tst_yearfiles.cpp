// The year's file on the embedded store: a year is said to be made only
// when every page of it stands in the file, it is made readable by its
// owner alone, a file removed or replaced under a running program takes no
// save, and an archived copy that cannot be written opens for reading.
#include "foundation/AccountYear.h"
#include "foundation/PasswordHash.h"
#include "foundation/SessionConnection.h"
#include "support/TestDb.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>
#include <unistd.h>

namespace {

// A folder of limited size (a small tmpfs), for a disk that fills up.
// Mounting needs root; without it the tests that need it are skipped.
class SmallDisk
{
public:
    SmallDisk() = default;
    ~SmallDisk()
    {
        if (m_mounted)
            QProcess::execute(QStringLiteral("umount"), {QStringLiteral("-l"), m_dir.path()});
    }
    bool mount(int kilobytes)
    {
        if (geteuid() != 0 || !m_dir.isValid())
            return false;
        const QString opts = (m_mounted ? QStringLiteral("remount,size=%1k") : QStringLiteral("size=%1k")).arg(kilobytes);
        m_mounted = QProcess::execute(QStringLiteral("mount"), {QStringLiteral("-t"), QStringLiteral("tmpfs"), QStringLiteral("-o"),
                                                                opts, QStringLiteral("tmpfs"), m_dir.path()}) == 0 || m_mounted;
        return m_mounted;
    }
    bool readOnly()
    {
        return QProcess::execute(QStringLiteral("mount"), {QStringLiteral("-o"), QStringLiteral("remount,ro"), m_dir.path()}) == 0;
    }
    QString path() const { return m_dir.path(); }
    QStringList files() const { return QDir(m_dir.path()).entryList(QDir::Files | QDir::Hidden); }
    void empty()
    {
        for (const QString &f : files())
            QFile::remove(QDir(m_dir.path()).filePath(f));
    }

private:
    QTemporaryDir m_dir;
    bool m_mounted = false;
};

ConnectionProfile embeddedAt(const QString &dir)
{
    ConnectionProfile p = ConnectionProfile::embeddedDefault();
    p.dataDir = dir;
    return p;
}

AccountYear::CreateOptions options()
{
    AccountYear::CreateOptions o;
    o.adminPassword = QStringLiteral("secret");
    o.closingDate = QDate(2025, 12, 31);
    return o;
}

void insertAccount(SessionConnection &db)
{
    Transaction tx(db);
    db.execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES ('21-10-001', 'ELECTRICITY')"));
    tx.commit();
}

} // namespace

class TestYearFiles : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { PasswordHash::setIterationsForTests(1000); }
    void fullDiskLeavesNoYear();
    void filesAreTheOwners();
    void removedOrReplacedFileTakesNoSave_data();
    void removedOrReplacedFileTakesNoSave();
    void readOnlyYearOpensForReports();
};

void TestYearFiles::fullDiskLeavesNoYear()
{
    // How big a year is, on a disk with room.
    QTemporaryDir roomy;
    AccountYear::create(embeddedAt(roomy.path()), QStringLiteral("TesselSize"), options());
    const qint64 yearKb = QFileInfo(QDir(roomy.path()).filePath(QStringLiteral("TesselSize.sqlite"))).size() / 1024;
    QVERIFY(yearKb > 16);

    SmallDisk disk;
    if (!disk.mount(64))
        QSKIP("a size-limited folder needs root (mount -t tmpfs)");
    // From too small for the write-ahead file to room for everything: in
    // between, the committed pages fit in the write-ahead file but not in
    // the year's file. Either the year is made whole or nothing is left.
    int made = 0, refused = 0, lastRefusedKb = 0;
    for (qint64 kb = 32; kb <= yearKb * 3 + 64; kb += qMax<qint64>(8, yearKb / 12)) {
        QVERIFY(disk.mount(int(kb)));
        disk.empty();
        const ConnectionProfile profile = embeddedAt(disk.path());
        try {
            AccountYear::create(profile, QStringLiteral("Tessel2026"), options());
        } catch (const AccountYear::Error &) {
        } catch (const DbError &) {
        }
        if (!QFile::exists(QDir(disk.path()).filePath(QStringLiteral("Tessel2026.sqlite")))) {
            QVERIFY2(disk.files().isEmpty(), qPrintable(QStringLiteral("%1 KB left %2").arg(kb).arg(disk.files().join(' '))));
            ++refused;
            lastRefusedKb = int(kb);
            continue;
        }
        ++made;
        auto db = SessionConnection::open(profile, QStringLiteral("Tessel2026"));
        QCOMPARE(db->scalar(QStringLiteral("PRAGMA integrity_check")).toString(), QStringLiteral("ok"));
        QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblLogon")), 1);
        QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo")), 9);
    }
    QVERIFY(made > 0);
    QVERIFY(refused > 0);

    // The tool says so: a non-zero exit and nothing in the folder.
    QVERIFY(disk.mount(lastRefusedKb));
    disk.empty();
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("TESSEL_DATA_DIR"), disk.path());
    env.insert(QStringLiteral("TESSEL_CONFIG"), QDir(roomy.path()).filePath(QStringLiteral("none.ini")));
    p.setProcessEnvironment(env);
    p.start(QStringLiteral(TESSEL_BIN_DIR "/tessel-admin"),
            {QStringLiteral("create"), QStringLiteral("Tessel2026"), QStringLiteral("--password"), QStringLiteral("x")});
    QVERIFY(p.waitForFinished(60000));
    QVERIFY(p.exitCode() != 0);
    QVERIFY(!QString::fromUtf8(p.readAllStandardOutput()).contains(QLatin1String("Created")));
    QCOMPARE(disk.files(), QStringList());
}

void TestYearFiles::filesAreTheOwners()
{
    QTemporaryDir dir;
    const QString data = QDir(dir.path()).filePath(QStringLiteral("data"));
    const ConnectionProfile profile = embeddedAt(data);
    AccountYear::create(profile, QStringLiteral("Tessel2026"), options());
    const QFileDevice::Permissions others = QFileDevice::ReadGroup | QFileDevice::WriteGroup | QFileDevice::ReadOther
        | QFileDevice::WriteOther | QFileDevice::ExeGroup | QFileDevice::ExeOther;
    QCOMPARE(QFile::permissions(data) & others, QFileDevice::Permissions());
    const QString file = QDir(data).filePath(QStringLiteral("Tessel2026.sqlite"));
    QCOMPARE(QFile::permissions(file) & others, QFileDevice::Permissions());
    // The write-ahead files take the year's own permissions.
    auto db = SessionConnection::open(profile, QStringLiteral("Tessel2026"));
    insertAccount(*db);
    QVERIFY(QFile::exists(file + QStringLiteral("-wal")));
    QCOMPARE(QFile::permissions(file + QStringLiteral("-wal")) & others, QFileDevice::Permissions());
}

void TestYearFiles::removedOrReplacedFileTakesNoSave_data()
{
    QTest::addColumn<bool>("replace");
    QTest::newRow("removed") << false;
    QTest::newRow("replaced by a copy") << true;
}

void TestYearFiles::removedOrReplacedFileTakesNoSave()
{
    QFETCH(bool, replace);
    QTemporaryDir dir;
    const ConnectionProfile profile = embeddedAt(dir.path());
    AccountYear::create(profile, QStringLiteral("Tessel2026"), options());
    const QString file = QDir(dir.path()).filePath(QStringLiteral("Tessel2026.sqlite"));
    auto db = SessionConnection::open(profile, QStringLiteral("Tessel2026"));
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo")), 9);

    if (replace) {
        QVERIFY(QFile::copy(file, file + QStringLiteral(".copy")));
        QVERIFY(QFile::remove(file));
        QVERIFY(QFile::rename(file + QStringLiteral(".copy"), file));
    } else {
        QVERIFY(QFile::remove(file));
    }
    try {
        insertAccount(*db);
        QFAIL("saved into a file that is no longer the year");
    } catch (const DbError &e) {
        QCOMPARE(e.kind(), DbError::Kind::FileChanged);
        QVERIFY(e.driverText().contains(QLatin1String("was removed or replaced")));
    }
    QCOMPARE(db->transactionDepth(), 0);
    if (replace) { // the copy on the path holds nothing of the refused save
        auto fresh = SessionConnection::open(profile, QStringLiteral("Tessel2026"));
        QCOMPARE(TestDb::count(*fresh, QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo")), 9);
    }
}

void TestYearFiles::readOnlyYearOpensForReports()
{
    SmallDisk disk;
    QTemporaryDir plain;
    const bool root = geteuid() == 0;
    if (root && !disk.mount(8192))
        QSKIP("a read-only folder needs root (mount -t tmpfs)");
    const QString data = root ? disk.path() : plain.path();
    const ConnectionProfile profile = embeddedAt(data);
    AccountYear::create(profile, QStringLiteral("TesselArchive"), options());
    {
        auto db = SessionConnection::open(profile, QStringLiteral("TesselArchive"));
        insertAccount(*db);
    }
    if (root)
        QVERIFY(disk.readOnly());
    else
        QFile::setPermissions(QDir(data).filePath(QStringLiteral("TesselArchive.sqlite")), QFileDevice::ReadOwner);

    auto db = SessionConnection::open(profile, QStringLiteral("TesselArchive"));
    QVERIFY(db->isReadOnly());
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo")), 10);
    db->setReportPeriod(QDate(2026, 1, 1), QDate(2026, 12, 31));

    // A report renders from it with the tool.
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("TESSEL_DATA_DIR"), data);
    env.insert(QStringLiteral("TESSEL_CONFIG"), QDir(plain.path()).filePath(QStringLiteral("none.ini")));
    p.setProcessEnvironment(env);
    const QString out = QDir(plain.path()).filePath(QStringLiteral("trial.csv"));
    p.start(QStringLiteral(TESSEL_BIN_DIR "/tessel-report"),
            {QStringLiteral("--year"), QStringLiteral("TesselArchive"), QStringLiteral("--design"),
             QStringLiteral("crTrialBalanceUptoDate"), QStringLiteral("--to"), QStringLiteral("31/12/2026"),
             QStringLiteral("--out"), out});
    QVERIFY(p.waitForFinished(60000));
    QVERIFY2(p.exitCode() == 0, p.readAllStandardError().constData());
    QVERIFY(QFile::exists(out));

    // A write is refused with the driver's words, and the session goes on.
    try {
        insertAccount(*db);
        QFAIL("wrote into a read-only year");
    } catch (const DbError &e) {
        QVERIFY(!e.driverText().isEmpty());
    }
    QCOMPARE(db->transactionDepth(), 0);
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo")), 10);
}

QTEST_GUILESS_MAIN(TestYearFiles)
#include "tst_yearfiles.moc"
