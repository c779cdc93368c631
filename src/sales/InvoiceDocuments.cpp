#include "sales/InvoiceDocuments.h"

#include "foundation/DateRules.h"
#include "foundation/Lookups.h"
#include "sales/JobPaper.h"
#include "sales/JobPaperPrinting.h"

namespace InvoiceDocuments {

using Reports::ReportCondition;
using Reports::ReportRequest;

namespace {

const QString kOriginal = QStringLiteral("ORIGINAL");
const QString kDuplicate = QStringLiteral("DUPLICATE");
const QString kTriplicate = QStringLiteral("TRIPLICATE");

// The printed heading of each invoice form (the viewer's caption is the
// copy's word).
QString headingOf(Document d)
{
    switch (d) {
    case Document::SaleTaxInvoice:
    case Document::SaleTaxInvoiceDW: return QStringLiteral("SALES TAX INVOICE");
    case Document::Bill: return QStringLiteral("BILL");
    case Document::InvoiceWithSalesTax:
    case Document::Invoice:
    case Document::InvoiceWithBalance: return QStringLiteral("INVOICE");
    default: return QString();
    }
}

bool signedWithStamp(Document d)
{
    return d == Document::SaleTaxInvoice || d == Document::SaleTaxInvoiceDW || d == Document::InvoiceWithSalesTax;
}

QString numberMissing(Group g)
{
    switch (g) {
    case Group::Challan: return Messages::kNoChallanNo;
    case Group::Order: return Messages::kNoOrderNo;
    case Group::Invoice: return Messages::kNoInvoiceNo;
    }
    return QString();
}

QString numberField(Group g)
{
    return g == Group::Invoice ? QStringLiteral("txtInvoiceNo") : QStringLiteral("txtChallanNo");
}

ReportRequest invoiceCopy(const Variant &v, const Selection &s, const QString &copy,
                          const std::optional<Lookups::Letterhead> &letterhead, const QString &companyName)
{
    ReportRequest req;
    req.design = v.design;
    req.title = copy.isEmpty() ? v.caption : copy;
    req.heading = headingOf(v.document);
    req.copyCaption = copy;
    req.letterhead = letterhead;
    req.conditions << ReportCondition::equal(QStringLiteral("TitleName"), JobPaper::text(s.title.trimmed()))
                   << ReportCondition::equal(QStringLiteral("InvoiceDate"), s.date)
                   << ReportCondition::equal(QStringLiteral("InvoiceNo"), s.number);
    if (signedWithStamp(v.document)) {
        const QString stamp = s.stamp.trimmed().isEmpty() ? kStamps.first() : s.stamp.trimmed();
        QString signature = stamp;
        if (!companyName.trimmed().isEmpty())
            signature += QLatin1Char('\n') + companyName.trimmed();
        req.signatures = {QStringLiteral("RECEIVED BY"), signature};
    }
    return req;
}

} // namespace

const QVector<Variant> &variants()
{
    static const QVector<Variant> all = {
        {Document::DeliveryChallan, QStringLiteral("optDeliveryChallan"), QStringLiteral("DELIVERY CHALLAN"),
         QStringLiteral("crDeliveryChallan"), {kOriginal, kDuplicate}, Group::Challan},
        {Document::DeliveryChallanByDemandNo, QStringLiteral("optDeliveryChallanByDemandNo"),
         QStringLiteral("DELIVERY CHALLAN ORDER BY DEMAND #"), QStringLiteral("crDeliveryChallanByDemandNo"),
         {kOriginal, kDuplicate}, Group::Challan},
        {Document::PurchaseOrder, QStringLiteral("optPurchaseOrder"), QStringLiteral("PURCHASE ORDER"),
         QStringLiteral("crPurchaseOrder"), {QString()}, Group::Order},
        {Document::PurchaseOrderWithoutRate, QStringLiteral("optPurchaseOrderWithoutRate"),
         QStringLiteral("PURCHASE ORDER WITHOUT RATE"), QStringLiteral("crPurchaseOrderWithoutRate"), {QString()},
         Group::Order},
        {Document::SaleTaxInvoice, QStringLiteral("optSaleTaxInvoice"), QStringLiteral("SALE TAX INVOICE"),
         QStringLiteral("crSalesTaxInvoice"), {kOriginal, kDuplicate, kTriplicate}, Group::Invoice},
        {Document::SaleTaxInvoiceDW, QStringLiteral("optSaleTaxInvoiceDW"),
         QStringLiteral("SALE TAX INVOICE WITH DTRE / KG"), QStringLiteral("crSalesTaxInvoiceDW"),
         {kOriginal, kDuplicate, kTriplicate}, Group::Invoice},
        {Document::Bill, QStringLiteral("optBill"), QStringLiteral("BILL"), QStringLiteral("crBill"), {QString()},
         Group::Invoice},
        {Document::Invoice, QStringLiteral("optInvoice"), QStringLiteral("INVOICE"), QStringLiteral("crInvoice"),
         {kOriginal, kDuplicate}, Group::Invoice},
        {Document::InvoiceWithSalesTax, QStringLiteral("optInvoiceWithSalesTax"), QStringLiteral("INVOICE WITH SALE TAX"),
         QStringLiteral("crInvoiceWithSalesTax"), {kOriginal, kDuplicate}, Group::Invoice},
        {Document::InvoiceWithBalance, QStringLiteral("optInvoiceWithBalance"), QStringLiteral("INVOICE WITH BALANCE"),
         QStringLiteral("crInvoiceWithBalance"), {kOriginal, kDuplicate}, Group::Invoice},
    };
    return all;
}

const Variant &variant(Document document)
{
    return variants().at(static_cast<int>(document));
}

QVector<Document> offeredBy(const QString &menuEntry)
{
    using D = Document;
    if (menuEntry == QLatin1String("mnuViewDeliveryChallan"))
        return {D::DeliveryChallan, D::DeliveryChallanByDemandNo};
    if (menuEntry == QLatin1String("mnuViewPurchaseOrder"))
        return {D::PurchaseOrder, D::PurchaseOrderWithoutRate};
    // The invoice with its sale tax set out stays on offer whichever invoice
    // entry opens the screen; only VIEW INVOICE adds the one with the balance.
    if (menuEntry == QLatin1String("mnuViewInvoice"))
        return {D::SaleTaxInvoice, D::SaleTaxInvoiceDW, D::Invoice, D::InvoiceWithBalance, D::Bill,
                D::InvoiceWithSalesTax};
    if (menuEntry == QLatin1String("mnuViewPrintBill") || menuEntry == QLatin1String("mnuViewPrintInvoice"))
        return {D::SaleTaxInvoice, D::SaleTaxInvoiceDW, D::Invoice, D::Bill, D::InvoiceWithSalesTax};
    return {};
}

Labels labelsOf(Document document)
{
    const QString invoiceNo = QStringLiteral("INVOICE #:");
    const QString partyCode = QStringLiteral("PARTY CODE:");
    switch (document) {
    case Document::Bill: return {QStringLiteral("BILL"), QString(), invoiceNo};
    case Document::Invoice: return {QStringLiteral("INVOICE"), QString(), invoiceNo};
    case Document::SaleTaxInvoice: return {QStringLiteral("SALE TAX INVOICE"), QString(), invoiceNo};
    case Document::DeliveryChallan: return {QStringLiteral("DELIVERY CHALLAN"), partyCode, QStringLiteral("CHALLAN #:")};
    case Document::PurchaseOrder: return {QStringLiteral("PURCHASE ORDER"), partyCode, QStringLiteral("PO.#:")};
    default: return {};
    }
}

QueryResult search(SessionConnection &db, const Search &s)
{
    const QVariantList params{s.from, s.to, JobPaper::text(s.title.trimmed()),
                              QStringLiteral("%") + s.partyWords.trimmed().toUpper() + QStringLiteral("%")};
    switch (s.group) {
    case Group::Challan:
        return db.select(QStringLiteral("SELECT DISTINCT DeliveryChallanNo AS DCN, VDate, PartyName, PartyCode "
                                        "FROM tblDeliveryChallan WHERE VDate BETWEEN ? AND ? AND TitleName = ? "
                                        "AND PartyName LIKE ? ORDER BY DeliveryChallanNo, VDate"),
                         params);
    case Group::Order:
        return db.select(QStringLiteral("SELECT DISTINCT PONo AS PN, VDate, PartyName, PartyCode FROM tblPurchaseOrder "
                                        "WHERE VDate BETWEEN ? AND ? AND TitleName = ? AND PartyName LIKE ? "
                                        "ORDER BY PONo, VDate"),
                         params);
    case Group::Invoice:
        break;
    }
    return db.select(QStringLiteral("SELECT DISTINCT InvoiceNo, InvoiceDate, PartyName, ChallanNo FROM tblInvoice "
                                    "WHERE InvoiceDate BETWEEN ? AND ? AND TitleName = ? AND PartyName LIKE ? "
                                    "ORDER BY InvoiceNo, InvoiceDate, PartyName, ChallanNo"),
                     params);
}

QStringList searchCaptions(Group group)
{
    switch (group) {
    case Group::Challan:
        return {QStringLiteral("CHALLAN #"), QStringLiteral("DATE"), QStringLiteral("PARTY NAME"), QStringLiteral("CODE")};
    case Group::Order:
        return {QStringLiteral("PONO #"), QStringLiteral("DATE"), QStringLiteral("PARTY NAME"), QStringLiteral("CODE")};
    case Group::Invoice:
        break;
    }
    return {QStringLiteral("INVOICE #"), QStringLiteral("DATE"), QStringLiteral("PARTY NAME"), QStringLiteral("CHALLAN #")};
}

Outcome checkView(Document document, const QString &numberText, const QString &dateMaskText)
{
    const Group g = variant(document).group;
    bool ok = false;
    const qint64 n = numberText.trimmed().toLongLong(&ok);
    if (!ok || n <= 0)
        return Outcome::refusal(numberMissing(g), numberField(g));
    const DateRules::Check date = DateRules::checkDate(dateMaskText);
    if (date != DateRules::Check::Ok)
        return Outcome::refusal(DateRules::messageFor(date), QStringLiteral("mskDate"));
    return Outcome::passed();
}

Copies copies(SessionConnection &db, const Selection &s)
{
    Copies out;
    const Variant &v = variant(s.document);
    if (s.number <= 0) {
        out.outcome = Outcome::refusal(numberMissing(v.group), numberField(v.group));
        return out;
    }
    if (!s.date.isValid()) {
        out.outcome = Outcome::refusal(DateRules::dateMissingMessage(), QStringLiteral("mskDate"));
        return out;
    }
    const QString title = s.title.trimmed();
    switch (v.group) {
    case Group::Challan:
        for (const QString &copy : v.copies) {
            ReportRequest req = JobPaperPrinting::deliveryChallan(db, title, s.number, s.date, copy,
                                                                  s.document == Document::DeliveryChallanByDemandNo);
            req.heading = req.title;
            req.title = copy;
            out.requests << req;
        }
        break;
    case Group::Order:
        out.requests << JobPaperPrinting::purchaseOrder(db, title, s.number, s.date,
                                                        s.document == Document::PurchaseOrder);
        out.requests.last().title = v.caption;
        out.requests.last().heading = QStringLiteral("PURCHASE ORDER");
        break;
    case Group::Invoice: {
        std::optional<Lookups::Letterhead> letterhead;
        if (!title.isEmpty())
            letterhead = Lookups::letterhead(db, title);
        const QString company = Reports::ReportFrame::headerTexts(db, letterhead).clientName;
        for (const QString &copy : v.copies)
            out.requests << invoiceCopy(v, s, copy, letterhead, company);
        break;
    }
    }
    return out;
}

} // namespace InvoiceDocuments
