#pragma once

#include "foundation/LineStaging.h"
#include "stock/ui/ConsumablesScreen.h"

class AccountPick;
class MaskedLineEdit;
class QComboBox;
class QLineEdit;
class QPushButton;
class QTableView;

// "MODIFY STOCK": the receipts of an item, brand and type are brought into
// the list (OKAY), changed or struck out one by one, and written together
// (MODIFY STOCK), or all struck out at once (DELETE STOCK).
class frmStockModify : public ConsumablesScreen
{
    Q_OBJECT
public:
    explicit frmStockModify(QWidget *parent = nullptr);
    void startNew();
    void onOpened() override;

    qint64 selectedSrNo() const { return m_selected; }
    const StagedLines<Consumables::StagedReceipt> &lines() const { return m_lines; }

    QFrame *frOuterStockModify = nullptr;
    QComboBox *cmbBrandNameModify = nullptr;
    QComboBox *cmbTypeModify = nullptr;
    QPushButton *cmdOkay = nullptr;
    QPushButton *cmdCancel = nullptr;

    QFrame *frOuterStock = nullptr;
    QTableView *dgVoucher = nullptr;
    QComboBox *cmbBrandName = nullptr;
    QComboBox *cmbType = nullptr;
    QComboBox *cmbPartyName = nullptr;
    MaskedLineEdit *txtPartyCode = nullptr;
    QLineEdit *txtUnits = nullptr;
    QLineEdit *txtUnitPrice = nullptr;
    MaskedLineEdit *mskDate = nullptr;
    QPushButton *cmdModify = nullptr;
    QPushButton *cmdDelete = nullptr;
    QPushButton *cmdModifyStock = nullptr;
    QPushButton *cmdDeleteStock = nullptr;

protected:
    void itemChanged() override;
    void closeEvent(QCloseEvent *event) override;

private:
    void brandChanged();
    void load();
    void pickRow(int row);
    Consumables::Receipt edited() const;
    bool checkChange();
    void changeLine();
    void removeLine();
    void save(const QString &successMessage);
    void deleteAll();
    void rebindGrid();
    void clearFields();

    AccountPick *m_pick = nullptr;
    StagedLines<Consumables::StagedReceipt> m_lines;
    qint64 m_selected = 0;
    // What OKAY read: the receipts are written back under these.
    Consumables::Item m_itemRead = Consumables::Item::Ink;
    QString m_brandRead;
    QString m_typeRead;
};
