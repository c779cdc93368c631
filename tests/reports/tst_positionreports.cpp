// Party position, recovery, the cash book and the monthly comparisons: each
// figure against the ledger rows it stands for, to the cent, on both
// engines; the comparison's rounding of a month to whole money.
#include "LedgerFixture.h"
#include "ReportReadBack.h"
#include "support/TestDb.h"

#include "foundation/Schema.h"
#include "reports/PositionReports.h"
#include "reports/ReportExport.h"
#include "reports/ReportFrame.h"
#include "vouchers/DemoGenerator.h"
#include "vouchers/LedgerWriter.h"

#include <QtTest>

namespace {

using LedgerStatements::Period;

Money cents(qint64 c) { return Money::fromCents(c); }

Money ledgerSum(SessionConnection &db, const QString &column, const QString &code, const QString &where,
                const QVariantList &params)
{
    QVariantList all{code};
    all << params;
    return db.scalarMoney(QStringLiteral("SELECT SUM(%1) FROM tblPartyBalance WHERE RTRIM(PartyCode) = ? AND %2")
                              .arg(column, where),
                          all)
        .value_or(Money());
}

Reports::RenderedReport render(SessionConnection &db, const Reports::ReportRequest &r)
{
    return Reports::ReportFrame::render(db, r, Reports::DesignCatalogue());
}

// Ledger rows through the writer, so the kept month figures move too.
void post(SessionConnection &db, const QString &code, const QDate &date, const char *amount)
{
    const Money m = LedgerFixture::money(QString::fromLatin1(amount));
    const VoucherKey key{QStringLiteral("JV"), 1, date};
    LedgerWriter w(db, QStringLiteral("TEST"), date);
    if (m.isNegative())
        w.insert(LedgerRow::credit(key, code, code, -m));
    else
        w.insert(LedgerRow::debit(key, code, code, m));
}

} // namespace

