#include "accounts/AccountDemo.h"

#include "foundation/Lookups.h"
#include "accounts/AccountModification.h"
#include "accounts/AccountRules.h"
#include "accounts/OpeningBalance.h"
#include "foundation/SessionConnection.h"
#include "vouchers/DemoGenerator.h"

#include <algorithm>

namespace AccountDemo {

namespace {

// The next free code under a prefix ("18-90-"), from serial 001.
QString nextCode(SessionConnection &db, const QString &prefix)
{
    const QString last = Accounts::lastCodeUnder(db, prefix);
    const int serial = last.isEmpty() ? 1 : last.right(3).toInt() + 1;
    return prefix + QStringLiteral("%1").arg(serial, 3, 10, QLatin1Char('0'));
}

// An account brought in without an opening row, then opened on its side.
bool bringIn(DemoContext &c, const QString &code, const QString &name, const QString &side, Money amount,
             const QDate &date)
{
    Accounts::NewAccount a;
    a.code = code;
    a.name = name;
    a.saleTaxNo = QStringLiteral("__-__-____-___-__");
    a.ntn = QStringLiteral("_______-_");
    a.date = date;
    a.side = QString(); // no opening row: it comes below
    a.balance = Money();
    if (!Accounts::createAccount(c.db, a, c.options.userName, date))
        return false;
    OpeningBalance::Entry e;
    e.code = code;
    e.date = date;
    e.side = side;
    e.amount = amount;
    return bool(OpeningBalance::open(c.db, e, c.options.userName, date));
}

} // namespace

void maintenancePart(DemoContext &c)
{
    if (c.chart.customers.isEmpty())
        return;
    c.flush();
    const QDate opening = c.options.from;

    // Two accounts brought in from elsewhere, balanced against each other:
    // both or neither, under headings of their own.
    const Money amount = c.amount(5000, 90000);
    for (const auto &heading : {qMakePair(QStringLiteral("18-90-000"), QStringLiteral("IMPORTED CUSTOMERS")),
                                qMakePair(QStringLiteral("14-90-000"), QStringLiteral("IMPORTED SUPPLIERS"))}) {
        if (Lookups::accountExists(c.db, heading.first))
            continue;
        Accounts::NewAccount h;
        h.code = heading.first;
        h.name = heading.second;
        h.saleTaxNo = QStringLiteral("__-__-____-___-__");
        h.ntn = QStringLiteral("_______-_");
        h.date = opening;
        Accounts::createAccount(c.db, h, c.options.userName, opening);
    }
    const DemoAccount customer{nextCode(c.db, QStringLiteral("18-90-")), QStringLiteral("IMPORTED CUSTOMER")};
    const DemoAccount supplier{nextCode(c.db, QStringLiteral("14-90-")), QStringLiteral("IMPORTED SUPPLIER")};
    Transaction pair(c.db);
    if (bringIn(c, customer.code, customer.name, QStringLiteral("DR"), amount, opening)
        && bringIn(c, supplier.code, supplier.name, QStringLiteral("CR"), amount, opening)) {
        pair.commit();
        c.chart.customers << customer;
        c.chart.suppliers << supplier;
        c.ledgerRows += 2;
    }

    // A few customers become limited companies; the first also moves to
    // the code range of the imported accounts.
    const int renames = int(std::clamp<qint64>(c.options.rows / 100000, 1, 10));
    for (int i = 0; i < renames; ++i) {
        const int at = c.rng.bounded(int(c.chart.customers.size()));
        DemoAccount &who = c.chart.customers[at];
        if (who.name.endsWith(QLatin1String(" LTD")))
            continue;
        auto change = AccountModification::load(c.db, who.code);
        if (!change || !change->balance)
            continue;
        change->name = who.name + QStringLiteral(" LTD");
        if (i == 0)
            change->code = nextCode(c.db, QStringLiteral("18-90-"));
        if (AccountModification::save(c.db, *change, c.options.userName, c.options.to))
            who = {change->code, change->name.trimmed()};
    }
}

} // namespace AccountDemo
