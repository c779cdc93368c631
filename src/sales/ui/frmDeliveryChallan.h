#pragma once

#include "sales/DeliveryChallanRules.h"
#include "sales/ui/JobPaperScreen.h"

class MaskedLineEdit;
class QComboBox;
class QFrame;
class QLineEdit;
class QTableView;

// "DELIVERY CHALLAN": what leaves the press against a party's order, item
// by item; the items and their demand numbers are offered from the order.
// Each SAVE adds one item to the challan whose number stands in
// txtDeliveryChallanNo.
class frmDeliveryChallan : public JobPaperScreen
{
    Q_OBJECT
public:
    explicit frmDeliveryChallan(QWidget *parent = nullptr);

    void startEnter();
    void startModify();
    void startDelete();
    void onOpened() override;

    QFrame *frOuter = nullptr;
    QComboBox *cmbTitleName = nullptr;
    QLineEdit *txtDeliveryChallanNo = nullptr;
    QLineEdit *txtRecordNo = nullptr;
    MaskedLineEdit *mskDate = nullptr;
    QComboBox *cmbPartyName = nullptr;
    MaskedLineEdit *txtPartyCode = nullptr;
    QComboBox *cmbPartyPONo = nullptr;
    QComboBox *cmbDescSrNo = nullptr;
    QComboBox *cmbDesc = nullptr;
    QComboBox *cmbDemandNo = nullptr;
    QLineEdit *txtQuantity = nullptr;
    QLineEdit *txtType = nullptr;
    QLineEdit *txtCtn = nullptr;
    QLineEdit *txtGateEntryNo = nullptr;
    QTableView *dgDeliveryChallan = nullptr;

    qint64 openChallan() const { return m_openChallan; }

private:
    void build();
    void wire();
    void setMode(Mode mode, const QString &title);

    void proposeNumber();
    void proposeRecordNo();
    void showChallanLines();
    void loadOrderItems();
    void partyChanged();
    void partyOrderLeft();
    void descriptionChanged();
    void challanNumberLeft();
    void pickRow(int row);

    ChallanLine entered() const;
    bool allowed(DeliveryChallanRules::Command command);
    void save();
    void modify();
    void remove();
    void printChallan();
    void afterLineCommand();

    qint64 m_openChallan = 0;
    QString m_proposedNo;  // the number the screen last proposed
    QString m_numberTitle; // the title the number in txtDeliveryChallanNo was proposed for
};
