#pragma once

#include "foundation/ui/BaseScreen.h"

class MaskedLineEdit;
class QLineEdit;
class QPushButton;

// "EMPLOYEE SALARY": prints one salary sheet, asked by number and date.
class frmEmployeeSalaryReport : public BaseScreen
{
    Q_OBJECT
public:
    explicit frmEmployeeSalaryReport(QWidget *parent = nullptr);
    // Today's date, the focus on the number.
    void onOpened() override;

    QLineEdit *txtVoucherNo = nullptr;
    MaskedLineEdit *mskDate = nullptr;
    QPushButton *cmdEmployeeSalary = nullptr;
    QPushButton *cmdCancel = nullptr;

private:
    bool showAllowed();
    void showSheet();
};
