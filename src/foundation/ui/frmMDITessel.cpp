#include "foundation/ui/frmMDITessel.h"

#include "foundation/Logon.h"
#include "foundation/Session.h"
#include "foundation/Startup.h"
#include "foundation/ui/MenuTree.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/ScreenServices.h"
#include "foundation/ui/frmAboutTessel.h"

#include <QAbstractButton>
#include <QAction>
#include <QKeyEvent>
#include <QMdiSubWindow>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QMdiArea>
#include <QMenuBar>
#include <QMouseEvent>
#include <QApplication>
#include <QPainter>
#include <QScreen>
#include <QStatusBar>
#include <QVBoxLayout>

void PanelLabel::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        Q_EMIT clicked();
    QLabel::mouseReleaseEvent(event);
}

void PanelLabel::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        Q_EMIT clicked();
        return;
    case Qt::Key_Down:
        focusNextChild();
        return;
    case Qt::Key_Up:
        focusPreviousChild();
        return;
    default:
        QLabel::keyPressEvent(event);
    }
}

QIcon tesselIcon()
{
    QPixmap pix(64, 64);
    pix.fill(Qt::transparent);
    QPainter p(&pix);
    p.setRenderHint(QPainter::Antialiasing);
    p.setBrush(QColor(0x01, 0x7C, 0x6A));
    p.setPen(Qt::NoPen);
    p.drawRoundedRect(QRectF(2, 2, 60, 60), 12, 12);
    QFont f = p.font();
    f.setBold(true);
    f.setPixelSize(42);
    p.setFont(f);
    p.setPen(Qt::white);
    p.drawText(QRectF(0, 0, 64, 64), Qt::AlignCenter, QStringLiteral("T"));
    return QIcon(pix);
}

frmMDITessel::frmMDITessel(QWidget *parent)
    : QMainWindow(parent)
{
    setObjectName(QStringLiteral("frmMDITessel"));
    setWindowIcon(tesselIcon());
    setWindowTitle(session().windowTitle);

    auto *central = new QWidget(this);
    auto *layout = new QHBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    PicLeft = new QFrame(central);
    PicLeft->setObjectName(QStringLiteral("PicLeft"));
    m_area = new QMdiArea(central);
    m_area->setObjectName(QStringLiteral("mdiArea"));
    m_area->setBackground(QColor(0xE6, 0xEC, 0xEA));
    m_area->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_area->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    layout->addWidget(PicLeft);
    layout->addWidget(m_area, 1);
    setCentralWidget(central);

    // The entries this window answers itself; the subsystems may take them over.
    m_router.on(QStringLiteral("mnuATessel"), [this](MdiHost &) { showAbout(); });
    m_router.on(QStringLiteral("mnuPShowDBCRAccounts"), [](MdiHost &) {});
    m_router.registerAll();

    buildMenus();
    buildSidePanel();
    for (const ScreenButtonEntry &b : screenButtonEntries())
        m_buttonEntries.insert(QString::fromLatin1(b.button), QString::fromLatin1(b.action));
    resize(1200, 760);
    qApp->installEventFilter(this);
}

QAbstractButton *frmMDITessel::screenButtonFor(const QKeyEvent *key) const
{
    if (key->modifiers() != Qt::AltModifier)
        return nullptr;
    const int k = key->key();
    if (!((k >= Qt::Key_A && k <= Qt::Key_Z) || (k >= Qt::Key_0 && k <= Qt::Key_9)))
        return nullptr;
    QMdiSubWindow *sub = m_area->activeSubWindow();
    QWidget *focus = QApplication::focusWidget();
    if (!sub || !sub->widget() || !focus || !sub->isAncestorOf(focus))
        return nullptr;
    const QKeySequence wanted(QKeyCombination(Qt::AltModifier, Qt::Key(k)));
    const auto buttons = sub->widget()->findChildren<QAbstractButton *>();
    for (QAbstractButton *b : buttons) {
        if (b->isVisibleTo(sub) && b->isEnabled() && QKeySequence::mnemonic(b->text()) == wanted)
            return b;
    }
    return nullptr;
}

