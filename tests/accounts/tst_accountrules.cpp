#include "accounts/AccountRules.h"
#include "accounts/CareOfList.h"
#include "accounts/DebitCreditList.h"
#include "accounts/TitleList.h"
#include "foundation/Lookups.h"
#include "foundation/Session.h"
#include "foundation/SessionConnection.h"
#include "support/TestDb.h"

#include <QtTest>
#include <atomic>
#include <thread>

using Accounts::NewAccount;
namespace Msg = Accounts::Msg;

namespace {

const QDate kEntry(2026, 3, 1);

NewAccount customer(const QString &code, const QString &name, const QDate &date)
{
    NewAccount a;
    a.code = code;
    a.name = name;
    a.address = QStringLiteral("  12 MILL ROAD ");
    a.phone = QStringLiteral(" 042-111 ");
    a.fax = QStringLiteral("042-111 222,3");
    a.email = QStringLiteral("a@b.c ");
    a.description = QStringLiteral("KEPT AS TYPED ");
    a.saleTaxNo = QStringLiteral("__-__-____-___-__");
    a.ntn = QStringLiteral("_______-_");
    a.dueDays = 30;
    a.date = date;
    a.balance = Money::fromCents(0);
    return a;
}

QDate closingOf(SessionConnection &db)
{
    return *Lookups::closingDate(db);
}

using TestDb::count;

} // namespace

class TestAccountRules : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void refusals_data();
    void refusals();
    void writesThreeRows_data() { TestDb::addBackends(); }
    void writesThreeRows();
    void openingSide_data();
    void openingSide();
    void failedSaveLeavesNothing_data() { TestDb::addBackends(); }
    void failedSaveLeavesNothing();
    void lastCodeAndNearNames_data() { TestDb::addBackends(); }
    void lastCodeAndNearNames();
    void raceOnSameCode();
    void debitCreditList_data() { TestDb::addBackends(); }
    void debitCreditList();
    void careOf_data() { TestDb::addBackends(); }
    void careOf();
    void nearNames_data();
    void nearNames();
    void titlesAndLetterheads_data() { TestDb::addBackends(); }
    void titlesAndLetterheads();
};

void TestAccountRules::refusals_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("balanceGiven");
    QTest::addColumn<int>("dayOffset"); // from the closing date
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("field");

    const QString code = QStringLiteral("mskPartyCode"), name = QStringLiteral("txtPartyName");
    for (const char *b : {"sqlite", "postgres"}) {
        const QByteArray p = QByteArray(b) + ": ";
        // The code is looked at before the name: a blank name behind an
        // unfinished code gets the code's message.
        QTest::newRow(p + "code with a blank place") << b << "17-10-0_1" << "" << true << 0 << Msg::codeMissing() << code;
        QTest::newRow(p + "empty code") << b << "__-__-___" << "NEW PARTY" << true << 0 << Msg::codeMissing() << code;
        QTest::newRow(p + "blank name") << b << "17-10-001" << "   " << true << 0 << Msg::nameMissing() << name;
        QTest::newRow(p + "no balance") << b << "17-10-001" << "NEW PARTY" << false << 0 << Msg::balanceMissing()
                                        << QStringLiteral("txtBalance");
        QTest::newRow(p + "code taken") << b << "19-10-001" << "NEW PARTY" << true << 0 << Msg::codeExists() << code;
        QTest::newRow(p + "code and name taken") << b << "19-10-001" << "CASH IN HAND" << true << 0 << Msg::codeExists()
                                                 << code;
        QTest::newRow(p + "name taken") << b << "17-10-001" << "CASH IN HAND" << true << 0 << Msg::nameExists() << name;
        QTest::newRow(p + "name taken, blanks around") << b << "17-10-001" << " CASH IN HAND  " << true << 0
                                                       << Msg::nameExists() << name;
        QTest::newRow(p + "day before closing") << b << "17-10-001" << "NEW PARTY" << true << -1 << Msg::dateClosed()
                                                << QStringLiteral("mskDate");
        QTest::newRow(p + "closing date itself") << b << "17-10-001" << "NEW PARTY" << true << 0 << QString() << QString();
    }
}

