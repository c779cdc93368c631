#pragma once

#include "foundation/Outcome.h"
#include "reports/ReportFrame.h"

#include <QDate>
#include <QString>

// The payroll's printed reports: one salary sheet, and the register.
namespace SalaryReports {

// "EMPLOYEE SALARY REPORT": the sheet of this number on this date; both
// must match, as a number alone names no sheet.
Reports::ReportRequest salarySheet(qint64 number, const QDate &date);
// "EMPLOYEE LIST": the whole register.
Reports::ReportRequest employeeList();

// The check of the salary report's button: a number first.
Outcome checkSheetQuestion(const QString &numberText);

} // namespace SalaryReports
