// Purchase stock: the arithmetic of a bill, the three ledger rows that
// follow its stored lines through save, change and removal, numbering,
// the closing date, and what a failure in the middle leaves behind.
#include "StockFixture.h"
#include "support/TestDb.h"

#include "stock/PurchaseStockPosting.h"
#include "stock/PurchaseStockRules.h"
#include "vouchers/LedgerCheck.h"

#include <QtTest>

using namespace StockFixture;
using namespace PurchaseStock;

namespace {

const QString kParty = QStringLiteral("PAPER HOUSE");
const QString kPartyCode = QStringLiteral("14-10-001");
const QString kPurchase = QStringLiteral("PAPER PURCHASES");
const QString kPurchaseCode = QStringLiteral("20-11-001");

Header header(qint64 no, const QString &freight, const QString &tax, const QString &bill = QStringLiteral("B-77"))
{
    Header h;
    h.voucherNo = no;
    h.billNo = bill;
    h.date = kDay;
    h.partyName = kParty;
    h.purchaseName = kPurchase;
    h.freight = m(freight);
    h.saleTax = tax;
    h.careOf = QStringLiteral("MR ASLAM");
    return h;
}

Line line(const QString &desc, const QString &weight, const QString &qty, const QString &rate)
{
    Line l;
    l.itemDesc = desc;
    l.weight = weight;
    l.quantity = qty;
    l.unitRate = rate;
    l.unitType = QStringLiteral("KG");
    return l;
}

// "qty x rate; qty x rate" as lines of the bill.
QVector<Line> parseLines(const QString &written)
{
    QVector<Line> out;
    int i = 0;
    for (const QString &part : written.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const QStringList qr = part.split(QLatin1Char('x'));
        ++i;
        out << line(QStringLiteral("ITEM%1").arg(i), QStringLiteral("W%1").arg(i), qr.at(0).trimmed(),
                    qr.at(1).trimmed());
    }
    return out;
}

QString narration(const QString &start, int from, int to)
{
    QString s = start;
    for (int i = from; i <= to; ++i)
        s += QStringLiteral(" ITEM%1 W%1+").arg(i);
    return s;
}

// The legs the bill must have: goods, freight, purchase (zero ones left out).
QVector<Leg> expected(const QString &goods, const QString &freight, const QString &net, const QString &desc,
                      const QString &freightDesc)
{
    QVector<Leg> out;
    if (!m(goods).isZero())
        out << Leg{kPartyCode, Money(), m(goods), desc};
    if (!m(freight).isZero())
        out << Leg{kPartyCode, Money(), m(freight), freightDesc};
    if (!m(net).isZero())
        out << Leg{kPurchaseCode, m(net), Money(), desc};
    return out;
}

} // namespace

class TestPurchaseStockPosting : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void wholeMoneyArithmetic_data();
    void wholeMoneyArithmetic();
    void checksInScreenOrder_data();
    void checksInScreenOrder();
    void legsFollowTheLines_data();
    void legsFollowTheLines();
    void billNumberSharedByTwoVouchers_data() { TestDb::addBackends(); }
    void billNumberSharedByTwoVouchers();
    void newVoucherNeverJoinsAnother_data() { TestDb::addBackends(); }
    void newVoucherNeverJoinsAnother();
    void closedPeriodRefused_data() { TestDb::addBackends(); }
    void closedPeriodRefused();
    void failureLeavesBothTables_data();
    void failureLeavesBothTables();
};

// ------------------------------------------------------------ pure rules

