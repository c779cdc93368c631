#pragma once

#include "foundation/Outcome.h"

#include <QDateTime>
#include <QString>
#include <QVector>
#include <optional>

class SessionConnection;

// The users of an account year (tblLogon): creating them, their passwords,
// their type, and locking one out. Widget-free: the user screens, the user
// list and tessel-admin all call these, and each refuses here what the
// screens refuse. Every command is one transaction; a database failure
// comes as DbError with nothing written.
namespace UserAccounts {

namespace Msg {
inline QString nameMissing() { return QStringLiteral("User name is missing"); }
inline QString passwordMissing() { return QStringLiteral("Password is missing"); }
inline QString duplicate() { return QStringLiteral("User name already exist, Duplication is not allowed"); }
inline QString created() { return QStringLiteral("Congradulation, new user has created"); }
inline QString mismatch() { return QStringLiteral("The password you type do not match"); }
inline QString oldIncorrect() { return QStringLiteral("User name or old password is incorrect"); }
inline QString passwordChanged() { return QStringLiteral("Password has changed successfully"); }
inline QString invalidUser() { return QStringLiteral("Invalid user name or password"); }
inline QString updated() { return QStringLiteral("User has updated successfully"); }
inline QString typeMissing() { return QStringLiteral("User type is missing, select ADMINISTRATOR or COMMON USER"); }
inline QString administratorsOnly() { return QStringLiteral("Only an administrator can manage users"); }
inline QString lastAdministrator()
{
    return QStringLiteral("This is the last administrator who can log on, it cannot be demoted or locked");
}
inline QString locked() { return QStringLiteral("User has locked successfully"); }
inline QString unlocked() { return QStringLiteral("User has unlocked successfully"); }
} // namespace Msg

inline QString administrator() { return QStringLiteral("ADMINISTRATOR"); }
inline QString commonUser() { return QStringLiteral("COMMON USER"); }
// True for the two types the system knows.
bool isUserType(const QString &type);

// Who gives the command: the name and type the session logged on with
// (tessel-admin acts as an administrator).
struct Actor
{
    QString name;
    QString type;
    bool isAdministrator() const { return type == administrator(); }
};

struct User
{
    QString name;
    QString type;
    bool locked = false;
    QDateTime lastLogOn; // UTC; invalid when the user never logged on
};

// All users by name.
QVector<User> list(SessionConnection &db);
std::optional<User> find(SessionConnection &db, const QString &name);

// The checks of the commands that need no database, in the screens' order
// (run when a button takes the focus, and again by the command).
Outcome checkNewUser(const Actor &by, const QString &name, const QString &password, const QString &type);
Outcome checkPasswordChange(const QString &name, const QString &newPassword, const QString &confirmPassword);

// A new user with a salted hash of the password. Refusals in the screen's
// order: a common user, no name, no password, a name taken (trailing
// blanks ignored), no type.
Outcome createUser(SessionConnection &db, const Actor &by, const QString &name, const QString &password,
                   const QString &type);

// Sets a password. An administrator sets anyone's without the old one; a
// common user only his own, giving the old password, which is compared
// with the stored hash exactly as typed.
Outcome changePassword(SessionConnection &db, const Actor &by, const QString &name, const QString &oldPassword,
                       const QString &newPassword, const QString &confirmPassword);

// Changes a user's type (administrators only). The last administrator who
// can log on is never made a common user.
Outcome changeType(SessionConnection &db, const Actor &by, const QString &name, const QString &type);

// Locks a user out, or lets him in again (administrators only). The last
// administrator who can log on is never locked.
Outcome setLocked(SessionConnection &db, const Actor &by, const QString &name, bool locked);

} // namespace UserAccounts
