#include "stock/ConsumablesDemo.h"

#include "foundation/DateRules.h"
#include "foundation/SessionConnection.h"
#include "stock/Consumables.h"
#include "stock/EmployeeStock.h"
#include "vouchers/DemoGenerator.h"

#include <QHash>
#include <algorithm>

namespace {

using Consumables::Item;

struct Line
{
    Item item;
    const char *brand;
    QVector<const char *> types;
    qint64 minPrice;   // units of money a unit
    qint64 maxPrice;
    qint64 maxUnits;   // of one receipt
};

const QVector<Line> &catalogue()
{
    static const QVector<Line> all = {
        {Item::Ink, "ORBIT", {"CYAN", "MAGENTA", "YELLOW", "BLACK"}, 900, 1600, 40},
        {Item::Ink, "KESTREL", {"CYAN", "MAGENTA", "YELLOW", "BLACK", "GOLD"}, 1100, 2400, 30},
        {Item::Plate, "NOVAPLATE", {"CTP 745 X 605", "CTP 510 X 400"}, 350, 700, 200},
        {Item::Plate, "LITHOSTAR", {"PS 745 X 605", "PS 1030 X 790"}, 280, 900, 150},
        {Item::Blanket, "DURAFLEX", {"1.95 MM", "1.70 MM"}, 4500, 9000, 10},
        {Item::Developer, "CLEARDEV", {"CTP DEVELOPER", "PS DEVELOPER"}, 2500, 6000, 20},
    };
    return all;
}

QString keyOf(const Line &l, const QString &type)
{
    return Consumables::itemWord(l.item) + QLatin1Char('|') + QString::fromLatin1(l.brand) + QLatin1Char('|') + type;
}

void mustPass(const Outcome &o, const QString &what)
{
    if (!o.ok)
        throw DbError(QStringLiteral("The demonstration %1 was refused: %2").arg(what, o.message));
}

// Employee accounts: the chart's, else those of the employee register.
QVector<DemoAccount> employees(DemoContext &c)
{
    if (!c.chart.employees.isEmpty())
        return c.chart.employees;
    QVector<DemoAccount> out;
    for (const Row &r : c.db.select(QStringLiteral("SELECT p.PartyCode, p.PartyName FROM tblPartyInfo p "
                                                   "WHERE p.PartyCode IN (SELECT EmployeeCode FROM tblEmployeeInfo) "
                                                   "ORDER BY p.PartyCode")))
        out.append({r.text(0).trimmed(), r.text(1).trimmed()});
    return out;
}

// An employee's issue not yet used up, in the order its use is taken.
struct Held
{
    QDate date;
    qint64 srNo = 0;
    qint64 left = 0;
    bool operator<(const Held &o) const { return date != o.date ? date < o.date : srNo < o.srNo; }
};

} // namespace

void consumablesDemoPart(DemoContext &c)
{
    if (c.chart.suppliers.isEmpty())
        return;
    const QVector<DemoAccount> staff = employees(c);
    const int receiptCount = int(std::clamp<qint64>(c.options.rows / 250, 24, 3000));

    QVector<QDate> dates;
    for (int i = 0; i < receiptCount; ++i)
        dates << c.dateBetween(c.options.from, c.options.to);
    std::sort(dates.begin(), dates.end());

    QHash<QString, qint64> inHand;
    QHash<QString, QVector<Held>> held; // key + employee: the employee's rows, oldest first
    for (const QDate &date : dates) {
        const Line &line = catalogue().at(c.rng.bounded(int(catalogue().size())));
        const QString type = QString::fromLatin1(line.types.at(c.rng.bounded(int(line.types.size()))));
        Consumables::Receipt r;
        r.item = line.item;
        r.brand = QString::fromLatin1(line.brand);
        r.type = type;
        const DemoAccount &supplier = c.pick(c.chart.suppliers);
        r.partyCode = supplier.code;
        r.partyName = supplier.name;
        r.units = 1 + c.rng.bounded(int(line.maxUnits));
        r.unitPrice = Money::fromCents((line.minPrice + c.rng.bounded(int(line.maxPrice - line.minPrice + 1))) * 100
                                       + (c.rng.bounded(4) == 0 ? c.rng.bounded(100) : 0));
        r.date = date;
        mustPass(Consumables::addReceipt(c.db, r), QStringLiteral("receipt"));
        const QString key = keyOf(line, type);
        inHand[key] += r.units;

        if (staff.isEmpty())
            continue;
        // A few issues follow each receipt, now and then all that is left.
        const int issues = c.rng.bounded(3);
        for (int k = 0; k < issues && inHand.value(key) > 0; ++k) {
            const DemoAccount &who = staff.at(c.rng.bounded(int(staff.size())));
            const qint64 left = inHand.value(key);
            const qint64 units = c.rng.bounded(6) == 0 ? left : 1 + c.rng.bounded(int(qMin<qint64>(left, line.maxUnits / 2 + 1)));
            const QDate on = std::min(c.options.to, date.addDays(c.rng.bounded(15)));
            EmployeeStock::IssueRequest req;
            req.item = line.item;
            req.brand = r.brand;
            req.type = type;
            req.employeeName = who.name;
            req.employeeCode = who.code;
            req.unitsText = QString::number(units);
            req.dateText = DateRules::toMaskText(on);
            const Outcome issued = EmployeeStock::issue(c.db, req);
            mustPass(issued, QStringLiteral("issue"));
            inHand[key] -= units;
            QVector<Held> &rows = held[key + QLatin1Char('|') + who.code];
            rows.append({on, issued.number, units});
            std::sort(rows.begin(), rows.end());

            // The employee uses up part of the first of those units.
            if (c.rng.bounded(2) == 0 && !rows.isEmpty()) {
                const qint64 used = 1 + c.rng.bounded(int(rows.first().left));
                EmployeeStock::FinishRequest f;
                f.item = line.item;
                f.brand = r.brand;
                f.type = type;
                f.employeeName = who.name;
                f.employeeCode = who.code;
                f.unitsText = QString::number(used);
                mustPass(EmployeeStock::finish(c.db, f), QStringLiteral("use of stock"));
                rows.first().left -= used;
                if (rows.first().left == 0)
                    rows.removeFirst();
            }
        }
    }
}