void TestPurchaseStockPosting::wholeMoneyArithmetic_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<QString>("a");
    QTest::addColumn<QString>("b");
    QTest::addColumn<QString>("result");
    QTest::newRow("line 10 x 12.5") << "line" << "10" << "12.5" << "125";
    QTest::newRow("line half down to even") << "line" << "2.5" << "1" << "2";
    QTest::newRow("line half up to even") << "line" << "3.5" << "1" << "4";
    QTest::newRow("line 2.5 x 401 = 1002.5") << "line" << "2.5" << "401" << "1002";
    QTest::newRow("line just over half") << "line" << "2.505" << "1" << "3";
    QTest::newRow("line empty quantity") << "line" << "" << "40" << "0";
    QTest::newRow("line beyond seven digits") << "line" << "1000" << "12345.67" << "12345670";
    QTest::newRow("tax 17.5 of 1003 = 175.525") << "tax" << "1003" << "17.5" << "176";
    QTest::newRow("tax 2.5 of 100 = 2.5") << "tax" << "100" << "2.5" << "2";
    QTest::newRow("tax 3.5 of 100 = 3.5") << "tax" << "100" << "3.5" << "4";
    QTest::newRow("tax none") << "tax" << "5000" << "" << "0";
    QTest::newRow("tax on a large bill") << "tax" << "12345670" << "17" << "2098764";
}

void TestPurchaseStockPosting::wholeMoneyArithmetic()
{
    QFETCH(QString, what);
    QFETCH(QString, a);
    QFETCH(QString, b);
    QFETCH(QString, result);
    const Money got = what == QLatin1String("line") ? lineAmount(a, b) : wholePercent(m(a), b);
    QCOMPARE(got.toPlainString(), m(result).toPlainString());
}

void TestPurchaseStockPosting::checksInScreenOrder_data()
{
    QTest::addColumn<QString>("change");
    QTest::addColumn<int>("command");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("field");
    using namespace PurchaseStockMessages;
    const int save = int(Command::Save), del = int(Command::Delete);
    QTest::newRow("all good") << "" << save << "" << "";
    QTest::newRow("same accounts before anything") << "same;nobill" << save << kSameAccount << "cmbPartyName";
    QTest::newRow("bill") << "nobill;novoucher" << save << kBillMissing << "txtBillNo";
    QTest::newRow("voucher") << "novoucher;nodate" << save << kVoucherMissing << "txtVoucherNo";
    QTest::newRow("date missing") << "nodate;noparty" << save << "Date is missing, please enter proper date"
                                  << "mskDate";
    QTest::newRow("date wrong") << "baddate" << save << "Wrong date, please enter correct date" << "mskDate";
    QTest::newRow("party unknown") << "noparty;noqty" << save
                                   << "Party name not found, please enter correct party name" << "cmbPartyName";
    QTest::newRow("quantity empty") << "noqty" << save << kQuantity << "txtQuantity";
    QTest::newRow("quantity zero") << "zeroqty" << save << kQuantity << "txtQuantity";
    QTest::newRow("delete ignores the quantity") << "zeroqty" << del << "" << "";
    QTest::newRow("not a purchase account") << "expense" << save << kNotPurchaseAccount << "cmbPurchaseName";
    QTest::newRow("heading is no purchase account") << "heading" << save << kNotPurchaseAccount
                                                    << "cmbPurchaseName";
}

void TestPurchaseStockPosting::checksInScreenOrder()
{
    QFETCH(QString, change);
    QFETCH(int, command);
    QFETCH(QString, message);
    QFETCH(QString, field);
    Entry e;
    e.header = header(1, QStringLiteral("0"), QString());
    e.voucherNoText = QStringLiteral("1");
    e.dateText = QStringLiteral("09/03/2026");
    e.partyCode = kPartyCode;
    e.purchaseCode = kPurchaseCode;
    e.quantityText = QStringLiteral("5");
    bool partyKnown = true;
    const QStringList changes = change.split(QLatin1Char(';'), Qt::SkipEmptyParts);
    for (const QString &c : changes) {
        if (c == QLatin1String("same"))
            e.header.purchaseName = e.header.partyName;
        else if (c == QLatin1String("nobill"))
            e.header.billNo = QStringLiteral("  ");
        else if (c == QLatin1String("novoucher"))
            e.voucherNoText.clear();
        else if (c == QLatin1String("nodate"))
            e.dateText = QStringLiteral("09/__/2026");
        else if (c == QLatin1String("baddate"))
            e.dateText = QStringLiteral("31/02/2026");
        else if (c == QLatin1String("noparty"))
            partyKnown = false;
        else if (c == QLatin1String("noqty"))
            e.quantityText.clear();
        else if (c == QLatin1String("zeroqty"))
            e.quantityText = QStringLiteral("0.00");
        else if (c == QLatin1String("expense"))
            e.purchaseCode = QStringLiteral("21-10-001");
        else if (c == QLatin1String("heading"))
            e.purchaseCode = QStringLiteral("20-11-000");
    }
    const Outcome out = checkEntry(e, Command(command), partyKnown);
    QCOMPARE(out.ok, message.isEmpty());
    QCOMPARE(out.message, message);
    QCOMPARE(out.field, field);
}

