// The posting rule of vouchers: cash rows, the balance test, numbering,
// the save of a changed voucher by line state, deletion with its sweep,
// cheque links, and what a failed save leaves behind.
#include "VoucherFixture.h"
#include "support/TestDb.h"

#include <QtTest>

namespace {

using namespace VoucherFixture;

struct Posted
{
    qint64 srNo;
    QString type;
    qint64 no;
    QDate date;
    QString code;
    Money dr, cr, bal;
    QString user;
    QDate entry;
};

QVector<Posted> ledger(SessionConnection &db)
{
    QVector<Posted> out;
    for (const Row &r : db.select(QStringLiteral("SELECT SrNo, VoucherType, VoucherNo, VDate, PartyCode, PartyDR, "
                                                 "PartyCR, PartyBalance, UserName, EntryDate FROM tblPartyBalance "
                                                 "ORDER BY SrNo")))
        out << Posted{r.integer(0), r.text(1).trimmed(), r.integer(2), r.date(3), r.text(4).trimmed(),
                      r.moneyOrZero("PartyDR"), r.moneyOrZero("PartyCR"), r.moneyOrZero("PartyBalance"),
                      r.text(8).trimmed(), r.date(9)};
    return out;
}

qint64 stagedCount(SessionConnection &db)
{
    return db.scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalanceEmpty")).toLongLong();
}

} // namespace

class TestVoucherPosting : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void balanceRule_data();
    void balanceRule();
    void currentCash_data();
    void currentCash();

    void cashVoucherRows_data();
    void cashVoucherRows();
    void journalBalanceOnSave_data();
    void journalBalanceOnSave();
    void stagingIsPrivate_data() { TestDb::addBackends(); }
    void stagingIsPrivate();
    void modifyByState_data() { TestDb::addBackends(); }
    void modifyByState();
    void dateChangeMovesAllRows_data() { TestDb::addBackends(); }
    void dateChangeMovesAllRows();
    void newLineNeverReusesStagedSrNo_data() { TestDb::addBackends(); }
    void newLineNeverReusesStagedSrNo();
    void deleteSweepsZeroRowsButJV_data() { TestDb::addBackends(); }
    void deleteSweepsZeroRowsButJV();
    void duplicateNumbersRefused_data() { TestDb::addBackends(); }
    void duplicateNumbersRefused();
    void proposedNumberMovesOnRace_data() { TestDb::addBackends(); }
    void proposedNumberMovesOnRace();
    void chequeFollowsTheSave_data() { TestDb::addBackends(); }
    void chequeFollowsTheSave();
    void failedSaveLeavesLedgerAndStaging_data();
    void failedSaveLeavesLedgerAndStaging();
    void bulkRowsKeepOrderAndValues_data();
    void bulkRowsKeepOrderAndValues();
};

// ------------------------------------------------------------ pure rules

void TestVoucherPosting::balanceRule_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("debit");
    QTest::addColumn<QString>("credit");
    QTest::addColumn<bool>("refused");
    QTest::addColumn<int>("rows");
    QTest::newRow("JV equal") << "JV" << "100" << "100" << false << 2;
    QTest::newRow("JV 100 and 100.00 are equal money") << "JV" << "100" << "100.00" << false << 2;
    QTest::newRow("JV a cent apart") << "JV" << "100.01" << "100" << true << 0;
    QTest::newRow("BP unequal") << "BP" << "50" << "40" << true << 0;
    QTest::newRow("BR unequal") << "BR" << "0" << "40" << true << 0;
    QTest::newRow("BC unequal") << "BC" << "1" << "0" << true << 0;
    QTest::newRow("CP not tested, cash row added") << "CP" << "70" << "0" << false << 2;
    QTest::newRow("CR not tested, cash row added") << "CR" << "0" << "70" << false << 2;
    QTest::newRow("other types not tested") << "SV" << "5" << "0" << false << 1;
}

