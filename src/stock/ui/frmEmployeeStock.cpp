#include "stock/ui/frmEmployeeStock.h"

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

frmEmployeeStock::frmEmployeeStock(QWidget *parent)
    : EmployeeStockScreen({QStringLiteral("mskPartyCode"), QStringLiteral("&SEND STOCK"),
                           QStringLiteral("RECEIPTS OF THIS BRAND AND TYPE"), QStringLiteral("ISSUED OLDEST FIRST"),
                           {900, 1300, 2600, 1000, 1000, 1000}},
                          parent)
{
    setObjectName(QStringLiteral("frmEmployeeStock"));
    setTitle(QStringLiteral("EMPLOYEE STOCK"));
    mskPartyCode = partyCode();
}

void frmEmployeeStock::startNew()
{
    mskDate->setDate(session().dateToday());
    chooseItem(Item::Ink);
    mskDate->setFocus();
}

void frmEmployeeStock::itemChanged()
{
    runSafely(this, [&] { fillList(cmbBrandName, Consumables::brands(db(), item())); });
    brandChanged();
}

void frmEmployeeStock::brandChanged()
{
    runSafely(this, [&] { fillList(cmbType, Consumables::types(db(), item(), cmbBrandName->currentText())); });
    showList();
}

void frmEmployeeStock::showList()
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
    auto r = fieldsRequest<EmployeeStock::IssueRequest>();
    r.dateText = mskDate->maskText();
    return r;
}

bool frmEmployeeStock::checkRequest()
{
    const Outcome r = EmployeeStock::checkIssue(request());
    return r.ok || refuse(r);
}

void frmEmployeeStock::work()
{
    Outcome r;
    if (!runSafely(this, [&] { r = EmployeeStock::issue(db(), request()); }))
        return;
    showOutcome(r);
    // The fields stay as they are, so the same issue can be repeated.
    showList();
}
