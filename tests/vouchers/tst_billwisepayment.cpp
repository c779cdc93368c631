// Bill-wise payment: the lists of a party's bills, the mark of bills (a
// bill is an invoice's lines of one terms of sale, under its title), the
// printed lists read back from PDF, and the demo year's marks.
#include "reports/ReportReadBack.h"
#include "sales/tst_invoicefixture.h"
#include "support/TestDb.h"

#include "sales/InvoiceDemo.h"
#include "sales/InvoicePosting.h"
#include "sales/InvoiceStaging.h"
#include "vouchers/BillWiseDemo.h"
#include "vouchers/BillWisePayment.h"
#include "vouchers/DemoGenerator.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace InvoiceFixture;
using BillWisePayment::Mark;

namespace {

const QString kCrescent = QStringLiteral("17-10-001");
const QString kSunrise = QStringLiteral("17-10-002");

// The invoices every test starts from:
//   PRESS 1 of CRESCENT on 09/03: CREDIT 5,850.00 + 2,440.00, CASH 3,510.00
//   PACKAGING 1 of CRESCENT on 09/03: CREDIT 300.00 (the same number, another title)
//   PRESS 2 of CRESCENT on 01/04: CREDIT 1,000.00
//   PRESS 3 of SUNRISE on 09/03: CREDIT 500.00
void saveInvoices(SessionConnection &db)
{
    prepareYear(db);
    auto save = [&](const InvoiceHeader &h, const QVector<InvoiceLine> &lines) {
        const Outcome out = InvoicePosting(db, kUser, kToday).saveNew(h, lines, NumberPolicy::Typed);
        QVERIFY2(out.ok, qPrintable(out.message));
    };
    save(header(QStringLiteral("PRESS"), 1), threeLines());
    save(header(QStringLiteral("PACKAGING"), 1), {line(QStringLiteral("CREDIT"), QStringLiteral("TAG"),
                                                       QStringLiteral("100"), QStringLiteral("3"))});
    save(header(QStringLiteral("PRESS"), 2, QDate(2026, 4, 1)),
         {line(QStringLiteral("CREDIT"), QStringLiteral("BOX"), QStringLiteral("200"), QStringLiteral("5"))});
    save(header(QStringLiteral("PRESS"), 3, kDay, kSunrise, QStringLiteral("SUNRISE PACKAGES")),
         {line(QStringLiteral("CREDIT"), QStringLiteral("BOX"), QStringLiteral("100"), QStringLiteral("5"))});
}

// "PRESS/1/CREDIT" (the party CRESCENT) or "PRESS/3/CREDIT/17-10-002".
BillKey key(const QString &text)
{
    const QStringList p = text.split(QLatin1Char('/'));
    return {p.value(0), p.value(1).toLongLong(), p.value(2), p.size() > 3 ? p.value(3) : kCrescent};
}

QVector<BillKey> keys(const QStringList &texts)
{
    QVector<BillKey> out;
    for (const QString &t : texts)
        out << key(t);
    return out;
}

// A list as "TITLE/NO/TERMS AMOUNT" texts.
QStringList texts(const QVector<BillLine> &bills)
{
    QStringList out;
    for (const BillLine &b : bills)
        out << QStringLiteral("%1/%2/%3 %4")
                   .arg(b.key.titleName)
                   .arg(b.key.invoiceNo)
                   .arg(b.key.termsOfSale, b.amount.toDisplayString());
    return out;
}

// Every marked bill of the year, as "TITLE/NO/TERMS", from the lines
// themselves; a bill half marked shows as "TITLE/NO/TERMS?".
QStringList doneBills(SessionConnection &db)
{
    QStringList out;
    const QueryResult rows = db.select(QStringLiteral(
        "SELECT TitleName, InvoiceNo, TermsOfSale, SUM(CASE WHEN Status = 'DONE' THEN 1 ELSE 0 END), COUNT(*) "
        "FROM tblInvoice GROUP BY TitleName, InvoiceNo, TermsOfSale ORDER BY TitleName, InvoiceNo, TermsOfSale"));
    for (const Row &r : rows) {
        const qint64 done = r.integer(3), all = r.integer(4);
        if (done > 0)
            out << QStringLiteral("%1/%2/%3%4")
                       .arg(r.text(0).trimmed())
                       .arg(r.integer(1))
                       .arg(r.text(2), done == all ? QString() : QStringLiteral("?"));
    }
    return out;
}

} // namespace

class TestBillWisePayment : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void lists_data();
    void lists();
    void marks_data();
    void marks();
    void invoiceChangesKeepMarks_data() { TestDb::addBackends(); }
    void invoiceChangesKeepMarks();
    void printedLists_data() { TestDb::addBackends(); }
    void printedLists();
    void demoMarksWholeBills_data() { TestDb::addBackends(); }
    void demoMarksWholeBills();
};

