// Page layout of a rendered report. Everything is placed in tenths of a
// point on an A4 page (portrait or landscape); painting scales that to the
// device, so the viewer, the printer and the PDF show the same pages.
//
// Pages are laid out as they are wanted: one pass over the lines settles
// where each page starts (line heights only), and a page's texts are
// placed when it is painted, so a report of half a million lines holds
// only its lines, never its pages' items.
#include "reports/ReportFrame.h"
#include "reports/ReportStream.h"
#include "reports/PdfFile.h"

#include <QFontMetricsF>
#include <QHash>
#include <QMap>
#include <QGlyphRun>
#include <QPainter>
#include <QRawFont>
#include <QPdfWriter>
#include <QPen>

#include <algorithm>
#include <array>

namespace Reports {

namespace {

constexpr qreal kUnitsPerPoint = 10.0;
constexpr qreal kA4Width = 595.28 * kUnitsPerPoint;
constexpr qreal kA4Height = 841.89 * kUnitsPerPoint;
constexpr qreal kMarginX = 400;
constexpr qreal kMarginTop = 380;
constexpr qreal kMarginBottom = 380;
constexpr qreal kPad = 40;       // inside a cell
constexpr qreal kIndent = 120;   // per group level

enum FontRole { Body, BodyBold, Small, Name, Title, Caption, FontCount };

struct PageItem
{
    enum class Kind { Text, Line, DoubleLine, Image, Rule };
    Kind kind = Kind::Text;
    QRectF rect;
    QPointF baseline;   // where the text is drawn, worked out once
    QString text;
    int font = Body;
    int align = Qt::AlignLeft;
    bool grey = false;
};

struct Page
{
    QVector<PageItem> items;
    QVector<QPair<QRectF, int>> hits; // detail line areas
};

} // namespace

class PageBuilder;

struct LayoutData
{
    QSizeF size;
    QVector<QFont> fonts;
    QVector<PageItem> header;  // the same on every page
    QVector<int> pageStarts;   // first line of each page
    bool footer = true;
    qreal footerTop = 0;
    QString footerLeft, footerCentre;
    std::unique_ptr<PageBuilder> builder;
    // The pages placed lately (a few, for the viewer going back and forth).
    mutable QVector<QPair<int, std::shared_ptr<Page>>> recent;
    // Each font's glyphs of the Windows Latin set (by code, see
    // detail::winAnsiCode), looked up once.
    struct Face
    {
        QRawFont raw;
        detail::WinAnsiGlyphs glyph{};
        std::array<qreal, 256> advance{};
        // The width of `text` from the glyphs' advances; false for a text
        // with a character outside the set or the font.
        bool width(QStringView text, qreal *w) const
        {
            qreal sum = 0;
            for (const QChar ch : text) {
                const int c = detail::winAnsiCode(ch);
                if (c < 0 || glyph[size_t(c)] == 0)
                    return false;
                sum += advance[size_t(c)];
            }
            *w = sum;
            return true;
        }
    };
    mutable QVector<std::shared_ptr<Face>> faces;
    const Face &face(int font) const;
    ~LayoutData();

    const Page &page(const RenderedReport &r, int index) const;
};

RenderedReport::RenderedReport() = default;
RenderedReport::~RenderedReport() = default;
RenderedReport::RenderedReport(RenderedReport &&) noexcept = default;
RenderedReport &RenderedReport::operator=(RenderedReport &&) noexcept = default;

int RenderedReport::pageCount() const { return pages().pageStarts.size() + (hasChartPage() ? 1 : 0); }

namespace {
ChartPainter &chartPainterSlot()
{
    static ChartPainter painter;
    return painter;
}
} // namespace

void setChartPainter(ChartPainter painter) { chartPainterSlot() = std::move(painter); }
bool hasChartPainter() { return bool(chartPainterSlot()); }

bool RenderedReport::hasChartPage() const
{
    return design.chart.has_value() && hasChartPainter() && !rows.isEmpty();
}

ChartData chartData(const RenderedReport &r)
{
    ChartData d;
    if (!r.design.chart)
        return d;
    const DesignChart &c = *r.design.chart;
    d.kind = c.kind;
    d.heading = r.heading;
    d.periodText = r.periodText;
    d.caption = c.caption;
    d.categories = c.categories;
    d.totals = QVector<Money>(c.values.size());
    struct Series { QString name; QVector<Money> values; qint64 weight = 0; };
    QVector<Series> all;
    for (int i = 0; i < r.rows.size(); ++i) {
        const Row &row = r.rows.at(i);
        Series s;
        s.name = c.label.isEmpty() ? (c.caption.isEmpty() ? r.heading : c.caption) : row.text(c.label).trimmed();
        for (int k = 0; k < c.values.size(); ++k) {
            const Money m = row.money(c.values.at(k)).value_or(Money());
            s.values << m;
            s.weight += qAbs(m.cents());
            d.totals[k] = d.totals[k] + m;
        }
        all << s;
    }
    std::stable_sort(all.begin(), all.end(), [](const Series &a, const Series &b) { return a.weight > b.weight; });
    const int keep = all.size() > c.maxSeries ? c.maxSeries - 1 : all.size();
    for (int i = 0; i < keep; ++i) {
        d.seriesNames << all.at(i).name;
        d.series << all.at(i).values;
    }
    if (keep < all.size()) {
        QVector<Money> others(c.values.size());
        for (int i = keep; i < all.size(); ++i)
            for (int k = 0; k < c.values.size(); ++k)
                others[k] = others[k] + all.at(i).values.at(k);
        d.seriesNames << QStringLiteral("OTHERS");
        d.series << others;
    }
    return d;
}

QSizeF RenderedReport::pageSizePoints() const
{
    return pages().size / kUnitsPerPoint;
}

namespace {

QVector<QFont> makeFonts()
{
    QVector<QFont> f(FontCount);
    auto mk = [](int px, bool bold) {
        QFont font(QStringLiteral("DejaVu Sans"));
        font.setStyleHint(QFont::SansSerif);
        font.setHintingPreference(QFont::PreferNoHinting);
        font.setPixelSize(px);
        font.setBold(bold);
        // Texts are measured and drawn glyph by glyph, without pairs.
        font.setKerning(false);
        return font;
    };
    f[Body] = mk(78, false);
    f[BodyBold] = mk(78, true);
    f[Small] = mk(64, false);
    f[Name] = mk(150, true);
    f[Title] = mk(112, true);
    f[Caption] = mk(74, true);
    return f;
}

} // namespace

class PageBuilder
{
public:
    // `needs`: the widest figures of the lines, when the lines are not in
    // the report (a report written from a spool); else they are measured
    // from the report's lines.
    PageBuilder(const RenderedReport &r, LayoutData &L, const detail::ColumnNeeds *needs = nullptr)
        : m_r(&r), m_d(&r.design), m_L(L)
    {
        L.fonts = makeFonts();
        for (const QFont &f : L.fonts)
            m_metrics << QFontMetricsF(f);
        m_widths.resize(L.fonts.size());
        const QSizeF a4 = m_d->landscape ? QSizeF(kA4Height, kA4Width) : QSizeF(kA4Width, kA4Height);
        // A half-page document is the top half of a portrait sheet.
        L.size = m_d->halfPage ? QSizeF(kA4Width, kA4Height / 2) : a4;
        m_left = kMarginX;
        m_right = L.size.width() - kMarginX;
        if (needs) {
            shareColumns(*needs);
        } else {
            detail::ColumnNeeds measured;
            for (const ReportLine &l : r.lines)
                measured.note(r.design, l);
            shareColumns(measured);
        }
    }

