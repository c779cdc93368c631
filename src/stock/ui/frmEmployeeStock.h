#pragma once

#include "stock/EmployeeStock.h"
#include "stock/ui/EmployeeStockScreen.h"

class MaskedLineEdit;

// "EMPLOYEE STOCK": gives an employee units of an item, brand and type,
// drawn from the receipts oldest first. The list shows the receipts of
// the brand and type as they stand, so the draw can be seen.
class frmEmployeeStock : public EmployeeStockScreen
{
    Q_OBJECT
public:
    explicit frmEmployeeStock(QWidget *parent = nullptr);
    // The menu's part: INK's brands, today's date.
    void startNew();

    MaskedLineEdit *mskPartyCode = nullptr;

protected:
    void itemChanged() override;

private:
    EmployeeStock::IssueRequest request() const;
    void brandChanged() override;
    void showList() override;
    bool checkRequest() override;
    void work() override;
};
