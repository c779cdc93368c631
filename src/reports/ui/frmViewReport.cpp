#include "reports/ui/frmViewReport.h"
#include "reports/ui/ReportChart.h"

#include "foundation/Session.h"
#include "foundation/ui/MessageService.h"
#include "reports/ReportExport.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QScrollBar>
#include <QSpinBox>
#include <QStandardPaths>
#include <QTimer>
#include <QVBoxLayout>

namespace Reports {

namespace {
constexpr int kPageMargin = 16; // grey around the page, in pixels
}

ReportPageView::ReportPageView(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("crViewer"));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
}

void ReportPageView::setReport(const RenderedReport *report)
{
    m_report = report;
    m_page = 0;
    updateGeometry();
    resize(sizeHint());
    update();
}

void ReportPageView::setPage(int page)
{
    if (!m_report)
        return;
    m_page = qBound(0, page, qMax(0, m_report->pageCount() - 1));
    update();
}

void ReportPageView::setZoom(int percent)
{
    m_zoom = qBound(25, percent, 400);
    updateGeometry();
    resize(sizeHint());
    update();
}

int ReportPageView::zoomToFitWidth(int availableWidth) const
{
    const QSizeF pts = m_report ? m_report->pageSizePoints() : QSizeF(595, 842);
    const qreal full = pts.width() * logicalDpiX() / 72.0;
    if (full <= 0)
        return 100;
    return qBound(25, int((availableWidth - 2 * kPageMargin) * 100 / full), 400);
}

QSize ReportPageView::sizeHint() const
{
    const QSizeF pts = m_report ? m_report->pageSizePoints() : QSizeF(595, 842);
    const qreal scale = logicalDpiX() / 72.0 * m_zoom / 100.0;
    return QSize(int(pts.width() * scale) + 2 * kPageMargin, int(pts.height() * scale) + 2 * kPageMargin);
}

QRectF ReportPageView::pageRect() const
{
    const QSize s = sizeHint();
    const qreal w = s.width() - 2 * kPageMargin, h = s.height() - 2 * kPageMargin;
    const qreal x = qMax<qreal>(kPageMargin, (width() - w) / 2);
    return QRectF(x, kPageMargin, w, h);
}

void ReportPageView::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    p.fillRect(rect(), QColor(128, 128, 128));
    const QRectF page = pageRect();
    p.fillRect(page.translated(4, 4), QColor(70, 70, 70));
    p.fillRect(page, Qt::white);
    if (m_report)
        m_report->paintPage(p, m_page, page);
}

void ReportPageView::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (!m_report)
        return;
    const QRectF page = pageRect();
    const QSizeF pts = m_report->pageSizePoints();
    const QPointF at((event->position().x() - page.left()) * pts.width() / page.width(),
                     (event->position().y() - page.top()) * pts.height() / page.height());
    const int line = m_report->lineAt(m_page, at);
    if (line >= 0)
        emit lineActivated(line);
}

namespace {
QPointer<frmViewReport> g_viewer;
// The zoom the user chose in this session, kept for the next report; 0
// fits the page's width to the window.
int g_chosenZoom = 0;
// The folder a report was last saved to.
QString g_lastFolder;

class BusyCursor
{
public:
    BusyCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~BusyCursor() { QApplication::restoreOverrideCursor(); }
};
} // namespace

frmViewReport *currentViewer() { return g_viewer.data(); }

namespace {

frmViewReport *openViewer(QWidget *parent, const ReportRequest &request, frmViewReport *reuse)
{
    std::optional<RenderedReport> report;
    {
        BusyCursor busy;
        try {
            report.emplace(ReportFrame::render(session().db(), request));
        } catch (const DesignError &e) {
            QApplication::restoreOverrideCursor();
            MessageService::critical(parent, e.message());
            QApplication::setOverrideCursor(Qt::WaitCursor);
        } catch (const DbError &e) {
            QApplication::restoreOverrideCursor();
            MessageService::critical(parent, e.driverText());
            QApplication::setOverrideCursor(Qt::WaitCursor);
        }
    }
    if (!report)
        return nullptr;
    for (const QString &w : report->warnings)
        MessageService::critical(parent, QStringLiteral("Your own report design was not used, the standard one is shown instead.\n\n%1").arg(w));
    frmViewReport *viewer = reuse;
    if (!viewer) {
        viewer = new frmViewReport(parent ? parent->window() : nullptr);
        viewer->setAttribute(Qt::WA_DeleteOnClose);
    }
    viewer->setReport(std::move(*report));
    viewer->show();
    viewer->raise();
    viewer->activateWindow();
    // The keys work from the first moment: the page has the focus.
    viewer->crViewer->setFocus(Qt::OtherFocusReason);
    return viewer;
}

} // namespace

