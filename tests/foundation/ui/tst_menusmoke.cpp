// Every menu entry that has a handler opens what it opens, on both
// engines, from an empty year, and everything it opened closes again:
// a new screen that cannot open or close fails here first.
#include "foundation/ui/frmMDITessel.h"
#include "support/ui/ScreenTest.h"

#include <QAction>
#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QTimer>
#include <QtTest>

class TestMenuSmoke : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void everyEntryOpensAndCloses_data() { TestDb::addBackends(); }
    void everyEntryOpensAndCloses();
};

void TestMenuSmoke::everyEntryOpensAndCloses()
{
    TESSEL_BACKEND()
    ScreenTest t(backend);
    frmMDITessel main;
    main.show();
    QVERIFY(QTest::qWaitForWindowExposed(&main));
    const QList<QWidget *> before = QApplication::topLevelWidgets();
    // A modal window (the about box, a printer question) is closed as the
    // user would close it.
    QTimer closer;
    QObject::connect(&closer, &QTimer::timeout, [] {
        if (QWidget *modal = QApplication::activeModalWidget())
            modal->close();
    });
    closer.start(50);
    int opened = 0;
    for (QAction *a : main.findChildren<QAction *>()) {
        const QString name = a->objectName();
        if (!name.startsWith(QLatin1String("mnu")) || a->menu() || !main.isReachable(a))
            continue;
        t.rec.clear();
        t.rec.setDefaultAnswer(false); // "Are you sure ...": No, nothing is changed
        QVERIFY2(main.runMenuEntry(name), qPrintable(name));
        QApplication::processEvents();
        for (const auto &m : t.rec.messages())
            QVERIFY2(!m.isCritical(), qPrintable(name + QStringLiteral(": ") + m.text));
        ++opened;

        t.rec.setDefaultAnswer(true); // the close questions: Yes
        main.mdiArea()->closeAllSubWindows();
        for (QWidget *w : QApplication::topLevelWidgets())
            if (!before.contains(w) && w->isVisible() && !qobject_cast<QMenu *>(w))
                w->close();
        QApplication::processEvents();
        QVERIFY2(main.mdiArea()->subWindowList().isEmpty(), qPrintable(name + QStringLiteral(" stays open")));
    }
    QVERIFY(opened > 20);
    qInfo().noquote() << opened << "menu entries opened and closed on" << backend;
}

QTEST_MAIN(TestMenuSmoke)
#include "tst_menusmoke.moc"
