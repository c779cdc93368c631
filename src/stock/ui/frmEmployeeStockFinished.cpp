#include "stock/ui/frmEmployeeStockFinished.h"

#include "accounts/ui/AccountPick.h"
#include "foundation/Session.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/ScreenServices.h"

#include <QComboBox>
#include <QTableView>

using Consumables::Item;

namespace {
SessionConnection &db() { return session().db(); }
} // namespace

frmEmployeeStockFinished::frmEmployeeStockFinished(QWidget *parent)
    : EmployeeStockScreen({QStringLiteral("cmbPartyCode"), QStringLiteral("&UPDATE STOCK"),
                           QStringLiteral("STOCK HELD BY THE EMPLOYEE"), QStringLiteral("USED FIRST ISSUED FIRST"),
                           {1800, 1800, 1200, 1000, 1000, 1000}},
                          parent)
{
    setObjectName(QStringLiteral("frmEmployeeStockFinished"));
    setTitle(QStringLiteral("EMPLOYEE STOCK"));
    setWindowTitle(QStringLiteral("EMPLOYEE STOCK FINISHED"));
    connect(pick(), &AccountPick::accountChanged, this, [this] { itemChanged(); });
    cmbPartyCode = partyCode();
}

void frmEmployeeStockFinished::startNew()
{
    mskDate->setDate(session().dateToday());
    runSafely(this, [&] {
        pick()->loadPartyList();
        if (cmbPartyName->count() > 0)
            cmbPartyName->setCurrentIndex(0);
    });
    chooseItem(Item::Ink);
    cmbPartyName->setFocus();
}

void frmEmployeeStockFinished::itemChanged()
{
    runSafely(this, [&] { fillList(cmbBrandName, EmployeeStock::brandsHeld(db(), item(), pick()->code())); });
    brandChanged();
}

void frmEmployeeStockFinished::brandChanged()
{
    runSafely(this, [&] { fillList(cmbType, EmployeeStock::typesHeld(db(), item(), cmbBrandName->currentText())); });
    showList();
}

void frmEmployeeStockFinished::showList()
{
    runSafely(this, [&] {
        showRows(dgStock, EmployeeStock::heldBy(db(), pick()->code(), item(), QDate(1900, 1, 1), QDate(9999, 12, 31)),
                 {QStringLiteral("BRAND NAME"), QStringLiteral("TYPE/COLOUR"), QStringLiteral("DATE"),
                  QStringLiteral("UNITS"), QStringLiteral("USED"), QStringLiteral("IN HAND")});
    });
}

EmployeeStock::FinishRequest frmEmployeeStockFinished::request() const
{
    auto r = fieldsRequest<EmployeeStock::FinishRequest>();
    return r;
}

bool frmEmployeeStockFinished::checkRequest()
{
    const Outcome r = EmployeeStock::checkFinish(request());
    return r.ok || refuse(r);
}

void frmEmployeeStockFinished::work()
{
    Outcome r;
    if (!runSafely(this, [&] { r = EmployeeStock::finish(db(), request()); }))
        return;
    showOutcome(r);
    showList();
}
