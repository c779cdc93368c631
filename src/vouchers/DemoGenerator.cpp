#include "vouchers/DemoGenerator.h"
#include "sales/JobPaperDemo.h"

#include "accounts/AccountDemo.h"
#include "foundation/Schema.h"
#include "foundation/SessionConnection.h"
#include "payroll/PayrollDemo.h"
#include "stock/PurchaseDemo.h"
#include "sales/InvoiceDemo.h"
#include "services/OtherServicesDemo.h"
#include "vouchers/BillWiseDemo.h"
#include "vouchers/PostDatedCheque.h"
#include "vouchers/VoucherPosting.h"
#include "stock/ConsumablesDemo.h"

#include <QElapsedTimer>
#include <QSet>
#include <algorithm>

namespace {

const char *const kPrefixes[] = {
    "CRESCENT", "AL NOOR", "STAR", "EVERGREEN", "PIONEER", "UNITED", "NATIONAL", "ROYAL", "GOLDEN", "SUNRISE",
    "PACIFIC", "ATLAS", "HORIZON", "EASTERN", "WESTERN", "NORTHERN", "METRO", "CITY", "PRIME", "CLASSIC",
    "MODERN", "GLOBAL", "SUPREME", "DIAMOND", "CROWN", "FALCON", "ORIENT", "VALLEY", "RIVERSIDE", "SILVER",
    "LIBERTY", "HERITAGE", "KINGSWAY", "MERIDIAN", "SAPPHIRE", "EMERALD", "CAPITAL", "IMPERIAL", "CENTURY", "SUMMIT"};
const char *const kTrades[] = {
    "TEXTILES", "PHARMA", "FOODS", "PACKAGES", "BEVERAGES", "COSMETICS", "CHEMICALS", "TRADERS", "GARMENTS",
    "ENTERPRISES", "INDUSTRIES", "BOOK DEPOT", "PUBLISHERS", "SCHOOL", "HOSPITAL", "MILLS", "DAIRIES", "BISCUITS",
    "SOAPS", "FOOTWEAR", "MOTORS", "ELECTRONICS", "SWEETS", "TOBACCO", "AGENCIES"};
const char *const kSuffixes[] = {"", " (PVT) LTD", " LTD", " AND CO"};
const char *const kSupplierTrades[] = {
    "PAPER HOUSE", "BOARD MILLS", "INK CORPORATION", "PLATE SUPPLIERS", "CHEMICAL STORE", "BLANKET HOUSE",
    "GUM AND GLUE", "LAMINATION WORKS", "DIE MAKERS", "BINDING WORKS", "PAPER MART", "CARTON SUPPLIERS"};
const char *const kBanks[] = {"CITY BANK", "NATIONAL BANK", "MERCHANTS BANK", "UNION BANK", "FARMERS BANK",
                              "TRADERS BANK"};
const char *const kAdminExpenses[] = {
    "ELECTRICITY", "TELEPHONE AND INTERNET", "RENT OF PREMISES", "STATIONERY", "POSTAGE AND COURIER",
    "TEA AND REFRESHMENT", "STAFF SALARIES", "CONVEYANCE", "ENTERTAINMENT", "BANK CHARGES", "LEGAL AND PROFESSIONAL",
    "INSURANCE", "REPAIR OF BUILDING", "NEWSPAPERS AND PERIODICALS", "CHARITY AND DONATION", "MISCELLANEOUS EXPENSES",
    "ADVERTISEMENT", "TRAVELLING", "COMPUTER EXPENSES", "SECURITY SERVICES"};
const char *const kProductionExpenses[] = {
    "MACHINE REPAIR", "FUEL AND POWER", "WAGES", "OVERTIME", "CUTTING CHARGES", "LAMINATION CHARGES",
    "DIE CUTTING CHARGES", "BINDING CHARGES", "CARRIAGE INWARD", "LOADING AND UNLOADING", "GENERATOR FUEL",
    "MACHINE SPARES", "OIL AND LUBRICANTS", "FACTORY RENT", "WASTE DISPOSAL", "STAFF UNIFORMS", "SAFETY EQUIPMENT",
    "PLATE PROCESSING", "SCANNING CHARGES", "DESIGNING OUTSOURCED"};
const char *const kIncomes[] = {"DESIGNING CHARGES", "SCRAP SALE", "PLATE MAKING CHARGES", "DISCOUNT RECEIVED"};

template <size_t N>
QString any(QRandomGenerator &rng, const char *const (&list)[N])
{
    return QString::fromLatin1(list[rng.bounded(int(N))]);
}

QString code(int a, int b, int c)
{
    return QStringLiteral("%1-%2-%3").arg(a, 2, 10, QLatin1Char('0')).arg(b, 2, 10, QLatin1Char('0')).arg(c, 3, 10, QLatin1Char('0'));
}

struct Heading
{
    const char *code;
    const char *name;
};

} // namespace

