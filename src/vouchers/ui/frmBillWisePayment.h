#pragma once

#include "foundation/ui/BaseScreen.h"
#include "vouchers/BillWisePayment.h"

class AccountPick;
class CommandGate;
class MaskedLineEdit;
class QComboBox;
class QLabel;
class QPushButton;
class QRadioButton;
class QStandardItemModel;
class QTableView;

// "BILL WISE PAYMENT": a customer's bills of a period in two lists,
// PENDING BILL and PAYMENT DONE. While CUSTOMER SEARCH is chosen, Enter
// or a double click on bills of one list moves them to the other (the
// rows selected, all in one go); the other two options print the bills
// of the period, every one or the pending ones.
class frmBillWisePayment : public BaseScreen
{
    Q_OBJECT
public:
    explicit frmBillWisePayment(QWidget *parent = nullptr);

    void onOpened() override;

    // The bills shown in a list, in its order.
    const QVector<BillLine> &pendingBills() const { return m_pending; }
    const QVector<BillLine> &doneBills() const { return m_done; }

    MaskedLineEdit *mskPartyCode = nullptr;
    QComboBox *cmbPartyName = nullptr;
    MaskedLineEdit *mskDateFrom = nullptr;
    MaskedLineEdit *mskDateTo = nullptr;
    QRadioButton *optBillWiseSearch = nullptr;
    QRadioButton *optBillWisePayment = nullptr;
    QRadioButton *optPendingPayment = nullptr;
    QTableView *dgPending = nullptr;
    QTableView *dgDone = nullptr;
    // Beside each list's caption: its bills and their total.
    QLabel *lblPendingTotal = nullptr;
    QLabel *lblDoneTotal = nullptr;
    QPushButton *cmdSearch = nullptr;
    QPushButton *cmdCancel = nullptr;

protected:
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool check();
    void search();
    void fillGrids();
    // Moves the chosen bills of a list to the other one.
    void pick(QTableView *grid);
    void showCaption();

    AccountPick *m_pick = nullptr;
    CommandGate *m_gate = nullptr;
    QStandardItemModel *m_pendingModel = nullptr;
    QStandardItemModel *m_doneModel = nullptr;
    QVector<BillLine> m_pending;
    QVector<BillLine> m_done;
    // The party and period of the last search, which the lists show.
    QString m_code;
    QDate m_from;
    QDate m_to;
};
