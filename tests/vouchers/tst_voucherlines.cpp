// The lines of a voucher being typed: the line checks in the screen's
// order, and the lines held in memory with their states mirrored into
// this workstation's staging, which the save reads.
#include "foundation/LineStaging.h"
#include "support/TestDb.h"
#include "vouchers/VoucherPosting.h"
#include "vouchers/VoucherRules.h"
#include "vouchers/VoucherStaging.h"

#include <QtTest>

Q_DECLARE_METATYPE(VoucherRules::LineEntry)

using VoucherRules::LineCommand;
using VoucherRules::LineEntry;

namespace {

const QDate kDay(2026, 3, 10);

VoucherLine line(const QString &code, const QString &name, const char *debit, const char *credit = "0")
{
    VoucherLine l;
    l.partyCode = code;
    l.partyName = name;
    l.debit = *Money::parse(QString::fromLatin1(debit));
    l.credit = *Money::parse(QString::fromLatin1(credit));
    return l;
}

} // namespace

class TestVoucherLines : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void lineChecks_data();
    void lineChecks();
    void statesAndMirror_data() { TestDb::addBackends(); }
    void statesAndMirror();
    void modifiedVoucherKeepsEveryLine_data() { TestDb::addBackends(); }
    void modifiedVoucherKeepsEveryLine();
};

void TestVoucherLines::lineChecks_data()
{
    QTest::addColumn<LineEntry>("entry");
    QTest::addColumn<int>("command");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("field");

    const LineEntry good{QStringLiteral("7"), true, QStringLiteral("250.5"), QStringLiteral("DR"), false, {}, {}};
    auto with = [&](auto change) {
        LineEntry e = good;
        change(e);
        return e;
    };
    const int add = int(LineCommand::Add), change = int(LineCommand::Change), remove = int(LineCommand::Remove);
    QTest::newRow("a whole line") << good << add << QString() << QString();
    QTest::newRow("no number") << with([](LineEntry &e) { e.voucherNo = QStringLiteral("  "); }) << add
                               << VoucherMessages::kNoVoucherNo << "txtVoucherNo";
    QTest::newRow("number before account") << with([](LineEntry &e) {
        e.voucherNo.clear();
        e.accountFound = false;
    }) << change << VoucherMessages::kNoVoucherNo << "txtVoucherNo";
    QTest::newRow("unknown account") << with([](LineEntry &e) { e.accountFound = false; }) << remove
                                     << VoucherMessages::kNoParty << "cmbPartyName";
    QTest::newRow("no amount") << with([](LineEntry &e) { e.amount.clear(); }) << change << VoucherMessages::kNoAmount
                               << "txtAmount";
    QTest::newRow("a lone point is an amount") << with([](LineEntry &e) { e.amount = QStringLiteral("."); }) << add
                                               << QString() << QString();
    QTest::newRow("side not DR or CR") << with([](LineEntry &e) { e.side = QStringLiteral("D"); }) << add
                                       << VoucherMessages::kBadSide << "cmbDBCR";
    QTest::newRow("side lower case") << with([](LineEntry &e) { e.side = QStringLiteral("dr"); }) << change
                                     << VoucherMessages::kBadSide << "cmbDBCR";
    QTest::newRow("a removal asks no side") << with([](LineEntry &e) { e.side.clear(); }) << remove << QString()
                                            << QString();
    QTest::newRow("cheque without description") << with([](LineEntry &e) {
        e.cheque = true;
        e.chequeNo = QStringLiteral("12");
    }) << remove << VoucherMessages::kNoChequeDesc << "cmbChequeDesc";
    QTest::newRow("cheque without number") << with([](LineEntry &e) {
        e.cheque = true;
        e.chequeDesc = QStringLiteral("CHQ 5521");
    }) << add << VoucherMessages::kNoChequeNo << "cmbCHQVoucherNo";
    QTest::newRow("cheque fields unticked") << with([](LineEntry &e) { e.chequeDesc = QStringLiteral("  "); })
                                            << add << QString() << QString();
}

void TestVoucherLines::lineChecks()
{
    QFETCH(LineEntry, entry);
    QFETCH(int, command);
    QFETCH(QString, message);
    QFETCH(QString, field);
    const Outcome o = VoucherRules::checkLine(entry, LineCommand(command));
    QCOMPARE(o.ok, message.isEmpty());
    QCOMPARE(o.message, message);
    QCOMPARE(o.field, field);
}