void TestBillWisePayment::lists_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("party");
    QTest::addColumn<QDate>("from");
    QTest::addColumn<QDate>("to");
    QTest::addColumn<QStringList>("pending");
    const QStringList march = {"PACKAGING/1/CREDIT 300.00", "PRESS/1/CASH 3,510.00", "PRESS/1/CREDIT 8,290.00"};
    for (const QString &b : {QStringLiteral("sqlite"), QStringLiteral("postgres")}) {
        auto row = [&](const char *name) -> QTestData & {
            return QTest::newRow(qPrintable(b + QStringLiteral(": ") + name)) << b;
        };
        row("a month, by number, terms added up") << kCrescent << QDate(2026, 3, 1) << QDate(2026, 3, 31) << march;
        row("the invoice's own day at both ends") << kCrescent << kDay << kDay << march;
        row("the day before") << kCrescent << QDate(2026, 3, 1) << QDate(2026, 3, 8) << QStringList();
        row("two months") << kCrescent << QDate(2026, 3, 1) << QDate(2026, 4, 30)
                           << (march + QStringList{"PRESS/2/CREDIT 1,000.00"});
        row("another party") << kSunrise << QDate(2026, 1, 1) << QDate(2026, 12, 31)
                              << QStringList{"PRESS/3/CREDIT 500.00"};
        row("no party code") << QString() << QDate(2026, 1, 1) << QDate(2026, 12, 31) << QStringList();
        row("an empty code mask") << QStringLiteral("  -  -   ") << QDate(2026, 1, 1) << QDate(2026, 12, 31)
                                   << QStringList();
        row("no period") << kCrescent << QDate() << QDate() << QStringList();
    }
}

void TestBillWisePayment::lists()
{
    QFETCH(QString, party);
    QFETCH(QDate, from);
    QFETCH(QDate, to);
    QFETCH(QStringList, pending);
    TESSEL_YEAR(year);
    auto db = year.connect();
    saveInvoices(*db);
    QCOMPARE(texts(BillWisePayment::bills(*db, party, from, to, Mark::Pending)), pending);
    QCOMPARE(texts(BillWisePayment::bills(*db, party, from, to, Mark::Done)), QStringList());

    // Marked, the same bills make the other list, and none is pending.
    if (pending.isEmpty())
        return;
    QVector<BillKey> all;
    for (const BillLine &b : BillWisePayment::bills(*db, party, from, to, Mark::Pending))
        all << b.key;
    QVERIFY(BillWisePayment::mark(*db, all, Mark::Done).ok);
    QCOMPARE(texts(BillWisePayment::bills(*db, party, from, to, Mark::Done)), pending);
    QCOMPARE(texts(BillWisePayment::bills(*db, party, from, to, Mark::Pending)), QStringList());
}

void TestBillWisePayment::marks_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QStringList>("before"); // bills marked first
    QTest::addColumn<QStringList>("bills");
    QTest::addColumn<bool>("done");
    QTest::addColumn<QString>("refusal"); // "" when the mark goes through
    QTest::addColumn<int>("lines");       // invoice lines changed
    QTest::addColumn<QStringList>("after");
    const QString gone = BillWiseMessages::kChangedElsewhere;
    for (const QString &b : {QStringLiteral("sqlite"), QStringLiteral("postgres")}) {
        auto row = [&](const char *name) -> QTestData & {
            return QTest::newRow(qPrintable(b + QStringLiteral(": ") + name)) << b;
        };
        row("a bill of two lines") << QStringList() << QStringList{"PRESS/1/CREDIT"} << true << QString() << 2
                                    << QStringList{"PRESS/1/CREDIT"};
        row("the same number under another title stays") << QStringList() << QStringList{"PACKAGING/1/CREDIT"}
                                                          << true << QString() << 1
                                                          << QStringList{"PACKAGING/1/CREDIT"};
        row("several bills at once") << QStringList()
                                      << QStringList{"PRESS/1/CASH", "PRESS/3/CREDIT/17-10-002"} << true << QString()
                                      << 2 << QStringList{"PRESS/1/CASH", "PRESS/3/CREDIT"};
        row("back to pending") << QStringList{"PRESS/1/CREDIT", "PRESS/1/CASH"} << QStringList{"PRESS/1/CREDIT"}
                                << false << QString() << 2 << QStringList{"PRESS/1/CASH"};
        row("marked already on another workstation") << QStringList{"PRESS/1/CASH"} << QStringList{"PRESS/1/CASH"}
                                                      << true << QString() << 0 << QStringList{"PRESS/1/CASH"};
        row("a bill gone refuses the whole mark") << QStringList()
                                                   << QStringList{"PRESS/1/CASH", "PRESS/9/CREDIT"} << true << gone
                                                   << 0 << QStringList();
        row("a pending mark with a bill gone changes nothing")
            << QStringList{"PRESS/1/CASH"} << QStringList{"PRESS/1/CASH", "PRESS/1/ADVANCE"} << false << gone << 0
            << QStringList{"PRESS/1/CASH"};
        row("a bill of another party") << QStringList() << QStringList{"PRESS/3/CREDIT"} << true << gone << 0
                                        << QStringList();
        row("no title") << QStringList() << QStringList{"/1/CREDIT"} << true << gone << 0 << QStringList();
        row("nothing chosen") << QStringList() << QStringList() << true << QString("-") << 0 << QStringList();
    }
}

