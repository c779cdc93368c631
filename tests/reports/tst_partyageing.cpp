// The ageing of one party: the run itself on postings in memory, and the
// whole run against a year on both engines.
#include "LedgerFixture.h"
#include "support/TestDb.h"
#include "vouchers/PartyAgeing.h"

using LedgerFixture::money;
using LedgerFixture::post;

namespace {

// "SV 11 100" is invoice 11 of 100 debited; "CR 1 -250" a receipt of 250.
// Postings are given in date order, a day apart.
QVector<PartyAgeing::Posting> postings(const QStringList &rows)
{
    QVector<PartyAgeing::Posting> out;
    qint64 srNo = 0;
    for (const QString &s : rows) {
        const QStringList f = s.split(QLatin1Char(' '));
        PartyAgeing::Posting p;
        p.srNo = ++srNo;
        p.vDate = QDate(2026, 1, 1).addDays(static_cast<int>(srNo));
        p.voucherType = f.at(0);
        p.voucherNo = f.at(1).toLongLong();
        const Money m = money(f.at(2));
        p.partyDR = m.isPositive() ? m : Money();
        p.partyCR = m.isNegative() ? -m : Money();
        out << p;
    }
    return out;
}

// "13:300" per line left, newest first.
QStringList outstanding(const QVector<PartyAgeing::Line> &lines)
{
    QStringList out;
    for (const PartyAgeing::Line &l : lines)
        out << QStringLiteral("%1:%2").arg(l.posting.voucherNo).arg(l.outstanding.toFieldString());
    return out;
}

QStringList agingReport(SessionConnection &db)
{
    QStringList out;
    for (const Row &r : db.select(QStringLiteral("SELECT VoucherNo, TotalDr FROM AgingReport ORDER BY VoucherNo DESC, SrNo DESC")))
        out << QStringLiteral("%1:%2").arg(r.integer(0)).arg(r.money(1).value_or(Money()).toFieldString());
    return out;
}

const QString kParty = QStringLiteral("17-10-001");
const QString kName = QStringLiteral("ALPHA TRADERS");

void workedExample(SessionConnection &db)
{
    LedgerFixture::account(db, kParty, kName);
    post(db, "SV", 11, QDate(2026, 1, 5), kParty, kName, "100");
    post(db, "SV", 12, QDate(2026, 1, 6), kParty, kName, "200");
    post(db, "SV", 13, QDate(2026, 1, 7), kParty, kName, "300");
    post(db, "CR", 1, QDate(2026, 1, 8), kParty, kName, "-250");
}

} // namespace

class tst_PartyAgeing : public QObject
{
    Q_OBJECT

private slots:
    void compute_data()
    {
        QTest::addColumn<QStringList>("rows");
        QTest::addColumn<QString>("running");
        QTest::addColumn<QStringList>("left");

        QTest::newRow("worked example: 11 paid, 12 in part, 13 whole")
            << QStringList{"SV 11 100", "SV 12 200", "SV 13 300", "CR 1 -250"} << "350" << QStringList{"13:300", "12:50"};
        QTest::newRow("balance exactly the newest invoice")
            << QStringList{"SV 1 100", "SV 2 200", "CR 1 -100"} << "200" << QStringList{"2:200"};
        QTest::newRow("balance above all invoices stays on the oldest")
            << QStringList{"JV 0 1000", "SV 1 100", "SV 2 200"} << "1300" << QStringList{"2:200", "1:1100"};
        QTest::newRow("positive balance without a sale invoice")
            << QStringList{"JV 0 500", "CR 1 -100"} << "400" << QStringList{};
        QTest::newRow("two rows of one invoice number both get the part")
            << QStringList{"SV 5 100", "SV 5 100", "SV 6 100", "CR 1 -150"} << "150"
            << QStringList{"6:100", "5:50", "5:50"};
        QTest::newRow("the number, not the date, says which is newer")
            << QStringList{"SV 20 100", "SV 10 100", "CR 1 -100"} << "100" << QStringList{"20:100"};
        QTest::newRow("whole units at each step, half to even")
            << QStringList{"SV 1 100.50", "SV 2 100.50"} << "200" << QStringList{"2:100.5", "1:100"};
        QTest::newRow("half to even rounds up from an odd unit")
            << QStringList{"SV 1 101.50", "SV 2 0.40"} << "102" << QStringList{"2:0.4", "1:102"};
        // The ledger's balance of 1.50 lets the run start, but the whole-unit
        // balance is 0: no invoice is reached and none is taken as paid.
        QTest::newRow("fractions dropped step by step")
            << QStringList{"SV 1 0.50", "SV 2 0.50", "SV 3 0.50"} << "0" << QStringList{"3:0.5", "2:0.5", "1:0.5"};
    }

