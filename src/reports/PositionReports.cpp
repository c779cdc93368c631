#include "reports/PositionReports.h"

#include "foundation/Money.h"
#include "foundation/SessionConnection.h"

namespace PositionReports {

using Reports::ReportCondition;
using Reports::ReportRequest;

using LedgerStatements::codeRange;
using LedgerStatements::request;
using LedgerStatements::setPeriod;

ReportRequest customersPosition()
{
    ReportRequest r = request(QStringLiteral("crTrialBalanceUptoDate"), QStringLiteral("CUSTOMERS RECEIVABLE UPTO DATE"),
                              QStringLiteral("CUSTOMERS POSITION UPTO DATE"));
    codeRange(r, kCustomersFrom, kCustomersTo);
    return r;
}

ReportRequest purchasersPosition()
{
    ReportRequest r = request(QStringLiteral("crTrialBalanceUptoDate"), QStringLiteral("PURCHASER PAYABLE UPTO DATE"),
                              QStringLiteral("PURCHASER PAYABLE UPTO DATE"));
    codeRange(r, kPurchasersFrom, kPurchasersTo);
    return r;
}

ReportRequest partyPosition(const Period &p, const QString &codeFrom, const QString &codeTo)
{
    const QString heading = codeFrom.trimmed() >= kTradingBound ? QStringLiteral("EXPENSE / INCOME COMPARISON REPORT")
                                                                : QStringLiteral("PARTY POSITION");
    ReportRequest r = request(QStringLiteral("crPartyPosition"), QStringLiteral("PARTY POSITION"), heading);
    setPeriod(r, p);
    codeRange(r, codeFrom.trimmed(), codeTo.trimmed());
    return r;
}

ReportRequest partyPositionSingleDate(const QDate &date, const QString &dateText)
{
    ReportRequest r = request(QStringLiteral("crPartyPositionSingleDate"), QStringLiteral("PARTY POSITION REPORT"));
    r.from = QDate(1900, 1, 1);
    r.to = date;
    r.fromText = QStringLiteral("01/01/1900");
    r.toText = dateText;
    return r;
}

ReportRequest recovery(const Period &p)
{
    ReportRequest r = request(QStringLiteral("crRecoveryReport"), QStringLiteral("RECOVERY REPORT"));
    setPeriod(r, p);
    return r;
}

ReportRequest cashBook(const Period &p)
{
    ReportRequest r = request(QStringLiteral("crCashBook"), QStringLiteral("CASH BOOK"));
    setPeriod(r, p);
    return r;
}

} // namespace PositionReports

