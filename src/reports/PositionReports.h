#pragma once

#include "reports/LedgerStatements.h"

#include <QDate>
#include <QString>
#include <array>

class SessionConnection;

// Party position, recovery, the cash book and the monthly comparisons, as
// their screens ask for them.
namespace PositionReports {

using LedgerStatements::Period;

inline const QString kCustomersFrom = QStringLiteral("17-10-000");
inline const QString kCustomersTo = QStringLiteral("18-99-999");
inline const QString kPurchasersFrom = QStringLiteral("14-10-000");
inline const QString kPurchasersTo = QStringLiteral("14-99-999");
// Codes from here on are expense and income accounts: the two-dates
// position of them is a comparison.
inline const QString kTradingBound = QStringLiteral("20-00-000");

// Customers' and purchasers' balances up to date.
Reports::ReportRequest customersPosition();
Reports::ReportRequest purchasersPosition();
// Each account of the code range in a period: brought forward, debits,
// credits and closing balance.
Reports::ReportRequest partyPosition(const Period &p, const QString &codeFrom, const QString &codeTo);
// The parties' balances up to one date.
Reports::ReportRequest partyPositionSingleDate(const QDate &date, const QString &dateText);
Reports::ReportRequest recovery(const Period &p);
Reports::ReportRequest cashBook(const Period &p);

} // namespace PositionReports

// Twelve months of balances of one year, staged in this workstation's
// tblMonthlyComparisonReportEmpty and printed from there.
namespace MonthlyComparison {

enum class Kind { Expenses, ProfitAndLoss };

inline const QString kExpensesFrom = QStringLiteral("21-10-001");
inline const QString kExpensesTo = QStringLiteral("21-99-999");

using Months = std::array<qint64, 12>;   // whole money, half to even

struct AccountMonths
{
    QString partyCode;
    QString partyName;
    Months months{};
};

// Every expense account that is not a heading, with its movement of each
// month of `year` (zeros for a month without postings).
QVector<AccountMonths> expenses(SessionConnection &db, int year);
// The result of each month of `year`: group 13 and every account above
// "20-00-000" that is not a heading, added up with the ledger's sign (a
// loss is positive, a profit negative).
Months profitAndLoss(SessionConnection &db, int year);

// Empties the staging table and writes the rows of the report in one
// transaction; returns how many rows it wrote.
int stage(SessionConnection &db, Kind kind, int year);

// The window title of the run, and the report of the staged rows.
QString windowTitle(Kind kind);
Reports::ReportRequest request(Kind kind, int year);

} // namespace MonthlyComparison
