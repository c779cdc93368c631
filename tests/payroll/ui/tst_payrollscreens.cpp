// The payroll screens driven from their menu entries, headless: the
// register's add, change and refused delete; the monthly sheet's figures,
// lines, refusals, question panel and numbering; the salary report and the
// employee list in the viewer.
#include "support/ui/ScreenKit.h"
#include "support/ui/ScreenTest.h"

#include "foundation/DateRules.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/QueryTableModel.h"
#include "payroll/EmployeeRegister.h"
#include "payroll/SalarySheet.h"
#include "payroll/ui/frmEmployeeSalary.h"
#include "payroll/ui/frmEmployeeSalaryReport.h"
#include "payroll/ui/frmSalary.h"
#include "reports/ui/frmViewReport.h"
#include "vouchers/ui/VoucherFinder.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QtTest>

using ScreenKit::click;
using ScreenKit::items;
using ScreenKit::shoot;

namespace {

const QDate kToday(2026, 3, 10);

class Host : public MenuHost
{
public:
    Host()
    {
        registerPayrollMenu(router);
        show();
        QApplication::setActiveWindow(this);
    }
};

// Accounts of four employees; Ahmed, Ali and Usman on the register, Bilal
// gone.
void staff(ScreenTest &t, bool registered = true)
{
    t.db().execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {QDate(2025, 12, 31)});
    t.addAccounts({{"16-10-001", "AHMED KHAN"}, {"16-10-002", "ALI RAZA"}, {"16-10-003", "USMAN IQBAL"},
                   {"16-10-004", "BILAL BUTT"}});
    if (!registered)
        return;
    auto add = [&](const char *code, const char *name, const char *salary, const QString &status) {
        EmployeeRegister::Entry e;
        e.code = QString::fromLatin1(code);
        e.name = QString::fromLatin1(name);
        e.salary = QString::fromLatin1(salary);
        e.incrementDate = QStringLiteral("01/07/2025");
        e.status = status;
        QVERIFY(EmployeeRegister::add(t.db(), e));
    };
    add("16-10-001", "AHMED KHAN", "15000", EmployeeRegister::kActive);
    add("16-10-002", "ALI RAZA", "20000", EmployeeRegister::kActive);
    add("16-10-003", "USMAN IQBAL", "12000", EmployeeRegister::kActive);
    add("16-10-004", "BILAL BUTT", "18000", EmployeeRegister::kDeactive);
}

int gridRows(QTableView *grid) { return grid->model()->rowCount(); }

void clickRow(QTableView *grid, int row)
{
    const QModelIndex i = grid->model()->index(row, 1);
    grid->scrollTo(i);
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, grid->visualRect(i).center());
}

// Leaves a field as the clerk does, so its figures are worked out.
void typeInto(QLineEdit *field, const QString &text)
{
    field->setFocus();
    field->clear();
    QTest::keyClicks(field, text);
    QTest::keyClick(field, Qt::Key_Tab);
}

QString focusName() { return QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : QString(); }

bool visible(QWidget *screen, const char *name)
{
    auto *w = screen->findChild<QWidget *>(QString::fromLatin1(name));
    return w && w->isVisible();
}

} // namespace

class TestPayrollScreens : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void registerFromMenu_data() { TestDb::addBackends(); }
    void registerFromMenu();
    void registerRefusals_data();
    void registerRefusals();
    void sheetFromMenu_data() { TestDb::addBackends(); }
    void sheetFromMenu();
    void sheetRefusals_data();
    void sheetRefusals();
    void numberingAcrossMonths();
    void modifyQuestion();
    void reports();
};

