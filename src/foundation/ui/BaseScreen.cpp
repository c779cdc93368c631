#include "foundation/ui/BaseScreen.h"

#include "foundation/ui/MessageService.h"
#include <QKeyEvent>

#include "foundation/ui/FieldStyle.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/QueryTableModel.h"
#include "foundation/ui/ScreenBuild.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QProgressBar>
#include <QPushButton>
#include <QStyle>
#include <QTableView>
#include <QToolButton>
#include <QVBoxLayout>

BaseScreen::BaseScreen(QWidget *parent)
    : QWidget(parent)
{
    m_outer = new QVBoxLayout(this);
    m_outer->setContentsMargins(0, 0, 0, 0);
    m_outer->setSpacing(0);

    auto *strip = new QFrame(this);
    strip->setObjectName(QStringLiteral("frTitle"));
    strip->setStyleSheet(QStringLiteral(
        "QFrame#frTitle { background: #017C6A; }"
        "QLabel#lblTitle { color: white; font-weight: bold; font-size: 13pt; }"
        "QToolButton { border: none; color: white; }"
        "QToolButton:hover { background: #02977F; }"));
    auto *stripLayout = new QHBoxLayout(strip);
    stripLayout->setContentsMargins(12, 6, 6, 6);
    lblTitle = new QLabel(strip);
    lblTitle->setObjectName(QStringLiteral("lblTitle"));
    imgMinimize = new QToolButton(strip);
    imgMinimize->setObjectName(QStringLiteral("imgMinimize"));
    imgMinimize->setText(QStringLiteral("\u2013"));
    imgMinimize->setToolTip(tr("Minimise"));
    imgMinimize->setFocusPolicy(Qt::NoFocus);
    imgCancel = new QToolButton(strip);
    imgCancel->setObjectName(QStringLiteral("imgCancel"));
    imgCancel->setText(QStringLiteral("\u2715"));
    imgCancel->setToolTip(tr("Close"));
    imgCancel->setFocusPolicy(Qt::NoFocus);
    stripLayout->addWidget(lblTitle, 1);
    stripLayout->addWidget(imgMinimize);
    stripLayout->addWidget(imgCancel);
    m_outer->addWidget(strip);

    frDetail = new QFrame(this);
    frDetail->setObjectName(QStringLiteral("frDetail"));
    m_detail = new QGridLayout(frDetail);
    m_detail->setContentsMargins(16, 14, 16, 10);
    m_detail->setHorizontalSpacing(10);
    m_detail->setVerticalSpacing(8);
    m_outer->addWidget(frDetail, 1);

    frButton = new QFrame(this);
    frButton->setObjectName(QStringLiteral("frButton"));
    frButton->setFrameShape(QFrame::StyledPanel);
    m_buttons = new QHBoxLayout(frButton);
    m_buttons->setContentsMargins(12, 8, 12, 8);
    m_buttons->addStretch(1);
    m_buttons->addStretch(1);
    m_outer->addWidget(frButton);

    connect(imgCancel, &QToolButton::clicked, this, &BaseScreen::closeScreen);
    connect(imgMinimize, &QToolButton::clicked, this, [this] {
        if (auto *sub = qobject_cast<QMdiSubWindow *>(parentWidget()))
            sub->showMinimized();
        else
            window()->showMinimized();
    });
}

QString BaseScreen::title() const { return lblTitle->text(); }

bool BaseScreen::refuse(const Outcome &outcome)
{
    if (!outcome.message.isEmpty())
        MessageService::critical(this, outcome.message);
    if (QWidget *w = field(outcome.field))
        w->setFocus(Qt::OtherFocusReason);
    return false;
}

QWidget *BaseScreen::field(const QString &objectName) const
{
    return objectName.isEmpty() ? nullptr : findChild<QWidget *>(objectName);
}

void BaseScreen::keyPressEvent(QKeyEvent *event)
{
    // Escape reaches the screen only when no field used it (a list, a
    // search or a completion takes its own).
    if ((event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier)
        || (event->key() == Qt::Key_F4 && event->modifiers() == Qt::ControlModifier)) {
        event->accept();
        closeScreen();
        return;
    }
    if (event->key() == Qt::Key_F8 && event->modifiers() == Qt::NoModifier) {
        event->accept();
        openHistory();
        return;
    }
    QWidget::keyPressEvent(event);
}

namespace {
BaseScreen::HistoryOpener &historyOpener()
{
    static BaseScreen::HistoryOpener opener;
    return opener;
}
} // namespace

void BaseScreen::setHistoryOpener(HistoryOpener opener)
{
    historyOpener() = std::move(opener);
}

bool BaseScreen::openHistory()
{
    const std::optional<ScreenDocument> doc = currentDocument();
    if (!doc || !historyOpener())
        return false;
    historyOpener()(this, *doc);
    return true;
}

void BaseScreen::setTitle(const QString &title)
{
    lblTitle->setText(title);
    setWindowTitle(title);
}

int BaseScreen::nextRow(int column)
{
    if (m_rows.size() <= column)
        m_rows.resize(column + 1);
    return m_rows[column]++;
}

