#pragma once

#include "foundation/Money.h"
#include "vouchers/Ledger.h"

#include <QDate>
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
    // Removes the rows of the voucher `key` on this account; returns how many.
    int removeAccountRows(const VoucherKey &key, const QString &partyCode);
    // Removes the rows of every type but JV that carry nothing (0, 0, 0),
    // as a deleted voucher leaves them; returns how many.
    int removeZeroRows();

    static int rowsPerStatement() { return 400; }

    // Batches from this size go to a server as arrays, this many rows a
    // statement.
    static constexpr int kArrayThreshold = 200;
    static constexpr int kArrayChunk = 5000;

private:
    void insertArrays(const QVector<LedgerRow> &rows, int start, int n);

    SessionConnection &m_db;
    QString m_user;
    QDate m_entryDate;
};
