// bench-report: how long a long report takes, and how much memory.
//
//   bench-report [rows]
//     Makes a throwaway account year of N ledger rows on the embedded
//     store, renders the voucher listing of all of them to PDF, and lays
//     out and draws its first page as the viewer does.
//   bench-report --year NAME [--profile P] --ledger CODE|busiest [--out f.pdf|.csv|.xlsx]
//     The ledger of one account of an existing year (CASH IN HAND is
//     19-10-001; "busiest" takes the party with most rows) to a file.
//
// Prints the figures, with the peak memory of the process; it tests
// nothing.
#include "foundation/AccountYear.h"
#include "foundation/CommandLine.h"
#include "reports/LedgerStatements.h"
#include "foundation/SessionConnection.h"
#include "reports/ReportExport.h"
#include "reports/ReportFrame.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>
#include <QTextStream>
#include <ctime>
#include <sys/resource.h>

namespace {
// Processor time of this process, in ms: on a busy machine the wall clock
// says more about the neighbours than about the report.
qint64 cpuMs() { return qint64(std::clock()) * 1000 / CLOCKS_PER_SEC; }

// The most memory the process has held so far, in MiB.
qint64 peakMiB()
{
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return qint64(u.ru_maxrss) / 1024;
}

int ledgerOfYear(const QStringList &args)
{
    QTextStream out(stdout);
    auto value = [&](const char *name) {
        const int i = args.indexOf(QLatin1String(name));
        return i >= 0 ? args.value(i + 1) : QString();
    };
    ConnectionProfile profile;
    QString error;
    if (!CommandLine::resolveProfile(value("--profile"), QString(), profile, error)) {
        out << error << "\n";
        return 2;
    }
    auto db = SessionConnection::open(profile, value("--year"));
    QString code = value("--ledger");
    QElapsedTimer t;
    t.start();
    if (code == QLatin1String("busiest")) {
        const auto row = db->selectOne(QStringLiteral("SELECT PartyCode, COUNT(*) AS n FROM tblPartyBalance "
                                                      "WHERE PartyCode >= ? AND PartyCode <= ? GROUP BY PartyCode "
                                                      "ORDER BY n DESC LIMIT 1"),
                                       {LedgerStatements::kPartiesFrom, LedgerStatements::kPartiesTo});
        code = row ? row->text(0).trimmed() : QString();
        out << "busiest party " << code << " (" << (row ? row->integer(1) : 0) << " rows), found in " << t.elapsed() << " ms\n";
    }
    const auto name = db->selectOne(QStringLiteral("SELECT PartyName FROM tblPartyInfo WHERE PartyCode = ?"), {code});
    const auto period = db->selectOne(QStringLiteral("SELECT MIN(VDate), MAX(VDate) FROM tblPartyBalance"));
    const auto req = LedgerStatements::ledger(LedgerStatements::LedgerKind::Ledger, code, name ? name->text(0).trimmed() : code,
                                              LedgerStatements::Period::of(period->date(0), period->date(1)));
    const QString path = !value("--out").isEmpty() ? value("--out")
                                                   : QDir::temp().filePath(QStringLiteral("bench-ledger-%1.pdf").arg(code));
    // The bare statement the frame runs, for comparison: the rows as the
    // connection hands them over, nothing grouped or laid out.
    {
        db->setReportPeriod(req.from, req.to);
        t.restart();
        const qint64 n = db->select(QStringLiteral("SELECT * FROM Ledger WHERE PartyCode = ? ORDER BY PartyCode, LineKind, VDate, SrNo"),
                                    {code}).size();
        out << "bare SELECT of the ledger view: " << n << " rows in " << t.elapsed() << " ms; peak memory " << peakMiB() << " MiB\n";
        db->setReportPeriod(QDate(), QDate());
    }
    const qint64 before = peakMiB();
    t.restart();
    const qint64 cpu = cpuMs();
    Reports::ReportFrame::WrittenReport written;
    if (!Reports::ReportFrame::writeFile(*db, req, path, Reports::DesignCatalogue(), &error, &written)) {
        out << "failed: " << error << "\n";
        return 1;
    }
    out << "ledger of " << code << ": " << written.rows << " rows; " << QFileInfo(path).suffix() << " written after "
        << t.elapsed() << " ms (" << cpuMs() - cpu << " ms of processor time)";
    if (written.pages > 0)
        out << ", " << written.pages << " pages";
    out << "; peak memory " << peakMiB() << " MiB (" << before << " MiB before the report)\n";
    return 0;
}
} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    if (app.arguments().contains(QLatin1String("--year"))) {
        try {
            return ledgerOfYear(app.arguments());
        } catch (const DbError &e) {
            QTextStream(stderr) << e.driverText() << "\n";
            return 1;
        } catch (const Reports::DesignError &e) {
            QTextStream(stderr) << e.message() << "\n";
            return 1;
        }
    }
    const int rows = argc > 1 ? QString::fromLocal8Bit(argv[1]).toInt() : 10000;
    QTextStream out(stdout);

    QTemporaryDir dir;
    ConnectionProfile profile = ConnectionProfile::embeddedDefault();
    profile.dataDir = dir.path();
    AccountYear::CreateOptions o;
    o.adminPassword = QStringLiteral("bench");
    o.companyName = QStringLiteral("BENCH PRINTERS");
    const QString name = QStringLiteral("Tessel_bench");
    AccountYear::create(profile, name, o);
    auto db = SessionConnection::open(profile, name);

    QElapsedTimer t;
    t.start();
    {
        Transaction tx(*db);
        for (int i = 0; i < rows; ++i) {
            const int voucher = i / 2 + 1;
            const QDate d = QDate(2026, 1, 1).addDays(voucher % 360);
            const Money amount = Money::fromCents(10000 + (voucher * 7919) % 9000000);
            const bool debit = i % 2 == 0;
            db->execute(QStringLiteral("INSERT INTO tblPartyBalance (VoucherType, VoucherNo, VDate, InvoiceNo, PartyCode, "
                                       "PartyName, PartyDR, PartyCR, PartyBalance, PartyDesc, CareOf, UserName, EntryDate) "
                                       "VALUES ('JV', ?, ?, ?, ?, ?, ?, ?, ?, ?, '', 'BENCH', ?)"),
                        {voucher, d, QString::number(voucher),
                         debit ? QStringLiteral("21-10-001") : QStringLiteral("19-10-001"),
                         debit ? QStringLiteral("PRINTING EXPENSE") : QStringLiteral("CASH IN HAND"),
                         (debit ? amount : Money()).toVariant(), (debit ? Money() : amount).toVariant(),
                         (debit ? amount : -amount).toVariant(), QStringLiteral("BENCHMARK LINE %1").arg(voucher), d});
        }
        tx.commit();
    }
    out << "seeded " << rows << " ledger rows in " << t.elapsed() << " ms\n";

    Reports::ReportRequest req;
    req.design = QStringLiteral("crVoucherListing");
    req.title = QStringLiteral("VOUCHER LISTING");
    req.from = QDate(2026, 1, 1);
    req.to = QDate(2026, 12, 31);
    req.conditions << Reports::ReportCondition::atLeast(QStringLiteral("VDate"), req.from)
                   << Reports::ReportCondition::atMost(QStringLiteral("VDate"), req.to);

    t.restart();
    qint64 cpu = cpuMs();
    Reports::RenderedReport r = Reports::ReportFrame::render(*db, req, Reports::DesignCatalogue());
    const qint64 renderMs = t.elapsed();
    QImage page(int(r.pageSizePoints().width() * 96 / 72), int(r.pageSizePoints().height() * 96 / 72), QImage::Format_RGB32);
    page.fill(Qt::white);
    {
        QPainter p(&page);
        r.paintPage(p, 0, QRectF(0, 0, page.width(), page.height()));
    }
    const qint64 firstPageMs = t.elapsed();
    const qint64 firstPageCpu = cpuMs() - cpu;
    out << "read, grouped and laid out " << r.rows.size() << " rows on " << r.pageCount() << " pages: " << renderMs
        << " ms; first page on screen after " << firstPageMs << " ms, " << firstPageCpu
        << " ms of processor time (aim: under 1000)\n";

    t.restart();
    cpu = cpuMs();
    QString error;
    const QString pdf = dir.filePath(QStringLiteral("bench.pdf"));
    if (!Reports::exportPdf(r, pdf, &error)) {
        out << "PDF failed: " << error << "\n";
        return 1;
    }
    const qint64 pdfMs = t.elapsed();
    const qint64 pdfCpu = cpuMs() - cpu;
    out << "PDF of " << r.pageCount() << " pages: " << pdfMs << " ms; from the query to the file: "
        << renderMs + pdfMs << " ms, " << firstPageCpu + pdfCpu << " ms of processor time (aim: under 2000), "
        << QFileInfo(pdf).size() / 1024 << " KiB\n";

    t.restart();
    Reports::exportXlsx(r, dir.filePath(QStringLiteral("bench.xlsx")), &error);
    out << "XLSX: " << t.elapsed() << " ms; peak memory " << peakMiB() << " MiB\n";
    return 0;
}
