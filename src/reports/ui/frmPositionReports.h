#pragma once

#include "reports/ui/PeriodReportScreen.h"

class QRadioButton;

// "PARTY POSITION": customers or purchasers up to date, or every account
// of a code range between two dates.
class frmPartyPosition : public PeriodReportScreen
{
    Q_OBJECT
public:
    explicit frmPartyPosition(QWidget *parent = nullptr);

    QRadioButton *optReceivableCustomers = nullptr;
    QRadioButton *optPayablePurchaser = nullptr;
    QRadioButton *optPartyPositionTwoDates = nullptr;
    MaskedLineEdit *mskCodeFrom = nullptr;
    MaskedLineEdit *mskCodeTo = nullptr;
    QPushButton *cmdPartyPosition = nullptr;

protected:
    bool datesWanted() const override;
    std::optional<Reports::ReportRequest> request() override;
    void loadDates() override;

private:
    void optionChanged();
};

// "RECOVERY REPORTS": what each customer was billed and paid in a period.
class frmRecoveryReports : public PeriodReportScreen
{
    Q_OBJECT
public:
    explicit frmRecoveryReports(QWidget *parent = nullptr);
    QPushButton *cmdRecoveryReports = nullptr;

protected:
    std::optional<Reports::ReportRequest> request() override;
};

// "CASH BOOK": the cash in hand between two dates.
class frmCashBook : public PeriodReportScreen
{
    Q_OBJECT
public:
    explicit frmCashBook(QWidget *parent = nullptr);
    QPushButton *cmdCashBook = nullptr;

protected:
    std::optional<Reports::ReportRequest> request() override;
};
