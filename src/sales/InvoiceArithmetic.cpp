#include "sales/InvoiceArithmetic.h"

namespace InvoiceArithmetic {

namespace {

constexpr qint64 kScale = 1000000; // six decimals
constexpr int kDecimals = 6;
constexpr int kWholeDigits = 12;

using Wide = __int128;

// n / d rounded half to even; d > 0, n >= 0.
Wide divideHalfEven(Wide n, Wide d)
{
    Wide q = n / d;
    const Wide r = n % d;
    if (2 * r > d || (2 * r == d && (q % 2) != 0))
        ++q;
    return q;
}

std::optional<qint64> whole(Wide value)
{
    if (value < 0 || value > kLargestWhole)
        return std::nullopt;
    return qint64(value);
}

} // namespace

std::optional<Decimal> Decimal::parse(const QString &text)
{
    const QString t = text.trimmed();
    qint64 units = 0;
    qint64 fraction = 0;
    int wholeDigits = 0;
    int decimals = 0;
    bool point = false;
    for (const QChar c : t) {
        if (c == QLatin1Char('.')) {
            if (point)
                return std::nullopt;
            point = true;
            continue;
        }
        if (!c.isDigit() || c.unicode() > 0x7f)
            return std::nullopt;
        const int digit = c.unicode() - '0';
        if (point) {
            if (++decimals > kDecimals)
                return std::nullopt;
            fraction = fraction * 10 + digit;
        } else {
            if (wholeDigits > 0 || digit != 0)
                ++wholeDigits;
            if (wholeDigits > kWholeDigits)
                return std::nullopt;
            units = units * 10 + digit;
        }
    }
    for (int i = decimals; i < kDecimals; ++i)
        fraction *= 10;
    Decimal d;
    d.mantissa = units * kScale + fraction;
    return d;
}

QString Decimal::toString() const
{
    QString s = QString::number(mantissa / kScale);
    qint64 frac = mantissa % kScale;
    if (frac == 0)
        return s;
    QString f = QString::number(frac).rightJustified(kDecimals, QLatin1Char('0'));
    while (f.endsWith(QLatin1Char('0')))
        f.chop(1);
    return s + QLatin1Char('.') + f;
}

QString decimalText(const QVariant &v)
{
    if (v.isNull())
        return QStringLiteral("0");
    if (const auto d = Decimal::parse(v.toString()))
        return d->toString();
    // A stored double in another form (1e-07): six decimals are all a line keeps.
    const auto rounded = Decimal::parse(QString::number(v.toDouble(), 'f', 6));
    return rounded ? rounded->toString() : QStringLiteral("0");
}

std::optional<qint64> percentOf(qint64 wholeMoney, const QString &rate)
{
    const auto r = Decimal::parse(rate);
    if (!r)
        return std::nullopt;
    return whole(divideHalfEven(Wide(wholeMoney) * r->mantissa, Wide(100) * kScale));
}

std::optional<LineFigures> computeLine(const LineInput &in)
{
    const auto quantity = Decimal::parse(in.quantity);
    const auto rate = Decimal::parse(in.rate);
    if (!quantity || !rate)
        return std::nullopt;
    LineFigures f;
    const auto price = whole(divideHalfEven(Wide(quantity->mantissa) * rate->mantissa, Wide(kScale) * kScale));
    if (!price)
        return std::nullopt;
    f.price = *price;
    const auto saleTax = percentOf(f.price, in.saleTaxRate);
    const auto furtherTax = percentOf(f.price, in.furtherTaxRate);
    const auto ced = percentOf(f.price, in.cedRate);
    if (!saleTax || !furtherTax || !ced)
        return std::nullopt;
    f.saleTax = *saleTax;
    f.furtherTax = *furtherTax;
    f.ced = *ced;
    const auto value = whole(Wide(f.price) + f.saleTax + f.ced + f.furtherTax);
    if (!value)
        return std::nullopt;
    f.valueWithTax = *value;
    return f;
}

} // namespace InvoiceArithmetic
