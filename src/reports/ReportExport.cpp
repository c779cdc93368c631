#include "reports/ReportExport.h"
#include "reports/ReportFrame.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <array>

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
    for (int i = first; i <= last; ++i) {
        if (i > first)
            device.newPage();
        const QRectF target(0, 0, device.width(), device.height());
        p.fillRect(target, Qt::white);
        report.paintPage(p, i - 1, target);
    }
    p.end();
    return true;
}

bool exportPdf(const RenderedReport &report, const QString &path, QString *error)
{
    {
        QFile probe(path);
        if (!probe.open(QIODevice::WriteOnly)) {
            if (error)
                *error = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), probe.errorString());
            return false;
        }
    }
    QPdfWriter pdf(path);
    pdf.setResolution(600);
    pdf.setPageSize(QPageSize(QPageSize::A4));
    pdf.setPageOrientation(report.design.landscape ? QPageLayout::Landscape : QPageLayout::Portrait);
    pdf.setPageMargins(QMarginsF(0, 0, 0, 0));
    pdf.setTitle(report.heading);
    pdf.setCreator(creditCompanyName());
    return paintReport(report, pdf, error);
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

QVector<SheetLine> sheetLines(const RenderedReport &r)
{
    const ReportDesign &d = r.design;
    QVector<SheetLine> out;
    for (const ReportLine &l : r.lines) {
        SheetLine s;
        s.values.resize(d.columns.size());
        s.bold = l.kind != ReportLine::Kind::Detail || l.emphasis;
        for (int i = 0; i < d.columns.size(); ++i) {
            const QVariant &v = l.values.value(i);
            if (l.kind == ReportLine::Kind::Detail)
                s.values[i] = v;
            else if (v.isValid() && !v.isNull())
                s.values[i] = v;
        }
        if (l.kind != ReportLine::Kind::Detail && !l.label.isEmpty()) {
            int at = 0;
            while (at < s.values.size() && s.values.at(at).isValid() && !s.values.at(at).isNull())
                ++at;
            if (at < s.values.size())
                s.values[at] = l.label;
        }
        out << s;
    }
    return out;
}

} // namespace

QByteArray csvText(const RenderedReport &r)
{
    const ReportDesign &d = r.design;
    QStringList lines;
    QStringList caps;
    for (const DesignColumn &c : d.columns)
        caps << csvField(c.caption);
    lines << caps.join(QLatin1Char(','));
    for (const SheetLine &s : sheetLines(r)) {
        QStringList cells;
        for (int i = 0; i < d.columns.size(); ++i) {
            const QVariant &v = s.values.at(i);
            const bool isLabel = v.metaType().id() == QMetaType::QString;
            cells << csvField(isLabel ? v.toString() : plainValue(v, d.columns.at(i).format, d.columns.at(i).decimals));
        }
        lines << cells.join(QLatin1Char(','));
    }
    return (lines.join(QStringLiteral("\r\n")) + QStringLiteral("\r\n")).toUtf8();
}

namespace {

bool writeWhole(const QString &path, const QByteArray &data, QString *error)
{
    QSaveFile f(path);
    if (!f.open(QIODevice::WriteOnly) || f.write(data) != data.size() || !f.commit()) {
        if (error)
            *error = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), f.errorString());
        return false;
    }
    return true;
}

} // namespace

bool exportCsv(const RenderedReport &report, const QString &path, QString *error)
{
    return writeWhole(path, csvText(report), error);
}

// ------------------------------------------------------------ zip

quint32 ZipWriter::crc32(const QByteArray &data)
{
    static const auto table = [] {
        std::array<quint32, 256> t{};
        for (quint32 i = 0; i < 256; ++i) {
            quint32 c = i;
            for (int k = 0; k < 8; ++k)
                c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
            t[i] = c;
        }
        return t;
    }();
    quint32 c = 0xFFFFFFFFu;
    for (const char ch : data)
        c = table[(c ^ quint8(ch)) & 0xFF] ^ (c >> 8);
    return c ^ 0xFFFFFFFFu;
}

