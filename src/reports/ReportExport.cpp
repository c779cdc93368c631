#include "reports/ReportExport.h"
#include "reports/ReportFrame.h"
#include "reports/ReportStream.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPainter>
#include <QPdfWriter>
#include <QPen>
#include <QSaveFile>
#include <xlsxwriter.h>

namespace Reports {

bool paintReport(const RenderedReport &report, QPagedPaintDevice &device, QString *error, int first, int last)
{
    const int count = report.pageCount();
    if (first <= 0) first = 1;
    if (last <= 0 || last > count) last = count;
    QPainter p;
    if (!p.begin(&device)) {
        if (error)
            *error = QStringLiteral("The output cannot be opened for drawing.");
        return false;
    }
    // A half-page document goes two to a sheet when the sheet is tall
    // enough (A4 portrait); on a half-size sheet, one to a sheet.
    const bool twoUp = report.design.halfPage && device.height() > device.width() * 1.2;
    const int perSheet = twoUp ? 2 : 1;
    for (int i = first; i <= last; i += perSheet) {
        if (i > first)
            device.newPage();
        const QRectF sheet(0, 0, device.width(), device.height());
        p.fillRect(sheet, Qt::white);
        if (!twoUp) {
            report.paintPage(p, i - 1, sheet);
            continue;
        }
        const qreal half = sheet.height() / 2;
        report.paintPage(p, i - 1, QRectF(0, 0, sheet.width(), half));
        if (i + 1 <= last) {
            p.save();
            p.setPen(QPen(QColor(150, 150, 150), 0, Qt::DashLine));
            p.drawLine(QPointF(0, half), QPointF(sheet.width(), half));
            p.restore();
            report.paintPage(p, i, QRectF(0, half, sheet.width(), half));
        }
    }
    p.end();
    return true;
}

bool detail::writeReplacing(const QString &path, QString *error, const std::function<bool(const QString &)> &write)
{
    const QString part = path + QStringLiteral(".part");
    QFile::remove(part);
    bool ok = false;
    try {
        ok = write(part);
    } catch (...) {
        QFile::remove(part);
        throw;
    }
    if (!ok) {
        QFile::remove(part);
        if (error)
            error->replace(QDir::toNativeSeparators(part), QDir::toNativeSeparators(path));
        return false;
    }
    if (QFile::exists(path) && !QFile::remove(path)) {
        QFile::remove(part);
        if (error)
            *error = QStringLiteral("%1: the file cannot be replaced").arg(QDir::toNativeSeparators(path));
        return false;
    }
    if (!QFile::rename(part, path)) {
        QFile::remove(part);
        if (error)
            *error = QStringLiteral("%1: the file cannot be written").arg(QDir::toNativeSeparators(path));
        return false;
    }
    return true;
}

namespace {

bool writePdf(const RenderedReport &report, const QString &path, QString *error)
{
    {
        QFile probe(path);
        if (!probe.open(QIODevice::WriteOnly)) {
            if (error)
                *error = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), probe.errorString());
            return false;
        }
    }
    switch (detail::writePdfFile(report, path, error)) {
    case detail::PdfOutcome::Written:
        return true;
    case detail::PdfOutcome::Failed:
        return false;
    case detail::PdfOutcome::NeedsPainter:
        break;
    }
    QPdfWriter pdf(path);
    detail::setUpPdfWriter(pdf, report);
    return paintReport(report, pdf, error);
}

} // namespace

bool exportPdf(const RenderedReport &report, const QString &path, QString *error)
{
    return detail::writeReplacing(path, error, [&](const QString &part) { return writePdf(report, part, error); });
}

void detail::setUpPdfWriter(QPdfWriter &pdf, const RenderedReport &report)
{
    pdf.setResolution(600);
    pdf.setPageSize(QPageSize(QPageSize::A4));
    pdf.setPageOrientation(report.design.landscape && !report.design.halfPage ? QPageLayout::Landscape
                                                                              : QPageLayout::Portrait);
    pdf.setPageMargins(QMarginsF(0, 0, 0, 0));
    pdf.setTitle(report.heading);
    pdf.setCreator(creditCompanyName());
}

// ------------------------------------------------------------ CSV