int DemoChart::accountCount() const
{
    return customers.size() + suppliers.size() + banks.size() + expenses.size() + incomes.size() + employees.size();
}

DemoContext::DemoContext(SessionConnection &database, const DemoOptions &o)
    : db(database), options(o), rng(o.seed), m_writer(database, o.userName, o.to), m_checks(database)
{
    m_checks.keepLookups();
}

void DemoContext::addRows(const QVector<LedgerRow> &rows)
{
    const Outcome checked = m_checks.check(rows);
    if (!checked)
        throw DbError(QStringLiteral("The demonstration data was refused: %1").arg(checked.message));
    m_buffer += rows;
    ledgerRows += rows.size();
    if (m_buffer.size() >= LedgerWriter::rowsPerStatement() * 8)
        flush();
}

void DemoContext::flush()
{
    m_writer.insertMany(m_buffer);
    m_buffer.clear();
}

const DemoAccount &DemoContext::pick(const QVector<DemoAccount> &from)
{
    // A few accounts carry most of the traffic, as in any office.
    const int n = from.size();
    const int i = rng.bounded(4) == 0 ? rng.bounded(n) : rng.bounded(qMax(1, n / 5 + 1));
    return from.at(qMin(i, n - 1));
}

Money DemoContext::amount(qint64 minUnits, qint64 maxUnits, bool withCents)
{
    // Mostly round figures, now and then with cents; small amounts more
    // often than large ones.
    const double u = rng.generateDouble();
    const qint64 units = minUnits + qint64(double(maxUnits - minUnits) * u * u * u);
    qint64 cents = units * 100;
    if (units >= 1000 && rng.bounded(3) != 0)
        cents = (units / 50) * 5000;
    else if (withCents && rng.bounded(4) == 0)
        cents += rng.bounded(100);
    return Money::fromCents(qMax<qint64>(cents, 100));
}

QDate DemoContext::dateBetween(const QDate &a, const QDate &b)
{
    const qint64 span = qMax<qint64>(0, a.daysTo(b));
    return a.addDays(rng.bounded(int(span + 1)));
}

DemoGenerator::DemoGenerator(SessionConnection &db, DemoOptions options) : m_db(db), m_options(std::move(options))
{
    if (!m_options.to.isValid())
        m_options.to = QDate::currentDate();
    if (!m_options.from.isValid())
        m_options.from = m_options.to.addDays(-364);
}

void DemoGenerator::addPart(const QString &name, DemoPart part)
{
    m_parts.append({name, std::move(part)});
}

