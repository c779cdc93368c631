// What every posting refuses whoever calls it: a closed or missing date,
// an unknown type, an unknown account or a heading, a negative amount or
// a line on both sides. Nothing reaches the ledger when it refuses.
#include "support/TestDb.h"
#include "vouchers/PostingChecks.h"
#include "vouchers/VoucherPosting.h"
#include "vouchers/VoucherStaging.h"

#include <QtTest>

namespace {

const QDate kClosing(2025, 12, 31); // the test years' closing date
const QString kUser = QStringLiteral("CLERK");
const QDate kToday(2026, 3, 10);

VoucherLine line(const QString &code, Money dr, Money cr)
{
    VoucherLine l;
    l.state = LineState::Insert;
    l.partyCode = code;
    l.partyName = QStringLiteral("SOME ACCOUNT");
    l.description = QStringLiteral("LINE");
    l.debit = dr;
    l.credit = cr;
    return l;
}

void addAccounts(SessionConnection &db)
{
    for (const auto &a : {qMakePair(QStringLiteral("21-10-000"), QStringLiteral("ADMINISTRATIVE EXPENSES")),
                          qMakePair(QStringLiteral("21-10-001"), QStringLiteral("ELECTRICITY")),
                          qMakePair(QStringLiteral("19-20-001"), QStringLiteral("CITY BANK"))})
        db.execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES (?, ?)"), {a.first, a.second});
}

int ledgerRows(SessionConnection &db) { return TestDb::count(db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")); }

const Money k100 = Money::fromUnits(100);

} // namespace

class TestPostingChecks : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void postRefuses_data();
    void postRefuses();
    void changeAndDeleteKeepTheClosedPeriod_data() { TestDb::addBackends(); }
    void changeAndDeleteKeepTheClosedPeriod();
    void openingBalancesStandOnTheClosingDate_data() { TestDb::addBackends(); }
    void openingBalancesStandOnTheClosingDate();
};

void TestPostingChecks::postRefuses_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("type");
    QTest::addColumn<QDate>("date");
    QTest::addColumn<QString>("code");
    QTest::addColumn<qint64>("cents");   // the line's debit; negative for a negative amount
    QTest::addColumn<bool>("bothSides");
    QTest::addColumn<bool>("noClosingDate");
    QTest::addColumn<QString>("message"); // empty: posted

    const QString closed = QStringLiteral("Sorry, you enter wrong date because data has closed at this date");
    const QString notFound = QStringLiteral("Party name not found, please enter correct party name");
    const QDate open = kClosing.addDays(1);
    for (const char *backend : {"sqlite", "postgres"}) {
        auto row = [&](const char *name) { return &QTest::newRow(qPrintable(QStringLiteral("%1: %2").arg(QLatin1String(backend), QLatin1String(name)))) ; };
        const QString b = QString::fromLatin1(backend);
        *row("day after the closing date posts") << b << "CP" << open << "21-10-001" << qint64(10000) << false << false << "";
        *row("on the closing date") << b << "CP" << kClosing << "21-10-001" << qint64(10000) << false << false << closed;
        *row("before the closing date") << b << "CP" << QDate(2025, 6, 1) << "21-10-001" << qint64(10000) << false << false << closed;
        *row("no date") << b << "CP" << QDate() << "21-10-001" << qint64(10000) << false << false
                        << "Date is missing, please enter proper date";
        *row("no closing date") << b << "CP" << open << "21-10-001" << qint64(10000) << false << true
                                << "Closing date is missing, please specify closing date";
        *row("unknown account") << b << "CP" << open << "21-10-099" << qint64(10000) << false << false << notFound;
        *row("heading") << b << "CP" << open << "21-10-000" << qint64(10000) << false << false
                        << "A group heading can not take any entry, please select an account";
        *row("unknown type") << b << "XX" << open << "21-10-001" << qint64(10000) << false << false
                             << "Voucher type is not valid, please select voucher type";
        *row("no type") << b << "" << open << "21-10-001" << qint64(10000) << false << false
                        << "Voucher type is missing, please select voucher type";
        *row("negative amount") << b << "CP" << open << "21-10-001" << qint64(-10000) << false << false
                                << "Amount can not be negative, please enter correct amount";
        *row("both sides on one line") << b << "JV" << open << "21-10-001" << qint64(10000) << true << false
                                       << "An entry can be either debit or credit, please check your entry";
        *row("code with a trailing blank is the account") << b << "CP" << open << "21-10-001 " << qint64(10000) << false
                                                          << false << "";
    }
}

