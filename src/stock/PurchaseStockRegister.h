#pragma once

#include "reports/ReportFrame.h"

#include <QDate>
#include <QString>

// The purchase register of a period: one line a bill, grouped by purchase
// account and supplier, its totals equal to the "PS" ledger rows.
namespace PurchaseStockRegister {

Reports::ReportRequest request(const QDate &from, const QDate &to, const QString &fromText = QString(),
                               const QString &toText = QString());

} // namespace PurchaseStockRegister
