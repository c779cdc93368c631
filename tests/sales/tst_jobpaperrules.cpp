// The rules of the job's paperwork on both engines: numbering per title and
// over the table, the checks of each command, what a challan takes from
// the order, the record-number delete, the kept press lists, and two
// workstations saving the same proposed number.
#include "support/TestDb.h"

#include "foundation/SessionConnection.h"
#include "sales/DeliveryChallanRules.h"
#include "sales/JobCardRules.h"
#include "sales/PurchaseOrderRules.h"

#include <atomic>
#include <thread>

using JobPaper::Numbering;
using TestDb::count;

namespace {

const QDate kDay(2026, 3, 10);
const QString kA = QStringLiteral("ALPHA PRINTERS");
const QString kB = QStringLiteral("BETA PACKAGES");

Money m(const char *s) { return *Money::parse(QString::fromLatin1(s)); }

void addParties(SessionConnection &db)
{
    for (const auto &a : {std::pair{"17-10-001", "CRESCENT TEXTILES"}, {"17-10-002", "NOVA FOODS"},
                          {"17-10-000", "CUSTOMERS LOCAL"}})
        db.execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES (?, ?)"),
                   {QString::fromLatin1(a.first), QString::fromLatin1(a.second)});
}

OrderLine orderLine(const QString &title, qint64 poNo, const char *desc, const char *qty = "100",
                    const char *demand = "D-1", const char *partyPO = "KP-77")
{
    OrderLine l;
    l.titleName = title;
    l.poNo = poNo;
    l.date = kDay;
    l.partyPONo = QString::fromLatin1(partyPO);
    l.partyCode = QStringLiteral("17-10-001");
    l.partyName = QStringLiteral("CRESCENT TEXTILES");
    l.description = QString::fromLatin1(desc);
    l.quantity = m(qty);
    l.unitPrice = m("2.50");
    l.demandNo = QString::fromLatin1(demand);
    return l;
}

ChallanLine challanLine(const QString &title, qint64 no, const char *desc, const char *ctn = "1")
{
    ChallanLine l;
    l.titleName = title;
    l.challanNo = no;
    l.date = kDay;
    l.partyCode = QStringLiteral("17-10-001");
    l.partyName = QStringLiteral("CRESCENT TEXTILES");
    l.partyPONo = QStringLiteral("KP-77");
    l.description = QString::fromLatin1(desc);
    l.quantity = m("40");
    l.ctn = QString::fromLatin1(ctn);
    return l;
}

JobCard card(qint64 no, const char *paper = "ART CARD 300G")
{
    JobCard c;
    c.number = no;
    c.partyCode = QStringLiteral("17-10-002");
    c.partyName = QStringLiteral("NOVA FOODS");
    c.date = kDay;
    c.quantity = QStringLiteral("5000");
    c.press.insert(QStringLiteral("Paper"), QString::fromLatin1(paper));
    c.press.insert(QStringLiteral("Machine"), QStringLiteral("GTO 52"));
    return c;
}

} // namespace

class TestJobPaperRules : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void checks_data();
    void checks();
    void numbering_data() { TestDb::addBackends(); }
    void numbering();
    void proposedNumberTakenMeanwhile_data() { TestDb::addBackends(); }
    void proposedNumberTakenMeanwhile();
    void raceOnSameNumber();
    void orderLinesOfferedToChallan_data() { TestDb::addBackends(); }
    void orderLinesOfferedToChallan();
    void modifyAndDelete_data() { TestDb::addBackends(); }
    void modifyAndDelete();
    void refusedParties_data() { TestDb::addBackends(); }
    void refusedParties();
    void pressChoices_data() { TestDb::addBackends(); }
    void pressChoices();
};

