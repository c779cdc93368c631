#pragma once

#include <QString>
#include <QVariant>
#include <optional>

// The figures of one invoice line, in whole money: the price, the sale
// tax, the further tax, the CED and the value with all three taxes. They
// are computed from the typed quantity, rate and percentages exactly (no
// floating point), in a fixed order, and each rounding goes half to even,
// so that a line prints the same tax on every machine:
//
//   price       = round(quantity x rate)
//   sale tax    = round(price x sale-tax % / 100)
//   further tax = round(price x further-tax % / 100)
//   CED         = round(price x CED % / 100)
//   value       = price + sale tax + CED + further tax
//
// Every figure must fit a 32-bit whole number, as the printed invoice's
// boxes do; a line beyond that is refused.
namespace InvoiceArithmetic {

struct LineInput
{
    QString quantity;
    QString rate;
    QString saleTaxRate;
    QString furtherTaxRate;
    QString cedRate;
};

struct LineFigures
{
    qint64 price = 0;
    qint64 saleTax = 0;
    qint64 furtherTax = 0;
    qint64 ced = 0;
    qint64 valueWithTax = 0;
};

// A decimal as typed: digits with at most one point and at most six
// decimals ("", "." read as zero). Nothing for anything else.
struct Decimal
{
    qint64 mantissa = 0; // value x 10^6
    static std::optional<Decimal> parse(const QString &text);
    QString toString() const; // "2.5", "1005", "0.125"
};

// A stored quantity, rate or percentage as the decimal text a line keeps
// ("2.5", "0"); null reads as "0".
QString decimalText(const QVariant &stored);

// Nothing when a text is not a number or a figure leaves the 32-bit range.
std::optional<LineFigures> computeLine(const LineInput &in);

// Whole money times a percentage over 100, rounded half to even; nothing
// beyond the 32-bit range. The invoice's CED total is this of its value
// before sale tax.
std::optional<qint64> percentOf(qint64 whole, const QString &rate);

constexpr qint64 kLargestWhole = 2147483647;

} // namespace InvoiceArithmetic
