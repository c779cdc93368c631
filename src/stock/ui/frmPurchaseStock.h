#pragma once

#include "foundation/ui/BaseScreen.h"
#include "stock/PurchaseStockRules.h"

#include <QString>

class AccountPick;
class MaskedLineEdit;
class QComboBox;
class QLineEdit;
class QPushButton;
class QTableView;

// "PURCHASE STOCK": a supplier's bill, typed and saved line by line. Each
// line goes into the stock lines at once and the bill's three ledger rows
// are written anew from its lines in the same transaction. One screen for
// entering, changing and removing lines; the menu decides which of the
// three commands shows.
class frmStock : public BaseScreen
{
    Q_OBJECT
public:
    enum class Mode { Enter, Modify, Delete };

    explicit frmStock(QWidget *parent = nullptr);

    // The menu's entries: the command that shows and a fresh bill.
    void start(Mode mode);
    // Window activation: the account lists, fresh.
    void onOpened() override;
    Mode mode() const { return m_mode; }

    QComboBox *cmbVoucherType = nullptr;
    QLineEdit *txtVoucherNo = nullptr;
    QLineEdit *txtRecordNo = nullptr;
    QLineEdit *txtBillNo = nullptr;
    MaskedLineEdit *mskDate = nullptr;
    MaskedLineEdit *mskPartyCode = nullptr;
    QComboBox *cmbPartyName = nullptr;
    QComboBox *cmbCareOf = nullptr;
    MaskedLineEdit *mskPurchaseCode = nullptr;
    QComboBox *cmbPurchaseName = nullptr;
    QLineEdit *txtItemDesc = nullptr;
    QLineEdit *txtWeight = nullptr;
    QLineEdit *txtQuantity = nullptr;
    QLineEdit *txtUnitType = nullptr;
    QLineEdit *txtUnitRate = nullptr;
    QLineEdit *txtAmount = nullptr;
    QLineEdit *txtFreight = nullptr;
    QLineEdit *txtSaleTax = nullptr;
    QLineEdit *txtSaleTaxAmount = nullptr;
    QLineEdit *txtTotal = nullptr;
    QLineEdit *txtNetAmount = nullptr;
    QTableView *dg = nullptr;
    QPushButton *cmdNewVoucher = nullptr;
    QPushButton *cmdSave = nullptr;
    QPushButton *cmdModify = nullptr;
    QPushButton *cmdDelete = nullptr;
    QPushButton *cmdAddItem = nullptr;
    QPushButton *cmdAddParty = nullptr;

    // Takes the line of this row of the list (what a click does).
    void loadLine(int row);

private:
    void buildFields();
    void wireCommands();
    void loadLists();

    PurchaseStock::Header header() const;
    PurchaseStock::Line currentLine() const;
    bool allowed(PurchaseStock::Command command);
    void saveLine();
    void modifyLine();
    void deleteLine();
    void afterCommand(const Outcome &out);
    void newVoucher();

    void proposeNumbers();
    void showLineAmount();
    // Totals of the voucher's stored lines with the freight and tax typed.
    void recalcTotals();
    void loadGrid();

    Mode m_mode = Mode::Enter;
    AccountPick *m_party = nullptr;
    AccountPick *m_purchase = nullptr;
    QString m_proposedNo;          // the number the screen last proposed
    bool m_voucherStarted = false; // lines of this voucher are saved or loaded
};
