#pragma once

#include "foundation/LineStaging.h"
#include "foundation/Outcome.h"
#include "vouchers/LedgerWriter.h"

#include <QString>
#include <QVector>
#include <optional>

// The words of the voucher screen's refusals and confirmations.
namespace VoucherMessages {
inline const QString kNothingEntered = QStringLiteral("No entry is till entered, so data can not be saved");
inline const QString kNotBalanced = QStringLiteral("Debit and Credit amount are not same, please check your entry");
inline const QString kSaved = QStringLiteral("Voucher has saved successfully");
inline const QString kModified = QStringLiteral("Voucher has modified successfully");
inline const QString kDeleted = QStringLiteral("Voucher has deleted successfully");
inline const QString kDuplicate =
    QStringLiteral("Voucher # already exist, duplication is not allowed, please change the voucher #.");
inline const QString kNotFound = QStringLiteral("No voucher # found, please enter correct voucher #");
inline const QString kNumberMissing = QStringLiteral("Please enter voucher #, empty field doesn't show any voucher");
inline const QString kTypeMissing = QStringLiteral("Voucher type is missing, please select voucher type");
inline const QString kChangedElsewhere =
    QStringLiteral("This voucher was changed on another workstation meanwhile; please load it again.");
inline const QString kNoVoucherNo = QStringLiteral("Voucher # is missing, please enter voucher #");
inline const QString kNoParty = QStringLiteral("Party name not found, please enter correct party name");
inline const QString kNoAmount = QStringLiteral("Amount is missing, please enter amount");
inline const QString kBadSide = QStringLiteral("Select DR/CR, nothing accept others");
inline const QString kNoChequeDesc =
    QStringLiteral("Enter cheque description, empty or blank description is not allowed.");
inline const QString kNoChequeNo =
    QStringLiteral("Enter cheque voucher #, empty or blank voucher # is not allowed.");
// Asked when a date lies more than a year after the working day.
QString farDate(const QDate &date);
// Told when the proposed number was taken by another workstation.
QString numberMoved(qint64 from, qint64 to);
} // namespace VoucherMessages

// A post-dated cheque that a voucher line settles (tblPostDatedCheque is
// matched on the line's account, this description and this number).
struct ChequeLink
{
    qint64 voucherNo = 0;
    QString description;
};

// One line of a voucher: one account, one side, one amount.
struct VoucherLine
{
    qint64 srNo = 0;           // staging order; the ledger's SrNo for a line that came from it
    LineState state = LineState::Insert;
    QString invoiceNo;
    QString partyCode;
    QString partyName;
    QString description;
    Money debit;
    Money credit;
    std::optional<ChequeLink> cheque;

    bool isLive() const { return state != LineState::Delete; }
    QString side() const { return debit.isPositive() || credit.isZero() ? QStringLiteral("DR") : QStringLiteral("CR"); }
    Money amount() const { return debit.isPositive() ? debit : credit; }
};

struct Voucher
{
    VoucherKey key;
    QVector<VoucherLine> lines; // in staging order
};

struct VoucherTotals
{
    std::optional<Money> debit;  // nothing when no line is live
    std::optional<Money> credit;
};

// The double-entry rule of a voucher, with no database.
namespace VoucherRules {

// CP and CR get the cash row, on the other side of their lines.
bool addsCashRow(const QString &type);
// BC, BR, BP and JV must balance; other types are not tested.
bool needsBalance(const QString &type);
// The side a line of this type is forced to: "DR" for CP, "CR" for CR,
// nothing for the others.
std::optional<QString> forcedSide(const QString &type);

VoucherTotals totals(const QVector<VoucherLine> &lines);

// The refusal of the balance test, or nothing when the voucher may post.
std::optional<QString> check(const Voucher &voucher);

// The cash row of a CP (credit, the total debit) or CR (debit, the total
// credit) voucher; nothing for other types.
std::optional<LedgerRow> cashRow(const VoucherKey &key, const VoucherTotals &totals);

// The rows to post: the live lines in their order, then the cash row.
QVector<LedgerRow> postingRows(const Voucher &voucher);
LedgerRow rowOfLine(const VoucherKey &key, const VoucherLine &line);

// A cash figure of the screen: the magnitude and its side.
struct CashFigure
{
    Money magnitude;
    QString side; // "DR" / "CR"
    QString text() const { return magnitude.toDisplayString() + QLatin1Char(' ') + side; }
};
CashFigure cashFigure(const std::optional<Money> &balance);
// "CURRENT CASH": for CP the magnitude less the debit total, for CR the
// magnitude plus the credit total; nothing for other types. The side of
// the previous figure is not consulted.
std::optional<Money> currentCash(const QString &type, Money previousMagnitude, const VoucherTotals &totals);


// The line buttons' checks, in the screen's order, without widgets.
enum class LineCommand { Add, Change, Remove };
struct LineEntry
{
    QString voucherNo;      // as typed
    bool accountFound = false;
    QString amount;         // as typed
    QString side;           // "DR" / "CR" as typed
    bool cheque = false;    // POSTED CHEQUE ticked
    QString chequeDesc;
    QString chequeNo;
};
// The first refusal, with the field at fault, or passed(). The side is
// not asked of a removal.
Outcome checkLine(const LineEntry &entry, LineCommand command);
// DR/CR typed into the side field.
Outcome checkSide(const QString &side);
// The question of modify mode: a number, then a type.
Outcome checkVoucherQuestion(const QString &number, const QString &type);
// The window's title for a voucher of this type.
QString titleOfType(const QString &type);
// CP, CR, BP, BR, JV and BC: the types the voucher screen opens to change.
bool opensInVoucherScreen(const QString &type);

} // namespace VoucherRules
