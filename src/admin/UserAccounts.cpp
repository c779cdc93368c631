#include "admin/UserAccounts.h"

#include "foundation/PasswordHash.h"
#include "foundation/SessionConnection.h"

#include <QTimeZone>

namespace UserAccounts {

namespace {

const QString kNewUser = QStringLiteral("txtNewUser");

User userFrom(const Row &row)
{
    User u;
    u.name = row.text(QStringLiteral("UserName")).trimmed();
    u.type = row.text(QStringLiteral("UserType")).trimmed();
    u.locked = row.integer(QStringLiteral("Locked")) != 0;
    if (!row.isNull(QStringLiteral("LastLogOnAt")))
        u.lastLogOn = QDateTime::fromMSecsSinceEpoch(row.integer(QStringLiteral("LastLogOnAt")), Qt::UTC);
    return u;
}

const QString kSelectUser = QStringLiteral("SELECT UserName, UserType, Locked, LastLogOnAt FROM tblLogon ");

// Two administrators demoting or locking each other at the same moment
// must not both pass the last-administrator test: on the server the
// commands queue on one lock; the embedded store writes one at a time.
void lockUsers(SessionConnection &db)
{
    if (db.isPostgres())
        db.select(QStringLiteral("SELECT pg_advisory_xact_lock(CAST(? AS INTEGER), CAST(? AS INTEGER))"), {7302, 1});
}

// Whether another administrator than `name` can log on.
bool otherAdministratorCanLogOn(SessionConnection &db, const QString &name)
{
    return db.selectOne(QStringLiteral("SELECT UserName FROM tblLogon WHERE UserType = ? AND Locked = 0 "
                                       "AND UserName <> ? LIMIT 1"),
                        {administrator(), name})
        .has_value();
}

} // namespace

bool isUserType(const QString &type)
{
    return type == administrator() || type == commonUser();
}

QVector<User> list(SessionConnection &db)
{
    QVector<User> out;
    for (const Row &row : db.select(kSelectUser + QStringLiteral("ORDER BY UserName")))
        out << userFrom(row);
    return out;
}

std::optional<User> find(SessionConnection &db, const QString &name)
{
    const auto row = db.selectOne(kSelectUser + QStringLiteral("WHERE UserName = ?"), {name.trimmed()});
    if (!row)
        return std::nullopt;
    return userFrom(*row);
}

Outcome checkNewUser(const Actor &by, const QString &name, const QString &password, const QString &type)
{
    if (!by.isAdministrator())
        return Outcome::refusal(Msg::administratorsOnly(), kNewUser);
    if (name.trimmed().isEmpty())
        return Outcome::refusal(Msg::nameMissing(), kNewUser);
    if (password.isEmpty())
        return Outcome::refusal(Msg::passwordMissing(), QStringLiteral("txtPassword"));
    if (!isUserType(type))
        return Outcome::refusal(Msg::typeMissing(), QStringLiteral("optAdministrator"));
    return Outcome::passed();
}

Outcome checkPasswordChange(const QString &name, const QString &newPassword, const QString &confirmPassword)
{
    if (name.trimmed().isEmpty())
        return Outcome::refusal(Msg::nameMissing(), QStringLiteral("txtUserName"));
    if (newPassword != confirmPassword)
        return Outcome::refusal(Msg::mismatch(), QStringLiteral("txtNewPassword"));
    if (newPassword.isEmpty())
        return Outcome::refusal(Msg::passwordMissing(), QStringLiteral("txtNewPassword"));
    return Outcome::passed();
}

Outcome createUser(SessionConnection &db, const Actor &by, const QString &name, const QString &password,
                   const QString &type)
{
    if (Outcome c = checkNewUser(by, name, password, type); !c)
        return c;
    const QString user = name.trimmed();
    const QString hash = PasswordHash::hash(password); // slow: outside the transaction
    try {
        Transaction tx(db);
        if (find(db, user))
            return Outcome::refusal(Msg::duplicate(), kNewUser);
        db.execute(QStringLiteral("INSERT INTO tblLogon (UserName, Password, UserType, Locked) VALUES (?, ?, ?, 0)"),
                   {user, hash, type});
        tx.commit();
    } catch (const DbError &e) {
        if (!e.isUniqueViolation())
            throw;
        return Outcome::refusal(Msg::duplicate(), kNewUser);
    }
    return Outcome::success(Msg::created());
}

Outcome changePassword(SessionConnection &db, const Actor &by, const QString &name, const QString &oldPassword,
                       const QString &newPassword, const QString &confirmPassword)
{
    if (Outcome c = checkPasswordChange(name, newPassword, confirmPassword); !c)
        return c;
    const QString user = name.trimmed();
    const Outcome incorrect = Outcome::refusal(Msg::oldIncorrect(), QStringLiteral("txtUserName"));
    // A common user changes his own password only; the name test comes
    // before the password is looked at.
    if (!by.isAdministrator() && user != by.name.trimmed()) {
        PasswordHash::burnVerifyTime(oldPassword);
        return incorrect;
    }
    const QString hash = PasswordHash::hash(newPassword);
    Transaction tx(db);
    const auto row = db.selectOne(QStringLiteral("SELECT Password FROM tblLogon WHERE UserName = ?"), {user});
    if (!row)
        return incorrect;
    if (!by.isAdministrator() && !PasswordHash::verify(oldPassword, row->text(0)))
        return incorrect;
    db.execute(QStringLiteral("UPDATE tblLogon SET Password = ? WHERE UserName = ?"), {hash, user});
    tx.commit();
    return Outcome::success(Msg::passwordChanged());
}

Outcome changeType(SessionConnection &db, const Actor &by, const QString &name, const QString &type)
{
    if (!by.isAdministrator())
        return Outcome::refusal(Msg::administratorsOnly(), kNewUser);
    const QString user = name.trimmed();
    if (!isUserType(type))
        return Outcome::refusal(Msg::typeMissing(), QStringLiteral("optAdministrator"));
    Transaction tx(db);
    lockUsers(db);
    const auto u = user.isEmpty() ? std::nullopt : find(db, user);
    if (!u)
        return Outcome::refusal(Msg::invalidUser(), kNewUser);
    if (u->type == administrator() && type != administrator() && !u->locked
        && !otherAdministratorCanLogOn(db, user))
        return Outcome::refusal(Msg::lastAdministrator(), QStringLiteral("optAdministrator"));
    db.execute(QStringLiteral("UPDATE tblLogon SET UserType = ? WHERE UserName = ?"), {type, user});
    tx.commit();
    return Outcome::success(Msg::updated());
}

Outcome setLocked(SessionConnection &db, const Actor &by, const QString &name, bool locked)
{
    if (!by.isAdministrator())
        return Outcome::refusal(Msg::administratorsOnly());
    const QString user = name.trimmed();
    Transaction tx(db);
    lockUsers(db);
    const auto u = user.isEmpty() ? std::nullopt : find(db, user);
    if (!u)
        return Outcome::refusal(Msg::invalidUser());
    if (locked && u->type == administrator() && !u->locked && !otherAdministratorCanLogOn(db, user))
        return Outcome::refusal(Msg::lastAdministrator());
    db.execute(QStringLiteral("UPDATE tblLogon SET Locked = ? WHERE UserName = ?"), {locked ? 1 : 0, user});
    tx.commit();
    return Outcome::success(locked ? Msg::locked() : Msg::unlocked());
}

} // namespace UserAccounts