    void compute()
    {
        QFETCH(QStringList, rows);
        QFETCH(QString, running);
        QFETCH(QStringList, left);
        const PartyAgeing::Result r = PartyAgeing::compute(postings(rows));
        QCOMPARE(r.runningBalance, money(running));
        QCOMPARE(outstanding(r.lines), left);
    }

    void workedExampleInTheYear_data() { TestDb::addBackends(); }
    void workedExampleInTheYear()
    {
        TESSEL_YEAR(year);
        auto db = year.connect();
        workedExample(*db);
        db->setReportPeriod(QDate(2026, 1, 1), QDate(2026, 12, 31));

        const PartyAgeing::Result r = PartyAgeing::runForParty(*db, kParty);
        QVERIFY(r.ran);
        QCOMPARE(r.periodBalance, money("350"));
        QCOMPARE(r.lastVoucherNo, qint64(12));
        QCOMPARE(r.partAmount, money("50"));
        QCOMPARE(agingReport(*db), (QStringList{"13:300", "12:50"}));

        // The work rows, as the staging view shows them: the running balance
        // after each invoice and its whole debit beside the outstanding part.
        const QueryResult rows = db->select(QStringLiteral("SELECT VoucherNo, PartyDR, PartyBalance, TotalDr, PartyName "
                                                           "FROM PartyBalanceEmpty ORDER BY VoucherNo DESC, SrNo DESC"));
        QCOMPARE(rows.size(), 2);
        QCOMPARE(rows.at(0).money("PartyBalance"), money("600"));
        QCOMPARE(rows.at(1).money("PartyDR"), money("200"));
        QCOMPARE(rows.at(1).money("PartyBalance"), money("300"));
        QCOMPARE(rows.at(1).text("PartyName").trimmed(), kName);
        // The ledger is untouched.
        QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")).toLongLong(), qint64(4));
    }

