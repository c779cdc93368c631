#include "foundation/Logon.h"
#include "foundation/Lookups.h"
#include "foundation/PasswordHash.h"
#include "foundation/Session.h"
#include "foundation/Startup.h"
#include "support/TestDb.h"

#include <QtTest>

// The shared look-ups and the log-on check, on both engines.
class TestLookups : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void searchWords_data();
    void searchWords();
    void searchParty_data() { TestDb::addBackends(); }
    void searchParty();
    void partyLookups_data() { TestDb::addBackends(); }
    void partyLookups();
    void nextVoucherNo_data() { TestDb::addBackends(); }
    void nextVoucherNo();
    void letterhead_data() { TestDb::addBackends(); }
    void letterhead();
    void logon_data() { TestDb::addBackends(); }
    void logon();
    void rights_data() { TestDb::addBackends(); }
    void rights();
    void failureDelay();
    void reportZoom();
};

void TestLookups::searchWords_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("words");
    QTest::newRow("empty lists all") << "" << QStringList{""};
    QTest::newRow("blanks only") << "   " << QStringList{""};
    QTest::newRow("one word") << "ALI" << QStringList{"ALI"};
    QTest::newRow("one word, trailing blanks") << "ALI   " << QStringList{"ALI"};
    QTest::newRow("two words, many blanks") << "  ALI    TRADERS " << QStringList{"ALI", "TRADERS"};
    QTest::newRow("four words") << "A B C D" << QStringList{"A", "B", "C", "D"};
    QTest::newRow("five words use four") << "A B C D E" << QStringList{"A", "B", "C", "D"};
}

void TestLookups::searchWords()
{
    QFETCH(QString, text);
    QTEST(Lookups::searchWords(text), "words");
}

static void addParty(SessionConnection &db, const QString &code, const QString &name)
{
    db.execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES (?, ?)"), {code, name});
}

void TestLookups::searchParty()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    addParty(*db, QStringLiteral("17-10-001"), QStringLiteral("ZEBRA PRINTING HOUSE"));
    addParty(*db, QStringLiteral("17-10-002"), QStringLiteral("HOUSE OF ZEBRA"));
    addParty(*db, QStringLiteral("17-10-003"), QStringLiteral("ZEBRA 100% INKS"));
    addParty(*db, QStringLiteral("14-10-001"), QStringLiteral("O'NEIL PAPER"));

    auto names = [&](const QString &text) {
        QStringList out;
        for (const Row &r : Lookups::searchPartyByWords(*db, text))
            out << r.text(QStringLiteral("PartyName"));
        return out;
    };
    QCOMPARE(names(QStringLiteral("ZEBRA HOUSE")),
             QStringList({QStringLiteral("HOUSE OF ZEBRA"), QStringLiteral("ZEBRA PRINTING HOUSE")}));
    QCOMPARE(names(QStringLiteral("house zebra  ")), names(QStringLiteral("ZEBRA HOUSE")));
    QCOMPARE(names(QStringLiteral("ZEBRA PRINTING HOUSE ZEBRA NOTHING")), QStringList{QStringLiteral("ZEBRA PRINTING HOUSE")});
    QCOMPARE(names(QStringLiteral("O'NEIL")), QStringList{QStringLiteral("O'NEIL PAPER")});
    const int all = db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo")).toInt();
    QCOMPARE(names(QString()).size(), all);
    const QueryResult r = Lookups::searchPartyByWords(*db, QStringLiteral("PAPER"));
    QCOMPARE(r.size(), 1);
    QCOMPARE(r.first().text(QStringLiteral("PartyCode")), QStringLiteral("14-10-001"));
}

