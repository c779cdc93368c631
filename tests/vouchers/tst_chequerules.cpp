// Post-dated cheques: the checks of their save, numbers unique as they
// must be, and a status that follows the vouchers clearing and bouncing
// them (saved, abandoned, changed and deleted).
#include "VoucherFixture.h"
#include "support/TestDb.h"
#include "vouchers/LedgerCheck.h"
#include "vouchers/PostDatedCheque.h"

#include <QtTest>
#include <functional>

namespace {

using namespace VoucherFixture;

void prepare(SessionConnection &db)
{
    addAccounts(db);
    db.execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES ('19-20-002', 'UNION BANK')"));
    db.execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {QDate(2026, 2, 28)});
}

PostDatedChequeEntry cheque(const QString &chequeNo = QStringLiteral("100234"))
{
    PostDatedChequeEntry c;
    c.voucherNo = 1;
    c.partyCode = QStringLiteral("17-10-001");
    c.partyName = QStringLiteral("CRESCENT TEXTILES");
    c.vDate = kDay;
    c.chequeDate = kDay.addDays(20);
    c.chequeNo = chequeNo;
    c.description = QStringLiteral("CHQ AGAINST BILL 17");
    c.amount = m("125000.50");
    c.bankCode = QStringLiteral("19-20-001");
    c.bankName = QStringLiteral("CITY BANK");
    return c;
}

struct Status
{
    QString status;
    QString clearedType;
    qint64 clearedNo;
    qint64 bouncedNo;
};

Status statusOf(SessionConnection &db, qint64 no)
{
    auto r = db.selectOne(QStringLiteral("SELECT Status, ClearedType, ClearedNo, BouncedNo FROM tblPostDatedCheque "
                                         "WHERE VoucherNo = ?"),
                          {no});
    return {r->text(0).trimmed(), r->text(1).trimmed(), r->integer(2), r->integer(3)};
}

int ledgerRows(SessionConnection &db, const QString &type)
{
    return TestDb::count(db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE VoucherType = ?"), {type});
}

// Saves a voucher the way the voucher screen does from its staged lines.
Outcome saveThroughStaging(SessionConnection &db, const Voucher &v)
{
    VoucherStaging st(db);
    st.clear();
    for (const VoucherLine &l : v.lines) {
        VoucherLine staged = l;
        staged.srNo = st.lines(false).size() + 1;
        st.put(v.key, staged);
    }
    return VoucherPosting(db, kUser, kToday).saveNew(v.key, NumberPolicy::Proposed);
}

Outcome deleteVoucher(SessionConnection &db, const VoucherKey &key)
{
    VoucherStaging st(db);
    st.clear();
    st.loadVoucher(key);
    return VoucherPosting(db, kUser, kToday).deleteVoucher(key);
}

} // namespace

class TestChequeRules : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void refusals_data();
    void refusals();
    void numbers_data() { TestDb::addBackends(); }
    void numbers();
    void statusFollowsVouchers_data() { TestDb::addBackends(); }
    void statusFollowsVouchers();
    void issuedChequeSides_data() { TestDb::addBackends(); }
    void issuedChequeSides();
    void dueText_data();
    void dueText();
    void dueListAndBankTotals();
};

