#pragma once

#include "foundation/Money.h"

#include <QDate>
#include <QString>
#include <QVector>

class SessionConnection;

// The ageing of one party: which of its sale invoices its balance still
// stands for.
//
// The party's balance at the end of the report period decides whether the
// run happens at all: a party that owes nothing, or is in credit, has an
// empty ageing. Otherwise all its postings of the year, in date order, are
// run into a whole-number balance, rounded half to even at each step; that
// balance is laid on the sale invoices newest first (by invoice number);
// the oldest invoice reached keeps only the part the balance still covers,
// and the invoices older than it count as paid.
//
// The rows that stay are written to this session's staging table
// (tblPartyBalanceEmpty, marked "AGEING", read through the views
// PartyBalanceEmpty and AgingReport); voucher lines being typed in the same
// table are left alone. Nothing is written to the ledger.
namespace PartyAgeing {

// The marker of the ageing's work rows in the staging table.
inline constexpr const char *kMarker = "AGEING";

// One posting of the party, as the run reads it.
struct Posting
{
    qint64 srNo = 0;
    QDate vDate;
    QString voucherType;
    qint64 voucherNo = 0;
    QString invoiceNo;
    QString partyName;
    Money partyDR;
    Money partyCR;
};

// One invoice row that stays, with the running balance after it and the
// part of it that is outstanding (TotalDr).
struct Line
{
    Posting posting;
    Money runningBalance;
    Money outstanding;
};

struct Result
{
    bool ran = false;             // the period's balance was above 0
    Money periodBalance;          // the balance the decision was taken on
    Money runningBalance;         // the whole-number balance of all the year's postings
    qint64 lastVoucherNo = 0;     // the oldest invoice reached, 0 when none
    Money partAmount;             // what of it is outstanding
    QVector<Line> lines;          // newest first: VoucherNo, then SrNo, descending
};

// The run on postings already read, in date order (no database).
Result compute(const QVector<Posting> &postingsByDate);

// The whole run for one party: reads its balance up to the end of the
// session's report period and its postings, computes, and replaces this
// session's ageing rows with the result, in one transaction. Throws DbError
// (nothing changed) when a statement fails.
Result runForParty(SessionConnection &db, const QString &partyCode);

// Removes this session's ageing rows (once the report has read them), so
// that a voucher typed afterwards finds the staging table as it left it.
void clearWorkRows(SessionConnection &db);

} // namespace PartyAgeing
