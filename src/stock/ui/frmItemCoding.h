#pragma once

#include "foundation/Outcome.h"
#include "foundation/ui/BaseScreen.h"

class QComboBox;
class QLineEdit;
class QPushButton;
class QTableView;
class MaskedLineEdit;
namespace ItemCoding { struct Item; }

// ITEM CODING: adds items to the item master. MODIFY ITEM CODING (the
// subclass) changes one, found by its old name or old code.
class frmItemCoding : public BaseScreen
{
    Q_OBJECT
public:
    explicit frmItemCoding(QWidget *parent = nullptr);
    void onOpened() override;

    // Opens the screen as a modal window over `parent` (the entry screens'
    // "add item" buttons) and returns when it is closed: the code of the
    // last item added there, or "".
    static QString addItemModal(QWidget *parent);
    QString lastAddedCode() const { return m_lastAddedCode; }

    MaskedLineEdit *mskItemCode = nullptr;
    QLineEdit *txtLastCode = nullptr;
    QLineEdit *txtItemName = nullptr;
    QLineEdit *txtCostRate = nullptr;
    QLineEdit *txtSaleRate = nullptr;
    QComboBox *cmbUnitType = nullptr;
    QTableView *dgItemCoding = nullptr;
    QPushButton *cmdOk = nullptr;
    QPushButton *cmdCancel = nullptr;
    QPushButton *cmdAddCompany = nullptr;

Q_SIGNALS:
    void closed();

protected:
    void closeEvent(QCloseEvent *event) override;
    // For the modify screen: builds the old-item fields first.
    struct ModifyTag {};
    frmItemCoding(ModifyTag, QWidget *parent);
    void buildFields();
    void buildButtons(const QString &commandName, const QString &caption);
    ItemCoding::Item enteredItem() const;
    QPushButton *m_command = nullptr;

private:
    void showLastCode();
    void showSimilarNames();
    bool check();
    void add();

    QString m_lastAddedCode;
};

class frmModifyItemCoding : public frmItemCoding
{
    Q_OBJECT
public:
    explicit frmModifyItemCoding(QWidget *parent = nullptr);
    void onOpened() override;

    QComboBox *cmbOldItemName = nullptr;
    MaskedLineEdit *mskOldItemCode = nullptr;
    QPushButton *cmdModify = nullptr;

    QString oldItemCode() const { return m_oldItemCode; }
    QString oldItemName() const { return m_oldItemName; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void loadOldNames();
    void showOldItem();
    bool check();
    void modify();

    QString m_oldItemCode;
    QString m_oldItemName;
};
