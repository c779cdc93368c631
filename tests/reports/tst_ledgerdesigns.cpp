// The designs of the ledger, ageing and statements, rendered through the
// report frame from the requests the screens make, on both engines.
#include "LedgerFixture.h"
#include "reports/LedgerStatements.h"
#include "reports/ReportExport.h"
#include "reports/ReportFrame.h"
#include "support/TestDb.h"
#include "vouchers/PartyAgeing.h"

using namespace LedgerStatements;
using LedgerFixture::money;
using Reports::RenderedReport;
using Reports::ReportLine;

namespace {

RenderedReport render(SessionConnection &db, const Reports::ReportRequest &req)
{
    RenderedReport r = Reports::ReportFrame::render(db, req, Reports::DesignCatalogue());
    if (!qEnvironmentVariableIsEmpty("TESSEL_TEST_PDF_DIR")) {
        QString error;
        Reports::exportPdf(r, QStringLiteral("%1/%2.pdf").arg(qEnvironmentVariable("TESSEL_TEST_PDF_DIR"), req.design), &error);
    }
    return r;
}

Money valueAt(const RenderedReport &r, const ReportLine &line, const QString &field)
{
    const int i = r.design.columnIndex(field);
    const QVariant v = i >= 0 && i < line.values.size() ? line.values.at(i) : QVariant();
    return Money::fromVariant(v).value_or(Money());
}

QVector<ReportLine> linesOf(const RenderedReport &r, ReportLine::Kind kind)
{
    QVector<ReportLine> out;
    for (const ReportLine &l : r.lines)
        if (l.kind == kind)
            out << l;
    return out;
}

QVector<int> indicesOf(const RenderedReport &r, ReportLine::Kind kind)
{
    QVector<int> out;
    for (int i = 0; i < r.lines.size(); ++i)
        if (r.lines.at(i).kind == kind)
            out << i;
    return out;
}

const Period kYear = Period::of(QDate(2026, 1, 1), QDate(2026, 12, 31));
const Period kFebruary = Period::of(QDate(2026, 2, 1), QDate(2026, 2, 28));

} // namespace

class tst_LedgerDesigns : public QObject
{
    Q_OBJECT

private slots:
    // Every design reads its source: all the fields it names are there.
    void everyDesignRenders_data() { TestDb::addBackends(); }
    void everyDesignRenders()
    {
        TESSEL_YEAR(year);
        auto db = year.connect();
        LedgerFixture::seedYear(*db);
        db->setReportPeriod(kYear.from, kYear.to);
        PartyAgeing::runForParty(*db, QStringLiteral("17-10-001"));
        const QVector<Reports::ReportRequest> requests{
            ledger(LedgerKind::Ledger, "17-10-001", "ALPHA TRADERS", kFebruary),
            ledger(LedgerKind::LedgerVoucherWise, "17-10-001", "ALPHA TRADERS", kFebruary),
            ledger(LedgerKind::LedgerWithSaleTax, "17-10-001", "ALPHA TRADERS", kFebruary),
            agingReport("ALPHA TRADERS", kYear),
            ageingReportPeriod(QString(), kYear),
            trialBalance(TrialBalanceKind::BetweenTwoDates, kFebruary),
            trialBalance(TrialBalanceKind::WithoutClosing, kYear),
            trialBalance(TrialBalanceKind::WithoutContact, kYear),
            balanceSheetUpto(QDate(2026, 2, 28), "28/02/2026"),
            balanceSheetAll(),
            profitAndLoss(kYear),
            allPayable(), allReceivable(), creditList(kYear), debitList(kYear)};
        for (const auto &req : requests) {
            const RenderedReport r = render(*db, req);
            QVERIFY2(r.rows.size() > 0, qPrintable(req.design));
            QVERIFY2(r.pageCount() >= 1, qPrintable(req.design));
        }
        Reports::ReportRequest link = ledger(LedgerKind::Ledger, "17-10-001", "ALPHA TRADERS", kFebruary);
        link.design = QStringLiteral("crLedgerOfAccountLink");
        QVERIFY(render(*db, link).rows.size() > 0);
    }

