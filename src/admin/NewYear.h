#pragma once

#include "foundation/ConnectionProfile.h"
#include "foundation/Money.h"
#include "foundation/Outcome.h"

#include <QDate>
#include <QString>
#include <QVector>
#include <functional>

class SessionConnection;

// The next account year: a copy of this one, cut by the end-year steps to
// the rows from its first day on, while this year stays whole. Then the
// carry is proved: every account's balance before the first day in the old
// year against the same in the new one. Widget-free.
namespace NewYear {

struct Request
{
    QString fromYear;    // the year to carry from; it is only read
    QString toYear;      // the new year's name; must not exist
    QDate start;         // the new year's first day
    bool carryProfit = false; // also run the profit-and-loss step on the new year
    QString user;        // stamped on the opening rows
    QDate today;
    QString serverPassword; // for a server profile without a stored password
};

// One account in the comparison.
struct CarryLine
{
    QString code;
    QString name;
    Money closing; // the old year's balance before the new year's first day
    Money opening; // the new year's
    Money difference() const { return opening - closing; }
};

struct Result
{
    QVector<CarryLine> lines; // in code order
    int differences = 0;      // lines whose opening is not their closing
    Money closingTotal;
    Money openingTotal;
};

// Called as the work goes: a percentage and what is being done.
using Progress = std::function<void(int percent, const QString &what)>;

// The name proposed for the year after `name`: its trailing number plus
// one ("Tessel2026" gives "Tessel2027"), else the name with "_next".
QString proposedName(const QString &name);

// The request's checks: a new name that is a year name and not the old
// one, and a first day. A refusal names txtNewYear or mskDateFrom.
Outcome check(const Request &request);

// Makes the new year: the copy, the accounts step (and the profit-and-loss
// step when asked) and every table step with nothing cut after the first
// day, the closing date set to the day before it and the report period to
// its twelve months; then the comparison into `result`. All of it is done
// on the copy under a working name no workstation lists, and the copy takes
// the new name only when every step has passed. A refusal or a failure
// leaves no new year behind, nor the copy. Throws AccountYear::Error (the
// copy refused, a year of that name exists, the copy opened by another
// connection meanwhile) or DbError.
Outcome make(const ConnectionProfile &profile, const Request &request, Result &result,
             const Progress &progress = {});

// The comparison of the two years on the first day of the new one.
Result compare(SessionConnection &oldYear, SessionConnection &newYear, const QDate &start);

// The message of a new year made.
QString doneMessage(const Request &request, const Result &result);

} // namespace NewYear
