#include "foundation/ui/frmMDITessel.h"

#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <QtTest>

// A screen's Alt keys reach its own buttons before the menu bar's.
class TestScreenMnemonics : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void screenButtonWinsOverMenu();
    void menuStillOpensOutsideScreens();
    void hiddenButtonIsPassedOver();
};

namespace {
struct Fixture
{
    frmMDITessel main;
    QWidget *screen = new QWidget;
    QLineEdit *field = new QLineEdit(screen);
    QPushButton *save = new QPushButton(QStringLiteral("&SAVE"), screen);
    int clicks = 0;

    Fixture()
    {
        auto *layout = new QVBoxLayout(screen);
        layout->addWidget(field);
        layout->addWidget(save);
        QObject::connect(save, &QPushButton::clicked, [this] { ++clicks; });
        QMdiSubWindow *sub = main.mdiArea()->addSubWindow(screen);
        main.show();
        sub->show();
        QVERIFY(QTest::qWaitForWindowExposed(&main));
        main.activateWindow();
        main.mdiArea()->setActiveSubWindow(sub);
        field->setFocus();
    }
    QMenu *stockMenu() const
    {
        for (QAction *a : main.menuBar()->actions())
            if (a->menu() && a->text().remove(QLatin1Char('&')) == QLatin1String("STOCK"))
                return a->menu();
        return nullptr;
    }
};
} // namespace

void TestScreenMnemonics::screenButtonWinsOverMenu()
{
    Fixture f;
    QVERIFY(f.stockMenu());
    QTRY_VERIFY(f.field->hasFocus());
    QTest::keyClick(f.field, Qt::Key_S, Qt::AltModifier);
    QCOMPARE(f.clicks, 1);
    QVERIFY(!f.stockMenu()->isVisible());
    QVERIFY(f.save->hasFocus()); // the button took the focus first, as a mouse click would
}

void TestScreenMnemonics::menuStillOpensOutsideScreens()
{
    Fixture f;
    f.main.mdiArea()->closeAllSubWindows();
    f.main.setFocus();
    QTest::keyClick(&f.main, Qt::Key_S, Qt::AltModifier);
    QCOMPARE(f.clicks, 0);
}

void TestScreenMnemonics::hiddenButtonIsPassedOver()
{
    Fixture f;
    f.save->hide();
    QTRY_VERIFY(f.field->hasFocus());
    QTest::keyClick(f.field, Qt::Key_S, Qt::AltModifier);
    QCOMPARE(f.clicks, 0);
}

QTEST_MAIN(TestScreenMnemonics)
#include "tst_screenmnemonics.moc"
