// bench-ledger: times the statements, the balance look-ups and the two
// largest reports on a generated account year, each beside the minimal
// GROUP BY that computes the same figures on the same rows.
//
//   bench-ledger [--profile NAME] [--rows 2000000] [--runs 5] [--year NAME]
//                [--keep] [--make] [--explain] [--out DIR]
//
// Without --year a demonstration year is made (the chart, opening balances
// and a year of vouchers, with sale invoices among them) and removed at the
// end unless --keep; --make only makes it (and keeps it) for measuring
// later. With --year an existing year is measured as it is.
// Each figure is the minimum and the median of --runs runs; the reports are
// rendered through the report frame to PDF files in --out, with the peak
// memory of the process while each renders.
#include "foundation/AccountYear.h"
#include "foundation/CommandLine.h"
#include "foundation/Money.h"
#include "foundation/Schema.h"
#include "foundation/SessionConnection.h"
#include "reports/LedgerStatements.h"
#include "reports/PositionReports.h"
#include "reports/ReportExport.h"
#include "reports/ReportFrame.h"
#include "vouchers/DemoGenerator.h"
#include "vouchers/LedgerWriter.h"

#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTextStream>

#include <sys/resource.h>

#include <algorithm>
#include <functional>

namespace {

QTextStream &out()
{
    static QTextStream s(stdout);
    return s;
}

// Sale invoices: a customer debited, sales credited, one invoice a voucher.
// A quarter of the rows, so that the ageing has a year of invoices to lay
// the balances on.
void saleInvoicePart(DemoContext &c)
{
    const DemoChart &ch = c.chart;
    if (ch.customers.isEmpty() || ch.incomes.isEmpty())
        return;
    const qint64 want = c.options.rows / 4;
    const qint64 days = qMax<qint64>(1, c.options.from.daysTo(c.options.to));
    qint64 no = Ledger::nextVoucherNo(c.db, QStringLiteral("SV"));
    const DemoAccount &sales = ch.incomes.first();
    for (qint64 done = 0; done < want; done += 2) {
        const VoucherKey key{QStringLiteral("SV"), no, c.options.from.addDays(days * done / want)};
        const QString invoice = QString::number(no++);
        const DemoAccount &customer = c.pick(ch.customers);
        const Money amount = c.amount(1000, 400000);
        c.addRows({LedgerRow::debit(key, customer.code, customer.name, amount,
                                    QStringLiteral("INVOICE # %1").arg(invoice), invoice),
                   LedgerRow::credit(key, sales.code, sales.name, amount,
                                     QStringLiteral("INVOICE # %1 %2").arg(invoice, customer.name), invoice)});
        ++c.vouchers;
    }
}

struct Figures
{
    double minMs = 0;
    double medianMs = 0;
    double cpuMs = 0; // the least processor time of this process in one run
    qint64 rows = 0;
};

double cpuNow()
{
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return (u.ru_utime.tv_sec + u.ru_stime.tv_sec) * 1e3 + (u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e3;
}

// Wall time, min and median of `runs`; on a shared machine the processor
// time of an embedded store is the steadier figure.
Figures timeIt(int runs, const std::function<qint64()> &run)
{
    QVector<double> ms;
    Figures f;
    f.cpuMs = 1e300;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer t;
        const double cpu = cpuNow();
        t.start();
        f.rows = run();
        ms << t.nsecsElapsed() / 1e6;
        f.cpuMs = std::min(f.cpuMs, cpuNow() - cpu);
    }
    std::sort(ms.begin(), ms.end());
    f.minMs = ms.first();
    f.medianMs = ms.at(ms.size() / 2);
    return f;
}

// The process's peak resident memory (VmHWM), in MB; resetPeak() starts a
// new peak from what is resident now.
void resetPeak()
{
    QFile f(QStringLiteral("/proc/self/clear_refs"));
    if (f.open(QIODevice::WriteOnly))
        f.write("5");
}

double peakMb()
{
    QFile f(QStringLiteral("/proc/self/status"));
    if (!f.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : f.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toDouble() / 1024.0;
    return 0;
}

QString ms(double v)
{
    return v >= 10 ? QString::number(v, 'f', 0) : QString::number(v, 'f', 3);
}

void printHeader()
{
    out() << QStringLiteral("%1 %2 %3 %4 %5 %6 %7 %8 %9\n")
                 .arg(QStringLiteral("operation"), -52)
                 .arg(QStringLiteral("rows"), 8)
                 .arg(QStringLiteral("min ms"), 9)
                 .arg(QStringLiteral("median ms"), 10)
                 .arg(QStringLiteral("bare ms"), 9)
                 .arg(QStringLiteral("ratio"), 6)
                 .arg(QStringLiteral("cpu ms"), 9)
                 .arg(QStringLiteral("bare cpu"), 9)
                 .arg(QStringLiteral("peak MB"), 8);
}

void printRow(const QString &name, const Figures &f, const std::optional<Figures> &bare, double peak = 0)
{
    out() << QStringLiteral("%1 %2 %3 %4 %5 %6 %7 %8 %9\n")
                 .arg(name, -52)
                 .arg(f.rows, 8)
                 .arg(ms(f.minMs), 9)
                 .arg(ms(f.medianMs), 10)
                 .arg(bare ? ms(bare->minMs) : QStringLiteral("-"), 9)
                 .arg(bare && bare->minMs > 0 ? QString::number(f.minMs / bare->minMs, 'f', 2) : QStringLiteral("-"), 6)
                 .arg(ms(f.cpuMs), 9)
                 .arg(bare ? ms(bare->cpuMs) : QStringLiteral("-"), 9)
                 .arg(peak > 0 ? QString::number(peak, 'f', 0) : QStringLiteral("-"), 8);
    out().flush();
}

void explain(SessionConnection &db, const QString &sql, const QVariantList &params)
{
    const QString prefix = db.isPostgres() ? QStringLiteral("EXPLAIN ") : QStringLiteral("EXPLAIN QUERY PLAN ");
    // The steps over the period row and the company row are left out: the
    // plan that matters is how the ledger is read.
    if (db.isPostgres() && !params.isEmpty()) {
        // A server does not explain a statement with parameters.
        out() << "      (a statement with parameters: no plan from a server)\n";
        return;
    }
    static const QRegularExpression noise(QStringLiteral("LedgerPeriod|tblTLClientInfo|CONSTANT ROW|SCALAR SUBQUERY|InitPlan|Result  \\(|tbltlclientinfo|Limit  \\("));
    for (const Row &r : db.select(prefix + sql, params)) {
        const QString line = db.isPostgres() ? r.text(0) : r.text(3);
        if (!line.contains(noise))
            out() << "      " << line << "\n";
    }
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Times the statements, balances and large reports against bare SQL."));
    parser.addHelpOption();
    QCommandLineOption profileOpt(QStringLiteral("profile"), QStringLiteral("Connection profile (default: embedded)."), QStringLiteral("name"));
    QCommandLineOption configOpt(QStringLiteral("config"), QStringLiteral("Settings file."), QStringLiteral("file"));
    QCommandLineOption rowsOpt(QStringLiteral("rows"), QStringLiteral("Ledger rows of the year made."), QStringLiteral("n"), QStringLiteral("2000000"));
    QCommandLineOption runsOpt(QStringLiteral("runs"), QStringLiteral("Runs of each measure."), QStringLiteral("n"), QStringLiteral("5"));
    QCommandLineOption yearOpt(QStringLiteral("year"), QStringLiteral("Measure this existing year instead of making one."), QStringLiteral("name"));
    QCommandLineOption keepOpt(QStringLiteral("keep"), QStringLiteral("Keep the year that was made."));
    QCommandLineOption makeOpt(QStringLiteral("make"), QStringLiteral("Only make the year, keep it and stop."));
    QCommandLineOption explainOpt(QStringLiteral("explain"), QStringLiteral("Print the query plans of the statements."));
    QCommandLineOption outOpt(QStringLiteral("out"), QStringLiteral("Folder for the PDF files (default: a temporary one)."), QStringLiteral("dir"));
    parser.addOptions({profileOpt, configOpt, rowsOpt, runsOpt, yearOpt, keepOpt, makeOpt, explainOpt, outOpt});
    parser.process(app);

    ConnectionProfile profile;
    QString error;
    if (!CommandLine::resolveProfile(parser.value(profileOpt), parser.value(configOpt), profile, error)) {
        QTextStream(stderr) << "bench-ledger: " << error << "\n";
        return 2;
    }
    const int runs = qMax(1, parser.value(runsOpt).toInt());
    QTemporaryDir tmp;
    const QString pdfDir = parser.isSet(outOpt) ? parser.value(outOpt) : tmp.path();
    QDir().mkpath(pdfDir);

    QString year = parser.value(yearOpt);
    const bool made = year.isEmpty();
    try {
        if (made) {
            year = QStringLiteral("TesselBench_%1").arg(QCoreApplication::applicationPid());
            DemoOptions d;
            d.rows = parser.value(rowsOpt).toLongLong();
            d.from = QDate(2026, 1, 1);
            d.to = QDate(2026, 12, 31);
            AccountYear::CreateOptions o;
            o.adminPassword = QStringLiteral("bench");
            o.closingDate = d.from.addDays(-1);
            AccountYear::create(profile, year, o);
            auto db = SessionConnection::open(profile, year);
            DemoGenerator g(*db, d);
            g.addPart(QStringLiteral("chart"), &DemoGenerator::chartPart);
            g.addPart(QStringLiteral("opening balances"), &DemoGenerator::openingBalancePart);
            g.addPart(QStringLiteral("sale invoices"), &saleInvoicePart);
            g.addPart(QStringLiteral("vouchers"), &DemoGenerator::voucherPart);
            const DemoSummary s = g.run();
            out() << "made " << year << ": " << s.accounts << " accounts, " << s.ledgerRows << " ledger rows in "
                  << QString::number(s.milliseconds / 1000.0, 'f', 1) << " s\n";
            if (parser.isSet(makeOpt)) {
                Schema::refreshStatistics(*db);
                out() << "kept " << year << "\n";
                return 0;
            }
        }

        auto db = SessionConnection::open(profile, year);
        Schema::ensureStatistics(*db);
        const auto period = db->selectOne(QStringLiteral("SELECT MIN(VDate), MAX(VDate), COUNT(*) FROM tblPartyBalance"));
        const QDate from = period->date(0), to = period->date(1);
        const qint64 total = period->integer(2);
        // The busiest party and the cash account, from the kept counts.
        const auto busiest = db->selectOne(QStringLiteral("SELECT PartyCode, RowCount FROM tblAccountBalance "
                                                          "WHERE PartyCode >= '14-10-000' AND PartyCode <= '18-99-999' "
                                                          "ORDER BY RowCount DESC, PartyCode LIMIT 1"));
        const QString party = busiest ? busiest->text(0).trimmed() : QString();
        const qint64 cashRows = db->scalar(QStringLiteral("SELECT RowCount FROM tblAccountBalance WHERE PartyCode = ?"),
                                           {Ledger::kCashCode}).toLongLong();
        out() << "engine " << (db->isPostgres() ? "PostgreSQL" : "SQLite") << ", " << total << " ledger rows from "
              << from.toString(QStringLiteral("dd/MM/yyyy")) << " to " << to.toString(QStringLiteral("dd/MM/yyyy"))
              << ", busiest party " << party << " (" << (busiest ? busiest->integer(1) : 0) << " rows), "
              << Ledger::kCashName << " " << cashRows << " rows; min and median of " << runs << " runs\n";
        db->setReportPeriod(from, to);
        const bool wantPlan = parser.isSet(explainOpt);

        auto rowsOf = [&db](const QString &sql, const QVariantList &params = {}) {
            return [&db, sql, params]() -> qint64 { return db->select(sql, params).size(); };
        };
        struct Statement
        {
            QString name;
            QString view;
            QString bare;
            QVariantList bareParams;
        };
        // The bare queries: the one GROUP BY that gives the same figures.
        const QVector<Statement> statements = {
            {QStringLiteral("Trial balance of the period"), QStringLiteral("SELECT * FROM TrialBalance"),
             QStringLiteral("SELECT RTRIM(PartyCode), SUM(PartyDR), SUM(PartyCR), SUM(PartyBalance) FROM tblPartyBalance "
                            "WHERE VDate >= ? AND VDate <= ? GROUP BY RTRIM(PartyCode)"),
             {from, to}},
            {QStringLiteral("Balance sheet"), QStringLiteral("SELECT * FROM BalanceSheet"),
             QStringLiteral("SELECT PartyCode, SUM(PartyBalance) FROM tblPartyBalance WHERE VDate <= ? GROUP BY PartyCode"),
             {to}},
            {QStringLiteral("Profit and loss"), QStringLiteral("SELECT * FROM ProfitAndLoss"),
             QStringLiteral("SELECT PartyCode, SUM(PartyBalance) FROM tblPartyBalance WHERE VDate >= ? AND VDate <= ? "
                            "GROUP BY PartyCode"),
             {from, to}},
            {QStringLiteral("Trial balance up to date"), QStringLiteral("SELECT * FROM TrialBalanceUptoDate"),
             QStringLiteral("SELECT PartyCode, SUM(PartyBalance) FROM tblPartyBalance WHERE VDate <= ? GROUP BY PartyCode"),
             {to}},
            {QStringLiteral("Credit and debit lists (parties of the period)"), QStringLiteral("SELECT * FROM PartyPeriodBalance"),
             QStringLiteral("SELECT PartyCode, SUM(PartyBalance) FROM tblPartyBalance WHERE VDate >= ? AND VDate <= ? "
                            "AND PartyCode >= '14-10-000' AND PartyCode <= '18-99-999' GROUP BY PartyCode"),
             {from, to}},
        };

        printHeader();
        for (const Statement &s : statements) {
            const Figures v = timeIt(runs, rowsOf(s.view));
            const Figures b = timeIt(runs, rowsOf(s.bare, s.bareParams));
            printRow(s.name, v, b);
            if (wantPlan) {
                explain(*db, s.view, {});
                out() << "    bare:\n";
                explain(*db, s.bare, s.bareParams);
            }
        }

        // The monthly comparisons of the period's last year: staged for
        // printing, beside the bare grouped query over the ledger rows.
        const int compareYear = to.year();
        const QVariantList yearParams{QDate(compareYear, 1, 1), QDate(compareYear, 12, 31)};
        printRow(QStringLiteral("Monthly profit and loss comparison %1").arg(compareYear),
                 timeIt(runs, [&]() -> qint64 {
                     return MonthlyComparison::stage(*db, MonthlyComparison::Kind::ProfitAndLoss, compareYear);
                 }),
                 timeIt(runs, rowsOf(QStringLiteral("SELECT Month(VDate), SUM(PartyBalance) FROM tblPartyBalance "
                                                    "WHERE VDate >= ? AND VDate <= ? AND ((PartyCode >= '13-10-000' AND "
                                                    "PartyCode <= '13-99-999') OR PartyCode > '20-00-000') "
                                                    "AND PartyCode NOT LIKE '%-000' GROUP BY Month(VDate)"),
                                     yearParams)));
        printRow(QStringLiteral("Monthly expense comparison %1").arg(compareYear),
                 timeIt(runs, [&]() -> qint64 {
                     return MonthlyComparison::stage(*db, MonthlyComparison::Kind::Expenses, compareYear);
                 }),
                 timeIt(runs, rowsOf(QStringLiteral("SELECT PartyCode, Month(VDate), SUM(PartyBalance) FROM tblPartyBalance "
                                                    "WHERE VDate >= ? AND VDate <= ? AND PartyCode >= '21-10-001' AND "
                                                    "PartyCode <= '21-99-999' GROUP BY PartyCode, Month(VDate)"),
                                     yearParams)));

        // The ageing: the view alone, then through the report frame to PDF.
        const QString ageingBare = QStringLiteral(
            "SELECT PartyCode, SrNo, VoucherNo, VDate, PartyDR FROM tblPartyBalance WHERE VoucherType = 'SV' "
            "AND PartyDR > 0 AND VDate <= ? ORDER BY PartyCode, VoucherNo DESC, SrNo DESC");
        const QString ageingBalances = QStringLiteral(
            "SELECT PartyCode, SUM(PartyBalance) FROM tblPartyBalance WHERE VDate <= ? "
            "AND PartyCode >= '14-10-000' AND PartyCode <= '18-99-999' GROUP BY PartyCode");
        const Figures ageingBareFigures = timeIt(runs, [&]() -> qint64 {
            return db->select(ageingBare, {to}).size() + db->select(ageingBalances, {to}).size();
        });
        printRow(QStringLiteral("Ageing of all parties (the view)"),
                 timeIt(runs, rowsOf(QStringLiteral("SELECT * FROM AgeingReportPeriod"))), ageingBareFigures);
        if (wantPlan)
            explain(*db, QStringLiteral("SELECT * FROM AgeingReportPeriod"), {});

        auto renderToPdf = [&](const Reports::ReportRequest &req, const QString &file, double &peak) {
            // As a user's "save as PDF" of a long report: the frame reads
            // the rows forward and writes the pages one at a time.
            return [&db, req, file, &peak]() -> qint64 {
                resetPeak();
                QString why;
                Reports::ReportFrame::WrittenReport written;
                if (!Reports::ReportFrame::writeFile(*db, req, file, &why, &written))
                    throw std::runtime_error(why.toStdString());
                peak = std::max(peak, peakMb());
                return written.rows;
            };
        };
        const auto p = LedgerStatements::Period::of(from, to);
        double ageingPeak = 0;
        const Figures ageingPdf = timeIt(runs, renderToPdf(LedgerStatements::ageingReportPeriod(QString(), p),
                                                           pdfDir + QStringLiteral("/ageing.pdf"), ageingPeak));
        printRow(QStringLiteral("Ageing of all parties to PDF"), ageingPdf, ageingBareFigures, ageingPeak);

        // The balance of an account, as every account pick and the cash
        // figures ask for it: the kept balance, beside summing its rows.
        const QString cashSum = QStringLiteral("SELECT SUM(PartyBalance) FROM tblPartyBalance WHERE PartyCode = ?");
        const int picks = 200;
        auto perPick = [&](const std::function<void()> &one) {
            Figures f = timeIt(runs, [&]() -> qint64 {
                for (int i = 0; i < picks; ++i)
                    one();
                return 1;
            });
            f.minMs /= picks;
            f.medianMs /= picks;
            f.cpuMs /= picks;
            return f;
        };
        const Figures keptCash = perPick([&] { Ledger::accountBalance(*db, Ledger::kCashCode); });
        const Figures rowsCash = timeIt(runs, [&]() -> qint64 { db->scalarMoney(cashSum, {Ledger::kCashCode}); return 1; });
        printRow(QStringLiteral("%1 balance (%2 rows), each pick").arg(Ledger::kCashName).arg(cashRows), keptCash, rowsCash);
        const QDate mid = from.addDays(from.daysTo(to) / 2);
        printRow(QStringLiteral("%1 balance before %2").arg(Ledger::kCashName, mid.toString(QStringLiteral("dd/MM/yyyy"))),
                 perPick([&] { Ledger::accountBalanceBefore(*db, Ledger::kCashCode, mid); }),
                 timeIt(runs, [&]() -> qint64 {
                     db->scalarMoney(cashSum + QStringLiteral(" AND VDate < ?"), {Ledger::kCashCode, mid});
                     return 1;
                 }));

        // The longest ledger to PDF, and the busiest party's.
        const QString ledgerBare = QStringLiteral("SELECT SrNo, VDate, VoucherType, VoucherNo, PartyDesc, PartyDR, PartyCR "
                                                  "FROM tblPartyBalance WHERE PartyCode = ? AND VDate <= ? ORDER BY VDate, SrNo");
        auto ledgerToPdf = [&](const QString &name, const QString &code, const QString &accountName, const QString &file) {
            double peak = 0;
            const Figures f = timeIt(runs, renderToPdf(LedgerStatements::ledger(LedgerStatements::LedgerKind::Ledger, code,
                                                                                accountName, p),
                                                       pdfDir + file, peak));
            printRow(name, f, timeIt(runs, rowsOf(ledgerBare, {code, to})), peak);
        };
        if (!party.isEmpty())
            ledgerToPdf(QStringLiteral("Ledger of the busiest party (%1) to PDF").arg(party), party, QString(),
                        QStringLiteral("/party.pdf"));
        ledgerToPdf(QStringLiteral("Ledger of %1 lines (%2) to PDF").arg(cashRows).arg(Ledger::kCashName),
                    Ledger::kCashCode, Ledger::kCashName, QStringLiteral("/ledger.pdf"));
        db.reset();
        if (made && !parser.isSet(keepOpt))
            AccountYear::drop(profile, year);
        else if (made)
            out() << "kept " << year << "\n";
    } catch (const DbError &e) {
        QTextStream(stderr) << "bench-ledger: " << e.driverText() << "\n" << e.sql() << "\n";
        return 1;
    } catch (const Reports::DesignError &e) {
        QTextStream(stderr) << "bench-ledger: " << e.message() << "\n";
        return 1;
    } catch (const std::exception &e) {
        QTextStream(stderr) << "bench-ledger: " << e.what() << "\n";
        return 1;
    }
    return 0;
}