// The refusals of each command in the screens' order, with their words and
// the field that gets the focus; no database needed.
void TestJobPaperRules::checks_data()
{
    QTest::addColumn<QString>("doc");
    QTest::addColumn<QString>("blank");   // the field left empty
    QTest::addColumn<int>("command");     // 0 save, 1 modify, 2 delete, 3 print
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("field");
    namespace P = PurchaseOrderMsg;
    namespace C = ChallanMsg;
    namespace J = JobCardMsg;
    const QString none;
    QTest::newRow("order: all typed") << "order" << none << 0 << none << none;
    QTest::newRow("order: number") << "order" << "number" << 0 << P::kNumberMissing << "txtPONo";
    QTest::newRow("order: number, modify") << "order" << "number" << 1 << P::kNumberMissingLower << "txtPONo";
    QTest::newRow("order: number, print") << "order" << "number" << 3 << P::kNumberMissingPrint << "txtPONo";
    QTest::newRow("order: date") << "order" << "date" << 0 << "Date is missing, please enter proper date" << "mskDate";
    QTest::newRow("order: party") << "order" << "party" << 0 << P::kPartyMissing << "cmbPartyName";
    QTest::newRow("order: code") << "order" << "code" << 0 << P::kPartyNotFound << "txtPartyCode";
    QTest::newRow("order: code, modify") << "order" << "code" << 1 << P::kPartyCodeNotFound << "txtPartyCode";
    QTest::newRow("order: description") << "order" << "description" << 0 << P::kDescriptionMissing << "cmbDesc";
    QTest::newRow("order: description, modify") << "order" << "description" << 1 << none << none;
    QTest::newRow("order: quantity") << "order" << "quantity" << 0 << P::kQuantityMissing << "txtQuantity";
    QTest::newRow("order: quantity, modify") << "order" << "quantity" << 1 << P::kQuantityMissingDot << "txtQuantity";
    QTest::newRow("order: quantity, delete") << "order" << "quantity" << 2 << none << none;
    QTest::newRow("order: price") << "order" << "price" << 0 << P::kPriceMissing << "txtUnitPrice";
    QTest::newRow("order: party, print") << "order" << "party" << 3 << none << none;
    QTest::newRow("challan: all typed") << "challan" << none << 0 << none << none;
    QTest::newRow("challan: number") << "challan" << "number" << 0 << C::kNumberMissing << "txtDeliveryChallanNo";
    QTest::newRow("challan: number, print") << "challan" << "number" << 3 << C::kNumberMissingPrint
                                            << "txtDeliveryChallanNo";
    QTest::newRow("challan: code") << "challan" << "code" << 0 << C::kPartyNotFound << "txtPartyCode";
    QTest::newRow("challan: code, delete") << "challan" << "code" << 2 << C::kPartyCodeNotFound << "txtPartyCode";
    QTest::newRow("challan: description") << "challan" << "description" << 0 << C::kDescriptionMissing << "cmbDesc";
    QTest::newRow("challan: quantity, modify") << "challan" << "quantity" << 1 << C::kQuantityMissingDot
                                               << "txtQuantity";
    QTest::newRow("card: all typed") << "card" << none << 0 << none << none;
    QTest::newRow("card: number") << "card" << "number" << 0 << J::kNumberMissing << "txtJobCardNo";
    QTest::newRow("card: number, print") << "card" << "number" << 3 << J::kNumberMissingPrint << "txtJobCardNo";
    QTest::newRow("card: party") << "card" << "party" << 0 << J::kPartyMissing << "cmbPartyName";
    QTest::newRow("card: code, modify") << "card" << "code" << 1 << J::kPartyCodeNotFound << "txtPartyCode";
    QTest::newRow("card: quantity") << "card" << "quantity" << 0 << J::kQuantityMissing << "txtQuantity";
    QTest::newRow("card: delete needs the number only") << "card" << "party" << 2 << none << none;
}

