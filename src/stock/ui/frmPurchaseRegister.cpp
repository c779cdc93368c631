#include "stock/ui/frmPurchaseRegister.h"

#include "foundation/ui/MaskedLineEdit.h"
#include "stock/PurchaseStockRegister.h"

frmPurchaseRegister::frmPurchaseRegister(QWidget *parent)
    : PeriodReportScreen(parent, "frmPurchaseRegister", QStringLiteral("PURCHASE REGISTER"))
{
    setWindowTitle(QStringLiteral("PURCHASE REGISTER"));
    cmdSearch = addPrintButton("cmdSearch", QStringLiteral("&SEARCH"));
}

std::optional<Reports::ReportRequest> frmPurchaseRegister::request()
{
    return PurchaseStockRegister::request(mskDateFrom->date(), mskDateTo->date(), mskDateFrom->maskText(),
                                          mskDateTo->maskText());
}