void TestVoucherPosting::balanceRule()
{
    QFETCH(QString, type);
    QFETCH(QString, debit);
    QFETCH(QString, credit);
    QFETCH(bool, refused);
    QFETCH(int, rows);
    Voucher v{{type, 1, kDay}, {}};
    auto add = [&](Money dr, Money cr) {
        if (dr.isZero() && cr.isZero())
            return;
        VoucherLine l;
        l.state = LineState::Insert;
        l.partyCode = QStringLiteral("21-10-001");
        l.debit = dr;
        l.credit = cr;
        v.lines << l;
    };
    add(*Money::parse(debit), Money());
    add(Money(), *Money::parse(credit));
    const auto why = VoucherRules::check(v);
    QCOMPARE(why.has_value(), refused);
    if (refused) {
        QCOMPARE(*why, QStringLiteral("Debit and Credit amount are not same, please check your entry"));
        return;
    }
    const QVector<LedgerRow> posted = VoucherRules::postingRows(v);
    QCOMPARE(posted.size(), rows);
    Money sum;
    for (const LedgerRow &r : posted) {
        QVERIFY(r.partyDR.isZero() || r.partyCR.isZero()); // one side a row
        sum += r.partyBalance();
    }
    if (VoucherRules::addsCashRow(type) || VoucherRules::needsBalance(type))
        QCOMPARE(sum, Money()); // the voucher balances in the ledger
    if (VoucherRules::addsCashRow(type))
        QCOMPARE(posted.last().partyCode, QStringLiteral("19-10-001"));
}

void TestVoucherPosting::currentCash_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<qint64>("balanceCents");
    QTest::addColumn<QString>("previous");
    QTest::addColumn<QString>("current");
    QTest::newRow("CP from debit") << "CP" << qint64(100050) << "1,000.50 DR" << "900.5";
    QTest::newRow("CR from debit") << "CR" << qint64(100050) << "1,000.50 DR" << "1100.5";
    // With the cash in credit the figure is worked on the magnitude.
    QTest::newRow("CP from credit") << "CP" << qint64(-100000) << "1,000.00 CR" << "900";
    QTest::newRow("zero shows DR") << "JV" << qint64(0) << "0.00 DR" << "";
}

void TestVoucherPosting::currentCash()
{
    QFETCH(QString, type);
    QFETCH(qint64, balanceCents);
    QFETCH(QString, previous);
    QFETCH(QString, current);
    const auto fig = VoucherRules::cashFigure(Money::fromCents(balanceCents));
    QCOMPARE(fig.text(), previous);
    const VoucherTotals t{Money::fromUnits(100), Money::fromUnits(100)};
    const auto cur = VoucherRules::currentCash(type, fig.magnitude, t);
    QCOMPARE(cur ? cur->toFieldString() : QString(), current);
}

// ------------------------------------------------------------ new vouchers

void TestVoucherPosting::cashVoucherRows_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("type");
    for (const char *b : {"sqlite", "postgres"})
        for (const char *t : {"CP", "CR"})
            QTest::newRow(qPrintable(QStringLiteral("%1 %2").arg(b, t))) << QString::fromLatin1(b) << QString::fromLatin1(t);
}

void TestVoucherPosting::cashVoucherRows()
{
    QFETCH(QString, type);
    TESSEL_YEAR(year);
    auto db = year.connect();
    addAccounts(*db);
    const QString side = type == QLatin1String("CP") ? QStringLiteral("DR") : QStringLiteral("CR");
    QCOMPARE(Ledger::nextVoucherNo(*db, type), qint64(1));
    const VoucherKey key{type, 1, kDay};
    const auto out = stageAndSave(*db, key,
                                  {line("21-10-001", "ELECTRICITY", m("1234.56"), side),
                                   line("21-10-002", "TEA AND REFRESHMENT", m("0.44"), side)});
    QVERIFY2(out.ok, qPrintable(out.message));
    QCOMPARE(out.message, QStringLiteral("Voucher has saved successfully"));
    QCOMPARE(out.number, qint64(1));
    QCOMPARE(stagedCount(*db), qint64(0));

    const auto rows = ledger(*db);
    QCOMPARE(rows.size(), 3);
    QCOMPARE(rows[0].code, QStringLiteral("21-10-001"));
    QCOMPARE(rows[1].code, QStringLiteral("21-10-002"));
    QCOMPARE(rows[2].code, QStringLiteral("19-10-001")); // the cash row comes last
    for (const Posted &r : rows) {
        QCOMPARE(r.type, type);
        QCOMPARE(r.no, qint64(1));
        QCOMPARE(r.date, kDay);
        QCOMPARE(r.user, kUser);
        QCOMPARE(r.entry, kToday);
        QCOMPARE(r.bal, r.dr - r.cr);
    }
    const Money total = m("1235.00");
    if (type == QLatin1String("CP")) {
        QCOMPARE(rows[2].cr, total);
        QCOMPARE(rows[2].dr, Money());
        QCOMPARE(Ledger::accountBalance(*db, Ledger::kCashCode), std::optional<Money>(-total));
    } else {
        QCOMPARE(rows[2].dr, total);
        QCOMPARE(Ledger::accountBalance(*db, Ledger::kCashCode), std::optional<Money>(total));
    }
    QCOMPARE(Ledger::nextVoucherNo(*db, type), qint64(2));
    QCOMPARE(Ledger::nextVoucherNo(*db, QStringLiteral("JV")), qint64(1));
}

