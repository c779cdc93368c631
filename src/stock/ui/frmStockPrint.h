#pragma once

#include "stock/ui/ConsumablesScreen.h"

class MaskedLineEdit;
class QComboBox;
class QPushButton;
class QTableView;

// "PRINT STOCK": the stock report of one brand over a period, and what is
// in hand of the chosen item, by brand and type, at the receipts' prices.
class frmStockPrint : public ConsumablesScreen
{
    Q_OBJECT
public:
    explicit frmStockPrint(QWidget *parent = nullptr);
    void onOpened() override;

    // The report the fields ask for (also what cmdSearch shows).
    Reports::ReportRequest request() const;

    QComboBox *cmbBrandName = nullptr;
    QComboBox *cmbType = nullptr;
    MaskedLineEdit *mskDateFrom = nullptr;
    MaskedLineEdit *mskDateTo = nullptr;
    QPushButton *cmdSearch = nullptr;
    QPushButton *cmdViewCancel = nullptr;
    QTableView *dgStockInHand = nullptr;

protected:
    void itemChanged() override;

private:
    void brandChanged();
    bool check();
    void search();
};
