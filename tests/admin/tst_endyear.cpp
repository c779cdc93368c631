// End-year steps on one year, without the screen: the carry of every
// account into its opening row, the profit and loss carried to 20-01-001
// in whole money, and the cut of each table by its date column.
#include "support/TestDb.h"

#include "admin/EndYear.h"
#include "foundation/DateRules.h"
#include "vouchers/LedgerCheck.h"
#include "vouchers/LedgerWriter.h"

#include <QtTest>

Q_DECLARE_METATYPE(EndYear::Step)

using TestDb::count;

namespace {

const QDate kFrom(2026, 1, 1);
const QDate kTo(2026, 12, 31);
const EndYear::Run kRun{kFrom, kTo, QStringLiteral("CLERK"), QDate(2027, 1, 5)};

Money cents(qint64 c) { return Money::fromCents(c); }

void addAccount(SessionConnection &db, const QString &code, const QString &name)
{
    db.execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES (?, ?)"), {code, name});
}

// One row on the account: a positive amount a debit, a negative a credit.
void post(SessionConnection &db, const QString &code, const QString &name, const QDate &day, qint64 amount,
          const QString &desc = QStringLiteral("ENTRY"), const QString &type = QStringLiteral("JV"),
          qint64 number = 1)
{
    Transaction tx(db);
    const VoucherKey key{type, number, day};
    LedgerWriter(db, QStringLiteral("CLERK"), day)
        .insert(amount < 0 ? LedgerRow::credit(key, code, name, cents(-amount), desc)
                           : LedgerRow::debit(key, code, name, cents(amount), desc));
    tx.commit();
}

void opening(SessionConnection &db, const QString &code, const QString &name, const QDate &day, qint64 amount)
{
    post(db, code, name, day, amount, QStringLiteral("OPENING BALANCE"), QStringLiteral("JV"), 0);
}

// Every ledger row as text, in a fixed order, the stamps left out.
QStringList ledger(SessionConnection &db)
{
    QStringList out;
    for (const Row &r : db.select(QStringLiteral(
             "SELECT VoucherType, VoucherNo, VDate, RTRIM(PartyCode), PartyName, PartyDR, PartyCR, PartyBalance, "
             "PartyDesc FROM tblPartyBalance ORDER BY RTRIM(PartyCode), VDate, VoucherType, VoucherNo, PartyBalance")))
        out << QStringLiteral("%1 %2 %3 %4 %5 %6 %7 %8 %9")
                   .arg(r.text(0), QString::number(r.integer(1)), r.date(2).toString(Qt::ISODate), r.text(3),
                        r.text(4), r.moneyOrZero(QStringLiteral("PartyDR")).toPlainString(),
                        r.moneyOrZero(QStringLiteral("PartyCR")).toPlainString(),
                        r.moneyOrZero(QStringLiteral("PartyBalance")).toPlainString(), r.text(8));
    return out;
}

// The account's opening rows as "date DR CR".
QStringList openingRows(SessionConnection &db, const QString &code)
{
    QStringList out;
    for (const Row &r : db.select(QStringLiteral("SELECT VDate, PartyDR, PartyCR, PartyBalance FROM tblPartyBalance "
                                                 "WHERE PartyCode = ? AND VoucherType = 'JV' AND VoucherNo = 0 "
                                                 "AND PartyDesc = 'OPENING BALANCE' ORDER BY SrNo"),
                                  {code})) {
        const Money dr = r.moneyOrZero(QStringLiteral("PartyDR")), cr = r.moneyOrZero(QStringLiteral("PartyCR"));
        // A row's balance is its debit less its credit, or the row is shown as wrong.
        const bool sided = r.moneyOrZero(QStringLiteral("PartyBalance")) == dr - cr;
        out << QStringLiteral("%1 %2 %3").arg(r.date(0).toString(QStringLiteral("dd/MM/yyyy")), dr.toPlainString(),
                                              cr.toPlainString())
                + (sided ? QString() : QStringLiteral(" UNBALANCED"));
    }
    return out;
}

void verifyKept(SessionConnection &db)
{
    QStringList differences;
    QVERIFY2(LedgerCheck::keptBalancesAgree(db, &differences), qPrintable(differences.join(QStringLiteral("; "))));
}

} // namespace

class TestEndYear : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void accountsCarryBalances_data() { TestDb::addBackends(); }
    void accountsCarryBalances();
    void profitAndLossWholeMoney_data();
    void profitAndLossWholeMoney();
    void tableStepsCutByDate_data();
    void tableStepsCutByDate();
    void refusalsWriteNothing_data() { TestDb::addBackends(); }
    void refusalsWriteNothing();
    void failureRollsBack_data() { TestDb::addBackends(); }
    void failureRollsBack();
    void entryDuringStepNotLost_data();
    void entryDuringStepNotLost();
};

