#pragma once

#include "foundation/Money.h"

#include <QDate>
#include <QMap>
#include <QPair>
#include <QString>
#include <QVector>
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

// One row of tblPartyBalance as a posting writes it. A row has one side:
// a debit row has PartyDR = amount and PartyCR = 0, a credit row the
// reverse, and PartyBalance is always PartyDR - PartyCR.
struct LedgerRow
{
    QString voucherType;
    qint64 voucherNo = 0;
    QDate vDate;
    QString invoiceNo;
    QString partyCode;
    QString partyName;
    Money partyDR;
    Money partyCR;
    QString partyDesc;
    std::optional<qint64> recordNo; // line number of PS / CS vouchers
    QString careOf;                  // opening and other-services rows

    Money partyBalance() const { return partyDR - partyCR; }

    static LedgerRow debit(const VoucherKey &key, const QString &code, const QString &name, Money amount,
                           const QString &desc = QString(), const QString &invoiceNo = QString());
    static LedgerRow credit(const VoucherKey &key, const QString &code, const QString &name, Money amount,
                            const QString &desc = QString(), const QString &invoiceNo = QString());
};

// Writes ledger rows stamped with the user and the entry date. Every
// posting of the program goes through here; the caller holds the
// transaction.
//
// The writer also keeps each account's balance (tblAccountBalance) and its
// balance a month (tblAccountMonthBalance) equal to the rows, in the same
// transaction: nothing else may write, change or delete a ledger row. The
// kept rows are updated in one fixed order (code, then month), so that two
// workstations posting at once wait for each other but never deadlock.
class LedgerWriter
{
public:
    LedgerWriter(SessionConnection &db, const QString &userName, const QDate &entryDate);

    // One row; returns the SrNo the database gave it.
    qint64 insert(const LedgerRow &row);
    // Many rows in the order given (SrNo rises with it), a few hundred rows
    // a statement: this is the path for bulk work.
    void insertMany(const QVector<LedgerRow> &rows);
    // Rewrites the row `srNo` of the voucher `guard`; returns false when no
    // such row stands in the ledger any more.
    bool update(qint64 srNo, const VoucherKey &guard, const LedgerRow &row);
    // Removes the row `srNo` of the voucher `guard`; false when not found.
    bool remove(qint64 srNo, const VoucherKey &guard);
    // Removes the voucher's rows on one account; returns how many.
    int removeAccountRows(const VoucherKey &voucher, const QString &partyCode);
    // Removes the rows with no amount at all, except those of journal
    // vouchers; returns how many.
    int removeEmptyRows();

    // Several writes as one: between beginBatch() and endBatch() the kept
    // balances wait, and endBatch() moves them once, in order. Call
    // endBatch() before the transaction commits.
    void beginBatch() { ++m_batchDepth; }
    void endBatch();

    static int rowsPerStatement() { return 400; }

    // Batches from this size go to a server as arrays, this many rows a
    // statement.
    static constexpr int kArrayThreshold = 200;
    static constexpr int kArrayChunk = 5000;

private:
    struct KeptDelta
    {
        qint64 debitCents = 0;
        qint64 creditCents = 0;
        qint64 balanceCents = 0;
        qint64 rows = 0;
    };
    using KeptKey = QPair<QString, int>; // code without trailing blanks, year * 100 + month

    void insertArrays(const QVector<LedgerRow> &rows, int start, int n);
    void keep(const QString &code, const QDate &date, Money dr, Money cr, Money balance, int sign);
    void keepRow(const LedgerRow &row, int sign) { keep(row.partyCode, row.vDate, row.partyDR, row.partyCR, row.partyBalance(), sign); }
    // Runs a DELETE ... RETURNING of the ledger's amount columns and takes
    // the rows it removed off the kept balances.
    int removeReturning(const QString &deleteSql, const QVariantList &params);
    void applyKept();

    SessionConnection &m_db;
    QString m_user;
    QDate m_entryDate;
    QMap<KeptKey, KeptDelta> m_pending; // in the order the kept rows are locked
    int m_batchDepth = 0;
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

// "{amount} DR" / "{amount} CR", or "" for no rows.
QString balanceText(const std::optional<Money> &balance);

// Max(VoucherNo)+1 of a type over the whole year; 1 for an empty series.
qint64 nextVoucherNo(SessionConnection &db, const QString &voucherType);
// True when a row of another voucher than `except` carries this type and
// number (any date: a number belongs to its type for the whole year).
bool voucherNumberTaken(SessionConnection &db, const QString &voucherType, qint64 number,
                        const std::optional<VoucherKey> &except = std::nullopt);
// Serialises the numbering of one type among workstations until the
// current transaction ends (a no-op on the embedded store, whose write
// transactions are exclusive already). Call inside a Transaction.
void lockVoucherSeries(SessionConnection &db, const QString &voucherType);

} // namespace Ledger
