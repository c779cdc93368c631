#pragma once

#include "foundation/Outcome.h"
#include "sales/InvoiceRules.h"
#include "vouchers/VoucherPosting.h"

#include <QDate>
#include <QString>
#include <QVector>

class SessionConnection;

// Saves, changes and deletes invoices, each in one transaction: the
// invoice's lines in tblInvoice and its sale voucher in the ledger land
// together or not at all. The voucher is two rows of type SV under the
// invoice's number and date: the customer debited and "20-10-002"
// "INVOICE BALANCE" credited, both with the sum of the lines' values with
// tax, the terms list as description. Its rows carry the invoice number
// (InvoiceNo) and the title (CareOf), so that invoices of two titles with
// one number and date keep their own vouchers.
//
// The lines are given whole (the screen's, or a document made elsewhere);
// staging is emptied in the same transaction when the save succeeds. A
// refusal answers an Outcome with nothing written; a database failure
// throws DbError after everything has been rolled back.
class InvoicePosting
{
public:
    InvoicePosting(SessionConnection &db, const QString &userName, const QDate &today);

    // A new invoice. A proposed number taken meanwhile moves on to the
    // next free one of the title (`notice` says so); a typed one is
    // refused.
    Outcome saveNew(InvoiceHeader header, const QVector<InvoiceLine> &lines, NumberPolicy policy);
    // Writes the lines back by state (UPDATE in place, DELETE removed,
    // INSERT added) under the invoice found at `original`; the header may
    // carry another date or party, the title and number stay.
    Outcome saveModified(const InvoiceKey &original, InvoiceHeader header, const QVector<InvoiceLine> &lines);
    // Removes the invoice at `original`: all its lines and its voucher.
    Outcome deleteInvoice(const InvoiceKey &original);

    // The voucher rows of an invoice's key, as they stand: SrNo, PartyCode.
    static QueryResult voucherRows(SessionConnection &db, const InvoiceKey &key);

private:
    Outcome checkHeader(const InvoiceHeader &header, const QVector<InvoiceLine> &lines);
    void insertLine(const InvoiceHeader &header, const InvoiceLine &line);
    void writeVoucher(
        const InvoiceKey &original, const InvoiceHeader &header, Money net, const QString &terms, bool existing);

    SessionConnection &m_db;
    QString m_user;
    QDate m_today;
};
