#include "foundation/PasswordHash.h"
#include "foundation/Session.h"
#include "foundation/ui/StartupFlow.h"
#include "foundation/ui/frmAboutTessel.h"
#include "support/TestDb.h"
#include "support/ui/MessageRecorder.h"
#include "support/ui/ScreenKit.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest>

// From the account-year screen to the main window, as a user goes.
class TestStartup : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void cleanup();
    void startsToMainWindow_data() { TestDb::addBackends(); }
    void startsToMainWindow();
    void logOnFailures_data() { TestDb::addBackends(); }
    void logOnFailures();
    void splashRefusals();
    void unreachableServer();
    void asksForServerPassword();
    void commonUserLosesPanel();
    void rightsSwitchEntriesOff_data() { TestDb::addBackends(); }
    void rightsSwitchEntriesOff();
    void newerDatabaseRefused();
    void quitAsksFirst();
    void aboutAndEmptyEntry();
    void menuEntries_data();
    void menuEntries();
    void sidePanelByKeyboard();
};

using ScreenKit::shoot;

namespace {

AppSettings settingsFor(const ConnectionProfile &profile)
{
    AppSettings s;
    s.profiles = {profile};
    return s;
}

template <class T>
T *child(QWidget *w, const char *name)
{
    T *c = w ? w->findChild<T *>(QString::fromLatin1(name)) : nullptr;
    if (!c)
        qWarning("no %s", name);
    return c;
}

// Picks the year and presses the button: the log-on comes up.
bool reachLogOn(StartupFlow &flow, const TestDb::Year &year)
{
    flow.setQuick(true);
    flow.start(year.profile().name, year.name());
    auto *splash = flow.splash();
    if (!splash || child<QComboBox>(splash, "cmbDataBase")->currentText() != year.name())
        return false;
    shoot(splash, QStringLiteral("startup"));
    QTest::mouseClick(child<QPushButton>(splash, "cmdLogOnForm"), Qt::LeftButton);
    return QTest::qWaitFor([&] { return flow.logOn() && flow.logOn()->isVisible(); }, 5000);
}

void typeLogOn(frmLogOn *logOn, const QString &user, const QString &password)
{
    auto *name = child<QLineEdit>(logOn, "txtUserName");
    name->clear();
    QTest::keyClicks(name, user);
    child<QLineEdit>(logOn, "txtPassword")->setText(password);
    QTRY_VERIFY(child<QPushButton>(logOn, "cmdLogOn")->isEnabled());
    QTest::mouseClick(child<QPushButton>(logOn, "cmdLogOn"), Qt::LeftButton);
}

// The whole way in: the year, the log-on, and the main window shown.
frmMDITessel *logIn(StartupFlow &flow, const TestDb::Year &year, const QString &user, const QString &password)
{
    if (!reachLogOn(flow, year))
        return nullptr;
    typeLogOn(flow.logOn(), user, password);
    auto shown = [&] { return flow.mainWindow() && flow.mainWindow()->isVisible(); };
    return QTest::qWaitFor(shown, 5000) ? flow.mainWindow() : nullptr;
}

void addUser(SessionConnection &db, const QString &name, const QString &password, const QString &type)
{
    db.execute(QStringLiteral("INSERT INTO tblLogon (UserName, Password, UserType) VALUES (?, ?, ?)"),
               {name, PasswordHash::hash(password), type});
}

// Closes this run's connection before the year it is open on goes away.
struct SessionGuard
{
    ~SessionGuard() { session() = Session(); }
};

} // namespace

void TestStartup::cleanup()
{
    session() = Session();
}