frmViewReport *showReport(QWidget *parent, const ReportRequest &given)
{
    ReportChart::install();
    // The working title's letterhead, unless the request names one.
    ReportRequest request = given;
    if (!request.letterhead) {
        const Session &s = session();
        request.letterhead = Lookups::Letterhead{s.currentTitle,  s.companyName,      s.companyAddress, s.companyPhone,
                                                 s.companyEmail,  s.companySaleTaxNo, s.companyNTN};
    }
    frmViewReport *v = openViewer(parent, request, g_viewer.data());
    if (v)
        g_viewer = v;
    return v;
}

} // namespace Reports

using namespace Reports;

frmViewReport::frmViewReport(QWidget *parent) : QWidget(parent, Qt::Window)
{
    ReportChart::install();
    setObjectName(QStringLiteral("frmViewReport"));
    setWindowTitle(QStringLiteral("REPORT"));

    auto *bar = new QHBoxLayout;
    auto button = [&](const char *name, const QString &caption, const QString &tip) {
        auto *b = new QPushButton(caption, this);
        b->setObjectName(QLatin1String(name));
        b->setToolTip(tip);
        b->setAutoDefault(false);
        bar->addWidget(b);
        return b;
    };
    cmdFirstPage = button("cmdFirstPage", QStringLiteral("|<"), QStringLiteral("First page (Home)"));
    cmdPreviousPage = button("cmdPreviousPage", QStringLiteral("<"), QStringLiteral("Previous page (PgUp)"));
    txtPage = new QSpinBox(this);
    txtPage->setObjectName(QStringLiteral("txtPage"));
    txtPage->setMinimum(1);
    txtPage->setFocusPolicy(Qt::ClickFocus);
    txtPage->setKeyboardTracking(false);
    bar->addWidget(txtPage);
    lblPageCount = new QLabel(this);
    lblPageCount->setObjectName(QStringLiteral("lblPageCount"));
    bar->addWidget(lblPageCount);
    cmdNextPage = button("cmdNextPage", QStringLiteral(">"), QStringLiteral("Next page (PgDn)"));
    cmdLastPage = button("cmdLastPage", QStringLiteral(">|"), QStringLiteral("Last page (End)"));
    bar->addSpacing(16);
    cmbZoom = new QComboBox(this);
    cmbZoom->setObjectName(QStringLiteral("cmbZoom"));
    cmbZoom->setFocusPolicy(Qt::ClickFocus);
    cmbZoom->addItem(QStringLiteral("Page width"), 0);
    for (int z : {50, 75, 100, 118, 125, 150, 200})
        cmbZoom->addItem(QStringLiteral("%1%").arg(z), z);
    bar->addWidget(cmbZoom);
    bar->addSpacing(16);
    cmdPrintSetting = button("cmdPrintSetting", QStringLiteral("&PRINT"), QStringLiteral("Print (Ctrl+P)"));
    cmdExportPdf = button("cmdExportPdf", QStringLiteral("P&DF"), QStringLiteral("Save as PDF"));
    cmdExportExcel = button("cmdExportExcel", QStringLiteral("&EXCEL"), QStringLiteral("Save as an Excel workbook"));
    cmdExportCsv = button("cmdExportCsv", QStringLiteral("C&SV"), QStringLiteral("Save as comma-separated text"));
    bar->addStretch(1);
    lblStatus = new QLabel(this);
    lblStatus->setObjectName(QStringLiteral("lblStatus"));
    bar->addWidget(lblStatus);

    crViewer = new ReportPageView;
    m_scroll = new QScrollArea(this);
    m_scroll->setWidget(crViewer);
    m_scroll->setWidgetResizable(false);
    m_scroll->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    m_scroll->setBackgroundRole(QPalette::Dark);

    auto *outer = new QVBoxLayout(this);
    outer->setContentsMargins(6, 6, 6, 6);
    outer->addLayout(bar);
    outer->addWidget(m_scroll, 1);

    // Every part of the viewer hands the report's keys to it, whichever has
    // the focus.
    for (QWidget *w : findChildren<QWidget *>())
        w->installEventFilter(this);
    crViewer->installEventFilter(this);
    for (QPushButton *b : findChildren<QPushButton *>())
        b->setFocusPolicy(Qt::ClickFocus);

    connect(cmdFirstPage, &QPushButton::clicked, this, [this] { showPage(0); });
    connect(cmdPreviousPage, &QPushButton::clicked, this, [this] { showPage(currentPage() - 1); });
    connect(cmdNextPage, &QPushButton::clicked, this, [this] { showPage(currentPage() + 1); });
    connect(cmdLastPage, &QPushButton::clicked, this, [this] { showPage(m_report.pageCount() - 1); });
    connect(txtPage, qOverload<int>(&QSpinBox::valueChanged), this, [this](int v) {
        if (v - 1 != currentPage())
            showPage(v - 1);
    });
    connect(cmbZoom, qOverload<int>(&QComboBox::activated), this, [this](int i) {
        chooseZoom(cmbZoom->itemData(i).toInt());
        crViewer->setFocus(Qt::OtherFocusReason);
    });
    connect(cmdPrintSetting, &QPushButton::clicked, this, &frmViewReport::print);
    connect(cmdExportPdf, &QPushButton::clicked, this, [this] { exportAs(QStringLiteral("PDF (*.pdf)"), QStringLiteral("pdf")); });
    connect(cmdExportExcel, &QPushButton::clicked, this, [this] { exportAs(QStringLiteral("Excel workbook (*.xlsx)"), QStringLiteral("xlsx")); });
    connect(cmdExportCsv, &QPushButton::clicked, this, [this] { exportAs(QStringLiteral("CSV (*.csv)"), QStringLiteral("csv")); });
    connect(crViewer, &ReportPageView::lineActivated, this, [this](int line) { drillDown(line); });

    // The viewer fills most of the screen, as the page wants the room.
    if (QScreen *screen = QGuiApplication::primaryScreen()) {
        const QRect avail = screen->availableGeometry();
        resize(qMin(avail.width() - 40, 1280), avail.height() - 60);
    }
    applyZoom();
    updatePageControls();
}

