// The sales registers and status reports: what each choice of the report
// screens selects, what the screens refuse, and the designs rendered to
// PDF and read back against the ledger, the challans and the invoices.
#include "reports/ReportExport.h"
#include "reports/ReportFrame.h"
#include "reports/ReportReadBack.h"
#include "support/TestDb.h"
#include "tst_salesreportsfixture.h"

#include "sales/SalesReports.h"
#include "vouchers/DemoGenerator.h"

#include <QtTest>

using namespace SalesReports;
using namespace SalesReportsFixture;
using namespace ReportReadBack;

Q_DECLARE_METATYPE(SalesReports::Period)

namespace {

const Period kMarch = Period::of(QDate(2026, 3, 1), QDate(2026, 3, 31));

Reports::RenderedReport render(SessionConnection &db, const Reports::ReportRequest &r)
{
    return Reports::ReportFrame::render(db, r, Reports::DesignCatalogue());
}

Money columnTotal(const Reports::RenderedReport &r, const QString &column)
{
    Money total;
    for (const Row &row : r.rows.rows)
        total += row.moneyOrZero(column);
    return total;
}

// The credits of the sale vouchers in a period, of one title or all.
Money saleCredits(SessionConnection &db, const QDate &from, const QDate &to, const QString &title = QString())
{
    QString sql = QStringLiteral("SELECT SUM(PartyCR) FROM tblPartyBalance WHERE VoucherType = 'SV' AND VDate >= ? "
                                 "AND VDate <= ?");
    QVariantList params{from, to};
    if (!title.isEmpty()) {
        sql += QStringLiteral(" AND CareOf = ?");
        params << title;
    }
    return db.scalarMoney(sql, params).value_or(Money());
}

QString pdf(const Reports::RenderedReport &r)
{
    QTemporaryDir dir;
    const QString text = pdfText(r, dir.path());
    if (!qEnvironmentVariableIsEmpty("TESSEL_TEST_PDF_DIR"))
        Reports::exportPdf(r, QStringLiteral("%1/%2.pdf").arg(qEnvironmentVariable("TESSEL_TEST_PDF_DIR"), r.request.design),
                           nullptr);
    return text;
}

} // namespace

class TestSalesReports : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void refusals_data();
    void refusals();
    void summaryIsTheMonthChosen_data();
    void summaryIsTheMonthChosen();
    void registersEqualTheSaleVouchers_data() { TestDb::addBackends(); }
    void registersEqualTheSaleVouchers();
    void orderBook_data() { TestDb::addBackends(); }
    void orderBook();
    void designsReadBack_data() { TestDb::addBackends(); }
    void designsReadBack();
    void demoYear_data() { TestDb::addBackends(); }
    void demoYear();
};

// Every refusal of the builders, with the field it sends the focus to.
void TestSalesReports::refusals_data()
{
    QTest::addColumn<int>("which");
    QTest::addColumn<Period>("period");
    QTest::addColumn<QString>("text1");
    QTest::addColumn<QString>("text2");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("field");
    const Period blankFrom{QDate(), QDate(2026, 3, 31), QStringLiteral("__/__/____"), QStringLiteral("31/03/2026")};
    const Period wrongTo{QDate(2026, 3, 1), QDate(), QStringLiteral("01/03/2026"), QStringLiteral("31/02/2026")};
    const QString missing = QStringLiteral("Date is missing, please enter proper date");
    const QString wrong = QStringLiteral("Wrong date, please enter correct date");
    QTest::newRow("register, from blank") << 0 << blankFrom << "" << "" << missing << "mskDateFrom";
    QTest::newRow("register, to wrong") << 0 << wrongTo << "" << "" << wrong << "mskDateTo";
    QTest::newRow("status, to wrong") << 1 << wrongTo << "" << "" << wrong << "mskDateTo";
    QTest::newRow("order by date, from blank") << 2 << blankFrom << "" << "" << missing << "mskDateFrom";
    QTest::newRow("order by number, from empty") << 3 << blankFrom << " " << "9" << Msg::kPONoMissing << "txtPOFrom";
    QTest::newRow("order by number, to empty") << 3 << blankFrom << "10" << "" << Msg::kPONoMissing << "txtPOTo";
    QTest::newRow("summary, year blank") << 4 << kMarch << "____" << "" << Msg::kYearMissing << "mskYear";
    QTest::newRow("summary, year half typed") << 4 << kMarch << "20__" << "" << Msg::kYearMissing << "mskYear";
    QTest::newRow("summary, year too early") << 4 << kMarch << "1700" << "" << wrong << "mskYear";
}

