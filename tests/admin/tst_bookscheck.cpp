// The books check: whole on demonstration years of a few sizes, and each
// kind of fault found when one is planted (by raw SQL, the only way such a
// fault gets in) in a year made through the rules.
#include "admin/BooksCheck.h"
#include "foundation/Schema.h"
#include "support/TestDb.h"
#include "vouchers/DemoGenerator.h"

#include <QProcess>
#include <QtTest>
#include <functional>

using BooksCheck::Kind;

namespace {

const QDate kFrom(2026, 1, 1);
const QDate kTo(2026, 6, 30);

// A demonstration year of `rows` ledger rows, open from its first day.
void fill(SessionConnection &db, qint64 rows)
{
    db.execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {kFrom.addDays(-1)});
    DemoOptions o;
    o.rows = rows;
    o.from = kFrom;
    o.to = kTo;
    DemoGenerator::standardYear(db, o);
}

QString listed(const BooksCheck::Result &r)
{
    QStringList lines;
    for (const BooksCheck::Fault &f : r.faults)
        lines << QStringLiteral("%1 | %2 | %3 | %4").arg(BooksCheck::kindName(f.kind), f.document(), f.account, f.text);
    return lines.join(QLatin1Char('\n'));
}

// What a planting expects the check to name.
struct Planted
{
    Kind kind = Kind::Row;
    QString docType;
    qint64 number = 0;
    QDate date;
    QString account;
};

using Plant = std::function<Planted(SessionConnection &)>;

Row one(SessionConnection &db, const QString &sql, const QVariantList &params = {})
{
    const auto r = db.selectOne(sql, params);
    if (!r)
        qFatal("the year has no row for: %s", qPrintable(sql));
    return *r;
}

// A debit row of a journal voucher (not an opening balance).
Row journalDebit(SessionConnection &db)
{
    return one(db, QStringLiteral("SELECT SrNo, VoucherNo, VDate, PartyCode FROM tblPartyBalance WHERE VoucherType = 'JV' "
                                  "AND VoucherNo > 0 AND PartyDR > 0 ORDER BY SrNo"));
}

// The ledger rows changed by hand, with the kept balances made to follow
// them, so that only the planted fault stands.
void keepUp(SessionConnection &db) { Schema::rebuildKeptBalances(db); }

// The books closed up to the end of March, by a change the log keeps, and
// a journal voucher (not an opening balance) dated before then: its number
// and date.
Row closeMarchWithJournal(SessionConnection &db)
{
    const QDate closing(2026, 3, 31);
    db.execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {closing});
    return one(db, QStringLiteral("SELECT VoucherNo, VDate FROM tblPartyBalance WHERE VoucherType = 'JV' "
                                  "AND VoucherNo > 0 AND VDate <= ? ORDER BY VDate DESC, VoucherNo"),
               {closing});
}

