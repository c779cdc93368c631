#pragma once

#include "reports/ReportFrame.h"

#include <QDate>
#include <QString>
#include <optional>

class SessionConnection;

// The ledger, ageing and financial statements as the report screens ask
// for them: which design, which title and heading, which period and which
// account range. The figures themselves lie in the views (Ledger,
// TrialBalance, BalanceSheet, ProfitAndLoss, ...); these requests only say
// what to read.
namespace LedgerStatements {

// The code ranges of the statements.
inline const QString kBalanceSheetFrom = QStringLiteral("10-00-000");
inline const QString kBalanceSheetTo = QStringLiteral("20-01-999");
inline const QString kPartiesFrom = QStringLiteral("14-10-000");
inline const QString kPartiesTo = QStringLiteral("18-99-999");

// The first day after the closing date: where a report period starts by
// default. Nothing when the year has no closing date.
std::optional<QDate> firstOpenDate(SessionConnection &db);

// A period as the screen's two date fields hold it: the dates, and the
// texts as typed for the period line.
struct Period
{
    QDate from;
    QDate to;
    QString fromText;
    QString toText;

    static Period of(const QDate &from, const QDate &to);
};

// The pieces every statement request is made of: the design with the
// viewer's title and the printed heading (empty: the title), the period as
// typed, and a range of account codes.
Reports::ReportRequest request(const QString &design, const QString &title, const QString &heading = QString());
void setPeriod(Reports::ReportRequest &r, const Period &p);
void codeRange(Reports::ReportRequest &r, const QString &from, const QString &to);

// The three reports of one account and the period ageing.
enum class LedgerKind { Ledger, LedgerVoucherWise, LedgerWithSaleTax };
Reports::ReportRequest ledger(LedgerKind kind, const QString &partyCode, const QString &partyName, const Period &p);
// The ageing of one party; run PartyAgeing::runForParty first, with the
// session's report period set to `p`.
Reports::ReportRequest agingReport(const QString &partyName, const Period &p);
// All parties when `partyName` is empty.
Reports::ReportRequest ageingReportPeriod(const QString &partyName, const Period &p);

enum class TrialBalanceKind { BetweenTwoDates, WithoutClosing, WithoutContact };
Reports::ReportRequest trialBalance(TrialBalanceKind kind, const Period &p);

// The balance sheet up to a date (from 01/01/1900), and of all postings.
Reports::ReportRequest balanceSheetUpto(const QDate &date, const QString &dateText);
Reports::ReportRequest balanceSheetAll();

Reports::ReportRequest profitAndLoss(const Period &p);
// Parties with a credit (payable) or debit (receivable) balance: up to
// date, or of a period.
Reports::ReportRequest allPayable();
Reports::ReportRequest allReceivable();
Reports::ReportRequest creditList(const Period &p);
Reports::ReportRequest debitList(const Period &p);

} // namespace LedgerStatements
