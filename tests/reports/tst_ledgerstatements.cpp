// The ledger and the financial statements on a year with vouchers of every
// type, on both engines: what must hold for any ledger the system writes.
#include "LedgerFixture.h"
#include "reports/LedgerStatements.h"
#include "support/TestDb.h"

#include <QSet>

using LedgerFixture::money;
using LedgerFixture::sum;

namespace {

Money total(SessionConnection &db, const QString &view, const QString &column, const QString &where = QString())
{
    // The view, column and condition are the test's own fixed texts.
    QString sql = QStringLiteral("SELECT SUM(") + column + QStringLiteral(") FROM ") + view;
    if (!where.isEmpty())
        sql += QStringLiteral(" WHERE ") + where;
    return sum(db, sql);
}

qint64 count(SessionConnection &db, const QString &view)
{
    return db.scalar(QStringLiteral("SELECT COUNT(*) FROM ") + view).toLongLong();
}

const QString kOutsideBalanceSheet = QStringLiteral("(PartyCode < '10-00-000' OR PartyCode > '20-01-999')");

QSet<QString> codes(SessionConnection &db, const QString &sql, const QVariantList &params = {})
{
    QSet<QString> out;
    for (const Row &r : db.select(sql, params))
        out.insert(r.text(0).trimmed());
    return out;
}

void addPeriodsAndBackends()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QDate>("from");
    QTest::addColumn<QDate>("to");
    for (const char *b : {"sqlite", "postgres"}) {
        const QString backend = QString::fromLatin1(b);
        QTest::newRow(qPrintable(backend + QStringLiteral(" whole year"))) << backend << QDate(2026, 1, 1) << QDate(2026, 12, 31);
        QTest::newRow(qPrintable(backend + QStringLiteral(" february"))) << backend << QDate(2026, 2, 1) << QDate(2026, 2, 28);
        QTest::newRow(qPrintable(backend + QStringLiteral(" one day"))) << backend << QDate(2026, 3, 3) << QDate(2026, 3, 3);
        QTest::newRow(qPrintable(backend + QStringLiteral(" from the start"))) << backend << QDate(1900, 1, 1) << QDate(2026, 1, 25);
    }
}

} // namespace

class tst_LedgerStatements : public QObject
{
    Q_OBJECT

private slots:
    void trialBalanceAgrees_data() { addPeriodsAndBackends(); }
    void trialBalanceAgrees()
    {
        QFETCH(QDate, from);
        QFETCH(QDate, to);
        TESSEL_YEAR(year);
        auto db = year.connect();
        LedgerFixture::seedYear(*db);
        db->setReportPeriod(from, to);

        const Money dr = total(*db, "TrialBalanceUptoDate", "PartyDR");
        QVERIFY(dr.isPositive());
        QCOMPARE(total(*db, "TrialBalanceUptoDate", "PartyCR"), dr);
        QCOMPARE(total(*db, "TrialBalanceUptoDate", "PartyBalance"), Money());
        QCOMPARE(total(*db, "TrialBalance", "PartyCR"), total(*db, "TrialBalance", "PartyDR"));
        // Every account's figure is the sum of its postings, to the cent.
        for (const Row &r : db->select(QStringLiteral("SELECT PartyCode, PartyBalance FROM TrialBalanceUptoDate"))) {
            const Money posted = sum(*db, QStringLiteral("SELECT SUM(PartyBalance) FROM tblPartyBalance WHERE PartyCode = ? AND VDate <= ?"),
                                     {r.text(0), to});
            QCOMPARE(r.money(1).value_or(Money()), posted);
        }
    }

