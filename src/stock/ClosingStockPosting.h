#pragma once

#include "foundation/Outcome.h"
#include "stock/ClosingStockRules.h"
#include "vouchers/VoucherPosting.h"

#include <QDate>
#include <QString>
#include <optional>

class QueryResult;
class SessionConnection;

// Saves, replaces and removes closing stock vouchers. The adjustment is
// worked out inside the transaction from the stock account's balance
// without the voucher's own rows, so a voucher changed twice still brings
// the account to the value counted. Each call is one transaction.
class ClosingStockPosting
{
public:
    ClosingStockPosting(SessionConnection &db, const QString &userName, const QDate &today);

    // A new voucher. A number that already has rows is refused when typed
    // (NumberPolicy::Typed) and moves to the next free one when proposed:
    // a number never carries two sets of rows.
    Outcome save(const ClosingStock::Entry &entry, NumberPolicy policy);
    // Replaces the rows of an existing voucher.
    Outcome modify(const ClosingStock::Entry &entry);
    // Removes a voucher's rows.
    Outcome remove(const QString &type, qint64 voucherNo);

    // The stock account's balance without the rows of `voucherNo` (0 for
    // none); nothing when the account has no other rows.
    static std::optional<Money> balanceWithout(SessionConnection &db, const QString &stockCode,
                                               const QString &type, qint64 voucherNo);
    // Max(VoucherNo)+1 and Max(RecordNo)+1 of the type in the ledger.
    static qint64 nextVoucherNo(SessionConnection &db, const QString &type);
    static qint64 nextRecordNo(SessionConnection &db, const QString &type);

    // The accounts that may take the other side: PartyName, PartyCode.
    static QueryResult adjustmentAccounts(SessionConnection &db);
    // The stock rows on closing stock accounts of a date: RecordNo,
    // VoucherNo, PartyName, PartyDR, PartyCR.
    static QueryResult gridRows(SessionConnection &db, const QString &type, const QDate &date);
    // A voucher as saved: its stock row and its mirror.
    struct Stored
    {
        qint64 recordNo = 0;
        QDate date;
        QString stockName;
        QString adjustName;
        QString desc;
        Money stockBalance; // the stock row's PartyBalance
    };
    static std::optional<Stored> stored(SessionConnection &db, const QString &type, qint64 voucherNo);

private:
    Outcome write(const ClosingStock::Entry &entry, qint64 voucherNo, qint64 recordNo);

    SessionConnection &m_db;
    QString m_user;
    QDate m_today;
};