void TestEndYear::accountsCarryBalances()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    addAccount(*db, QStringLiteral("17-10-001"), QStringLiteral("CRESCENT TEXTILES"));
    addAccount(*db, QStringLiteral("14-10-001"), QStringLiteral("PAPER HOUSE"));
    addAccount(*db, QStringLiteral("21-10-001"), QStringLiteral("ELECTRICITY"));
    addAccount(*db, QStringLiteral("19-20-001"), QStringLiteral("CITY BANK"));

    // A debit balance, partly under the account's old name, on top of an
    // opening row of the year before.
    opening(*db, QStringLiteral("17-10-001"), QStringLiteral("CRESCENT TEXTILES"), QDate(2024, 12, 31), 100000);
    post(*db, QStringLiteral("17-10-001"), QStringLiteral("CRESCENT TEXT."), QDate(2025, 3, 9), 25050);
    post(*db, QStringLiteral("17-10-001"), QStringLiteral("CRESCENT TEXTILES"), QDate(2025, 12, 31), -5001);
    // A credit balance, with no opening row yet; its opening row of later
    // in the period is taken into the carry.
    post(*db, QStringLiteral("14-10-001"), QStringLiteral("PAPER HOUSE"), QDate(2025, 6, 30), -123456);
    opening(*db, QStringLiteral("14-10-001"), QStringLiteral("PAPER HOUSE"), QDate(2026, 2, 1), -1000);
    // A balance of exactly nothing.
    post(*db, QStringLiteral("21-10-001"), QStringLiteral("ELECTRICITY"), QDate(2025, 1, 15), 7799);
    post(*db, QStringLiteral("21-10-001"), QStringLiteral("ELECTRICITY"), QDate(2025, 12, 15), -7799);
    // Inside the period only: its opening row stays as it was.
    opening(*db, QStringLiteral("19-20-001"), QStringLiteral("CITY BANK"), QDate(2026, 1, 1), 50000);
    // Rows of the period's first and last day stay; the day after goes.
    post(*db, QStringLiteral("17-10-001"), QStringLiteral("CRESCENT TEXTILES"), kFrom, 1111);
    post(*db, QStringLiteral("19-20-001"), QStringLiteral("CITY BANK"), kTo, -2222);
    post(*db, QStringLiteral("19-20-001"), QStringLiteral("CITY BANK"), kTo.addDays(1), 3333);
    post(*db, QStringLiteral("21-10-001"), QStringLiteral("ELECTRICITY"), kTo.addDays(1), 4444);

    QVector<int> seen;
    const Outcome first = EndYear::runStep(*db, EndYear::Step::Accounts, kRun,
                                           [&](int value, int maximum) { seen << value << maximum; });
    QVERIFY2(first.ok, qPrintable(first.message));
    QCOMPARE(first.message, QStringLiteral("Accounts end year processing has been completed sucessfully."));
    QVERIFY(!seen.isEmpty());
    QCOMPARE(seen.mid(seen.size() - 2), (QVector<int>{4, 4}));

    QCOMPARE(openingRows(*db, QStringLiteral("17-10-001")), QStringList{QStringLiteral("31/12/2025 1200.49 0.00")});
    QCOMPARE(openingRows(*db, QStringLiteral("14-10-001")), QStringList{QStringLiteral("31/12/2025 0.00 1244.56")});
    QCOMPARE(openingRows(*db, QStringLiteral("21-10-001")), QStringList{QStringLiteral("31/12/2025 0.00 0.00")});
    QCOMPARE(openingRows(*db, QStringLiteral("19-20-001")), QStringList{QStringLiteral("01/01/2026 500.00 0.00")});
    // The carried row takes the chart's name.
    QCOMPARE(db->scalar(QStringLiteral("SELECT PartyName FROM tblPartyBalance WHERE PartyCode = '17-10-001' "
                                       "AND VoucherNo = 0")).toString(),
             QStringLiteral("CRESCENT TEXTILES"));
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE VDate > ?"), {kTo}), 0);
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE VDate = ?"), {kTo}), 1);
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE VDate = ? AND VoucherNo = 1"),
                   {kFrom}),
             1);
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")), 6);
    verifyKept(*db);
    // The edit log holds the step as one row, not each row it removed.
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblEditLog WHERE Change = 'STEP'")), 1);
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblEditLog WHERE Change = 'DELETE'")), 0);

    // The same dates again leave the same rows.
    const QStringList once = ledger(*db);
    QVERIFY(EndYear::runStep(*db, EndYear::Step::Accounts, kRun).ok);
    QCOMPARE(ledger(*db), once);
    verifyKept(*db);
}

