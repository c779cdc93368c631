// Saving, changing and deleting invoices on both engines: the SV voucher
// of two rows beside the lines, the per-title numbers, the closing date,
// two titles under one number and date, and what a failed save leaves.
#include "tst_invoicefixture.h"

#include "foundation/DateRules.h"
#include "foundation/LineStaging.h"
#include "sales/InvoiceStaging.h"
#include "support/TestDb.h"
#include "vouchers/LedgerCheck.h"
#include "vouchers/PostingChecks.h"

#include <QtTest>

using namespace InvoiceFixture;

namespace {

struct SvRow
{
    QString code;
    QDate date;
    Money dr, cr;
    QString desc;
    QString invoiceNo;
};

QVector<SvRow> svRows(SessionConnection &db, qint64 no)
{
    QVector<SvRow> out;
    for (const Row &r : db.select(QStringLiteral("SELECT PartyCode, VDate, PartyDR, PartyCR, PartyBalance, PartyDesc, "
                                                 "InvoiceNo FROM tblPartyBalance WHERE VoucherType = 'SV' AND "
                                                 "VoucherNo = ? ORDER BY SrNo"),
             {no})) {
        out << SvRow{r.text(0).trimmed(), r.date(1), r.moneyOrZero("PartyDR"), r.moneyOrZero("PartyCR"), r.text(5),
            r.text(6).trimmed()};
    }
    return out;
}

Money linesTotal(SessionConnection &db, const InvoiceKey &k)
{
    return db
        .scalarMoney(QStringLiteral("SELECT SUM(ValueIncludingTax) FROM tblInvoice WHERE InvoiceNo = ? AND "
                                    "InvoiceDate = ? AND TitleName = ?"),
            {k.number, k.date, k.title})
        .value_or(Money());
}

int lineCount(SessionConnection &db, const InvoiceKey &k)
{
    return TestDb::count(db,
        QStringLiteral("SELECT COUNT(*) FROM tblInvoice WHERE InvoiceNo = ? AND InvoiceDate = ? "
                       "AND TitleName = ?"),
        {k.number, k.date, k.title});
}

// The voucher of an invoice equals its lines: customer debit and sales
// credit, each the lines' total.
void voucherEqualsLines(SessionConnection &db, const InvoiceKey &k, const QString &customer)
{
    const QueryResult rows = InvoicePosting::voucherRows(db, k);
    QCOMPARE(rows.size(), 2);
    const Money total = linesTotal(db, k);
    for (const Row &r :
        db.select(QStringLiteral("SELECT PartyCode, PartyDR, PartyCR FROM tblPartyBalance WHERE SrNo IN (?, ?)"),
            {rows.at(0).integer(0), rows.at(1).integer(0)})) {
        if (r.text(0).trimmed() == InvoiceRules::kSalesCode) {
            QCOMPARE(r.moneyOrZero("PartyCR"), total);
        } else {
            QCOMPARE(r.text(0).trimmed(), customer);
            QCOMPARE(r.moneyOrZero("PartyDR"), total);
        }
    }
}

// The lines as the screen holds them, mirrored into staging.
StagedLines<InvoiceLine> staged(const InvoiceHeader &h)
{
    return StagedLines<InvoiceLine>({[](SessionConnection &c) { InvoiceStaging(c).clear(); },
        [h](SessionConnection &c, const InvoiceLine &l) { InvoiceStaging(c).put(h, l); }});
}

void keptBalancesAgree(SessionConnection &db)
{
    QStringList diff;
    QVERIFY2(LedgerCheck::keptBalancesAgree(db, &diff), qPrintable(diff.join(QLatin1Char('\n'))));
}

} // namespace

class TestInvoicePosting : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void newInvoiceOfThreeLines_data() { TestDb::addBackends(); }
    void newInvoiceOfThreeLines();
    void modifyByState_data() { TestDb::addBackends(); }
    void modifyByState();
    void twoTitlesOneNumberAndDate_data() { TestDb::addBackends(); }
    void twoTitlesOneNumberAndDate();
    void numbersPerTitle_data() { TestDb::addBackends(); }
    void numbersPerTitle();
    void refusals_data();
    void refusals();
    void failureLeavesBothAsBefore_data();
    void failureLeavesBothAsBefore();
};

