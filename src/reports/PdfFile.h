#pragma once

// A PDF file written as it goes, for the report frame's pages: texts,
// rules and a picture, nothing else. Each text is set as one string in a
// TrueType font of the page (simple fonts with the Windows Latin encoding,
// embedded with only the glyphs the file uses), so a page of a thousand
// figures is a thousand short commands, and the file stays readable and
// searchable in any PDF reader.
//
// Only Latin texts can be set this way: a page with another character is
// for the painter (QPdfWriter), which the caller asks canSet() first.
//
// Coordinates are points from the top left of the sheet.

#include <QByteArray>
#include <QColor>
#include <QFile>
#include <QHash>
#include <QImage>
#include <QPointF>
#include <QRawFont>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QVector>

#include <array>
#include <vector>

namespace Reports::detail {

// The code of a character in the Windows Latin set the report fonts are
// set in (Latin-1 and the 27 signs of 0x80-0x9F: dashes, quotes, the euro
// sign ...), or -1 for a character outside it and for control characters.
int winAnsiCode(QChar ch);
// The character of a code of that set; a null character for none.
QChar winAnsiChar(int code);

// A font's glyph of each code of the Windows Latin set (0: none).
using WinAnsiGlyphs = std::array<quint32, 256>;
WinAnsiGlyphs winAnsiGlyphs(const QRawFont &raw);

class PdfFile
{
public:
    PdfFile() = default;
    PdfFile(const PdfFile &) = delete;
    PdfFile &operator=(const PdfFile &) = delete;

    // Opens `path` for writing; false with `error` when it cannot be.
    bool open(const QString &path, const QString &title, const QString &creator, QString *error);

    // A font of the file for `raw` (the same family and style give the
    // same font whatever the size), with its glyphs of the Windows Latin
    // set; the number to set texts with.
    int font(const QRawFont &raw, const WinAnsiGlyphs &glyphs);
    // Whether `text` can be set in `font`: every character in the Windows
    // Latin set and in the font, and the font one that can be embedded.
    bool canSet(int font, QStringView text) const;

    void beginPage(const QSizeF &points);
    // `text` with its baseline starting at `at`, `size` points high.
    void text(int font, qreal size, const QPointF &at, QStringView text, const QColor &colour);
    void line(const QPointF &from, const QPointF &to, qreal width, const QColor &colour, bool dashed = false);
    // False, with nothing drawn, when the picture cannot be encoded.
    bool image(const QRectF &rect, const QImage &image);
    void endPage();

    // Writes the fonts, the pages' list and the index, and closes the
    // file; false with `error` when the file could not be written.
    bool finish(QString *error);

    int pageCount() const { return int(m_pages.size()); }

private:
    struct Face
    {
        QByteArray key;
        QByteArray name;        // the PostScript name, without blanks
        QRawFont raw;
        int object = 0;         // the font dictionary's object
        WinAnsiGlyphs glyph{};
        std::array<bool, 256> used{};
        bool embeddable = false; // a TrueType font with outlines to embed
    };

    int reserve();
    void beginObject(int object);
    void write(const QByteArray &bytes);
    void writeStream(int object, const QByteArray &dictionary, const QByteArray &data, bool compress);
    void writeFont(const Face &face);
    void setColour(QByteArray &to, const QColor &colour, bool stroke);

    QFile m_file;
    qint64 m_offset = 0;
    bool m_failed = false;
    std::vector<qint64> m_objects;   // offset of each object, by number - 1
    std::vector<int> m_pages;        // each page's object
    QVector<Face> m_faces;
    int m_imageObject = 0;
    qint64 m_imageKey = 0;
    QString m_title, m_creator;

    // The page being written: rules and pictures first, then the texts.
    QSizeF m_pageSize;
    QByteArray m_graphics;
    QByteArray m_texts;
    int m_textFont = -1;
    qreal m_textSize = 0;
    QRgb m_textColour = 0;
    bool m_textColourSet = false;
};

} // namespace Reports::detail