namespace {

QString csvField(const QString &s)
{
    if (s.contains(QLatin1Char(',')) || s.contains(QLatin1Char('"')) || s.contains(QLatin1Char('\n'))
        || s.contains(QLatin1Char('\r'))) {
        QString q = s;
        q.replace(QLatin1Char('"'), QStringLiteral("\"\""));
        return QLatin1Char('"') + q + QLatin1Char('"');
    }
    return s;
}

QString plainValue(const QVariant &v, FieldFormat f, int decimals)
{
    if (!v.isValid() || v.isNull())
        return QString();
    switch (f) {
    case FieldFormat::Money:
    case FieldFormat::Balance: return v.value<Money>().toPlainString();
    case FieldFormat::Number: {
        QString s = QString::number(v.toDouble(), 'f', decimals);
        if (s.contains(QLatin1Char('.'))) {
            while (s.endsWith(QLatin1Char('0'))) s.chop(1);
            if (s.endsWith(QLatin1Char('.'))) s.chop(1);
        }
        return s;
    }
    case FieldFormat::Integer: return QString::number(v.toLongLong());
    case FieldFormat::Date: return v.toDate().toString(QStringLiteral("dd/MM/yyyy"));
    case FieldFormat::Text: return v.toString();
    }
    return v.toString();
}

// The cells of a line as the sheet and the CSV take them: the label of a
// heading or a total goes into the first column that has no figure.
struct SheetLine
{
    QVector<QVariant> values;
    bool bold = false;
};

SheetLine sheetLine(const RenderedReport &r, const ReportLine &l)
{
    const ReportDesign &d = r.design;
    SheetLine s;
    s.values.resize(d.columns.size());
    s.bold = l.kind != ReportLine::Kind::Detail || l.emphasis;
    for (int i = 0; i < d.columns.size(); ++i) {
        const QVariant &v = l.values.value(i);
        // What the page leaves blank the file leaves blank too: a zero
        // of a blank-zero column (the voucher number 0 of an opening
        // line) is no figure.
        if (v.isValid() && !v.isNull() && !(l.kind == ReportLine::Kind::Detail && l.texts.value(i).isEmpty()))
            s.values[i] = v;
    }
    if (l.kind != ReportLine::Kind::Detail && !l.label.isEmpty()) {
        int at = 0;
        while (at < s.values.size() && s.values.at(at).isValid() && !s.values.at(at).isNull())
            ++at;
        if (at < s.values.size())
            s.values[at] = l.label;
    }
    return s;
}

// One line of the CSV, without its line end.
QString csvLine(const RenderedReport &r, const SheetLine &s)
{
    const ReportDesign &d = r.design;
    QStringList cells;
    for (int i = 0; i < d.columns.size(); ++i) {
        const QVariant &v = s.values.at(i);
        const DesignColumn &c = d.columns.at(i);
        const bool isLabel = v.metaType().id() == QMetaType::QString;
        if (c.format == FieldFormat::Balance) {
            // A balance is a plain amount with its side ("DR"/"CR") in a
            // column of its own, so that a spreadsheet can add it up.
            if (isLabel || !v.isValid() || v.isNull()) {
                cells << csvField(isLabel ? v.toString() : QString()) << QString();
            } else {
                const Money m = v.value<Money>();
                cells << m.abs().toPlainString()
                      << (m.isZero() ? QString() : (m.isNegative() ? QStringLiteral("CR") : QStringLiteral("DR")));
            }
            continue;
        }
        cells << csvField(isLabel ? v.toString() : plainValue(v, c.format, c.decimals));
    }
    return cells.join(QLatin1Char(','));
}

QString csvCaptions(const ReportDesign &d)
{
    QStringList caps;
    for (const DesignColumn &c : d.columns) {
        caps << csvField(c.caption);
        if (c.format == FieldFormat::Balance)
            caps << csvField(c.caption + QStringLiteral(" DR/CR"));
    }
    return caps.join(QLatin1Char(','));
}

} // namespace

QByteArray csvText(const RenderedReport &r)
{
    QByteArray out = csvCaptions(r.design).toUtf8() + "\r\n";
    for (const ReportLine &l : r.lines)
        out += csvLine(r, sheetLine(r, l)).toUtf8() + "\r\n";
    return out;
}


