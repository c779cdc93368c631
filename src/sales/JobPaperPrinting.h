#pragma once

#include "reports/ReportFrame.h"

#include <QDate>
#include <QString>

class SessionConnection;

// The printed papers of a job, as report requests: each with the letterhead
// of its title (the working one for a job card, which has no title).
namespace JobPaperPrinting {

// crPurchaseOrder, or crPurchaseOrderWithoutRate when `withRate` is false.
Reports::ReportRequest purchaseOrder(SessionConnection &db, const QString &title, qint64 poNo, const QDate &date,
                                     bool withRate = true);
Reports::ReportRequest jobCard(SessionConnection &db, qint64 jobCardNo, const QString &workingTitle);
// crDeliveryChallan, or crDeliveryChallanByDemandNo, with its copy
// caption ("ORIGINAL", "DUPLICATE").
Reports::ReportRequest deliveryChallan(SessionConnection &db, const QString &title, qint64 challanNo,
                                       const QDate &date, const QString &copy = QStringLiteral("ORIGINAL"),
                                       bool byDemandNo = false);

} // namespace JobPaperPrinting
