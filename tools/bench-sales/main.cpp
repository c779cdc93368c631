// bench-sales: the time of the sale register of a year to PDF, beside the
// bare SELECT that reads the same figures.
//
//   bench-sales [--invoices 30000] [--runs 3] [--data-dir DIR] [--keep] [--out register.pdf]
//
// Builds a year on the embedded store in a scratch folder (or uses the one
// an earlier --keep run left): a chart of customers and the given number of
// invoices of one to four lines spread over the year, each saved with its
// SV voucher by the invoice rules. Then renders the register of all titles
// for the whole year through the report frame and writes it to PDF, and
// runs the bare grouped SELECT of the invoice lines for comparison.
#include "foundation/AccountYear.h"
#include "foundation/ConnectionProfile.h"
#include "foundation/SessionConnection.h"
#include "reports/ReportExport.h"
#include "reports/ReportFrame.h"
#include "sales/InvoicePosting.h"
#include "sales/SalesReports.h"
#include "vouchers/DemoGenerator.h"

#include <QCommandLineParser>
#include <QGuiApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTextStream>
#include <algorithm>
#include <vector>

namespace {

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v.empty() ? 0 : v[v.size() / 2];
}

double least(const std::vector<double> &v)
{
    return v.empty() ? 0 : *std::min_element(v.begin(), v.end());
}

// Invoices through the rules, in one transaction: the chart's customers in
// turn, one to four lines each, dates spread over the year.
void makeInvoices(SessionConnection &db, int count, const QDate &from, const QDate &to, QTextStream &out)
{
    QVector<QPair<QString, QString>> customers;
    for (const Row &r : db.select(QStringLiteral("SELECT PartyCode, PartyName FROM tblPartyInfo WHERE PartyCode >= "
                                                 "'17-10-001' AND PartyCode <= '18-99-999' AND PartyCode NOT LIKE "
                                                 "'__-__-000%' ORDER BY PartyCode")))
        customers.append({r.text(0).trimmed(), r.text(1).trimmed()});
    if (customers.isEmpty())
        throw DbError(QStringLiteral("The year has no customer."));
    const QStringList titles{QStringLiteral("TESSEL PRINTERS"), QStringLiteral("TESSEL PACKAGES")};
    const qint64 days = std::max<qint64>(1, from.daysTo(to));
    InvoicePosting posting(db, QStringLiteral("BENCH"), to);
    Transaction tx(db);
    for (int i = 0; i < count; ++i) {
        InvoiceHeader h;
        h.key = {titles.at(i % 2), i / 2 + 1, from.addDays(days * i / count)};
        h.partyCode = customers.at(i % customers.size()).first;
        h.partyName = customers.at(i % customers.size()).second;
        QVector<InvoiceLine> lines;
        for (int k = 0; k <= i % 4; ++k) {
            InvoiceLine l;
            l.termsOfSale = i % 3 ? QStringLiteral("CREDIT SALE") : QStringLiteral("CASH SALE");
            l.description = QStringLiteral("BENCH ITEM %1").arg(k + 1);
            l.quantity = QString::number(100 + (i * 7 + k * 13) % 900);
            l.rate = QStringLiteral("%1.5").arg(1 + (i + k) % 40);
            l.saleTaxRate = QStringLiteral("17");
            l.type = QStringLiteral("Pcs");
            InvoiceRules::computeFigures(l);
            lines << l;
        }
        const Outcome o = posting.saveNew(h, lines, NumberPolicy::Typed);
        if (!o)
            throw DbError(QStringLiteral("An invoice was refused: %1").arg(o.message));
        if ((i + 1) % 5000 == 0) {
            out << "  " << i + 1 << " invoices\n";
            out.flush();
        }
    }
    tx.commit();
}

} // namespace

