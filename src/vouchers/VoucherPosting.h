#pragma once

#include "vouchers/VoucherRules.h"

#include <QDate>
#include <QString>

class SessionConnection;

// The answer of a save: posted, or refused with the words to show. A
// database failure is not an answer: it throws DbError after everything
// the save did has been rolled back (staging included).
struct PostingOutcome
{
    bool posted = false;
    QString message;            // the refusal, or the confirmation
    QString notice;             // besides the confirmation: the number moved
    qint64 voucherNo = 0;       // the number the voucher stands under
    int rowsWritten = 0;
    enum class Fault { None, Balance, Number, Missing, Changed, Rule } fault = Fault::None;
};

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
    PostingOutcome post(Voucher voucher, NumberPolicy policy);

    // Saves the staged voucher as new under `header`: the live lines in
    // staging order, then the cash row of CP and CR. The cheques of the
    // lines become "POSTED". Staging is emptied when, and only when, the
    // voucher is posted.
    PostingOutcome saveNew(const VoucherKey &header, NumberPolicy policy);

    // Writes the staged changes of the voucher that stood under `original`
    // back by state, under `header` (its number and date may have changed):
    // UPDATE rows in place, DELETE rows removed, INSERT rows added, and the
    // cash row of CP and CR rewritten in place with the new total.
    PostingOutcome saveModified(const VoucherKey &original, const VoucherKey &header);

    // Deletes the voucher that stood under `original` (the cash row with
    // it), then sweeps zero rows of every type but JV from the ledger.
    // Empties staging.
    PostingOutcome deleteVoucher(const VoucherKey &original);

private:
    PostingOutcome postLocked(Voucher &voucher, NumberPolicy policy);
    void settleCheques(const QVector<VoucherLine> &lines);

    SessionConnection &m_db;
    QString m_user;
    QDate m_today;
};
