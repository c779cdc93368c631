// The payroll's rules without screens, on both engines: the register's
// checks and duplicates, the salary sheet's numbering across months, its
// line commands with their refusals, the month's sheet for the active
// staff, the two reports read back, and the demonstration year's payroll.
#include "support/TestDb.h"
#include "reports/ReportReadBack.h"

#include "foundation/DateRules.h"
#include "foundation/Lookups.h"
#include "payroll/EmployeeRegister.h"
#include "payroll/SalaryReports.h"
#include "payroll/SalarySheet.h"
#include "reports/ReportFrame.h"
#include "vouchers/DemoGenerator.h"
#include "vouchers/LedgerCheck.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace EmployeeRegister;

namespace {

const QDate kClosing(2025, 12, 31);
const QDate kToday(2026, 4, 2);

struct Payroll
{
    explicit Payroll(const TestDb::Year &year) : db(year.connect())
    {
        db->execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {kClosing});
        for (const auto &a : QList<QPair<QString, QString>>{{"16-10-001", "AHMED KHAN"},
                                                             {"16-10-002", "ALI RAZA"},
                                                             {"16-10-003", "USMAN IQBAL"},
                                                             {"16-10-004", "BILAL BUTT"}})
            db->execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES (?, ?)"),
                        {a.first, a.second});
    }
    Entry entry(const QString &code, const QString &name, const QString &salary, const QString &status = kActive)
    {
        Entry e;
        e.code = code;
        e.name = name;
        e.salary = salary;
        e.inDate = QStringLiteral("01/03/2024");
        e.status = status;
        return e;
    }
    // Ahmed, Ali and Usman active, Bilal gone.
    void staff()
    {
        QVERIFY(add(*db, entry("16-10-001", "AHMED KHAN", "15000")));
        QVERIFY(add(*db, entry("16-10-002", "ALI RAZA", "20000")));
        QVERIFY(add(*db, entry("16-10-003", "USMAN IQBAL", "12000")));
        QVERIFY(add(*db, entry("16-10-004", "BILAL BUTT", "18000", kDeactive)));
    }
    SalarySheet sheet() { return SalarySheet(*db, QStringLiteral("CLERK"), kToday); }
    SalaryLine line(const QString &code, const QString &name, const QString &salary, const QString &time = "0",
                    const QString &leave = "0", const QString &advance = "0")
    {
        SalaryLine l;
        l.employeeCode = code;
        l.employeeName = name;
        l.figures = SalaryArithmetic::compute({salary, time, leave, advance});
        return l;
    }
    int rows(const QString &where = QStringLiteral("1 = 1"), const QVariantList &p = {})
    {
        return TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblEmployeeSalary WHERE ") + where, p);
    }
    std::unique_ptr<SessionConnection> db;
};

SalaryKey keyOf(qint64 number, const QDate &date)
{
    SalaryKey k;
    k.number = number;
    k.date = date;
    return k;
}

} // namespace

class TestPayrollRules : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void registerChecks_data();
    void registerChecks();
    void registerChanges_data() { TestDb::addBackends(); }
    void registerChanges();
    void monthSheetsAndNumbers_data() { TestDb::addBackends(); }
    void monthSheetsAndNumbers();
    void lineCommands_data() { TestDb::addBackends(); }
    void lineCommands();
    void numbersDoNotMergeSheets_data() { TestDb::addBackends(); }
    void numbersDoNotMergeSheets();
    void closedPeriodHolds_data() { TestDb::addBackends(); }
    void closedPeriodHolds();
    void reportsReadBack_data() { TestDb::addBackends(); }
    void reportsReadBack();
    void demoYearHasPayroll_data() { TestDb::addBackends(); }
    void demoYearHasPayroll();
};

