// Consumable receipts: entered, changed and removed through the rules, the
// staging of the modify screen private to each workstation, and the stock
// report and stock in hand against the rows.
#include "stock/Consumables.h"
#include "stock/ConsumablesDemo.h"
#include "stock/EmployeeStock.h"
#include "foundation/Lookups.h"
#include "foundation/SessionConnection.h"
#include "reports/ReportFrame.h"
#include "support/TestDb.h"
#include "vouchers/DemoGenerator.h"

#include <QtTest>

using Consumables::Item;
using Consumables::Receipt;
namespace Msg = Consumables::Msg;

namespace {

void addAccounts(SessionConnection &db)
{
    db.execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES ('14-10-000', 'SUPPLIERS'), "
                              "('14-10-001', 'PAPER HOUSE'), ('14-10-002', 'INK CORPORATION'), "
                              "('16-10-001', 'ASLAM PRESSMAN')"));
}

// A day after the year's own closing date.
QDate openDay(SessionConnection &db, int days = 1) { return Lookups::closingDate(db)->addDays(days); }

Receipt receipt(SessionConnection &db, Item item, const QString &brand, const QString &type, qint64 units,
                const QString &price, int day = 1)
{
    Receipt r;
    r.item = item;
    r.brand = brand;
    r.type = type;
    r.partyCode = QStringLiteral("14-10-001");
    r.partyName = QStringLiteral("PAPER HOUSE");
    r.units = units;
    r.unitPrice = *Money::parse(price);
    r.date = openDay(db, day);
    return r;
}

qint64 add(SessionConnection &db, const Receipt &r)
{
    const Outcome o = Consumables::addReceipt(db, r);
    if (!o.ok)
        qWarning() << o.message;
    return o.ok ? o.number : 0;
}

void issue(SessionConnection &db, Item item, const QString &brand, const QString &type, qint64 units)
{
    const Outcome o = EmployeeStock::issue(db, {item, brand, type, QStringLiteral("ASLAM PRESSMAN"), QStringLiteral("16-10-001"),
                                                QString::number(units),
                                                openDay(db, 40).toString(QStringLiteral("dd/MM/yyyy"))});
    QVERIFY2(o.ok, qPrintable(o.message));
}

} // namespace

class TestConsumables : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void receiptRefusals_data();
    void receiptRefusals();
    void listsAndLoad_data() { TestDb::addBackends(); }
    void listsAndLoad();
    void saveChanges_data() { TestDb::addBackends(); }
    void saveChanges();
    void changeNeverBelowIssued_data() { TestDb::addBackends(); }
    void changeNeverBelowIssued();
    void stagingIsPrivate_data() { TestDb::addBackends(); }
    void stagingIsPrivate();
    void stockReportEqualsRows_data() { TestDb::addBackends(); }
    void stockReportEqualsRows();
    void demoYearHoldsConsumables();
};

void TestConsumables::receiptRefusals_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("change");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("field");
    const QString closed = QStringLiteral("Sorry, you enter wrong date because data has closed at this date");
    for (const char *b : {"sqlite", "postgres"}) {
        const QByteArray p = QByteArray(b) + ": ";
        QTest::newRow(p + "saved") << b << "" << Msg::saved() << "";
        QTest::newRow(p + "no brand") << b << "brand" << Msg::brandMissing() << "cmbBrandName";
        QTest::newRow(p + "no type") << b << "type" << Msg::typeMissing() << "cmbType";
        QTest::newRow(p + "no supplier name") << b << "party" << Msg::partyMissing() << "cmbPartyName";
        QTest::newRow(p + "no units") << b << "units" << Msg::unitsMissing() << "txtUnits";
        QTest::newRow(p + "negative units") << b << "negative" << Msg::unitsMissing() << "txtUnits";
        QTest::newRow(p + "negative price") << b << "price" << Msg::unitPriceMissing() << "txtUnitPrice";
        QTest::newRow(p + "unknown supplier") << b << "unknown" << Msg::partyNotFound() << "cmbPartyName";
        QTest::newRow(p + "a heading") << b << "heading" << Msg::partyNotFound() << "cmbPartyName";
        QTest::newRow(p + "on the closing date") << b << "closed" << closed << "mskDate";
        QTest::newRow(p + "no date") << b << "nodate" << QStringLiteral("Date is missing, please enter proper date")
                                     << "mskDate";
    }
}

