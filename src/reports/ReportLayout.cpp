// Page layout of a rendered report. Everything is placed in tenths of a
// point on an A4 page (portrait or landscape); painting scales that to the
// device, so the viewer, the printer and the PDF show the same pages.
#include "reports/ReportFrame.h"

#include <QFontMetricsF>
#include <QHash>
#include <QPainter>
#include <QPen>

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
    enum class Kind { Text, Line, DoubleLine, Image };
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

struct LayoutData
{
    QSizeF size;
    QVector<QFont> fonts;
    QVector<PageItem> header;  // the same on every page
    QVector<Page> pages;
    bool footer = true;
    qreal footerTop = 0;
    QString footerLeft, footerCentre;
};

RenderedReport::RenderedReport() : m_layout(std::make_unique<LayoutData>()) {}
RenderedReport::~RenderedReport() = default;
RenderedReport::RenderedReport(RenderedReport &&) noexcept = default;
RenderedReport &RenderedReport::operator=(RenderedReport &&) noexcept = default;

int RenderedReport::pageCount() const { return m_layout ? m_layout->pages.size() : 0; }

QSizeF RenderedReport::pageSizePoints() const
{
    return m_layout ? m_layout->size / kUnitsPerPoint : QSizeF();
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

class Builder
{
public:
    Builder(RenderedReport &r, LayoutData &L) : m_r(r), m_d(r.design), m_L(L)
    {
        L.fonts = makeFonts();
        for (const QFont &f : L.fonts)
            m_metrics << QFontMetricsF(f);
        m_widths.resize(L.fonts.size());
        L.size = m_d.landscape ? QSizeF(kA4Height, kA4Width) : QSizeF(kA4Width, kA4Height);
        m_left = kMarginX;
        m_right = L.size.width() - kMarginX;
        qreal total = 0;
        for (const DesignColumn &c : m_d.columns)
            total += c.width;
        qreal x = m_left;
        for (const DesignColumn &c : m_d.columns) {
            const qreal w = (m_right - m_left) * c.width / total;
            m_colX << x;
            m_colW << w;
            x += w;
        }
    }

    void run()
    {
        buildHeader();
        m_L.footer = !m_d.strip;
        m_bottom = m_L.size.height() - kMarginBottom;
        if (m_L.footer) {
            const qreal fh = lineHeight(Small) + 60;
            m_L.footerTop = m_bottom - fh;
            m_bottom = m_L.footerTop - 40;
            m_L.footerLeft = QStringLiteral("%1  |  %2  |  Printed %3")
                                 .arg(m_r.header.companyName, m_r.header.contact,
                                      m_r.printedAt.toString(QStringLiteral("dd/MM/yyyy HH:mm")));
        }
        newPage();
        for (int i = 0; i < m_r.lines.size(); ++i)
            placeLine(i);
        if (!m_d.signatures.isEmpty())
            placeSignatures();
    }

private:
    qreal lineHeight(int font) const { return m_metrics.at(font).height(); }
    qreal rowHeight() const { return lineHeight(Body) * 1.45; }

    qreal advance(const QString &text, int font)
    {
        QHash<QString, qreal> &cache = m_widths[font];
        auto it = cache.constFind(text);
        if (it != cache.constEnd())
            return *it;
        const qreal w = m_metrics.at(font).horizontalAdvance(text);
        if (cache.size() < 50000)
            cache.insert(text, w);
        return w;
    }

    void addText(QVector<PageItem> &to, const QRectF &rect, const QString &text, int font, int align, bool grey = false)
    {
        if (text.isEmpty())
            return;
        PageItem it;
        it.kind = PageItem::Kind::Text;
        it.rect = rect;
        it.text = text;
        qreal w = advance(text, font);
        if (w > rect.width()) {
            it.text = m_metrics.at(font).elidedText(text, Qt::ElideRight, rect.width());
            w = m_metrics.at(font).horizontalAdvance(it.text);
        }
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
        qreal y = kMarginTop;
        const qreal width = m_right - m_left;
        qreal logoBottom = y;
        qreal logoSpace = 0;
        if (!m_r.logo.isNull()) {
            const qreal aspect = qreal(m_r.logo.width()) / qMax(1, m_r.logo.height());
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
        const HeaderTexts &t = m_r.header;
        auto centred = [&](const QString &text, int font) {
            if (text.isEmpty())
                return;
            const qreal h = lineHeight(font);
            addText(H, QRectF(m_left + logoSpace, y, width - 2 * logoSpace, h), text, font, Qt::AlignHCenter);
            y += h;
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
        y = qMax(y, logoBottom) + 60;
        addLine(H, m_left, m_right, y);
        y += 80;
        if (!m_r.heading.isEmpty()) {
            const qreal h = lineHeight(Title);
            addText(H, QRectF(m_left, y, width, h), m_r.heading, Title, Qt::AlignHCenter);
            y += h + 10;
        }
        if (!m_r.periodText.isEmpty()) {
            const qreal h = lineHeight(BodyBold);
            addText(H, QRectF(m_left, y, width, h), m_r.periodText, BodyBold, Qt::AlignHCenter);
            y += h;
        }
        y += 60;
        if (!m_d.documentFields.isEmpty() && !m_r.rows.isEmpty()) {
            // Caption and value pairs, two to a line.
            const Row &first = m_r.rows.at(0);
            const qreal half = width / 2;
            const qreal h = rowHeight();
            for (int i = 0; i < m_d.documentFields.size(); ++i) {
                const DesignField &f = m_d.documentFields.at(i);
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
                if (i % 2 == 1 || i == m_d.documentFields.size() - 1)
                    y += h;
            }
            y += 60;
        }
        const qreal ch = rowHeight() * 1.1;
        addLine(H, m_left, m_right, y);
        for (int i = 0; i < m_d.columns.size(); ++i)
            addText(H, cell(i, y, ch), m_d.columns.at(i).caption, Caption, alignOf(m_d.columns.at(i)) | Qt::AlignVCenter);
        y += ch;
        addLine(H, m_left, m_right, y);
        m_bodyTop = y + 30;
    }

    void newPage()
    {
        m_L.pages.append(Page());
        m_y = m_bodyTop;
    }

    Page &page() { return m_L.pages.last(); }

    qreal heightOf(const ReportLine &l) const
    {
        switch (l.kind) {
        case ReportLine::Kind::GroupHeader: return rowHeight() + (l.level == 0 ? 50 : 25);
        case ReportLine::Kind::Detail: return rowHeight();
        case ReportLine::Kind::GroupFooter: return rowHeight() + 50;
        case ReportLine::Kind::Total: return rowHeight() + 110;
        }
        return rowHeight();
    }

    int firstSumColumn(const ReportLine &l) const
    {
        for (int i = 0; i < l.texts.size(); ++i)
            if (!l.texts.at(i).isEmpty())
                return i;
        return m_d.columns.size();
    }

    void placeLine(int index)
    {
        const ReportLine &l = m_r.lines.at(index);
        qreal need = heightOf(l);
        if (l.kind == ReportLine::Kind::GroupHeader) {
            // A heading keeps its first line with it.
            need += rowHeight();
            if (m_d.groups.value(l.level).newPage && m_y > m_bodyTop + 1)
                newPage();
        }
        if (m_y + need > m_bottom && m_y > m_bodyTop + 1)
            newPage();
        const qreal h = heightOf(l);
        qreal y = m_y;
        const qreal rh = rowHeight();
        switch (l.kind) {
        case ReportLine::Kind::GroupHeader: {
            y += h - rh;
            const qreal x = m_left + kPad + l.level * kIndent;
            addText(page().items, QRectF(x, y, m_right - x, rh), l.label, BodyBold, Qt::AlignLeft | Qt::AlignVCenter);
            break;
        }
        case ReportLine::Kind::Detail: {
            const int font = l.emphasis ? BodyBold : Body;
            for (int i = 0; i < l.texts.size(); ++i)
                addText(page().items, cell(i, y, rh), l.texts.at(i), font, alignOf(m_d.columns.at(i)) | Qt::AlignVCenter);
            page().hits.append(qMakePair(QRectF(m_left, y, m_right - m_left, rh), index));
            break;
        }
        case ReportLine::Kind::GroupFooter:
        case ReportLine::Kind::Total: {
            const bool total = l.kind == ReportLine::Kind::Total;
            y += 20;
            const int first = firstSumColumn(l);
            const qreal labelX = m_left + kPad + (total ? 0 : l.level * kIndent);
            const qreal labelRight = first < m_d.columns.size() ? m_colX.at(first) : m_right;
            for (int i = 0; i < l.texts.size(); ++i) {
                if (l.texts.at(i).isEmpty())
                    continue;
                addLine(page().items, m_colX.at(i) + kPad, m_colX.at(i) + m_colW.at(i) - kPad, y);
                addText(page().items, cell(i, y + 10, rh), l.texts.at(i), BodyBold,
                        alignOf(m_d.columns.at(i)) | Qt::AlignVCenter);
                if (total)
                    addLine(page().items, m_colX.at(i) + kPad, m_colX.at(i) + m_colW.at(i) - kPad, y + rh + 30, true);
            }
            addText(page().items, QRectF(labelX, y + 10, qMax<qreal>(labelRight - labelX - kPad, 800), rh), l.label,
                    BodyBold, Qt::AlignLeft | Qt::AlignVCenter);
            break;
        }
        }
        m_y += h;
    }

    void placeSignatures()
    {
        const qreal h = rowHeight() * 4;
        if (m_y + h > m_bottom)
            newPage();
        const qreal y = qMax(m_y + rowHeight() * 2, m_bottom - rowHeight() * 1.5);
        const int n = m_d.signatures.size();
        const qreal slot = (m_right - m_left) / n;
        for (int i = 0; i < n; ++i) {
            const qreal x = m_left + i * slot + slot * 0.1;
            const qreal w = slot * 0.8;
            addLine(page().items, x, x + w, y);
            addText(page().items, QRectF(x, y + 20, w, rowHeight()), m_d.signatures.at(i), Caption, Qt::AlignHCenter);
        }
    }

    RenderedReport &m_r;
    const ReportDesign &m_d;
    LayoutData &m_L;
    qreal m_left = 0, m_right = 0, m_bodyTop = 0, m_bottom = 0, m_y = 0;
    QVector<qreal> m_colX, m_colW;
    QVector<QFontMetricsF> m_metrics;
    QVector<QHash<QString, qreal>> m_widths;
};

// What the painter holds already, so that a page of a thousand texts does
// not change font and pen a thousand times (slow on PDF).
struct PaintState
{
    int font = -1;
    int pen = -1; // 0 black text, 1 grey text, 2 rule
};

void paintItem(QPainter &p, const LayoutData &L, const PageItem &it, const QImage &logo, PaintState &st)
{
    switch (it.kind) {
    case PageItem::Kind::Text: {
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
    }
}

} // namespace

void RenderedReport::layout()
{
    m_layout = std::make_unique<LayoutData>();
    Builder(*this, *m_layout).run();
}

void RenderedReport::paintPage(QPainter &p, int page, const QRectF &target) const
{
    if (!m_layout || page < 0 || page >= m_layout->pages.size())
        return;
    const LayoutData &L = *m_layout;
    p.save();
    p.translate(target.topLeft());
    p.scale(target.width() / L.size.width(), target.height() / L.size.height());
    p.setRenderHint(QPainter::Antialiasing, true);
    p.setRenderHint(QPainter::TextAntialiasing, true);
    p.setRenderHint(QPainter::SmoothPixmapTransform, true);
    PaintState st;
    for (const PageItem &it : L.header)
        paintItem(p, L, it, logo, st);
    for (const PageItem &it : L.pages.at(page).items)
        paintItem(p, L, it, logo, st);
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
        p.drawText(row, Qt::AlignRight | Qt::AlignVCenter, QStringLiteral("Page %1 of %2").arg(page + 1).arg(L.pages.size()));
    }
    p.restore();
}

int RenderedReport::lineAt(int page, const QPointF &pt) const
{
    if (!m_layout || page < 0 || page >= m_layout->pages.size())
        return -1;
    const QPointF u = pt * kUnitsPerPoint;
    for (const auto &h : m_layout->pages.at(page).hits)
        if (h.first.contains(u))
            return h.second;
    return -1;
}

QStringList RenderedReport::pageTexts() const
{
    QStringList out;
    if (!m_layout)
        return out;
    for (int i = 0; i < m_layout->pages.size(); ++i) {
        QStringList words;
        for (const PageItem &it : m_layout->header)
            if (it.kind == PageItem::Kind::Text) words << it.text;
        for (const PageItem &it : m_layout->pages.at(i).items)
            if (it.kind == PageItem::Kind::Text) words << it.text;
        if (m_layout->footer)
            words << QStringLiteral("Page %1 of %2").arg(i + 1).arg(m_layout->pages.size());
        out << words.join(QLatin1Char('\n'));
    }
    return out;
}

} // namespace Reports