void TestStartup::startsToMainWindow()
{
    TESSEL_YEAR(year);
    SessionGuard guard;
    MessageRecorder rec;
    StartupFlow flow(settingsFor(year.profile()));
    QVERIFY(reachLogOn(flow, year));
    QVERIFY(session().connectOk);
    QCOMPARE(session().databaseName, year.name());
    QCOMPARE(flow.logOn()->windowTitle(), QStringLiteral("Tessel Press Office"));

    QTest::keyClicks(child<QLineEdit>(flow.logOn(), "txtUserName"), QStringLiteral("admin"));
    QCOMPARE(child<QLineEdit>(flow.logOn(), "txtUserName")->text(), QStringLiteral("ADMIN"));
    QTest::keyClicks(child<QLineEdit>(flow.logOn(), "txtPassword"), QStringLiteral("secret"));
    shoot(flow.logOn(), QStringLiteral("logon"));
    QTest::keyClick(child<QLineEdit>(flow.logOn(), "txtPassword"), Qt::Key_Return);
    QTRY_VERIFY(flow.mainWindow() && flow.mainWindow()->isVisible());

    frmMDITessel *main = flow.mainWindow();
    QCOMPARE(main->windowTitle(), QStringLiteral("Tessel Business Suite ( %1 )").arg(year.name()));
    QCOMPARE(session().currentUserName, QStringLiteral("ADMIN"));
    QCOMPARE(session().currentUserType, QStringLiteral("ADMINISTRATOR"));
    QCOMPARE(session().today, QDate::currentDate());
    const QDate closing = session().db().selectOne(QStringLiteral("SELECT ClosingDate FROM tblClosingDate"))->date(0);
    QCOMPARE(session().workDate, closing.addDays(1));
    QCOMPARE(session().firstOpenDate, closing.addDays(1));
    QVERIFY(session().reportZoom > 0);
    QVERIFY(child<QLabel>(main, "lblAccounts")->isVisible());
    QVERIFY(rec.isEmpty());
    QApplication::processEvents();
    shoot(main, QStringLiteral("mainwindow"));
    if (!qEnvironmentVariableIsEmpty("TESSEL_SCREENSHOT_DIR")) {
        auto *menu = main->findChild<QMenu *>(QStringLiteral("mnuPPrintParty"));
        menu->popup(main->mapToGlobal(QPoint(80, 20)));
        QTest::qWait(100);
        shoot(menu, QStringLiteral("menu"));
        menu->hide();
        for (const char *entry : {"mnuPPartyInfo", "mnuPCashPaidVoucher"}) {
            if (main->runMenuEntry(QString::fromLatin1(entry))) {
                QTest::qWait(100);
                shoot(main, QStringLiteral("screen-") + QString::fromLatin1(entry));
            }
        }
    }
}

void TestStartup::logOnFailures()
{
    TESSEL_YEAR(year);
    SessionGuard guard;
    {
        auto db = year.connect();
        addUser(*db, QStringLiteral("CLERK"), QStringLiteral("ink "), QStringLiteral("COMMON USER"));
    }
    MessageRecorder rec;
    StartupFlow flow(settingsFor(year.profile()));
    QVERIFY(reachLogOn(flow, year));
    frmLogOn *logOn = flow.logOn();

    const QList<QPair<QString, QString>> wrong = {
        {QStringLiteral("NOBODY"), QStringLiteral("secret")},  // unknown user
        {QStringLiteral("ADMIN"), QStringLiteral("SECRET")},   // case counts
        {QStringLiteral("ADMIN"), QStringLiteral("secret ")},  // the password is not trimmed
        {QStringLiteral("CLERK"), QStringLiteral("ink")},
        {QStringLiteral("ADMIN"), QString()},
    };
    for (const auto &attempt : wrong) {
        rec.clear();
        typeLogOn(logOn, attempt.first, attempt.second);
        QCOMPARE(rec.count(), 1);
        QVERIFY(rec.last().isCritical());
        QCOMPARE(rec.last().text, QStringLiteral("Invalid user name or password"));
        QCOMPARE(child<QLineEdit>(logOn, "txtUserName")->text(), QString());
        QCOMPARE(child<QLineEdit>(logOn, "txtPassword")->text(), QString());
        QTRY_VERIFY(child<QLineEdit>(logOn, "txtUserName")->hasFocus());
        QVERIFY(!flow.mainWindow());
        QVERIFY(session().currentUserType.isEmpty());
    }
    // Repeated failures make the next attempt wait.
    QVERIFY(logOn->failures() >= 3);

    // An apostrophe cannot be typed into the name; blanks around it are trimmed.
    QTest::keyClicks(child<QLineEdit>(logOn, "txtUserName"), QStringLiteral("cl'erk"));
    QCOMPARE(child<QLineEdit>(logOn, "txtUserName")->text(), QStringLiteral("CLERK"));
    rec.clear();
    typeLogOn(logOn, QStringLiteral("  clerk  "), QStringLiteral("ink "));
    QTRY_VERIFY(flow.mainWindow());
    QVERIFY(rec.isEmpty());
    QCOMPARE(session().currentUserName, QStringLiteral("CLERK"));
}

