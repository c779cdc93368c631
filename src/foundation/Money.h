#pragma once

#include <QMetaType>
#include <QString>
#include <QVariant>
#include <cstdint>
#include <optional>

// An exact amount of money in cents, 64-bit. Every amount the program
// stores, adds or compares goes through this type: no float ever holds
// money, so 0.1 + 0.2 is 0.30 and a column of a million rows adds up to
// the cent.
class Money
{
public:
    constexpr Money() = default;
    static constexpr Money fromCents(std::int64_t cents) { Money m; m.m_cents = cents; return m; }
    static constexpr Money fromUnits(std::int64_t units) { return fromCents(units * 100); }

    // A double read from a database or a calculation, rounded half to even
    // to the nearest cent (float noise such as 12.3499999997 becomes 12.35).
    static Money fromDouble(double value);

    // Parses what a money field holds: "", "." and "-" read as zero, a
    // leading point ("." "5" -> 0.50), thousands separators are ignored.
    // More than two decimals are rounded half to even. Returns nothing for
    // text that is not a number.
    static std::optional<Money> parse(const QString &text);
    // The same, treating unparsable text as zero (the screens' reading of
    // a numeric field that the key filters already keep clean).
    static Money parseOrZero(const QString &text);

    // Any value a database driver hands back: numeric text, integer, double.
    // A null variant gives nothing.
    static std::optional<Money> fromVariant(const QVariant &value);

    constexpr std::int64_t cents() const { return m_cents; }
    constexpr bool isZero() const { return m_cents == 0; }
    constexpr bool isNegative() const { return m_cents < 0; }
    constexpr bool isPositive() const { return m_cents > 0; }
    double toDouble() const { return static_cast<double>(m_cents) / 100.0; }
    Money abs() const { return fromCents(m_cents < 0 ? -m_cents : m_cents); }

    // Rounds half to even to whole units: 2.50 -> 2, 3.50 -> 4, 50.25 -> 50.
    Money roundedToUnits() const;
    // The whole units of roundedToUnits().
    std::int64_t toWholeUnits() const { return roundedToUnits().m_cents / 100; }

    // Multiplies by a decimal factor (rate, percentage, quantity) and rounds
    // half to even to cents. The factor is given as text to keep it exact.
    Money multipliedBy(const QString &decimalFactor) const;
    Money percent(const QString &rate) const; // amount * rate / 100

    // "1234.50": plain text, the form bound into SQL and written to fields.
    QString toPlainString() const;
    // "1,234.50": with thousands separators, for reports and read-only figures.
    QString toDisplayString() const;
    // "1234" when whole, else "1234.5" or "1234.56": how the old screens
    // showed a number in a text field.
    QString toFieldString() const;

    QVariant toVariant() const { return QVariant::fromValue(*this); }

    constexpr Money operator-() const { return fromCents(-m_cents); }
    constexpr Money operator+(Money o) const { return fromCents(m_cents + o.m_cents); }
    constexpr Money operator-(Money o) const { return fromCents(m_cents - o.m_cents); }
    Money &operator+=(Money o) { m_cents += o.m_cents; return *this; }
    Money &operator-=(Money o) { m_cents -= o.m_cents; return *this; }
    constexpr bool operator==(Money o) const { return m_cents == o.m_cents; }
    constexpr bool operator!=(Money o) const { return m_cents != o.m_cents; }
    constexpr bool operator<(Money o) const { return m_cents < o.m_cents; }
    constexpr bool operator<=(Money o) const { return m_cents <= o.m_cents; }
    constexpr bool operator>(Money o) const { return m_cents > o.m_cents; }
    constexpr bool operator>=(Money o) const { return m_cents >= o.m_cents; }

private:
    std::int64_t m_cents = 0;
};

Q_DECLARE_METATYPE(Money)

// Divides n by d rounding half to even (d > 0).
std::int64_t divideHalfEven(std::int64_t n, std::int64_t d);
