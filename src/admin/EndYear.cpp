#include "admin/EndYear.h"

#include "accounts/AccountRules.h"
#include "accounts/OpeningBalance.h"
#include "admin/EditLog.h"
#include "foundation/DateRules.h"
#include "foundation/Lookups.h"
#include "foundation/SessionConnection.h"
#include "vouchers/LedgerCheck.h"
#include "vouchers/LedgerWriter.h"

namespace EndYear {

namespace {

QString done(const char *what)
{
    return QString::fromLatin1(what) + QStringLiteral(" end year processing has been completed sucessfully.");
}

// The income and expense accounts whose result goes to 20-01-001.
const QString kResultFrom = QStringLiteral("20-10-000");

struct Opening
{
    qint64 srNo = 0;
    QString name;
    QDate date;
    Money balance;
};

// The opening rows of the year by account, each account's in SrNo order.
QMap<QString, QVector<Opening>> openingRows(SessionConnection &db)
{
    QMap<QString, QVector<Opening>> out;
    for (const Row &r : OpeningBalance::allRows(db))
        out[r.text(1)].append({r.integer(0), r.text(2), r.date(3), r.moneyOrZero(QStringLiteral("PartyBalance"))});
    return out;
}

// The opening row of `code` holding `amount` on `day`: the account's
// first dated opening row takes it and its other dated ones go; an
// account without one gets a new row (added to `inserts`). Opening rows
// without a date are left as they stand.
void writeOpening(LedgerWriter &writer, const QString &code, const QString &name, const QVector<Opening> &rows,
                  Money amount, const QDate &day, QVector<LedgerRow> &inserts)
{
    LedgerRow row = amount.isNegative()
        ? LedgerRow::credit({QStringLiteral("JV"), 0, day}, code, name, -amount, Accounts::Msg::openingDesc())
        : LedgerRow::debit({QStringLiteral("JV"), 0, day}, code, name, amount, Accounts::Msg::openingDesc());
    bool written = false;
    for (const Opening &o : rows) {
        if (!o.date.isValid())
            continue;
        const VoucherKey guard{QStringLiteral("JV"), 0, o.date};
        if (!written) {
            if (row.partyName.isEmpty())
                row.partyName = o.name;
            writer.update(o.srNo, guard, row);
            written = true;
        } else {
            writer.remove(o.srNo, guard);
        }
    }
    if (!written)
        inserts.append(row);
}

// The amounts of the dated opening rows standing on or after `from`: they
// are not in the balance before the period but belong to the one opening
// row the step leaves.
Money laterOpenings(const QVector<Opening> &rows, const QDate &from)
{
    Money sum;
    for (const Opening &o : rows)
        if (o.date.isValid() && o.date >= from)
            sum += o.balance;
    return sum;
}

QString nameOf(SessionConnection &db, const QMap<QString, QString> &chart, const QString &code,
               const QVector<Opening> &rows)
{
    if (chart.contains(code))
        return chart.value(code);
    if (!rows.isEmpty())
        return rows.first().name;
    // An account no longer in the chart keeps the name of its last row.
    return db.scalar(QStringLiteral("SELECT PartyName FROM tblPartyBalance WHERE PartyCode = ? ORDER BY SrNo DESC"),
                     {code})
        .toString();
}

void report(const Progress &progress, int value, int maximum)
{
    if (progress)
        progress(value, maximum);
}

Outcome accountsStep(SessionConnection &db, const Run &run, const Progress &progress)
{
    const QMap<QString, Money> before = balancesBefore(db, run.from);
    const QMap<QString, QVector<Opening>> openings = openingRows(db);
    const QMap<QString, QString> chart = accountNames(db);
    const QDate day = run.from.addDays(-1);
    const int maximum = int(before.size()) + 1;
    report(progress, 0, maximum);

    LedgerWriter writer(db, run.user, run.today);
    writer.beginBatch();
    QVector<LedgerRow> inserts;
    int done = 0;
    for (auto it = before.cbegin(); it != before.cend(); ++it) {
        const QVector<Opening> rows = openings.value(it.key());
        writeOpening(writer, it.key(), nameOf(db, chart, it.key(), rows), rows,
                     it.value() + laterOpenings(rows, run.from), day, inserts);
        report(progress, ++done, maximum);
    }
    writer.insertMany(inserts);
    // Most of a large ledger going (a new year) is removed the quick way.
    const qint64 total = db.scalar(QStringLiteral("SELECT COALESCE(SUM(RowCount), 0) FROM tblAccountBalance")).toLongLong();
    const qint64 kept = db.scalar(QStringLiteral("SELECT COALESCE(SUM(RowCount), 0) FROM tblAccountMonthBalance "
                                                 "WHERE YearMonth >= ? AND YearMonth <= ?"),
                                  {run.from.year() * 100 + run.from.month(), run.to.year() * 100 + run.to.month()})
                            .toLongLong();
    writer.removeWhere(QStringLiteral("(VDate < ? OR VDate > ?) AND NOT ") + OpeningBalance::rowCondition(),
                       {run.from, run.to}, kept < total / 2);
    writer.endBatch();
    report(progress, maximum, maximum);
    return Outcome::success(QStringLiteral("Accounts end year processing has been completed sucessfully."));
}

Outcome profitAndLossStep(SessionConnection &db, const Run &run, const Progress &progress)
{
    const QString pl = profitAndLossCode();
    if (!Lookups::accountExists(db, pl))
        return Outcome::refusal(Msg::profitAccountMissing());
    // Run alone it would cut the vouchers before the period in half: their
    // income and expense rows would go and their other rows stay.
    if (!db.scalar(QStringLiteral("SELECT 1 FROM tblPartyBalance WHERE VDate < ? AND NOT ")
                       + OpeningBalance::rowCondition() + QStringLiteral(" LIMIT 1"),
                   {run.from})
             .isNull())
        return Outcome::refusal(Msg::entriesBeforePeriod(run.from));
    report(progress, 0, 100);
    const QMap<QString, Money> before = balancesBefore(db, run.from);
    const QMap<QString, QVector<Opening>> openings = openingRows(db);
    const QVector<Opening> plRows = openings.value(pl);

    // Each sum is rounded to whole money on its own, as it always was.
    Money result;
    for (auto it = before.lowerBound(kResultFrom); it != before.cend(); ++it)
        result += it.value();
    const Money carried = (before.value(pl) + laterOpenings(plRows, run.from)).roundedToUnits()
        + result.roundedToUnits();
    report(progress, 30, 100);

    // Only opening rows stand before the period: the account's one opening
    // row takes the sum.
    LedgerWriter writer(db, run.user, run.today);
    writer.beginBatch();
    QVector<LedgerRow> inserts;
    writeOpening(writer, pl, Lookups::nameFromCode(db, pl).value_or(QString()), plRows, carried, run.from.addDays(-1),
                 inserts);
    writer.insertMany(inserts);
    report(progress, 60, 100);

    // The income and expense accounts start the period at nothing: their
    // opening rows before it are set to 0.
    for (auto it = openings.lowerBound(kResultFrom); it != openings.cend(); ++it) {
        for (const Opening &o : it.value()) {
            if (!o.date.isValid() || o.date >= run.from || o.balance.isZero())
                continue;
            writer.update(o.srNo, {QStringLiteral("JV"), 0, o.date},
                          LedgerRow::debit({QStringLiteral("JV"), 0, o.date}, it.key(), o.name, Money(),
                                           Accounts::Msg::openingDesc()));
        }
    }
    writer.endBatch();
    report(progress, 100, 100);
    return Outcome::success(QStringLiteral("Profit and Loass end year processing has been completed sucessfully."));
}

Outcome tableStep(SessionConnection &db, const StepInfo &step, const Run &run, const Progress &progress)
{
    report(progress, 0, 100);
    // The table and column are the step's own constants; the dates are bound.
    db.execute(QStringLiteral("DELETE FROM %1 WHERE %2 < ? OR %2 > ?").arg(step.table, step.dateColumn),
               {run.from, run.to});
    report(progress, 100, 100);
    return Outcome::success(step.message);
}

} // namespace

const QVector<StepInfo> &steps()
{
    static const QVector<StepInfo> all = {
        {Step::Accounts, QStringLiteral("cmdAccounts"), QStringLiteral("ACCOUNT"), QString(), QString(),
         QStringLiteral("Accounts end year processing has been completed sucessfully.")},
        {Step::ProfitAndLoss, QStringLiteral("cmdProfitAndLoss"), QStringLiteral("PROFIT/LOSS"), QString(), QString(),
         QStringLiteral("Profit and Loass end year processing has been completed sucessfully.")},
        {Step::Sale, QStringLiteral("cmdSale"), QStringLiteral("INVOICE"), QStringLiteral("tblInvoice"),
         QStringLiteral("InvoiceDate"), done("Sale & Invoice")},
        {Step::Stock, QStringLiteral("cmdStock"), QStringLiteral("STOCK"), QStringLiteral("tblStock"),
         QStringLiteral("VDate"), done("Stock")},
        {Step::EmployeeStock, QStringLiteral("cmdEmployeeStock"), QStringLiteral("EMP.STOCK"),
         QStringLiteral("tblEmployeeStock"), QStringLiteral("EntryDate"), done("Employee Stock")},
        {Step::EmployeeSalary, QStringLiteral("cmdEmployeeSalary"), QStringLiteral("EMP.SALARY"),
         QStringLiteral("tblEmployeeSalary"), QStringLiteral("VDate"), done("Employee Salary")},
        {Step::PostDatedCheque, QStringLiteral("cmdPostDateCheque"), QStringLiteral("PDC"),
         QStringLiteral("tblPostDatedCheque"), QStringLiteral("VDate"), done("Post Dated Cheque")},
        {Step::DeliveryChallan, QStringLiteral("cmdDeliveryChallan"), QStringLiteral("CHALLAN"),
         QStringLiteral("tblDeliveryChallan"), QStringLiteral("VDate"), done("Delivery Challan")},
        {Step::PurchaseOrder, QStringLiteral("cmdPurchaseOrder"), QStringLiteral("P.ORDER"),
         QStringLiteral("tblPurchaseOrder"), QStringLiteral("VDate"), done("Purchase Order")},
        {Step::PurchaseStock, QStringLiteral("cmdPurchaseStock"), QStringLiteral("P.STOCK"),
         QStringLiteral("tblPurchaseStock"), QStringLiteral("VDate"), done("Purchase Stock")},
        {Step::OtherServices, QStringLiteral("cmdOtherServices"), QStringLiteral("O.SERVICES"),
         QStringLiteral("tblOtherServices"), QStringLiteral("ServiceDate"), done("Other Services")},
    };
    return all;
}

const StepInfo &info(Step step)
{
    for (const StepInfo &s : steps())
        if (s.step == step)
            return s;
    return steps().first();
}

Outcome checkPeriod(const QDate &from, const QDate &to)
{
    if (!from.isValid())
        return Outcome::refusal(DateRules::dateMissingMessage(), QStringLiteral("mskDateFrom"));
    if (!to.isValid())
        return Outcome::refusal(DateRules::dateMissingMessage(), QStringLiteral("mskDateTo"));
    if (to < from)
        return Outcome::refusal(DateRules::wrongDateMessage(), QStringLiteral("mskDateTo"));
    return Outcome::passed();
}

QString question(Step step, const QDate &from, const QDate &to)
{
    const StepInfo &s = info(step);
    const QString period = QStringLiteral("%1 to %2").arg(from.toString(QStringLiteral("dd/MM/yyyy")),
                                                             to.toString(QStringLiteral("dd/MM/yyyy")));
    QString what;
    if (step == Step::Accounts)
        what = QStringLiteral("The balance of every account before %1 will be carried into its opening balance, "
                              "and every entry outside %2 will be deleted.")
                   .arg(from.toString(QStringLiteral("dd/MM/yyyy")), period);
    else if (step == Step::ProfitAndLoss)
        what = QStringLiteral("The profit and loss before %1 will be carried to 20-01-001, and the income and "
                              "expense accounts will start from nothing.")
                   .arg(from.toString(QStringLiteral("dd/MM/yyyy")));
    else
        what = QStringLiteral("Every %1 entry outside %2 will be deleted.").arg(s.caption, period);
    return what + QStringLiteral(" This can not be undone. Are you sure?");
}

QMap<QString, QString> accountNames(SessionConnection &db)
{
    QMap<QString, QString> names;
    for (const Row &r : db.select(QStringLiteral("SELECT RTRIM(PartyCode), PartyName FROM tblPartyInfo")))
        names.insert(r.text(0), r.text(1));
    return names;
}

QMap<QString, Money> ledgerBalancesBefore(SessionConnection &db, const QDate &date)
{
    QMap<QString, Money> out;
    for (const Row &r : db.select(QStringLiteral("SELECT RTRIM(PartyCode), SUM(CAST(ROUND(PartyBalance * 100) AS BIGINT)) "
                                                 "FROM tblPartyBalance WHERE VDate < ? AND PartyCode IS NOT NULL "
                                                 "GROUP BY RTRIM(PartyCode)"),
                                  {date}))
        out.insert(r.text(0), Money::fromCents(r.integer(1)));
    return out;
}

QMap<QString, Money> balancesBefore(SessionConnection &db, const QDate &date)
{
    QMap<QString, qint64> cents, rows;
    const int month = date.year() * 100 + date.month();
    for (const Row &r : db.select(QStringLiteral("SELECT RTRIM(PartyCode), SUM(BalanceCents), SUM(RowCount) "
                                                 "FROM tblAccountMonthBalance WHERE YearMonth > 0 AND YearMonth < ? "
                                                 "GROUP BY RTRIM(PartyCode)"),
                                  {month})) {
        cents[r.text(0)] += r.integer(1);
        rows[r.text(0)] += r.integer(2);
    }
    const QDate first(date.year(), date.month(), 1);
    if (first < date) {
        for (const Row &r : db.select(
                 QStringLiteral("SELECT RTRIM(PartyCode), SUM(CAST(ROUND(PartyBalance * 100) AS BIGINT)), COUNT(*) "
                                "FROM tblPartyBalance WHERE VDate >= ? AND VDate < ? AND PartyCode IS NOT NULL "
                                "GROUP BY RTRIM(PartyCode)"),
                 {first, date})) {
            cents[r.text(0)] += r.integer(1);
            rows[r.text(0)] += r.integer(2);
        }
    }
    QMap<QString, Money> out;
    for (auto it = rows.cbegin(); it != rows.cend(); ++it)
        if (it.value() > 0)
            out.insert(it.key(), Money::fromCents(cents.value(it.key())));
    return out;
}

Outcome runStep(SessionConnection &db, Step step, const Run &run, const Progress &progress)
{
    const Outcome period = checkPeriod(run.from, run.to);
    if (!period)
        return period;
    Transaction tx(db);
    // The ledger steps read the balances before the period and then remove
    // the rows they hold: on a server no other workstation may add a row in
    // between, or it would go without being carried. The embedded store's
    // write lock does the same.
    if ((step == Step::Accounts || step == Step::ProfitAndLoss) && db.isPostgres())
        db.execute(QStringLiteral("LOCK TABLE tblPartyBalance IN SHARE ROW EXCLUSIVE MODE"));
    // A step is logged as one step, not row by row.
    EditLog::BulkScope quiet(db);
    const StepInfo &s = info(step);
    // The ledger steps carry what the kept balances say: they must be the
    // sums of the rows, or the openings written would be wrong.
    if ((step == Step::Accounts || step == Step::ProfitAndLoss) && !LedgerCheck::keptBalancesAgree(db))
        return Outcome::refusal(Msg::keptBalancesDiffer());
    Outcome out;
    if (step == Step::Accounts)
        out = accountsStep(db, run, progress);
    else if (step == Step::ProfitAndLoss)
        out = profitAndLossStep(db, run, progress);
    else
        out = tableStep(db, s, run, progress);
    if (!out)
        return out;
    EditLog::logStep(db, QStringLiteral("END YEAR"), std::nullopt, run.from, s.caption,
                     QStringLiteral("END YEAR ") + s.caption,
                     QStringLiteral("PERIOD %1 TO %2").arg(run.from.toString(QStringLiteral("dd/MM/yyyy")),
                                                           run.to.toString(QStringLiteral("dd/MM/yyyy"))),
                     out.message);
    tx.commit();
    return out;
}

} // namespace EndYear
