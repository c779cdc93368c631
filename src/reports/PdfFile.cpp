#include "reports/PdfFile.h"

#include <QBuffer>
#include <QImageWriter>
#include <QPainter>
#include <QSet>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>

namespace Reports::detail {

namespace {

// A number as PDF writes it: at most two decimals, no trailing zeros.
void number(QByteArray &to, double v)
{
    long long c = std::llround(v * 100);
    if (c < 0) {
        to += '-';
        c = -c;
    }
    char buf[24];
    const auto r = std::to_chars(buf, buf + sizeof buf, c / 100);
    to.append(buf, int(r.ptr - buf));
    const int f = int(c % 100);
    if (f) {
        to += '.';
        to += char('0' + f / 10);
        if (f % 10)
            to += char('0' + f % 10);
    }
}

QByteArray num(double v)
{
    QByteArray b;
    number(b, v);
    return b;
}

QByteArray deflated(const QByteArray &data)
{
    // qCompress puts the length in four bytes before the zlib stream.
    return qCompress(data, 6).mid(4);
}

// The title in PDF's text form: UTF-16 with its byte order mark.
QByteArray pdfTextString(const QString &s)
{
    QByteArray hex("<FEFF");
    for (const QChar ch : s)
        hex += QByteArray::number(ch.unicode() | 0x10000, 16).mid(1).toUpper();
    return hex + '>';
}

quint16 u16(const QByteArray &t, int at)
{
    if (at + 2 > t.size())
        return 0;
    return quint16((uchar(t[at]) << 8) | uchar(t[at + 1]));
}
qint16 i16(const QByteArray &t, int at) { return qint16(u16(t, at)); }
quint32 u32(const QByteArray &t, int at)
{
    return (quint32(u16(t, at)) << 16) | u16(t, at + 2);
}
void put16(QByteArray &t, int at, quint16 v)
{
    t[at] = char(v >> 8);
    t[at + 1] = char(v & 0xff);
}
void append16(QByteArray &t, quint16 v)
{
    t += char(v >> 8);
    t += char(v & 0xff);
}
void append32(QByteArray &t, quint32 v)
{
    append16(t, quint16(v >> 16));
    append16(t, quint16(v & 0xffff));
}

quint32 tableChecksum(const QByteArray &t)
{
    quint32 sum = 0;
    for (int i = 0; i < t.size(); i += 4) {
        quint32 v = 0;
        for (int k = 0; k < 4; ++k)
            v = (v << 8) | (i + k < t.size() ? uchar(t[i + k]) : 0);
        sum += v;
    }
    return sum;
}

// The font's own tables with only the glyphs in `keep` (and the glyphs
// they are made of) left in 'glyf'; every glyph keeps its number.
QByteArray subsetFont(const QRawFont &raw, QSet<quint32> keep)
{
    static const char *const tags[] = {"cmap", "cvt ", "fpgm", "glyf", "head", "hhea", "hmtx", "loca", "maxp", "prep"};
    std::map<QByteArray, QByteArray> tables;
    for (const char *tag : tags) {
        const QByteArray t = raw.fontTable(tag);
        if (!t.isEmpty())
            tables[QByteArray(tag)] = t;
    }
    QByteArray &head = tables["head"];
    const QByteArray &glyf = tables["glyf"];
    const QByteArray &loca = tables["loca"];
    const int glyphs = u16(tables["maxp"], 4);
    if (head.size() < 54 || glyf.isEmpty() || loca.isEmpty() || glyphs == 0)
        return QByteArray();
    const bool longLoca = i16(head, 50) == 1;
    auto offset = [&](int g) -> quint32 { return longLoca ? u32(loca, g * 4) : quint32(u16(loca, g * 2)) * 2; };

    // Composite glyphs bring their parts.
    keep.insert(0);
    QVector<quint32> todo(keep.cbegin(), keep.cend());
    while (!todo.isEmpty()) {
        const quint32 g = todo.takeLast();
        if (int(g) >= glyphs)
            continue;
        const quint32 from = offset(int(g)), to = offset(int(g) + 1);
        if (to <= from + 10 || int(to) > glyf.size() || i16(glyf, int(from)) >= 0)
            continue;
        int at = int(from) + 10;
        quint16 flags = 0;
        do {
            flags = u16(glyf, at);
            const quint16 part = u16(glyf, at + 2);
            if (!keep.contains(part)) {
                keep.insert(part);
                todo << part;
            }
            at += 4 + ((flags & 0x0001) ? 4 : 2);
            if (flags & 0x0008)
                at += 2;
            else if (flags & 0x0040)
                at += 4;
            else if (flags & 0x0080)
                at += 8;
        } while ((flags & 0x0020) && at < int(to));
    }

    QByteArray newGlyf, newLoca;
    for (int g = 0; g < glyphs; ++g) {
        append32(newLoca, quint32(newGlyf.size()));
        if (!keep.contains(quint32(g)))
            continue;
        const quint32 from = offset(g), to = offset(g + 1);
        if (to > from && int(to) <= glyf.size()) {
            newGlyf += glyf.mid(int(from), int(to - from));
            while (newGlyf.size() % 4)
                newGlyf += '\0';
        }
    }
    append32(newLoca, quint32(newGlyf.size()));
    tables["glyf"] = newGlyf;
    tables["loca"] = newLoca;
    put16(head, 50, 1);
    head[8] = head[9] = head[10] = head[11] = 0;

    // The tables behind their directory, each on four bytes.
    const int n = int(tables.size());
    int power = 1, log2 = 0;
    while (power * 2 <= n) {
        power *= 2;
        ++log2;
    }
    QByteArray font;
    append32(font, 0x00010000);
    append16(font, quint16(n));
    append16(font, quint16(power * 16));
    append16(font, quint16(log2));
    append16(font, quint16(n * 16 - power * 16));
    quint32 at = quint32(12 + 16 * n);
    QByteArray body;
    for (const auto &t : tables) {
        font += t.first;
        append32(font, tableChecksum(t.second));
        append32(font, at + quint32(body.size()));
        append32(font, quint32(t.second.size()));
        body += t.second;
        while (body.size() % 4)
            body += '\0';
    }
    return font + body;
}

// The signs of codes 0x80 to 0x9F of the Windows Latin set (0: none).
constexpr char16_t kHighSigns[32] = {
    0x20AC, 0, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0, 0x017D, 0,
    0, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0, 0x017E, 0x0178};

// Keeps a PDF name to the letters, figures and hyphens it may hold as
// they are.
QByteArray pdfName(const QString &s)
{
    QByteArray out;
    for (const QChar ch : s)
        if ((ch >= QLatin1Char('A') && ch <= QLatin1Char('Z')) || (ch >= QLatin1Char('a') && ch <= QLatin1Char('z'))
            || (ch >= QLatin1Char('0') && ch <= QLatin1Char('9')) || ch == QLatin1Char('-'))
            out += char(ch.unicode());
    return out.isEmpty() ? QByteArray("Font") : out;
}

} // namespace

int winAnsiCode(QChar ch)
{
    const char16_t u = ch.unicode();
    if ((u >= 32 && u < 127) || (u >= 160 && u < 256))
        return u;
    if (u < 256)
        return -1;
    for (int i = 0; i < 32; ++i)
        if (kHighSigns[i] == u)
            return 0x80 + i;
    return -1;
}

QChar winAnsiChar(int code)
{
    if ((code >= 32 && code < 127) || (code >= 160 && code < 256))
        return QChar(char16_t(code));
    if (code >= 0x80 && code < 0xA0)
        return QChar(kHighSigns[code - 0x80]);
    return QChar();
}

WinAnsiGlyphs winAnsiGlyphs(const QRawFont &raw)
{
    WinAnsiGlyphs glyphs{};
    for (int c = 32; c < 256; ++c) {
        const QChar ch = winAnsiChar(c);
        if (ch.isNull())
            continue;
        const QList<quint32> g = raw.glyphIndexesForString(QString(ch));
        if (g.size() == 1)
            glyphs[size_t(c)] = g.first();
    }
    return glyphs;
}

bool PdfFile::open(const QString &path, const QString &title, const QString &creator, QString *error)
{
    m_file.setFileName(path);
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        if (error)
            *error = QStringLiteral("%1: %2").arg(path, m_file.errorString());
        return false;
    }
    m_title = title;
    m_creator = creator;
    write(QByteArrayLiteral("%PDF-1.4\n%\xe2\xe3\xcf\xd3\n"));
    reserve(); // 1 the catalogue
    reserve(); // 2 the pages
    reserve(); // 3 the resources every page shares
    reserve(); // 4 the information
    return !m_failed;
}

