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
    // The kept balance: one row read, however long the account's ledger.
    const std::optional<Row> r = db.selectOne(
        QStringLiteral("SELECT BalanceCents, RowCount FROM tblAccountBalance WHERE PartyCode = ?"), {partyCode});
    if (!r || r->integer(1) <= 0)
        return std::nullopt;
    return Money::fromCents(r->integer(0));
}

std::optional<Money> accountBalanceBefore(SessionConnection &db, const QString &partyCode, const QDate &date)
{
    if (!date.isValid())
        return std::nullopt;
    // The whole months before the date's from the kept months, the days of
    // its own month before it from the rows.
    const QDate monthStart(date.year(), date.month(), 1);
    const std::optional<Row> kept = db.selectOne(
        QStringLiteral("SELECT COALESCE(SUM(BalanceCents), 0), COALESCE(SUM(RowCount), 0) FROM tblAccountMonthBalance "
                       "WHERE PartyCode = ? AND YearMonth > 0 AND YearMonth < ?"),
        {partyCode, date.year() * 100 + date.month()});
    const std::optional<Row> days = db.selectOne(
        QStringLiteral("SELECT SUM(PartyBalance), COUNT(*) FROM tblPartyBalance "
                       "WHERE PartyCode = ? AND VDate >= ? AND VDate < ?"),
        {partyCode, monthStart, date});
    const qint64 rows = (kept ? kept->integer(1) : 0) + (days ? days->integer(1) : 0);
    if (rows <= 0)
        return std::nullopt;
    return Money::fromCents(kept ? kept->integer(0) : 0) + (days ? days->money(0).value_or(Money()) : Money());
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