const QMap<QString, Plant> &plants()
{
    static const QMap<QString, Plant> all = {
        {QStringLiteral("unbalanced voucher"), [](SessionConnection &db) {
             const Row r = journalDebit(db);
             db.execute(QStringLiteral("UPDATE tblPartyBalance SET PartyDR = PartyDR + 1, PartyBalance = PartyBalance + 1 "
                                       "WHERE SrNo = ?"), {r.integer(0)});
             keepUp(db);
             return Planted{Kind::Unbalanced, QStringLiteral("JV"), r.integer(1), r.date(2), QString()};
         }},
        {QStringLiteral("cash payment without cash"), [](SessionConnection &db) {
             const Row r = one(db, QStringLiteral("SELECT SrNo, VoucherNo, VDate FROM tblPartyBalance "
                                                  "WHERE VoucherType = 'CP' AND PartyCode = '19-10-001' ORDER BY SrNo"));
             const Row bank = one(db, QStringLiteral("SELECT PartyCode FROM tblPartyInfo WHERE PartyCode LIKE '19-20-%' "
                                                     "AND PartyCode NOT LIKE '%-000' ORDER BY PartyCode"));
             db.execute(QStringLiteral("UPDATE tblPartyBalance SET PartyCode = ? WHERE SrNo = ?"),
                        {bank.text(0), r.integer(0)});
             keepUp(db);
             return Planted{Kind::CashRow, QStringLiteral("CP"), r.integer(1), r.date(2), QStringLiteral("19-10-001")};
         }},
        {QStringLiteral("opening balances apart"), [](SessionConnection &db) {
             const Row r = one(db, QStringLiteral("SELECT SrNo FROM tblPartyBalance WHERE VoucherType = 'JV' "
                                                  "AND VoucherNo = 0 AND PartyDR > 0 ORDER BY SrNo"));
             db.execute(QStringLiteral("UPDATE tblPartyBalance SET PartyDR = PartyDR + 1, PartyBalance = PartyBalance + 1 "
                                       "WHERE SrNo = ?"), {r.integer(0)});
             keepUp(db);
             return Planted{Kind::Opening, QStringLiteral("JV"), 0, QDate(), QString()};
         }},
        {QStringLiteral("row with two sides"), [](SessionConnection &db) {
             const Row r = journalDebit(db);
             db.execute(QStringLiteral("UPDATE tblPartyBalance SET PartyDR = PartyDR + 5, PartyCR = 5 WHERE SrNo = ?"),
                        {r.integer(0)});
             keepUp(db);
             return Planted{Kind::Row, QStringLiteral("JV"), r.integer(1), r.date(2), r.text(3).trimmed()};
         }},
        {QStringLiteral("row balance not debit less credit"), [](SessionConnection &db) {
             // Two rows of one voucher: the voucher still balances.
             const Row r = journalDebit(db);
             const Row other = one(db, QStringLiteral("SELECT SrNo FROM tblPartyBalance WHERE VoucherType = 'JV' "
                                                      "AND VoucherNo = ? AND VDate = ? AND SrNo <> ? ORDER BY SrNo"),
                                   {r.integer(1), r.date(2), r.integer(0)});
             db.execute(QStringLiteral("UPDATE tblPartyBalance SET PartyBalance = PartyBalance + 3 WHERE SrNo = ?"),
                        {r.integer(0)});
             db.execute(QStringLiteral("UPDATE tblPartyBalance SET PartyBalance = PartyBalance - 3 WHERE SrNo = ?"),
                        {other.integer(0)});
             keepUp(db);
             return Planted{Kind::Row, QStringLiteral("JV"), r.integer(1), r.date(2), QString()};
         }},
        {QStringLiteral("posting under a heading"), [](SessionConnection &db) {
             const Row r = journalDebit(db);
             const QString heading = r.text(3).trimmed().left(6) + QStringLiteral("000");
             db.execute(QStringLiteral("UPDATE tblPartyBalance SET PartyCode = ? WHERE SrNo = ?"), {heading, r.integer(0)});
             keepUp(db);
             return Planted{Kind::Account, QStringLiteral("JV"), r.integer(1), r.date(2), heading};
         }},
        {QStringLiteral("posting to an unknown account"), [](SessionConnection &db) {
             const Row r = journalDebit(db);
             db.execute(QStringLiteral("UPDATE tblPartyBalance SET PartyCode = '99-99-999' WHERE SrNo = ?"), {r.integer(0)});
             keepUp(db);
             return Planted{Kind::Account, QStringLiteral("JV"), r.integer(1), r.date(2), QStringLiteral("99-99-999")};
         }},
        {QStringLiteral("kept balance apart"), [](SessionConnection &db) {
             db.execute(QStringLiteral("UPDATE tblAccountBalance SET BalanceCents = BalanceCents + 1 "
                                       "WHERE PartyCode = '19-10-001'"));
             return Planted{Kind::Kept, QString(), 0, QDate(), QStringLiteral("19-10-001")};
         }},
        {QStringLiteral("invoice line changed"), [](SessionConnection &db) {
             const Row r = one(db, QStringLiteral("SELECT SrNo, InvoiceNo, InvoiceDate FROM tblInvoice ORDER BY SrNo"));
             db.execute(QStringLiteral("UPDATE tblInvoice SET ValueIncludingTax = ValueIncludingTax + 1 WHERE SrNo = ?"),
                        {r.integer(0)});
             return Planted{Kind::Invoice, QStringLiteral("SV"), r.integer(1), r.date(2), QString()};
         }},
        {QStringLiteral("purchase line changed"), [](SessionConnection &db) {
             const Row r = one(db, QStringLiteral("SELECT RecordNo, VoucherNo, VDate FROM tblPurchaseStock "
                                                  "WHERE VoucherType = 'PS' ORDER BY RecordNo"));
             db.execute(QStringLiteral("UPDATE tblPurchaseStock SET Amount = Amount + 10 WHERE VoucherType = 'PS' "
                                       "AND RecordNo = ?"), {r.integer(0)});
             return Planted{Kind::Purchase, QStringLiteral("PS"), r.integer(1), r.date(2), QString()};
         }},
        {QStringLiteral("service changed"), [](SessionConnection &db) {
             const Row r = one(db, QStringLiteral("SELECT VoucherNo, ServiceDate FROM tblOtherServices ORDER BY VoucherNo"));
             db.execute(QStringLiteral("UPDATE tblOtherServices SET ServiceAmount = ServiceAmount + 10 "
                                       "WHERE VoucherNo = ?"), {r.integer(0)});
             return Planted{Kind::Service, QStringLiteral("OS"), r.integer(0), r.date(1), QString()};
         }},
        {QStringLiteral("voucher number on two dates"), [](SessionConnection &db) {
             const Row a = one(db, QStringLiteral("SELECT VoucherNo, VDate FROM tblPartyBalance WHERE VoucherType = 'JV' "
                                                  "AND VoucherNo > 0 ORDER BY VoucherNo"));
             const Row b = one(db, QStringLiteral("SELECT VoucherNo FROM tblPartyBalance WHERE VoucherType = 'JV' "
                                                  "AND VoucherNo > ? AND VDate <> ? ORDER BY VoucherNo"),
                               {a.integer(0), a.date(1)});
             db.execute(QStringLiteral("UPDATE tblPartyBalance SET VoucherNo = ? WHERE VoucherType = 'JV' AND VoucherNo = ?"),
                        {a.integer(0), b.integer(0)});
             return Planted{Kind::Duplicate, QStringLiteral("JV"), a.integer(0), QDate(), QString()};
         }},
        {QStringLiteral("challan number on two dates"), [](SessionConnection &db) {
             const Row a = one(db, QStringLiteral("SELECT DeliveryChallanNo, VDate, TitleName FROM tblDeliveryChallan "
                                                  "ORDER BY DeliveryChallanNo"));
             const Row b = one(db, QStringLiteral("SELECT DeliveryChallanNo FROM tblDeliveryChallan WHERE TitleName = ? "
                                                  "AND VDate <> ? ORDER BY DeliveryChallanNo"),
                               {a.text(2), a.date(1)});
             db.execute(QStringLiteral("UPDATE tblDeliveryChallan SET DeliveryChallanNo = ? WHERE TitleName = ? "
                                       "AND DeliveryChallanNo = ?"),
                        {a.integer(0), a.text(2), b.integer(0)});
             return Planted{Kind::Duplicate, QStringLiteral("CHALLAN"), a.integer(0), QDate(), QString()};
         }},
        {QStringLiteral("posting in the closed period"), [](SessionConnection &db) {
             // A balanced journal voucher of a fresh number, dated on the
             // closing date, put in behind the rules' back.
             const QDate closing = one(db, QStringLiteral("SELECT ClosingDate FROM tblClosingDate")).date(0);
             const qint64 no = db.scalar(QStringLiteral("SELECT MAX(VoucherNo) FROM tblPartyBalance "
                                                        "WHERE VoucherType = 'JV'")).toLongLong() + 1;
             const QString code = journalDebit(db).text(3).trimmed();
             const QString sql = QStringLiteral("INSERT INTO tblPartyBalance (VoucherType, VoucherNo, VDate, PartyCode, "
                                                "PartyName, PartyDR, PartyCR, PartyBalance, PartyDesc) "
                                                "VALUES ('JV', ?, ?, ?, 'X', ?, ?, ?, 'BACKDATED')");
             db.execute(sql, {no, closing, code, 50, 0, 50});
             db.execute(sql, {no, closing, QStringLiteral("19-10-001"), 0, 50, -50});
             keepUp(db);
             return Planted{Kind::Closed, QStringLiteral("JV"), no, closing, QString()};
         }},
        {QStringLiteral("voucher moved out of the closed period"), [](SessionConnection &db) {
             const Row jv = closeMarchWithJournal(db);
             const QDate later(2026, 5, 20);
             db.execute(QStringLiteral("UPDATE tblPartyBalance SET VDate = ? WHERE VoucherType = 'JV' AND VoucherNo = ?"),
                        {later, jv.integer(0)});
             keepUp(db);
             return Planted{Kind::Closed, QStringLiteral("JV"), jv.integer(0), later, QString()};
         }},
        {QStringLiteral("voucher removed from the closed period"), [](SessionConnection &db) {
             const Row jv = closeMarchWithJournal(db);
             db.execute(QStringLiteral("DELETE FROM tblPartyBalance WHERE VoucherType = 'JV' AND VoucherNo = ?"),
                        {jv.integer(0)});
             keepUp(db);
             return Planted{Kind::Closed, QStringLiteral("JV"), jv.integer(0), jv.date(1), QString()};
         }},
        {QStringLiteral("lines left in staging"), [](SessionConnection &db) {
             db.execute(QStringLiteral("INSERT INTO tblPartyBalanceEmpty (SrNo, VoucherType, VoucherNo, VDate, PartyCode, "
                                       "PartyName, PartyDR, PartyCR, PartyBalance, DBCR) VALUES (1, 'JV', 1, ?, "
                                       "'19-10-001', 'CASH IN HAND', 1, 0, 1, 'INSERT')"),
                        {kFrom});
             return Planted{Kind::Staging, QString(), 0, QDate(), QString()};
         }},
    };
    return all;
}

} // namespace