    // The report has moved (the viewer takes it over): read it there.
    void rebind(const RenderedReport &r) { m_r = &r; m_d = &r.design; }

    // Settles the header, the footer and where every page starts.
    void run()
    {
        startRun();
        for (int i = 0; i < m_r->lines.size(); ++i)
            measureLine(m_r->lines.at(i), i);
        endRun(int(m_r->lines.size()));
    }

    // The same in steps, for lines that are not held in the report.
    void startRun()
    {
        buildHeader();
        m_L.footer = !m_d->strip;
        m_bottom = m_L.size.height() - (m_d->halfPage ? kMarginBottom / 2 : kMarginBottom);
        if (m_L.footer) {
            const qreal fh = lineHeight(Small) + 60;
            m_L.footerTop = m_bottom - fh;
            m_bottom = m_L.footerTop - 40;
            m_L.footerLeft = QStringLiteral("%1  |  %2  |  Printed %3")
                                 .arg(m_r->header.companyName, m_r->header.contact,
                                      m_r->printedAt.toString(QStringLiteral("dd/MM/yyyy HH:mm")));
        }
        m_L.pageStarts.clear();
        m_L.pageStarts << 0;
        m_y = m_bodyTop;
    }

    void measureLine(const ReportLine &l, int index)
    {
        if (breaksBefore(l)) {
            m_L.pageStarts << index;
            m_y = m_bodyTop;
        }
        m_y += heightOf(l);
    }

    void endRun(int lineCount)
    {
        if (m_y + endHeight() > m_bottom && lineCount > 0 && endHeight() > 0)
            m_L.pageStarts << lineCount; // the words and signatures on a page of their own
    }

    // Places the lines of one page.
    Page place(int index)
    {
        const int first = m_L.pageStarts.value(index, 0);
        const bool last = index == m_L.pageStarts.size() - 1;
        const int end = last ? int(m_r->lines.size()) : m_L.pageStarts.at(index + 1);
        Page page = beginPage();
        for (int i = first; i < end; ++i)
            placeLine(page, m_r->lines.at(i), i);
        if (last)
            endLastPage(page);
        return page;
    }

    // The same in steps: a page begun, its lines placed, and after the
    // last page's lines what closes the report.
    Page beginPage()
    {
        m_y = m_bodyTop;
        return Page();
    }

    void endLastPage(Page &page)
    {
        placeWords(page);
        if (!m_d->signatures.isEmpty())
            placeSignatures(page);
    }

    void placeLine(Page &page, const ReportLine &l, int index)
    {
        const qreal h = heightOf(l);
        qreal y = m_y;
        const qreal rh = rowHeight();
        switch (l.kind) {
        case ReportLine::Kind::GroupHeader: {
            y += h - rh;
            const qreal x = m_left + kPad + l.level * kIndent;
            addWrapped(page.items, QRectF(x, y, m_right - x, rh), l.label, BodyBold, Qt::AlignLeft | Qt::AlignVCenter);
            break;
        }
        case ReportLine::Kind::Detail: {
            const int font = l.emphasis ? BodyBold : Body;
            for (int i = 0; i < l.texts.size(); ++i)
                addWrapped(page.items, cell(i, y, rh), l.texts.at(i), font, alignOf(m_d->columns.at(i)) | Qt::AlignVCenter);
            page.hits.append(qMakePair(QRectF(m_left, y, m_right - m_left, h), index));
            if (m_d->ruled) {
                addColumnRules(page.items, y, y + h);
                addLine(page.items, m_left, m_right, y + h);
            }
            break;
        }
        case ReportLine::Kind::GroupFooter:
        case ReportLine::Kind::Total: {
            const bool total = l.kind == ReportLine::Kind::Total;
            y += 20;
            const int first = firstSumColumn(l);
            const qreal labelX = m_left + kPad + (total ? 0 : l.level * kIndent);
            const qreal labelRight = first < m_d->columns.size() ? m_colX.at(first) : m_right;
            for (int i = 0; i < l.texts.size(); ++i) {
                if (l.texts.at(i).isEmpty())
                    continue;
                addLine(page.items, m_colX.at(i) + kPad, m_colX.at(i) + m_colW.at(i) - kPad, y);
                addText(page.items, cell(i, y + 10, rh), l.texts.at(i), BodyBold,
                        alignOf(m_d->columns.at(i)) | Qt::AlignVCenter);
                if (total)
                    addLine(page.items, m_colX.at(i) + kPad, m_colX.at(i) + m_colW.at(i) - kPad, y + rh + 30, true);
            }
            addText(page.items, QRectF(labelX, y + 10, qMax<qreal>(labelRight - labelX - kPad, 800), rh), l.label,
                    BodyBold, Qt::AlignLeft | Qt::AlignVCenter);
            break;
        }
        }
        m_y += h;
    }

private:
    qreal lineHeight(int font) const { return m_metrics.at(font).height(); }
    qreal rowHeight() const { return lineHeight(Body) * 1.45; }

