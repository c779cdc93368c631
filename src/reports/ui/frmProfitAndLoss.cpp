#include "reports/ui/frmProfitAndLoss.h"

#include "foundation/ui/CommandGate.h"
#include "foundation/Session.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/ScreenBuild.h"
#include "foundation/ui/ScreenServices.h"
#include "reports/LedgerStatements.h"
#include "reports/ui/frmViewReport.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

using namespace ScreenBuild;

namespace {

// A period panel's date: Enter moves on.
MaskedLineEdit *dateField(QWidget *panel, const QString &name, const QString &caption, int row)
{
    auto *f = masked(panel, name, MaskedLineEdit::dateMask());
    FieldGrid(qobject_cast<QGridLayout *>(panel->layout())).put(row, 0, caption, f);
    EnterToTab::attach(f);
    return f;
}

QRadioButton *optionRow(QWidget *panel, const QString &name, const QString &caption, int row)
{
    auto *o = option(panel, name, caption);
    qobject_cast<QGridLayout *>(panel->layout())->addWidget(o, row, 0, 1, 2);
    return o;
}

QFrame *panel(QWidget *parent, const QString &name)
{
    QFrame *f = frame(parent, name, true);
    new QGridLayout(f);
    return f;
}

} // namespace

frmProfitAndLoss::frmProfitAndLoss(QWidget *parent) : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmProfitAndLoss"));
    setTitle(QStringLiteral("PROFIT & LOSS"));

    // Profit and loss.
    frOuterProfitAndLoss = panel(this, QStringLiteral("frOuterProfitAndLoss"));
    lblProfitAndLoss = new QLabel(QStringLiteral("PROFIT/LOSS"), frOuterProfitAndLoss);
    lblProfitAndLoss->setObjectName(QStringLiteral("lblProfitAndLoss"));
    auto *g1 = qobject_cast<QGridLayout *>(frOuterProfitAndLoss->layout());
    g1->addWidget(lblProfitAndLoss, 0, 0, 1, 2);
    mskDateFrom = dateField(frOuterProfitAndLoss, QStringLiteral("mskDateFrom"), QStringLiteral("DATE FROM:"), 1);
    mskDateTo = dateField(frOuterProfitAndLoss, QStringLiteral("mskDateTo"), QStringLiteral("DATE TO:"), 2);
    optProfitAndLoss = optionRow(frOuterProfitAndLoss, QStringLiteral("optProfitAndLoss"), QStringLiteral("PROFIT & LOSS"), 3);
    optProfitAndLoss->setChecked(true);
    cmdProfitAndLoss = button(frOuterProfitAndLoss, QStringLiteral("cmdProfitAndLoss"), QStringLiteral("&PRINT"));
    cmdCancel = button(frOuterProfitAndLoss, QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    FieldGrid(g1).buttons(4, 0, {cmdProfitAndLoss, cmdCancel});

    // The creditors.
    frOuterCreditList = panel(this, QStringLiteral("frOuterCreditList"));
    auto *creditGroup = new QButtonGroup(this);
    optAllPayable = optionRow(frOuterCreditList, QStringLiteral("optAllPayable"), QStringLiteral("ALL PAYABLE"), 0);
    optCreditListTwoDates = optionRow(frOuterCreditList, QStringLiteral("optCreditListTwoDates"),
                                      QStringLiteral("CREDIT LIST BETWEEN TWO DATES"), 1);
    creditGroup->addButton(optAllPayable);
    creditGroup->addButton(optCreditListTwoDates);
    mskDateFromCreditList = dateField(frOuterCreditList, QStringLiteral("mskDateFromCreditList"), QStringLiteral("DATE FROM:"), 2);
    mskDateToCreditList = dateField(frOuterCreditList, QStringLiteral("mskDateToCreditList"), QStringLiteral("DATE TO:"), 3);
    cmdPrintCreditList = button(frOuterCreditList, QStringLiteral("cmdPrintCreditList"), QStringLiteral("&PRINT"));
    cmdCancelCreditList = button(frOuterCreditList, QStringLiteral("cmdCancelCreditList"), QStringLiteral("&CANCEL"));
    FieldGrid(qobject_cast<QGridLayout *>(frOuterCreditList->layout())).buttons(4, 0, {cmdPrintCreditList, cmdCancelCreditList});

    // The debtors.
    frOuterDebitList = panel(this, QStringLiteral("frOuterDebitList"));
    auto *debitGroup = new QButtonGroup(this);
    optAllReceivable = optionRow(frOuterDebitList, QStringLiteral("optAllReceivable"), QStringLiteral("ALL RECEIVABLE"), 0);
    optDebitListTwoDates = optionRow(frOuterDebitList, QStringLiteral("optDebitListTwoDates"),
                                     QStringLiteral("DEBIT LIST BETWEEN TWO DATES"), 1);
    debitGroup->addButton(optAllReceivable);
    debitGroup->addButton(optDebitListTwoDates);
    mskDateFromDebitList = dateField(frOuterDebitList, QStringLiteral("mskDateFromDebitList"), QStringLiteral("DATE FROM:"), 2);
    mskDateToDebitList = dateField(frOuterDebitList, QStringLiteral("mskDateToDebitList"), QStringLiteral("DATE TO:"), 3);
    cmdPrintDebitList = button(frOuterDebitList, QStringLiteral("cmdPrintDebitList"), QStringLiteral("&PRINT"));
    cmdCancelDebitList = button(frOuterDebitList, QStringLiteral("cmdCancelDebitList"), QStringLiteral("&CANCEL"));
    FieldGrid(qobject_cast<QGridLayout *>(frOuterDebitList->layout())).buttons(4, 0, {cmdPrintDebitList, cmdCancelDebitList});

    addRow(QString(), frOuterProfitAndLoss);
    addRow(QString(), frOuterCreditList);
    addRow(QString(), frOuterDebitList);
    packFields();
    for (QFrame *f : {frOuterProfitAndLoss, frOuterCreditList, frOuterDebitList})
        f->setMinimumWidth(420);
    showOnlyButtons({});
    buttonFrame()->hide(); // each frame has its own buttons

    for (QRadioButton *o : {optAllPayable, optCreditListTwoDates, optAllReceivable, optDebitListTwoDates})
        connect(o, &QRadioButton::toggled, this, &frmProfitAndLoss::listOptionChanged);
    optAllPayable->setChecked(true);
    optAllReceivable->setChecked(true);
    listOptionChanged();

    new CommandGate(cmdProfitAndLoss, [this] { return ValidateDate(mskDateFrom) && ValidateDate(mskDateTo); },
                    [this] { printProfitAndLoss(); });
    new CommandGate(cmdPrintCreditList,
                    [this] {
                        return !optCreditListTwoDates->isChecked()
                            || (ValidateDate(mskDateFromCreditList) && ValidateDate(mskDateToCreditList));
                    },
                    [this] { printList(true); });
    new CommandGate(cmdPrintDebitList,
                    [this] {
                        return !optDebitListTwoDates->isChecked()
                            || (ValidateDate(mskDateFromDebitList) && ValidateDate(mskDateToDebitList));
                    },
                    [this] { printList(false); });
    for (QPushButton *b : {cmdCancel, cmdCancelCreditList, cmdCancelDebitList})
        connect(b, &QPushButton::clicked, this, &BaseScreen::closeScreen);

    showFrame(Frame::ProfitAndLoss);
}