void TestStartup::splashRefusals()
{
    MessageRecorder rec;
    QTemporaryDir dir;
    ConnectionProfile profile = ConnectionProfile::embeddedDefault();
    profile.dataDir = dir.path();
    {
        frmSplashScreen splash(settingsFor(profile));
        splash.show();
        QApplication::setActiveWindow(&splash);
        QCOMPARE(child<QComboBox>(&splash, "cmbDataBase")->count(), 0);
        QTest::mouseClick(child<QPushButton>(&splash, "cmdLogOnForm"), Qt::LeftButton);
        QCOMPARE(rec.last().text, QStringLiteral("Database not found, please select the required account year database."));
        QVERIFY(rec.last().isCritical());
        QTRY_VERIFY(child<QComboBox>(&splash, "cmbDataBase")->hasFocus());
        // The combos of this screen show where the typing goes.
        QCOMPARE(child<QComboBox>(&splash, "cmbDataBase")->palette().color(QPalette::Button), QColor(0x01, 0x7C, 0x6A));
        shoot(&splash, QStringLiteral("startup-focus"));

        // A year that appears later is listed when the user leaves the Server box.
        QFile later(dir.filePath(QStringLiteral("TesselLater.sqlite")));
        QVERIFY(later.open(QIODevice::WriteOnly));
        later.close();
        child<QComboBox>(&splash, "cmbServer")->setFocus(Qt::TabFocusReason);
        QTRY_VERIFY(child<QComboBox>(&splash, "cmbServer")->hasFocus());
        QCOMPARE(child<QComboBox>(&splash, "cmbDataBase")->count(), 0);
        child<QComboBox>(&splash, "cmbDataBase")->setFocus(Qt::TabFocusReason);
        QTRY_COMPARE(child<QComboBox>(&splash, "cmbDataBase")->count(), 1);
        QCOMPARE(child<QComboBox>(&splash, "cmbDataBase")->currentText(), QStringLiteral("TesselLater"));
    }
    // A year that cannot be opened.
    QFile broken(dir.filePath(QStringLiteral("TesselBroken.sqlite")));
    QVERIFY(broken.open(QIODevice::WriteOnly));
    broken.write(QByteArray(4096, 'x'));
    broken.close();
    frmSplashScreen splash(settingsFor(profile));
    QSignalSpy opened(&splash, &frmSplashScreen::databaseOpened);
    splash.show();
    QApplication::setActiveWindow(&splash);
    QCOMPARE(child<QComboBox>(&splash, "cmbDataBase")->currentText(), QStringLiteral("TesselBroken"));
    rec.clear();
    QTest::mouseClick(child<QPushButton>(&splash, "cmdLogOnForm"), Qt::LeftButton);
    QCOMPARE(rec.texts(), QStringList{QStringLiteral("Database configuration problem, please select the required database.")});
    QVERIFY(!session().connectOk);
    QVERIFY(!session().connection);
    QTRY_VERIFY(child<QComboBox>(&splash, "cmbDataBase")->hasFocus());
    QTest::qWait(50);
    QCOMPARE(opened.count(), 0);
}