    // A party in credit, one at exactly 0, and one owing without a sale
    // invoice all give an empty ageing.
    void nothingOwed_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QStringList>("rows");
        for (const char *backend : {"sqlite", "postgres"}) {
            const QString b = QString::fromLatin1(backend);
            QTest::newRow(qPrintable(b + QStringLiteral(" in credit")))
                << b << QStringList{"SV 1 100", "CR 1 -150"};
            QTest::newRow(qPrintable(b + QStringLiteral(" at zero")))
                << b << QStringList{"SV 1 100", "SV 2 50.25", "CR 1 -150.25"};
            QTest::newRow(qPrintable(b + QStringLiteral(" owing without an invoice")))
                << b << QStringList{"JV 0 500"};
            QTest::newRow(qPrintable(b + QStringLiteral(" no postings"))) << b << QStringList{};
        }
    }
    void nothingOwed()
    {
        QFETCH(QStringList, rows);
        TESSEL_YEAR(year);
        auto db = year.connect();
        LedgerFixture::account(*db, kParty, kName);
        int day = 1;
        for (const PartyAgeing::Posting &p : postings(rows))
            post(*db, p.voucherType, p.voucherNo, QDate(2026, 1, day++), kParty, kName,
                 (p.partyDR - p.partyCR).toPlainString());
        db->setReportPeriod(QDate(2026, 1, 1), QDate(2026, 12, 31));
        PartyAgeing::runForParty(*db, kParty);
        QCOMPARE(agingReport(*db), QStringList());
        QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM PartyBalanceEmpty")).toLongLong(), qint64(0));
    }

    // The balance at the period's end decides; the run itself covers the
    // whole year.
    void periodEndDecides_data() { TestDb::addBackends(); }
    void periodEndDecides()
    {
        TESSEL_YEAR(year);
        auto db = year.connect();
        workedExample(*db);
        db->setReportPeriod(QDate(2026, 1, 1), QDate(2026, 1, 4));
        QVERIFY(!PartyAgeing::runForParty(*db, kParty).ran);
        QCOMPARE(agingReport(*db), QStringList());

        db->setReportPeriod(QDate(2026, 1, 1), QDate(2026, 1, 5));
        const PartyAgeing::Result r = PartyAgeing::runForParty(*db, kParty);
        QCOMPARE(r.periodBalance, money("100"));
        QCOMPARE(agingReport(*db), (QStringList{"13:300", "12:50"}));
    }

    // The work rows share the staging table with the lines of a voucher
    // being typed on this workstation; those stay as they are, and a new
    // run replaces only the last run's rows.
    void voucherLinesStay_data() { TestDb::addBackends(); }
    void voucherLinesStay()
    {
        TESSEL_YEAR(year);
        auto db = year.connect();
        workedExample(*db);
        LedgerFixture::account(*db, "17-10-002", "BETA FOODS");
        post(*db, "SV", 14, QDate(2026, 1, 9), "17-10-002", "BETA FOODS", "75.25");
        db->execute(QStringLiteral("INSERT INTO tblPartyBalanceEmpty (SrNo, VoucherType, VoucherNo, VDate, PartyCode, "
                                   "PartyName, PartyDR, PartyCR, PartyBalance, DBCR) VALUES (1, 'CP', 7, ?, '21-10-001', "
                                   "'SALARIES', 10, 0, 10, 'INSERT')"),
                    {QDate(2026, 1, 9)});
        db->setReportPeriod(QDate(2026, 1, 1), QDate(2026, 12, 31));
        PartyAgeing::runForParty(*db, kParty);
        PartyAgeing::runForParty(*db, "17-10-002");
        // The whole-unit balance of 75 is what is outstanding of 75.25.
        QCOMPARE(agingReport(*db), QStringList{"14:75"});
        QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM PartyBalanceEmpty WHERE DBCR = 'INSERT'")).toLongLong(),
                 qint64(1));

        PartyAgeing::clearWorkRows(*db);
        QCOMPARE(agingReport(*db), QStringList());
        QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM PartyBalanceEmpty")).toLongLong(), qint64(1));
    }

    // A failed write leaves the last run's rows as they were.
    void failedRunChangesNothing_data() { TestDb::addBackends(); }
    void failedRunChangesNothing()
    {
        TESSEL_YEAR(year);
        auto db = year.connect();
        workedExample(*db);
        db->setReportPeriod(QDate(2026, 1, 1), QDate(2026, 12, 31));
        PartyAgeing::runForParty(*db, kParty);
        post(*db, "SV", 15, QDate(2026, 1, 10), kParty, kName, "40");

        db->setStatementHook([](const QString &sql) {
            if (sql.startsWith(QLatin1String("INSERT INTO tblPartyBalanceEmpty")))
                throw DbError(QStringLiteral("disk full"), sql);
        });
        QVERIFY_THROWS_EXCEPTION(DbError, PartyAgeing::runForParty(*db, kParty));
        db->setStatementHook({});
        QCOMPARE(db->transactionDepth(), 0);
        QCOMPARE(agingReport(*db), (QStringList{"13:300", "12:50"}));
    }
};

QTEST_GUILESS_MAIN(tst_PartyAgeing)
#include "tst_partyageing.moc"
