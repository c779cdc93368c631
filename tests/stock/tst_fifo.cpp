// First in, first out: the allocation over the open receipts, the issue
// that writes it (on both engines), the use of issued stock, and two
// workstations issuing from the same receipts at once.
#include "stock/EmployeeStock.h"
#include "stock/Fifo.h"
#include "foundation/SessionConnection.h"
#include "support/TestDb.h"

#include <QtTest>
#include <atomic>
#include <thread>

using Consumables::Item;
using Fifo::Plan;
namespace Msg = EmployeeStock::Msg;

namespace {

// "sr@dd/mm:units/issued ..." (dates in 2026; "-" for no date).
QVector<Fifo::OpenReceipt> parseReceipts(const QString &text)
{
    QVector<Fifo::OpenReceipt> out;
    for (const QString &part : text.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const QStringList a = part.split(QLatin1Char('@'));
        const QStringList b = a.at(1).split(QLatin1Char(':'));
        const QStringList c = b.at(1).split(QLatin1Char('/'));
        Fifo::OpenReceipt r;
        r.srNo = a.at(0).toLongLong();
        r.date = b.at(0) == QLatin1String("-") ? QDate() : QDate::fromString(b.at(0) + QStringLiteral("/2026"), QStringLiteral("dd/MM/yyyy"));
        r.units = c.at(0).toLongLong();
        r.issued = c.at(1).toLongLong();
        out << r;
    }
    return out;
}

// "sr=drawn ..." of the draws in their order.
QString drawsText(const Plan &p)
{
    QStringList out;
    for (const Fifo::Draw &d : p.draws)
        out << QStringLiteral("%1=%2").arg(d.srNo).arg(d.drawn);
    return out.join(QLatin1Char(' '));
}

const QString kBrand = QStringLiteral("ORBIT");
const QString kType = QStringLiteral("CYAN");
const QString kEmployee = QStringLiteral("16-10-001");

void addEmployee(SessionConnection &db)
{
    db.execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES ('16-10-000', 'EMPLOYEES'), "
                              "(?, 'ASLAM PRESSMAN'), ('16-10-002', 'BASHIR PLATE MAKER')"),
               {kEmployee});
}

// Receipts in tblStock as the text of parseReceipts says (SrNo as given).
void addReceipts(SessionConnection &db, const QString &text, Item item = Item::Ink, const QString &type = kType)
{
    for (const Fifo::OpenReceipt &r : parseReceipts(text))
        db.execute(QStringLiteral("INSERT INTO tblStock (SrNo, Item, BrandName, Type, PartyCode, PartyName, Units, "
                                  "UnitPrice, Issue, VDate) VALUES (?, ?, ?, ?, '14-10-001', 'PAPER HOUSE', ?, 100, ?, ?)"),
                   {r.srNo, Consumables::itemWord(item), kBrand, type, r.units, r.issued, r.date});
}

// "sr=issued ..." of the item's receipts, by SrNo.
QString issuedText(SessionConnection &db)
{
    QStringList out;
    for (const Row &r : db.select(QStringLiteral("SELECT SrNo, Issue FROM tblStock ORDER BY SrNo")))
        out << QStringLiteral("%1=%2").arg(r.integer(0)).arg(r.integer(1));
    return out.join(QLatin1Char(' '));
}

EmployeeStock::IssueRequest issueOf(const QString &units, Item item = Item::Ink)
{
    EmployeeStock::IssueRequest r;
    r.item = item;
    r.brand = kBrand;
    r.type = kType;
    r.employeeName = QStringLiteral("ASLAM PRESSMAN");
    r.employeeCode = kEmployee;
    r.unitsText = units;
    r.dateText = QStringLiteral("10/03/2026");
    return r;
}

} // namespace

class TestFifo : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void allocate_data();
    void allocate();
    void issueChecks_data();
    void issueChecks();
    void issue_data();
    void issue();
    void issueRefusesUnknownEmployee_data() { TestDb::addBackends(); }
    void issueRefusesUnknownEmployee();
    void finish_data();
    void finish();
    void issueFromTwoWorkstationsAtOnce();
};

