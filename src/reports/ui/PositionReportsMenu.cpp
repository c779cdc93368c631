#include "foundation/ui/MenuRouter.h"
#include "reports/ui/frmComparisonReports.h"
#include "reports/ui/frmPositionReports.h"
#include "reports/ui/frmSingleDateReport.h"

// The party position, recovery, cash book and comparison entries.
void registerPositionReportsMenu(MenuRouter &router)
{
    router.on(QStringLiteral("mnuPartyPosition"), [](MdiHost &host) {
        host.showScreen<frmPartyPosition>(QStringLiteral("frmPartyPosition"));
    });
    router.on(QStringLiteral("mnuPartyPositionSingleDate"), [](MdiHost &host) {
        host.showScreen<frmSingleDateReport>(QStringLiteral("frmSingleDateReport"))->showPartyPositionForm();
    });
    router.on(QStringLiteral("mnuRecoveryReports"), [](MdiHost &host) {
        host.showScreen<frmRecoveryReports>(QStringLiteral("frmRecoveryReports"));
    });
    router.on(QStringLiteral("mnuCashBookBetweenTwoDates"), [](MdiHost &host) {
        host.showScreen<frmCashBook>(QStringLiteral("frmCashBook"));
    });
    router.on(QStringLiteral("mnuMonthlyExpenseReport"), [](MdiHost &host) {
        host.showScreen<frmComparisonReports>(QStringLiteral("frmComparisonReports"))
            ->showReport(MonthlyComparison::Kind::Expenses);
    });
    router.on(QStringLiteral("mnuMonthlyProfitAndLossReport"), [](MdiHost &host) {
        host.showScreen<frmComparisonReports>(QStringLiteral("frmComparisonReports"))
            ->showReport(MonthlyComparison::Kind::ProfitAndLoss);
    });
}