void TestSalesReports::refusals()
{
    QFETCH(int, which);
    QFETCH(Period, period);
    QFETCH(QString, text1);
    QFETCH(QString, text2);
    Built b;
    switch (which) {
    case 0: b = saleRegister(SaleRegisterOption::AllParties, period, QString(), kPress); break;
    case 1: b = statusReport(StatusOption::DcInvoiceStatus, period, QString(), kPress); break;
    case 2: b = partyPO(PartyPOSearch::ByDate, kCrescent, period, QString(), QString(), kPress); break;
    case 3: b = partyPO(PartyPOSearch::ByPONo, kCrescent, period, text1, text2, kPress); break;
    default: b = saleSummary(3, text1); break;
    }
    QVERIFY(!b);
    QTEST(b.outcome.message, "message");
    QTEST(b.outcome.field, "field");
}

// The summary's period is the month picked, from its first day to its last.
void TestSalesReports::summaryIsTheMonthChosen_data()
{
    QTest::addColumn<int>("month");
    QTest::addColumn<QString>("year");
    QTest::addColumn<QDate>("from");
    QTest::addColumn<QDate>("to");
    QTest::newRow("january") << 1 << "2026" << QDate(2026, 1, 1) << QDate(2026, 1, 31);
    QTest::newRow("march, not the third of january") << 3 << "2026" << QDate(2026, 3, 1) << QDate(2026, 3, 31);
    QTest::newRow("february of a leap year") << 2 << "2028" << QDate(2028, 2, 1) << QDate(2028, 2, 29);
    QTest::newRow("december") << 12 << "2026" << QDate(2026, 12, 1) << QDate(2026, 12, 31);
}

void TestSalesReports::summaryIsTheMonthChosen()
{
    QFETCH(int, month);
    QFETCH(QString, year);
    const Built b = saleSummary(month, year);
    QVERIFY(b);
    QCOMPARE(b.request.design, QStringLiteral("crSaleSummary"));
    QTEST(b.request.from, "from");
    QTEST(b.request.to, "to");
    QVERIFY(b.request.conditions.isEmpty());
}