void DemoGenerator::addStandardParts()
{
    addPart(QStringLiteral("chart"), &DemoGenerator::chartPart);
    addPart(QStringLiteral("opening balances"), &DemoGenerator::openingBalancePart);
    addPart(QStringLiteral("post-dated cheques"), &DemoGenerator::postDatedChequePart);
    addPart(QStringLiteral("other services"), &otherServicesDemoPart);
    addPart(QStringLiteral("payroll"), &PayrollDemo::part);
    addPart(QStringLiteral("consumables"), &consumablesDemoPart);
    addPart(QStringLiteral("purchases"), &purchaseDemoPart);
    addPart(QStringLiteral("job paperwork"), &jobPaperDemoPart);
    addPart(QStringLiteral("invoices"), &InvoiceDemo::invoicePart);
    addPart(QStringLiteral("account maintenance"), &AccountDemo::maintenancePart);
    addPart(QStringLiteral("vouchers"), &DemoGenerator::voucherPart);
    addPart(QStringLiteral("bill-wise payment"), &billWiseDemoPart);
}

DemoSummary DemoGenerator::standardYear(SessionConnection &db, const DemoOptions &options)
{
    DemoGenerator g(db, options);
    g.addStandardParts();
    return g.run();
}

DemoSummary DemoGenerator::run()
{
    QElapsedTimer clock;
    clock.start();
    DemoContext c(m_db, m_options);
    Transaction tx(m_db);
    for (const auto &part : m_parts) {
        part.second(c);
        c.flush();
    }
    tx.commit();
    // A year filled at once: the planner needs to know its new size.
    Schema::refreshStatistics(m_db);
    DemoSummary s;
    s.accounts = c.chart.accountCount();
    s.vouchers = c.vouchers;
    s.ledgerRows = c.ledgerRows;
    s.milliseconds = clock.elapsed();
    return s;
}

// ------------------------------------------------------------ chart

