#include "stock/ui/frmEmployeeStockFinished.h"

#include "accounts/ui/AccountPick.h"
#include "foundation/Session.h"
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

frmEmployeeStockFinished::frmEmployeeStockFinished(QWidget *parent) : ConsumablesScreen(parent)
{
    setObjectName(QStringLiteral("frmEmployeeStockFinished"));
    setTitle(QStringLiteral("EMPLOYEE STOCK"));
    setWindowTitle(QStringLiteral("EMPLOYEE STOCK FINISHED"));
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
    cmbPartyName = combo(p, QStringLiteral("cmbPartyName"));
    cmbPartyName->setMinimumContentsLength(36);
    cmbPartyCode = masked(p, QStringLiteral("cmbPartyCode"), MaskedLineEdit::accountCodeMask());
    cmbBrandName = combo(p, QStringLiteral("cmbBrandName"), K::SafeText);
    cmbBrandName->setMinimumContentsLength(20);
    cmbType = combo(p, QStringLiteral("cmbType"), K::SafeText);
    cmbType->setMinimumContentsLength(20);
    txtUnits = lineEdit(p, QStringLiteral("txtUnits"), K::DigitsOnly);
    txtUnits->setMaxLength(12);

    fields.putFixed(0, 0, QStringLiteral("STOCK DATE :"), mskDate, 110);
    fields.put(1, 0, QStringLiteral("EMPLOYEE NAME :"), cmbPartyName, 1, true);
    fields.putFixed(1, 1, QStringLiteral("EMPLOYEE CODE :"), cmbPartyCode, 100);
    fields.put(2, 0, QStringLiteral("BRAND NAME :"), cmbBrandName, 1, true);
    fields.put(2, 1, QStringLiteral("TYPE/COLOUR :"), cmbType, 1, true);
    fields.putFixed(3, 0, QStringLiteral("UNITS :"), txtUnits, 110);
    grid->setColumnStretch(4, 1);

    buildItemCommands(p, QStringLiteral("&UPDATE STOCK"), [this] { return check(); }, [this] { finish(); });
    cmdInkStock = itemCommand(Item::Ink);
    cmdPlateStock = itemCommand(Item::Plate);
    cmdBlanketStock = itemCommand(Item::Blanket);
    cmdDeveloperStock = itemCommand(Item::Developer);
    cmdCancel = button(p, QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    outer->addWidget(buttonBar(p, QStringLiteral("frButtons"),
                               {cmdInkStock, cmdPlateStock, cmdBlanketStock, cmdDeveloperStock, cmdCancel}, true));
    outer->addLayout(gridHeading(p, QStringLiteral("STOCK HELD BY THE EMPLOYEE"), QStringLiteral("USED FIRST ISSUED FIRST")));
    dgStock = ScreenBuild::grid(p, QStringLiteral("dgStock"));
    dgStock->setFocusPolicy(Qt::NoFocus);
    proportionalColumns(dgStock, {1800, 1800, 1200, 1000, 1000, 1000});
    outer->addWidget(dgStock, 1);
    detailLayout()->addWidget(p, 0, 0, 1, 2);
    detailLayout()->setRowStretch(0, 1);

    m_pick = new AccountPick(cmbPartyName, cmbPartyCode, nullptr, this);
    typingOrder({mskDate, cmbPartyName, cmbPartyCode, cmbBrandName, cmbType, txtUnits, cmdInkStock, cmdPlateStock,
                 cmdBlanketStock, cmdDeveloperStock, cmdCancel},
                cmdInkStock, {cmbPartyName});
    connect(m_pick, &AccountPick::accountChanged, this, [this] { itemChanged(); });
    connect(cmbBrandName, &QComboBox::currentTextChanged, this, [this] { brandChanged(); });
    connect(cmbType, &QComboBox::currentTextChanged, this, [this] { showHeld(); });
    connect(cmdCancel, &QPushButton::clicked, this, [this] { closeScreen(); });
}

void frmEmployeeStockFinished::startNew()
{
    mskDate->setDate(session().dateToday());
    runSafely(this, [&] {
        m_pick->loadPartyList();
        if (cmbPartyName->count() > 0)
            cmbPartyName->setCurrentIndex(0);
    });
    chooseItem(Item::Ink);
    cmbPartyName->setFocus();
}

void frmEmployeeStockFinished::onOpened()
{
    runSafely(this, [&] {
        const QString keep = cmbPartyName->currentText();
        m_pick->loadPartyList();
        cmbPartyName->setEditText(keep);
    });
}

void frmEmployeeStockFinished::itemChanged()
{
    runSafely(this, [&] { fillList(cmbBrandName, EmployeeStock::brandsHeld(db(), item(), m_pick->code())); });
    brandChanged();
}

void frmEmployeeStockFinished::brandChanged()
{
    runSafely(this, [&] { fillList(cmbType, EmployeeStock::typesHeld(db(), item(), cmbBrandName->currentText())); });
    showHeld();
}

void frmEmployeeStockFinished::showHeld()
{
    runSafely(this, [&] {
        showRows(dgStock, EmployeeStock::heldBy(db(), m_pick->code(), item(), QDate(1900, 1, 1), QDate(9999, 12, 31)),
                 {QStringLiteral("BRAND NAME"), QStringLiteral("TYPE/COLOUR"), QStringLiteral("DATE"),
                  QStringLiteral("UNITS"), QStringLiteral("USED"), QStringLiteral("IN HAND")});
    });
}

EmployeeStock::FinishRequest frmEmployeeStockFinished::request() const
{
    EmployeeStock::FinishRequest r;
    r.item = item();
    r.brand = cmbBrandName->currentText();
    r.type = cmbType->currentText();
    r.employeeName = cmbPartyName->currentText();
    r.employeeCode = cmbPartyCode->maskText();
    r.unitsText = txtUnits->text();
    return r;
}

bool frmEmployeeStockFinished::check()
{
    const Outcome r = EmployeeStock::checkFinish(request());
    return r.ok || refuse(r);
}

void frmEmployeeStockFinished::finish()
{
    Outcome r;
    if (!runSafely(this, [&] { r = EmployeeStock::finish(db(), request()); }))
        return;
    showOutcome(r);
    showHeld();
}
