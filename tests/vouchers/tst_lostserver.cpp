// A voucher being typed when the store is out of reach: the PostgreSQL
// server goes away and comes back, or another workstation holds the
// embedded year's file. Nothing typed is lost, the message says why, and
// the save after it goes through once.
#include "support/TestDb.h"
#include "vouchers/VoucherPosting.h"
#include "vouchers/VoucherStaging.h"

#include <QProcess>
#include <QTcpServer>
#include <QtTest>

namespace {

const QString kUser = QStringLiteral("CLERK");
const QDate kToday(2026, 3, 10);
const VoucherKey kKey{QStringLiteral("CP"), 1, QDate(2026, 3, 9)};

QVector<LineInput> typedLines()
{
    QVector<LineInput> lines;
    for (const auto &l : {qMakePair(QStringLiteral("21-10-001"), QStringLiteral("ELECTRICITY")),
                          qMakePair(QStringLiteral("21-10-002"), QStringLiteral("TEA AND REFRESHMENT"))}) {
        LineInput in;
        in.partyCode = l.first;
        in.partyName = l.second;
        in.description = QStringLiteral("PAID");
        in.amount = Money::fromUnits(250);
        in.side = QStringLiteral("DR");
        lines << in;
    }
    return lines;
}

void addAccounts(SessionConnection &db)
{
    Transaction tx(db);
    for (const LineInput &l : typedLines())
        db.execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES (?, ?)"), {l.partyCode, l.partyName});
    tx.commit();
}

// The screen's part: its lines are the truth, staging is written from them.
void stage(SessionConnection &db)
{
    VoucherStaging staging(db);
    staging.clear();
    qint64 sr = 0;
    for (const LineInput &l : typedLines())
        staging.addLine(kKey, l, sr);
}

// A PostgreSQL server of the test's own, on a free loopback port.
class OwnServer
{
public:
    OwnServer() : m_dir(QDir::tempPath() + QStringLiteral("/tessel-lost-XXXXXX"))
    {
        QTcpServer probe;
        if (probe.listen(QHostAddress::LocalHost, 0))
            m_port = probe.serverPort();
    }
    ~OwnServer() { script({QStringLiteral("stop"), m_dir.path()}); }
    bool start() { return script({QStringLiteral("start"), m_dir.path(), QString::number(m_port)}); }
    bool halt() { return script({QStringLiteral("halt"), m_dir.path()}); }
    bool resume() { return script({QStringLiteral("resume"), m_dir.path(), QString::number(m_port)}); }
    ConnectionProfile profile() const
    {
        ConnectionProfile p = TestDb::postgresProfile();
        p.host = QStringLiteral("127.0.0.1");
        p.port = m_port;
        p.user = QStringLiteral("postgres");
        p.password.clear();
        p.connectTimeoutSeconds = 3;
        return p;
    }

private:
    bool script(const QStringList &args)
    {
        QProcess p;
        p.start(QStringLiteral("bash"), QStringList{QStringLiteral(TESSEL_SOURCE_DIR "/scripts/pg-test-server.sh")} + args);
        return p.waitForFinished(120000) && p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
    }
    QTemporaryDir m_dir;
    quint16 m_port = 0;
};

int ledgerRows(SessionConnection &db) { return TestDb::count(db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")); }

} // namespace

class TestLostServer : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void serverRestartedMidVoucher();
    void lockedYearKeepsTheLines();
};

void TestLostServer::serverRestartedMidVoucher()
{
    if (QDir(QStringLiteral("/usr/lib/postgresql")).isEmpty()) {
        if (TestDb::postgresRequired())
            QFAIL("no PostgreSQL server binaries");
        QSKIP("no PostgreSQL server binaries");
    }
    OwnServer server;
    QVERIFY(server.start());
    const ConnectionProfile profile = server.profile();
    const QString name = TestDb::uniqueName(QStringLiteral("TesselLost"));
    AccountYear::CreateOptions o;
    o.adminPassword = QStringLiteral("secret");
    o.closingDate = QDate(2025, 12, 31);
    AccountYear::create(profile, name, o);

    auto db = SessionConnection::open(profile, name);
    addAccounts(*db);
    db->setReportPeriod(QDate(2026, 1, 1), QDate(2026, 6, 30));
    stage(*db);
    const quint64 epoch = db->connectionEpoch();

    // The server goes away with the voucher on the screen.
    QVERIFY(server.halt());
    try {
        VoucherPosting(*db, kUser, kToday).saveNew(kKey, NumberPolicy::Proposed);
        QFAIL("saved with no server");
    } catch (const DbError &e) {
        QCOMPARE(e.kind(), DbError::Kind::ConnectionLost);
        QVERIFY2(e.driverText().startsWith(QLatin1String("The connection to the database server was lost")),
                 qPrintable(e.driverText()));
    }
    QCOMPARE(db->transactionDepth(), 0);
    // Still away: the next command tries again and says so, never blank.
    try {
        VoucherStaging(*db).lines();
        QFAIL("read with no server");
    } catch (const DbError &e) {
        QCOMPARE(e.kind(), DbError::Kind::ConnectionLost);
        QVERIFY(!e.driverText().trimmed().isEmpty());
    }

    // Back: the next command connects again on a new session.
    QVERIFY(server.resume());
    QVERIFY(VoucherStaging(*db).lines().isEmpty()); // the old session's staging went with it
    QVERIFY(db->connectionEpoch() > epoch);
    QCOMPARE(db->scalar(QStringLiteral("SELECT ReportSDate()")).toDate(), QDate(2026, 1, 1));
    stage(*db); // the screen writes its lines again
    const Outcome out = VoucherPosting(*db, kUser, kToday).saveNew(kKey, NumberPolicy::Proposed);
    QVERIFY2(out.ok, qPrintable(out.message));
    QCOMPARE(ledgerRows(*db), 3); // two lines and the cash row, once
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(DISTINCT VoucherNo) FROM tblPartyBalance")), 1);
    db.reset();
    AccountYear::drop(profile, name);
}

void TestLostServer::lockedYearKeepsTheLines()
{
    TestDb::Year year(QStringLiteral("sqlite"));
    auto other = year.connect();
    auto db = year.connect();
    addAccounts(*db);
    db->select(QStringLiteral("PRAGMA busy_timeout = 300"));

    // Another workstation holds the year's file while this one types.
    Transaction holding(*other);
    other->execute(QStringLiteral("UPDATE tblTLClientInfo SET TLClientPhone = '1'"));
    QElapsedTimer clock;
    clock.start();
    stage(*db);
    QVERIFY(clock.elapsed() < 250); // staging never waits for the year's file
    QCOMPARE(VoucherStaging(*db).lines().size(), 2);

    try {
        VoucherPosting(*db, kUser, kToday).saveNew(kKey, NumberPolicy::Proposed);
        QFAIL("saved while another workstation held the year");
    } catch (const DbError &e) {
        QCOMPARE(e.kind(), DbError::Kind::Busy);
        QVERIFY2(e.driverText().startsWith(QLatin1String("Another workstation is saving")), qPrintable(e.driverText()));
    }
    QCOMPARE(db->transactionDepth(), 0);
    QCOMPARE(VoucherStaging(*db).lines().size(), 2); // nothing typed is lost
    QCOMPARE(ledgerRows(*db), 0);

    holding.commit();

    // A transaction that has read the year's tables holds its file as well,
    // so that no other writer slips in between its reading and its writing.
    {
        Transaction reading(*other);
        QCOMPARE(TestDb::count(*other, QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo")), 11);
        QVERIFY_THROWS_EXCEPTION(DbError, VoucherPosting(*db, kUser, kToday).saveNew(kKey, NumberPolicy::Proposed));
    }
    QCOMPARE(VoucherStaging(*db).lines().size(), 2);

    const Outcome out = VoucherPosting(*db, kUser, kToday).saveNew(kKey, NumberPolicy::Proposed);
    QVERIFY2(out.ok, qPrintable(out.message));
    QCOMPARE(ledgerRows(*db), 3);
}

QTEST_GUILESS_MAIN(TestLostServer)
#include "tst_lostserver.moc"
