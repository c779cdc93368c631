#include "payroll/PayrollDemo.h"

#include "foundation/Lookups.h"
#include "accounts/AccountRules.h"
#include "foundation/DateRules.h"
#include "foundation/SessionConnection.h"
#include "payroll/EmployeeRegister.h"
#include "payroll/SalarySheet.h"
#include "vouchers/DemoGenerator.h"

#include <QSet>
#include <algorithm>

namespace {

const char *const kFirstNames[] = {"MUHAMMAD", "AHMED", "ALI", "HASSAN", "USMAN", "BILAL", "IMRAN", "KASHIF",
                                   "NADEEM", "ASIF", "TARIQ", "SAJID", "ZAHID", "FAISAL", "KAMRAN", "RASHID",
                                   "SHAHID", "WASEEM", "JAVED", "NAVEED"};
const char *const kLastNames[] = {"KHAN", "RAZA", "IQBAL", "AKHTAR", "HUSSAIN", "ASLAM", "BUTT", "SHEIKH",
                                  "QURESHI", "MALIK", "CHAUDHRY", "MIRZA", "ANSARI", "SIDDIQUI", "RAFIQ"};

const QString kGroup = QStringLiteral("16-10-");

void throwIfRefused(const Outcome &o)
{
    if (!o)
        throw DbError(QStringLiteral("The demonstration payroll was refused: %1").arg(o.message));
}

Outcome createHeading(DemoContext &c, const QString &code, const QString &name)
{
    if (Lookups::accountExists(c.db, code))
        return Outcome::passed();
    Accounts::NewAccount a;
    a.code = code;
    a.name = name;
    a.date = c.options.from;
    a.side = QString(); // a heading takes no opening row
    a.balance = Money();
    return Accounts::createAccount(c.db, a, c.options.userName, c.options.from);
}

} // namespace

namespace PayrollDemo {

void part(DemoContext &c)
{
    // The account rules write the ledger themselves: what the parts before
    // buffered goes first.
    c.flush();
    const int staff = int(std::clamp<qint64>(c.options.rows / 40000, 8, 60));

    throwIfRefused(createHeading(c, QStringLiteral("16-00-000"), QStringLiteral("STAFF")));
    throwIfRefused(createHeading(c, kGroup + QStringLiteral("000"), QStringLiteral("EMPLOYEES")));

    QSet<QString> names;
    for (const Row &r : c.db.select(QStringLiteral("SELECT PartyName FROM tblPartyInfo")))
        names.insert(r.text(0).trimmed());
    const QString last = Accounts::lastCodeUnder(c.db, kGroup);
    int next = last.isEmpty() ? 1 : last.right(3).toInt() + 1;

    for (int i = 0; i < staff && next <= 999; ++i, ++next) {
        QString name = QString::fromLatin1(kFirstNames[c.rng.bounded(int(std::size(kFirstNames)))]) + QLatin1Char(' ')
            + QString::fromLatin1(kLastNames[c.rng.bounded(int(std::size(kLastNames)))]);
        for (int n = 2; names.contains(name); ++n)
            name = name.section(QLatin1Char(' '), 0, 1) + QStringLiteral(" %1").arg(n);
        names.insert(name);

        Accounts::NewAccount a;
        a.code = kGroup + QStringLiteral("%1").arg(next, 3, 10, QLatin1Char('0'));
        a.name = name;
        a.description = QStringLiteral("EMPLOYEE");
        a.date = c.options.from;
        a.side = QStringLiteral("CR");
        a.balance = Money();
        throwIfRefused(Accounts::createAccount(c.db, a, c.options.userName, c.options.from));

        EmployeeRegister::Entry e;
        e.code = a.code;
        e.name = name;
        e.salary = QString::number(15000 + 500 * c.rng.bounded(0, 70));
        const QDate joined = c.options.from.addDays(-c.rng.bounded(30, 3000));
        e.inDate = DateRules::toMaskText(joined);
        e.incrementDate = c.rng.bounded(3) ? DateRules::toMaskText(joined.addYears(1)) : QString();
        // About one in eight has left by the year's start.
        e.status = c.rng.bounded(8) == 0 ? EmployeeRegister::kDeactive : EmployeeRegister::kActive;
        throwIfRefused(EmployeeRegister::add(c.db, e));
    }

    // A sheet at the end of each month that ends inside the year, a line per active
    // employee with some overtime, leave and advance.
    SalarySheet sheet(c.db, c.options.userName, c.options.to);
    const QueryResult active = sheet.activeEmployees();
    QDate month(c.options.from.year(), c.options.from.month(), 1);
    for (; month <= c.options.to; month = month.addMonths(1)) {
        const QDate date = month.addDays(month.daysInMonth() - 1);
        if (date < c.options.from || date > c.options.to)
            continue; // a month not ended inside the year has no sheet yet
        SalaryKey key;
        key.number = sheet.nextNumber();
        key.date = date;
        bool first = true;
        for (const Row &r : active) {
            const auto emp = sheet.employeeNamed(r.text(0));
            if (!emp)
                continue;
            SalaryLine l;
            l.employeeName = r.text(0).trimmed();
            l.employeeCode = emp->code;
            const Money time = Money::fromCents(c.rng.bounded(4) ? 100 * c.rng.bounded(0, 40) : 0);
            const Money leave = Money::fromCents(c.rng.bounded(5) == 0 ? 100 * c.rng.bounded(1, 4) : 0);
            const Money advance = c.rng.bounded(4) == 0 ? Money::fromUnits(500 * c.rng.bounded(1, 10)) : Money();
            l.figures = SalaryArithmetic::compute(emp->salary, time, leave, advance);
            throwIfRefused(sheet.addLine(key, l, first));
            first = false;
        }
    }
}

} // namespace PayrollDemo
