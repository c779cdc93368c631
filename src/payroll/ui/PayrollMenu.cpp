#include "foundation/ui/MenuRouter.h"

#include "payroll/SalaryReports.h"
#include "payroll/ui/frmEmployeeSalary.h"
#include "payroll/ui/frmEmployeeSalaryReport.h"
#include "payroll/ui/frmSalary.h"
#include "reports/ui/frmViewReport.h"

#include <QMainWindow>

// The menu entries of this subsystem and the screens they open.
void registerPayrollMenu(MenuRouter &router)
{
    router.on(QStringLiteral("mnuPEmployeeMonthlySalary"), [](MdiHost &host) {
        host.showScreen<frmSalary>(QStringLiteral("frmSalary"))->startNew();
    });
    router.on(QStringLiteral("mnuEModifyMonthlySalary"), [](MdiHost &host) {
        host.showScreen<frmSalary>(QStringLiteral("frmSalary"))->startModify();
    });
    router.on(QStringLiteral("mnuUEmployeeSalary"), [](MdiHost &host) {
        host.showScreen<frmEmployeeSalary>(QStringLiteral("frmEmployeeSalary"))->startNew();
    });
    router.on(QStringLiteral("mnuPModifyEmployeeSalary"), [](MdiHost &host) {
        host.showScreen<frmEmployeeSalary>(QStringLiteral("frmEmployeeSalary"))->startModify();
    });
    router.on(QStringLiteral("mnuEmployeeList"), [](MdiHost &host) {
        Reports::showReport(host.mainWindow(), SalaryReports::employeeList());
    });
    router.on(QStringLiteral("mnuUViewEmployeeSalary"), [](MdiHost &host) {
        host.showScreen<frmEmployeeSalaryReport>(QStringLiteral("frmEmployeeSalaryReport"));
    });
}
