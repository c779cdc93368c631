#pragma once

#include "foundation/ui/MenuRouter.h"

#include <QHash>
#include <QLabel>
#include <QMainWindow>

class QFrame;
class QIcon;
class QMdiArea;
class QMenu;

// The program's icon: a white T on the program's green.
QIcon tesselIcon();

// A label of the side panel that runs a menu entry when clicked.
class PanelLabel : public QLabel
{
    Q_OBJECT
public:
    using QLabel::QLabel;
Q_SIGNALS:
    void clicked();
protected:
    void mouseReleaseEvent(QMouseEvent *event) override;
    // Enter or Space runs it; Up and Down move along the panel.
    void keyPressEvent(QKeyEvent *event) override;
};

// The main window: the menu tree, the side panel PicLeft and the area the
// screens open in.
class QAbstractButton;
class QKeyEvent;

class frmMDITessel : public QMainWindow, public MdiHost
{
    Q_OBJECT
public:
    explicit frmMDITessel(QWidget *parent = nullptr);

    QMdiArea *mdiArea() const override { return m_area; }
    QMainWindow *mainWindow() override { return this; }

    // The Load: title, company row, report zoom, Today, version gate,
    // WorkDate. False when the database is newer than the program: the
    // message has been shown and the program is to end.
    bool load();

    // Switches off the entries named in the user's rights, with everything
    // below a switched-off menu; the side panel's labels and the screens'
    // buttons that open those entries follow (see allowsEntry).
    void ApplyUserRights();
    // The one check of the rights below the menu: the entry exists and the
    // user can reach it through the menu.
    bool allowsEntry(const QString &objectName) const;
    // Hides the fifteen labels of the side panel (a common user).
    void hideSidePanelLabels();

    QAction *menuAction(const QString &objectName) const;
    // The entry is enabled and so is every menu above it.
    bool isReachable(const QAction *action) const;
    // Runs an entry as a click would, when the user can reach it.
    bool runMenuEntry(const QString &objectName);

    MenuRouter &router() { return m_router; }

Q_SIGNALS:
    // The user answered Yes to the quit question: the program ends.
    void quitConfirmed();

protected:
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QAbstractButton *screenButtonFor(const QKeyEvent *key) const;
    // Switches off a screen's button that opens an entry the user lacks.
    void guardScreenButton(QObject *watched) const;
    void buildMenus();
    void buildSidePanel();
    void showAbout();
    void showSessionInStatusBar();

    QMdiArea *m_area = nullptr;
    QFrame *PicLeft = nullptr;
    MenuRouter m_router;
    QHash<QString, QAction *> m_actions;
    QHash<const QAction *, QAction *> m_parentMenu; // entry -> its menu's action
    QHash<QString, QString> m_buttonEntries;        // screen button -> the entry it opens
    bool m_rightsApplied = false;                   // some entry is switched off
};
