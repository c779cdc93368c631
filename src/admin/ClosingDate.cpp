#include "admin/ClosingDate.h"

#include "foundation/DateRules.h"
#include "foundation/Lookups.h"
#include "foundation/SessionConnection.h"

namespace ClosingDate {

std::optional<QDate> current(SessionConnection &db)
{
    return Lookups::closingDate(db);
}

std::optional<QDate> firstOpenDate(SessionConnection &db)
{
    const auto closing = current(db);
    if (!closing)
        return std::nullopt;
    return closing->addDays(1);
}

Outcome set(SessionConnection &db, const QDate &date)
{
    if (!date.isValid())
        return Outcome::refusal(DateRules::dateMissingMessage(), QStringLiteral("mskDate"));
    Transaction tx(db);
    if (db.selectOne(QStringLiteral("SELECT ClosingDate FROM tblClosingDate")))
        db.execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {date});
    else
        db.execute(QStringLiteral("INSERT INTO tblClosingDate (ClosingDate) VALUES (?)"), {date});
    tx.commit();
    return Outcome::success(doneMessage());
}

} // namespace ClosingDate