int main(int argc, char **argv)
{
    // Pages are laid out with fonts: a GUI application, drawn off screen.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("The sale register of a year to PDF."));
    parser.addHelpOption();
    QCommandLineOption invoicesOpt(QStringLiteral("invoices"), QStringLiteral("Invoices of the year (default 30000)."),
        QStringLiteral("n"), QStringLiteral("30000"));
    QCommandLineOption runsOpt(QStringLiteral("runs"), QStringLiteral("Runs of each measure (default 3)."),
        QStringLiteral("n"), QStringLiteral("3"));
    QCommandLineOption dirOpt(QStringLiteral("data-dir"),
        QStringLiteral("Folder of the scratch year (default: the temp folder)."), QStringLiteral("dir"));
    QCommandLineOption keepOpt(QStringLiteral("keep"), QStringLiteral("Keep the year for the next run."));
    QCommandLineOption outOpt(QStringLiteral("out"), QStringLiteral("Keep the PDF under this name."),
        QStringLiteral("file"));
    parser.addOptions({invoicesOpt, runsOpt, dirOpt, keepOpt, outOpt});
    parser.process(app);

    QTextStream out(stdout);
    const int invoices = parser.value(invoicesOpt).toInt();
    const int runs = std::max(1, parser.value(runsOpt).toInt());
    ConnectionProfile profile = ConnectionProfile::embeddedDefault();
    profile.dataDir
        = parser.isSet(dirOpt) ? parser.value(dirOpt) : QDir::temp().filePath(QStringLiteral("tessel-bench-sales"));
    QDir().mkpath(profile.dataDir);
    const QString name = QStringLiteral("TesselBenchSales%1").arg(invoices);
    const QString file = QDir(profile.dataDir).filePath(name + QStringLiteral(".sqlite"));
    const QDate to(2026, 12, 31);
    const QDate from(2026, 1, 1);
    int status = 0;

    try {
        if (!QFileInfo::exists(file)) {
            out << "Building " << name << " in " << profile.dataDir << " ...\n";
            out.flush();
            AccountYear::CreateOptions o;
            o.adminPassword = QStringLiteral("bench");
            o.closingDate = from.addDays(-1);
            AccountYear::create(profile, name, o);
            auto s = SessionConnection::open(profile, name);
            DemoOptions d;
            d.rows = 400;
            d.from = from;
            d.to = to;
            DemoGenerator g(*s, d);
            g.addPart(QStringLiteral("chart"), &DemoGenerator::chartPart);
            g.run();
            QElapsedTimer t;
            t.start();
            makeInvoices(*s, invoices, from, to, out);
            out << "  " << invoices << " invoices in " << QString::number(t.elapsed() / 1000.0, 'f', 1) << " s\n";
        }

        auto db = SessionConnection::open(profile, name);
        out << "Invoice lines: " << db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblInvoice")).toLongLong()
            << ", invoices: "
            << db->scalar(QStringLiteral("SELECT COUNT(*) FROM (SELECT DISTINCT TitleName, InvoiceNo, InvoiceDate "
                                         "FROM tblInvoice) x")).toLongLong()
            << "\n";

        const SalesReports::Built b = SalesReports::saleRegister(SalesReports::SaleRegisterOption::AllTitles,
            SalesReports::Period::of(from, to), QString(), QString());
        QTemporaryDir scratch;
        const QString pdf = parser.isSet(outOpt) ? parser.value(outOpt) : scratch.filePath(QStringLiteral("r.pdf"));
        std::vector<double> renderMs, pdfMs, totalMs, bareMs;
        int rows = 0, pages = 0;
        for (int run = 0; run < runs; ++run) {
            QElapsedTimer t;
            t.start();
            Reports::RenderedReport r = Reports::ReportFrame::render(*db, b.request, Reports::DesignCatalogue());
            renderMs.push_back(t.nsecsElapsed() / 1e6);
            QElapsedTimer p;
            p.start();
            QString error;
            if (!Reports::exportPdf(r, pdf, &error)) {
                out << "PDF failed: " << error << "\n";
                return 1;
            }
            pdfMs.push_back(p.nsecsElapsed() / 1e6);
            totalMs.push_back(t.nsecsElapsed() / 1e6);
            rows = r.rows.size();
            pages = r.pageCount();

            // The bare figures: the same grouping of the invoice lines.
            t.restart();
            const QueryResult bare = db->select(
                QStringLiteral("SELECT TitleName, InvoiceNo, InvoiceDate, PartyCode, MIN(PartyName), COUNT(*), "
                               "SUM(Price), SUM(SaleTaxPayable), SUM(ValueIncludingTax) FROM tblInvoice WHERE "
                               "InvoiceDate >= ? AND InvoiceDate <= ? GROUP BY TitleName, InvoiceNo, InvoiceDate, "
                               "PartyCode ORDER BY PartyCode, InvoiceDate, TitleName, InvoiceNo"),
                {from, to});
            bareMs.push_back(t.nsecsElapsed() / 1e6);
            if (bare.size() != rows) {
                out << "The register has " << rows << " lines, the bare SELECT " << bare.size() << "\n";
                status = 1;
            }
        }
        out << QStringLiteral("Sale register %1 to %2, all titles: %3 lines, %4 pages; min and median of %5 runs\n")
                   .arg(from.toString(QStringLiteral("dd/MM/yyyy")), to.toString(QStringLiteral("dd/MM/yyyy")))
                   .arg(rows)
                   .arg(pages)
                   .arg(runs);
        const auto row = [&out](const QString &what, const std::vector<double> &ms) {
            out << QStringLiteral("%1 %2 ms %3 ms\n").arg(what, -34).arg(least(ms), 9, 'f', 1).arg(median(ms), 9, 'f', 1);
        };
        row(QStringLiteral("read and group (report frame)"), renderMs);
        row(QStringLiteral("lay out and write the PDF"), pdfMs);
        row(QStringLiteral("register to PDF, in all"), totalMs);
        row(QStringLiteral("bare SELECT"), bareMs);
        out << QStringLiteral("aim: the register to PDF under 2 s: %1\n")
                   .arg(least(totalMs) < 2000 ? QStringLiteral("ok") : QStringLiteral("SLOW"));
    } catch (const std::exception &e) {
        out << "Failed: " << e.what() << "\n";
        status = 1;
    }
    if (!parser.isSet(keepOpt)) {
        QFile::remove(file);
        for (const char *suffix : {"-wal", "-shm"})
            QFile::remove(file + QLatin1String(suffix));
    }
    return status;
}