    qreal advance(const QString &text, int font)
    {
        // Latin texts from the font's advances, as they are drawn; others
        // shaped by the font's metrics.
        qreal sum = 0;
        if (m_L.face(font).width(text, &sum))
            return sum;
        QHash<QString, qreal> &cache = m_widths[font];
        auto it = cache.constFind(text);
        if (it != cache.constEnd())
            return *it;
        const qreal w = m_metrics.at(font).horizontalAdvance(text);
        if (cache.size() < 50000)
            cache.insert(text, w);
        return w;
    }

    static bool isFigure(const DesignColumn &c) { return c.format != FieldFormat::Text; }

    // The page width shared out by the design's widths, except that a
    // figure's column is never narrower than its widest figure (totals
    // included) or its caption: what it needs is taken from the text
    // columns, whose texts wrap instead.
    void shareColumns(const detail::ColumnNeeds &needs)
    {
        const int n = m_d->columns.size();
        const qreal page = m_right - m_left;
        qreal total = 0;
        for (const DesignColumn &c : m_d->columns)
            total += c.width;
        QVector<qreal> w(n), need(n, 0);
        for (int i = 0; i < n; ++i)
            w[i] = page * m_d->columns.at(i).width / total;
        const QVector<QHash<QString, int>> &longest = needs.longest;
        for (int i = 0; i < n; ++i) {
            if (!isFigure(m_d->columns.at(i)))
                continue;
            qreal widest = advance(m_d->columns.at(i).caption, Caption);
            if (i < longest.size())
                for (auto it = longest.at(i).constBegin(); it != longest.at(i).constEnd(); ++it)
                    widest = qMax(widest, advance(it.key(), it.value()));
            need[i] = widest + 2 * kPad + 10;
        }
        qreal short_ = 0, textRoom = 0;
        for (int i = 0; i < n; ++i) {
            if (need.at(i) > w.at(i))
                short_ += need.at(i) - w.at(i);
            else if (!isFigure(m_d->columns.at(i)))
                textRoom += w.at(i) - qMin(w.at(i), 900.0);
        }
        if (short_ > 0 && textRoom > 0) {
            const qreal take = qMin(short_, textRoom);
            for (int i = 0; i < n; ++i) {
                if (need.at(i) > w.at(i))
                    w[i] += (need.at(i) - w.at(i)) * take / short_;
                else if (!isFigure(m_d->columns.at(i)))
                    w[i] -= (w.at(i) - qMin(w.at(i), 900.0)) * take / textRoom;
            }
        }
        qreal x = m_left;
        for (int i = 0; i < n; ++i) {
            m_colX << x;
            m_colW << w.at(i);
            x += w.at(i);
        }
    }

    // A text cut into lines that fit `width`, at spaces where it can.
    QStringList wrap(const QString &text, int font, qreal width)
    {
        if (text.isEmpty() || advance(text, font) <= width)
            return {text};
        QStringList out;
        QString line;
        const QStringList words = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        for (QString word : words) {
            QString tryLine = line.isEmpty() ? word : line + QLatin1Char(' ') + word;
            if (advance(tryLine, font) <= width) {
                line = tryLine;
                continue;
            }
            if (!line.isEmpty())
                out << line;
            // A word longer than the cell is cut where it must be.
            while (advance(word, font) > width && word.size() > 1) {
                int k = word.size() - 1;
                while (k > 1 && advance(word.left(k), font) > width)
                    --k;
                out << word.left(k);
                word = word.mid(k);
            }
            line = word;
        }
        if (!line.isEmpty())
            out << line;
        return out;
    }

    int detailLines(const ReportLine &l)
    {
        const int font = l.emphasis ? BodyBold : Body;
        int most = 1;
        for (int i = 0; i < l.texts.size() && i < m_colW.size(); ++i) {
            const QString &t = l.texts.at(i);
            if (t.isEmpty() || isFigure(m_d->columns.at(i)))
                continue;
            const qreal width = m_colW.at(i) - 2 * kPad;
            if (advance(t, font) > width)
                most = qMax(most, int(wrap(t, font, width).size()));
        }
        return most;
    }

    void addText(QVector<PageItem> &to, const QRectF &rect, const QString &text, int font, int align, bool grey = false)
    {
        if (text.isEmpty())
            return;
        PageItem it;
        it.kind = PageItem::Kind::Text;
        it.rect = rect;
        it.text = text;
        const qreal w = advance(text, font);
        it.font = font;
        it.align = align;
        it.grey = grey;
        const QFontMetricsF &fm = m_metrics.at(font);
        qreal x = rect.left();
        if (align & Qt::AlignRight)
            x = rect.right() - w;
        else if (align & Qt::AlignHCenter)
            x = rect.left() + (rect.width() - w) / 2;
        const qreal y = rect.top() + (rect.height() - (fm.ascent() + fm.descent())) / 2 + fm.ascent();
        it.baseline = QPointF(x, y);
        to << it;
    }

    // A text in a cell: lines of its own where it is too long.
    void addWrapped(QVector<PageItem> &to, const QRectF &rect, const QString &text, int font, int align)
    {
        if (text.isEmpty())
            return;
        if (advance(text, font) <= rect.width()) {
            addText(to, rect, text, font, align);
            return;
        }
        const QStringList lines = wrap(text, font, rect.width());
        const qreal step = lineHeight(font);
        for (int k = 0; k < lines.size(); ++k)
            addText(to, QRectF(rect.left(), rect.top() + k * step, rect.width(), rowHeight()), lines.at(k), font, align);
    }

