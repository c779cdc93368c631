#pragma once

#include "foundation/ui/BaseScreen.h"
#include "reports/ReportFrame.h"
#include "sales/InvoiceDocuments.h"

#include <QMetaObject>
#include <QVector>

class AccountPick;
class MaskedLineEdit;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTableView;
class QueryTableModel;

// "SALE TAX INVOICE / BILL": a challan, an order or an invoice printed
// after the fact. The menu entry decides which forms are offered; the
// clerk finds the document by period and party (of the working title),
// picks it from the list and views it, once per copy: the next copy opens
// when the viewer of the one before is closed.
class frmInvoiceGenerate : public BaseScreen
{
    Q_OBJECT
public:
    explicit frmInvoiceGenerate(QWidget *parent = nullptr);

    // Shows the options the menu entry offers, the first one picked.
    void offer(const QString &menuEntry);
    void onOpened() override;

    // The form picked (the first ticked in the screen's order).
    InvoiceDocuments::Document document() const;
    // Copies still to open after the viewer shown now.
    int copiesWaiting() const { return m_waiting.size(); }

    QRadioButton *optDeliveryChallan = nullptr;
    QRadioButton *optDeliveryChallanByDemandNo = nullptr;
    QRadioButton *optPurchaseOrder = nullptr;
    QRadioButton *optPurchaseOrderWithoutRate = nullptr;
    QRadioButton *optSaleTaxInvoice = nullptr;
    QRadioButton *optSaleTaxInvoiceDW = nullptr;
    QRadioButton *optBill = nullptr;
    QRadioButton *optInvoice = nullptr;
    QRadioButton *optInvoiceWithSalesTax = nullptr;
    QRadioButton *optInvoiceWithBalance = nullptr;

    MaskedLineEdit *mskDateFrom = nullptr;
    MaskedLineEdit *mskDateTo = nullptr;
    QLabel *lblPartyName = nullptr;
    QComboBox *cmbPartyName = nullptr;
    MaskedLineEdit *mskPartyCode = nullptr;
    QLineEdit *txtInvoiceNo = nullptr;
    QLabel *lblChallanNo = nullptr;
    QLineEdit *txtChallanNo = nullptr;
    MaskedLineEdit *mskDate = nullptr;
    QComboBox *cmbStamp = nullptr;
    QTableView *dg = nullptr;
    QPushButton *cmdSearch = nullptr;
    QPushButton *cmdView = nullptr;
    QPushButton *cmdCancel = nullptr;

private:
    QRadioButton *optionOf(InvoiceDocuments::Document d) const;
    void optionPicked(InvoiceDocuments::Document d);
    void searchDocuments();
    void pickRow(int row);
    bool viewAllowed();
    void viewDocument();
    void showNextCopy();

    AccountPick *m_pick = nullptr;
    QueryTableModel *m_found = nullptr;
    QVector<QRadioButton *> m_options;
    InvoiceDocuments::Group m_listed = InvoiceDocuments::Group::Invoice;
    QueryResult m_rows;
    QVector<Reports::ReportRequest> m_waiting;
    QMetaObject::Connection m_nextCopy;
};
