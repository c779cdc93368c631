#pragma once

#include "foundation/ui/BaseScreen.h"

class AccountPick;
class CommandGate;
class MaskedLineEdit;
class QComboBox;
class QPushButton;
class QRadioButton;

// The reports of one account: its ledger (by date, or voucher wise when
// opened from that menu entry), its ledger with sales tax, the ageing of
// its sale invoices, and the ageing of all parties at the period's end,
// the one report that runs with no party.
class frmPartySearch : public BaseScreen
{
    Q_OBJECT
public:
    explicit frmPartySearch(QWidget *parent = nullptr);

    // Opened from "LEDGER OF ACCOUNT VOUCHER WISE": the ledger is printed
    // voucher wise.
    void setVoucherWise(bool voucherWise) { m_voucherWise = voucherWise; }
    bool voucherWise() const { return m_voucherWise; }

    void onOpened() override;

    QComboBox *cmbPartyName = nullptr;
    MaskedLineEdit *mskPartyCode = nullptr;
    MaskedLineEdit *mskDateFrom = nullptr;
    MaskedLineEdit *mskDateTo = nullptr;
    QRadioButton *optLedger = nullptr;
    QRadioButton *optLedgerWithSaleTax = nullptr;
    QRadioButton *optAgingReport = nullptr;
    QRadioButton *optAgeingReportPeriod = nullptr;
    QPushButton *cmdLedgerOfAccount = nullptr;
    QPushButton *cmdCancel = nullptr;
    AccountPick *pick() const { return m_pick; }

private:
    bool check();
    void run();
    void loadParties();

    AccountPick *m_pick = nullptr;
    CommandGate *m_gate = nullptr;
    bool m_voucherWise = false;
};
