#pragma once

#include "foundation/Money.h"
#include "foundation/Outcome.h"

#include <QDate>
#include <QString>
#include <QVector>
#include <optional>

class SessionConnection;
class QueryResult;

// Changing an account: its details, and its code and name wherever other
// tables copy them, with its opening row rewritten in the same stroke.
namespace AccountModification {

namespace Msg {
inline QString noAccount() { return QStringLiteral("Please first add party info. then modified"); }
inline QString nameMissing() { return QStringLiteral("Party name is missing, Blank name is not acceptable"); }
inline QString balanceMissing()
{
    return QStringLiteral("Opening balance can not be empty, it must be 0 or greater than 0");
}
inline QString codeMissing() { return QStringLiteral("Party code is missing, Enter proper party code"); }
inline QString codeExists() { return QStringLiteral("Party code already exist, Duplication is not allowed"); }
inline QString nameExists() { return QStringLiteral("Party name already exist, Duplication is not allowed"); }
inline QString modified() { return QStringLiteral("The modification process of opening balance has completed"); }
} // namespace Msg

// A table that copies an account's code and name: the column holding the
// code and the one holding the name. A table that links by name alone has
// no code column; one that keeps the code alone has no name column.
struct AccountCopy
{
    QString table;
    QString codeColumn;
    QString nameColumn;
};

// Every copy of an account outside the chart and the ledger. A new table
// that copies an account is one more line here.
const QVector<AccountCopy> &accountCopies();

// What the screen holds when the user saves.
struct Change
{
    QString oldCode;      // as loaded; empty when no account was loaded
    QString oldName;
    QString code;         // the new code, mask text
    QString name;
    QString address;
    QString phone;
    QString fax;
    QString email;
    QString description;  // kept as typed
    QString saleTaxNo;    // mask text
    QString ntn;          // mask text
    qint64 dueDays = 0;
    QString careOf;
    QDate date;           // of the opening row
    QString side = QStringLiteral("DR");
    std::optional<Money> balance;
};

// Every account, headings too: columns PartyName, PartyCode by name.
QueryResult allAccounts(SessionConnection &db);

// The account of that code as the screen shows it, old and new values
// alike, with its opening row (date, side and amount; no date and an
// empty balance when it has none). Nothing when there is no such account.
std::optional<Change> load(SessionConnection &db, const QString &code);

// The checks of a save, in their order, without writing anything.
Outcome check(SessionConnection &db, const Change &change);

// Checks, then changes the account and every copy of its code and name,
// and rewrites its opening row, all in one transaction: all of it or
// nothing. A code or name another workstation takes at the same moment is
// refused with the check's words; another database failure throws DbError
// with nothing changed.
Outcome save(SessionConnection &db, const Change &change, const QString &user, const QDate &today);

} // namespace AccountModification