void TestJobPaperRules::checks()
{
    QFETCH(QString, doc);
    QFETCH(QString, blank);
    QFETCH(int, command);
    QFETCH(QString, message);
    QFETCH(QString, field);
    Outcome o;
    if (doc == QLatin1String("order")) {
        OrderLine l = orderLine(kA, 1, "LABEL");
        if (blank == QLatin1String("number")) l.poNo = 0;
        if (blank == QLatin1String("date")) l.date = QDate();
        if (blank == QLatin1String("party")) l.partyName.clear();
        if (blank == QLatin1String("code")) l.partyCode.clear();
        if (blank == QLatin1String("description")) l.description = QStringLiteral("   ");
        if (blank == QLatin1String("quantity")) l.quantity.reset();
        if (blank == QLatin1String("price")) l.unitPrice.reset();
        o = PurchaseOrderRules::check(l, PurchaseOrderRules::Command(command));
    } else if (doc == QLatin1String("challan")) {
        ChallanLine l = challanLine(kA, 1, "LABEL");
        if (blank == QLatin1String("number")) l.challanNo = 0;
        if (blank == QLatin1String("code")) l.partyCode.clear();
        if (blank == QLatin1String("description")) l.description.clear();
        if (blank == QLatin1String("quantity")) l.quantity.reset();
        o = DeliveryChallanRules::check(l, DeliveryChallanRules::Command(command));
    } else {
        JobCard c = card(1);
        if (blank == QLatin1String("number")) c.number = 0;
        if (blank == QLatin1String("party")) c.partyName.clear();
        if (blank == QLatin1String("code")) c.partyCode.clear();
        if (blank == QLatin1String("quantity")) c.quantity.clear();
        o = JobCardRules::check(c, JobCardRules::Command(command));
    }
    QCOMPARE(o.ok, message.isEmpty());
    QCOMPARE(o.message, message);
    QCOMPARE(o.field, field);
}

// Orders and challans count per title from 1; record numbers run over all
// titles; job cards over the whole table.
void TestJobPaperRules::numbering()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    addParties(*db);
    QCOMPARE(PurchaseOrderRules::nextOrderNo(*db, kA), qint64(1));
    QCOMPARE(DeliveryChallanRules::nextChallanNo(*db, kA), qint64(1));
    QCOMPARE(JobCardRules::nextJobCardNo(*db), qint64(1));

    qint64 record = 0;
    QVERIFY(PurchaseOrderRules::saveLine(*db, orderLine(kA, 1, "LABEL"), Numbering::Proposed, &record).ok);
    QCOMPARE(record, qint64(1));
    QVERIFY(PurchaseOrderRules::saveLine(*db, orderLine(kA, 1, "CARTON"), Numbering::Existing, &record).ok);
    QCOMPARE(record, qint64(2));
    const Outcome b = PurchaseOrderRules::saveLine(*db, orderLine(kB, 1, "BAG"), Numbering::Proposed, &record);
    QCOMPARE(b.number, qint64(1)); // another title has its own 1
    QCOMPARE(record, qint64(3));   // but not its own record numbers
    QCOMPARE(PurchaseOrderRules::nextOrderNo(*db, kA), qint64(2));
    QCOMPARE(PurchaseOrderRules::nextOrderNo(*db, kB), qint64(2));
    QCOMPARE(PurchaseOrderRules::nextOrderNo(*db, QStringLiteral("GAMMA")), qint64(1));
    QCOMPARE(PurchaseOrderRules::nextRecordNo(*db), qint64(4));
    QCOMPARE(PurchaseOrderRules::orderLines(*db, kA, 1).size(), 2);

    QVERIFY(DeliveryChallanRules::saveLine(*db, challanLine(kB, 1, "BAG"), Numbering::Proposed, kDay, &record).ok);
    QVERIFY(DeliveryChallanRules::saveLine(*db, challanLine(kA, 1, "LABEL"), Numbering::Proposed, kDay, &record).ok);
    QCOMPARE(record, qint64(2));
    QCOMPARE(DeliveryChallanRules::nextChallanNo(*db, kA), qint64(2));
    QCOMPARE(DeliveryChallanRules::nextRecordNo(*db), qint64(3));

    // A card under a typed number: the next one follows the highest.
    QVERIFY(JobCardRules::save(*db, card(7), Numbering::Typed, QStringLiteral("CLERK"), kDay).ok);
    QCOMPARE(JobCardRules::nextJobCardNo(*db), qint64(8));
    const Outcome dup = JobCardRules::save(*db, card(7), Numbering::Typed, QStringLiteral("CLERK"), kDay);
    QCOMPARE(dup.message, JobCardMsg::kDuplicate);
    QCOMPARE(dup.field, QStringLiteral("txtJobCardNo"));
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblJobCard")), 1);
}

