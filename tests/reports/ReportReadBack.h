#pragma once

// Reading a rendered report back as its reader would: the PDF's text
// through pdftotext, the workbook's cells and styles by unzipping its XML.
// Nothing here uses the program's own writers' code to read.

#include "reports/ReportExport.h"
#include "reports/ReportFrame.h"

#include <QFile>
#include <QMap>
#include <QProcess>
#include <QString>
#include <QXmlStreamReader>

namespace ReportReadBack {

inline QString runTool(const QString &tool, const QStringList &args, bool *ok = nullptr)
{
    QProcess p;
    p.start(tool, args);
    const bool done = p.waitForFinished(60000) && p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
    if (ok)
        *ok = done;
    return QString::fromUtf8(p.readAllStandardOutput());
}

inline QString pdfFileText(const QString &path)
{
    bool ok = false;
    const QString text = runTool(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), path, QStringLiteral("-")}, &ok);
    return ok ? text : QStringLiteral("PDFTOTEXT FAILED");
}

inline QString pdfText(const Reports::RenderedReport &r, const QString &dir)
{
    const QString path = dir + QStringLiteral("/out.pdf");
    QString error;
    if (!Reports::exportPdf(r, path, &error))
        return QStringLiteral("EXPORT FAILED: ") + error;
    return pdfFileText(path);
}

// The line of the text holding `key`, blanks squeezed.
inline QString lineWith(const QString &text, const QString &key)
{
    for (const QString &l : text.split(QLatin1Char('\n')))
        if (l.contains(key))
            return l.simplified();
    return QString();
}

struct Cell { QString value; QString type; QString format; };

// The cells of a workbook's first sheet by reference ("B7"), with the
// number format each cell's style gives it; the frozen rows and the
// column widths.
struct Sheet
{
    QMap<QString, Cell> cells;
    int frozenRows = 0;
    QMap<int, double> widths; // 1-based column
    Cell value(const QString &ref) const { return cells.value(ref); }
};

inline Sheet readXlsx(const QString &path)
{
    Sheet sheet;
    // Styles: number format codes by id, and each cell style's format id.
    QMap<QString, QString> formats{{QStringLiteral("0"), QStringLiteral("General")}, {QStringLiteral("4"), QStringLiteral("#,##0.00")}};
    QStringList xfFormats;
    {
        QXmlStreamReader x(runTool(QStringLiteral("unzip"), {QStringLiteral("-p"), path, QStringLiteral("xl/styles.xml")}));
        bool inCellXfs = false;
        while (!x.atEnd()) {
            x.readNext();
            if (x.isStartElement() && x.name() == QLatin1String("numFmt"))
                formats[x.attributes().value(QLatin1String("numFmtId")).toString()] = x.attributes().value(QLatin1String("formatCode")).toString();
            else if (x.isStartElement() && x.name() == QLatin1String("cellXfs"))
                inCellXfs = true;
            else if (x.isEndElement() && x.name() == QLatin1String("cellXfs"))
                inCellXfs = false;
            else if (inCellXfs && x.isStartElement() && x.name() == QLatin1String("xf"))
                xfFormats << x.attributes().value(QLatin1String("numFmtId")).toString();
        }
    }
    QStringList shared;
    {
        QXmlStreamReader x(runTool(QStringLiteral("unzip"), {QStringLiteral("-p"), path, QStringLiteral("xl/sharedStrings.xml")}));
        while (!x.atEnd()) {
            x.readNext();
            if (x.isStartElement() && x.name() == QLatin1String("t"))
                shared << x.readElementText();
        }
    }
    QXmlStreamReader x(runTool(QStringLiteral("unzip"), {QStringLiteral("-p"), path, QStringLiteral("xl/worksheets/sheet1.xml")}));
    QString ref;
    while (!x.atEnd()) {
        x.readNext();
        if (!x.isStartElement())
            continue;
        const auto at = x.attributes();
        if (x.name() == QLatin1String("c")) {
            ref = at.value(QLatin1String("r")).toString();
            sheet.cells[ref].type = at.value(QLatin1String("t")).toString();
            const int style = at.value(QLatin1String("s")).toInt();
            sheet.cells[ref].format = formats.value(xfFormats.value(style, QStringLiteral("0")));
        } else if (x.name() == QLatin1String("v") || x.name() == QLatin1String("t")) {
            const QString v = x.readElementText();
            sheet.cells[ref].value = sheet.cells[ref].type == QLatin1String("s") ? shared.value(v.toInt()) : v;
        } else if (x.name() == QLatin1String("pane") && at.value(QLatin1String("state")) == QLatin1String("frozen")) {
            sheet.frozenRows = at.value(QLatin1String("ySplit")).toInt();
        } else if (x.name() == QLatin1String("col")) {
            for (int c = at.value(QLatin1String("min")).toInt(); c <= at.value(QLatin1String("max")).toInt(); ++c)
                sheet.widths[c] = at.value(QLatin1String("width")).toDouble();
        }
    }
    return sheet;
}

inline Sheet readSheet(const Reports::RenderedReport &r, const QString &dir)
{
    const QString path = dir + QStringLiteral("/out.xlsx");
    QString error;
    if (!Reports::exportXlsx(r, path, &error))
        return Sheet();
    return readXlsx(path);
}

// The row number of the first cell of column `col` holding `text`.
inline int sheetRow(const Sheet &s, const QString &text, QChar col = QLatin1Char('A'))
{
    int row = -1;
    for (auto it = s.cells.begin(); it != s.cells.end(); ++it) {
        const int r = it.key().mid(1).toInt();
        if (it.key().startsWith(col) && it->value == text && (row < 0 || r < row))
            row = r;
    }
    return row;
}

// Runs tessel-report on the embedded store in `dataDir`, with no settings
// file; returns its exit status and, in `err`, the tool's own last line on
// standard error (Qt may say things before it).
inline int runReportTool(const QString &dataDir, const QString &scratchDir, const QStringList &args, QString *err = nullptr)
{
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("TESSEL_DATA_DIR"), dataDir);
    env.insert(QStringLiteral("TESSEL_CONFIG"), scratchDir + QStringLiteral("/none.ini"));
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    p.setProcessEnvironment(env);
    p.start(QStringLiteral(TESSEL_BIN_DIR "/tessel-report"), args);
    p.waitForFinished(60000);
    if (err)
        *err = QString::fromUtf8(p.readAllStandardError()).trimmed().section(QLatin1Char('\n'), -1);
    return p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
}

inline bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
}

inline bool haveTool(const QString &tool)
{
    QProcess p;
    p.start(tool, {QStringLiteral("-v")});
    return p.waitForFinished(5000);
}

} // namespace ReportReadBack
