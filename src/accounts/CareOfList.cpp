#include "accounts/CareOfList.h"
#include "foundation/Lookups.h"
#include "foundation/SessionConnection.h"

namespace CareOfList {

QStringList names(SessionConnection &db)
{
    return Lookups::careOfList(db);
}

QueryResult persons(SessionConnection &db, const QString &text)
{
    return db.select(QStringLiteral("SELECT Name, Designation FROM tblCareOf WHERE Name LIKE ? ORDER BY Name"),
                     {QLatin1Char('%') + text + QLatin1Char('%')});
}

Outcome check(SessionConnection &db, const QString &name, const QString &designation)
{
    const QString n = name.trimmed();
    if (db.selectOne(QStringLiteral("SELECT Name FROM tblCareOf WHERE Name = ?"), {n}))
        return Outcome::refusal(Msg::exists(), QStringLiteral("txtName"));
    if (n.isEmpty())
        return Outcome::refusal(Msg::nameMissing(), QStringLiteral("txtName"));
    if (designation.trimmed().isEmpty())
        return Outcome::refusal(Msg::designationMissing(), QStringLiteral("txtDesignation"));
    return Outcome::passed();
}

Outcome add(SessionConnection &db, const QString &name, const QString &designation, const QString &userName)
{
    try {
        Transaction tx(db);
        const Outcome c = check(db, name, designation);
        if (!c)
            return c;
        db.execute(QStringLiteral("INSERT INTO tblCareOf (Name, Designation, UserName) VALUES (?, ?, ?)"),
                   {name.trimmed(), designation.trimmed(), userName.isNull() ? QStringLiteral("") : userName});
        tx.commit();
    } catch (const DbError &e) {
        if (!e.isUniqueViolation())
            throw;
        return Outcome::refusal(Msg::exists(), QStringLiteral("txtName"));
    }
    return Outcome::success(Msg::created());
}

} // namespace CareOfList
