// The printed sales documents: each invoice form rendered to PDF from a
// year made as the demonstration makes one, read back, and held against
// the invoice's lines and its sale voucher; the copies; the checks of the
// print button; and the ledger with sale tax under two titles that share
// an invoice number.
#include "tst_invoicefixture.h"

#include "accounts/TitleList.h"
#include "foundation/DateRules.h"
#include "reports/ReportExport.h"
#include "reports/ReportFrame.h"
#include "reports/ReportReadBack.h"
#include "sales/InvoiceArithmetic.h"
#include "sales/InvoiceDemo.h"
#include "sales/InvoiceDocuments.h"
#include "support/TestDb.h"
#include "vouchers/DemoGenerator.h"

#include <QtTest>

using namespace InvoiceFixture;
using namespace ReportReadBack;
using InvoiceDocuments::Document;

namespace {

const QString kPress = QStringLiteral("PRESS");
const QString kPackaging = QStringLiteral("PACKAGING");
// Above the numbers the demonstration gives.
const qint64 kNo = 7001;

// Whole money, as the figures of an invoice are.
Money units(qint64 n) { return Money::fromUnits(n); }

InvoiceLine taxedLine(const char *desc, const char *qty, const char *rate, const char *saleTax, const char *furtherTax)
{
    InvoiceLine l = line(QStringLiteral("CREDIT SALE"), QString::fromLatin1(desc), QString::fromLatin1(qty),
                         QString::fromLatin1(rate), QString::fromLatin1(saleTax));
    l.furtherTaxRate = QString::fromLatin1(furtherTax);
    l.cedRate = QStringLiteral("2.5");
    l.poNo = QStringLiteral("KP-77");
    l.challanNo = QStringLiteral("4");
    l.weight = QStringLiteral("12.5");
    InvoiceRules::computeFigures(l);
    return l;
}

// A year as the demonstration makes it (the press's chart, two titles,
// invoices of challans and typed ones through the invoice rules), with a
// letterhead for each title and, on 09/03/2026, invoice 7001 of both titles
// for one customer: the press's with sale, further tax and CED on prices
// that round half to even, the packaging's plain. The customer also owes
// an earlier invoice.
void makeYear(SessionConnection &db)
{
    DemoOptions o;
    o.rows = 300;
    o.from = QDate(2026, 1, 1);
    o.to = QDate(2026, 2, 28);
    db.execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {QDate(2025, 12, 31)});
    DemoGenerator g(db, o);
    g.addPart(QStringLiteral("chart"), &DemoGenerator::chartPart);
    g.addPart(QStringLiteral("titles"), [](DemoContext &c) {
        for (const QString &t : {kPress, kPackaging})
            c.db.execute(QStringLiteral("INSERT INTO tblTitleName (TitleName) VALUES (?)"), {t});
    });
    g.addPart(QStringLiteral("invoices"), &InvoiceDemo::invoicePart);
    g.run();

    db.execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName, PartyAddress, PartySaleTaxNo, PartyNTN) "
                              "VALUES ('17-10-901', 'CRESCENT TEXTILES', 'PLOT 9 SITE AREA', '03-04-5555-111-22', "
                              "'1234567-8')"));
    for (const QString &t : {kPress, kPackaging}) {
        TitleList::Letterhead l;
        l.titleName = t;
        l.companyName = t + QStringLiteral(" PRINTERS");
        l.companyAddress = QStringLiteral("12 PRESS ROAD");
        l.companySaleTaxNo = QStringLiteral("STN-") + t.left(3);
        l.companyNTN = QStringLiteral("NTN-") + t.left(3);
        QVERIFY(TitleList::saveLetterhead(db, l).ok);
    }
    InvoicePosting posting(db, kUser, kToday);
    const QString code = QStringLiteral("17-10-901"), name = QStringLiteral("CRESCENT TEXTILES");
    // The packaging title numbers on past the press's first invoice.
    QVERIFY(posting.saveNew(header(kPackaging, kNo, kDay, code, name),
                            {line(QStringLiteral("CASH"), QStringLiteral("PLAIN BOX"), QStringLiteral("10"),
                                  QStringLiteral("70"))},
                            NumberPolicy::Typed).ok);
    QVERIFY(posting.saveNew(header(kPackaging, kNo + 39, kDay, code, name),
                            {line(QStringLiteral("CASH"), QStringLiteral("OTHER BOX"), QStringLiteral("1"),
                                  QStringLiteral("5"))},
                            NumberPolicy::Typed).ok);
    InvoiceHeader h = header(kPress, kNo, kDay, code, name);
    h.cedRate = QStringLiteral("2.5");
    h.dtre = QStringLiteral("DT-55");
    QVERIFY(posting.saveNew(h,
                            {taxedLine("PRODUCT CARTON", "1010", "1", "17", "5"),
                             taxedLine("LEAFLET A4", "1030", "1", "5", "5"),
                             taxedLine("LABEL ROLL", "2.5", "400", "17", "0")},
                            NumberPolicy::Typed).ok);
    QVERIFY(posting.saveNew(header(kPress, kNo + 500, kDay.addDays(-3), code, name),
                            {line(QStringLiteral("CREDIT SALE"), QStringLiteral("EARLIER JOB"), QStringLiteral("3"),
                                  QStringLiteral("1000"))},
                            NumberPolicy::Typed).ok);
}

