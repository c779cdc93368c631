#pragma once

#include "foundation/ui/BaseScreen.h"
#include "stock/Consumables.h"

#include <QHash>
#include <functional>

class QComboBox;
class QPushButton;
class QRadioButton;
class QTableView;

// What the consumables screens share: the four item options ("INK STOCK",
// "BLANKET STOCK", "PLATE STOCK", "DEVELOPER STOCK") that choose the item
// the screen works on, and on some screens the four item buttons of which
// only the chosen item's shows.
class ConsumablesScreen : public BaseScreen
{
    Q_OBJECT
public:
    explicit ConsumablesScreen(QWidget *parent = nullptr);

    Consumables::Item item() const { return m_item; }
    // Chooses the item as a click on its option does.
    void chooseItem(Consumables::Item item);
    QRadioButton *option(Consumables::Item item) const { return m_options.value(int(item)); }
    QPushButton *itemCommand(Consumables::Item item) const { return m_commands.value(int(item)); }

protected:
    // The options in a row, named "opt" + prefix + "InkStock" and so on.
    QFrame *buildOptions(QWidget *parent, const QString &prefix = QString());
    // The item buttons cmdInkStock ... under one caption: each makes its
    // item the screen's, then runs `check` and, when it passes, `work`.
    QList<QPushButton *> buildItemCommands(QWidget *parent, const QString &caption, std::function<bool()> check,
                                           std::function<void()> work);
    // After the item changed: reload what depends on it.
    virtual void itemChanged() {}
    // Fills a list and shows its first entry (or nothing).
    static void fillList(QComboBox *combo, const QStringList &entries);
    // Fills a list grid made by ScreenBuild::grid, keeping its column widths.
    static void showRows(QTableView *grid, const QueryResult &rows, const QStringList &captions);
    // Shows a rule's outcome: a refusal focused, or the success words.
    bool showOutcome(const Outcome &outcome);

private:
    Consumables::Item m_item = Consumables::Item::Ink;
    QHash<int, QRadioButton *> m_options;
    QHash<int, QPushButton *> m_commands;
};
