#include "foundation/Money.h"

#include <QLocale>
#include <cmath>

std::int64_t divideHalfEven(std::int64_t n, std::int64_t d)
{
    std::int64_t q = n / d;
    std::int64_t r = n % d;
    if (r == 0)
        return q;
    const bool negative = (n < 0) != (d < 0);
    std::int64_t twice = 2 * (r < 0 ? -r : r);
    std::int64_t ad = d < 0 ? -d : d;
    if (twice > ad || (twice == ad && (q % 2 != 0)))
        q += negative ? -1 : 1;
    return q;
}

Money Money::fromDouble(double value)
{
    // Values that come from a float column carry noise far below a cent;
    // rounding the scaled value to the nearest integer removes it. An exact
    // half cent cannot be told from noise in binary, so nearbyint (half to
    // even in the default rounding mode) decides.
    return fromCents(static_cast<std::int64_t>(std::nearbyint(value * 100.0)));
}

std::optional<Money> Money::parse(const QString &input)
{
    QString text = input.trimmed();
    text.remove(QLatin1Char(','));
    text.remove(QLatin1Char(' '));
    if (text.isEmpty() || text == QLatin1String(".") || text == QLatin1String("-")
        || text == QLatin1String("+") || text == QLatin1String("-."))
        return Money();

    bool negative = false;
    int pos = 0;
    if (text.at(0) == QLatin1Char('-') || text.at(0) == QLatin1Char('+')) {
        negative = text.at(0) == QLatin1Char('-');
        pos = 1;
    }
    std::int64_t whole = 0;
    bool anyDigit = false;
    for (; pos < text.size() && text.at(pos).isDigit(); ++pos) {
        if (whole > 900000000000000LL)
            return std::nullopt; // beyond any amount the books can hold
        whole = whole * 10 + text.at(pos).digitValue();
        anyDigit = true;
    }
    // Fraction: up to 18 digits kept, rounded half to even to two.
    std::int64_t frac = 0;
    int fracDigits = 0;
    bool sticky = false; // a non-zero digit beyond what we keep
    if (pos < text.size() && text.at(pos) == QLatin1Char('.')) {
        ++pos;
        for (; pos < text.size() && text.at(pos).isDigit(); ++pos) {
            anyDigit = true;
            if (fracDigits < 15) {
                frac = frac * 10 + text.at(pos).digitValue();
                ++fracDigits;
            } else if (text.at(pos).digitValue() != 0) {
                sticky = true;
            }
        }
    }
    if (pos != text.size() || !anyDigit)
        return std::nullopt;

    std::int64_t cents;
    if (fracDigits <= 2) {
        std::int64_t f = frac;
        for (int i = fracDigits; i < 2; ++i)
            f *= 10;
        cents = whole * 100 + f;
    } else {
        std::int64_t scale = 1;
        for (int i = 2; i < fracDigits; ++i)
            scale *= 10;
        std::int64_t fracScaled = frac * 2 + (sticky ? 1 : 0); // sticky breaks exact ties upward
        std::int64_t c = divideHalfEven(fracScaled, scale * 2);
        cents = whole * 100 + c;
    }
    return fromCents(negative ? -cents : cents);
}

Money Money::parseOrZero(const QString &text)
{
    return parse(text).value_or(Money());
}

std::optional<Money> Money::fromVariant(const QVariant &value)
{
    if (!value.isValid() || value.isNull())
        return std::nullopt;
    if (value.canConvert<Money>() && value.metaType() == QMetaType::fromType<Money>())
        return value.value<Money>();
    switch (value.metaType().id()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Short:
    case QMetaType::UShort:
        return fromUnits(value.toLongLong());
    case QMetaType::Double:
    case QMetaType::Float:
        return fromDouble(value.toDouble());
    default:
        break;
    }
    const QString text = value.toString().trimmed();
    if (text.isEmpty())
        return std::nullopt;
    if (auto m = parse(text))
        return m;
    // Scientific notation from a float column ("1e+06").
    bool ok = false;
    double d = text.toDouble(&ok);
    if (ok)
        return fromDouble(d);
    return std::nullopt;
}

Money Money::roundedToUnits() const
{
    return fromCents(divideHalfEven(m_cents, 100) * 100);
}

Money Money::multipliedBy(const QString &decimalFactor) const
{
    // factor as an exact decimal: digits * 10^-scale
    QString t = decimalFactor.trimmed();
    t.remove(QLatin1Char(','));
    bool negative = t.startsWith(QLatin1Char('-'));
    if (negative || t.startsWith(QLatin1Char('+')))
        t = t.mid(1);
    int point = t.indexOf(QLatin1Char('.'));
    int scale = 0;
    if (point >= 0) {
        scale = t.size() - point - 1;
        t.remove(point, 1);
    }
    if (t.isEmpty())
        return Money();
    while (scale > 9 && t.endsWith(QLatin1Char('0'))) { t.chop(1); --scale; }
    if (scale > 9) { t.chop(scale - 9); scale = 9; }
    bool ok = false;
    std::int64_t digits = t.toLongLong(&ok);
    if (!ok)
        return Money();
    std::int64_t divisor = 1;
    for (int i = 0; i < scale; ++i)
        divisor *= 10;
    // cents * digits may overflow 64 bits for huge values; use 128-bit.
    __int128 product = static_cast<__int128>(m_cents) * digits;
    __int128 q = product / divisor;
    __int128 r = product % divisor;
    if (r != 0) {
        __int128 twice = 2 * (r < 0 ? -r : r);
        bool neg = product < 0;
        if (twice > divisor || (twice == divisor && (q % 2 != 0)))
            q += neg ? -1 : 1;
    }
    std::int64_t cents = static_cast<std::int64_t>(q);
    return fromCents(negative ? -cents : cents);
}

Money Money::percent(const QString &rate) const
{
    Money scaled = multipliedBy(rate);
    return fromCents(divideHalfEven(scaled.m_cents, 100));
}

QString Money::toPlainString() const
{
    std::int64_t a = m_cents < 0 ? -m_cents : m_cents;
    QString s = QString::number(a / 100) + QLatin1Char('.')
        + QStringLiteral("%1").arg(a % 100, 2, 10, QLatin1Char('0'));
    return m_cents < 0 ? QLatin1Char('-') + s : s;
}

QString Money::toDisplayString() const
{
    std::int64_t a = m_cents < 0 ? -m_cents : m_cents;
    QString whole = QString::number(a / 100);
    for (int i = whole.size() - 3; i > 0; i -= 3)
        whole.insert(i, QLatin1Char(','));
    QString s = whole + QLatin1Char('.') + QStringLiteral("%1").arg(a % 100, 2, 10, QLatin1Char('0'));
    return m_cents < 0 ? QLatin1Char('-') + s : s;
}

QString Money::toFieldString() const
{
    std::int64_t a = m_cents < 0 ? -m_cents : m_cents;
    QString s = QString::number(a / 100);
    std::int64_t c = a % 100;
    if (c != 0) {
        s += QLatin1Char('.');
        if (c % 10 == 0)
            s += QString::number(c / 10);
        else
            s += QStringLiteral("%1").arg(c, 2, 10, QLatin1Char('0'));
    }
    return m_cents < 0 ? QLatin1Char('-') + s : s;
}