class TestBooksCheck : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void demoYearsAreWhole_data();
    void demoYearsAreWhole();
    void plantedFaultIsFound_data();
    void plantedFaultIsFound();
    void commandExitStatus();
};

void TestBooksCheck::demoYearsAreWhole_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<int>("rows");
    for (const char *b : {"sqlite", "postgres"})
        for (int rows : {300, 4000})
            QTest::addRow("%s %d rows", b, rows) << QString::fromLatin1(b) << rows;
}

void TestBooksCheck::demoYearsAreWhole()
{
    QFETCH(int, rows);
    TESSEL_YEAR(year);
    auto db = year.connect();
    fill(*db, rows);
    const BooksCheck::Result r = BooksCheck::run(*db);
    QVERIFY2(r.passed(), qPrintable(listed(r)));
    QCOMPARE(r.truncated, 0);
    QVERIFY(r.checked.contains(Kind::Invoice));
    QVERIFY(r.checked.contains(Kind::Staging));
}

void TestBooksCheck::plantedFaultIsFound_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("plant");
    for (const char *b : {"sqlite", "postgres"})
        for (const QString &p : plants().keys())
            QTest::addRow("%s: %s", b, qPrintable(p)) << QString::fromLatin1(b) << p;
}

void TestBooksCheck::plantedFaultIsFound()
{
    QFETCH(QString, plant);
    TESSEL_YEAR(year);
    auto db = year.connect();
    fill(*db, 400);
    const Planted p = plants().value(plant)(*db);
    const BooksCheck::Result r = BooksCheck::run(*db);
    QVERIFY2(!r.passed(), "the check found nothing");
    bool named = false;
    for (const BooksCheck::Fault &f : r.faults) {
        QVERIFY2(f.kind == p.kind, qPrintable(QStringLiteral("another kind of fault:\n") + listed(r)));
        named = named
            || (f.docType == p.docType && f.number == p.number && (!p.date.isValid() || f.date == p.date)
                && (p.account.isEmpty() || f.account == p.account));
    }
    QVERIFY2(named, qPrintable(QStringLiteral("the document is not named:\n") + listed(r)));
}

