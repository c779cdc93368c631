#pragma once

#include "foundation/ui/BaseScreen.h"
#include "reports/PositionReports.h"

class CommandGate;
class MaskedLineEdit;
class QLabel;
class QPushButton;

// The monthly comparisons of one year: the expenses account by account,
// or the month's profit and loss. The menu entry sets which.
class frmComparisonReports : public BaseScreen
{
    Q_OBJECT
public:
    explicit frmComparisonReports(QWidget *parent = nullptr);

    // The caption, lblReport and the one button of the chosen report.
    void showReport(MonthlyComparison::Kind kind);

    MaskedLineEdit *mskDate = nullptr;
    QLabel *lblReport = nullptr;
    QPushButton *cmdMonthlyExpenseReport = nullptr;
    QPushButton *cmdMonthlyProfitAndLossReport = nullptr;
    QPushButton *cmdCancel = nullptr;

private:
    void print(MonthlyComparison::Kind kind, QPushButton *button);

    CommandGate *m_expenseGate = nullptr;
    CommandGate *m_profitGate = nullptr;
};
