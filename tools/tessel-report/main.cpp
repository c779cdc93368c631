// tessel-report: renders a report of an account year to a PDF, XLSX or CSV
// file, without a screen.
#include "foundation/AccountYear.h"
#include "foundation/CommandLine.h"
#include "foundation/SessionConnection.h"
#include "reports/ReportExport.h"
#include "reports/ReportFrame.h"

#include <QCommandLineParser>
#include <QGuiApplication>
#include <QTextStream>

namespace {

int fail(const QString &message, int code = 1)
{
    QTextStream(stderr) << "tessel-report: " << message << "\n";
    return code;
}

bool parseDate(const QString &text, QDate &out)
{
    out = QDate::fromString(text.trimmed(), QStringLiteral("dd/MM/yyyy"));
    return out.isValid();
}

} // namespace

int main(int argc, char **argv)
{
    // Without a display, draw offscreen: the tool runs on servers and in CI.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY")
        && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tessel-report"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Renders a Tessel report to a file; the format follows the file's extension (.pdf, .xlsx, .csv).\n\n"
        "Example:\n"
        "  tessel-report --year Tessel2026 --design crVoucherListing --from 01/07/2025 --to 30/06/2026 \\\n"
        "                --where VoucherType=CP --title \"CP VOUCHER LISTING\" --out listing.pdf"));
    parser.addHelpOption();
    QCommandLineOption yearOpt(QStringLiteral("year"), QStringLiteral("Account year (database) to read."), QStringLiteral("name"));
    QCommandLineOption designOpt(QStringLiteral("design"), QStringLiteral("Report design, e.g. crVoucherListing."), QStringLiteral("name"));
    QCommandLineOption fromOpt(QStringLiteral("from"), QStringLiteral("Start of the report period, dd/mm/yyyy."), QStringLiteral("date"));
    QCommandLineOption toOpt(QStringLiteral("to"), QStringLiteral("End of the report period, dd/mm/yyyy."), QStringLiteral("date"));
    QCommandLineOption whereOpt(QStringLiteral("where"),
                                QStringLiteral("Selection FIELD=VALUE (also >=, <=, <, >, <>, ~ for a LIKE pattern); repeatable. "
                                               "Values dd/mm/yyyy are dates."),
                                QStringLiteral("condition"));
    QCommandLineOption titleOpt(QStringLiteral("title"), QStringLiteral("Report heading."), QStringLiteral("text"));
    QCommandLineOption outOpt(QStringLiteral("out"), QStringLiteral("Output file: .pdf, .xlsx or .csv."), QStringLiteral("file"));
    QCommandLineOption profileOpt(QStringLiteral("profile"), QStringLiteral("Connection profile (default: the embedded store)."), QStringLiteral("name"));
    QCommandLineOption configOpt(QStringLiteral("config"), QStringLiteral("Settings file (default: TESSEL_CONFIG or the user's config folder)."), QStringLiteral("file"));
    QCommandLineOption listOpt(QStringLiteral("list-designs"), QStringLiteral("List the shipped designs and stop."));
    parser.addOptions({yearOpt, designOpt, fromOpt, toOpt, whereOpt, titleOpt, outOpt, profileOpt, configOpt, listOpt});
    parser.process(app);

    if (parser.isSet(listOpt)) {
        QTextStream out(stdout);
        for (const QString &n : Reports::DesignCatalogue::shippedNames())
            out << n << "\n";
        return 0;
    }
    if (!parser.isSet(yearOpt) || !parser.isSet(designOpt) || !parser.isSet(outOpt))
        return fail(QStringLiteral("--year, --design and --out are needed (see --help)."), 2);

    // A year by its name: the file of the data folder, or the server's database.
    if (!AccountYear::isValidName(parser.value(yearOpt)))
        return fail(QStringLiteral("--year: \"%1\" is not an account-year name: it must begin with \"Tessel\" and "
                                   "hold only letters, digits and underscores.").arg(parser.value(yearOpt)), 2);

    Reports::ReportRequest req;
    req.design = parser.value(designOpt);
    req.title = parser.value(titleOpt);
    if (parser.isSet(fromOpt) && !parseDate(parser.value(fromOpt), req.from))
        return fail(QStringLiteral("--from: \"%1\" is not a date dd/mm/yyyy.").arg(parser.value(fromOpt)), 2);
    if (parser.isSet(toOpt) && !parseDate(parser.value(toOpt), req.to))
        return fail(QStringLiteral("--to: \"%1\" is not a date dd/mm/yyyy.").arg(parser.value(toOpt)), 2);
    if (req.from.isValid() && !req.to.isValid())
        req.to = QDate::currentDate();
    for (const QString &w : parser.values(whereOpt)) {
        const auto c = Reports::ReportCondition::parse(w);
        if (!c)
            return fail(QStringLiteral("--where: \"%1\" is not FIELD=VALUE.").arg(w), 2);
        req.conditions << *c;
    }

    ConnectionProfile profile;
    QString error;
    if (!CommandLine::resolveProfile(parser.value(profileOpt), parser.value(configOpt), profile, error))
        return fail(error, 2);
    const AppSettings settings = AppSettings::load(parser.isSet(configOpt) ? parser.value(configOpt) : AppSettings::defaultPath());

    try {
        auto db = SessionConnection::open(profile, parser.value(yearOpt));
        const Reports::DesignCatalogue catalogue(settings.designDir);
        QStringList warnings;
        catalogue.load(req.design, &warnings);
        for (const QString &w : warnings)
            QTextStream(stderr) << "tessel-report: the design was not used: " << w << "\n";
        // Streamed: the rows are read and the pages written as they come.
        Reports::ReportFrame::WrittenReport written;
        if (!Reports::ReportFrame::writeFile(*db, req, parser.value(outOpt), catalogue, &error, &written))
            return fail(error);
        QTextStream(stdout) << parser.value(outOpt) << ": " << written.pages << " page(s), " << written.rows
                            << " row(s)\n";
    } catch (const Reports::DesignError &e) {
        return fail(e.message());
    } catch (const DbError &e) {
        return fail(e.driverText());
    }
    return 0;
}
