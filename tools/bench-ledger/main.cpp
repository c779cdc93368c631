// bench-ledger: times the ledger, the ageing and the statements on a large
// account year, each beside the bare aggregate over the same rows.
//
//   bench-ledger [--profile NAME] [--rows 1000000] [--accounts 2000]
//                [--year NAME] [--keep] [--explain]
//
// Without --year a new year is made, filled with balanced vouchers of every
// type and removed at the end (unless --keep). With --year an existing year
// is used as it is.
#include "foundation/AccountYear.h"
#include "foundation/CommandLine.h"
#include "foundation/Money.h"
#include "foundation/SessionConnection.h"
#include "vouchers/PartyAgeing.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTextStream>

#include <algorithm>
#include <functional>

namespace {

QTextStream &out()
{
    static QTextStream s(stdout);
    return s;
}

struct Account
{
    QString code;
    QString name;
};

QString code(int a, int b, int c)
{
    return QStringLiteral("%1-%2-%3").arg(a, 2, 10, QLatin1Char('0')).arg(b, 2, 10, QLatin1Char('0')).arg(c, 3, 10, QLatin1Char('0'));
}

// Accounts in runs of 999 under group headings: customers, purchasers,
// expenses, assets, liabilities, purchase accounts.
QVector<Account> makeAccounts(SessionConnection &db, int count, QVector<Account> &customers,
                              QVector<Account> &suppliers, QVector<Account> &expenses, QVector<Account> &others)
{
    struct Range { int head; int group; const char *name; QVector<Account> *into; int share; };
    Range ranges[] = {
        {17, 10, "CUSTOMER", &customers, 40}, {14, 10, "SUPPLIER", &suppliers, 20},
        {21, 10, "EXPENSE", &expenses, 20},   {11, 10, "ASSET", &others, 10},
        {12, 10, "LIABILITY", &others, 5},    {20, 2, "PURCHASE", &expenses, 5},
    };
    QVector<Account> all;
    Transaction tx(db);
    const QDate today = QDate::currentDate();
    auto insert = [&](const QString &c, const QString &n) {
        if (db.scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo WHERE PartyCode = ?"), {c}).toLongLong())
            return;
        db.execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName, CareOf, DueDays, UserName, EntryDate) "
                                  "VALUES (?, ?, '', 0, 'BENCH', ?)"),
                   {c, n, today});
    };
    for (const Range &r : ranges) {
        const int n = std::max(1, count * r.share / 100);
        insert(code(r.head, 0, 0), QStringLiteral("%1S").arg(QLatin1String(r.name)));
        for (int i = 0; i < n; ++i) {
            const int group = r.group + i / 999;
            const int no = i % 999 + 1;
            if (no == 1)
                insert(code(r.head, group, 0), QStringLiteral("%1 GROUP %2").arg(QLatin1String(r.name)).arg(group));
            Account a{code(r.head, group, no), QStringLiteral("%1 %2").arg(QLatin1String(r.name)).arg(i + 1)};
            insert(a.code, a.name);
            r.into->append(a);
            all.append(a);
        }
    }
    tx.commit();
    return all;
}

struct Line
{
    QString type;
    qint64 no;
    QDate date;
    Account account;
    Money dr;
    Money cr;
};

