#include "payroll/ui/frmEmployeeSalaryReport.h"

#include "foundation/Session.h"
#include "foundation/ui/CommandGate.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/ScreenServices.h"
#include "payroll/SalaryReports.h"
#include "reports/ui/frmViewReport.h"

#include <QLineEdit>
#include <QPushButton>

frmEmployeeSalaryReport::frmEmployeeSalaryReport(QWidget *parent) : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmEmployeeSalaryReport"));
    setTitle(QStringLiteral("EMPLOYEE SALARY"));
    setWindowTitle(QStringLiteral("EMPLOYEE SALARY"));
    txtVoucherNo = addLineEdit(QStringLiteral("txtVoucherNo"), QStringLiteral("VOUCHER #:"));
    txtVoucherNo->setMaximumWidth(140);
    DigitsOnly::attach(txtVoucherNo);
    mskDate = addMaskedEdit(QStringLiteral("mskDate"), QStringLiteral("DATE:"), MaskedLineEdit::dateMask());
    EnterToTab::attach(txtVoucherNo);
    EnterToTab::attach(mskDate);
    cmdEmployeeSalary = addButton(QStringLiteral("cmdEmployeeSalary"), QStringLiteral("&EMPLOYEE SALARY"));
    cmdCancel = addButton(QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    packFields();
    new CommandGate(cmdEmployeeSalary, [this] { return showAllowed(); }, [this] { showSheet(); });
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);
    mskDate->setDate(session().dateToday());
}

void frmEmployeeSalaryReport::onOpened()
{
    mskDate->setDate(session().dateToday());
    txtVoucherNo->setFocus();
}

bool frmEmployeeSalaryReport::showAllowed()
{
    if (const Outcome o = SalaryReports::checkSheetQuestion(txtVoucherNo->text()); !o)
        return refuse(o);
    return ValidateDate(mskDate);
}

void frmEmployeeSalaryReport::showSheet()
{
    // A number on the wrong date shows an empty sheet, without a word.
    cmdEmployeeSalary->setEnabled(false);
    Reports::showReport(this, SalaryReports::salarySheet(txtVoucherNo->text().trimmed().toLongLong(), mskDate->date()));
    cmdEmployeeSalary->setEnabled(true);
}