void TestLookups::partyLookups()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    addParty(*db, QStringLiteral("17-10-000"), QStringLiteral("CUSTOMERS"));
    addParty(*db, QStringLiteral("17-10-001"), QStringLiteral("ALPHA PRESS"));
    addParty(*db, QStringLiteral("21-10-001"), QStringLiteral("ELECTRICITY"));

    QCOMPARE(Lookups::codeFromName(*db, QStringLiteral("ALPHA PRESS")), std::optional<QString>(QStringLiteral("17-10-001")));
    QVERIFY(!Lookups::codeFromName(*db, QStringLiteral("NOBODY")));
    QCOMPARE(Lookups::nameFromCode(*db, QStringLiteral("17-10-001")), std::optional<QString>(QStringLiteral("ALPHA PRESS")));
    QVERIFY(!Lookups::nameFromCode(*db, QStringLiteral("__-__-___")));
    QVERIFY(Lookups::partyNameExists(*db, QStringLiteral("ALPHA PRESS")));
    QVERIFY(!Lookups::partyNameExists(*db, QStringLiteral("ALPHA")));

    // Parties only: no group heads, nothing past 18-99-999.
    QStringList listed;
    for (const Row &r : Lookups::partyList(*db))
        listed << r.text(QStringLiteral("PartyName"));
    QVERIFY(listed.contains(QStringLiteral("ALPHA PRESS")));
    QVERIFY(!listed.contains(QStringLiteral("CUSTOMERS")));
    QVERIFY(!listed.contains(QStringLiteral("ELECTRICITY")));
    QStringList sorted = listed;
    std::sort(sorted.begin(), sorted.end());
    QCOMPARE(listed, sorted);

    db->execute(QStringLiteral("DELETE FROM tblClosingDate"));
    QVERIFY(!Lookups::closingDate(*db));
    db->execute(QStringLiteral("INSERT INTO tblClosingDate (ClosingDate) VALUES (?)"), {QDate(2024, 6, 30)});
    QCOMPARE(Lookups::closingDate(*db), std::optional<QDate>(QDate(2024, 6, 30)));
}

void TestLookups::nextVoucherNo()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    QCOMPARE(Lookups::nextVoucherNo(*db, QStringLiteral("CP")), qint64(1));
    const QString insert = QStringLiteral(
        "INSERT INTO tblPartyBalance (VoucherType, VoucherNo, VDate, PartyCode, PartyName, PartyDR, PartyCR, "
        "PartyBalance) VALUES (?, ?, ?, '19-10-001', 'CASH IN HAND', 0, 0, 0)");
    db->execute(insert, {QStringLiteral("CP"), 9, QDate(2024, 1, 1)});
    db->execute(insert, {QStringLiteral("CP"), 41, QDate(2024, 1, 2)});
    db->execute(insert, {QStringLiteral("CR"), 500, QDate(2024, 1, 2)});
    QCOMPARE(Lookups::nextVoucherNo(*db, QStringLiteral("CP")), qint64(42));
    QCOMPARE(Lookups::nextVoucherNo(*db, QStringLiteral("CR")), qint64(501));
    QCOMPARE(Lookups::nextVoucherNo(*db, QStringLiteral("JV")), qint64(1));
}

void TestLookups::letterhead()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    db->execute(QStringLiteral("INSERT INTO tblLetterhead (TitleName, CompanyName, CompanyAddress, CompanyPhone, "
                               "CompanyEmail, CompanySaleTaxNo, CompanyNTN) VALUES (?, ?, ?, ?, ?, ?, ?)"),
                {QStringLiteral("PRESS"), QStringLiteral("THE PRESS"), QStringLiteral("1 MAIN ROAD"),
                 QStringLiteral("PH 1"), QStringLiteral("a@b.c       NTN #: 77"), QStringLiteral("12-34"),
                 QStringLiteral("77")});

    Session s;
    s.companyName = QStringLiteral("BEFORE");
    QVERIFY(!Lookups::letterhead(*db, QStringLiteral("press"))); // exact, case-sensitive
    QVERIFY(!Lookups::letterhead(*db, QStringLiteral("NO SUCH TITLE")));

    const auto l = Lookups::letterhead(*db, QStringLiteral("PRESS"));
    QVERIFY(l);
    Lookups::applyLetterhead(s, *l);
    QCOMPARE(s.currentTitle, QStringLiteral("PRESS"));
    QCOMPARE(s.companyName, QStringLiteral("THE PRESS"));
    QCOMPARE(s.companyEmail, QStringLiteral("a@b.c       NTN #: 77"));

    const auto blank = Lookups::letterhead(*db, QString());
    QVERIFY(blank);
    Lookups::applyLetterhead(s, *blank);
    QCOMPARE(s.companyName, QString());
    QCOMPARE(s.companyAddress, QString());
    QCOMPARE(s.companySaleTaxNo, QStringLiteral("-----------------"));
    QCOMPARE(s.companyNTN, QStringLiteral("---------"));
}

