#pragma once

#include "foundation/Money.h"
#include "foundation/Outcome.h"

#include <QDate>
#include <QString>
#include <QStringList>
#include <optional>

class SessionConnection;
class QueryResult;

// The employee register (tblEmployeeInfo): who is on the payroll, at which
// basic salary, since when, and whether active. An employee is an account
// of the chart first: the register row names its code. Employees are added
// and changed, never deleted; one leaves the payroll by the status
// "DEACTIVE". Every command is one transaction and refuses what the screen
// refuses, whoever calls it.
namespace EmployeeRegister {

namespace Msg {
inline QString nameMissing() { return QStringLiteral("Employee name is missing, please enter employee name"); }
inline QString codeMissing() { return QStringLiteral("Employee code is missing, please enter employee code"); }
inline QString salaryMissing() { return QStringLiteral("Salary amount is missing, please enter employee salary"); }
inline QString codeNotFound() { return QStringLiteral("Employee code not found, please enter correct employee code"); }
inline QString alreadySaved() { return QStringLiteral("Employee salary already saved, so you can not enter again"); }
inline QString alreadySavedOnModify() { return QStringLiteral("Employee salary already saved, so you can not save again"); }
inline QString saved() { return QStringLiteral("Employee salary has saved successfully"); }
inline QString updated() { return QStringLiteral("Employee salary has updated successfully"); }
inline QString noDelete() { return QStringLiteral("Sorry, employee code can not be deleted due to data security."); }
inline QString noRowPicked() { return QStringLiteral("No employee is selected from the list, so nothing was updated"); }
inline QString badStatus() { return QStringLiteral("Status is not valid, please select ACTIVE or DEACTIVE"); }
} // namespace Msg

inline const QString kActive = QStringLiteral("ACTIVE");
inline const QString kDeactive = QStringLiteral("DEACTIVE");
inline QStringList statuses() { return {kActive, kDeactive}; }

// What the register screen holds when a command is given.
struct Entry
{
    QString name;
    QString code;               // mask text "NN-NN-NNN"
    QString salary;             // as typed
    QString inDate;             // mask text; the empty mask stores no date
    QString incrementDate;      // likewise
    QString status = kActive;
};

struct Employee
{
    qint64 srNo = 0;
    QString code;
    QString name;
    Money salary;
    QDate inDate;
    QDate incrementDate;
    QString status;
};

// The checks of the add and change commands, in the screen's order: name,
// code, salary, the code in the chart, then the dates and the status.
Outcome checkEntry(SessionConnection &db, const Entry &entry);
// Adds the employee; a second row for the same code is refused.
Outcome add(SessionConnection &db, const Entry &entry);
// Changes the row `srNo`; a code held by another row is refused, and so is
// a change with no row picked (`srNo` that matches none).
Outcome modify(SessionConnection &db, qint64 srNo, const Entry &entry);
// The delete command: the same checks, then always refused.
Outcome remove(SessionConnection &db, const Entry &entry);

// The register for the grid: SrNo, EmployeeName, Salary, InDate,
// IncrementDate, Status, by status then name.
QueryResult gridRows(SessionConnection &db);
std::optional<Employee> employee(SessionConnection &db, qint64 srNo);

} // namespace EmployeeRegister
