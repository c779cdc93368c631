#pragma once

#include "foundation/Outcome.h"
#include "foundation/ui/BaseScreen.h"

class QComboBox;
class QLineEdit;
class QPushButton;
class QTableView;
class MaskedLineEdit;
class CommandGate;

// PARTY INFO: creates accounts of every kind (heading, customer, supplier,
// bank, expense) with their opening balance. Opened from the menu and, as
// a modal window, from the entry screens' "add party" buttons.
class frmPartyInfo : public BaseScreen
{
    Q_OBJECT
public:
    explicit frmPartyInfo(QWidget *parent = nullptr);

    // Opens the screen as a modal window over `parent` and returns when it
    // is closed: the code of the last account saved there, or "".
    static QString addAccountModal(QWidget *parent);

    QString lastSavedCode() const { return m_lastSavedCode; }

    // The key filters and Enter order of the account fields, as every
    // account screen has them.
    struct AccountKeys
    {
        QList<QWidget *> enterOrder;
        QLineEdit *name, *address, *fax, *dueDays, *description, *balance;
        QComboBox *careOf, *side;
    };
    static void attachAccountKeys(const AccountKeys &keys);

    // Fills the grid with the accounts whose names are near `name`, so
    // that a near-duplicate is seen before it is typed.
    static void showSimilarNames(QTableView *grid, const QString &name);

    void onOpened() override;
    // Refills the care-of list (when the screen comes to the front again).
    void reloadCareOf();

    MaskedLineEdit *mskPartyCode = nullptr;
    QLineEdit *txtLastCode = nullptr;
    QLineEdit *txtPartyName = nullptr;
    QLineEdit *txtPartyAddress = nullptr;
    QLineEdit *txtPartyPhone = nullptr;
    QLineEdit *txtPartyFax = nullptr;
    QLineEdit *txtPartyEmail = nullptr;
    MaskedLineEdit *mskSaleTax = nullptr;
    MaskedLineEdit *mskNTN = nullptr;
    QLineEdit *txtDueDays = nullptr;
    QComboBox *cmbCareOf = nullptr;
    QLineEdit *txtPartyDesc = nullptr;
    MaskedLineEdit *mskDate = nullptr;
    QComboBox *cmbDBCR = nullptr;
    QLineEdit *txtBalance = nullptr;
    QTableView *dgPartyInfo = nullptr;
    QPushButton *cmdPartySave = nullptr;
    QPushButton *cmdPartyCancel = nullptr;

Q_SIGNALS:
    void closed();

protected:
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void loadDefaults();
    void showLastCode();
    void save();
    void clearForNext();

    CommandGate *m_saveGate = nullptr;
    QString m_lastSavedCode;
    bool m_activationHooked = false;
};