void DemoGenerator::chartPart(DemoContext &c)
{
    const int total = int(std::clamp<qint64>(c.options.rows / 300, 40, 2000));
    const int nBanks = qBound(2, total / 60, 6);
    const int nExpenses = qBound(10, total / 25, 40);
    const int nIncomes = 4;
    const int nSuppliers = qMax(6, (total - nBanks - nExpenses - nIncomes) / 4);
    const int nCustomers = qMax(20, total - nBanks - nExpenses - nIncomes - nSuppliers);

    QSet<QString> names;
    for (const Row &r : c.db.select(QStringLiteral("SELECT PartyName FROM tblPartyInfo")))
        names.insert(r.text(0).trimmed());
    auto unique = [&](QString name) {
        if (names.contains(name)) {
            int i = 2;
            while (names.contains(name + QStringLiteral(" %1").arg(i)))
                ++i;
            name += QStringLiteral(" %1").arg(i);
        }
        names.insert(name);
        return name;
    };

    QVector<Heading> headings = {{"14-00-000", "CREDITORS"},
                                 {"14-10-000", "SUPPLIERS AND PURCHASERS"},
                                 {"17-00-000", "DEBTORS"},
                                 {"17-10-000", "CUSTOMERS LOCAL"},
                                 {"18-00-000", "DEBTORS OUT OF CITY"},
                                 {"19-20-000", "BANKS"},
                                 {"21-00-000", "EXPENSES"},
                                 {"21-10-000", "ADMINISTRATIVE EXPENSES"},
                                 {"21-20-000", "PRODUCTION EXPENSES"},
                                 // Purchase accounts and the closing stock account.
                                 {"20-11-000", "PURCHASES"}, {"20-11-001", "PAPER AND BOARD PURCHASES"},
                                 {"20-11-002", "INK AND CHEMICAL PURCHASES"}, {"20-11-003", "PLATES AND FILM PURCHASES"},
                                 {"20-12-000", "STOCK"}, {"20-12-001", "CLOSING STOCK"}};
    QVector<DemoAccount> all;
    for (const Heading &h : headings) {
        const QString hc = QString::fromLatin1(h.code);
        if (!c.db.scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo WHERE PartyCode = ?"), {hc}).toLongLong())
            all.append({hc, unique(QString::fromLatin1(h.name))});
    }
    // Customers: 17-10-001.. then out of city 18-10-.., 18-20-.. (999 a group).
    for (int i = 0; i < nCustomers; ++i) {
        QString name = any(c.rng, kPrefixes) + QLatin1Char(' ') + any(c.rng, kTrades) + any(c.rng, kSuffixes);
        QString cc;
        if (i < 999) {
            cc = code(17, 10, i + 1);
        } else {
            const int j = i - 999;
            const int group = 10 + (j / 999) * 10;
            if (j % 999 == 0)
                all.append({code(18, group, 0), unique(QStringLiteral("CUSTOMERS OUT OF CITY %1").arg(group / 10))});
            cc = code(18, group, j % 999 + 1);
        }
        DemoAccount a{cc, unique(name)};
        c.chart.customers << a;
        all << a;
    }
    for (int i = 0; i < nSuppliers; ++i) {
        const int group = 10 + (i / 999) * 10;
        if (i > 0 && i % 999 == 0)
            all.append({code(14, group, 0), unique(QStringLiteral("SUPPLIERS %1").arg(group / 10))});
        DemoAccount a{code(14, group, i % 999 + 1), unique(any(c.rng, kPrefixes) + QLatin1Char(' ') + any(c.rng, kSupplierTrades))};
        c.chart.suppliers << a;
        all << a;
    }
    for (int i = 0; i < nBanks; ++i) {
        DemoAccount a{code(19, 20, i + 1), unique(QString::fromLatin1(kBanks[i]))};
        c.chart.banks << a;
        all << a;
    }
    for (int i = 0; i < nExpenses; ++i) {
        const bool admin = i % 2 == 0;
        const int k = i / 2;
        const QString name = admin ? QString::fromLatin1(kAdminExpenses[k % 20]) : QString::fromLatin1(kProductionExpenses[k % 20]);
        DemoAccount a{code(21, admin ? 10 : 20, k + 1), unique(name)};
        c.chart.expenses << a;
        all << a;
    }
    for (int i = 0; i < nIncomes; ++i) {
        DemoAccount a{code(20, 10, 3 + i), unique(QString::fromLatin1(kIncomes[i]))};
        c.chart.incomes << a;
        all << a;
    }

    // Employees: accounts under 16-10-000, given the press's consumables.
    {
        static const char *const kEmployees[] = {"ASLAM PRESSMAN", "BASHIR PLATE MAKER", "DANIEL BINDER",
                                                 "FARHAN MACHINE OPERATOR", "GEORGE CUTTER", "HAMID INK MIXER",
                                                 "IMRAN PRESS HELPER", "JOSEPH DESIGNER"};
        if (!c.db.scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo WHERE PartyCode = '16-10-000'")).toLongLong())
            all.append({code(16, 10, 0), unique(QStringLiteral("EMPLOYEES"))});
        for (int i = 0; i < qBound(4, total / 40, 8); ++i) {
            DemoAccount a{code(16, 10, i + 1), unique(QString::fromLatin1(kEmployees[i]))};
            c.chart.employees << a;
            all << a;
        }
    }

    const QDate entry = c.options.from;
    const QString head = QStringLiteral(
        "INSERT INTO tblPartyInfo (PartyCode, PartyName, PartyAddress, PartyPhone, PartyFax, PartyEmail, PartyDesc, "
        "PartySaleTaxNo, PartyNTN, CareOf, DueDays, UserName, EntryDate) VALUES ");
    const int chunk = 200;
    for (int start = 0; start < all.size(); start += chunk) {
        const int n = qMin(chunk, int(all.size()) - start);
        QStringList places;
        QVariantList p;
        for (int i = 0; i < n; ++i) {
            const DemoAccount &a = all.at(start + i);
            places << QStringLiteral("(?, ?, ?, ?, '', '', '', '', '', '', ?, ?, ?)");
            const bool party = a.code.startsWith(QLatin1String("17")) || a.code.startsWith(QLatin1String("18"))
                || a.code.startsWith(QLatin1String("14"));
            p << a.code << a.name
              << (party ? QStringLiteral("PLOT %1 INDUSTRIAL AREA").arg(c.rng.bounded(1, 400)) : QString())
              << (party ? QStringLiteral("0%1").arg(c.rng.bounded(300000000, 399999999)) : QString())
              << (party ? 30 : 0) << c.options.userName << entry;
        }
        c.db.execute(head + places.join(QStringLiteral(", ")), p);
    }
}

// ------------------------------------------------------------ opening balances

void DemoGenerator::openingBalancePart(DemoContext &c)
{
    const VoucherKey key{QStringLiteral("JV"), 0, c.options.from};
    const QString desc = QStringLiteral("OPENING BALANCE");
    QVector<LedgerRow> rows;
    Money net;
    auto open = [&](const DemoAccount &a, Money amount, bool debit) {
        rows << (debit ? LedgerRow::debit(key, a.code, a.name, amount, desc)
                       : LedgerRow::credit(key, a.code, a.name, amount, desc));
        net += debit ? amount : -amount;
    };
    for (const DemoAccount &a : c.chart.customers)
        open(a, c.rng.bounded(3) ? c.amount(1000, 250000) : Money(), true);
    for (const DemoAccount &a : c.chart.suppliers)
        open(a, c.rng.bounded(3) ? c.amount(1000, 150000) : Money(), false);
    for (const DemoAccount &a : c.chart.banks)
        open(a, c.amount(100000, 2000000), true);
    for (const DemoAccount &a : c.chart.expenses)
        open(a, Money(), true);
    for (const DemoAccount &a : c.chart.incomes)
        open(a, Money(), false);
    open({Ledger::kCashCode, Ledger::kCashName}, c.amount(50000, 150000), true);
    // The capital stands against all of it, so the year opens balanced.
    const DemoAccount capital{QStringLiteral("20-01-001"), QStringLiteral("PROFIT AND LOSS ACCOUNT")};
    open(capital, net.abs(), net.isNegative());
    c.addRows(rows);
}

// ------------------------------------------------------------ post-dated cheques

void DemoGenerator::postDatedChequePart(DemoContext &c)
{
    if (c.chart.customers.isEmpty() || c.chart.suppliers.isEmpty() || c.chart.banks.isEmpty())
        return;
    // Cheques go through the rules of the cheque screens and the due list:
    // some still post dated (overdue or ahead), most cleared by their bank
    // voucher, a few of those bounced.
    c.flush();
    const int n = int(std::clamp<qint64>(c.options.rows / 5000, 12, 200));
    const QStringList purposes = {QStringLiteral("AGAINST BILL # %1"), QStringLiteral("ADVANCE FOR JOB # %1"),
                                  QStringLiteral("PART PAYMENT BILL # %1")};
    for (int i = 0; i < n; ++i) {
        const bool issued = i % 4 == 3;
        const DemoAccount &party = issued ? c.pick(c.chart.suppliers) : c.pick(c.chart.customers);
        const DemoAccount &bank = c.chart.banks.at(c.rng.bounded(int(c.chart.banks.size())));
        PostDatedChequeEntry e;
        e.vDate = c.dateBetween(c.options.from, c.options.to);
        e.chequeDate = e.vDate.addDays(c.rng.bounded(7, 60));
        e.partyCode = party.code;
        e.partyName = party.name;
        e.bankCode = bank.code;
        e.bankName = bank.name;
        e.kind = issued ? ChequeStatus::kIssued : ChequeStatus::kReceived;
        e.chequeNo = QString::number(c.rng.bounded(100000, 999999));
        e.description = QStringLiteral("CHQ # %1 ").arg(e.chequeNo)
            + purposes.at(c.rng.bounded(int(purposes.size()))).arg(c.rng.bounded(1000, 9999));
        e.amount = c.amount(5000, 200000);
        PostDatedCheques cheques(c.db, c.options.userName, e.vDate);
        e.voucherNo = cheques.nextNumber();
        const Outcome saved = cheques.save(e);
        if (!saved)
            continue; // a cheque number met twice at a bank
        // Cheques whose date has come are mostly cleared; every fifth of
        // those comes back unpaid a few days later.
        if (e.chequeDate > c.options.to || c.rng.bounded(5) == 0)
            continue;
        Voucher v;
        if (!cheques.clearingVoucher(saved.number, e.chequeDate, &v))
            continue;
        const Outcome cleared = VoucherPosting(c.db, c.options.userName, e.chequeDate).post(v, NumberPolicy::Proposed);
        if (!cleared)
            continue;
        c.ledgerRows += cleared.rowsWritten;
        ++c.vouchers;
        const QDate back = e.chequeDate.addDays(3);
        if (back > c.options.to || c.rng.bounded(5) != 0)
            continue;
        const Outcome bounced = cheques.bounce(saved.number, back);
        if (bounced) {
            c.ledgerRows += bounced.rowsWritten;
            ++c.vouchers;
        }
    }
}

// ------------------------------------------------------------ vouchers

void DemoGenerator::voucherPart(DemoContext &c)
{
    const DemoChart &ch = c.chart;
    if (ch.customers.isEmpty() || ch.suppliers.isEmpty() || ch.banks.isEmpty() || ch.expenses.isEmpty())
        return;
    const QStringList types = {QStringLiteral("CP"), QStringLiteral("CR"), QStringLiteral("BP"), QStringLiteral("BR"),
                               QStringLiteral("JV"), QStringLiteral("BC")};
    QHash<QString, qint64> next;
    for (const QString &t : types)
        next.insert(t, Ledger::nextVoucherNo(c.db, t));

    const qint64 startRows = c.ledgerRows;
    const qint64 want = qMax<qint64>(c.rowsLeft(), 0);
    const qint64 days = qMax<qint64>(1, c.options.from.daysTo(c.options.to));

    auto lineOf = [](const DemoAccount &a, Money amount, bool debit, const QString &desc, const QString &inv = QString()) {
        VoucherLine l;
        l.state = LineState::Insert;
        l.partyCode = a.code;
        l.partyName = a.name;
        l.description = desc;
        l.invoiceNo = inv;
        (debit ? l.debit : l.credit) = amount;
        return l;
    };

    while (c.ledgerRows - startRows < want) {
        const qint64 done = c.ledgerRows - startRows;
        QDate date = c.options.from.addDays(days * done / qMax<qint64>(1, want));
        if (date.dayOfWeek() == 7) // Sundays are quiet: move to Monday
            date = qMin(date.addDays(1), c.options.to);
        Voucher v;
        const int roll = c.rng.bounded(100);
        const QString bill = QString::number(c.rng.bounded(1000, 9999));
        if (roll < 25) {
            v.key.type = QStringLiteral("CR");
            const int n = c.rng.bounded(5) == 0 ? 2 : 1;
            for (int i = 0; i < n; ++i)
                v.lines << lineOf(c.pick(ch.customers), c.amount(500, 120000), false,
                                  QStringLiteral("CASH RECEIVED AGAINST BILL # %1").arg(bill), bill);
        } else if (roll < 50) {
            v.key.type = QStringLiteral("CP");
            const int n = 1 + c.rng.bounded(3);
            for (int i = 0; i < n; ++i) {
                const DemoAccount &e = c.pick(ch.expenses);
                v.lines << lineOf(e, c.amount(100, 25000), true, QStringLiteral("PAID FOR %1").arg(e.name));
            }
            if (c.rng.bounded(5) == 0) {
                const DemoAccount &s = c.pick(ch.suppliers);
                v.lines << lineOf(s, c.amount(1000, 60000), true, QStringLiteral("CASH PAID TO %1").arg(s.name));
            }
        } else if (roll < 65) {
            v.key.type = QStringLiteral("BR");
            const DemoAccount &bank = ch.banks.at(c.rng.bounded(int(ch.banks.size())));
            const QString chq = QString::number(c.rng.bounded(100000, 999999));
            Money total;
            const int n = c.rng.bounded(4) == 0 ? 2 : 1;
            for (int i = 0; i < n; ++i) {
                const Money a = c.amount(5000, 900000);
                total += a;
                v.lines << lineOf(c.pick(ch.customers), a, false, QStringLiteral("CHQ # %1 RECEIVED").arg(chq), bill);
            }
            v.lines << lineOf(bank, total, true, QStringLiteral("CHQ # %1 DEPOSITED").arg(chq));
        } else if (roll < 80) {
            v.key.type = QStringLiteral("BP");
            const DemoAccount &bank = ch.banks.at(c.rng.bounded(int(ch.banks.size())));
            const QString chq = QString::number(c.rng.bounded(100000, 999999));
            const bool supplier = c.rng.bounded(4) != 0;
            const DemoAccount &to = supplier ? c.pick(ch.suppliers) : c.pick(ch.expenses);
            const Money a = supplier ? c.amount(5000, 700000) : c.amount(1000, 90000);
            v.lines << lineOf(to, a, true, QStringLiteral("PAID VIDE CHQ # %1").arg(chq), bill);
            v.lines << lineOf(bank, a, false, QStringLiteral("CHQ # %1 ISSUED").arg(chq));
        } else if (roll < 97) {
            v.key.type = QStringLiteral("JV");
            const int kind = c.rng.bounded(10);
            if (kind < 5) {
                const DemoAccount &inc = ch.incomes.at(c.rng.bounded(int(ch.incomes.size())));
                const Money a = c.amount(500, 40000);
                v.lines << lineOf(c.pick(ch.customers), a, true, QStringLiteral("%1 BILL # %2").arg(inc.name, bill), bill);
                v.lines << lineOf(inc, a, false, QStringLiteral("BILL # %1").arg(bill), bill);
            } else if (kind < 8) {
                const DemoAccount &e = c.pick(ch.expenses);
                const Money a = c.amount(1000, 80000);
                v.lines << lineOf(e, a, true, QStringLiteral("%1 PAYABLE").arg(e.name));
                v.lines << lineOf(c.pick(ch.suppliers), a, false, QStringLiteral("BILL # %1 RECEIVED").arg(bill), bill);
            } else if (ch.banks.size() > 1) {
                const int a = c.rng.bounded(int(ch.banks.size()));
                const int b = (a + 1 + c.rng.bounded(int(ch.banks.size()) - 1)) % ch.banks.size();
                const Money amt = c.amount(10000, 500000, false);
                v.lines << lineOf(ch.banks.at(a), amt, true, QStringLiteral("FUNDS TRANSFER"));
                v.lines << lineOf(ch.banks.at(b), amt, false, QStringLiteral("FUNDS TRANSFER"));
            } else {
                const Money amt = c.amount(100, 5000);
                v.lines << lineOf(c.pick(ch.customers), amt, false, QStringLiteral("DISCOUNT ALLOWED"));
                v.lines << lineOf(c.pick(ch.expenses), amt, true, QStringLiteral("DISCOUNT ALLOWED"));
            }
        } else {
            v.key.type = QStringLiteral("BC");
            const DemoAccount &bank = ch.banks.at(c.rng.bounded(int(ch.banks.size())));
            const QString chq = QString::number(c.rng.bounded(100000, 999999));
            const Money a = c.amount(5000, 300000);
            v.lines << lineOf(c.pick(ch.customers), a, true, QStringLiteral("CHQ # %1 BOUNCED").arg(chq));
            v.lines << lineOf(bank, a, false, QStringLiteral("CHQ # %1 RETURNED UNPAID").arg(chq));
        }
        v.key.date = date;
        if (VoucherRules::check(v))
            continue; // the generator only writes vouchers the screen would save
        v.key.number = next[v.key.type]++;
        c.addRows(VoucherRules::postingRows(v));
        ++c.vouchers;
    }
}
