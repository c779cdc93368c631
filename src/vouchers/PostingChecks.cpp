#include "vouchers/PostingChecks.h"

#include "foundation/DateRules.h"
#include "foundation/Lookups.h"
#include "foundation/SessionConnection.h"
#include "vouchers/VoucherRules.h"


namespace {

QString trimmedCode(const QString &code)
{
    QString c = code;
    while (c.endsWith(QLatin1Char(' ')))
        c.chop(1);
    return c;
}

} // namespace

PostingChecks::PostingChecks(SessionConnection &db, Closing closing) : m_db(db), m_closing(closing)
{
}

bool PostingChecks::isKnownType(const QString &type)
{
    static const QSet<QString> known = {QStringLiteral("CP"), QStringLiteral("CR"), QStringLiteral("BP"),
                                        QStringLiteral("BR"), QStringLiteral("BC"), QStringLiteral("JV"),
                                        QStringLiteral("SV"), QStringLiteral("PS"), QStringLiteral("CS"),
                                        QStringLiteral("OS")};
    return known.contains(type);
}

bool PostingChecks::isHeading(const QString &code)
{
    const QString c = trimmedCode(code);
    return c.size() == 9 && c.endsWith(QLatin1String("-000")) && c.at(2) == QLatin1Char('-');
}

Outcome PostingChecks::checkDate(const QDate &date)
{
    if (!date.isValid())
        return Outcome::refusal(DateRules::dateMissingMessage(), QStringLiteral("mskDate"));
    if (m_closing == Closing::NotChecked)
        return Outcome::passed();
    if (!m_closingRead || !m_keep) {
        m_closingDate = Lookups::closingDate(m_db);
        m_closingRead = true;
    }
    if (!m_closingDate)
        return Outcome::refusal(DateRules::closingMissingMessage(), QStringLiteral("mskDate"));
    const bool closed = m_closing == Closing::AfterClosingDate ? date <= *m_closingDate : date < *m_closingDate;
    if (closed)
        return Outcome::refusal(DateRules::closedPeriodMessage(), QStringLiteral("mskDate"));
    return Outcome::passed();
}

Outcome PostingChecks::checkAccounts(const QVector<LedgerRow> &rows)
{
    if (!m_keep)
        m_known.clear();
    QStringList unseen;
    for (const LedgerRow &r : rows) {
        const QString code = trimmedCode(r.partyCode);
        if (isHeading(code))
            return Outcome::refusal(PostingMessages::kHeading, QStringLiteral("cmbPartyName"));
        if (!m_known.contains(code) && !unseen.contains(code))
            unseen << code;
    }
    if (unseen.isEmpty())
        return Outcome::passed();
    // One look-up for all the accounts of the posting.
    QStringList places;
    QVariantList params;
    for (const QString &code : unseen) {
        places << QStringLiteral("?");
        params << code;
    }
    for (const Row &r : m_db.select(QStringLiteral("SELECT PartyCode FROM tblPartyInfo WHERE PartyCode IN (")
                                        + places.join(QLatin1Char(',')) + QLatin1Char(')'),
                                    params))
        m_known.insert(trimmedCode(r.text(0)));
    for (const QString &code : unseen)
        if (!m_known.contains(code))
            return Outcome::refusal(Lookups::partyNotFoundMessage(), QStringLiteral("cmbPartyName"));
    return Outcome::passed();
}

Outcome PostingChecks::checkVoucher(const QString &type, const QDate &date)
{
    const QString t = type.trimmed();
    if (t.isEmpty())
        return Outcome::refusal(VoucherMessages::kTypeMissing);
    if (!isKnownType(t))
        return Outcome::refusal(PostingMessages::kUnknownType);
    return checkDate(date);
}

Outcome PostingChecks::check(const QVector<LedgerRow> &rows)
{
    const LedgerRow *last = nullptr;
    for (const LedgerRow &r : rows) {
        // The rows of one voucher share their type and date: check them once.
        if (!last || r.voucherType != last->voucherType || r.vDate != last->vDate) {
            const Outcome key = checkVoucher(r.voucherType, r.vDate);
            if (!key)
                return key;
            last = &r;
        }
        if (r.partyDR.isNegative() || r.partyCR.isNegative())
            return Outcome::refusal(PostingMessages::kNegative, QStringLiteral("txtAmount"));
        if (!r.partyDR.isZero() && !r.partyCR.isZero())
            return Outcome::refusal(PostingMessages::kTwoSides, QStringLiteral("txtAmount"));
    }
    return checkAccounts(rows);
}
