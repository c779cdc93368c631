#include "sales/InvoicePosting.h"

#include "foundation/DateRules.h"
#include "foundation/SessionConnection.h"
#include "sales/InvoiceStaging.h"
#include "vouchers/Ledger.h"
#include "vouchers/LedgerWriter.h"
#include "vouchers/PostingChecks.h"

using namespace InvoiceMessages;
using InvoiceRules::kSalesCode;
using InvoiceRules::kSalesName;
using InvoiceRules::kVoucherType;

namespace {

const QString kNumberField = QStringLiteral("txtInvoiceNo");

VoucherKey voucherOf(const InvoiceKey &k)
{
    return {kVoucherType, k.number, k.date};
}

QVector<LedgerRow> voucherRowsOf(const InvoiceHeader &h, Money net, const QString &terms)
{
    const VoucherKey key = voucherOf(h.key);
    const QString invoiceNo = QString::number(h.key.number);
    LedgerRow customer = LedgerRow::debit(key, h.partyCode, h.partyName, net, terms, invoiceNo);
    LedgerRow sales = LedgerRow::credit(key, kSalesCode, kSalesName, net, terms, invoiceNo);
    customer.careOf = h.key.title;
    sales.careOf = h.key.title;
    return {customer, sales};
}

} // namespace

InvoicePosting::InvoicePosting(SessionConnection &db, const QString &userName, const QDate &today)
    : m_db(db)
    , m_user(userName)
    , m_today(today)
{
}

QueryResult InvoicePosting::voucherRows(SessionConnection &db, const InvoiceKey &key)
{
    return db.select(
        QStringLiteral("SELECT SrNo, PartyCode FROM tblPartyBalance WHERE VoucherType = ? AND VoucherNo = ? "
                       "AND VDate = ? AND COALESCE(CareOf, '') = ? ORDER BY SrNo"),
        {kVoucherType, key.number, key.date, key.title.trimmed()});
}

// What the screen refuses before a save, and what the ledger refuses.
Outcome InvoicePosting::checkHeader(const InvoiceHeader &h, const QVector<InvoiceLine> &lines)
{
    if (h.key.number <= 0)
        return Outcome::refusal(kNoInvoiceNo, kNumberField);
    if (InvoiceRules::netAmount(lines).isZero())
        return Outcome::refusal(kEmpty, kNumberField);
    if (h.partyName.trimmed().isEmpty())
        return Outcome::refusal(kNoParty, QStringLiteral("cmbPartyName"));
    if (h.partyCode.trimmed().isEmpty() || h.partyCode.trimmed() == Ledger::kCashCode)
        return Outcome::refusal(kPartyNotFound, QStringLiteral("cmbPartyName"));
    const Money largest = Money::fromUnits(InvoiceArithmetic::kLargestWhole);
    for (const InvoiceLine &l : lines) {
        if (!l.isLive())
            continue;
        if (l.termsOfSale.trimmed().isEmpty())
            return Outcome::refusal(kNoTerms, QStringLiteral("txtTermOfSale"));
        if (l.description.trimmed().isEmpty())
            return Outcome::refusal(kNoDescription, QStringLiteral("cmbDesc"));
        for (const Money m : {l.price, l.saleTax, l.valueWithTax})
            if (m.isNegative() || m > largest)
                return Outcome::refusal(kBadFigures);
    }
    Outcome checked = PostingChecks(m_db).check(voucherRowsOf(h, InvoiceRules::netAmount(lines), QString()));
    if (!checked && checked.field.isEmpty()) {
        const bool date = checked.message == DateRules::closedPeriodMessage()
                          || checked.message == DateRules::dateMissingMessage();
        checked.field = date ? QStringLiteral("mskDate") : QStringLiteral("cmbPartyName");
    }
    return checked;
}