// ------------------------------------------------------------ the legs

void TestPurchaseStockPosting::legsFollowTheLines_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("lines");   // "qty x rate; ..."
    QTest::addColumn<QString>("freight");
    QTest::addColumn<QString>("tax");
    QTest::addColumn<QStringList>("saved");    // goods, freight, purchase after all lines
    QTest::addColumn<QString>("changeFirst");  // the first line changed to "qty x rate"
    QTest::addColumn<QStringList>("changed");
    QTest::addColumn<QStringList>("firstGone"); // after the first line is removed
    for (const char *b : {"sqlite", "postgres"}) {
        const QByteArray p = QByteArray(b) + ": ";
        QTest::newRow(p + "goods only") << b << "10 x 12.5; 3 x 100" << "0" << "" << QStringList{"425", "0", "425"}
                                        << "20 x 12.5" << QStringList{"550", "0", "550"}
                                        << QStringList{"300", "0", "300"};
        QTest::newRow(p + "with freight") << b << "10 x 12.5; 3 x 100" << "150" << "" << QStringList{"425", "150", "575"}
                                          << "10 x 0.1" << QStringList{"301", "150", "451"}
                                          << QStringList{"300", "150", "450"};
        QTest::newRow(p + "with sales tax rounding up") << b << "1 x 1003" << "0" << "17.5"
                                                        << QStringList{"1179", "0", "1179"} << "1 x 1000"
                                                        << QStringList{"1175", "0", "1175"}
                                                        << QStringList{"0", "0", "0"};
        QTest::newRow(p + "tax half to even") << b << "4 x 25; 1 x 0" << "0" << "2.5"
                                              << QStringList{"102", "0", "102"} << "5 x 25"
                                              << QStringList{"128", "0", "128"} << QStringList{"0", "0", "0"};
        QTest::newRow(p + "freight and tax") << b << "2.5 x 401; 1 x 10" << "75" << "16"
                                             << QStringList{"1174", "75", "1249"} << "2 x 401"
                                             << QStringList{"942", "75", "1017"}
                                             << QStringList{"12", "75", "87"};
        QTest::newRow(p + "large bill exact") << b << "1000 x 12345.67" << "2500" << "17"
                                              << QStringList{"14444434", "2500", "14446934"} << "1000 x 12345.66"
                                              << QStringList{"14444422", "2500", "14446922"}
                                              << QStringList{"0", "0", "0"};
    }
}

