#pragma once

#include "foundation/Outcome.h"
#include "foundation/SessionConnection.h"
#include "reports/ReportFrame.h"

#include <QDate>
#include <QString>
#include <QStringList>
#include <QVector>

// The sales documents printed after the fact ("SALE TAX INVOICE / BILL"):
// a delivery challan, a purchase order, or an invoice in one of its six
// printed forms, found by period, title and party and printed once per
// copy, each copy with its word under the heading. Widget-free: the
// screen reads its fields and shows the requests made here, one after the
// other.
namespace InvoiceDocuments {

// The words of the screen.
namespace Messages {
inline const QString kNoChallanNo
    = QStringLiteral("Delivery challan # is missing, please enter delivery challan #.");
inline const QString kNoOrderNo = QStringLiteral("Purchase order # is missing, please enter purchase order #.");
inline const QString kNoInvoiceNo = QStringLiteral("Invoice # is missing, please enter invoice #");
} // namespace Messages

// Every printed form, in the order the screen tries its options.
enum class Document {
    DeliveryChallan,
    DeliveryChallanByDemandNo,
    PurchaseOrder,
    PurchaseOrderWithoutRate,
    SaleTaxInvoice,
    SaleTaxInvoiceDW,
    Bill,
    Invoice,
    InvoiceWithSalesTax,
    InvoiceWithBalance,
};

// Which table a document is found in, and so which number it needs.
enum class Group { Challan, Order, Invoice };

struct Variant
{
    Document document;
    QString option;      // the option button's objectName
    QString caption;     // its caption
    QString design;
    QStringList copies;  // the copies printed, each with its word; one empty word: one copy, no word
    Group group;
};

// The ten forms in the screen's order.
const QVector<Variant> &variants();
const Variant &variant(Document document);

// The forms a menu entry offers; none for another entry.
QVector<Document> offeredBy(const QString &menuEntry);

// What the screen's title strip and the two captions say once an option
// is picked: "BILL" with "INVOICE #:", "DELIVERY CHALLAN" with "PARTY
// CODE:" and "CHALLAN #:" ... Empty texts leave what stands.
struct Labels
{
    QString title;
    QString partyCaption;
    QString numberCaption;
};
Labels labelsOf(Document document);

// The documents of the period of one title whose party's name holds
// `partyWords` (empty: every party), in number order: number, date, party
// name, and the challan (invoices) or party code (challans, orders).
struct Search
{
    Group group = Group::Invoice;
    QDate from;
    QDate to;
    QString title;
    QString partyWords;
};
QueryResult search(SessionConnection &db, const Search &s);
QStringList searchCaptions(Group group);

// What the print button refuses: a document without its number, or
// without a date.
Outcome checkView(Document document, const QString &numberText, const QString &dateMaskText);

// One document to print: its form, title, number and date, and for the
// three forms of a sales-tax invoice the stamp of the signature line
// ("PROPRIETOR" or "ACCOUNTANT").
struct Selection
{
    Document document = Document::SaleTaxInvoice;
    QString title;
    qint64 number = 0;
    QDate date;
    QString stamp = QStringLiteral("PROPRIETOR");
};

// The copies to print, in order. The invoice printed is the one of the
// title, number and date given: its number is a condition of the report,
// never a value left in a shared row. A refusal (no number, no date)
// answers the Outcome and no copy.
struct Copies
{
    Outcome outcome;
    QVector<Reports::ReportRequest> requests;
};
Copies copies(SessionConnection &db, const Selection &s);

inline const QStringList kStamps = {QStringLiteral("PROPRIETOR"), QStringLiteral("ACCOUNTANT")};

} // namespace InvoiceDocuments
