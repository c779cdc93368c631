#pragma once

#include "foundation/ui/BaseScreen.h"
#include "payroll/SalarySheet.h"

#include <QDate>

class AccountPick;
class MaskedLineEdit;
class QComboBox;
class QFrame;
class QLineEdit;
class QPushButton;
class QTableView;
class VoucherFinder;

// "EMPLOYEE SALARY": the monthly salary sheet. The clerk picks each active
// employee in turn, types the overtime hours, the days of leave and the
// advance; the sheet works out the overtime days and amount, the total and
// the balance, and each line is written as it is added, changed or
// deleted. "MODIFY SALARY" asks for a sheet first (type, number, date).
class frmEmployeeSalary : public BaseScreen
{
    Q_OBJECT
public:
    enum class Mode { New, Modify };

    explicit frmEmployeeSalary(QWidget *parent = nullptr);

    // A new sheet: today's date, the next number, an empty list.
    void startNew();
    // The question panel, today's date in it.
    void startModify();
    // The active employees, fresh.
    void onOpened() override;

    Mode mode() const { return m_mode; }
    qint64 selectedSalaryRow() const { return m_selectedRow; }
    SalaryKey key() const;
    // Fills the worked-out fields from the typed ones (empty ones become 0).
    void workOutFigures();

    QFrame *frOuter = nullptr;
    QComboBox *cmbVoucherType = nullptr;
    QLineEdit *txtVoucherNo = nullptr;
    MaskedLineEdit *mskDate = nullptr;
    QComboBox *cmbPartyName = nullptr;
    MaskedLineEdit *txtPartyCode = nullptr;
    MaskedLineEdit *mskIncrementDate = nullptr;
    QLineEdit *txtSalary = nullptr;
    QLineEdit *txtTime = nullptr;
    QLineEdit *txtHoliday = nullptr;
    QLineEdit *txtDay = nullptr;
    QLineEdit *txtOTAmount = nullptr;
    QLineEdit *txtTotalSalary = nullptr;
    QLineEdit *txtAdvance = nullptr;
    QLineEdit *txtBalance = nullptr;
    QLineEdit *txtTotal = nullptr;
    QTableView *dgVoucher = nullptr;
    QPushButton *cmdNew = nullptr;
    QPushButton *cmdModify = nullptr;
    QPushButton *cmdDelete = nullptr;
    QPushButton *cmdDeleteVoucher = nullptr;
    QPushButton *cmdPrint = nullptr;

    VoucherFinder *frOuterVoucherNo = nullptr;
    QComboBox *cmbModifyVoucherType = nullptr;
    QLineEdit *txtShowVoucherNo = nullptr;
    MaskedLineEdit *mskDateModifyVoucher = nullptr;
    QPushButton *cmdVoucherNoOkay = nullptr;
    QPushButton *cmdVoucherNoCancel = nullptr;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildSheet();
    void wireCommands();
    void proposeNumber();
    void employeePicked();

    enum class Command { Add, Change, Delete };
    bool lineAllowed(Command command);
    bool passes(const Outcome &check); // true, or the refusal shown
    SalaryLine currentLine() const;
    void addLine();
    void changeLine();
    void deleteLine();
    void deleteSheet();
    void printSheet();
    void openSheet();
    void loadLine(int row);
    void afterLine(const Outcome &out, const std::optional<Money> &total);
    void clearFigures();
    void showTotal(const std::optional<Money> &total);
    void rebindGrid();
    void showSheet(bool sheet);

    Mode m_mode = Mode::New;
    AccountPick *m_pick = nullptr;
    qint64 m_selectedRow = 0;   // the line picked from the list
    QDate m_selectedDate;       // the date of the sheet it stood on
    QString m_proposedNo;       // the number proposed for a new sheet
    bool m_quiet = false;       // set while the screen fills its own fields
};