void TestPayrollRules::registerChecks_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("salary");
    QTest::addColumn<QString>("inDate");
    QTest::addColumn<QString>("status");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("field");
    for (const char *b : {"sqlite", "postgres"}) {
        const QByteArray p = QByteArray(b) + ": ";
        QTest::newRow(p + "no name") << b << "" << "16-10-002" << "100" << "01/01/2026" << "ACTIVE"
                                     << Msg::nameMissing() << "cmbPartyName";
        QTest::newRow(p + "no code") << b << "ALI RAZA" << "__-__-___" << "100" << "01/01/2026" << "ACTIVE"
                                     << Msg::codeMissing() << "mskPartyCode";
        QTest::newRow(p + "no salary") << b << "ALI RAZA" << "16-10-002" << "" << "01/01/2026" << "ACTIVE"
                                       << Msg::salaryMissing() << "txtSalary";
        QTest::newRow(p + "no account of that code") << b << "ALI RAZA" << "16-10-099" << "100" << "01/01/2026"
                                                     << "ACTIVE" << Msg::codeNotFound() << "mskPartyCode";
        QTest::newRow(p + "second row for a code") << b << "AHMED KHAN" << "16-10-001" << "100" << "01/01/2026"
                                                   << "ACTIVE" << Msg::alreadySaved() << "mskPartyCode";
        QTest::newRow(p + "no day of the calendar") << b << "ALI RAZA" << "16-10-002" << "100" << "30/02/2026"
                                                    << "ACTIVE" << DateRules::wrongDateMessage() << "mskInDate";
        QTest::newRow(p + "date half typed") << b << "ALI RAZA" << "16-10-002" << "100" << "12/__/2026" << "ACTIVE"
                                             << DateRules::dateMissingMessage() << "mskInDate";
        QTest::newRow(p + "unknown status") << b << "ALI RAZA" << "16-10-002" << "100" << "01/01/2026" << "GONE"
                                            << Msg::badStatus() << "cmbStatus";
        QTest::newRow(p + "saved, no date given") << b << "ALI RAZA" << "16-10-002" << "100" << "__/__/____"
                                                  << "DEACTIVE" << Msg::saved() << "";
    }
}

void TestPayrollRules::registerChecks()
{
    TESSEL_YEAR(year);
    QFETCH(QString, name);
    QFETCH(QString, code);
    QFETCH(QString, salary);
    QFETCH(QString, inDate);
    QFETCH(QString, status);
    QFETCH(QString, message);
    QFETCH(QString, field);
    Payroll p(year);
    QVERIFY(add(*p.db, p.entry("16-10-001", "AHMED KHAN", "15000")));
    Entry e = p.entry(code, name, salary, status);
    e.inDate = inDate;
    const Outcome out = add(*p.db, e);
    QCOMPARE(out.message, message);
    QCOMPARE(out.field, field);
    const int saved = out.ok ? 2 : 1;
    QCOMPARE(TestDb::count(*p.db, QStringLiteral("SELECT COUNT(*) FROM tblEmployeeInfo")), saved);
    // A delete never goes through: the field's refusal first, then always
    // the refusal of the command itself.
    const Outcome del = remove(*p.db, e);
    QVERIFY(!del.ok);
    if (out.ok || out.message == Msg::alreadySaved())
        QCOMPARE(del.message, Msg::noDelete());
    QCOMPARE(TestDb::count(*p.db, QStringLiteral("SELECT COUNT(*) FROM tblEmployeeInfo")), saved);
}

