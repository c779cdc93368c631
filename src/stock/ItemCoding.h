#pragma once

#include "foundation/Outcome.h"
#include "foundation/Money.h"

#include <QDate>
#include <QString>
#include <QStringList>
#include <optional>

class SessionConnection;
class QueryResult;

// The item master (tblItemCoding): items held by a code in the mask
// "__-__-___" and a unique name. Items are added and changed, never deleted.
namespace ItemCoding {

struct Item
{
    QString code;        // mask text
    QString name;
    Money costRate;
    Money saleRate;
    QString unitType = QStringLiteral("UNIT");
};

inline QStringList unitTypes() { return {QStringLiteral("UNIT"), QStringLiteral("KG"), QStringLiteral("DOZEN")}; }

namespace Msg {
inline QString nameMissing() { return QStringLiteral("Item name is missing, please enter item name."); }
inline QString codeMissing() { return QStringLiteral("Item code is missing, please enter item code."); }
inline QString codeIncomplete() { return QStringLiteral("Item code is missing, Enter proper item code"); }
inline QString codeExists() { return QStringLiteral("Item Code already exist, Duplication is not allowed"); }
inline QString nameExists() { return QStringLiteral("Item Name already exist, Duplication is not allowed"); }
inline QString codeExistsOnModify() { return QStringLiteral("Item code already exist, Duplication is not allowed"); }
inline QString nameExistsOnModify() { return QStringLiteral("Item name already exist, Duplication is not allowed"); }
inline QString added() { return QStringLiteral("Item name has been added successfully."); }
inline QString modified() { return QStringLiteral("Item name has been modified successfully."); }
inline QString notFound() { return QStringLiteral("Item not found, please choose old item name from list."); }
} // namespace Msg

// The highest item code under the first six places of `maskText`; empty
// when the group has none.
QString lastCodeUnder(SessionConnection &db, const QString &maskText);
// Columns ItemCode, ItemName, CostRate, SaleRate of the items whose names
// contain `text`, ordered by code.
QueryResult itemsNamed(SessionConnection &db, const QString &text);
QStringList names(SessionConnection &db);
std::optional<Item> itemByName(SessionConnection &db, const QString &name);
std::optional<Item> itemByCode(SessionConnection &db, const QString &code);

// Adding: only the fully empty code mask is refused as missing.
Outcome checkNew(SessionConnection &db, const Item &item);
Outcome add(SessionConnection &db, const Item &item, const QString &userName, const QDate &entryDate);

// Changing the item that had `oldCode` and `oldName`: any "_" left in the
// code is refused; the item's own code and name are let through.
Outcome checkChange(SessionConnection &db, const QString &oldCode, const QString &oldName, const Item &item);
Outcome modify(SessionConnection &db, const QString &oldCode, const QString &oldName, const Item &item,
               const QString &userName, const QDate &entryDate);

} // namespace ItemCoding