void flush(SessionConnection &db, QVector<Line> &lines)
{
    if (lines.isEmpty())
        return;
    QString sql = QStringLiteral("INSERT INTO tblPartyBalance (VoucherType, VoucherNo, VDate, InvoiceNo, PartyCode, "
                                 "PartyName, PartyDR, PartyCR, PartyBalance, PartyDesc) VALUES ");
    QVariantList params;
    for (int i = 0; i < lines.size(); ++i) {
        const Line &l = lines.at(i);
        sql += i ? QStringLiteral(", (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)") : QStringLiteral("(?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
        params << l.type << l.no << l.date << QString::number(l.no) << l.account.code << l.account.name
               << l.dr.toVariant() << l.cr.toVariant() << (l.dr - l.cr).toVariant() << QStringLiteral("BENCH");
    }
    db.execute(sql, params);
    lines.clear();
}

// Balanced two-row vouchers over one year. The first customer gets
// `heavyRows` rows, so that its ledger is a long one.
void makeVouchers(SessionConnection &db, qint64 rows, int heavyRows, const QVector<Account> &customers,
                  const QVector<Account> &suppliers, const QVector<Account> &expenses, const QVector<Account> &others)
{
    QRandomGenerator rng(20260101);
    const Account cash{QStringLiteral("19-10-001"), QStringLiteral("CASH IN HAND")};
    const Account sales{QStringLiteral("20-10-002"), QStringLiteral("INVOICE BALANCE")};
    const QDate start(2026, 1, 1);
    QHash<QString, qint64> numbers;
    QVector<Line> batch;
    Transaction tx(db);
    const qint64 vouchers = rows / 2;
    const qint64 heavyEvery = heavyRows > 0 ? std::max<qint64>(1, vouchers / heavyRows) : 0;
    for (qint64 v = 0; v < vouchers; ++v) {
        const QDate date = start.addDays(static_cast<int>(v * 365 / vouchers));
        const Money amount = Money::fromCents(rng.bounded(100, 5000000));
        const bool heavy = heavyEvery && v % heavyEvery == 0;
        const Account &customer = heavy ? customers.first() : customers.at(rng.bounded(customers.size()));
        Account dr, cr;
        QString type;
        const int kind = heavy ? static_cast<int>(v / heavyEvery % 3) : rng.bounded(6);
        switch (kind) {
        case 0: case 1: type = QStringLiteral("SV"); dr = customer; cr = sales; break;
        case 2: type = QStringLiteral("CR"); dr = cash; cr = customer; break;
        case 3: type = QStringLiteral("CP"); dr = expenses.at(rng.bounded(expenses.size())); cr = cash; break;
        case 4: type = QStringLiteral("PS"); dr = expenses.at(rng.bounded(expenses.size())); cr = suppliers.at(rng.bounded(suppliers.size())); break;
        default: type = QStringLiteral("JV"); dr = others.at(rng.bounded(others.size())); cr = suppliers.at(rng.bounded(suppliers.size())); break;
        }
        const qint64 no = ++numbers[type];
        batch.append({type, no, date, dr, amount, Money()});
        batch.append({type, no, date, cr, Money(), amount});
        if (batch.size() >= 400)
            flush(db, batch);
    }
    flush(db, batch);
    tx.commit();
}

struct Timing
{
    double ms = 0;
    qint64 rows = 0;
};

Timing timeIt(const std::function<qint64()> &run, int repeat = 3)
{
    Timing best{1e300, 0};
    for (int i = 0; i < repeat; ++i) {
        QElapsedTimer t;
        t.start();
        const qint64 n = run();
        const double ms = t.nsecsElapsed() / 1e6;
        if (ms < best.ms)
            best = {ms, n};
    }
    return best;
}

void explain(SessionConnection &db, const QString &sql, const QVariantList &params)
{
    const QString prefix = db.isPostgres() ? QStringLiteral("EXPLAIN ") : QStringLiteral("EXPLAIN QUERY PLAN ");
    out() << "    plan:\n";
    for (const Row &r : db.select(prefix + sql, params)) {
        QStringList cells;
        for (const QVariant &v : r.values())
            cells << v.toString();
        out() << "      " << cells.join(QLatin1Char(' ')) << "\n";
    }
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Times the ledger, ageing and statements against bare SQL."));
    parser.addHelpOption();
    QCommandLineOption profileOpt(QStringLiteral("profile"), QStringLiteral("Connection profile (default: embedded)."), QStringLiteral("name"));
    QCommandLineOption configOpt(QStringLiteral("config"), QStringLiteral("Settings file."), QStringLiteral("file"));
    QCommandLineOption rowsOpt(QStringLiteral("rows"), QStringLiteral("Ledger rows to make."), QStringLiteral("n"), QStringLiteral("1000000"));
    QCommandLineOption accountsOpt(QStringLiteral("accounts"), QStringLiteral("Accounts to make."), QStringLiteral("n"), QStringLiteral("2000"));
    QCommandLineOption heavyOpt(QStringLiteral("party-rows"), QStringLiteral("Rows of the one long ledger."), QStringLiteral("n"), QStringLiteral("10000"));
    QCommandLineOption yearOpt(QStringLiteral("year"), QStringLiteral("Use this existing year instead of making one."), QStringLiteral("name"));
    QCommandLineOption keepOpt(QStringLiteral("keep"), QStringLiteral("Keep the year that was made."));
    QCommandLineOption explainOpt(QStringLiteral("explain"), QStringLiteral("Print the query plans."));
    parser.addOptions({profileOpt, configOpt, rowsOpt, accountsOpt, heavyOpt, yearOpt, keepOpt, explainOpt});
    parser.process(app);

    ConnectionProfile profile;
    QString error;
    if (!CommandLine::resolveProfile(parser.value(profileOpt), parser.value(configOpt), profile, error)) {
        QTextStream(stderr) << "bench-ledger: " << error << "\n";
        return 2;
    }

    QString year = parser.value(yearOpt);
    const bool made = year.isEmpty();
    QString party = QStringLiteral("17-10-001");
    try {
        if (made) {
            year = QStringLiteral("TesselBench_%1").arg(QCoreApplication::applicationPid());
            AccountYear::CreateOptions o;
            o.adminPassword = QStringLiteral("bench");
            o.closingDate = QDate(2025, 12, 31);
            AccountYear::create(profile, year, o);
            auto db = SessionConnection::open(profile, year);
            QVector<Account> customers, suppliers, expenses, others;
            QElapsedTimer t;
            t.start();
            makeAccounts(*db, parser.value(accountsOpt).toInt(), customers, suppliers, expenses, others);
            makeVouchers(*db, parser.value(rowsOpt).toLongLong(), parser.value(heavyOpt).toInt(), customers,
                         suppliers, expenses, others);
            if (db->isPostgres())
                db->execute(QStringLiteral("ANALYZE"));
            else
                db->execute(QStringLiteral("ANALYZE"));
            out() << "made " << year << " in " << t.elapsed() / 1000.0 << " s\n";
        }

        auto db = SessionConnection::open(profile, year);
        const qint64 total = db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")).toLongLong();
        const qint64 partyRows = db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE PartyCode = ?"), {party}).toLongLong();
        out() << "engine " << (db->isPostgres() ? "postgres" : "sqlite") << ", " << total << " ledger rows, party "
              << party << " with " << partyRows << " rows\n";
        const QDate from(2026, 1, 1), to(2026, 12, 31);
        db->setReportPeriod(from, to);
        const bool wantPlan = parser.isSet(explainOpt);

        struct Case
        {
            QString name;
            QString view;
            QVariantList viewParams;
            std::function<qint64()> viewRun; // when set, replaces the view query
            QString bare;
            QVariantList bareParams;
        };
        const QVariantList partyOnly{party};
        const QVariantList periodParams{from, to};
        const QVector<Case> cases = {
            {QStringLiteral("ledger of one party"),
             QStringLiteral("SELECT * FROM Ledger WHERE PartyCode = ? ORDER BY LineKind, VDate, SrNo"), partyOnly, {},
             QStringLiteral("SELECT SrNo, VDate, VoucherType, VoucherNo, PartyDR, PartyCR, PartyBalance FROM tblPartyBalance "
                            "WHERE PartyCode = ? AND VDate <= ? ORDER BY VDate, SrNo"),
             {party, to}},
            {QStringLiteral("ageing of one party"), QString(), {},
             [&db, party]() -> qint64 { return PartyAgeing::runForParty(*db, party).lines.size(); },
             QStringLiteral("SELECT SrNo, VDate, VoucherType, VoucherNo, PartyDR, PartyCR FROM tblPartyBalance "
                            "WHERE PartyCode = ? ORDER BY VDate, SrNo"),
             partyOnly},
            {QStringLiteral("ageing of all parties (period)"), QStringLiteral("SELECT * FROM AgeingReportPeriod"), {}, {},
             QStringLiteral("SELECT PartyCode, VoucherType, SUM(PartyBalance) FROM tblPartyBalance WHERE VDate <= ? "
                            "GROUP BY PartyCode, VoucherType"),
             {to}},
            {QStringLiteral("trial balance up to date"), QStringLiteral("SELECT * FROM TrialBalanceUptoDate"), {}, {},
             QStringLiteral("SELECT PartyCode, SUM(PartyDR), SUM(PartyCR), SUM(PartyBalance) FROM tblPartyBalance "
                            "WHERE VDate <= ? GROUP BY PartyCode"),
             {to}},
            {QStringLiteral("trial balance of the period"), QStringLiteral("SELECT * FROM TrialBalance"), {}, {},
             QStringLiteral("SELECT PartyCode, SUM(PartyDR), SUM(PartyCR), SUM(PartyBalance) FROM tblPartyBalance "
                            "WHERE VDate BETWEEN ? AND ? GROUP BY PartyCode"),
             periodParams},
            {QStringLiteral("balance sheet"), QStringLiteral("SELECT * FROM BalanceSheet"), {}, {},
             QStringLiteral("SELECT PartyCode, SUM(PartyBalance) FROM tblPartyBalance WHERE VDate <= ? "
                            "GROUP BY PartyCode"),
             {to}},
            {QStringLiteral("balance sheet up to a date"), QStringLiteral("SELECT * FROM BalanceSheetSingleDate"), {}, {},
             QStringLiteral("SELECT PartyCode, SUM(PartyBalance) FROM tblPartyBalance WHERE VDate <= ? "
                            "GROUP BY PartyCode"),
             {to}},
            {QStringLiteral("profit and loss"), QStringLiteral("SELECT * FROM ProfitAndLoss"), {}, {},
             QStringLiteral("SELECT PartyCode, SUM(PartyBalance) FROM tblPartyBalance WHERE VDate BETWEEN ? AND ? "
                            "GROUP BY PartyCode"),
             periodParams},
            {QStringLiteral("credit list"), QStringLiteral("SELECT * FROM CreditList"), {}, {},
             QStringLiteral("SELECT PartyCode, SUM(PartyBalance) FROM tblPartyBalance WHERE VDate BETWEEN ? AND ? "
                            "GROUP BY PartyCode"),
             periodParams},
            {QStringLiteral("debit list"), QStringLiteral("SELECT * FROM DebitList"), {}, {},
             QStringLiteral("SELECT PartyCode, SUM(PartyBalance) FROM tblPartyBalance WHERE VDate BETWEEN ? AND ? "
                            "GROUP BY PartyCode"),
             periodParams},
            {QStringLiteral("ledger with sale tax"),
             QStringLiteral("SELECT * FROM LedgerWithSaleTax WHERE PartyCode = ? ORDER BY LineKind, VDate, SrNo"), partyOnly, {},
             QStringLiteral("SELECT SrNo, VDate, VoucherType, VoucherNo, PartyDR, PartyCR, PartyBalance FROM tblPartyBalance "
                            "WHERE PartyCode = ? AND VDate <= ? ORDER BY VDate, SrNo"),
             {party, to}},
        };

        out() << QStringLiteral("%1 %2 %3 %4 %5\n")
                     .arg(QStringLiteral("report"), -34)
                     .arg(QStringLiteral("rows"), 8)
                     .arg(QStringLiteral("view ms"), 10)
                     .arg(QStringLiteral("bare ms"), 10)
                     .arg(QStringLiteral("ratio"), 7);
        for (const Case &c : cases) {
            const Timing v = timeIt(c.viewRun ? c.viewRun : std::function<qint64()>([&]() -> qint64 {
                return db->select(c.view, c.viewParams).size();
            }));
            const Timing b = timeIt([&]() -> qint64 { return db->select(c.bare, c.bareParams).size(); });
            out() << QStringLiteral("%1 %2 %3 %4 %5\n")
                         .arg(c.name, -34)
                         .arg(v.rows, 8)
                         .arg(v.ms, 10, 'f', 1)
                         .arg(b.ms, 10, 'f', 1)
                         .arg(b.ms > 0 ? v.ms / b.ms : 0.0, 7, 'f', 2);
            out().flush();
            if (wantPlan && !c.view.isEmpty())
                explain(*db, c.view, c.viewParams);
        }
        db.reset();
        if (made && !parser.isSet(keepOpt))
            AccountYear::drop(profile, year);
        else if (made)
            out() << "kept " << year << "\n";
    } catch (const DbError &e) {
        QTextStream(stderr) << "bench-ledger: " << e.driverText() << "\n" << e.sql() << "\n";
        return 1;
    } catch (const std::exception &e) {
        QTextStream(stderr) << "bench-ledger: " << e.what() << "\n";
        return 1;
    }
    return 0;
}