void TestSalesReports::registersEqualTheSaleVouchers()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    QVERIFY(fill(*db));

    // Every option against the sale vouchers of March.
    struct Case { SaleRegisterOption option; QString code; QString title; int rows; };
    const QVector<Case> cases{
        {SaleRegisterOption::AllParties, QString(), kPress, 2},
        {SaleRegisterOption::AllTitles, QString(), QString(), 3},
        {SaleRegisterOption::AllParties, QString(), QString(), 3}, // no working title chosen yet
        {SaleRegisterOption::SingleParty, QStringLiteral("17-10-001"), kPress, 2},
        {SaleRegisterOption::SingleParty, QStringLiteral("17-10-002"), kPress, 0},
        // One line a bill: the invoice's lines of each terms of sale.
        {SaleRegisterOption::SummaryAllParties, QString(), kPackaging, 2},
        {SaleRegisterOption::SummarySingleParty, QStringLiteral("17-10-002"), kPackaging, 2},
    };
    for (const Case &c : cases) {
        const Built b = saleRegister(c.option, kMarch, c.code, c.title);
        QVERIFY(b);
        const Reports::RenderedReport r = render(*db, b.request);
        QCOMPARE(r.rows.size(), c.rows);
        const Money expected = c.rows ? saleCredits(*db, kMarch.from, kMarch.to, c.title) : Money();
        QCOMPARE(columnTotal(r, QStringLiteral("ValueIncludingTax")), expected);
    }
    QCOMPARE(saleCredits(*db, kMarch.from, kMarch.to, kPress), Money::fromUnits(7020 + 11800));

    // One day: from equal to to.
    const Built day = saleRegister(SaleRegisterOption::AllTitles, Period::of(QDate(2026, 3, 9), QDate(2026, 3, 9)),
                                   QString(), QString());
    const Reports::RenderedReport r = render(*db, day.request);
    QCOMPARE(r.rows.size(), 1);
    QCOMPARE(r.rows.rows.first().integer(QStringLiteral("InvoiceNo")), 1);
    QCOMPARE(r.rows.rows.first().moneyOrZero(QStringLiteral("SaleTaxPayable")), Money::fromUnits(595 + 425));

    // The month of the summary, all titles: January's invoice stays out.
    const Reports::RenderedReport summary = render(*db, saleSummary(3, QStringLiteral("2026")).request);
    QCOMPARE(columnTotal(summary, QStringLiteral("ValueIncludingTax")),
             saleCredits(*db, kMarch.from, kMarch.to));
    QCOMPARE(summary.rows.size(), 2);
    const Reports::RenderedReport january = render(*db, saleSummary(1, QStringLiteral("2026")).request);
    QCOMPARE(january.rows.size(), 1);
    QCOMPARE(january.rows.rows.first().integer(QStringLiteral("Invoices")), 1);
    QCOMPARE(columnTotal(january, QStringLiteral("ValueIncludingTax")), Money::fromUnits(11800));

    // The client detail: the invoice lines of the client in the period.
    const Built detail = clientDetail(*db, QStringLiteral("17-10-001"), kMarch);
    QVERIFY(detail);
    QCOMPARE(render(*db, detail.request).rows.size(), 5);
    const Built unknown = clientDetail(*db, QStringLiteral("17-10-099"), kMarch);
    QVERIFY(!unknown);
    QCOMPARE(unknown.outcome.message, Msg::kPartyNotFound);
    QVERIFY(!clientDetail(*db, QStringLiteral("__-__-___"), kMarch));
}