void TestInvoicePosting::newInvoiceOfThreeLines()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    prepareYear(*db);
    const InvoiceHeader h = header(QStringLiteral("PRESS"), 1);
    auto lines = staged(h);
    for (const InvoiceLine &l : threeLines())
        lines.add(*db, l);
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblInvoiceEmpty WHERE Remarks = 'INSERT'")), 3);

    const Outcome out = InvoicePosting(*db, kUser, kToday).saveNew(h, lines.all(), NumberPolicy::Proposed);
    QVERIFY2(out.ok, qPrintable(out.message));
    QCOMPARE(out.message, InvoiceMessages::kSaved);
    QCOMPARE(out.number, 1);

    const auto rows = svRows(*db, 1);
    QCOMPARE(rows.size(), 2);
    QCOMPARE(rows[0].code, QStringLiteral("17-10-001"));
    QCOMPARE(rows[0].dr, Money::fromUnits(11800));
    QCOMPARE(rows[0].cr, Money());
    QCOMPARE(rows[1].code, InvoiceRules::kSalesCode);
    QCOMPARE(rows[1].cr, Money::fromUnits(11800));
    for (const SvRow &r : rows) {
        QCOMPARE(r.desc, QStringLiteral("CASH, CREDIT, "));
        QCOMPARE(r.date, kDay);
        QCOMPARE(r.invoiceNo, QStringLiteral("1"));
    }
    QCOMPARE(lineCount(*db, h.key), 3);
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblInvoiceEmpty")), 0);
    QCOMPARE(InvoiceLookups::nextInvoiceNo(*db, QStringLiteral("PRESS")), 2);
    QCOMPARE(InvoiceLookups::nextInvoiceNo(*db, QStringLiteral("PACKAGING")), 1);

    // The lines read back as they were typed.
    const auto back = InvoiceStaging(*db).postedLines(h.key);
    QCOMPARE(back.size(), 3);
    QCOMPARE(back[0].quantity, QStringLiteral("1000"));
    QCOMPARE(back[0].saleTaxRate, QStringLiteral("17"));
    QCOMPARE(back[2].valueWithTax, Money::fromUnits(2440));
    QCOMPARE(back[1].state, LineState::Update);
    keptBalancesAgree(*db);
}

// A posted invoice loaded, then: the party and the date changed, a line
// removed, a line added and then changed (it must still be inserted).
void TestInvoicePosting::modifyByState()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    prepareYear(*db);
    const InvoiceHeader h = header(QStringLiteral("PRESS"), 4);
    QVERIFY(InvoicePosting(*db, kUser, kToday).saveNew(h, threeLines(), NumberPolicy::Typed).ok);

    InvoiceHeader changed = header(
        QStringLiteral("PRESS"), 4, kDay.addDays(5), QStringLiteral("17-10-002"), QStringLiteral("SUNRISE PACKAGES"));
    auto lines = staged(changed);
    lines.load(*db, InvoiceStaging(*db).postedLines(h.key));
    const auto loaded = lines.all();
    QCOMPARE(loaded.size(), 3);
    QVERIFY(lines.remove(*db, loaded[1].srNo)); // 3,510 leaves
    const qint64 added = lines.add(*db, line("CASH", "BOX", "10", "10"));
    QVERIFY(added > loaded.last().srNo); // never an existing SrNo
    QVERIFY(lines.change(*db, added, line("CASH", "BOX", "20", "10")));
    QCOMPARE(lines.find(added)->state, LineState::Insert);
    QVERIFY(lines.change(*db, loaded[0].srNo, line("CREDIT", "CARTON", "1000", "6", "17")));
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblInvoiceEmpty WHERE Remarks = 'DELETE'")), 1);

    const Outcome out = InvoicePosting(*db, kUser, kToday).saveModified(h.key, changed, lines.all());
    QVERIFY2(out.ok, qPrintable(out.message));
    QCOMPARE(out.message, InvoiceMessages::kModified);

    // 6,000 + 1,020, then 2,440, then 200.
    const InvoiceKey now{QStringLiteral("PRESS"), 4, kDay.addDays(5)};
    QCOMPARE(lineCount(*db, h.key), 0);
    QCOMPARE(lineCount(*db, now), 3);
    QCOMPARE(linesTotal(*db, now), Money::fromUnits(7020 + 2440 + 200));
    const auto rows = svRows(*db, 4);
    QCOMPARE(rows.size(), 2);
    QCOMPARE(rows[0].code, QStringLiteral("17-10-002"));
    QCOMPARE(rows[0].date, now.date);
    QCOMPARE(rows[1].date, now.date);
    voucherEqualsLines(*db, now, QStringLiteral("17-10-002"));
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblInvoice WHERE PartyCode = '17-10-001'")), 0);
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblInvoiceEmpty")), 0);
    keptBalancesAgree(*db);
}