class tst_PositionReports : public QObject
{
    Q_OBJECT

private slots:
    // Each account's position in a period equals its own rows: brought
    // forward before the start, debits and credits inside, balance at the
    // end. The recovery report is the same figures for customers.
    void positionEqualsTheLedger_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QDate>("from");
        QTest::addColumn<QDate>("to");
        QTest::addColumn<bool>("demo");
        for (const char *b : {"sqlite", "postgres"}) {
            const QString backend = QString::fromLatin1(b);
            QTest::newRow(qPrintable(backend + " february")) << backend << QDate(2026, 2, 1) << QDate(2026, 2, 28) << false;
            QTest::newRow(qPrintable(backend + " quarter")) << backend << QDate(2026, 1, 1) << QDate(2026, 3, 31) << false;
            QTest::newRow(qPrintable(backend + " one day")) << backend << QDate(2026, 1, 25) << QDate(2026, 1, 25) << false;
            QTest::newRow(qPrintable(backend + " demo year, mid-month")) << backend << QDate(2026, 3, 17) << QDate(2026, 9, 12) << true;
        }
    }
    void positionEqualsTheLedger()
    {
        QFETCH(QDate, from);
        QFETCH(QDate, to);
        QFETCH(bool, demo);
        TESSEL_YEAR(year);
        auto db = year.connect();
        if (demo) {
            // A whole press's year, every kind of document made by its rules.
            DemoOptions o;
            o.rows = 4000;
            o.from = QDate(2026, 1, 1);
            o.to = QDate(2026, 12, 31);
            DemoGenerator g(*db, o);
            g.addStandardParts();
            g.run();
        } else {
            LedgerFixture::seedYear(*db);
        }
        const Period p = Period::of(from, to);

        const auto checkRows = [&](const Reports::RenderedReport &r, const QString &opening, const QString &debit,
                                   const QString &credit, const QString &closing) {
            QVERIFY(!r.rows.isEmpty());
            for (const Row &row : r.rows) {
                const QString code = row.text(QStringLiteral("PartyCode"));
                QCOMPARE(*row.money(opening), ledgerSum(*db, QStringLiteral("PartyBalance"), code, QStringLiteral("VDate < ?"), {from}));
                QCOMPARE(*row.money(debit), ledgerSum(*db, QStringLiteral("PartyDR"), code,
                                                      QStringLiteral("VDate >= ? AND VDate <= ?"), {from, to}));
                QCOMPARE(*row.money(credit), ledgerSum(*db, QStringLiteral("PartyCR"), code,
                                                       QStringLiteral("VDate >= ? AND VDate <= ?"), {from, to}));
                QCOMPARE(*row.money(closing), ledgerSum(*db, QStringLiteral("PartyBalance"), code, QStringLiteral("VDate <= ?"), {to}));
            }
        };

        const auto position = render(*db, PositionReports::partyPosition(p, QStringLiteral("14-10-000"), QStringLiteral("18-99-999")));
        QCOMPARE(position.heading, QStringLiteral("PARTY POSITION"));
        for (const Row &row : position.rows)
            QVERIFY(row.text(QStringLiteral("PartyCode")) >= QStringLiteral("14-10-000")
                    && row.text(QStringLiteral("PartyCode")) <= QStringLiteral("18-99-999"));
        checkRows(position, QStringLiteral("OpeningBalance"), QStringLiteral("DebitTotal"), QStringLiteral("CreditTotal"),
                  QStringLiteral("ClosingBalance"));

        const auto recovery = render(*db, PositionReports::recovery(p));
        for (const Row &row : recovery.rows)
            QVERIFY(row.text(QStringLiteral("PartyCode")).startsWith(QStringLiteral("17"))
                    || row.text(QStringLiteral("PartyCode")).startsWith(QStringLiteral("18")));
        checkRows(recovery, QStringLiteral("OpeningBalance"), QStringLiteral("BilledAmount"), QStringLiteral("RecoveredAmount"),
                  QStringLiteral("ClosingBalance"));

        // Expense and income codes make it a comparison.
        const auto compare = render(*db, PositionReports::partyPosition(p, QStringLiteral("20-00-000"), QStringLiteral("21-99-999")));
        QCOMPARE(compare.heading, QStringLiteral("EXPENSE / INCOME COMPARISON REPORT"));
    }

    // The cash book: brought forward, every cash row of the period, and
    // the cash in hand at its end.
    void cashBookEqualsTheCashAccount_data() { TestDb::addBackends(); }
    void cashBookEqualsTheCashAccount()
    {
        TESSEL_YEAR(year);
        auto db = year.connect();
        LedgerFixture::seedYear(*db);
        const QDate from(2026, 1, 26), to(2026, 3, 31);
        const auto r = render(*db, PositionReports::cashBook(Period::of(from, to)));
        const QString cash = QStringLiteral("19-10-001");
        Money opening, receipts, payments, closing;
        int moves = 0;
        for (const Row &row : r.rows) {
            QCOMPARE(row.text(QStringLiteral("PartyCode")), cash);
            switch (row.integer(QStringLiteral("LineKind"))) {
            case 0: opening = *row.money(QStringLiteral("PartyBalance")); break;
            case 1:
                ++moves;
                receipts = receipts + *row.money(QStringLiteral("PartyDR"));
                payments = payments + *row.money(QStringLiteral("PartyCR"));
                break;
            default: closing = *row.money(QStringLiteral("ClosingBalance"));
            }
        }
        QCOMPARE(opening, ledgerSum(*db, QStringLiteral("PartyBalance"), cash, QStringLiteral("VDate < ?"), {from}));
        QCOMPARE(opening, LedgerFixture::money(QStringLiteral("12000.20")));  // the opening 7000.10 and 5000.10 received
        QCOMPARE(moves, TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE RTRIM(PartyCode) = ? "
                                                          "AND VDate >= ? AND VDate <= ?"), {cash, from, to}));
        QCOMPARE(receipts, ledgerSum(*db, QStringLiteral("PartyDR"), cash, QStringLiteral("VDate >= ? AND VDate <= ?"), {from, to}));
        QCOMPARE(payments, ledgerSum(*db, QStringLiteral("PartyCR"), cash, QStringLiteral("VDate >= ? AND VDate <= ?"), {from, to}));
        QCOMPARE(closing, opening + receipts - payments);
        QCOMPARE(closing, ledgerSum(*db, QStringLiteral("PartyBalance"), cash, QStringLiteral("VDate <= ?"), {to}));
    }

    // A month is its movement rounded to whole money, half to even; the
    // year is the sum of the months; headings, other years and other
    // accounts stay out; an account without postings has twelve zeros.
    void comparisonMonths_data() { TestDb::addBackends(); }
    void comparisonMonths()
    {
        TESSEL_YEAR(year);
        auto db = year.connect();
        for (const auto &a : QList<QPair<const char *, const char *>>{{"21-10-000", "ADMINISTRATION"},
                                                                      {"21-10-001", "SALARIES"},
                                                                      {"21-10-002", "ELECTRICITY"},
                                                                      {"21-20-001", "RENT"},
                                                                      {"13-10-001", "DEPRECIATION"},
                                                                      {"17-10-001", "ALPHA TRADERS"}})
            LedgerFixture::account(*db, QString::fromLatin1(a.first), QString::fromLatin1(a.second));
        const QString sal = QStringLiteral("21-10-001"), elec = QStringLiteral("21-10-002");
        post(*db, sal, QDate(2026, 1, 5), "1234.50");   // stays 1234
        post(*db, sal, QDate(2026, 2, 5), "1235.50");   // goes to 1236
        post(*db, sal, QDate(2026, 3, 5), "0.49");      // the month's sum is rounded,
        post(*db, sal, QDate(2026, 3, 20), "0.02");     // not each row: 0.51 gives 1
        post(*db, sal, QDate(2026, 4, 1), "-0.50");     // -0.50 gives 0
        post(*db, sal, QDate(2026, 12, 31), "99.99");
        post(*db, sal, QDate(2025, 12, 31), "500");     // another year
        post(*db, sal, QDate(2027, 1, 1), "500");
        post(*db, elec, QDate(2026, 6, 30), "2500.75");
        post(*db, QStringLiteral("21-10-000"), QDate(2026, 6, 30), "10");  // a heading, never listed
        post(*db, QStringLiteral("20-10-002"), QDate(2026, 1, 5), "-3000.40");
        post(*db, QStringLiteral("13-10-001"), QDate(2026, 1, 31), "100.10");
        post(*db, QStringLiteral("17-10-001"), QDate(2026, 1, 5), "3000.40");  // a party: no part of the result

        const auto rows = MonthlyComparison::expenses(*db, 2026);
        QCOMPARE(rows.size(), 3);
        QCOMPARE(rows.at(0).partyCode, sal);
        QCOMPARE(rows.at(0).partyName, QStringLiteral("SALARIES"));
        const MonthlyComparison::Months salaries{1234, 1236, 1, 0, 0, 0, 0, 0, 0, 0, 0, 100};
        QCOMPARE(rows.at(0).months, salaries);
        const MonthlyComparison::Months electricity{0, 0, 0, 0, 0, 2501, 0, 0, 0, 0, 0, 0};
        QCOMPARE(rows.at(1).months, electricity);
        QCOMPARE(rows.at(2).partyCode, QStringLiteral("21-20-001"));
        QCOMPARE(rows.at(2).months, MonthlyComparison::Months{});

        // January: 100.10 of group 13 and 1234.50 of expenses less 3000.40 of
        // income.
        const MonthlyComparison::Months result{-1666, 1236, 1, 0, 0, 2501, 0, 0, 0, 0, 0, 100};
        QCOMPARE(MonthlyComparison::profitAndLoss(*db, 2026), result);

        // Staged and printed: a row an account and the year's total.
        QCOMPARE(MonthlyComparison::stage(*db, MonthlyComparison::Kind::Expenses, 2026), 3);
        const auto report = render(*db, MonthlyComparison::request(MonthlyComparison::Kind::Expenses, 2026));
        QCOMPARE(report.heading, QStringLiteral("MONTHLY EXPENSE COMPARISON REPORT"));
        QCOMPARE(report.rows.size(), 3);
        QCOMPARE(*report.rows.at(0).money(QStringLiteral("YearTotal")), Money::fromUnits(1234 + 1236 + 1 + 100));
        QCOMPARE(*report.rows.at(0).money(QStringLiteral("February")), Money::fromUnits(1236));
        const Reports::ChartData chart = Reports::chartData(report);
        QCOMPARE(chart.categories.size(), 12);
        QCOMPARE(chart.categories.first(), QStringLiteral("JAN"));
        QCOMPARE(chart.seriesNames.first(), QStringLiteral("SALARIES"));
        QCOMPARE(chart.totals.at(5), Money::fromUnits(2501));
        // The workbook carries the figures and a chart of them on a sheet
        // of their own.
        QTemporaryDir dir;
        const QString book = dir.filePath(QStringLiteral("comparison.xlsx"));
        QString error;
        QVERIFY2(Reports::exportFile(report, book, &error), qPrintable(error));
        const QString listing = ReportReadBack::runTool(QStringLiteral("unzip"), {QStringLiteral("-l"), book});
        QVERIFY2(listing.contains(QStringLiteral("xl/charts/chart1.xml")), qPrintable(listing));
        QVERIFY(listing.contains(QStringLiteral("xl/worksheets/sheet2.xml")));

        // Run again: the staging holds only the new run.
        QCOMPARE(MonthlyComparison::stage(*db, MonthlyComparison::Kind::ProfitAndLoss, 2026), 1);
        const auto plReport = render(*db, MonthlyComparison::request(MonthlyComparison::Kind::ProfitAndLoss, 2026));
        QCOMPARE(plReport.heading, QStringLiteral("MONTHLY INCOM COMPARISON REPORT"));
        QCOMPARE(plReport.rows.size(), 1);
        QCOMPARE(*plReport.rows.at(0).money(QStringLiteral("January")), Money::fromUnits(-1666));

        // A year without postings: every account, all zeros; one row of
        // zeros for the result.
        QCOMPARE(MonthlyComparison::stage(*db, MonthlyComparison::Kind::Expenses, 2030), 3);
        QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM MonthlyComparisonReport WHERE YearTotal = 0")), 3);
        QCOMPARE(MonthlyComparison::profitAndLoss(*db, 2030), MonthlyComparison::Months{});
    }

    // The kept month figures the comparison reads give what the ledger
    // rows give, month by month, on a year written straight into the rows
    // and then brought up to date as an upgrade does.
    void comparisonEqualsTheRows_data() { TestDb::addBackends(); }
    void comparisonEqualsTheRows()
    {
        TESSEL_YEAR(year);
        auto db = year.connect();
        LedgerFixture::seedYear(*db);
        Schema::rebuildKeptBalances(*db);
        for (const auto &a : MonthlyComparison::expenses(*db, 2026)) {
            qint64 total = 0;
            for (int m = 1; m <= 12; ++m) {
                const Money sum = db->scalarMoney(QStringLiteral("SELECT SUM(PartyBalance) FROM tblPartyBalance WHERE RTRIM(PartyCode) = ? "
                                                                 "AND VDate >= ? AND VDate <= ?"),
                                                  {a.partyCode, QDate(2026, m, 1), QDate(2026, m, 1).addMonths(1).addDays(-1)})
                                      .value_or(Money());
                QCOMPARE(a.months[m - 1], sum.toWholeUnits());
                total += a.months[m - 1];
            }
            QCOMPARE(Money::fromUnits(total), ledgerSum(*db, QStringLiteral("PartyBalance"), a.partyCode,
                                                       QStringLiteral("VDate >= ? AND VDate <= ?"),
                                                       {QDate(2026, 1, 1), QDate(2026, 12, 31)}).roundedToUnits());
        }
    }

    // Beyond the limit of series, the smallest rows are added up as
    // OTHERS; the totals stay those of every row.
    void chartKeepsTheLargest()
    {
        Reports::RenderedReport r;
        r.design.chart = Reports::DesignChart{};
        r.design.chart->label = QStringLiteral("PartyName");
        r.design.chart->values = QStringList{QStringLiteral("January")};
        r.design.chart->categories = QStringList{QStringLiteral("JAN")};
        r.design.chart->maxSeries = 3;
        const auto index = std::make_shared<const QHash<QString, int>>(
            QHash<QString, int>{{QStringLiteral("partyname"), 0}, {QStringLiteral("january"), 1}});
        for (const auto &p : QList<QPair<const char *, qint64>>{{"A", 10}, {"B", -500}, {"C", 30}, {"D", 20}, {"E", 5}})
            r.rows.rows.append(Row(index, {QString::fromLatin1(p.first), cents(p.second * 100).toVariant()}));
        const Reports::ChartData d = Reports::chartData(r);
        QCOMPARE(d.seriesNames, QStringList({QStringLiteral("B"), QStringLiteral("C"), QStringLiteral("OTHERS")}));
        QCOMPARE(d.series.at(2).at(0), Money::fromUnits(35));
        QCOMPARE(d.totals.at(0), Money::fromUnits(-435));
    }
};

QTEST_GUILESS_MAIN(tst_PositionReports)
#include "tst_positionreports.moc"