void TestSalesReports::orderBook()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    QVERIFY(fill(*db));

    // Per order line: the repeated CARTON line carries nothing, the
    // deliveries go to the first; LEAFLET was delivered on no order.
    const QueryResult po = db->select(QStringLiteral(
        "SELECT TitleName, PartyPONo, Description, OrderedQuantity, DeliveredQuantity, BalanceQuantity, Challans "
        "FROM PoDcStatus ORDER BY TitleName, COALESCE(SrNo, 0)"));
    struct Want { const char *title; const char *desc; qint64 ordered, delivered, challans; };
    const QVector<Want> want{{"PACKAGING", "BOX", 300, 0, 0}, {"PRESS", "LEAFLET", 0, 50, 1},
                             {"PRESS", "CARTON", 1000, 900, 2}, {"PRESS", "LABEL", 600, 600, 1},
                             {"PRESS", "CARTON", 400, 0, 0}};
    QCOMPARE(po.rows.size(), want.size());
    // The unmatched line has no order number: it sorts first in its title.
    for (int i = 0; i < want.size(); ++i) {
        const Row &r = po.rows.at(i);
        QCOMPARE(r.text(QStringLiteral("TitleName")).trimmed(), QString::fromLatin1(want[i].title));
        QCOMPARE(r.text(QStringLiteral("Description")), QString::fromLatin1(want[i].desc));
        QCOMPARE(r.moneyOrZero(QStringLiteral("OrderedQuantity")), qty(want[i].ordered));
        QCOMPARE(r.moneyOrZero(QStringLiteral("DeliveredQuantity")), qty(want[i].delivered));
        QCOMPARE(r.moneyOrZero(QStringLiteral("BalanceQuantity")), qty(want[i].ordered - want[i].delivered));
        QCOMPARE(r.integer(QStringLiteral("Challans")), want[i].challans);
    }

    // Per challan line: what its invoices carry.
    const QueryResult dc = db->select(QStringLiteral(
        "SELECT DeliveryChallanNo, Description, DeliveredQuantity, InvoicedQuantity, InvoiceNo FROM DcInvoiceStatus "
        "ORDER BY DeliveryChallanNo, SrNo"));
    QCOMPARE(dc.rows.size(), 4);
    const qint64 invoiced[] = {700, 500, 0, 0};
    for (int i = 0; i < 4; ++i)
        QCOMPARE(dc.rows.at(i).moneyOrZero(QStringLiteral("InvoicedQuantity")), qty(invoiced[i]));
    QCOMPARE(dc.rows.at(1).integer(QStringLiteral("InvoiceNo")), 1);

    // The report by the party's order numbers compares them as text: "9"
    // comes after "10", so 10 to 9 is empty.
    Built b = partyPO(PartyPOSearch::ByPONo, kCrescent, kMarch, QStringLiteral("KP-1"), QStringLiteral("KP-1"), kPress);
    QCOMPARE(render(*db, b.request).rows.size(), 4);
    b = partyPO(PartyPOSearch::ByPONo, kCrescent, kMarch, QStringLiteral("KP-9"), QStringLiteral("KP-10"), kPress);
    QVERIFY(b);
    QCOMPARE(render(*db, b.request).rows.size(), 0);
    b = partyPO(PartyPOSearch::ByDate, kCrescent, Period::of(QDate(2026, 3, 6), QDate(2026, 3, 31)), {}, {}, kPress);
    QCOMPARE(render(*db, b.request).rows.size(), 1); // LEAFLET, first delivered on 08/03
    // An order line opens the challan lines that delivered it.
    b = partyPO(PartyPOSearch::ByPONo, kCrescent, kMarch, QStringLiteral("KP-1"), QStringLiteral("KP-1"), kPress);
    const Reports::RenderedReport book = render(*db, b.request);
    int carton = -1;
    for (int i = 0; i < book.lines.size() && carton < 0; ++i)
        if (book.lines.at(i).kind == Reports::ReportLine::Kind::Detail
            && book.rows.rows.at(book.lines.at(i).sourceRow).text(QStringLiteral("Description")) == QLatin1String("CARTON"))
            carton = i;
    QVERIFY(carton >= 0);
    const auto deliveries = book.drillDown(carton);
    QVERIFY(deliveries);
    QCOMPARE(deliveries->design, QStringLiteral("crDeliveryChallanSummary"));
    const Reports::RenderedReport sent = render(*db, *deliveries);
    QCOMPARE(sent.rows.size(), 2);
    QCOMPARE(columnTotal(sent, QStringLiteral("Quantity")), qty(900));

    // No party: the order book of every party of the title.
    b = partyPO(PartyPOSearch::ByDate, QString(), kMarch, {}, {}, kPackaging);
    QCOMPARE(b.request.design, QStringLiteral("crPoDcStatus"));
    QCOMPARE(render(*db, b.request).rows.size(), 1);
}

