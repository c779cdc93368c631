#include "sales/JobPaperPrinting.h"

#include "foundation/Lookups.h"
#include "sales/JobPaper.h"

namespace JobPaperPrinting {

using Reports::ReportCondition;
using Reports::ReportRequest;

namespace {

void withLetterhead(SessionConnection &db, ReportRequest &req, const QString &title)
{
    if (!title.trimmed().isEmpty())
        req.letterhead = Lookups::letterhead(db, title.trimmed());
}

} // namespace

ReportRequest purchaseOrder(SessionConnection &db, const QString &title, qint64 poNo, const QDate &date,
                            bool withRate)
{
    ReportRequest req;
    req.design = withRate ? QStringLiteral("crPurchaseOrder") : QStringLiteral("crPurchaseOrderWithoutRate");
    req.title = QStringLiteral("PURCHASE ORDER");
    req.conditions << ReportCondition::equal(QStringLiteral("PONo"), poNo)
                   << ReportCondition::equal(QStringLiteral("VDate"), date)
                   << ReportCondition::equal(QStringLiteral("TitleName"), JobPaper::text(title.trimmed()));
    withLetterhead(db, req, title);
    return req;
}

ReportRequest jobCard(SessionConnection &db, qint64 jobCardNo, const QString &workingTitle)
{
    ReportRequest req;
    req.design = QStringLiteral("crJobCard");
    req.title = QStringLiteral("JOB CARD");
    req.conditions << ReportCondition::equal(QStringLiteral("JobCardNo"), jobCardNo);
    withLetterhead(db, req, workingTitle);
    return req;
}

ReportRequest deliveryChallan(SessionConnection &db, const QString &title, qint64 challanNo, const QDate &date,
                              const QString &copy, bool byDemandNo)
{
    ReportRequest req;
    req.design = byDemandNo ? QStringLiteral("crDeliveryChallanByDemandNo") : QStringLiteral("crDeliveryChallan");
    req.title = QStringLiteral("DELIVERY CHALLAN");
    req.copyCaption = copy;
    req.conditions << ReportCondition::equal(QStringLiteral("TitleName"), JobPaper::text(title.trimmed()))
                   << ReportCondition::equal(QStringLiteral("VDate"), date)
                   << ReportCondition::equal(QStringLiteral("DeliveryChallanNo"), challanNo);
    withLetterhead(db, req, title);
    return req;
}

} // namespace JobPaperPrinting
