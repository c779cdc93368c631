#include "foundation/ui/ScreenBuild.h"

#include "foundation/Money.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/QueryTableModel.h"

#include <QCheckBox>
#include <QEvent>
#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStyledItemDelegate>
#include <QTableView>

namespace {

template <typename W>
W *named(W *w, const QString &name)
{
    w->setObjectName(name);
    return w;
}

// Amounts read from the list's text and shown as "1,234.50" at the right.
class AmountDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QString displayText(const QVariant &value, const QLocale &locale) const override
    {
        if (const auto m = Money::parse(value.toString().trimmed()))
            return m->toDisplayString();
        return QStyledItemDelegate::displayText(value, locale);
    }
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->displayAlignment = Qt::AlignRight | Qt::AlignVCenter;
    }
};

// Refits a grid's columns to their proportions.
class ColumnFitter : public QObject
{
public:
    ColumnFitter(QTableView *grid, QVector<int> twips) : QObject(grid), m_grid(grid), m_twips(std::move(twips))
    {
        grid->viewport()->installEventFilter(this);
    }
    void fit()
    {
        int total = 0;
        for (int w : m_twips)
            total += w;
        if (total == 0)
            return;
        const double perTwip =
            qMax(m_grid->logicalDpiX() / 1440.0, (m_grid->viewport()->width() - 4) / double(total));
        for (int c = 0; c < m_twips.size(); ++c) {
            m_grid->setColumnHidden(c, m_twips[c] == 0);
            if (m_twips[c] > 0)
                m_grid->setColumnWidth(c, int(m_twips[c] * perTwip));
        }
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Resize)
            fit();
        return QObject::eventFilter(watched, event);
    }

private:
    QTableView *m_grid;
    QVector<int> m_twips;
};

} // namespace

