#include "accounts/AccountRules.h"

#include "foundation/CodeMask.h"
#include "foundation/Lookups.h"
#include "foundation/SessionConnection.h"

#include <algorithm>
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
    if (Lookups::accountExists(db, a.code))
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
    if (Lookups::accountExists(db, account.code))
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

bool nearlySame(const QString &a, const QString &b)
{
    const QString x = a.simplified().toUpper();
    const QString y = b.simplified().toUpper();
    if (x.isEmpty() || y.isEmpty())
        return false;
    // The same words in another order.
    QStringList wx = x.split(QLatin1Char(' ')), wy = y.split(QLatin1Char(' '));
    std::sort(wx.begin(), wx.end());
    std::sort(wy.begin(), wy.end());
    if (wx == wy)
        return true;
    // One letter off: one changed, left out or added.
    if (qAbs(x.size() - y.size()) > 1)
        return false;
    int i = 0;
    while (i < x.size() && i < y.size() && x[i] == y[i])
        ++i;
    int j = 0;
    while (j < x.size() - i && j < y.size() - i && x[x.size() - 1 - j] == y[y.size() - 1 - j])
        ++j;
    return qMax(x.size(), y.size()) - i - j <= 1;
}

QueryResult accountsNamed(SessionConnection &db, const QString &text)
{
    QueryResult all = db.select(QStringLiteral("SELECT PartyCode, PartyName FROM tblPartyInfo ORDER BY PartyCode"));
    const QString typed = text.toUpper();
    QueryResult out;
    out.columns = all.columns;
    for (const Row &r : all.rows) {
        const QString name = r.text(1);
        if (name.toUpper().contains(typed) || nearlySame(name, text))
            out.rows << r;
    }
    return out;
}

} // namespace Accounts
