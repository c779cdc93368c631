#pragma once

#include "foundation/Money.h"
#include "foundation/Outcome.h"
#include "foundation/SessionConnection.h"
#include "sales/JobPaper.h"

#include <QDate>
#include <QString>
#include <QStringList>
#include <optional>

// A customer's purchase order to the press (tblPurchaseOrder): one row per
// item, grouped by the press's own order number PONo, numbered per title.
// PartyPONo is the customer's own number, the one the job card, the
// challan and the invoice refer to. RecordNo numbers every row of the
// table, over all titles.
struct OrderLine
{
    QString titleName;
    qint64 poNo = 0;       // 0: not typed
    qint64 recordNo = 0;   // the row; given by the save for a new line
    QDate date;
    QString partyPONo;
    QString partyCode;
    QString partyName;
    QString description;
    std::optional<Money> quantity;
    QString type = QStringLiteral("PCS");
    std::optional<Money> unitPrice;
    QString demandNo;
    QString jobNo;         // the store indent number
};

namespace PurchaseOrderMsg {
inline const QString kNumberMissing = QStringLiteral("Purchase Order # is missing, please enter Purchase Order #");
inline const QString kNumberMissingLower = QStringLiteral("Purchase Order # is missing, please enter purchase order #");
inline const QString kNumberMissingPrint = QStringLiteral("Purchase Order # is missing, please enter purchase order #.");
inline const QString kNumberMissingOnLeave = QStringLiteral("Purchase Order # is missing, please enter Purchase order #");
inline const QString kPartyMissing = QStringLiteral("Party name is missing, please select party name");
inline const QString kPartyNotFound = QStringLiteral("Party name not found, please select correct party name");
inline const QString kPartyCodeNotFound = QStringLiteral("Party Code not found, please select correct party name");
inline const QString kDescriptionMissing = QStringLiteral("Description is missing, please enter description");
inline const QString kQuantityMissing = QStringLiteral("Quantity is missing, please enter quantity");
inline const QString kQuantityMissingDot = QStringLiteral("Quantity is missing, please enter quantity.");
inline const QString kPriceMissing = QStringLiteral("Unit price is missing, please enter unit price.");
inline const QString kSaved = QStringLiteral("Item entry has saved successfully");
inline const QString kModified = QStringLiteral("Item has modified successfully");
inline const QString kDeleted = QStringLiteral("Item has deleted successfully");
inline const QString kLineNotFound = QStringLiteral("Item not found in this purchase order, please pick the item again.");
} // namespace PurchaseOrderMsg

namespace PurchaseOrderRules {

enum class Command { Save, Modify, Delete, Print };

// Max(PONo) + 1 of the title; 1 for a title with no order.
qint64 nextOrderNo(SessionConnection &db, const QString &title);
// Max(RecordNo) + 1 over all titles.
qint64 nextRecordNo(SessionConnection &db);

// The checks of a command on what is typed, in the screen's order, with
// its words and the field at fault. The party's code is checked against
// the chart by the commands themselves.
Outcome check(const OrderLine &line, Command command);

// The lines of an order for the grid: RecordNo, Description, PONo,
// DemandNo, Quantity in order of entry.
QueryResult orderLines(SessionConnection &db, const QString &title, qint64 poNo);
// The lines of every order that carries the party's number.
QueryResult linesOfPartyOrder(SessionConnection &db, const QString &title, const QString &partyPONo);
// Every description ever ordered, in order of entry, repeats kept.
QStringList descriptionHistory(SessionConnection &db);
QStringList distinctDescriptions(SessionConnection &db);
// The party's order numbers (PartyPONo of its orders), distinct: what a
// job card and a challan refer to.
QStringList partyOrderNumbers(SessionConnection &db, const QString &partyCode);
// The date of the party's order of that number (its first line); invalid
// when there is none.
QDate orderDate(SessionConnection &db, const QString &partyCode, const QString &partyPONo);
// The line of that record number in the title's orders.
std::optional<OrderLine> lineByRecordNo(SessionConnection &db, qint64 recordNo, const QString &title);
// The whole order, in order of entry.
QVector<OrderLine> order(SessionConnection &db, const QString &title, qint64 poNo);

// Adds the line to the order `line.poNo` of its title as one transaction.
// Proposed: a new order, moved on to the next free number when the
// proposal was taken meanwhile (notice). Existing: a further line of that
// order (a typed number included). The record number is taken afresh. The outcome's number is the
// order's number; the line's record number is left in `recordNo`.
Outcome saveLine(SessionConnection &db, const OrderLine &line, JobPaper::Numbering numbering,
                 qint64 *recordNo = nullptr);
// Rewrites the order's head (party number, date, party) on all its rows,
// and the line of `line.recordNo`, as one transaction.
Outcome modifyLine(SessionConnection &db, const OrderLine &line);
// Deletes the one line of that record number from the order.
Outcome deleteLine(SessionConnection &db, const QString &title, qint64 poNo, qint64 recordNo);

} // namespace PurchaseOrderRules