void TestLookups::logon()
{
    TESSEL_YEAR(year); // ADMIN / "secret"
    auto db = year.connect();
    db->execute(QStringLiteral("INSERT INTO tblLogon (UserName, Password, UserType) VALUES (?, ?, ?)"),
                {QStringLiteral("CLERK"), PasswordHash::hash(QStringLiteral("pass ")), QStringLiteral("COMMON USER")});

    struct Case { const char *user; const char *password; bool ok; const char *type; };
    const Case cases[] = {
        {"ADMIN", "secret", true, "ADMINISTRATOR"},
        {"  ADMIN  ", "secret", true, "ADMINISTRATOR"},   // the name is trimmed
        {"ADMIN", "secret ", false, ""},                  // the password is not
        {"ADMIN", "SECRET", false, ""},
        {"ADMIN", "", false, ""},
        {"NOBODY", "secret", false, ""},
        {"CLERK", "pass ", true, "COMMON USER"},
        {"CLERK", "pass", false, ""},
    };
    for (const Case &c : cases) {
        const Logon::Result r = Logon::check(*db, QString::fromLatin1(c.user), QString::fromLatin1(c.password));
        QVERIFY2(r.ok == c.ok, c.user);
        QCOMPARE(r.userType, QString::fromLatin1(c.type));
        QCOMPARE(r.userName, QString::fromLatin1(c.user).trimmed());
    }
    // Nothing readable is stored.
    const QString stored = db->scalar(QStringLiteral("SELECT Password FROM tblLogon WHERE UserName = 'CLERK'")).toString();
    QVERIFY(!stored.contains(QLatin1String("pass ")));
}

void TestLookups::rights()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    QCOMPARE(Logon::disabledMenus(*db, QStringLiteral("ADMIN")), QStringList());
    db->execute(QStringLiteral("INSERT INTO tblUserRights (USERNAME, Menu) VALUES (?, ?)"),
                {QStringLiteral("ADMIN"), QString()});
    QCOMPARE(Logon::disabledMenus(*db, QStringLiteral("ADMIN")), QStringList());
    db->execute(QStringLiteral("UPDATE tblUserRights SET Menu = ?"),
                {QStringLiteral("mnuStock,mnuPPartyInfo, mnuURestore,,")});
    QCOMPARE(Logon::disabledMenus(*db, QStringLiteral("ADMIN")),
             QStringList({QStringLiteral("mnuStock"), QStringLiteral("mnuPPartyInfo"), QStringLiteral("mnuURestore")}));
    QCOMPARE(Logon::disabledMenus(*db, QStringLiteral("CLERK")), QStringList());
}

void TestLookups::failureDelay()
{
    QCOMPARE(Logon::delayMsAfterFailures(1), 0);
    QCOMPARE(Logon::delayMsAfterFailures(2), 0);
    int previous = 0;
    for (int n = 3; n < 20; ++n) {
        const int d = Logon::delayMsAfterFailures(n);
        QVERIFY(d >= previous);
        QVERIFY(d > 0 && d <= 30000);
        previous = d;
    }
    QVERIFY(Logon::delayMsAfterFailures(4) > Logon::delayMsAfterFailures(3));
}

void TestLookups::reportZoom()
{
    QCOMPARE(Startup::reportZoom(1024), 118);
    QCOMPARE(Startup::reportZoom(1366), 158);
    QCOMPARE(Startup::reportZoom(1920), 222);
}

QTEST_MAIN(TestLookups)
#include "tst_lookups.moc"
