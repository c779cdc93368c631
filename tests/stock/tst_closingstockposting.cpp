// Closing stock: the adjustment between balance and count, its two rows,
// one set of rows a number, replacement, removal and the closing date.
#include "StockFixture.h"
#include "support/TestDb.h"

#include "stock/ClosingStockPosting.h"
#include "stock/ClosingStockRules.h"
#include "vouchers/LedgerCheck.h"
#include "vouchers/LedgerWriter.h"

#include <QtTest>

using namespace StockFixture;
using namespace ClosingStock;

namespace {

const QString kStockCode = QStringLiteral("20-12-001");
const QString kAdjustCode = QStringLiteral("20-11-001");

Entry entry(qint64 no, const QString &closing)
{
    Entry e;
    e.voucherNoText = QString::number(no);
    e.dateText = QStringLiteral("09/03/2026");
    e.stockCode = kStockCode;
    e.stockName = QStringLiteral("CLOSING STOCK");
    e.adjustCode = kAdjustCode;
    e.adjustName = QStringLiteral("PAPER PURCHASES");
    e.closingValue = closing;
    return e;
}

// Puts a balance on the stock account with a journal row of its own.
void setBalance(SessionConnection &db, const QString &balance)
{
    const Money b = m(balance);
    const VoucherKey key{QStringLiteral("JV"), 90, kDay};
    Transaction tx(db);
    LedgerWriter w(db, kUser, kToday);
    w.insert(b.isNegative() ? LedgerRow::credit(key, kStockCode, QStringLiteral("CLOSING STOCK"), b.abs())
                            : LedgerRow::debit(key, kStockCode, QStringLiteral("CLOSING STOCK"), b));
    tx.commit();
}

} // namespace

class TestClosingStockPosting : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void adjustmentRule_data();
    void adjustmentRule();
    void checksInScreenOrder_data();
    void checksInScreenOrder();
    void saveWritesTwoRows_data();
    void saveWritesTwoRows();
    void oneSetOfRowsANumber_data() { TestDb::addBackends(); }
    void oneSetOfRowsANumber();
    void modifyReachesTheCount_data() { TestDb::addBackends(); }
    void modifyReachesTheCount();
    void closedPeriodRefused_data() { TestDb::addBackends(); }
    void closedPeriodRefused();
};

void TestClosingStockPosting::adjustmentRule_data()
{
    QTest::addColumn<QString>("balance");
    QTest::addColumn<QString>("closing");
    QTest::addColumn<QString>("dr");
    QTest::addColumn<QString>("cr");
    QTest::addColumn<QString>("shown");
    QTest::newRow("5000 DR counted 3000: credited") << "5000" << "3000" << "0" << "2000" << "2000 CR";
    QTest::newRow("3000 DR counted 5000: debited") << "3000" << "5000" << "2000" << "0" << "2000 DR";
    QTest::newRow("1000 CR counted 500") << "-1000" << "500" << "1500" << "0" << "1500 DR";
    QTest::newRow("1000 CR counted 0") << "-1000" << "0" << "1000" << "0" << "1000 DR";
    QTest::newRow("equal: nothing") << "4000" << "4000" << "0" << "0" << "0 DR";
    QTest::newRow("no balance counted 750.25") << "0" << "750.25" << "750.25" << "0" << "750.25 DR";
    QTest::newRow("a cent over the count") << "1000.55" << "1000.54" << "0" << "0.01" << "0.01 CR";
}

void TestClosingStockPosting::adjustmentRule()
{
    QFETCH(QString, balance);
    QFETCH(QString, closing);
    QFETCH(QString, dr);
    QFETCH(QString, cr);
    QFETCH(QString, shown);
    const Adjustment a = adjustment(m(balance), m(closing));
    QCOMPARE(a.adjustDR.toPlainString(), m(dr).toPlainString());
    QCOMPARE(a.adjustCR.toPlainString(), m(cr).toPlainString());
    QCOMPARE(a.value().toFieldString() + QLatin1Char(' ') + a.side(), shown);
}

