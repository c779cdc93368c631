#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

class QPagedPaintDevice;

namespace Reports {

class RenderedReport;

// Paints every page of the report onto a paged device (a PDF writer or a
// printer), one device page per report page. `first`/`last` are 1-based
// page numbers, 0 for all.
bool paintReport(const RenderedReport &report, QPagedPaintDevice &device, QString *error,
                 int first = 0, int last = 0);

bool exportPdf(const RenderedReport &report, const QString &path, QString *error);
// Comma-separated, UTF-8: a line of captions, then the report's lines with
// plain numbers (1234.50) and dates dd/mm/yyyy.
bool exportCsv(const RenderedReport &report, const QString &path, QString *error);
QByteArray csvText(const RenderedReport &report);
// An Office Open XML workbook of one sheet: amounts as numbers, dates as
// dates, subtotals and totals as the page shows them.
bool exportXlsx(const RenderedReport &report, const QString &path, QString *error);
QByteArray xlsxBytes(const RenderedReport &report);
// By the file's extension: .pdf, .csv, .xlsx.
bool exportFile(const RenderedReport &report, const QString &path, QString *error);

// A zip archive of stored (uncompressed) entries, enough for a workbook.
class ZipWriter
{
public:
    void add(const QString &name, const QByteArray &data);
    QByteArray finish();
    static quint32 crc32(const QByteArray &data);

private:
    struct Entry { QByteArray name; quint32 crc; quint32 size; quint32 offset; };
    QByteArray m_out;
    QVector<Entry> m_entries;
};

} // namespace Reports