void TestPayrollScreens::registerFromMenu()
{
    TESSEL_BACKEND();
    ScreenTest t(backend, kToday);
    staff(t, false);
    Host host;
    auto *f = host.open<frmSalary>(QStringLiteral("mnuPEmployeeMonthlySalary"), QStringLiteral("frmSalary"));
    QVERIFY(f);
    QCOMPARE(f->title(), QStringLiteral("EMPLOYEE SALARY"));
    QVERIFY(visible(f, "cmdNew") && visible(f, "cmdCancel"));
    QVERIFY(!visible(f, "cmdModify") && !visible(f, "cmdDelete"));
    QCOMPARE(items(f->cmbStatus), (QStringList{"ACTIVE", "DEACTIVE"}));

    // The name brings its code; the code brings its name.
    f->cmbPartyName->setEditText(QStringLiteral("AHMED KHAN"));
    QCOMPARE(f->mskPartyCode->maskText(), QStringLiteral("16-10-001"));
    typeInto(f->txtSalary, QStringLiteral("15000"));
    f->mskInDate->setMaskText(QStringLiteral("01/03/2024"));
    click(f->cmdNew);
    QCOMPARE(t.rec.texts(), QStringList{EmployeeRegister::Msg::saved()});
    QVERIFY(t.rec.last().isInformation());
    QCOMPARE(gridRows(f->dgVoucher), 1);
    QCOMPARE(f->mskPartyCode->maskText(), QStringLiteral("__-__-___"));
    QVERIFY(f->txtSalary->text().isEmpty());

    // The same employee again.
    t.rec.clear();
    f->mskPartyCode->setMaskText(QStringLiteral("16-10-001"));
    QCOMPARE(f->cmbPartyName->currentText(), QStringLiteral("AHMED KHAN"));
    f->txtSalary->setText(QStringLiteral("1"));
    click(f->cmdNew);
    QCOMPARE(t.rec.texts(), QStringList{EmployeeRegister::Msg::alreadySaved()});
    QCOMPARE(focusName(), QStringLiteral("mskPartyCode"));
    f->cmbPartyName->setEditText(QStringLiteral("ALI RAZA"));
    f->txtSalary->setText(QStringLiteral("20000"));
    f->cmbStatus->setCurrentText(QStringLiteral("DEACTIVE"));
    click(f->cmdNew);
    shoot(f, QStringLiteral("frmSalary-new"));

    // Changing: a row picked from the list fills the fields.
    t.rec.clear();
    QCOMPARE(host.open<frmSalary>(QStringLiteral("mnuEModifyMonthlySalary"), QStringLiteral("frmSalary")), f);
    QVERIFY(visible(f, "cmdModify") && visible(f, "cmdDelete") && !visible(f, "cmdNew"));
    QCOMPARE(gridRows(f->dgVoucher), 2);
    clickRow(f->dgVoucher, 0); // ACTIVE before DEACTIVE
    QCOMPARE(f->cmbPartyName->currentText(), QStringLiteral("AHMED KHAN"));
    QCOMPARE(f->txtSalary->text(), QStringLiteral("15000"));
    QCOMPARE(f->mskInDate->maskText(), QStringLiteral("01/03/2024"));
    QCOMPARE(f->mskIncrementDate->maskText(), QStringLiteral("__/__/____"));
    f->txtSalary->setText(QStringLiteral("16500"));
    f->mskIncrementDate->setMaskText(QStringLiteral("01/01/2026"));
    shoot(f, QStringLiteral("frmSalary-modify"));
    click(f->cmdModify);
    QCOMPARE(t.rec.texts(), QStringList{EmployeeRegister::Msg::updated()});
    const auto ahmed = EmployeeRegister::employee(t.db(), f->dgVoucher->model()->index(0, 0).data().toLongLong());
    QVERIFY(ahmed);
    QCOMPARE(ahmed->salary, Money::fromUnits(16500));
    QCOMPARE(ahmed->incrementDate, QDate(2026, 1, 1));

    // Nothing picked: nothing changes, and the screen says so.
    t.rec.clear();
    f->cmbPartyName->setEditText(QStringLiteral("ALI RAZA"));
    f->txtSalary->setText(QStringLiteral("1"));
    click(f->cmdModify);
    QCOMPARE(t.rec.texts(), QStringList{EmployeeRegister::Msg::noRowPicked()});

    // A delete is always refused once the fields pass.
    t.rec.clear();
    clickRow(f->dgVoucher, 1);
    click(f->cmdDelete);
    QCOMPARE(t.rec.texts(), QStringList{EmployeeRegister::Msg::noDelete()});
    QVERIFY(t.rec.last().isCritical());
    QCOMPARE(TestDb::count(t.db(), QStringLiteral("SELECT COUNT(*) FROM tblEmployeeInfo")), 2);
}