    // The upright rules of a ruled table from `top` to `bottom`: both
    // edges and between the columns.
    void addColumnRules(QVector<PageItem> &to, qreal top, qreal bottom)
    {
        QVector<qreal> xs = m_colX;
        xs << m_right;
        for (const qreal x : xs) {
            PageItem it;
            it.kind = PageItem::Kind::Rule;
            it.rect = QRectF(QPointF(x, top), QPointF(x, bottom));
            to << it;
        }
    }

    void addLine(QVector<PageItem> &to, qreal x1, qreal x2, qreal y, bool dbl = false)
    {
        PageItem it;
        it.kind = dbl ? PageItem::Kind::DoubleLine : PageItem::Kind::Line;
        it.rect = QRectF(x1, y, x2 - x1, 0);
        to << it;
    }

    int alignOf(const DesignColumn &c) const
    {
        switch (c.align) {
        case Align::Left: return Qt::AlignLeft;
        case Align::Right: return Qt::AlignRight;
        case Align::Center: return Qt::AlignHCenter;
        }
        return Qt::AlignLeft;
    }

    QRectF cell(int col, qreal y, qreal h) const
    {
        return QRectF(m_colX.at(col) + kPad, y, m_colW.at(col) - 2 * kPad, h);
    }

    void buildHeader()
    {
        QVector<PageItem> &H = m_L.header;
        H.clear();
        qreal y = m_d->halfPage ? kMarginTop / 2 : kMarginTop;
        const qreal width = m_right - m_left;
        qreal logoBottom = y;
        qreal logoSpace = 0;
        if (!m_r->logo.isNull()) {
            const qreal aspect = qreal(m_r->logo.width()) / qMax(1, m_r->logo.height());
            qreal h = 560;
            qreal w = h * aspect;
            if (w > 1400) {
                w = 1400;
                h = w / aspect;
            }
            PageItem it;
            it.kind = PageItem::Kind::Image;
            it.rect = QRectF(m_left, y, w, h);
            H << it;
            logoBottom = y + it.rect.height();
            logoSpace = w + 100;
        }
        const HeaderTexts &t = m_r->header;
        auto centred = [&](const QString &text, int font) {
            if (text.isEmpty())
                return;
            const qreal h = lineHeight(font);
            const QRectF box(m_left + logoSpace, y, width - 2 * logoSpace, h);
            const QStringList lines = wrap(text, font, box.width());
            for (const QString &line : lines) {
                addText(H, QRectF(box.left(), y, box.width(), h), line, font, Qt::AlignHCenter);
                y += h;
            }
        };
        centred(t.clientName, Name);
        centred(t.clientAddress, Body);
        QStringList contact;
        if (!t.clientPhone.isEmpty()) contact << QStringLiteral("Phone: %1").arg(t.clientPhone);
        if (!t.clientEmail.isEmpty()) contact << QStringLiteral("Email: %1").arg(t.clientEmail);
        centred(contact.join(QStringLiteral("    ")), Body);
        QStringList tax;
        if (!t.clientSaleTaxNo.isEmpty()) tax << QStringLiteral("Sales Tax No: %1").arg(t.clientSaleTaxNo);
        if (!t.clientNTN.isEmpty()) tax << QStringLiteral("NTN: %1").arg(t.clientNTN);
        centred(tax.join(QStringLiteral("    ")), Body);
        y = qMax(y, logoBottom) + (m_d->halfPage ? 30 : 60);
        addLine(H, m_left, m_right, y);
        y += m_d->halfPage ? 40 : 80;
        logoSpace = 0;
        if (!m_r->heading.isEmpty()) {
            centred(m_r->heading, Title);
            y += 10;
        }
        centred(m_r->request.copyCaption, BodyBold);
        centred(m_r->asAtText, BodyBold);
        centred(m_r->periodText, BodyBold);
        y += m_d->halfPage ? 30 : 60;
        if (!m_d->documentFields.isEmpty() && !m_r->rows.isEmpty()) {
            // Caption and value pairs, two to a line.
            const Row &first = m_r->rows.at(0);
            const qreal half = width / 2;
            const qreal h = rowHeight();
            for (int i = 0; i < m_d->documentFields.size(); ++i) {
                const DesignField &f = m_d->documentFields.at(i);
                const qreal x = m_left + (i % 2) * half;
                const int col = first.indexOf(f.field);
                QVariant v;
                if (col >= 0 && !first.isNull(col)) {
                    switch (f.format) {
                    case FieldFormat::Money:
                    case FieldFormat::Balance: v = QVariant::fromValue(first.money(col).value_or(Money())); break;
                    case FieldFormat::Date: v = first.date(col); break;
                    case FieldFormat::Integer: v = first.integer(col); break;
                    case FieldFormat::Number: v = first.number(f.field); break;
                    case FieldFormat::Text: v = first.text(col); break;
                    }
                }
                addText(H, QRectF(x, y, 1000, h), f.caption + QLatin1Char(':'), Caption, Qt::AlignLeft);
                addText(H, QRectF(x + 1000, y, half - 1100, h), formatValue(v, f.format), Body, Qt::AlignLeft);
                if (i % 2 == 1 || i == m_d->documentFields.size() - 1)
                    y += h;
            }
            y += m_d->halfPage ? 30 : 60;
        }
        const qreal ch = rowHeight() * 1.1;
        addLine(H, m_left, m_right, y);
        for (int i = 0; i < m_d->columns.size(); ++i)
            addText(H, cell(i, y, ch), m_d->columns.at(i).caption, Caption, alignOf(m_d->columns.at(i)) | Qt::AlignVCenter);
        if (m_d->ruled)
            addColumnRules(H, y, y + ch);
        y += ch;
        addLine(H, m_left, m_right, y);
        m_bodyTop = y + (m_d->ruled ? 0 : 30);
    }