void TestPayrollRules::registerChanges()
{
    TESSEL_YEAR(year);
    Payroll p(year);
    p.staff();
    const QueryResult grid = gridRows(*p.db);
    QCOMPARE(grid.size(), 4);
    // By status, then name: the active ones first.
    QCOMPARE(grid.at(0).text(QStringLiteral("EmployeeName")).trimmed(), QStringLiteral("AHMED KHAN"));
    QCOMPARE(grid.at(3).text(QStringLiteral("Status")).trimmed(), kDeactive);
    const qint64 ali = grid.at(1).integer(QStringLiteral("SrNo"));

    Entry e = p.entry("16-10-002", "ALI RAZA", "21500.50");
    e.incrementDate = QStringLiteral("01/01/2026");
    QCOMPARE(modify(*p.db, ali, e).message, Msg::updated());
    const auto changed = employee(*p.db, ali);
    QVERIFY(changed);
    QCOMPARE(changed->salary, Money::fromCents(2150050));
    QCOMPARE(changed->incrementDate, QDate(2026, 1, 1));
    QCOMPARE(changed->inDate, QDate(2024, 3, 1));

    // No row picked: nothing changes, and it says so.
    const Outcome none = modify(*p.db, 0, p.entry("16-10-002", "ALI RAZA", "1"));
    QCOMPARE(none.message, Msg::noRowPicked());
    QCOMPARE(employee(*p.db, ali)->salary, Money::fromCents(2150050));
    // Another employee's code is refused.
    QCOMPARE(modify(*p.db, ali, p.entry("16-10-001", "AHMED KHAN", "1")).message, Msg::alreadySavedOnModify());
    QCOMPARE(employee(*p.db, ali)->code, QStringLiteral("16-10-002"));
}

void TestPayrollRules::monthSheetsAndNumbers()
{
    TESSEL_YEAR(year);
    Payroll p(year);
    p.staff();
    SalarySheet s = p.sheet();
    QCOMPARE(s.nextNumber(), 1);
    // Ledger vouchers of other types do not move the sheets' series.
    p.db->execute(QStringLiteral("INSERT INTO tblPartyBalance (VoucherType, VoucherNo, VDate, PartyCode, PartyName, "
                                 "PartyDR, PartyCR, PartyBalance) VALUES ('ES', 40, ?, '16-10-001', 'AHMED KHAN', 0, 0, 0)"),
                {QDate(2026, 1, 5)});
    for (int month = 1; month <= 3; ++month) {
        SalaryKey k = keyOf(s.nextNumber(), QDate(2026, month, 1).addMonths(1).addDays(-1));
        const Outcome out = s.addMonth(k);
        QVERIFY2(out.ok, qPrintable(out.message));
        QCOMPARE(out.number, qint64(month));
        QCOMPARE(out.rowsWritten, 3);
        QVERIFY(out.notice.isEmpty());
    }
    QCOMPARE(s.nextNumber(), 4);
    // Every active employee once a month, the one gone never.
    QCOMPARE(p.rows(QStringLiteral("EmployeeCode = ?"), {QStringLiteral("16-10-001")}), 3);
    QCOMPARE(p.rows(QStringLiteral("EmployeeCode = ?"), {QStringLiteral("16-10-004")}), 0);
    QCOMPARE(p.rows(QStringLiteral("VoucherNo = 2 AND VDate = ?"), {QDate(2026, 2, 28)}), 3);
    QCOMPARE(s.total(keyOf(2, QDate(2026, 2, 28))), std::optional<Money>(Money::fromUnits(47000)));
    // A month asked again under a number now taken starts a sheet of its own.
    SalaryKey again = keyOf(3, QDate(2026, 4, 30));
    const Outcome moved = s.addMonth(again);
    QCOMPARE(moved.number, qint64(4));
    QCOMPARE(moved.notice, SalaryMessages::numberMoved(3, 4));
    QCOMPARE(p.rows(QStringLiteral("VoucherNo = 3")), 3);
}

