#include "vouchers/ui/VoucherFinder.h"

#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/ScreenBuild.h"
#include "foundation/ui/ScreenServices.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

using namespace ScreenBuild;

VoucherFinder::VoucherFinder(QWidget *parent) : QFrame(parent)
{
    setObjectName(QStringLiteral("frOuterVoucherNo"));
    setFrameShape(QFrame::StyledPanel);
    auto *layout = new QGridLayout(this);
    layout->setContentsMargins(24, 16, 24, 16);
    FieldGrid g(layout);

    lblVoucherNo = new QLabel(QStringLiteral("MODIFY VOUCHER"), this);
    lblVoucherNo->setObjectName(QStringLiteral("lblVoucherNo"));
    lblVoucherNo->setAlignment(Qt::AlignCenter);
    lblVoucherNo->setStyleSheet(QStringLiteral("font-weight: bold; font-size: 12pt; color: #017C6A;"));
    cmbModifyVoucherType = combo(this, QStringLiteral("cmbModifyVoucherType"), KeyRules::Kind::LettersUpper);
    cmbModifyVoucherType->setMinimumContentsLength(6);
    txtShowVoucherNo = lineEdit(this, QStringLiteral("txtShowVoucherNo"), KeyRules::Kind::DigitsOnly);
    mskDateModifyVoucher = masked(this, QStringLiteral("mskDateModifyVoucher"), MaskedLineEdit::dateMask());
    cmdVoucherNoOkay = button(this, QStringLiteral("cmdVoucherNoOkay"), QStringLiteral("&OKAY"));
    cmdVoucherNoCancel = button(this, QStringLiteral("cmdVoucherNoCancel"), QStringLiteral("&CANCEL"));

    layout->addWidget(lblVoucherNo, 0, 0, 1, 2);
    g.put(1, 0, QStringLiteral("VOUCHER TYPE:"), cmbModifyVoucherType);
    g.put(2, 0, QStringLiteral("VOUCHER #:"), txtShowVoucherNo, 1, true);
    g.put(3, 0, QStringLiteral("VOUCHER DATE:"), mskDateModifyVoucher);
    g.buttons(4, 0, {cmdVoucherNoOkay, cmdVoucherNoCancel});

    for (QWidget *w : std::initializer_list<QWidget *>{cmbModifyVoucherType, txtShowVoucherNo, mskDateModifyVoucher})
        EnterToTab::attach(w);
    setTabOrder(cmbModifyVoucherType, txtShowVoucherNo);
    setTabOrder(txtShowVoucherNo, mskDateModifyVoucher);
    setTabOrder(mskDateModifyVoucher, cmdVoucherNoOkay);
    setTabOrder(cmdVoucherNoOkay, cmdVoucherNoCancel);
}

void VoucherFinder::setTypes(const QStringList &types)
{
    const QString keep = cmbModifyVoucherType->currentText();
    fillCombo(cmbModifyVoucherType, types);
    cmbModifyVoucherType->setCurrentIndex(-1);
    cmbModifyVoucherType->setEditText(keep);
}
