#pragma once

#include "sales/PurchaseOrderRules.h"
#include "sales/ui/JobPaperScreen.h"

class MaskedLineEdit;
class QCheckBox;
class QComboBox;
class QFrame;
class QLineEdit;
class QTableView;

// "PURCHASE ORDER": a customer's order typed item by item; each SAVE adds
// one item to the order whose number stands in txtPONo. The menu opens it
// to enter (a new number proposed), to modify (items picked from the list
// and rewritten, or added to a typed order) or to delete items.
class frmPurchaseOrder : public JobPaperScreen
{
    Q_OBJECT
public:
    explicit frmPurchaseOrder(QWidget *parent = nullptr);

    void startEnter();
    void startModify();
    void startDelete();
    void onOpened() override;

    QFrame *frOuter = nullptr;
    QComboBox *cmbTitleName = nullptr;
    QLineEdit *txtPONo = nullptr;
    QLineEdit *txtRecordNo = nullptr;
    MaskedLineEdit *mskDate = nullptr;
    QLineEdit *txtPartyPONo = nullptr;
    QComboBox *cmbPartyName = nullptr;
    MaskedLineEdit *txtPartyCode = nullptr;
    QCheckBox *chkDesc = nullptr;
    QComboBox *cmbDesc = nullptr;
    QLineEdit *txtQuantity = nullptr;
    QLineEdit *txtType = nullptr;
    QLineEdit *txtCostPrice = nullptr;
    QLineEdit *txtUnitPrice = nullptr;
    QLineEdit *txtDemandNo = nullptr;
    QLineEdit *txtJobNo = nullptr;
    QTableView *dg = nullptr;

    // The order this screen is adding items to (0: none started yet).
    qint64 openOrder() const { return m_openOrder; }

private:
    void build();
    void wire();
    void setMode(Mode mode, const QString &title);

    void proposeNumber();
    void proposeRecordNo();
    void showOrderLines();
    void loadOrderDescriptions();
    void loadDescriptionList();
    void descriptionLeft();
    void orderNumberLeft();
    void partyOrderLeft();
    void pickRow(int row);

    OrderLine entered() const;
    bool allowed(PurchaseOrderRules::Command command);
    void save();
    void modify();
    void remove();
    void printOrder();
    void afterLineCommand();

    qint64 m_openOrder = 0;
    QString m_numberTitle; // the title the number in txtPONo was proposed for
};
