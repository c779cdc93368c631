// The next year made from a demonstration year: the old year stays whole,
// the new one holds the rows from its first day on and every account's
// opening equals its closing before, to the cent.
#include "support/TestDb.h"

#include "admin/BooksCheck.h"
#include "admin/ClosingDate.h"
#include "admin/EndYear.h"
#include "admin/NewYear.h"
#include "admin/YearBackup.h"
#include "foundation/AccountYear.h"
#include "vouchers/DemoGenerator.h"
#include "vouchers/LedgerCheck.h"

#include <QtTest>

using TestDb::count;

namespace {

// Drops the year of that name when the test ends, whatever happened.
struct DropAtEnd
{
    ConnectionProfile profile;
    QString name;
    ~DropAtEnd()
    {
        try {
            if (AccountYear::exists(profile, name))
                AccountYear::drop(profile, name);
        } catch (...) {
        }
    }
};

// Each account's balance before `day` summed from the rows themselves.
QMap<QString, Money> rowBalances(SessionConnection &db, const QDate &day)
{
    QMap<QString, Money> out;
    for (const Row &r : db.select(QStringLiteral("SELECT RTRIM(PartyCode), SUM(PartyBalance) FROM tblPartyBalance "
                                                 "WHERE VDate < ? GROUP BY RTRIM(PartyCode)"),
                                  {day}))
        out.insert(r.text(0), r.money(1).value_or(Money()));
    return out;
}

// A demonstration year of `rows` ledger rows over 2026.
void fillYear(const TestDb::Year &year, qint64 rows)
{
    auto db = year.connect();
    DemoOptions o;
    o.rows = rows;
    o.from = QDate(2026, 1, 1);
    o.to = QDate(2026, 12, 31);
    DemoGenerator::standardYear(*db, o);
}

// True when anything of the working copy of `year` is left: a file of it
// in the data folder, or a database of its name on the server.
bool asideLeft(const ConnectionProfile &profile, const QString &year)
{
    const QString aside = YearBackup::asideName(profile, year);
    if (profile.isEmbedded())
        return !QDir(profile.dataDir).entryList({aside + QStringLiteral("*")}, QDir::Files).isEmpty();
    auto admin = SessionConnection::openMaintenance(profile);
    return count(*admin, QStringLiteral("SELECT COUNT(*) FROM pg_database WHERE datname = ?"), {aside}) > 0;
}

const QStringList kTables = {QStringLiteral("tblInvoice"),        QStringLiteral("tblDeliveryChallan"),
                             QStringLiteral("tblPurchaseOrder"),  QStringLiteral("tblPurchaseStock"),
                             QStringLiteral("tblPostDatedCheque"), QStringLiteral("tblEmployeeSalary")};
const QStringList kDateColumns = {QStringLiteral("InvoiceDate"), QStringLiteral("VDate"), QStringLiteral("VDate"),
                                  QStringLiteral("VDate"),       QStringLiteral("VDate"), QStringLiteral("VDate")};

} // namespace

class TestNewYear : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void carriesEveryAccount_data();
    void carriesEveryAccount();
    void failureLeavesNoYear_data();
    void failureLeavesNoYear();
    void refusals_data() { TestDb::addBackends(); }
    void refusals();
    void proposedName_data();
    void proposedName();
};

void TestNewYear::carriesEveryAccount_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<bool>("carryProfit");
    for (const char *backend : {"sqlite", "postgres"}) {
        QTest::addRow("%s balances", backend) << QString::fromLatin1(backend) << false;
        QTest::addRow("%s with profit and loss", backend) << QString::fromLatin1(backend) << true;
    }
}