void TestAccountRules::refusals()
{
    TESSEL_YEAR(year);
    QFETCH(QString, code);
    QFETCH(QString, name);
    QFETCH(bool, balanceGiven);
    QFETCH(int, dayOffset);
    QFETCH(QString, message);
    QFETCH(QString, field);
    auto db = year.connect();
    NewAccount a = customer(code, name, closingOf(*db).addDays(dayOffset));
    if (!balanceGiven)
        a.balance.reset();
    const int before = count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo"));
    const Outcome o = Accounts::createAccount(*db, a, QStringLiteral("ADMIN"), kEntry);
    if (message.isEmpty()) {
        QVERIFY2(o.ok, qPrintable(o.message));
        QCOMPARE(o.message, Msg::added());
        QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo")), before + 1);
        return;
    }
    QVERIFY(!o.ok);
    QCOMPARE(o.message, message);
    QCOMPARE(o.field, field);
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo")), before);
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")), 0);
}

void TestAccountRules::writesThreeRows()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    const QDate date = closingOf(*db).addDays(3);
    NewAccount a = customer(QStringLiteral("17-10-001"), QStringLiteral("  ABC PRINTERS "), date);
    a.careOf = QStringLiteral("MR ALI");
    QVERIFY(Accounts::createAccount(*db, a, QStringLiteral("CLERK"), kEntry).ok);

    const auto info = db->selectOne(QStringLiteral("SELECT * FROM tblPartyInfo WHERE PartyCode = ?"), {a.code});
    QVERIFY(info);
    QCOMPARE(info->text("PartyName"), QStringLiteral("ABC PRINTERS"));
    QCOMPARE(info->text("PartyAddress"), QStringLiteral("12 MILL ROAD"));
    QCOMPARE(info->text("PartyPhone"), QStringLiteral("042-111"));
    QCOMPARE(info->text("PartyEmail"), QStringLiteral("a@b.c"));
    QCOMPARE(info->text("PartyDesc"), QStringLiteral("KEPT AS TYPED "));
    // An unfilled mask is stored as the mask, not as an empty text.
    QCOMPARE(info->text("PartySaleTaxNo"), QStringLiteral("__-__-____-___-__"));
    QCOMPARE(info->text("PartyNTN"), QStringLiteral("_______-_"));
    QCOMPARE(info->text("CareOf").trimmed(), QStringLiteral("MR ALI"));
    QCOMPARE(info->integer("DueDays"), 30);
    QCOMPARE(info->text("UserName").trimmed(), QStringLiteral("CLERK"));
    QCOMPARE(info->date("EntryDate"), kEntry);

    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblDBCR WHERE PartyCode = ?"), {a.code}), 1);

    // A zero balance still gets its opening row: 0, 0, 0.
    const QueryResult rows = db->select(QStringLiteral("SELECT * FROM tblPartyBalance WHERE PartyCode = ?"), {a.code});
    QCOMPARE(rows.size(), 1);
    const Row &r = rows.first();
    QCOMPARE(r.text("VoucherType").trimmed(), QStringLiteral("JV"));
    QCOMPARE(r.integer("VoucherNo", -1), 0);
    QCOMPARE(r.date("VDate"), date);
    QCOMPARE(r.text("PartyName").trimmed(), QStringLiteral("ABC PRINTERS"));
    QCOMPARE(r.money("PartyDR"), Money());
    QCOMPARE(r.money("PartyCR"), Money());
    QCOMPARE(r.money("PartyBalance"), Money());
    QCOMPARE(r.text("PartyDesc"), QStringLiteral("OPENING BALANCE"));
    QVERIFY(!r.isNull("CareOf"));
    QCOMPARE(r.text("CareOf").trimmed(), QString());

    // "ABC " and "ABC" are one name; the stored key with trailing blanks
    // collides with the trimmed one too.
    NewAccount again = customer(QStringLiteral("17-10-002"), QStringLiteral("ABC PRINTERS   "), date);
    QCOMPARE(Accounts::createAccount(*db, again, QStringLiteral("CLERK"), kEntry).message, Msg::nameExists());
    db->execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES (?, ?)"),
                {QStringLiteral("17-10-009"), QStringLiteral("XYZ ")});
    again.name = QStringLiteral("XYZ");
    QCOMPARE(Accounts::createAccount(*db, again, QStringLiteral("CLERK"), kEntry).message, Msg::nameExists());
}

void TestAccountRules::openingSide_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("side");
    QTest::addColumn<QString>("amount");
    QTest::addColumn<qint64>("dr");
    QTest::addColumn<qint64>("cr");
    QTest::addColumn<bool>("hasRow");
    for (const char *b : {"sqlite", "postgres"}) {
        const QByteArray p = QByteArray(b) + ": ";
        QTest::newRow(p + "DR") << b << "DR" << "1250.75" << qint64(125075) << qint64(0) << true;
        QTest::newRow(p + "CR") << b << "CR" << "99999999999.99" << qint64(0) << qint64(9999999999999) << true;
        QTest::newRow(p + "CR cents") << b << "CR" << ".05" << qint64(0) << qint64(5) << true;
        QTest::newRow(p + "other side") << b << "" << "10" << qint64(0) << qint64(0) << false;
    }
}

