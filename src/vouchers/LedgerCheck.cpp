#include "vouchers/LedgerCheck.h"

#include "foundation/Money.h"
#include "foundation/Schema.h"
#include "foundation/SessionConnection.h"

#include <QMap>
#include <array>

namespace LedgerCheck {

namespace {

using Figures = std::array<qint64, 4>; // debit, credit and balance cents, rows
using Key = QPair<QString, int>;      // code, year * 100 + month (-1: the whole year)

void add(QMap<Key, Figures> &into, const Key &key, const Row &r, int from)
{
    Figures &f = into[key];
    for (int i = 0; i < 4; ++i)
        f[i] += r.integer(from + i);
}

QString describe(const Figures &f)
{
    return QStringLiteral("%1 DR / %2 CR / %3 in %4 rows")
        .arg(Money::fromCents(f[0]).toPlainString(), Money::fromCents(f[1]).toPlainString(),
             Money::fromCents(f[2]).toPlainString())
        .arg(f[3]);
}

// Rows of kept tables that count nothing stand for no rows at all.
void dropEmpty(QMap<Key, Figures> &m)
{
    for (auto it = m.begin(); it != m.end();) {
        if (it.value() == Figures{0, 0, 0, 0})
            it = m.erase(it);
        else
            ++it;
    }
}

} // namespace

bool keptBalancesAgree(SessionConnection &db, QStringList *differences)
{
    QMap<Key, Figures> ledger, kept;
    for (const Row &r : db.select(Schema::ledgerMonthTotalsSql())) {
        const QString code = r.text(0).trimmed();
        add(ledger, {code, int(r.integer(1))}, r, 2);
        add(ledger, {code, -1}, r, 2);
    }
    for (const Row &r : db.select(QStringLiteral("SELECT PartyCode, YearMonth, DebitCents, CreditCents, BalanceCents, "
                                                 "RowCount FROM tblAccountMonthBalance")))
        add(kept, {r.text(0).trimmed(), int(r.integer(1))}, r, 2);
    for (const Row &r : db.select(QStringLiteral("SELECT PartyCode, DebitCents, CreditCents, BalanceCents, RowCount "
                                                 "FROM tblAccountBalance")))
        add(kept, {r.text(0).trimmed(), -1}, r, 1);
    dropEmpty(ledger);
    dropEmpty(kept);
    if (ledger == kept)
        return true;
    if (differences) {
        QMap<Key, Figures> all = ledger;
        for (auto it = kept.cbegin(); it != kept.cend(); ++it)
            all.insert(it.key(), it.value());
        for (auto it = all.cbegin(); it != all.cend(); ++it) {
            const Figures l = ledger.value(it.key(), Figures{0, 0, 0, 0});
            const Figures k = kept.value(it.key(), Figures{0, 0, 0, 0});
            if (l == k)
                continue;
            const int ym = it.key().second;
            const QString when = ym < 0 ? QStringLiteral("all")
                                        : QStringLiteral("%1-%2").arg(ym / 100, 4, 10, QLatin1Char('0'))
                                              .arg(ym % 100, 2, 10, QLatin1Char('0'));
            *differences << QStringLiteral("%1 %2: kept %3, ledger %4").arg(it.key().first, when, describe(k), describe(l));
        }
    }
    return false;
}

} // namespace LedgerCheck
