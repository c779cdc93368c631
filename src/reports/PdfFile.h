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

class PdfFile
{
public:
    PdfFile() = default;
    PdfFile(const PdfFile &) = delete;
    PdfFile &operator=(const PdfFile &) = delete;

    // Opens `path` for writing; false with `error` when it cannot be.
    bool open(const QString &path, const QString &title, const QString &creator, QString *error);

    // A font of the file for `raw` (the same family and style give the
    // same font whatever the size); the number to set texts with.
    int font(const QRawFont &raw);
    // Whether `text` can be set in `font`: every character in Latin-1
    // (no control character) and in the font.
    bool canSet(int font, QStringView text) const;

    void beginPage(const QSizeF &points);
    // `text` with its baseline starting at `at`, `size` points high.
    void text(int font, qreal size, const QPointF &at, QStringView text, const QColor &colour);
    void line(const QPointF &from, const QPointF &to, qreal width, const QColor &colour, bool dashed = false);
    void image(const QRectF &rect, const QImage &image);
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
        std::array<quint32, 256> glyph{};
        std::array<bool, 256> used{};
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
