#pragma once

#include "foundation/Money.h"
#include "foundation/Outcome.h"
#include "foundation/SessionConnection.h"
#include "sales/JobPaper.h"

#include <QDate>
#include <QString>
#include <QStringList>
#include <QVector>
#include <optional>

// What leaves the press against a party's order (tblDeliveryChallan): one
// row per item delivered, grouped by DeliveryChallanNo, numbered per
// title; RecordNo numbers every row of the table over all titles. PONo
// holds the party's own order number (PartyPONo of the order). Any
// quantity is accepted: delivered against ordered is a report's matter.
struct ChallanLine
{
    QString titleName;
    qint64 challanNo = 0;   // 0: not typed
    qint64 recordNo = 0;
    QDate date;
    QString partyCode;
    QString partyName;
    QString partyPONo;      // column PONo
    QString description;
    QString demandNo;
    std::optional<Money> quantity;
    QString type = QStringLiteral("Pcs");
    QString ctn;            // number of cartons, as typed
    QString gateEntryNo;
};

// An item of a party's order as a challan offers it.
struct OrderItem
{
    QString description;
    QString demandNo;
};

namespace ChallanMsg {
inline const QString kNumberMissing = QStringLiteral("DeliveryChallan # is missing, please enter DeliveryChallan #");
inline const QString kNumberMissingPrint = QStringLiteral("Delivery challan # is missing, please enter challan #.");
inline const QString kPartyMissing = QStringLiteral("Party name is missing, please select party name");
inline const QString kPartyNotFound = QStringLiteral("Party name not found, please select correct party name");
inline const QString kPartyCodeNotFound = QStringLiteral("Party Code not found, please select correct party name");
inline const QString kDescriptionMissing = QStringLiteral("Description is missing, please enter description");
inline const QString kQuantityMissing = QStringLiteral("Quantity is missing, please enter quantity");
inline const QString kQuantityMissingDot = QStringLiteral("Quantity is missing, please enter quantity.");
inline const QString kSaved = QStringLiteral("Item entry has saved successfully");
inline const QString kModified = QStringLiteral("Item has modified successfully");
inline const QString kDeleted = QStringLiteral("Item has deleted successfully");
inline const QString kLineNotFound = QStringLiteral("Item not found in this delivery challan, please pick the item again.");
} // namespace ChallanMsg

namespace DeliveryChallanRules {

enum class Command { Save, Modify, Delete, Print };

qint64 nextChallanNo(SessionConnection &db, const QString &title);
qint64 nextRecordNo(SessionConnection &db);

Outcome check(const ChallanLine &line, Command command);

// The items of the party's order, in order of entry: what a challan may
// take from it.
QVector<OrderItem> orderItems(SessionConnection &db, const QString &partyCode, const QString &partyPONo);
// "1 - ART CARD", "2 - LABEL", ... for the numbered item list.
QStringList numberedItems(const QVector<OrderItem> &items);
// The demand numbers the order has for that item, first one first.
QStringList demandNumbers(SessionConnection &db, const QString &partyCode, const QString &partyPONo,
                          const QString &description);
QStringList distinctDescriptions(SessionConnection &db);

// For the grid: RecordNo, Description, PONo, DemandNo, Quantity.
QueryResult challanGrid(SessionConnection &db, const QString &title, qint64 challanNo);
// Everything delivered so far against the party's order number, all challans.
QueryResult deliveredGrid(SessionConnection &db, const QString &title, const QString &partyPONo);

// The lines of a challan, in order of entry (what an invoice takes).
QVector<ChallanLine> lines(SessionConnection &db, const QString &title, qint64 challanNo);
std::optional<ChallanLine> lineByRecordNo(SessionConnection &db, qint64 recordNo);

// Adds a line, as PurchaseOrderRules::saveLine does; `entryDate` stamps it.
Outcome saveLine(SessionConnection &db, const ChallanLine &line, JobPaper::Numbering numbering,
                 const QDate &entryDate, qint64 *recordNo = nullptr);
// Rewrites the challan's head (date, party, gate entry) on all its rows
// and the line of `line.recordNo` (its carton count included).
Outcome modifyLine(SessionConnection &db, const ChallanLine &line);
// Deletes one line by its record number, which is unique over all titles.
Outcome deleteLine(SessionConnection &db, qint64 challanNo, qint64 recordNo);

} // namespace DeliveryChallanRules
