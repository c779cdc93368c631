#include "stock/ClosingStockPosting.h"

#include "foundation/DateRules.h"
#include "foundation/Lookups.h"
#include "foundation/SessionConnection.h"
#include "vouchers/Ledger.h"
#include "vouchers/PostingChecks.h"
#include "vouchers/VoucherRules.h"

#include <QSet>

using namespace ClosingStock;

namespace {

QueryResult voucherRows(SessionConnection &db, const QString &type, qint64 voucherNo)
{
    return db.select(QStringLiteral("SELECT SrNo, VDate, RecordNo FROM tblPartyBalance WHERE VoucherType = ? "
                                    "AND VoucherNo = ? ORDER BY SrNo"),
                     {type, voucherNo});
}

// The entry with its codes read from its names: the rows stand on the
// accounts the names give, whatever the code fields showed.
Outcome checked(SessionConnection &db, Entry &e)
{
    if (e.voucherType != kType)
        return Outcome::refusal(PostingMessages::kUnknownType, QStringLiteral("cmbVoucherType"));
    e.stockCode = Lookups::codeFromName(db, e.stockName).value_or(QString());
    e.adjustCode = Lookups::codeFromName(db, e.adjustName).value_or(QString());
    return checkEntry(e, !e.adjustCode.isEmpty());
}

Outcome oldPlacesOpen(PostingChecks &checks, const QString &type, const QueryResult &old)
{
    QSet<QDate> dates;
    for (const Row &r : old)
        dates.insert(r.date(1));
    for (const QDate &d : dates)
        if (Outcome open = checks.checkVoucher(type, d); !open)
            return open;
    return Outcome::passed();
}

void removeRows(LedgerWriter &writer, const QString &type, qint64 voucherNo, const QueryResult &old)
{
    for (const Row &r : old)
        writer.remove(r.integer(0), VoucherKey{type, voucherNo, r.date(1)});
}

} // namespace

ClosingStockPosting::ClosingStockPosting(SessionConnection &db, const QString &userName, const QDate &today)
    : m_db(db), m_user(userName), m_today(today)
{
}

qint64 ClosingStockPosting::nextVoucherNo(SessionConnection &db, const QString &type)
{
    return Ledger::nextVoucherNo(db, type);
}

qint64 ClosingStockPosting::nextRecordNo(SessionConnection &db, const QString &type)
{
    return db.scalar(QStringLiteral("SELECT MAX(RecordNo) FROM tblPartyBalance WHERE VoucherType = ?"), {type})
               .toLongLong()
        + 1;
}

std::optional<Money> ClosingStockPosting::balanceWithout(SessionConnection &db, const QString &stockCode,
                                                         const QString &type, qint64 voucherNo)
{
    std::optional<Money> all = Ledger::accountBalance(db, stockCode);
    if (!all || voucherNo <= 0)
        return all;
    const auto own = db.selectOne(QStringLiteral("SELECT COUNT(*), SUM(PartyBalance) FROM tblPartyBalance "
                                                 "WHERE VoucherType = ? AND VoucherNo = ? AND PartyCode = ?"),
                                  {type, voucherNo, stockCode});
    if (!own || own->integer(0) == 0)
        return all;
    return *all - own->money(1).value_or(Money());
}

Outcome ClosingStockPosting::write(const Entry &e, qint64 voucherNo, qint64 recordNo)
{
    const QDate date = DateRules::fromMaskText(e.dateText);
    // The voucher's own rows are gone by now: the balance is the rest.
    const Money balance = Ledger::accountBalance(m_db, e.stockCode).value_or(Money());
    const Money closing = Money::parseOrZero(e.closingValue);
    const QVector<LedgerRow> rows =
        ClosingStock::rows(VoucherKey{e.voucherType, voucherNo, date}, recordNo, e, adjustment(balance, closing));
    if (!rows.isEmpty())
        if (Outcome ok = PostingChecks(m_db).check(rows); !ok)
            return ok;
    LedgerWriter(m_db, m_user, m_today).insertMany(rows);
    Outcome out = Outcome::success(ClosingStockMessages::kUpdated);
    out.number = voucherNo;
    out.rowsWritten = rows.size();
    return out;
}

