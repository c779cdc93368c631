#pragma once

#include "foundation/Money.h"

#include <QString>

// The arithmetic of one line of the monthly salary sheet, with no database
// and no widgets. Six hours of overtime make one day and a day of leave
// takes six hours back; a day is worth a thirtieth of the month's salary
// whatever the month's length.
//
// Hours, days of leave and overtime days are kept to two places in the
// same exact fixed point as money (a Money of 150 cents is 1.5 hours), so
// every figure is exact and each rounding is half to even at the second
// place, as the sheet has always printed it.
namespace SalaryArithmetic {

// What the clerk typed; an empty field counts as 0.
struct Input
{
    QString salary;
    QString time;     // overtime hours
    QString holiday;  // days of leave
    QString advance;
};

struct Figures
{
    Money salary;
    Money time;       // hours, two places
    Money holidays;   // days, two places
    Money days;       // overtime days (negative when leave outweighs overtime)
    Money otAmount;
    Money totalSalary;
    Money advance;
    Money balance;
};

// Overtime days: (time - holidays x 6) / 6, rounded half to even to two
// places.
Money overtimeDays(Money time, Money holidays);
// The overtime amount of `days` at a thirtieth of `salary` a day, rounded
// half to even to the cent.
Money overtimeAmount(Money salary, Money days);
Figures compute(const Input &input);
// The same from the four figures typed.
Figures compute(Money salary, Money time, Money holidays, Money advance);

// A field's text as the sheet reads it: "" becomes "0".
inline QString orZero(const QString &text) { return text.trimmed().isEmpty() ? QStringLiteral("0") : text; }

} // namespace SalaryArithmetic