// Each design rendered from its screen's request, exported to PDF and read.
void TestSalesReports::designsReadBack()
{
    if (!haveTool(QStringLiteral("pdftotext")))
        QSKIP("pdftotext is not installed");
    TESSEL_YEAR(year);
    auto db = year.connect();
    QVERIFY(fill(*db));

    QString text = pdf(render(*db, saleRegister(SaleRegisterOption::AllParties, kMarch, {}, kPress).request));
    for (const char *s : {"SALE REGISTER", "FROM 01/03/2026 TO 31/03/2026", "17-10-001", "CRESCENT TEXTILES",
                          "09/03/2026", "12/03/2026", "TOTAL OF CRESCENT TEXTILES"})
        QVERIFY2(text.contains(QLatin1String(s)), s);
    QVERIFY(lineWith(text, QStringLiteral("TOTAL SALES")).contains(QLatin1String("18,820.00")));
    QVERIFY(!text.contains(QLatin1String("03/01/2026")));

    text = pdf(render(*db, saleRegister(SaleRegisterOption::SummaryAllParties, kMarch, {}, kPress).request));
    QVERIFY(text.contains(QLatin1String("SALE REGISTER SUMMARY")));
    QVERIFY(lineWith(text, QStringLiteral("TOTAL SALES")).contains(QLatin1String("18,820.00")));

    text = pdf(render(*db, saleSummary(3, QStringLiteral("2026")).request));
    QVERIFY(text.contains(QLatin1String("SALE SUMMARY MARCH 2026")));
    QVERIFY(lineWith(text, QStringLiteral("SUNRISE PACKAGES")).contains(QLatin1String("11,800.00")));
    QVERIFY(lineWith(text, QStringLiteral("TOTAL SALES OF THE MONTH")).contains(QLatin1String("30,620.00")));

    text = pdf(render(*db, clientDetail(*db, QStringLiteral("17-10-001"), kMarch).request));
    QVERIFY(text.contains(QLatin1String("CLIENT DETAIL")));
    QVERIFY(lineWith(text, QStringLiteral("LABEL")).contains(QLatin1String("2,925.00")));
    QVERIFY(lineWith(text, QStringLiteral("TOTAL OF THE CLIENT")).contains(QLatin1String("18,820.00")));

    text = pdf(render(*db, statusReport(StatusOption::DcInvoiceStatus, kMarch, {}, kPress).request));
    QVERIFY(text.contains(QLatin1String("DELIVERY / INVOICE STATUS REPORT")));
    QVERIFY(lineWith(text, QStringLiteral("LABEL")).contains(QLatin1String("100")));
    QVERIFY(lineWith(text, QStringLiteral("TOTAL")).contains(QLatin1String("1,550")));

    text = pdf(render(*db, statusReport(StatusOption::ChallansSingleParty, kMarch, "17-10-001", kPress).request));
    QVERIFY(text.contains(QLatin1String("DELIVERY CHALLAN SUMMARY")));
    QVERIFY(lineWith(text, QStringLiteral("TOTAL DELIVERED")).contains(QLatin1String("1,550")));

    text = pdf(render(*db, partyPO(PartyPOSearch::ByDate, kCrescent, kMarch, {}, {}, kPress).request));
    QVERIFY(text.contains(QLatin1String("PURCHASE ORDER STATUS REPORT")));
    QVERIFY(text.contains(QLatin1String("P.O # KP-1")));
    QVERIFY(lineWith(text, QStringLiteral("TOTAL OF P.O # KP-1")).contains(QLatin1String("1,550")));

    text = pdf(render(*db, partyPO(PartyPOSearch::ByDate, QString(), kMarch, {}, {}, kPackaging).request));
    QVERIFY(text.contains(QLatin1String("SUNRISE PACKAGES")));
    QVERIFY(lineWith(text, QStringLiteral("BOX")).contains(QLatin1String("300")));
}

// A demonstration year: the register of each month equals the month's sale
// vouchers, and the order book's deliveries equal the challans.
void TestSalesReports::demoYear()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    DemoOptions o;
    o.rows = 3000;
    o.from = QDate(2026, 1, 1);
    o.to = QDate(2026, 6, 30);
    db->execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {o.from.addDays(-1)});
    DemoGenerator::standardYear(*db, o);
    QVERIFY(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblDeliveryChallan")) > 0);

    for (int month = 1; month <= 6; ++month) {
        const QDate from(2026, month, 1);
        const Period p = Period::of(from, from.addMonths(1).addDays(-1));
        const Reports::RenderedReport r = render(*db, saleRegister(SaleRegisterOption::AllTitles, p, {}, {}).request);
        QCOMPARE(columnTotal(r, QStringLiteral("ValueIncludingTax")), saleCredits(*db, p.from, p.to));
    }
    const Money challans = db->scalarMoney(QStringLiteral("SELECT SUM(Quantity) FROM tblDeliveryChallan")).value_or(Money());
    const Money delivered = db->scalarMoney(QStringLiteral("SELECT SUM(DeliveredQuantity) FROM PoDcStatus")).value_or(Money());
    QCOMPARE(delivered, challans);
    const Money dcDelivered = db->scalarMoney(QStringLiteral("SELECT SUM(DeliveredQuantity) FROM DcInvoiceStatus")).value_or(Money());
    QCOMPARE(dcDelivered, challans);
    // The demo invoices every challan whole.
    const Money invoiced = db->scalarMoney(QStringLiteral("SELECT SUM(InvoicedQuantity) FROM DcInvoiceStatus")).value_or(Money());
    QCOMPARE(invoiced, challans);
}

QTEST_MAIN(TestSalesReports)
#include "tst_salesreports.moc"