Outcome ClosingStockPosting::save(const Entry &given, NumberPolicy policy)
{
    Transaction tx(m_db);
    Entry e = given;
    if (Outcome ok = checked(m_db, e); !ok)
        return ok;
    if (Outcome open = PostingChecks(m_db).checkVoucher(e.voucherType, DateRules::fromMaskText(e.dateText)); !open)
        return open;
    Ledger::lockVoucherSeries(m_db, e.voucherType);
    qint64 number = e.voucherNoText.trimmed().toLongLong();
    QString notice;
    if (Ledger::voucherNumberTaken(m_db, e.voucherType, number)) {
        if (policy == NumberPolicy::Typed)
            return Outcome::refusal(VoucherMessages::kDuplicate, QStringLiteral("txtVoucherNo"));
        const qint64 next = nextVoucherNo(m_db, e.voucherType);
        notice = VoucherMessages::numberMoved(number, next);
        number = next;
    }
    Outcome out = write(e, number, nextRecordNo(m_db, e.voucherType));
    if (!out)
        return out;
    tx.commit();
    out.notice = notice;
    return out;
}

Outcome ClosingStockPosting::modify(const Entry &given)
{
    Transaction tx(m_db);
    Entry e = given;
    if (Outcome ok = checked(m_db, e); !ok)
        return ok;
    const qint64 number = e.voucherNoText.trimmed().toLongLong();
    const QueryResult old = voucherRows(m_db, e.voucherType, number);
    if (old.isEmpty())
        return Outcome::refusal(VoucherMessages::kNotFound, QStringLiteral("txtVoucherNo"));
    PostingChecks checks(m_db);
    if (Outcome open = oldPlacesOpen(checks, e.voucherType, old); !open)
        return open;
    if (Outcome open = checks.checkVoucher(e.voucherType, DateRules::fromMaskText(e.dateText)); !open)
        return open;
    const qint64 recordNo = old.first().integer(2, nextRecordNo(m_db, e.voucherType));
    {
        LedgerWriter writer(m_db, m_user, m_today);
        writer.beginBatch();
        removeRows(writer, e.voucherType, number, old);
        writer.endBatch();
    }
    Outcome out = write(e, number, recordNo);
    if (!out)
        return out;
    tx.commit();
    return out;
}

Outcome ClosingStockPosting::remove(const QString &type, qint64 voucherNo)
{
    Transaction tx(m_db);
    if (type != kType)
        return Outcome::refusal(PostingMessages::kUnknownType, QStringLiteral("cmbVoucherType"));
    const QueryResult old = voucherRows(m_db, type, voucherNo);
    if (old.isEmpty())
        return Outcome::refusal(VoucherMessages::kNotFound, QStringLiteral("txtVoucherNo"));
    PostingChecks checks(m_db);
    if (Outcome open = oldPlacesOpen(checks, type, old); !open)
        return open;
    LedgerWriter writer(m_db, m_user, m_today);
    writer.beginBatch();
    removeRows(writer, type, voucherNo, old);
    writer.endBatch();
    tx.commit();
    Outcome out = Outcome::success(ClosingStockMessages::kUpdated);
    out.number = voucherNo;
    out.rowsWritten = old.size();
    return out;
}

QueryResult ClosingStockPosting::adjustmentAccounts(SessionConnection &db)
{
    return db.select(QStringLiteral("SELECT PartyName, PartyCode FROM tblPartyInfo WHERE PartyCode NOT LIKE '__-__-000%' "
                                    "ORDER BY PartyName"));
}

QueryResult ClosingStockPosting::gridRows(SessionConnection &db, const QString &type, const QDate &date)
{
    return db.select(QStringLiteral("SELECT RecordNo, VoucherNo, PartyName, PartyDR, PartyCR FROM tblPartyBalance "
                                    "WHERE VoucherType = ? AND VDate = ? AND PartyCode >= ? AND PartyCode <= ? "
                                    "ORDER BY RecordNo"),
                     {type, date, kFirstClosingCode, kLastClosingCode});
}

std::optional<ClosingStockPosting::Stored> ClosingStockPosting::stored(SessionConnection &db, const QString &type,
                                                                       qint64 voucherNo)
{
    const QueryResult rows = db.select(QStringLiteral("SELECT RecordNo, VDate, PartyName, PartyDesc, PartyBalance "
                                                      "FROM tblPartyBalance WHERE VoucherType = ? AND VoucherNo = ? "
                                                      "ORDER BY SrNo"),
                                       {type, voucherNo});
    if (rows.isEmpty())
        return std::nullopt;
    Stored s;
    s.recordNo = rows.first().integer(0);
    s.date = rows.first().date(1);
    s.stockName = rows.first().text(2).trimmed();
    s.desc = rows.first().text(3).trimmed();
    s.stockBalance = rows.first().moneyOrZero(QStringLiteral("PartyBalance"));
    if (rows.size() > 1)
        s.adjustName = rows.at(1).text(2).trimmed();
    return s;
}