// Two workstations proposed the same number; the second to save is moved
// to the next free one and told, never sharing the first one's document.
void TestJobPaperRules::proposedNumberTakenMeanwhile()
{
    TESSEL_YEAR(year);
    auto one = year.connect();
    auto two = year.connect();
    addParties(*one);
    const qint64 proposed = PurchaseOrderRules::nextOrderNo(*one, kA);
    QCOMPARE(PurchaseOrderRules::nextOrderNo(*two, kA), proposed);
    QVERIFY(PurchaseOrderRules::saveLine(*one, orderLine(kA, proposed, "LABEL"), Numbering::Proposed).ok);
    const Outcome moved = PurchaseOrderRules::saveLine(*two, orderLine(kA, proposed, "CARTON"), Numbering::Proposed);
    QVERIFY(moved.ok);
    QCOMPARE(moved.number, proposed + 1);
    QCOMPARE(moved.notice, JobPaper::numberMoved(QStringLiteral("Purchase Order"), proposed, proposed + 1));
    // The second's further items follow it to its own number.
    OrderLine more = orderLine(kA, moved.number, "INSERT");
    QVERIFY(PurchaseOrderRules::saveLine(*two, more, Numbering::Existing).ok);
    QCOMPARE(PurchaseOrderRules::orderLines(*one, kA, proposed).size(), 1);
    QCOMPARE(PurchaseOrderRules::orderLines(*one, kA, proposed + 1).size(), 2);

    QVERIFY(DeliveryChallanRules::saveLine(*one, challanLine(kA, 1, "LABEL"), Numbering::Proposed, kDay).ok);
    const Outcome c2 = DeliveryChallanRules::saveLine(*two, challanLine(kA, 1, "CARTON"), Numbering::Proposed, kDay);
    QCOMPARE(c2.number, qint64(2));
    QVERIFY(!c2.notice.isEmpty());

    QVERIFY(JobCardRules::save(*one, card(1), Numbering::Proposed, QStringLiteral("ONE"), kDay).ok);
    const Outcome j2 = JobCardRules::save(*two, card(1), Numbering::Proposed, QStringLiteral("TWO"), kDay);
    QCOMPARE(j2.number, qint64(2));
    QCOMPARE(j2.notice, JobPaper::numberMoved(QStringLiteral("Job Card"), 1, 2));
    QCOMPARE(count(*one, QStringLiteral("SELECT COUNT(DISTINCT RecordNo) FROM tblPurchaseOrder")), 3);
}

// The same at the same moment, from two threads on a server: each
// document gets a number of its own.
void TestJobPaperRules::raceOnSameNumber()
{
    if (!TestDb::postgresConfigured())
        QSKIP("no PostgreSQL test server (run the test script)");
    TestDb::Year year(QStringLiteral("postgres"));
    addParties(*year.connect());
    for (int round = 0; round < 5; ++round) {
        std::atomic<int> ready{0};
        Outcome orders[2], cards[2];
        QString errors[2];
        auto work = [&](int i) {
            try {
                auto db = year.connect();
                const qint64 po = PurchaseOrderRules::nextOrderNo(*db, kA);
                const qint64 jc = JobCardRules::nextJobCardNo(*db);
                ++ready;
                while (ready.load() < 2) {
                }
                orders[i] = PurchaseOrderRules::saveLine(*db, orderLine(kA, po, i ? "ONE" : "ZERO"),
                                                         Numbering::Proposed);
                cards[i] = JobCardRules::save(*db, card(jc), Numbering::Proposed, QStringLiteral("W"), kDay);
            } catch (const DbError &e) {
                errors[i] = e.driverText();
            }
        };
        std::thread t0(work, 0), t1(work, 1);
        t0.join();
        t1.join();
        QVERIFY2(errors[0].isEmpty() && errors[1].isEmpty(), qPrintable(errors[0] + errors[1]));
        QVERIFY(orders[0].ok && orders[1].ok && cards[0].ok && cards[1].ok);
        QVERIFY(orders[0].number != orders[1].number);
        QVERIFY(cards[0].number != cards[1].number);
        QCOMPARE(int(orders[0].notice.isEmpty()) + int(orders[1].notice.isEmpty()), 1);
    }
    auto db = year.connect();
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPurchaseOrder")), 10);
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(DISTINCT PONo) FROM tblPurchaseOrder")), 10);
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(DISTINCT RecordNo) FROM tblPurchaseOrder")), 10);
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(DISTINCT JobCardNo) FROM tblJobCard")), 10);
}

