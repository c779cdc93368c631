#pragma once

#include "stock/ui/ConsumablesScreen.h"

class AccountPick;
class MaskedLineEdit;
class QComboBox;
class QLineEdit;
class QPushButton;
class QTableView;

// "CONSUMABLE STOCK RECEIPT": a purchase of ink, plates, blankets or
// developer entered as a receipt, to be issued from later. A new brand or
// type is typed in its box. The list shows what is in hand of the item.
class frmStockReceipt : public ConsumablesScreen
{
    Q_OBJECT
public:
    explicit frmStockReceipt(QWidget *parent = nullptr);
    void startNew();
    void onOpened() override;

    Consumables::Receipt receipt() const;

    MaskedLineEdit *mskDate = nullptr;
    QComboBox *cmbBrandName = nullptr;
    QComboBox *cmbType = nullptr;
    QComboBox *cmbPartyName = nullptr;
    MaskedLineEdit *mskPartyCode = nullptr;
    QLineEdit *txtUnits = nullptr;
    QLineEdit *txtUnitPrice = nullptr;
    QLineEdit *txtAmount = nullptr;
    QPushButton *cmdSave = nullptr;
    QPushButton *cmdCancel = nullptr;
    QPushButton *cmdAddParty = nullptr;
    QTableView *dgStock = nullptr;

protected:
    void itemChanged() override;

private:
    void brandChanged();
    void showAmount();
    void showInHand();
    bool check();
    void save();

    AccountPick *m_pick = nullptr;
};
