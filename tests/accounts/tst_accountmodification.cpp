// Changing an account: the checks in their order, and the cascade of a
// code or name change over every table that copies the account, all of it
// or none of it.
#include "support/TestDb.h"
#include "vouchers/VoucherFixture.h"

#include "accounts/AccountModification.h"
#include "accounts/AccountRules.h"
#include "accounts/OpeningBalance.h"
#include "foundation/DateRules.h"
#include "vouchers/LedgerCheck.h"
#include "vouchers/PostingChecks.h"

#include <QtTest>

using namespace VoucherFixture;
using TestDb::count;
using AccountModification::AccountCopy;

namespace {

const QDate kClosing(2026, 1, 31);
const QString kOld = QStringLiteral("17-10-001");
const QString kOldName = QStringLiteral("CRESCENT TEXTILES");
const QString kNew = QStringLiteral("18-20-005");
const QString kNewName = QStringLiteral("CRESCENT MILLS");

void prepare(SessionConnection &db)
{
    db.execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {kClosing});
    addAccounts(db);
    db.execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES ('17-10-000', 'CUSTOMERS')"));
    db.execute(QStringLiteral("INSERT INTO tblDBCR (PartyCode) VALUES (?)"), {kOld});
    OpeningBalance::Entry e;
    e.code = kOld;
    e.date = kClosing;
    e.amount = m("1000.10");
    QVERIFY(OpeningBalance::open(db, e, kUser, kToday));
    QVERIFY(stageAndSave(db, VoucherKey{QStringLiteral("JV"), 1, kDay},
                         {line("17-10-001", "CRESCENT TEXTILES", m("75.25"), "DR"),
                          line("21-10-001", "ELECTRICITY", m("75.25"), "CR")})
                .ok);
}

// One row in every copy, holding the account as it stands.
void fillCopies(SessionConnection &db)
{
    for (const AccountCopy &c : AccountModification::accountCopies()) {
        if (c.table == QLatin1String("tblDBCR"))
            continue; // made with the account
        if (c.table == QLatin1String("tblTLClientInfo")) {
            db.execute(QStringLiteral("UPDATE tblTLClientInfo SET PartyCode = ?, PartyName = ?"), {kOld, kOldName});
            continue;
        }
        if (c.codeColumn.isEmpty())
            db.execute(QStringLiteral("INSERT INTO %1 (%2) VALUES (?)").arg(c.table, c.nameColumn), {kOldName});
        else if (c.nameColumn.isEmpty())
            db.execute(QStringLiteral("INSERT INTO %1 (%2) VALUES (?)").arg(c.table, c.codeColumn), {kOld});
        else
            db.execute(QStringLiteral("INSERT INTO %1 (%2, %3) VALUES (?, ?)").arg(c.table, c.codeColumn, c.nameColumn),
                       {kOld, kOldName});
    }
}

// Rows of a copy under a code and name (either may be empty: not tested).
int copiesOf(SessionConnection &db, const AccountCopy &c, const QString &code, const QString &name)
{
    if (c.codeColumn.isEmpty())
        return count(db, QStringLiteral("SELECT COUNT(*) FROM %1 WHERE %2 = ?").arg(c.table, c.nameColumn), {name});
    if (c.nameColumn.isEmpty())
        return count(db, QStringLiteral("SELECT COUNT(*) FROM %1 WHERE %2 = ?").arg(c.table, c.codeColumn), {code});
    return count(db, QStringLiteral("SELECT COUNT(*) FROM %1 WHERE %2 = ? AND %3 = ?").arg(c.table, c.codeColumn, c.nameColumn),
                 {code, name});
}

AccountModification::Change changeOf(const QString &code, const QString &name)
{
    AccountModification::Change c;
    c.oldCode = kOld;
    c.oldName = kOldName;
    c.code = code;
    c.name = name;
    c.address = QStringLiteral("  MALL ROAD  ");
    c.description = QStringLiteral("OUR OLDEST CUSTOMER");
    c.saleTaxNo = QStringLiteral("__-__-____-___-__");
    c.ntn = QStringLiteral("_______-_");
    c.date = kClosing;
    c.side = QStringLiteral("DR");
    c.balance = m("1000.10");
    return c;
}

// What the account looks like across the year, for a before-and-after.
QStringList snapshot(SessionConnection &db)
{
    QStringList out;
    for (const AccountCopy &c : AccountModification::accountCopies())
        out << QStringLiteral("%1.%2.%3=%4/%5")
                   .arg(c.table, c.codeColumn, c.nameColumn)
                   .arg(copiesOf(db, c, kOld, kOldName))
                   .arg(copiesOf(db, c, kNew, kNewName));
    for (const QString &sql : {QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE PartyCode = '17-10-001'"),
                               QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo WHERE PartyCode = '17-10-001'"),
                               QStringLiteral("SELECT COUNT(*) FROM tblAccountBalance WHERE PartyCode = '17-10-001'"),
                               QStringLiteral("SELECT COUNT(*) FROM tblAccountMonthBalance WHERE PartyCode = '18-20-005'")})
        out << sql + QStringLiteral(" = ") + QString::number(count(db, sql));
    return out;
}

} // namespace

