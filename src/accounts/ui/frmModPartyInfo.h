#pragma once

#include "foundation/ui/BaseScreen.h"

class AccountPick;
class CommandGate;
class MaskedLineEdit;
class QComboBox;
class QLineEdit;
class QPushButton;
class QTableView;

// MODIFY PARTY INFORMATION: any account, headings too, picked by its old
// name or code; its code, name, details and opening balance changed, with
// every copy of the code and name elsewhere following.
class frmModPartyInfo : public BaseScreen
{
    Q_OBJECT
public:
    explicit frmModPartyInfo(QWidget *parent = nullptr);

    void onOpened() override;

    QComboBox *cmbPartyName = nullptr;
    MaskedLineEdit *mskOldPartyCode = nullptr;
    QLineEdit *txtPartyName = nullptr;
    MaskedLineEdit *mskPartyCode = nullptr;
    QLineEdit *txtPartyAddress = nullptr;
    QLineEdit *txtPartyPhone = nullptr;
    QLineEdit *txtPartyFax = nullptr;
    QLineEdit *txtPartyEmail = nullptr;
    MaskedLineEdit *mskSaleTax = nullptr;
    MaskedLineEdit *mskNTN = nullptr;
    QLineEdit *txtDueDays = nullptr;
    QComboBox *cmbCareOf = nullptr;
    QLineEdit *txtPartyDesc = nullptr;
    MaskedLineEdit *mskMDate = nullptr;
    QComboBox *cmbMDBCR = nullptr;
    QLineEdit *txtMBalance = nullptr;
    QTableView *dgPartyInfo = nullptr;
    QPushButton *cmdPartyModify = nullptr;
    QPushButton *cmdPartyCancel = nullptr;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void loadList();
    void loadAccount(const QString &code);
    void clearFields();
    void save();

    AccountPick *m_pick = nullptr;
    CommandGate *m_gate = nullptr;
    QString m_oldCode;
    QString m_oldName;
};
