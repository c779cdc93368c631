#pragma once

#include "foundation/Money.h"
#include "foundation/Outcome.h"
#include "vouchers/LedgerWriter.h"

#include <QDate>
#include <QString>
#include <QVector>

// The words of the purchase stock screen.
namespace PurchaseStockMessages {
inline const QString kSameAccount =
    QStringLiteral("Purchase A/C and Party A/C can not be same. Please change atleast one A/C.");
inline const QString kBillMissing = QStringLiteral("Bill # is missing, please enter bill #.");
inline const QString kVoucherMissing = QStringLiteral("Voucher # is missing, please enter voucher #.");
inline const QString kQuantity = QStringLiteral("Quantity must be greater than 0, please enter again");
inline const QString kSaved = QStringLiteral("Purchase stock has been saved successfully.");
inline const QString kModified = QStringLiteral("Purchase stock has been modified successfully.");
inline const QString kNotPurchaseAccount =
    QStringLiteral("Purchase A/C not found, please select a purchase A/C from the list.");
inline const QString kNoLine = QStringLiteral("Select a line of the bill from the list first.");
inline const QString kOtherVoucher =
    QStringLiteral("This line belongs to another voucher; please load it again.");
} // namespace PurchaseStockMessages

// A supplier's bill kept line by line in tblPurchaseStock, with three
// ledger rows of type "PS" that always follow from the stored lines:
//   goods     supplier credited with the goods and their sales tax,
//   freight   supplier credited with the freight of the bill,
//   purchase  purchase account debited with the whole.
// Amounts of the lines and the freight are whole money; the sales tax is
// the bill's percentage of the goods, rounded half to even to whole money.
namespace PurchaseStock {

inline const QString kType = QStringLiteral("PS");
// The purchase accounts: "20-00-001" to "20-12-999", no headings.
inline const QString kFirstPurchaseCode = QStringLiteral("20-00-001");
inline const QString kLastPurchaseCode = QStringLiteral("20-12-999");

// What stands on every line of a voucher.
struct Header
{
    QString voucherType = kType;
    qint64 voucherNo = 0;
    QString billNo;
    QDate date;
    QString partyName;
    QString purchaseName;
    Money freight;      // whole money
    QString saleTax;    // the percentage as typed, "17.5"; "" is 0
    QString careOf;     // written on the ledger rows
};

struct Line
{
    qint64 recordNo = 0;
    QString itemDesc;
    QString weight;
    QString quantity;   // as typed, decimals allowed
    QString unitRate;
    QString unitType;
    Money amount;       // whole money: lineAmount(quantity, unitRate)
};

// What the screen holds when a command is asked for.
struct Entry
{
    Header header;
    QString voucherNoText;
    QString dateText;    // the masked date, "dd/mm/yyyy"
    QString partyCode;   // the code fields
    QString purchaseCode;
    QString quantityText;
};

enum class Command { Save, Modify, Delete };

// The checks of a command, in the screen's order: the two accounts the
// same, bill, voucher #, date; then (save and modify) the quantity.
// `partyKnown` is the answer of Lookups::partyNameExists.
Outcome checkEntry(const Entry &entry, Command command, bool partyKnown);

// quantity x rate, rounded half to even to whole money; empty text is 0.
Money lineAmount(const QString &quantity, const QString &unitRate);
// percent % of amount, rounded half to even to whole money.
Money wholePercent(Money amount, const QString &percent);
// Whole money, half to even, of an amount typed with cents.
Money wholeMoney(Money amount);

struct Totals
{
    Money total;         // the lines' amounts
    Money saleTaxAmount; // total x sale tax %, whole money
    Money freight;
    Money gross() const { return total + saleTaxAmount; }
    Money net() const { return total + saleTaxAmount + freight; }
};
Totals totals(const Header &header, const QVector<Line> &lines);

// "PURCHASE desc weight+ desc weight+" and "FREIGHT ..." over the lines.
QString purchaseNarration(const QVector<Line> &lines);
QString freightNarration(const QVector<Line> &lines);

// The voucher's ledger rows: goods, freight, purchase; a leg with nothing
// to carry is left out, and a voucher without lines has no rows. Every
// row carries the first line's RecordNo and the bill # as InvoiceNo.
QVector<LedgerRow> legs(const Header &header, const QString &partyCode, const QString &purchaseCode,
                        const QVector<Line> &lines);

bool isPurchaseCode(const QString &code);

} // namespace PurchaseStock
