#pragma once

#include <QVector>

// The main window's menu: each entry's objectName and caption, in order.
// Depth 0 is a menu of the menu bar, 1 an entry of it, 2 an entry of a
// submenu; an entry followed by deeper ones is a submenu. A name of "-"
// is a separator.
struct MenuEntry
{
    int depth;
    const char *name;
    const char *caption;
};

const QVector<MenuEntry> &mainMenuTree();

// The side panel: each label, its caption, and the entry it runs.
struct PanelEntry
{
    const char *label;
    const char *caption;
    const char *action;
};

const QVector<PanelEntry> &sidePanelEntries();

// Buttons inside screens that open the screen of a menu entry ("add an
// account" on a voucher): a user without the entry finds such a button
// switched off too, whichever screen it is on.
struct ScreenButtonEntry
{
    const char *button;
    const char *action;
};

const QVector<ScreenButtonEntry> &screenButtonEntries();
