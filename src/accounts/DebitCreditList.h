#pragma once

#include "foundation/Outcome.h"

class SessionConnection;

// The debit/credit list: account codes kept in tblDBCR for the database's
// own reports. Any complete code is taken, a group heading's too; the code
// is not looked up among the accounts.
namespace DebitCreditList {

namespace Msg {
inline QString codeMissing() { return QStringLiteral("Party Code is missing, Enter proper party code"); }
inline QString exists() { return QStringLiteral("Account Code already exist, Duplication is not allowed"); }
inline QString added() { return QStringLiteral("Account code has added in debited/credited list successfully"); }
inline QString deleted() { return QStringLiteral("Account Code has deleted successfully"); }
inline QString notListed() { return QStringLiteral("Account code has not yet added in debit/credit list"); }
} // namespace Msg

bool contains(SessionConnection &db, const QString &code);
// Adds `code` (mask text). Refuses an incomplete code or one already listed.
Outcome add(SessionConnection &db, const QString &code);
// Removes `code`. Refuses an incomplete code or one not on the list.
Outcome remove(SessionConnection &db, const QString &code);

} // namespace DebitCreditList