int PdfFile::reserve()
{
    m_objects.push_back(-1);
    return int(m_objects.size());
}

void PdfFile::beginObject(int object)
{
    m_objects[size_t(object - 1)] = m_offset;
    write(QByteArray::number(object) + " 0 obj\n");
}

void PdfFile::write(const QByteArray &bytes)
{
    if (m_file.write(bytes) != bytes.size())
        m_failed = true;
    m_offset += bytes.size();
}

void PdfFile::writeStream(int object, const QByteArray &dictionary, const QByteArray &data, bool compress)
{
    const QByteArray body = compress ? deflated(data) : data;
    beginObject(object);
    write("<< " + dictionary + (compress ? " /Filter /FlateDecode" : "") + " /Length "
          + QByteArray::number(body.size()) + " >>\nstream\n");
    write(body);
    write("\nendstream\nendobj\n");
}

int PdfFile::font(const QRawFont &raw, const WinAnsiGlyphs &glyphs)
{
    const QByteArray key = (raw.familyName() + QLatin1Char('|') + raw.styleName()).toUtf8();
    for (int i = 0; i < m_faces.size(); ++i)
        if (m_faces.at(i).key == key)
            return i;
    Face f;
    f.key = key;
    f.raw = raw;
    QString name = raw.familyName();
    const QString style = raw.styleName();
    if (!style.isEmpty() && style != QLatin1String("Book") && style != QLatin1String("Regular"))
        name += QLatin1Char('-') + style;
    f.name = pdfName(name);
    f.glyph = glyphs;
    // Only a font with TrueType outlines is embedded here; texts in any
    // other are for the painter.
    f.embeddable = !raw.fontTable("glyf").isEmpty() && !raw.fontTable("loca").isEmpty()
                   && !raw.fontTable("head").isEmpty() && !raw.fontTable("hmtx").isEmpty();
    f.object = reserve();
    m_faces << f;
    return int(m_faces.size()) - 1;
}

