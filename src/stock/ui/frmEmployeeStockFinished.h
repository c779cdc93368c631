#pragma once

#include "stock/EmployeeStock.h"
#include "stock/ui/EmployeeStockScreen.h"

class MaskedLineEdit;

// "EMPLOYEE STOCK FINISHED": units an employee has used up of what was
// issued to him. The list shows what the employee holds of the item.
class frmEmployeeStockFinished : public EmployeeStockScreen
{
    Q_OBJECT
public:
    explicit frmEmployeeStockFinished(QWidget *parent = nullptr);
    // The menu's part: the first employee, INK's brands held.
    void startNew();

    // The employee's code, driven by the name as on every screen.
    MaskedLineEdit *cmbPartyCode = nullptr;

protected:
    void itemChanged() override;

private:
    EmployeeStock::FinishRequest request() const;
    void brandChanged() override;
    void showList() override;
    bool checkRequest() override;
    void work() override;
};