    qreal heightOf(const ReportLine &l)
    {
        switch (l.kind) {
        case ReportLine::Kind::GroupHeader: return rowHeight() + (l.level == 0 ? 50 : 25);
        case ReportLine::Kind::Detail: return rowHeight() + (detailLines(l) - 1) * lineHeight(Body);
        case ReportLine::Kind::GroupFooter: return rowHeight() + 50;
        case ReportLine::Kind::Total: return rowHeight() + 110;
        }
        return rowHeight();
    }

    // Room for what follows the last line: the amount in words and the
    // signatures.
    qreal endHeight() const
    {
        qreal h = 0;
        if (!m_r->amountWords.isEmpty())
            h += rowHeight() * 2;
        if (!m_d->signatures.isEmpty())
            h += rowHeight() * 4;
        return h;
    }

    // Whether line `l` starts a new page, with m_y where it would go.
    bool breaksBefore(const ReportLine &l)
    {
        const bool top = m_y <= m_bodyTop + 1;
        qreal need = heightOf(l);
        if (l.kind == ReportLine::Kind::GroupHeader) {
            // A heading keeps its first line with it.
            need += rowHeight();
            if (m_d->groups.value(l.level).newPage && !top)
                return true;
        }
        return m_y + need > m_bottom && !top;
    }

    int firstSumColumn(const ReportLine &l) const
    {
        for (int i = 0; i < l.texts.size(); ++i)
            if (!l.texts.at(i).isEmpty())
                return i;
        return m_d->columns.size();
    }

    void placeWords(Page &page)
    {
        if (m_r->amountWords.isEmpty())
            return;
        const QString text = QStringLiteral("AMOUNT IN WORDS: ") + m_r->amountWords;
        const QRectF box(m_left + kPad, m_y + rowHeight() * 0.3, m_right - m_left - 2 * kPad, rowHeight());
        const QStringList lines = wrap(text, BodyBold, box.width());
        for (int k = 0; k < lines.size(); ++k)
            addText(page.items, box.translated(0, k * lineHeight(BodyBold)), lines.at(k), BodyBold, Qt::AlignLeft | Qt::AlignVCenter);
        m_y += rowHeight() * 0.3 + lines.size() * lineHeight(BodyBold) + rowHeight() * 0.5;
    }

    void placeSignatures(Page &page)
    {
        const qreal y = qMax(m_y + rowHeight() * 2, m_bottom - rowHeight() * 1.5);
        const int n = m_d->signatures.size();
        const qreal slot = (m_right - m_left) / n;
        for (int i = 0; i < n; ++i) {
            const qreal x = m_left + i * slot + slot * 0.1;
            const qreal w = slot * 0.8;
            addLine(page.items, x, x + w, y);
            const QStringList caption = m_d->signatures.at(i).split(QLatin1Char('\n'));
            for (int k = 0; k < caption.size(); ++k)
                addText(page.items, QRectF(x, y + 20 + k * lineHeight(Caption), w, rowHeight()), caption.at(k), Caption,
                        Qt::AlignHCenter);
        }
    }

    const RenderedReport *m_r;
    const ReportDesign *m_d;
    LayoutData &m_L;
    qreal m_left = 0, m_right = 0, m_bodyTop = 0, m_bottom = 0, m_y = 0;
    QVector<qreal> m_colX, m_colW;
    QVector<QFontMetricsF> m_metrics;
    QVector<QHash<QString, qreal>> m_widths;
};

LayoutData::~LayoutData() = default;

const Page &LayoutData::page(const RenderedReport &r, int index) const
{
    for (const auto &p : recent)
        if (p.first == index)
            return *p.second;
    builder->rebind(r);
    auto made = std::make_shared<Page>(builder->place(index));
    if (recent.size() >= 6)
        recent.removeFirst();
    recent.append(qMakePair(index, made));
    return *made;
}

const LayoutData::Face &LayoutData::face(int font) const
{
    if (faces.size() < fonts.size())
        faces.resize(fonts.size());
    if (!faces.at(font)) {
        auto f = std::make_shared<Face>();
        f->raw = QRawFont::fromFont(fonts.at(font));
        f->glyph = detail::winAnsiGlyphs(f->raw);
        for (int c = 32; c < 256; ++c)
            if (f->glyph[size_t(c)])
                f->advance[size_t(c)] = f->raw.advancesForGlyphIndexes({f->glyph[size_t(c)]}).value(0).x();
        faces[font] = f;
    }
    return *faces.at(font);
}

namespace {

// What the painter holds already, so that a page of a thousand texts does
// not change font and pen a thousand times (slow on PDF).
struct PaintState
{
    int font = -1;
    int pen = -1; // 0 black text, 1 grey text, 2 rule
};

// The texts of a page in Latin letters, gathered into one run of glyphs a
// font and colour and drawn at the end of the page: no shaping of each
// text, and one call where a page has thousands of texts. A text with
// another character is drawn on its own, the usual way.
class GlyphBatch
{
public:
    explicit GlyphBatch(const LayoutData &L) : m_L(L) {}

    bool add(const PageItem &it)
    {
        const LayoutData::Face &f = m_L.face(it.font);
        Run &run = m_runs[it.font * 2 + (it.grey ? 1 : 0)];
        const int mark = run.glyphs.size();
        qreal x = it.baseline.x();
        for (const QChar ch : it.text) {
            const int c = detail::winAnsiCode(ch);
            if (c < 0 || f.glyph[size_t(c)] == 0) {
                run.glyphs.resize(mark);
                run.positions.resize(mark);
                return false;
            }
            if (c != ' ') {
                run.glyphs << f.glyph[size_t(c)];
                run.positions << QPointF(x, it.baseline.y());
            }
            x += f.advance[size_t(c)];
        }
        return true;
    }