void TestPayrollRules::lineCommands()
{
    TESSEL_YEAR(year);
    Payroll p(year);
    p.staff();
    SalarySheet s = p.sheet();
    SalaryKey k = keyOf(1, QDate(2026, 1, 31));
    std::optional<Money> total;

    // The rule works out the figures that follow from the typed ones.
    SalaryLine ahmed = p.line("16-10-001", "AHMED KHAN", "15000", "12", "1", "2000");
    ahmed.figures.balance = Money::fromUnits(1);
    ahmed.figures.otAmount = Money::fromUnits(99999);
    Outcome out = s.addLine(k, ahmed, true, &total);
    QCOMPARE(out.message, SalaryMessages::kAdded);
    QCOMPARE(total, std::optional<Money>(Money::fromUnits(13500)));
    out = s.addLine(k, p.line("16-10-002", "ALI RAZA", "20000", "0", "1"), false, &total);
    QVERIFY(out.ok);
    QCOMPARE(total, std::optional<Money>(Money::fromCents(3283333)));
    const QueryResult grid = s.gridRows(k);
    QCOMPARE(grid.size(), 2);
    QCOMPARE(grid.at(0).moneyOrZero(QStringLiteral("OTAmount")), Money::fromUnits(500));
    QCOMPARE(grid.at(1).moneyOrZero(QStringLiteral("OverDays")), Money::fromUnits(-1));

    // Refusals, each with nothing written.
    QCOMPARE(s.addLine(k, p.line("16-10-004", "BILAL BUTT", "18000"), false).message, SalaryMessages::kPartyNotFound);
    QCOMPARE(s.addLine(k, p.line("", "NOBODY", "18000"), false).message, SalaryMessages::kPartyNotFound);
    QCOMPARE(s.addLine(k, p.line("16-10-003", "", "18000"), false).message, SalaryMessages::kNoParty);
    SalaryKey other = k;
    other.type = QStringLiteral("JV");
    QCOMPARE(s.addLine(other, p.line("16-10-003", "USMAN IQBAL", "12000"), false).message, SalaryMessages::kBadType);
    QCOMPARE(p.rows(), 2);

    // Change: Ali's leave becomes overtime.
    const qint64 aliRow = grid.at(1).integer(QStringLiteral("SrNo"));
    SalaryLine ali = p.line("16-10-002", "ALI RAZA", "20000", "6", "0", "500");
    ali.srNo = aliRow;
    out = s.changeLine(k, k, ali, &total);
    QCOMPARE(out.message, SalaryMessages::kModified);
    QCOMPARE(total, std::optional<Money>(Money::fromCents(1350000 + 2066667 - 50000)));
    // No row picked: nothing changes.
    ali.srNo = 0;
    QCOMPARE(s.changeLine(k, k, ali).message, SalaryMessages::kNoRowPicked);
    // A new date moves the whole sheet.
    ali.srNo = aliRow;
    SalaryKey moved = keyOf(1, QDate(2026, 1, 30));
    QVERIFY(s.changeLine(k, moved, ali).ok);
    QCOMPARE(p.rows(QStringLiteral("VDate = ?"), {QDate(2026, 1, 30)}), 2);
    QVERIFY(!s.exists(k));

    // Delete: no row picked deletes nothing and says so; the last line
    // leaves no total.
    QCOMPARE(s.deleteLine(moved, 0, &total).message, SalaryMessages::kNothingDeleted);
    QCOMPARE(p.rows(), 2);
    out = s.deleteLine(moved, aliRow, &total);
    QCOMPARE(out.message, SalaryMessages::kDeleted);
    QCOMPARE(total, std::optional<Money>(Money::fromUnits(13500)));
    const qint64 ahmedRow = s.gridRows(moved).at(0).integer(QStringLiteral("SrNo"));
    QVERIFY(s.deleteLine(moved, ahmedRow, &total).ok);
    QCOMPARE(total, std::nullopt);

    // The whole sheet.
    SalaryKey march = keyOf(s.nextNumber(), QDate(2026, 3, 31));
    QVERIFY(s.addMonth(march).ok);
    QCOMPARE(s.deleteSheet(march).rowsWritten, 3);
    QCOMPARE(p.rows(), 0);
}