void TestPayrollScreens::registerRefusals_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("salary");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("focus");
    QTest::newRow("no name") << "" << "" << "100" << EmployeeRegister::Msg::nameMissing() << "cmbPartyName";
    QTest::newRow("no code") << "SOMEONE NEW" << "" << "100" << EmployeeRegister::Msg::codeMissing() << "mskPartyCode";
    QTest::newRow("no salary") << "ALI RAZA" << "" << "" << EmployeeRegister::Msg::salaryMissing() << "txtSalary";
}

void TestPayrollScreens::registerRefusals()
{
    QFETCH(QString, name);
    QFETCH(QString, code);
    QFETCH(QString, salary);
    QFETCH(QString, message);
    QFETCH(QString, focus);
    ScreenTest t(QStringLiteral("sqlite"), kToday);
    staff(t, false);
    Host host;
    auto *f = host.open<frmSalary>(QStringLiteral("mnuPEmployeeMonthlySalary"), QStringLiteral("frmSalary"));
    f->cmbPartyName->setEditText(name);
    if (!code.isEmpty())
        f->mskPartyCode->setMaskText(code);
    f->txtSalary->setText(salary);
    // Tabbing onto the button checks; the click that follows adds nothing.
    f->cmdNew->setFocus(Qt::TabFocusReason);
    QCOMPARE(t.rec.texts(), QStringList{message});
    QCOMPARE(focusName(), focus);
    click(f->cmdNew);
    QCOMPARE(t.rec.count(), 2);
    QCOMPARE(TestDb::count(t.db(), QStringLiteral("SELECT COUNT(*) FROM tblEmployeeInfo")), 0);
}