void TestPostingChecks::postRefuses()
{
    QFETCH(QString, type);
    QFETCH(QDate, date);
    QFETCH(QString, code);
    QFETCH(qint64, cents);
    QFETCH(bool, bothSides);
    QFETCH(bool, noClosingDate);
    QFETCH(QString, message);
    TESSEL_YEAR(year);
    auto db = year.connect();
    addAccounts(*db);
    if (noClosingDate)
        db->execute(QStringLiteral("DELETE FROM tblClosingDate"));

    const Money amount = Money::fromCents(cents);
    Voucher v{{type, 1, date}, {line(code, amount, bothSides ? amount : Money())}};
    if (bothSides) // balanced, so that only the two-sided line is at fault
        v.lines << line(QStringLiteral("19-20-001"), Money(), Money());

    const Outcome out = VoucherPosting(*db, kUser, kToday).post(v, NumberPolicy::Proposed);
    if (message.isEmpty()) {
        QVERIFY2(out.ok, qPrintable(out.message));
        QCOMPARE(ledgerRows(*db), 2);
        return;
    }
    QVERIFY(!out.ok);
    QCOMPARE(out.message, message);
    QCOMPARE(ledgerRows(*db), 0);
    QCOMPARE(db->transactionDepth(), 0);
}

void TestPostingChecks::changeAndDeleteKeepTheClosedPeriod()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    addAccounts(*db);
    const VoucherKey key{QStringLiteral("CP"), 1, kClosing.addDays(1)};
    QVERIFY(VoucherPosting(*db, kUser, kToday)
                .post(Voucher{key, {line(QStringLiteral("21-10-001"), k100, Money())}}, NumberPolicy::Typed)
                .ok);

    // Moving the voucher back into the closed period is refused, its rows untouched.
    VoucherStaging staging(*db);
    staging.loadVoucher(key);
    const VoucherKey back{key.type, key.number, kClosing};
    Outcome out = VoucherPosting(*db, kUser, kToday).saveModified(key, back);
    QVERIFY(!out.ok);
    QCOMPARE(out.message, QStringLiteral("Sorry, you enter wrong date because data has closed at this date"));
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE VDate = ?"), {key.date}), 2);

    // Once the period is closed over it, the voucher can be neither changed nor removed.
    db->execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {key.date});
    out = VoucherPosting(*db, kUser, kToday).saveModified(key, key);
    QVERIFY(!out.ok);
    out = VoucherPosting(*db, kUser, kToday).deleteVoucher(key);
    QVERIFY(!out.ok);
    QCOMPARE(ledgerRows(*db), 2);
}

void TestPostingChecks::openingBalancesStandOnTheClosingDate()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    addAccounts(*db);
    const VoucherKey opening{QStringLiteral("JV"), 0, kClosing};
    const QVector<LedgerRow> rows = {LedgerRow::debit(opening, QStringLiteral("21-10-001"), QStringLiteral("ELECTRICITY"), k100,
                                                      QStringLiteral("OPENING BALANCE"))};
    QVERIFY(PostingChecks(*db, PostingChecks::Closing::FromClosingDate).check(rows));
    QVERIFY(!PostingChecks(*db, PostingChecks::Closing::AfterClosingDate).check(rows));
    QVERIFY(PostingChecks(*db, PostingChecks::Closing::NotChecked).check(rows));
    const VoucherKey before{QStringLiteral("JV"), 0, kClosing.addDays(-1)};
    QVERIFY(!PostingChecks(*db, PostingChecks::Closing::FromClosingDate)
                 .check({LedgerRow::debit(before, QStringLiteral("21-10-001"), QString(), k100)}));
}

QTEST_GUILESS_MAIN(TestPostingChecks)
#include "tst_postingchecks.moc"