    void flush(QPainter &p)
    {
        for (auto it = m_runs.cbegin(); it != m_runs.cend(); ++it) {
            if (it.value().glyphs.isEmpty())
                continue;
            QGlyphRun run;
            run.setRawFont(m_L.face(it.key() / 2).raw);
            run.setGlyphIndexes(it.value().glyphs);
            run.setPositions(it.value().positions);
            p.setPen(it.key() % 2 ? QColor(90, 90, 90) : QColor(Qt::black));
            p.drawGlyphRun(QPointF(0, 0), run);
        }
        m_runs.clear();
    }

private:
    struct Run
    {
        QList<quint32> glyphs;
        QList<QPointF> positions;
    };
    const LayoutData &m_L;
    QMap<int, Run> m_runs;
};

void paintItem(QPainter &p, const LayoutData &L, const PageItem &it, const QImage &logo, PaintState &st,
               GlyphBatch *batch = nullptr)
{
    switch (it.kind) {
    case PageItem::Kind::Text: {
        if (batch && batch->add(it))
            break;
        if (st.font != it.font) {
            p.setFont(L.fonts.at(it.font));
            st.font = it.font;
        }
        const int pen = it.grey ? 1 : 0;
        if (st.pen != pen) {
            p.setPen(it.grey ? QColor(90, 90, 90) : QColor(Qt::black));
            st.pen = pen;
        }
        p.drawText(it.baseline, it.text);
        break;
    }
    case PageItem::Kind::Line:
    case PageItem::Kind::DoubleLine:
        if (st.pen != 2) {
            p.setPen(QPen(Qt::black, 6));
            st.pen = 2;
        }
        p.drawLine(QPointF(it.rect.left(), it.rect.top()), QPointF(it.rect.right(), it.rect.top()));
        if (it.kind == PageItem::Kind::DoubleLine)
            p.drawLine(QPointF(it.rect.left(), it.rect.top() + 20), QPointF(it.rect.right(), it.rect.top() + 20));
        break;
    case PageItem::Kind::Image:
        p.drawImage(it.rect, logo);
        break;
    case PageItem::Kind::Rule:
        if (st.pen != 2) {
            p.setPen(QPen(Qt::black, 6));
            st.pen = 2;
        }
        p.drawLine(it.rect.topLeft(), it.rect.bottomRight());
        break;
    }
}

} // namespace

void RenderedReport::layout()
{
    m_layout.reset();
}

const LayoutData &RenderedReport::pages() const
{
    if (!m_layout) {
        auto L = std::make_unique<LayoutData>();
        L->builder = std::make_unique<PageBuilder>(*this, *L);
        L->builder->run();
        m_layout = std::move(L);
    }
    return *m_layout;
}

namespace {

// One laid-out page with the header and footer every page has.
void paintLaidOutPage(QPainter &p, const LayoutData &L, const Page &items, int page, int pageCount,
                      const QImage &logo, const QRectF &target)
{
    p.save();
    p.translate(target.topLeft());
    p.scale(target.width() / L.size.width(), target.height() / L.size.height());
    p.setRenderHint(QPainter::Antialiasing, true);
    p.setRenderHint(QPainter::TextAntialiasing, true);
    p.setRenderHint(QPainter::SmoothPixmapTransform, true);
    PaintState st;
    GlyphBatch batch(L);
    for (const PageItem &it : L.header)
        paintItem(p, L, it, logo, st, &batch);
    for (const PageItem &it : items.items)
        paintItem(p, L, it, logo, st, &batch);
    batch.flush(p);
    st = PaintState();
    if (L.footer) {
        const qreal left = kMarginX, right = L.size.width() - kMarginX;
        const qreal h = QFontMetricsF(L.fonts.at(Small)).height();
        p.setPen(QPen(Qt::black, 4));
        p.drawLine(QPointF(left, L.footerTop), QPointF(right, L.footerTop));
        p.setFont(L.fonts.at(Small));
        p.setPen(QColor(70, 70, 70));
        const QRectF row(left, L.footerTop + 40, right - left, h);
        p.drawText(row, Qt::AlignLeft | Qt::AlignVCenter, L.footerLeft);
        p.setPen(Qt::black);
        p.drawText(row, Qt::AlignRight | Qt::AlignVCenter, QStringLiteral("Page %1 of %2").arg(page + 1).arg(pageCount));
    }
    p.restore();
}

// The same page written straight into a PDF file: every text set as one
// string. False, with nothing written, when a text of the page needs the
// painter (a character outside Latin-1).
class PdfSheets
{
public:
    PdfSheets(detail::PdfFile &pdf, const LayoutData &L, const QImage &logo, bool twoUp)
        : m_pdf(pdf), m_L(L), m_logo(logo), m_twoUp(twoUp)
    {
        for (int i = 0; i < L.fonts.size(); ++i) {
            m_fonts << pdf.font(L.face(i).raw, L.face(i).glyph);
            m_sizes << L.fonts.at(i).pixelSize() / kUnitsPerPoint;
        }
        const QSizeF page = L.size / kUnitsPerPoint;
        m_sheet = twoUp ? QSizeF(page.width(), page.height() * 2) : page;
    }

    bool add(const Page &items, int page, int pageCount)
    {
        const QString footer = QStringLiteral("Page %1 of %2").arg(page + 1).arg(pageCount);
        if (!settable(m_L.header) || !settable(items.items)
            || (m_L.footer && (!m_pdf.canSet(m_fonts.at(Small), m_L.footerLeft) || !m_pdf.canSet(m_fonts.at(Small), footer))))
            return false;
        qreal top = 0;
        if (m_twoUp && m_open) {
            top = m_sheet.height() / 2;
            m_pdf.line(QPointF(0, top), QPointF(m_sheet.width(), top), 0.1, QColor(150, 150, 150), true);
        } else {
            m_pdf.beginPage(m_sheet);
            m_open = true;
        }
        for (const PageItem &it : m_L.header)
            if (!item(it, top))
                return false;
        for (const PageItem &it : items.items)
            if (!item(it, top))
                return false;
        if (m_L.footer) {
            const qreal left = kMarginX, right = m_L.size.width() - kMarginX;
            const QFontMetricsF &fm = m_smallMetrics;
            const qreal y = m_L.footerTop + 40 + (fm.height() - (fm.ascent() + fm.descent())) / 2 + fm.ascent();
            qreal width = 0;
            m_L.face(Small).width(footer, &width);
            m_pdf.line(pt(QPointF(left, m_L.footerTop), top), pt(QPointF(right, m_L.footerTop), top), 0.4, Qt::black);
            m_pdf.text(m_fonts.at(Small), m_sizes.at(Small), pt(QPointF(left, y), top), m_L.footerLeft, QColor(70, 70, 70));
            m_pdf.text(m_fonts.at(Small), m_sizes.at(Small), pt(QPointF(right - width, y), top), footer, Qt::black);
        }
        if (!m_twoUp || top > 0)
            close();
        return true;
    }