    // The ledger: the opening line, each line's running balance, and the
    // closing balance that is the account's balance at the period's end.
    void ledgerRunningBalance_data() { TestDb::addBackends(); }
    void ledgerRunningBalance()
    {
        TESSEL_YEAR(year);
        auto db = year.connect();
        LedgerFixture::seedYear(*db);
        const RenderedReport r = render(*db, ledger(LedgerKind::Ledger, "17-10-001", "ALPHA TRADERS",
                                                    Period::of(QDate(2026, 1, 15), QDate(2026, 3, 31))));
        const QVector<ReportLine> details = linesOf(r, ReportLine::Kind::Detail);
        QCOMPARE(details.size(), 3);
        const int desc = r.design.columnIndex("PartyDesc");
        QCOMPARE(details.at(0).texts.at(desc), QStringLiteral("OPENING BALANCE"));
        QCOMPARE(valueAt(r, details.at(0), "PartyBalance"), money("13300.30"));
        QCOMPARE(valueAt(r, details.at(1), "PartyBalance"), money("8300.20"));
        QCOMPARE(details.at(2).texts.at(desc), QStringLiteral("CLOSING BALANCE"));
        QCOMPARE(details.at(2).texts.at(r.design.columnIndex("PartyBalance")), QStringLiteral("8,300.20 DR"));
        const QVector<ReportLine> footers = linesOf(r, ReportLine::Kind::GroupFooter);
        QCOMPARE(footers.size(), 1);
        QCOMPARE(valueAt(r, footers.at(0), "PartyDR"), money("13300.30"));
        QCOMPARE(valueAt(r, footers.at(0), "PartyCR"), money("5000.10"));
        // A ledger line opens its voucher.
        const int line = indicesOf(r, ReportLine::Kind::Detail).at(1);
        const auto voucher = r.drillDown(line);
        QVERIFY(voucher);
        QCOMPARE(voucher->design, QStringLiteral("crSingleVoucher"));
    }

    // The statements' totals as printed: debit beside credit.
    void statementTotals_data() { TestDb::addBackends(); }
    void statementTotals()
    {
        TESSEL_YEAR(year);
        auto db = year.connect();
        LedgerFixture::seedYear(*db);
        for (const auto &req : {trialBalance(TrialBalanceKind::BetweenTwoDates, kFebruary),
                                balanceSheetUpto(QDate(2026, 3, 31), "31/03/2026"), balanceSheetAll()}) {
            const RenderedReport r = render(*db, req);
            const QVector<ReportLine> totals = linesOf(r, ReportLine::Kind::Total);
            QCOMPARE(totals.size(), 1);
            QVERIFY(valueAt(r, totals.first(), "PartyDR").isPositive());
            QCOMPARE(valueAt(r, totals.first(), "PartyDR"), valueAt(r, totals.first(), "PartyCR"));
            // A balance line opens the account's ledger.
            const int first = indicesOf(r, ReportLine::Kind::Detail).first();
            const auto link = r.drillDown(first);
            QVERIFY(link);
            QCOMPARE(link->design, QStringLiteral("crLedgerOfAccountLink"));
            QCOMPARE(link->conditions.size(), 1);
            QCOMPARE(link->conditions.first().field, QStringLiteral("PartyCode"));
        }
        const RenderedReport pl = render(*db, profitAndLoss(kYear));
        const QVector<ReportLine> sides = linesOf(pl, ReportLine::Kind::GroupFooter);
        QCOMPARE(sides.size(), 2);
        QCOMPARE(valueAt(pl, sides.at(0), "Amount"), valueAt(pl, sides.at(1), "Amount"));

        const RenderedReport payable = render(*db, allPayable());
        for (const Row &row : payable.rows) {
            QVERIFY(row.moneyOrZero("PartyBalance").isNegative());
            QVERIFY(row.text("PartyCode") >= kPartiesFrom && row.text("PartyCode") <= kPartiesTo);
        }
        QVERIFY(!payable.rows.isEmpty());
    }
};

QTEST_MAIN(tst_LedgerDesigns)
#include "tst_ledgerdesigns.moc"