void TestVoucherPosting::journalBalanceOnSave_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("credit");
    QTest::addColumn<bool>("posted");
    for (const char *b : {"sqlite", "postgres"}) {
        const QString be = QString::fromLatin1(b);
        QTest::newRow(qPrintable(be + " JV balanced")) << be << "JV" << "500.10" << true;
        QTest::newRow(qPrintable(be + " JV unbalanced")) << be << "JV" << "500.11" << false;
        QTest::newRow(qPrintable(be + " BP balanced")) << be << "BP" << "500.1" << true;
        QTest::newRow(qPrintable(be + " BR unbalanced")) << be << "BR" << "0" << false;
    }
}

void TestVoucherPosting::journalBalanceOnSave()
{
    QFETCH(QString, type);
    QFETCH(QString, credit);
    QFETCH(bool, posted);
    TESSEL_YEAR(year);
    auto db = year.connect();
    addAccounts(*db);
    const auto out = stageAndSave(*db, {type, 1, kDay},
                                  {line("14-10-001", "PAPER HOUSE", m("500.10"), "DR"),
                                   line("19-20-001", "CITY BANK", *Money::parse(credit), "CR")});
    QCOMPARE(out.ok, posted);
    if (posted) {
        QCOMPARE(ledger(*db).size(), 2);
        QCOMPARE(stagedCount(*db), qint64(0));
    } else {
        QCOMPARE(out.message, QStringLiteral("Debit and Credit amount are not same, please check your entry"));
        QCOMPARE(ledger(*db).size(), 0);
        QCOMPARE(stagedCount(*db), qint64(2)); // staging untouched
    }
}

void TestVoucherPosting::stagingIsPrivate()
{
    TESSEL_YEAR(year);
    auto a = year.connect();
    auto b = year.connect();
    addAccounts(*a);
    qint64 sr = 0;
    VoucherStaging(*a).addLine({QStringLiteral("CP"), 1, kDay}, line("21-10-001", "ELECTRICITY", m("5"), "DR"), sr);
    QCOMPARE(stagedCount(*a), qint64(1));
    QCOMPARE(stagedCount(*b), qint64(0));
    VoucherStaging(*b).clear(); // another workstation starting a voucher
    QCOMPARE(stagedCount(*a), qint64(1));
}

// ------------------------------------------------------------ modify and delete

