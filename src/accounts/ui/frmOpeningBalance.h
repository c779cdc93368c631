#pragma once

#include "foundation/ui/BaseScreen.h"

class AccountPick;
class CommandGate;
class MaskedLineEdit;
class QComboBox;
class QFrame;
class QLineEdit;
class QPushButton;

// OPENING BALANCE: the first panel gives an account that has none its
// opening balance; the second, reached through the identification gate,
// changes the opening balance of an account that has one.
class frmOpeningBalance : public BaseScreen
{
    Q_OBJECT
public:
    enum class Mode { New, Modify };

    explicit frmOpeningBalance(QWidget *parent = nullptr);

    // The first panel, today's date, the accounts without headings.
    void startNew();
    // The second panel, the accounts that have an opening row.
    void startModify();
    Mode mode() const { return m_mode; }

    QFrame *frOuterOpeningBalance = nullptr;
    QComboBox *cmbPartyName = nullptr;
    MaskedLineEdit *mskPartyCode = nullptr;
    MaskedLineEdit *mskDate = nullptr;
    QComboBox *cmbDBCR = nullptr;
    QLineEdit *txtBalance = nullptr;
    QPushButton *cmdOpeningBalance = nullptr;
    QPushButton *cmdAddParty = nullptr;

    QFrame *frOuterModifyBalance = nullptr;
    QComboBox *cmbMPartyName = nullptr;
    MaskedLineEdit *mskMPartyCode = nullptr;
    MaskedLineEdit *mskMDate = nullptr;
    QComboBox *cmbMDBCR = nullptr;
    QLineEdit *txtMBalance = nullptr;
    QPushButton *cmdModifyBalance = nullptr;
    QPushButton *cmdCancel = nullptr;

private:
    // The fields of one panel, made by buildPanel.
    struct Panel
    {
        QComboBox *&name;
        MaskedLineEdit *&code;
        MaskedLineEdit *&date;
        QComboBox *&side;
        QLineEdit *&amount;
        QPushButton *&save;
        QPushButton *&other;
    };
    // A panel's frame with its fields named with `m` after their kind
    // ("cmbMPartyName") and its two buttons (objectName, caption).
    QFrame *buildPanel(const QString &frameName, const QString &m, Panel out, const QPair<QString, QString> &save,
                       const QPair<QString, QString> &other);
    void buildNewPanel();
    void buildModifyPanel();
    void saveNew();
    void saveModify();
    void addParty();
    void loadModifyList();
    void showOpeningRow(const QString &code);

    Mode m_mode = Mode::New;
    AccountPick *m_pick = nullptr;
    AccountPick *m_mpick = nullptr;
    CommandGate *m_newGate = nullptr;
    CommandGate *m_modifyGate = nullptr;
};
