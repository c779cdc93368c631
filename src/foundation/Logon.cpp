#include "foundation/Logon.h"

#include "foundation/PasswordHash.h"
#include "foundation/SessionConnection.h"

namespace Logon {

Result check(SessionConnection &db, const QString &typedUserName, const QString &password)
{
    Result r;
    r.userName = typedUserName.trimmed();
    const auto row = db.selectOne(
        QStringLiteral("SELECT UserName, Password, UserType FROM tblLogon WHERE UserName = ?"), {r.userName});
    if (!row) {
        PasswordHash::burnVerifyTime(password);
        return r;
    }
    if (!PasswordHash::verify(password, row->text(QStringLiteral("Password"))))
        return r;
    r.ok = true;
    r.userType = row->text(QStringLiteral("UserType")).trimmed();
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
