#include "vouchers/BillWisePayment.h"

#include "foundation/SessionConnection.h"

using Reports::ReportCondition;

bool BillKey::operator==(const BillKey &o) const
{
    return titleName == o.titleName && invoiceNo == o.invoiceNo && termsOfSale == o.termsOfSale
        && partyCode == o.partyCode;
}

namespace BillWisePayment {

namespace {

// The lines of one bill. Terms of sale may have been saved empty (NULL on
// some years), and such lines still make a bill.
const QString kBillWhere = QStringLiteral(" WHERE TitleName = ? AND InvoiceNo = ? AND COALESCE(TermsOfSale, '') = ? "
                                          "AND PartyCode = ?");

// An empty text bound as such, never as NULL (which a null QString binds as).
QString text(const QString &s)
{
    return s.isNull() ? QStringLiteral("") : s;
}

QVariantList keyParams(const BillKey &k)
{
    return {text(k.titleName), k.invoiceNo, text(k.termsOfSale), text(k.partyCode)};
}

} // namespace

QString statusWord(Mark mark)
{
    return mark == Mark::Done ? QStringLiteral("DONE") : QStringLiteral("");
}

QVector<BillLine> bills(SessionConnection &db, const QString &partyCode, const QDate &from, const QDate &to, Mark mark)
{
    QVector<BillLine> out;
    const QString code = partyCode.trimmed();
    if (code.isEmpty() || !from.isValid() || !to.isValid())
        return out;
    const QueryResult rows = db.select(
        QStringLiteral("SELECT InvoiceNo, TermsOfSale, ValueIncludingTax, TitleName, InvoiceDate, PartyCode, "
                       "PartyName, Status FROM BillWisePayment WHERE PartyCode = ? AND InvoiceDate >= ? "
                       "AND InvoiceDate <= ? AND Status = ? ORDER BY InvoiceNo, TitleName, TermsOfSale"),
        {code, from, to, statusWord(mark)});
    out.reserve(rows.size());
    for (const Row &r : rows) {
        BillLine b;
        b.key = {r.text("TitleName").trimmed(), r.integer("InvoiceNo"), r.text("TermsOfSale"),
            r.text("PartyCode").trimmed()};
        b.invoiceDate = r.date("InvoiceDate");
        b.partyName = r.text("PartyName").trimmed();
        b.amount = r.moneyOrZero("ValueIncludingTax");
        b.done = r.text("Status") == QLatin1String("DONE");
        out.append(b);
    }
    return out;
}

Outcome mark(SessionConnection &db, const QVector<BillKey> &bills, Mark mark)
{
    if (bills.isEmpty())
        return Outcome::refusal(QString());
    Transaction tx(db);
    int changed = 0;
    for (const BillKey &k : bills) {
        if (k.invoiceNo <= 0 || k.titleName.trimmed().isEmpty() || k.partyCode.trimmed().isEmpty())
            return Outcome::refusal(BillWiseMessages::kChangedElsewhere);
        const qint64 lines
            = db.scalar(QStringLiteral("SELECT COUNT(*) FROM tblInvoice") + kBillWhere, keyParams(k)).toLongLong();
        if (lines == 0)
            return Outcome::refusal(BillWiseMessages::kChangedElsewhere);
        QVariantList params{statusWord(mark)};
        params << keyParams(k);
        changed += db.execute(QStringLiteral("UPDATE tblInvoice SET Status = ?") + kBillWhere
                + QStringLiteral(" AND COALESCE(Status, '') <> ?"),
            params << statusWord(mark));
    }
    tx.commit();
    Outcome out = Outcome::success(QString());
    out.rowsWritten = changed;
    return out;
}

Reports::ReportRequest report(Report kind, const QString &partyName, const LedgerStatements::Period &period)
{
    const bool pending = kind == Report::Pending;
    Reports::ReportRequest r = LedgerStatements::request(QStringLiteral("crBillWisePayment"),
        pending ? QStringLiteral("CUSTOMER PENDING PAYMENT") : QStringLiteral("BILL WISE PAYMENT"),
        pending ? QStringLiteral("CUSTOMER PENDING PAYMENT REPORT") : QStringLiteral("BILL WISE PAYMENT REPORT"));
    LedgerStatements::setPeriod(r, period);
    // The bills are chosen by their own dates; no period view is read.
    r.writePeriodRow = false;
    r.conditions << ReportCondition::equal(QStringLiteral("PartyName"), partyName.trimmed());
    if (pending)
        r.conditions << ReportCondition::equal(QStringLiteral("Status"), statusWord(Mark::Pending));
    r.conditions << ReportCondition::atLeast(QStringLiteral("InvoiceDate"), period.from)
                 << ReportCondition::atMost(QStringLiteral("InvoiceDate"), period.to);
    return r;
}

} // namespace BillWisePayment
