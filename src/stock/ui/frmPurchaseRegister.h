#pragma once

#include "foundation/ui/BaseScreen.h"

class MaskedLineEdit;
class QPushButton;

// "PURCHASE REGISTER": the bills of a period.
class frmPurchaseRegister : public BaseScreen
{
    Q_OBJECT
public:
    explicit frmPurchaseRegister(QWidget *parent = nullptr);

    // The period from the first open day to today.
    void onOpened() override;

    MaskedLineEdit *mskDateFrom = nullptr;
    MaskedLineEdit *mskDateTo = nullptr;
    QPushButton *cmdSearch = nullptr;
    QPushButton *cmdCancel = nullptr;

private:
    void search();
};
