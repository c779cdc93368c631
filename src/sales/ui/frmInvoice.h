#pragma once

#include "foundation/LineStaging.h"
#include "foundation/ui/BaseScreen.h"
#include "sales/InvoiceRules.h"
#include "sales/InvoiceSources.h"

#include <QString>

class AccountPick;
class MaskedLineEdit;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableView;

// "SALES TAX INVOICE": an invoice typed line by line, from a challan's
// items or from earlier descriptions, with its taxes, and saved, changed
// or deleted as a whole. New invoices open on the entry panel; "MODIFY
// INVOICE" first asks for the title, number and date of a saved one. The
// lines live in the screen and are mirrored into this workstation's
// staging.
class frmInvoice : public BaseScreen
{
    Q_OBJECT
public:
    enum class Mode { New, Modify };

    explicit frmInvoice(QWidget *parent = nullptr);

    void startNew();
    void startModify();
    void onOpened() override;
    // The saved invoice being changed (its history opens with F8).
    std::optional<ScreenDocument> currentDocument() const override;

    Mode mode() const { return m_mode; }
    qint64 currentSrNo() const { return m_lineSrNo; }
    const QVector<InvoiceLine> &lines() const { return m_lines.all(); }

    // Entry panel.
    QFrame *frOuterInvoice = nullptr;
    QComboBox *cmbTitleName = nullptr;
    MaskedLineEdit *mskDate = nullptr;
    QLineEdit *txtInvoiceNo = nullptr;
    QComboBox *cmbPartyName = nullptr;
    MaskedLineEdit *txtPartyCode = nullptr;
    QPushButton *cmdAddParty = nullptr;
    QComboBox *txtTermOfSale = nullptr;
    QLineEdit *txtDescCode = nullptr;
    QComboBox *cmbPartyPONo = nullptr;
    QComboBox *cmbChallanNo = nullptr;
    QComboBox *cmbDescSrNo = nullptr;
    QComboBox *cmbDesc = nullptr;
    QCheckBox *chkInvoiceDesc = nullptr;
    QLineEdit *txtInvoiceDesc = nullptr;
    QComboBox *cmbDemandNo = nullptr;
    QLineEdit *txtWeight = nullptr;
    QLineEdit *txtQuantity = nullptr;
    QLineEdit *txtRate = nullptr;
    QLineEdit *txtType = nullptr;
    QLineEdit *txtPrice = nullptr;
    QLineEdit *txtRateOfSaleTax = nullptr;
    QLineEdit *txtFurtherTax = nullptr;
    QLineEdit *txtCED = nullptr;
    QLineEdit *txtDTRE = nullptr;
    QLineEdit *txtGateEntryNo = nullptr;
    QLabel *lblInvoiceGrid = nullptr;
    QTableView *dgInvoice = nullptr;
    QLineEdit *txtValueExSaleTax = nullptr;
    QLineEdit *txtSaleTax = nullptr;
    QLineEdit *txtTotalCED = nullptr;
    QLineEdit *txtNetAmount = nullptr;
    QPushButton *cmdNewInvoice = nullptr;
    QPushButton *cmdNew = nullptr;
    QPushButton *cmdModify = nullptr;
    QPushButton *cmdDelete = nullptr;
    QPushButton *cmdModifyInvoice = nullptr;
    QPushButton *cmdDeleteInvoice = nullptr;

    // The question panel of modify mode.
    QFrame *frOuterInvoiceNo = nullptr;
    QComboBox *cmbModifyTitleName = nullptr;
    QLineEdit *txtShowInvoiceNo = nullptr;
    MaskedLineEdit *mskDateModifyInvoice = nullptr;
    QPushButton *cmdInvoiceNoOkay = nullptr;
    QPushButton *cmdInvoiceNoCancel = nullptr;

protected:
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildEntryPanel();
    void buildFinder();
    void wireCommands();
    void showEntryPanel(bool entry);

    // Field behaviours.
    void titleChanged();
    void proposeNumber();
    void partyChanged();
    void loadOrders();
    void loadChallans();
    void loadItems();
    void descSrNoChanged();
    void lookUpPrice();
    void termsLeft();
    void fieldLeft(QObject *field);
    bool computeLine();

    // Commands.
    bool lineAllowed(InvoiceRules::LineCommand command);
    bool invoiceHasValue();
    void addLine();
    void changeLine();
    void removeLine();
    void loadLine(int row);
    void afterLineCommand(const QString &confirmation);
    void saveInvoice();
    void deleteInvoice();
    void findInvoice();

    InvoiceLine currentLine() const;
    InvoiceHeader header() const;
    InvoiceKey originalKey() const;
    void refreshFigures();
    void resetAfterSave();

    Mode m_mode = Mode::New;
    AccountPick *m_pick = nullptr;
    StagedLines<InvoiceLine> m_lines;
    qint64 m_lineSrNo = 0;
    QString m_proposedNo;
    InvoiceKey m_original;
    QVector<InvoiceSources::ChallanLine> m_challanLines;
    bool m_quiet = false;
};