// Two titles, one number, one date, one customer: changing or deleting
// one invoice leaves the other's voucher and lines alone.
void TestInvoicePosting::twoTitlesOneNumberAndDate()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    prepareYear(*db);
    InvoicePosting posting(*db, kUser, kToday);
    const InvoiceHeader a = header(QStringLiteral("PRESS"), 1);
    const InvoiceHeader b = header(QStringLiteral("PACKAGING"), 1);
    QVERIFY(posting.saveNew(a, threeLines(), NumberPolicy::Typed).ok);
    QVERIFY(posting.saveNew(b, {line("CASH", "SLEEVE", "100", "3")}, NumberPolicy::Typed).ok);
    QCOMPARE(svRows(*db, 1).size(), 4);

    auto lines = staged(a);
    lines.load(*db, InvoiceStaging(*db).postedLines(a.key));
    lines.remove(*db, lines.all().first().srNo);
    QVERIFY(posting.saveModified(a.key, a, lines.all()).ok);
    voucherEqualsLines(*db, a.key, QStringLiteral("17-10-001"));
    voucherEqualsLines(*db, b.key, QStringLiteral("17-10-001"));
    QCOMPARE(linesTotal(*db, b.key), Money::fromUnits(300));

    const Outcome gone = posting.deleteInvoice(a.key);
    QVERIFY(gone.ok);
    QCOMPARE(gone.message, InvoiceMessages::kDeleted);
    QCOMPARE(gone.rowsWritten, 2);
    QCOMPARE(lineCount(*db, a.key), 0);
    QCOMPARE(InvoicePosting::voucherRows(*db, a.key).size(), 0);
    QCOMPARE(lineCount(*db, b.key), 1);
    voucherEqualsLines(*db, b.key, QStringLiteral("17-10-001"));
    keptBalancesAgree(*db);
}

// Numbers run per title; a proposed number taken by another workstation
// moves on, a typed one is refused, and never do two invoices share one.
void TestInvoicePosting::numbersPerTitle()
{
    TESSEL_YEAR(year);
    auto first = year.connect();
    auto second = year.connect();
    prepareYear(*first);
    const qint64 proposed = InvoiceLookups::nextInvoiceNo(*second, QStringLiteral("PRESS"));
    QCOMPARE(proposed, 1);
    QVERIFY(InvoicePosting(*first, kUser, kToday)
                .saveNew(header(QStringLiteral("PRESS"), 1), threeLines(), NumberPolicy::Proposed)
                .ok);

    const Outcome typed = InvoicePosting(*second, kUser, kToday)
                              .saveNew(header(QStringLiteral("PRESS"), proposed), threeLines(), NumberPolicy::Typed);
    QVERIFY(!typed.ok);
    QCOMPARE(typed.message, InvoiceMessages::kDuplicate);
    QCOMPARE(typed.field, QStringLiteral("txtInvoiceNo"));

    const Outcome moved = InvoicePosting(*second, kUser, kToday)
                              .saveNew(header(QStringLiteral("PRESS"), proposed), threeLines(), NumberPolicy::Proposed);
    QVERIFY(moved.ok);
    QCOMPARE(moved.number, 2);
    QCOMPARE(moved.notice, InvoiceMessages::numberMoved(1, 2));
    QCOMPARE(TestDb::count(*first, QStringLiteral("SELECT COUNT(DISTINCT InvoiceNo) FROM tblInvoice")), 2);
    QCOMPARE(svRows(*first, 1).size(), 2);
    QCOMPARE(svRows(*first, 2).size(), 2);

    // Another title starts its own series at 1.
    QVERIFY(InvoicePosting(*second, kUser, kToday)
                .saveNew(header(QStringLiteral("PACKAGING"), 1), threeLines(), NumberPolicy::Typed)
                .ok);
}

