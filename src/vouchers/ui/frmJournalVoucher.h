#pragma once

#include "foundation/LineStaging.h"
#include "foundation/Money.h"
#include "foundation/Outcome.h"
#include "foundation/ui/BaseScreen.h"
#include "vouchers/VoucherRules.h"
#include "vouchers/ui/VoucherFinder.h"

#include <QString>
#include <QStringList>

class AccountPick;
class ChequePick;
class MaskedLineEdit;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableView;

// "ACCOUNTS VOUCHER": cash, bank and journal vouchers are typed here line
// by line and saved, changed or deleted as a whole. The same screen serves
// new vouchers (the entry panel) and changes to posted ones (the question
// panel first, then the entry panel). The lines live in the screen and are
// mirrored into this workstation's staging, which the save reads.
class frmJournalVoucher : public BaseScreen
{
    Q_OBJECT
public:
    enum class Mode { New, Modify };

    explicit frmJournalVoucher(QWidget *parent = nullptr);

    // A new voucher: cash figures, nothing staged, the entry panel, the
    // account list, today's date, an empty list.
    void startNew();
    // The menu's part: the types the voucher may take and the one it
    // starts at (which proposes its number and names the window).
    void setVoucherTypes(const QStringList &items, const QString &start);
    // "MODIFY VOUCHER": the question panel, to find a posted voucher.
    void startModify();
    // Window activation: the account list and the open cheques, fresh.
    void onOpened() override;
    // A new voucher made elsewhere (a cheque's clearing), with its lines
    // typed in, ready to check and save.
    void loadReadyVoucher(const Voucher &voucher);
    // The posted voucher being changed (its history opens with F8).
    std::optional<ScreenDocument> currentDocument() const override;

    Mode mode() const { return m_mode; }
    qint64 lineSrNo() const { return m_lineSrNo; }
    Money previousCash() const { return m_previousCash; }
    QString previousCashSide() const { return m_previousCashSide; }

    // Entry panel.
    QFrame *frOuterVoucher = nullptr;
    MaskedLineEdit *mskDate = nullptr;
    QComboBox *cmbVoucherType = nullptr;
    QLineEdit *txtVoucherNo = nullptr;
    QLineEdit *txtInvoiceNo = nullptr;
    QComboBox *cmbPartyName = nullptr;
    MaskedLineEdit *txtPartyCode = nullptr;
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

    // Question panel of modify mode (the finder's fields).
    VoucherFinder *frOuterVoucherNo = nullptr;
    QComboBox *cmbModifyVoucherType = nullptr;
    QLineEdit *txtShowVoucherNo = nullptr;
    MaskedLineEdit *mskDateModifyVoucher = nullptr;
    QPushButton *cmdVoucherNoOkay = nullptr;
    QPushButton *cmdVoucherNoCancel = nullptr;

protected:
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildEntryPanel();
    void wireCommands();
    void loadLists();

    // Behaviours of the fields.
    void voucherTypeChanged();
    void dateLeft();
    void sideLeft();
    void forceSide();
    void proposeNumber();

    // The checks before a command; a refusal is shown and focused.
    bool lineAllowed(VoucherRules::LineCommand command);
    bool saveAllowed();

    void addLine();
    void changeLine();
    void removeLine();
    void loadLine(int row);
    void saveVoucher();
    void deleteVoucher();
    void loadVoucher();
    void afterLineCommand(const QString &confirmation);
    void showEntryPanel(bool entry);
    void clearLineFields();

    VoucherLine currentLine() const;
    VoucherKey header() const;
    VoucherKey originalKey() const;
    // The figures as the lines and the ledger stand now: totals, account
    // balance, previous and current cash, and the list.
    void refreshFigures();
    void showTotals();
    void showCashFigures();
    void rebindGrid();

    Mode m_mode = Mode::New;
    AccountPick *m_pick = nullptr;
    ChequePick *m_cheque = nullptr;
    StagedLines<VoucherLine> m_lines;
    qint64 m_lineSrNo = 0;
    Money m_previousCash;
    QString m_previousCashSide = QStringLiteral("DR");
    QString m_proposedNo; // the number the system last proposed
    bool m_quiet = false; // set while the screen fills its own fields
    QDate m_farDateTaken; // a date far ahead the user has confirmed
};

// Prepares the screen for a new voucher (see frmJournalVoucher::startNew).
void StartVoucherScreen(frmJournalVoucher *screen);

class MdiHost;
// Opens the voucher screen in `host` with `voucher` ready to save; asks
// first when the open voucher screen has lines typed. Returns the screen,
// or nullptr when the user kept the voucher in progress.
frmJournalVoucher *openReadyVoucher(MdiHost &host, const Voucher &voucher);

class frmMDITessel;
// Opens the posted voucher `key` in the voucher screen to be changed,
// through the menu's modify entry so the user's rights hold. Returns the
// screen, or nullptr when the entry is closed to the user or the user kept
// the voucher in progress.
frmJournalVoucher *openPostedVoucher(frmMDITessel &main, const VoucherKey &key);