class TestAccountModification : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void copiesCoverEveryTable();
    void refusals_data();
    void refusals();
    void codeChangeMovesEverything_data() { TestDb::addBackends(); }
    void codeChangeMovesEverything();
    void failureLeavesEverything_data() { TestDb::addBackends(); }
    void failureLeavesEverything();
    void detailsOnlyAndHeadings_data() { TestDb::addBackends(); }
    void detailsOnlyAndHeadings();
};

void TestAccountModification::copiesCoverEveryTable()
{
    // Every table that copies an account's code or name outside the chart
    // and the ledger.
    const QStringList wanted = {"tblDBCR.PartyCode.",
                                "tblInvoice.PartyCode.PartyName",
                                "tblEmployeeInfo.EmployeeCode.EmployeeName",
                                "tblEmployeeStock.PartyCode.",
                                "tblPurchaseOrder.PartyCode.PartyName",
                                "tblDeliveryChallan.PartyCode.PartyName",
                                "tblPurchaseStock..PartyName",
                                "tblPurchaseStock..PurchaseName",
                                "tblOtherServices.PartyCode.PartyName",
                                "tblOtherServices.SupplierCode.SupplierName",
                                "tblPostDatedCheque.PartyCode.PartyName",
                                "tblPostDatedCheque.BankCode.BankName",
                                "tblJobCard.PartyCode.PartyName",
                                "tblStock.PartyCode.PartyName",
                                "tblEmployeeSalary.EmployeeCode.EmployeeName",
                                "tblTLClientInfo.PartyCode.PartyName"};
    QStringList have;
    for (const AccountCopy &c : AccountModification::accountCopies())
        have << c.table + QLatin1Char('.') + c.codeColumn + QLatin1Char('.') + c.nameColumn;
    for (const QString &w : wanted)
        QVERIFY2(have.contains(w), qPrintable(w));
}

void TestAccountModification::refusals_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("what");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("field");
    const QList<std::array<QString, 4>> cases = {
        {"no account loaded", "oldCode=", AccountModification::Msg::noAccount(), "cmbPartyName"},
        {"account gone", "oldCode=17-10-077", AccountModification::Msg::noAccount(), "cmbPartyName"},
        {"blank name", "name=   ", AccountModification::Msg::nameMissing(), "txtPartyName"},
        {"no balance", "balance=", AccountModification::Msg::balanceMissing(), "txtMBalance"},
        {"half a code", "code=18-2_-___", AccountModification::Msg::codeMissing(), "mskPartyCode"},
        {"code of another account", "code=14-10-001", AccountModification::Msg::codeExists(), "mskPartyCode"},
        {"name of another account", "name=PAPER HOUSE", AccountModification::Msg::nameExists(), "txtPartyName"},
        {"date before closing", "date=30/01/2026", DateRules::closedPeriodMessage(), "mskMDate"},
        {"to a heading with an amount", "code=18-20-000", PostingMessages::kHeading, "txtMBalance"},
    };
    for (const char *backend : {"sqlite", "postgres"})
        for (const auto &c : cases)
            QTest::addRow("%s: %s", backend, qPrintable(c[0])) << QString::fromLatin1(backend) << c[1] << c[2] << c[3];
}

void TestAccountModification::refusals()
{
    TESSEL_YEAR(year);
    QFETCH(QString, what);
    QFETCH(QString, message);
    QFETCH(QString, field);
    auto db = year.connect();
    prepare(*db);
    AccountModification::Change c = changeOf(kNew, kNewName);
    const QString key = what.section(QLatin1Char('='), 0, 0);
    const QString value = what.section(QLatin1Char('='), 1);
    if (key == QLatin1String("oldCode"))
        c.oldCode = value;
    else if (key == QLatin1String("name"))
        c.name = value;
    else if (key == QLatin1String("balance"))
        c.balance.reset();
    else if (key == QLatin1String("code"))
        c.code = value;
    else if (key == QLatin1String("date"))
        c.date = DateRules::fromMaskText(value);
    const QStringList before = snapshot(*db);
    const Outcome r = AccountModification::save(*db, c, kUser, kToday);
    QVERIFY(!r.ok);
    QCOMPARE(r.message, message);
    QCOMPARE(r.field, field);
    QCOMPARE(snapshot(*db), before);
}

