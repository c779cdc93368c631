#pragma once

#include "foundation/Lookups.h"
#include "foundation/SessionConnection.h"
#include "reports/ReportDesign.h"

#include <QDate>
#include <QHash>
#include <QImage>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QVariant>
#include <QVector>
#include <functional>
#include <memory>
#include <optional>

class QPainter;

// The report frame. A screen asks for a report with a ReportRequest (which
// design, the heading, the selection, the period) and gets back a
// RenderedReport: the rows read, grouped and totalled, laid out on pages
// that the viewer shows, the printer prints and the exporters write.
//
//   ReportRequest req{"crVoucherListing", "VOUCHER LISTING"};
//   req.conditions << ReportCondition::equal("VoucherType", "CP");
//   req.from = from; req.to = to;
//   RenderedReport r = ReportFrame::render(db, req);
//   Reports::exportFile(r, "/tmp/listing.pdf", &error);
//
// Screens call showReport() (reports/ui/ShowReport.h) instead, which also
// opens the viewer.
namespace Reports {

// One condition of a selection: field, comparison, value. The value is
// bound, never written into the statement.
struct ReportCondition
{
    enum class Op { Equal, NotEqual, Less, LessOrEqual, Greater, GreaterOrEqual, Like };
    QString field;
    Op op = Op::Equal;
    QVariant value;
    // The value is text as a user typed it (a command line): the frame
    // takes it as the column's type, a number for a number and a date for
    // a date, and refuses text that does not fit.
    bool asTyped = false;

    static ReportCondition equal(const QString &f, const QVariant &v) { return {f, Op::Equal, v}; }
    static ReportCondition notEqual(const QString &f, const QVariant &v) { return {f, Op::NotEqual, v}; }
    static ReportCondition atLeast(const QString &f, const QVariant &v) { return {f, Op::GreaterOrEqual, v}; }
    static ReportCondition atMost(const QString &f, const QVariant &v) { return {f, Op::LessOrEqual, v}; }
    static ReportCondition less(const QString &f, const QVariant &v) { return {f, Op::Less, v}; }
    static ReportCondition greater(const QString &f, const QVariant &v) { return {f, Op::Greater, v}; }
    static ReportCondition like(const QString &f, const QVariant &v) { return {f, Op::Like, v}; }

    // "FIELD=VALUE", "FIELD>=VALUE", "FIELD<VALUE", "FIELD~PATTERN" (like),
    // with the value as typed (asTyped). Returns nothing for text of
    // another shape.
    static std::optional<ReportCondition> parse(const QString &text);
    QString opText() const;
};

struct ReportRequest
{
    QString design;          // catalogue name, e.g. "crSingleVoucher"
    QString title;           // the viewer's title
    QString heading;         // printed heading; empty: the title, then the design's own
    QVector<ReportCondition> conditions;
    QDate from;              // report period; a single-date report leaves `from` empty
    QDate to;                //   (it reads from 01/01/1900)
    QString fromText;        // the period as typed, for the period line; empty: from/to
    QString toText;
    QString source;          // another source than the design's (rare)
    bool writePeriodRow = true; // also write SDate/EDate of tblTLClientInfo, as the views of old read them
    // The letterhead to print (the working title's); empty: the one stored
    // with the year in tblTLClientInfo.
    std::optional<Lookups::Letterhead> letterhead;
    // The copy a document is ("ORIGINAL", "DUPLICATE"), printed under the
    // heading; empty prints nothing.
    QString copyCaption;
    // The signature captions to print instead of the design's (a line
    // break in a caption prints a second line under it); empty: the
    // design's.
    QStringList signatures;

    // A period needs its end; a start alone is no period.
    bool hasPeriod() const { return to.isValid(); }
};

// The letterhead and credit texts of the page header.
struct HeaderTexts
{
    QString clientName, clientAddress, clientPhone, clientEmail, clientSaleTaxNo, clientNTN;
    QString companyName, contact;   // the program's own credit lines
    // By the design's text object names (TLClientName ... TLContact).
    QHash<QString, QString> byName() const;
};

// The program's own credit lines.
QString creditCompanyName();
QString creditContact();

// One printed line of a report.
struct ReportLine
{
    enum class Kind { GroupHeader, Detail, GroupFooter, Total };
    Kind kind = Kind::Detail;
    int level = 0;                 // group level (0 outermost); detail: number of groups
    QString label;                 // group header/footer and total caption
    QVector<QVariant> values;      // per column: Money, QDate, qint64, double, QString, or null
    QStringList texts;             // per column, as printed
    int sourceRow = -1;            // detail: index into RenderedReport::rows
    bool emphasis = false;
};

struct LayoutData;
class RenderedReport;
namespace detail {
enum class PdfOutcome;
PdfOutcome writePdfFile(const RenderedReport &report, const QString &path, QString *error);
}

class RenderedReport
{
public:
    RenderedReport();
    ~RenderedReport();
    RenderedReport(RenderedReport &&) noexcept;
    RenderedReport &operator=(RenderedReport &&) noexcept;