void TestAccountRules::openingSide()
{
    TESSEL_YEAR(year);
    QFETCH(QString, side);
    QFETCH(QString, amount);
    QFETCH(qint64, dr);
    QFETCH(qint64, cr);
    QFETCH(bool, hasRow);
    auto db = year.connect();
    NewAccount a = customer(QStringLiteral("14-10-001"), QStringLiteral("PAPER HOUSE"), closingOf(*db));
    a.side = side;
    a.balance = Money::parse(amount);
    const Outcome o = Accounts::createAccount(*db, a, QStringLiteral("ADMIN"), kEntry);
    QVERIFY(o.ok);
    const auto r = db->selectOne(QStringLiteral("SELECT PartyDR, PartyCR, PartyBalance FROM tblPartyBalance "
                                                "WHERE PartyCode = ? AND PartyDesc = 'OPENING BALANCE'"),
                                 {a.code});
    QCOMPARE(r.has_value(), hasRow);
    if (!hasRow)
        return;
    QCOMPARE(r->money("PartyDR")->cents(), dr);
    QCOMPARE(r->money("PartyCR")->cents(), cr);
    QCOMPARE(r->money("PartyBalance")->cents(), dr - cr);
}

void TestAccountRules::failedSaveLeavesNothing()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    db->setStatementHook([](const QString &sql) {
        if (sql.contains(QLatin1String("INSERT INTO tblPartyBalance")))
            throw DbError(QStringLiteral("disk full"), sql);
    });
    bool thrown = false;
    try {
        Accounts::createAccount(*db, customer(QStringLiteral("17-10-001"), QStringLiteral("HALF SAVED"), closingOf(*db)),
                                QStringLiteral("ADMIN"), kEntry);
    } catch (const DbError &e) {
        thrown = true;
        QCOMPARE(e.driverText(), QStringLiteral("disk full"));
    }
    db->setStatementHook({});
    QVERIFY(thrown);
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo WHERE PartyCode = '17-10-001'")), 0);
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblDBCR WHERE PartyCode = '17-10-001'")), 0);
    // And the session is still usable.
    QVERIFY(Accounts::createAccount(*db, customer(QStringLiteral("17-10-001"), QStringLiteral("HALF SAVED"), closingOf(*db)),
                                    QStringLiteral("ADMIN"), kEntry).ok);
}

void TestAccountRules::lastCodeAndNearNames()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    const QDate d = closingOf(*db);
    for (const auto &p : {std::pair{"17-10-000", "CUSTOMERS"}, {"17-10-001", "ALPHA PRESS"}, {"17-10-012", "BETA PRESS"},
                          {"17-20-003", "GAMMA BOOKS"}})
        QVERIFY(Accounts::createAccount(*db, customer(QString::fromLatin1(p.first), QString::fromLatin1(p.second), d),
                                        QStringLiteral("ADMIN"), kEntry).ok);

    QCOMPARE(Accounts::lastCodeUnder(*db, QStringLiteral("17-10-___")), QStringLiteral("17-10-012"));
    QCOMPARE(Accounts::lastCodeUnder(*db, QStringLiteral("17-10-0__")), QStringLiteral("17-10-012"));
    // Underscores still in the prefix match any digit.
    QCOMPARE(Accounts::lastCodeUnder(*db, QStringLiteral("17-__-___")), QStringLiteral("17-20-003"));
    QCOMPARE(Accounts::lastCodeUnder(*db, QStringLiteral("1_-1_-___")), QStringLiteral("19-10-001"));
    QCOMPARE(Accounts::lastCodeUnder(*db, QStringLiteral("55-10-___")), QString());

    QStringList codes;
    for (const Row &r : Accounts::accountsNamed(*db, QStringLiteral("PRESS")))
        codes << r.text("PartyCode").trimmed();
    QCOMPARE(codes, (QStringList{"17-10-001", "17-10-012"}));
    QCOMPARE(Accounts::accountsNamed(*db, QString()).size(), 9 + 4);
}