namespace MonthlyComparison {

namespace {

const char *const kMonthColumns[12] = {"January", "February", "March",     "April",   "May",      "June",
                                       "July",    "August",   "September", "October", "November", "December"};

// The month slot of a kept month row, or -1 when it is not of `year`.
int slotOf(qint64 yearMonth, int year)
{
    const qint64 month = yearMonth - qint64(year) * 100;
    return month >= 1 && month <= 12 ? int(month - 1) : -1;
}

qint64 wholeUnits(qint64 cents)
{
    return Money::fromCents(cents).toWholeUnits();
}

} // namespace

// Both read the kept month figures of the ledger (tblAccountMonthBalance,
// moved with every posting): one grouped statement, whatever the size of
// the year.
QVector<AccountMonths> expenses(SessionConnection &db, int year)
{
    const QueryResult rows = db.select(
        QStringLiteral("SELECT RTRIM(a.PartyCode) AS PartyCode, a.PartyName AS PartyName, m.YearMonth AS YearMonth, "
                       "m.BalanceCents AS BalanceCents "
                       "FROM tblPartyInfo a LEFT JOIN tblAccountMonthBalance m "
                       "ON m.PartyCode = a.PartyCode AND m.YearMonth >= ? AND m.YearMonth <= ? "
                       "WHERE a.PartyCode >= ? AND a.PartyCode <= ? AND RTRIM(a.PartyCode) NOT LIKE '%-000' "
                       "ORDER BY a.PartyCode, m.YearMonth"),
        {qint64(year) * 100 + 1, qint64(year) * 100 + 12, kExpensesFrom, kExpensesTo});
    QVector<AccountMonths> out;
    for (const Row &r : rows) {
        const QString code = r.text(QStringLiteral("PartyCode"));
        if (out.isEmpty() || out.last().partyCode != code)
            out.append({code, r.text(QStringLiteral("PartyName")).trimmed(), {}});
        const int slot = slotOf(r.integer(QStringLiteral("YearMonth")), year);
        if (slot >= 0)
            out.last().months[slot] = wholeUnits(r.integer(QStringLiteral("BalanceCents")));
    }
    return out;
}

Months profitAndLoss(SessionConnection &db, int year)
{
    const QueryResult rows = db.select(
        QStringLiteral("SELECT YearMonth, SUM(BalanceCents) AS BalanceCents FROM tblAccountMonthBalance "
                       "WHERE YearMonth >= ? AND YearMonth <= ? "
                       "AND ((PartyCode >= '13-10-000' AND PartyCode <= '13-99-999') OR PartyCode > '20-00-000') "
                       "AND RTRIM(PartyCode) NOT LIKE '%-000' "
                       "GROUP BY YearMonth"),
        {qint64(year) * 100 + 1, qint64(year) * 100 + 12});
    Months out{};
    for (const Row &r : rows) {
        const int slot = slotOf(r.integer(QStringLiteral("YearMonth")), year);
        if (slot >= 0)
            out[slot] = wholeUnits(r.integer(QStringLiteral("BalanceCents")));
    }
    return out;
}

int stage(SessionConnection &db, Kind kind, int year)
{
    QVector<AccountMonths> rows;
    if (kind == Kind::Expenses)
        rows = expenses(db, year);
    else
        rows.append({QString(), QString(), profitAndLoss(db, year)});

    QString columns = QStringLiteral("PartyCode, PartyName");
    QString marks = QStringLiteral("?, ?");
    for (const char *m : kMonthColumns) {
        columns += QStringLiteral(", ") + QLatin1String(m);
        marks += QStringLiteral(", ?");
    }
    const QString insert = QStringLiteral("INSERT INTO tblMonthlyComparisonReportEmpty (%1) VALUES (%2)").arg(columns, marks);

    Transaction tx(db);
    db.execute(QStringLiteral("DELETE FROM tblMonthlyComparisonReportEmpty"));
    for (const AccountMonths &a : rows) {
        QVariantList values{a.partyCode, a.partyName};
        for (qint64 units : a.months)
            values << Money::fromUnits(units).toVariant();
        db.execute(insert, values);
    }
    tx.commit();
    return rows.size();
}

QString windowTitle(Kind kind)
{
    return kind == Kind::Expenses ? QStringLiteral("MONTHLY EXPENSES REPORT") : QStringLiteral("MONTHLY PROFIT AND LOSS REPORT");
}

Reports::ReportRequest request(Kind kind, int year)
{
    Reports::ReportRequest r;
    if (kind == Kind::Expenses) {
        r.design = QStringLiteral("crMonthlyComparisonReport");
        r.heading = QStringLiteral("MONTHLY EXPENSE COMPARISON REPORT");
    } else {
        r.design = QStringLiteral("crMonthlyProfitAndLossReport");
        r.heading = QStringLiteral("MONTHLY INCOM COMPARISON REPORT");
    }
    r.title = windowTitle(kind);
    r.from = QDate(year, 1, 1);
    r.to = QDate(year, 12, 31);
    r.fromText = r.from.toString(QStringLiteral("dd/MM/yyyy"));
    r.toText = r.to.toString(QStringLiteral("dd/MM/yyyy"));
    // The rows are this workstation's own; the year's period row stays as
    // the other workstations left it.
    r.writePeriodRow = false;
    return r;
}

} // namespace MonthlyComparison
