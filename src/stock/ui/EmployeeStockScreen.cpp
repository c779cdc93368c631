#include "stock/ui/EmployeeStockScreen.h"

#include "accounts/ui/AccountPick.h"
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

EmployeeStockScreen::EmployeeStockScreen(const Layout &layout, QWidget *parent) : ConsumablesScreen(parent)
{
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
    m_partyCode = masked(p, layout.codeName, MaskedLineEdit::accountCodeMask());
    cmbBrandName = combo(p, QStringLiteral("cmbBrandName"), K::SafeText);
    cmbBrandName->setMinimumContentsLength(20);
    cmbType = combo(p, QStringLiteral("cmbType"), K::SafeText);
    cmbType->setMinimumContentsLength(20);
    txtUnits = lineEdit(p, QStringLiteral("txtUnits"), K::DigitsOnly);
    txtUnits->setMaxLength(12);

    fields.putFixed(0, 0, QStringLiteral("STOCK DATE :"), mskDate, 110);
    fields.put(1, 0, QStringLiteral("EMPLOYEE NAME :"), cmbPartyName, 1, true);
    fields.putFixed(1, 1, QStringLiteral("EMPLOYEE CODE :"), m_partyCode, 100);
    fields.put(2, 0, QStringLiteral("BRAND NAME :"), cmbBrandName, 1, true);
    fields.put(2, 1, QStringLiteral("TYPE/COLOUR :"), cmbType, 1, true);
    fields.putFixed(3, 0, QStringLiteral("UNITS :"), txtUnits, 110);
    grid->setColumnStretch(4, 1);

    buildItemCommands(p, layout.commandCaption, [this] { return checkRequest(); }, [this] { work(); });
    cmdInkStock = itemCommand(Item::Ink);
    cmdPlateStock = itemCommand(Item::Plate);
    cmdBlanketStock = itemCommand(Item::Blanket);
    cmdDeveloperStock = itemCommand(Item::Developer);
    cmdCancel = button(p, QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    outer->addWidget(buttonBar(p, QStringLiteral("frButtons"),
                               {cmdInkStock, cmdPlateStock, cmdBlanketStock, cmdDeveloperStock, cmdCancel}, true));
    outer->addLayout(gridHeading(p, layout.heading, layout.headingNote));
    dgStock = ScreenBuild::grid(p, QStringLiteral("dgStock"));
    dgStock->setFocusPolicy(Qt::NoFocus);
    proportionalColumns(dgStock, layout.columnWidths);
    outer->addWidget(dgStock, 1);
    detailLayout()->addWidget(p, 0, 0, 1, 2);
    detailLayout()->setRowStretch(0, 1);

    m_pick = new AccountPick(cmbPartyName, m_partyCode, nullptr, this);
    typingOrder({mskDate, cmbPartyName, m_partyCode, cmbBrandName, cmbType, txtUnits, cmdInkStock, cmdPlateStock,
                 cmdBlanketStock, cmdDeveloperStock, cmdCancel},
                cmdInkStock, {cmbPartyName});
    connect(cmbBrandName, &QComboBox::currentTextChanged, this, [this] { brandChanged(); });
    connect(cmbType, &QComboBox::currentTextChanged, this, [this] { showList(); });
    connect(cmdCancel, &QPushButton::clicked, this, [this] { closeScreen(); });
}

void EmployeeStockScreen::onOpened()
{
    m_pick->reload();
}

QString EmployeeStockScreen::brandText() const
{
    return cmbBrandName->currentText();
}
QString EmployeeStockScreen::typeText() const
{
    return cmbType->currentText();
}
QString EmployeeStockScreen::employeeName() const
{
    return cmbPartyName->currentText();
}
QString EmployeeStockScreen::employeeCode() const
{
    return m_partyCode->maskText();
}
QString EmployeeStockScreen::unitsText() const
{
    return txtUnits->text();
}
