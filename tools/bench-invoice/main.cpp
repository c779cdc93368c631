// bench-invoice: the time of saving a 20-line sales-tax invoice on a
// ledger of a million rows, beside the bare inserts of the same rows.
//
//   bench-invoice [--rows 1000000] [--saves 200] [--lines 20] [--data-dir DIR] [--keep]
//
// Builds a demonstration year of the given size in a scratch folder of the
// embedded store (or uses the one an earlier --keep run left), then saves
// invoices as the invoice screen does (lines staged, then the save in one
// transaction: checks, number, the SV voucher, the lines, staging emptied)
// and prints the median and the 95th percentile. The bare figure is the
// same two ledger rows and lines written by plain INSERTs in a transaction
// that is rolled back.
#include "foundation/AccountYear.h"
#include "foundation/ConnectionProfile.h"
#include "foundation/LineStaging.h"
#include "foundation/SessionConnection.h"
#include "sales/InvoicePosting.h"
#include "sales/InvoiceStaging.h"
#include "vouchers/DemoGenerator.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
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

QString line(const QString &what, const Stats &s)
{
    return QStringLiteral("%1  median %2 ms  p95 %3 ms  max %4 ms\n")
        .arg(what, -30)
        .arg(s.median, 7, 'f', 2)
        .arg(s.p95, 7, 'f', 2)
        .arg(s.max, 7, 'f', 2);
}