bool PdfFile::canSet(int font, QStringView text) const
{
    const Face &f = m_faces.at(font);
    if (!f.embeddable)
        return false;
    for (const QChar ch : text) {
        const int c = winAnsiCode(ch);
        if (c < 0 || f.glyph[size_t(c)] == 0)
            return false;
    }
    return true;
}

void PdfFile::beginPage(const QSizeF &points)
{
    m_pageSize = points;
    m_graphics.clear();
    m_texts.clear();
    m_textFont = -1;
    m_textSize = 0;
    m_textColourSet = false;
}

void PdfFile::setColour(QByteArray &to, const QColor &colour, bool stroke)
{
    const QRgb c = colour.rgb();
    if (qRed(c) == qGreen(c) && qGreen(c) == qBlue(c)) {
        number(to, qRed(c) / 255.0);
        to += stroke ? " G\n" : " g\n";
        return;
    }
    number(to, qRed(c) / 255.0);
    to += ' ';
    number(to, qGreen(c) / 255.0);
    to += ' ';
    number(to, qBlue(c) / 255.0);
    to += stroke ? " RG\n" : " rg\n";
}

void PdfFile::text(int font, qreal size, const QPointF &at, QStringView text, const QColor &colour)
{
    if (text.isEmpty())
        return;
    Face &f = m_faces[font];
    if (font != m_textFont || size != m_textSize) {
        m_texts += "/F";
        m_texts += QByteArray::number(font);
        m_texts += ' ';
        number(m_texts, size);
        m_texts += " Tf\n";
        m_textFont = font;
        m_textSize = size;
    }
    if (!m_textColourSet || colour.rgb() != m_textColour) {
        setColour(m_texts, colour, false);
        m_textColour = colour.rgb();
        m_textColourSet = true;
    }
    m_texts += "1 0 0 1 ";
    number(m_texts, at.x());
    m_texts += ' ';
    number(m_texts, m_pageSize.height() - at.y());
    m_texts += " Tm (";
    for (const QChar ch : text) {
        const int c = winAnsiCode(ch);
        if (c < 0) {
            m_texts += '?';
            continue;
        }
        f.used[size_t(c)] = true;
        if (c == '(' || c == ')' || c == '\\')
            m_texts += '\\';
        m_texts += char(c);
    }
    m_texts += ") Tj\n";
}