void TestPurchaseStockPosting::legsFollowTheLines()
{
    QFETCH(QString, lines);
    QFETCH(QString, freight);
    QFETCH(QString, tax);
    QFETCH(QStringList, saved);
    QFETCH(QString, changeFirst);
    QFETCH(QStringList, changed);
    QFETCH(QStringList, firstGone);
    TESSEL_YEAR(year);
    auto db = year.connect();
    prepare(*db);
    PurchaseStockPosting posting(*db, kUser, kToday);
    const QVector<Line> typed = parseLines(lines);
    const Header h = header(1, freight, tax);

    QVector<qint64> records;
    for (int i = 0; i < typed.size(); ++i) {
        qint64 record = 0;
        const Outcome out = posting.saveLine(h, typed.at(i), i == 0, &record);
        QVERIFY2(out.ok, qPrintable(out.message));
        QCOMPARE(out.message, PurchaseStockMessages::kSaved);
        QCOMPARE(out.number, qint64(1));
        records << record;
        // After every line the legs stand for the lines saved so far: the
        // first save of a voucher writes its rows too.
        QVERIFY(!voucherRows(*db, kType, 1).isEmpty() || lineAmount(typed.first().quantity, typed.first().unitRate).isZero());
    }
    const int n = int(typed.size());
    QCOMPARE(toString(voucherRows(*db, kType, 1)),
             toString(expected(saved[0], saved[1], saved[2], narration("PURCHASE", 1, n), narration("FREIGHT", 1, n))));
    // The rows carry the bill, the first line's RecordNo and the care-of.
    for (const Row &r : db->select(QStringLiteral("SELECT InvoiceNo, RecordNo, CareOf, VDate FROM tblPartyBalance")))
        QCOMPARE(QStringList({r.text(0), QString::number(r.integer(1)), r.text(2).trimmed(), r.date(3).toString()}),
                 QStringList({"B-77", QString::number(records.first()), "MR ASLAM", kDay.toString()}));

    Line first = parseLines(changeFirst).first();
    first.itemDesc = QStringLiteral("ITEM1");
    first.weight = QStringLiteral("W1");
    first.recordNo = records.first();
    const Outcome mod = posting.modifyLine(h, first);
    QVERIFY2(mod.ok, qPrintable(mod.message));
    QCOMPARE(mod.message, PurchaseStockMessages::kModified);
    QCOMPARE(toString(voucherRows(*db, kType, 1)), toString(expected(changed[0], changed[1], changed[2],
                                                                     narration("PURCHASE", 1, n),
                                                                     narration("FREIGHT", 1, n))));

    const Outcome del = posting.deleteLine(h, records.first());
    QVERIFY2(del.ok, qPrintable(del.message));
    QCOMPARE(toString(voucherRows(*db, kType, 1)),
             toString(n == 1 ? QVector<Leg>{}
                             : expected(firstGone[0], firstGone[1], firstGone[2], narration("PURCHASE", 2, n),
                                        narration("FREIGHT", 2, n))));
    // The last line gone, the voucher has no rows at all.
    for (int i = 1; i < records.size(); ++i)
        QVERIFY(posting.deleteLine(h, records.at(i)).ok);
    QVERIFY(voucherRows(*db, kType, 1).isEmpty());
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPurchaseStock")), 0);
    QStringList differences;
    QVERIFY2(LedgerCheck::keptBalancesAgree(*db, &differences), qPrintable(differences.join('\n')));
}

void TestPurchaseStockPosting::billNumberSharedByTwoVouchers()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    prepare(*db);
    PurchaseStockPosting posting(*db, kUser, kToday);
    QVERIFY(posting.saveLine(header(1, "0", ""), line("A", "", "1", "100"), true).ok);
    QVERIFY(posting.saveLine(header(2, "40", ""), line("B", "", "1", "7"), true).ok);
    QVERIFY(posting.saveLine(header(1, "0", ""), line("C", "", "1", "5"), false).ok);
    QCOMPARE(toString(voucherRows(*db, kType, 1)),
             toString({{kPartyCode, Money(), m("105"), "PURCHASE A + C +"},
                       {kPurchaseCode, m("105"), Money(), "PURCHASE A + C +"}}));
    QCOMPARE(toString(voucherRows(*db, kType, 2)),
             toString({{kPartyCode, Money(), m("7"), "PURCHASE B +"},
                       {kPartyCode, Money(), m("40"), "FREIGHT B +"},
                       {kPurchaseCode, m("47"), Money(), "PURCHASE B +"}}));
}

void TestPurchaseStockPosting::newVoucherNeverJoinsAnother()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    prepare(*db);
    PurchaseStockPosting posting(*db, kUser, kToday);
    QCOMPARE(PurchaseStockPosting::nextVoucherNo(*db, kType), qint64(1));
    QVERIFY(posting.saveLine(header(1, "0", ""), line("A", "", "1", "100"), true).ok);
    // Another workstation proposed 1 as well: its first line moves to 2.
    const Outcome out = posting.saveLine(header(1, "0", "", "X-1"), line("B", "", "2", "10"), true);
    QVERIFY(out.ok);
    QCOMPARE(out.number, qint64(2));
    QVERIFY(!out.notice.isEmpty());
    QCOMPARE(voucherRows(*db, kType, 1).size(), 2);
    QCOMPARE(voucherRows(*db, kType, 2).first().cr, m("20"));
    QCOMPARE(PurchaseStockPosting::nextRecordNo(*db, kType), qint64(3));
    QCOMPARE(PurchaseStockPosting::voucherOfRecord(*db, kType, 2), std::optional<qint64>(2));
}

