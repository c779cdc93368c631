#pragma once

#include "foundation/SessionConnection.h"
#include "sales/InvoiceRules.h"

#include <QStringList>

// The invoice lines of this workstation's staging (tblInvoiceEmpty, with
// the line state in Remarks) and the look-ups of posted invoices that the
// invoice screen and its save share.
class InvoiceStaging
{
public:
    explicit InvoiceStaging(SessionConnection &db)
        : m_db(db)
    {
    }

    void clear();
    // One line stamped with the invoice's header.
    void put(const InvoiceHeader &header, const InvoiceLine &line);
    // The staged lines, in SrNo order; the live ones only when asked.
    QVector<InvoiceLine> lines(bool liveOnly = false);
    // The list of the screen: SrNo, Description, PONo, Quantity, Rate.
    QueryResult gridRows();

    // The lines of a posted invoice under their own SrNo, or none.
    QVector<InvoiceLine> postedLines(const InvoiceKey &key, InvoiceHeader *header = nullptr);

private:
    SessionConnection &m_db;
};

namespace InvoiceLookups {

// Max(InvoiceNo) + 1 of a title; 1 for a title with none.
qint64 nextInvoiceNo(SessionConnection &db, const QString &title);
bool invoiceNumberTaken(SessionConnection &db, const QString &title, qint64 number);
// The terms of sale used so far, in order.
QStringList termsOfSale(SessionConnection &db);
// The description code last used with a terms text; "" when none.
QString descCodeOfTerms(SessionConnection &db, const QString &terms);
// The descriptions of earlier invoices, in order.
QStringList descriptionHistory(SessionConnection &db);
// The customers an invoice may go to: no headings, not the cash account.
QueryResult invoiceParties(SessionConnection &db);

} // namespace InvoiceLookups
