// bench-newyear: the time of making the next year from a large one, beside
// the bare copy of the same year.
//
//   bench-newyear [--rows 2000000] [--year NAME] [--profile P] [--config F] [--keep]
//
// Makes a demonstration year of --rows ledger rows (or takes --year), then
// makes the next year from the day after its last one as NEW YEAR does
// (the copy, the accounts step, every table step, the comparison) and
// prints the time of each part. The bare figure is the copy of the year
// alone, the floor under which the new year cannot go. Every year it made
// is removed at the end unless --keep.
#include "admin/NewYear.h"
#include "admin/YearBackup.h"
#include "foundation/AccountYear.h"
#include "foundation/CommandLine.h"
#include "foundation/SessionConnection.h"
#include "vouchers/DemoGenerator.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTextStream>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("The time of NEW YEAR on a large year, beside the bare copy."));
    parser.addHelpOption();
    QCommandLineOption rowsOpt(QStringLiteral("rows"), QStringLiteral("Ledger rows of the year made (default 2000000)."), QStringLiteral("n"), QStringLiteral("2000000"));
    QCommandLineOption yearOpt(QStringLiteral("year"), QStringLiteral("Measure an existing year instead."), QStringLiteral("name"));
    QCommandLineOption profileOpt(QStringLiteral("profile"), QStringLiteral("Connection profile (default: the embedded store)."), QStringLiteral("name"));
    QCommandLineOption configOpt(QStringLiteral("config"), QStringLiteral("Settings file."), QStringLiteral("file"));
    QCommandLineOption keepOpt(QStringLiteral("keep"), QStringLiteral("Keep the years made."));
    parser.addOptions({rowsOpt, yearOpt, profileOpt, configOpt, keepOpt});
    parser.process(app);

    ConnectionProfile profile;
    QString error;
    if (!CommandLine::resolveProfile(parser.value(profileOpt), parser.value(configOpt), profile, error)) {
        QTextStream(stderr) << "bench-newyear: " << error << "\n";
        return 2;
    }
    QTextStream out(stdout);
    QStringList made;
    const auto dropMade = [&] {
        if (parser.isSet(keepOpt))
            return;
        for (const QString &name : made) {
            try {
                AccountYear::drop(profile, name);
            } catch (...) {
            }
        }
    };
    try {
        QString year = parser.value(yearOpt);
        if (year.isEmpty()) {
            year = QStringLiteral("Tessel_bench_newyear");
            if (AccountYear::exists(profile, year))
                AccountYear::drop(profile, year);
            AccountYear::CreateOptions o;
            o.adminPassword = QStringLiteral("bench");
            DemoOptions d;
            d.rows = parser.value(rowsOpt).toLongLong();
            d.to = QDate(2026, 12, 30);
            d.from = QDate(2026, 1, 1);
            o.closingDate = d.from.addDays(-1);
            AccountYear::create(profile, year, o);
            made << year;
            QElapsedTimer t;
            t.start();
            auto s = SessionConnection::open(profile, year);
            DemoGenerator g(*s, d);
            g.addStandardParts();
            g.run();
            out << "made " << year << " in " << t.elapsed() / 1000 << " s\n";
            out.flush();
        }
        auto s = SessionConnection::open(profile, year);
        const qint64 rows = s->scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")).toLongLong();
        const QDate last = s->scalar(QStringLiteral("SELECT MAX(VDate) FROM tblPartyBalance")).toDate();
        s.reset();

        // The bare copy.
        const QString copy = year + QStringLiteral("_copy");
        if (AccountYear::exists(profile, copy))
            AccountYear::drop(profile, copy);
        QElapsedTimer t;
        t.start();
        YearBackup::copyYear(profile, year, copy);
        const qint64 bare = t.elapsed();
        made << copy;

        // NEW YEAR, part by part.
        NewYear::Request r;
        r.fromYear = year;
        r.toYear = year + QStringLiteral("_next");
        r.start = last.addDays(1);
        r.user = QStringLiteral("ADMIN");
        r.today = QDate::currentDate();
        if (AccountYear::exists(profile, r.toYear))
            AccountYear::drop(profile, r.toYear);
        QVector<QPair<QString, qint64>> parts;
        QString part;
        qint64 partStart = 0;
        NewYear::Result result;
        t.restart();
        const Outcome o = NewYear::make(profile, r, result, [&](int, const QString &what) {
            const QString name = what.startsWith(QLatin1String("Copying")) ? QStringLiteral("copy") : what;
            if (name == part)
                return;
            if (!part.isEmpty())
                parts.append({part, t.elapsed() - partStart});
            part = name;
            partStart = t.elapsed();
        });
        const qint64 total = t.elapsed();
        made << r.toYear;
        if (!o.ok) {
            QTextStream(stderr) << "bench-newyear: " << o.message << "\n";
            dropMade();
            return 1;
        }
        out << "engine " << (profile.isPostgres() ? "PostgreSQL" : "SQLite") << ", " << rows
            << " ledger rows, new year from " << r.start.toString(QStringLiteral("dd/MM/yyyy")) << ", "
            << result.lines.size() << " accounts carried, " << result.differences << " differences\n";
        out << QStringLiteral("%1 %2\n").arg(QStringLiteral("part"), -36).arg(QStringLiteral("ms"), 10);
        for (const auto &p : parts)
            out << QStringLiteral("%1 %2\n").arg(p.first, -36).arg(p.second, 10);
        out << QStringLiteral("%1 %2\n").arg(QStringLiteral("new year in all"), -36).arg(total, 10);
        out << QStringLiteral("%1 %2\n").arg(QStringLiteral("bare copy of the year"), -36).arg(bare, 10);
    } catch (const AccountYear::Error &e) {
        QTextStream(stderr) << "bench-newyear: " << e.message() << "\n";
        dropMade();
        return 1;
    } catch (const DbError &e) {
        QTextStream(stderr) << "bench-newyear: " << e.driverText() << "\n";
        dropMade();
        return 1;
    }
    dropMade();
    return 0;
}