namespace ScreenBuild {

void proportionalColumns(QTableView *grid, const QVector<int> &twips)
{
    grid->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    auto *fitter = new ColumnFitter(grid, twips);
    QObject::connect(grid->model(), &QAbstractItemModel::modelReset, fitter, [fitter] { fitter->fit(); });
    fitter->fit();
}

QFrame *buttonBar(QWidget *parent, const QString &name, std::initializer_list<QPushButton *> buttons, bool boxed)
{
    QFrame *f = frame(parent, name, boxed);
    auto *g = new QGridLayout(f);
    if (boxed)
        g->setContentsMargins(10, 6, 10, 6);
    else
        g->setContentsMargins(0, 0, 0, 0);
    for (QPushButton *b : buttons)
        b->setParent(f);
    FieldGrid(g).buttons(0, 0, buttons);
    return f;
}

void typingOrder(const QList<QWidget *> &chain, QWidget *enterUntil, const QList<QWidget *> &own)
{
    const int last = enterUntil ? chain.indexOf(enterUntil) : chain.size();
    for (int i = 0; i < chain.size(); ++i) {
        if (i < last && !own.contains(chain[i]))
            EnterToTab::attach(chain[i]);
        if (i > 0)
            QWidget::setTabOrder(chain[i - 1], chain[i]);
    }
}

QHBoxLayout *gridHeading(QWidget *parent, const QString &caption, const QString &hint)
{
    auto *row = new QHBoxLayout;
    auto *c = new QLabel(caption, parent);
    c->setStyleSheet(QStringLiteral("font-weight: bold;"));
    row->addWidget(c);
    row->addStretch(1);
    auto *h = new QLabel(hint, parent);
    h->setStyleSheet(QStringLiteral("color: #017C6A;"));
    row->addWidget(h);
    return row;
}

QLineEdit *lineEdit(QWidget *parent, const QString &name, KeyRules::Kind filter)
{
    auto *e = named(new QLineEdit(parent), name);
    if (filter != KeyRules::Kind::None)
        attachKeyRule(e, filter);
    return e;
}

QLineEdit *display(QWidget *parent, const QString &name, bool amount)
{
    auto *e = named(new QLineEdit(parent), name);
    e->setReadOnly(true);
    e->setFocusPolicy(Qt::ClickFocus);
    if (amount)
        e->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return e;
}

QLineEdit *amountEdit(QWidget *parent, const QString &name)
{
    auto *e = named(new QLineEdit(parent), name);
    e->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    DecimalOnly::attach(e);
    return e;
}

MaskedLineEdit *masked(QWidget *parent, const QString &name, const QString &mask)
{
    return named(new MaskedLineEdit(mask, parent), name);
}

QComboBox *combo(QWidget *parent, const QString &name, KeyRules::Kind filter, bool editable)
{
    auto *c = named(new QComboBox(parent), name);
    c->setEditable(editable);
    if (editable)
        c->setInsertPolicy(QComboBox::NoInsert);
    if (editable && filter != KeyRules::Kind::None)
        attachKeyRule(c, filter);
    return c;
}

QPushButton *button(QWidget *parent, const QString &name, const QString &caption)
{
    auto *b = named(new QPushButton(caption, parent), name);
    b->setAutoDefault(true);
    b->setMinimumWidth(110);
    return b;
}

QCheckBox *check(QWidget *parent, const QString &name, const QString &caption)
{
    return named(new QCheckBox(caption, parent), name);
}

QRadioButton *option(QWidget *parent, const QString &name, const QString &caption)
{
    return named(new QRadioButton(caption, parent), name);
}

QFrame *frame(QWidget *parent, const QString &name, bool boxed)
{
    auto *f = named(new QFrame(parent), name);
    if (boxed)
        f->setFrameShape(QFrame::StyledPanel);
    return f;
}

QTableView *grid(QWidget *parent, const QString &name)
{
    auto *g = named(new QTableView(parent), name);
    g->setModel(new QueryTableModel(g));
    g->setSelectionBehavior(QAbstractItemView::SelectRows);
    g->setSelectionMode(QAbstractItemView::SingleSelection);
    g->setEditTriggers(QAbstractItemView::NoEditTriggers);
    g->setAlternatingRowColors(true);
    g->setTabKeyNavigation(false); // Tab moves on to the next field, never from cell to cell
    g->verticalHeader()->hide();
    g->verticalHeader()->setDefaultSectionSize(g->fontMetrics().height() + 6);
    return g;
}

QLabel *caption(const QString &text, QWidget *buddy)
{
    auto *l = new QLabel(text, buddy ? buddy->parentWidget() : nullptr);
    l->setBuddy(buddy);
    return l;
}

void amountColumns(QTableView *grid, std::initializer_list<int> columns)
{
    auto *d = new AmountDelegate(grid);
    for (int c : columns)
        grid->setItemDelegateForColumn(c, d);
}

} // namespace ScreenBuild

FieldGrid::FieldGrid(QGridLayout *layout) : m_grid(layout)
{
    m_grid->setHorizontalSpacing(10);
    m_grid->setVerticalSpacing(7);
}

void FieldGrid::put(int row, int column, const QString &label, QWidget *field, int span, bool stretch, int width)
{
    if (width > 0)
        field->setFixedWidth(width);
    if (!label.isEmpty())
        m_grid->addWidget(ScreenBuild::caption(label, field), row, column * 2, Qt::AlignRight | Qt::AlignVCenter);
    if (stretch)
        m_grid->addWidget(field, row, column * 2 + 1, 1, span * 2 - 1);
    else
        m_grid->addWidget(field, row, column * 2 + 1, 1, span * 2 - 1, Qt::AlignLeft);
}

QHBoxLayout *FieldGrid::buttons(int row, int column, std::initializer_list<QPushButton *> buttons, int span)
{
    auto *h = new QHBoxLayout;
    h->setSpacing(8);
    h->addStretch(1);
    for (QPushButton *b : buttons)
        h->addWidget(b);
    h->addStretch(1);
    m_grid->addLayout(h, row, column * 2, 1, span * 2);
    return h;
}
