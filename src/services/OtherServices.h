#pragma once

#include "foundation/Money.h"
#include "foundation/Outcome.h"
#include "reports/ReportFrame.h"
#include "vouchers/LedgerWriter.h"

#include <QDate>
#include <QString>
#include <QVector>
#include <optional>

class SessionConnection;

namespace OtherServicesMessages {
inline const QString kSaved = QStringLiteral("Other services has saved successfully");
inline const QString kUpdated = QStringLiteral("Other services has updated successfully");
inline const QString kDeleted = QStringLiteral("Other services has deleted successfully");
inline const QString kNoVoucherNo = QStringLiteral("Voucher # is missing, please enter voucher #.");
inline const QString kNotFound = QStringLiteral("No voucher # found, please enter correct voucher #");
inline const QString kTooLarge = QStringLiteral("Amount is too large, please enter correct amount");
inline const QString kLedgerChanged =
    QStringLiteral("This voucher was changed on another workstation meanwhile; please load it again.");
} // namespace OtherServicesMessages

// One service bought for a customer and resold: a row of tblOtherServices
// and its OS voucher in the ledger. Amounts are whole money.
struct OtherServiceEntry
{
    qint64 voucherNo = 0;
    QDate date;
    QString invoiceNo;
    QString partyCode;      // the receivable side: the customer
    QString partyName;
    QString supplierCode;   // the payable side
    QString supplierName;
    QString description;
    Money received;         // R
    Money paid;             // P
    QString careOf;

    Money margin() const { return received - paid; }   // D = R - P
};

namespace OtherServiceRules {
inline const QString kType = QStringLiteral("OS");
inline const QString kMarginCode = QStringLiteral("20-10-001 "); // written with its blank
inline const QString kMarginName = QStringLiteral("OTHER SERVICES INCOM");

// An amount field's text as whole money: empty is 0; nothing when it is
// not a whole number within 32 bits.
std::optional<Money> wholeAmount(const QString &text);

// The rows of a new voucher: the customer DR R, the supplier CR P, and the
// margin on 20-10-001: CR D when D is above 0, DR -D when below, none at 0.
QVector<LedgerRow> voucherRows(const OtherServiceEntry &entry);
// The margin row rewritten on a change: its form follows the sign of the
// difference the voucher had before (`oldMargin` above 0 keeps the credit
// form, PartyCR = D, even when D is now below 0; below 0 keeps the debit
// form, PartyDR = -D). PartyBalance is -D either way.
LedgerRow changedMarginRow(const OtherServiceEntry &entry, Money oldMargin);

// "OTHER SERVICES REGISTER": the services dated from `from` to `to`.
Reports::ReportRequest registerRequest(const QDate &from, const QDate &to, const QString &fromText = QString(),
                                       const QString &toText = QString());
} // namespace OtherServiceRules

// Saves, changes and deletes other-services vouchers, each in one
// transaction with its ledger rows. A database failure throws DbError with
// nothing written.
class OtherServices
{
public:
    OtherServices(SessionConnection &db, const QString &userName, const QDate &today);

    // Max(VoucherNo) + 1 of the OS series of tblOtherServices.
    qint64 nextNumber();
    std::optional<OtherServiceEntry> find(qint64 voucherNo);

    // The accounts, the date (after the closing date) and the rows.
    Outcome check(const OtherServiceEntry &entry);
    // A proposed number taken meanwhile moves on (`notice` says so).
    Outcome save(OtherServiceEntry entry);
    // Changes the voucher of that number as it stands in the books now:
    // its ledger rows are found by the voucher (type, number, date).
    Outcome modify(const OtherServiceEntry &entry);
    Outcome remove(qint64 voucherNo);

private:
    Outcome checkRows(const OtherServiceEntry &entry);

    SessionConnection &m_db;
    QString m_user;
    QDate m_today;
};
