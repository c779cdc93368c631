#include "accounts/OpeningBalance.h"

#include "accounts/AccountRules.h"
#include "foundation/CodeMask.h"
#include "foundation/DateRules.h"
#include "foundation/Lookups.h"
#include "foundation/SessionConnection.h"
#include "vouchers/LedgerWriter.h"
#include "vouchers/PostingChecks.h"

namespace OpeningBalance {

namespace {

const QString kRowWhere = QStringLiteral(
    "PartyCode = ? AND VoucherType = 'JV' AND VoucherNo = 0 AND PartyDesc = 'OPENING BALANCE'");

struct Fields
{
    QString code, amount, date;
};

// The checks both panels make, in their order.
Outcome checkEntry(SessionConnection &db, const Entry &e, const Fields &f, const QString &codeMissing,
                   bool exactEmptyMask)
{
    const bool missing = exactEmptyMask ? e.code == QLatin1String("__-__-___") || e.code.trimmed().isEmpty()
                                        : !CodeMask::isComplete(e.code);
    if (missing)
        return Outcome::refusal(codeMissing, f.code);
    if (!e.amount)
        return Outcome::refusal(Msg::balanceMissing(), f.amount);
    if (!Lookups::accountExists(db, e.code))
        return Outcome::refusal(Msg::codeNotFound(), f.code);
    const auto [debit, credit] = sides(e.side, *e.amount);
    return checkRow(db, e.code, e.date, debit, credit, f.date, f.amount);
}

} // namespace

std::pair<Money, Money> sides(const QString &side, Money amount)
{
    if (side == QLatin1String("DR"))
        return {amount, Money()};
    if (side == QLatin1String("CR"))
        return {Money(), amount};
    return {Money(), Money()};
}

std::optional<Shown> openingRow(SessionConnection &db, const QString &code)
{
    const auto row = db.selectOne(QStringLiteral("SELECT SrNo, VDate, PartyDR, PartyCR FROM tblPartyBalance WHERE ")
                                      + kRowWhere + QStringLiteral(" ORDER BY SrNo"),
                                  {code});
    if (!row)
        return std::nullopt;
    Shown s;
    s.srNo = row->integer(0);
    s.date = row->date(1);
    const Money dr = row->moneyOrZero(QStringLiteral("PartyDR"));
    const Money cr = row->moneyOrZero(QStringLiteral("PartyCR"));
    if (dr > Money()) {
        s.amount = dr;
    } else if (cr > Money()) {
        s.side = QStringLiteral("CR");
        s.amount = cr;
    }
    return s;
}

QueryResult accountsWithOpeningRow(SessionConnection &db)
{
    return db.select(QStringLiteral(
        "SELECT PI.PartyName AS PartyName, PI.PartyCode AS PartyCode FROM tblPartyInfo PI "
        "WHERE EXISTS (SELECT 1 FROM tblPartyBalance PB WHERE PB.PartyCode = PI.PartyCode AND PB.VoucherType = 'JV' "
        "AND PB.VoucherNo = 0 AND PB.PartyDesc = 'OPENING BALANCE') ORDER BY PI.PartyName"));
}

QueryResult allRows(SessionConnection &db)
{
    return db.select(QStringLiteral("SELECT SrNo, RTRIM(PartyCode) AS PartyCode, PartyName, VDate, PartyDR, PartyCR, "
                                    "PartyBalance FROM tblPartyBalance WHERE ")
                     + rowCondition() + QStringLiteral(" ORDER BY RTRIM(PartyCode), SrNo"));
}

Outcome checkRow(SessionConnection &db, const QString &code, const QDate &date, Money debit, Money credit,
                 const QString &dateField, const QString &amountField, const QString &chartCode)
{
    const auto closing = Lookups::closingDate(db);
    if (!closing)
        return Outcome::refusal(DateRules::closingMissingMessage());
    if (!date.isValid())
        return Outcome::refusal(DateRules::dateMissingMessage(), dateField);
    if (date < *closing)
        return Outcome::refusal(DateRules::closedPeriodMessage(), dateField);
    // A heading carries its opening row like any account, but never an amount.
    if (PostingChecks::isHeading(code)) {
        if (!debit.isZero() || !credit.isZero())
            return Outcome::refusal(PostingMessages::kHeading, amountField);
        return Outcome::passed();
    }
    LedgerRow row = LedgerRow::debit({QStringLiteral("JV"), 0, date}, chartCode.isEmpty() ? code : chartCode,
                                     QString(), debit);
    row.partyCR = credit;
    Outcome posting = PostingChecks(db, PostingChecks::Closing::FromClosingDate).check({row});
    if (!posting && posting.field == QLatin1String("txtAmount"))
        posting.field = amountField;
    else if (!posting && posting.field == QLatin1String("mskDate"))
        posting.field = dateField;
    return posting;
}

bool rewriteRow(SessionConnection &db, const QString &code, const QDate &date, Money debit, Money credit,
                const QString &user, const QDate &today)
{
    const QueryResult rows = db.select(
        QStringLiteral("SELECT SrNo, VDate, PartyName FROM tblPartyBalance WHERE ") + kRowWhere
            + QStringLiteral(" ORDER BY SrNo"),
        {code});
    LedgerWriter writer(db, user, today);
    for (const Row &r : rows) {
        LedgerRow row = LedgerRow::debit({QStringLiteral("JV"), 0, date}, code, r.text(2), debit,
                                         Accounts::Msg::openingDesc());
        row.partyCR = credit;
        writer.update(r.integer(0), {QStringLiteral("JV"), 0, r.date(1)}, row);
    }
    return !rows.isEmpty();
}

Outcome open(SessionConnection &db, const Entry &entry, const QString &user, const QDate &today)
{
    Transaction tx(db);
    const Outcome check = checkEntry(db, entry, {QStringLiteral("mskPartyCode"), QStringLiteral("txtBalance"),
                                                 QStringLiteral("mskDate")},
                                     Msg::codeToSelect(), true);
    if (!check)
        return check;
    // One opening row an account, a zero one too. Under the lock of the JV
    // series, so that two workstations never both open the same account.
    Ledger::lockVoucherSeries(db, QStringLiteral("JV"));
    if (openingRow(db, entry.code))
        return Outcome::refusal(Msg::alreadyOpen());
    const QString name =
        db.scalar(QStringLiteral("SELECT PartyName FROM tblPartyInfo WHERE PartyCode = ?"), {entry.code}).toString();
    const auto [debit, credit] = sides(entry.side, *entry.amount);
    LedgerRow row = LedgerRow::debit({QStringLiteral("JV"), 0, entry.date}, entry.code, name, debit,
                                     Accounts::Msg::openingDesc());
    row.partyCR = credit;
    LedgerWriter(db, user, today).insert(row);
    tx.commit();
    Outcome done = Outcome::success(Msg::opened());
    done.rowsWritten = 1;
    return done;
}

Outcome modify(SessionConnection &db, const Entry &entry, const QString &user, const QDate &today)
{
    Transaction tx(db);
    const Outcome check = checkEntry(db, entry, {QStringLiteral("mskMPartyCode"), QStringLiteral("txtMBalance"),
                                                 QStringLiteral("mskMDate")},
                                     Msg::codeToEnter(), false);
    if (!check)
        return check;
    const auto [debit, credit] = sides(entry.side, *entry.amount);
    if (!rewriteRow(db, entry.code, entry.date, debit, credit, user, today))
        return Outcome::refusal(Msg::notOpen(), QStringLiteral("mskMPartyCode"));
    tx.commit();
    Outcome done = Outcome::success(Msg::modified());
    done.rowsWritten = 1;
    return done;
}

} // namespace OpeningBalance
