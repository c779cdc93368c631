#pragma once

#include "reports/ReportFrame.h"

#include <QScrollArea>
#include <QWidget>

class QComboBox;
class QLabel;
class QPushButton;
class QSpinBox;

namespace Reports {

// One page of a report, drawn at a zoom; a double click on a line asks
// for the linked report.
class ReportPageView : public QWidget
{
    Q_OBJECT
public:
    explicit ReportPageView(QWidget *parent = nullptr);

    void setReport(const RenderedReport *report);
    void setPage(int page);
    int page() const { return m_page; }
    void setZoom(int percent);
    int zoom() const { return m_zoom; }
    // The zoom at which the page's width fills `availableWidth` pixels.
    int zoomToFitWidth(int availableWidth) const;
    QSize sizeHint() const override;
    // The page's rectangle inside the widget.
    QRectF pageRect() const;

signals:
    void lineActivated(int line);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    const RenderedReport *m_report = nullptr;
    int m_page = 0;
    int m_zoom = 100;
};

} // namespace Reports

// The report viewer: the pages of the latest report, first at the page's
// width and then at the zoom the user chose, with page turning, zoom, print (printer dialogue first) and export
// to PDF, Excel workbook and CSV. Keys: PgUp/PgDn turn pages, Home/End go
// to the first and last, Ctrl++/Ctrl+- zoom, Ctrl+P prints.
class frmViewReport : public QWidget
{
    Q_OBJECT
public:
    explicit frmViewReport(QWidget *parent = nullptr);
    ~frmViewReport() override;

    void setReport(Reports::RenderedReport report);
    const Reports::RenderedReport &report() const { return m_report; }

    int currentPage() const;
    void showPage(int page);          // 0-based
    void setZoom(int percent);        // as chooseZoom()
    int zoom() const;
    // The user's choice of zoom (0: the page's width), kept for the next
    // report of the session.
    void chooseZoom(int percent);
    static int chosenZoom();

    // Export without a file dialogue (the dialogue's choice ends here).
    bool exportTo(const QString &path);
    // Opens the linked report of a report line (what a double click does).
    frmViewReport *drillDown(int line);

    Reports::ReportPageView *crViewer = nullptr;
    QPushButton *cmdPrintSetting = nullptr;
    QPushButton *cmdFirstPage = nullptr;
    QPushButton *cmdPreviousPage = nullptr;
    QPushButton *cmdNextPage = nullptr;
    QPushButton *cmdLastPage = nullptr;
    QSpinBox *txtPage = nullptr;
    QLabel *lblPageCount = nullptr;
    QComboBox *cmbZoom = nullptr;
    QPushButton *cmdExportPdf = nullptr;
    QPushButton *cmdExportExcel = nullptr;
    QPushButton *cmdExportCsv = nullptr;
    QLabel *lblStatus = nullptr;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    bool handleKey(QKeyEvent *event);
    void print();
    void exportAs(const QString &filter, const QString &suffix);
    void updatePageControls();
    void applyZoom();
    void showAtZoom(int percent);

    Reports::RenderedReport m_report;
    QScrollArea *m_scroll = nullptr;
    bool m_fitWidth = true;
};

namespace Reports {

// Runs a report for a screen: renders it with the hourglass on, says what
// went wrong as a critical message (the screen stays usable), and shows it
// in the viewer, which comes to the front at the session's zoom. Returns
// the viewer, or nullptr when the report could not be made.
frmViewReport *showReport(QWidget *parent, const ReportRequest &request);

// The viewer that showReport() uses (nullptr when closed).
frmViewReport *currentViewer();

} // namespace Reports
