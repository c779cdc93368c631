#include "foundation/DateRules.h"

namespace DateRules {

namespace {
int number(const QString &s)
{
    bool ok = false;
    const int n = s.toInt(&ok);
    return ok ? n : -1;
}
} // namespace

int largestDay(int month, int year)
{
    switch (month) {
    case 1: case 3: case 5: case 7: case 8: case 10: case 12:
        return 31;
    case 4: case 6: case 9: case 11:
        return 30;
    case 2:
        return (year & 3) == 0 ? 29 : 28;
    default:
        return 0;
    }
}

Check checkDate(const QString &maskText)
{
    if (maskText.size() < 10 || maskText.left(10).contains(QLatin1Char('_')))
        return Check::Missing;
    const int day = number(maskText.mid(0, 2));
    const int month = number(maskText.mid(3, 2));
    const int year = number(maskText.right(4));
    const int maxDay = largestDay(month, year);
    if (day < 1 || day > maxDay || month > 12 || month < 1 || year < 1800)
        return Check::Wrong;
    // A 29 February of a century year passes the day-per-month test but
    // is no day of the calendar: refused here, never later as no date.
    if (!QDate(year, month, day).isValid())
        return Check::Wrong;
    return Check::Ok;
}

Check checkYear(const QString &maskText)
{
    if (maskText.size() < 4 || maskText.left(4).contains(QLatin1Char('_')))
        return Check::Missing;
    if (number(maskText.right(4)) < 1800)
        return Check::Wrong;
    return Check::Ok;
}

QString messageFor(Check check, bool year)
{
    switch (check) {
    case Check::Ok: return QString();
    case Check::Missing: return year ? yearMissingMessage() : dateMissingMessage();
    case Check::Wrong: return wrongDateMessage();
    }
    return QString();
}

QString toMaskText(const QDate &date)
{
    if (!date.isValid())
        return QStringLiteral("__/__/____");
    return date.toString(QStringLiteral("dd/MM/yyyy"));
}

QDate fromMaskText(const QString &maskText)
{
    if (checkDate(maskText) != Check::Ok)
        return QDate();
    return QDate(number(maskText.right(4)), number(maskText.mid(3, 2)), number(maskText.mid(0, 2)));
}

Closing checkClosing(const QDate &date, const std::optional<QDate> &closingDate)
{
    if (!closingDate || !closingDate->isValid())
        return Closing::NoClosingDate;
    if (!date.isValid())
        return Closing::NotADate;
    return date <= *closingDate ? Closing::Closed : Closing::Open;
}

QString messageFor(Closing closing)
{
    switch (closing) {
    case Closing::Open: return QString();
    case Closing::Closed: return closedPeriodMessage();
    case Closing::NoClosingDate: return closingMissingMessage();
    case Closing::NotADate: return wrongDateMessage();
    }
    return QString();
}

} // namespace DateRules