void PdfFile::line(const QPointF &from, const QPointF &to, qreal width, const QColor &colour, bool dashed)
{
    QByteArray &g = m_graphics;
    g += "q ";
    number(g, width);
    g += " w ";
    setColour(g, colour, true);
    if (dashed)
        g += "[3 2] 0 d ";
    number(g, from.x());
    g += ' ';
    number(g, m_pageSize.height() - from.y());
    g += " m ";
    number(g, to.x());
    g += ' ';
    number(g, m_pageSize.height() - to.y());
    g += " l S Q\n";
}

bool PdfFile::image(const QRectF &rect, const QImage &image)
{
    if (image.isNull())
        return true;
    if (!m_imageObject || m_imageKey != image.cacheKey()) {
        // One picture a file: the letterhead's logo.
        QImage flat(image.size(), QImage::Format_RGB888);
        flat.fill(Qt::white);
        {
            QPainter p(&flat);
            p.drawImage(0, 0, image);
        }
        QByteArray jpeg;
        QBuffer buffer(&jpeg);
        buffer.open(QIODevice::WriteOnly);
        QImageWriter writer(&buffer, "jpg");
        writer.setQuality(92);
        if (!writer.write(flat))
            return false;
        if (!m_imageObject)
            m_imageObject = reserve();
        m_imageKey = image.cacheKey();
        writeStream(m_imageObject,
                    "/Type /XObject /Subtype /Image /Width " + QByteArray::number(flat.width()) + " /Height "
                        + QByteArray::number(flat.height())
                        + " /ColorSpace /DeviceRGB /BitsPerComponent 8 /Filter /DCTDecode",
                    jpeg, false);
    }
    QByteArray &g = m_graphics;
    g += "q ";
    number(g, rect.width());
    g += " 0 0 ";
    number(g, rect.height());
    g += ' ';
    number(g, rect.left());
    g += ' ';
    number(g, m_pageSize.height() - rect.bottom());
    g += " cm /Im0 Do Q\n";
    return true;
}

void PdfFile::endPage()
{
    QByteArray content = m_graphics;
    if (!m_texts.isEmpty())
        content += "BT\n" + m_texts + "ET\n";
    const int contents = reserve();
    writeStream(contents, QByteArray(), content, true);
    const int page = reserve();
    beginObject(page);
    write("<< /Type /Page /Parent 2 0 R /MediaBox [0 0 " + num(m_pageSize.width()) + ' ' + num(m_pageSize.height())
          + "] /Resources 3 0 R /Contents " + QByteArray::number(contents) + " 0 R >>\nendobj\n");
    m_pages.push_back(page);
    m_graphics.clear();
    m_texts.clear();
}

