// Bill-wise payment: the lists of a party's bills, the mark of bills and
// the printed lists read back from PDF.
#include "reports/ReportReadBack.h"
#include "support/TestDb.h"
#include "tst_billwisefixture.h"

#include "sales/InvoiceStaging.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace BillWiseFixture;
using BillWisePayment::Mark;

namespace {

const QString kCrescent = QStringLiteral("17-10-001");

// "TITLE/NO/TERMS AMOUNT" a bill.
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

// The marked bills, read from the lines; a bill half marked ends in "?".
QStringList doneBills(SessionConnection &db)
{
    QStringList out;
    for (const Row &r : db.select(QStringLiteral(
             "SELECT TitleName, InvoiceNo, TermsOfSale, SUM(CASE WHEN Status = 'DONE' THEN 1 ELSE 0 END), COUNT(*) "
             "FROM tblInvoice GROUP BY TitleName, InvoiceNo, TermsOfSale ORDER BY TitleName, InvoiceNo, TermsOfSale")))
        if (r.integer(3) > 0)
            out << QStringLiteral("%1/%2/%3%4")
                       .arg(r.text(0).trimmed())
                       .arg(r.integer(1))
                       .arg(r.text(2), r.integer(3) == r.integer(4) ? QString() : QStringLiteral("?"));
    return out;
}

QTestData &row(const QString &backend, const char *name)
{
    return QTest::newRow(qPrintable(backend + QStringLiteral(": ") + QString::fromLatin1(name))) << backend;
}

const QStringList kBackends = {QStringLiteral("sqlite"), QStringLiteral("postgres")};

} // namespace

