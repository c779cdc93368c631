#pragma once

#include "foundation/ui/BaseScreen.h"

class CommandGate;
class MaskedLineEdit;
class QPushButton;

// A report up to one date. In its "BALANCE SHEET" form it prints the
// balance sheet up to the date; the party position form (cmdSearch) is
// another screen's use of it.
class frmSingleDateReport : public BaseScreen
{
    Q_OBJECT
public:
    explicit frmSingleDateReport(QWidget *parent = nullptr);

    // Title "BALANCE SHEET", cmdBalanceSheet shown and cmdSearch hidden.
    void showBalanceSheetForm();
    // Title "PARTY POSITION", cmdSearch shown and cmdBalanceSheet hidden:
    // the parties' balances up to the date.
    void showPartyPositionForm();

    MaskedLineEdit *mskDate = nullptr;
    QPushButton *cmdBalanceSheet = nullptr;
    QPushButton *cmdSearch = nullptr;
    QPushButton *cmdCancel = nullptr;

private:
    void printBalanceSheet();
    void printPartyPosition();

    CommandGate *m_gate = nullptr;
    CommandGate *m_searchGate = nullptr;
};
