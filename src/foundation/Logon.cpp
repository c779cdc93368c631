#include "foundation/Logon.h"

#include "foundation/PasswordHash.h"
#include "foundation/SessionConnection.h"

namespace Logon {

QString waitMessage(int waitMs)
{
    return QStringLiteral("Too many failed attempts with this user name, please wait %1 seconds and try again.")
        .arg((waitMs + 999) / 1000);
}

namespace {

// The attempts of one name: failures in a row and when the next may come
// (milliseconds since the epoch, UTC).
struct Attempts
{
    qint64 failures = 0;
    qint64 nextAt = 0;
};

Attempts attemptsOf(SessionConnection &db, const QString &userName)
{
    const auto row = db.selectOne(
        QStringLiteral("SELECT Failures, NextAttemptAt FROM tblLogonAttempt WHERE UserName = ?"), {userName});
    return row ? Attempts{row->integer(0), row->integer(1)} : Attempts{};
}

} // namespace

Result check(SessionConnection &db, const QString &typedUserName, const QString &password, const QDateTime &now,
             Stamp stamp)
{
    Result r;
    r.userName = typedUserName.trimmed();
    r.message = invalidMessage();
    const qint64 nowMs = now.toMSecsSinceEpoch();
    const bool keepsCount = !db.isReadOnly();
    Attempts attempts = keepsCount ? attemptsOf(db, r.userName) : Attempts{};
    if (attempts.nextAt > nowMs) {
        r.waitMs = int(qMin<qint64>(attempts.nextAt - nowMs, 3600000));
        r.message = waitMessage(r.waitMs);
        return r;
    }

    const auto row = db.selectOne(
        QStringLiteral("SELECT UserName, Password, UserType, Locked FROM tblLogon WHERE UserName = ?"), {r.userName});
    const QString stored = row ? row->text(QStringLiteral("Password")) : QString();
    if (!row)
        PasswordHash::burnVerifyTime(password);
    r.ok = row && PasswordHash::verify(password, stored);
    if (r.ok && row->integer(QStringLiteral("Locked")) != 0) {
        r.ok = false;
        r.message = lockedMessage();
        return r;
    }
    if (!keepsCount) {
        if (r.ok)
            r.userType = row->text(QStringLiteral("UserType")).trimmed();
        return r;
    }

    Transaction tx(db);
    // Read again under the transaction: another window may have counted meanwhile.
    attempts = attemptsOf(db, r.userName);
    db.execute(QStringLiteral("DELETE FROM tblLogonAttempt WHERE UserName = ?"), {r.userName});
    if (r.ok) {
        r.userType = row->text(QStringLiteral("UserType")).trimmed();
        r.message.clear();
        if (stamp == Stamp::LastLogOn)
            db.execute(QStringLiteral("UPDATE tblLogon SET LastLogOnAt = ? WHERE UserName = ?"),
                       {nowMs, r.userName});
        if (PasswordHash::needsUpgrade(stored))
            db.execute(QStringLiteral("UPDATE tblLogon SET Password = ? WHERE UserName = ?"),
                       {PasswordHash::hash(password), r.userName});
    } else {
        ++attempts.failures;
        r.waitMs = delayMsAfterFailures(int(qMin<qint64>(attempts.failures, 1000)));
        db.execute(QStringLiteral("INSERT INTO tblLogonAttempt (UserName, Failures, NextAttemptAt) VALUES (?, ?, ?)"),
                   {r.userName, attempts.failures, nowMs + r.waitMs});
    }
    tx.commit();
    return r;
}

int delayMsAfterFailures(int failures)
{
    if (failures < 3)
        return 0;
    const int steps = qMin(failures - 3, 5);
    return qMin(1000 << steps, 30000);
}

QStringList disabledMenus(SessionConnection &db, const QString &userName)
{
    QStringList out;
    const QueryResult rows = db.select(QStringLiteral("SELECT Menu FROM tblUserRights WHERE USERNAME = ?"), {userName});
    for (const Row &row : rows) {
        const QStringList items = row.text(0).split(QLatin1Char(','));
        for (const QString &item : items) {
            const QString name = item.trimmed();
            if (!name.isEmpty() && !out.contains(name))
                out << name;
        }
    }
    return out;
}

} // namespace Logon
