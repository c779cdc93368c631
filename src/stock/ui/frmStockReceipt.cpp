#include "stock/ui/frmStockReceipt.h"

#include "accounts/ui/AccountPick.h"
#include "accounts/ui/frmPartyInfo.h"
#include "foundation/Session.h"
#include "foundation/ui/CommandGate.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/ScreenBuild.h"
#include "foundation/ui/ScreenServices.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

using namespace ScreenBuild;
using Consumables::Item;

namespace {
SessionConnection &db() { return session().db(); }
} // namespace

frmStockReceipt::frmStockReceipt(QWidget *parent) : ConsumablesScreen(parent)
{
    setObjectName(QStringLiteral("frmStockReceipt"));
    setTitle(QStringLiteral("CONSUMABLE STOCK RECEIPT"));
    buttonFrame()->hide();
    QFrame *p = frame(frDetail, QStringLiteral("frOuterStock"));
    auto *outer = new QVBoxLayout(p);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(buildOptions(p));
    auto *grid = new QGridLayout;
    outer->addLayout(grid);
    FieldGrid fields(grid);

    using K = KeyRules::Kind;
    mskDate = masked(p, QStringLiteral("mskDate"), MaskedLineEdit::dateMask());
    cmbBrandName = combo(p, QStringLiteral("cmbBrandName"), K::SafeText);
    cmbBrandName->setMinimumContentsLength(20);
    cmbType = combo(p, QStringLiteral("cmbType"), K::SafeText);
    cmbType->setMinimumContentsLength(20);
    cmbPartyName = combo(p, QStringLiteral("cmbPartyName"));
    cmbPartyName->setMinimumContentsLength(36);
    mskPartyCode = masked(p, QStringLiteral("mskPartyCode"), MaskedLineEdit::accountCodeMask());
    txtUnits = lineEdit(p, QStringLiteral("txtUnits"), K::DigitsOnly);
    txtUnits->setMaxLength(12);
    txtUnitPrice = amountEdit(p, QStringLiteral("txtUnitPrice"));
    txtUnitPrice->setMaxLength(16);
    txtAmount = display(p, QStringLiteral("txtAmount"), true);

    fields.putFixed(0, 0, QStringLiteral("DATE :"), mskDate, 110);
    fields.put(1, 0, QStringLiteral("BRAND NAME :"), cmbBrandName, 1, true);
    fields.put(1, 1, QStringLiteral("TYPE/COLOUR :"), cmbType, 1, true);
    fields.put(2, 0, QStringLiteral("PARTY NAME :"), cmbPartyName, 1, true);
    fields.putFixed(2, 1, QStringLiteral("PARTY CODE :"), mskPartyCode, 100);
    fields.putFixed(3, 0, QStringLiteral("UNITS :"), txtUnits, 110);
    fields.putFixed(3, 1, QStringLiteral("UNIT PRICE :"), txtUnitPrice, 140);
    fields.putFixed(4, 1, QStringLiteral("AMOUNT :"), txtAmount, 160);
    grid->setColumnStretch(4, 1);

    cmdSave = button(p, QStringLiteral("cmdSave"), QStringLiteral("&SAVE"));
    cmdCancel = button(p, QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    cmdAddParty = button(p, QStringLiteral("cmdAddParty"), QStringLiteral("ADD &PARTY"));
    outer->addWidget(buttonBar(p, QStringLiteral("frButtons"), {cmdSave, cmdCancel, cmdAddParty}, true));
    outer->addLayout(gridHeading(p, QStringLiteral("STOCK IN HAND"), QStringLiteral("AT THE PRICES OF THE RECEIPTS")));
    dgStock = ScreenBuild::grid(p, QStringLiteral("dgStock"));
    dgStock->setFocusPolicy(Qt::NoFocus);
    proportionalColumns(dgStock, {1800, 1800, 1000, 1000, 1000, 1500});
    amountColumns(dgStock, {5});
    outer->addWidget(dgStock, 1);
    detailLayout()->addWidget(p, 0, 0, 1, 2);
    detailLayout()->setRowStretch(0, 1);

    m_pick = new AccountPick(cmbPartyName, mskPartyCode, nullptr, this);
    typingOrder({mskDate, cmbBrandName, cmbType, cmbPartyName, mskPartyCode, txtUnits, txtUnitPrice, cmdSave, cmdCancel,
                 cmdAddParty},
                cmdSave, {cmbPartyName});
    new CommandGate(cmdSave, [this] { return check(); }, [this] { save(); });
    connect(cmbBrandName, &QComboBox::currentTextChanged, this, [this] { brandChanged(); });
    connect(txtUnits, &QLineEdit::textChanged, this, [this] { showAmount(); });
    connect(txtUnitPrice, &QLineEdit::textChanged, this, [this] { showAmount(); });
    connect(cmdCancel, &QPushButton::clicked, this, [this] { closeScreen(); });
    connect(cmdAddParty, &QPushButton::clicked, this, [this] {
        const QString code = frmPartyInfo::addAccountModal(this);
        onOpened();
        if (!code.isEmpty())
            m_pick->setCode(code);
        cmbPartyName->setFocus();
    });
}

void frmStockReceipt::startNew()
{
    mskDate->setDate(session().dateToday());
    chooseItem(Item::Ink);
    mskDate->setFocus();
}

void frmStockReceipt::onOpened()
{
    runSafely(this, [&] {
        const QString keep = cmbPartyName->currentText();
        m_pick->loadPartyList();
        cmbPartyName->setEditText(keep);
    });
}

void frmStockReceipt::itemChanged()
{
    runSafely(this, [&] { fillList(cmbBrandName, Consumables::brands(db(), item())); });
    brandChanged();
    showInHand();
}

void frmStockReceipt::brandChanged()
{
    runSafely(this, [&] { fillList(cmbType, Consumables::types(db(), item(), cmbBrandName->currentText())); });
}

void frmStockReceipt::showInHand()
{
    runSafely(this, [&] {
        showRows(dgStock, Consumables::stockInHand(db(), item()),
                 {QStringLiteral("BRAND NAME"), QStringLiteral("TYPE/COLOUR"), QStringLiteral("RECEIVED"),
                  QStringLiteral("ISSUED"), QStringLiteral("IN HAND"), QStringLiteral("VALUE")});
    });
}

void frmStockReceipt::showAmount()
{
    const Consumables::Receipt r = receipt();
    txtAmount->setText(txtUnits->text().isEmpty() || txtUnitPrice->text().isEmpty() ? QString()
                                                                                     : r.amount().toDisplayString());
}

Consumables::Receipt frmStockReceipt::receipt() const
{
    Consumables::Receipt r;
    r.item = item();
    r.brand = cmbBrandName->currentText();
    r.type = cmbType->currentText();
    r.partyCode = m_pick->code();
    r.partyName = cmbPartyName->currentText();
    r.units = Consumables::parseUnits(txtUnits->text()).value_or(0);
    r.unitPrice = Money::parseOrZero(txtUnitPrice->text());
    r.date = mskDate->date();
    return r;
}

bool frmStockReceipt::check()
{
    if (!ValidateDate(mskDate) || !CheckClosingDate(mskDate))
        return false;
    Outcome r;
    if (!runSafely(this, [&] { r = Consumables::checkReceipt(db(), receipt(), txtUnits->text(), txtUnitPrice->text()); }))
        return false;
    return r.ok || refuse(r);
}

void frmStockReceipt::save()
{
    Outcome r;
    if (!runSafely(this, [&] { r = Consumables::addReceipt(db(), receipt()); }))
        return;
    if (!showOutcome(r))
        return;
    const QString brand = cmbBrandName->currentText();
    const QString type = cmbType->currentText();
    itemChanged();
    cmbBrandName->setCurrentText(brand);
    cmbType->setCurrentText(type);
    txtUnits->clear();
    txtUnitPrice->clear();
    txtUnits->setFocus();
}
