#include "stock/ui/frmPurchaseRegister.h"

#include "foundation/DateRules.h"
#include "foundation/Session.h"
#include "foundation/ui/CommandGate.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/ScreenServices.h"
#include "reports/LedgerStatements.h"
#include "reports/ui/frmViewReport.h"
#include "stock/PurchaseStockRegister.h"

#include <QPushButton>

frmPurchaseRegister::frmPurchaseRegister(QWidget *parent)
    : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmPurchaseRegister"));
    setTitle(QStringLiteral("PURCHASE REGISTER"));
    setWindowTitle(QStringLiteral("PURCHASE REGISTER"));
    mskDateFrom = addMaskedEdit(QStringLiteral("mskDateFrom"), QStringLiteral("DATE FROM:"), MaskedLineEdit::dateMask());
    mskDateTo = addMaskedEdit(QStringLiteral("mskDateTo"), QStringLiteral("DATE TO:"), MaskedLineEdit::dateMask());
    EnterToTab::attach(mskDateFrom);
    EnterToTab::attach(mskDateTo);
    cmdSearch = addButton(QStringLiteral("cmdSearch"), QStringLiteral("&SEARCH"));
    cmdCancel = addButton(QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    packFields();
    new CommandGate(cmdSearch, [this] { return ValidateDate(mskDateFrom) && ValidateDate(mskDateTo); },
                    [this] { search(); });
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);
}

void frmPurchaseRegister::onOpened()
{
    runSafely(this, [&] {
        if (const auto first = LedgerStatements::firstOpenDate(session().db()))
            mskDateFrom->setDate(*first);
    });
    mskDateTo->setDate(session().dateToday());
    mskDateFrom->setFocus();
}

void frmPurchaseRegister::search()
{
    cmdSearch->setEnabled(false);
    Reports::showReport(this, PurchaseStockRegister::request(mskDateFrom->date(), mskDateTo->date(),
                                                             mskDateFrom->maskText(), mskDateTo->maskText()));
    cmdSearch->setEnabled(true);
}
