#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

class SessionConnection;

// The log-on check and the rights of a user. Widget-free.
namespace Logon {

inline QString invalidMessage() { return QStringLiteral("Invalid user name or password"); }
QString waitMessage(int waitMs);
inline QString lockedMessage()
{
    return QStringLiteral("This user is locked, ask an administrator to unlock it.");
}

struct Result
{
    bool ok = false;
    QString userName;   // as looked up: the typed name, trimmed
    QString userType;   // "ADMINISTRATOR" or "COMMON USER"
    QString message;    // the refusal's words
    int waitMs = 0;     // the wait before the next attempt of this name
};

// Looks the trimmed user name up and checks the password exactly as typed
// (not trimmed, case-sensitive) against the stored hash. An unknown name
// takes as long to refuse as a wrong password.
//
// Failed attempts are counted in the year per user name (known or not), so
// that neither another window nor a restarted program starts the count
// again: while a name must wait, it is refused without looking at the
// password. A good log-on clears the count, stamps the user's last log-on
// and stores the password again when its hash was made with less work than
// a new one gets. A locked user is refused after the password proved right
// (so the words tell nothing to one who does not know it), and his failed
// count is not raised.
//
// A check that only confirms who is at the keyboard (the gate before a
// dangerous job) passes Stamp::No: the count and the lock work the same,
// but the user's last log-on is left as it was.
enum class Stamp { LastLogOn, No };
Result check(SessionConnection &db, const QString &typedUserName, const QString &password,
             const QDateTime &now = QDateTime::currentDateTimeUtc(), Stamp stamp = Stamp::LastLogOn);

// The wait before the next attempt after `failures` failed ones in a row:
// none for the first two, then doubling from one second up to half a
// minute.
int delayMsAfterFailures(int failures);

// The menu entries switched off for the user: the comma-separated list of
// tblUserRights.Menu, blanks trimmed and empty items dropped. Empty when
// the user has no row.
QStringList disabledMenus(SessionConnection &db, const QString &userName);

} // namespace Logon