// A screen's own buttons win over the menu bar: Alt+S on a voucher is
// SAVE, not the STOCK menu. The button takes the focus first, so the
// checks it runs on focus come before its command, as with the mouse.
bool frmMDITessel::eventFilter(QObject *watched, QEvent *event)
{
    if (m_rightsApplied && (event->type() == QEvent::Show || event->type() == QEvent::EnabledChange))
        guardScreenButton(watched);
    if (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress) {
        auto *key = static_cast<QKeyEvent *>(event);
        if (QAbstractButton *button = screenButtonFor(key)) {
            if (event->type() == QEvent::ShortcutOverride) {
                key->accept();
                return true;
            }
            button->setFocus(Qt::ShortcutFocusReason);
            if (button->hasFocus() && button->isEnabled())
                button->click();
            return true;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

void frmMDITessel::buildMenus()
{
    QVector<QMenu *> menus(3, nullptr); // the open menu at each depth
    const QVector<MenuEntry> &tree = mainMenuTree();
    for (int i = 0; i < tree.size(); ++i) {
        const MenuEntry &e = tree.at(i);
        const QString name = QString::fromLatin1(e.name);
        const QString caption = QString::fromLatin1(e.caption);
        const bool isMenu = i + 1 < tree.size() && tree.at(i + 1).depth > e.depth;
        QMenu *parentMenu = e.depth > 0 ? menus.at(e.depth - 1) : nullptr;
        if (name == QLatin1String("-")) {
            if (parentMenu)
                parentMenu->addSeparator();
            continue;
        }
        QAction *action = nullptr;
        if (isMenu) {
            QMenu *menu = e.depth == 0 ? menuBar()->addMenu(caption) : parentMenu->addMenu(caption);
            menu->setObjectName(name);
            action = menu->menuAction();
            menus[e.depth] = menu;
        } else {
            action = parentMenu->addAction(caption);
            action->setEnabled(m_router.has(name));
            connect(action, &QAction::triggered, this, [this, name] { m_router.trigger(name, *this); });
        }
        action->setObjectName(name);
        m_actions.insert(name, action);
        if (parentMenu)
            m_parentMenu.insert(action, parentMenu->menuAction());
    }
}

void frmMDITessel::buildSidePanel()
{
    PicLeft->setFixedWidth(196);
    PicLeft->setStyleSheet(QStringLiteral(
        "QFrame#PicLeft { background: qlineargradient(x1:0, y1:0, x2:0, y2:1, stop:0 #015A4D, stop:1 #017C6A); }"
        "QLabel { color: white; padding: 7px 14px; font-weight: bold; border-radius: 3px; }"
        "QLabel:hover { background: rgba(255,255,255,40); }"
        "QLabel:focus { background: rgba(255,255,255,70); }"
        "QLabel:disabled { color: rgba(255,255,255,90); }"
        "QLabel#lblPanelHead { font-size: 15pt; padding: 14px 14px 10px 14px; }"));
    auto *layout = new QVBoxLayout(PicLeft);
    layout->setContentsMargins(6, 4, 6, 10);
    layout->setSpacing(1);
    auto *head = new QLabel(QStringLiteral("TESSEL"), PicLeft);
    head->setObjectName(QStringLiteral("lblPanelHead"));
    layout->addWidget(head);
    for (const PanelEntry &p : sidePanelEntries()) {
        auto *label = new PanelLabel(QString::fromLatin1(p.caption), PicLeft);
        label->setObjectName(QString::fromLatin1(p.label));
        label->setCursor(Qt::PointingHandCursor);
        label->setFocusPolicy(Qt::TabFocus); // F6 enters the panel, Tab and the arrows move along it
        const QString actionName = QString::fromLatin1(p.action);
        label->setToolTip(menuAction(actionName) ? menuAction(actionName)->text() : QString());
        layout->addWidget(label);
        connect(label, &PanelLabel::clicked, this, [this, actionName] { runMenuEntry(actionName); });
        auto refresh = [this, label, actionName] { label->setEnabled(isReachable(menuAction(actionName))); };
        refresh();
        // Rights switch entries (and their menus) off after the panel is built.
        for (QAction *a = menuAction(actionName); a; a = m_parentMenu.value(a))
            connect(a, &QAction::changed, label, refresh);
    }
    layout->addStretch(1);
    // F6 goes to the side panel's first entry the user can reach.
    auto *toPanel = new QAction(this);
    toPanel->setObjectName(QStringLiteral("actSidePanel"));
    toPanel->setShortcut(QKeySequence(Qt::Key_F6));
    toPanel->setShortcutContext(Qt::WindowShortcut);
    addAction(toPanel);
    connect(toPanel, &QAction::triggered, this, [this] {
        for (auto *label : PicLeft->findChildren<PanelLabel *>())
            if (label->isVisible() && label->isEnabled()) {
                label->setFocus(Qt::ShortcutFocusReason);
                return;
            }
    });
}

QAction *frmMDITessel::menuAction(const QString &objectName) const
{
    return m_actions.value(objectName);
}

bool frmMDITessel::isReachable(const QAction *action) const
{
    if (!action)
        return false;
    for (const QAction *a = action; a; a = m_parentMenu.value(a))
        if (!a->isEnabled())
            return false;
    return true;
}

bool frmMDITessel::runMenuEntry(const QString &objectName)
{
    QAction *a = menuAction(objectName);
    if (!isReachable(a))
        return false;
    a->trigger();
    return true;
}

bool frmMDITessel::load()
{
    Session &s = session();
    setWindowTitle(s.windowTitle);
    const QScreen *screen = this->screen() ? this->screen() : QGuiApplication::primaryScreen();
    const int width = screen ? screen->geometry().width() : 1024;
    Startup::Gate gate = Startup::Gate::Current;
    if (!runSafely(this, [&] { gate = Startup::loadMainWindow(s, QDate::currentDate(), width); }))
        return true; // the message has been shown; the window still works
    if (gate == Startup::Gate::Newer) {
        MessageService::information(this, Startup::needsUpdateMessage());
        return false;
    }
    showSessionInStatusBar();
    return true;
}

void frmMDITessel::showSessionInStatusBar()
{
    const Session &s = session();
    auto *bar = statusBar();
    bar->setObjectName(QStringLiteral("sbStatus"));
    bar->setStyleSheet(QStringLiteral("QStatusBar { background: #F1F4F3; border-top: 1px solid #C9D3D1; }"
                                      "QStatusBar QLabel { padding: 2px 12px; color: #333; }"));
    const auto add = [bar](const QString &name, const QString &text) {
        auto *l = bar->findChild<QLabel *>(name);
        if (!l) {
            l = new QLabel(bar);
            l->setObjectName(name);
            bar->addPermanentWidget(l);
        }
        l->setText(text);
    };
    add(QStringLiteral("lblStatusCompany"), s.companyName);
    add(QStringLiteral("lblStatusDatabase"), QStringLiteral("DATABASE: ") + s.databaseName);
    add(QStringLiteral("lblStatusUser"), QStringLiteral("USER: ") + s.currentUserName);
    add(QStringLiteral("lblStatusWorkDate"), QStringLiteral("OPEN FROM: ")
        + (s.firstOpenDate.isValid() ? s.firstOpenDate.toString(QStringLiteral("dd/MM/yyyy")) : QStringLiteral("-")));
}

void frmMDITessel::ApplyUserRights()
{
    QStringList names;
    if (!runSafely(this, [&] { names = Logon::disabledMenus(session().db(), session().currentUserName); }))
        return;
    for (const QString &name : names)
        if (QAction *a = menuAction(name)) {
            a->setEnabled(false);
            m_rightsApplied = true;
        }
    // An entry under a switched-off menu goes off as well, so that no key
    // given to it later reaches it either.
    for (QAction *a : std::as_const(m_actions))
        if (a->isEnabled() && !isReachable(a))
            a->setEnabled(false);
    if (!m_rightsApplied)
        return;
    // Screens open at this moment (none after a log-on).
    for (QMdiSubWindow *sub : m_area->subWindowList())
        for (QAbstractButton *b : sub->findChildren<QAbstractButton *>())
            guardScreenButton(b);
}

bool frmMDITessel::allowsEntry(const QString &objectName) const
{
    return isReachable(menuAction(objectName));
}

void frmMDITessel::guardScreenButton(QObject *watched) const
{
    if (!watched->isWidgetType())
        return;
    const auto entry = m_buttonEntries.constFind(watched->objectName());
    if (entry == m_buttonEntries.constEnd())
        return;
    auto *button = qobject_cast<QAbstractButton *>(watched);
    if (button && button->isEnabled() && !allowsEntry(*entry))
        button->setEnabled(false);
}

void frmMDITessel::hideSidePanelLabels()
{
    for (const PanelEntry &p : sidePanelEntries())
        if (QWidget *w = PicLeft->findChild<QWidget *>(QString::fromLatin1(p.label)))
            w->setVisible(false);
}

void frmMDITessel::showAbout()
{
    auto *about = new frmAboutTessel(this);
    about->setAttribute(Qt::WA_DeleteOnClose);
    about->setModal(true);
    about->open();
}

void frmMDITessel::closeEvent(QCloseEvent *event)
{
    if (!MessageService::askYesNoCritical(this, Startup::quitQuestion())) {
        event->ignore();
        return;
    }
    event->accept();
    Q_EMIT quitConfirmed();
}