void TestClosingStockPosting::checksInScreenOrder_data()
{
    QTest::addColumn<QString>("change");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("field");
    QTest::newRow("all good") << "" << "" << "";
    QTest::newRow("same accounts first") << "same;novoucher" << ClosingStockMessages::kSameAccount << "cmbPartyName";
    QTest::newRow("voucher") << "novoucher;nodate" << ClosingStockMessages::kVoucherMissing << "txtVoucherNo";
    QTest::newRow("date") << "nodate;noparty" << "Date is missing, please enter proper date" << "mskDate";
    QTest::newRow("adjustment account") << "noparty"
                                        << "Party name not found, please enter correct party name" << "cmbPartyName";
    QTest::newRow("stock account not a purchase account") << "expense" << ClosingStockMessages::kNotStockAccount
                                                          << "cmbPurchaseName";
    QTest::newRow("negative count") << "negative" << "Amount can not be negative, please enter correct amount"
                                    << "txtClosingValue";
}

void TestClosingStockPosting::checksInScreenOrder()
{
    QFETCH(QString, change);
    QFETCH(QString, message);
    QFETCH(QString, field);
    Entry e = entry(1, QStringLiteral("100"));
    bool known = true;
    for (const QString &c : change.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        if (c == QLatin1String("same"))
            e.adjustName = e.stockName;
        else if (c == QLatin1String("novoucher"))
            e.voucherNoText.clear();
        else if (c == QLatin1String("nodate"))
            e.dateText = QStringLiteral("__/__/____");
        else if (c == QLatin1String("noparty"))
            known = false;
        else if (c == QLatin1String("expense"))
            e.stockCode = QStringLiteral("21-10-001");
        else if (c == QLatin1String("negative"))
            e.closingValue = QStringLiteral("-5");
    }
    const Outcome out = checkEntry(e, known);
    QCOMPARE(out.message, message);
    QCOMPARE(out.field, field);
}

void TestClosingStockPosting::saveWritesTwoRows_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("balance");
    QTest::addColumn<QString>("closing");
    QTest::addColumn<QString>("stockDR");
    QTest::addColumn<QString>("stockCR");
    for (const char *b : {"sqlite", "postgres"}) {
        const QByteArray p = QByteArray(b) + ": ";
        QTest::newRow(p + "down to the count") << b << "5000" << "3000" << "0" << "2000";
        QTest::newRow(p + "up to the count") << b << "3000" << "5000.50" << "2000.50" << "0";
        QTest::newRow(p + "from a credit") << b << "-1000" << "500" << "1500" << "0";
        QTest::newRow(p + "already at the count") << b << "4000" << "4000" << "0" << "0";
    }
}

void TestClosingStockPosting::saveWritesTwoRows()
{
    QFETCH(QString, balance);
    QFETCH(QString, closing);
    QFETCH(QString, stockDR);
    QFETCH(QString, stockCR);
    TESSEL_YEAR(year);
    auto db = year.connect();
    prepare(*db);
    setBalance(*db, balance);
    ClosingStockPosting posting(*db, kUser, kToday);
    QCOMPARE(ClosingStockPosting::nextVoucherNo(*db, kType), qint64(1));
    const Outcome out = posting.save(entry(1, closing), NumberPolicy::Proposed);
    QVERIFY2(out.ok, qPrintable(out.message));
    QCOMPARE(out.message, ClosingStockMessages::kUpdated);
    QVector<Leg> want;
    if (m(stockDR) != m(stockCR))
        want = {{kStockCode, m(stockDR), m(stockCR), "CLOSING STOCK"},
                {kAdjustCode, m(stockCR), m(stockDR), "ADJUSTMENT CLOSING STOCK"}};
    QCOMPARE(toString(voucherRows(*db, kType, 1)), toString(want));
    QCOMPARE(*Ledger::accountBalance(*db, kStockCode), m(closing));
    // Both rows carry one RecordNo, the first of the type.
    for (const Row &r : db->select(QStringLiteral("SELECT RecordNo FROM tblPartyBalance WHERE VoucherType = 'CS'")))
        QCOMPARE(r.integer(0), qint64(1));
    QVERIFY(LedgerCheck::keptBalancesAgree(*db));
}

