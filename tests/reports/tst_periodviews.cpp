// The period views against figures worked out here from the ledger rows
// themselves, account by account, on a generated year and for periods of
// every shape, on both engines: brought forward, debits, credits, movement,
// balance at the end and the date of the last posting, to the cent.
#include "LedgerFixture.h"
#include "support/TestDb.h"
#include "vouchers/DemoGenerator.h"

#include <QMap>

namespace {

struct Figures
{
    qint64 opening = 0, debit = 0, credit = 0, period = 0, closing = 0, periodRows = 0;
    QDate last;

    bool operator==(const Figures &o) const
    {
        return opening == o.opening && debit == o.debit && credit == o.credit && period == o.period
            && closing == o.closing && periodRows == o.periodRows && last == o.last;
    }
};

QString describe(const Figures &f)
{
    return QStringLiteral("open %1 dr %2 cr %3 move %4 close %5 rows %6 last %7")
        .arg(f.opening)
        .arg(f.debit)
        .arg(f.credit)
        .arg(f.period)
        .arg(f.closing)
        .arg(f.periodRows)
        .arg(f.last.toString(Qt::ISODate));
}

// Each account with a posting up to the period's end. With no start to the
// period nothing is brought forward or moved.
QMap<QString, Figures> expected(SessionConnection &db, const QDate &from, const QDate &to)
{
    QMap<QString, Figures> out;
    for (const Row &r : db.select(QStringLiteral("SELECT PartyCode, VDate, PartyDR, PartyCR, PartyBalance FROM tblPartyBalance"))) {
        const QDate d = r.date(1);
        if (!d.isValid() || d > to)
            continue;
        Figures &f = out[r.text(0).trimmed()];
        if (!f.last.isValid() || d > f.last)
            f.last = d;
        const qint64 bal = r.moneyOrZero(QStringLiteral("PartyBalance")).cents();
        if (from.isValid() && d < from) {
            f.opening += bal;
        } else {
            f.debit += r.moneyOrZero(QStringLiteral("PartyDR")).cents();
            f.credit += r.moneyOrZero(QStringLiteral("PartyCR")).cents();
            f.period += bal;
            ++f.periodRows;
        }
        f.closing = f.opening + f.period;
    }
    return out;
}

// A figure in cents as the views give it: an integer on one engine, a
// decimal with ".00" on the other.
qint64 cents(const Row &r, const char *column)
{
    return Money::parseOrZero(r.text(QString::fromLatin1(column))).cents() / 100;
}

qint64 amount(const Row &r, const char *column)
{
    return r.moneyOrZero(QString::fromLatin1(column)).cents();
}

Figures totalsOf(const Row &r)
{
    Figures f;
    f.opening = cents(r, "OpeningCents");
    f.debit = cents(r, "DebitCents");
    f.credit = cents(r, "CreditCents");
    f.period = cents(r, "PeriodCents");
    f.closing = cents(r, "ClosingCents");
    f.periodRows = r.integer(QStringLiteral("PeriodRows"));
    f.last = r.date(QStringLiteral("VDate"));
    return f;
}

bool isParty(const QString &code)
{
    return code >= QLatin1String("14-10-000") && code <= QLatin1String("18-99-999");
}

} // namespace

