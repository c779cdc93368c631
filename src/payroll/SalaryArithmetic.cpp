#include "payroll/SalaryArithmetic.h"

namespace SalaryArithmetic {

namespace {

// n / d rounded half to even, with room for a large salary times many days.
qint64 divideHalfEven128(__int128 n, qint64 d)
{
    __int128 q = n / d;
    __int128 r = n % d;
    if (r != 0) {
        const __int128 twice = 2 * (r < 0 ? -r : r);
        const bool negative = (n < 0) != (d < 0);
        if (twice > d || (twice == d && q % 2 != 0))
            q += negative ? -1 : 1;
    }
    return static_cast<qint64>(q);
}

} // namespace

Money overtimeDays(Money time, Money holidays)
{
    // In hundredths: (T - 6H) / 6.
    return Money::fromCents(divideHalfEven128(__int128(time.cents()) - 6 * __int128(holidays.cents()), 6));
}

Money overtimeAmount(Money salary, Money days)
{
    // salary / 30 x days, in cents: S x D / (30 x 100).
    return Money::fromCents(divideHalfEven128(__int128(salary.cents()) * days.cents(), 3000));
}

Figures compute(const Input &input)
{
    return compute(Money::parseOrZero(input.salary), Money::parseOrZero(input.time),
                   Money::parseOrZero(input.holiday), Money::parseOrZero(input.advance));
}

Figures compute(Money salary, Money time, Money holidays, Money advance)
{
    Figures f;
    f.salary = salary;
    f.time = time;
    f.holidays = holidays;
    f.advance = advance;
    f.days = overtimeDays(f.time, f.holidays);
    f.otAmount = overtimeAmount(f.salary, f.days);
    f.totalSalary = f.salary + f.otAmount;
    f.balance = f.totalSalary - f.advance;
    return f;
}

} // namespace SalaryArithmetic