void TestFifo::allocate_data()
{
    QTest::addColumn<QString>("receipts");
    QTest::addColumn<qint64>("quantity");
    QTest::addColumn<int>("result");
    QTest::addColumn<qint64>("available");
    QTest::addColumn<QString>("draws");
    const int drawn = int(Plan::Result::Drawn), none = int(Plan::Result::NoneOpen), shortOf = int(Plan::Result::Short);
    QTest::newRow("all available: every receipt emptied") << "1@01/01:10/0 2@02/01:5/2" << qint64(13) << drawn << qint64(13)
                                                            << "1=10 2=3";
    QTest::newRow("less than the oldest remainder") << "1@01/01:10/4 2@02/01:5/0" << qint64(5) << drawn << qint64(11)
                                                    << "1=5 2=0";
    QTest::newRow("exactly the oldest remainder") << "1@01/01:10/4 2@02/01:5/0" << qint64(6) << drawn << qint64(11)
                                                  << "1=6 2=0";
    QTest::newRow("over three receipts") << "1@01/01:3/0 2@02/01:3/0 3@03/01:3/0" << qint64(7) << drawn << qint64(9)
                                         << "1=3 2=3 3=1";
    QTest::newRow("oldest date first, whatever the SrNo") << "9@01/01:5/0 2@05/01:5/0" << qint64(6) << drawn
                                                           << qint64(10) << "9=5 2=1";
    QTest::newRow("same date: lower SrNo first") << "7@03/01:5/0 4@03/01:5/0" << qint64(6) << drawn << qint64(10)
                                                 << "4=5 7=1";
    QTest::newRow("undated receipt first") << "3@03/01:5/0 8@-:2/0" << qint64(3) << drawn << qint64(7) << "8=2 3=1";
    QTest::newRow("exhausted and over-drawn receipts passed over") << "1@01/01:5/5 2@02/01:4/6 3@03/01:5/1"
                                                                   << qint64(2) << drawn << qint64(4) << "3=2";
    QTest::newRow("zero units: nothing drawn, no refusal") << "1@01/01:5/0" << qint64(0) << drawn << qint64(5) << "1=0";
    QTest::newRow("none open") << "1@01/01:5/5" << qint64(1) << none << qint64(0) << "";
    QTest::newRow("no receipts at all, zero units") << "" << qint64(0) << none << qint64(0) << "";
    QTest::newRow("one more than available") << "1@01/01:5/0 2@02/01:5/1" << qint64(10) << shortOf << qint64(9) << "";
    QTest::newRow("negative quantity") << "1@01/01:5/0" << qint64(-1) << shortOf << qint64(5) << "";
    QTest::newRow("past 16 bits") << "1@01/01:40000/0 2@02/01:30000/0" << qint64(65000) << drawn << qint64(70000)
                                  << "1=40000 2=25000";
    QTest::newRow("past 32 bits") << "1@01/01:6000000000/1 2@02/01:3000000000/0" << qint64(8999999998) << drawn
                                  << qint64(8999999999) << "1=5999999999 2=2999999999";
}

void TestFifo::allocate()
{
    QFETCH(QString, receipts);
    QFETCH(qint64, quantity);
    QFETCH(int, result);
    QFETCH(qint64, available);
    QFETCH(QString, draws);
    const Plan p = Fifo::allocate(parseReceipts(receipts), quantity);
    QCOMPARE(int(p.result), result);
    QCOMPARE(p.available, available);
    QCOMPARE(drawsText(p), draws);
    if (p.result == Plan::Result::Drawn) {
        QCOMPARE(p.drawnTotal(), quantity);
        for (const Fifo::Draw &d : p.draws)
            QVERIFY(d.inHand() >= 0);
    }
}