void TestAccountRules::nearNames_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<bool>("near");
    QTest::newRow("words in another order") << "PRESS ALPHA" << "ALPHA PRESS" << true;
    QTest::newRow("a trailing blank") << "ALPHA PRESS " << "ALPHA PRESS" << true;
    QTest::newRow("blanks between") << "ALPHA  PRESS" << "ALPHA PRESS" << true;
    QTest::newRow("one letter changed") << "ALPHA PRES5" << "ALPHA PRESS" << true;
    QTest::newRow("one letter left out") << "ALPA PRESS" << "ALPHA PRESS" << true;
    QTest::newRow("one letter more") << "ALPHA PRESSS" << "ALPHA PRESS" << true;
    QTest::newRow("lower case") << "alpha press" << "ALPHA PRESS" << true;
    QTest::newRow("two letters off") << "ALPHA PRXSX" << "ALPHA PRESS" << false;
    QTest::newRow("another word") << "ALPHA BOOKS" << "ALPHA PRESS" << false;
    QTest::newRow("empty") << "" << "ALPHA PRESS" << false;
}

void TestAccountRules::nearNames()
{
    QFETCH(QString, typed);
    QFETCH(QString, stored);
    QFETCH(bool, near);
    QCOMPARE(Accounts::nearlySame(typed, stored), near);
    QCOMPARE(Accounts::nearlySame(stored, typed), near);
}

// Two workstations save the same new code at the same moment: one account
// stands afterwards and the other is told the code exists.
void TestAccountRules::raceOnSameCode()
{
    if (!TestDb::postgresConfigured())
        QSKIP("no PostgreSQL test server (run the test script)");
    TestDb::Year year(QStringLiteral("postgres"));
    // The year's own closing date: the random year name says nothing of it.
    const QDate d = *Lookups::closingDate(*year.connect());
    for (int round = 0; round < 5; ++round) {
        const QString code = QStringLiteral("17-10-%1").arg(100 + round, 3, 10, QLatin1Char('0'));
        std::atomic<int> ready{0};
        Outcome results[2];
        QString errors[2];
        auto work = [&](int i) {
            try {
                auto db = year.connect();
                ++ready;
                while (ready.load() < 2) {
                }
                results[i] = Accounts::createAccount(
                    *db, customer(code, QStringLiteral("RACE %1 %2").arg(round).arg(i), d), QStringLiteral("W%1").arg(i),
                    kEntry);
            } catch (const DbError &e) {
                errors[i] = e.driverText();
            }
        };
        std::thread t0(work, 0), t1(work, 1);
        t0.join();
        t1.join();
        QVERIFY2(errors[0].isEmpty() && errors[1].isEmpty(), qPrintable(errors[0] + errors[1]));
        QCOMPARE(int(results[0].ok) + int(results[1].ok), 1);
        const Outcome &refused = results[0].ok ? results[1] : results[0];
        QCOMPARE(refused.message, Msg::codeExists());
        auto db = year.connect();
        QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo WHERE PartyCode = ?"), {code}), 1);
        QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE PartyCode = ?"), {code}), 1);
        QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblDBCR WHERE PartyCode = ?"), {code}), 1);
    }
}

void TestAccountRules::debitCreditList()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    namespace M = DebitCreditList::Msg;
    QCOMPARE(DebitCreditList::add(*db, QStringLiteral("17-1_-001")).message, M::codeMissing());
    // A heading's code, and a code no account has, are both taken.
    QCOMPARE(DebitCreditList::add(*db, QStringLiteral("17-10-000")).message, M::added());
    QCOMPARE(DebitCreditList::add(*db, QStringLiteral("17-10-000")).message, M::exists());
    QCOMPARE(DebitCreditList::remove(*db, QStringLiteral("17-10-000")).message, M::deleted());
    QCOMPARE(DebitCreditList::remove(*db, QStringLiteral("17-10-000")).message, M::notListed());
    QVERIFY(!DebitCreditList::remove(*db, QStringLiteral("17-10-000")).ok);
    QCOMPARE(DebitCreditList::remove(*db, QStringLiteral("__-__-___")).message, M::codeMissing());
    // A new account is on the list already.
    QVERIFY(Accounts::createAccount(*db, customer(QStringLiteral("17-10-001"), QStringLiteral("LISTED"), closingOf(*db)),
                                    QStringLiteral("ADMIN"), kEntry).ok);
    QCOMPARE(DebitCreditList::add(*db, QStringLiteral("17-10-001")).message, M::exists());
    // The list takes any complete code, so it may hold the code of an
    // account made later: the account still saves, the list keeps one row.
    QVERIFY(DebitCreditList::add(*db, QStringLiteral("17-10-005")).ok);
    QVERIFY(Accounts::createAccount(*db, customer(QStringLiteral("17-10-005"), QStringLiteral("LATE PARTY"), closingOf(*db)),
                                    QStringLiteral("ADMIN"), kEntry).ok);
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblDBCR WHERE PartyCode = '17-10-005'")), 1);
}

