#pragma once

#include "foundation/ui/BaseScreen.h"
#include "vouchers/PostDatedCheque.h"

class AccountPick;
class MaskedLineEdit;
class QComboBox;
class QLineEdit;
class QPushButton;
class QTableView;

// "POST DATED CHEQUE": cheques received (or issued) with a date ahead are
// entered here; the modify screen changes or deletes one by its number.
// A cheque writes nothing into the ledger: the voucher that clears it
// makes it POSTED, a bounce BOUNCED (see the due list).
class frmPostDatedCheque : public BaseScreen
{
    Q_OBJECT
public:
    enum class Mode { New, Modify };

    explicit frmPostDatedCheque(QWidget *parent = nullptr);

    void startNew();
    void startModify();
    // Window activation: the account and care-of lists, fresh.
    void onOpened() override;
    Mode mode() const { return m_mode; }

    QLineEdit *txtVoucherType = nullptr;
    QLineEdit *txtVoucherNo = nullptr;
    QComboBox *cmbPartyName = nullptr;
    MaskedLineEdit *mskPartyCode = nullptr;
    MaskedLineEdit *mskDate = nullptr;
    MaskedLineEdit *mskChequeDate = nullptr;
    QComboBox *cmbChequeKind = nullptr;
    QLineEdit *txtChequeNo = nullptr;
    QLineEdit *txtDesc = nullptr;
    QLineEdit *txtAmount = nullptr;
    QComboBox *cmbBankName = nullptr;
    MaskedLineEdit *mskBankCode = nullptr;
    QComboBox *cmbCareOf = nullptr;
    QComboBox *cmbStatus = nullptr;
    QTableView *dgPartyInfo = nullptr;
    QPushButton *cmdSave = nullptr;
    QPushButton *cmdModify = nullptr;
    QPushButton *cmdDelete = nullptr;
    QPushButton *cmdAddParty = nullptr;
    QPushButton *cmdDueList = nullptr;
    QPushButton *cmdCancel = nullptr;

private:
    bool chequeAllowed();
    PostDatedChequeEntry entry() const;
    void proposeNumber();
    void loadCheque();
    void save();
    void modify();
    void remove();
    void resetAfterChange();
    void openDueList();

    Mode m_mode = Mode::New;
    AccountPick *m_party = nullptr;
    AccountPick *m_bank = nullptr;
};

// The same screen opened for changes ("MODIFY POST DATED CHEQUE").
class frmModifyPostDatedCheque : public frmPostDatedCheque
{
    Q_OBJECT
public:
    explicit frmModifyPostDatedCheque(QWidget *parent = nullptr);
};