void TestConsumables::receiptRefusals()
{
    TESSEL_YEAR(year);
    QFETCH(QString, change);
    QFETCH(QString, message);
    QFETCH(QString, field);
    auto db = year.connect();
    addAccounts(*db);
    Receipt r = receipt(*db, Item::Plate, QStringLiteral("NOVAPLATE"), QStringLiteral("CTP 745 X 605"), 40, "512.50");
    if (change == QLatin1String("brand"))
        r.brand = QStringLiteral(" ");
    else if (change == QLatin1String("type"))
        r.type.clear();
    else if (change == QLatin1String("party"))
        r.partyName.clear();
    else if (change == QLatin1String("units"))
        r.units = 0;
    else if (change == QLatin1String("negative"))
        r.units = -3;
    else if (change == QLatin1String("price"))
        r.unitPrice = Money::fromCents(-1);
    else if (change == QLatin1String("unknown"))
        r.partyCode = QStringLiteral("14-10-099");
    else if (change == QLatin1String("heading"))
        r.partyCode = QStringLiteral("14-10-000");
    else if (change == QLatin1String("closed"))
        r.date = *Lookups::closingDate(*db);
    else if (change == QLatin1String("nodate"))
        r.date = QDate();
    const Outcome o = Consumables::addReceipt(*db, r);
    QCOMPARE(o.message, message);
    QCOMPARE(o.field, field);
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblStock")), o.ok ? 1 : 0);
    if (o.ok) {
        const auto row = db->selectOne(QStringLiteral("SELECT Item, Units, UnitPrice, Issue, VDate FROM tblStock WHERE SrNo = ?"),
                                       {o.number});
        QVERIFY(row);
        QCOMPARE(row->text(0).trimmed(), QStringLiteral("PLATE"));
        QCOMPARE(row->integer(1), qint64(40));
        QCOMPARE(row->money(2)->cents(), qint64(51250));
        QCOMPARE(row->integer(3), qint64(0));
        QCOMPARE(row->date(4), r.date);
    }
}

void TestConsumables::listsAndLoad()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    addAccounts(*db);
    const qint64 later = add(*db, receipt(*db, Item::Ink, "ORBIT", "CYAN", 5, "900", 9));
    const qint64 early = add(*db, receipt(*db, Item::Ink, "ORBIT", "CYAN", 6, "910", 2));
    add(*db, receipt(*db, Item::Ink, "ORBIT", "BLACK", 1, "900"));
    add(*db, receipt(*db, Item::Ink, "KESTREL", "GOLD", 1, "2400"));
    add(*db, receipt(*db, Item::Plate, "LITHOSTAR", "PS 745 X 605", 1, "300"));
    QCOMPARE(Consumables::brands(*db, Item::Ink), (QStringList{"KESTREL", "ORBIT"}));
    QCOMPARE(Consumables::types(*db, Item::Ink, "ORBIT"), (QStringList{"BLACK", "CYAN"}));
    QCOMPARE(Consumables::brands(*db, Item::Blanket), QStringList());
    const auto list = Consumables::receipts(*db, Item::Ink, "ORBIT", "CYAN");
    QCOMPARE(list.size(), 2);
    QCOMPARE(list.at(0).srNo, early); // oldest first
    QCOMPARE(list.at(1).srNo, later);
    QCOMPARE(list.at(0).unitPrice.cents(), qint64(91000));
    QCOMPARE(list.at(0).amount().cents(), qint64(546000));
}