void frmProfitAndLoss::onOpened()
{
    if (!m_loaded) {
        m_loaded = true;
        loadDates();
    }
}

void frmProfitAndLoss::loadDates()
{
    // The period opens on the day after the closing date and ends today.
    runSafely(this, [this] {
        const auto first = LedgerStatements::firstOpenDate(session().db());
        if (!first) {
            MessageService::critical(this, QStringLiteral("Closing date is missing, please specify closing date"));
            return;
        }
        DateToMaskText(*first, mskDateFrom);
        DateToMaskText(session().dateToday(), mskDateTo);
    });
}

void frmProfitAndLoss::showFrame(Frame f)
{
    frOuterProfitAndLoss->hide();
    frOuterCreditList->hide();
    frOuterDebitList->hide();
    switch (f) {
    case Frame::ProfitAndLoss:
        setTitle(QStringLiteral("PROFIT & LOSS"));
        lblProfitAndLoss->setText(QStringLiteral("PROFIT/LOSS"));
        frOuterProfitAndLoss->show();
        mskDateFrom->setFocus();
        break;
    case Frame::CreditList:
        setTitle(QStringLiteral("CREDIT LIST"));
        frOuterCreditList->show();
        optAllPayable->setFocus();
        break;
    case Frame::DebitList:
        setTitle(QStringLiteral("DEBIT LIST"));
        frOuterDebitList->show();
        optAllReceivable->setFocus();
        break;
    }
}

void frmProfitAndLoss::listOptionChanged()
{
    const bool credit = optCreditListTwoDates->isChecked();
    mskDateFromCreditList->setEnabled(credit);
    mskDateToCreditList->setEnabled(credit);
    const bool debit = optDebitListTwoDates->isChecked();
    mskDateFromDebitList->setEnabled(debit);
    mskDateToDebitList->setEnabled(debit);
}

void frmProfitAndLoss::printProfitAndLoss()
{
    cmdProfitAndLoss->setEnabled(false);
    session().periodFrom = mskDateFrom->date();
    session().periodTo = mskDateTo->date();
    Reports::showReport(this, LedgerStatements::profitAndLoss({session().periodFrom, session().periodTo,
                                                               mskDateFrom->maskText(), mskDateTo->maskText()}));
    cmdProfitAndLoss->setEnabled(true);
}

void frmProfitAndLoss::printList(bool credit)
{
    using namespace LedgerStatements;
    QPushButton *button = credit ? cmdPrintCreditList : cmdPrintDebitList;
    QRadioButton *all = credit ? optAllPayable : optAllReceivable;
    QRadioButton *twoDates = credit ? optCreditListTwoDates : optDebitListTwoDates;
    MaskedLineEdit *from = credit ? mskDateFromCreditList : mskDateFromDebitList;
    MaskedLineEdit *to = credit ? mskDateToCreditList : mskDateToDebitList;
    button->setEnabled(false);
    all->setFocus();
    if (all->isChecked()) {
        Reports::showReport(this, credit ? allPayable() : allReceivable());
    } else if (twoDates->isChecked()) {
        session().periodFrom = from->date();
        session().periodTo = to->date();
        const Period p{session().periodFrom, session().periodTo, from->maskText(), to->maskText()};
        Reports::showReport(this, credit ? creditList(p) : debitList(p));
    }
    button->setEnabled(true);
    all->setFocus();
}
