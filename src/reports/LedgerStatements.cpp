#include "reports/LedgerStatements.h"

#include "foundation/Lookups.h"
#include "foundation/SessionConnection.h"

namespace LedgerStatements {

using Reports::ReportCondition;
using Reports::ReportRequest;

std::optional<QDate> firstOpenDate(SessionConnection &db)
{
    const auto closing = Lookups::closingDate(db);
    if (!closing || !closing->isValid())
        return std::nullopt;
    return closing->addDays(1);
}

Period Period::of(const QDate &from, const QDate &to)
{
    return {from, to, from.toString(QStringLiteral("dd/MM/yyyy")), to.toString(QStringLiteral("dd/MM/yyyy"))};
}

ReportRequest request(const QString &design, const QString &title, const QString &heading)
{
    ReportRequest r;
    r.design = design;
    r.title = title;
    r.heading = heading;
    return r;
}

void setPeriod(ReportRequest &r, const Period &p)
{
    r.from = p.from;
    r.to = p.to;
    r.fromText = p.fromText;
    r.toText = p.toText;
}

void codeRange(ReportRequest &r, const QString &from, const QString &to)
{
    r.conditions << ReportCondition::atLeast(QStringLiteral("PartyCode"), from)
                 << ReportCondition::atMost(QStringLiteral("PartyCode"), to);
}

namespace {

void partyRange(ReportRequest &r)
{
    codeRange(r, kPartiesFrom, kPartiesTo);
}

void balanceSheetRange(ReportRequest &r)
{
    codeRange(r, kBalanceSheetFrom, kBalanceSheetTo);
}

} // namespace

ReportRequest ledger(LedgerKind kind, const QString &partyCode, const QString &partyName, const Period &p)
{
    static const char *const designs[] = {"crLedgerofAccount", "crLedgerOfAccountVW", "crLedgerWithSaleTax"};
    ReportRequest r = request(QString::fromLatin1(designs[static_cast<int>(kind)]),
                              QStringLiteral("LEDGER %1").arg(partyName));
    setPeriod(r, p);
    r.conditions << ReportCondition::equal(QStringLiteral("PartyCode"), partyCode.trimmed());
    return r;
}

ReportRequest agingReport(const QString &partyName, const Period &p)
{
    ReportRequest r = request(QStringLiteral("crAgingReport"), QStringLiteral("AGING REPORT %1").arg(partyName),
                              QStringLiteral("AGING REPORT %1").arg(partyName));
    setPeriod(r, p);
    return r;
}

ReportRequest ageingReportPeriod(const QString &partyName, const Period &p)
{
    ReportRequest r = request(QStringLiteral("crAgeingReportPeriod"), QStringLiteral("AGEING REPORT"));
    setPeriod(r, p);
    if (!partyName.trimmed().isEmpty())
        r.conditions << ReportCondition::equal(QStringLiteral("PartyName"), partyName.trimmed());
    return r;
}

ReportRequest trialBalance(TrialBalanceKind kind, const Period &p)
{
    switch (kind) {
    case TrialBalanceKind::WithoutContact:
        return request(QStringLiteral("crTrialBalanceWithoutContact"), QStringLiteral("TRIAL BALANCE UPTO DATE"));
    case TrialBalanceKind::WithoutClosing:
        return request(QStringLiteral("crTrialBalanceUptoDate"), QString(), QStringLiteral("TRIAL BALANCE"));
    case TrialBalanceKind::BetweenTwoDates:
        break;
    }
    ReportRequest r = request(QStringLiteral("crTrialBalance"), QStringLiteral("TRIAL BALANCE"));
    setPeriod(r, p);
    return r;
}

ReportRequest balanceSheetUpto(const QDate &date, const QString &dateText)
{
    ReportRequest r = request(QStringLiteral("crBalanceSheetSingleDate"), QStringLiteral("BALANCE SHEET"),
                              QStringLiteral("BALANCE SHEET UPTO %1").arg(dateText));
    r.to = date;
    r.toText = dateText;
    balanceSheetRange(r);
    return r;
}

ReportRequest balanceSheetAll()
{
    ReportRequest r = request(QStringLiteral("crBalanceSheet"), QStringLiteral("BALANCE SHEET"),
                              QStringLiteral("BALANCE SHEET"));
    // All postings, read through this session's own period: nothing is
    // written for the other workstations.
    r.from = QDate(1900, 1, 1);
    r.to = QDate(9999, 12, 31);
    r.writePeriodRow = false;
    balanceSheetRange(r);
    return r;
}

ReportRequest profitAndLoss(const Period &p)
{
    ReportRequest r = request(QStringLiteral("crProfitAndLoss"), QStringLiteral("PROFIT AND LOSS"));
    setPeriod(r, p);
    return r;
}

ReportRequest allPayable()
{
    ReportRequest r = request(QStringLiteral("crTrialBalanceUptoDate"), QStringLiteral("ALL PAYABLE UPTO DATE"),
                              QStringLiteral("ALL PAYABLE UPTO DATE"));
    partyRange(r);
    r.conditions << ReportCondition::less(QStringLiteral("PartyBalance"), Money().toVariant());
    return r;
}

ReportRequest allReceivable()
{
    ReportRequest r = request(QStringLiteral("crTrialBalanceUptoDate"), QStringLiteral("ALL RECEIVABLE UPTO DATE"),
                              QStringLiteral("ALL RECEIVABLE UPTO DATE"));
    partyRange(r);
    r.conditions << ReportCondition::greater(QStringLiteral("PartyBalance"), Money().toVariant());
    return r;
}

ReportRequest creditList(const Period &p)
{
    ReportRequest r = request(QStringLiteral("crCreditList"), QStringLiteral("CREDIT LIST"));
    setPeriod(r, p);
    return r;
}

ReportRequest debitList(const Period &p)
{
    ReportRequest r = request(QStringLiteral("crDebitList"), QStringLiteral("DEBIT LIST"));
    setPeriod(r, p);
    return r;
}

} // namespace LedgerStatements