bool detail::CsvStream::open(const QString &path, QString *error)
{
    m_file.setFileName(path);
    m_ok = m_file.open(QIODevice::WriteOnly);
    if (!m_ok && error)
        *error = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), m_file.errorString());
    return m_ok;
}

void detail::CsvStream::begin(const ReportDesign &design)
{
    m_chunk = csvCaptions(design).toUtf8() + "\r\n";
}

void detail::CsvStream::add(const RenderedReport &report, const ReportLine &line)
{
    if (!m_ok)
        return;
    m_chunk += csvLine(report, sheetLine(report, line)).toUtf8() + "\r\n";
    if (m_chunk.size() > (1 << 16)) {
        m_ok = m_file.write(m_chunk) == m_chunk.size();
        m_chunk.clear();
    }
}

bool detail::CsvStream::finish(QString *error)
{
    m_ok = m_ok && m_file.write(m_chunk) == m_chunk.size() && m_file.commit();
    if (!m_ok && error)
        *error = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(m_file.fileName()), m_file.errorString());
    return m_ok;
}

bool exportCsv(const RenderedReport &report, const QString &path, QString *error)
{
    // Line by line: a long ledger never stands in memory a second time.
    detail::CsvStream csv;
    if (!csv.open(path, error))
        return false;
    csv.begin(report.design);
    for (const ReportLine &l : report.lines)
        csv.add(report, l);
    return csv.finish(error);
}

// ------------------------------------------------------------ XLSX

namespace {

QString sheetName(const QString &heading)
{
    QString s = heading;
    for (const QChar c : QStringLiteral("[]:*?/\\"))
        s.remove(c);
    s = s.trimmed().left(31);
    return s.isEmpty() ? QStringLiteral("Report") : s;
}

// The width of each column in characters, from the widest text it holds
// (captions, figures and totals alike).
QVector<double> columnChars(const RenderedReport &r)
{
    const ReportDesign &d = r.design;
    QVector<double> w(d.columns.size(), 8);
    for (int i = 0; i < d.columns.size(); ++i)
        w[i] = qMax<double>(w[i], d.columns.at(i).caption.size() + 2);
    for (const ReportLine &l : r.lines)
        for (int i = 0; i < l.texts.size() && i < w.size(); ++i)
            w[i] = qMax<double>(w[i], l.texts.at(i).size() + 2);
    for (const ReportLine &l : r.lines)
        if (l.kind != ReportLine::Kind::Detail)
            w[0] = qMax<double>(w[0], qMin<qsizetype>(l.label.size(), 40) + 2);
    for (double &x : w)
        x = qMin(x, 60.0);
    return w;
}

class Workbook
{
public:
    explicit Workbook(const QString &path)
    {
        m_tmp = QDir::tempPath().toLocal8Bit();
        lxw_workbook_options options{};
        options.constant_memory = LXW_TRUE;   // rows go to disk as they are written
        options.tmpdir = m_tmp.data();
        options.use_zip64 = LXW_TRUE;
        m_book = workbook_new_opt(QFile::encodeName(path).constData(), &options);
    }
    ~Workbook()
    {
        if (m_book)
            workbook_close(m_book); // only reached on a failure: the file is dropped below
    }
    lxw_workbook *book() const { return m_book; }
    lxw_format *format(bool bold, const char *numFormat, int size = 0)
    {
        lxw_format *f = workbook_add_format(m_book);
        if (bold)
            format_set_bold(f);
        if (numFormat)
            format_set_num_format(f, numFormat);
        if (size)
            format_set_font_size(f, size);
        return f;
    }
    lxw_error close()
    {
        const lxw_error e = workbook_close(m_book);
        m_book = nullptr;
        return e;
    }

private:
    QByteArray m_tmp;
    lxw_workbook *m_book = nullptr;
};

} // namespace