frmViewReport::~frmViewReport() = default;

void frmViewReport::setReport(RenderedReport report)
{
    m_report = std::move(report);
    setWindowTitle(!m_report.request.title.isEmpty() ? m_report.request.title : m_report.heading);
    crViewer->setReport(&m_report);
    applyZoom();
    m_scroll->horizontalScrollBar()->setValue(0);
    m_scroll->verticalScrollBar()->setValue(0);
    lblStatus->clear();
    updatePageControls();
}

int frmViewReport::currentPage() const { return crViewer->page(); }

void frmViewReport::showPage(int page)
{
    crViewer->setPage(page);
    m_scroll->verticalScrollBar()->setValue(0);
    updatePageControls();
}

void frmViewReport::setZoom(int percent)
{
    chooseZoom(percent);
}

void frmViewReport::showAtZoom(int percent)
{
    crViewer->setZoom(percent);
    m_scroll->horizontalScrollBar()->setValue(0);
    // The scroll area settles its range after the page's new size: the
    // left edge of the page stays in sight.
    QTimer::singleShot(0, this, [this] { m_scroll->horizontalScrollBar()->setValue(0); });
    int i = m_fitWidth ? 0 : cmbZoom->findData(crViewer->zoom());
    if (i < 0) {
        cmbZoom->addItem(QStringLiteral("%1%").arg(crViewer->zoom()), crViewer->zoom());
        i = cmbZoom->count() - 1;
    }
    cmbZoom->setCurrentIndex(i);
}

void frmViewReport::chooseZoom(int percent)
{
    g_chosenZoom = percent <= 0 ? 0 : qBound(25, percent, 400);
    applyZoom();
}

int frmViewReport::chosenZoom() { return g_chosenZoom; }

void frmViewReport::applyZoom()
{
    m_fitWidth = g_chosenZoom <= 0;
    if (m_fitWidth) {
        // Before the first show the layout has not yet sized the scroll
        // area: the window's own width says how much room there will be.
        if (QLayout *l = layout())
            l->activate();
        const int room = qMax(m_scroll->viewport()->width(), width() - 2 * m_scroll->frameWidth() - 12);
        showAtZoom(crViewer->zoomToFitWidth(room - m_scroll->verticalScrollBar()->sizeHint().width()));
    }
    else
        showAtZoom(g_chosenZoom);
}

void frmViewReport::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (m_fitWidth)
        applyZoom();
}

void frmViewReport::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    if (m_fitWidth)
        applyZoom();
}

int frmViewReport::zoom() const { return crViewer->zoom(); }

void frmViewReport::updatePageControls()
{
    const int n = qMax(1, m_report.pageCount());
    const QSignalBlocker block(txtPage);
    txtPage->setMaximum(n);
    txtPage->setValue(currentPage() + 1);
    lblPageCount->setText(QStringLiteral("of %1").arg(n));
    cmdFirstPage->setEnabled(currentPage() > 0);
    cmdPreviousPage->setEnabled(currentPage() > 0);
    cmdNextPage->setEnabled(currentPage() < n - 1);
    cmdLastPage->setEnabled(currentPage() < n - 1);
}