void TestVoucherPosting::modifyByState()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    addAccounts(*db);
    const VoucherKey key{QStringLiteral("CP"), 1, kDay};
    QVERIFY(stageAndSave(*db, key,
                         {line("21-10-001", "ELECTRICITY", m("100"), "DR"),
                          line("21-10-002", "TEA AND REFRESHMENT", m("50"), "DR"),
                          line("14-10-001", "PAPER HOUSE", m("25"), "DR")})
                .ok);
    const auto before = ledger(*db);
    QCOMPARE(before.size(), 4);
    const qint64 cashSrNo = before[3].srNo;

    VoucherStaging st(*db);
    QCOMPARE(st.loadVoucher(key), 3); // the cash row is left out
    const auto loaded = st.lines();
    QCOMPARE(loaded[0].srNo, before[0].srNo);
    QCOMPARE(loaded[0].state, LineState::Update);

    qint64 sr = loaded[0].srNo;
    // change the first line, remove the third, add a line and change it again
    QVERIFY(st.changeLine(loaded[0].srNo, key, line("21-10-001", "ELECTRICITY", m("110.5"), "DR")));
    QVERIFY(st.removeLine(loaded[2].srNo));
    const qint64 added = st.addLine(key, line("17-10-001", "CRESCENT TEXTILES", m("7"), "DR"), sr);
    QVERIFY(st.changeLine(added, key, line("17-10-001", "CRESCENT TEXTILES", m("8"), "DR")));
    QCOMPARE(st.line(added)->state, LineState::Insert); // still to be inserted

    const auto out = VoucherPosting(*db, kUser, kToday).saveModified(key, key);
    QVERIFY2(out.ok, qPrintable(out.message));
    QCOMPARE(out.message, QStringLiteral("Voucher has modified successfully"));
    QCOMPARE(stagedCount(*db), qint64(0));

    const auto after = ledger(*db);
    QCOMPARE(after.size(), 4);
    QHash<QString, Posted> byCode;
    for (const Posted &p : after)
        byCode.insert(p.code, p);
    QVERIFY(!byCode.contains(QStringLiteral("14-10-001")));
    QCOMPARE(byCode.value(QStringLiteral("21-10-001")).dr, m("110.5"));
    QCOMPARE(byCode.value(QStringLiteral("21-10-001")).srNo, before[0].srNo);
    QCOMPARE(byCode.value(QStringLiteral("17-10-001")).dr, m("8"));
    const Posted cash = byCode.value(QStringLiteral("19-10-001"));
    QCOMPARE(cash.srNo, cashSrNo); // updated in place, not replaced
    QCOMPARE(cash.cr, m("168.5"));
    QCOMPARE(Ledger::accountBalance(*db, Ledger::kCashCode), std::optional<Money>(-m("168.5")));
}

void TestVoucherPosting::dateChangeMovesAllRows()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    addAccounts(*db);
    const VoucherKey key{QStringLiteral("CR"), 1, kDay};
    QVERIFY(stageAndSave(*db, key, {line("17-10-001", "CRESCENT TEXTILES", m("900"), "CR")}).ok);
    // another receipt before the new date: the cash before a date counts it
    QVERIFY(stageAndSave(*db, {QStringLiteral("CR"), 2, QDate(2026, 3, 1)},
                         {line("17-10-001", "CRESCENT TEXTILES", m("40"), "CR")})
                .ok);
    VoucherStaging st(*db);
    st.loadVoucher(key);
    QCOMPARE(Ledger::accountBalanceBefore(*db, Ledger::kCashCode, kDay), std::optional<Money>(m("40")));
    const VoucherKey moved{QStringLiteral("CR"), 1, QDate(2026, 4, 2)};
    QVERIFY(VoucherPosting(*db, kUser, kToday).saveModified(key, moved).ok);
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE VoucherNo = 1 AND VDate = ?"),
                        {QDate(2026, 4, 2)})
                 .toInt(),
             2);
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE VDate = ?"), {kDay}).toInt(), 0);
}

void TestVoucherPosting::newLineNeverReusesStagedSrNo()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    addAccounts(*db);
    const VoucherKey key{QStringLiteral("JV"), 1, kDay};
    QVERIFY(stageAndSave(*db, key,
                         {line("21-10-001", "ELECTRICITY", m("30"), "DR"),
                          line("21-10-002", "TEA AND REFRESHMENT", m("20"), "DR"),
                          line("19-20-001", "CITY BANK", m("50"), "CR")})
                .ok);
    VoucherStaging st(*db);
    st.loadVoucher(key);
    const auto loaded = st.lines();
    qint64 sr = loaded[0].srNo; // the first row was just loaded into the screen
    const qint64 added = st.addLine(key, line("21-10-002", "TEA AND REFRESHMENT", m("0"), "DR"), sr);
    QSet<qint64> seen;
    for (const VoucherLine &l : st.lines(false))
        QVERIFY2(!seen.contains(l.srNo), "two staged lines share a SrNo");
    for (const VoucherLine &l : st.lines(false))
        seen.insert(l.srNo);
    QCOMPARE(seen.size(), 4);
    QVERIFY(added > loaded.last().srNo);
}

