#include "stock/PurchaseStockRules.h"

#include "foundation/DateRules.h"
#include "foundation/Lookups.h"

namespace PurchaseStock {

namespace {

// A decimal typed by the user as exact digits and a scale: "12.50" is
// 1250 and 2. Empty or unreadable text is 0.
struct Decimal
{
    __int128 digits = 0;
    int scale = 0;
};

Decimal parseDecimal(const QString &text)
{
    QString t = text.trimmed();
    t.remove(QLatin1Char(','));
    const bool negative = t.startsWith(QLatin1Char('-'));
    if (negative || t.startsWith(QLatin1Char('+')))
        t = t.mid(1);
    Decimal d;
    const int point = t.indexOf(QLatin1Char('.'));
    if (point >= 0) {
        d.scale = int(t.size()) - point - 1;
        t.remove(point, 1);
    }
    while (d.scale > 9 && t.endsWith(QLatin1Char('0'))) {
        t.chop(1);
        --d.scale;
    }
    if (d.scale > 9) {
        t.chop(d.scale - 9);
        d.scale = 9;
    }
    bool ok = false;
    const qint64 v = t.isEmpty() ? 0 : t.toLongLong(&ok);
    if (!ok)
        return {};
    d.digits = negative ? -v : v;
    return d;
}

__int128 pow10(int n)
{
    __int128 p = 1;
    for (int i = 0; i < n; ++i)
        p *= 10;
    return p;
}

// value / divisor rounded half to even, as whole money.
Money wholeUnits(__int128 value, __int128 divisor)
{
    __int128 q = value / divisor;
    const __int128 r = value % divisor;
    if (r != 0) {
        const __int128 twice = 2 * (r < 0 ? -r : r);
        if (twice > divisor || (twice == divisor && q % 2 != 0))
            q += value < 0 ? -1 : 1;
    }
    return Money::fromUnits(static_cast<std::int64_t>(q));
}

QString narration(const QString &start, const QVector<Line> &lines)
{
    QString s = start;
    for (const Line &l : lines)
        s += QLatin1Char(' ') + l.itemDesc.trimmed() + QLatin1Char(' ') + l.weight.trimmed() + QLatin1Char('+');
    return s;
}

} // namespace

Money lineAmount(const QString &quantity, const QString &unitRate)
{
    const Decimal q = parseDecimal(quantity);
    const Decimal r = parseDecimal(unitRate);
    return wholeUnits(q.digits * r.digits, pow10(q.scale + r.scale));
}

Money wholePercent(Money amount, const QString &percent)
{
    const Decimal p = parseDecimal(percent);
    return wholeUnits(static_cast<__int128>(amount.cents()) * p.digits, pow10(p.scale + 4));
}

Money wholeMoney(Money amount) { return amount.roundedToUnits(); }

bool isPurchaseCode(const QString &code)
{
    const QString c = code.trimmed();
    return c.size() == 9 && c >= kFirstPurchaseCode && c <= kLastPurchaseCode && !c.endsWith(QLatin1String("-000"));
}

Outcome checkEntry(const Entry &e, Command command, bool partyKnown)
{
    using namespace PurchaseStockMessages;
    if (e.header.partyName.trimmed() == e.header.purchaseName.trimmed())
        return Outcome::refusal(kSameAccount, QStringLiteral("cmbPartyName"));
    if (e.header.billNo.trimmed().isEmpty())
        return Outcome::refusal(kBillMissing, QStringLiteral("txtBillNo"));
    if (e.voucherNoText.trimmed().isEmpty() || e.voucherNoText.trimmed().toLongLong() <= 0)
        return Outcome::refusal(kVoucherMissing, QStringLiteral("txtVoucherNo"));
    const DateRules::Check date = DateRules::checkDate(e.dateText);
    if (date != DateRules::Check::Ok)
        return Outcome::refusal(DateRules::messageFor(date), QStringLiteral("mskDate"));
    if (!partyKnown)
        return Outcome::refusal(Lookups::partyNotFoundMessage(), QStringLiteral("cmbPartyName"));
    if (command != Command::Delete) {
        if (e.quantityText.trimmed().isEmpty() || parseDecimal(e.quantityText).digits <= 0)
            return Outcome::refusal(kQuantity, QStringLiteral("txtQuantity"));
    }
    if (!isPurchaseCode(e.purchaseCode))
        return Outcome::refusal(kNotPurchaseAccount, QStringLiteral("cmbPurchaseName"));
    return Outcome::passed();
}

Totals totals(const Header &header, const QVector<Line> &lines)
{
    Totals t;
    if (lines.isEmpty())
        return t;
    for (const Line &l : lines)
        t.total += l.amount;
    t.saleTaxAmount = wholePercent(t.total, header.saleTax);
    t.freight = wholeMoney(header.freight);
    return t;
}

QString purchaseNarration(const QVector<Line> &lines) { return narration(QStringLiteral("PURCHASE"), lines); }
QString freightNarration(const QVector<Line> &lines) { return narration(QStringLiteral("FREIGHT"), lines); }

QVector<LedgerRow> legs(const Header &header, const QString &partyCode, const QString &purchaseCode,
                        const QVector<Line> &lines)
{
    QVector<LedgerRow> rows;
    if (lines.isEmpty())
        return rows;
    const Totals t = totals(header, lines);
    const VoucherKey key{header.voucherType, header.voucherNo, header.date};
    const QString purchaseDesc = purchaseNarration(lines);
    qint64 firstRecord = lines.first().recordNo;
    for (const Line &l : lines)
        firstRecord = qMin(firstRecord, l.recordNo);
    auto stamp = [&](LedgerRow r) {
        r.recordNo = firstRecord;
        r.careOf = header.careOf;
        return r;
    };
    if (!t.gross().isZero())
        rows << stamp(LedgerRow::credit(key, partyCode, header.partyName, t.gross(), purchaseDesc, header.billNo));
    if (!t.freight.isZero())
        rows << stamp(LedgerRow::credit(key, partyCode, header.partyName, t.freight, freightNarration(lines),
                                        header.billNo));
    if (!t.net().isZero())
        rows << stamp(LedgerRow::debit(key, purchaseCode, header.purchaseName, t.net(), purchaseDesc, header.billNo));
    return rows;
}

} // namespace PurchaseStock