QVector<InvoiceLine> invoiceLines(int n, int seed)
{
    QVector<InvoiceLine> lines;
    for (int i = 0; i < n; ++i) {
        InvoiceLine l;
        l.termsOfSale = i % 3 ? QStringLiteral("CREDIT SALE") : QStringLiteral("CASH SALE");
        l.description = QStringLiteral("BENCH ITEM %1").arg(i + 1);
        l.quantity = QString::number(100 + (seed * 7 + i * 13) % 900);
        l.rate = QStringLiteral("%1.5").arg(1 + (seed + i) % 40);
        l.saleTaxRate = QStringLiteral("17");
        l.type = QStringLiteral("Pcs");
        InvoiceRules::computeFigures(l);
        lines << l;
    }
    return lines;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Invoice save times on a large ledger."));
    parser.addHelpOption();
    QCommandLineOption rowsOpt(QStringLiteral("rows"), QStringLiteral("Ledger rows (default 1000000)."),
        QStringLiteral("n"), QStringLiteral("1000000"));
    QCommandLineOption savesOpt(QStringLiteral("saves"), QStringLiteral("Invoices to save (default 200)."),
        QStringLiteral("n"), QStringLiteral("200"));
    QCommandLineOption linesOpt(QStringLiteral("lines"), QStringLiteral("Lines an invoice (default 20)."),
        QStringLiteral("n"), QStringLiteral("20"));
    QCommandLineOption dirOpt(QStringLiteral("data-dir"),
        QStringLiteral("Folder of the scratch year (default: the temp folder)."), QStringLiteral("dir"));
    QCommandLineOption keepOpt(QStringLiteral("keep"), QStringLiteral("Keep the year for the next run."));
    parser.addOptions({rowsOpt, savesOpt, linesOpt, dirOpt, keepOpt});
    parser.process(app);

    QTextStream out(stdout);
    const qint64 rows = parser.value(rowsOpt).toLongLong();
    const int saves = parser.value(savesOpt).toInt();
    const int lineCount = parser.value(linesOpt).toInt();
    ConnectionProfile profile = ConnectionProfile::embeddedDefault();
    profile.dataDir
        = parser.isSet(dirOpt) ? parser.value(dirOpt) : QDir::temp().filePath(QStringLiteral("tessel-bench-invoice"));
    QDir().mkpath(profile.dataDir);
    const QString name = QStringLiteral("TesselBenchInvoice%1").arg(rows);
    const QDate today = QDate::currentDate();

    try {
        if (!QFileInfo::exists(QDir(profile.dataDir).filePath(name + QStringLiteral(".sqlite")))) {
            out << "Building " << name << " with " << rows << " ledger rows in " << profile.dataDir << " ...\n";
            out.flush();
            AccountYear::CreateOptions o;
            o.adminPassword = QStringLiteral("bench");
            o.closingDate = today.addDays(-366);
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
        out << "Ledger rows: " << db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")).toLongLong()
            << ", invoice lines: " << db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblInvoice")).toLongLong()
            << "\n";
        const auto customer = db->selectOne(QStringLiteral("SELECT PartyCode, PartyName FROM tblPartyInfo WHERE "
                                                           "PartyCode >= '17-10-001' AND PartyCode <= '18-99-999' AND "
                                                           "PartyCode NOT LIKE '__-__-000%' ORDER BY PartyCode"));
        if (!customer) {
            out << "The year has no customer.\n";
            return 1;
        }
        const QString title = QStringLiteral("BENCH");

        // Saves as the screen makes them: the lines staged one by one, then
        // the save.
        std::vector<double> stageMs, saveMs, bareMs;
        InvoicePosting posting(*db, QStringLiteral("BENCH"), today);
        for (int i = 0; i < saves; ++i) {
            InvoiceHeader h;
            h.key = {title, InvoiceLookups::nextInvoiceNo(*db, title), today};
            h.partyCode = customer->text(0).trimmed();
            h.partyName = customer->text(1).trimmed();
            StagedLines<InvoiceLine> staged({[](SessionConnection &c) { InvoiceStaging(c).clear(); },
                [&h](SessionConnection &c, const InvoiceLine &l) { InvoiceStaging(c).put(h, l); }});
            QElapsedTimer t;
            t.start();
            for (const InvoiceLine &l : invoiceLines(lineCount, i))
                staged.add(*db, l);
            stageMs.push_back(t.nsecsElapsed() / 1e6);
            t.restart();
            const Outcome o = posting.saveNew(h, staged.all(), NumberPolicy::Proposed);
            saveMs.push_back(t.nsecsElapsed() / 1e6);
            if (!o) {
                out << "Refused: " << o.message << "\n";
                return 1;
            }
        }

        // The bare inserts of the same rows, rolled back.
        const QVector<InvoiceLine> lines = invoiceLines(lineCount, 1);
        const Money net = InvoiceRules::netAmount(lines);
        for (int i = 0; i < saves; ++i) {
            QElapsedTimer t;
            t.start();
            {
                Transaction tx(*db); // never committed: rolled back as it goes
                for (int side = 0; side < 2; ++side)
                    db->execute(
                        QStringLiteral("INSERT INTO tblPartyBalance (VoucherType, VoucherNo, VDate, PartyCode, "
                                       "PartyName, PartyDR, PartyCR, PartyBalance, PartyDesc) VALUES ('SV', ?, ?, ?, "
                                       "?, ?, ?, ?, 'CASH SALE, ')"),
                        {900000 + i, today, side ? QStringLiteral("20-10-002") : customer->text(0),
                            side ? QStringLiteral("INVOICE BALANCE") : customer->text(1),
                            (side ? Money() : net).toVariant(), (side ? net : Money()).toVariant(),
                            (side ? -net : net).toVariant()});
                for (const InvoiceLine &l : lines)
                    db->execute(
                        QStringLiteral("INSERT INTO tblInvoice (TermsOfSale, InvoiceNo, InvoiceDate, PartyCode, "
                                       "PartyName, Description, Quantity, Rate, Price, RateOfSaleTax, SaleTaxPayable, "
                                       "ValueIncludingTax, TitleName) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
                        {l.termsOfSale, 900000 + i, today, customer->text(0), customer->text(1), l.description,
                            l.quantity, l.rate, l.price.toVariant(), l.saleTaxRate, l.saleTax.toVariant(),
                            l.valueWithTax.toVariant(), QStringLiteral("BARE")});
            }
            bareMs.push_back(t.nsecsElapsed() / 1e6);
        }

        out << QStringLiteral("%1 invoices of %2 lines, embedded store\n").arg(saves).arg(lineCount);
        out << line(QStringLiteral("staging the lines"), stats(stageMs));
        const Stats s = stats(saveMs);
        out << line(QStringLiteral("save (one transaction)"), s);
        out << line(QStringLiteral("bare inserts, rolled back"), stats(bareMs));
        out << QStringLiteral("aim: p95 of the save under 100 ms: %1\n")
                   .arg(s.p95 < 100 ? QStringLiteral("ok") : QStringLiteral("SLOW"));

        // The saved invoices go again, so the year can be measured anew.
        for (const Row &r : db->select(
                 QStringLiteral("SELECT DISTINCT InvoiceNo, InvoiceDate FROM tblInvoice WHERE TitleName = ?"), {title}))
            posting.deleteInvoice({title, r.integer(0), r.date(1)});
        db.reset();
        if (!parser.isSet(keepOpt))
            AccountYear::drop(profile, name);
    } catch (const DbError &e) {
        out << "Database error: " << e.driverText() << "\n";
        return 1;
    }
    return 0;
}