void TestPayrollRules::numbersDoNotMergeSheets()
{
    TESSEL_YEAR(year);
    Payroll p(year);
    p.staff();
    SalarySheet s = p.sheet();
    SalaryKey jan = keyOf(s.nextNumber(), QDate(2026, 1, 31));
    QVERIFY(s.addMonth(jan).ok);

    // February typed under January's number would once have pulled January
    // over to February: refused, January untouched.
    SalaryKey feb = keyOf(jan.number, QDate(2026, 2, 28));
    const Outcome typed = s.addLine(feb, p.line("16-10-001", "AHMED KHAN", "15000"), false);
    QCOMPARE(typed.message, SalaryMessages::kNumberOnOtherDate);
    QCOMPARE(typed.field, QStringLiteral("txtVoucherNo"));
    QCOMPARE(p.rows(QStringLiteral("VDate = ?"), {jan.date}), 3);

    // Two workstations proposed the same number for February: the second
    // one's first line starts a sheet of its own.
    SalaryKey first = keyOf(s.nextNumber(), QDate(2026, 2, 28));
    SalaryKey second = first;
    QVERIFY(s.addLine(first, p.line("16-10-001", "AHMED KHAN", "15000"), true).ok);
    const Outcome late = s.addLine(second, p.line("16-10-002", "ALI RAZA", "20000"), true);
    QVERIFY(late.ok);
    QCOMPARE(late.number, first.number + 1);
    QCOMPARE(second.number, first.number + 1);
    QCOMPARE(late.notice, SalaryMessages::numberMoved(first.number, first.number + 1));
    QCOMPARE(s.gridRows(first).size(), 1);
    QCOMPARE(s.gridRows(second).size(), 1);
    // A typed number on its own date goes on adding to that sheet.
    QVERIFY(s.addLine(first, p.line("16-10-003", "USMAN IQBAL", "12000"), false).ok);
    QCOMPARE(s.gridRows(first).size(), 2);
}

void TestPayrollRules::closedPeriodHolds()
{
    TESSEL_YEAR(year);
    Payroll p(year);
    p.staff();
    SalarySheet s = p.sheet();
    SalaryKey dec = keyOf(1, QDate(2025, 12, 31));
    const Outcome out = s.addLine(dec, p.line("16-10-001", "AHMED KHAN", "15000"), true);
    QCOMPARE(out.message, DateRules::closedPeriodMessage());
    QCOMPARE(out.field, QStringLiteral("mskDate"));
    QCOMPARE(s.addMonth(dec).message, DateRules::closedPeriodMessage());
    QCOMPARE(p.rows(), 0);

    // A sheet written while its month was open stays as it is once the
    // books close over it.
    SalaryKey jan = keyOf(1, QDate(2026, 1, 31));
    QVERIFY(s.addMonth(jan).ok);
    p.db->execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {QDate(2026, 1, 31)});
    const qint64 row = s.gridRows(jan).at(0).integer(QStringLiteral("SrNo"));
    QCOMPARE(s.deleteLine(jan, row).message, DateRules::closedPeriodMessage());
    QCOMPARE(s.deleteSheet(jan).message, DateRules::closedPeriodMessage());
    SalaryLine l = p.line("16-10-001", "AHMED KHAN", "1");
    l.srNo = row;
    QCOMPARE(s.changeLine(jan, keyOf(1, QDate(2026, 2, 1)), l).message, DateRules::closedPeriodMessage());
    QCOMPARE(p.rows(QStringLiteral("VDate = ?"), {jan.date}), 3);
    p.db->execute(QStringLiteral("DELETE FROM tblClosingDate"));
    QCOMPARE(s.addLine(jan, p.line("16-10-001", "AHMED KHAN", "15000"), false).message,
             DateRules::closingMissingMessage());
}