void TestVoucherPosting::deleteSweepsZeroRowsButJV()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    addAccounts(*db);
    // an opening row of 0 (a JV row that must survive the sweep)
    LedgerWriter(*db, kUser, kToday)
        .insert(LedgerRow::debit({QStringLiteral("JV"), 0, QDate(2026, 1, 1)}, QStringLiteral("21-10-002"),
                                 QStringLiteral("TEA AND REFRESHMENT"), Money(), QStringLiteral("OPENING BALANCE")));
    // a cash payment whose lines were all removed: it still posts, as one zero cash row
    {
        VoucherStaging st(*db);
        qint64 sr = 0;
        const VoucherKey key{QStringLiteral("CP"), 1, kDay};
        const qint64 a = st.addLine(key, line("21-10-001", "ELECTRICITY", m("10"), "DR"), sr);
        const qint64 b = st.addLine(key, line("21-10-002", "TEA AND REFRESHMENT", m("20"), "DR"), sr);
        QVERIFY(st.removeLine(a));
        QVERIFY(st.removeLine(b));
        QVERIFY(!st.totals().debit.has_value()); // no live line: the screen shows "0" and "0"
        QVERIFY(VoucherPosting(*db, kUser, kToday).saveNew(key, NumberPolicy::Proposed).ok);
        const auto rows = ledger(*db);
        QCOMPARE(rows.size(), 2); // the opening row, and the voucher's cash row alone
        QCOMPARE(rows[1].code, QStringLiteral("19-10-001"));
        QCOMPARE(rows[1].dr, Money());
        QCOMPARE(rows[1].cr, Money());
        QCOMPARE(rows[1].bal, Money());
    }
    // the voucher to delete, and one to keep
    const VoucherKey doomed{QStringLiteral("CP"), 2, kDay};
    QVERIFY(stageAndSave(*db, doomed, {line("21-10-001", "ELECTRICITY", m("60"), "DR")}).ok);
    QVERIFY(stageAndSave(*db, {QStringLiteral("CP"), 3, kDay}, {line("21-10-001", "ELECTRICITY", m("5"), "DR")}).ok);
    QCOMPARE(ledger(*db).size(), 6);

    VoucherStaging(*db).loadVoucher(doomed);
    const auto out = VoucherPosting(*db, kUser, kToday).deleteVoucher(doomed);
    QCOMPARE(out.message, QStringLiteral("Voucher has deleted successfully"));
    const auto rows = ledger(*db);
    QCOMPARE(rows.size(), 3); // voucher 2 gone with its cash row, the zero CP row swept
    QCOMPARE(rows[0].type, QStringLiteral("JV"));
    QCOMPARE(rows[1].no, qint64(3));
    QCOMPARE(rows[2].no, qint64(3));
    QCOMPARE(stagedCount(*db), qint64(0));
}

void TestVoucherPosting::duplicateNumbersRefused()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    addAccounts(*db);
    QVERIFY(stageAndSave(*db, {QStringLiteral("CP"), 1, kDay}, {line("21-10-001", "ELECTRICITY", m("1"), "DR")}).ok);
    QVERIFY(stageAndSave(*db, {QStringLiteral("CP"), 2, kDay}, {line("21-10-001", "ELECTRICITY", m("2"), "DR")}).ok);
    const auto before = ledger(*db);

    // a typed number that the type already holds (on another date too)
    const auto typed = stageAndSave(*db, {QStringLiteral("CP"), 1, QDate(2026, 5, 5)},
                                    {line("21-10-002", "TEA AND REFRESHMENT", m("3"), "DR")}, NumberPolicy::Typed);
    QVERIFY(!typed.ok);
    QCOMPARE(typed.message,
             QStringLiteral("Voucher # already exist, duplication is not allowed, please change the voucher #."));
    QCOMPARE(ledger(*db).size(), before.size());
    QCOMPARE(stagedCount(*db), qint64(1));
    // the same number under another type is free
    QVERIFY(stageAndSave(*db, {QStringLiteral("CR"), 1, kDay},
                         {line("17-10-001", "CRESCENT TEXTILES", m("3"), "CR")}, NumberPolicy::Typed)
                .ok);

    // modify: voucher 2 renumbered to 1 with its date unchanged
    VoucherStaging(*db).loadVoucher({QStringLiteral("CP"), 2, kDay});
    const auto renumber = VoucherPosting(*db, kUser, kToday)
                              .saveModified({QStringLiteral("CP"), 2, kDay}, {QStringLiteral("CP"), 1, kDay});
    QVERIFY(!renumber.ok);
    QCOMPARE(renumber.field, QStringLiteral("txtVoucherNo"));
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE VoucherType = 'CP' AND VoucherNo = 1"))
                 .toInt(),
             2);
    QCOMPARE(stagedCount(*db), qint64(1));
    // keeping its own number under a new date is no duplicate
    QVERIFY(VoucherPosting(*db, kUser, kToday)
                .saveModified({QStringLiteral("CP"), 2, kDay}, {QStringLiteral("CP"), 2, QDate(2026, 3, 20)})
                .ok);
}

