#include "accounts/AccountModification.h"

#include "foundation/Lookups.h"
#include "accounts/OpeningBalance.h"
#include "foundation/CodeMask.h"
#include "foundation/SessionConnection.h"
#include "vouchers/LedgerWriter.h"

namespace AccountModification {

namespace {

QString text(const QString &s)
{
    return s.isNull() ? QStringLiteral("") : s;
}

QString trimmedKey(QString s)
{
    while (s.endsWith(QLatin1Char(' ')))
        s.chop(1);
    return s;
}

// The opening row's amounts: the side chosen, or the row's own amounts
// when the side is neither.
std::pair<Money, Money> openingAmounts(SessionConnection &db, const Change &c)
{
    if (c.side == QLatin1String("DR") || c.side == QLatin1String("CR"))
        return OpeningBalance::sides(c.side, *c.balance);
    const auto row = db.selectOne(
        QStringLiteral("SELECT PartyDR, PartyCR FROM tblPartyBalance WHERE PartyCode = ? AND VoucherType = 'JV' "
                       "AND VoucherNo = 0 AND PartyDesc = 'OPENING BALANCE' ORDER BY SrNo"),
        {c.oldCode});
    if (!row)
        return {Money(), Money()};
    return {row->moneyOrZero(QStringLiteral("PartyDR")), row->moneyOrZero(QStringLiteral("PartyCR"))};
}

// The same account under another name or code: which one is taken.
Outcome duplicateOf(SessionConnection &db, const Change &c, const QString &name)
{
    if (trimmedKey(c.code) != trimmedKey(c.oldCode)
        && Lookups::accountExists(db, c.code))
        return Outcome::refusal(Msg::codeExists(), QStringLiteral("mskPartyCode"));
    if (trimmedKey(name) != trimmedKey(c.oldName)
        && db.selectOne(QStringLiteral("SELECT PartyName FROM tblPartyInfo WHERE PartyName = ?"), {name}))
        return Outcome::refusal(Msg::nameExists(), QStringLiteral("txtPartyName"));
    return Outcome::passed();
}

} // namespace

const QVector<AccountCopy> &accountCopies()
{
    static const QVector<AccountCopy> copies = {
        {QStringLiteral("tblDBCR"), QStringLiteral("PartyCode"), QString()},
        {QStringLiteral("tblInvoice"), QStringLiteral("PartyCode"), QStringLiteral("PartyName")},
        {QStringLiteral("tblEmployeeInfo"), QStringLiteral("EmployeeCode"), QStringLiteral("EmployeeName")},
        {QStringLiteral("tblEmployeeStock"), QStringLiteral("PartyCode"), QString()},
        {QStringLiteral("tblPurchaseOrder"), QStringLiteral("PartyCode"), QStringLiteral("PartyName")},
        {QStringLiteral("tblDeliveryChallan"), QStringLiteral("PartyCode"), QStringLiteral("PartyName")},
        {QStringLiteral("tblPurchaseStock"), QString(), QStringLiteral("PartyName")},
        {QStringLiteral("tblPurchaseStock"), QString(), QStringLiteral("PurchaseName")},
        {QStringLiteral("tblOtherServices"), QStringLiteral("PartyCode"), QStringLiteral("PartyName")},
        {QStringLiteral("tblOtherServices"), QStringLiteral("SupplierCode"), QStringLiteral("SupplierName")},
        {QStringLiteral("tblPostDatedCheque"), QStringLiteral("PartyCode"), QStringLiteral("PartyName")},
        {QStringLiteral("tblPostDatedCheque"), QStringLiteral("BankCode"), QStringLiteral("BankName")},
        {QStringLiteral("tblJobCard"), QStringLiteral("PartyCode"), QStringLiteral("PartyName")},
        {QStringLiteral("tblStock"), QStringLiteral("PartyCode"), QStringLiteral("PartyName")},
        {QStringLiteral("tblEmployeeSalary"), QStringLiteral("EmployeeCode"), QStringLiteral("EmployeeName")},
        {QStringLiteral("tblTLClientInfo"), QStringLiteral("PartyCode"), QStringLiteral("PartyName")},
    };
    return copies;
}

QueryResult allAccounts(SessionConnection &db)
{
    return db.select(QStringLiteral("SELECT PartyName, PartyCode FROM tblPartyInfo ORDER BY PartyName"));
}

std::optional<Change> load(SessionConnection &db, const QString &code)
{
    const auto row = db.selectOne(
        QStringLiteral("SELECT PartyCode, PartyName, PartyAddress, PartyPhone, PartyFax, PartyEmail, PartyDesc, "
                       "PartySaleTaxNo, PartyNTN, CareOf, DueDays FROM tblPartyInfo WHERE PartyCode = ?"),
        {code});
    if (!row)
        return std::nullopt;
    Change c;
    c.oldCode = c.code = trimmedKey(row->text(0));
    c.oldName = c.name = trimmedKey(row->text(1));
    c.address = row->text(2);
    c.phone = row->text(3);
    c.fax = row->text(4);
    c.email = row->text(5);
    c.description = row->text(6);
    c.saleTaxNo = row->text(7);
    c.ntn = row->text(8);
    c.careOf = trimmedKey(row->text(9));
    c.dueDays = row->integer(10);
    c.balance.reset();
    if (const auto opening = OpeningBalance::openingRow(db, c.oldCode)) {
        c.date = opening->date;
        c.side = opening->side;
        c.balance = opening->amount;
    }
    return c;
}

Outcome check(SessionConnection &db, const Change &c)
{
    if (c.oldCode.trimmed().isEmpty()
        || !Lookups::accountExists(db, c.oldCode))
        return Outcome::refusal(Msg::noAccount(), QStringLiteral("cmbPartyName"));
    const QString name = c.name.trimmed();
    if (name.isEmpty())
        return Outcome::refusal(Msg::nameMissing(), QStringLiteral("txtPartyName"));
    if (!c.balance)
        return Outcome::refusal(Msg::balanceMissing(), QStringLiteral("txtMBalance"));
    if (!CodeMask::isComplete(c.code))
        return Outcome::refusal(Msg::codeMissing(), QStringLiteral("mskPartyCode"));
    const Outcome dup = duplicateOf(db, c, name);
    if (!dup)
        return dup;
    const auto [debit, credit] = openingAmounts(db, c);
    return OpeningBalance::checkRow(db, c.code, c.date, debit, credit, QStringLiteral("mskMDate"),
                                    QStringLiteral("txtMBalance"), c.oldCode);
}

Outcome save(SessionConnection &db, const Change &c, const QString &user, const QDate &today)
{
    const QString name = c.name.trimmed();
    try {
        Transaction tx(db);
        const Outcome checked = check(db, c);
        if (!checked)
            return checked;
        const auto [debit, credit] = openingAmounts(db, c);
        const bool codeChanges = trimmedKey(c.code) != trimmedKey(c.oldCode);

        // The ledger first, with its kept balances, through the one writer.
        LedgerWriter(db, text(user), today).renameAccount(c.oldCode, c.code, name);

        db.execute(QStringLiteral("UPDATE tblPartyInfo SET PartyCode = ?, PartyName = ?, PartyAddress = ?, "
                                  "PartyPhone = ?, PartyFax = ?, PartyEmail = ?, PartyDesc = ?, PartySaleTaxNo = ?, "
                                  "CareOf = ?, UserName = ?, EntryDate = ?, PartyNTN = ?, DueDays = ? "
                                  "WHERE PartyCode = ?"),
                   {c.code, name, text(c.address.trimmed()), text(c.phone.trimmed()), text(c.fax.trimmed()),
                    text(c.email.trimmed()), text(c.description), text(c.saleTaxNo), text(c.careOf), text(user),
                    today, text(c.ntn), c.dueDays, c.oldCode});

        // The debit/credit list keeps one row a code: a new code already on
        // it keeps its row and the old one goes.
        if (codeChanges && db.selectOne(QStringLiteral("SELECT PartyCode FROM tblDBCR WHERE PartyCode = ?"), {c.code}))
            db.execute(QStringLiteral("DELETE FROM tblDBCR WHERE PartyCode = ?"), {c.oldCode});

        for (const AccountCopy &copy : accountCopies()) {
            if (copy.codeColumn.isEmpty()) {
                db.execute(QStringLiteral("UPDATE %1 SET %2 = ? WHERE %2 = ?").arg(copy.table, copy.nameColumn),
                           {name, c.oldName});
            } else if (copy.nameColumn.isEmpty()) {
                if (codeChanges)
                    db.execute(QStringLiteral("UPDATE %1 SET %2 = ? WHERE %2 = ?").arg(copy.table, copy.codeColumn),
                               {c.code, c.oldCode});
            } else {
                db.execute(QStringLiteral("UPDATE %1 SET %2 = ?, %3 = ? WHERE %2 = ?")
                               .arg(copy.table, copy.codeColumn, copy.nameColumn),
                           {c.code, name, c.oldCode});
            }
        }

        // The opening row, and no other row of the account.
        OpeningBalance::rewriteRow(db, c.code, c.date, debit, credit, text(user), today);
        tx.commit();
    } catch (const DbError &e) {
        if (!e.isUniqueViolation())
            throw;
        const Outcome dup = duplicateOf(db, c, name);
        if (!dup)
            return dup;
        throw;
    }
    return Outcome::success(Msg::modified());
}

} // namespace AccountModification
