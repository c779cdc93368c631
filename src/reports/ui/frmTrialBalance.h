#pragma once

#include "foundation/ui/BaseScreen.h"

class CommandGate;
class MaskedLineEdit;
class QPushButton;
class QRadioButton;

// The three trial balances: of a period, and up to date with or without
// the parties' contact.
class frmTrialBalance : public BaseScreen
{
    Q_OBJECT
public:
    explicit frmTrialBalance(QWidget *parent = nullptr);

    void onOpened() override;

    QRadioButton *optBetweenTwoDates = nullptr;
    QRadioButton *optWithoutClosing = nullptr;
    QRadioButton *optWithoutContact = nullptr;
    MaskedLineEdit *mskDateFrom = nullptr;
    MaskedLineEdit *mskDateTo = nullptr;
    QPushButton *cmdPrintTrialBalance = nullptr;
    QPushButton *cmdCancel = nullptr;

private:
    void optionChanged();
    bool check();
    void print();

    CommandGate *m_gate = nullptr;
};
