#pragma once

#include "foundation/Money.h"
#include "foundation/ui/BaseScreen.h"
#include "vouchers/LedgerWriter.h"

#include <QString>
#include <QStringList>

class MaskedLineEdit;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableView;
struct LineInput;

// "ACCOUNTS VOUCHER": cash, bank and journal vouchers are typed here line
// by line into this workstation's staging, and saved, changed or deleted
// as a whole. The same screen serves new vouchers (the entry panel) and
// changes to posted ones (the question panel first, then the entry panel).
class frmJournalVoucher : public BaseScreen
{
    Q_OBJECT
public:
    explicit frmJournalVoucher(QWidget *parent = nullptr);

    // The menu's part: the types the voucher may take and the one it
    // starts at (which proposes its number).
    void setVoucherTypes(const QStringList &items, const QString &start);
    // "MODIFY VOUCHER": the question panel, to find a posted voucher.
    void startModify();
    // Form activation: the account list and the open cheques, fresh.
    void onOpened() override;
    // The cash figures from the ledger (previous cash, with its side).
    void showPreviousCash(const std::optional<Money> &balance);
    void rebindGrid();

    qint64 lineSrNo() const { return m_lineSrNo; }

    // Entry panel.
    QFrame *frOuterVoucher = nullptr;
    MaskedLineEdit *mskDate = nullptr;
    QComboBox *cmbVoucherType = nullptr;
    QLineEdit *txtVoucherNo = nullptr;
    QLineEdit *txtInvoiceNo = nullptr;
    QComboBox *cmbPartyName = nullptr;
    QLineEdit *txtPartyCode = nullptr;
    QLineEdit *txtBalance = nullptr;
    QLineEdit *txtDesc = nullptr;
    QLineEdit *txtAmount = nullptr;
    QComboBox *cmbDBCR = nullptr;
    QCheckBox *chkPostDatedCheque = nullptr;
    QComboBox *cmbChequeDesc = nullptr;
    QComboBox *cmbCHQVoucherNo = nullptr;
    QLineEdit *txtTotalDebit = nullptr;
    QLineEdit *txtTotalCredit = nullptr;
    QLabel *lblPCashInHand = nullptr;
    QLineEdit *txtPCashInHand = nullptr;
    QLabel *lblCCashInHand = nullptr;
    QLineEdit *txtCCashInHand = nullptr;
    QTableView *dgVoucher = nullptr;
    QFrame *frDebitButton = nullptr;
    QPushButton *cmdNew = nullptr;
    QPushButton *cmdModify = nullptr;
    QPushButton *cmdDelete = nullptr;
    QFrame *frSave = nullptr;
    QPushButton *cmdModifyVoucher = nullptr;
    QPushButton *cmdDeleteVoucher = nullptr;
    QPushButton *cmdAddParty = nullptr;

    // Question panel of modify mode.
    QFrame *frOuterVoucherNo = nullptr;
    QLabel *lblVoucherNo = nullptr;
    QComboBox *cmbModifyVoucherType = nullptr;
    QLineEdit *txtShowVoucherNo = nullptr;
    MaskedLineEdit *mskDateModifyVoucher = nullptr;
    QPushButton *cmdVoucherNoOkay = nullptr;
    QPushButton *cmdVoucherNoCancel = nullptr;

    Money previousCash() const { return m_previousCash; }
    QString previousCashSide() const { return m_previousCashSide; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    enum class LineButton { New, Modify, Delete };

    void buildEntryPanel();
    void buildQuestionPanel();
    void loadAccountList();
    void loadCheques();
    void fitGridColumns();

    // Behaviours of the fields.
    void voucherTypeChanged();
    void dateLeft();
    void accountChanged();
    void sideLeft();
    void forceSide();
    void chequeDescChanged();
    void chequeNoChanged();
    void proposeNumber();

    // The checks that stand before a command; false moves the focus away.
    bool lineChecks(LineButton button);
    bool buttonChecks(QPushButton *button);
    bool refusedOnEntry(QPushButton *button);

    void addLine();
    void changeLine();
    void removeLine();
    void loadLine(int row);
    void saveVoucher();
    void saveNew();
    void saveModified();
    void deleteVoucher();
    void loadVoucher();

    LineInput currentLine() const;
    VoucherKey header() const;
    VoucherKey originalKey() const;
    void showTotals(bool zeroWhenEmpty);
    void showCurrentCash(bool leaveOtherTypes);
    void resetAfterSave();

    qint64 m_lineSrNo = 0;
    Money m_previousCash;
    QString m_previousCashSide = QStringLiteral("DR");
    QString m_proposedNo;           // the number the system last proposed
    QPushButton *m_refusedOnEntry = nullptr;
    bool m_quiet = false;           // set while the screen fills its own fields
    bool m_closeAnswered = false;
    bool m_activationHooked = false;
};

// Prepares the screen for a new voucher: cash figures, empty staging,
// the entry panel, the account list, today's date, an empty grid.
void StartVoucherScreen(frmJournalVoucher *screen);