void TestFifo::issueChecks_data()
{
    QTest::addColumn<QString>("brand");
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("units");
    QTest::addColumn<QString>("date");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("field");
    const QString wrong = QStringLiteral("Wrong date, please enter correct date");
    const QString missing = QStringLiteral("Date is missing, please enter proper date");
    QTest::newRow("brand first") << "" << "" << "" << "__-__-___" << "" << "" << Msg::brandMissing() << "cmbBrandName";
    QTest::newRow("type") << "ORBIT" << " " << "" << "__-__-___" << "" << "" << Msg::typeMissing() << "cmbType";
    QTest::newRow("employee name") << "ORBIT" << "CYAN" << "" << "16-10-001" << "5" << "10/03/2026"
                                   << Msg::employeeMissing() << "cmbPartyName";
    QTest::newRow("employee code") << "ORBIT" << "CYAN" << "ASLAM" << "__-__-___" << "5" << "10/03/2026"
                                   << Msg::codeMissing() << "mskPartyCode";
    QTest::newRow("units") << "ORBIT" << "CYAN" << "ASLAM" << "16-10-001" << "" << "10/03/2026" << Msg::unitsMissing()
                           << "txtUnits";
    QTest::newRow("empty date is a wrong one") << "ORBIT" << "CYAN" << "ASLAM" << "16-10-001" << "5" << "__/__/____"
                                               << wrong << "mskDate";
    QTest::newRow("day 32") << "ORBIT" << "CYAN" << "ASLAM" << "16-10-001" << "5" << "32/03/2026" << wrong << "mskDate";
    QTest::newRow("month 13") << "ORBIT" << "CYAN" << "ASLAM" << "16-10-001" << "5" << "10/13/2026" << wrong << "mskDate";
    QTest::newRow("half-typed year is a missing date") << "ORBIT" << "CYAN" << "ASLAM" << "16-10-001" << "5"
                                                       << "10/03/20__" << missing << "mskDate";
    QTest::newRow("no such day") << "ORBIT" << "CYAN" << "ASLAM" << "16-10-001" << "5" << "31/02/2026" << wrong
                                 << "mskDate";
    QTest::newRow("zero units pass") << "ORBIT" << "CYAN" << "ASLAM" << "16-10-001" << "0" << "10/03/2026" << ""
                                     << "";
}

void TestFifo::issueChecks()
{
    QFETCH(QString, brand);
    QFETCH(QString, type);
    QFETCH(QString, name);
    QFETCH(QString, code);
    QFETCH(QString, units);
    QFETCH(QString, date);
    QFETCH(QString, message);
    QFETCH(QString, field);
    const Outcome o = EmployeeStock::checkIssue({Item::Ink, brand, type, name, code, units, date});
    QCOMPARE(o.message, message);
    QCOMPARE(o.field, field);
    QCOMPARE(o.ok, message.isEmpty());
}

void TestFifo::issue_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("receipts");
    QTest::addColumn<QString>("units");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("issuedAfter");   // every receipt, by SrNo
    QTest::addColumn<qint64>("employeeUnits");  // the employee's new row; 0 for none
    const QString ok = Msg::issued(Item::Ink);
    for (const char *b : {"sqlite", "postgres"}) {
        const QByteArray p = QByteArray(b) + ": ";
        QTest::newRow(p + "all available") << b << "1@01/01:10/4 2@02/01:5/0" << "11" << ok << "1=10 2=5" << qint64(11);
        QTest::newRow(p + "less than the oldest") << b << "1@01/01:10/4 2@02/01:5/0" << "3" << ok << "1=7 2=0"
                                                  << qint64(3);
        QTest::newRow(p + "same date, lower SrNo first") << b << "5@02/01:4/0 3@02/01:4/0" << "6" << ok << "3=4 5=2"
                                                         << qint64(6);
        QTest::newRow(p + "none open") << b << "1@01/01:4/4" << "1" << Msg::noOpenReceipt() << "1=4" << qint64(0);
        QTest::newRow(p + "too many") << b << "1@01/01:4/0 2@02/01:4/1" << "8" << Msg::quantityShort() << "1=0 2=1"
                                      << qint64(0);
        QTest::newRow(p + "zero units") << b << "1@01/01:4/1" << "0" << ok << "1=1" << qint64(0);
        QTest::newRow(p + "past 16 bits") << b << "1@01/01:40000/0" << "32768" << ok << "1=32768" << qint64(32768);
        QTest::newRow(p + "more digits than 64 bits hold") << b << "1@01/01:4/0" << "99999999999999999999"
                                                           << Msg::quantityShort() << "1=0" << qint64(0);
    }
}

