#pragma once

#include "stock/ui/ConsumablesScreen.h"

class AccountPick;
class MaskedLineEdit;
class QComboBox;
class QPushButton;
class QTableView;

// "VIEW STOCK": what an employee was given of an item over a period, what
// he has used and what he still holds.
class frmStockSearch : public ConsumablesScreen
{
    Q_OBJECT
public:
    explicit frmStockSearch(QWidget *parent = nullptr);
    // The menu's part: the employee panel, the first account shown.
    void startEmployeeStock();
    void onOpened() override;

    QFrame *frOuterStock = nullptr;
    QComboBox *cmbPartyName = nullptr;
    MaskedLineEdit *cmbPartyCode = nullptr;
    MaskedLineEdit *mskDateFromEmployee = nullptr;
    MaskedLineEdit *mskDateToEmployee = nullptr;
    QPushButton *cmdInkStock = nullptr;
    QPushButton *cmdPlateStock = nullptr;
    QPushButton *cmdBlanketStock = nullptr;
    QPushButton *cmdDeveloperStock = nullptr;
    QPushButton *cmdCancel = nullptr;
    QTableView *dgStock = nullptr;

private:
    bool check();
    void showHeld();

    AccountPick *m_pick = nullptr;
};
