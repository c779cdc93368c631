// The demonstration year's invoices: every challan invoiced, and the sale
// vouchers of the ledger equal to the invoices' lines, one by one.
#include "sales/InvoiceDemo.h"
#include "support/TestDb.h"
#include "vouchers/DemoGenerator.h"
#include "vouchers/LedgerCheck.h"

#include <QtTest>

class TestInvoiceDemo : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void vouchersEqualInvoices_data() { TestDb::addBackends(); }
    void vouchersEqualInvoices();
};

void TestInvoiceDemo::vouchersEqualInvoices()
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
    g.addPart(QStringLiteral("titles"), [](DemoContext &c) {
        for (const char *t : {"PRESS", "PACKAGING"})
            c.db.execute(QStringLiteral("INSERT INTO tblTitleName (TitleName) VALUES (?)"), {QString::fromLatin1(t)});
    });
    // Two challans of two customers, as the job paperwork leaves them.
    g.addPart(QStringLiteral("challans"), [](DemoContext &c) {
        for (int n = 0; n < 2; ++n) {
            const DemoAccount &a = c.chart.customers.at(n);
            for (const char *item : {"CARTON", "LABEL", "LEAFLET"})
                c.db.execute(QStringLiteral("INSERT INTO tblDeliveryChallan (RecordNo, DeliveryChallanNo, VDate, "
                                            "PartyCode, PartyName, Description, PONo, Quantity, Type, DemandNo, "
                                            "TitleName) VALUES (1, ?, ?, ?, ?, ?, 'PO-1', 120, 'Pcs', 'D-1', 'PRESS')"),
                    {n + 1, c.options.from.addDays(10), a.code, a.name, QString::fromLatin1(item)});
        }
    });
    g.addPart(QStringLiteral("invoices"), &InvoiceDemo::invoicePart);
    g.addPart(QStringLiteral("vouchers"), &DemoGenerator::voucherPart);
    const DemoSummary s = g.run();
    QVERIFY(s.ledgerRows >= o.rows);

    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblInvoice WHERE ChallanNo IN ('1', '2')")), 6);
    const int invoices = TestDb::count(*db,
        QStringLiteral("SELECT COUNT(*) FROM (SELECT DISTINCT TitleName, InvoiceNo, InvoiceDate FROM tblInvoice) x"));
    QVERIFY(invoices >= o.rows / 100);
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE VoucherType = 'SV'")),
        2 * invoices);

    // Each invoice against its own voucher: customer debit and sales
    // credit, both the total of its lines.
    const QueryResult mismatches = db->select(QStringLiteral(
        "SELECT i.TitleName, i.InvoiceNo FROM (SELECT TitleName, InvoiceNo, InvoiceDate, PartyCode, "
        "SUM(ValueIncludingTax) AS Total FROM tblInvoice GROUP BY TitleName, InvoiceNo, InvoiceDate, PartyCode) i "
        "WHERE (SELECT SUM(b.PartyDR) FROM tblPartyBalance b WHERE b.VoucherType = 'SV' AND b.VoucherNo = i.InvoiceNo "
        "AND b.VDate = i.InvoiceDate AND COALESCE(b.CareOf, '') = i.TitleName AND b.PartyCode = i.PartyCode) "
        "IS DISTINCT FROM i.Total OR (SELECT SUM(b.PartyCR) FROM tblPartyBalance b WHERE b.VoucherType = 'SV' "
        "AND b.VoucherNo = i.InvoiceNo AND b.VDate = i.InvoiceDate AND COALESCE(b.CareOf, '') = i.TitleName "
        "AND b.PartyCode = '20-10-002') IS DISTINCT FROM i.Total"));
    QVERIFY2(mismatches.isEmpty(),
        qPrintable(QStringLiteral("%1 invoices differ from their vouchers").arg(mismatches.size())));
    QStringList diff;
    QVERIFY2(LedgerCheck::keptBalancesAgree(*db, &diff), qPrintable(diff.join(QLatin1Char('\n'))));
}

QTEST_GUILESS_MAIN(TestInvoiceDemo)
#include "tst_invoicedemo.moc"