namespace {
void put16(QByteArray &b, quint16 v) { b.append(char(v & 0xFF)); b.append(char(v >> 8)); }
void put32(QByteArray &b, quint32 v) { put16(b, quint16(v & 0xFFFF)); put16(b, quint16(v >> 16)); }
// 1 January 2026, 00:00, in DOS form: a fixed stamp keeps the files stable.
constexpr quint16 kDosTime = 0;
constexpr quint16 kDosDate = ((2026 - 1980) << 9) | (1 << 5) | 1;
} // namespace

void ZipWriter::add(const QString &name, const QByteArray &data)
{
    Entry e{name.toUtf8(), crc32(data), quint32(data.size()), quint32(m_out.size())};
    put32(m_out, 0x04034b50);
    put16(m_out, 20); put16(m_out, 0x0800); put16(m_out, 0);
    put16(m_out, kDosTime); put16(m_out, kDosDate);
    put32(m_out, e.crc); put32(m_out, e.size); put32(m_out, e.size);
    put16(m_out, quint16(e.name.size())); put16(m_out, 0);
    m_out.append(e.name);
    m_out.append(data);
    m_entries << e;
}

QByteArray ZipWriter::finish()
{
    const quint32 cdStart = quint32(m_out.size());
    for (const Entry &e : m_entries) {
        put32(m_out, 0x02014b50);
        put16(m_out, 20); put16(m_out, 20); put16(m_out, 0x0800); put16(m_out, 0);
        put16(m_out, kDosTime); put16(m_out, kDosDate);
        put32(m_out, e.crc); put32(m_out, e.size); put32(m_out, e.size);
        put16(m_out, quint16(e.name.size())); put16(m_out, 0); put16(m_out, 0);
        put16(m_out, 0); put16(m_out, 0); put32(m_out, 0);
        put32(m_out, e.offset);
        m_out.append(e.name);
    }
    const quint32 cdSize = quint32(m_out.size()) - cdStart;
    put32(m_out, 0x06054b50);
    put16(m_out, 0); put16(m_out, 0);
    put16(m_out, quint16(m_entries.size())); put16(m_out, quint16(m_entries.size()));
    put32(m_out, cdSize); put32(m_out, cdStart);
    put16(m_out, 0);
    QByteArray out;
    out.swap(m_out);
    m_entries.clear();
    return out;
}

// ------------------------------------------------------------ XLSX

namespace {

QString xmlEscape(const QString &s)
{
    QString o;
    o.reserve(s.size());
    for (const QChar c : s) {
        switch (c.unicode()) {
        case '&': o += QStringLiteral("&amp;"); break;
        case '<': o += QStringLiteral("&lt;"); break;
        case '>': o += QStringLiteral("&gt;"); break;
        case '"': o += QStringLiteral("&quot;"); break;
        default:
            if (c.unicode() >= 0x20 || c == QLatin1Char('\t') || c == QLatin1Char('\n'))
                o += c;
        }
    }
    return o;
}

QString columnLetters(int i)
{
    QString s;
    ++i;
    while (i > 0) {
        const int r = (i - 1) % 26;
        s.prepend(QChar('A' + r));
        i = (i - 1) / 26;
    }
    return s;
}

enum Style { StDefault = 0, StMoney = 1, StDate = 2, StBold = 3, StBoldMoney = 4, StNumber = 5, StBoldNumber = 6, StTitle = 7,
             StBalance = 8, StBoldBalance = 9 };

class SheetWriter
{
public:
    QString xml;
    int row = 0;