void InvoicePosting::insertLine(const InvoiceHeader &h, const InvoiceLine &l)
{
    m_db.execute(QStringLiteral("INSERT INTO tblInvoice (TermsOfSale, InvoiceNo, InvoiceDate, PartyCode, PartyName, "
                                "Description, PONo, Quantity, Rate, Price, RateOfSaleTax, SaleTaxPayable, "
                                "ValueIncludingTax, ChallanNo, GateEntryNo, Type, TitleName, JobNo, CED, InvoiceDesc, "
                                "DTRE, Weight, FurtherTax, DescCode) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, "
                                "?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
        {l.termsOfSale, h.key.number, h.key.date, h.partyCode, h.partyName, l.description, l.poNo, l.quantity, l.rate,
            l.price.toVariant(), l.saleTaxRate, l.saleTax.toVariant(), l.valueWithTax.toVariant(), l.challanNo,
            l.gateEntryNo, l.type, h.key.title, l.jobNo, h.cedRate, l.invoiceDesc, h.dtre, l.weight, l.furtherTaxRate,
            h.descCode});
}

// The invoice's voucher with the amount of its lines as they now stand:
// its two rows rewritten in place when it has exactly them, otherwise
// (none, or rows left over from elsewhere) made anew.
void InvoicePosting::writeVoucher(
    const InvoiceKey &original, const InvoiceHeader &h, Money net, const QString &terms, bool existing)
{
    LedgerWriter writer(m_db, m_user, m_today);
    writer.beginBatch();
    const QVector<LedgerRow> rows = voucherRowsOf(h, net, terms);
    const VoucherKey guard = voucherOf(original);
    QueryResult old;
    if (existing)
        old = voucherRows(m_db, original);
    std::optional<qint64> customerRow, salesRow;
    int customers = 0, sales = 0;
    for (const Row &r : old) {
        if (r.text(1).trimmed() == kSalesCode) {
            ++sales;
            salesRow = r.integer(0);
        } else {
            ++customers;
            customerRow = r.integer(0);
        }
    }
    if (customers == 1 && sales == 1) {
        writer.update(*customerRow, guard, rows[0]);
        writer.update(*salesRow, guard, rows[1]);
    } else {
        for (const Row &r : old)
            writer.remove(r.integer(0), guard);
        writer.insertMany(rows);
    }
    writer.endBatch();
}

Outcome InvoicePosting::saveNew(InvoiceHeader h, const QVector<InvoiceLine> &lines, NumberPolicy policy)
{
    Transaction tx(m_db);
    Outcome out = checkHeader(h, lines);
    if (!out)
        return out;

    // One workstation at a time takes invoice numbers.
    Ledger::lockVoucherSeries(m_db, kVoucherType);
    if (InvoiceLookups::invoiceNumberTaken(m_db, h.key.title, h.key.number)) {
        if (policy == NumberPolicy::Typed)
            return Outcome::refusal(kDuplicate, kNumberField);
        const qint64 next = InvoiceLookups::nextInvoiceNo(m_db, h.key.title);
        out.notice = numberMoved(h.key.number, next);
        h.key.number = next;
    }

    writeVoucher(h.key, h, InvoiceRules::netAmount(lines), InvoiceRules::termsList(lines), false);
    for (const InvoiceLine &l : lines)
        if (l.isLive())
            insertLine(h, l);
    InvoiceStaging(m_db).clear();
    tx.commit();

    out.ok = true;
    out.message = kSaved;
    out.number = h.key.number;
    out.rowsWritten = 2;
    return out;
}

Outcome InvoicePosting::saveModified(const InvoiceKey &original, InvoiceHeader h, const QVector<InvoiceLine> &lines)
{
    h.key.title = original.title;
    h.key.number = original.number;
    Transaction tx(m_db);
    Outcome out = checkHeader(h, lines);
    if (!out)
        return out;
    // The invoice leaves its old date: that one must be open too.
    if (const Outcome open = PostingChecks(m_db).checkVoucher(kVoucherType, original.date); !open)
        return Outcome::refusal(open.message, QStringLiteral("mskDate"));
    Ledger::lockVoucherSeries(m_db, kVoucherType);

    const QString key = QStringLiteral(" WHERE SrNo = ? AND InvoiceNo = ? AND InvoiceDate = ? AND TitleName = ?");
    for (const InvoiceLine &l : lines) {
        const QVariantList where{l.srNo, original.number, original.date, original.title};
        int n = 1;
        if (l.state == LineState::Update) {
            QVariantList params{l.termsOfSale, h.key.number, h.key.date, h.partyCode, h.partyName, l.description,
                l.poNo, l.quantity, l.rate, l.price.toVariant(), l.saleTaxRate, l.saleTax.toVariant(),
                l.valueWithTax.toVariant(), l.challanNo, l.gateEntryNo, l.type, h.key.title, l.jobNo, h.cedRate,
                l.invoiceDesc, h.dtre, l.weight, l.furtherTaxRate, h.descCode};
            params << where;
            n = m_db.execute(QStringLiteral("UPDATE tblInvoice SET TermsOfSale = ?, InvoiceNo = ?, InvoiceDate = ?, "
                                            "PartyCode = ?, PartyName = ?, Description = ?, PONo = ?, Quantity = ?, "
                                            "Rate = ?, Price = ?, RateOfSaleTax = ?, SaleTaxPayable = ?, "
                                            "ValueIncludingTax = ?, ChallanNo = ?, GateEntryNo = ?, Type = ?, "
                                            "TitleName = ?, JobNo = ?, CED = ?, InvoiceDesc = ?, DTRE = ?, Weight = ?, "
                                            "FurtherTax = ?, DescCode = ?")
                    + key,
                params);
        } else if (l.state == LineState::Delete) {
            n = m_db.execute(QStringLiteral("DELETE FROM tblInvoice") + key, where);
        } else {
            insertLine(h, l);
        }
        if (n != 1)
            return Outcome::refusal(kChangedElsewhere);
    }
    // The voucher takes what the invoice's lines now hold, whatever else
    // touched them.
    const Money net
        = m_db.scalarMoney(QStringLiteral("SELECT SUM(ValueIncludingTax) FROM tblInvoice WHERE InvoiceNo = ? "
                                          "AND InvoiceDate = ? AND TitleName = ?"),
                  {h.key.number, h.key.date, h.key.title})
              .value_or(Money());
    if (net != InvoiceRules::netAmount(lines))
        return Outcome::refusal(kChangedElsewhere);
    writeVoucher(original, h, net, InvoiceRules::termsList(lines), true);
    InvoiceStaging(m_db).clear();
    tx.commit();

    out.ok = true;
    out.message = kModified;
    out.number = h.key.number;
    out.rowsWritten = 2;
    return out;
}

Outcome InvoicePosting::deleteInvoice(const InvoiceKey &original)
{
    Transaction tx(m_db);
    if (const Outcome open = PostingChecks(m_db).checkVoucher(kVoucherType, original.date); !open)
        return Outcome::refusal(open.message, QStringLiteral("mskDate"));
    Ledger::lockVoucherSeries(m_db, kVoucherType);
    LedgerWriter writer(m_db, m_user, m_today);
    writer.beginBatch();
    Outcome out;
    for (const Row &r : voucherRows(m_db, original))
        if (writer.remove(r.integer(0), voucherOf(original)))
            ++out.rowsWritten;
    writer.endBatch();
    m_db.execute(QStringLiteral("DELETE FROM tblInvoice WHERE InvoiceNo = ? AND InvoiceDate = ? AND TitleName = ?"),
        {original.number, original.date, original.title});
    InvoiceStaging(m_db).clear();
    tx.commit();
    out.ok = true;
    out.message = kDeleted;
    out.number = original.number;
    return out;
}