void TestPayrollScreens::sheetFromMenu()
{
    TESSEL_BACKEND();
    ScreenTest t(backend, kToday);
    staff(t);
    Host host;
    auto *f = host.open<frmEmployeeSalary>(QStringLiteral("mnuUEmployeeSalary"), QStringLiteral("frmEmployeeSalary"));
    QVERIFY(f);
    QVERIFY(f->frOuter->isVisible());
    QVERIFY(!f->frOuterVoucherNo->isVisible());
    QCOMPARE(items(f->cmbVoucherType), QStringList{"ES"});
    QCOMPARE(f->txtVoucherNo->text(), QStringLiteral("1"));
    QCOMPARE(f->mskDate->maskText(), QStringLiteral("10/03/2026"));
    // Only the active staff are offered.
    QCOMPARE(items(f->cmbPartyName), (QStringList{"AHMED KHAN", "ALI RAZA", "USMAN IQBAL"}));

    f->mskDate->setMaskText(QStringLiteral("28/02/2026"));
    f->cmbPartyName->setEditText(QStringLiteral("AHMED KHAN"));
    QCOMPARE(f->txtPartyCode->maskText(), QStringLiteral("16-10-001"));
    QCOMPARE(f->txtSalary->text(), QStringLiteral("15000"));
    QCOMPARE(f->mskIncrementDate->maskText(), QStringLiteral("01/07/2025"));
    typeInto(f->txtTime, QStringLiteral("12"));
    typeInto(f->txtHoliday, QStringLiteral("1"));
    // Leaving a figure works out the rest; the empty advance becomes 0.
    QCOMPARE(f->txtAdvance->text(), QStringLiteral("0"));
    QCOMPARE(f->txtDay->text(), QStringLiteral("1"));
    QCOMPARE(f->txtOTAmount->text(), QStringLiteral("500"));
    QCOMPARE(f->txtTotalSalary->text(), QStringLiteral("15500"));
    typeInto(f->txtAdvance, QStringLiteral("2000"));
    QCOMPARE(f->txtBalance->text(), QStringLiteral("13500"));
    click(f->cmdNew);
    QCOMPARE(t.rec.texts(), QStringList{SalaryMessages::kAdded});
    QCOMPARE(f->txtTotal->text(), QStringLiteral("13500"));
    QCOMPARE(gridRows(f->dgVoucher), 1);
    QVERIFY(f->txtSalary->text().isEmpty() && f->txtBalance->text().isEmpty());
    QCOMPARE(focusName(), QStringLiteral("cmbPartyName"));

    // Ali: a day of leave, no overtime.
    f->cmbPartyName->setEditText(QStringLiteral("ALI RAZA"));
    typeInto(f->txtHoliday, QStringLiteral("1"));
    QCOMPARE(f->txtDay->text(), QStringLiteral("-1"));
    QCOMPARE(f->txtOTAmount->text(), QStringLiteral("-666.67"));
    click(f->cmdNew);
    QCOMPARE(f->txtTotal->text(), QStringLiteral("32833.33"));
    QCOMPARE(gridRows(f->dgVoucher), 2);
    shoot(f, QStringLiteral("frmEmployeeSalary-sheet"));

    // Delete with no line picked: nothing goes, and it says so.
    t.rec.clear();
    f->cmbPartyName->setEditText(QStringLiteral("ALI RAZA"));
    f->txtSalary->setText(QStringLiteral("20000"));
    click(f->cmdDelete);
    QCOMPARE(t.rec.texts(), QStringList{SalaryMessages::kNothingDeleted});
    QCOMPARE(gridRows(f->dgVoucher), 2);

    // A line picked from the list comes back into the fields.
    t.rec.clear();
    clickRow(f->dgVoucher, 1);
    QCOMPARE(f->cmbPartyName->currentText(), QStringLiteral("ALI RAZA"));
    QCOMPARE(f->txtHoliday->text(), QStringLiteral("1"));
    QCOMPARE(f->txtBalance->text(), QStringLiteral("19333.33"));
    QCOMPARE(f->selectedSalaryRow(), f->dgVoucher->model()->index(1, 0).data().toLongLong());
    typeInto(f->txtHoliday, QStringLiteral("0"));
    typeInto(f->txtAdvance, QStringLiteral("500"));
    click(f->cmdModify);
    QCOMPARE(t.rec.texts(), QStringList{SalaryMessages::kModified});
    QCOMPARE(f->txtTotal->text(), QStringLiteral("33000"));

    t.rec.clear();
    clickRow(f->dgVoucher, 0);
    click(f->cmdDelete);
    QCOMPARE(t.rec.texts(), QStringList{SalaryMessages::kDeleted});
    QCOMPARE(f->txtTotal->text(), QStringLiteral("19500"));

    // The whole sheet, after the question; No keeps it.
    t.rec.clear();
    click(f->cmdDeleteVoucher);
    QCOMPARE(t.rec.texts(), QStringList{SalaryMessages::kDeleteQuestion});
    QCOMPARE(gridRows(f->dgVoucher), 1);
    t.rec.clear();
    t.rec.answerNext(true);
    click(f->cmdDeleteVoucher);
    QCOMPARE(t.rec.count(), 1); // the question, no word of success
    QCOMPARE(gridRows(f->dgVoucher), 0);
    QCOMPARE(f->txtTotal->text(), QStringLiteral("0"));
    QCOMPARE(TestDb::count(t.db(), QStringLiteral("SELECT COUNT(*) FROM tblEmployeeSalary")), 0);
}