    void beginRow() { ++row; m_col = 0; xml += QStringLiteral("<row r=\"%1\">").arg(row); }
    void endRow() { xml += QStringLiteral("</row>"); }
    void skip() { ++m_col; }
    void text(const QString &s, int style = StDefault)
    {
        xml += QStringLiteral("<c r=\"%1%2\" t=\"inlineStr\"%3><is><t xml:space=\"preserve\">%4</t></is></c>")
                   .arg(columnLetters(m_col++)).arg(row).arg(styleAttr(style), xmlEscape(s));
    }
    void number(const QString &n, int style)
    {
        xml += QStringLiteral("<c r=\"%1%2\"%3><v>%4</v></c>").arg(columnLetters(m_col++)).arg(row).arg(styleAttr(style), n);
    }

private:
    static QString styleAttr(int s) { return s ? QStringLiteral(" s=\"%1\"").arg(s) : QString(); }
    int m_col = 0;
};

const char *kStyles =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
    "<styleSheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\">"
    "<numFmts count=\"2\"><numFmt numFmtId=\"164\" formatCode=\"dd/mm/yyyy\"/>"
    "<numFmt numFmtId=\"165\" formatCode=\"#,##0.00&quot; DR&quot;;#,##0.00&quot; CR&quot;;0.00\"/></numFmts>"
    "<fonts count=\"3\"><font><sz val=\"10\"/><name val=\"Arial\"/></font>"
    "<font><b/><sz val=\"10\"/><name val=\"Arial\"/></font>"
    "<font><b/><sz val=\"12\"/><name val=\"Arial\"/></font></fonts>"
    "<fills count=\"2\"><fill><patternFill patternType=\"none\"/></fill><fill><patternFill patternType=\"gray125\"/></fill></fills>"
    "<borders count=\"1\"><border><left/><right/><top/><bottom/><diagonal/></border></borders>"
    "<cellStyleXfs count=\"1\"><xf numFmtId=\"0\" fontId=\"0\" fillId=\"0\" borderId=\"0\"/></cellStyleXfs>"
    "<cellXfs count=\"10\">"
    "<xf numFmtId=\"0\" fontId=\"0\" fillId=\"0\" borderId=\"0\" xfId=\"0\"/>"
    "<xf numFmtId=\"4\" fontId=\"0\" fillId=\"0\" borderId=\"0\" xfId=\"0\" applyNumberFormat=\"1\"/>"
    "<xf numFmtId=\"164\" fontId=\"0\" fillId=\"0\" borderId=\"0\" xfId=\"0\" applyNumberFormat=\"1\"/>"
    "<xf numFmtId=\"0\" fontId=\"1\" fillId=\"0\" borderId=\"0\" xfId=\"0\" applyFont=\"1\"/>"
    "<xf numFmtId=\"4\" fontId=\"1\" fillId=\"0\" borderId=\"0\" xfId=\"0\" applyFont=\"1\" applyNumberFormat=\"1\"/>"
    "<xf numFmtId=\"0\" fontId=\"0\" fillId=\"0\" borderId=\"0\" xfId=\"0\"/>"
    "<xf numFmtId=\"0\" fontId=\"1\" fillId=\"0\" borderId=\"0\" xfId=\"0\" applyFont=\"1\"/>"
    "<xf numFmtId=\"0\" fontId=\"2\" fillId=\"0\" borderId=\"0\" xfId=\"0\" applyFont=\"1\"/>"
    "<xf numFmtId=\"165\" fontId=\"0\" fillId=\"0\" borderId=\"0\" xfId=\"0\" applyNumberFormat=\"1\"/>"
    "<xf numFmtId=\"165\" fontId=\"1\" fillId=\"0\" borderId=\"0\" xfId=\"0\" applyFont=\"1\" applyNumberFormat=\"1\"/>"
    "</cellXfs>"
    "<cellStyles count=\"1\"><cellStyle name=\"Normal\" xfId=\"0\" builtinId=\"0\"/></cellStyles>"
    "</styleSheet>";

QString sheetName(const QString &heading)
{
    QString s = heading;
    for (const QChar c : QStringLiteral("[]:*?/\\"))
        s.remove(c);
    s = s.trimmed().left(31);
    return s.isEmpty() ? QStringLiteral("Report") : s;
}

} // namespace