void TestStartup::unreachableServer()
{
    MessageRecorder rec;
    ConnectionProfile server;
    server.name = QStringLiteral("NOWHERE");
    server.kind = ConnectionProfile::Kind::PostgreSQL;
    server.host = QStringLiteral("127.0.0.1");
    server.port = 1;
    server.user = QStringLiteral("tessel");
    server.password = QStringLiteral("x");
    server.connectTimeoutSeconds = 2;
    AppSettings settings;
    ConnectionProfile embedded = ConnectionProfile::embeddedDefault();
    QTemporaryDir dir;
    embedded.dataDir = dir.path();
    settings.profiles = {embedded, server};
    frmSplashScreen splash(settings);
    splash.show();
    QCOMPARE(child<QComboBox>(&splash, "cmbType")->currentIndex(), 0); // the embedded store first
    splash.preselect(QStringLiteral("NOWHERE"), QString());
    QCOMPARE(rec.texts(), QStringList{QStringLiteral("Connection not established, please check the server configuration.")});
    QCOMPARE(child<QComboBox>(&splash, "cmbDataBase")->count(), 0);
    QVERIFY(child<QPushButton>(&splash, "cmdLogOnForm")->isEnabled());
}

void TestStartup::asksForServerPassword()
{
    if (!TestDb::postgresConfigured())
        QSKIP("no PostgreSQL test server");
    TestDb::Year year(QStringLiteral("postgres"));
    SessionGuard guard;
    ConnectionProfile profile = year.profile();
    profile.password.clear();
    profile.askPassword = true;
    AppSettings settings;
    settings.profiles = {ConnectionProfile::embeddedDefault(), profile};
    MessageRecorder rec;
    frmSplashScreen splash(settings);
    int asked = 0;
    splash.setPasswordPrompt([&](QWidget *, const ConnectionProfile &p, QString &password) {
        ++asked;
        password = TestDb::postgresProfile().password;
        return p.name == profile.name;
    });
    splash.preselect(profile.name, year.name());
    QCOMPARE(asked, 1);
    QCOMPARE(child<QComboBox>(&splash, "cmbDataBase")->currentText(), year.name());
    QVERIFY(splash.ConnectDatabase());
    QCOMPARE(asked, 1); // asked once for the run
    QVERIFY(rec.isEmpty());
}

void TestStartup::commonUserLosesPanel()
{
    TestDb::Year year(QStringLiteral("sqlite"));
    SessionGuard guard;
    {
        auto db = year.connect();
        addUser(*db, QStringLiteral("CLERK"), QStringLiteral("ink"), QStringLiteral("COMMON USER"));
    }
    MessageRecorder rec;
    StartupFlow flow(settingsFor(year.profile()));
    QVERIFY(logIn(flow, year, QStringLiteral("CLERK"), QStringLiteral("ink")));
    const QStringList labels = {"lblAccounts", "lblCashBook", "lblCashPaid", "lblCashReceived", "lblDC", "lblHelp",
                                "lblInvoice", "lblLedgerOfAccount", "lblPassword", "lblPayable", "lblPO",
                                "lblReceivable", "lblSale", "lblSaleRegister", "lblSummary"};
    for (const QString &name : labels) {
        QLabel *l = flow.mainWindow()->findChild<QLabel *>(name);
        QVERIFY2(l, qPrintable(name));
        QVERIFY2(!l->isVisible(), qPrintable(name));
    }
    // The menu stays.
    QVERIFY(flow.mainWindow()->menuAction(QStringLiteral("mnuATessel"))->isEnabled());
}

void TestStartup::rightsSwitchEntriesOff()
{
    TESSEL_YEAR(year);
    SessionGuard guard;
    {
        auto db = year.connect();
        db->execute(QStringLiteral("INSERT INTO tblUserRights (USERNAME, Menu) VALUES (?, ?)"),
                    {QStringLiteral("ADMIN"), QStringLiteral("mnuATessel,mnuAccount,mnuPBankPaidVoucher,mnuURestore")});
    }
    MessageRecorder rec;
    StartupFlow flow(settingsFor(year.profile()));
    frmMDITessel *main = logIn(flow, year, QStringLiteral("ADMIN"), QStringLiteral("secret"));
    QVERIFY(main);

    QVERIFY(!main->menuAction(QStringLiteral("mnuATessel"))->isEnabled());
    QVERIFY(!main->menuAction(QStringLiteral("mnuAccount"))->isEnabled());
    // The whole subtree of a switched-off menu is out of reach, the panel's way in too.
    QVERIFY(!main->isReachable(main->menuAction(QStringLiteral("mnuPPartyInfo"))));
    QVERIFY(!main->isReachable(main->menuAction(QStringLiteral("mnuBankPaidVoucher"))));
    QVERIFY(!child<QLabel>(main, "lblAccounts")->isEnabled());
    QVERIFY(!child<QLabel>(main, "lblHelp")->isEnabled());
    QVERIFY(!main->runMenuEntry(QStringLiteral("mnuATessel")));
    QTest::mouseClick(child<QLabel>(main, "lblHelp"), Qt::LeftButton);
    QVERIFY(!main->findChild<frmAboutTessel *>());
    // Names that match no entry change nothing; other menus stay as they were.
    QVERIFY(main->menuAction(QStringLiteral("mnuPPrintParty"))->isEnabled());
    QVERIFY(main->menuAction(QStringLiteral("mnuUtilities"))->isEnabled());
    QVERIFY(main->menuAction(QStringLiteral("mnuAbout"))->isEnabled());
    QVERIFY(rec.isEmpty());
}

