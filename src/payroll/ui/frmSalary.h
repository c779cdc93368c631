#pragma once

#include "foundation/ui/BaseScreen.h"
#include "payroll/EmployeeRegister.h"

class AccountPick;
class MaskedLineEdit;
class QComboBox;
class QLineEdit;
class QPushButton;
class QTableView;

// "EMPLOYEE SALARY": the employee register. Each employee is an account of
// the chart, picked by name or code, with the basic salary, the day of
// joining, the last increment and whether active. The menu opens it to add
// employees or to change them (a row picked from the list).
class frmSalary : public BaseScreen
{
    Q_OBJECT
public:
    enum class Mode { New, Modify };

    explicit frmSalary(QWidget *parent = nullptr);

    // Adding employees: NEW and CANCEL.
    void startNew();
    // Changing them: MODIFY, DELETE and CANCEL.
    void startModify();
    // The account list and the register, fresh.
    void onOpened() override;

    Mode mode() const { return m_mode; }
    qint64 selectedEmployeeRow() const { return m_selectedRow; }

    QComboBox *cmbPartyName = nullptr;
    MaskedLineEdit *mskPartyCode = nullptr;
    QLineEdit *txtSalary = nullptr;
    MaskedLineEdit *mskInDate = nullptr;
    MaskedLineEdit *mskIncrementDate = nullptr;
    QComboBox *cmbStatus = nullptr;
    QTableView *dgVoucher = nullptr;
    QPushButton *cmdNew = nullptr;
    QPushButton *cmdModify = nullptr;
    QPushButton *cmdDelete = nullptr;
    QPushButton *cmdCancel = nullptr;

private:
    EmployeeRegister::Entry entry() const;
    bool entryAllowed();
    void addEmployee();
    void modifyEmployee();
    void deleteEmployee();
    void afterWrite(const Outcome &out);
    void loadRow(int row);
    void clearFields();
    void reloadGrid();

    Mode m_mode = Mode::New;
    AccountPick *m_pick = nullptr;
    qint64 m_selectedRow = 0;
};
