#include "stock/ui/ConsumablesScreen.h"

#include "foundation/ui/CommandGate.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/QueryTableModel.h"
#include "foundation/ui/ScreenBuild.h"
#include "foundation/ui/ScreenServices.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>

using Consumables::Item;

ConsumablesScreen::ConsumablesScreen(QWidget *parent) : BaseScreen(parent) {}

QFrame *ConsumablesScreen::buildOptions(QWidget *parent, const QString &prefix)
{
    QFrame *f = ScreenBuild::frame(parent, QStringLiteral("frOptions"), true);
    auto *row = new QHBoxLayout(f);
    for (Item i : Consumables::items()) {
        QRadioButton *o = ScreenBuild::option(f, QStringLiteral("opt") + prefix + Consumables::controlStem(i)
                                                     + QStringLiteral("Stock"),
                                              Consumables::optionCaption(i));
        m_options.insert(int(i), o);
        row->addWidget(o);
        connect(o, &QRadioButton::toggled, this, [this, i](bool on) {
            if (on)
                chooseItem(i);
        });
    }
    row->addStretch(1);
    {
        const QSignalBlocker b(m_options.value(int(Item::Ink)));
        m_options.value(int(Item::Ink))->setChecked(true);
    }
    return f;
}

QList<QPushButton *> ConsumablesScreen::buildItemCommands(QWidget *parent, const QString &caption,
                                                          std::function<bool()> check, std::function<void()> work)
{
    QList<QPushButton *> out;
    for (Item i : Consumables::items()) {
        QPushButton *b = ScreenBuild::button(parent, QStringLiteral("cmd") + Consumables::controlStem(i)
                                                         + QStringLiteral("Stock"),
                                             caption);
        m_commands.insert(int(i), b);
        b->setVisible(i == m_item);
        new CommandGate(
            b,
            [this, i, check] {
                m_item = i;
                return check();
            },
            work);
        out << b;
    }
    return out;
}

void ConsumablesScreen::chooseItem(Item item)
{
    m_item = item;
    if (QRadioButton *o = option(item); o && !o->isChecked()) {
        const QSignalBlocker b(o);
        o->setChecked(true);
    }
    for (auto it = m_commands.cbegin(); it != m_commands.cend(); ++it)
        it.value()->setVisible(it.key() == int(item));
    itemChanged();
}

void ConsumablesScreen::fillList(QComboBox *combo, const QStringList &entries)
{
    const QSignalBlocker b(combo);
    combo->clear();
    combo->addItems(entries);
    if (entries.isEmpty())
        combo->setEditText(QString());
    else
        combo->setCurrentIndex(0);
}

bool ConsumablesScreen::showOutcome(const Outcome &outcome)
{
    if (!outcome.ok)
        return refuse(outcome);
    MessageService::information(this, outcome.message);
    return true;
}

void ConsumablesScreen::showRows(QTableView *grid, const QueryResult &rows, const QStringList &captions)
{
    if (auto *model = qobject_cast<QueryTableModel *>(grid->model()))
        model->setResult(rows, captions);
    else
        fillGrid(grid, rows, captions);
}