void TestAccountRules::careOf()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    namespace M = CareOfList::Msg;
    QCOMPARE(CareOfList::add(*db, QString(), QStringLiteral("AGENT"), QStringLiteral("ADMIN")).message, M::nameMissing());
    QCOMPARE(CareOfList::add(*db, QStringLiteral("MR ALI"), QStringLiteral("  "), QStringLiteral("ADMIN")).message, M::designationMissing());
    QCOMPARE(CareOfList::add(*db, QStringLiteral("MR ALI"), QStringLiteral("AGENT"), QStringLiteral("ADMIN")).message,
             M::created());
    // A name already listed is refused before the designation is looked at.
    const Outcome again = CareOfList::add(*db, QStringLiteral("MR ALI "), QString(), QStringLiteral("ADMIN"));
    QCOMPARE(again.message, M::exists());
    QCOMPARE(again.field, QStringLiteral("txtName"));
    QVERIFY(CareOfList::add(*db, QStringLiteral("MR BABAR"), QStringLiteral("BROKER"), QStringLiteral("ADMIN")).ok);
    QCOMPARE(CareOfList::names(*db), (QStringList{"MR ALI", "MR BABAR"}));
    QCOMPARE(CareOfList::persons(*db, QStringLiteral("BAB")).size(), 1);
    QCOMPARE(CareOfList::persons(*db).size(), 2);
}

void TestAccountRules::titlesAndLetterheads()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    namespace M = TitleList::Msg;
    // The empty title and one of blanks are titles like any other: one row.
    QCOMPARE(TitleList::add(*db, QString()).message, M::saved());
    QCOMPARE(TitleList::add(*db, QStringLiteral("    ")).message, M::exists());
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblTitleName")), 1);
    db->execute(QStringLiteral("DELETE FROM tblTitleName"));
    QCOMPARE(TitleList::add(*db, QStringLiteral("NOOR PRINTERS")).message, M::saved());
    QCOMPARE(TitleList::add(*db, QStringLiteral("NOOR PRINTERS ")).message, M::exists());
    QCOMPARE(TitleList::add(*db, QStringLiteral("ZEST PACK")).message, M::saved());
    QCOMPARE(TitleList::names(*db), (QStringList{"NOOR PRINTERS", "ZEST PACK"}));

    TitleList::Letterhead l;
    l.titleName = QStringLiteral("NOOR PRINTERS");
    l.companyName = QStringLiteral("NOOR PRINTERS (PVT) LTD");
    l.companyNTN = QStringLiteral("1234567-8");
    QCOMPARE(TitleList::saveLetterhead(*db, l).message, M::letterheadSaved());
    l.companyAddress = QStringLiteral("5 PRESS STREET");
    QVERIFY(TitleList::saveLetterhead(*db, l).ok); // rewrites, no second row
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblLetterhead")), 1);
    l.titleName = QStringLiteral("UNKNOWN");
    const Outcome unknown = TitleList::saveLetterhead(*db, l);
    QVERIFY(!unknown.ok);
    QCOMPARE(unknown.message, QString()); // no words the system does not have
    QCOMPARE(unknown.field, QStringLiteral("cmbTitleName"));

    Session s;
    QVERIFY(TitleList::applyLetterhead(*db, QStringLiteral("NOOR PRINTERS"), s));
    QCOMPARE(s.currentTitle, QStringLiteral("NOOR PRINTERS"));
    QCOMPARE(s.companyName, QStringLiteral("NOOR PRINTERS (PVT) LTD"));
    QCOMPARE(s.companyAddress, QStringLiteral("5 PRESS STREET"));
    // A title without a letterhead leaves the working title and the
    // company lines as they were.
    QVERIFY(!TitleList::applyLetterhead(*db, QStringLiteral("ZEST PACK"), s));
    QCOMPARE(s.currentTitle, QStringLiteral("NOOR PRINTERS"));
    QCOMPARE(s.companyName, QStringLiteral("NOOR PRINTERS (PVT) LTD"));
    // The empty title leaves lines to fill by hand.
    QVERIFY(TitleList::applyLetterhead(*db, QString(), s));
    QCOMPARE(s.companyName, QString());
    QCOMPARE(s.companySaleTaxNo, QStringLiteral("-----------------"));
    QCOMPARE(s.companyNTN, QStringLiteral("---------"));
}

QTEST_GUILESS_MAIN(TestAccountRules)
#include "tst_accountrules.moc"
