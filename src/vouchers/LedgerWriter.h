#pragma once

#include "foundation/Money.h"
#include "vouchers/Ledger.h"

#include <QDate>
#include <QMap>
#include <QPair>
#include <QString>
#include <QVector>
#include <optional>

class SessionConnection;

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
    // Removes the rows of every type but JV that carry nothing (0, 0, 0),
    // as a deleted voucher leaves them; returns how many.
    int removeZeroRows();
    // Removes every row matching `where`, a fixed condition of the caller's
    // with its values in `params` (never a value written into it), and
    // takes them off the kept balances by their sums, without reading the
    // rows one by one: the path for removing a large part of a year.
    // Returns how many rows went. When `mostOfTheLedger`, the embedded
    // store drops the ledger's indexes for the removal and makes them again
    // after it, in the same transaction: far less to write when most rows go.
    int removeWhere(const QString &where, const QVariantList &params, bool mostOfTheLedger = false);
    // Moves every row of the account `oldCode` to `newCode` under
    // `newName` (a name change alone when the codes are the same), and the
    // account's kept balances with them. Returns how many rows moved.
    int renameAccount(const QString &oldCode, const QString &newCode, const QString &newName);

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
