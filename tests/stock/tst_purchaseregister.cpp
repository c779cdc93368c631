// The purchase register and the demonstration year's purchases: the
// register of a period adds up to the "PS" rows of that period, and every
// demo bill's rows are the rows its lines give.
#include "StockFixture.h"
#include "support/TestDb.h"

#include "foundation/Lookups.h"
#include "reports/ReportExport.h"
#include "stock/PurchaseDemo.h"
#include "stock/PurchaseStockPosting.h"
#include "stock/PurchaseStockRegister.h"
#include "vouchers/DemoGenerator.h"
#include "vouchers/LedgerCheck.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace StockFixture;

namespace {

PurchaseStock::Header bill(qint64 no, const QDate &date, const QString &party, const QString &purchase,
                           const QString &freight, const QString &tax)
{
    PurchaseStock::Header h;
    h.voucherNo = no;
    h.billNo = QStringLiteral("B-%1").arg(no);
    h.date = date;
    h.partyName = party;
    h.purchaseName = purchase;
    h.freight = m(freight);
    h.saleTax = tax;
    return h;
}

PurchaseStock::Line item(const QString &qty, const QString &rate)
{
    PurchaseStock::Line l;
    l.itemDesc = QStringLiteral("BOARD");
    l.quantity = qty;
    l.unitRate = rate;
    return l;
}

Money ledgerSum(SessionConnection &db, const char *column, const QDate &from, const QDate &to)
{
    return db.scalarMoney(QStringLiteral("SELECT SUM(%1) FROM tblPartyBalance WHERE VoucherType = 'PS' "
                                         "AND VDate >= ? AND VDate <= ?")
                              .arg(QLatin1String(column)),
                          {from, to})
        .value_or(Money());
}

} // namespace

class TestPurchaseRegister : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void registerTotalsAreTheLedgerRows_data() { TestDb::addBackends(); }
    void registerTotalsAreTheLedgerRows();
    void demoYearHasPurchasesAndClosingStock_data() { TestDb::addBackends(); }
    void demoYearHasPurchasesAndClosingStock();
};

void TestPurchaseRegister::registerTotalsAreTheLedgerRows()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    prepare(*db);
    PurchaseStockPosting posting(*db, kUser, kToday);
    const QString paper = QStringLiteral("PAPER PURCHASES"), ink = QStringLiteral("INK PURCHASES");
    struct Bill { QDate date; const char *party; QString purchase; const char *freight, *tax; QVector<QPair<const char *, const char *>> lines; };
    const QVector<Bill> bills = {
        {QDate(2026, 1, 5), "PAPER HOUSE", paper, "0", "", {{"10", "12.5"}, {"3", "100"}}},
        {QDate(2026, 2, 7), "PAPER HOUSE", paper, "150", "17.5", {{"1", "1003"}}},
        {QDate(2026, 2, 9), "INK TRADERS", ink, "75", "16", {{"2.5", "401"}, {"1", "10"}}},
        {QDate(2026, 2, 28), "INK TRADERS", paper, "0", "17", {{"1000", "12345.67"}}},
        {QDate(2026, 3, 1), "PAPER HOUSE", ink, "500", "", {{"7", "7"}}}, // after the period
    };
    qint64 no = 0;
    for (const Bill &b : bills) {
        ++no;
        for (int i = 0; i < b.lines.size(); ++i)
            QVERIFY(posting
                        .saveLine(bill(no, b.date, QString::fromLatin1(b.party), b.purchase,
                                       QString::fromLatin1(b.freight), QString::fromLatin1(b.tax)),
                                  item(QString::fromLatin1(b.lines[i].first), QString::fromLatin1(b.lines[i].second)),
                                  i == 0)
                        .ok);
    }

    const QDate from(2026, 2, 1), to(2026, 2, 28);
    const Reports::RenderedReport r = Reports::ReportFrame::render(
        *db, PurchaseStockRegister::request(from, to, QStringLiteral("01/02/2026"), QStringLiteral("28/02/2026")));
    QCOMPARE(r.heading, QStringLiteral("PURCHASE REGISTER"));
    QCOMPARE(r.rows.size(), 3);
    Money net, parts;
    for (const Row &row : r.rows) {
        net += row.moneyOrZero(QStringLiteral("NetAmount"));
        parts += row.moneyOrZero(QStringLiteral("Amount")) + row.moneyOrZero(QStringLiteral("SaleTaxAmount"))
            + row.moneyOrZero(QStringLiteral("Freight"));
    }
    // The register's figures are the ledger's: debits to the purchase
    // accounts, and the supplier's credits for goods, tax and freight.
    QCOMPARE(net, ledgerSum(*db, "PartyDR", from, to));
    QCOMPARE(parts, ledgerSum(*db, "PartyCR", from, to));
    QCOMPARE(net.toPlainString(), QStringLiteral("14447012.00"));
    // The printed total line carries the same figure.
    const Reports::ReportLine &total = r.lines.last();
    QCOMPARE(total.kind, Reports::ReportLine::Kind::Total);
    QVERIFY2(total.texts.contains(QStringLiteral("14,447,012.00")), qPrintable(total.texts.join('|')));
    QVERIFY(total.label.startsWith(QStringLiteral("TOTAL PURCHASES")));
    // Groups: purchase account, then supplier.
    QStringList headers;
    for (const Reports::ReportLine &l : r.lines)
        if (l.kind == Reports::ReportLine::Kind::GroupHeader)
            headers << l.label;
    QCOMPARE(headers, QStringList({"INK PURCHASES", "INK TRADERS", "PAPER PURCHASES", "INK TRADERS", "PAPER HOUSE"}));

    QTemporaryDir dir;
    QString error;
    QVERIFY2(Reports::exportFile(r, dir.filePath(QStringLiteral("register.pdf")), &error), qPrintable(error));
    if (!qEnvironmentVariableIsEmpty("TESSEL_SCREENSHOT_DIR"))
        Reports::exportFile(r, QDir(qEnvironmentVariable("TESSEL_SCREENSHOT_DIR")).filePath("register.pdf"), &error);
}

