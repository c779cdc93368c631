#pragma once

#include "foundation/Outcome.h"
#include "foundation/Money.h"

#include <QDate>
#include <QString>
#include <optional>

class SessionConnection;
class QueryResult;

// The chart of accounts: creating an account with its opening balance, the
// hints the creation screen shows while typing, and the look-ups by which
// every screen finds an account by code, name or words.
namespace Accounts {

// What the account screen holds when the user saves.
struct NewAccount
{
    QString code;        // mask text "NN-NN-NNN"; "_" for a place not typed
    QString name;
    QString address;
    QString phone;
    QString fax;
    QString email;
    QString description; // kept as typed, not trimmed
    QString saleTaxNo;   // mask text, underscores and all when not filled
    QString ntn;         // likewise
    qint64 dueDays = 0;
    QString careOf;
    QDate date;          // date of the opening row
    QString side = QStringLiteral("DR"); // "DR" or "CR"; anything else writes no opening row
    std::optional<Money> balance; // nothing when the field was left empty
};

// The words of the account screen.
namespace Msg {
inline QString codeMissing() { return QStringLiteral("Party Code is missing, Enter proper party code"); }
inline QString nameMissing() { return QStringLiteral("Party name is missing, Blank name is not acceptable"); }
inline QString balanceMissing() { return QStringLiteral("Balance is missing, please enter balance amount"); }
inline QString codeExists() { return QStringLiteral("Party Code already exist, Duplication is not allowed"); }
inline QString nameExists() { return QStringLiteral("Party Name already exist, Duplication is not allowed"); }
inline QString closingDateMissing() { return QStringLiteral("Closing date is missing, please specify closing date"); }
inline QString dateClosed() { return QStringLiteral("Sorry, you enter wrong date because data has closed at this date"); }
inline QString dateMissing() { return QStringLiteral("Date is missing, please enter proper date"); }
inline QString added() { return QStringLiteral("Party Info. has added successfully"); }
inline QString openingDesc() { return QStringLiteral("OPENING BALANCE"); }
} // namespace Msg

// The checks of a save, in their order, without writing anything.
Outcome checkNewAccount(SessionConnection &db, const NewAccount &account);

// Checks and writes the account, its debit/credit list row and its opening
// row in one transaction. A duplicate saved by another workstation at the
// same moment is refused with the same words as the check. Other database
// failures throw DbError with nothing written.
Outcome createAccount(SessionConnection &db, const NewAccount &account, const QString &userName,
                      const QDate &entryDate);

// The highest code under the first six places of `maskText` ("17-10-"),
// where a "_" still in the prefix matches any one character. Empty when
// there is none.
QString lastCodeUnder(SessionConnection &db, const QString &maskText);

// Accounts whose names contain `text` or nearly are it (the same words in
// another order, blanks aside, one letter off): columns PartyCode,
// PartyName, ordered by code.
QueryResult accountsNamed(SessionConnection &db, const QString &text);
bool nearlySame(const QString &a, const QString &b);

} // namespace Accounts