QWidget *BaseScreen::addRow(const QString &label, QWidget *field, int column)
{
    const int row = nextRow(column);
    field->setParent(frDetail);
    if (!label.isEmpty()) {
        auto *l = new QLabel(label, frDetail);
        l->setBuddy(field);
        m_detail->addWidget(l, row, column * 2, Qt::AlignRight | Qt::AlignVCenter);
    }
    m_detail->addWidget(field, row, column * 2 + 1);
    attachHighlight(field);
    return field;
}

QLineEdit *BaseScreen::addLineEdit(const QString &objectName, const QString &label, int column)
{
    auto *e = new QLineEdit(frDetail);
    e->setObjectName(objectName);
    addRow(label, e, column);
    return e;
}

QProgressBar *BaseScreen::addProgressBar(const QString &objectName, const QString &label, int column)
{
    auto *bar = new QProgressBar(frDetail);
    bar->setObjectName(objectName);
    bar->setRange(0, 100);
    bar->setValue(0);
    addRow(label, bar, column);
    return bar;
}

QPushButton *BaseScreen::addButtonBeside(QWidget *field, const QString &objectName, const QString &caption)
{
    QPushButton *button = ScreenBuild::button(frDetail, objectName, caption);
    int row = 0, col = 0, rowSpan = 0, colSpan = 0;
    detailLayout()->getItemPosition(detailLayout()->indexOf(field), &row, &col, &rowSpan, &colSpan);
    detailLayout()->addWidget(button, row, col + 1);
    return button;
}

MaskedLineEdit *BaseScreen::addMaskedEdit(const QString &objectName, const QString &label, const QString &mask,
                                          int column)
{
    auto *e = new MaskedLineEdit(mask, frDetail);
    e->setObjectName(objectName);
    e->setMaximumWidth(e->minimumWidth() + 20);
    addRow(label, e, column);
    return e;
}

QComboBox *BaseScreen::addComboBox(const QString &objectName, const QString &label, int column)
{
    auto *c = new QComboBox(frDetail);
    c->setObjectName(objectName);
    c->setMinimumContentsLength(24);
    addRow(label, c, column);
    return c;
}

QLabel *BaseScreen::addLabel(const QString &objectName, const QString &text, int column)
{
    auto *l = new QLabel(text, frDetail);
    l->setObjectName(objectName);
    const int row = nextRow(column);
    m_detail->addWidget(l, row, column * 2, 1, 2);
    return l;
}

QTableView *BaseScreen::addGrid(const QString &objectName)
{
    auto *grid = new QTableView(frDetail);
    grid->setObjectName(objectName);
    grid->setModel(new QueryTableModel(grid));
    grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid->setSelectionMode(QAbstractItemView::SingleSelection);
    grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid->setAlternatingRowColors(true);
    grid->verticalHeader()->setDefaultSectionSize(grid->fontMetrics().height() + 6);
    int row = 0;
    for (int r : m_rows)
        row = qMax(row, r);
    m_rows.fill(row + 1);
    m_detail->addWidget(grid, row, 0, 1, qMax(2, m_detail->columnCount()));
    m_detail->setRowStretch(row, 1);
    return grid;
}

void BaseScreen::packFields()
{
    m_detail->setColumnStretch(m_detail->columnCount(), 1);
    m_detail->setRowStretch(m_detail->rowCount(), 1);
}

QPushButton *BaseScreen::addButton(const QString &objectName, const QString &caption)
{
    auto *b = new QPushButton(caption, frButton);
    b->setObjectName(objectName);
    b->setMinimumWidth(96);
    b->setAutoDefault(true); // Enter presses a focused button
    m_buttons->insertWidget(m_buttons->count() - 1, b);
    return b;
}

void BaseScreen::showOnlyButtons(const QStringList &objectNames)
{
    for (QPushButton *b : frButton->findChildren<QPushButton *>())
        b->setVisible(objectNames.contains(b->objectName()));
}

void BaseScreen::fillGrid(QTableView *grid, const QueryResult &rows, const QStringList &captions)
{
    auto *model = qobject_cast<QueryTableModel *>(grid->model());
    if (!model) {
        model = new QueryTableModel(grid);
        grid->setModel(model);
    }
    model->setResult(rows, captions);
    grid->resizeColumnsToContents();
}

void BaseScreen::closeScreen()
{
    if (auto *sub = qobject_cast<QMdiSubWindow *>(parentWidget()))
        sub->close();
    else
        close();
}

void BaseScreen::highlightAllFields()
{
    for (QLineEdit *e : findChildren<QLineEdit *>()) {
        // The line edit inside a combo belongs to the combo.
        if (qobject_cast<QComboBox *>(e->parentWidget()))
            continue;
        attachHighlight(e);
    }
    for (QComboBox *c : findChildren<QComboBox *>())
        attachHighlight(c);
}

void BaseScreen::showEvent(QShowEvent *event)
{
    highlightAllFields();
    QWidget::showEvent(event);
}

void LayoutFormToClient(QWidget *screen)
{
    auto *sub = qobject_cast<QMdiSubWindow *>(screen ? screen->parentWidget() : nullptr);
    if (!sub || !sub->mdiArea())
        return;
    sub->setGeometry(sub->mdiArea()->viewport()->rect());
}
