#pragma once

#include "foundation/Outcome.h"
#include "stock/PurchaseStockRules.h"

#include <QDate>
#include <QString>
#include <QVector>
#include <optional>

class QueryResult;
class SessionConnection;

// Saves, changes and removes the lines of a purchase voucher and, in the
// same transaction, writes its ledger rows anew from the lines that then
// stand: the rows of a voucher are always those its lines give, whatever
// happened before. Each call is one transaction: a refusal or a database
// failure leaves the lines and the ledger as they were. A refusal comes
// back as an Outcome; a database failure as DbError.
class PurchaseStockPosting
{
public:
    PurchaseStockPosting(SessionConnection &db, const QString &userName, const QDate &today);

    // Keeps the chart read once for many calls in one transaction (the demo).
    void keepLookups(bool keep = true) { m_keepLookups = keep; }

    // Adds a line. `startsVoucher` is true for the first line of a bill the
    // screen has not saved under this number yet: when another workstation
    // took the number meanwhile the next free one is used (and `notice`
    // says so). The line's RecordNo is the next free one of the type
    // (given back in `recordNo`). `number` of the outcome is the voucher #,
    // `rowsWritten` the ledger rows the voucher now has.
    Outcome saveLine(const PurchaseStock::Header &header, PurchaseStock::Line line, bool startsVoucher,
                     qint64 *recordNo = nullptr);
    // Changes a stored line (found by type, voucher # and RecordNo) and the
    // header of all lines of its voucher.
    Outcome modifyLine(const PurchaseStock::Header &header, const PurchaseStock::Line &line);
    // Removes a stored line; the voucher's rows follow the lines left.
    Outcome deleteLine(const PurchaseStock::Header &header, qint64 recordNo);

    // The stored lines of a voucher, by RecordNo.
    static QVector<PurchaseStock::Line> lines(SessionConnection &db, const QString &type, qint64 voucherNo);
    // The header stored on a voucher's lines, when it has any.
    static std::optional<PurchaseStock::Header> storedHeader(SessionConnection &db, const QString &type,
                                                             qint64 voucherNo);
    // Max(VoucherNo)+1 and Max(RecordNo)+1 of the type in tblPurchaseStock.
    static qint64 nextVoucherNo(SessionConnection &db, const QString &type);
    static qint64 nextRecordNo(SessionConnection &db, const QString &type);
    // The voucher a stored line belongs to (by type and RecordNo).
    static std::optional<qint64> voucherOfRecord(SessionConnection &db, const QString &type, qint64 recordNo);

    // The purchase accounts a bill may go to: PartyName, PartyCode.
    static QueryResult purchaseAccounts(SessionConnection &db);
    // The lines of every voucher of a bill #: RecordNo, Weight, ItemDesc,
    // Quantity, UnitRate, PartyName, VoucherNo.
    static QueryResult billLines(SessionConnection &db, const QString &type, const QString &billNo);

private:
    // Rewrites the voucher's ledger rows from its stored lines.
    Outcome rewriteLegs(const QString &type, qint64 voucherNo, const QString &careOf);
    void writeHeader(const PurchaseStock::Header &header);

    SessionConnection &m_db;
    QString m_user;
    QDate m_today;
    bool m_keepLookups = false;
};
