#include "foundation/ui/FieldStyle.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MaskedLineEdit.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QVBoxLayout>
#include <QtTest>

// The field kinds as a user meets them: typing, pasting, focus colours.
class TestFieldFilters : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void maskedTyping_data();
    void maskedTyping();
    void maskedSetText_data();
    void maskedSetText();
    void maskedDate();
    void typedAndPasted_data();
    void typedAndPasted();
    void comboFiltered();
    void enterMovesOn();
    void highlightOnFocus();
};

void TestFieldFilters::maskedTyping_data()
{
    QTest::addColumn<QString>("mask");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("maskText");
    QTest::addColumn<QString>("typed");
    QTest::newRow("date full") << "__/__/____" << "01022024" << "01/02/2024" << "01022024";
    QTest::newRow("date part") << "__/__/____" << "0102" << "01/02/____" << "0102";
    QTest::newRow("date letters refused") << "__/__/____" << "a1b2" << "12/__/____" << "12";
    QTest::newRow("code") << "__-__-___" << "1410001" << "14-10-001" << "1410001";
    QTest::newRow("sales-tax no") << "__-__-____-___-__" << "12345678901234" << "12-34-5678-901-23"
                                  << "1234567890123";
    QTest::newRow("tax no") << "_______-_" << "12345678" << "1234567-8" << "12345678";
    QTest::newRow("year") << "____" << "2024" << "2024" << "2024";
    QTest::newRow("year overlong") << "____" << "202456" << "2024" << "2024";
}

void TestFieldFilters::maskedTyping()
{
    QFETCH(QString, mask);
    QFETCH(QString, keys);
    QWidget w;
    auto *e = new MaskedLineEdit(mask, &w);
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    e->setFocus();
    QCOMPARE(e->maskText(), mask);
    QTest::keyClicks(e, keys);
    QTEST(e->maskText(), "maskText");
    QTEST(e->typedText(), "typed");
}

void TestFieldFilters::maskedSetText_data()
{
    QTest::addColumn<QString>("mask");
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("maskText");
    QTest::newRow("date") << "__/__/____" << "05/11/2026" << "05/11/2026";
    QTest::newRow("blank mask") << "__-__-___" << "__-__-___" << "__-__-___";
    QTest::newRow("empty") << "__-__-___" << "" << "__-__-___";
    QTest::newRow("code") << "__-__-___" << "19-10-001" << "19-10-001";
    QTest::newRow("partial") << "__/__/____" << "05/__/2026" << "05/__/2026";
}

void TestFieldFilters::maskedSetText()
{
    QFETCH(QString, mask);
    QFETCH(QString, input);
    MaskedLineEdit e(mask);
    e.setMaskText(input);
    QTEST(e.maskText(), "maskText");
}

void TestFieldFilters::maskedDate()
{
    MaskedLineEdit e;
    e.setDate(QDate(2024, 3, 7));
    QCOMPARE(e.maskText(), QStringLiteral("07/03/2024"));
    QCOMPARE(e.date(), QDate(2024, 3, 7));
    e.setMaskText(QStringLiteral("29/02/1900")); // passes the date check, names no day
    QVERIFY(!e.date().isValid());
    e.clearMask();
    QVERIFY(!e.date().isValid());
    QVERIFY(!e.isComplete());
}

void TestFieldFilters::typedAndPasted_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("after");
    const int safe = int(KeyRules::Kind::SafeText);
    const int dec = int(KeyRules::Kind::DecimalOnly);
    const int dig = int(KeyRules::Kind::DigitsOnly);
    const int let = int(KeyRules::Kind::LettersUpper);
    QTest::newRow("safe text raises and drops") << safe << "" << "o'neil, a;b" << "ONEIL AB";
    QTest::newRow("safe text keeps other marks") << safe << "" << "a-b/c (1)" << "A-B/C (1)";
    QTest::newRow("decimal one point") << dec << "" << "12.5.3" << "12.53";
    QTest::newRow("decimal leading point") << dec << "" << ".5" << ".5";
    QTest::newRow("decimal no sign") << dec << "" << "-7" << "7";
    QTest::newRow("decimal point when one exists") << dec << "1.2" << "." << "1.2";
    QTest::newRow("digits") << dig << "" << "1a2.3-" << "123";
    QTest::newRow("letters") << let << "" << "ab c1[" << "ABC[";
}