void TestPayrollScreens::sheetRefusals_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("number");
    QTest::addColumn<QString>("date");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("salary");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("focus");
    const QString ok = QStringLiteral("31/01/2026");
    // The three line buttons share their checks; each is tried once or twice.
    QTest::newRow("cmdNew: no number") << "cmdNew" << "" << ok << "AHMED KHAN" << "15000"
                                       << SalaryMessages::kNoVoucherNo << "txtVoucherNo";
    QTest::newRow("cmdNew: date half typed") << "cmdNew" << "1" << "31/01/____" << "AHMED KHAN" << "15000"
                                             << DateRules::dateMissingMessage() << "mskDate";
    QTest::newRow("cmdModify: closed date") << "cmdModify" << "1" << "31/12/2025" << "AHMED KHAN" << "15000"
                                            << DateRules::closedPeriodMessage() << "mskDate";
    QTest::newRow("cmdDelete: no name") << "cmdDelete" << "1" << ok << "" << "15000" << SalaryMessages::kNoParty
                                        << "cmbPartyName";
    QTest::newRow("cmdNew: no salary") << "cmdNew" << "1" << ok << "AHMED KHAN" << "" << SalaryMessages::kNoSalary
                                       << "txtSalary";
    QTest::newRow("cmdNew: not on the register") << "cmdNew" << "1" << ok << "SOMEONE ELSE" << "15000"
                                                 << SalaryMessages::kPartyNotFound << "cmbPartyName";
}

void TestPayrollScreens::sheetRefusals()
{
    QFETCH(QString, button);
    QFETCH(QString, number);
    QFETCH(QString, date);
    QFETCH(QString, name);
    QFETCH(QString, salary);
    QFETCH(QString, message);
    QFETCH(QString, focus);
    ScreenTest t(QStringLiteral("sqlite"), kToday);
    staff(t);
    Host host;
    auto *f = host.open<frmEmployeeSalary>(QStringLiteral("mnuUEmployeeSalary"), QStringLiteral("frmEmployeeSalary"));
    f->txtVoucherNo->setText(number);
    f->mskDate->setMaskText(date);
    f->cmbPartyName->setEditText(name);
    f->txtSalary->setText(salary);
    click(f->findChild<QPushButton *>(button));
    QCOMPARE(t.rec.texts(), QStringList{message});
    QVERIFY(t.rec.last().isCritical());
    QCOMPARE(focusName(), focus);
    QCOMPARE(TestDb::count(t.db(), QStringLiteral("SELECT COUNT(*) FROM tblEmployeeSalary")), 0);
}