// The chart of a design on a sheet of its own: its figures (a row a
// series, the totals under them) and the spreadsheet's own chart drawn
// from them.
static lxw_error writeChartSheet(lxw_workbook *book, const ChartData &c, lxw_format *bold, lxw_format *figure)
{
    lxw_worksheet *ws = workbook_add_worksheet(book, "CHART");
    auto str = [&](lxw_row_t row, int col, const QString &s, lxw_format *f) {
        const QByteArray b = s.toUtf8();
        return worksheet_write_string(ws, row, lxw_col_t(col), b.constData(), f);
    };
    worksheet_set_column(ws, 0, 0, 28, nullptr);
    lxw_error e = LXW_NO_ERROR;
    for (int k = 0; k < c.categories.size() && !e; ++k)
        e = str(0, k + 1, c.categories.at(k), bold);
    lxw_row_t row = 1;
    auto figures = [&](const QString &name, const QVector<Money> &values, lxw_format *f) {
        lxw_error err = str(row, 0, name, f);
        for (int k = 0; k < values.size() && !err; ++k)
            err = worksheet_write_number(ws, row, lxw_col_t(k + 1), values.at(k).toDouble(), figure);
        ++row;
        return err;
    };
    for (int s = 0; s < c.series.size() && !e; ++s)
        e = figures(c.seriesNames.at(s), c.series.at(s), nullptr);
    if (!e)
        e = figures(QStringLiteral("TOTAL"), c.totals, bold);
    if (e)
        return e;

    using Kind = DesignChart::Kind;
    lxw_chart *chart = workbook_add_chart(book, c.kind == Kind::Stacked ? LXW_CHART_COLUMN_STACKED
                                               : c.kind == Kind::Line   ? LXW_CHART_LINE
                                                                        : LXW_CHART_COLUMN);
    const QString last = QString(QChar(char16_t(u'A' + qMin(25, int(c.categories.size())))));
    const QByteArray categories = QStringLiteral("=CHART!$B$1:$%1$1").arg(last).toUtf8();
    for (int s = 0; s < c.series.size(); ++s) {
        const QByteArray values = QStringLiteral("=CHART!$B$%1:$%2$%1").arg(s + 2).arg(last).toUtf8();
        const QByteArray name = QStringLiteral("=CHART!$A$%1").arg(s + 2).toUtf8();
        lxw_chart_series *series = chart_add_series(chart, categories.constData(), values.constData());
        chart_series_set_name(series, name.constData());
    }
    const QByteArray title = c.heading.toUtf8(), axis = c.caption.toUtf8();
    chart_title_set_name(chart, title.constData());
    if (!c.caption.isEmpty())
        chart_axis_set_name(chart->y_axis, axis.constData());
    chart_legend_set_position(chart, LXW_CHART_LEGEND_BOTTOM);
    lxw_chart_options place{};
    place.x_scale = 2.2;
    place.y_scale = 1.8;
    return worksheet_insert_chart_opt(ws, row + 1, 0, chart, &place);
}

