#include "payroll/SalaryReports.h"

#include "payroll/SalarySheet.h"

namespace SalaryReports {

using Reports::ReportCondition;
using Reports::ReportRequest;

ReportRequest salarySheet(qint64 number, const QDate &date)
{
    ReportRequest r;
    r.design = QStringLiteral("crEmployeeSalary");
    r.title = QStringLiteral("EMPLOYEE SALARY REPORT");
    r.conditions << ReportCondition::equal(QStringLiteral("VDate"), date)
                 << ReportCondition::equal(QStringLiteral("VoucherNo"), number);
    return r;
}

ReportRequest employeeList()
{
    ReportRequest r;
    r.design = QStringLiteral("crEmployeeList");
    r.title = QStringLiteral("EMPLOYEE LIST");
    return r;
}

Outcome checkSheetQuestion(const QString &numberText)
{
    if (numberText.trimmed().isEmpty())
        return Outcome::refusal(SalaryMessages::kReportNoVoucherNo, QStringLiteral("txtVoucherNo"));
    return Outcome::passed();
}

} // namespace SalaryReports
