#pragma once

#include "foundation/SessionConnection.h"

#include <QDate>
#include <QString>
#include <QStringList>
#include <optional>

struct Session;

// The shared look-ups of the entry screens: account code and name, the
// next voucher number, the lists the combos offer, the word search, the
// letterhead of a document title and the closing date. Widget-free.
namespace Lookups {

std::optional<QString> codeFromName(SessionConnection &db, const QString &partyName);
std::optional<QString> nameFromCode(SessionConnection &db, const QString &partyCode);
bool partyNameExists(SessionConnection &db, const QString &partyName);
// Whether the chart holds an account (or heading) of this code.
bool accountExists(SessionConnection &db, const QString &partyCode);
inline QString partyNotFoundMessage() { return QStringLiteral("Party name not found, please enter correct party name"); }

// Max(VoucherNo)+1 of a voucher type in the ledger, 1 when it has none.
qint64 nextVoucherNo(SessionConnection &db, const QString &voucherType);

// Parties and customers (no group heads, codes up to 18-99-999), by name:
// columns PartyName, PartyCode.
QueryResult partyList(SessionConnection &db);
QStringList careOfList(SessionConnection &db);
QStringList titleList(SessionConnection &db);

// The words of a search text: at most four, cut at blanks; an empty text
// gives one empty word, which matches every name.
QStringList searchWords(const QString &text);
// Accounts whose name holds every word, in any order: PartyCode, PartyName.
QueryResult searchPartyByWords(SessionConnection &db, const QString &text);

struct Letterhead
{
    QString titleName;
    QString companyName;
    QString companyAddress;
    QString companyPhone;
    QString companyEmail;
    QString companySaleTaxNo;
    QString companyNTN;
};
// The letterhead of a title (compared exactly). The empty title always has
// one: all blank but the sales-tax number and NTN, left as lines to fill
// by hand. A title without a row gives nothing.
std::optional<Letterhead> letterhead(SessionConnection &db, const QString &titleName);
// Writes a letterhead into the session (CurrentTitle and the Company* values).
void applyLetterhead(Session &s, const Letterhead &l);

std::optional<QDate> closingDate(SessionConnection &db);

} // namespace Lookups
