#pragma once

#include <QDate>
#include <QString>
#include <optional>

// The date checks of the entry screens, on the text of a masked field
// ("dd/mm/yyyy" with "_" for places not typed). Widget-free; the screen
// wrappers show the message and move the focus.
namespace DateRules {

enum class Check { Ok, Missing, Wrong };

inline QString dateMissingMessage() { return QStringLiteral("Date is missing, please enter proper date"); }
inline QString wrongDateMessage() { return QStringLiteral("Wrong date, please enter correct date"); }
inline QString yearMissingMessage() { return QStringLiteral("Year is missing, please enter proper year"); }
inline QString closingMissingMessage() { return QStringLiteral("Closing date is missing, please specify closing date"); }
inline QString closedPeriodMessage() { return QStringLiteral("Sorry, you enter wrong date because data has closed at this date"); }

// The largest day of a month: 31, 30, 29/28 for February (29 when the year
// divides by 4, with no century rule) and 0 for a month outside 1..12.
int largestDay(int month, int year);

// A "dd/mm/yyyy" mask text: Missing when any of its ten places is "_",
// Wrong for a day or month out of range, a year before 1800, or a day the
// calendar lacks (29/02/2100).
Check checkDate(const QString &maskText);
// A "yyyy" mask text: Missing when a place is "_", Wrong before 1800.
Check checkYear(const QString &maskText);
QString messageFor(Check check, bool year = false);

// "dd/mm/yyyy" for a date, "__/__/____" for no date.
QString toMaskText(const QDate &date);
// The date a mask text stands for; invalid when checkDate refuses it.
QDate fromMaskText(const QString &maskText);

enum class Closing { Open, Closed, NoClosingDate, NotADate };
// The closed-period gate: a date on or before the closing date is closed.
Closing checkClosing(const QDate &date, const std::optional<QDate> &closingDate);
QString messageFor(Closing closing);

} // namespace DateRules