void TestBillWisePayment::marks()
{
    QFETCH(QStringList, before);
    QFETCH(QStringList, bills);
    QFETCH(bool, done);
    QFETCH(QString, refusal);
    QFETCH(int, lines);
    QFETCH(QStringList, after);
    TESSEL_YEAR(year);
    auto db = year.connect();
    saveInvoices(*db);
    if (!before.isEmpty())
        QVERIFY(BillWisePayment::mark(*db, keys(before), Mark::Done).ok);
    const int ledger = TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance"));

    const Outcome out = BillWisePayment::mark(*db, keys(bills), done ? Mark::Done : Mark::Pending);
    QCOMPARE(out.ok, refusal.isEmpty());
    if (refusal == QLatin1String("-"))
        QCOMPARE(out.message, QString());
    else if (!out.ok)
        QCOMPARE(out.message, refusal);
    QCOMPARE(out.rowsWritten, lines);
    QCOMPARE(doneBills(*db), after);
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")), ledger);
}

// A changed invoice: its lines changed in place keep their mark, a line
// added is pending, so the bill shows in both lists until it is marked
// again as one.
void TestBillWisePayment::invoiceChangesKeepMarks()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    saveInvoices(*db);
    QVERIFY(BillWisePayment::mark(*db, keys({"PRESS/1/CREDIT"}), Mark::Done).ok);

    const InvoiceKey k{QStringLiteral("PRESS"), 1, kDay};
    InvoiceHeader h;
    QVector<InvoiceLine> posted = InvoiceStaging(*db).postedLines(k, &h);
    QCOMPARE(posted.size(), 3);
    for (InvoiceLine &l : posted) {
        if (l.description == QLatin1String("CARTON")) {
            l.quantity = QStringLiteral("2000");
            InvoiceRules::computeFigures(l);
            l.state = LineState::Update;
        }
    }
    posted << line(QStringLiteral("CREDIT"), QStringLiteral("POSTER"), QStringLiteral("10"), QStringLiteral("10"));
    const Outcome saved = InvoicePosting(*db, kUser, kToday).saveModified(k, h, posted);
    QVERIFY2(saved.ok, qPrintable(saved.message));

    const QDate from(2026, 3, 1), to(2026, 3, 31);
    QCOMPARE(texts(BillWisePayment::bills(*db, kCrescent, from, to, Mark::Done)),
             QStringList{"PRESS/1/CREDIT 14,140.00"});
    QCOMPARE(texts(BillWisePayment::bills(*db, kCrescent, from, to, Mark::Pending)),
             (QStringList{"PACKAGING/1/CREDIT 300.00", "PRESS/1/CASH 3,510.00", "PRESS/1/CREDIT 100.00"}));

    // Picked from the pending list, the whole bill is paid.
    const Outcome out = BillWisePayment::mark(*db, keys({"PRESS/1/CREDIT"}), Mark::Done);
    QVERIFY(out.ok);
    QCOMPARE(out.rowsWritten, 1);
    QCOMPARE(texts(BillWisePayment::bills(*db, kCrescent, from, to, Mark::Done)),
             QStringList{"PRESS/1/CREDIT 14,240.00"});
    QCOMPARE(doneBills(*db), QStringList{"PRESS/1/CREDIT"});
}

