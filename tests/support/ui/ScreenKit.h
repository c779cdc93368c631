#pragma once

#include "foundation/ui/MenuRouter.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QMainWindow>
#include <QMdiArea>
#include <QPushButton>
#include <QtTest>

// What the screen tests share: a screen shown as the active window, a
// screenshot when TESSEL_SCREENSHOT_DIR names a folder, and a main window
// for menu handlers to open screens in.
namespace ScreenKit {

inline void showActive(QWidget *w, QSize size = QSize(960, 600))
{
    w->resize(size);
    w->show();
    QApplication::setActiveWindow(w);
    QVERIFY(QTest::qWaitForWindowActive(w));
}

inline void shoot(QWidget *w, const QString &name)
{
    const QString dir = qEnvironmentVariable("TESSEL_SCREENSHOT_DIR");
    if (dir.isEmpty() || !w)
        return;
    QDir().mkpath(dir);
    QApplication::processEvents();
    w->grab().save(QDir(dir).filePath(name + QStringLiteral(".png")));
}

inline QStringList items(const QComboBox *c)
{
    QStringList out;
    for (int i = 0; i < c->count(); ++i)
        out << c->itemText(i);
    return out;
}

inline void click(QPushButton *b) { QTest::mouseClick(b, Qt::LeftButton); }

class Host : public MdiHost
{
public:
    explicit Host(bool shown = true)
    {
        m_area = new QMdiArea(&m_window);
        m_window.setCentralWidget(m_area);
        m_window.resize(1100, 720);
        if (shown)
            m_window.show();
    }
    QMdiArea *mdiArea() const override { return m_area; }
    QMainWindow *mainWindow() override { return &m_window; }

private:
    QMainWindow m_window;
    QMdiArea *m_area;
};

} // namespace ScreenKit
