#pragma once

// The report frame's own pieces for writing a long report without holding
// it: the lines go to a spool file as the rows are read, and the pages are
// laid out and painted from there one at a time; a CSV file takes the lines
// as they come. Used by ReportFrame::writeFile; nothing outside the frame
// needs them.
#include "reports/ReportFrame.h"

#include <QDataStream>
#include <QHash>
#include <QSaveFile>
#include <QTemporaryFile>
#include <QVector>

class QPdfWriter;

namespace Reports::detail {

// The widest figures met so far in each column, for sharing the page width
// out: figures in the report's font have one width per character, so only
// the longest texts of a column are kept (with the font they print in).
struct ColumnNeeds
{
    QVector<QHash<QString, int>> longest;
    QVector<int> longestLen;
    void note(const ReportDesign &design, const ReportLine &line);
};

// Report lines on disk, written once and read through as often as needed.
// Only what the pages print is kept (kind, level, label, texts, emphasis).
class LineSpool
{
public:
    bool open(QString *error);
    void append(const ReportLine &line);
    qint64 count() const { return m_count; }
    // Back to the first line; false when the file cannot be read again.
    bool rewind();
    bool next(ReportLine &line);

private:
    QTemporaryFile m_file;
    QDataStream m_stream;
    qint64 m_count = 0;
    qint64 m_read = 0;
};

// A CSV file written a line at a time, as the lines are made: the file
// takes its place only when finish() has written it whole.
class CsvStream
{
public:
    bool open(const QString &path, QString *error);
    // The column captions, before the first line.
    void begin(const ReportDesign &design);
    // `report` gives the design the line is of.
    void add(const RenderedReport &report, const ReportLine &line);
    bool finish(QString *error);

private:
    QSaveFile m_file;
    QByteArray m_chunk;
    bool m_ok = false;
};

// The page settings of a report's PDF.
void setUpPdfWriter(QPdfWriter &pdf, const RenderedReport &report);

// Writes the pages of `report` into a PDF file of our own making, each
// text set as one string (PdfFile). A report with a chart page or a text
// outside Latin-1 is left to the painter: NeedsPainter, and the file is to
// be written again by QPdfWriter.
enum class PdfOutcome { Written, NeedsPainter, Failed };
PdfOutcome writePdfFile(const RenderedReport &report, const QString &path, QString *error);

// Lays out and paints the spooled lines of `shell` (a report whose rows
// hold at most its first row and whose lines are in `spool`) into a PDF,
// one page at a time. Returns the number of pages, or -1 with `error`.
int writeSpooledPdf(const RenderedReport &shell, const ColumnNeeds &needs, LineSpool &spool, const QString &path,
                    QString *error);

} // namespace Reports::detail
