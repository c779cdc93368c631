#pragma once

#include "foundation/Money.h"
#include "foundation/Outcome.h"
#include "payroll/SalaryArithmetic.h"

#include <QDate>
#include <QString>
#include <QVector>
#include <optional>

class SessionConnection;
class QueryResult;

// The words of the salary sheet's refusals and confirmations.
namespace SalaryMessages {
inline const QString kNoVoucherNo = QStringLiteral("Voucher # is missing, please enter voucher #");
inline const QString kNoParty = QStringLiteral("Party name is missing, please select party name");
inline const QString kPartyNotFound = QStringLiteral("Party name not found, please enter correct party name");
inline const QString kNoSalary = QStringLiteral("Salary is missing, please enter employee salary");
inline const QString kAdded = QStringLiteral("Employee salary has added successfully");
inline const QString kModified = QStringLiteral("Employee salary has modified successfully");
inline const QString kDeleted = QStringLiteral("Employee salary has deleted successfully");
inline const QString kDeleteQuestion = QStringLiteral("Are you sure you want to delete this voucher");
inline const QString kNumberMissing = QStringLiteral("Please enter voucher #, empty field doesn't show any voucher");
inline const QString kTypeMissing = QStringLiteral("Voucher type is missing, please select voucher type");
inline const QString kNotFound = QStringLiteral("No voucher # found, please enter correct voucher #");
inline const QString kReportNoVoucherNo = QStringLiteral("Voucher # is missing, please enter voucher #.");
inline const QString kNumberOnOtherDate =
    QStringLiteral("Voucher # already exist, duplication is not allowed, please change the voucher #.");
inline const QString kNoRowPicked = QStringLiteral("No employee is selected from the list, so nothing was changed");
inline const QString kNothingDeleted = QStringLiteral("No employee is selected from the list, so nothing was deleted");
inline const QString kBadType = QStringLiteral("Voucher type is not valid, please select voucher type");
// Told when the proposed number of a new sheet was taken meanwhile.
QString numberMoved(qint64 from, qint64 to);
} // namespace SalaryMessages

// Where a salary sheet stands: type "ES", number and date together.
struct SalaryKey
{
    QString type = QStringLiteral("ES");
    qint64 number = 0;
    QDate date;
};

// The checks of the sheet's fields as typed, in the screen's order, with
// no database. The date and the closing date are checked between the
// number and the employee (SalarySheet::checkKey holds them again).
namespace SalaryRules {
Outcome checkNumber(const QString &voucherNoText);
// Name, code (not asked of a deletion), salary.
Outcome checkEmployeeFields(const QString &name, const QString &code, const QString &salary, bool needCode);
// The question of "MODIFY SALARY": number, date, type, then the date's
// shape.
Outcome checkSheetQuestion(const QString &numberText, const QString &dateMaskText, const QString &type);
} // namespace SalaryRules

// One employee's line of a sheet.
struct SalaryLine
{
    qint64 srNo = 0;
    QString employeeCode;
    QString employeeName;
    SalaryArithmetic::Figures figures;
};

// The monthly salary sheet (tblEmployeeSalary): one voucher of type ES a
// month, a line per employee, written line by line as the clerk adds,
// changes and deletes them. It writes nothing to the ledger. Each command
// is one transaction; each checks the number, the date against the
// closing date and the employee, whoever calls it. A database failure
// throws DbError with nothing written.
class SalarySheet
{
public:
    SalarySheet(SessionConnection &db, const QString &userName, const QDate &today);

    static bool isSheetType(const QString &type) { return type.trimmed() == QLatin1String("ES"); }
    static QString sheetType() { return QStringLiteral("ES"); }

    // The next sheet number: the largest the sheets hold, plus one.
    qint64 nextNumber();

    // The checks of a line command (the number, the type, the date and the
    // closing date), without the employee.
    Outcome checkKey(const SalaryKey &key);

    // Adds the line under `key`. With `proposed`, a number another
    // workstation took meanwhile for a sheet of its own moves on to the
    // next free one (`number` and `notice` say so); a typed number that
    // stands on another date is refused. The employee must be on the
    // register and active. Answers the voucher's total in `totalOut`.
    Outcome addLine(SalaryKey &key, const SalaryLine &line, bool proposed, std::optional<Money> *totalOut = nullptr);
    // Changes the line `line.srNo` of the sheet that stood under `original`
    // and moves the whole sheet to `key.date` when the date changed.
    Outcome changeLine(const SalaryKey &original, const SalaryKey &key, const SalaryLine &line,
                       std::optional<Money> *totalOut = nullptr);
    // Deletes the line `srNo` of the sheet under `key`.
    Outcome deleteLine(const SalaryKey &key, qint64 srNo, std::optional<Money> *totalOut = nullptr);
    // Deletes the whole sheet.
    Outcome deleteSheet(const SalaryKey &key);

    // A line for every active employee at the register's salary, under
    // `key` (a new sheet; proposed number). The month's sheet in one go.
    Outcome addMonth(SalaryKey &key);

    // Sum(Balance) of the sheet; nothing when it has no line.
    std::optional<Money> total(const SalaryKey &key);
    bool exists(const SalaryKey &key);
    // The lines for the grid: SrNo, EmployeeName, EmployeeSalary, OverTime,
    // Holidays, OverDays, OTAmount, TotalSalary, Advance, Balance.
    QueryResult gridRows(const SalaryKey &key);
    std::optional<SalaryLine> line(qint64 srNo, SalaryKey *keyOut = nullptr);

    // The active employees for the name list: EmployeeName, EmployeeCode.
    QueryResult activeEmployees();
    struct Employee
    {
        QString code;
        QDate incrementDate;
        Money salary;
        bool active = false;
    };
    std::optional<Employee> employeeNamed(const QString &name);

private:
    Outcome checkEmployee(const SalaryLine &line, bool mustBeActive);
    void insertLine(const SalaryKey &key, const SalaryLine &line);

    SessionConnection &m_db;
    QString m_user;
    QDate m_today;
};