void TestNewYear::carriesEveryAccount()
{
    TESSEL_YEAR(year);
    QFETCH(bool, carryProfit);
    const QDate start(2026, 10, 1);
    fillYear(year, 1500);
    auto old = year.connect();
    const int oldRows = count(*old, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance"));
    const int laterRows = count(*old, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE VDate >= ?"), {start});
    QVERIFY(laterRows > 0 && laterRows < oldRows);
    QMap<QString, int> oldTableRows;
    for (const QString &t : kTables)
        oldTableRows[t] = count(*old, QStringLiteral("SELECT COUNT(*) FROM ") + t);

    NewYear::Request r;
    r.fromYear = year.name();
    r.toYear = TestDb::uniqueName();
    r.start = start;
    r.carryProfit = carryProfit;
    r.user = QStringLiteral("ADMIN");
    r.today = QDate(2026, 10, 2);
    DropAtEnd dropNew{year.profile(), r.toYear};
    NewYear::Result result;
    QVector<int> percents;
    // While the steps run, the copy is at work out of sight: the year
    // lists show the old year and not the new one.
    QStringList listedWhileClosing;
    int looked = 0;
    const Outcome out = NewYear::make(year.profile(), r, result, [&](int p, const QString &) {
        percents << p;
        if (p >= 60 && p < 98) {
            const QStringList years = AccountYear::list(year.profile());
            QVERIFY(years.contains(year.name()));
            ++looked;
            if (years.contains(r.toYear) || AccountYear::exists(year.profile(), r.toYear))
                listedWhileClosing << QString::number(p);
        }
    });
    QVERIFY2(out.ok, qPrintable(out.message));
    QVERIFY(!percents.isEmpty() && percents.last() == 100);
    QVERIFY(looked > 5);
    QVERIFY2(listedWhileClosing.isEmpty(), qPrintable(listedWhileClosing.join(QLatin1Char(' '))));
    QVERIFY(AccountYear::list(year.profile()).contains(r.toYear));
    QVERIFY(!asideLeft(year.profile(), r.toYear));
    auto next = SessionConnection::open(year.profile(), r.toYear);

    // The old year stays whole.
    QCOMPARE(count(*old, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")), oldRows);
    for (const QString &t : kTables)
        QCOMPARE(count(*old, QStringLiteral("SELECT COUNT(*) FROM ") + t), oldTableRows.value(t));

    // The new year: the rows from its first day on, and before it only one
    // opening row an account, on the day before.
    QCOMPARE(count(*next, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE VDate >= ?"), {start}), laterRows);
    QCOMPARE(count(*next, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE VDate < ? AND NOT "
                                         "(VoucherType = 'JV' AND VoucherNo = 0 AND PartyDesc = 'OPENING BALANCE')"),
                   {start}),
             0);
    QCOMPARE(count(*next, QStringLiteral("SELECT COUNT(*) FROM (SELECT PartyCode FROM tblPartyBalance WHERE VDate < ? "
                                         "GROUP BY PartyCode HAVING COUNT(*) > 1) x"),
                   {start}),
             0);
    QCOMPARE(*ClosingDate::current(*next), start.addDays(-1));
    for (int i = 0; i < kTables.size(); ++i) {
        QCOMPARE(count(*next, QStringLiteral("SELECT COUNT(*) FROM %1 WHERE %2 < ?").arg(kTables[i], kDateColumns[i]),
                       {start}),
                 0);
        QCOMPARE(count(*next, QStringLiteral("SELECT COUNT(*) FROM %1 WHERE %2 >= ?").arg(kTables[i], kDateColumns[i]),
                       {start}),
                 count(*old, QStringLiteral("SELECT COUNT(*) FROM %1 WHERE %2 >= ?").arg(kTables[i], kDateColumns[i]),
                       {start}));
    }
    // The ledger's indexes, dropped for the removal on the embedded store,
    // stand again.
    if (next->isSQLite())
        QCOMPARE(count(*next, QStringLiteral("SELECT COUNT(*) FROM sqlite_master WHERE type = 'index' "
                                             "AND tbl_name = 'tblPartyBalance' AND name LIKE 'ixPartyBalance%'")),
                 count(*old, QStringLiteral("SELECT COUNT(*) FROM sqlite_master WHERE type = 'index' "
                                            "AND tbl_name = 'tblPartyBalance' AND name LIKE 'ixPartyBalance%'")));
    QStringList differences;
    QVERIFY2(LedgerCheck::keptBalancesAgree(*next, &differences), qPrintable(differences.join(QStringLiteral("; "))));

    // The comparison, and the rows themselves, to the cent.
    const QMap<QString, Money> closing = rowBalances(*old, start);
    const QMap<QString, Money> opening = rowBalances(*next, start);
    QCOMPARE(result.lines.size(), int(closing.size()));
    Money result0;
    for (const NewYear::CarryLine &l : result.lines) {
        QCOMPARE(l.closing, closing.value(l.code));
        QCOMPARE(l.opening, opening.value(l.code));
        const bool moved = l.code == QLatin1String("20-01-001") || l.code >= QLatin1String("20-10-000");
        if (!carryProfit || !moved)
            QVERIFY2(l.opening == l.closing, qPrintable(l.code));
        else if (l.code != QLatin1String("20-01-001"))
            QCOMPARE(l.opening, Money());
        if (l.code >= QLatin1String("20-10-000"))
            result0 += l.closing;
    }
    QCOMPARE(result.closingTotal, Money()); // a demonstration year balances
    if (!carryProfit) {
        QCOMPARE(result.differences, 0);
        QCOMPARE(result.openingTotal, result.closingTotal);
    } else {
        QVERIFY(result.differences > 0);
        // The result moved to 20-01-001 in whole money.
        QCOMPARE(opening.value(QStringLiteral("20-01-001")),
                 closing.value(QStringLiteral("20-01-001")).roundedToUnits() + result0.roundedToUnits());
    }

    // The new year passes the books check as the old one does (the carry's
    // whole-money rounding is no fault).
    const BooksCheck::Result checked = BooksCheck::run(*next);
    QStringList faults;
    for (const BooksCheck::Fault &f : checked.faults)
        faults << BooksCheck::kindName(f.kind) + QLatin1Char(' ') + f.account + QLatin1Char(' ') + f.text;
    QVERIFY2(checked.passed(), qPrintable(faults.join(QStringLiteral("; "))));

    // The proof reads the old year's rows, not its kept balances: kept
    // balances gone wrong after the carry show as a difference no longer.
    old->execute(QStringLiteral("UPDATE tblAccountMonthBalance SET BalanceCents = BalanceCents + 100 "
                                "WHERE YearMonth = 202601"));
    const NewYear::Result again = NewYear::compare(*old, *next, start);
    QCOMPARE(again.differences, result.differences);
    QCOMPARE(again.closingTotal, Money());
}

void TestNewYear::failureLeavesNoYear_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("failure");
    for (const char *backend : {"sqlite", "postgres"}) {
        QTest::addRow("%s a step refuses", backend) << QString::fromLatin1(backend) << "refusal";
        QTest::addRow("%s a step fails", backend) << QString::fromLatin1(backend) << "failure";
        QTest::addRow("%s a statement fails", backend) << QString::fromLatin1(backend) << "closing";
    }
    // Another connection to the copy while it is made: the server will not
    // give it its name. (A file has no such guard.)
    QTest::addRow("postgres opened elsewhere") << "postgres" << "elsewhere";
}

// A new year whose making fails at any point after the copy leaves no year
// of the new name and no working copy, and the old year as it was.
void TestNewYear::failureLeavesNoYear()
{
    TESSEL_YEAR(year);
    QFETCH(QString, failure);
    fillYear(year, 120);
    auto old = year.connect();
    const int oldRows = count(*old, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance"));

    NewYear::Request r;
    r.fromYear = year.name();
    r.toYear = TestDb::uniqueName();
    r.start = QDate(2026, 7, 1);
    r.user = QStringLiteral("ADMIN");
    r.today = QDate(2026, 7, 2);
    DropAtEnd dropNew{year.profile(), r.toYear};
    const QString aside = YearBackup::asideName(year.profile(), r.toYear);
    std::unique_ptr<SessionConnection> held;
    bool planted = false;
    auto plant = [&](const QString &what) {
        if (planted)
            return;
        if (failure == QLatin1String("refusal") && what == EndYear::info(EndYear::Step::Accounts).caption) {
            // Kept balances that differ from the rows: the ledger step refuses.
            auto copy = SessionConnection::open(year.profile(), aside);
            copy->execute(QStringLiteral("UPDATE tblAccountMonthBalance SET BalanceCents = BalanceCents + 100"));
        } else if (failure == QLatin1String("failure") && what == EndYear::info(EndYear::Step::Sale).caption) {
            planted = true;
            throw AccountYear::Error(QStringLiteral("planted"));
        } else if (failure == QLatin1String("closing") && what == EndYear::info(EndYear::Step::Stock).caption) {
            // A closing date the copy cannot take: the table is gone.
            auto copy = SessionConnection::open(year.profile(), aside);
            copy->execute(QStringLiteral("DROP TABLE tblClosingDate"));
        } else if (failure == QLatin1String("elsewhere") && what == QLatin1String("Comparing the balances")) {
            held = SessionConnection::open(year.profile(), aside);
        } else {
            return;
        }
        planted = true;
    };
    NewYear::Result result;
    bool thrown = false;
    QString thrownMessage;
    Outcome out;
    try {
        out = NewYear::make(year.profile(), r, result, [&](int, const QString &what) { plant(what); });
    } catch (const AccountYear::Error &e) {
        thrown = true;
        thrownMessage = e.message();
    } catch (const DbError &) {
        thrown = true;
    }
    held.reset();
    QVERIFY(planted);
    QVERIFY(thrown || !out.ok);
    if (failure == QLatin1String("refusal"))
        QCOMPARE(out.message, EndYear::Msg::keptBalancesDiffer());
    if (failure == QLatin1String("elsewhere"))
        QVERIFY2(thrownMessage.contains(QLatin1String("another connection")), qPrintable(thrownMessage));
    QVERIFY(!AccountYear::exists(year.profile(), r.toYear));
    QVERIFY(!asideLeft(year.profile(), r.toYear));
    QCOMPARE(count(*old, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")), oldRows);
}

void TestNewYear::refusals()
{
    TESSEL_YEAR(year);
    NewYear::Request r;
    r.fromYear = year.name();
    r.start = QDate(2027, 1, 1);
    NewYear::Result result;

    r.toYear = QStringLiteral("Next2027");
    Outcome out = NewYear::make(year.profile(), r, result);
    QVERIFY(!out.ok);
    QCOMPARE(out.field, QStringLiteral("txtNewYear"));
    r.toYear = year.name();
    out = NewYear::make(year.profile(), r, result);
    QVERIFY(!out.ok);
    QCOMPARE(out.field, QStringLiteral("txtNewYear"));
    r.toYear = TestDb::uniqueName();
    r.start = QDate();
    out = NewYear::make(year.profile(), r, result);
    QVERIFY(!out.ok);
    QCOMPARE(out.field, QStringLiteral("mskDateFrom"));
    QVERIFY(!AccountYear::exists(year.profile(), r.toYear));

    // A year of that name exists already: refused by the copy, and the
    // year that was there is left as it was.
    TestDb::Year other(year.backend());
    {
        auto db = other.connect();
        db->execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES ('17-10-001', 'KEPT')"));
    }
    r.toYear = other.name();
    r.start = QDate(2027, 1, 1);
    QVERIFY_THROWS_EXCEPTION(AccountYear::Error, NewYear::make(year.profile(), r, result));
    auto db = other.connect();
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo WHERE PartyName = 'KEPT'")), 1);
}

void TestNewYear::proposedName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("next");
    QTest::newRow("a year") << "Tessel2026" << "Tessel2027";
    QTest::newRow("zeros kept") << "Tessel_09" << "Tessel_10";
    QTest::newRow("no number") << "TesselPress" << "TesselPress_next";
}

void TestNewYear::proposedName()
{
    QFETCH(QString, name);
    QFETCH(QString, next);
    QCOMPARE(NewYear::proposedName(name), next);
}

QTEST_GUILESS_MAIN(TestNewYear)
#include "tst_newyear.moc"
