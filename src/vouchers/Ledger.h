#pragma once

#include "foundation/Lookups.h"
#include "foundation/Money.h"

#include <QDate>
#include <QString>
#include <optional>

class SessionConnection;

// Where a voucher stands in the ledger: its type, number and date. The
// ledger has no header table; these three columns are the voucher.
struct VoucherKey
{
    QString type;
    qint64 number = 0;
    QDate date;

    bool operator==(const VoucherKey &o) const { return type == o.type && number == o.number && date == o.date; }
    bool operator!=(const VoucherKey &o) const { return !(*this == o); }
};

// Look-ups on the ledger that the posting screens share.
namespace Ledger {

inline const QString kCashCode = QStringLiteral("19-10-001");
inline const QString kCashName = QStringLiteral("CASH IN HAND");

// Sum(PartyBalance) of an account: positive is DR. Nothing when the
// account has no row.
std::optional<Money> accountBalance(SessionConnection &db, const QString &partyCode);
// The same over the rows dated before `date`.
std::optional<Money> accountBalanceBefore(SessionConnection &db, const QString &partyCode, const QDate &date);

// "1,234.50 DR" / "1,234.50 CR", or "" for no rows.
QString balanceText(const std::optional<Money> &balance);

// Max(VoucherNo)+1 of a type over the whole year; 1 for an empty series.
using Lookups::nextVoucherNo;
// True when a row of another voucher than `except` carries this type and
// number (any date: a number belongs to its type for the whole year).
bool voucherNumberTaken(SessionConnection &db, const QString &voucherType, qint64 number,
                        const std::optional<VoucherKey> &except = std::nullopt);
// Serialises the numbering of one type among workstations until the
// current transaction ends (a no-op on the embedded store, whose write
// transactions are exclusive already). Call inside a Transaction.
void lockVoucherSeries(SessionConnection &db, const QString &voucherType);

} // namespace Ledger
