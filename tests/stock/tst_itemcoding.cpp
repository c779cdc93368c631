#include "stock/ItemCoding.h"
#include "foundation/SessionConnection.h"
#include "support/TestDb.h"

#include <QtTest>

namespace Msg = ItemCoding::Msg;
using ItemCoding::Item;

namespace {

const QDate kEntry(2026, 3, 1);

Item item(const QString &code, const QString &name, qint64 cost = 0, qint64 sale = 0)
{
    Item i;
    i.code = code;
    i.name = name;
    i.costRate = Money::fromCents(cost);
    i.saleRate = Money::fromCents(sale);
    return i;
}

void addBase(SessionConnection &db)
{
    QVERIFY(ItemCoding::add(db, item("10-01-001", "ART PAPER 80G", 1250, 1575), "ADMIN", kEntry).ok);
    QVERIFY(ItemCoding::add(db, item("10-01-002", "ART PAPER 100G", 1500, 1890), "ADMIN", kEntry).ok);
    QVERIFY(ItemCoding::add(db, item("20-05-001", "OFFSET INK BLACK"), "ADMIN", kEntry).ok);
}

} // namespace

class TestItemCoding : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void refusals_data();
    void refusals();
    void modifyRewritesByOldCode_data() { TestDb::addBackends(); }
    void modifyRewritesByOldCode();
    void hints_data() { TestDb::addBackends(); }
    void hints();
    void duplicateFromAnotherWorkstation();
};

void TestItemCoding::refusals_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<bool>("modify"); // else a new item
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("message");
    for (const char *b : {"sqlite", "postgres"}) {
        const QByteArray p = QByteArray(b) + ": add, ";
        QTest::newRow(p + "empty name first") << b << false << "__-__-___" << "  " << Msg::nameMissing();
        QTest::newRow(p + "empty code") << b << false << "__-__-___" << "NEW ITEM" << Msg::codeMissing();
        // Adding tests only for the fully empty mask.
        QTest::newRow(p + "partly typed code passes") << b << false << "30-1_-___" << "NEW ITEM" << Msg::added();
        QTest::newRow(p + "code taken") << b << false << "10-01-001" << "NEW ITEM" << Msg::codeExists();
        QTest::newRow(p + "name taken") << b << false << "10-01-009" << "ART PAPER 80G" << Msg::nameExists();
        QTest::newRow(p + "name taken, trailing blanks") << b << false << "10-01-009" << "ART PAPER 80G  " << Msg::nameExists();
        QTest::newRow(p + "new") << b << false << "10-01-003" << "ART PAPER 120G" << Msg::added();
        const QByteArray q = QByteArray(b) + ": modify, ";
        QTest::newRow(q + "unchanged passes") << b << true << "10-01-001" << "ART PAPER 80G" << Msg::modified();
        QTest::newRow(q + "empty name") << b << true << "10-01-001" << "" << Msg::nameMissing();
        QTest::newRow(q + "empty code") << b << true << "__-__-___" << "ART PAPER 80G" << Msg::codeMissing();
        // Changing refuses any place left blank.
        QTest::newRow(q + "partly typed code") << b << true << "10-01-00_" << "ART PAPER 80G" << Msg::codeIncomplete();
        QTest::newRow(q + "another item's code") << b << true << "10-01-002" << "ART PAPER 80G" << Msg::codeExistsOnModify();
        QTest::newRow(q + "another item's name") << b << true << "10-01-001" << "OFFSET INK BLACK" << Msg::nameExistsOnModify();
        QTest::newRow(q + "new code and name") << b << true << "10-02-001" << "ART CARD 300G" << Msg::modified();
    }
}

