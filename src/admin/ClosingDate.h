#pragma once

#include "foundation/Outcome.h"

#include <QDate>
#include <optional>

class SessionConnection;

// The date up to which the books are closed: nothing may be posted on or
// before it (an opening balance stands on it). One row in tblClosingDate.
namespace ClosingDate {

inline QString doneMessage() { return QStringLiteral("The process of end year closing date has completed"); }

// The closing date, or nothing when the year has none.
std::optional<QDate> current(SessionConnection &db);

// The first day open for postings: the closing date plus one day.
std::optional<QDate> firstOpenDate(SessionConnection &db);

// Sets the closing date, forwards or backwards, in one transaction: the
// first setting inserts the row, a later one rewrites every row. A date
// that is not a date is refused with the date field's words.
Outcome set(SessionConnection &db, const QDate &date);

} // namespace ClosingDate