InvoiceDocuments::Copies copiesOf(SessionConnection &db, Document d, const QString &title, qint64 no, const QDate &date)
{
    InvoiceDocuments::Selection s;
    s.document = d;
    s.title = title;
    s.number = no;
    s.date = date;
    return InvoiceDocuments::copies(db, s);
}

// The customer's debit of an invoice's own sale voucher.
Money voucherAmount(SessionConnection &db, const InvoiceKey &k)
{
    Money debit;
    for (const Row &r : InvoicePosting::voucherRows(db, k))
        debit += db.scalarMoney(QStringLiteral("SELECT PartyDR FROM tblPartyBalance WHERE SrNo = ?"), {r.integer(0)})
                     .value_or(Money());
    return debit;
}

Money column(const Reports::RenderedReport &r, const char *field)
{
    Money sum;
    for (const Row &row : r.rows)
        sum += row.moneyOrZero(QString::fromLatin1(field));
    return sum;
}

} // namespace

class TestInvoiceDocuments : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void checks_data();
    void checks();
    void forms_data() { TestDb::addBackends(); }
    void forms();
    void ledgerWithSaleTax_data() { TestDb::addBackends(); }
    void ledgerWithSaleTax();
};

void TestInvoiceDocuments::checks_data()
{
    QTest::addColumn<int>("document");
    QTest::addColumn<QString>("number");
    QTest::addColumn<QString>("date");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("field");
    using namespace InvoiceDocuments::Messages;
    const QString date = QStringLiteral("09/03/2026");
    QTest::newRow("challan without number") << int(Document::DeliveryChallan) << "" << date << kNoChallanNo << "txtChallanNo";
    QTest::newRow("challan by demand #") << int(Document::DeliveryChallanByDemandNo) << " " << date << kNoChallanNo
                                         << "txtChallanNo";
    QTest::newRow("order") << int(Document::PurchaseOrder) << "" << date << kNoOrderNo << "txtChallanNo";
    QTest::newRow("order without rate") << int(Document::PurchaseOrderWithoutRate) << "0" << date << kNoOrderNo
                                        << "txtChallanNo";
    for (const Document d : {Document::SaleTaxInvoice, Document::SaleTaxInvoiceDW, Document::Bill, Document::Invoice,
                             Document::InvoiceWithSalesTax, Document::InvoiceWithBalance})
        QTest::newRow(qPrintable(InvoiceDocuments::variant(d).option)) << int(d) << "" << date << kNoInvoiceNo
                                                                         << "txtInvoiceNo";
    QTest::newRow("date not typed") << int(Document::Bill) << "7" << "__/__/____" << DateRules::dateMissingMessage()
                                    << "mskDate";
    QTest::newRow("no such day") << int(Document::DeliveryChallan) << "7" << "31/02/2026" << DateRules::wrongDateMessage()
                                 << "mskDate";
    QTest::newRow("passes") << int(Document::SaleTaxInvoice) << "7" << date << QString() << QString();
}

void TestInvoiceDocuments::checks()
{
    QFETCH(int, document);
    QFETCH(QString, number);
    QFETCH(QString, date);
    QFETCH(QString, message);
    QFETCH(QString, field);
    const Outcome out = InvoiceDocuments::checkView(Document(document), number, date);
    QCOMPARE(out.ok, message.isEmpty());
    QCOMPARE(out.message, message);
    QCOMPARE(out.field, field);
}

