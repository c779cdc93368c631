#include "reports/ui/frmSingleDateReport.h"

#include "foundation/ui/CommandGate.h"
#include "foundation/Session.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/ScreenServices.h"
#include "reports/LedgerStatements.h"
#include "reports/PositionReports.h"
#include "reports/ui/frmViewReport.h"

#include <QPushButton>

frmSingleDateReport::frmSingleDateReport(QWidget *parent) : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmSingleDateReport"));
    mskDate = addMaskedEdit(QStringLiteral("mskDate"), QStringLiteral("DATE:"), MaskedLineEdit::dateMask());
    EnterToTab::attach(mskDate);
    cmdBalanceSheet = addButton(QStringLiteral("cmdBalanceSheet"), QStringLiteral("&BALANCE SHEET"));
    cmdSearch = addButton(QStringLiteral("cmdSearch"), QStringLiteral("&SEARCH"));
    cmdCancel = addButton(QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    packFields();
    // A date that names no day would print the sheet of another period.
    m_gate = new CommandGate(cmdBalanceSheet, [this] { return ValidateDate(mskDate); }, [this] { printBalanceSheet(); });
    m_searchGate = new CommandGate(cmdSearch, [this] { return ValidateDate(mskDate); }, [this] { printPartyPosition(); });
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);
    DateToMaskText(session().dateToday(), mskDate);
}

void frmSingleDateReport::showBalanceSheetForm()
{
    setTitle(QStringLiteral("BALANCE SHEET"));
    showOnlyButtons({QStringLiteral("cmdBalanceSheet"), QStringLiteral("cmdCancel")});
    mskDate->setFocus();
}

void frmSingleDateReport::printBalanceSheet()
{
    cmdBalanceSheet->setEnabled(false);
    mskDate->setFocus();
    session().periodTo = mskDate->date();
    Reports::showReport(this, LedgerStatements::balanceSheetUpto(session().periodTo, mskDate->maskText()));
    cmdBalanceSheet->setEnabled(true);
    mskDate->setFocus();
}

void frmSingleDateReport::showPartyPositionForm()
{
    setTitle(QStringLiteral("PARTY POSITION"));
    showOnlyButtons({QStringLiteral("cmdSearch"), QStringLiteral("cmdCancel")});
    mskDate->setFocus();
}

void frmSingleDateReport::printPartyPosition()
{
    cmdSearch->setEnabled(false);
    session().periodTo = mskDate->date();
    Reports::showReport(this, PositionReports::partyPositionSingleDate(session().periodTo, mskDate->maskText()));
    cmdSearch->setEnabled(true);
    mskDate->setFocus();
}
