// bench-vouchers: the time of a voucher save and of an account's balance
// on a ledger of a million rows.
//
//   bench-vouchers [--rows 1000000] [--saves 400] [--lookups 2000] [--keep]
//
// Builds a demonstration year of the given size in a scratch folder of the
// embedded store (or uses the one left by an earlier --keep run), then
// saves vouchers through staging as the voucher screen does and looks up
// balances as the account field does, and prints the median and the 95th
// percentile of each.
#include "foundation/AccountYear.h"
#include "foundation/ConnectionProfile.h"
#include "foundation/SessionConnection.h"
#include "vouchers/DemoGenerator.h"
#include "vouchers/VoucherPosting.h"
#include "vouchers/VoucherStaging.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTextStream>
#include <algorithm>
#include <vector>

namespace {

struct Stats
{
    double median = 0;
    double p95 = 0;
    double max = 0;
};

Stats stats(std::vector<double> ms)
{
    Stats s;
    if (ms.empty())
        return s;
    std::sort(ms.begin(), ms.end());
    s.median = ms[ms.size() / 2];
    s.p95 = ms[std::min(ms.size() - 1, size_t(double(ms.size()) * 0.95))];
    s.max = ms.back();
    return s;
}

void print(QTextStream &out, const QString &what, const Stats &s, double aim)
{
    out << QStringLiteral("%1  median %2 ms  p95 %3 ms  max %4 ms  (aim: p95 under %5 ms) %6\n")
               .arg(what, -34)
               .arg(s.median, 7, 'f', 2)
               .arg(s.p95, 7, 'f', 2)
               .arg(s.max, 7, 'f', 2)
               .arg(aim, 0, 'f', 0)
               .arg(s.p95 < aim ? QStringLiteral("ok") : QStringLiteral("SLOW"));
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Voucher save and balance look-up times on a large ledger."));
    parser.addHelpOption();
    QCommandLineOption rowsOpt(QStringLiteral("rows"), QStringLiteral("Ledger rows (default 1000000)."), QStringLiteral("n"), QStringLiteral("1000000"));
    QCommandLineOption savesOpt(QStringLiteral("saves"), QStringLiteral("Vouchers to save (default 400)."), QStringLiteral("n"), QStringLiteral("400"));
    QCommandLineOption lookupsOpt(QStringLiteral("lookups"), QStringLiteral("Balance look-ups (default 2000)."), QStringLiteral("n"), QStringLiteral("2000"));
    QCommandLineOption dirOpt(QStringLiteral("data-dir"), QStringLiteral("Folder of the scratch year (default: the temp folder)."), QStringLiteral("dir"));
    QCommandLineOption keepOpt(QStringLiteral("keep"), QStringLiteral("Keep the year for the next run."));
    parser.addOptions({rowsOpt, savesOpt, lookupsOpt, dirOpt, keepOpt});
    parser.process(app);

    QTextStream out(stdout);
    const qint64 rows = parser.value(rowsOpt).toLongLong();
    const int saves = parser.value(savesOpt).toInt();
    const int lookups = parser.value(lookupsOpt).toInt();
    ConnectionProfile profile = ConnectionProfile::embeddedDefault();
    profile.dataDir = parser.isSet(dirOpt) ? parser.value(dirOpt)
                                           : QDir::temp().filePath(QStringLiteral("tessel-bench-vouchers"));
    QDir().mkpath(profile.dataDir);
    const QString name = QStringLiteral("TesselBench%1").arg(rows);

    try {
        const bool exists = QFileInfo::exists(QDir(profile.dataDir).filePath(name + QStringLiteral(".sqlite")));
        if (!exists) {
            out << "Building " << name << " with " << rows << " ledger rows in " << profile.dataDir << " ...\n";
            out.flush();
            AccountYear::CreateOptions o;
            o.adminPassword = QStringLiteral("bench");
            o.closingDate = QDate::currentDate().addDays(-366);
            AccountYear::create(profile, name, o);
            auto s = SessionConnection::open(profile, name);
            DemoOptions d;
            d.rows = rows;
            DemoGenerator g(*s, d);
            g.addStandardParts();
            const DemoSummary sum = g.run();
            out << "  " << sum.accounts << " accounts, " << sum.vouchers << " vouchers, " << sum.ledgerRows
                << " rows in " << QString::number(sum.milliseconds / 1000.0, 'f', 1) << " s\n";
        }

        auto db = SessionConnection::open(profile, name);
        out << "Ledger rows: " << db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")).toLongLong() << "\n";
        QStringList accounts;
        for (const Row &r : db->select(QStringLiteral("SELECT PartyCode FROM tblPartyInfo WHERE PartyCode NOT LIKE '__-__-000%'")))
            accounts << r.text(0).trimmed();
        QRandomGenerator rng(7);

        // Saves, as the screen makes them: lines staged, then the save.
        std::vector<double> saveMs, stageMs;
        VoucherStaging staging(*db);
        VoucherPosting posting(*db, QStringLiteral("BENCH"), QDate::currentDate());
        for (int i = 0; i < saves; ++i) {
            const QString type = i % 2 ? QStringLiteral("JV") : QStringLiteral("CP");
            const VoucherKey key{type, Ledger::nextVoucherNo(*db, type), QDate::currentDate()};
            QElapsedTimer t;
            t.start();
            staging.clear();
            qint64 sr = 0;
            const Money amount = Money::fromCents(rng.bounded(100, 10000000));
            auto line = [&](const QString &side) {
                LineInput in;
                in.partyCode = accounts.at(rng.bounded(int(accounts.size())));
                in.partyName = in.partyCode;
                in.amount = amount;
                in.side = side;
                in.description = QStringLiteral("BENCH");
                staging.addLine(key, in, sr);
            };
            line(QStringLiteral("DR"));
            line(type == QLatin1String("CP") ? QStringLiteral("DR") : QStringLiteral("CR"));
            stageMs.push_back(t.nsecsElapsed() / 1e6 / 2);
            t.restart();
            const Outcome o = posting.saveNew(key, NumberPolicy::Proposed);
            saveMs.push_back(t.nsecsElapsed() / 1e6);
            if (!o.ok) {
                out << "save refused: " << o.message << "\n";
                return 1;
            }
        }

        // Balances: any account, and the cash account (the busiest).
        std::vector<double> balanceMs, cashMs;
        for (int i = 0; i < lookups; ++i) {
            const QString code = accounts.at(rng.bounded(int(accounts.size())));
            QElapsedTimer t;
            t.start();
            Ledger::accountBalance(*db, code);
            balanceMs.push_back(t.nsecsElapsed() / 1e6);
        }
        for (int i = 0; i < std::max(20, lookups / 50); ++i) {
            QElapsedTimer t;
            t.start();
            Ledger::accountBalance(*db, Ledger::kCashCode);
            cashMs.push_back(t.nsecsElapsed() / 1e6);
        }
        const qint64 cashRows = db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE PartyCode = ?"),
                                           {Ledger::kCashCode}).toLongLong();

        out << "\n";
        print(out, QStringLiteral("line staged"), stats(stageMs), 50);
        print(out, QStringLiteral("voucher save"), stats(saveMs), 50);
        print(out, QStringLiteral("account balance"), stats(balanceMs), 20);
        print(out, QStringLiteral("cash balance (%1 rows)").arg(cashRows), stats(cashMs), 20);
        db.reset();
        if (!parser.isSet(keepOpt))
            AccountYear::drop(profile, name);
    } catch (const DbError &e) {
        QTextStream(stderr) << "bench-vouchers: the database said: " << e.driverText() << "\n";
        return 1;
    } catch (const AccountYear::Error &e) {
        QTextStream(stderr) << "bench-vouchers: " << e.message() << "\n";
        return 1;
    }
    return 0;
}