void TestInvoiceDocuments::forms()
{
    if (!haveTool(QStringLiteral("pdftotext")))
        QSKIP("pdftotext is not installed");
    TESSEL_YEAR(year);
    auto db = year.connect();
    makeYear(*db);
    const InvoiceKey press{kPress, kNo, kDay};

    // The rule refuses what the print button refuses.
    QCOMPARE(copiesOf(*db, Document::SaleTaxInvoice, kPress, 0, kDay).outcome.message,
             InvoiceDocuments::Messages::kNoInvoiceNo);
    QVERIFY(copiesOf(*db, Document::SaleTaxInvoice, kPress, 0, kDay).requests.isEmpty());
    QCOMPARE(copiesOf(*db, Document::Bill, kPress, 1, QDate()).outcome.field, QStringLiteral("mskDate"));

    // Each line of the sales-tax invoice as the invoice worked it out.
    const InvoiceDocuments::Copies sti = copiesOf(*db, Document::SaleTaxInvoice, kPress, kNo, kDay);
    QVERIFY(sti.outcome.ok);
    QCOMPARE(sti.requests.size(), 3);
    Reports::RenderedReport r = Reports::ReportFrame::render(*db, sti.requests.at(0), Reports::DesignCatalogue());
    QCOMPARE(r.rows.size(), 3);
    for (const Row &row : r.rows) {
        const auto f = InvoiceArithmetic::computeLine({InvoiceArithmetic::decimalText(row.value("Quantity")),
                                                       InvoiceArithmetic::decimalText(row.value("Rate")),
                                                       InvoiceArithmetic::decimalText(row.value("RateOfSaleTax")),
                                                       InvoiceArithmetic::decimalText(row.value("FurtherTax")),
                                                       InvoiceArithmetic::decimalText(row.value("CED"))});
        QVERIFY(f);
        QCOMPARE(row.moneyOrZero("Price"), units(f->price));
        QCOMPARE(row.moneyOrZero("SaleTaxPayable"), units(f->saleTax));
        QCOMPARE(row.moneyOrZero("FurtherTaxAmount"), units(f->furtherTax));
        QCOMPARE(row.moneyOrZero("CedAmount"), units(f->ced));
        QCOMPARE(row.moneyOrZero("ValueIncludingTax"), units(f->valueWithTax));
    }
    // 1010 and 1030 at 5 %: 50.5 gives 50 and 51.5 gives 52; at 2.5 %:
    // 25.25 gives 25 and 25.75 gives 26.
    QCOMPARE(column(r, "FurtherTaxAmount"), units(102));
    QCOMPARE(column(r, "CedAmount"), units(25 + 26 + 25));
    // The totals equal the invoice's lines and its sale voucher.
    const Money lines = db->scalarMoney(QStringLiteral("SELECT SUM(ValueIncludingTax) FROM tblInvoice WHERE "
                                                       "TitleName = ? AND InvoiceNo = ? AND InvoiceDate = ?"),
                                        {kPress, kNo, kDay})
                            .value_or(Money());
    QCOMPARE(column(r, "ValueIncludingTax"), lines);
    QCOMPARE(voucherAmount(*db, press), lines);
    QCOMPARE(column(r, "Price") + column(r, "SaleTaxPayable") + column(r, "FurtherTaxAmount") + column(r, "CedAmount"),
             lines);

    // Read back from the pages: letterhead, registration numbers, the
    // invoice found (not the other title's), its totals and words, and
    // each copy's word.
    const QStringList words = {QStringLiteral("ORIGINAL"), QStringLiteral("DUPLICATE"), QStringLiteral("TRIPLICATE")};
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(sti.requests.at(i).copyCaption, words.at(i));
        QCOMPARE(sti.requests.at(i).title, words.at(i));
        Reports::RenderedReport copy = Reports::ReportFrame::render(*db, sti.requests.at(i), Reports::DesignCatalogue());
        QTemporaryDir dir;
        const QString text = pdfText(copy, dir.path());
        if (!qEnvironmentVariableIsEmpty("TESSEL_TEST_PDF_DIR"))
            Reports::exportPdf(copy, QStringLiteral("%1/crSalesTaxInvoice-%2.pdf")
                                         .arg(qEnvironmentVariable("TESSEL_TEST_PDF_DIR"), words.at(i)), nullptr);
        for (const QString &s : {QStringLiteral("PRESS PRINTERS"), QStringLiteral("STN-PRE"), QStringLiteral("NTN-PRE"),
                                 QStringLiteral("SALES TAX INVOICE"), QStringLiteral("03-04-5555-111-22"),
                                 QStringLiteral("1234567-8"), QStringLiteral("PLOT 9 SITE AREA"), words.at(i),
                                 lines.toDisplayString(), Reports::amountInWords(lines).left(30)})
            QVERIFY2(text.contains(s), qPrintable(s));
        QVERIFY(!text.contains(QLatin1String("PACKAGING PRINTERS")));
        QVERIFY(!text.contains(QLatin1String("PLAIN BOX")));
        QVERIFY(lineWith(text, QStringLiteral("INVOICE #:")).contains(QLatin1String("INVOICE #: 7001 ")));
        const QString total = lineWith(text, lines.toDisplayString());
        for (const Money m : {column(r, "Price"), column(r, "SaleTaxPayable"), column(r, "FurtherTaxAmount")})
            QVERIFY2(total.contains(m.toDisplayString()), qPrintable(total));
        // Another copy word is not on this one.
        for (int k = 0; k < 3; ++k)
            if (k != i)
                QVERIFY(!text.contains(words.at(k)));
    }

    // The other forms of the same invoice: each reads only its lines and
    // prints what its form adds.
    struct Form { Document d; int copies; QStringList texts; };
    const Money earlier = units(3000);
    // A receipt entered after the invoice the same day is owed neither
    // before nor with it.
    db->execute(QStringLiteral("INSERT INTO tblPartyBalance (RecordNo, VoucherType, VoucherNo, VDate, PartyCode, "
                               "PartyName, PartyDR, PartyCR, PartyBalance) VALUES (1, 'CR', 9, ?, ?, ?, 0, 200, -200)"),
                {kDay, QStringLiteral("17-10-901"), QStringLiteral("CRESCENT TEXTILES")});
    const QVector<Form> forms = {
        {Document::SaleTaxInvoiceDW, 3, {QStringLiteral("DT-55"), QStringLiteral("12.5"), QStringLiteral("WEIGHT")}},
        {Document::InvoiceWithSalesTax, 2, {QStringLiteral("OTHER TAX"), column(r, "SaleTaxPayable").toDisplayString()}},
        {Document::Bill, 1, {QStringLiteral("BILL #:"), QStringLiteral("PRODUCT CARTON")}},
        {Document::Invoice, 2, {QStringLiteral("KP-77"), (lines - column(r, "Price")).toDisplayString()}},
        // The customer owed the earlier invoice and, that day, the
        // packaging title's two invoices too.
        {Document::InvoiceWithBalance, 2,
         {(earlier + units(705)).toDisplayString() + QStringLiteral(" DR"),
          (earlier + units(705) + lines).toDisplayString() + QStringLiteral(" DR")}},
    };
    for (const Form &f : forms) {
        const InvoiceDocuments::Copies c = copiesOf(*db, f.d, kPress, kNo, kDay);
        QCOMPARE(c.requests.size(), f.copies);
        Reports::RenderedReport doc = Reports::ReportFrame::render(*db, c.requests.constLast(), Reports::DesignCatalogue());
        QCOMPARE(doc.rows.size(), 3);
        QCOMPARE(column(doc, "ValueIncludingTax"), lines);
        QTemporaryDir dir;
        const QString text = pdfText(doc, dir.path());
        if (!qEnvironmentVariableIsEmpty("TESSEL_TEST_PDF_DIR"))
            Reports::exportPdf(doc, QStringLiteral("%1/%2.pdf").arg(qEnvironmentVariable("TESSEL_TEST_PDF_DIR"),
                                                                    c.requests.constLast().design), nullptr);
        QVERIFY2(text.contains(lines.toDisplayString()), qPrintable(c.requests.constLast().design));
        QVERIFY(text.contains(QLatin1String("AMOUNT IN WORDS")));
        QVERIFY(!text.contains(QLatin1String("PLAIN BOX")));
        for (const QString &s : f.texts)
            QVERIFY2(text.contains(s), qPrintable(c.requests.constLast().design + QLatin1Char(' ') + s));
        QCOMPARE(c.requests.constLast().copyCaption.isEmpty(), f.copies == 1);
    }

    // Every invoice of the year, demo's included: the sales-tax invoice's
    // totals equal its lines and its voucher.
    const QueryResult invoices = db->select(QStringLiteral(
        "SELECT TitleName, InvoiceNo, InvoiceDate, SUM(ValueIncludingTax) AS Total, SUM(SaleTaxPayable) AS Tax, COUNT(*) AS Lines FROM tblInvoice "
        "GROUP BY TitleName, InvoiceNo, InvoiceDate ORDER BY InvoiceDate, TitleName, InvoiceNo"));
    QVERIFY(invoices.size() > 4);
    for (const Row &inv : invoices) {
        const InvoiceKey k{inv.text(0).trimmed(), inv.integer(1), inv.date(2)};
        const InvoiceDocuments::Copies c = copiesOf(*db, Document::SaleTaxInvoice, k.title, k.number, k.date);
        const Reports::RenderedReport doc = Reports::ReportFrame::render(*db, c.requests.first(), Reports::DesignCatalogue());
        QCOMPARE(doc.rows.size(), int(inv.integer(5)));
        QCOMPARE(column(doc, "ValueIncludingTax"), inv.moneyOrZero("Total"));
        QCOMPARE(column(doc, "SaleTaxPayable"), inv.moneyOrZero("Tax"));
        QCOMPARE(column(doc, "Price") + column(doc, "SaleTaxPayable") + column(doc, "OtherTax"), inv.moneyOrZero("Total"));
        QCOMPARE(voucherAmount(*db, k), inv.moneyOrZero("Total"));
        QCOMPARE(doc.amountWords, Reports::amountInWords(inv.moneyOrZero("Total")));
    }

    // The challans and orders go through their own designs, two copies
    // and one.
    QCOMPARE(copiesOf(*db, Document::DeliveryChallanByDemandNo, kPress, kNo, kDay).requests.size(), 2);
    QCOMPARE(copiesOf(*db, Document::DeliveryChallanByDemandNo, kPress, kNo, kDay).requests.at(1).copyCaption,
             QStringLiteral("DUPLICATE"));
    QCOMPARE(copiesOf(*db, Document::PurchaseOrderWithoutRate, kPress, kNo, kDay).requests.first().design,
             QStringLiteral("crPurchaseOrderWithoutRate"));
}