QByteArray xlsxBytes(const RenderedReport &r)
{
    const ReportDesign &d = r.design;
    SheetWriter w;
    auto titleRow = [&](const QString &s, int style) {
        if (s.isEmpty())
            return;
        w.beginRow(); w.text(s, style); w.endRow();
    };
    titleRow(r.header.clientName, StTitle);
    titleRow(r.heading, StBold);
    titleRow(r.periodText, StDefault);
    w.beginRow();
    for (const DesignColumn &c : d.columns)
        w.text(c.caption, StBold);
    w.endRow();
    const int headerRow = w.row;

    const QDate epoch(1899, 12, 30);
    for (const SheetLine &s : sheetLines(r)) {
        w.beginRow();
        for (int i = 0; i < d.columns.size(); ++i) {
            const QVariant &v = s.values.at(i);
            const DesignColumn &c = d.columns.at(i);
            if (!v.isValid() || v.isNull()) {
                w.skip();
                continue;
            }
            if (v.metaType().id() == QMetaType::QString) {
                w.text(v.toString(), s.bold ? StBold : StDefault);
                continue;
            }
            switch (c.format) {
            case FieldFormat::Money:
            case FieldFormat::Balance: {
                const bool balance = c.format == FieldFormat::Balance;
                if (c.blankZero && v.value<Money>().isZero() && !s.bold)
                    w.skip();
                else
                    w.number(v.value<Money>().toPlainString(),
                             balance ? (s.bold ? StBoldBalance : StBalance) : (s.bold ? StBoldMoney : StMoney));
                break;
            }
            case FieldFormat::Number: w.number(QString::number(v.toDouble(), 'g', 15), s.bold ? StBoldNumber : StNumber); break;
            case FieldFormat::Integer: w.number(QString::number(v.toLongLong()), s.bold ? StBoldNumber : StNumber); break;
            case FieldFormat::Date: w.number(QString::number(epoch.daysTo(v.toDate())), StDate); break;
            case FieldFormat::Text: w.text(v.toString(), s.bold ? StBold : StDefault); break;
            }
        }
        w.endRow();
    }

    QString cols = QStringLiteral("<cols>");
    qreal total = 0;
    for (const DesignColumn &c : d.columns) total += c.width;
    for (int i = 0; i < d.columns.size(); ++i) {
        const qreal chars = qBound<qreal>(8, 110.0 * d.columns.at(i).width / total, 60);
        cols += QStringLiteral("<col min=\"%1\" max=\"%1\" width=\"%2\" customWidth=\"1\"/>").arg(i + 1).arg(chars, 0, 'f', 1);
    }
    cols += QStringLiteral("</cols>");

    const QString sheet = QStringLiteral(
        "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
        "<worksheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\" "
        "xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\">"
        "<sheetViews><sheetView workbookViewId=\"0\"><pane ySplit=\"%1\" topLeftCell=\"A%2\" activePane=\"bottomLeft\" state=\"frozen\"/></sheetView></sheetViews>"
        "%3<sheetData>%4</sheetData></worksheet>")
        .arg(headerRow).arg(headerRow + 1).arg(cols, w.xml);

    ZipWriter zip;
    zip.add(QStringLiteral("[Content_Types].xml"), QByteArrayLiteral(
        "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
        "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">"
        "<Default Extension=\"rels\" ContentType=\"application/vnd.openxmlformats-package.relationships+xml\"/>"
        "<Default Extension=\"xml\" ContentType=\"application/xml\"/>"
        "<Override PartName=\"/xl/workbook.xml\" ContentType=\"application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml\"/>"
        "<Override PartName=\"/xl/worksheets/sheet1.xml\" ContentType=\"application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml\"/>"
        "<Override PartName=\"/xl/styles.xml\" ContentType=\"application/vnd.openxmlformats-officedocument.spreadsheetml.styles+xml\"/>"
        "</Types>"));
    zip.add(QStringLiteral("_rels/.rels"), QByteArrayLiteral(
        "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
        "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">"
        "<Relationship Id=\"rId1\" Type=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument\" Target=\"xl/workbook.xml\"/>"
        "</Relationships>"));
    zip.add(QStringLiteral("xl/workbook.xml"), QStringLiteral(
        "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
        "<workbook xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\" "
        "xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\">"
        "<sheets><sheet name=\"%1\" sheetId=\"1\" r:id=\"rId1\"/></sheets></workbook>").arg(xmlEscape(sheetName(r.heading))).toUtf8());
    zip.add(QStringLiteral("xl/_rels/workbook.xml.rels"), QByteArrayLiteral(
        "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
        "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">"
        "<Relationship Id=\"rId1\" Type=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships/worksheet\" Target=\"worksheets/sheet1.xml\"/>"
        "<Relationship Id=\"rId2\" Type=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships/styles\" Target=\"styles.xml\"/>"
        "</Relationships>"));
    zip.add(QStringLiteral("xl/styles.xml"), QByteArray(kStyles));
    zip.add(QStringLiteral("xl/worksheets/sheet1.xml"), sheet.toUtf8());
    return zip.finish();
}

bool exportXlsx(const RenderedReport &report, const QString &path, QString *error)
{
    return writeWhole(path, xlsxBytes(report), error);
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
