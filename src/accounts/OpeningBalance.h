#pragma once

#include "foundation/Money.h"
#include "foundation/Outcome.h"

#include <QDate>
#include <QString>
#include <optional>

class SessionConnection;
class QueryResult;

// The opening balance of an account: its one ledger row of voucher JV
// number 0 with the narration "OPENING BALANCE", standing on or after the
// closing date. Opening a balance writes that row for an account that has
// none; a change rewrites that row and no other.
namespace OpeningBalance {

namespace Msg {
inline QString codeToSelect() { return QStringLiteral("Party code is missing, please select party code"); }
inline QString codeToEnter() { return QStringLiteral("Party code is missing, please enter party code"); }
inline QString balanceMissing() { return QStringLiteral("Balance is missing, please enter balance amount"); }
inline QString codeNotFound() { return QStringLiteral("Party code not found, please enter correct party code"); }
inline QString alreadyOpen() { return QStringLiteral("Party balance is already open, that may be or greater than 0"); }
inline QString notOpen()
{
    return QStringLiteral("Party balance is not open, please open it through OPENING BALANCE first");
}
inline QString opened() { return QStringLiteral("The process of opening balance has completed"); }
inline QString modified() { return QStringLiteral("The modification process of opening balance has completed"); }
} // namespace Msg

// What a panel holds when its button is pressed.
struct Entry
{
    QString code;                       // mask text; "__-__-___" when not typed
    QDate date;
    QString side = QStringLiteral("DR"); // "DR" or "CR"; anything else opens at 0
    std::optional<Money> amount;        // nothing when the field was left empty
};

// The row as the screens show it: a debit above 0 with "DR", else a credit
// above 0 with "CR", else 0 with "DR".
struct Shown
{
    qint64 srNo = 0;
    QDate date;
    QString side = QStringLiteral("DR");
    Money amount;
};

// The account's opening row, or nothing.
std::optional<Shown> openingRow(SessionConnection &db, const QString &code);

// Accounts that have an opening row: columns PartyName, PartyCode by name.
QueryResult accountsWithOpeningRow(SessionConnection &db);

// The debit and credit of an amount on a side; any side but "DR" and "CR"
// gives nothing on either.
std::pair<Money, Money> sides(const QString &side, Money amount);

// Writes the opening row of an account that has none (the fields of the
// first panel: mskPartyCode, txtBalance, mskDate).
Outcome open(SessionConnection &db, const Entry &entry, const QString &user, const QDate &today);

// Rewrites the opening row of an account (the second panel's fields:
// mskMPartyCode, txtMBalance, mskMDate).
Outcome modify(SessionConnection &db, const Entry &entry, const QString &user, const QDate &today);

// The closing-date and heading checks of an opening row on `date` for
// `code`, inside the caller's transaction: the closing date itself is
// open, a heading takes no amount. `dateField` and `amountField` name the
// fields a refusal focuses. The account is looked up in the chart under
// `chartCode` when given (an account whose code is about to change).
Outcome checkRow(SessionConnection &db, const QString &code, const QDate &date, Money debit, Money credit,
                 const QString &dateField, const QString &amountField, const QString &chartCode = QString());

// Rewrites the account's opening row (the one row, no other JV row) with
// the date and amounts, stamped with the user; false when it has none.
// Called inside the caller's transaction.
bool rewriteRow(SessionConnection &db, const QString &code, const QDate &date, Money debit, Money credit,
                const QString &user, const QDate &today);

// The condition that tells an opening row, for a rule that keeps or
// gathers them in bulk; NOT of it holds for every other row, a row
// without narration included.
inline QString rowCondition()
{
    return QStringLiteral("(VoucherType = 'JV' AND VoucherNo = 0 AND COALESCE(PartyDesc, '') = 'OPENING BALANCE')");
}

// Every opening row of the year, in code then SrNo order: SrNo, PartyCode
// (without trailing blanks), PartyName, VDate, PartyDR, PartyCR,
// PartyBalance.
QueryResult allRows(SessionConnection &db);

} // namespace OpeningBalance
