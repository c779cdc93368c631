// The salary sheet's arithmetic, line by line: overtime days from hours
// and leave, the overtime amount at a thirtieth of the salary, the total
// and the balance, each exact and rounded half to even at the cent.
#include "payroll/SalaryArithmetic.h"

#include <QtTest>

class TestSalaryArithmetic : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void figures_data();
    void figures();
    void emptyFieldsReadAsZero();
};

void TestSalaryArithmetic::figures_data()
{
    QTest::addColumn<QString>("salary");
    QTest::addColumn<QString>("time");
    QTest::addColumn<QString>("leave");
    QTest::addColumn<QString>("advance");
    QTest::addColumn<QString>("days");
    QTest::addColumn<QString>("otAmount");
    QTest::addColumn<QString>("total");
    QTest::addColumn<QString>("balance");

    QTest::newRow("twelve hours less a day of leave is one day") << "15000" << "12" << "1" << "0" << "1" << "500"
                                                                << "15500" << "15500";
    QTest::newRow("leave alone takes a thirtieth") << "15000" << "0" << "1" << "0" << "-1" << "-500" << "14500"
                                                   << "14500";
    QTest::newRow("nine hours are a day and a half") << "15000" << "9" << "0" << "0" << "1.5" << "750" << "15750"
                                                     << "15750";
    QTest::newRow("nothing but the salary") << "18000" << "" << "" << "" << "0" << "0" << "18000" << "18000";
    QTest::newRow("advance comes off the total") << "15000" << "6" << "0" << "2000" << "1" << "500" << "15500"
                                                 << "13500";
    QTest::newRow("advance above the total") << "5000" << "0" << "2" << "6000" << "-2" << "-333.33" << "4666.67"
                                             << "-1333.33";
    QTest::newRow("a thirtieth to the cent, down") << "10000" << "6" << "0" << "0" << "1" << "333.33" << "10333.33"
                                                   << "10333.33";
    QTest::newRow("a thirtieth to the cent, up") << "20000" << "6" << "0" << "0" << "1" << "666.67" << "20666.67"
                                                 << "20666.67";
    QTest::newRow("half a day of a large salary") << "100000" << "3" << "0" << "0" << "0.5" << "1666.67"
                                                  << "101666.67" << "101666.67";
    QTest::newRow("one hour is 0.17 of a day") << "30000" << "1" << "0" << "0" << "0.17" << "170" << "30170" << "30170";
    QTest::newRow("leave in halves") << "12000" << "0" << "2.5" << "0" << "-2.5" << "-1000" << "11000" << "11000";
    QTest::newRow("hours and leave cancel out") << "12000" << "18" << "3" << "0" << "0" << "0" << "12000" << "12000";
    // Days: (T - 6H) / 6 that falls on half a hundredth goes to the even one.
    QTest::newRow("days half to even, down to zero") << "1000" << "0.03" << "0" << "0" << "0" << "0" << "1000" << "1000";
    QTest::newRow("days half to even, up") << "1000" << "0.09" << "0" << "0" << "0.02" << "0.67" << "1000.67"
                                           << "1000.67";
    QTest::newRow("days half to even, down") << "1000" << "0.15" << "0" << "0" << "0.02" << "0.67" << "1000.67"
                                             << "1000.67";
    // Amount: salary x days / 30 that falls on half a cent.
    QTest::newRow("amount half to even, down") << "3" << "0.3" << "0" << "0" << "0.05" << "0" << "3" << "3";
    QTest::newRow("amount half to even, up") << "9" << "0.3" << "0" << "0" << "0.05" << "0.02" << "9.02" << "9.02";
    QTest::newRow("negative half to even") << "9" << "0" << "0.05" << "0" << "-0.05" << "-0.02" << "8.98" << "8.98";
    QTest::newRow("hours past two places rounded first") << "6000" << "6.005" << "0" << "0" << "1" << "200" << "6200"
                                                         << "6200";
    QTest::newRow("large figures stay exact") << "900000000" << "600" << "0" << "0" << "100" << "3000000000"
                                              << "3900000000" << "3900000000";
    QTest::newRow("odd salary, float would drift") << "123457" << "7" << "0" << "0.5" << "1.17" << "4814.82"
                                                   << "128271.82" << "128271.32";
}

void TestSalaryArithmetic::figures()
{
    QFETCH(QString, salary);
    QFETCH(QString, time);
    QFETCH(QString, leave);
    QFETCH(QString, advance);
    QFETCH(QString, days);
    QFETCH(QString, otAmount);
    QFETCH(QString, total);
    QFETCH(QString, balance);
    const SalaryArithmetic::Figures f = SalaryArithmetic::compute({salary, time, leave, advance});
    QCOMPARE(f.days, *Money::parse(days));
    QCOMPARE(f.otAmount, *Money::parse(otAmount));
    QCOMPARE(f.totalSalary, *Money::parse(total));
    QCOMPARE(f.balance, *Money::parse(balance));
    // The figures as the sheet shows them in its fields.
    QCOMPARE(f.days.toFieldString(), Money::parse(days)->toFieldString());
}

void TestSalaryArithmetic::emptyFieldsReadAsZero()
{
    QCOMPARE(SalaryArithmetic::orZero(QString()), QStringLiteral("0"));
    QCOMPARE(SalaryArithmetic::orZero(QStringLiteral("  ")), QStringLiteral("0"));
    QCOMPARE(SalaryArithmetic::orZero(QStringLiteral("12.5")), QStringLiteral("12.5"));
}

QTEST_APPLESS_MAIN(TestSalaryArithmetic)
#include "tst_salaryarithmetic.moc"
