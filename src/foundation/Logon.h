#pragma once

#include <QString>
#include <QStringList>

class SessionConnection;

// The log-on check and the rights of a user. Widget-free.
namespace Logon {

inline QString invalidMessage() { return QStringLiteral("Invalid user name or password"); }

struct Result
{
    bool ok = false;
    QString userName;   // as looked up: the typed name, trimmed
    QString userType;   // "ADMINISTRATOR" or "COMMON USER"
};

// Looks the trimmed user name up and checks the password exactly as typed
// (not trimmed, case-sensitive) against the stored hash. An unknown name
// takes as long to refuse as a wrong password.
Result check(SessionConnection &db, const QString &typedUserName, const QString &password);

// The wait before the next attempt after `failures` failed ones in a row:
// none for the first two, then doubling from one second up to half a
// minute.
int delayMsAfterFailures(int failures);

// The menu entries switched off for the user: the comma-separated list of
// tblUserRights.Menu, blanks trimmed and empty items dropped. Empty when
// the user has no row.
QStringList disabledMenus(SessionConnection &db, const QString &userName);

} // namespace Logon