    // Fixed figures of the seeded year up to 31/03/2026, exact in cents;
    // the income code written with and without its trailing blank is one
    // account.
    void knownBalances_data() { TestDb::addBackends(); }
    void knownBalances()
    {
        TESSEL_YEAR(year);
        auto db = year.connect();
        LedgerFixture::seedYear(*db);
        db->setReportPeriod(QDate(2026, 1, 1), QDate(2026, 3, 31));
        auto balance = [&](const QString &code) {
            return sum(*db, QStringLiteral("SELECT PartyBalance FROM TrialBalanceUptoDate WHERE PartyCode = ?"), {code});
        };
        QCOMPARE(balance("19-10-001"), money("9099.65"));
        QCOMPARE(balance("17-10-002"), money("1290.05"));
        QCOMPARE(balance("18-10-001"), Money());
        QCOMPARE(balance("20-10-001"), money("-200"));
        QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM TrialBalanceUptoDate WHERE PartyCode = '20-10-001'")).toLongLong(),
                 qint64(1));
        const auto row = db->selectOne(QStringLiteral("SELECT PartyName, GroupName, PartyPhone, DrCr FROM TrialBalanceUptoDate "
                                                      "WHERE PartyCode = ?"),
                                       {QStringLiteral("17-10-002")});
        QVERIFY(row);
        QCOMPARE(row->text(0).trimmed(), QStringLiteral("BETA FOODS"));
        QCOMPARE(row->text(1).trimmed(), QStringLiteral("LOCAL CUSTOMERS"));
        QCOMPARE(row->text(2), QStringLiteral("042-17"));
        QCOMPARE(row->text(3), QStringLiteral("DR"));
    }

    void balanceSheetBalances_data() { addPeriodsAndBackends(); }
    void balanceSheetBalances()
    {
        QFETCH(QDate, from);
        QFETCH(QDate, to);
        TESSEL_YEAR(year);
        auto db = year.connect();
        LedgerFixture::seedYear(*db);
        db->setReportPeriod(from, to);

        for (const QString &view : {QStringLiteral("BalanceSheet"), QStringLiteral("BalanceSheetSingleDate")}) {
            QCOMPARE(total(*db, view, "PartyBalance"), Money());
            QCOMPARE(total(*db, view, "PartyDR"), total(*db, view, "PartyCR"));
            QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM %1 WHERE PartyCode < '10-00-000' OR PartyCode > '20-01-999'")
                                    .arg(view)).toLongLong(),
                     qint64(0));
            // The result line is what the accounts outside the sheet hold.
            const Money result = sum(*db, QStringLiteral("SELECT PartyBalance FROM ") + view + QStringLiteral(" WHERE LineKind = 1"));
            QCOMPARE(result, sum(*db, QStringLiteral("SELECT SUM(PartyBalance) FROM tblPartyBalance WHERE VDate <= ? AND ")
                                         + kOutsideBalanceSheet,
                                 {to}));
        }
        // The balance sheet's lines for the period add up: brought forward,
        // plus debits, less credits, is the balance.
        for (const Row &r : db->select(QStringLiteral("SELECT OpeningBalance, DebitTotal, CreditTotal, PartyBalance FROM BalanceSheet")))
            QCOMPARE(r.moneyOrZero("OpeningBalance") + r.moneyOrZero("DebitTotal") - r.moneyOrZero("CreditTotal"),
                     r.moneyOrZero("PartyBalance"));
    }

    void profitAndLoss_data() { addPeriodsAndBackends(); }
    void profitAndLoss()
    {
        QFETCH(QDate, from);
        QFETCH(QDate, to);
        TESSEL_YEAR(year);
        auto db = year.connect();
        LedgerFixture::seedYear(*db);
        db->setReportPeriod(from, to);

        const Money moved = sum(*db, QStringLiteral("SELECT SUM(PartyBalance) FROM tblPartyBalance WHERE VDate >= ? AND VDate <= ? AND ")
                                         + kOutsideBalanceSheet,
                                {from, to});
        QCOMPARE(total(*db, "ProfitAndLoss", "PartyBalance", "LineKind = 0"), moved);
        // The change of the profit and loss side between the day before the
        // period and its end, read from the trial balance up to date.
        db->setReportPeriod(from, from.addDays(-1));
        const Money before = total(*db, "TrialBalanceUptoDate", "PartyBalance", kOutsideBalanceSheet);
        db->setReportPeriod(from, to);
        QCOMPARE(total(*db, "TrialBalanceUptoDate", "PartyBalance", kOutsideBalanceSheet) - before, moved);

        if (count(*db, "ProfitAndLoss") == 0) {
            QVERIFY(moved.isZero());
            return;
        }
        const auto result = db->selectOne(QStringLiteral("SELECT PartyName, Side, PartyBalance, Amount FROM ProfitAndLoss WHERE LineKind = 1"));
        QVERIFY(result);
        QCOMPARE(result->moneyOrZero("PartyBalance"), -moved);
        QCOMPARE(result->text("PartyName"), moved.isPositive() ? QStringLiteral("NET LOSS") : QStringLiteral("NET PROFIT"));
        QCOMPARE(total(*db, "ProfitAndLoss", "Amount", "Side = 'INCOME'"), total(*db, "ProfitAndLoss", "Amount", "Side = 'EXPENSE'"));
        QCOMPARE(count(*db, "ProfitAndLoss WHERE LineKind = 0 AND Side = 'INCOME' AND PartyBalance >= 0"), qint64(0));
        QCOMPARE(count(*db, "ProfitAndLoss WHERE LineKind = 0 AND Side = 'EXPENSE' AND PartyBalance < 0"), qint64(0));
        QCOMPARE(count(*db, "ProfitAndLoss WHERE LineKind = 0 AND PartyCode >= '10-00-000' AND PartyCode <= '20-01-999'"), qint64(0));
    }

    // The parties of the period's postings fall in exactly one list by the
    // sign of their movement; one at 0 falls in neither.
    void creditAndDebitLists_data() { addPeriodsAndBackends(); }
    void creditAndDebitLists()
    {
        QFETCH(QDate, from);
        QFETCH(QDate, to);
        TESSEL_YEAR(year);
        auto db = year.connect();
        LedgerFixture::seedYear(*db);
        db->setReportPeriod(from, to);

        const QSet<QString> credit = codes(*db, QStringLiteral("SELECT PartyCode FROM CreditList"));
        const QSet<QString> debit = codes(*db, QStringLiteral("SELECT PartyCode FROM DebitList"));
        QVERIFY(!credit.intersects(debit));
        const QSet<QString> nonZero = codes(*db,
            QStringLiteral("SELECT PartyCode FROM tblPartyBalance WHERE VDate >= ? AND VDate <= ? AND PartyCode >= '14-10-000' "
                           "AND PartyCode <= '18-99-999' GROUP BY PartyCode HAVING SUM(PartyBalance) <> 0"),
            {from, to});
        QCOMPARE(credit + debit, nonZero);
        QCOMPARE(count(*db, "CreditList WHERE PartyBalance >= 0"), qint64(0));
        QCOMPARE(count(*db, "DebitList WHERE PartyBalance <= 0"), qint64(0));
        QVERIFY(!credit.contains(QStringLiteral("18-10-001")) && !debit.contains(QStringLiteral("18-10-001")));
    }

    // Opening line, then the period's lines: their sum is the balance at
    // the period's end, to the cent, for every account.
    void ledgerAddsUp_data() { addPeriodsAndBackends(); }
    void ledgerAddsUp()
    {
        QFETCH(QDate, from);
        QFETCH(QDate, to);
        TESSEL_YEAR(year);
        auto db = year.connect();
        LedgerFixture::seedYear(*db);
        db->setReportPeriod(from, to);

        const QSet<QString> accounts = codes(*db, QStringLiteral("SELECT DISTINCT PartyCode FROM tblPartyBalance WHERE VDate <= ?"), {to});
        QCOMPARE(codes(*db, QStringLiteral("SELECT PartyCode FROM Ledger WHERE LineKind = 0")), accounts);
        for (const QString &code : accounts) {
            const QueryResult lines = db->select(QStringLiteral("SELECT LineKind, PartyBalance, PartyDR, PartyCR, PartyDesc, ClosingBalance FROM Ledger "
                                                                "WHERE PartyCode = ? ORDER BY LineKind, VDate, SrNo"),
                                                 {code});
            QVERIFY(!lines.isEmpty());
            QCOMPARE(lines.first().integer("LineKind"), qint64(0));
            QCOMPARE(lines.first().text("PartyDesc"), QStringLiteral("OPENING BALANCE"));
            QCOMPARE(lines.first().moneyOrZero("PartyBalance"),
                     sum(*db, QStringLiteral("SELECT SUM(PartyBalance) FROM tblPartyBalance WHERE PartyCode = ? AND VDate < ?"), {code, from}));
            Money running;
            for (const Row &l : lines) {
                QCOMPARE(l.moneyOrZero("PartyDR") - l.moneyOrZero("PartyCR"), l.moneyOrZero("PartyBalance"));
                running += l.moneyOrZero("PartyBalance");
            }
            QCOMPARE(running, sum(*db, QStringLiteral("SELECT SUM(PartyBalance) FROM tblPartyBalance WHERE PartyCode = ? AND VDate <= ?"),
                                  {code, to}));
            QCOMPARE(lines.at(lines.size() - 1).integer("LineKind"), qint64(2));
            QCOMPARE(lines.at(lines.size() - 1).text("PartyDesc"), QStringLiteral("CLOSING BALANCE"));
            QCOMPARE(lines.at(lines.size() - 1).moneyOrZero("ClosingBalance"), running);
            QCOMPARE(lines.size() - 2,
                     int(db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE PartyCode = ? AND VDate >= ? AND VDate <= ?"),
                                    {code, from, to}).toLongLong()));
        }
    }

    // The sales-tax make-up of an invoice beside its ledger line.
    void ledgerWithSaleTax_data() { TestDb::addBackends(); }
    void ledgerWithSaleTax()
    {
        TESSEL_YEAR(year);
        auto db = year.connect();
        LedgerFixture::seedYear(*db);
        for (const auto &line : {QStringList{"10000", "1700.10", "100", "11800.10"}, QStringList{"0", "0", "0", "0"}})
            db->execute(QStringLiteral("INSERT INTO tblInvoice (InvoiceNo, InvoiceDate, PartyCode, PartyName, TitleName, Price, "
                                       "SaleTaxPayable, ValueIncludingTax) VALUES (1, ?, '17-10-001', 'ALPHA TRADERS', 'PRESS', ?, ?, ?)"),
                        {QDate(2026, 1, 10), money(line.at(0)).toVariant(), money(line.at(1)).toVariant(),
                         money(line.at(3)).toVariant()});
        db->setReportPeriod(QDate(2026, 1, 1), QDate(2026, 12, 31));
        const auto sv = db->selectOne(QStringLiteral("SELECT ValueExSaleTax, SaleTax, OtherTax, ValueIncludingTax, PartyDR "
                                                     "FROM LedgerWithSaleTax WHERE PartyCode = ? AND VoucherType = 'SV'"),
                                      {QStringLiteral("17-10-001")});
        QVERIFY(sv);
        QCOMPARE(sv->moneyOrZero("ValueExSaleTax"), money("10000"));
        QCOMPARE(sv->moneyOrZero("SaleTax"), money("1700.10"));
        QCOMPARE(sv->moneyOrZero("OtherTax"), money("100"));
        QCOMPARE(sv->moneyOrZero("ValueIncludingTax"), sv->moneyOrZero("PartyDR"));
        QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM LedgerWithSaleTax WHERE PartyCode = ?"), {QStringLiteral("17-10-001")}).toLongLong(),
                 db->scalar(QStringLiteral("SELECT COUNT(*) FROM Ledger WHERE PartyCode = ?"), {QStringLiteral("17-10-001")}).toLongLong());
    }

    // A period with nothing in it gives empty reports: before the first
    // posting all of them, after the last the statements of movement.
    void emptyPeriods_data() { TestDb::addBackends(); }
    void emptyPeriods()
    {
        TESSEL_YEAR(year);
        auto db = year.connect();
        LedgerFixture::seedYear(*db);
        const QStringList all{"Ledger", "LedgerLink", "LedgerWithSaleTax", "TrialBalanceUptoDate", "TrialBalance", "BalanceSheet",
                              "BalanceSheetSingleDate", "ProfitAndLoss", "CreditList", "DebitList", "AgeingReportPeriod"};
        db->setReportPeriod(QDate(2020, 1, 1), QDate(2020, 12, 31));
        for (const QString &view : all)
            QVERIFY2(count(*db, view) == 0, qPrintable(view));
        db->setReportPeriod(QDate(2030, 1, 1), QDate(2030, 12, 31));
        for (const QString &view : QStringList{"TrialBalance", "ProfitAndLoss", "CreditList", "DebitList"})
            QVERIFY2(count(*db, view) == 0, qPrintable(view));
        QCOMPARE(count(*db, "Ledger WHERE LineKind = 1"), qint64(0));
        QCOMPARE(total(*db, "Ledger", "PartyBalance"), Money());
    }

    // The period ageing: the worked example's invoices of 100, 200 and 300
    // with 250 received, at 100, 45 and 10 days old.
    void ageingBuckets_data() { TestDb::addBackends(); }
    void ageingBuckets()
    {
        TESSEL_YEAR(year);
        auto db = year.connect();
        LedgerFixture::seedYear(*db);
        const QDate end(2026, 6, 30);
        const QString code = QStringLiteral("17-10-009"), name = QStringLiteral("DELTA PRINTS");
        LedgerFixture::account(*db, code, name);
        LedgerFixture::post(*db, "SV", 11, end.addDays(-100), code, name, "100");
        LedgerFixture::post(*db, "SV", 12, end.addDays(-45), code, name, "200");
        LedgerFixture::post(*db, "SV", 13, end.addDays(-10), code, name, "300");
        LedgerFixture::post(*db, "CR", 9, end.addDays(-5), code, name, "-250");
        LedgerFixture::post(*db, "SV", 14, end.addDays(1), code, name, "999");
        db->setReportPeriod(QDate(2026, 1, 1), end);

        QStringList got;
        for (const Row &r : db->select(QStringLiteral("SELECT VoucherNo, Outstanding, Days0To30, Days31To60, Days61To90, DaysOver90 "
                                                      "FROM AgeingReportPeriod WHERE PartyName = ? ORDER BY VoucherNo DESC"),
                                       {name}))
            got << QStringLiteral("%1:%2/%3/%4/%5/%6").arg(r.integer(0)).arg(r.moneyOrZero("Outstanding").toFieldString(),
                                                          r.moneyOrZero("Days0To30").toFieldString(), r.moneyOrZero("Days31To60").toFieldString(),
                                                          r.moneyOrZero("Days61To90").toFieldString(), r.moneyOrZero("DaysOver90").toFieldString());
        QCOMPARE(got, (QStringList{"13:300/300/0/0/0", "12:50/0/50/0/0"}));

        // Every party's buckets add up to its balance; a customer whose
        // balance is more than its invoices keeps the rest on the oldest.
        for (const Row &r : db->select(QStringLiteral("SELECT PartyCode, SUM(Days0To30 + Days31To60 + Days61To90 + DaysOver90), "
                                                      "MAX(PartyBalance) FROM AgeingReportPeriod GROUP BY PartyCode")))
            QCOMPARE(r.money(1).value_or(Money()), r.money(2).value_or(Money()));
        QCOMPARE(sum(*db, QStringLiteral("SELECT Outstanding FROM AgeingReportPeriod WHERE PartyCode = '17-10-002'")), money("1290.05"));
        QCOMPARE(count(*db, "AgeingReportPeriod WHERE PartyCode = '18-10-001'"), qint64(0));
    }

    // The period a report starts with: the day after the closing date.
    void firstOpenDate_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QDate>("closing");
        QTest::addColumn<QDate>("first");
        for (const char *b : {"sqlite", "postgres"}) {
            const QString backend = QString::fromLatin1(b);
            QTest::newRow(qPrintable(backend + QStringLiteral(" year end"))) << backend << QDate(2025, 12, 31) << QDate(2026, 1, 1);
            QTest::newRow(qPrintable(backend + QStringLiteral(" in the year"))) << backend << QDate(2026, 3, 9) << QDate(2026, 3, 10);
        }
    }
    void firstOpenDate()
    {
        QFETCH(QDate, closing);
        QFETCH(QDate, first);
        TESSEL_YEAR(year);
        auto db = year.connect();
        db->execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {closing});
        QCOMPARE(LedgerStatements::firstOpenDate(*db).value_or(QDate()), first);
        db->execute(QStringLiteral("DELETE FROM tblClosingDate"));
        QVERIFY(!LedgerStatements::firstOpenDate(*db));
    }
};

QTEST_GUILESS_MAIN(tst_LedgerStatements)
#include "tst_ledgerstatements.moc"
