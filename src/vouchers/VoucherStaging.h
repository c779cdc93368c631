#pragma once

#include "vouchers/VoucherRules.h"

#include <QString>
#include <QVector>
#include <optional>

class SessionConnection;

// What the line buttons hand over: the account, side and amount of a line.
struct LineInput
{
    QString invoiceNo;
    QString partyCode;
    QString partyName;
    QString description;   // trimmed here
    Money amount;
    QString side;          // "DR" or "CR"
    std::optional<ChequeLink> cheque;
};

// The voucher being typed, in this workstation's private staging table
// tblPartyBalanceEmpty, which the save reads. The state column DBCR keeps
// the line's LineState as a word: "INSERT" adds it, "UPDATE" rewrites its
// ledger row, "DELETE" removes it. A screen holds its lines in a
// StagedLines and mirrors them here with clear() and put().
class VoucherStaging
{
public:
    explicit VoucherStaging(SessionConnection &db) : m_db(db) {}

    void clear();

    // Stages a new line under a SrNo that no staged line has (at least
    // lineSrNo + 1) and stamps every staged line with the header. Updates
    // lineSrNo to the number given and returns it.
    qint64 addLine(const VoucherKey &header, const LineInput &line, qint64 &lineSrNo);
    // Rewrites the staged line `srNo`, after stamping the header. A line
    // that is still to be inserted stays "INSERT"; one from the ledger
    // becomes "UPDATE". Returns false when no line has that number.
    bool changeLine(qint64 srNo, const VoucherKey &header, const LineInput &line);
    // Removes a line: a line not yet in the ledger goes from staging, one
    // from the ledger is marked "DELETE" (its cheque, when given, is handed
    // back at save).
    bool removeLine(qint64 srNo, const std::optional<ChequeLink> &giveBack = std::nullopt);
    // Stamps every staged line with the header.
    void restamp(const VoucherKey &header);

    std::optional<VoucherLine> line(qint64 srNo);
    // Lines in SrNo order; the live ones, or all with their states.
    QVector<VoucherLine> lines(bool liveOnly = true);
    VoucherTotals totals();
    bool isEmpty();

    // The lines of a posted voucher, every row but the cash row, as
    // Update lines under the ledger's SrNo.
    QVector<VoucherLine> postedLines(const VoucherKey &key);
    // Pulls a posted voucher into staging, every row but the cash row, as
    // "UPDATE" lines under the ledger's SrNo. Returns the lines loaded.
    int loadVoucher(const VoucherKey &key);

    // Appends a line with its own state and SrNo (used by loadVoucher and
    // to put lines back after a failed save).
    void put(const VoucherKey &header, const VoucherLine &line);

private:
    SessionConnection &m_db;
};