void TestChequeRules::refusals_data()
{
    QTest::addColumn<std::function<void(PostDatedChequeEntry &)>>("spoil");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("field");
    const QString party = QStringLiteral("Party name not found, please enter correct party name");
    const QString closed = QStringLiteral("Sorry, you enter wrong date because data has closed at this date");
    using E = PostDatedChequeEntry;
    QTest::newRow("unknown party") << std::function<void(E &)>([](E &c) { c.partyName = "NOBODY"; }) << party
                                   << "cmbPartyName";
    QTest::newRow("code not of the name") << std::function<void(E &)>([](E &c) { c.partyCode = "14-10-001"; })
                                          << party << "cmbPartyName";
    QTest::newRow("received in closed period")
        << std::function<void(E &)>([](E &c) { c.vDate = QDate(2026, 2, 28); }) << closed << "mskDate";
    QTest::newRow("no receiving date") << std::function<void(E &)>([](E &c) { c.vDate = QDate(); })
                                       << QStringLiteral("Date is missing, please enter proper date") << "mskDate";
    QTest::newRow("cheque date in closed period")
        << std::function<void(E &)>([](E &c) { c.chequeDate = QDate(2026, 1, 5); }) << closed << "mskChequeDate";
    QTest::newRow("unknown bank") << std::function<void(E &)>([](E &c) { c.bankName = "NO BANK"; }) << party
                                  << "cmbBankName";
    QTest::newRow("heading as bank") << std::function<void(E &)>([](E &c) {
        c.bankCode = "19-10-000";
        c.bankName = "CASH AND BANK";
    }) << QStringLiteral("A group heading can not take any entry, please select an account")
                                     << "cmbBankName";
    QTest::newRow("negative amount") << std::function<void(E &)>([](E &c) { c.amount = -m("1"); })
                                     << QStringLiteral("Amount can not be negative, please enter correct amount")
                                     << "txtAmount";
    QTest::newRow("bad kind") << std::function<void(E &)>([](E &c) { c.kind = "LOST"; })
                              << ChequeMessages::kBadKind << "cmbChequeKind";
    QTest::newRow("cheque date before receiving is allowed")
        << std::function<void(E &)>([](E &c) { c.chequeDate = c.vDate.addDays(-3); }) << QString() << QString();
}

void TestChequeRules::refusals()
{
    QFETCH(std::function<void(PostDatedChequeEntry &)>, spoil);
    QFETCH(QString, message);
    QFETCH(QString, field);
    TestDb::Year year(QStringLiteral("sqlite"));
    auto db = year.connect();
    prepare(*db);
    PostDatedChequeEntry c = cheque();
    spoil(c);
    const Outcome out = PostDatedCheques(*db, kUser, kToday).save(c);
    QCOMPARE(out.message, message.isEmpty() ? ChequeMessages::kSaved : message);
    QCOMPARE(out.ok, message.isEmpty());
    QCOMPARE(out.field, field);
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPostDatedCheque")), message.isEmpty() ? 1 : 0);
}

void TestChequeRules::numbers()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    prepare(*db);
    PostDatedCheques rules(*db, kUser, kToday);
    QCOMPARE(rules.nextNumber(), 1);
    Outcome first = rules.save(cheque());
    QVERIFY2(first.ok, qPrintable(first.message));
    QCOMPARE(first.number, 1);
    QCOMPARE(statusOf(*db, 1).status, ChequeStatus::kPostDated);

    // The same cheque number at the same bank is refused, at another bank taken.
    const Outcome twice = rules.save(cheque());
    QCOMPARE(twice.message, ChequeMessages::kDuplicateCheque);
    QCOMPARE(twice.field, QStringLiteral("txtChequeNo"));
    PostDatedChequeEntry other = cheque();
    other.bankCode = QStringLiteral("19-20-002");
    other.bankName = QStringLiteral("UNION BANK");
    const Outcome moved = rules.save(other); // proposed number 1 was taken: moves on
    QVERIFY2(moved.ok, qPrintable(moved.message));
    QCOMPARE(moved.number, 2);
    QVERIFY(!moved.notice.isEmpty());

    // A change keeps its own cheque number, but may not take another's.
    PostDatedChequeEntry change = other;
    change.voucherNo = 2;
    change.amount = m("99.99");
    QVERIFY(rules.modify(change).ok);
    QCOMPARE(rules.find(2)->amount, m("99.99"));
    change.bankCode = QStringLiteral("19-20-001");
    change.bankName = QStringLiteral("CITY BANK");
    QCOMPARE(rules.modify(change).message, ChequeMessages::kDuplicateCheque);
    change.voucherNo = 9;
    QCOMPARE(rules.modify(change).message, ChequeMessages::kNotFound);

    // Deleting a number that is not there says so and deletes nothing.
    const Outcome none = rules.remove(9);
    QVERIFY(!none.ok);
    QCOMPARE(none.message, ChequeMessages::kNothingDeleted);
    QVERIFY(rules.remove(2).ok);
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPostDatedCheque")), 1);
    QCOMPARE(rules.nextNumber(), 2);
}