    void close()
    {
        if (m_open)
            m_pdf.endPage();
        m_open = false;
    }

private:
    static QPointF pt(const QPointF &units, qreal top) { return units / kUnitsPerPoint + QPointF(0, top); }

    bool settable(const QVector<PageItem> &items) const
    {
        for (const PageItem &it : items)
            if (it.kind == PageItem::Kind::Text && !m_pdf.canSet(m_fonts.at(it.font), it.text))
                return false;
        return true;
    }

    bool item(const PageItem &it, qreal top)
    {
        switch (it.kind) {
        case PageItem::Kind::Text:
            m_pdf.text(m_fonts.at(it.font), m_sizes.at(it.font), pt(it.baseline, top), it.text,
                       it.grey ? QColor(90, 90, 90) : QColor(Qt::black));
            break;
        case PageItem::Kind::Line:
        case PageItem::Kind::DoubleLine: {
            const QPointF a(it.rect.left(), it.rect.top()), b(it.rect.right(), it.rect.top());
            m_pdf.line(pt(a, top), pt(b, top), 0.6, Qt::black);
            if (it.kind == PageItem::Kind::DoubleLine)
                m_pdf.line(pt(a + QPointF(0, 20), top), pt(b + QPointF(0, 20), top), 0.6, Qt::black);
            break;
        }
        case PageItem::Kind::Image:
            return m_pdf.image(QRectF(pt(it.rect.topLeft(), top), it.rect.size() / kUnitsPerPoint), m_logo);
        case PageItem::Kind::Rule:
            m_pdf.line(pt(it.rect.topLeft(), top), pt(it.rect.bottomRight(), top), 0.6, Qt::black);
            break;
        }
        return true;
    }

