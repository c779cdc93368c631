#include "reports/ui/frmProfitAndLoss.h"

#include "foundation/ui/CommandGate.h"
#include "foundation/Session.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MessageService.h"
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

namespace {

MaskedLineEdit *dateField(const char *name, const char *caption, QGridLayout *grid, int row, QWidget *parent)
{
    auto *f = new MaskedLineEdit(MaskedLineEdit::dateMask(), parent);
    f->setObjectName(QString::fromLatin1(name));
    auto *l = new QLabel(QString::fromLatin1(caption), parent);
    l->setBuddy(f);
    grid->addWidget(l, row, 0, Qt::AlignRight);
    grid->addWidget(f, row, 1);
    EnterToTab::attach(f);
    return f;
}

QRadioButton *optionButton(const char *name, const char *caption, QGridLayout *grid, int row, QWidget *parent)
{
    auto *o = new QRadioButton(QString::fromLatin1(caption), parent);
    o->setObjectName(QString::fromLatin1(name));
    grid->addWidget(o, row, 0, 1, 2);
    return o;
}

QPushButton *frameButton(const char *name, const char *caption, QHBoxLayout *row, QWidget *parent)
{
    auto *b = new QPushButton(QString::fromLatin1(caption), parent);
    b->setObjectName(QString::fromLatin1(name));
    row->addWidget(b);
    return b;
}

QGroupBox *frame(const char *name, QWidget *parent)
{
    auto *f = new QGroupBox(parent);
    f->setObjectName(QString::fromLatin1(name));
    return f;
}

} // namespace

frmProfitAndLoss::frmProfitAndLoss(QWidget *parent) : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmProfitAndLoss"));
    setTitle(QStringLiteral("PROFIT & LOSS"));

    // Profit and loss.
    frOuterProfitAndLoss = frame("frOuterProfitAndLoss", this);
    auto *g1 = new QGridLayout(frOuterProfitAndLoss);
    lblProfitAndLoss = new QLabel(QStringLiteral("PROFIT/LOSS"), frOuterProfitAndLoss);
    lblProfitAndLoss->setObjectName(QStringLiteral("lblProfitAndLoss"));
    g1->addWidget(lblProfitAndLoss, 0, 0, 1, 2);
    mskDateFrom = dateField("mskDateFrom", "DATE FROM:", g1, 1, frOuterProfitAndLoss);
    mskDateTo = dateField("mskDateTo", "DATE TO:", g1, 2, frOuterProfitAndLoss);
    optProfitAndLoss = optionButton("optProfitAndLoss", "PROFIT & LOSS", g1, 3, frOuterProfitAndLoss);
    optProfitAndLoss->setChecked(true);
    auto *b1 = new QHBoxLayout;
    b1->addStretch(1);
    cmdProfitAndLoss = frameButton("cmdProfitAndLoss", "&PRINT", b1, frOuterProfitAndLoss);
    cmdCancel = frameButton("cmdCancel", "&CANCEL", b1, frOuterProfitAndLoss);
    g1->addLayout(b1, 4, 0, 1, 2);

    // The creditors.
    frOuterCreditList = frame("frOuterCreditList", this);
    auto *g2 = new QGridLayout(frOuterCreditList);
    auto *creditGroup = new QButtonGroup(this);
    optAllPayable = optionButton("optAllPayable", "ALL PAYABLE", g2, 0, frOuterCreditList);
    optCreditListTwoDates = optionButton("optCreditListTwoDates", "CREDIT LIST BETWEEN TWO DATES", g2, 1, frOuterCreditList);
    creditGroup->addButton(optAllPayable);
    creditGroup->addButton(optCreditListTwoDates);
    mskDateFromCreditList = dateField("mskDateFromCreditList", "DATE FROM:", g2, 2, frOuterCreditList);
    mskDateToCreditList = dateField("mskDateToCreditList", "DATE TO:", g2, 3, frOuterCreditList);
    auto *b2 = new QHBoxLayout;
    b2->addStretch(1);
    cmdPrintCreditList = frameButton("cmdPrintCreditList", "&PRINT", b2, frOuterCreditList);
    cmdCancelCreditList = frameButton("cmdCancelCreditList", "&CANCEL", b2, frOuterCreditList);
    g2->addLayout(b2, 4, 0, 1, 2);

    // The debtors.
    frOuterDebitList = frame("frOuterDebitList", this);
    auto *g3 = new QGridLayout(frOuterDebitList);
    auto *debitGroup = new QButtonGroup(this);
    optAllReceivable = optionButton("optAllReceivable", "ALL RECEIVABLE", g3, 0, frOuterDebitList);
    optDebitListTwoDates = optionButton("optDebitListTwoDates", "DEBIT LIST BETWEEN TWO DATES", g3, 1, frOuterDebitList);
    debitGroup->addButton(optAllReceivable);
    debitGroup->addButton(optDebitListTwoDates);
    mskDateFromDebitList = dateField("mskDateFromDebitList", "DATE FROM:", g3, 2, frOuterDebitList);
    mskDateToDebitList = dateField("mskDateToDebitList", "DATE TO:", g3, 3, frOuterDebitList);
    auto *b3 = new QHBoxLayout;
    b3->addStretch(1);
    cmdPrintDebitList = frameButton("cmdPrintDebitList", "&PRINT", b3, frOuterDebitList);
    cmdCancelDebitList = frameButton("cmdCancelDebitList", "&CANCEL", b3, frOuterDebitList);
    g3->addLayout(b3, 4, 0, 1, 2);

    addRow(QString(), frOuterProfitAndLoss);
    addRow(QString(), frOuterCreditList);
    addRow(QString(), frOuterDebitList);
    packFields();
    for (QGroupBox *f : {frOuterProfitAndLoss, frOuterCreditList, frOuterDebitList})
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
