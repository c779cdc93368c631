// The kept balances (each account's, and each account's a month) against
// the ledger rows, after every kind of write: vouchers saved, modified and
// deleted, opening balances from new accounts, a demonstration year, an
// upgrade of a year that had none, and a save that fails half-way. The
// balance look-ups read the kept rows and must give what the rows give.
#include "VoucherFixture.h"
#include "accounts/AccountRules.h"
#include "foundation/Schema.h"
#include "support/TestDb.h"
#include "vouchers/DemoGenerator.h"
#include "vouchers/LedgerCheck.h"

#include <QtTest>

namespace {

using namespace VoucherFixture;

// The kept rows equal the ledger's, and every look-up of a balance gives
// what summing the rows gives, for the whole year and before a few dates
// (a month's first day, inside a month, before and after every row).
void verifyKept(SessionConnection &db, const char *when)
{
    QStringList differences;
    QVERIFY2(LedgerCheck::keptBalancesAgree(db, &differences),
             qPrintable(QString::fromLatin1(when) + QStringLiteral(": ") + differences.join(QStringLiteral("; "))));
    const QList<QDate> dates = {QDate(2000, 1, 1), QDate(2026, 3, 1), kDay, QDate(2026, 3, 10), QDate(2026, 4, 17),
                                QDate(2030, 1, 1)};
    for (const Row &r : db.select(QStringLiteral("SELECT DISTINCT RTRIM(PartyCode) FROM tblPartyBalance"))) {
        const QString code = r.text(0);
        const auto rows = db.scalarMoney(QStringLiteral("SELECT SUM(PartyBalance) FROM tblPartyBalance WHERE PartyCode = ?"),
                                         {code});
        QCOMPARE(Ledger::accountBalance(db, code), rows);
        for (const QDate &d : dates) {
            const auto before = db.scalarMoney(QStringLiteral("SELECT SUM(PartyBalance) FROM tblPartyBalance "
                                                              "WHERE PartyCode = ? AND VDate < ?"),
                                               {code, d});
            QVERIFY2(Ledger::accountBalanceBefore(db, code, d) == before,
                     qPrintable(code + QLatin1Char(' ') + d.toString(Qt::ISODate)));
        }
    }
}

} // namespace

class tst_KeptBalances : public QObject
{
    Q_OBJECT

private slots:
    void vouchersSavedModifiedDeleted_data() { TestDb::addBackends(); }
    void vouchersSavedModifiedDeleted()
    {
        TESSEL_YEAR(year);
        auto db = year.connect();
        addAccounts(*db);
        QCOMPARE(Ledger::accountBalance(*db, Ledger::kCashCode), std::optional<Money>());
        verifyKept(*db, "empty year");

        // Opening balances from new accounts, on either side.
        db->execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {QDate(2025, 12, 31)});
        Accounts::NewAccount a;
        a.code = QStringLiteral("17-10-002");
        a.name = QStringLiteral("STAR PACKAGES");
        a.date = QDate(2026, 1, 1);
        a.balance = m("1500.25");
        QVERIFY(Accounts::createAccount(*db, a, kUser, kToday).ok);
        a.code = QStringLiteral("14-10-002");
        a.name = QStringLiteral("INK AND CO");
        a.side = QStringLiteral("CR");
        a.balance = m("900.10");
        QVERIFY(Accounts::createAccount(*db, a, kUser, kToday).ok);
        verifyKept(*db, "opening balances");

        // A cash receipt (with its cash row) and a journal voucher.
        const VoucherKey cr{QStringLiteral("CR"), 1, kDay};
        QVERIFY(stageAndSave(*db, cr, {line("17-10-001", "CRESCENT TEXTILES", m("10.05"), "CR"),
                                       line("14-10-001", "PAPER HOUSE", m("20"), "CR")})
                    .ok);
        const VoucherKey jv{QStringLiteral("JV"), 1, QDate(2026, 4, 17)};
        QVERIFY(stageAndSave(*db, jv, {line("21-10-001", "ELECTRICITY", m("75.50"), "DR"),
                                       line("19-20-001", "CITY BANK", m("75.50"), "CR")})
                    .ok);
        verifyKept(*db, "saved");
        QCOMPARE(Ledger::accountBalance(*db, Ledger::kCashCode), std::optional<Money>(m("30.05")));

