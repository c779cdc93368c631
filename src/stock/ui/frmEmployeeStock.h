#pragma once

#include "stock/EmployeeStock.h"
#include "stock/ui/ConsumablesScreen.h"

class AccountPick;
class MaskedLineEdit;
class QComboBox;
class QLineEdit;
class QPushButton;
class QTableView;

// "EMPLOYEE STOCK": gives an employee units of an item, brand and type,
// drawn from the receipts oldest first. The list shows the receipts of
// the brand and type as they stand, so the draw can be seen.
class frmEmployeeStock : public ConsumablesScreen
{
    Q_OBJECT
public:
    explicit frmEmployeeStock(QWidget *parent = nullptr);
    // The menu's part: INK's brands, today's date.
    void startNew();
    void onOpened() override;

    MaskedLineEdit *mskDate = nullptr;
    MaskedLineEdit *mskPartyCode = nullptr;
    QComboBox *cmbPartyName = nullptr;
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
    EmployeeStock::IssueRequest request() const;
    void brandChanged();
    void showReceipts();
    bool check();
    void issue();

    AccountPick *m_pick = nullptr;
};