void TestClosingStockPosting::oneSetOfRowsANumber()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    prepare(*db);
    setBalance(*db, QStringLiteral("5000"));
    ClosingStockPosting posting(*db, kUser, kToday);
    QVERIFY(posting.save(entry(1, QStringLiteral("3000")), NumberPolicy::Typed).ok);
    const QString before = snapshot(*db);
    // The same number saved again, as typed: refused, nothing added.
    const Outcome again = posting.save(entry(1, QStringLiteral("2000")), NumberPolicy::Typed);
    QVERIFY(!again.ok);
    QCOMPARE(again.field, QStringLiteral("txtVoucherNo"));
    QCOMPARE(snapshot(*db), before);
    QCOMPARE(voucherRows(*db, kType, 1).size(), 2);
    // As proposed by the screen: it moves on to the next number.
    const Outcome moved = posting.save(entry(1, QStringLiteral("2000")), NumberPolicy::Proposed);
    QVERIFY(moved.ok);
    QCOMPARE(moved.number, qint64(2));
    QVERIFY(!moved.notice.isEmpty());
    QCOMPARE(voucherRows(*db, kType, 1).size(), 2);
    QCOMPARE(voucherRows(*db, kType, 2).size(), 2);
    QCOMPARE(ClosingStockPosting::nextRecordNo(*db, kType), qint64(3));
}

void TestClosingStockPosting::modifyReachesTheCount()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    prepare(*db);
    setBalance(*db, QStringLiteral("5000"));
    ClosingStockPosting posting(*db, kUser, kToday);
    QVERIFY(posting.save(entry(1, QStringLiteral("3000")), NumberPolicy::Proposed).ok);
    // The balance without the voucher's own rows is what it adjusts.
    QCOMPARE(*ClosingStockPosting::balanceWithout(*db, kStockCode, kType, 1), m("5000"));
    QCOMPARE(*ClosingStockPosting::balanceWithout(*db, kStockCode, kType, 0), m("3000"));
    for (const char *count : {"4500", "6000", "6000"}) {
        const Outcome out = posting.modify(entry(1, QString::fromLatin1(count)));
        QVERIFY2(out.ok, qPrintable(out.message));
        QCOMPARE(*Ledger::accountBalance(*db, kStockCode), m(QString::fromLatin1(count)));
        QCOMPARE(voucherRows(*db, kType, 1).size(), 2);
    }
    // Counted at the balance: the voucher keeps no rows.
    QVERIFY(posting.modify(entry(1, QStringLiteral("5000"))).ok);
    QVERIFY(voucherRows(*db, kType, 1).isEmpty());
    QCOMPARE(posting.modify(entry(1, QStringLiteral("1"))).field, QStringLiteral("txtVoucherNo"));
    QVERIFY(posting.save(entry(1, QStringLiteral("1000")), NumberPolicy::Typed).ok);
    QVERIFY(posting.remove(kType, 1).ok);
    QVERIFY(voucherRows(*db, kType, 1).isEmpty());
    QVERIFY(!posting.remove(kType, 1).ok);
    QVERIFY(LedgerCheck::keptBalancesAgree(*db));
}

void TestClosingStockPosting::closedPeriodRefused()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    prepare(*db);
    setBalance(*db, QStringLiteral("5000"));
    ClosingStockPosting posting(*db, kUser, kToday);
    Entry closed = entry(1, QStringLiteral("3000"));
    closed.dateText = QStringLiteral("31/12/2025");
    QCOMPARE(posting.save(closed, NumberPolicy::Proposed).message,
             QStringLiteral("Sorry, you enter wrong date because data has closed at this date"));
    QVERIFY(posting.save(entry(1, QStringLiteral("3000")), NumberPolicy::Proposed).ok);
    QVERIFY(!posting.modify(closed).ok);
    db->execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {kDay});
    const QString before = snapshot(*db);
    QVERIFY(!posting.modify(entry(1, QStringLiteral("100"))).ok);
    QVERIFY(!posting.remove(kType, 1).ok);
    QCOMPARE(snapshot(*db), before);
}

QTEST_GUILESS_MAIN(TestClosingStockPosting)
#include "tst_closingstockposting.moc"
