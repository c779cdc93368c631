#include "reports/ui/frmTrialBalance.h"

#include "foundation/ui/CommandGate.h"
#include "foundation/Session.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/ScreenServices.h"
#include "reports/LedgerStatements.h"
#include "reports/ui/frmViewReport.h"

#include <QButtonGroup>
#include <QGroupBox>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

frmTrialBalance::frmTrialBalance(QWidget *parent) : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmTrialBalance"));
    setTitle(QStringLiteral("TRIAL BALANCE"));

    auto *options = new QGroupBox(this);
    options->setObjectName(QStringLiteral("frOptions"));
    auto *box = new QVBoxLayout(options);
    auto *group = new QButtonGroup(this);
    auto option = [&](QRadioButton *&member, const char *name, const char *caption) {
        member = new QRadioButton(QString::fromLatin1(caption), options);
        member->setObjectName(QString::fromLatin1(name));
        group->addButton(member);
        box->addWidget(member);
        connect(member, &QRadioButton::toggled, this, &frmTrialBalance::optionChanged);
    };
    option(optBetweenTwoDates, "optBetweenTwoDates", "BETWEEN TWO DATES");
    option(optWithoutClosing, "optWithoutClosing", "UPTO DATE WITHOUT CLOSING");
    option(optWithoutContact, "optWithoutContact", "UPTO DATE WITHOUT CONTACT");
    addRow(QString(), options);
    mskDateFrom = addMaskedEdit(QStringLiteral("mskDateFrom"), QStringLiteral("DATE FROM:"), MaskedLineEdit::dateMask());
    mskDateTo = addMaskedEdit(QStringLiteral("mskDateTo"), QStringLiteral("DATE TO:"), MaskedLineEdit::dateMask());
    EnterToTab::attach(mskDateFrom);
    EnterToTab::attach(mskDateTo);

    cmdPrintTrialBalance = addButton(QStringLiteral("cmdPrintTrialBalance"), QStringLiteral("&PRINT"));
    cmdCancel = addButton(QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    packFields();
    m_gate = new CommandGate(cmdPrintTrialBalance, [this] { return check(); }, [this] { print(); });
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);

    optWithoutContact->setChecked(true);
    optionChanged();
}

void frmTrialBalance::onOpened()
{
    optWithoutContact->setChecked(true);
}

void frmTrialBalance::optionChanged()
{
    const bool dates = optBetweenTwoDates->isChecked();
    mskDateFrom->setEnabled(dates);
    mskDateTo->setEnabled(dates);
}

bool frmTrialBalance::check()
{
    if (!optBetweenTwoDates->isChecked())
        return true;
    return ValidateDate(mskDateFrom) && ValidateDate(mskDateTo);
}

void frmTrialBalance::print()
{
    using namespace LedgerStatements;
    cmdPrintTrialBalance->setEnabled(false);
    TrialBalanceKind kind = TrialBalanceKind::WithoutContact;
    Period p;
    if (optBetweenTwoDates->isChecked()) {
        kind = TrialBalanceKind::BetweenTwoDates;
        session().periodFrom = mskDateFrom->date();
        session().periodTo = mskDateTo->date();
        p = {session().periodFrom, session().periodTo, mskDateFrom->maskText(), mskDateTo->maskText()};
    } else if (optWithoutClosing->isChecked()) {
        kind = TrialBalanceKind::WithoutClosing;
    }
    Reports::showReport(this, trialBalance(kind, p));
    cmdPrintTrialBalance->setEnabled(true);
}