void TestInvoiceDocuments::ledgerWithSaleTax()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    prepareYear(*db);
    // Invoice 1 of both titles, one customer, one day.
    InvoicePosting posting(*db, kUser, kToday);
    QVERIFY(posting.saveNew(header(QStringLiteral("PRESS"), 1), threeLines(), NumberPolicy::Typed).ok);
    QVERIFY(posting.saveNew(header(QStringLiteral("PACKAGING"), 1),
                            {line(QStringLiteral("CASH"), QStringLiteral("BOX"), QStringLiteral("10"),
                                  QStringLiteral("70"), QStringLiteral("10"))},
                            NumberPolicy::Typed).ok);
    db->setReportPeriod(QDate(2026, 1, 1), QDate(2026, 12, 31));
    const QueryResult rows = db->select(
        QStringLiteral("SELECT PartyDR, ValueExSaleTax, SaleTax, OtherTax, ValueIncludingTax FROM LedgerWithSaleTax "
                       "WHERE PartyCode = '17-10-001' AND VoucherType = 'SV' ORDER BY SrNo"));
    QCOMPARE(rows.size(), 2);
    QCOMPARE(rows.at(0).moneyOrZero("PartyDR"), units(11800));
    QCOMPARE(rows.at(0).moneyOrZero("ValueExSaleTax"), units(10000));
    QCOMPARE(rows.at(0).moneyOrZero("SaleTax"), units(1800));
    QCOMPARE(rows.at(1).moneyOrZero("PartyDR"), units(770));
    QCOMPARE(rows.at(1).moneyOrZero("ValueExSaleTax"), units(700));
    QCOMPARE(rows.at(1).moneyOrZero("SaleTax"), units(70));
    for (const Row &r : rows) {
        QCOMPARE(r.moneyOrZero("ValueIncludingTax"), r.moneyOrZero("PartyDR"));
        QCOMPARE(r.moneyOrZero("OtherTax"), Money());
    }
}

QTEST_MAIN(TestInvoiceDocuments)
#include "tst_invoicedocuments.moc"