void TestChequeRules::statusFollowsVouchers()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    prepare(*db);
    PostDatedCheques rules(*db, kUser, kToday);
    QVERIFY(rules.save(cheque()).ok);
    QCOMPARE(rules.bounce(1, kToday).message, ChequeMessages::kNotPosted);

    // The clearing voucher, abandoned: nothing changes.
    Voucher v;
    QVERIFY(rules.clearingVoucher(1, kToday, &v).ok);
    QCOMPARE(v.key.type, QStringLiteral("BR"));
    QCOMPARE(v.lines.size(), 2);
    QCOMPARE(v.lines.at(0).partyCode, QStringLiteral("19-20-001"));
    QCOMPARE(v.lines.at(0).debit, m("125000.50"));
    QCOMPARE(v.lines.at(1).credit, m("125000.50"));
    QCOMPARE(statusOf(*db, 1).status, ChequeStatus::kPostDated);

    // Saved: POSTED, remembering its voucher.
    const Outcome saved = saveThroughStaging(*db, v);
    QVERIFY2(saved.ok, qPrintable(saved.message));
    Status s = statusOf(*db, 1);
    QCOMPARE(s.status, ChequeStatus::kPosted);
    QCOMPARE(s.clearedType, QStringLiteral("BR"));
    QCOMPARE(s.clearedNo, saved.number);
    QCOMPARE(rules.clearingVoucher(1, kToday, &v).message, ChequeMessages::kNotOpen);

    // The clearing voucher moves to another number: the cheque follows it.
    const VoucherKey cleared{QStringLiteral("BR"), saved.number, kToday};
    const VoucherKey renumbered{QStringLiteral("BR"), 40, kToday};
    VoucherStaging(*db).loadVoucher(cleared);
    QVERIFY(VoucherPosting(*db, kUser, kToday).saveModified(cleared, renumbered).ok);
    QCOMPARE(statusOf(*db, 1).clearedNo, 40);

    // Bounced: a balanced BC voucher, party DR, bank CR.
    const Outcome bounced = rules.bounce(1, kToday);
    QVERIFY2(bounced.ok, qPrintable(bounced.message));
    QCOMPARE(bounced.message, ChequeMessages::kBounced);
    QCOMPARE(statusOf(*db, 1).status, ChequeStatus::kBounced);
    QCOMPARE(ledgerRows(*db, QStringLiteral("BC")), 2);
    QCOMPARE(*db->scalarMoney(QStringLiteral("SELECT SUM(PartyBalance) FROM tblPartyBalance WHERE VoucherType = 'BC' "
                                             "AND PartyCode = '17-10-001'")),
             m("125000.50"));

    // Deleting the BC voucher makes it POSTED again; deleting the deposit
    // makes it POST DATED, and the books stand as before.
    QVERIFY(deleteVoucher(*db, {QStringLiteral("BC"), bounced.number, kToday}).ok);
    s = statusOf(*db, 1);
    QCOMPARE(s.status, ChequeStatus::kPosted);
    QCOMPARE(s.bouncedNo, 0);
    QVERIFY(deleteVoucher(*db, renumbered).ok);
    s = statusOf(*db, 1);
    QCOMPARE(s.status, ChequeStatus::kPostDated);
    QCOMPARE(s.clearedType, QString());
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")), 0);
    QStringList differences;
    QVERIFY2(LedgerCheck::keptBalancesAgree(*db, &differences), qPrintable(differences.join(QLatin1Char('\n'))));
}

void TestChequeRules::issuedChequeSides()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    prepare(*db);
    PostDatedCheques rules(*db, kUser, kToday);
    PostDatedChequeEntry c = cheque();
    c.kind = ChequeStatus::kIssued;
    c.partyCode = QStringLiteral("14-10-001");
    c.partyName = QStringLiteral("PAPER HOUSE");
    QVERIFY(rules.save(c).ok);
    Voucher v;
    QVERIFY(rules.clearingVoucher(1, kToday, &v).ok);
    QCOMPARE(v.key.type, QStringLiteral("BP"));
    QCOMPARE(v.lines.at(0).partyCode, QStringLiteral("14-10-001"));
    QCOMPARE(v.lines.at(0).debit, c.amount);
    QCOMPARE(v.lines.at(1).credit, c.amount);
    QVERIFY(saveThroughStaging(*db, v).ok);
    QVERIFY(rules.bounce(1, kToday).ok);
    // The bounce gives the supplier back his credit and the bank its money.
    QCOMPARE(*db->scalarMoney(QStringLiteral("SELECT SUM(PartyBalance) FROM tblPartyBalance WHERE PartyCode = ?"),
                              {QStringLiteral("14-10-001")}),
             Money());
    QCOMPARE(*db->scalarMoney(QStringLiteral("SELECT SUM(PartyBalance) FROM tblPartyBalance WHERE PartyCode = ?"),
                              {QStringLiteral("19-20-001")}),
             Money());
}