void TestConsumables::saveChanges()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    addAccounts(*db);
    const qint64 a = add(*db, receipt(*db, Item::Ink, "ORBIT", "CYAN", 5, "900", 2));
    const qint64 b = add(*db, receipt(*db, Item::Ink, "ORBIT", "CYAN", 6, "910", 3));
    const qint64 c = add(*db, receipt(*db, Item::Ink, "ORBIT", "CYAN", 7, "920", 4));
    auto read = Consumables::receipts(*db, Item::Ink, "ORBIT", "CYAN");
    // A receipt moved to another brand, its date and price changed; one
    // struck out; one left as it was.
    Receipt moved = read.at(0);
    moved.brand = QStringLiteral("KESTREL");
    moved.unitPrice = Money::fromCents(95050);
    moved.date = openDay(*db, 20);
    moved.partyCode = QStringLiteral("14-10-002");
    moved.partyName = QStringLiteral("INK CORPORATION");
    Outcome o = Consumables::saveChanges(*db, Item::Ink, "ORBIT", "CYAN",
                                         {{moved, false}, {read.at(1), true}, {read.at(2), false}}, Msg::modified());
    QCOMPARE(o.message, Msg::modified());
    QCOMPARE(o.rowsWritten, 3);
    const auto row = db->selectOne(QStringLiteral("SELECT BrandName, UnitPrice, VDate, PartyCode FROM tblStock WHERE SrNo = ?"), {a});
    QCOMPARE(row->text(0).trimmed(), QStringLiteral("KESTREL"));
    QCOMPARE(row->money(1)->cents(), qint64(95050));
    QCOMPARE(row->date(2), openDay(*db, 20));
    QCOMPARE(row->text(3).trimmed(), QStringLiteral("14-10-002"));
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblStock WHERE SrNo = ?"), {b}), 0);
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblStock WHERE SrNo = ?"), {c}), 1);

    // Saved again from the same old list: the receipt stands under another
    // brand now and the one struck out is gone, so nothing is written.
    o = Consumables::saveChanges(*db, Item::Ink, "ORBIT", "CYAN", {{read.at(2), false}, {read.at(0), false}},
                                 Msg::modified());
    QCOMPARE(o.message, Msg::changedElsewhere());
    QCOMPARE(db->scalar(QStringLiteral("SELECT BrandName FROM tblStock WHERE SrNo = ?"), {a}).toString().trimmed(),
             QStringLiteral("KESTREL"));
    // A refused receipt holds back the whole save, the good one before it too.
    Receipt cheaper = moved;
    cheaper.unitPrice = Money::fromUnits(1);
    Receipt heading = moved;
    heading.partyCode = QStringLiteral("14-10-000");
    o = Consumables::saveChanges(*db, Item::Ink, "KESTREL", "CYAN", {{cheaper, false}, {heading, false}}, Msg::modified());
    QCOMPARE(o.message, Msg::partyNotFound());
    QCOMPARE(db->scalar(QStringLiteral("SELECT UnitPrice FROM tblStock WHERE SrNo = ?"), {a}).toString().toDouble(), 950.5);
    Receipt bad = read.at(2);
    bad.units = 99;
    // The item read, not the one chosen since, finds the rows.
    o = Consumables::saveChanges(*db, Item::Plate, "ORBIT", "CYAN", {{bad, false}}, Msg::modified());
    QCOMPARE(o.message, Msg::changedElsewhere());
    QCOMPARE(db->scalar(QStringLiteral("SELECT Units FROM tblStock WHERE SrNo = ?"), {c}).toLongLong(), qint64(7));
}

