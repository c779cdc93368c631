// The closing date: set and moved, and held by the posting rules
// themselves, with no screen in between.
#include "support/TestDb.h"
#include "vouchers/VoucherFixture.h"

#include "admin/ClosingDate.h"
#include "foundation/DateRules.h"

#include <QtTest>

using namespace VoucherFixture;
using TestDb::count;

class TestClosingDate : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void setInsertsThenMoves_data() { TestDb::addBackends(); }
    void setInsertsThenMoves();
    void postingsFollowTheDate_data() { TestDb::addBackends(); }
    void postingsFollowTheDate();
};

void TestClosingDate::setInsertsThenMoves()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    db->execute(QStringLiteral("DELETE FROM tblClosingDate"));
    QVERIFY(!ClosingDate::current(*db));
    QVERIFY(!ClosingDate::firstOpenDate(*db));

    // The first date inserts the row.
    const Outcome first = ClosingDate::set(*db, QDate(2025, 12, 31));
    QVERIFY(first.ok);
    QCOMPARE(first.message, QStringLiteral("The process of end year closing date has completed"));
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblClosingDate")), 1);
    QCOMPARE(*ClosingDate::firstOpenDate(*db), QDate(2026, 1, 1));

    // Forwards, then back again: still one row, holding the last date.
    QVERIFY(ClosingDate::set(*db, QDate(2026, 2, 28)));
    QVERIFY(ClosingDate::set(*db, QDate(2025, 6, 30)));
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblClosingDate")), 1);
    QCOMPARE(*ClosingDate::current(*db), QDate(2025, 6, 30));

    // Not a date: refused, nothing changed.
    const Outcome bad = ClosingDate::set(*db, QDate());
    QVERIFY(!bad.ok);
    QCOMPARE(bad.message, DateRules::dateMissingMessage());
    QCOMPARE(*ClosingDate::current(*db), QDate(2025, 6, 30));
}

void TestClosingDate::postingsFollowTheDate()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    addAccounts(*db);
    const QDate closing(2026, 3, 9);
    QVERIFY(ClosingDate::set(*db, closing));
    const auto voucherOn = [&](const QDate &day) {
        return stageAndSave(*db, VoucherKey{QStringLiteral("JV"), 1, day},
                            {line("17-10-001", "CRESCENT TEXTILES", m("100.00"), "DR"),
                             line("21-10-001", "ELECTRICITY", m("100.00"), "CR")});
    };

    // On the closing date itself: refused by the posting, nothing written.
    const Outcome on = voucherOn(closing);
    QVERIFY(!on.ok);
    QCOMPARE(on.message, DateRules::closedPeriodMessage());
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE VoucherType = 'JV'")), 0);
    // The day after is open.
    QVERIFY(voucherOn(closing.addDays(1)).ok);

    // Moving the date back reopens the period at once.
    QVERIFY(ClosingDate::set(*db, closing.addDays(-1)));
    QVERIFY(voucherOn(closing).ok);
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE VoucherType = 'JV'")), 4);
}

QTEST_GUILESS_MAIN(TestClosingDate)
#include "tst_closingdate.moc"
