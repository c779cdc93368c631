#include "accounts/AccountRules.h"

#include "foundation/CodeMask.h"
#include "foundation/Lookups.h"
#include "foundation/SessionConnection.h"
#include "vouchers/LedgerWriter.h"

namespace Accounts {

namespace {

struct Cleaned
{
    QString name, address, phone, fax, email;
};

// Text columns hold "" rather than NULL when a field was left empty.
QString text(const QString &s)
{
    return s.isNull() ? QStringLiteral("") : s;
}

Cleaned cleaned(const NewAccount &a)
{
    return {text(a.name.trimmed()), text(a.address.trimmed()), text(a.phone.trimmed()), text(a.fax.trimmed()),
            text(a.email.trimmed())};
}

// After a unique key refused the insert: tell which of the two keys holds
// the account already. The other workstation has committed by now.
Outcome duplicateRefusal(SessionConnection &db, const NewAccount &a)
{
    if (db.selectOne(QStringLiteral("SELECT PartyCode FROM tblPartyInfo WHERE PartyCode = ?"), {a.code}))
        return Outcome::refusal(Msg::codeExists(), QStringLiteral("mskPartyCode"));
    return Outcome::refusal(Msg::nameExists(), QStringLiteral("txtPartyName"));
}

} // namespace

Outcome checkNewAccount(SessionConnection &db, const NewAccount &account)
{
    const Cleaned c = cleaned(account);
    if (!CodeMask::isComplete(account.code))
        return Outcome::refusal(Msg::codeMissing(), QStringLiteral("mskPartyCode"));
    if (c.name.isEmpty())
        return Outcome::refusal(Msg::nameMissing(), QStringLiteral("txtPartyName"));
    if (!account.balance)
        return Outcome::refusal(Msg::balanceMissing(), QStringLiteral("txtBalance"));

    // The code is looked at before the name.
    if (db.selectOne(QStringLiteral("SELECT PartyCode FROM tblPartyInfo WHERE PartyCode = ?"), {account.code}))
        return Outcome::refusal(Msg::codeExists(), QStringLiteral("mskPartyCode"));
    if (db.selectOne(QStringLiteral("SELECT PartyName FROM tblPartyInfo WHERE PartyName = ?"), {c.name}))
        return Outcome::refusal(Msg::nameExists(), QStringLiteral("txtPartyName"));

    const auto closing = Lookups::closingDate(db);
    if (!closing)
        return Outcome::refusal(Msg::closingDateMissing());
    if (!account.date.isValid())
        return Outcome::refusal(Msg::dateMissing(), QStringLiteral("mskDate"));
    // An opening balance belongs on the day the books closed, so the
    // closing date itself is open here.
    if (account.date < *closing)
        return Outcome::refusal(Msg::dateClosed(), QStringLiteral("mskDate"));
    return Outcome::passed();
}

Outcome createAccount(SessionConnection &db, const NewAccount &account, const QString &userName,
                      const QDate &entryDate)
{
    try {
        Transaction tx(db);
        const Outcome check = checkNewAccount(db, account);
        if (!check)
            return check;
        const Cleaned c = cleaned(account);
        db.execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyName, PartyCode, PartyAddress, PartyPhone, PartyFax, "
                                  "PartyEmail, PartyDesc, PartySaleTaxNo, CareOf, UserName, EntryDate, PartyNTN, DueDays) "
                                  "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
                   {c.name, account.code, c.address, c.phone, c.fax, c.email, text(account.description),
                    text(account.saleTaxNo), text(account.careOf), text(userName), entryDate, text(account.ntn),
                    account.dueDays});
        // A code may already stand on the debit/credit list (it takes any
        // nine digits); the list keeps one row per code.
        if (!db.selectOne(QStringLiteral("SELECT PartyCode FROM tblDBCR WHERE PartyCode = ?"), {account.code}))
            db.execute(QStringLiteral("INSERT INTO tblDBCR (PartyCode) VALUES (?)"), {account.code});

        // The opening row: voucher JV number 0 on the side chosen, a zero
        // one too, since later screens rewrite that row.
        const Money amount = *account.balance;
        if (account.side == QLatin1String("DR") || account.side == QLatin1String("CR")) {
            const VoucherKey key{QStringLiteral("JV"), 0, account.date};
            LedgerRow row = account.side == QLatin1String("DR")
                ? LedgerRow::debit(key, account.code, c.name, amount, Msg::openingDesc())
                : LedgerRow::credit(key, account.code, c.name, amount, Msg::openingDesc());
            row.careOf = QStringLiteral("");
            LedgerWriter(db, text(userName), entryDate).insert(row);
        }
        tx.commit();
    } catch (const DbError &e) {
        if (!e.isUniqueViolation())
            throw;
        return duplicateRefusal(db, account);
    }
    return Outcome::success(Msg::added());
}

QString lastCodeUnder(SessionConnection &db, const QString &maskText)
{
    // The mask's own "_" in an unfinished prefix is LIKE's one-character
    // wildcard, so "17-1_-" still finds the group's codes.
    const QString prefix = maskText.left(6);
    const QVariant v = db.scalar(QStringLiteral("SELECT MAX(PartyCode) AS PC FROM tblPartyInfo WHERE PartyCode LIKE ?"),
                                 {prefix + QLatin1Char('%')});
    return v.isNull() ? QString() : v.toString().trimmed();
}

QueryResult accountsNamed(SessionConnection &db, const QString &text)
{
    return db.select(QStringLiteral("SELECT PartyCode, PartyName FROM tblPartyInfo WHERE PartyName LIKE ? "
                                    "ORDER BY PartyCode"),
                     {QLatin1Char('%') + text + QLatin1Char('%')});
}

} // namespace Accounts
