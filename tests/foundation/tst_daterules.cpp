#include "foundation/DateRules.h"

#include <QtTest>

using namespace DateRules;

class TestDateRules : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void checkDate_data();
    void checkDate();
    void checkYear_data();
    void checkYear();
    void maskText_data();
    void maskText();
    void closing_data();
    void closing();
};

void TestDateRules::checkDate_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("expected");
    const int ok = int(Check::Ok), wrong = int(Check::Wrong), missing = int(Check::Missing);
    QTest::newRow("plain") << "15/06/2024" << ok;
    QTest::newRow("29 feb 1900, no day of the calendar") << "29/02/1900" << wrong;
    QTest::newRow("29 feb 2100, no day of the calendar") << "29/02/2100" << wrong;
    QTest::newRow("29 feb 2000") << "29/02/2000" << ok;
    QTest::newRow("29 feb 2024") << "29/02/2024" << ok;
    QTest::newRow("29 feb 2023") << "29/02/2023" << wrong;
    QTest::newRow("30 feb 2024") << "30/02/2024" << wrong;
    QTest::newRow("31 april") << "31/04/2024" << wrong;
    QTest::newRow("30 april") << "30/04/2024" << ok;
    QTest::newRow("31 december") << "31/12/2024" << ok;
    QTest::newRow("day zero") << "00/01/2024" << wrong;
    QTest::newRow("month 13") << "01/13/2024" << wrong;
    QTest::newRow("month zero") << "01/00/2024" << wrong;
    QTest::newRow("1799") << "01/01/1799" << wrong;
    QTest::newRow("1800") << "01/01/1800" << ok;
    QTest::newRow("blank") << "__/__/____" << missing;
    QTest::newRow("one place left") << "01/01/202_" << missing;
    QTest::newRow("day half typed") << "1_/01/2024" << missing;
}

void TestDateRules::checkDate()
{
    QFETCH(QString, text);
    QFETCH(int, expected);
    QCOMPARE(int(DateRules::checkDate(text)), expected);
    // A date the check accepts is the one the field gives back, except for
    // a 29 February the calendar does not have.
    if (expected == int(Check::Ok) && fromMaskText(text).isValid())
        QCOMPARE(toMaskText(fromMaskText(text)), text);
}

void TestDateRules::checkYear_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("expected");
    QTest::addColumn<QString>("message");
    QTest::newRow("2024") << "2024" << int(Check::Ok) << "";
    QTest::newRow("1800") << "1800" << int(Check::Ok) << "";
    QTest::newRow("1799") << "1799" << int(Check::Wrong) << "Wrong date, please enter correct date";
    QTest::newRow("part") << "20__" << int(Check::Missing) << "Year is missing, please enter proper year";
}

void TestDateRules::checkYear()
{
    QFETCH(QString, text);
    QFETCH(int, expected);
    QFETCH(QString, message);
    const Check c = DateRules::checkYear(text);
    QCOMPARE(int(c), expected);
    QCOMPARE(messageFor(c, true), message);
}

void TestDateRules::maskText_data()
{
    QTest::addColumn<QDate>("date");
    QTest::addColumn<QString>("text");
    QTest::newRow("padded") << QDate(2024, 3, 7) << "07/03/2024";
    QTest::newRow("two digits") << QDate(2025, 12, 31) << "31/12/2025";
    QTest::newRow("none") << QDate() << "__/__/____";
}

void TestDateRules::maskText()
{
    QFETCH(QDate, date);
    QFETCH(QString, text);
    QCOMPARE(toMaskText(date), text);
    QCOMPARE(fromMaskText(text), date);
}

void TestDateRules::closing_data()
{
    QTest::addColumn<QDate>("date");
    QTest::addColumn<QDate>("closing");
    QTest::addColumn<bool>("hasClosing");
    QTest::addColumn<int>("expected");
    QTest::addColumn<QString>("message");
    const QDate c(2024, 6, 30);
    QTest::newRow("on the closing date") << c << c << true << int(Closing::Closed)
                                         << "Sorry, you enter wrong date because data has closed at this date";
    QTest::newRow("before") << c.addDays(-200) << c << true << int(Closing::Closed)
                            << "Sorry, you enter wrong date because data has closed at this date";
    QTest::newRow("day after") << c.addDays(1) << c << true << int(Closing::Open) << "";
    QTest::newRow("no closing date") << c.addDays(1) << QDate() << false << int(Closing::NoClosingDate)
                                     << "Closing date is missing, please specify closing date";
    QTest::newRow("no such day") << QDate() << c << true << int(Closing::NotADate)
                                 << "Wrong date, please enter correct date";
}

void TestDateRules::closing()
{
    QFETCH(QDate, date);
    QFETCH(QDate, closing);
    QFETCH(bool, hasClosing);
    QFETCH(int, expected);
    QFETCH(QString, message);
    const Closing c = checkClosing(date, hasClosing ? std::optional<QDate>(closing) : std::nullopt);
    QCOMPARE(int(c), expected);
    QCOMPARE(messageFor(c), message);
}

QTEST_APPLESS_MAIN(TestDateRules)
#include "tst_daterules.moc"