class TestBillWisePayment : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void lists_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("party");
        QTest::addColumn<QDate>("from");
        QTest::addColumn<QDate>("to");
        QTest::addColumn<QStringList>("pending");
        const QStringList march = {"PACKAGING/1/CREDIT 300.00", "PRESS/1/CASH 3,510.00", "PRESS/1/CREDIT 8,290.00"};
        for (const QString &b : kBackends) {
            row(b, "its own day at both ends, terms added up") << kCrescent << kDay << kDay << march;
            row(b, "the day before") << kCrescent << QDate(2026, 3, 1) << QDate(2026, 3, 8) << QStringList();
            row(b, "two months") << kCrescent << QDate(2026, 3, 1) << QDate(2026, 4, 30)
                                 << (march + QStringList{"PRESS/2/CREDIT 1,000.00"});
            row(b, "no party code") << QStringLiteral("  -  -   ") << QDate(2026, 1, 1) << QDate(2026, 12, 31)
                                    << QStringList();
        }
    }
    void lists()
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
    }

    void marks_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QStringList>("before"); // bills marked first
        QTest::addColumn<QStringList>("bills");
        QTest::addColumn<bool>("done");
        QTest::addColumn<QString>("refusal"); // "" when the mark goes through
        QTest::addColumn<int>("lines"); // invoice lines changed
        QTest::addColumn<QStringList>("after");
        const QString gone = BillWiseMessages::kChangedElsewhere;
        const QStringList none;
        for (const QString &b : kBackends) {
            row(b, "a bill of two lines")
                << none << QStringList{"PRESS/1/CREDIT"} << true << QString() << 2 << QStringList{"PRESS/1/CREDIT"};
            row(b, "the number under another title") << none << QStringList{"PACKAGING/1/CREDIT"} << true << QString()
                                                     << 1 << QStringList{"PACKAGING/1/CREDIT"};
            row(b, "several at once") << none << QStringList{"PRESS/1/CASH", "PRESS/3/CREDIT/17-10-002"} << true
                                      << QString() << 2 << QStringList{"PRESS/1/CASH", "PRESS/3/CREDIT"};
            row(b, "back to pending") << QStringList{"PRESS/1/CREDIT", "PRESS/1/CASH"} << QStringList{"PRESS/1/CREDIT"}
                                      << false << QString() << 2 << QStringList{"PRESS/1/CASH"};
            row(b, "marked meanwhile elsewhere") << QStringList{"PRESS/1/CASH"} << QStringList{"PRESS/1/CASH"} << true
                                                 << QString() << 0 << QStringList{"PRESS/1/CASH"};
            row(b, "a bill gone refuses them all")
                << none << QStringList{"PRESS/1/CASH", "PRESS/9/CREDIT"} << true << gone << 0 << none;
            row(b, "a bill of another party") << none << QStringList{"PRESS/3/CREDIT"} << true << gone << 0 << none;
            row(b, "nothing chosen") << none << none << true << QString("-") << 0 << none;
        }
    }
    void marks()
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
        QVERIFY(before.isEmpty() || BillWisePayment::mark(*db, keys(before), Mark::Done).ok);
        const int ledger = TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance"));

        const Outcome out = BillWisePayment::mark(*db, keys(bills), done ? Mark::Done : Mark::Pending);
        QCOMPARE(out.ok, refusal.isEmpty());
        if (!out.ok)
            QCOMPARE(out.message, refusal == QLatin1String("-") ? QString() : refusal);
        QCOMPARE(out.rowsWritten, lines);
        QCOMPARE(doneBills(*db), after);
        QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")), ledger);
    }

    // Lines changed in place keep their mark, a line added is pending: the
    // bill shows in both lists until it is marked again, whole.
    void invoiceChangesKeepMarks_data() { TestDb::addBackends(); }
    void invoiceChangesKeepMarks()
    {
        TESSEL_YEAR(year);
        auto db = year.connect();
        saveInvoices(*db);
        QVERIFY(BillWisePayment::mark(*db, keys({"PRESS/1/CREDIT"}), Mark::Done).ok);
        const InvoiceKey k{QStringLiteral("PRESS"), 1, kDay};
        InvoiceHeader h;
        QVector<InvoiceLine> posted = InvoiceStaging(*db).postedLines(k, &h);
        QCOMPARE(posted.first().description, QStringLiteral("CARTON"));
        posted.first().quantity = QStringLiteral("2000");
        InvoiceRules::computeFigures(posted.first());
        posted << line(QStringLiteral("CREDIT"), QStringLiteral("POSTER"), QStringLiteral("10"), QStringLiteral("10"));
        QVERIFY(InvoicePosting(*db, kUser, kToday).saveModified(k, h, posted).ok);

        const QDate from(2026, 3, 1), to(2026, 3, 31);
        QCOMPARE(texts(BillWisePayment::bills(*db, kCrescent, from, to, Mark::Done)),
            QStringList{"PRESS/1/CREDIT 14,140.00"});
        QCOMPARE(texts(BillWisePayment::bills(*db, kCrescent, from, to, Mark::Pending)).last(),
            QStringLiteral("PRESS/1/CREDIT 100.00"));
        QCOMPARE(BillWisePayment::mark(*db, keys({"PRESS/1/CREDIT"}), Mark::Done).rowsWritten, 1);
        QCOMPARE(texts(BillWisePayment::bills(*db, kCrescent, from, to, Mark::Done)),
            QStringList{"PRESS/1/CREDIT 14,240.00"});
    }

    // Read back from the PDF: every bill under its mark with the totals,
    // or the pending bills alone; another party's name gives nothing.
    void printedLists_data() { TestDb::addBackends(); }
    void printedLists()
    {
        TESSEL_YEAR(year);
        auto db = year.connect();
        saveInvoices(*db);
        QVERIFY(BillWisePayment::mark(*db, keys({"PRESS/1/CREDIT"}), Mark::Done).ok);
        const auto period = LedgerStatements::Period::of(QDate(2026, 3, 1), QDate(2026, 3, 31));
        const QString name = QStringLiteral("CRESCENT TEXTILES");
        QTemporaryDir dir;
        using BillWisePayment::Report;

        const Reports::RenderedReport r
            = Reports::ReportFrame::render(*db, BillWisePayment::report(Report::BillWise, name, period));
        QCOMPARE(r.request.title, QStringLiteral("BILL WISE PAYMENT"));
        const QString text = ReportReadBack::pdfText(r, dir.path());
        QVERIFY2(text.contains(QStringLiteral("BILL WISE PAYMENT REPORT")), qPrintable(text));
        QVERIFY(text.contains(QStringLiteral("FROM 01/03/2026 TO 31/03/2026")));
        QCOMPARE(ReportReadBack::lineWith(text, QStringLiteral("8,290.00")),
            QStringLiteral("1 09/03/2026 PRESS CREDIT 8,290.00"));
        QCOMPARE(ReportReadBack::lineWith(text, QStringLiteral("TOTAL PENDING BILL")),
            QStringLiteral("TOTAL PENDING BILL (2) 3,810.00"));
        QCOMPARE(ReportReadBack::lineWith(text, QStringLiteral("TOTAL PAYMENT DONE")),
            QStringLiteral("TOTAL PAYMENT DONE (1) 8,290.00"));
        QCOMPARE(
            ReportReadBack::lineWith(text, QStringLiteral("TOTAL BILLS")), QStringLiteral("TOTAL BILLS (3) 12,100.00"));

        const Reports::RenderedReport p
            = Reports::ReportFrame::render(*db, BillWisePayment::report(Report::Pending, name, period));
        const QString pending = ReportReadBack::pdfText(p, dir.path());
        QVERIFY(pending.contains(QStringLiteral("CUSTOMER PENDING PAYMENT REPORT")));
        QCOMPARE(ReportReadBack::lineWith(pending, QStringLiteral("TOTAL BILLS")),
            QStringLiteral("TOTAL BILLS (2) 3,810.00"));
        QCOMPARE(Reports::ReportFrame::render(
                     *db, BillWisePayment::report(Report::BillWise, QStringLiteral("PAPER HOUSE"), period))
                     .rows.size(),
            0);
    }
};

QTEST_MAIN(TestBillWisePayment)
#include "tst_billwisepayment.moc"
