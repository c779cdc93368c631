#pragma once

#include "foundation/Money.h"
#include "foundation/Outcome.h"
#include "vouchers/LedgerWriter.h"

#include <QString>
#include <QVector>

// The words of the closing stock screen.
namespace ClosingStockMessages {
inline const QString kSameAccount =
    QStringLiteral("Purchase A/C and Party A/C can not be same. Please change atleast one A/C.");
inline const QString kVoucherMissing = QStringLiteral("Voucher # is missing, please enter voucher #.");
inline const QString kUpdated = QStringLiteral("Closing stock value has been updated successfully.");
inline const QString kNotStockAccount =
    QStringLiteral("Purchase A/C not found, please select a purchase A/C from the list.");
} // namespace ClosingStockMessages

// A closing stock voucher ("CS") brings a purchase or stock account to the
// value counted at the close: the difference is posted on that account and
// mirrored on an adjustment account, two rows under one RecordNo.
namespace ClosingStock {

inline const QString kType = QStringLiteral("CS");
// The closing stock accounts the screen lists.
inline const QString kFirstClosingCode = QStringLiteral("20-12-001");
inline const QString kLastClosingCode = QStringLiteral("20-12-999");

// The difference between the account's balance and the counted value.
struct Adjustment
{
    Money adjustDR;   // on the stock account
    Money adjustCR;
    // adjustDR - adjustCR without its sign, and the side it stands on.
    Money value() const { return (adjustDR - adjustCR).abs(); }
    QString side() const { return adjustDR >= adjustCR ? QStringLiteral("DR") : QStringLiteral("CR"); }
    bool isZero() const { return adjustDR.isZero() && adjustCR.isZero(); }
};

// `balance` is the stock account's balance (positive DR), `closing` the
// counted value: an account above its count is credited, one below it
// (or standing in credit) is debited.
Adjustment adjustment(Money balance, Money closing);

struct Entry
{
    QString voucherType = kType;
    QString voucherNoText;
    QString dateText;       // "dd/mm/yyyy"
    QString stockCode;      // mskPurchaseCode
    QString stockName;      // cmbPurchaseName
    QString adjustCode;     // mskPartyCode
    QString adjustName;     // cmbPartyName
    QString closingValue;   // as typed
    QString desc = QStringLiteral("CLOSING STOCK");
};

// The checks of the three buttons, in the screen's order; `adjustKnown` is
// the answer of Lookups::partyNameExists for the adjustment account.
Outcome checkEntry(const Entry &entry, bool adjustKnown);

// The voucher's two rows for an adjustment (none when it is zero).
QVector<LedgerRow> rows(const VoucherKey &key, qint64 recordNo, const Entry &entry, const Adjustment &adjustment);

} // namespace ClosingStock
