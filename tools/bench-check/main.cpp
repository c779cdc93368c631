// bench-check: times the books check on an account year, each pass beside
// the bare statements that read the same ledger rows once.
//
//   bench-check [--profile NAME] [--config FILE] [--rows 200000] [--runs 3]
//               [--year NAME] [--keep]
//
// Without --year a demonstration year of --rows ledger rows is made (every
// document of a press, through the rules) and removed at the end unless
// --keep. Each figure is the least of --runs runs; the whole check also
// shows its median and the least processor time of this process (the
// steadier figure on a busy machine for the embedded store).
#include "admin/BooksCheck.h"
#include "foundation/AccountYear.h"
#include "foundation/CommandLine.h"
#include "foundation/Schema.h"
#include "foundation/SessionConnection.h"
#include "vouchers/DemoGenerator.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMap>
#include <QTextStream>

#include <sys/resource.h>

#include <algorithm>

namespace {

double cpuNow()
{
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return (u.ru_utime.tv_sec + u.ru_stime.tv_sec) * 1e3 + (u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e3;
}

QString ms(double v) { return QString::number(v, 'f', v < 10 ? 1 : 0); }

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Times the books check against bare SQL over the same rows."));
    parser.addHelpOption();
    QCommandLineOption profileOpt(QStringLiteral("profile"), QStringLiteral("Connection profile (default: embedded)."), QStringLiteral("name"));
    QCommandLineOption configOpt(QStringLiteral("config"), QStringLiteral("Settings file."), QStringLiteral("file"));
    QCommandLineOption rowsOpt(QStringLiteral("rows"), QStringLiteral("Ledger rows of the year made."), QStringLiteral("n"), QStringLiteral("200000"));
    QCommandLineOption runsOpt(QStringLiteral("runs"), QStringLiteral("Runs of each measure."), QStringLiteral("n"), QStringLiteral("3"));
    QCommandLineOption yearOpt(QStringLiteral("year"), QStringLiteral("Measure this existing year instead of making one."), QStringLiteral("name"));
    QCommandLineOption keepOpt(QStringLiteral("keep"), QStringLiteral("Keep the year that was made."));
    parser.addOptions({profileOpt, configOpt, rowsOpt, runsOpt, yearOpt, keepOpt});
    parser.process(app);

    QTextStream out(stdout);
    ConnectionProfile profile;
    QString error;
    if (!CommandLine::resolveProfile(parser.value(profileOpt), parser.value(configOpt), profile, error)) {
        QTextStream(stderr) << "bench-check: " << error << "\n";
        return 2;
    }
    const int runs = qMax(1, parser.value(runsOpt).toInt());
    QString year = parser.value(yearOpt);
    const bool made = year.isEmpty();
    int status = 0;
    try {
        if (made) {
            year = QStringLiteral("TesselBenchCheck_%1").arg(QCoreApplication::applicationPid());
            DemoOptions d;
            d.rows = parser.value(rowsOpt).toLongLong();
            d.from = QDate(2026, 1, 1);
            d.to = QDate(2026, 12, 31);
            AccountYear::CreateOptions o;
            o.adminPassword = QStringLiteral("bench");
            o.closingDate = d.from.addDays(-1);
            AccountYear::create(profile, year, o);
            auto db = SessionConnection::open(profile, year);
            const DemoSummary s = DemoGenerator::standardYear(*db, d);
            out << "made " << year << ": " << s.accounts << " accounts, " << s.ledgerRows << " ledger rows in "
                << QString::number(s.milliseconds / 1000.0, 'f', 1) << " s\n";
        }

        auto db = SessionConnection::open(profile, year);
        Schema::ensureStatistics(*db);
        const qint64 total = db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")).toLongLong();
        out << "engine " << (db->isPostgres() ? "PostgreSQL" : "SQLite") << ", " << total
            << " ledger rows; least of " << runs << " runs\n";

        QVector<double> wall;
        double cpu = 1e300;
        QMap<QString, qint64> least;
        QStringList order;
        BooksCheck::Result last;
        for (int i = 0; i < runs; ++i) {
            const double c = cpuNow();
            QElapsedTimer t;
            t.start();
            last = BooksCheck::run(*db);
            wall << t.nsecsElapsed() / 1e6;
            cpu = std::min(cpu, cpuNow() - c);
            for (const auto &s : last.steps) {
                if (!least.contains(s.first)) {
                    order << s.first;
                    least.insert(s.first, s.second);
                }
                least[s.first] = std::min(least.value(s.first), s.second);
            }
        }
        std::sort(wall.begin(), wall.end());

        out << QStringLiteral("%1 %2 %3 %4\n").arg(QStringLiteral("pass"), -44).arg(QStringLiteral("min ms"), 9)
                   .arg(QStringLiteral("median ms"), 10).arg(QStringLiteral("cpu ms"), 9);
        for (const QString &s : order)
            out << QStringLiteral("%1 %2\n").arg(QStringLiteral("  ") + s, -44).arg(least.value(s), 9);
        out << QStringLiteral("%1 %2 %3 %4\n").arg(QStringLiteral("the whole check"), -44).arg(ms(wall.first()), 9)
                   .arg(ms(wall.at(wall.size() / 2)), 10).arg(ms(cpu), 9);

        // The bare reads of the same rows: one pass, and the groupings the
        // check cannot do with less.
        const QVector<QPair<QString, QString>> bare = {
            {QStringLiteral("bare: one pass over the ledger"),
             QStringLiteral("SELECT COUNT(*), SUM(PartyBalance) FROM tblPartyBalance")},
            {QStringLiteral("bare: rows grouped by voucher"),
             QStringLiteral("SELECT COUNT(*) FROM (SELECT VoucherType, VoucherNo, VDate, SUM(PartyBalance) AS B "
                            "FROM tblPartyBalance GROUP BY VoucherType, VoucherNo, VDate) x")},
            {QStringLiteral("bare: rows grouped by account and month"),
             QStringLiteral("SELECT COUNT(*) FROM (") + Schema::ledgerMonthTotalsSql() + QStringLiteral(") x")},
        };
        for (const auto &b : bare) {
            double best = 1e300;
            for (int i = 0; i < runs; ++i) {
                QElapsedTimer t;
                t.start();
                db->select(b.second);
                best = std::min(best, t.nsecsElapsed() / 1e6);
            }
            out << QStringLiteral("%1 %2\n").arg(b.first, -44).arg(ms(best), 9);
        }
        const int faults = last.faults.size() + last.truncated;
        out << (faults == 0 ? QStringLiteral("the books are whole\n") : QStringLiteral("%1 faults found\n").arg(faults));
        status = faults == 0 ? 0 : 3;
    } catch (const DbError &e) {
        QTextStream(stderr) << "bench-check: the database said: " << e.driverText() << "\n";
        status = 1;
    } catch (const AccountYear::Error &e) {
        QTextStream(stderr) << "bench-check: " << e.message() << "\n";
        status = 1;
    }
    if (made && !parser.isSet(keepOpt)) {
        try {
            AccountYear::drop(profile, year);
        } catch (...) {
        }
    } else if (made) {
        out << "kept " << year << "\n";
    }
    return status;
}
