#pragma once

#include "foundation/ui/BaseScreen.h"

#include <QString>

class AccountPick;
class MaskedLineEdit;
class QComboBox;
class QLineEdit;
class QPushButton;
class QTableView;

// "CLOSING STOCK": brings a purchase or stock account to the value counted
// at the close, posting the difference against an adjustment account. The
// menu decides whether the screen enters, changes or removes a voucher.
class frmClosingStock : public BaseScreen
{
    Q_OBJECT
public:
    enum class Mode { Enter, Modify, Delete };

    explicit frmClosingStock(QWidget *parent = nullptr);

    void start(Mode mode);
    void onOpened() override;
    Mode mode() const { return m_mode; }

    QComboBox *cmbVoucherType = nullptr;
    QLineEdit *txtVoucherNo = nullptr;
    QLineEdit *txtRecordNo = nullptr;
    MaskedLineEdit *mskDate = nullptr;
    MaskedLineEdit *mskPurchaseCode = nullptr;
    QComboBox *cmbPurchaseName = nullptr;
    MaskedLineEdit *mskPartyCode = nullptr;
    QComboBox *cmbPartyName = nullptr;
    QLineEdit *txtBalance = nullptr;
    QLineEdit *txtClosingValue = nullptr;
    QLineEdit *txtAdjustmentValue = nullptr;
    QLineEdit *txtDrCr = nullptr;
    QLineEdit *txtDesc = nullptr;
    QComboBox *cmbCareOf = nullptr;
    QTableView *dg = nullptr;
    QPushButton *cmdNewVoucher = nullptr;
    QPushButton *cmdSave = nullptr;
    QPushButton *cmdModify = nullptr;
    QPushButton *cmdDelete = nullptr;
    QPushButton *cmdAddItem = nullptr;
    QPushButton *cmdAddParty = nullptr;

    // Takes the voucher of this row of the list (what a click does).
    void loadVoucher(int row);

private:
    void buildFields();
    void wireCommands();
    void loadLists();
    void proposeNumbers();
    void newVoucher();
    void showBalance();
    void showAdjustment();
    void loadGrid();
    bool allowed();
    void runCommand(Mode command);

    Mode m_mode = Mode::Enter;
    AccountPick *m_stock = nullptr;
    AccountPick *m_adjust = nullptr;
    QString m_proposedNo;
    qint64 m_loadedNo = 0; // the voucher taken from the list, whose rows the balance leaves out
};