void TestEndYear::profitAndLossWholeMoney_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<qint64>("plBefore");    // 20-01-001 before the period, cents
    QTest::addColumn<qint64>("income");      // an income account before the period
    QTest::addColumn<qint64>("expense");     // an expense account before the period
    QTest::addColumn<qint64>("carried");     // the opening row of 20-01-001 after
    const struct
    {
        const char *name;
        qint64 pl, income, expense, carried;
    } cases[] = {
        {"fractions dropped", 100049, -50000, 20010, 100000 - 29990 - 10},
        {"half to even down", 250, -250, 0, 200 - 200},
        {"half to even up", 150, 0, 350, 200 + 400},
        {"negative halves", -150, -250, 0, -200 - 200},
        {"no result", 0, 0, 0, 0},
        {"loss", -1000000, -20000, 1234567, -1000000 + 1214600},
    };
    for (const char *backend : {"sqlite", "postgres"})
        for (const auto &c : cases)
            QTest::addRow("%s %s", backend, c.name)
                << QString::fromLatin1(backend) << c.pl << c.income << c.expense << c.carried;
}

void TestEndYear::profitAndLossWholeMoney()
{
    TESSEL_BACKEND();
    QFETCH(qint64, plBefore);
    QFETCH(qint64, income);
    QFETCH(qint64, expense);
    QFETCH(qint64, carried);
    TestDb::Year year(backend);
    auto db = year.connect();
    const QString pl = QStringLiteral("20-01-001");
    addAccount(*db, QStringLiteral("20-10-005"), QStringLiteral("PRINTING INCOME"));
    addAccount(*db, QStringLiteral("21-10-001"), QStringLiteral("ELECTRICITY"));
    addAccount(*db, QStringLiteral("17-10-001"), QStringLiteral("CRESCENT TEXTILES"));

    // 20-01-001 has two rows before the period, and one inside it that
    // stays as it is.
    opening(*db, pl, QStringLiteral("PROFIT AND LOSS ACCOUNT"), QDate(2024, 12, 31), plBefore - 1);
    post(*db, pl, QStringLiteral("PROFIT AND LOSS ACCOUNT"), QDate(2025, 6, 1), 1);
    post(*db, pl, QStringLiteral("PROFIT AND LOSS ACCOUNT"), QDate(2026, 6, 1), -777);
    // The income has an opening row and rows; the expense rows alone.
    opening(*db, QStringLiteral("20-10-005"), QStringLiteral("PRINTING INCOME"), QDate(2024, 12, 31), income / 2);
    post(*db, QStringLiteral("20-10-005"), QStringLiteral("PRINTING INCOME"), QDate(2025, 4, 1), income - income / 2);
    post(*db, QStringLiteral("21-10-001"), QStringLiteral("ELECTRICITY"), QDate(2025, 12, 31), expense);
    // Rows of the period and a balance-sheet account are not carried.
    post(*db, QStringLiteral("21-10-001"), QStringLiteral("ELECTRICITY"), kFrom, 99999);
    post(*db, QStringLiteral("17-10-001"), QStringLiteral("CRESCENT TEXTILES"), QDate(2025, 5, 5), 55555);

    // Before the accounts step it would leave the vouchers before the
    // period half removed: refused, nothing written.
    const QStringList whole = ledger(*db);
    const Outcome early = EndYear::runStep(*db, EndYear::Step::ProfitAndLoss, kRun);
    QVERIFY(!early.ok);
    QCOMPARE(early.message, EndYear::Msg::entriesBeforePeriod(kFrom));
    QCOMPARE(ledger(*db), whole);

    QVERIFY(EndYear::runStep(*db, EndYear::Step::Accounts, kRun).ok);
    for (int run = 1; run <= 2; ++run) {
        const Outcome out = EndYear::runStep(*db, EndYear::Step::ProfitAndLoss, kRun);
        QVERIFY2(out.ok, qPrintable(out.message));
        QCOMPARE(out.message, QStringLiteral("Profit and Loass end year processing has been completed sucessfully."));
        // Once, into one opening row, whatever the run.
        const QStringList rows = openingRows(*db, pl);
        QCOMPARE(rows.size(), 1);
        const Money c = cents(carried);
        QCOMPARE(rows.first(), QStringLiteral("31/12/2025 %1 %2").arg(c.isNegative() ? QStringLiteral("0.00") : c.toPlainString(),
                                                                      c.isNegative() ? (-c).toPlainString() : QStringLiteral("0.00")));
        QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE PartyCode = ?"), {pl}), 2);
        // The income and expense accounts start the period at nothing.
        QCOMPARE(*db->scalarMoney(QStringLiteral("SELECT COALESCE(SUM(PartyBalance), 0) FROM tblPartyBalance "
                                                 "WHERE PartyCode >= '20-10-000' AND VDate < ?"),
                                  {kFrom}),
                 Money());
        QCOMPARE(*db->scalarMoney(QStringLiteral("SELECT SUM(PartyBalance) FROM tblPartyBalance "
                                                 "WHERE PartyCode = '21-10-001' AND VDate >= ?"),
                                  {kFrom}),
                 cents(99999));
        QCOMPARE(*db->scalarMoney(QStringLiteral("SELECT SUM(PartyBalance) FROM tblPartyBalance "
                                                 "WHERE PartyCode = '17-10-001'")),
                 cents(55555));
        verifyKept(*db);
    }
    // The accounts step after it carries the same figures again.
    QVERIFY(EndYear::runStep(*db, EndYear::Step::Accounts, kRun).ok);
    QCOMPARE(openingRows(*db, pl).size(), 1);
    QCOMPARE(*db->scalarMoney(QStringLiteral("SELECT SUM(PartyBalance) FROM tblPartyBalance WHERE PartyCode = ? "
                                             "AND VDate < ?"),
                              {pl, kFrom}),
             cents(carried));
}