namespace {

bool writeXlsx(const RenderedReport &r, const QString &path, QString *error)
{
    const ReportDesign &d = r.design;
    auto fail = [&](const QString &why) {
        if (error)
            *error = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), why);
        QFile::remove(path);
        return false;
    };
    Workbook wb(path);
    if (!wb.book())
        return fail(QStringLiteral("the workbook cannot be made there"));
    const QByteArray name = sheetName(r.heading).toUtf8();
    lxw_worksheet *ws = workbook_add_worksheet(wb.book(), name.constData());
    const QByteArray title = r.heading.toUtf8(), creator = creditCompanyName().toUtf8();
    lxw_doc_properties props{};
    props.title = const_cast<char *>(title.constData());
    props.author = const_cast<char *>(creator.constData());
    workbook_set_properties(wb.book(), &props);

    lxw_format *plain = wb.format(false, nullptr);
    lxw_format *bold = wb.format(true, nullptr);
    lxw_format *big = wb.format(true, nullptr, 12);
    lxw_format *money[2] = {wb.format(false, "#,##0.00"), wb.format(true, "#,##0.00")};
    lxw_format *balance[2] = {wb.format(false, "#,##0.00\" DR\";#,##0.00\" CR\";0.00"),
                              wb.format(true, "#,##0.00\" DR\";#,##0.00\" CR\";0.00")};
    lxw_format *number[2] = {wb.format(false, "#,##0.######"), wb.format(true, "#,##0.######")};
    lxw_format *integer[2] = {wb.format(false, "0"), wb.format(true, "0")};
    lxw_format *date[2] = {wb.format(false, "dd/mm/yyyy"), wb.format(true, "dd/mm/yyyy")};

    // Widths and the frozen headings go first: rows are written straight
    // through to the file.
    const QVector<double> widths = columnChars(r);
    for (int i = 0; i < widths.size(); ++i)
        worksheet_set_column(ws, lxw_col_t(i), lxw_col_t(i), widths.at(i), nullptr);
    QStringList titles;
    for (const QString &t : {r.header.clientName, r.heading, r.periodText, r.asAtText})
        if (!t.isEmpty())
            titles << t;
    const lxw_row_t headerRow = lxw_row_t(titles.size());
    worksheet_freeze_panes(ws, headerRow + 1, 0);

    auto str = [&](lxw_row_t row, int col, const QString &s, lxw_format *f) {
        const QByteArray b = s.toUtf8();
        return worksheet_write_string(ws, row, lxw_col_t(col), b.constData(), f);
    };
    lxw_error e = LXW_NO_ERROR;
    for (int i = 0; i < titles.size() && !e; ++i)
        e = str(lxw_row_t(i), 0, titles.at(i), i == 0 ? big : (i == 1 ? bold : plain));
    for (int i = 0; i < d.columns.size() && !e; ++i)
        e = str(headerRow, i, d.columns.at(i).caption, bold);

    lxw_row_t row = headerRow + 1;
    for (const ReportLine &line : r.lines) {
        const SheetLine s = sheetLine(r, line);
        const int b = s.bold ? 1 : 0;
        for (int i = 0; i < d.columns.size() && !e; ++i) {
            const QVariant &v = s.values.at(i);
            const DesignColumn &c = d.columns.at(i);
            if (!v.isValid() || v.isNull())
                continue;
            if (v.metaType().id() == QMetaType::QString) {
                e = str(row, i, v.toString(), s.bold ? bold : plain);
                continue;
            }
            switch (c.format) {
            case FieldFormat::Money:
            case FieldFormat::Balance:
                e = worksheet_write_number(ws, row, lxw_col_t(i), v.value<Money>().toDouble(),
                                           c.format == FieldFormat::Balance ? balance[b] : money[b]);
                break;
            case FieldFormat::Number: e = worksheet_write_number(ws, row, lxw_col_t(i), v.toDouble(), number[b]); break;
            case FieldFormat::Integer: e = worksheet_write_number(ws, row, lxw_col_t(i), double(v.toLongLong()), integer[b]); break;
            case FieldFormat::Date: {
                const QDate dt = v.toDate();
                lxw_datetime when{dt.year(), dt.month(), dt.day(), 0, 0, 0};
                e = worksheet_write_datetime(ws, row, lxw_col_t(i), &when, date[b]);
                break;
            }
            case FieldFormat::Text: e = str(row, i, v.toString(), s.bold ? bold : plain); break;
            }
        }
        if (e)
            break;
        ++row;
    }
    if (!e && d.chart && !r.rows.isEmpty())
        e = writeChartSheet(wb.book(), chartData(r), bold, integer[0]);
    if (e)
        return fail(QString::fromUtf8(lxw_strerror(e)));
    e = wb.close();
    if (e)
        return fail(QString::fromUtf8(lxw_strerror(e)));
    return true;
}

} // namespace

bool exportXlsx(const RenderedReport &report, const QString &path, QString *error)
{
    return detail::writeReplacing(path, error, [&](const QString &part) { return writeXlsx(report, part, error); });
}

bool exportFile(const RenderedReport &report, const QString &path, QString *error)
{
    const QString ext = QFileInfo(path).suffix().toLower();
    if (ext == QLatin1String("pdf"))
        return exportPdf(report, path, error);
    if (ext == QLatin1String("csv"))
        return exportCsv(report, path, error);
    if (ext == QLatin1String("xlsx"))
        return exportXlsx(report, path, error);
    if (error)
        *error = QStringLiteral("%1: the file must end in .pdf, .xlsx or .csv").arg(QDir::toNativeSeparators(path));
    return false;
}

} // namespace Reports