void TestPurchaseRegister::demoYearHasPurchasesAndClosingStock()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    DemoOptions o;
    o.rows = 1500;
    o.to = QDate(2026, 11, 20);
    o.from = QDate(2026, 1, 1);
    DemoGenerator::standardYear(*db, o);

    const int bills = TestDb::count(*db, QStringLiteral("SELECT COUNT(DISTINCT VoucherNo) FROM tblPurchaseStock"));
    QVERIFY2(bills >= 10, qPrintable(QString::number(bills)));
    // Every bill's rows are the rows its stored lines give.
    for (qint64 no = 1; no <= bills; ++no) {
        const auto h = PurchaseStockPosting::storedHeader(*db, PurchaseStock::kType, no);
        QVERIFY(h);
        const QString party = *Lookups::codeFromName(*db, h->partyName);
        const QString purchase = *Lookups::codeFromName(*db, h->purchaseName);
        QVector<Leg> want;
        for (const LedgerRow &l :
             PurchaseStock::legs(*h, party, purchase, PurchaseStockPosting::lines(*db, PurchaseStock::kType, no)))
            want << Leg{l.partyCode, l.partyDR, l.partyCR, l.partyDesc};
        QCOMPARE(toString(voucherRows(*db, PurchaseStock::kType, no)), toString(want));
    }
    // Some with freight and some with tax, some without either.
    QVERIFY(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPurchaseStock WHERE Freight > 0")) > 0);
    QVERIFY(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPurchaseStock WHERE SaleTax > 0")) > 0);
    QVERIFY(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPurchaseStock WHERE SaleTax = 0 "
                                              "AND Freight = 0")) > 0);
    // One closing stock on the last day, and both in the profit and loss.
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE VoucherType = 'CS' "
                                               "AND VDate = ?"), {o.to}),
             2);
    db->setReportPeriod(o.from, o.to);
    QStringList pl;
    for (const Row &r : db->select(QStringLiteral("SELECT PartyCode FROM ProfitAndLoss WHERE PartyCode >= '20-11' "
                                                  "AND PartyCode < '20-13' ORDER BY PartyCode")))
        pl << r.text(0).trimmed();
    QVERIFY2(pl.contains(QStringLiteral("20-11-001")) && pl.contains(QStringLiteral("20-12-001")),
             qPrintable(pl.join(',')));
    QVERIFY(LedgerCheck::keptBalancesAgree(*db));
}

QTEST_MAIN(TestPurchaseRegister)
#include "tst_purchaseregister.moc"