void frmViewReport::print()
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setPageOrientation(m_report.design.landscape ? QPageLayout::Landscape : QPageLayout::Portrait);
    printer.setFullPage(true);
    printer.setDocName(m_report.heading);
    printer.setFromTo(1, qMax(1, m_report.pageCount()));
    QPrintDialog dialog(&printer, this);
    dialog.setMinMax(1, qMax(1, m_report.pageCount()));
    dialog.setOption(QAbstractPrintDialog::PrintPageRange, true);
    if (dialog.exec() != QDialog::Accepted)
        return;
    int first = 0, last = 0;
    if (printer.printRange() == QPrinter::PageRange) {
        first = printer.fromPage();
        last = printer.toPage();
    } else if (printer.printRange() == QPrinter::CurrentPage) {
        first = last = currentPage() + 1;
    }
    QString error;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const bool ok = paintReport(m_report, printer, &error, first, last);
    QApplication::restoreOverrideCursor();
    if (!ok)
        MessageService::critical(this, error);
}

bool frmViewReport::exportTo(const QString &path)
{
    // The file is written from a fresh read of the same request, a page at
    // a time, so that a long report never stands in memory twice.
    QString error;
    bool ok = false;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    try {
        ok = ReportFrame::writeFile(session().db(), m_report.request, path, &error);
    } catch (const DesignError &e) {
        error = e.message();
    } catch (const DbError &e) {
        error = e.driverText();
    }
    QApplication::restoreOverrideCursor();
    if (!ok) {
        MessageService::critical(this, error);
        return false;
    }
    lblStatus->setText(QStringLiteral("Saved to %1").arg(QDir::toNativeSeparators(path)));
    return true;
}

void frmViewReport::exportAs(const QString &filter, const QString &suffix)
{
    QString name = m_report.heading.isEmpty() ? m_report.design.name : m_report.heading;
    name.replace(QRegularExpression(QStringLiteral("[^A-Za-z0-9]+")), QStringLiteral("_"));
    const QString dir = !g_lastFolder.isEmpty() && QFileInfo(g_lastFolder).isDir()
        ? g_lastFolder
        : QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    QString path = QFileDialog::getSaveFileName(this, QStringLiteral("SAVE REPORT"),
                                                QDir(dir).filePath(name + QLatin1Char('.') + suffix), filter);
    if (path.isEmpty())
        return;
    if (QFileInfo(path).suffix().compare(suffix, Qt::CaseInsensitive) != 0)
        path += QLatin1Char('.') + suffix;
    g_lastFolder = QFileInfo(path).absolutePath();
    exportTo(path);
}

frmViewReport *frmViewReport::drillDown(int line)
{
    const auto request = m_report.drillDown(line);
    if (!request)
        return nullptr;
    if (!DesignCatalogue(ReportFrame::userDesignDir()).contains(request->design)) {
        MessageService::critical(this, QStringLiteral("The linked report \"%1\" is not available.").arg(request->design));
        return nullptr;
    }
    // A linked report opens in a viewer of its own, over this one.
    return Reports::openViewer(this, *request, nullptr);
}

bool frmViewReport::handleKey(QKeyEvent *event)
{
    const bool ctrl = event->modifiers() & Qt::ControlModifier;
    switch (event->key()) {
    case Qt::Key_PageDown: showPage(currentPage() + 1); return true;
    case Qt::Key_PageUp: showPage(currentPage() - 1); return true;
    case Qt::Key_Home: showPage(0); return true;
    case Qt::Key_End: showPage(m_report.pageCount() - 1); return true;
    case Qt::Key_Plus:
    case Qt::Key_Equal: if (ctrl) { chooseZoom(zoom() + 25); return true; } break;
    case Qt::Key_Minus: if (ctrl) { chooseZoom(qMax(25, zoom() - 25)); return true; } break;
    case Qt::Key_P: if (ctrl) { print(); return true; } break;
    case Qt::Key_Escape: close(); return true;
    default: break;
    }
    return false;
}

void frmViewReport::keyPressEvent(QKeyEvent *event)
{
    if (!handleKey(event))
        QWidget::keyPressEvent(event);
}

// The scroll area would take PgUp/PgDn, Home and End for itself: here they
// turn the pages, as a clerk expects of a report.
bool frmViewReport::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride) {
        auto *key = static_cast<QKeyEvent *>(event);
        // Typing a page number keeps its own editing keys.
        const bool editing = watched == txtPage || (txtPage && watched == txtPage->findChild<QLineEdit *>());
        if (editing && (key->key() == Qt::Key_Home || key->key() == Qt::Key_End))
            return QWidget::eventFilter(watched, event);
        if (event->type() == QEvent::ShortcutOverride)
            return QWidget::eventFilter(watched, event);
        if (handleKey(key))
            return true;
    }
    return QWidget::eventFilter(watched, event);
}