void TestItemCoding::refusals()
{
    TESSEL_YEAR(year);
    QFETCH(bool, modify);
    QFETCH(QString, code);
    QFETCH(QString, name);
    QFETCH(QString, message);
    auto db = year.connect();
    addBase(*db);
    if (modify) {
        const Outcome o = ItemCoding::modify(*db, "10-01-001", "ART PAPER 80G", item(code, name, 1300, 1600), "CLERK", kEntry);
        QCOMPARE(o.message, message);
        QCOMPARE(ItemCoding::itemByCode(*db, "10-01-001").has_value(), !o.ok || code == "10-01-001");
        return;
    }
    const Outcome o = ItemCoding::add(*db, item(code, name, 999, 1001), "CLERK", kEntry);
    QCOMPARE(o.message, message);
    const int rows = int(db->scalar("SELECT COUNT(*) FROM tblItemCoding").toLongLong());
    QCOMPARE(rows, o.ok ? 4 : 3);
    if (o.ok) {
        const auto i = ItemCoding::itemByCode(*db, code);
        QVERIFY(i);
        QCOMPARE(i->name, name.trimmed());
        QCOMPARE(i->costRate, Money::fromCents(999));
        QCOMPARE(i->saleRate, Money::fromCents(1001));
        QCOMPARE(i->unitType, QStringLiteral("UNIT"));
    }
}

void TestItemCoding::modifyRewritesByOldCode()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    addBase(*db);
    Item changed = item("10-01-005", "ART PAPER 90G", 1325, 1650);
    changed.unitType = "KG";
    QVERIFY(ItemCoding::modify(*db, "10-01-001", "ART PAPER 80G", changed, "CLERK", kEntry).ok);
    QVERIFY(!ItemCoding::itemByCode(*db, "10-01-001"));
    const auto i = ItemCoding::itemByName(*db, "ART PAPER 90G");
    QVERIFY(i);
    QCOMPARE(i->code, QStringLiteral("10-01-005"));
    QCOMPARE(i->costRate, Money::fromCents(1325));
    QCOMPARE(i->unitType, QStringLiteral("KG"));
    QCOMPARE(db->scalar("SELECT COUNT(*) FROM tblItemCoding").toLongLong(), 3);
    // An old code that no longer stands is refused, not reported as done.
    QCOMPARE(ItemCoding::modify(*db, "10-01-001", "ART PAPER 80G", item("10-01-007", "X"), "CLERK", kEntry).message,
             Msg::notFound());
}

void TestItemCoding::hints()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    QCOMPARE(ItemCoding::lastCodeUnder(*db, "10-01-___"), QString());
    addBase(*db);
    QCOMPARE(ItemCoding::lastCodeUnder(*db, "10-01-___"), QStringLiteral("10-01-002"));
    QCOMPARE(ItemCoding::lastCodeUnder(*db, "__-__-___"), QStringLiteral("20-05-001"));
    QCOMPARE(ItemCoding::lastCodeUnder(*db, "10-02-___"), QString());
    const QueryResult r = ItemCoding::itemsNamed(*db, "ART PAPER");
    QCOMPARE(r.size(), 2);
    QCOMPARE(r.at(0).text("ItemCode").trimmed(), QStringLiteral("10-01-001"));
    QCOMPARE(r.at(1).money("SaleRate"), Money::fromCents(1890));
    QCOMPARE(ItemCoding::names(*db), (QStringList{"ART PAPER 100G", "ART PAPER 80G", "OFFSET INK BLACK"}));
}

// Another workstation saves the same name after this one's check and
// before its insert: the database's key refuses it, in the screen's words.
void TestItemCoding::duplicateFromAnotherWorkstation()
{
    if (!TestDb::postgresConfigured())
        QSKIP("no PostgreSQL test server (run the test script)");
    TestDb::Year year(QStringLiteral("postgres"));
    auto db = year.connect();
    auto other = year.connect();
    addBase(*db);
    db->setStatementHook([&](const QString &sql) {
        if (sql.contains(QLatin1String("INSERT INTO tblItemCoding")))
            ItemCoding::add(*other, item("40-01-001", "PLATE CTP "), "OTHER", kEntry);
    });
    const Outcome o = ItemCoding::add(*db, item("40-01-002", "PLATE CTP"), "CLERK", kEntry);
    db->setStatementHook({});
    QCOMPARE(o.message, Msg::nameExists());
    QCOMPARE(db->scalar("SELECT COUNT(*) FROM tblItemCoding WHERE ItemName = 'PLATE CTP'").toLongLong(), 1);
    QVERIFY(ItemCoding::itemByCode(*db, "40-01-001"));
    QVERIFY(!ItemCoding::itemByCode(*db, "40-01-002"));
}

QTEST_GUILESS_MAIN(TestItemCoding)
#include "tst_itemcoding.moc"
