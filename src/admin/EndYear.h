#pragma once

#include "foundation/Money.h"
#include "foundation/Outcome.h"

#include <QDate>
#include <QMap>
#include <QString>
#include <QVector>
#include <functional>

class SessionConnection;

// End-year processing: turns the open year into the books of one period.
// Each step is one transaction: it lands whole or not at all. Widget-free;
// the screen asks before it calls a step, since every step removes rows.
namespace EndYear {

enum class Step {
    Accounts,
    ProfitAndLoss,
    DeliveryChallan,
    EmployeeSalary,
    EmployeeStock,
    OtherServices,
    PostDatedCheque,
    PurchaseOrder,
    PurchaseStock,
    Sale,
    Stock,
};

// What a step is: its button and caption on the screen, the table it
// cuts and the date column it cuts by (empty for the two ledger steps),
// and the words it ends with.
struct StepInfo
{
    Step step;
    QString button;
    QString caption;
    QString table;
    QString dateColumn;
    QString message;
};

// Every step in the order of the screen's buttons.
const QVector<StepInfo> &steps();
const StepInfo &info(Step step);

// The account the result of the closed period is carried to.
inline QString profitAndLossCode() { return QStringLiteral("20-01-001"); }

// The period a step keeps, and who runs it.
struct Run
{
    QDate from;   // rows before it go
    QDate to;     // rows after it go
    QString user; // stamped on the rows the steps write
    QDate today;
};

// The period's checks: both dates real dates, the first not after the
// last. A refusal names mskDateFrom or mskDateTo.
Outcome checkPeriod(const QDate &from, const QDate &to);

// The question the screen asks before it runs a step.
QString question(Step step, const QDate &from, const QDate &to);

// Called as the step goes: the value and the maximum of the bar.
using Progress = std::function<void(int value, int maximum)>;

// Runs one step on the period in one transaction. Answers the step's
// message, or a refusal with nothing written; a database failure rolls
// the step back and comes as DbError.
//
// Accounts: every account with rows before the period gets one opening
// row dated the day before it, holding its balance before the period
// (opening rows standing later are taken into it); then every row outside
// the period goes but the opening rows. The same dates twice give the
// same rows.
// Both ledger steps refuse while the kept balances differ from the rows.
// Profit and loss runs after Accounts: it refuses while rows other than
// opening rows stand before the period. Then the balance of 20-01-001
// before the period and the balance of the accounts from 20-10-000 on
// before the period, each rounded to whole money (half to even), go
// together into the one opening row of 20-01-001, and the opening rows of
// those accounts are set to nothing. A second run finds nothing more to
// carry.
// The table steps remove the table's rows dated outside the period.
Outcome runStep(SessionConnection &db, Step step, const Run &run, const Progress &progress = {});

// Each account's balance before `date` (code without trailing blanks),
// for every account with rows before it, a zero balance included: the
// kept months before its month and the rows of its month before the day.
QMap<QString, Money> balancesBefore(SessionConnection &db, const QDate &date);

// The same summed from the ledger rows themselves, without the kept
// balances: slower, for proving a carry.
QMap<QString, Money> ledgerBalancesBefore(SessionConnection &db, const QDate &date);

// Every account's name by its code (without trailing blanks).
QMap<QString, QString> accountNames(SessionConnection &db);

namespace Msg {
inline QString profitAccountMissing()
{
    return QStringLiteral("Profit and loss account 20-01-001 not found, please create it first");
}
inline QString entriesBeforePeriod(const QDate &from)
{
    return QStringLiteral("Entries other than opening balances stand before %1. Run the ACCOUNT step first.")
        .arg(from.toString(QStringLiteral("dd/MM/yyyy")));
}
inline QString keptBalancesDiffer()
{
    return QStringLiteral("The kept balances of the accounts differ from their entries, so nothing has been carried. "
                          "CHECK BOOKS lists the accounts.");
}
} // namespace Msg

} // namespace EndYear
