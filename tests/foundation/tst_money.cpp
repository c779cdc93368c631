#include "foundation/Money.h"

#include <QtTest>

class TestMoney : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void parse_data();
    void parse();
    void wholeUnitsHalfEven_data();
    void wholeUnitsHalfEven();
    void fromVariant_data();
    void fromVariant();
    void sumHasNoFloatNoise();
    void formats_data();
    void formats();
    void multiply_data();
    void multiply();
};

void TestMoney::parse_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<qint64>("cents");
    QTest::newRow("empty") << "" << true << qint64(0);
    QTest::newRow("point alone") << "." << true << qint64(0);
    QTest::newRow("leading point") << ".5" << true << qint64(50);
    QTest::newRow("leading point two") << ".05" << true << qint64(5);
    QTest::newRow("whole") << "1234" << true << qint64(123400);
    QTest::newRow("trailing point") << "12." << true << qint64(1200);
    QTest::newRow("cents") << "1234.56" << true << qint64(123456);
    QTest::newRow("separators") << "1,234,567.80" << true << qint64(123456780);
    QTest::newRow("negative") << "-10.25" << true << qint64(-1025);
    QTest::newRow("third decimal down") << "0.124" << true << qint64(12);
    QTest::newRow("half cent to even down") << "0.125" << true << qint64(12);
    QTest::newRow("half cent to even up") << "0.135" << true << qint64(14);
    QTest::newRow("above half") << "0.1251" << true << qint64(13);
    QTest::newRow("big") << "9999999999999.99" << true << qint64(999999999999999);
    QTest::newRow("letters") << "12a" << false << qint64(0);
    QTest::newRow("two points") << "1.2.3" << false << qint64(0);
    QTest::newRow("overflow") << "99999999999999999999" << false << qint64(0);
}

void TestMoney::parse()
{
    QFETCH(QString, text);
    QFETCH(bool, valid);
    QFETCH(qint64, cents);
    const auto m = Money::parse(text);
    QCOMPARE(m.has_value(), valid);
    if (valid)
        QCOMPARE(m->cents(), cents);
}

void TestMoney::wholeUnitsHalfEven_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("units");
    QTest::newRow("2.5") << "2.5" << qint64(2);
    QTest::newRow("3.5") << "3.5" << qint64(4);
    QTest::newRow("50.25") << "50.25" << qint64(50);
    QTest::newRow("50.5") << "50.5" << qint64(50);
    QTest::newRow("51.5") << "51.5" << qint64(52);
    QTest::newRow("50.51") << "50.51" << qint64(51);
    QTest::newRow("-2.5") << "-2.5" << qint64(-2);
    QTest::newRow("-3.5") << "-3.5" << qint64(-4);
    QTest::newRow("-0.4") << "-0.4" << qint64(0);
}

void TestMoney::wholeUnitsHalfEven()
{
    QFETCH(QString, text);
    QFETCH(qint64, units);
    QCOMPARE(Money::parse(text)->toWholeUnits(), units);
    QCOMPARE(Money::parse(text)->roundedToUnits().cents(), units * 100);
}

void TestMoney::fromVariant_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("present");
    QTest::addColumn<qint64>("cents");
    QTest::newRow("null") << QVariant() << false << qint64(0);
    QTest::newRow("null string") << QVariant(QMetaType::fromType<QString>()) << false << qint64(0);
    QTest::newRow("numeric text") << QVariant(QStringLiteral("1234.50")) << true << qint64(123450);
    QTest::newRow("integer") << QVariant(qlonglong(7)) << true << qint64(700);
    QTest::newRow("float noise") << QVariant(0.1 + 0.2) << true << qint64(30);
    QTest::newRow("float noise below") << QVariant(12.349999999997) << true << qint64(1235);
    QTest::newRow("exponent") << QVariant(QStringLiteral("1e+06")) << true << qint64(100000000);
}

void TestMoney::fromVariant()
{
    QFETCH(QVariant, value);
    QFETCH(bool, present);
    QFETCH(qint64, cents);
    const auto m = Money::fromVariant(value);
    QCOMPARE(m.has_value(), present);
    if (present)
        QCOMPARE(m->cents(), cents);
}

void TestMoney::sumHasNoFloatNoise()
{
    Money total;
    double floating = 0;
    for (int i = 0; i < 1000000; ++i) {
        total += Money::parse(QStringLiteral("0.10")).value();
        floating += 0.10;
    }
    QCOMPARE(total.cents(), qint64(10000000));
    QVERIFY(floating != 100000.0); // what a double would have given
    QCOMPARE(total.toPlainString(), QStringLiteral("100000.00"));
}

void TestMoney::formats_data()
{
    QTest::addColumn<qint64>("cents");
    QTest::addColumn<QString>("plain");
    QTest::addColumn<QString>("display");
    QTest::addColumn<QString>("field");
    QTest::newRow("zero") << qint64(0) << "0.00" << "0.00" << "0";
    QTest::newRow("cents") << qint64(5) << "0.05" << "0.05" << "0.05";
    QTest::newRow("tenths") << qint64(150) << "1.50" << "1.50" << "1.5";
    QTest::newRow("thousands") << qint64(123456789) << "1234567.89" << "1,234,567.89" << "1234567.89";
    QTest::newRow("negative") << qint64(-100000) << "-1000.00" << "-1,000.00" << "-1000";
}

void TestMoney::formats()
{
    QFETCH(qint64, cents);
    QFETCH(QString, plain);
    QFETCH(QString, display);
    QFETCH(QString, field);
    const Money m = Money::fromCents(cents);
    QCOMPARE(m.toPlainString(), plain);
    QCOMPARE(m.toDisplayString(), display);
    QCOMPARE(m.toFieldString(), field);
    QCOMPARE(Money::parse(m.toPlainString())->cents(), cents);
    QCOMPARE(Money::parse(m.toDisplayString())->cents(), cents);
}

void TestMoney::multiply_data()
{
    QTest::addColumn<QString>("amount");
    QTest::addColumn<QString>("factor");
    QTest::addColumn<qint64>("cents");
    QTest::newRow("quantity") << "12.50" << "3" << qint64(3750);
    QTest::newRow("rate") << "100.00" << "0.175" << qint64(1750);
    QTest::newRow("half to even") << "0.05" << "0.5" << qint64(2);
    QTest::newRow("half to even odd") << "0.07" << "0.5" << qint64(4);
    QTest::newRow("negative factor") << "10.00" << "-1.5" << qint64(-1500);
}

void TestMoney::multiply()
{
    QFETCH(QString, amount);
    QFETCH(QString, factor);
    QFETCH(qint64, cents);
    QCOMPARE(Money::parse(amount)->multipliedBy(factor).cents(), cents);
}

QTEST_GUILESS_MAIN(TestMoney)
#include "tst_money.moc"