void TestStartup::newerDatabaseRefused()
{
    TestDb::Year year(QStringLiteral("sqlite"));
    SessionGuard guard;
    MessageRecorder rec;
    StartupFlow flow(settingsFor(year.profile()));
    QSignalSpy finished(&flow, &StartupFlow::finished);
    QVERIFY(reachLogOn(flow, year));
    session().db().execute(QStringLiteral("UPDATE tblConfig SET UpdateStatus = ?"), {QStringLiteral("99991231")});
    typeLogOn(flow.logOn(), QStringLiteral("ADMIN"), QStringLiteral("secret"));
    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(rec.count(), 1);
    QVERIFY(rec.last().isInformation());
    QCOMPARE(rec.last().text, QStringLiteral("Your software needs some updates, Please update your software."));
    QVERIFY(!flow.mainWindow() || !flow.mainWindow()->isVisible());
}

void TestStartup::quitAsksFirst()
{
    TestDb::Year year(QStringLiteral("sqlite"));
    SessionGuard guard;
    MessageRecorder rec;
    StartupFlow flow(settingsFor(year.profile()));
    QSignalSpy finished(&flow, &StartupFlow::finished);
    QVERIFY(logIn(flow, year, QStringLiteral("ADMIN"), QStringLiteral("secret")));

    rec.answerNext(false);
    QVERIFY(!flow.mainWindow()->close());
    QVERIFY(flow.mainWindow()->isVisible());
    QCOMPARE(rec.last().kind, MessageService::Kind::CriticalQuestion);
    QCOMPARE(rec.last().text, QStringLiteral("Do you really want to Quit ..."));
    QCOMPARE(finished.count(), 0);

    rec.answerNext(true);
    QVERIFY(flow.mainWindow()->close());
    QCOMPARE(rec.count(), 2);
    QCOMPARE(finished.count(), 1);
}

void TestStartup::aboutAndEmptyEntry()
{
    TestDb::Year year(QStringLiteral("sqlite"));
    SessionGuard guard;
    MessageRecorder rec;
    StartupFlow flow(settingsFor(year.profile()));
    frmMDITessel *main = logIn(flow, year, QStringLiteral("ADMIN"), QStringLiteral("secret"));
    QVERIFY(main);

    // SHOW DB/CR ACCOUNTS is there, enabled, and does nothing.
    QAction *empty = main->menuAction(QStringLiteral("mnuPShowDBCRAccounts"));
    QVERIFY(empty->isEnabled());
    empty->trigger();
    QCOMPARE(main->mdiArea()->subWindowList().size(), 0);
    QVERIFY(!main->findChild<frmAboutTessel *>());

    // HELP on the panel opens the about box; Enter closes it.
    QTest::mouseClick(child<QLabel>(main, "lblHelp"), Qt::LeftButton);
    QPointer<frmAboutTessel> about = main->findChild<frmAboutTessel *>();
    QVERIFY(about);
    QTRY_VERIFY(about->isVisible());
    QVERIFY(about->isModal());
    QVERIFY(child<QLabel>(about, "lblDATABASE")->text() == year.name());
    shoot(about, QStringLiteral("about"));
    QTest::keyClick(child<QPushButton>(about, "cmdOk"), Qt::Key_Return);
    QTRY_VERIFY(!about || !about->isVisible());
    QVERIFY(rec.isEmpty());
}

