#pragma once

#include <QFrame>

class MaskedLineEdit;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

// The question of "MODIFY VOUCHER": the type, number and date under which
// a posted voucher stands. The screen that holds it gates the OK button
// and loads the voucher.
class VoucherFinder : public QFrame
{
    Q_OBJECT
public:
    explicit VoucherFinder(QWidget *parent = nullptr);

    // The types that stand in the ledger, keeping what is typed.
    void setTypes(const QStringList &types);

    QLabel *lblVoucherNo = nullptr;
    QComboBox *cmbModifyVoucherType = nullptr;
    QLineEdit *txtShowVoucherNo = nullptr;
    MaskedLineEdit *mskDateModifyVoucher = nullptr;
    QPushButton *cmdVoucherNoOkay = nullptr;
    QPushButton *cmdVoucherNoCancel = nullptr;
};