void TestChequeRules::dueText_data()
{
    QTest::addColumn<QString>("status");
    QTest::addColumn<qint64>("days");
    QTest::addColumn<QString>("text");
    QTest::newRow("ahead") << ChequeStatus::kPostDated << qint64(12) << "12 DAYS LEFT";
    QTest::newRow("tomorrow") << ChequeStatus::kPostDated << qint64(1) << "1 DAY LEFT";
    QTest::newRow("today") << ChequeStatus::kPostDated << qint64(0) << "DUE TODAY";
    QTest::newRow("yesterday") << ChequeStatus::kPostDated << qint64(-1) << "1 DAY OVERDUE";
    QTest::newRow("long overdue") << ChequeStatus::kPostDated << qint64(-45) << "45 DAYS OVERDUE";
    QTest::newRow("posted") << ChequeStatus::kPosted << qint64(-45) << "POSTED";
}

void TestChequeRules::dueText()
{
    QFETCH(QString, status);
    QFETCH(qint64, days);
    QFETCH(QString, text);
    ChequeDueLine l;
    l.cheque.status = status;
    l.daysLeft = days;
    QCOMPARE(l.dueText(), text);
}

void TestChequeRules::dueListAndBankTotals()
{
    TestDb::Year year(QStringLiteral("sqlite"));
    auto db = year.connect();
    prepare(*db);
    PostDatedCheques rules(*db, kUser, kToday);
    const struct
    {
        const char *no, *bank, *bankName, *amount;
        int daysAhead;
    } rows[] = {{"1", "19-20-002", "UNION BANK", "10.10", 30},
                {"2", "19-20-001", "CITY BANK", "1000.00", -5},
                {"3", "19-20-001", "CITY BANK", "0.95", 2},
                {"4", "19-20-002", "UNION BANK", "7.00", 1}};
    for (const auto &r : rows) {
        PostDatedChequeEntry c = cheque(QString::fromLatin1(r.no));
        c.voucherNo = rules.nextNumber();
        c.bankCode = QString::fromLatin1(r.bank);
        c.bankName = QString::fromLatin1(r.bankName);
        c.amount = m(r.amount);
        c.chequeDate = kToday.addDays(r.daysAhead);
        QVERIFY(rules.save(c).ok);
    }
    PostDatedChequeEntry posted = *rules.find(4);
    posted.status = ChequeStatus::kPosted;
    QVERIFY(rules.modify(posted).ok);

    const QVector<ChequeDueLine> lines = ChequeDueList::lines(*db, kToday);
    QStringList order;
    for (const ChequeDueLine &l : lines)
        order << l.cheque.chequeNo + QLatin1Char(':') + l.dueText();
    QCOMPARE(order, QStringList({"2:5 DAYS OVERDUE", "4:POSTED", "3:2 DAYS LEFT", "1:30 DAYS LEFT"}));
    QCOMPARE(ChequeDueList::lines(*db, kToday, false).size(), 3);

    const QVector<BankTotal> totals = ChequeDueList::bankTotals(lines);
    QCOMPARE(totals.size(), 2);
    QCOMPARE(totals.at(0).bankName, QStringLiteral("CITY BANK"));
    QCOMPARE(totals.at(0).total, m("1000.95"));
    QCOMPARE(totals.at(0).count, 2);
    QCOMPARE(totals.at(1).total, m("10.10")); // the posted cheque is not due
}

QTEST_GUILESS_MAIN(TestChequeRules)
#include "tst_chequerules.moc"
