#pragma once

#include "foundation/ui/BaseScreen.h"
#include "services/OtherServices.h"

class AccountPick;
class MaskedLineEdit;
class QComboBox;
class QLineEdit;
class QPushButton;
class QTableView;

// "OTHER SERVICES": a service bought from a supplier and resold to a
// customer, one OS voucher each. The modify screen changes or deletes one
// by its number.
class frmOtherServices : public BaseScreen
{
    Q_OBJECT
public:
    enum class Mode { New, Modify };

    explicit frmOtherServices(QWidget *parent = nullptr);

    void startNew();
    void startModify();
    void onOpened() override;
    Mode mode() const { return m_mode; }

    QLineEdit *txtVoucherType = nullptr;
    QLineEdit *txtVoucherNo = nullptr;
    MaskedLineEdit *mskDate = nullptr;
    QLineEdit *txtInvoiceNo = nullptr;
    MaskedLineEdit *mskPartyCode = nullptr;
    QComboBox *cmbPartyName = nullptr;
    MaskedLineEdit *mskSupplierCode = nullptr;
    QComboBox *cmbSupplierName = nullptr;
    QLineEdit *txtDescription = nullptr;
    QLineEdit *txtReceivedAmount = nullptr;
    QLineEdit *txtPaidAmount = nullptr;
    QComboBox *cmbCareOf = nullptr;
    QTableView *dgSearch = nullptr;
    QPushButton *cmdOkay = nullptr;
    QPushButton *cmdModify = nullptr;
    QPushButton *cmdDelete = nullptr;
    QPushButton *cmdCancel = nullptr;

private:
    bool entryAllowed();
    OtherServiceEntry entry() const;
    void proposeNumber();
    void loadVoucher();
    void save();
    void modify();
    void remove();
    void clearFields();

    Mode m_mode = Mode::New;
    AccountPick *m_customer = nullptr;
    AccountPick *m_supplier = nullptr;
};

class frmModifyOtherServices : public frmOtherServices
{
    Q_OBJECT
public:
    explicit frmModifyOtherServices(QWidget *parent = nullptr);
};

// "OTHER SERVICES REGISTER" between two dates.
class frmPrintOtherServices : public BaseScreen
{
    Q_OBJECT
public:
    explicit frmPrintOtherServices(QWidget *parent = nullptr);
    void onOpened() override;

    MaskedLineEdit *mskDateFrom = nullptr;
    MaskedLineEdit *mskDateTo = nullptr;
    QPushButton *cmdOtherServices = nullptr;
    QPushButton *cmdCancel = nullptr;

private:
    void showRegister();
};