void TestInvoicePosting::refusals_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("what");
    QTest::addColumn<QString>("message");
    for (const char *be : {"sqlite", "postgres"}) {
        const QString b = QString::fromLatin1(be);
        QTest::newRow(qPrintable(b + " no line")) << b << "empty" << InvoiceMessages::kEmpty;
        QTest::newRow(qPrintable(b + " lines worth nothing")) << b << "zero" << InvoiceMessages::kEmpty;
        QTest::newRow(qPrintable(b + " no party")) << b << "noparty" << InvoiceMessages::kNoParty;
        QTest::newRow(qPrintable(b + " cash account")) << b << "cash" << InvoiceMessages::kPartyNotFound;
        QTest::newRow(qPrintable(b + " a heading")) << b << "heading" << PostingMessages::kHeading;
        QTest::newRow(qPrintable(b + " closed date on save")) << b << "closed" << DateRules::closedPeriodMessage();
        QTest::newRow(qPrintable(b + " closed date on modify"))
            << b << "closedmodify" << DateRules::closedPeriodMessage();
        QTest::newRow(qPrintable(b + " closed date on delete"))
            << b << "closeddelete" << DateRules::closedPeriodMessage();
    }
}

void TestInvoicePosting::refusals()
{
    QFETCH(QString, what);
    QFETCH(QString, message);
    TESSEL_YEAR(year);
    auto db = year.connect();
    prepareYear(*db);
    InvoicePosting posting(*db, kUser, kToday);
    const InvoiceHeader open = header(QStringLiteral("PRESS"), 1);
    QVERIFY(posting.saveNew(open, threeLines(), NumberPolicy::Typed).ok);
    const int ledgerBefore = TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance"));
    const int linesBefore = TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblInvoice"));

    InvoiceHeader h = header(QStringLiteral("PRESS"), 2);
    QVector<InvoiceLine> lines = threeLines();
    Outcome out;
    if (what == QLatin1String("empty")) {
        lines.clear();
    } else if (what == QLatin1String("zero")) {
        lines = {line("CASH", "NOTHING", "0", "5")};
    } else if (what == QLatin1String("noparty")) {
        h.partyName.clear();
    } else if (what == QLatin1String("cash")) {
        h.partyCode = QStringLiteral("19-10-001");
    } else if (what == QLatin1String("heading")) {
        h.partyCode = QStringLiteral("17-10-000");
    } else {
        db->execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {kDay});
        h.key.date = kDay;
    }
    if (what == QLatin1String("closedmodify"))
        out = posting.saveModified(
            open.key, header(QStringLiteral("PRESS"), 1, kDay.addDays(1)), InvoiceStaging(*db).postedLines(open.key));
    else if (what == QLatin1String("closeddelete"))
        out = posting.deleteInvoice(open.key);
    else
        out = posting.saveNew(h, lines, NumberPolicy::Typed);
    QVERIFY(!out.ok);
    QCOMPARE(out.message, message);
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")), ledgerBefore);
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblInvoice")), linesBefore);
}