// The two printed lists, read back from the PDF: every bill under its
// mark with the totals, or the pending bills alone.
void TestBillWisePayment::printedLists()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    saveInvoices(*db);
    QVERIFY(BillWisePayment::mark(*db, keys({"PRESS/1/CREDIT"}), Mark::Done).ok);
    const auto period = LedgerStatements::Period::of(QDate(2026, 3, 1), QDate(2026, 3, 31));
    QTemporaryDir dir;

    const Reports::ReportRequest all
        = BillWisePayment::report(BillWisePayment::Report::BillWise, QStringLiteral("CRESCENT TEXTILES"), period);
    QCOMPARE(all.title, QStringLiteral("BILL WISE PAYMENT"));
    QCOMPARE(all.heading, QStringLiteral("BILL WISE PAYMENT REPORT"));
    const Reports::RenderedReport r = Reports::ReportFrame::render(*db, all);
    QCOMPARE(r.rows.size(), 3);
    const QString text = ReportReadBack::pdfText(r, dir.path());
    QVERIFY2(text.contains(QStringLiteral("BILL WISE PAYMENT REPORT")), qPrintable(text));
    QVERIFY(text.contains(QStringLiteral("FROM 01/03/2026 TO 31/03/2026")));
    QVERIFY(text.contains(QStringLiteral("CRESCENT TEXTILES")));
    QCOMPARE(ReportReadBack::lineWith(text, QStringLiteral("TOTAL PENDING BILL")),
             QStringLiteral("TOTAL PENDING BILL (2) 3,810.00"));
    QCOMPARE(ReportReadBack::lineWith(text, QStringLiteral("TOTAL PAYMENT DONE")),
             QStringLiteral("TOTAL PAYMENT DONE (1) 8,290.00"));
    QCOMPARE(ReportReadBack::lineWith(text, QStringLiteral("TOTAL BILLS")),
             QStringLiteral("TOTAL BILLS (3) 12,100.00"));
    QVERIFY(ReportReadBack::lineWith(text, QStringLiteral("8,290.00")).startsWith(QStringLiteral("1 09/03/2026 PRESS CREDIT")));

    const Reports::RenderedReport p = Reports::ReportFrame::render(
        *db, BillWisePayment::report(BillWisePayment::Report::Pending, QStringLiteral("CRESCENT TEXTILES"), period));
    QCOMPARE(p.request.title, QStringLiteral("CUSTOMER PENDING PAYMENT"));
    const QString pending = ReportReadBack::pdfText(p, dir.path());
    QVERIFY(pending.contains(QStringLiteral("CUSTOMER PENDING PAYMENT REPORT")));
    QCOMPARE(ReportReadBack::lineWith(pending, QStringLiteral("TOTAL BILLS")),
             QStringLiteral("TOTAL BILLS (2) 3,810.00"));
    QVERIFY(!pending.contains(QStringLiteral("8,290.00")));

    // Another party's name, or none, gives an empty report.
    for (const QString &name : {QStringLiteral("PAPER HOUSE"), QString()})
        QCOMPARE(Reports::ReportFrame::render(
                     *db, BillWisePayment::report(BillWisePayment::Report::BillWise, name, period))
                     .rows.size(),
                 0);
}

// The demo marks whole bills, through the rule, as far as each customer's
// payments reach: some paid, some pending, none half marked.
void TestBillWisePayment::demoMarksWholeBills()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    DemoOptions o;
    o.rows = 1500;
    o.from = QDate(2026, 1, 1);
    o.to = QDate(2026, 6, 30);
    db->execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {o.from.addDays(-1)});
    DemoGenerator g(*db, o);
    g.addPart(QStringLiteral("chart"), &DemoGenerator::chartPart);
    g.addPart(QStringLiteral("opening balances"), &DemoGenerator::openingBalancePart);
    g.addPart(QStringLiteral("titles"), [](DemoContext &c) {
        for (const char *t : {"PRESS", "PACKAGING"})
            c.db.execute(QStringLiteral("INSERT INTO tblTitleName (TitleName) VALUES (?)"), {QString::fromLatin1(t)});
    });
    g.addPart(QStringLiteral("invoices"), &InvoiceDemo::invoicePart);
    g.addPart(QStringLiteral("vouchers"), &DemoGenerator::voucherPart);
    g.addPart(QStringLiteral("bill-wise payment"), &billWiseDemoPart);
    g.run();

    const QStringList done = doneBills(*db);
    QVERIFY(!done.isEmpty());
    QVERIFY2(!done.join(QLatin1Char(' ')).contains(QLatin1Char('?')), qPrintable(done.join(QLatin1Char(' '))));
    const int pending = TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM BillWisePayment WHERE Status = ''"));
    QVERIFY(pending > 0);

    // No customer has more marked paid than it paid in the year.
    const QueryResult over = db->select(QStringLiteral(
        "SELECT b.PartyCode FROM BillWisePayment b WHERE b.Status = 'DONE' GROUP BY b.PartyCode "
        "HAVING SUM(b.ValueIncludingTax) > (SELECT SUM(p.PartyCR) FROM tblPartyBalance p "
        "WHERE p.PartyCode = b.PartyCode)"));
    QCOMPARE(over.size(), 0);
}

QTEST_MAIN(TestBillWisePayment)
#include "tst_billwisepayment.moc"