// A challan is offered the items of the party's order in order of entry,
// numbered, and the demand numbers of the item picked, first one first.
void TestJobPaperRules::orderLinesOfferedToChallan()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    addParties(*db);
    QVERIFY(PurchaseOrderRules::saveLine(*db, orderLine(kA, 1, "LABEL 2X3", "100", "D-9"), Numbering::Proposed).ok);
    QVERIFY(PurchaseOrderRules::saveLine(*db, orderLine(kA, 1, "CARTON", "50", "D-4"), Numbering::Existing).ok);
    QVERIFY(PurchaseOrderRules::saveLine(*db, orderLine(kA, 1, "LABEL 2X3", "70", "D-2"), Numbering::Existing).ok);
    // Another party number, and another party's order under the same number.
    QVERIFY(PurchaseOrderRules::saveLine(*db, orderLine(kA, 2, "BAG", "9", "D-1", "KP-80"), Numbering::Proposed).ok);
    OrderLine other = orderLine(kB, 1, "FOLDER");
    other.partyCode = QStringLiteral("17-10-002");
    other.partyName = QStringLiteral("NOVA FOODS");
    QVERIFY(PurchaseOrderRules::saveLine(*db, other, Numbering::Proposed).ok);

    QCOMPARE(PurchaseOrderRules::partyOrderNumbers(*db, QStringLiteral("17-10-001")),
             (QStringList{QStringLiteral("KP-77"), QStringLiteral("KP-80")}));
    QCOMPARE(PurchaseOrderRules::orderDate(*db, QStringLiteral("17-10-001"), QStringLiteral("KP-80")), kDay);
    QVERIFY(!PurchaseOrderRules::orderDate(*db, QStringLiteral("17-10-002"), QStringLiteral("KP-80")).isValid());
    const auto items = DeliveryChallanRules::orderItems(*db, QStringLiteral("17-10-001"), QStringLiteral("KP-77"));
    QCOMPARE(DeliveryChallanRules::numberedItems(items),
             (QStringList{QStringLiteral("1 - LABEL 2X3"), QStringLiteral("2 - CARTON"), QStringLiteral("3 - LABEL 2X3")}));
    QCOMPARE(DeliveryChallanRules::demandNumbers(*db, QStringLiteral("17-10-001"), QStringLiteral("KP-77"),
                                                 QStringLiteral("LABEL 2X3")),
             (QStringList{QStringLiteral("D-9"), QStringLiteral("D-2")}));
    QVERIFY(DeliveryChallanRules::orderItems(*db, QStringLiteral("17-10-002"), QStringLiteral("KP-80")).isEmpty());

    // What has gone out against the order, over all challans of the title.
    QVERIFY(DeliveryChallanRules::saveLine(*db, challanLine(kA, 1, "CARTON"), Numbering::Proposed, kDay).ok);
    QVERIFY(DeliveryChallanRules::saveLine(*db, challanLine(kA, 2, "LABEL 2X3"), Numbering::Proposed, kDay).ok);
    QCOMPARE(DeliveryChallanRules::deliveredGrid(*db, kA, QStringLiteral("KP-77")).size(), 2);
    QCOMPARE(DeliveryChallanRules::challanGrid(*db, kA, 2).size(), 1);
    // The lines of a challan as an invoice takes them.
    const auto lines = DeliveryChallanRules::lines(*db, kA, 2);
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first().description, QStringLiteral("LABEL 2X3"));
    QCOMPARE(lines.first().quantity, std::optional<Money>(m("40")));
    QCOMPARE(lines.first().partyPONo, QStringLiteral("KP-77"));
}

