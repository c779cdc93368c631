#pragma once

#include "foundation/ui/BaseScreen.h"
#include "reports/ui/PeriodReportScreen.h"
#include "sales/SalesReports.h"

class AccountPick;
class CommandGate;
class QButtonGroup;
class QComboBox;
class QLineEdit;
class QRadioButton;

// "SALE REGISTER": the register or the summary of a period, of all parties
// or one, of the working title or all titles.
class frmSaleRegister : public PeriodReportScreen
{
    Q_OBJECT
public:
    explicit frmSaleRegister(QWidget *parent = nullptr);

    QComboBox *cmbPartyName = nullptr;
    MaskedLineEdit *mskPartyCode = nullptr;
    QRadioButton *optSaleRegister = nullptr;
    QRadioButton *optSaleRegisterAllTitle = nullptr;
    QRadioButton *optSaleRegisterSingleParty = nullptr;
    QRadioButton *optSaleSummary = nullptr;
    QRadioButton *optSaleSummarySingleParty = nullptr;
    QPushButton *cmdSaleRegister = nullptr;

    void onOpened() override;
    // The summary entry opens on the summary of all parties.
    void startSummary();

protected:
    std::optional<Reports::ReportRequest> request() override;

private:
    AccountPick *m_pick = nullptr;
    bool m_listLoaded = false;
};

// "SUMMARY": the sales of every party in one month.
class frmSummary : public BaseScreen
{
    Q_OBJECT
public:
    explicit frmSummary(QWidget *parent = nullptr);

    QComboBox *cmbMonth = nullptr;
    MaskedLineEdit *mskYear = nullptr;
    QPushButton *cmdSaleSummary = nullptr;
    QPushButton *cmdCancel = nullptr;

    void onOpened() override;

private:
    SalesReports::Built built() const;
    bool check();
    void print();

    CommandGate *m_gate = nullptr;
    bool m_loaded = false;
};

// "CLIENT DETAIL": the invoice lines of one client in a period.
class frmClientDetail : public PeriodReportScreen
{
    Q_OBJECT
public:
    explicit frmClientDetail(QWidget *parent = nullptr);

    QComboBox *cmbPartyName = nullptr;
    MaskedLineEdit *mskPartyCode = nullptr;
    QPushButton *cmdClientDetail = nullptr;

    void onOpened() override;

protected:
    std::optional<Reports::ReportRequest> request() override;

private:
    AccountPick *m_pick = nullptr;
};

// "STATUS REPORT": delivered against invoiced, and the challans of a period.
class frmStatusReport : public PeriodReportScreen
{
    Q_OBJECT
public:
    explicit frmStatusReport(QWidget *parent = nullptr);

    QComboBox *cmbPartyName = nullptr;
    MaskedLineEdit *mskPartyCode = nullptr;
    QRadioButton *optDcInvoiceStatus = nullptr;
    QRadioButton *optDc = nullptr;
    QRadioButton *optDcSingleParty = nullptr;
    QPushButton *cmdSearch = nullptr;

    void onOpened() override;
    // The challan summary entry opens on the challans of all parties.
    void startChallanSummary();

protected:
    std::optional<Reports::ReportRequest> request() override;

private:
    AccountPick *m_pick = nullptr;
    bool m_listLoaded = false;
};

// "SEARCH PARTY PO": a party's orders against what was delivered, by date
// or by the party's order numbers.
class frmPartyPO : public PeriodReportScreen
{
    Q_OBJECT
public:
    explicit frmPartyPO(QWidget *parent = nullptr);

    QComboBox *cmbPartyName = nullptr;
    MaskedLineEdit *mskPartyCode = nullptr;
    QRadioButton *optSearchByDate = nullptr;
    QRadioButton *optSearchByPO = nullptr;
    QLineEdit *txtPOFrom = nullptr;
    QLineEdit *txtPOTo = nullptr;
    QPushButton *cmdSearch = nullptr;

    void onOpened() override;

protected:
    bool datesWanted() const override;
    std::optional<Reports::ReportRequest> request() override;

private:
    void optionChanged();

    AccountPick *m_pick = nullptr;
};