void TestEndYear::tableStepsCutByDate_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<EndYear::Step>("step");
    for (const char *backend : {"sqlite", "postgres"})
        for (const EndYear::StepInfo &s : EndYear::steps())
            if (!s.table.isEmpty())
                QTest::addRow("%s %s", backend, qPrintable(s.table)) << QString::fromLatin1(backend) << s.step;
}

void TestEndYear::tableStepsCutByDate()
{
    TESSEL_BACKEND();
    QFETCH(EndYear::Step, step);
    TestDb::Year year(backend);
    auto db = year.connect();
    const EndYear::StepInfo &s = EndYear::info(step);
    // Rows on each side of both ends of the period, and one without a date.
    const QList<QDate> days = {kFrom.addDays(-1), kFrom, kTo, kTo.addDays(1), QDate()};
    for (const QDate &d : days)
        db->execute(QStringLiteral("INSERT INTO %1 (%2) VALUES (?)").arg(s.table, s.dateColumn),
                    {d.isValid() ? QVariant(d) : QVariant(QMetaType::fromType<QDate>())});
    // The ledger and every other table are left alone.
    post(*db, QStringLiteral("19-10-001"), QStringLiteral("CASH IN HAND"), kTo.addDays(1), 100);

    const Outcome out = EndYear::runStep(*db, step, kRun);
    QVERIFY2(out.ok, qPrintable(out.message));
    QCOMPARE(out.message, s.message);
    QVERIFY(out.message.endsWith(QLatin1String(" end year processing has been completed sucessfully.")));
    QStringList left;
    for (const Row &r : db->select(QStringLiteral("SELECT %1 FROM %2 ORDER BY %1").arg(s.dateColumn, s.table)))
        left << (r.date(0).isValid() ? r.date(0).toString(QStringLiteral("dd/MM/yyyy")) : QStringLiteral("none"));
    left.sort();
    QCOMPARE(left, (QStringList{QStringLiteral("01/01/2026"), QStringLiteral("31/12/2026"), QStringLiteral("none")}));
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")), 1);
}