void TestPayrollRules::reportsReadBack()
{
    TESSEL_YEAR(year);
    Payroll p(year);
    p.staff();
    SalarySheet s = p.sheet();
    SalaryKey jan = keyOf(1, QDate(2026, 1, 31));
    QVERIFY(s.addLine(jan, p.line("16-10-001", "AHMED KHAN", "15000", "12", "1", "2000"), true).ok);
    QVERIFY(s.addLine(jan, p.line("16-10-002", "ALI RAZA", "20000", "0", "1"), false).ok);
    SalaryKey feb = keyOf(2, QDate(2026, 2, 28));
    QVERIFY(s.addMonth(feb).ok);

    QTemporaryDir dir;
    Reports::RenderedReport r = Reports::ReportFrame::render(*p.db, SalaryReports::salarySheet(1, jan.date));
    QCOMPARE(r.rows.size(), 2);
    const QString text = ReportReadBack::pdfText(r, dir.path());
    QVERIFY2(text.contains(QLatin1String("EMPLOYEE SALARY")), qPrintable(text));
    QVERIFY2(ReportReadBack::lineWith(text, QStringLiteral("AHMED KHAN")).contains(QLatin1String("15,500.00 2,000.00 13,500.00")),
             qPrintable(text));
    QVERIFY2(ReportReadBack::lineWith(text, QStringLiteral("ALI RAZA")).contains(QLatin1String("-666.67")),
             qPrintable(text));
    QVERIFY2(ReportReadBack::lineWith(text, QStringLiteral("TOTAL EMPLOYEES")).contains(QLatin1String("32,833.33")),
             qPrintable(text));

    // A number with another sheet's date: an empty report, no error.
    QCOMPARE(Reports::ReportFrame::render(*p.db, SalaryReports::salarySheet(1, feb.date)).rows.size(), 0);

    Reports::RenderedReport list = Reports::ReportFrame::render(*p.db, SalaryReports::employeeList());
    QCOMPARE(list.rows.size(), 4);
    const QString listText = ReportReadBack::pdfText(list, dir.path());
    QVERIFY2(listText.contains(QLatin1String("EMPLOYEE LIST")), qPrintable(listText));
    QVERIFY2(ReportReadBack::lineWith(listText, QStringLiteral("BILAL BUTT")).contains(QLatin1String("18,000.00")),
             qPrintable(listText));
    QVERIFY2(ReportReadBack::lineWith(listText, QStringLiteral("EMPLOYEES ACTIVE")).contains(QLatin1String("47,000.00")),
             qPrintable(listText));
    QVERIFY2(ReportReadBack::lineWith(listText, QStringLiteral("TOTAL EMPLOYEES")).contains(QLatin1String("65,000.00")),
             qPrintable(listText));
}

void TestPayrollRules::demoYearHasPayroll()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    DemoOptions o;
    o.rows = 1500;
    o.from = QDate(2026, 1, 1);
    o.to = QDate(2026, 12, 31);
    DemoGenerator::standardYear(*db, o);
    const int staff = TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblEmployeeInfo"));
    QVERIFY(staff >= 8);
    // Every employee is an account of the chart.
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblEmployeeInfo e JOIN tblPartyInfo p "
                                               "ON p.PartyCode = e.EmployeeCode")),
             staff);
    const int active = TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblEmployeeInfo WHERE Status = 'ACTIVE'"));
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(DISTINCT VoucherNo) FROM tblEmployeeSalary")), 12);
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblEmployeeSalary")), 12 * active);
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblEmployeeSalary s JOIN tblEmployeeInfo e "
                                               "ON e.EmployeeCode = s.EmployeeCode WHERE e.Status <> 'ACTIVE'")),
             0);
    // Each sheet stands on its month's last day.
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblEmployeeSalary WHERE VoucherNo = 2 AND VDate = ?"),
                           {QDate(2026, 2, 28)}),
             active);
    QStringList differences;
    QVERIFY2(LedgerCheck::keptBalancesAgree(*db, &differences), qPrintable(differences.join(QStringLiteral("; "))));
}

QTEST_MAIN(TestPayrollRules)
#include "tst_payrollrules.moc"
