#include "stock/PurchaseStockRegister.h"

namespace PurchaseStockRegister {

Reports::ReportRequest request(const QDate &from, const QDate &to, const QString &fromText, const QString &toText)
{
    Reports::ReportRequest r;
    r.design = QStringLiteral("crPurchaseRegister");
    r.title = QStringLiteral("PURCHASE REGISTER");
    r.heading = QStringLiteral("PURCHASE REGISTER");
    r.from = from;
    r.to = to;
    r.fromText = fromText;
    r.toText = toText;
    r.writePeriodRow = false; // the register writes no period into the company row
    r.conditions << Reports::ReportCondition::atLeast(QStringLiteral("VDate"), from)
                 << Reports::ReportCondition::atMost(QStringLiteral("VDate"), to);
    return r;
}

} // namespace PurchaseStockRegister