void TestVoucherPosting::proposedNumberMovesOnRace()
{
    TESSEL_YEAR(year);
    auto mine = year.connect();
    auto theirs = year.connect();
    addAccounts(*mine);
    const qint64 proposed = Ledger::nextVoucherNo(*mine, QStringLiteral("JV"));
    QCOMPARE(proposed, qint64(1));
    VoucherStaging st(*mine);
    qint64 sr = 0;
    const VoucherKey key{QStringLiteral("JV"), proposed, kDay};
    st.addLine(key, line("21-10-001", "ELECTRICITY", m("9"), "DR"), sr);
    st.addLine(key, line("19-20-001", "CITY BANK", m("9"), "CR"), sr);
    // another workstation takes the number first
    QVERIFY(stageAndSave(*theirs, {QStringLiteral("JV"), 1, kDay},
                         {line("21-10-002", "TEA AND REFRESHMENT", m("4"), "DR"),
                          line("19-20-001", "CITY BANK", m("4"), "CR")})
                .ok);
    const auto out = VoucherPosting(*mine, kUser, kToday).saveNew(key, NumberPolicy::Proposed);
    QVERIFY(out.ok);
    QCOMPARE(out.number, qint64(2));
    QVERIFY(out.notice.contains(QLatin1String("# 2")));
    QCOMPARE(mine->scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE VoucherNo = 2")).toInt(), 2);
    QCOMPARE(mine->scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE VoucherNo = 1")).toInt(), 2);
}

void TestVoucherPosting::chequeFollowsTheSave()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    addAccounts(*db);
    db->execute(QStringLiteral("INSERT INTO tblPostDatedCheque (VoucherType, VoucherNo, PartyName, PartyCode, "
                               "Description, Amount, Status) VALUES ('PD', 7, 'CRESCENT TEXTILES', '17-10-001', "
                               "'CHQ 4471', ?, 'POST DATED')"),
                {Money::fromUnits(500).toVariant()});
    auto status = [&] {
        return db->scalar(QStringLiteral("SELECT Status FROM tblPostDatedCheque WHERE VoucherNo = 7")).toString().trimmed();
    };
    LineInput in = line("17-10-001", "CRESCENT TEXTILES", m("500"), "CR");
    in.cheque = ChequeLink{7, QStringLiteral("CHQ 4471")};
    LineInput bank = line("19-20-001", "CITY BANK", m("500"), "DR");
    const VoucherKey key{QStringLiteral("BR"), 1, kDay};

    // staged then abandoned: the cheque stays open
    VoucherStaging st(*db);
    qint64 sr = 0;
    st.addLine(key, in, sr);
    QCOMPARE(status(), QStringLiteral("POST DATED"));
    st.clear();
    QCOMPARE(status(), QStringLiteral("POST DATED"));

    // saved: posted
    QVERIFY(stageAndSave(*db, key, {in, bank}).ok);
    QCOMPARE(status(), QStringLiteral("POSTED"));

    // the line removed in a change of the voucher: given back
    st.loadVoucher(key);
    const auto lines = st.lines();
    QVERIFY(st.removeLine(lines[0].srNo, ChequeLink{7, QStringLiteral("CHQ 4471")}));
    QVERIFY(st.removeLine(lines[1].srNo));
    QVERIFY(VoucherPosting(*db, kUser, kToday).saveModified(key, key).ok);
    QCOMPARE(status(), QStringLiteral("POST DATED"));
}

// ------------------------------------------------------------ failures

void TestVoucherPosting::failedSaveLeavesLedgerAndStaging_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("failingStatement");
    for (const char *b : {"sqlite", "postgres"}) {
        const QString be = QString::fromLatin1(b);
        QTest::newRow(qPrintable(be + " new, after the rows")) << be << "new" << "UPDATE tblPostDatedCheque";
        QTest::newRow(qPrintable(be + " new, at staging clean-up")) << be << "new" << "DELETE FROM tblPartyBalanceEmpty";
        QTest::newRow(qPrintable(be + " modify, at a removal")) << be << "modify" << "DELETE FROM tblPartyBalance WHERE SrNo";
        QTest::newRow(qPrintable(be + " modify, at the inserts")) << be << "modify" << "INSERT INTO tblPartyBalance ";
        QTest::newRow(qPrintable(be + " delete, at the sweep")) << be << "delete" << "DELETE FROM tblPartyBalance WHERE PartyDR";
    }
}