// Modify rewrites the head on all rows of the document and the one line;
// the carton counts of the other lines stay. Delete removes one line by its
// record number, whatever the title.
void TestJobPaperRules::modifyAndDelete()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    addParties(*db);
    qint64 r1 = 0, r2 = 0, rb = 0;
    QVERIFY(DeliveryChallanRules::saveLine(*db, challanLine(kA, 1, "LABEL", "3"), Numbering::Proposed, kDay, &r1).ok);
    QVERIFY(DeliveryChallanRules::saveLine(*db, challanLine(kA, 1, "CARTON", "8"), Numbering::Existing, kDay, &r2).ok);
    QVERIFY(DeliveryChallanRules::saveLine(*db, challanLine(kB, 1, "LABEL", "5"), Numbering::Proposed, kDay, &rb).ok);

    ChallanLine changed = *DeliveryChallanRules::lineByRecordNo(*db, r2);
    QCOMPARE(changed.ctn, QStringLiteral("8"));
    changed.quantity = m("45.5");
    changed.date = kDay.addDays(1);
    changed.gateEntryNo = QStringLiteral("GE-1");
    changed.ctn = QStringLiteral("9");
    QCOMPARE(DeliveryChallanRules::modifyLine(*db, changed).message, ChallanMsg::kModified);
    const auto lines = DeliveryChallanRules::lines(*db, kA, 1);
    QCOMPARE(lines.size(), 2);
    QCOMPARE(lines[0].ctn, QStringLiteral("3"));
    QCOMPARE(lines[1].ctn, QStringLiteral("9"));
    QCOMPARE(lines[0].date, kDay.addDays(1));
    QCOMPARE(lines[0].gateEntryNo, QStringLiteral("GE-1"));
    QCOMPARE(lines[1].quantity, std::optional<Money>(m("45.5")));
    QCOMPARE(DeliveryChallanRules::lines(*db, kB, 1).first().date, kDay);

    // A line that is not on the challan changes nothing, the head included.
    ChallanLine stray = changed;
    stray.recordNo = rb;
    stray.date = kDay.addDays(5);
    QCOMPARE(DeliveryChallanRules::modifyLine(*db, stray).message, ChallanMsg::kLineNotFound);
    QCOMPARE(DeliveryChallanRules::lines(*db, kA, 1).first().date, kDay.addDays(1));

    QCOMPARE(DeliveryChallanRules::deleteLine(*db, 1, rb).message, ChallanMsg::kDeleted);
    QCOMPARE(DeliveryChallanRules::lines(*db, kA, 1).size(), 2);
    QVERIFY(DeliveryChallanRules::lines(*db, kB, 1).isEmpty());
    QVERIFY(!DeliveryChallanRules::deleteLine(*db, 1, rb).ok);

    // The order: head on all rows, one line, one line deleted.
    qint64 o1 = 0, o2 = 0;
    QVERIFY(PurchaseOrderRules::saveLine(*db, orderLine(kA, 1, "LABEL"), Numbering::Proposed, &o1).ok);
    QVERIFY(PurchaseOrderRules::saveLine(*db, orderLine(kA, 1, "CARTON"), Numbering::Existing, &o2).ok);
    OrderLine ol = *PurchaseOrderRules::lineByRecordNo(*db, o2, kA);
    QVERIFY(!PurchaseOrderRules::lineByRecordNo(*db, o2, kB));
    ol.partyPONo = QStringLiteral("KP-99");
    ol.quantity = m("12");
    ol.unitPrice = m("0.75");
    QCOMPARE(PurchaseOrderRules::modifyLine(*db, ol).message, PurchaseOrderMsg::kModified);
    const auto order = PurchaseOrderRules::order(*db, kA, 1);
    QCOMPARE(order[0].partyPONo, QStringLiteral("KP-99"));
    QCOMPARE(order[0].quantity, std::optional<Money>(m("100")));
    QCOMPARE(order[1].unitPrice, std::optional<Money>(m("0.75")));
    QCOMPARE(PurchaseOrderRules::deleteLine(*db, kB, 1, o1).message, PurchaseOrderMsg::kLineNotFound);
    QCOMPARE(PurchaseOrderRules::deleteLine(*db, kA, 1, o1).message, PurchaseOrderMsg::kDeleted);
    QCOMPARE(PurchaseOrderRules::order(*db, kA, 1).size(), 1);

    // A job card: modified in place, deleted; a number without a card deletes nothing.
    QVERIFY(JobCardRules::save(*db, card(1), Numbering::Proposed, QStringLiteral("ONE"), kDay).ok);
    JobCard jc = *JobCardRules::card(*db, 1);
    QCOMPARE(jc.pressValue(QStringLiteral("Paper")), QStringLiteral("ART CARD 300G"));
    jc.press[QStringLiteral("Status")] = QStringLiteral("PRINTED");
    jc.issueDate = kDay.addDays(2);
    QCOMPARE(JobCardRules::modify(*db, jc, QStringLiteral("TWO"), kDay.addDays(3)).message, JobCardMsg::kUpdated);
    QCOMPARE(JobCardRules::card(*db, 1)->pressValue(QStringLiteral("Status")), QStringLiteral("PRINTED"));
    QCOMPARE(JobCardRules::card(*db, 1)->issueDate, kDay.addDays(2));
    QCOMPARE(db->scalar(QStringLiteral("SELECT UserName FROM tblJobCard")).toString().trimmed(), QStringLiteral("TWO"));
    jc.number = 5;
    QCOMPARE(JobCardRules::modify(*db, jc, QStringLiteral("TWO"), kDay).message, JobCardMsg::kNotFound);
    QCOMPARE(JobCardRules::remove(*db, 5).rowsWritten, 0);
    QCOMPARE(JobCardRules::remove(*db, 1).rowsWritten, 1);
}