// Added lines stay INSERT through changes and go when removed; lines of
// the ledger become UPDATE and, removed, DELETE. The staging table holds
// exactly the lines in memory after every step, and is rebuilt from them.
void TestVoucherLines::statesAndMirror()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    const VoucherKey header{QStringLiteral("JV"), 4, kDay};
    StagedLines<VoucherLine> lines({[](SessionConnection &c) { VoucherStaging(c).clear(); },
                                    [&](SessionConnection &c, const VoucherLine &l) { VoucherStaging(c).put(header, l); }});
    auto staged = [&] {
        QStringList out;
        for (const VoucherLine &l : VoucherStaging(*db).lines(false))
            out << QStringLiteral("%1 %2 %3").arg(l.srNo).arg(lineStateWord(l.state), l.partyCode);
        return out;
    };

    VoucherLine a = line("21-10-001", "ELECTRICITY", "100");
    a.srNo = 40;
    VoucherLine b = line("14-10-001", "PAPER HOUSE", "0", "100");
    b.srNo = 41;
    lines.load(*db, {a, b});
    const qint64 added = lines.add(*db, line("21-10-002", "TEA", "5"));
    QCOMPARE(added, qint64(42)); // never a SrNo a loaded line has
    QCOMPARE(staged(), (QStringList{"40 UPDATE 21-10-001", "41 UPDATE 14-10-001", "42 INSERT 21-10-002"}));

    QVERIFY(lines.change(*db, 42, line("21-10-002", "TEA", "6")));
    QVERIFY(lines.change(*db, 40, line("21-10-001", "ELECTRICITY", "99")));
    QVERIFY(!lines.change(*db, 77, line("21-10-002", "TEA", "6")));
    QCOMPARE(staged(), (QStringList{"40 UPDATE 21-10-001", "41 UPDATE 14-10-001", "42 INSERT 21-10-002"}));
    QCOMPARE(VoucherStaging(*db).line(42)->debit, Money::fromUnits(6));

    QVERIFY(lines.remove(*db, 42));
    QVERIFY(lines.remove(*db, 41));
    QCOMPARE(staged(), (QStringList{"40 UPDATE 21-10-001", "41 DELETE 14-10-001"}));
    QCOMPARE(lines.live().size(), 1);

    // the staging table lost (a server restarted): rebuilt from memory
    VoucherStaging(*db).clear();
    lines.rebuild(*db);
    QCOMPARE(staged(), (QStringList{"40 UPDATE 21-10-001", "41 DELETE 14-10-001"}));
    lines.clear(*db);
    QCOMPARE(staged(), QStringList{});
}

// A line added to a loaded voucher and then changed used to share a SrNo
// with a ledger line and be lost at the save; every line now lands.
void TestVoucherLines::modifiedVoucherKeepsEveryLine()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    for (const auto &a : QList<QPair<QString, QString>>{{"21-10-001", "ELECTRICITY"}, {"21-10-002", "TEA"},
                                                        {"19-20-001", "CITY BANK"}})
        db->execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES (?, ?)"),
                    {a.first, a.second});
    VoucherPosting posting(*db, QStringLiteral("CLERK"), kDay);
    const VoucherKey key{QStringLiteral("JV"), 1, kDay};
    QVERIFY(posting.post({key, {line("21-10-001", "ELECTRICITY", "100"), line("19-20-001", "CITY BANK", "0", "100")}},
                         NumberPolicy::Typed)
                .ok);

    VoucherKey header = key;
    StagedLines<VoucherLine> lines({[](SessionConnection &c) { VoucherStaging(c).clear(); },
                                    [&](SessionConnection &c, const VoucherLine &l) { VoucherStaging(c).put(header, l); }});
    lines.load(*db, VoucherStaging(*db).postedLines(key));
    const qint64 tea = lines.add(*db, line("21-10-002", "TEA", "20"));
    QVERIFY(lines.change(*db, tea, line("21-10-002", "TEA", "25")));
    const qint64 bank = lines.all().at(1).srNo;
    QVERIFY(lines.change(*db, bank, line("19-20-001", "CITY BANK", "0", "125")));
    const Outcome out = posting.saveModified(key, header);
    QVERIFY2(out.ok, qPrintable(out.message));
    const QueryResult rows = db->select(QStringLiteral("SELECT PartyCode, PartyDR, PartyCR FROM tblPartyBalance "
                                                       "WHERE VoucherType = 'JV' AND VoucherNo = 1 ORDER BY SrNo"));
    QCOMPARE(rows.size(), 3);
    QCOMPARE(rows.at(2).text("PartyCode").trimmed(), QStringLiteral("21-10-002"));
    QCOMPARE(rows.at(2).moneyOrZero("PartyDR"), Money::fromUnits(25));
    QCOMPARE(rows.at(1).moneyOrZero("PartyCR"), Money::fromUnits(125));
}

QTEST_GUILESS_MAIN(TestVoucherLines)
#include "tst_voucherlines.moc"
