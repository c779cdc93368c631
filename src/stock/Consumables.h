#pragma once

#include "foundation/LineStaging.h"
#include "foundation/Money.h"
#include "foundation/Outcome.h"
#include "reports/ReportFrame.h"

#include <QDate>
#include <QString>
#include <QStringList>
#include <QVector>
#include <optional>

class SessionConnection;
class QueryResult;

// The press's consumables (tblStock): one row a receipt of an item (INK,
// PLATE, BLANKET, DEVELOPER) under a brand and a type or colour, with the
// units received and the units issued from it so far. Receipts are entered
// here, changed and removed here, and drawn down by the issue to employees
// (EmployeeStock.h). Nothing here writes the ledger.
namespace Consumables {

enum class Item { Ink, Plate, Blanket, Developer };

// In the order the screens show their options.
const QVector<Item> &items();
QString itemWord(Item item);                       // "INK"
std::optional<Item> itemFromWord(const QString &word);
QString optionCaption(Item item);                  // "INK STOCK"
QString reportTitle(Item item);                    // "INK STOCK REPORT"
// The name part of the item's controls: "Ink" (optInkStock, cmdInkStock).
QString controlStem(Item item);

namespace Msg {
inline QString brandMissing() { return QStringLiteral("Brand name is missing, please select brand name"); }
inline QString brandMissingOnPrint() { return QStringLiteral("Brand name is missing,please select brand name"); }
inline QString typeMissing() { return QStringLiteral("Type/Colour is missing, please select type/colour"); }
inline QString typeMissingOnPrint() { return QStringLiteral("Type/colour is missing, please select type/colour"); }
inline QString partyMissing() { return QStringLiteral("Party name is missing, please select party name"); }
inline QString unitsMissing() { return QStringLiteral("Units is missing, please enter units"); }
inline QString unitPriceMissing() { return QStringLiteral("Unit price is missing, please enter unit price"); }
inline QString partyNotFound() { return QStringLiteral("Party name not found, please enter correct party name"); }
inline QString stockMissing() { return QStringLiteral("Stock is missing, please select stock"); }
inline QString modified() { return QStringLiteral("Stock has modified successfully"); }
inline QString deleted() { return QStringLiteral("Stock has deleted successfully"); }
inline QString deleteQuestion() { return QStringLiteral("Are you sure you want to delete this stock"); }
inline QString saved() { return QStringLiteral("Stock has saved successfully"); }
// A receipt may not be cut below what has been issued from it.
inline QString unitsBelowIssued() { return QStringLiteral("Units is less than units issued, please enter units"); }
// A receipt some of which was issued cannot go: the issues stand on it.
inline QString issuedCannotDelete()
{
    return QStringLiteral("Stock has been issued from this receipt, it can not be deleted");
}
// The receipt was changed or removed by another workstation meanwhile.
inline QString changedElsewhere()
{
    return QStringLiteral("Stock has changed on another workstation, please select stock again");
}
} // namespace Msg

// Brands of an item received, in order; the types of a brand.
QStringList brands(SessionConnection &db, Item item);
QStringList types(SessionConnection &db, Item item, const QString &brand);

// A receipt as typed or as stored.
struct Receipt
{
    qint64 srNo = 0;
    Item item = Item::Ink;
    QString brand;
    QString type;
    QString partyCode;
    QString partyName;
    qint64 units = 0;
    Money unitPrice;
    QDate date;
    qint64 issued = 0;   // as stored; never written from here

    Money amount() const;
};

// The receipt's fields in the order the screens check them. `unitsText`
// and `priceText` are what was typed (empty is missing).
Outcome checkReceiptFields(const QString &brand, const QString &type, const QString &partyName,
                           const QString &unitsText, const QString &priceText);
// Units as typed: digits only, 64-bit; nothing for empty or too long.
std::optional<qint64> parseUnits(const QString &text);

// A new receipt: the fields, a real date after the closing date, a
// supplier that is an account and no heading, more than no units. One
// transaction; `number` of the outcome is the receipt's SrNo.
Outcome addReceipt(SessionConnection &db, const Receipt &receipt);

// The receipts of an item, brand and type, oldest first.
QVector<Receipt> receipts(SessionConnection &db, Item item, const QString &brand, const QString &type);

// The same as a list: SrNo, VDate, PartyName, Units, Issue, InHand.
QueryResult receiptList(SessionConnection &db, Item item, const QString &brand, const QString &type);

// A receipt typed on the receipt screen or changed on the modify screen:
// the fields in order, some units (never fewer than issued from it), then
// the supplier's code must be an account that is no heading.
Outcome checkReceipt(SessionConnection &db, const Receipt &receipt, const QString &unitsText,
                     const QString &priceText);

// Writes the receipts edited and removed on the modify screen, in one
// transaction: each is found by its SrNo under the item, brand and type it
// was read with. A receipt cut below its issued units, or changed or
// removed elsewhere since, refuses the whole save.
struct ReceiptEdit
{
    Receipt receipt;
    bool remove = false;
};
Outcome saveChanges(SessionConnection &db, Item item, const QString &brandRead, const QString &typeRead,
                    const QVector<ReceiptEdit> &edits, const QString &successMessage);

// The receipts on the modify screen, held by the screen and mirrored into
// this workstation's tblStockEmpty (StockDesc "UPDATE" or "DELETE").
struct StagedReceipt
{
    qint64 srNo = 0;
    LineState state = LineState::Update;
    Receipt receipt;
};
void clearStaging(SessionConnection &db);
void stage(SessionConnection &db, const StagedReceipt &line);
// The staged receipts still standing: SrNo, BrandName, Type, PartyName,
// PartyCode, Units, UnitPrice, StockDate.
QueryResult stagedList(SessionConnection &db);

// What is in hand of an item: Item, BrandName, Type, Received, Issued,
// InHand, InHandValue (at each receipt's price), by brand and type.
QueryResult stockInHand(SessionConnection &db, Item item);

// The print screen's checks of brand and type, before its dates.
Outcome checkReportFields(const QString &brand, const QString &type);
// The stock report of a brand over a period (the item and type are not in
// the selection: a brand's report shows all it holds).
Reports::ReportRequest stockReport(Item item, const QString &brand, const QDate &from, const QDate &to,
                                   const QString &fromText = QString(), const QString &toText = QString());

} // namespace Consumables
