#pragma once

#include "foundation/Money.h"
#include "foundation/Outcome.h"
#include "vouchers/Ledger.h"
#include "vouchers/VoucherRules.h"

#include <QDate>
#include <QString>
#include <QVector>
#include <optional>

class SessionConnection;

// The words of the cheque screens.
namespace ChequeMessages {
inline const QString kSaved = QStringLiteral("Post dated cheque has saved successfully.");
inline const QString kModified = QStringLiteral("Post dated cheque has modified successfully.");
inline const QString kDeleted = QStringLiteral("Post dated cheque has deleted successfully.");
inline const QString kNotFound = QStringLiteral("Voucher # not found, please enter another.");
inline const QString kNothingDeleted = QStringLiteral("Voucher # not found, nothing has deleted.");
inline const QString kNoVoucherNo = QStringLiteral("Voucher # is missing, please enter voucher #.");
inline const QString kDuplicateNo =
    QStringLiteral("Voucher # already exist, duplication is not allowed, please change the voucher #.");
inline const QString kDuplicateCheque =
    QStringLiteral("Cheque # already exist for this bank, duplication is not allowed, please change the cheque #.");
inline const QString kBadStatus = QStringLiteral("Status is not valid, please select status");
inline const QString kBadKind = QStringLiteral("Cheque type is not valid, please select RECEIVED or ISSUED");
inline const QString kNotOpen = QStringLiteral("This cheque is not post dated any more, it can not be deposited.");
inline const QString kNotPosted = QStringLiteral("Only a posted cheque can bounce, please deposit it first.");
inline const QString kAskBounce = QStringLiteral("Are you sure you want to bounce this cheque");
inline const QString kBounced = QStringLiteral("Cheque has bounced successfully.");
} // namespace ChequeMessages

// The statuses of a cheque and its two kinds.
namespace ChequeStatus {
inline const QString kPostDated = QStringLiteral("POST DATED");
inline const QString kPosted = QStringLiteral("POSTED");
inline const QString kBounced = QStringLiteral("BOUNCED");
inline const QString kReceived = QStringLiteral("RECEIVED");
inline const QString kIssued = QStringLiteral("ISSUED");
} // namespace ChequeStatus

// One post-dated cheque (tblPostDatedCheque): a memorandum that writes no
// ledger row of its own. Its status moves with the vouchers that clear it
// (POSTED) and bounce it (BOUNCED), inside their saves.
struct PostDatedChequeEntry
{
    qint64 voucherNo = 0;
    QString partyCode;
    QString partyName;
    QDate vDate;        // received (or issued)
    QDate chequeDate;
    QString chequeNo;   // the cheque's own number at its bank
    QString description;
    Money amount;
    QString bankCode;
    QString bankName;
    QString careOf;
    QString status = ChequeStatus::kPostDated;
    QString kind = ChequeStatus::kReceived;
};

class PostDatedCheques
{
public:
    PostDatedCheques(SessionConnection &db, const QString &userName, const QDate &today);

    // Max(VoucherNo) + 1 over the whole table.
    qint64 nextNumber();
    std::optional<PostDatedChequeEntry> find(qint64 voucherNo);

    // The checks of the save and the modify, in the screens' order: the
    // party, the receiving date, the cheque date (both after the closing
    // date), the bank, the type and the status.
    Outcome check(const PostDatedChequeEntry &cheque);

    // Saves a new cheque "POST DATED". A proposed number taken meanwhile
    // moves on to the next free one (`notice` says so); the cheque number
    // must be new at its bank.
    Outcome save(PostDatedChequeEntry cheque);
    // Rewrites the cheque of that number (its status as given).
    Outcome modify(const PostDatedChequeEntry &cheque);
    // Deletes the cheque of that number; says so when there was none.
    Outcome remove(qint64 voucherNo);

    // The bank voucher that clears a "POST DATED" cheque, ready to save on
    // the voucher screen: BR for a cheque received (bank DR, party CR), BP
    // for one issued (party DR, bank CR), dated `date`. The party's line
    // carries the cheque, so the save makes it "POSTED".
    Outcome clearingVoucher(qint64 voucherNo, const QDate &date, Voucher *voucher);
    // Writes the BC voucher of a "POSTED" cheque (the clearing reversed)
    // and makes it "BOUNCED", in one transaction.
    Outcome bounce(qint64 voucherNo, const QDate &date);

    // --- What a voucher save does to the cheques it names (the posting
    // calls these inside its own transaction). ---
    // A live line of voucher `key` settles the cheque: POSTED (BOUNCED for
    // a BC voucher), with the voucher remembered.
    static void settle(SessionConnection &db, const VoucherKey &key, const QString &partyCode, const ChequeLink &c);
    // A removed line gives it back: POST DATED (POSTED after a BC line).
    static void giveBack(SessionConnection &db, const VoucherKey &key, const QString &partyCode,
                         const ChequeLink &c);
    // The voucher moved to another number or date.
    static void voucherMoved(SessionConnection &db, const VoucherKey &from, const VoucherKey &to);
    // The voucher was deleted: its cheques go back a step.
    static void voucherRemoved(SessionConnection &db, const VoucherKey &key);

private:
    Outcome checkNumbers(const PostDatedChequeEntry &cheque, bool isNew);

    SessionConnection &m_db;
    QString m_user;
    QDate m_today;
};

// The due list: open and cleared cheques by cheque date.
struct ChequeDueLine
{
    PostDatedChequeEntry cheque;
    qint64 daysLeft = 0;   // negative when overdue
    QString dueText() const;
};
struct BankTotal
{
    QString bankName;
    Money total;
    int count = 0;
};
namespace ChequeDueList {
// Cheques "POST DATED" and "POSTED" (those may still bounce), by cheque
// date then number; `postedToo` false leaves the posted ones out.
QVector<ChequeDueLine> lines(SessionConnection &db, const QDate &today, bool postedToo = true);
// The "POST DATED" amounts a bank, by bank name.
QVector<BankTotal> bankTotals(const QVector<ChequeDueLine> &lines);
} // namespace ChequeDueList
