#include "stock/ui/frmEmployeeStock.h"

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

frmEmployeeStock::frmEmployeeStock(QWidget *parent) : ConsumablesScreen(parent)
{
    setObjectName(QStringLiteral("frmEmployeeStock"));
    setTitle(QStringLiteral("EMPLOYEE STOCK"));
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
    mskPartyCode = masked(p, QStringLiteral("mskPartyCode"), MaskedLineEdit::accountCodeMask());
    cmbBrandName = combo(p, QStringLiteral("cmbBrandName"), K::SafeText);
    cmbBrandName->setMinimumContentsLength(20);
    cmbType = combo(p, QStringLiteral("cmbType"), K::SafeText);
    cmbType->setMinimumContentsLength(20);
    txtUnits = lineEdit(p, QStringLiteral("txtUnits"), K::DigitsOnly);
    txtUnits->setMaxLength(12);

    fields.putFixed(0, 0, QStringLiteral("STOCK DATE :"), mskDate, 110);
    fields.put(1, 0, QStringLiteral("EMPLOYEE NAME :"), cmbPartyName, 1, true);
    fields.putFixed(1, 1, QStringLiteral("EMPLOYEE CODE :"), mskPartyCode, 100);
    fields.put(2, 0, QStringLiteral("BRAND NAME :"), cmbBrandName, 1, true);
    fields.put(2, 1, QStringLiteral("TYPE/COLOUR :"), cmbType, 1, true);
    fields.putFixed(3, 0, QStringLiteral("UNITS :"), txtUnits, 110);
    grid->setColumnStretch(4, 1);

    buildItemCommands(p, QStringLiteral("&SEND STOCK"), [this] { return check(); },
                      [this] { issue(); });
    cmdInkStock = itemCommand(Item::Ink);
    cmdPlateStock = itemCommand(Item::Plate);
    cmdBlanketStock = itemCommand(Item::Blanket);
    cmdDeveloperStock = itemCommand(Item::Developer);
    cmdCancel = button(p, QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    outer->addWidget(buttonBar(p, QStringLiteral("frButtons"),
                               {cmdInkStock, cmdPlateStock, cmdBlanketStock, cmdDeveloperStock, cmdCancel}, true));
    outer->addLayout(gridHeading(p, QStringLiteral("RECEIPTS OF THIS BRAND AND TYPE"),
                                 QStringLiteral("ISSUED OLDEST FIRST")));
    dgStock = ScreenBuild::grid(p, QStringLiteral("dgStock"));
    dgStock->setFocusPolicy(Qt::NoFocus);
    proportionalColumns(dgStock, {900, 1300, 2600, 1000, 1000, 1000});
    outer->addWidget(dgStock, 1);
    detailLayout()->addWidget(p, 0, 0, 1, 2);
    detailLayout()->setRowStretch(0, 1);

    m_pick = new AccountPick(cmbPartyName, mskPartyCode, nullptr, this);
    typingOrder({mskDate, cmbPartyName, mskPartyCode, cmbBrandName, cmbType, txtUnits, cmdInkStock, cmdPlateStock,
                 cmdBlanketStock, cmdDeveloperStock, cmdCancel},
                cmdInkStock, {cmbPartyName});
    connect(cmbBrandName, &QComboBox::currentTextChanged, this, [this] { brandChanged(); });
    connect(cmbType, &QComboBox::currentTextChanged, this, [this] { showReceipts(); });
    connect(cmdCancel, &QPushButton::clicked, this, [this] { closeScreen(); });
}

void frmEmployeeStock::startNew()
{
    mskDate->setDate(session().dateToday());
    chooseItem(Item::Ink);
    mskDate->setFocus();
}

void frmEmployeeStock::onOpened()
{
    runSafely(this, [&] {
        const QString keep = cmbPartyName->currentText();
        m_pick->loadPartyList();
        cmbPartyName->setEditText(keep);
    });
}

void frmEmployeeStock::itemChanged()
{
    runSafely(this, [&] { fillList(cmbBrandName, Consumables::brands(db(), item())); });
    brandChanged();
}

void frmEmployeeStock::brandChanged()
{
    runSafely(this, [&] { fillList(cmbType, Consumables::types(db(), item(), cmbBrandName->currentText())); });
    showReceipts();
}

void frmEmployeeStock::showReceipts()
{
    runSafely(this, [&] {
        const QueryResult rows = Consumables::receiptList(db(), item(), cmbBrandName->currentText(), cmbType->currentText());
        showRows(dgStock, rows,
                 {QStringLiteral("SR #"), QStringLiteral("DATE"), QStringLiteral("PARTY NAME"), QStringLiteral("UNITS"),
                  QStringLiteral("ISSUED"), QStringLiteral("IN HAND")});
    });
}

EmployeeStock::IssueRequest frmEmployeeStock::request() const
{
    EmployeeStock::IssueRequest r;
    r.item = item();
    r.brand = cmbBrandName->currentText();
    r.type = cmbType->currentText();
    r.employeeName = cmbPartyName->currentText();
    r.employeeCode = mskPartyCode->maskText();
    r.unitsText = txtUnits->text();
    r.dateText = mskDate->maskText();
    return r;
}

bool frmEmployeeStock::check()
{
    const Outcome r = EmployeeStock::checkIssue(request());
    return r.ok || refuse(r);
}

void frmEmployeeStock::issue()
{
    Outcome r;
    if (!runSafely(this, [&] { r = EmployeeStock::issue(db(), request()); }))
        return;
    showOutcome(r);
    // The fields stay as they are, so the same issue can be repeated.
    showReceipts();
}
