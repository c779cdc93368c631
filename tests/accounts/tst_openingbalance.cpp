// Opening balances: the checks of both panels in their order, exact
// amounts, one opening row an account, and a change that touches that
// row and no other.
#include "support/TestDb.h"
#include "vouchers/VoucherFixture.h"

#include "accounts/OpeningBalance.h"
#include "foundation/DateRules.h"
#include "vouchers/LedgerCheck.h"
#include "vouchers/PostingChecks.h"

#include <QtTest>

using namespace VoucherFixture;
using TestDb::count;

namespace {

const QDate kClosing(2026, 1, 31);

void prepare(SessionConnection &db)
{
    db.execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {kClosing});
    addAccounts(db);
    db.execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES ('17-10-000', 'CUSTOMERS')"));
}

OpeningBalance::Entry entry(const QString &code, const char *amount, const QString &side = QStringLiteral("DR"),
                            const QDate &date = kClosing)
{
    OpeningBalance::Entry e;
    e.code = code;
    e.date = date;
    e.side = side;
    if (amount)
        e.amount = m(amount);
    return e;
}

int openingRows(SessionConnection &db, const QString &code)
{
    return count(db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE PartyCode = ? AND VoucherType = 'JV' "
                                    "AND VoucherNo = 0 AND PartyDesc = 'OPENING BALANCE'"),
                 {code});
}

} // namespace

class TestOpeningBalance : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void openRefusals_data();
    void openRefusals();
    void openWritesExactRow_data();
    void openWritesExactRow();
    void modifyTouchesOnlyTheOpeningRow_data() { TestDb::addBackends(); }
    void modifyTouchesOnlyTheOpeningRow();
};

void TestOpeningBalance::openRefusals_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("amount");
    QTest::addColumn<QDate>("date");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("field");
    struct Case
    {
        const char *name, *code, *amount;
        QDate date;
        QString message;
        const char *field;
    };
    const Case cases[] = {
        {"no code", "__-__-___", "10", kClosing, OpeningBalance::Msg::codeToSelect(), "mskPartyCode"},
        {"no amount", "17-10-001", nullptr, kClosing, OpeningBalance::Msg::balanceMissing(), "txtBalance"},
        {"half a code", "17-10-0__", "10", kClosing, OpeningBalance::Msg::codeNotFound(), "mskPartyCode"},
        {"unknown code", "17-10-099", "10", kClosing, OpeningBalance::Msg::codeNotFound(), "mskPartyCode"},
        {"day before closing", "17-10-001", "10", kClosing.addDays(-1), DateRules::closedPeriodMessage(), "mskDate"},
        {"no date", "17-10-001", "10", QDate(), DateRules::dateMissingMessage(), "mskDate"},
        {"heading with an amount", "17-10-000", "10", kClosing, PostingMessages::kHeading, "txtBalance"},
        {"already open at zero", "14-10-001", "10", kClosing, OpeningBalance::Msg::alreadyOpen(), ""},
    };
    for (const char *backend : {"sqlite", "postgres"})
        for (const Case &c : cases)
            QTest::addRow("%s: %s", backend, c.name)
                << QString::fromLatin1(backend) << QString::fromLatin1(c.code)
                << (c.amount ? QString::fromLatin1(c.amount) : QString()) << c.date << c.message
                << QString::fromLatin1(c.field);
}

void TestOpeningBalance::openRefusals()
{
    TESSEL_YEAR(year);
    QFETCH(QString, code);
    QFETCH(QString, amount);
    QFETCH(QDate, date);
    QFETCH(QString, message);
    QFETCH(QString, field);
    auto db = year.connect();
    prepare(*db);
    // PAPER HOUSE has a zero opening row: it counts as open.
    QVERIFY(OpeningBalance::open(*db, entry(QStringLiteral("14-10-001"), "0"), kUser, kToday));
    const int before = count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance"));

    OpeningBalance::Entry e = entry(code, amount.isNull() ? nullptr : amount.toLatin1().constData());
    e.date = date;
    const Outcome r = OpeningBalance::open(*db, e, kUser, kToday);
    QVERIFY(!r.ok);
    QCOMPARE(r.message, message);
    QCOMPARE(r.field, field);
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")), before);
}

void TestOpeningBalance::openWritesExactRow_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("side");
    QTest::addColumn<QString>("amount");
    QTest::addColumn<QString>("dr");
    QTest::addColumn<QString>("cr");
    QTest::addColumn<QString>("balance");
    for (const char *backend : {"sqlite", "postgres"}) {
        const QString b = QString::fromLatin1(backend);
        // Kept to the cent, not rounded through single precision.
        QTest::addRow("%s: large debit", backend) << b << "DR" << "1234567.89" << "1234567.89" << "0.00" << "1234567.89";
        QTest::addRow("%s: credit", backend) << b << "CR" << "250.05" << "0.00" << "250.05" << "-250.05";
        QTest::addRow("%s: zero credit", backend) << b << "CR" << "0" << "0.00" << "0.00" << "0.00";
        QTest::addRow("%s: no side", backend) << b << "" << "99" << "0.00" << "0.00" << "0.00";
    }
}

