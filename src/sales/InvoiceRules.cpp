#include "sales/InvoiceRules.h"

#include <QSet>
#include <QStringList>

QString InvoiceMessages::numberMoved(qint64 typed, qint64 saved)
{
    return QStringLiteral("Invoice # %1 has been taken by another workstation, this invoice is saved as Invoice # %2")
        .arg(typed)
        .arg(saved);
}

namespace InvoiceRules {

using namespace InvoiceMessages;

Outcome checkLineHead(const LineEntry &e, LineCommand command)
{
    if (command == LineCommand::Add && e.termsOfSale.trimmed().isEmpty())
        return Outcome::refusal(kNoTerms, QStringLiteral("txtTermOfSale"));
    if (e.invoiceNo.trimmed().isEmpty())
        return Outcome::refusal(kNoInvoiceNo, QStringLiteral("txtInvoiceNo"));
    return Outcome::passed();
}

Outcome checkLineTail(const LineEntry &e, LineCommand command)
{
    if (e.partyName.trimmed().isEmpty())
        return Outcome::refusal(kNoParty, QStringLiteral("cmbPartyName"));
    if (e.partyCode.trimmed().isEmpty())
        return Outcome::refusal(
            command == LineCommand::Add ? kPartyNotFound : kPartyCodeNotFound, QStringLiteral("cmbPartyName"));
    if (command != LineCommand::Add)
        return Outcome::passed();
    if (e.description.trimmed().isEmpty())
        return Outcome::refusal(kNoDescription, QStringLiteral("cmbDesc"));
    if (e.quantity.trimmed().isEmpty())
        return Outcome::refusal(kNoQuantity, QStringLiteral("txtQuantity"));
    if (e.rate.trimmed().isEmpty())
        return Outcome::refusal(kNoRate, QStringLiteral("txtRate"));
    return Outcome::passed();
}

Outcome computeFigures(InvoiceLine &l)
{
    auto zeroIfEmpty = [](QString &s) {
        if (s.trimmed().isEmpty())
            s = QStringLiteral("0");
    };
    for (QString *s : {&l.quantity, &l.rate, &l.saleTaxRate, &l.furtherTaxRate, &l.cedRate})
        zeroIfEmpty(*s);
    const auto f = InvoiceArithmetic::computeLine({l.quantity, l.rate, l.saleTaxRate, l.furtherTaxRate, l.cedRate});
    if (!f)
        return Outcome::refusal(kBadFigures, QStringLiteral("txtQuantity"));
    l.price = Money::fromUnits(f->price);
    l.saleTax = Money::fromUnits(f->saleTax);
    l.valueWithTax = Money::fromUnits(f->valueWithTax);
    return Outcome::passed();
}

Money netAmount(const QVector<InvoiceLine> &lines)
{
    Money net;
    for (const InvoiceLine &l : lines)
        if (l.isLive())
            net += l.valueWithTax;
    return net;
}

InvoiceTotals totals(const QVector<InvoiceLine> &lines, const QString &cedRate)
{
    InvoiceTotals t;
    for (const InvoiceLine &l : lines) {
        if (!l.isLive())
            continue;
        t.any = true;
        t.valueExSaleTax += l.price;
        t.saleTax += l.saleTax;
        t.net += l.valueWithTax;
    }
    const auto ced = InvoiceArithmetic::percentOf(
        t.valueExSaleTax.toWholeUnits(), cedRate.trimmed().isEmpty() ? QStringLiteral("0") : cedRate);
    t.totalCed = Money::fromUnits(ced.value_or(0));
    return t;
}

QString termsList(const QVector<InvoiceLine> &lines)
{
    QStringList seen;
    for (const InvoiceLine &l : lines)
        if (l.isLive() && !seen.contains(l.termsOfSale))
            seen << l.termsOfSale;
    seen.sort();
    QString out;
    for (const QString &t : seen)
        out += t + QStringLiteral(", ");
    return out;
}

} // namespace InvoiceRules