// What a screen refuses the rule refuses too: no party, a heading, the cash
// account; nothing is written.
void TestJobPaperRules::refusedParties()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    addParties(*db);
    for (const char *code : {"17-10-009", "17-10-000", "19-10-001"}) {
        OrderLine l = orderLine(kA, 1, "LABEL");
        l.partyCode = QString::fromLatin1(code);
        QCOMPARE(PurchaseOrderRules::saveLine(*db, l, Numbering::Proposed).message, PurchaseOrderMsg::kPartyNotFound);
        ChallanLine c = challanLine(kA, 1, "LABEL");
        c.partyCode = l.partyCode;
        QCOMPARE(DeliveryChallanRules::saveLine(*db, c, Numbering::Proposed, kDay).message, ChallanMsg::kPartyNotFound);
        JobCard j = card(1);
        j.partyCode = l.partyCode;
        QCOMPARE(JobCardRules::save(*db, j, Numbering::Proposed, QStringLiteral("X"), kDay).message,
                 JobCardMsg::kPartyNotFound);
    }
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPurchaseOrder")), 0);
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblDeliveryChallan")), 0);
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblJobCard")), 0);
}

// Each press field offers every value ever typed in it, the values of
// deleted and changed cards included; cards written before the lists were
// kept have their values listed on first reading.
void TestJobPaperRules::pressChoices()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    addParties(*db);
    // A card from before the lists.
    db->execute(QStringLiteral("INSERT INTO tblJobCard (JobCardNo, PartyCode, PartyName, Paper, Machine, Die) "
                               "VALUES (1, '17-10-002', 'NOVA FOODS', 'KRAFT 120G', 'GTO 52', '')"));
    auto choices = JobCardRules::pressChoices(*db);
    QCOMPARE(choices.value(QStringLiteral("Paper")), QStringList{QStringLiteral("KRAFT 120G")});
    QVERIFY(choices.value(QStringLiteral("Die")).isEmpty());

    QVERIFY(JobCardRules::save(*db, card(2, "ART CARD 300G"), Numbering::Proposed, QStringLiteral("A"), kDay).ok);
    JobCard changed = *JobCardRules::card(*db, 2);
    changed.press[QStringLiteral("Paper")] = QStringLiteral("DUPLEX BOARD");
    QVERIFY(JobCardRules::modify(*db, changed, QStringLiteral("A"), kDay).ok);
    QVERIFY(JobCardRules::remove(*db, 2).ok);
    choices = JobCardRules::pressChoices(*db);
    QCOMPARE(choices.value(QStringLiteral("Paper")),
             (QStringList{QStringLiteral("ART CARD 300G"), QStringLiteral("DUPLEX BOARD"), QStringLiteral("KRAFT 120G")}));
    QCOMPARE(choices.value(QStringLiteral("Machine")), QStringList{QStringLiteral("GTO 52")});
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblJobCardList")), 4);
}

QTEST_GUILESS_MAIN(TestJobPaperRules)
#include "tst_jobpaperrules.moc"