void TestFieldFilters::typedAndPasted()
{
    QFETCH(int, kind);
    QFETCH(QString, before);
    QFETCH(QString, input);
    QFETCH(QString, after);

    // Typed, one key at a time.
    {
        QWidget w;
        auto *e = new QLineEdit(&w);
        attachKeyRule(e, KeyRules::Kind(kind));
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        e->setText(before);
        e->setFocus();
        e->end(false);
        QTest::keyClicks(e, input);
        QCOMPARE(e->text(), after);
    }
    // Pasted in one piece: what typing refuses, a paste must not bring in.
    // (A paste holding two points is refused whole.)
    {
        QLineEdit e;
        attachKeyRule(&e, KeyRules::Kind(kind));
        e.setText(before);
        e.end(false);
        QApplication::clipboard()->setText(input);
        e.paste();
        if (kind == int(KeyRules::Kind::DecimalOnly) && (before + input).count(QLatin1Char('.')) > 1)
            QCOMPARE(e.text(), before);
        else
            QCOMPARE(e.text(), after);
    }
}

void TestFieldFilters::comboFiltered()
{
    QComboBox c;
    c.setEditable(true);
    SafeTextKey::attach(&c);
    c.show();
    QVERIFY(QTest::qWaitForWindowExposed(&c));
    c.setFocus();
    QTest::keyClicks(&c, "abc;d'e");
    QCOMPARE(c.currentText(), QStringLiteral("ABCDE"));
}

void TestFieldFilters::enterMovesOn()
{
    QWidget w;
    auto *layout = new QVBoxLayout(&w);
    auto *a = new QLineEdit;
    auto *b = new QLineEdit;
    layout->addWidget(a);
    layout->addWidget(b);
    EnterToTab::attach(a);
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    a->setFocus();
    QTRY_VERIFY(a->hasFocus());
    QTest::keyClick(a, Qt::Key_Return);
    QTRY_VERIFY(b->hasFocus());
}

void TestFieldFilters::highlightOnFocus()
{
    QWidget w;
    auto *layout = new QVBoxLayout(&w);
    auto *a = new QLineEdit;
    auto *m = new MaskedLineEdit;
    layout->addWidget(a);
    layout->addWidget(m);
    attachHighlight(a);
    a->setText(QStringLiteral("HELLO"));
    m->setDate(QDate(2024, 1, 2));
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    a->setFocus();
    QTRY_VERIFY(a->hasFocus());
    QCOMPARE(a->palette().color(QPalette::Base), QColor(0x01, 0x7C, 0x6A));
    QCOMPARE(a->palette().color(QPalette::Text), QColor(Qt::white));
    QCOMPARE(a->selectedText(), QStringLiteral("HELLO"));
    m->setFocus();
    QTRY_VERIFY(m->hasFocus());
    QCOMPARE(a->palette().color(QPalette::Base), QColor(Qt::white));
    QCOMPARE(a->palette().color(QPalette::Text), QColor(Qt::black));
    QCOMPARE(m->palette().color(QPalette::Base), QColor(0x01, 0x7C, 0x6A));
    QCOMPARE(m->selectedText(), QStringLiteral("02/01/2024"));
    // Typing over the selected date replaces it from its first place.
    QTest::keyClicks(m, QStringLiteral("15032025"));
    QCOMPARE(m->maskText(), QStringLiteral("15/03/2025"));
    QCOMPARE(m->date(), QDate(2025, 3, 15));
}

QTEST_MAIN(TestFieldFilters)
#include "tst_fieldfilters.moc"
