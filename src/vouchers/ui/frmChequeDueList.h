#pragma once

#include "foundation/ui/BaseScreen.h"
#include "vouchers/PostDatedCheque.h"

class QCheckBox;
class QPushButton;
class QStandardItemModel;
class QTableView;

// "CHEQUE DUE LIST": the cheques still post dated, and those posted that
// may yet bounce, by cheque date with the days left or overdue, and the
// amount due a bank. From a chosen cheque: DEPOSIT/CLEAR opens the voucher
// screen with its bank voucher ready to save (the save makes the cheque
// POSTED); BOUNCE writes its BC voucher after a question (BOUNCED).
class frmChequeDueList : public BaseScreen
{
    Q_OBJECT
public:
    explicit frmChequeDueList(QWidget *parent = nullptr);

    void onOpened() override;
    // Reads the list again.
    void refresh();
    // The cheque of the chosen row (its VoucherNo), 0 when none.
    qint64 chosenCheque() const;
    void chooseCheque(qint64 voucherNo);

    QTableView *dgCheques = nullptr;
    QTableView *dgBankTotals = nullptr;
    QCheckBox *chkShowPosted = nullptr;
    QPushButton *cmdDeposit = nullptr;
    QPushButton *cmdBounce = nullptr;
    QPushButton *cmdRefresh = nullptr;
    QPushButton *cmdCancel = nullptr;

private:
    void deposit();
    void bounce();

    QStandardItemModel *m_cheques = nullptr;
    QStandardItemModel *m_totals = nullptr;
    QVector<ChequeDueLine> m_lines;
};