void TestEndYear::refusalsWriteNothing()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    post(*db, QStringLiteral("19-10-001"), QStringLiteral("CASH IN HAND"), QDate(2025, 1, 1), 100);
    const QStringList before = ledger(*db);

    const struct
    {
        QDate from, to;
        QString message, field;
    } periods[] = {
        {QDate(), kTo, DateRules::dateMissingMessage(), QStringLiteral("mskDateFrom")},
        {kFrom, QDate(), DateRules::dateMissingMessage(), QStringLiteral("mskDateTo")},
        {kTo, kFrom, DateRules::wrongDateMessage(), QStringLiteral("mskDateTo")},
    };
    for (const auto &p : periods) {
        for (const EndYear::StepInfo &s : EndYear::steps()) {
            const Outcome out = EndYear::runStep(*db, s.step, {p.from, p.to, QStringLiteral("CLERK"), kTo});
            QVERIFY(!out.ok);
            QCOMPARE(out.message, p.message);
            QCOMPARE(out.field, p.field);
        }
    }
    // Without the profit and loss account there is nowhere to carry to.
    db->execute(QStringLiteral("DELETE FROM tblPartyInfo WHERE PartyCode = '20-01-001'"));
    const Outcome noAccount = EndYear::runStep(*db, EndYear::Step::ProfitAndLoss, kRun);
    QVERIFY(!noAccount.ok);
    QCOMPARE(noAccount.message, EndYear::Msg::profitAccountMissing());
    QCOMPARE(ledger(*db), before);

    // Kept balances that are not the sums of the rows would be carried as
    // they stand: both ledger steps refuse.
    db->execute(QStringLiteral("UPDATE tblAccountMonthBalance SET BalanceCents = BalanceCents + 1"));
    for (EndYear::Step step : {EndYear::Step::Accounts, EndYear::Step::ProfitAndLoss}) {
        const Outcome out = EndYear::runStep(*db, step, kRun);
        QVERIFY(!out.ok);
        QCOMPARE(out.message, EndYear::Msg::keptBalancesDiffer());
    }
    QCOMPARE(ledger(*db), before);
}

void TestEndYear::failureRollsBack()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    addAccount(*db, QStringLiteral("17-10-001"), QStringLiteral("CRESCENT TEXTILES"));
    for (int i = 0; i < 5; ++i)
        post(*db, QStringLiteral("17-10-001"), QStringLiteral("CRESCENT TEXTILES"), QDate(2025, 1 + i, 3), 1000 + i);
    const QStringList before = ledger(*db);

    // The removal at the end of the step fails: the opening rows written
    // before it go back too.
    db->setStatementHook([](const QString &sql) {
        if (sql.startsWith(QLatin1String("DELETE FROM tblPartyBalance")))
            throw DbError(QStringLiteral("disk full"), sql);
    });
    QVERIFY_THROWS_EXCEPTION(DbError, EndYear::runStep(*db, EndYear::Step::Accounts, kRun));
    db->setStatementHook({});
    QCOMPARE(ledger(*db), before);
    verifyKept(*db);
}

void TestEndYear::entryDuringStepNotLost_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<EndYear::Step>("step");
    QTest::newRow("postgres accounts") << QStringLiteral("postgres") << EndYear::Step::Accounts;
    QTest::newRow("postgres profit and loss") << QStringLiteral("postgres") << EndYear::Step::ProfitAndLoss;
}

// On a server another workstation posts, dated before the period, while a
// ledger step runs between its reading of the balances and its writing:
// the entry must wait for the step (here it gives up waiting), never be
// removed without being carried.
void TestEndYear::entryDuringStepNotLost()
{
    TESSEL_YEAR(year);
    QFETCH(EndYear::Step, step);
    auto db = year.connect();
    auto other = year.connect();
    addAccount(*db, QStringLiteral("20-10-005"), QStringLiteral("PRINTING INCOME"));
    post(*db, QStringLiteral("20-10-005"), QStringLiteral("PRINTING INCOME"), QDate(2025, 3, 1), -5000);
    post(*db, QStringLiteral("19-10-001"), QStringLiteral("CASH IN HAND"), QDate(2025, 3, 1), 5000);
    if (step == EndYear::Step::ProfitAndLoss)
        QVERIFY(EndYear::runStep(*db, EndYear::Step::Accounts, kRun).ok);
    const QString totalBefore = QStringLiteral("SELECT COALESCE(SUM(PartyBalance), 0) FROM tblPartyBalance "
                                               "WHERE VDate < ?");
    const Money total = *db->scalarMoney(totalBefore, {kFrom});

    other->execute(QStringLiteral("SET lock_timeout = '300ms'"));
    bool posted = false, tried = false;
    db->setStatementHook([&](const QString &sql) {
        if (tried || !(sql.startsWith(QLatin1String("INSERT INTO tblPartyBalance"))
                       || sql.startsWith(QLatin1String("UPDATE tblPartyBalance"))))
            return;
        tried = true;
        try {
            post(*other, QStringLiteral("19-10-001"), QStringLiteral("CASH IN HAND"), QDate(2025, 6, 1), 700);
            posted = true;
        } catch (const DbError &) {
        }
    });
    const Outcome out = EndYear::runStep(*db, step, kRun);
    db->setStatementHook({});
    QVERIFY2(out.ok, qPrintable(out.message));
    QVERIFY(tried);
    QCOMPARE(*db->scalarMoney(totalBefore, {kFrom}), posted ? total + cents(700) : total);
    verifyKept(*db);
}

QTEST_GUILESS_MAIN(TestEndYear)
#include "tst_endyear.moc"