void TestOpeningBalance::openWritesExactRow()
{
    TESSEL_YEAR(year);
    QFETCH(QString, side);
    QFETCH(QString, amount);
    QFETCH(QString, dr);
    QFETCH(QString, cr);
    QFETCH(QString, balance);
    auto db = year.connect();
    prepare(*db);
    const Outcome r = OpeningBalance::open(*db, entry(QStringLiteral("17-10-001"), amount.toLatin1().constData(), side),
                                           kUser, kToday);
    QVERIFY2(r.ok, qPrintable(r.message));
    QCOMPARE(r.message, OpeningBalance::Msg::opened());
    const auto row = db->selectOne(QStringLiteral(
        "SELECT PartyDR, PartyCR, PartyBalance, PartyName, VDate, UserName FROM tblPartyBalance WHERE PartyCode = '17-10-001'"));
    QVERIFY(row);
    QCOMPARE(row->moneyOrZero(QStringLiteral("PartyDR")), m(dr.toLatin1().constData()));
    QCOMPARE(row->moneyOrZero(QStringLiteral("PartyCR")), m(cr.toLatin1().constData()));
    QCOMPARE(row->moneyOrZero(QStringLiteral("PartyBalance")), m(balance.toLatin1().constData()));
    QCOMPARE(row->text(QStringLiteral("PartyName")).trimmed(), QStringLiteral("CRESCENT TEXTILES"));
    QCOMPARE(row->date(QStringLiteral("VDate")), kClosing);
    QCOMPARE(openingRows(*db, QStringLiteral("17-10-001")), 1);
    QVERIFY(LedgerCheck::keptBalancesAgree(*db));
}

void TestOpeningBalance::modifyTouchesOnlyTheOpeningRow()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    prepare(*db);
    QVERIFY(OpeningBalance::open(*db, entry(QStringLiteral("17-10-001"), "500"), kUser, kToday));
    // Another JV of the account, even one carrying the same narration.
    QVERIFY(stageAndSave(*db, VoucherKey{QStringLiteral("JV"), 1, kDay},
                         {line("17-10-001", "CRESCENT TEXTILES", m("75.25"), "DR", "OPENING BALANCE"),
                          line("21-10-001", "ELECTRICITY", m("75.25"), "CR")})
                .ok);

    // Refusals first: nothing changes.
    OpeningBalance::Entry bad = entry(QStringLiteral("17-10-0__"), "10");
    QCOMPARE(OpeningBalance::modify(*db, bad, kUser, kToday).message, OpeningBalance::Msg::codeToEnter());
    bad = entry(QStringLiteral("17-10-001"), "10", QStringLiteral("DR"), kClosing.addDays(-1));
    QCOMPARE(OpeningBalance::modify(*db, bad, kUser, kToday).field, QStringLiteral("mskMDate"));
    const Outcome noRow = OpeningBalance::modify(*db, entry(QStringLiteral("21-10-002"), "10"), kUser, kToday);
    QCOMPARE(noRow.message, OpeningBalance::Msg::notOpen());

    const QDate newDay = kClosing.addDays(3);
    const Outcome r = OpeningBalance::modify(*db, entry(QStringLiteral("17-10-001"), "1200.40", QStringLiteral("CR"), newDay),
                                             QStringLiteral("ADMIN"), kToday.addDays(1));
    QVERIFY2(r.ok, qPrintable(r.message));
    QCOMPARE(r.message, OpeningBalance::Msg::modified());

    const auto shown = OpeningBalance::openingRow(*db, QStringLiteral("17-10-001"));
    QVERIFY(shown);
    QCOMPARE(shown->side, QStringLiteral("CR"));
    QCOMPARE(shown->amount, m("1200.40"));
    QCOMPARE(shown->date, newDay);
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE PartyCode = '17-10-001' AND "
                                       "VoucherNo = 0 AND UserName = 'ADMIN'")),
             1);
    // The voucher's row keeps its amount, date and user.
    const auto other = db->selectOne(QStringLiteral(
        "SELECT PartyDR, VDate, UserName FROM tblPartyBalance WHERE PartyCode = '17-10-001' AND VoucherNo <> 0"));
    QVERIFY(other);
    QCOMPARE(other->moneyOrZero(QStringLiteral("PartyDR")), m("75.25"));
    QCOMPARE(other->date(1), kDay);
    QCOMPARE(other->text(2).trimmed(), kUser);
    QCOMPARE(*Ledger::accountBalance(*db, QStringLiteral("17-10-001")), m("-1125.15"));
    QVERIFY(LedgerCheck::keptBalancesAgree(*db));
}

QTEST_GUILESS_MAIN(TestOpeningBalance)
#include "tst_openingbalance.moc"