    ReportDesign design;
    ReportRequest request;
    QString heading;               // as printed
    QString periodText;            // "FROM 01/07/2025 TO 30/06/2026", or empty
    QString asAtText;              // "AS AT 30/06/2026", or empty
    QString amountWords;           // a document's total in words, or empty
    HeaderTexts header;
    QImage logo;                   // null: no logo
    QueryResult rows;              // the rows read, in report order
    QVector<ReportLine> lines;
    QStringList warnings;          // a user design passed over, and why
    QDateTime printedAt;

    int pageCount() const;
    // A design with a chart gets one page more, after the table, when the
    // program has a chart painter (setChartPainter).
    bool hasChartPage() const;
    // Page size in points (1/72 inch).
    QSizeF pageSizePoints() const;
    // Paints page `page` (0-based) into `target`, a rectangle in the
    // painter's coordinates of the page's proportions.
    void paintPage(QPainter &painter, int page, const QRectF &target) const;
    // The report line under a point given in points on page `page`; -1
    // when none.
    int lineAt(int page, const QPointF &pointInPoints) const;
    // The report a double click on `line` opens, when the design links one.
    std::optional<ReportRequest> drillDown(int line) const;
    // The text of every page, one page after another (for searching and
    // tests).
    QStringList pageTexts() const;

    // Drops the page layout; the next call that needs pages lays them out
    // again (after changing lines by hand). Files without pages (CSV,
    // workbook) never lay out at all.
    void layout();

private:
    friend detail::PdfOutcome detail::writePdfFile(const RenderedReport &, const QString &, QString *);
    const LayoutData &pages() const;
    void paintChartPage(QPainter &painter, const QRectF &target) const;
    mutable std::unique_ptr<LayoutData> m_layout;
};

class ReportFrame
{
public:
    // Reads the design (the user's copy wins), the header texts, the rows
    // of the source matching the conditions, and lays out the pages.
    // Throws DesignError for a design fault or an unknown field, DbError
    // when the database refuses. An empty source gives an empty report.
    static RenderedReport render(SessionConnection &db, const ReportRequest &request,
                                 const DesignCatalogue &catalogue);
    // With the catalogue of the settings file's design folder.
    static RenderedReport render(SessionConnection &db, const ReportRequest &request);

    // Reads the rows and writes the report to `path` (.pdf, .csv, .xlsx)
    // without holding it: a PDF's rows become lines as they are read, the
    // lines wait in a spool file, and the pages are laid out and painted
    // one at a time, so a year's cash ledger takes the memory of a page.
    // The file is the one exportFile() writes of render(). A file that
    // cannot be written returns false with `error`; a design fault throws
    // DesignError and the database DbError, as render() does.
    struct WrittenReport
    {
        qint64 rows = 0;
        int pages = 0;   // 0 for a file without pages
    };
    static bool writeFile(SessionConnection &db, const ReportRequest &request, const QString &path,
                          QString *error, WrittenReport *written = nullptr);
    static bool writeFile(SessionConnection &db, const ReportRequest &request, const QString &path,
                          const DesignCatalogue &catalogue, QString *error, WrittenReport *written = nullptr);

    // The letterhead of this session: the logged-on session's, else the
    // row of tblTLClientInfo.
    static HeaderTexts headerTexts(SessionConnection &db, const std::optional<Lookups::Letterhead> &letterhead = {});
    // Logo.jpg beside the program; null when there is none.
    static QImage logo();
    // The user design folder of the settings file.
    static QString userDesignDir();
};

// The figures of a design's chart, read from a rendered report's rows:
// the categories (months), a series per row (the largest first; those
// beyond the design's limit added up as "OTHERS"), and each category's
// total over all rows.
struct ChartData
{
    DesignChart::Kind kind = DesignChart::Kind::Bar;
    QString heading;
    QString periodText;
    QString caption;
    QStringList categories;
    QStringList seriesNames;
    QVector<QVector<Money>> series;   // [series][category]
    QVector<Money> totals;            // [category]
    bool isEmpty() const { return series.isEmpty(); }
};
ChartData chartData(const RenderedReport &report);

// Draws a chart into `area` of a page (the screens install one drawn with
// Qt Charts; without one a report has no chart page).
using ChartPainter = std::function<void(QPainter &, const QRectF &area, const ChartData &)>;
void setChartPainter(ChartPainter painter);
bool hasChartPainter();

// An amount in words, as under a voucher's total:
// "ONE THOUSAND TWO HUNDRED THIRTY-FOUR AND 50/100 ONLY".
QString amountInWords(const Money &amount);

// The views and tables a design may read: the program's views and the
// tables its own designs name. Anything else (the users' table, say) is
// refused.
bool isReportSource(const QString &name);

// Formats a value as a column prints it.
QString formatValue(const QVariant &value, FieldFormat format, int decimals = 2, bool blankZero = false);

} // namespace Reports
