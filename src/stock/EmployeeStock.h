#pragma once

#include "foundation/Outcome.h"
#include "stock/Consumables.h"

#include <QDate>
#include <QString>
#include <QStringList>

class SessionConnection;
class QueryResult;

// Consumables issued to employees and used up by them. An issue draws its
// units from the receipts first in, first out (Fifo.h) and records what the
// employee holds in tblEmployeeStock; the finish marks units an employee
// has used. Employees are accounts of the chart.
namespace EmployeeStock {

namespace Msg {
inline QString brandMissing() { return QStringLiteral("Brand name is missing, please select brand name"); }
inline QString typeMissing() { return QStringLiteral("Type/Colour is missing, please type/colour"); }
inline QString employeeMissing() { return QStringLiteral("Employee name is missing, please select employee name"); }
inline QString codeMissing() { return QStringLiteral("Employee code is missing, please enter employee code"); }
inline QString unitsMissing() { return QStringLiteral("Unit is missing, please enter units"); }
inline QString noOpenReceipt() { return QStringLiteral("Stock not available, please try again"); }
inline QString noneHeld() { return QStringLiteral("Stock not available, please choose another category"); }
inline QString heldRowEmpty() { return QStringLiteral("Please select correct info. stock not available at this info."); }
inline QString quantityShort() { return QStringLiteral("Stock quantity not available, please enter again"); }
inline QString issued(Consumables::Item item)
{
    return Consumables::itemWord(item) + QStringLiteral(" stock has sended to employee successfully");
}
inline QString finished() { return QStringLiteral("Stock information has updated successfully"); }
} // namespace Msg

// An issue as typed on the screen.
struct IssueRequest
{
    Consumables::Item item = Consumables::Item::Ink;
    QString brand;
    QString type;
    QString employeeName;
    QString employeeCode;   // mask text, "__-__-___" when none
    QString unitsText;
    QString dateText;       // mask text "dd/mm/yyyy"
};

// The issue screen's checks, in its order: brand, type, employee name and
// code, units, then the date (a day, month or year out of range is a wrong
// date before any place left blank is a missing one).
Outcome checkIssue(const IssueRequest &request);

// Draws the units from the open receipts of the item, brand and type,
// oldest first, and gives them to the employee (a row of tblEmployeeStock
// dated with the issue's date), in one transaction. On the server the
// receipts drawn from are locked until the issue is written, so two
// workstations never draw the same unit. Refusals: the checks above, an
// employee code that is no account, no open receipt, too few units left.
// `number` of the outcome is the employee's new row (0 for no units).
Outcome issue(SessionConnection &db, const IssueRequest &request);

// The finish screen's request: units used up by an employee.
struct FinishRequest
{
    Consumables::Item item = Consumables::Item::Ink;
    QString brand;
    QString type;
    QString employeeName;
    QString employeeCode;
    QString unitsText;
};

// Employee name, brand, type, units, in that order.
Outcome checkFinish(const FinishRequest &request);
// Takes the units from the employee's first open row of the item, brand
// and type (oldest first); units beyond what that one row holds are
// refused, though later rows may hold more.
Outcome finish(SessionConnection &db, const FinishRequest &request);

// Brands an employee holds of an item; the types held of a brand (by any
// employee).
QStringList brandsHeld(SessionConnection &db, Consumables::Item item, const QString &employeeCode);
QStringList typesHeld(SessionConnection &db, Consumables::Item item, const QString &brand);

// What an employee was given of an item between two dates: BrandName,
// Type, EntryDate, Units, Issue (used), InHand.
QueryResult heldBy(SessionConnection &db, const QString &employeeCode, Consumables::Item item, const QDate &from,
                   const QDate &to);

} // namespace EmployeeStock