void TestPayrollScreens::numberingAcrossMonths()
{
    ScreenTest t(QStringLiteral("sqlite"), kToday);
    staff(t);
    // The ledger's own ES-like numbers play no part in the sheets' series.
    t.db().execute(QStringLiteral("INSERT INTO tblPartyBalance (VoucherType, VoucherNo, VDate, PartyCode, PartyName, "
                                  "PartyDR, PartyCR, PartyBalance) VALUES ('ES', 7, ?, '16-10-001', 'AHMED KHAN', 0, 0, 0)"),
                   {QDate(2026, 1, 5)});
    Host host;
    for (int month = 1; month <= 2; ++month) {
        auto *f = host.open<frmEmployeeSalary>(QStringLiteral("mnuUEmployeeSalary"), QStringLiteral("frmEmployeeSalary"));
        QCOMPARE(f->txtVoucherNo->text(), QString::number(month));
        // Choosing the type again proposes the sheets' next number, not
        // the ledger's.
        f->cmbVoucherType->setEditText(QString());
        f->cmbVoucherType->setEditText(QStringLiteral("ES"));
        QCOMPARE(f->txtVoucherNo->text(), QString::number(month));
        f->mskDate->setDate(QDate(2026, month, 1).addMonths(1).addDays(-1));
        f->cmbPartyName->setEditText(QStringLiteral("USMAN IQBAL"));
        click(f->cmdNew);
        QCOMPARE(t.rec.last().text, SalaryMessages::kAdded);
    }
    // Another workstation begins March under the number this one proposed:
    // the first line here starts a sheet of its own and says so.
    auto *f = host.open<frmEmployeeSalary>(QStringLiteral("mnuUEmployeeSalary"), QStringLiteral("frmEmployeeSalary"));
    QCOMPARE(f->txtVoucherNo->text(), QStringLiteral("3"));
    SalaryKey theirs;
    theirs.number = 3;
    theirs.date = QDate(2026, 3, 31);
    SalarySheet other(t.db(), QStringLiteral("OTHER"), kToday);
    QVERIFY(other.addMonth(theirs).ok);
    f->mskDate->setDate(QDate(2026, 3, 31));
    f->cmbPartyName->setEditText(QStringLiteral("AHMED KHAN"));
    t.rec.clear();
    click(f->cmdNew);
    QCOMPARE(t.rec.texts(), (QStringList{SalaryMessages::numberMoved(3, 4), SalaryMessages::kAdded}));
    QCOMPARE(f->txtVoucherNo->text(), QStringLiteral("4"));
    QCOMPARE(gridRows(f->dgVoucher), 1);
    // A typed number of another month's sheet is refused, that sheet kept.
    t.rec.clear();
    f->txtVoucherNo->setText(QStringLiteral("1"));
    f->cmbPartyName->setEditText(QStringLiteral("ALI RAZA"));
    click(f->cmdNew);
    QCOMPARE(t.rec.texts(), QStringList{SalaryMessages::kNumberOnOtherDate});
    QCOMPARE(TestDb::count(t.db(), QStringLiteral("SELECT COUNT(*) FROM tblEmployeeSalary WHERE VoucherNo = 1 AND VDate = ?"),
                           {QDate(2026, 1, 31)}),
             1);
}

void TestPayrollScreens::modifyQuestion()
{
    ScreenTest t(QStringLiteral("sqlite"), kToday);
    staff(t);
    SalarySheet s(t.db(), QStringLiteral("CLERK"), kToday);
    SalaryKey jan;
    jan.number = 1;
    jan.date = QDate(2026, 1, 31);
    QVERIFY(s.addMonth(jan).ok);
    Host host;
    auto *f = host.open<frmEmployeeSalary>(QStringLiteral("mnuPModifyEmployeeSalary"), QStringLiteral("frmEmployeeSalary"));
    QVERIFY(f->frOuterVoucherNo->isVisible());
    QVERIFY(!f->frOuter->isVisible());
    QCOMPARE(f->frOuterVoucherNo->lblVoucherNo->text(), QStringLiteral("MODIFY SALARY"));
    QCOMPARE(f->mskDateModifyVoucher->maskText(), QStringLiteral("10/03/2026"));
    QCOMPARE(f->cmbModifyVoucherType->currentText(), QStringLiteral("ES"));

    const QList<std::tuple<QString, QString, QString, QString>> asked = {
        {"", "31/01/2026", "ES", SalaryMessages::kNumberMissing},
        {"1", "__/__/____", "ES", DateRules::dateMissingMessage()},
        {"1", "31/01/2026", "", SalaryMessages::kTypeMissing},
        {"1", "32/01/2026", "ES", DateRules::wrongDateMessage()},
        {"1", "30/01/2026", "ES", SalaryMessages::kNotFound},
    };
    for (const auto &[number, date, type, message] : asked) {
        t.rec.clear();
        f->txtShowVoucherNo->setText(number);
        f->mskDateModifyVoucher->setMaskText(date);
        f->cmbModifyVoucherType->setEditText(type);
        click(f->cmdVoucherNoOkay);
        QCOMPARE(t.rec.texts(), QStringList{message});
        QVERIFY(f->frOuterVoucherNo->isVisible());
    }
    t.rec.clear();
    f->mskDateModifyVoucher->setMaskText(QStringLiteral("31/01/2026"));
    click(f->cmdVoucherNoOkay);
    QVERIFY(t.rec.isEmpty());
    QVERIFY(f->frOuter->isVisible());
    QCOMPARE(f->txtVoucherNo->text(), QStringLiteral("1"));
    QCOMPARE(f->mskDate->maskText(), QStringLiteral("31/01/2026"));
    QCOMPARE(gridRows(f->dgVoucher), 3);
    QCOMPARE(f->txtTotal->text(), QStringLiteral("47000"));

    // A new date on a line moves the whole sheet.
    clickRow(f->dgVoucher, 0);
    f->mskDate->setMaskText(QStringLiteral("30/01/2026"));
    click(f->cmdModify);
    QCOMPARE(t.rec.last().text, SalaryMessages::kModified);
    QCOMPARE(TestDb::count(t.db(), QStringLiteral("SELECT COUNT(*) FROM tblEmployeeSalary WHERE VDate = ?"),
                           {QDate(2026, 1, 30)}),
             3);
    QCOMPARE(gridRows(f->dgVoucher), 3);
    shoot(f, QStringLiteral("frmEmployeeSalary-modify"));
}

