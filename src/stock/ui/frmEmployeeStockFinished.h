#pragma once

#include "stock/EmployeeStock.h"
#include "stock/ui/ConsumablesScreen.h"

class AccountPick;
class MaskedLineEdit;
class QComboBox;
class QLineEdit;
class QPushButton;
class QTableView;

// "EMPLOYEE STOCK FINISHED": units an employee has used up of what was
// issued to him. The list shows what the employee holds of the item.
class frmEmployeeStockFinished : public ConsumablesScreen
{
    Q_OBJECT
public:
    explicit frmEmployeeStockFinished(QWidget *parent = nullptr);
    // The menu's part: the first employee, INK's brands held.
    void startNew();
    void onOpened() override;

    MaskedLineEdit *mskDate = nullptr;
    QComboBox *cmbPartyName = nullptr;
    // The employee's code, driven by the name as on every screen.
    MaskedLineEdit *cmbPartyCode = nullptr;
    QComboBox *cmbBrandName = nullptr;
    QComboBox *cmbType = nullptr;
    QLineEdit *txtUnits = nullptr;
    QPushButton *cmdInkStock = nullptr;
    QPushButton *cmdPlateStock = nullptr;
    QPushButton *cmdBlanketStock = nullptr;
    QPushButton *cmdDeveloperStock = nullptr;
    QPushButton *cmdCancel = nullptr;
    QTableView *dgStock = nullptr;

protected:
    void itemChanged() override;

private:
    EmployeeStock::FinishRequest request() const;
    void brandChanged();
    void showHeld();
    bool check();
    void finish();

    AccountPick *m_pick = nullptr;
};