void TestInvoicePosting::failureLeavesBothAsBefore_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("failingStatement");
    for (const char *be : {"sqlite", "postgres"}) {
        const QString b = QString::fromLatin1(be);
        QTest::newRow(qPrintable(b + " new, at the lines")) << b << "new"
                                                            << "INSERT INTO tblInvoice (";
        QTest::newRow(qPrintable(b + " new, at staging")) << b << "new"
                                                          << "DELETE FROM tblInvoiceEmpty";
        QTest::newRow(qPrintable(b + " modify, at the voucher")) << b << "modify"
                                                                 << "UPDATE tblPartyBalance";
        QTest::newRow(qPrintable(b + " modify, at a removed line")) << b << "modify"
                                                                    << "DELETE FROM tblInvoice WHERE";
        QTest::newRow(qPrintable(b + " delete, at the lines")) << b << "delete"
                                                               << "DELETE FROM tblInvoice WHERE";
    }
}

void TestInvoicePosting::failureLeavesBothAsBefore()
{
    QFETCH(QString, path);
    QFETCH(QString, failingStatement);
    TESSEL_YEAR(year);
    auto db = year.connect();
    prepareYear(*db);
    const InvoiceHeader h = header(QStringLiteral("PRESS"), 1);
    QVERIFY(InvoicePosting(*db, kUser, kToday).saveNew(h, threeLines(), NumberPolicy::Typed).ok);
    auto snapshot = [&db] {
        QStringList out;
        for (const Row &r :
            db->select(QStringLiteral("SELECT SrNo, VoucherType, VoucherNo, VDate, PartyCode, PartyBalance "
                                      "FROM tblPartyBalance ORDER BY SrNo")))
            out << QStringLiteral("%1 %2 %3 %4 %5 %6")
                       .arg(r.integer(0))
                       .arg(r.text(1).trimmed())
                       .arg(r.integer(2))
                       .arg(r.date(3).toString())
                       .arg(r.text(4).trimmed())
                       .arg(r.moneyOrZero("PartyBalance").toPlainString());
        for (const Row &r :
            db->select(QStringLiteral("SELECT SrNo, InvoiceNo, InvoiceDate, ValueIncludingTax FROM tblInvoice "
                                      "ORDER BY SrNo")))
            out << QStringLiteral("line %1 %2 %3 %4")
                       .arg(r.integer(0))
                       .arg(r.integer(1))
                       .arg(r.date(2).toString())
                       .arg(r.moneyOrZero("ValueIncludingTax").toPlainString());
        return out;
    };
    const QStringList before = snapshot();

    InvoiceHeader next = header(QStringLiteral("PRESS"), 2);
    auto lines = staged(path == QLatin1String("new") ? next : h);
    if (path == QLatin1String("new")) {
        for (const InvoiceLine &l : threeLines())
            lines.add(*db, l);
    } else {
        lines.load(*db, InvoiceStaging(*db).postedLines(h.key));
        lines.remove(*db, lines.all().first().srNo);
        lines.add(*db, line("CASH", "BOX", "20", "10"));
    }
    const int stagedBefore = TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblInvoiceEmpty"));

    bool fired = false;
    db->setStatementHook([&](const QString &sql) {
        if (sql.startsWith(failingStatement)) {
            fired = true;
            throw DbError(QStringLiteral("disk full"), sql);
        }
    });
    InvoicePosting posting(*db, kUser, kToday);
    bool threw = false;
    try {
        if (path == QLatin1String("new"))
            posting.saveNew(next, lines.all(), NumberPolicy::Typed);
        else if (path == QLatin1String("modify"))
            posting.saveModified(h.key, h, lines.all());
        else
            posting.deleteInvoice(h.key);
    } catch (const DbError &e) {
        threw = true;
        QCOMPARE(e.driverText(), QStringLiteral("disk full"));
    }
    db->setStatementHook({});
    QVERIFY(fired);
    QVERIFY(threw);
    QCOMPARE(db->transactionDepth(), 0);
    QCOMPARE(snapshot(), before);
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblInvoiceEmpty")), stagedBefore);
    keptBalancesAgree(*db);
}

QTEST_GUILESS_MAIN(TestInvoicePosting)
#include "tst_invoiceposting.moc"