void TestPayrollScreens::reports()
{
    ScreenTest t(QStringLiteral("sqlite"), kToday);
    staff(t);
    SalarySheet s(t.db(), QStringLiteral("CLERK"), kToday);
    SalaryKey feb;
    feb.number = 1;
    feb.date = QDate(2026, 2, 28);
    QVERIFY(s.addMonth(feb).ok);
    Host host;
    auto *f = host.open<frmEmployeeSalaryReport>(QStringLiteral("mnuUViewEmployeeSalary"),
                                                 QStringLiteral("frmEmployeeSalaryReport"));
    QVERIFY(f);
    QCOMPARE(f->mskDate->maskText(), QStringLiteral("10/03/2026"));
    // The number is asked first, as the button is entered.
    f->cmdEmployeeSalary->setFocus(Qt::TabFocusReason);
    QCOMPARE(t.rec.texts(), QStringList{SalaryMessages::kReportNoVoucherNo});
    QCOMPARE(focusName(), QStringLiteral("txtVoucherNo"));
    QVERIFY(!Reports::currentViewer());
    shoot(f, QStringLiteral("frmEmployeeSalaryReport"));

    t.rec.clear();
    f->txtVoucherNo->setText(QStringLiteral("1"));
    f->mskDate->setMaskText(QStringLiteral("28/02/2026"));
    click(f->cmdEmployeeSalary);
    QVERIFY2(t.rec.isEmpty(), qPrintable(t.rec.texts().join(QLatin1Char('|'))));
    frmViewReport *v = Reports::currentViewer();
    QVERIFY(v);
    QCOMPARE(v->windowTitle(), QStringLiteral("EMPLOYEE SALARY REPORT"));
    QCOMPARE(v->report().rows.size(), 3);
    QVERIFY(f->cmdEmployeeSalary->isEnabled());
    shoot(v, QStringLiteral("crEmployeeSalary"));
    // The right number on the wrong date: an empty sheet, no message.
    f->mskDate->setMaskText(QStringLiteral("27/02/2026"));
    click(f->cmdEmployeeSalary);
    QVERIFY(t.rec.isEmpty());
    QCOMPARE(Reports::currentViewer()->report().rows.size(), 0);

    QVERIFY(host.router.trigger(QStringLiteral("mnuEmployeeList"), host));
    QCOMPARE(Reports::currentViewer()->windowTitle(), QStringLiteral("EMPLOYEE LIST"));
    QCOMPARE(Reports::currentViewer()->report().rows.size(), 4);
    shoot(Reports::currentViewer(), QStringLiteral("crEmployeeList"));
    Reports::currentViewer()->close();
}

QTEST_MAIN(TestPayrollScreens)
#include "tst_payrollscreens.moc"