void TestFifo::issue()
{
    TESSEL_YEAR(year);
    QFETCH(QString, receipts);
    QFETCH(QString, units);
    QFETCH(QString, message);
    QFETCH(QString, issuedAfter);
    QFETCH(qint64, employeeUnits);
    auto db = year.connect();
    addEmployee(*db);
    addReceipts(*db, receipts);
    // Another type of the same brand is never drawn from.
    addReceipts(*db, QStringLiteral("90@01/01:50/0"), Item::Ink, QStringLiteral("BLACK"));
    const Outcome o = EmployeeStock::issue(*db, issueOf(units));
    QCOMPARE(o.message, message);
    QCOMPARE(issuedText(*db), issuedAfter + QStringLiteral(" 90=0"));
    QCOMPARE(db->scalar(QStringLiteral("SELECT COALESCE(SUM(Units), 0) FROM tblEmployeeStock")).toLongLong(), employeeUnits);
    if (employeeUnits > 0) {
        const auto row = db->selectOne(QStringLiteral("SELECT Item, BrandName, Type, PartyCode, Issue, EntryDate "
                                                      "FROM tblEmployeeStock WHERE SrNo = ?"),
                                       {o.number});
        QVERIFY(row);
        QCOMPARE(row->text(0).trimmed(), QStringLiteral("INK"));
        QCOMPARE(row->text(3).trimmed(), kEmployee);
        QCOMPARE(row->integer(4), qint64(0));
        QCOMPARE(row->date(5), QDate(2026, 3, 10));
    }
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblStock WHERE Issue > Units")), 0);
}

void TestFifo::issueRefusesUnknownEmployee()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    addEmployee(*db);
    addReceipts(*db, QStringLiteral("1@01/01:10/0"));
    for (const QString &code : {QStringLiteral("16-10-099"), QStringLiteral("16-10-000"), QStringLiteral("16-10-__1")}) {
        auto r = issueOf(QStringLiteral("2"));
        r.employeeCode = code;
        const Outcome o = EmployeeStock::issue(*db, r);
        QVERIFY2(!o.ok, qPrintable(code));
        QCOMPARE(o.field, QStringLiteral("cmbPartyName"));
    }
    QCOMPARE(issuedText(*db), QStringLiteral("1=0"));
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblEmployeeStock")), 0);
}

void TestFifo::finish_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("held");      // the employee's rows: "units/used ..."
    QTest::addColumn<QString>("units");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("usedAfter"); // each row's Issue, in order
    for (const char *b : {"sqlite", "postgres"}) {
        const QByteArray p = QByteArray(b) + ": ";
        QTest::newRow(p + "part of the first row") << b << "3/0 3/0" << "2" << Msg::finished() << "2 0";
        QTest::newRow(p + "all of the first row") << b << "3/1 3/0" << "2" << Msg::finished() << "3 0";
        QTest::newRow(p + "spent row passed over") << b << "3/3 3/0" << "3" << Msg::finished() << "3 3";
        QTest::newRow(p + "5 of 3 + 3 refused") << b << "3/0 3/0" << "5" << Msg::quantityShort() << "0 0";
        QTest::newRow(p + "nothing held") << b << "3/3" << "1" << Msg::noneHeld() << "3";
        QTest::newRow(p + "no units typed") << b << "3/0" << "" << Msg::unitsMissing() << "0";
    }
}

