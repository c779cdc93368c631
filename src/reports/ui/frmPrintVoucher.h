#pragma once

#include "foundation/ui/BaseScreen.h"

class QComboBox;
class QGroupBox;
class QLineEdit;
class QPushButton;
class QRadioButton;
class MaskedLineEdit;
class CommandGate;

// PRINT VOUCHER / VOUCHER LISTING: one posted voucher by type, number and
// date (panel frOuterVoucherNo), or the vouchers of a period (panel
// frOuterVoucherDate): of one type, all, the bounced ones, or what was
// typed in the period (record tracking).
class frmPrintVoucher : public BaseScreen
{
    Q_OBJECT
public:
    explicit frmPrintVoucher(QWidget *parent = nullptr);

    // The panels, as the menu entries show them.
    void showVoucherNoPanel();
    void showVoucherDatePanel(bool recordTracking);

    void onOpened() override;

    QGroupBox *frOuterVoucherNo = nullptr;
    QComboBox *cmbVoucherType = nullptr;
    QLineEdit *txtShowVoucherNo = nullptr;
    MaskedLineEdit *mskDate = nullptr;
    QPushButton *cmdVoucherNoOkay = nullptr;
    QPushButton *cmdVoucherNoCancel = nullptr;

    QGroupBox *frOuterVoucherDate = nullptr;
    MaskedLineEdit *mskDateFrom = nullptr;
    MaskedLineEdit *mskDateTo = nullptr;
    QRadioButton *optSingleVoucher = nullptr;
    QComboBox *cmbVoucherTypeSingle = nullptr;
    QRadioButton *optAllVouchers = nullptr;
    QRadioButton *optBounceVouchers = nullptr;
    QRadioButton *optRecordTracking = nullptr;
    QPushButton *cmdDailyVoucherListing = nullptr;
    QPushButton *cmdVoucherCancel = nullptr;

private:
    void load();
    bool checkSingleVoucher();
    void printSingleVoucher();
    bool checkListing();
    void printListing();

    CommandGate *m_okayGate = nullptr;
    CommandGate *m_listingGate = nullptr;
};