void TestStartup::menuEntries_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QString>("parent");
    // Runs of entries under one parent ("" for the menu bar), in the order they stand.
    using Entries = QList<std::pair<const char *, const char *>>;
    const QList<std::pair<const char *, Entries>> tree = {
        {"", {{"mnuAccount", "&ACCOUNT"}}},
        {"mnuAccount", {{"mnuPPartyInfo", "CREATE ACCOUNT"}, {"mnuPModifyPartyInfo", "MODIFY ACCOUNT"},
                {"mnuEnterVoucher", "ENTER VOUCHER"}}},
        {"mnuEnterVoucher", {{"mnuPJournalVoucher", "JOURNAL VOUCHER"}, {"mnuPCashPaidVoucher", "CASH PAID VOUCHER"},
                {"mnuPCashReceivedVoucher", "CASH RECEIVED VOUCHER"}, {"mnuBankPaidVoucher", "BANK PAID VOUCHER"},
                {"mnuBankReceivedVoucher", "BANK RECEIVED VOUCHER"}}},
        {"mnuAccount", {{"mnuPModifyJournalVoucher", "MODIFY VOUCHER"}, {"mnuPostDatedCheque", "POST DATED CHEQUE"},
                {"mnuModifyPostDatedCheque", "MODIFY POST DATED CHEQUE"},
                {"mnuPDebitCreditAccount", "DEBIT/CREDIT ACCOUNT"}, {"mnuPShowDBCRAccounts", "SHOW DB/CR ACCOUNTS"},
                {"mnuPChartOfAccount", "CHART OF ACCOUNT"}}},
        {"mnuPChartOfAccount", {{"mnuChartOfAccountByAccount", "ACCOUNT WISE"},
                {"mnuChartOfAccountByName", "NAME WISE"}}},
        {"mnuAccount", {{"mnuPTrialBalance", "PARTY BALANCES"}}},
        {"mnuPTrialBalance", {{"mnuPOpeningBalance", "OPENING BALANCE"}, {"mnuPModifyBalance", "MODIFY BALANCE"}}},
        {"", {{"mnuPPrintParty", "&VIEW / PRINT REPORTS"}}},
        {"mnuPPrintParty", {{"mnuPrintVoucher", "PRINT VOUCHER"}, {"mnuCashAndBanks", "CASH AND BANKS"}}},
        {"mnuCashAndBanks", {{"mnuCashBookBetweenTwoDates", "CASH BOOK BETWEEN TWO DATES"},
                {"mnuCashAndBankUptoDate", "UPTO DATE"}}},
        {"mnuPPrintParty", {{"mnuVoucherListing", "VOUCHER LISTING"}, {"mnuRecordTracking", "RECORD TRACKING"},
                {"mnuPrintPostDatedCheque", "POST DATED CHEQUE"}, {"mnuPPDebitList", "DEBIT LIST / RECEIVABLE"},
                {"mnuPPCreditList", "CREDIT LIST / PAYABALE"}, {"mnuTrialBalance", "TRIAL BALANCE"},
                {"mnuPPBalanceSheet", "BALANCE SHEET"}, {"mnuBalanceSheetSingleDate", "BALANCE SHEET SINGLE DATE"},
                {"mnuPartyPosition", "PARTY POSITION"}, {"mnuPartyPositionSingleDate", "PARTY POSITION SINGLE DATE"},
                {"mnuPPLedgerOfAccount", "LEDGER OF ACCOUNT"},
                {"mnuPPLedgerOfAccountVW", "LEDGER OF ACCOUNT VOUCHER WISE"},
                {"mnuProfitAndLoss", "PROFIT AND LOSS"}, {"mnuRecoveryReports", "RECOVERY REPORTS"},
                {"mnuComparisonReports", "COMPARISON REPORTS"}}},
        {"mnuComparisonReports", {{"mnuMonthlyExpenseReport", "MONTHLY EXPENSE REPORT"},
                {"mnuMonthlyProfitAndLossReport", "MONTHLY PROFIT AND LOSS REPORT"}}},
        {"mnuPPrintParty", {{"mnuAgingReport", "AGING REPORT"}}},
        {"", {{"mnuItemCoding", "ITE&M CODING"}}},
        {"mnuItemCoding", {{"mnuEnterItemCoding", "ENTER ITEM CODING"},
                {"mnuModifyItemCoding", "MODIFY ITEM CODING"}, {"mnuViewItemCoding", "VIEW ITEM CODING"}}},
        {"", {{"mnuPurchaseOrder", "&PURCHASE ORDER"}}},
        {"mnuPurchaseOrder", {{"mnuEnterPurchaseOrder", "ENTER PURCHASE ORDER"},
                {"mnuModifyPurchaseOrder", "MODIFY PURCHASE ORDER"},
                {"mnuDeletePurchaseOrder", "DELETE PURCHASE ORDER"}, {"mnuViewPurchaseOrder", "VIEW PURCHASE ORDER"},
                {"mnuViewPurchaseOrderStatusReport", "VIEW PURCHASE ORDER STATUS REPORT"}}},
        {"", {{"mnuDeliveryChallan", "&DELIVERY CHALLAN"}}},
        {"mnuDeliveryChallan", {{"mnuEnterDeliveryChallan", "ENTER DELIVERY CHALLAN"},
                {"mnuModifyDeliveryChallan", "MODIFY DELIVERY CHALLAN"},
                {"mnuDeleteDeliveryChallan", "DELETE DELIVERY CHALLAN"},
                {"mnuViewDeliveryChallan", "VIEW DELIVERY CHALLAN"},
                {"mnuViewDeliveryInvoiceStatusReport", "VIEW DELIVERY / INVOICE STATUS REPORT"},
                {"mnuViewDeliveryChallanSummary", "VIEW DELIVERY CHALLAN SUMMARY"}}},
        {"", {{"mnuInvoice", "&INVOICE"}}},
        {"mnuInvoice", {{"mnuEnterInvoice", "ENTER INVOICE"}, {"mnuModifyInvoice", "MODIFY INVOICE"},
                {"mnuViewPrintInvoice", "VIEW SALE TAX INVOICE"}, {"mnuViewPrintBill", "VIEW BILL"},
                {"mnuViewInvoice", "VIEW INVOICE"}, {"mnuViewPrintSaleRegister", "VIEW SALE REGISTER"},
                {"mnuViewSaleRegisterSummary", "VIEW SALE REGISTER SUMMARY"},
                {"mnuViewPrintClientDetail", "VIEW CLIENT DETAIL"}, {"mnuViewPrintSaleSummary", "VIEW SALE SUMMARY"},
                {"mnuBillWisePayment", "BILL WISE PAYMENT"}}},
        {"", {{"mnuEmployeeSalary", "&EMPLOYEE SALARY"}}},
        {"mnuEmployeeSalary", {{"mnuPEmployeeMonthlySalary", "EMPLOYEE MONTHLY SALARY"},
                {"mnuEModifyMonthlySalary", "MODIFY MONTHLY SALARY"}, {"mnuUEmployeeSalary", "EMPLOYEE SALARY"},
                {"mnuPModifyEmployeeSalary", "MODIFY EMPLOYEE SALARY"}, {"mnuEmployeeList", "VIEW EMPLOYEE LIST"},
                {"mnuUViewEmployeeSalary", "VIEW EMPLOYEE SALARY"}}},
        {"", {{"mnuStock", "&STOCK"}}},
        {"mnuStock", {{"mnuSEnterStock", "ENTER PURCHASE STOCK"}, {"mnuSModifyStock", "MODIFY PURCHASE STOCK"},
                {"mnuDeletePurchaseStock", "DELETE PURCHASE STOCK"}, {"mnuEnterClosingStock", "ENTER CLOSING STOCK"},
                {"mnuModifyClosingStock", "MODIFY CLOSING STOCK"}, {"mnuDeleteClosingStock", "DELETE CLOSING STOCK"},
                {"mnuViewPurchaseRegister", "VIEW PURCHASE REGISTER"},
                {"mnuSEnterConsumables", "ENTER CONSUMABLE STOCK"},
                {"mnuSModifyConsumables", "MODIFY CONSUMABLE STOCK"}, {"mnuSEmployeeStock", "EMPLOYEE STOCK"},
                {"mnuSPrintStock", "VIEW STOCK"}, {"mnuSEmployeeStockFinished", "EMPLOYEE STOCK FINISHED"},
                {"mnuSViewEmployeeStock", "VIEW EMPLOYEE STOCK"}}},
        {"", {{"mnuOtherServices", "&OTHER SERVICES"}}},
        {"mnuOtherServices", {{"mnuEnterOtherServices", "ENTER OTHER SERVICES"},
                {"mnuModifyOtherServices", "MODIFY OTHER SERVICES"},
                {"mnuViewOtherServicesRegister", "VIEW OTHER SERVICES REGISTER"}}},
        {"", {{"mnuJobCard", "&JOB CARD"}}},
        {"mnuJobCard", {{"mnuEnterJobCard", "ENTER JOB CARD"}, {"mnuModifyJobCard", "MODIFY JOB CARD"},
                {"mnuDeleteJobCard", "DELETE JOB CARD"}, {"mnuViewJobCard", "VIEW JOB CARD"}}},
        {"", {{"mnuTitle", "&TITLE"}}},
        {"mnuTitle", {{"mnuAddTitleName", "ADD TITLE NAME"}, {"mnuTitleName", "TITLE NAME"}}},
        {"", {{"mnuUtilities", "&UTILITIES"}}},
        {"mnuUtilities", {{"mnuUBackUp", "BACK UP"}, {"mnuUNewUser", "CREATE NEW USER"},
                {"mnuUChangePassword", "CHANGE PASSWORD"}, {"mnuUUpdateUser", "UPDATE USER"},
                {"mnuUClosingDate", "CLOSING DATE"}, {"mnuEndYearProcessing", "END YEAR PROCESSING"}}},
        {"", {{"mnuAbout", "A&BOUT"}}},
        {"mnuAbout", {{"mnuATessel", "TESSEL"}}},
    };
    for (const auto &[parent, entries] : tree)
        for (const auto &[name, caption] : entries)
            QTest::newRow(name) << QString::fromLatin1(name) << QString::fromLatin1(caption) << QString::fromLatin1(parent);
}