void TestPurchaseStockPosting::closedPeriodRefused()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    prepare(*db);
    PurchaseStockPosting posting(*db, kUser, kToday);
    Header h = header(1, "0", "");
    qint64 record = 0;
    const Outcome saved = posting.saveLine(h, line("A", "", "1", "100"), true, &record);
    QVERIFY(saved.ok);
    const QString before = snapshot(*db);
    // A line may not go into the closed period, nor move the voucher there.
    Header closed = h;
    closed.date = kClosing;
    const Outcome out = posting.saveLine(closed, line("B", "", "1", "5"), false);
    QCOMPARE(out.message, QStringLiteral("Sorry, you enter wrong date because data has closed at this date"));
    QCOMPARE(out.field, QStringLiteral("mskDate"));
    Line changed = line("A", "", "2", "100");
    changed.recordNo = record;
    QVERIFY(!posting.modifyLine(closed, changed).ok);
    // Once the closing date passes over the voucher, nothing of it changes.
    db->execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {kDay});
    QVERIFY(!posting.modifyLine(h, changed).ok);
    QVERIFY(!posting.deleteLine(h, record).ok);
    QVERIFY(!posting.saveLine(h, line("C", "", "1", "1"), false).ok);
    QCOMPARE(snapshot(*db), before);
}

void TestPurchaseStockPosting::failureLeavesBothTables_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("failing");
    for (const char *b : {"sqlite", "postgres"}) {
        const QByteArray p = QByteArray(b) + ": ";
        QTest::newRow(p + "save, ledger insert fails") << b << "save" << "INSERT INTO tblPartyBalance";
        QTest::newRow(p + "save, ledger delete fails") << b << "save" << "DELETE FROM tblPartyBalance";
        QTest::newRow(p + "modify, ledger insert fails") << b << "modify" << "INSERT INTO tblPartyBalance";
        QTest::newRow(p + "delete, kept balances fail") << b << "delete" << "tblAccountBalance";
    }
}

void TestPurchaseStockPosting::failureLeavesBothTables()
{
    QFETCH(QString, command);
    QFETCH(QString, failing);
    TESSEL_YEAR(year);
    auto db = year.connect();
    prepare(*db);
    PurchaseStockPosting posting(*db, kUser, kToday);
    const Header h = header(1, "30", "10");
    qint64 record = 0;
    const Outcome first = posting.saveLine(h, line("A", "", "1", "100"), true, &record);
    QVERIFY(first.ok);
    QVERIFY(posting.saveLine(h, line("B", "", "1", "50"), false).ok);
    const QString before = snapshot(*db);

    db->setStatementHook([&](const QString &sql) {
        if (sql.contains(failing, Qt::CaseInsensitive))
            throw DbError(QStringLiteral("disk full"));
    });
    Line changed = line("A", "", "3", "100");
    changed.recordNo = record;
    bool threw = false;
    try {
        if (command == QLatin1String("save"))
            posting.saveLine(h, line("C", "", "1", "9"), false);
        else if (command == QLatin1String("modify"))
            posting.modifyLine(h, changed);
        else
            posting.deleteLine(h, record);
    } catch (const DbError &e) {
        threw = true;
        QCOMPARE(e.driverText(), QStringLiteral("disk full"));
    }
    db->setStatementHook({});
    QVERIFY(threw);
    QCOMPARE(snapshot(*db), before);
    QVERIFY(LedgerCheck::keptBalancesAgree(*db));
    // And the next command works.
    QVERIFY(posting.modifyLine(h, changed).ok);
    QCOMPARE(voucherRows(*db, kType, 1).last().dr, m("30") + m("350") + m("35"));
}

QTEST_GUILESS_MAIN(TestPurchaseStockPosting)
#include "tst_purchasestockposting.moc"