void TestFifo::finish()
{
    TESSEL_YEAR(year);
    QFETCH(QString, held);
    QFETCH(QString, units);
    QFETCH(QString, message);
    QFETCH(QString, usedAfter);
    auto db = year.connect();
    addEmployee(*db);
    int day = 1;
    for (const QString &h : held.split(QLatin1Char(' '))) {
        const QStringList a = h.split(QLatin1Char('/'));
        db->execute(QStringLiteral("INSERT INTO tblEmployeeStock (Item, BrandName, Type, PartyCode, Units, Issue, EntryDate) "
                                   "VALUES ('INK', ?, ?, ?, ?, ?, ?)"),
                    {kBrand, kType, kEmployee, a.at(0).toLongLong(), a.at(1).toLongLong(), QDate(2026, 2, day++)});
    }
    // Another employee's row of the same stock is no concern of this one.
    db->execute(QStringLiteral("INSERT INTO tblEmployeeStock (Item, BrandName, Type, PartyCode, Units, Issue, EntryDate) "
                               "VALUES ('INK', ?, ?, '16-10-002', 9, 0, ?)"),
                {kBrand, kType, QDate(2026, 1, 1)});
    EmployeeStock::FinishRequest r{Item::Ink, kBrand, kType, QStringLiteral("ASLAM PRESSMAN"), kEmployee, units};
    QCOMPARE(EmployeeStock::finish(*db, r).message, message);
    QStringList used;
    for (const Row &row : db->select(QStringLiteral("SELECT Issue FROM tblEmployeeStock WHERE PartyCode = ? ORDER BY SrNo"),
                                     {kEmployee}))
        used << QString::number(row.integer(0));
    QCOMPARE(used.join(QLatin1Char(' ')), usedAfter);
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblEmployeeStock WHERE PartyCode = '16-10-002' "
                                               "AND Issue = 0")),
             1);
}

// Two workstations issue the same brand and type at the same moment, many
// times over: every unit asked for and granted is drawn exactly once.
void TestFifo::issueFromTwoWorkstationsAtOnce()
{
    if (!TestDb::postgresConfigured())
        QSKIP("no PostgreSQL test server (run the test script)");
    TestDb::Year year(QStringLiteral("postgres"));
    {
        auto db = year.connect();
        addEmployee(*db);
        addReceipts(*db, QStringLiteral("1@01/01:7/0 2@01/01:5/0 3@02/01:11/0 4@03/01:3/0 5@04/01:9/0 6@05/01:13/0"));
    }
    const qint64 total = 48;
    std::atomic<int> ready{0};
    qint64 granted[2] = {0, 0};
    int refusedShort[2] = {0, 0};
    QString errors[2];
    auto work = [&](int w) {
        try {
            auto db = year.connect();
            ++ready;
            while (ready.load() < 2) {
            }
            for (int i = 0; i < 30; ++i) {
                const qint64 units = 1 + (i + w) % 3;
                const Outcome o = EmployeeStock::issue(*db, issueOf(QString::number(units)));
                if (o.ok)
                    granted[w] += units;
                else if (o.message == Msg::quantityShort() || o.message == Msg::noOpenReceipt())
                    ++refusedShort[w];
                else
                    errors[w] += o.message;
            }
        } catch (const DbError &e) {
            errors[w] += e.driverText();
        }
    };
    std::thread t0(work, 0), t1(work, 1);
    t0.join();
    t1.join();
    QVERIFY2(errors[0].isEmpty() && errors[1].isEmpty(), qPrintable(errors[0] + errors[1]));
    auto db = year.connect();
    const qint64 issued = db->scalar(QStringLiteral("SELECT SUM(Issue) FROM tblStock")).toLongLong();
    QCOMPARE(issued, granted[0] + granted[1]);
    QCOMPARE(db->scalar(QStringLiteral("SELECT SUM(Units) FROM tblEmployeeStock")).toLongLong(), issued);
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblStock WHERE Issue > Units OR Issue < 0")), 0);
    // 60 issues of 1 to 3 units ask for far more than the 48 received: the
    // stock runs out, and the refusals begin only once it has.
    QCOMPARE(issued, total - db->scalar(QStringLiteral("SELECT SUM(Units - Issue) FROM tblStock")).toLongLong());
    QVERIFY(issued > total - 3);
    QVERIFY(refusedShort[0] + refusedShort[1] > 0);
}

QTEST_GUILESS_MAIN(TestFifo)
#include "tst_fifo.moc"
