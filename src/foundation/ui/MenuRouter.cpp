#include "foundation/ui/MenuRouter.h"

#include "foundation/ui/ScreenServices.h"

#include <QApplication>
#include <QMainWindow>

QWidget *MdiHost::findScreen(const QString &objectName) const
{
    QMdiArea *area = mdiArea();
    if (!area)
        return nullptr;
    for (QMdiSubWindow *sub : area->subWindowList())
        if (sub->widget() && sub->widget()->objectName() == objectName)
            return sub->widget();
    return nullptr;
}

QMdiSubWindow *MdiHost::addScreen(QWidget *screen)
{
    QMdiSubWindow *sub = mdiArea()->addSubWindow(screen);
    sub->setAttribute(Qt::WA_DeleteOnClose);
    sub->setWindowIcon(mainWindow()->windowIcon());
    sub->setWindowTitle(screen->windowTitle());
    QObject::connect(screen, &QWidget::windowTitleChanged, sub, &QMdiSubWindow::setWindowTitle);
    sub->show();
    LayoutFormToClient(screen);
    bringForward(screen);
    return sub;
}

void MdiHost::bringForward(QWidget *screen)
{
    auto *sub = qobject_cast<QMdiSubWindow *>(screen->parentWidget());
    if (!sub)
        return;
    if (sub->isMinimized())
        sub->showNormal();
    sub->show();
    mdiArea()->setActiveSubWindow(sub);
    sub->raise();
}

void MenuRouter::on(const QString &actionName, Handler handler)
{
    m_handlers.insert(actionName, std::move(handler));
}

bool MenuRouter::trigger(const QString &actionName, MdiHost &host) const
{
    const auto it = m_handlers.constFind(actionName);
    if (it == m_handlers.constEnd())
        return false;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const bool ok = runSafely(host.mainWindow(), [&] { (*it)(host); });
    QApplication::restoreOverrideCursor();
    return ok;
}
