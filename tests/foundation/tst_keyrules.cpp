#include "foundation/KeyRules.h"

#include <QtTest>

using KeyRules::Kind;

class TestKeyRules : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void keys_data();
    void keys();
    void texts_data();
    void texts();
};

void TestKeyRules::keys_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("hasPoint");
    QTest::addColumn<int>("result");
    const int digits = int(Kind::DigitsOnly), dec = int(Kind::DecimalOnly), letters = int(Kind::LettersUpper),
              safe = int(Kind::SafeText);
    QTest::newRow("digits: 0") << digits << int('0') << false << int('0');
    QTest::newRow("digits: 9") << digits << int('9') << false << int('9');
    QTest::newRow("digits: backspace") << digits << 8 << false << 8;
    QTest::newRow("digits: point") << digits << int('.') << false << 0;
    QTest::newRow("digits: letter") << digits << int('a') << false << 0;
    QTest::newRow("decimal: first point") << dec << int('.') << false << int('.');
    QTest::newRow("decimal: second point") << dec << int('.') << true << 0;
    QTest::newRow("decimal: digit after point") << dec << int('5') << true << int('5');
    QTest::newRow("decimal: minus") << dec << int('-') << false << 0;
    QTest::newRow("decimal: backspace") << dec << 8 << true << 8;
    QTest::newRow("letters: a raised") << letters << int('a') << false << int('A');
    QTest::newRow("letters: z raised") << letters << int('z') << false << int('Z');
    QTest::newRow("letters: A kept") << letters << int('A') << false << int('A');
    QTest::newRow("letters: [ between Z and a") << letters << int('[') << false << int('[');
    QTest::newRow("letters: ` between Z and a") << letters << int('`') << false << int('`');
    QTest::newRow("letters: {") << letters << int('{') << false << 0;
    QTest::newRow("letters: digit") << letters << int('1') << false << 0;
    QTest::newRow("letters: space") << letters << int(' ') << false << 0;
    QTest::newRow("letters: backspace") << letters << 8 << false << 8;
    QTest::newRow("safe: semicolon") << safe << int(';') << false << 0;
    QTest::newRow("safe: comma") << safe << int(',') << false << 0;
    QTest::newRow("safe: apostrophe") << safe << int('\'') << false << 0;
    QTest::newRow("safe: a raised") << safe << int('a') << false << int('A');
    QTest::newRow("safe: z raised") << safe << int('z') << false << int('Z');
    QTest::newRow("safe: { passes") << safe << int('{') << false << int('{');
    QTest::newRow("safe: digit") << safe << int('7') << false << int('7');
    QTest::newRow("safe: quote mark passes") << safe << int('"') << false << int('"');
    QTest::newRow("safe: space") << safe << int(' ') << false << int(' ');
}

void TestKeyRules::keys()
{
    QFETCH(int, kind);
    QFETCH(int, key);
    QFETCH(bool, hasPoint);
    QTEST(KeyRules::apply(Kind(kind), key, hasPoint), "result");
}

void TestKeyRules::texts_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("result");
    QTest::newRow("safe paste") << int(Kind::SafeText) << "d'souza; ali, & co" << "DSOUZA ALI & CO";
    QTest::newRow("safe paste drops line breaks and tabs") << int(Kind::SafeText) << "a\tb\r\nc" << "ABC";
    QTest::newRow("decimal paste keeps first point") << int(Kind::DecimalOnly) << "1.2.3" << "1.23";
    QTest::newRow("decimal paste drops sign and separators") << int(Kind::DecimalOnly) << "-1,234.50" << "1234.50";
    QTest::newRow("digits paste") << int(Kind::DigitsOnly) << " 12-34 " << "1234";
    QTest::newRow("letters paste") << int(Kind::LettersUpper) << "ab 12 cd" << "ABCD";
}

void TestKeyRules::texts()
{
    QFETCH(int, kind);
    QFETCH(QString, text);
    QTEST(KeyRules::filterText(Kind(kind), text), "result");
}

QTEST_APPLESS_MAIN(TestKeyRules)
#include "tst_keyrules.moc"
