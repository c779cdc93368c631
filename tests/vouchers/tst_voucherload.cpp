// Many workstations saving vouchers at once: every voucher must land whole,
// under a number of its own, with the ledger still balanced.
#include "support/TestDb.h"
#include "vouchers/VoucherPosting.h"
#include "vouchers/VoucherStaging.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QtTest>
#include <atomic>
#include <thread>

class TestVoucherLoad : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void workstationsAtOnce_data();
    void workstationsAtOnce();
};

void TestVoucherLoad::workstationsAtOnce_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<int>("workstations");
    QTest::addColumn<int>("perStation");
    QTest::newRow("postgres") << QStringLiteral("postgres") << 8 << 200;
    QTest::newRow("sqlite") << QStringLiteral("sqlite") << 4 << 60;
}

void TestVoucherLoad::workstationsAtOnce()
{
    QFETCH(int, workstations);
    QFETCH(int, perStation);
    TESSEL_YEAR(year);
    {
        auto db = year.connect();
        for (int i = 1; i <= 20; ++i)
            db->execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES (?, ?)"),
                        {QStringLiteral("21-10-%1").arg(i, 3, 10, QLatin1Char('0')), QStringLiteral("EXPENSE %1").arg(i)});
    }

    std::atomic<int> failures{0};
    std::atomic<int> moved{0};
    std::atomic<qint64> leftStaged{0};
    QStringList errors;
    QMutex errorLock;
    QElapsedTimer clock;
    clock.start();
    std::vector<std::thread> threads;
    for (int w = 0; w < workstations; ++w) {
        threads.emplace_back([&, w] {
            try {
                auto db = SessionConnection::open(year.profile(), year.name());
                QRandomGenerator rng(1000 + w);
                VoucherStaging staging(*db);
                VoucherPosting posting(*db, QStringLiteral("WS%1").arg(w), QDate(2026, 6, 30));
                for (int i = 0; i < perStation; ++i) {
                    const QString type = i % 2 ? QStringLiteral("JV") : QStringLiteral("CP");
                    const VoucherKey key{type, Ledger::nextVoucherNo(*db, type),
                                         QDate(2026, 1, 1).addDays(rng.bounded(180))};
                    staging.clear();
                    qint64 sr = 0;
                    auto addLine = [&](int account, Money amount, const QString &side) {
                        LineInput in;
                        in.partyCode = QStringLiteral("21-10-%1").arg(account, 3, 10, QLatin1Char('0'));
                        in.partyName = QStringLiteral("EXPENSE %1").arg(account);
                        in.amount = amount;
                        in.side = side;
                        in.description = QStringLiteral("LOAD");
                        staging.addLine(key, in, sr);
                    };
                    const Money a = Money::fromCents(rng.bounded(1, 5000000));
                    const Money b = Money::fromCents(rng.bounded(1, 5000000));
                    if (type == QLatin1String("CP")) {
                        addLine(1 + rng.bounded(20), a, QStringLiteral("DR"));
                        addLine(1 + rng.bounded(20), b, QStringLiteral("DR"));
                    } else {
                        addLine(1 + rng.bounded(20), a, QStringLiteral("DR"));
                        addLine(1 + rng.bounded(20), a, QStringLiteral("CR"));
                    }
                    const Outcome out = posting.saveNew(key, NumberPolicy::Proposed);
                    if (!out.ok) {
                        ++failures;
                        QMutexLocker l(&errorLock);
                        errors << out.message;
                    }
                    if (!out.notice.isEmpty())
                        ++moved;
                }
                leftStaged += db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalanceEmpty")).toLongLong();
            } catch (const DbError &e) {
                ++failures;
                QMutexLocker l(&errorLock);
                errors << e.driverText();
            }
        });
    }
    for (auto &t : threads)
        t.join();
    const double seconds = clock.elapsed() / 1000.0;
    const int total = workstations * perStation;
    qInfo("%d workstations saved %d vouchers in %.2f s: %.0f vouchers/s; %d proposed numbers moved on",
          workstations, total, seconds, total / seconds, moved.load());
    QVERIFY2(failures == 0, qPrintable(errors.join(QLatin1String("; "))));
    QCOMPARE(leftStaged.load(), qint64(0));

    auto db = year.connect();
    // one voucher a type and number, and each voucher whole and balanced
    const QueryResult groups = db->select(QStringLiteral(
        "SELECT VoucherType, VoucherNo, COUNT(*) AS N, COUNT(DISTINCT VDate) AS Dates, SUM(PartyBalance) AS Net, "
        "SUM(CASE WHEN PartyCode = '19-10-001' THEN 1 ELSE 0 END) AS CashRows "
        "FROM tblPartyBalance GROUP BY VoucherType, VoucherNo"));
    QCOMPARE(groups.size(), total);
    for (const Row &g : groups) {
        const bool cp = g.text(0).trimmed() == QLatin1String("CP");
        QCOMPARE(g.integer("N"), qint64(cp ? 3 : 2));
        QCOMPARE(g.integer("Dates"), qint64(1));
        QCOMPARE(g.integer("CashRows"), qint64(cp ? 1 : 0));
        QCOMPARE(g.moneyOrZero("Net"), Money());
    }
    // numbers run 1..n without gaps per type
    for (const QString &type : {QStringLiteral("CP"), QStringLiteral("JV")})
        QCOMPARE(db->scalar(QStringLiteral("SELECT MAX(VoucherNo) FROM tblPartyBalance WHERE VoucherType = ?"), {type})
                     .toLongLong(),
                 qint64(total / 2));
    // the cash account equals the sum of its rows; debits equal credits
    Money cash;
    for (const Row &r : db->select(QStringLiteral("SELECT PartyBalance FROM tblPartyBalance WHERE PartyCode = '19-10-001'")))
        cash += r.moneyOrZero("PartyBalance");
    QCOMPARE(Ledger::accountBalance(*db, Ledger::kCashCode).value_or(Money()), cash);
    const auto sums = db->selectOne(QStringLiteral("SELECT SUM(PartyDR) AS D, SUM(PartyCR) AS C FROM tblPartyBalance"));
    QCOMPARE(sums->moneyOrZero("D"), sums->moneyOrZero("C"));
}

QTEST_GUILESS_MAIN(TestVoucherLoad)
#include "tst_voucherload.moc"