void TestStartup::menuEntries()
{
    QFETCH(QString, name);
    QFETCH(QString, caption);
    QFETCH(QString, parent);
    static frmMDITessel *main = nullptr;
    if (!main)
        main = new frmMDITessel; // the menu needs no database
    QAction *a = main->menuAction(name);
    QVERIFY(a);
    QCOMPARE(a->objectName(), name);
    QCOMPARE(a->text(), caption);
    if (parent.isEmpty()) {
        QVERIFY(main->menuBar()->actions().contains(a));
    } else {
        QMenu *menu = main->findChild<QMenu *>(parent);
        QVERIFY(menu);
        QVERIFY(menu->actions().contains(a));
    }
    // A top menu opens with Alt and a letter its caption marks, its own.
    if (parent.isEmpty()) {
        const QKeySequence mine = QKeySequence::mnemonic(caption);
        QVERIFY2(!mine.isEmpty(), qPrintable(caption));
        for (QAction *other : main->menuBar()->actions())
            if (other != a)
                QVERIFY2(QKeySequence::mnemonic(other->text()) != mine, qPrintable(other->text()));
    }
}

// F6 enters the side panel; the arrows move along it, its focus shows.
void TestStartup::sidePanelByKeyboard()
{
    frmMDITessel main;
    main.show();
    QApplication::setActiveWindow(&main);
    QVERIFY(QTest::qWaitForWindowActive(&main));
    QTest::keyClick(&main, Qt::Key_F6);
    QWidget *first = main.findChild<QWidget *>(QStringLiteral("lblAccounts"));
    QVERIFY(first);
    QTRY_COMPARE(QApplication::focusWidget(), first);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    QVERIFY(QApplication::focusWidget() != first);
    QVERIFY(qobject_cast<PanelLabel *>(QApplication::focusWidget()));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Up);
    QCOMPARE(QApplication::focusWidget(), first);
}

QTEST_MAIN(TestStartup)
#include "tst_startup.moc"