void TestConsumables::changeNeverBelowIssued()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    addAccounts(*db);
    const qint64 a = add(*db, receipt(*db, Item::Blanket, "DURAFLEX", "1.95 MM", 10, "4500"));
    issue(*db, Item::Blanket, "DURAFLEX", "1.95 MM", 6);
    Receipt r = Consumables::receipts(*db, Item::Blanket, "DURAFLEX", "1.95 MM").first();
    QCOMPARE(r.issued, qint64(6));
    r.units = 5;
    // The screen's check and the save both refuse it.
    QCOMPARE(Consumables::checkReceipt(*db, r, "5", "4500").message, Msg::unitsBelowIssued());
    r.issued = 0; // a stale copy of the receipt, read before the issue
    QCOMPARE(Consumables::saveChanges(*db, Item::Blanket, "DURAFLEX", "1.95 MM", {{r, false}}, Msg::modified()).message,
             Msg::unitsBelowIssued());
    // Struck out with units issued from it: the issues stand on it.
    QCOMPARE(Consumables::saveChanges(*db, Item::Blanket, "DURAFLEX", "1.95 MM", {{r, true}}, Msg::deleted()).message,
             Msg::issuedCannotDelete());
    // Moved into the closed period: refused, and so is any change once the
    // period closes over it.
    Receipt closed = r;
    closed.units = 6;
    closed.date = Lookups::closingDate(*db).value();
    QCOMPARE(Consumables::saveChanges(*db, Item::Blanket, "DURAFLEX", "1.95 MM", {{closed, false}}, Msg::modified()).ok,
             false);
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblStock WHERE SrNo = ? AND Units = 10"), {a}), 1);
    r.units = 6;
    QVERIFY(Consumables::saveChanges(*db, Item::Blanket, "DURAFLEX", "1.95 MM", {{r, false}}, Msg::modified()).ok);
    QCOMPARE(db->scalar(QStringLiteral("SELECT Units - Issue FROM tblStock WHERE SrNo = ?"), {a}).toLongLong(), qint64(0));
    QCOMPARE(EmployeeStock::issue(*db, {Item::Blanket, "DURAFLEX", "1.95 MM", "ASLAM PRESSMAN", "16-10-001", "1",
                                         "10/03/2026"})
                 .message,
             EmployeeStock::Msg::noOpenReceipt());
}

void TestConsumables::stagingIsPrivate()
{
    TESSEL_YEAR(year);
    auto mine = year.connect();
    auto theirs = year.connect();
    addAccounts(*mine);
    add(*mine, receipt(*mine, Item::Ink, "ORBIT", "CYAN", 5, "900"));
    const Receipt r = Consumables::receipts(*mine, Item::Ink, "ORBIT", "CYAN").first();
    Consumables::stage(*mine, {r.srNo, LineState::Update, r});
    Consumables::stage(*theirs, {r.srNo, LineState::Delete, r});
    QCOMPARE(Consumables::stagedList(*mine).size(), 1);
    QCOMPARE(Consumables::stagedList(*theirs).size(), 0); // struck out there, standing here
    Consumables::clearStaging(*theirs);
    QCOMPARE(Consumables::stagedList(*mine).size(), 1);
    QCOMPARE(Consumables::stagedList(*mine).first().text(QStringLiteral("BrandName")).trimmed(), QStringLiteral("ORBIT"));
}

