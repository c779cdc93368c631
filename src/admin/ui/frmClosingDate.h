#pragma once

#include "foundation/ui/BaseScreen.h"

class CommandGate;
class MaskedLineEdit;
class QLabel;
class QPushButton;

// CLOSING DATE: the date up to which the books are closed. Opened only
// through the identification gate.
class frmClosingDate : public BaseScreen
{
    Q_OBJECT
public:
    explicit frmClosingDate(QWidget *parent = nullptr);

    void onOpened() override;

    QLabel *lblClosingDate = nullptr;
    QLabel *lblDate = nullptr;
    MaskedLineEdit *mskDate = nullptr;
    QPushButton *cmdClosingOkay = nullptr;
    QPushButton *cmdCancel = nullptr;

private:
    void save();

    CommandGate *m_gate = nullptr;
};
