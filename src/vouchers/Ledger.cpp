#include "vouchers/Ledger.h"

#include "foundation/SessionConnection.h"

namespace {

// A stable number for a voucher type, the same on every workstation.
int seriesKey(const QString &type)
{
    quint32 h = 2166136261u;
    for (const QChar c : type.trimmed().toUpper()) {
        h ^= c.unicode();
        h *= 16777619u;
    }
    return static_cast<int>(h & 0x7fffffff);
}

} // namespace

namespace Ledger {

std::optional<Money> accountBalance(SessionConnection &db, const QString &partyCode)
{
    return db.scalarMoney(QStringLiteral("SELECT SUM(PartyBalance) FROM tblPartyBalance WHERE PartyCode = ?"),
                          {partyCode});
}

std::optional<Money> accountBalanceBefore(SessionConnection &db, const QString &partyCode, const QDate &date)
{
    return db.scalarMoney(QStringLiteral("SELECT SUM(PartyBalance) FROM tblPartyBalance "
                                         "WHERE PartyCode = ? AND VDate < ?"),
                          {partyCode, date});
}

QString balanceText(const std::optional<Money> &balance)
{
    if (!balance)
        return QString();
    if (balance->isNegative())
        return balance->abs().toDisplayString() + QStringLiteral(" CR");
    return balance->toDisplayString() + QStringLiteral(" DR");
}

bool voucherNumberTaken(SessionConnection &db, const QString &voucherType, qint64 number,
                        const std::optional<VoucherKey> &except)
{
    if (!except) {
        return db.selectOne(QStringLiteral("SELECT SrNo FROM tblPartyBalance WHERE VoucherType = ? AND VoucherNo = ? "
                                           "LIMIT 1"),
                            {voucherType, number})
            .has_value();
    }
    return db.selectOne(QStringLiteral("SELECT SrNo FROM tblPartyBalance WHERE VoucherType = ? AND VoucherNo = ? "
                                       "AND NOT (VoucherType = ? AND VoucherNo = ? AND VDate = ?) LIMIT 1"),
                        {voucherType, number, except->type, except->number, except->date})
        .has_value();
}

void lockVoucherSeries(SessionConnection &db, const QString &voucherType)
{
    if (!db.isPostgres())
        return;
    db.select(QStringLiteral("SELECT pg_advisory_xact_lock(CAST(? AS INTEGER), CAST(? AS INTEGER))"),
              {7301, seriesKey(voucherType)});
}

} // namespace Ledger