    detail::PdfFile &m_pdf;
    const LayoutData &m_L;
    const QFontMetricsF m_smallMetrics{m_L.fonts.at(Small)};
    const QImage &m_logo;
    bool m_twoUp;
    bool m_open = false;
    QSizeF m_sheet;
    QVector<int> m_fonts;
    QVector<qreal> m_sizes;
};

} // namespace

detail::PdfOutcome detail::writePdfFile(const RenderedReport &r, const QString &path, QString *error)
{
    if (r.hasChartPage())
        return PdfOutcome::NeedsPainter;
    const LayoutData &L = r.pages();
    PdfFile pdf;
    if (!pdf.open(path, r.heading, creditCompanyName(), error))
        return PdfOutcome::Failed;
    // A half-page document goes two to an A4 sheet, as the printer has it.
    PdfSheets sheets(pdf, L, r.logo, r.design.halfPage);
    const int count = r.pageCount();
    for (int page = 0; page < count; ++page)
        if (!sheets.add(L.page(r, page), page, count))
            return PdfOutcome::NeedsPainter;
    if (count == 0) {
        pdf.beginPage(L.size / kUnitsPerPoint);
        pdf.endPage();
    }
    sheets.close();
    return pdf.finish(error) ? PdfOutcome::Written : PdfOutcome::Failed;
}

void RenderedReport::paintPage(QPainter &p, int page, const QRectF &target) const
{
    const LayoutData &L = pages();
    if (hasChartPage() && page == L.pageStarts.size()) {
        paintChartPage(p, target);
        return;
    }
    if (page < 0 || page >= L.pageStarts.size())
        return;
    paintLaidOutPage(p, L, L.page(*this, page), page, pageCount(), logo, target);
}

void RenderedReport::paintChartPage(QPainter &p, const QRectF &target) const
{
    const LayoutData &L = pages();
    const ChartData data = chartData(*this);
    p.save();
    p.translate(target.topLeft());
    p.scale(target.width() / L.size.width(), target.height() / L.size.height());
    p.setRenderHint(QPainter::Antialiasing, true);
    p.setRenderHint(QPainter::TextAntialiasing, true);
    const qreal left = kMarginX, right = L.size.width() - kMarginX;
    qreal y = kMarginX;
    auto line = [&](FontRole role, const QString &text) {
        if (text.isEmpty())
            return;
        p.setFont(L.fonts.at(role));
        const qreal h = QFontMetricsF(L.fonts.at(role)).height();
        p.setPen(Qt::black);
        p.drawText(QRectF(left, y, right - left, h), Qt::AlignHCenter | Qt::AlignVCenter, text);
        y += h * 1.2;
    };
    line(Name, header.clientName);
    line(Title, heading);
    line(Body, periodText);
    y += 40;
    const qreal bottom = L.footer ? L.footerTop - 40 : L.size.height() - kMarginX;
    chartPainterSlot()(p, QRectF(left, y, right - left, bottom - y), data);
    if (L.footer) {
        const qreal h = QFontMetricsF(L.fonts.at(Small)).height();
        p.setPen(QPen(Qt::black, 4));
        p.drawLine(QPointF(left, L.footerTop), QPointF(right, L.footerTop));
        p.setFont(L.fonts.at(Small));
        p.setPen(QColor(70, 70, 70));
        const QRectF row(left, L.footerTop + 40, right - left, h);
        p.drawText(row, Qt::AlignLeft | Qt::AlignVCenter, L.footerLeft);
        p.setPen(Qt::black);
        p.drawText(row, Qt::AlignRight | Qt::AlignVCenter, QStringLiteral("Page %1 of %1").arg(pageCount()));
    }
    p.restore();
}

int RenderedReport::lineAt(int page, const QPointF &pt) const
{
    const LayoutData &L = pages();
    if (page < 0 || page >= L.pageStarts.size())
        return -1;
    const QPointF u = pt * kUnitsPerPoint;
    for (const auto &h : L.page(*this, page).hits)
        if (h.first.contains(u))
            return h.second;
    return -1;
}

QStringList RenderedReport::pageTexts() const
{
    QStringList out;
    const LayoutData &L = pages();
    for (int i = 0; i < L.pageStarts.size(); ++i) {
        QStringList words;
        for (const PageItem &it : L.header)
            if (it.kind == PageItem::Kind::Text) words << it.text;
        for (const PageItem &it : L.page(*this, i).items)
            if (it.kind == PageItem::Kind::Text) words << it.text;
        if (L.footer)
            words << QStringLiteral("Page %1 of %2").arg(i + 1).arg(pageCount());
        out << words.join(QLatin1Char('\n'));
    }
    if (hasChartPage()) {
        const ChartData data = chartData(*this);
        QStringList words{header.clientName, heading, periodText, data.caption};
        words << data.categories << data.seriesNames;
        out << words.join(QLatin1Char('\n'));
    }
    return out;
}

// ------------------------------------------------------------ spooled pages

namespace detail {

void ColumnNeeds::note(const ReportDesign &design, const ReportLine &l)
{
    const int n = design.columns.size();
    if (longest.size() < n) {
        longest.resize(n);
        longestLen.resize(n);
    }
    const int font = l.kind == ReportLine::Kind::Detail && !l.emphasis ? Body : BodyBold;
    for (int i = 0; i < n && i < l.texts.size(); ++i) {
        if (design.columns.at(i).format == FieldFormat::Text)
            continue;
        const QString &t = l.texts.at(i);
        if (t.size() + 1 < longestLen.at(i))
            continue;
        if (t.size() > longestLen.at(i) + 1) {
            longest[i].clear();
            longestLen[i] = t.size();
        } else if (t.size() > longestLen.at(i)) {
            longestLen[i] = t.size();
        }
        if (longest.at(i).size() < 64)
            longest[i].insert(t, font);
    }
}

bool LineSpool::open(QString *error)
{
    if (!m_file.open()) {
        if (error)
            *error = QStringLiteral("The report's work file cannot be made: %1").arg(m_file.errorString());
        return false;
    }
    m_stream.setDevice(&m_file);
    return true;
}

void LineSpool::append(const ReportLine &l)
{
    m_stream << qint8(l.kind) << qint32(l.level) << l.emphasis << qint32(l.sourceRow) << l.label << l.texts;
    ++m_count;
}

bool LineSpool::rewind()
{
    m_read = 0;
    return m_file.flush() && m_file.seek(0) && m_stream.status() == QDataStream::Ok;
}

bool LineSpool::next(ReportLine &l)
{
    if (m_read >= m_count)
        return false;
    qint8 kind = 0;
    qint32 level = 0, sourceRow = -1;
    m_stream >> kind >> level >> l.emphasis >> sourceRow >> l.label >> l.texts;
    l.kind = ReportLine::Kind(kind);
    l.level = level;
    l.sourceRow = sourceRow;
    ++m_read;
    return m_stream.status() == QDataStream::Ok;
}

int writeSpooledPdf(const RenderedReport &shell, const ColumnNeeds &needs, LineSpool &spool, const QString &path,
                    QString *error)
{
    auto failed = [&](const QString &why) {
        if (error)
            *error = why;
        return -1;
    };
    LayoutData L;
    L.builder = std::make_unique<PageBuilder>(shell, L, &needs);
    PageBuilder &b = *L.builder;
    // Where each page starts, from the lines' heights alone.
    b.startRun();
    if (!spool.rewind())
        return failed(QStringLiteral("The report's work file cannot be read."));
    ReportLine line;
    int lines = 0;
    bool latin = true; // every text for the file's own fonts, as far as the lines tell
    while (spool.next(line)) {
        b.measureLine(line, lines++);
        if (latin) {
            const LayoutData::Face &f = L.face(line.kind == ReportLine::Kind::Detail && !line.emphasis ? Body : BodyBold);
            qreal w = 0;
            latin = f.width(line.label, &w)
                    && std::all_of(line.texts.cbegin(), line.texts.cend(), [&](const QString &t) { return f.width(t, &w); });
        }
    }
    if (lines != spool.count())
        return failed(QStringLiteral("The report's work file cannot be read."));
    b.endRun(lines);
    const int count = L.pageStarts.size();

    // The spooled lines laid out page after page, from the first.
    int at = 0;
    auto nextPage = [&](int page) {
        const int end = page + 1 < count ? L.pageStarts.at(page + 1) : lines;
        Page items = b.beginPage();
        for (; at < end && spool.next(line); ++at)
            b.placeLine(items, line, at);
        if (page == count - 1)
            b.endLastPage(items);
        return items;
    };

    // Set as strings where every text allows it; the painter otherwise.
    if (latin) {
        PdfFile out;
        if (!out.open(path, shell.heading, creditCompanyName(), error))
            return -1;
        if (!spool.rewind())
            return failed(QStringLiteral("The report's work file cannot be read."));
        PdfSheets sheets(out, L, shell.logo, false);
        bool set = true;
        for (int page = 0; page < count && set; ++page)
            set = sheets.add(nextPage(page), page, count);
        if (set) {
            sheets.close();
            return out.finish(error) ? count : -1;
        }
    }

    QPdfWriter pdf(path);
    setUpPdfWriter(pdf, shell);
    QPainter p;
    if (!p.begin(&pdf))
        return failed(QStringLiteral("The output cannot be opened for drawing."));
    if (!spool.rewind())
        return failed(QStringLiteral("The report's work file cannot be read."));
    at = 0;
    for (int page = 0; page < count; ++page) {
        if (page > 0)
            pdf.newPage();
        const QRectF sheet(0, 0, pdf.width(), pdf.height());
        p.fillRect(sheet, Qt::white);
        paintLaidOutPage(p, L, nextPage(page), page, count, shell.logo, sheet);
    }
    if (!p.end())
        return failed(QStringLiteral("%1 cannot be written.").arg(path));
    return count;
}

} // namespace detail

} // namespace Reports
