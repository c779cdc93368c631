#pragma once

#include "foundation/Outcome.h"

#include <QDateTime>
#include <QString>

class SessionConnection;

// The four go-ahead buttons of the identification gate. Each menu entry
// that leads through the gate shows one of them.
enum class GateButton { Balance, Closing, UpdateUser, EndYear };

// The gate before a dangerous job: a user name and password asked again.
// The name given need not be the one logged on; the session's user does
// not change. Widget-free.
namespace Identification {

// The titles and warnings the menu entries set on the gate.
namespace Texts {
inline QString balanceTitle() { return QStringLiteral("MODIFY BALANCE"); }
inline QString balanceWarning()
{
    return QStringLiteral("Modification of balance is a risk which may lost some data, so before modification enter "
                          "user name and password to modify balance of System");
}
inline QString closingTitle() { return QStringLiteral("CLOSING DATE"); }
// Also the warning of end-year processing.
inline QString closingWarning()
{
    return QStringLiteral("End year closing is a process in which you define a date that you can not enter anything "
                          "new but only view, so before defining date enter user name and password to define date of "
                          "System");
}
inline QString updateUserTitle() { return QStringLiteral("UPDATE USER"); }
inline QString updateUserWarning()
{
    return QStringLiteral("Updation of user is a risk because some users may lost your important data, so before "
                          "updation enter user name and password to update user of System");
}
} // namespace Texts

// The objectName of the button's go-ahead on the gate.
QString buttonName(GateButton button);

// Whether a user of that type may pass through the button: end-year
// processing takes any valid user, the other three an administrator.
bool typeAllowed(GateButton button, const QString &userType);

// Checks the name and password exactly as the log-on does (the stored
// hash, the wait after repeated failures, a failure counted against the
// name) and then the type the button needs. Passing the gate is not a
// log-on: the user's last log-on stays as it was. An unknown user, a wrong
// password and a type not allowed all give "Invalid user name or
// password"; a name that must wait gets the log-on's waiting words. The
// refusal names txtUserName.
Outcome check(SessionConnection &db, const QString &user, const QString &password, GateButton button,
              const QDateTime &now = QDateTime::currentDateTimeUtc());

} // namespace Identification