void TestVoucherPosting::failedSaveLeavesLedgerAndStaging()
{
    QFETCH(QString, path);
    QFETCH(QString, failingStatement);
    TESSEL_YEAR(year);
    auto db = year.connect();
    addAccounts(*db);
    db->execute(QStringLiteral("INSERT INTO tblPostDatedCheque (VoucherType, VoucherNo, PartyCode, Description, Status) "
                               "VALUES ('PD', 3, '17-10-001', 'CHQ', 'POST DATED')"));
    const VoucherKey first{QStringLiteral("CR"), 1, kDay};
    QVERIFY(stageAndSave(*db, first,
                         {line("17-10-001", "CRESCENT TEXTILES", m("10"), "CR"),
                          line("14-10-001", "PAPER HOUSE", m("20"), "CR")})
                .ok);
    const auto before = ledger(*db);

    VoucherStaging st(*db);
    const VoucherKey second{QStringLiteral("CR"), 2, kDay};
    if (path == QLatin1String("new")) {
        qint64 sr = 0;
        LineInput in = line("17-10-001", "CRESCENT TEXTILES", m("70"), "CR");
        in.cheque = ChequeLink{3, QStringLiteral("CHQ")};
        st.addLine(second, in, sr);
        st.addLine(second, line("14-10-001", "PAPER HOUSE", m("5"), "CR"), sr);
    } else {
        st.loadVoucher(first);
        const auto lines = st.lines();
        qint64 sr = lines.last().srNo;
        st.changeLine(lines[0].srNo, first, line("17-10-001", "CRESCENT TEXTILES", m("11"), "CR"));
        st.removeLine(lines[1].srNo);
        st.addLine(first, line("21-10-001", "ELECTRICITY", m("3"), "CR"), sr);
    }
    const auto stagedBefore = st.lines(false);

    bool fired = false;
    db->setStatementHook([&](const QString &sql) {
        if (sql.startsWith(failingStatement)) {
            fired = true;
            throw DbError(QStringLiteral("disk full"), sql);
        }
    });
    VoucherPosting posting(*db, kUser, kToday);
    try {
        if (path == QLatin1String("new"))
            posting.saveNew(second, NumberPolicy::Proposed);
        else if (path == QLatin1String("modify"))
            posting.saveModified(first, first);
        else
            posting.deleteVoucher(first);
        QFAIL("the save did not fail");
    } catch (const DbError &e) {
        QCOMPARE(e.driverText(), QStringLiteral("disk full"));
    }
    db->setStatementHook({});
    QVERIFY(fired);
    QCOMPARE(db->transactionDepth(), 0);

    const auto after = ledger(*db);
    QCOMPARE(after.size(), before.size());
    for (int i = 0; i < after.size(); ++i) {
        QCOMPARE(after[i].srNo, before[i].srNo);
        QCOMPARE(after[i].bal, before[i].bal);
        QCOMPARE(after[i].date, before[i].date);
    }
    const auto stagedAfter = st.lines(false);
    QCOMPARE(stagedAfter.size(), stagedBefore.size());
    for (int i = 0; i < stagedAfter.size(); ++i) {
        QCOMPARE(stagedAfter[i].srNo, stagedBefore[i].srNo);
        QCOMPARE(stagedAfter[i].state, stagedBefore[i].state);
        QCOMPARE(stagedAfter[i].amount(), stagedBefore[i].amount());
    }
    QCOMPARE(db->scalar(QStringLiteral("SELECT Status FROM tblPostDatedCheque")).toString().trimmed(),
             QStringLiteral("POST DATED"));
    // and the screen can go on: the same save now succeeds
    if (path == QLatin1String("new"))
        QVERIFY(posting.saveNew(second, NumberPolicy::Proposed).ok);
    else if (path == QLatin1String("modify"))
        QVERIFY(posting.saveModified(first, first).ok);
    else
        QVERIFY(posting.deleteVoucher(first).ok);
}

