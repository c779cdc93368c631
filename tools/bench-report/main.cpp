// bench-report: how long a long report takes. Makes a throwaway account
// year of N ledger rows on the embedded store, renders the voucher
// listing of all of them to PDF, and lays out and draws its first page as
// the viewer does. Prints the figures; it tests nothing.
#include "foundation/AccountYear.h"
#include "foundation/SessionConnection.h"
#include "reports/ReportExport.h"
#include "reports/ReportFrame.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>
#include <QTextStream>
#include <ctime>

namespace {
// Processor time of this process, in ms: on a busy machine the wall clock
// says more about the neighbours than about the report.
qint64 cpuMs() { return qint64(std::clock()) * 1000 / CLOCKS_PER_SEC; }
} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
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
    out << "XLSX: " << t.elapsed() << " ms\n";
    return 0;
}
