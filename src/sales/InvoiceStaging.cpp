#include "sales/InvoiceStaging.h"

#include "vouchers/Ledger.h"

namespace {

const QString kLineColumns = QStringLiteral(
    "SrNo, TermsOfSale, InvoiceNo, InvoiceDate, PartyCode, PartyName, Description, PONo, Quantity, Rate, Price, "
    "RateOfSaleTax, SaleTaxPayable, ValueIncludingTax, ChallanNo, GateEntryNo, Type, TitleName, JobNo, CED, "
    "InvoiceDesc, DTRE, Weight, FurtherTax, DescCode");

QString numberText(const Row &r, const char *column)
{
    return InvoiceArithmetic::decimalText(r.value(QString::fromLatin1(column)));
}

InvoiceLine lineFromRow(const Row &r)
{
    InvoiceLine l;
    l.srNo = r.integer("SrNo");
    l.state = r.has(QStringLiteral("Remarks"))
        ? lineStateFromWord(r.text("Remarks").trimmed()).value_or(LineState::Insert)
        : LineState::Update;
    l.termsOfSale = r.text("TermsOfSale");
    l.description = r.text("Description");
    l.poNo = r.text("PONo");
    l.quantity = numberText(r, "Quantity");
    l.rate = numberText(r, "Rate");
    l.price = r.moneyOrZero("Price");
    l.saleTaxRate = numberText(r, "RateOfSaleTax");
    l.saleTax = r.moneyOrZero("SaleTaxPayable");
    l.valueWithTax = r.moneyOrZero("ValueIncludingTax");
    l.challanNo = r.text("ChallanNo");
    l.gateEntryNo = r.text("GateEntryNo");
    l.type = r.text("Type");
    l.jobNo = r.text("JobNo");
    l.cedRate = numberText(r, "CED");
    l.invoiceDesc = r.text("InvoiceDesc");
    l.dtre = r.text("DTRE");
    l.weight = r.text("Weight");
    l.furtherTaxRate = numberText(r, "FurtherTax");
    l.descCode = r.text("DescCode");
    return l;
}

} // namespace

void InvoiceStaging::clear()
{
    m_db.execute(QStringLiteral("DELETE FROM tblInvoiceEmpty"));
}

void InvoiceStaging::put(const InvoiceHeader &h, const InvoiceLine &l)
{
    m_db.execute(QStringLiteral("INSERT INTO tblInvoiceEmpty (") + kLineColumns
            + QStringLiteral(", Remarks) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, "
                             "?, ?, ?, ?, ?, ?)"),
        {l.srNo, l.termsOfSale, h.key.number, h.key.date, h.partyCode, h.partyName, l.description, l.poNo, l.quantity,
            l.rate, l.price.toVariant(), l.saleTaxRate, l.saleTax.toVariant(), l.valueWithTax.toVariant(), l.challanNo,
            l.gateEntryNo, l.type, h.key.title, l.jobNo, h.cedRate, l.invoiceDesc, h.dtre, l.weight, l.furtherTaxRate,
            h.descCode, lineStateWord(l.state)});
}

QVector<InvoiceLine> InvoiceStaging::lines(bool liveOnly)
{
    QVector<InvoiceLine> out;
    const QString where = liveOnly ? QStringLiteral(" WHERE Remarks IN ('INSERT', 'UPDATE')") : QString();
    for (const Row &r : m_db.select(QStringLiteral("SELECT ") + kLineColumns
             + QStringLiteral(", Remarks FROM tblInvoiceEmpty") + where + QStringLiteral(" ORDER BY SrNo")))
        out << lineFromRow(r);
    return out;
}

QueryResult InvoiceStaging::gridRows()
{
    return m_db.select(QStringLiteral("SELECT SrNo, Description, PONo, Quantity, Rate FROM tblInvoiceEmpty "
                                      "WHERE Remarks IN ('INSERT', 'UPDATE') ORDER BY SrNo"));
}

QVector<InvoiceLine> InvoiceStaging::postedLines(const InvoiceKey &key, InvoiceHeader *header)
{
    QVector<InvoiceLine> out;
    const QueryResult rows = m_db.select(QStringLiteral("SELECT ") + kLineColumns
            + QStringLiteral(" FROM tblInvoice WHERE InvoiceNo = ? AND InvoiceDate = ? "
                             "AND TitleName = ? ORDER BY SrNo"),
        {key.number, key.date, key.title});
    for (const Row &r : rows)
        out << lineFromRow(r);
    if (header && !rows.rows.isEmpty()) {
        const Row &last = rows.rows.last();
        header->key = key;
        header->partyCode = last.text("PartyCode").trimmed();
        header->partyName = last.text("PartyName").trimmed();
        header->cedRate = out.last().cedRate; // the last line's CED stands for the invoice
        header->dtre = last.text("DTRE");
        header->descCode = last.text("DescCode");
    }
    return out;
}

namespace InvoiceLookups {

qint64 nextInvoiceNo(SessionConnection &db, const QString &title)
{
    return db.scalar(QStringLiteral("SELECT MAX(InvoiceNo) FROM tblInvoice WHERE TitleName = ?"), {title}).toLongLong()
        + 1;
}

bool invoiceNumberTaken(SessionConnection &db, const QString &title, qint64 number)
{
    return db
        .selectOne(QStringLiteral("SELECT SrNo FROM tblInvoice WHERE InvoiceNo = ? AND TitleName = ?"), {number, title})
        .has_value();
}

QStringList termsOfSale(SessionConnection &db)
{
    QStringList out;
    for (const Row &r : db.select(QStringLiteral("SELECT DISTINCT TermsOfSale FROM tblInvoice "
                                                 "WHERE TermsOfSale IS NOT NULL ORDER BY TermsOfSale")))
        out << r.text(0);
    return out;
}

QString descCodeOfTerms(SessionConnection &db, const QString &terms)
{
    const auto r = db.selectOne(QStringLiteral("SELECT DescCode FROM tblInvoice WHERE TermsOfSale = ? "
                                               "ORDER BY SrNo DESC LIMIT 1"),
        {terms});
    return r ? r->text(0) : QString();
}

QStringList descriptionHistory(SessionConnection &db)
{
    QStringList out;
    for (const Row &r : db.select(QStringLiteral("SELECT DISTINCT Description FROM tblInvoice "
                                                 "WHERE Description IS NOT NULL ORDER BY Description")))
        out << r.text(0);
    return out;
}

QueryResult invoiceParties(SessionConnection &db)
{
    return db.select(
        QStringLiteral("SELECT PartyName, PartyCode FROM tblPartyInfo WHERE PartyCode NOT LIKE '__-__-000%' "
                       "AND PartyCode <> ? ORDER BY PartyName"),
        {Ledger::kCashCode});
}

} // namespace InvoiceLookups
