#include "accounts/DebitCreditList.h"

#include "foundation/CodeMask.h"
#include "foundation/SessionConnection.h"

namespace DebitCreditList {

bool contains(SessionConnection &db, const QString &code)
{
    return db.selectOne(QStringLiteral("SELECT PartyCode FROM tblDBCR WHERE PartyCode = ?"), {code}).has_value();
}

Outcome add(SessionConnection &db, const QString &code)
{
    if (!CodeMask::isComplete(code))
        return Outcome::refusal(Msg::codeMissing(), QStringLiteral("mskPartyCode"));
    try {
        Transaction tx(db);
        if (contains(db, code))
            return Outcome::refusal(Msg::exists(), QStringLiteral("mskPartyCode"));
        db.execute(QStringLiteral("INSERT INTO tblDBCR (PartyCode) VALUES (?)"), {code});
        tx.commit();
    } catch (const DbError &e) {
        if (!e.isUniqueViolation())
            throw;
        return Outcome::refusal(Msg::exists(), QStringLiteral("mskPartyCode"));
    }
    return Outcome::success(Msg::added());
}

Outcome remove(SessionConnection &db, const QString &code)
{
    if (!CodeMask::isComplete(code))
        return Outcome::refusal(Msg::codeMissing(), QStringLiteral("mskPartyCode"));
    Transaction tx(db);
    const int n = db.execute(QStringLiteral("DELETE FROM tblDBCR WHERE PartyCode = ?"), {code});
    tx.commit();
    if (n == 0)
        return Outcome::refusal(Msg::notListed(), QStringLiteral("mskPartyCode"));
    return Outcome::success(Msg::deleted());
}

} // namespace DebitCreditList
