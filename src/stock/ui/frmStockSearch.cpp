#include "stock/ui/frmStockSearch.h"

#include "accounts/ui/AccountPick.h"
#include "foundation/Session.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/ScreenBuild.h"
#include "foundation/ui/ScreenServices.h"
#include "stock/EmployeeStock.h"

#include <QComboBox>
#include <QGridLayout>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

using namespace ScreenBuild;
using Consumables::Item;

namespace {
SessionConnection &db() { return session().db(); }
} // namespace

frmStockSearch::frmStockSearch(QWidget *parent) : ConsumablesScreen(parent)
{
    setObjectName(QStringLiteral("frmStockSearch"));
    setTitle(QStringLiteral("VIEW STOCK"));
    buttonFrame()->hide();
    frOuterStock = frame(frDetail, QStringLiteral("frOuterStock"));
    QWidget *p = frOuterStock;
    auto *outer = new QVBoxLayout(p);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addLayout(gridHeading(p, QStringLiteral("EMPLOYEE STOCK"), QString()));
    outer->addWidget(buildOptions(p));
    auto *grid = new QGridLayout;
    outer->addLayout(grid);
    FieldGrid fields(grid);
    cmbPartyName = combo(p, QStringLiteral("cmbPartyName"));
    cmbPartyName->setMinimumContentsLength(36);
    cmbPartyCode = masked(p, QStringLiteral("cmbPartyCode"), MaskedLineEdit::accountCodeMask());
    mskDateFromEmployee = masked(p, QStringLiteral("mskDateFromEmployee"), MaskedLineEdit::dateMask());
    mskDateToEmployee = masked(p, QStringLiteral("mskDateToEmployee"), MaskedLineEdit::dateMask());
    fields.put(0, 0, QStringLiteral("EMPLOYEE NAME :"), cmbPartyName, 1, true);
    fields.putFixed(0, 1, QStringLiteral("EMPLOYEE CODE :"), cmbPartyCode, 100);
    fields.putFixed(1, 0, QStringLiteral("DATE FROM :"), mskDateFromEmployee, 110);
    fields.putFixed(1, 1, QStringLiteral("DATE TO :"), mskDateToEmployee, 110);
    grid->setColumnStretch(4, 1);
    buildItemCommands(p, QStringLiteral("&VIEW"), [this] { return check(); }, [this] { showHeld(); });
    cmdInkStock = itemCommand(Item::Ink);
    cmdPlateStock = itemCommand(Item::Plate);
    cmdBlanketStock = itemCommand(Item::Blanket);
    cmdDeveloperStock = itemCommand(Item::Developer);
    cmdCancel = button(p, QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    outer->addWidget(buttonBar(p, QStringLiteral("frButtons"),
                               {cmdInkStock, cmdPlateStock, cmdBlanketStock, cmdDeveloperStock, cmdCancel}, true));
    dgStock = ScreenBuild::grid(p, QStringLiteral("dgStock"));
    dgStock->setFocusPolicy(Qt::NoFocus);
    proportionalColumns(dgStock, {1800, 1800, 1200, 1000, 1000, 1000});
    outer->addWidget(dgStock, 1);
    detailLayout()->addWidget(p, 0, 0, 1, 2);
    detailLayout()->setRowStretch(0, 1);

    m_pick = new AccountPick(cmbPartyName, cmbPartyCode, nullptr, this);
    typingOrder({cmbPartyName, cmbPartyCode, mskDateFromEmployee, mskDateToEmployee, cmdInkStock, cmdPlateStock,
                 cmdBlanketStock, cmdDeveloperStock, cmdCancel},
                cmdInkStock, {cmbPartyName});
    connect(cmdCancel, &QPushButton::clicked, this, [this] { closeScreen(); });
    const QDate today = session().dateToday();
    mskDateFromEmployee->setDate(QDate(today.year(), 1, 1));
    mskDateToEmployee->setDate(today);
}

void frmStockSearch::startEmployeeStock()
{
    runSafely(this, [&] {
        m_pick->loadPartyList();
        if (cmbPartyName->count() > 0)
            cmbPartyName->setCurrentIndex(0);
    });
    chooseItem(Item::Ink);
    cmbPartyName->setFocus();
}

void frmStockSearch::onOpened()
{
    runSafely(this, [&] {
        const QString keep = cmbPartyName->currentText();
        m_pick->loadPartyList();
        cmbPartyName->setEditText(keep);
    });
}

bool frmStockSearch::check()
{
    if (cmbPartyName->currentText().trimmed().isEmpty())
        return refuse(Outcome::refusal(EmployeeStock::Msg::employeeMissing(), QStringLiteral("cmbPartyName")));
    return ValidateDate(mskDateFromEmployee) && ValidateDate(mskDateToEmployee);
}

void frmStockSearch::showHeld()
{
    runSafely(this, [&] {
        showRows(dgStock,
                 EmployeeStock::heldBy(db(), m_pick->code(), item(), mskDateFromEmployee->date(),
                                       mskDateToEmployee->date()),
                 {QStringLiteral("BRAND NAME"), QStringLiteral("TYPE/COLOUR"), QStringLiteral("DATE"),
                  QStringLiteral("UNITS"), QStringLiteral("USED"), QStringLiteral("IN HAND")});
    });
}
