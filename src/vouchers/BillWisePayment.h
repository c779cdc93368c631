#pragma once

#include "foundation/Money.h"
#include "foundation/Outcome.h"
#include "reports/LedgerStatements.h"

#include <QDate>
#include <QString>
#include <QVector>

class SessionConnection;

// Bill-wise payment: a customer's bills marked paid ("DONE") or pending,
// bill by bill. A bill is the lines of one invoice (title and number) that
// share a terms of sale; its mark is the Status of those lines in
// tblInvoice. No ledger row is touched: the money itself comes in by the
// ordinary receipt vouchers.
namespace BillWiseMessages {
inline const QString kChangedElsewhere
    = QStringLiteral("This bill has been changed on another workstation, please search again");
} // namespace BillWiseMessages

// Where a bill stands: the invoice's title and number, the terms of sale
// of its lines, and the customer it was billed to.
struct BillKey
{
    QString titleName;
    qint64 invoiceNo = 0;
    QString termsOfSale;
    QString partyCode;

    bool operator==(const BillKey &o) const;
};

// One line of the two lists: a bill and its value with tax.
struct BillLine
{
    BillKey key;
    QDate invoiceDate;
    QString partyName;
    Money amount;
    bool done = false;
};

namespace BillWisePayment {

enum class Mark { Pending, Done };

// The Status word of a mark: "" for pending, "DONE" for paid.
QString statusWord(Mark mark);

// The bills of a party invoiced from `from` to `to` (both included) that
// stand under `mark`, by invoice number. No party code, or no period,
// gives no bills.
QVector<BillLine> bills(SessionConnection &db, const QString &partyCode, const QDate &from, const QDate &to, Mark mark);

// Marks the bills, all of them or none, in one transaction. A bill whose
// lines are gone (the invoice deleted, or moved to another party, title or
// terms on another workstation meanwhile) refuses the whole mark; a bill
// that already stands under the mark counts as marked. `rowsWritten` is
// the number of invoice lines changed. A database failure throws DbError
// with everything rolled back.
Outcome mark(SessionConnection &db, const QVector<BillKey> &bills, Mark mark);

// The two printed lists of a party's bills in a period: every bill with
// its mark, or the pending ones.
enum class Report { BillWise, Pending };
Reports::ReportRequest report(Report kind, const QString &partyName, const LedgerStatements::Period &period);

} // namespace BillWisePayment