void TestBooksCheck::commandExitStatus()
{
    TestDb::Year year(QStringLiteral("sqlite"));
    {
        auto db = year.connect();
        fill(*db, 300);
    }
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("TESSEL_DATA_DIR"), year.profile().dataDir);
    env.insert(QStringLiteral("TESSEL_CONFIG"), year.profile().dataDir + QStringLiteral("/none.ini"));
    auto check = [&](QString *out) {
        QProcess p;
        p.setProcessEnvironment(env);
        p.start(QStringLiteral(TESSEL_BIN_DIR "/tessel-admin"), {QStringLiteral("check"), year.name()});
        if (!p.waitForFinished(120000))
            return -1;
        *out = QString::fromUtf8(p.readAllStandardOutput());
        return p.exitCode();
    };
    QString out;
    QCOMPARE(check(&out), 0);
    QVERIFY2(out.contains(QLatin1String("the books are whole")), qPrintable(out));

    Planted p;
    {
        auto db = year.connect();
        p = plants().value(QStringLiteral("unbalanced voucher"))(*db);
    }
    QCOMPARE(check(&out), 3);
    const QString doc = QStringLiteral("JV # %1 OF %2").arg(p.number).arg(p.date.toString(QStringLiteral("dd/MM/yyyy")));
    QVERIFY2(out.contains(QLatin1String("UNBALANCED VOUCHER")) && out.contains(doc), qPrintable(out));
    QVERIFY2(out.contains(QLatin1String(": 1 fault (")), qPrintable(out));
}

QTEST_GUILESS_MAIN(TestBooksCheck)
#include "tst_bookscheck.moc"