        // Modified: a line changed to another account and amount, one
        // removed, one added, and the voucher moved to another month.
        VoucherStaging st(*db);
        st.loadVoucher(cr);
        auto lines = st.lines();
        qint64 sr = lines.last().srNo;
        const VoucherKey moved{QStringLiteral("CR"), 1, QDate(2026, 2, 27)};
        QVERIFY(st.changeLine(lines[0].srNo, moved, line("17-10-002", "STAR PACKAGES", m("11"), "CR")));
        QVERIFY(st.removeLine(lines[1].srNo));
        st.addLine(moved, line("21-10-001", "ELECTRICITY", m("3.33"), "CR"), sr);
        QVERIFY(VoucherPosting(*db, kUser, kToday).saveModified(cr, moved).ok);
        verifyKept(*db, "modified");
        QCOMPARE(Ledger::accountBalance(*db, QStringLiteral("14-10-001")), std::optional<Money>());

        // Deleted, with the sweep of rows that hold nothing.
        st.loadVoucher(moved);
        QVERIFY(VoucherPosting(*db, kUser, kToday).deleteVoucher(moved).ok);
        verifyKept(*db, "deleted");
        st.loadVoucher(jv);
        QVERIFY(VoucherPosting(*db, kUser, kToday).deleteVoucher(jv).ok);
        verifyKept(*db, "all deleted");
    }

    // A save that fails at the kept balances leaves rows and kept balances
    // as they were.
    void failedSaveLeavesBoth_data() { TestDb::addBackends(); }
    void failedSaveLeavesBoth()
    {
        TESSEL_YEAR(year);
        auto db = year.connect();
        addAccounts(*db);
        QVERIFY(stageAndSave(*db, {QStringLiteral("CR"), 1, kDay},
                             {line("17-10-001", "CRESCENT TEXTILES", m("10"), "CR")})
                    .ok);
        const auto cashBefore = Ledger::accountBalance(*db, Ledger::kCashCode);
        db->setStatementHook([](const QString &sql) {
            if (sql.startsWith(QLatin1String("INSERT INTO tblAccountMonthBalance")))
                throw DbError(QStringLiteral("disk full"), sql);
        });
        bool failed = false;
        try {
            stageAndSave(*db, {QStringLiteral("CR"), 2, kDay}, {line("17-10-001", "CRESCENT TEXTILES", m("7"), "CR")});
        } catch (const DbError &) {
            failed = true;
        }
        db->setStatementHook({});
        QVERIFY(failed);
        QCOMPARE(Ledger::accountBalance(*db, Ledger::kCashCode), cashBefore);
        verifyKept(*db, "after a failed save");
    }

    void demoYear_data() { TestDb::addBackends(); }
    void demoYear()
    {
        TESSEL_YEAR(year);
        auto db = year.connect();
        DemoOptions o;
        o.rows = 1500;
        o.from = QDate(2026, 1, 1);
        o.to = QDate(2026, 12, 31);
        QVERIFY(DemoGenerator::standardYear(*db, o).ledgerRows >= 1000);
        verifyKept(*db, "demo");
        QVERIFY(Schema::hasStatistics(*db));
    }

    // A year from before the kept balances gets them from its rows when it
    // is brought up to date; until then the check names what disagrees.
    void upgradeBuildsThem_data() { TestDb::addBackends(); }
    void upgradeBuildsThem()
    {
        TESSEL_YEAR(year);
        auto db = year.connect();
        db->execute(QStringLiteral("INSERT INTO tblPartyBalance (VoucherType, VoucherNo, VDate, PartyCode, PartyName, "
                                   "PartyDR, PartyCR, PartyBalance) VALUES ('JV', 4, ?, '17-10-001 ', 'A', 12.5, 0, 12.5), "
                                   "('JV', 4, ?, '21-10-001', 'B', 0, 12.5, -12.5), ('JV', 5, NULL, '21-10-001', 'B', 1, 0, 1)"),
                    {kDay, QDate(2026, 5, 1)});
        QStringList differences;
        QVERIFY(!LedgerCheck::keptBalancesAgree(*db, &differences));
        QVERIFY2(differences.join(QLatin1Char(' ')).contains(QLatin1String("17-10-001 2026-03: kept 0.00 DR")),
                 qPrintable(differences.join(QStringLiteral("; "))));
        db->execute(QStringLiteral("UPDATE tblConfig SET UpdateStatus = '20200101'"));
        Schema::ensure(*db);
        verifyKept(*db, "upgraded");
        QCOMPARE(Ledger::accountBalance(*db, QStringLiteral("21-10-001")), std::optional<Money>(m("-11.50")));
    }
};

QTEST_GUILESS_MAIN(tst_KeptBalances)
#include "tst_keptbalances.moc"