void PdfFile::writeFont(const Face &f)
{
    QSet<quint32> keep;
    int first = 256, last = 0;
    for (int c = 32; c < 256; ++c)
        if (f.used[size_t(c)] && f.glyph[size_t(c)]) {
            keep.insert(f.glyph[size_t(c)]);
            first = qMin(first, c);
            last = qMax(last, c);
        }
    if (first > last)
        first = last = 32;
    // Readers draw a no-break space and a soft hyphen with the glyphs of
    // the space and the hyphen.
    for (const int c : {' ', '-'})
        if (f.glyph[size_t(c)])
            keep.insert(f.glyph[size_t(c)]);
    const QByteArray head = f.raw.fontTable("head");
    const QByteArray hhea = f.raw.fontTable("hhea");
    const QByteArray hmtx = f.raw.fontTable("hmtx");
    const double em = qMax<quint16>(u16(head, 18), 1);
    auto scaled = [&](double v) { return QByteArray::number(qRound(v * 1000 / em)); };
    const int metrics = qMax<int>(u16(hhea, 34), 1);
    auto advance = [&](quint32 g) { return u16(hmtx, 4 * qMin<int>(int(g), metrics - 1)); };

    // The tag before the name says the font holds some glyphs only.
    const QByteArray tag = QByteArray("TSLAA") + char('A' + (&f - m_faces.constData()) % 26) + '+';
    const QByteArray fontFile = subsetFont(f.raw, keep);
    int fileObject = 0;
    if (!fontFile.isEmpty()) {
        fileObject = reserve();
        writeStream(fileObject, "/Length1 " + QByteArray::number(fontFile.size()), fontFile, true);
    }
    const int descriptor = reserve();
    beginObject(descriptor);
    write("<< /Type /FontDescriptor /FontName /" + tag + f.name + " /Flags 32 /FontBBox [" + scaled(i16(head, 36)) + ' '
          + scaled(i16(head, 38)) + ' ' + scaled(i16(head, 40)) + ' ' + scaled(i16(head, 42)) + "] /ItalicAngle 0 /Ascent "
          + scaled(i16(hhea, 4)) + " /Descent " + scaled(i16(hhea, 6)) + " /CapHeight " + scaled(i16(hhea, 4))
          + " /StemV 80" + (fileObject ? " /FontFile2 " + QByteArray::number(fileObject) + " 0 R" : QByteArray())
          + " >>\nendobj\n");
    QByteArray widths;
    for (int c = first; c <= last; ++c) {
        widths += scaled(f.glyph[size_t(c)] ? advance(f.glyph[size_t(c)]) : 0);
        widths += c % 16 == 15 ? '\n' : ' ';
    }
    beginObject(f.object);
    write("<< /Type /Font /Subtype /TrueType /BaseFont /" + tag + f.name + " /FirstChar " + QByteArray::number(first)
          + " /LastChar " + QByteArray::number(last) + " /Widths [" + widths + "] /Encoding /WinAnsiEncoding /FontDescriptor "
          + QByteArray::number(descriptor) + " 0 R >>\nendobj\n");
}

bool PdfFile::finish(QString *error)
{
    for (const Face &f : std::as_const(m_faces))
        writeFont(f);
    QByteArray fonts;
    for (int i = 0; i < m_faces.size(); ++i)
        fonts += "/F" + QByteArray::number(i) + ' ' + QByteArray::number(m_faces.at(i).object) + " 0 R ";
    beginObject(3);
    write("<< /ProcSet [/PDF /Text /ImageC] /Font << " + fonts + ">>"
          + (m_imageObject ? " /XObject << /Im0 " + QByteArray::number(m_imageObject) + " 0 R >>" : QByteArray())
          + " >>\nendobj\n");
    QByteArray kids;
    for (size_t i = 0; i < m_pages.size(); ++i) {
        kids += QByteArray::number(m_pages[i]) + " 0 R";
        kids += i % 10 == 9 ? '\n' : ' ';
    }
    beginObject(2);
    write("<< /Type /Pages /Kids [" + kids + "] /Count " + QByteArray::number(qint64(m_pages.size())) + " >>\nendobj\n");
    beginObject(1);
    write("<< /Type /Catalog /Pages 2 0 R >>\nendobj\n");
    beginObject(4);
    write("<< /Title " + pdfTextString(m_title) + " /Creator " + pdfTextString(m_creator) + " /Producer "
          + pdfTextString(m_creator) + " >>\nendobj\n");
    const qint64 xref = m_offset;
    QByteArray index = "xref\n0 " + QByteArray::number(qint64(m_objects.size()) + 1) + "\n0000000000 65535 f \n";
    for (const qint64 at : m_objects)
        index += QByteArray::number(qMax<qint64>(at, 0)).rightJustified(10, '0') + " 00000 n \n";
    write(index);
    write("trailer\n<< /Size " + QByteArray::number(qint64(m_objects.size()) + 1)
          + " /Root 1 0 R /Info 4 0 R >>\nstartxref\n" + QByteArray::number(xref) + "\n%%EOF\n");
    const bool flushed = m_file.flush();
    m_file.close();
    if (m_failed || !flushed) {
        if (error)
            *error = QStringLiteral("%1 cannot be written: %2").arg(m_file.fileName(), m_file.errorString());
        return false;
    }
    return true;
}

} // namespace Reports::detail