class tst_PeriodViews : public QObject
{
    Q_OBJECT

private slots:
    void figuresOfEveryAccount_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QDate>("from");
        QTest::addColumn<QDate>("to");
        for (const char *b : {"sqlite", "postgres"}) {
            const QString backend = QString::fromLatin1(b);
            auto row = [&](const char *name, const QDate &from, const QDate &to) {
                QTest::newRow(qPrintable(backend + QLatin1Char(' ') + QLatin1String(name))) << backend << from << to;
            };
            row("whole year", QDate(2026, 1, 1), QDate(2026, 12, 31));
            row("a quarter", QDate(2026, 4, 1), QDate(2026, 6, 30));
            row("one day", QDate(2026, 3, 3), QDate(2026, 3, 3));
            row("inside a month", QDate(2026, 3, 2), QDate(2026, 3, 20));
            row("two months cut", QDate(2026, 2, 10), QDate(2026, 5, 20));
            row("from long before", QDate(1900, 1, 1), QDate(2026, 1, 25));
            row("ends before it starts", QDate(2026, 3, 1), QDate(2026, 2, 1));
            row("before every posting", QDate(2025, 1, 1), QDate(2025, 12, 31));
            row("no start", QDate(), QDate(2026, 8, 31));
        }
    }

    void figuresOfEveryAccount()
    {
        QFETCH(QDate, from);
        QFETCH(QDate, to);
        TESSEL_YEAR(year);
        auto db = year.connect();
        DemoOptions o;
        o.rows = 3000;
        o.from = QDate(2026, 1, 1);
        o.to = QDate(2026, 12, 31);
        DemoGenerator::standardYear(*db, o);
        {
            // Rows without a date (in no period) and rows after every
            // period's end (counted by none).
            Transaction tx(*db);
            const Money amount = Money::fromCents(98765);
            QVector<LedgerRow> rows;
            for (const QDate &d : {QDate(), QDate(2027, 2, 1)}) {
                const VoucherKey key{QStringLiteral("JV"), d.isValid() ? 90002 : 90001, d};
                rows << LedgerRow::debit(key, QStringLiteral("19-10-001"), QStringLiteral("CASH IN HAND"), amount,
                                         QStringLiteral("ODD ROW"))
                     << LedgerRow::credit(key, QStringLiteral("21-10-002"), QStringLiteral("ELECTRICITY"), amount,
                                          QStringLiteral("ODD ROW"));
            }
            LedgerWriter(*db, QStringLiteral("TEST"), QDate(2026, 1, 1)).insertMany(rows);
            tx.commit();
            QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE VDate IS NULL")).toLongLong(), 2LL);
        }
        if (!from.isValid())
            db->execute(QStringLiteral("DELETE FROM tblTLClientInfo"));
        db->setReportPeriod(from, to);

        const auto period = db->selectOne(QStringLiteral("SELECT SDate, EDate FROM LedgerPeriod"));
        QVERIFY(period.has_value());
        QCOMPARE(period->date(0), from);
        QCOMPARE(period->date(1), to);

        const QMap<QString, Figures> want = expected(*db, from, to);
        if (to >= o.from)
            QVERIFY2(want.size() > 20, qPrintable(QString::number(want.size())));
        for (const char *view : {"AccountPeriodTotals", "AllAccountPeriodTotals"}) {
            QMap<QString, Figures> got;
            for (const Row &r : db->select(QStringLiteral("SELECT * FROM ") + QLatin1String(view)))
                got.insert(r.text(QStringLiteral("PartyCode")).trimmed(), totalsOf(r));
            QCOMPARE(got.keys(), want.keys());
            // The statements over all accounts carry no date of the last
            // posting: they are summed from the kept months.
            const bool dated = QLatin1String(view) == QLatin1String("AccountPeriodTotals");
            for (auto it = want.cbegin(); it != want.cend(); ++it) {
                Figures w = it.value();
                if (!dated)
                    w.last = QDate();
                QVERIFY2(got.value(it.key()) == w,
                         qPrintable(QLatin1String(view) + QLatin1Char(' ') + it.key() + QStringLiteral(": ")
                                    + describe(got.value(it.key())) + QStringLiteral(" / ") + describe(w)));
            }
        }

        // One account asked for alone, as the ledger asks.
        for (auto it = want.cbegin(); it != want.cend(); ++it) {
            const auto one = db->selectOne(QStringLiteral("SELECT * FROM AccountPeriodTotals WHERE PartyCode = ?"), {it.key()});
            QVERIFY2(one.has_value(), qPrintable(it.key()));
            QVERIFY2(totalsOf(*one) == it.value(), qPrintable(it.key() + QStringLiteral(": ") + describe(totalsOf(*one))));
        }

        // The statements built on them.
        int parties = 0;
        for (const Row &r : db->select(QStringLiteral("SELECT * FROM PartyPeriodBalance"))) {
            const QString code = r.text(QStringLiteral("PartyCode")).trimmed();
            QVERIFY2(isParty(code) && want.contains(code), qPrintable(code));
            const Figures &f = want[code];
            QCOMPARE(amount(r, "PartyBalance"), f.period);
            QCOMPARE(amount(r, "Amount"), qAbs(f.period));
            QCOMPARE(amount(r, "DebitTotal"), f.debit);
            QCOMPARE(amount(r, "CreditTotal"), f.credit);
            QCOMPARE(amount(r, "OpeningBalance"), f.opening);
            QCOMPARE(amount(r, "ClosingBalance"), f.closing);
            ++parties;
        }
        QCOMPARE(parties, int(std::count_if(want.keyBegin(), want.keyEnd(), isParty)));

        int moved = 0;
        for (const Row &r : db->select(QStringLiteral("SELECT * FROM TrialBalance"))) {
            const Figures &f = want[r.text(QStringLiteral("PartyCode")).trimmed()];
            QVERIFY(f.periodRows > 0);
            QCOMPARE(amount(r, "PartyDR"), f.debit);
            QCOMPARE(amount(r, "PartyCR"), f.credit);
            QCOMPARE(amount(r, "PartyBalance"), f.period);
            QCOMPARE(amount(r, "OpeningBalance"), f.opening);
            QCOMPARE(amount(r, "ClosingBalance"), f.closing);
            ++moved;
        }
        QCOMPARE(moved, int(std::count_if(want.cbegin(), want.cend(), [](const Figures &f) { return f.periodRows > 0; })));

        // The balance at the end: every account with a posting up to it,
        // with the date of its last posting.
        QStringList listed;
        for (const Row &r : db->select(QStringLiteral("SELECT PartyCode, PartyBalance, VDate FROM TrialBalanceUptoDate"))) {
            const QString code = r.text(0).trimmed();
            listed << code;
            QVERIFY2(want.contains(code), qPrintable(code));
            QCOMPARE(amount(r, "PartyBalance"), want[code].closing);
            QCOMPARE(r.date(QStringLiteral("VDate")), want[code].last);
        }
        listed.sort();
        QCOMPARE(listed, want.keys());
    }

    // An ageing with no start to the period takes every posting up to its
    // end, as one that starts before them all.
    void ageingWithNoStart_data() { TestDb::addBackends(); }
    void ageingWithNoStart()
    {
        TESSEL_YEAR(year);
        auto db = year.connect();
        LedgerFixture::seedYear(*db);
        const QString sql = QStringLiteral("SELECT PartyCode, SrNo, PartyBalance, Outstanding, Days FROM AgeingReportPeriod "
                                           "ORDER BY PartyCode, SrNo");
        auto read = [&] {
            QStringList out;
            for (const Row &r : db->select(sql))
                out << QStringLiteral("%1 %2 %3 %4 %5")
                           .arg(r.text(0).trimmed())
                           .arg(r.integer(1))
                           .arg(r.moneyOrZero(QStringLiteral("PartyBalance")).toPlainString(),
                                r.moneyOrZero(QStringLiteral("Outstanding")).toPlainString())
                           .arg(r.integer(4));
            return out;
        };
        db->setReportPeriod(QDate(1900, 1, 1), QDate(2026, 6, 30));
        const QStringList fromTheStart = read();
        QVERIFY(!fromTheStart.isEmpty());
        db->execute(QStringLiteral("DELETE FROM tblTLClientInfo"));
        db->setReportPeriod(QDate(), QDate(2026, 6, 30));
        QCOMPARE(read(), fromTheStart);
        for (const QString &line : fromTheStart)
            QVERIFY2(isParty(line.section(QLatin1Char(' '), 0, 0)), qPrintable(line));
    }
};

QTEST_GUILESS_MAIN(tst_PeriodViews)
#include "tst_periodviews.moc"
