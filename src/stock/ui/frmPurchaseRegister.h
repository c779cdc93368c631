#pragma once

#include "reports/ui/PeriodReportScreen.h"

// "PURCHASE REGISTER": the bills of a period.
class frmPurchaseRegister : public PeriodReportScreen
{
    Q_OBJECT
public:
    explicit frmPurchaseRegister(QWidget *parent = nullptr);

    QPushButton *cmdSearch = nullptr;

protected:
    std::optional<Reports::ReportRequest> request() override;
};
