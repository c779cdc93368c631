#pragma once

#include "foundation/ui/BaseScreen.h"

class QPushButton;
class MaskedLineEdit;

// DEBIT/CREDIT ACCOUNT: adds account codes to the debit/credit list and
// takes them off it.
class frmDBCRAccount : public BaseScreen
{
    Q_OBJECT
public:
    explicit frmDBCRAccount(QWidget *parent = nullptr);
    void onOpened() override;

    MaskedLineEdit *mskPartyCode = nullptr;
    QPushButton *cmdSave = nullptr;
    QPushButton *cmdDelete = nullptr;
    QPushButton *cmdCancel = nullptr;

private:
    void add();
    void remove();
};
