#include "stock/ItemCoding.h"

#include "foundation/CodeMask.h"
#include "foundation/SessionConnection.h"

namespace ItemCoding {

namespace {

QString text(const QString &s)
{
    return s.isNull() ? QStringLiteral("") : s;
}

Item fromRow(const Row &r)
{
    Item i;
    i.code = r.text(QStringLiteral("ItemCode")).trimmed();
    i.name = r.text(QStringLiteral("ItemName")).trimmed();
    i.costRate = r.moneyOrZero(QStringLiteral("CostRate"));
    i.saleRate = r.moneyOrZero(QStringLiteral("SaleRate"));
    i.unitType = r.text(QStringLiteral("UnitType")).trimmed();
    return i;
}

bool codeTaken(SessionConnection &db, const QString &code)
{
    return db.selectOne(QStringLiteral("SELECT ItemCode FROM tblItemCoding WHERE ItemCode = ?"), {code}).has_value();
}

bool nameTaken(SessionConnection &db, const QString &name)
{
    return db.selectOne(QStringLiteral("SELECT ItemName FROM tblItemCoding WHERE ItemName = ?"), {name}).has_value();
}

} // namespace

QString lastCodeUnder(SessionConnection &db, const QString &maskText)
{
    const QVariant v = db.scalar(QStringLiteral("SELECT MAX(ItemCode) AS IC FROM tblItemCoding WHERE ItemCode LIKE ?"),
                                 {maskText.left(6) + QLatin1Char('%')});
    return v.isNull() ? QString() : v.toString().trimmed();
}

QueryResult itemsNamed(SessionConnection &db, const QString &t)
{
    return db.select(QStringLiteral("SELECT ItemCode, ItemName, CostRate, SaleRate FROM tblItemCoding "
                                    "WHERE ItemName LIKE ? ORDER BY ItemCode"),
                     {QLatin1Char('%') + t + QLatin1Char('%')});
}

QStringList names(SessionConnection &db)
{
    QStringList out;
    for (const Row &r : db.select(QStringLiteral("SELECT ItemName FROM tblItemCoding ORDER BY ItemName")))
        out << r.text(0).trimmed();
    return out;
}

std::optional<Item> itemByName(SessionConnection &db, const QString &name)
{
    const auto r = db.selectOne(QStringLiteral("SELECT ItemCode, ItemName, CostRate, SaleRate, UnitType "
                                               "FROM tblItemCoding WHERE ItemName = ?"), {name});
    if (!r)
        return std::nullopt;
    return fromRow(*r);
}

std::optional<Item> itemByCode(SessionConnection &db, const QString &code)
{
    const auto r = db.selectOne(QStringLiteral("SELECT ItemCode, ItemName, CostRate, SaleRate, UnitType "
                                               "FROM tblItemCoding WHERE ItemCode = ?"), {code});
    if (!r)
        return std::nullopt;
    return fromRow(*r);
}

Outcome checkNew(SessionConnection &db, const Item &item)
{
    const QString name = item.name.trimmed();
    if (name.isEmpty())
        return Outcome::refusal(Msg::nameMissing(), QStringLiteral("txtItemName"));
    if (item.code.isEmpty() || item.code == CodeMask::empty())
        return Outcome::refusal(Msg::codeMissing(), QStringLiteral("mskItemCode"));
    if (codeTaken(db, item.code))
        return Outcome::refusal(Msg::codeExists(), QStringLiteral("mskItemCode"));
    if (nameTaken(db, name))
        return Outcome::refusal(Msg::nameExists(), QStringLiteral("txtItemName"));
    return Outcome::passed();
}

Outcome add(SessionConnection &db, const Item &item, const QString &userName, const QDate &entryDate)
{
    try {
        Transaction tx(db);
        const Outcome c = checkNew(db, item);
        if (!c)
            return c;
        db.execute(QStringLiteral("INSERT INTO tblItemCoding (ItemName, ItemCode, CostRate, SaleRate, UnitType, "
                                  "UserName, EntryDate) VALUES (?, ?, ?, ?, ?, ?, ?)"),
                   {item.name.trimmed(), item.code, item.costRate.toVariant(), item.saleRate.toVariant(),
                    text(item.unitType), text(userName), entryDate});
        tx.commit();
    } catch (const DbError &e) {
        if (!e.isUniqueViolation())
            throw;
        if (codeTaken(db, item.code))
            return Outcome::refusal(Msg::codeExists(), QStringLiteral("mskItemCode"));
        return Outcome::refusal(Msg::nameExists(), QStringLiteral("txtItemName"));
    }
    return Outcome::success(Msg::added());
}

Outcome checkChange(SessionConnection &db, const QString &oldCode, const QString &oldName, const Item &item)
{
    const QString name = item.name.trimmed();
    if (name.isEmpty())
        return Outcome::refusal(Msg::nameMissing(), QStringLiteral("txtItemName"));
    if (item.code.isEmpty() || item.code == CodeMask::empty())
        return Outcome::refusal(Msg::codeMissing(), QStringLiteral("mskItemCode"));
    if (!CodeMask::isComplete(item.code))
        return Outcome::refusal(Msg::codeIncomplete(), QStringLiteral("mskItemCode"));
    if (oldCode.trimmed() != item.code && codeTaken(db, item.code))
        return Outcome::refusal(Msg::codeExistsOnModify(), QStringLiteral("mskItemCode"));
    if (oldName.trimmed() != name && nameTaken(db, name))
        return Outcome::refusal(Msg::nameExistsOnModify(), QStringLiteral("txtItemName"));
    return Outcome::passed();
}

Outcome modify(SessionConnection &db, const QString &oldCode, const QString &oldName, const Item &item,
               const QString &userName, const QDate &entryDate)
{
    try {
        Transaction tx(db);
        const Outcome c = checkChange(db, oldCode, oldName, item);
        if (!c)
            return c;
        const int n = db.execute(QStringLiteral("UPDATE tblItemCoding SET ItemCode = ?, ItemName = ?, CostRate = ?, "
                                                "SaleRate = ?, UnitType = ?, UserName = ?, EntryDate = ? WHERE ItemCode = ?"),
                                 {item.code, item.name.trimmed(), item.costRate.toVariant(), item.saleRate.toVariant(),
                                  text(item.unitType), text(userName), entryDate, oldCode});
        if (n == 0)
            return Outcome::refusal(Msg::notFound());
        tx.commit();
    } catch (const DbError &e) {
        if (!e.isUniqueViolation())
            throw;
        if (oldCode.trimmed() != item.code && codeTaken(db, item.code))
            return Outcome::refusal(Msg::codeExistsOnModify(), QStringLiteral("mskItemCode"));
        return Outcome::refusal(Msg::nameExistsOnModify(), QStringLiteral("txtItemName"));
    }
    return Outcome::success(Msg::modified());
}

} // namespace ItemCoding
