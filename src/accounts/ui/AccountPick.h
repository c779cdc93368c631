#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

class QAbstractItemView;
class QComboBox;
class QTableView;
class MaskedLineEdit;
class QueryResult;

// The account pick shared by the ledger, voucher, invoice, order and stock
// screens: a name combo and a code field that drive each other, and the
// word search behind Escape.
//
//   cmbPartyName = addComboBox("cmbPartyName", "PARTY NAME:");
//   mskPartyCode = addMaskedEdit("mskPartyCode", "PARTY CODE:", MaskedLineEdit::accountCodeMask());
//   m_pick = new AccountPick(cmbPartyName, mskPartyCode, nullptr, this);
//   m_pick->loadPartyList();                 // or setAccounts(rows) for another list
//   connect(m_pick, &AccountPick::accountChanged, this, &frmX::showBalance);
//
// - Typing in the name sets the code of the account of exactly that name,
//   or the empty mask when there is none; leaving the name does the same.
// - Typing in the code sets the name when the code is found and leaves it
//   otherwise (a half-typed code does not wipe the name); leaving the code
//   with a code that no account has blanks the name.
// - Enter in the name on text that is no account's name takes the first
//   account the completion list offers ("TRIC" gives ELECTRICITY).
// - Escape in the name lists the accounts whose names hold every word of
//   it; Enter, a click or a double click on a row takes it (name and code)
//   and puts the focus on the code; Escape in the list closes it.
// - Enter in either field moves to the next field.
// The grid is the given one, or one made on first use (objectName
// "dgSearch") floating under the name field.
class AccountPick : public QObject
{
    Q_OBJECT
public:
    AccountPick(QComboBox *nameCombo, MaskedLineEdit *codeField, QTableView *searchGrid = nullptr,
                QObject *parent = nullptr);

    QComboBox *nameCombo() const { return m_name; }
    MaskedLineEdit *codeField() const { return m_code; }
    // The word-search grid (made when first needed when none was given).
    QTableView *searchGrid();

    // The parties and customers list (no group heads), text left empty.
    void loadPartyList();
    // Reloads the parties and customers list (an account made meanwhile
    // is in it) and keeps the code and name shown as they were.
    void reload();
    // Any other list: rows with the name in the first column and the code
    // in the second (PartyName, PartyCode).
    void setAccounts(const QueryResult &rows);

    // The code shown when it is complete and names an account, else "".
    QString code() const;
    QString name() const;
    bool hasAccount() const { return !code().isEmpty(); }
    // Shows the account of this code (name looked up), or clears both.
    void setCode(const QString &code);
    void clear();

    // Opens the word search on the name's text (what Escape does).
    void openSearch();
    // Takes the search grid's current row (what Enter on the grid does).
    void pickFromSearch();
    // Text that names no account takes the first account the completion
    // offers for it (what Enter in the name does); false when none.
    bool takeFirstMatch();

Q_SIGNALS:
    // After either field moved: the code and name now shown (code empty
    // when no account stands in the fields).
    void accountChanged(const QString &code, const QString &name);
    // After a row of the word search was taken.
    void picked(const QString &code, const QString &name);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void watchNameKeys();
    QPointer<QAbstractItemView> m_popup;
    void nameChanged();
    void nameLeft();
    void codeChanged(bool leaving);
    void announce();

    QPointer<QComboBox> m_name;
    QPointer<MaskedLineEdit> m_code;
    QPointer<QTableView> m_grid;
    bool m_ownGrid = false;
    bool m_syncing = false;
    QString m_lastCode;
    QString m_lastName;
    QString m_shownCode;
    bool m_announced = false;
    bool m_keepTyped = false; // the list just closed on text that matches nothing
};
