#pragma once

#include "admin/EndYear.h"
#include "admin/NewYear.h"
#include "foundation/ui/BaseScreen.h"

#include <QMap>

class CommandGate;
class MaskedLineEdit;
class QLabel;
class QProgressBar;
class QCheckBox;
class QLineEdit;
class QPushButton;
class QTableView;

// END YEAR PROCESSING: the period to keep, and a button for each step that
// cuts the year down to it. Opened only through the identification gate.
class frmEndYearProcessing : public BaseScreen
{
    Q_OBJECT
public:
    explicit frmEndYearProcessing(QWidget *parent = nullptr);

    void onOpened() override;

    MaskedLineEdit *mskDateFrom = nullptr;
    MaskedLineEdit *mskDateTo = nullptr;
    QLabel *lblLoading = nullptr;
    QProgressBar *pgbEndYear = nullptr;
    QPushButton *cmdAccounts = nullptr;
    QPushButton *cmdProfitAndLoss = nullptr;
    QPushButton *cmdSale = nullptr;
    QPushButton *cmdStock = nullptr;
    QPushButton *cmdEmployeeStock = nullptr;
    QPushButton *cmdEmployeeSalary = nullptr;
    QPushButton *cmdPostDateCheque = nullptr;
    QPushButton *cmdDeliveryChallan = nullptr;
    QPushButton *cmdPurchaseOrder = nullptr;
    QPushButton *cmdPurchaseStock = nullptr;
    QPushButton *cmdOtherServices = nullptr;
    QPushButton *cmdCancel = nullptr;
    // The next year: its name, whether the result goes to 20-01-001, the
    // button, and the comparison of closing and opening balances.
    QLineEdit *txtNewYear = nullptr;
    QCheckBox *chkProfitAndLoss = nullptr;
    QPushButton *cmdNewYear = nullptr;
    QTableView *dgCarry = nullptr;

    QPushButton *stepButton(EndYear::Step step) const { return m_buttons.value(step); }

private:
    bool checkPeriod();
    void runStep(EndYear::Step step);
    void showProgress(int value, int maximum);
    // Runs `work` (which sets `out`) with the bar showing and `button`
    // off; true when it ran and `out` is no refusal (a refusal is said).
    bool runWithBar(QPushButton *button, const Outcome &out, const std::function<void()> &work);
    bool checkNewYear();
    void makeNewYear();
    void showCarry(const NewYear::Result &result);

    QMap<EndYear::Step, QPushButton *> m_buttons;
};
