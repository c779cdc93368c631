#include "reports/ui/frmComparisonReports.h"

#include "foundation/Session.h"
#include "foundation/ui/CommandGate.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/ScreenServices.h"
#include "reports/ui/frmViewReport.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>

frmComparisonReports::frmComparisonReports(QWidget *parent) : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmComparisonReports"));
    lblReport = new QLabel(this);
    lblReport->setObjectName(QStringLiteral("lblReport"));
    addRow(QString(), lblReport);
    mskDate = addMaskedEdit(QStringLiteral("mskDate"), QStringLiteral("REPORT YEAR :"), MaskedLineEdit::yearMask());
    EnterToTab::attach(mskDate);
    cmdMonthlyExpenseReport = addButton(QStringLiteral("cmdMonthlyExpenseReport"), QStringLiteral("&PRINT"));
    cmdMonthlyProfitAndLossReport = addButton(QStringLiteral("cmdMonthlyProfitAndLossReport"), QStringLiteral("&PRINT"));
    cmdCancel = addButton(QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    packFields();
    using Kind = MonthlyComparison::Kind;
    m_expenseGate = new CommandGate(cmdMonthlyExpenseReport, [this] { return ValidateYear(mskDate); },
                                    [this] { print(Kind::Expenses, cmdMonthlyExpenseReport); });
    m_profitGate = new CommandGate(cmdMonthlyProfitAndLossReport, [this] { return ValidateYear(mskDate); },
                                   [this] { print(Kind::ProfitAndLoss, cmdMonthlyProfitAndLossReport); });
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);
    mskDate->setMaskText(QString::number(session().dateToday().year()));
}

void frmComparisonReports::showReport(MonthlyComparison::Kind kind)
{
    if (kind == MonthlyComparison::Kind::Expenses) {
        setTitle(QStringLiteral("MONTHLY EXPENSES COMPARISON REPORT"));
        lblReport->setText(QStringLiteral("EXPENSE COMP"));
        showOnlyButtons({QStringLiteral("cmdMonthlyExpenseReport"), QStringLiteral("cmdCancel")});
    } else {
        setTitle(QStringLiteral("MONTHLY PROFIT & LOSS COMPARISON REPORT"));
        lblReport->setText(QStringLiteral("PROFIT COMP"));
        showOnlyButtons({QStringLiteral("cmdMonthlyProfitAndLossReport"), QStringLiteral("cmdCancel")});
    }
    mskDate->setFocus();
}

void frmComparisonReports::print(MonthlyComparison::Kind kind, QPushButton *button)
{
    button->setEnabled(false);
    mskDate->setFocus();
    const int year = mskDate->typedText().toInt();
    bool staged = false;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    runSafely(this, [&] {
        MonthlyComparison::stage(session().db(), kind, year);
        staged = true;
    });
    QApplication::restoreOverrideCursor();
    if (staged)
        Reports::showReport(this, MonthlyComparison::request(kind, year));
    button->setEnabled(true);
}
