#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <functional>

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
// plain numbers (1234.50), a balance's side ("DR"/"CR") in a column of
// its own after it, and dates dd/mm/yyyy.
bool exportCsv(const RenderedReport &report, const QString &path, QString *error);
QByteArray csvText(const RenderedReport &report);
// An Excel workbook of one sheet: amounts as numbers, dates as dates,
// subtotals and totals as the page shows them, the headings frozen and
// each column as wide as its widest figure. Written row by row.
bool exportXlsx(const RenderedReport &report, const QString &path, QString *error);
// By the file's extension: .pdf, .csv, .xlsx.
bool exportFile(const RenderedReport &report, const QString &path, QString *error);

namespace detail {
// Lets `write` make the file under a name beside `path` and puts it in
// place of `path` only once it was written whole: a failed or interrupted
// export leaves a file already there as it was.
bool writeReplacing(const QString &path, QString *error, const std::function<bool(const QString &)> &write);
} // namespace detail

} // namespace Reports