void TestAccountModification::codeChangeMovesEverything()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    prepare(*db);
    fillCopies(*db);
    const Money balance = *Ledger::accountBalance(*db, kOld);
    QCOMPARE(balance, m("1075.35"));

    const Outcome r = AccountModification::save(*db, changeOf(kNew, kNewName), QStringLiteral("ADMIN"), kToday);
    QVERIFY2(r.ok, qPrintable(r.message));
    QCOMPARE(r.message, AccountModification::Msg::modified());

    for (const AccountCopy &c : AccountModification::accountCopies()) {
        const QString what = c.table + QLatin1Char('.') + c.codeColumn + c.nameColumn;
        QVERIFY2(copiesOf(*db, c, kOld, kOldName) == 0, qPrintable(what));
        QVERIFY2(copiesOf(*db, c, kNew, kNewName) == 1, qPrintable(what));
    }
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE PartyCode = ?"), {kOld}), 0);
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE PartyCode = ? AND PartyName = ?"),
                   {kNew, kNewName}),
             2);
    QVERIFY(!Ledger::accountBalance(*db, kOld) || Ledger::accountBalance(*db, kOld)->isZero());
    QCOMPARE(*Ledger::accountBalance(*db, kNew), balance);
    QVERIFY(LedgerCheck::keptBalancesAgree(*db));

    // The account itself, its description kept and its texts trimmed.
    const auto info = db->selectOne(QStringLiteral("SELECT PartyName, PartyAddress, PartyDesc, UserName FROM tblPartyInfo "
                                                   "WHERE PartyCode = ?"),
                                    {kNew});
    QVERIFY(info);
    QCOMPARE(info->text(0).trimmed(), kNewName);
    QCOMPARE(info->text(1), QStringLiteral("MALL ROAD"));
    QCOMPARE(info->text(2), QStringLiteral("OUR OLDEST CUSTOMER"));
    QCOMPARE(info->text(3).trimmed(), QStringLiteral("ADMIN"));
    // Only the opening row was rewritten by the user of the change.
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE PartyCode = ? AND UserName = 'ADMIN'"),
                   {kNew}),
             1);
}

void TestAccountModification::failureLeavesEverything()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    prepare(*db);
    fillCopies(*db);
    // A table in the middle of the cascade refuses its update.
    if (db->isPostgres()) {
        db->execute(QStringLiteral("CREATE FUNCTION refuse_update() RETURNS trigger AS $$ BEGIN "
                                   "RAISE EXCEPTION 'injected failure'; END $$ LANGUAGE plpgsql"));
        db->execute(QStringLiteral("CREATE TRIGGER trRefuse BEFORE UPDATE ON tblPostDatedCheque FOR EACH ROW "
                                   "EXECUTE FUNCTION refuse_update()"));
    } else {
        db->execute(QStringLiteral("CREATE TRIGGER trRefuse BEFORE UPDATE ON tblPostDatedCheque BEGIN "
                                   "SELECT RAISE(ABORT, 'injected failure'); END"));
    }
    const QStringList before = snapshot(*db);
    const Money balance = *Ledger::accountBalance(*db, kOld);

    bool thrown = false;
    try {
        AccountModification::save(*db, changeOf(kNew, kNewName), kUser, kToday);
    } catch (const DbError &e) {
        thrown = true;
        QVERIFY(e.driverText().contains(QStringLiteral("injected failure")));
    }
    QVERIFY(thrown);
    QCOMPARE(snapshot(*db), before);
    QCOMPARE(*Ledger::accountBalance(*db, kOld), balance);
    QVERIFY(LedgerCheck::keptBalancesAgree(*db));
}

void TestAccountModification::detailsOnlyAndHeadings()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    prepare(*db);
    fillCopies(*db);

    // Same code and name: the details change, every copy stays.
    AccountModification::Change same = changeOf(kOld, kOldName + QStringLiteral(" "));
    same.phone = QStringLiteral(" 042-111 ");
    QVERIFY(AccountModification::save(*db, same, kUser, kToday));
    QCOMPARE(db->scalar(QStringLiteral("SELECT PartyPhone FROM tblPartyInfo WHERE PartyCode = ?"), {kOld}).toString(),
             QStringLiteral("042-111"));
    for (const AccountCopy &c : AccountModification::accountCopies())
        QVERIFY2(copiesOf(*db, c, kOld, kOldName) == 1, qPrintable(c.table));

    // A heading's name changes; its opening row stays at nothing.
    AccountModification::Change heading;
    heading.oldCode = QStringLiteral("17-10-000");
    heading.oldName = QStringLiteral("CUSTOMERS");
    heading.code = QStringLiteral("17-10-000");
    heading.name = QStringLiteral("TRADE CUSTOMERS");
    heading.date = kClosing;
    heading.balance = Money();
    QVERIFY(AccountModification::save(*db, heading, kUser, kToday));
    QCOMPARE(count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo WHERE PartyName = 'TRADE CUSTOMERS'")), 1);
    QVERIFY(LedgerCheck::keptBalancesAgree(*db));
}

QTEST_GUILESS_MAIN(TestAccountModification)
#include "tst_accountmodification.moc"
