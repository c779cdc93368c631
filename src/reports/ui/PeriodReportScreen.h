#pragma once

#include "foundation/ui/BaseScreen.h"
#include "reports/LedgerStatements.h"

class CommandGate;
class MaskedLineEdit;
class QPushButton;

// A report screen of a period: "DATE FROM:" and "DATE TO:", a print button
// whose focus checks both dates, and CANCEL. The screen gives its own
// button and request; the period opens on the day after the closing date
// (or the first of the year) and ends today.
class PeriodReportScreen : public BaseScreen
{
    Q_OBJECT
public:
    void onOpened() override;

    MaskedLineEdit *mskDateFrom = nullptr;
    MaskedLineEdit *mskDateTo = nullptr;
    QPushButton *cmdCancel = nullptr;

protected:
    PeriodReportScreen(QWidget *parent, const char *name, const QString &title);
    // The two dates, where the screen wants them (else before the button).
    void addPeriodFields();
    // Adds the print button (after the screen's own fields) and wires it.
    QPushButton *addPrintButton(const char *name, const QString &caption);
    // The dates as typed, for the request.
    LedgerStatements::Period period() const;
    // False while the dates play no part (an option of the screen).
    virtual bool datesWanted() const { return true; }
    // The screen's report; nothing opens when it gives none.
    virtual std::optional<Reports::ReportRequest> request() = 0;
    // Sets the default period.
    virtual void loadDates();

private:
    bool check();
    void print();

    QPushButton *m_print = nullptr;
    CommandGate *m_gate = nullptr;
    bool m_loaded = false;
};