void TestConsumables::stockReportEqualsRows()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    addAccounts(*db);
    struct In { const char *brand; const char *type; qint64 units; const char *price; int day; };
    const In ins[] = {{"ORBIT", "CYAN", 12, "1229.10", 3}, {"ORBIT", "CYAN", 7, "1103.73", 9},
                      {"ORBIT", "BLACK", 3, "999.99", 4},  {"ORBIT", "BLACK", 40000, "0.35", 5},
                      {"KESTREL", "CYAN", 4, "2400", 6},   {"ORBIT", "CYAN", 2, "1000", 90}};
    for (const In &i : ins)
        add(*db, receipt(*db, Item::Ink, i.brand, i.type, i.units, i.price, i.day));
    issue(*db, Item::Ink, "ORBIT", "CYAN", 15);
    issue(*db, Item::Ink, "ORBIT", "BLACK", 32770);

    // The ORBIT receipts of days 1 to 30; KESTREL and the late one are out.
    const QDate from = openDay(*db, 1), to = openDay(*db, 30);
    const Reports::RenderedReport rep = Reports::ReportFrame::render(*db, Consumables::stockReport(Item::Ink, "ORBIT", from, to));
    QCOMPARE(rep.heading, QStringLiteral("ORBIT INK STOCK REPORT"));
    QCOMPARE(rep.rows.size(), 4);
    qint64 units = 0, issued = 0;
    Money amount, inHand;
    for (const In &i : ins) {
        if (QLatin1String(i.brand) != QLatin1String("ORBIT") || i.day > 30)
            continue;
        units += i.units;
        amount += Money::parse(QString::fromLatin1(i.price))->multipliedBy(QString::number(i.units));
    }
    // What is left: CYAN 12 + 7 - 15 = 4 on the second receipt (1103.73);
    // BLACK 3 + 40000 - 32770 = 7233 on the second (0.35).
    issued = 15 + 32770;
    inHand = Money::fromCents(110373 * 4) + Money::fromCents(35 * 7233);
    const Reports::ReportLine *total = nullptr;
    for (const Reports::ReportLine &l : rep.lines)
        if (l.kind == Reports::ReportLine::Kind::Total)
            total = &l;
    QVERIFY(total);
    QCOMPARE(total->values.at(3).toLongLong(), units);
    QCOMPARE(total->values.at(4).toLongLong(), issued);
    QCOMPARE(total->values.at(5).toLongLong(), units - issued);
    QCOMPARE(total->values.at(7).value<Money>().cents(), amount.cents());
    QCOMPARE(total->values.at(8).value<Money>().cents(), inHand.cents());

    // Stock in hand: by brand and type, all dates.
    const QueryResult hand = Consumables::stockInHand(*db, Item::Ink);
    QCOMPARE(hand.size(), 3);
    const Row &black = hand.at(1);
    QCOMPARE(black.text(QStringLiteral("Type")).trimmed(), QStringLiteral("BLACK"));
    QCOMPARE(black.integer(QStringLiteral("Received")), qint64(40003));
    QCOMPARE(black.integer(QStringLiteral("InHand")), qint64(7233));
    QCOMPARE(black.money(QStringLiteral("InHandValue"))->cents(), qint64(35 * 7233));
    const Row &cyan = hand.at(2);
    QCOMPARE(cyan.integer(QStringLiteral("InHand")), qint64(6));
    QCOMPARE(cyan.money(QStringLiteral("InHandValue"))->cents(), qint64(110373 * 4 + 100000 * 2));
}

// The demonstration year's receipts, issues and use, made through the rules,
// add up: every unit issued is held by an employee, none over-drawn.
void TestConsumables::demoYearHoldsConsumables()
{
    for (const quint32 seed : {2026u, 7u}) {
        TestDb::Year year(QStringLiteral("sqlite"));
        auto db = year.connect();
        DemoOptions o;
        o.rows = 30000;
        o.seed = seed;
        o.from = openDay(*db);
        o.to = o.from.addDays(364);
        DemoGenerator g(*db, o);
        g.addPart(QStringLiteral("chart"), &DemoGenerator::chartPart);
        g.addPart(QStringLiteral("consumables"), &consumablesDemoPart);
        try {
            g.run();
        } catch (const DbError &e) {
            QFAIL(qPrintable(e.driverText()));
        }
        QVERIFY(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblStock")) >= 100);
        QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(DISTINCT Item) FROM tblStock")), 4);
        QVERIFY(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblEmployeeStock WHERE Issue > 0")) > 0);
        QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblStock WHERE Issue > Units")), 0);
        QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblEmployeeStock WHERE Issue > Units")), 0);
        QCOMPARE(db->scalar(QStringLiteral("SELECT SUM(Issue) FROM tblStock")).toLongLong(),
                 db->scalar(QStringLiteral("SELECT SUM(Units) FROM tblEmployeeStock")).toLongLong());
    }
}

QTEST_GUILESS_MAIN(TestConsumables)
#include "tst_consumables.moc"