void TestVoucherPosting::bulkRowsKeepOrderAndValues_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<int>("count");
    for (const char *b : {"sqlite", "postgres"})
        for (int n : {7, 1234}) // one statement, and the batched path of a server
            QTest::newRow(qPrintable(QStringLiteral("%1 %2 rows").arg(QString::fromLatin1(b)).arg(n)))
                << QString::fromLatin1(b) << n;
}

void TestVoucherPosting::bulkRowsKeepOrderAndValues()
{
    QFETCH(int, count);
    TESSEL_YEAR(year);
    auto db = year.connect();
    const QStringList texts = {QStringLiteral("PLAIN"), QStringLiteral("A \"QUOTED\" WORD"), QStringLiteral("BACK\\SLASH"),
                               QStringLiteral("{BRACES},COMMA"), QStringLiteral("NULL"), QString(), QStringLiteral("  ")};
    QVector<LedgerRow> rows;
    for (int i = 0; i < count; ++i) {
        const VoucherKey key{QStringLiteral("JV"), i / 2 + 1, QDate(2026, 1, 1).addDays(i % 300)};
        const Money amount = Money::fromCents(qint64(i) * 100003 + 1);
        LedgerRow r = i % 2 ? LedgerRow::credit(key, QStringLiteral("21-10-002"), QStringLiteral("TEA"), amount)
                            : LedgerRow::debit(key, QStringLiteral("21-10-001"), QStringLiteral("POWER"), amount);
        r.partyDesc = texts.at(i % texts.size());
        r.invoiceNo = texts.at((i + 3) % texts.size());
        if (i % 5 == 0)
            r.recordNo = i;
        rows << r;
    }
    {
        Transaction tx(*db);
        LedgerWriter(*db, kUser, kToday).insertMany(rows);
        tx.commit();
    }
    const QueryResult back = db->select(QStringLiteral("SELECT VoucherNo, VDate, PartyCode, PartyDR, PartyCR, PartyBalance, "
                                                       "PartyDesc, InvoiceNo, RecordNo, UserName, EntryDate "
                                                       "FROM tblPartyBalance ORDER BY SrNo"));
    QCOMPARE(back.size(), count);
    for (int i = 0; i < count; ++i) {
        const Row &b = back.at(i);
        const LedgerRow &r = rows.at(i);
        QCOMPARE(b.integer("VoucherNo"), r.voucherNo);
        QCOMPARE(b.date("VDate"), r.vDate);
        QCOMPARE(b.text("PartyCode").trimmed(), r.partyCode);
        QCOMPARE(b.moneyOrZero("PartyDR"), r.partyDR);
        QCOMPARE(b.moneyOrZero("PartyCR"), r.partyCR);
        QCOMPARE(b.moneyOrZero("PartyBalance"), r.partyBalance());
        QCOMPARE(b.isNull("PartyDesc"), r.partyDesc.isNull());
        QCOMPARE(b.text("PartyDesc"), r.partyDesc);
        QCOMPARE(b.text("InvoiceNo"), r.invoiceNo);
        QCOMPARE(b.isNull("RecordNo"), !r.recordNo.has_value());
        QCOMPARE(b.text("UserName").trimmed(), kUser);
        QCOMPARE(b.date("EntryDate"), kToday);
    }
}

QTEST_GUILESS_MAIN(TestVoucherPosting)
#include "tst_voucherposting.moc"
