#pragma once

#include "foundation/Outcome.h"
#include "vouchers/VoucherRules.h"

#include <QDate>
#include <QString>

class SessionConnection;

// A save answers with an Outcome: ok with the confirmation in `message`,
// the number in `number`, the rows written and, when the proposed number
// had been taken meanwhile, a `notice`; or refused with the words and the
// field at fault. A database failure is not an answer: it throws DbError
// after everything the save did has been rolled back (staging included).

// How a new voucher's number is treated when it is already in use.
enum class NumberPolicy {
    Proposed,   // the system's proposal: moves on to the next free number
    Typed,      // the user's own: refused
};

// Validates and posts vouchers, each in one transaction. The user and the
// entry date stamp every row written.
class VoucherPosting
{
public:
    VoucherPosting(SessionConnection &db, const QString &userName, const QDate &today);

    // Posts a voucher given whole (other documents and bulk work).
    Outcome post(Voucher voucher, NumberPolicy policy);

    // Saves the staged voucher as new under `header`: the live lines in
    // staging order, then the cash row of CP and CR. The cheques of the
    // lines become "POSTED". Staging is emptied when, and only when, the
    // voucher is posted.
    Outcome saveNew(const VoucherKey &header, NumberPolicy policy);

    // Writes the staged changes of the voucher that stood under `original`
    // back by state, under `header` (its number and date may have changed):
    // UPDATE rows in place, DELETE rows removed, INSERT rows added, and the
    // cash row of CP and CR rewritten in place with the new total.
    Outcome saveModified(const VoucherKey &original, const VoucherKey &header);

    // Deletes the voucher that stood under `original` (the cash row with
    // it), then sweeps zero rows of every type but JV from the ledger.
    // The cheques it cleared or bounced go back a step. Empties staging.
    Outcome deleteVoucher(const VoucherKey &original);

private:
    Outcome postLocked(Voucher &voucher, NumberPolicy policy);
    // The cheques the lines name follow the voucher (PostDatedCheques).
    void settleCheques(const VoucherKey &key, const QVector<VoucherLine> &lines);

    SessionConnection &m_db;
    QString m_user;
    QDate m_today;
};
