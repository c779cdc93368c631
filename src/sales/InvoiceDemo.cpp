#include "sales/InvoiceDemo.h"

#include "foundation/SessionConnection.h"
#include "sales/InvoicePosting.h"
#include "sales/InvoiceSources.h"
#include "sales/InvoiceStaging.h"
#include "vouchers/DemoGenerator.h"

#include <QHash>
#include <QStringList>

namespace InvoiceDemo {

namespace {

const QStringList kProducts = {QStringLiteral("CARTON 12X8X6 3 PLY"), QStringLiteral("LABEL 4 COLOUR"),
    QStringLiteral("LEAFLET A4 ART PAPER"), QStringLiteral("LETTERHEAD 80 GSM"), QStringLiteral("VISITING CARD"),
    QStringLiteral("BROCHURE 8 PAGES"), QStringLiteral("POSTER 18X23"), QStringLiteral("STICKER ROLL"),
    QStringLiteral("FILE COVER"), QStringLiteral("ENVELOPE 9X4")};
const QStringList kTerms = {QStringLiteral("CREDIT SALE"), QStringLiteral("CASH SALE"), QStringLiteral("ADVANCE")};

struct Saver
{
    DemoContext &c;
    QHash<QString, qint64> next; // the next number of each title

    void save(const QString &title, const DemoAccount &customer, const QDate &date, QVector<InvoiceLine> lines)
    {
        if (!next.contains(title))
            next.insert(title, InvoiceLookups::nextInvoiceNo(c.db, title));
        InvoiceHeader h;
        h.key = {title, next[title]++, date};
        h.partyCode = customer.code;
        h.partyName = customer.name;
        const QString terms = kTerms.at(c.rng.bounded(int(kTerms.size())));
        for (InvoiceLine &l : lines) {
            l.termsOfSale = terms;
            l.saleTaxRate = QStringLiteral("17");
            l.furtherTaxRate = c.rng.bounded(5) == 0 ? QStringLiteral("3") : QStringLiteral("0");
            InvoiceRules::computeFigures(l);
        }
        const Outcome out = InvoicePosting(c.db, c.options.userName, date).saveNew(h, lines, NumberPolicy::Typed);
        if (!out)
            throw DbError(QStringLiteral("The demonstration invoice was refused: %1").arg(out.message));
        c.ledgerRows += out.rowsWritten;
        ++c.vouchers;
    }

    QString rate()
    {
        return QString::number(c.rng.bounded(2, 400)) + (c.rng.bounded(2) ? QStringLiteral(".5") : QString());
    }
};

} // namespace

void invoicePart(DemoContext &c)
{
    if (c.chart.customers.isEmpty())
        return;
    c.flush(); // the vouchers before these in the ledger
    Saver saver{c, {}};
    QHash<QString, DemoAccount> customers;
    for (const DemoAccount &a : c.chart.customers)
        customers.insert(a.code, a);

    // Every challan not invoiced yet, a few days after it went out.
    const QueryResult challans = c.db.select(
        QStringLiteral("SELECT DISTINCT d.PartyCode, d.PONo, d.DeliveryChallanNo, d.TitleName, d.VDate "
                       "FROM tblDeliveryChallan d WHERE NOT EXISTS (SELECT 1 FROM tblInvoice i WHERE "
                       "i.PartyCode = d.PartyCode AND i.TitleName = d.TitleName AND "
                       "i.ChallanNo = CAST(d.DeliveryChallanNo AS TEXT)) ORDER BY d.VDate, d.DeliveryChallanNo"));
    for (const Row &r : challans) {
        const QString code = r.text(0).trimmed();
        if (!customers.contains(code))
            continue;
        const QString po = r.text(1);
        QVector<InvoiceLine> lines;
        for (const InvoiceSources::ChallanLine &cl : InvoiceSources::challanLines(c.db, r.text(3).trimmed(), code, po, r.integer(2))) {
            InvoiceLine l;
            l.description = cl.description;
            l.invoiceDesc = cl.description;
            l.poNo = cl.poNo;
            l.quantity = cl.quantity;
            l.rate = InvoiceSources::orderPrice(c.db, code, po, cl.description).value_or(saver.rate());
            l.challanNo = QString::number(cl.challanNo);
            l.gateEntryNo = cl.gateEntryNo;
            l.type = cl.type.isEmpty() ? QStringLiteral("Pcs") : cl.type;
            l.jobNo = cl.demandNo;
            lines << l;
        }
        if (lines.isEmpty())
            continue;
        const QDate sent = r.date(4).isValid() ? r.date(4) : c.options.from;
        saver.save(
            r.text(3).trimmed(), customers.value(code), qMin(sent.addDays(c.rng.bounded(6)), c.options.to), lines);
    }

    // Invoices of typed lines for the rest of the year's sales.
    QStringList titles;
    for (const Row &r : c.db.select(QStringLiteral("SELECT TitleName FROM tblTitleName ORDER BY TitleName")))
        titles << r.text(0).trimmed();
    if (titles.isEmpty())
        titles << QString();
    const qint64 want = qMax<qint64>(5, c.options.rows / 100);
    const qint64 days = qMax<qint64>(1, c.options.from.daysTo(c.options.to));
    for (qint64 i = 0; i < want; ++i) {
        QVector<InvoiceLine> lines;
        const int n = 1 + c.rng.bounded(4);
        for (int k = 0; k < n; ++k) {
            InvoiceLine l;
            l.description = kProducts.at(c.rng.bounded(int(kProducts.size())));
            l.invoiceDesc = l.description;
            l.quantity = QString::number(c.rng.bounded(1, 200) * 50);
            l.rate = saver.rate();
            l.type = QStringLiteral("Pcs");
            lines << l;
        }
        saver.save(titles.at(c.rng.bounded(int(titles.size()))), c.pick(c.chart.customers),
            c.options.from.addDays(days * i / want), lines);
    }
}

} // namespace InvoiceDemo
