// The account, debit/credit list, title, letterhead and care-of screens and
// the account pick, headless: the fields as their names give them, the
// checks and their words, where the focus goes, and the rows written.
#include "support/TestDb.h"
#include "support/ui/MessageRecorder.h"
#include "support/ui/ScreenKit.h"

#include "accounts/AccountRules.h"
#include "accounts/ui/AccountPick.h"
#include "accounts/ui/frmDBCRAccount.h"
#include "accounts/ui/frmPartyInfo.h"
#include "accounts/ui/frmTitleScreens.h"
#include "foundation/Lookups.h"
#include "foundation/Session.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MenuRouter.h"
#include "foundation/ui/QueryTableModel.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTableView>
#include <QTimer>
#include <QAbstractItemView>
#include <QCompleter>
#include <QtTest>

using namespace ScreenKit;
using TestDb::count;

namespace {

const QDate kClosing(2025, 12, 31);

// Opens the year as this workstation's session for the length of a test.
struct SessionScope
{
    explicit SessionScope(const TestDb::Year &year)
    {
        session().connection = year.connect();
        session().currentUserName = QStringLiteral("CLERK");
        session().currentUserType = QStringLiteral("ADMINISTRATOR");
        session().today = QDate(2026, 2, 10);
        session().db().execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {kClosing});
    }
    ~SessionScope()
    {
        session().connection.reset();
        session().currentTitle.clear();
        session().companyName.clear();
    }
    SessionConnection &db() { return session().db(); }
};

// Fills the account screen with one account.
void fillAccount(frmPartyInfo &f, const QString &code, const QString &name, const QString &balance)
{
    f.mskPartyCode->setMaskText(code);
    f.txtPartyName->setText(name);
    f.txtBalance->setText(balance);
}

} // namespace

class TestAccountScreens : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void partyInfoLoads_data() { TestDb::addBackends(); }
    void partyInfoLoads();
    void partyInfoRefusals_data();
    void partyInfoRefusals();
    void partyInfoSavesAndKeeps_data() { TestDb::addBackends(); }
    void partyInfoSavesAndKeeps();
    void partyInfoHints_data() { TestDb::addBackends(); }
    void partyInfoHints();
    void partyInfoKeyFilters_data() { TestDb::addBackends(); }
    void partyInfoKeyFilters();
    void partyInfoDateCheckOnFocus_data() { TestDb::addBackends(); }
    void partyInfoDateCheckOnFocus();
    void partyInfoDatabaseFailure_data() { TestDb::addBackends(); }
    void partyInfoDatabaseFailure();
    void accountPick_data() { TestDb::addBackends(); }
    void accountPick();
    void debitCreditScreen_data() { TestDb::addBackends(); }
    void debitCreditScreen();
    void titleScreens_data() { TestDb::addBackends(); }
    void titleScreens();
    void careOfScreen_data() { TestDb::addBackends(); }
    void careOfScreen();
    void menuEntries_data() { TestDb::addBackends(); }
    void menuEntries();
    void partyInfoModal_data() { TestDb::addBackends(); }
    void partyInfoModal();
    void realMessageBoxShownOnce();
};

void TestAccountScreens::partyInfoLoads()
{
    TESSEL_YEAR(year);
    SessionScope s(year);
    s.db().execute(QStringLiteral("INSERT INTO tblCareOf (Name, Designation, UserName) VALUES ('MR ZAFAR', 'AGENT', 'X')"));
    s.db().execute(QStringLiteral("INSERT INTO tblCareOf (Name, Designation, UserName) VALUES ('MR ALI', 'AGENT', 'X')"));
    frmPartyInfo f;
    QCOMPARE(f.title(), QStringLiteral("PARTY INFO"));
    QCOMPARE(f.mskPartyCode->maskText(), QStringLiteral("__-__-___"));
    QCOMPARE(f.mskSaleTax->maskText(), QStringLiteral("__-__-____-___-__"));
    QCOMPARE(f.mskNTN->maskText(), QStringLiteral("_______-_"));
    QCOMPARE(f.mskDate->maskText(), QStringLiteral("31/12/2025"));
    QCOMPARE(items(f.cmbDBCR), (QStringList{"DR", "CR"}));
    QCOMPARE(f.cmbDBCR->currentText(), QStringLiteral("DR"));
    QCOMPARE(f.cmbCareOf->currentText(), QStringLiteral("MR ALI"));
    QCOMPARE(f.txtDueDays->text(), QStringLiteral("0"));
    for (const char *name : {"mskPartyCode", "txtLastCode", "txtPartyName", "txtPartyAddress", "txtPartyPhone",
                             "txtPartyFax", "txtPartyEmail", "mskSaleTax", "mskNTN", "txtDueDays", "cmbCareOf",
                             "txtPartyDesc", "mskDate", "cmbDBCR", "txtBalance", "dgPartyInfo", "cmdPartySave",
                             "cmdPartyCancel"})
        QVERIFY2(f.findChild<QWidget *>(QString::fromLatin1(name)), name);
}

void TestAccountScreens::partyInfoRefusals_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("balance");
    QTest::addColumn<QString>("date");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("focus");
    for (const char *b : {"sqlite", "postgres"}) {
        const QByteArray p = QByteArray(b) + ": ";
        QTest::newRow(p + "code with a blank place, no name") << b << "17-10-0" << "" << "5" << "31/12/2025"
                                                               << Accounts::Msg::codeMissing() << "mskPartyCode";
        QTest::newRow(p + "no name") << b << "17-10-001" << "  " << "5" << "31/12/2025" << Accounts::Msg::nameMissing()
                                     << "txtPartyName";
        QTest::newRow(p + "no balance") << b << "17-10-001" << "NEW" << "" << "31/12/2025"
                                        << Accounts::Msg::balanceMissing() << "txtBalance";
        QTest::newRow(p + "code of cash") << b << "19-10-001" << "NEW" << "5" << "31/12/2025"
                                          << Accounts::Msg::codeExists() << "mskPartyCode";
        QTest::newRow(p + "name with a trailing blank") << b << "17-10-001" << "CASH IN HAND " << "5" << "31/12/2025"
                                                        << Accounts::Msg::nameExists() << "txtPartyName";
        QTest::newRow(p + "day before closing") << b << "17-10-001" << "NEW" << "5" << "30/12/2025"
                                                << Accounts::Msg::dateClosed() << "mskDate";
    }
}

void TestAccountScreens::partyInfoRefusals()
{
    TESSEL_YEAR(year);
    QFETCH(QString, code);
    QFETCH(QString, name);
    QFETCH(QString, balance);
    QFETCH(QString, date);
    QFETCH(QString, message);
    QFETCH(QString, focus);
    SessionScope s(year);
    MessageRecorder rec;
    frmPartyInfo f;
    showActive(&f);
    fillAccount(f, code, name, balance);
    f.mskDate->setMaskText(date);
    click(f.cmdPartySave);
    QCOMPARE(rec.texts(), QStringList{message});
    QVERIFY(rec.last().isCritical());
    QCOMPARE(QApplication::focusWidget()->objectName(), focus);
    QCOMPARE(count(s.db(), QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")), 0);
    if (QTest::currentDataTag() == QByteArray("sqlite: day before closing"))
        shoot(&f, QStringLiteral("frmPartyInfo-refused"));
}

void TestAccountScreens::partyInfoSavesAndKeeps()
{
    TESSEL_YEAR(year);
    SessionScope s(year);
    s.db().execute(QStringLiteral("INSERT INTO tblCareOf (Name, Designation, UserName) VALUES ('MR ALI', 'AGENT', 'X')"));
    s.db().execute(QStringLiteral("INSERT INTO tblCareOf (Name, Designation, UserName) VALUES ('MR BABAR', 'AGENT', 'X')"));
    MessageRecorder rec;
    frmPartyInfo f;
    showActive(&f);

    // The first account: every field, on the CR side, on the closing date.
    fillAccount(f, QStringLiteral("17-10-001"), QStringLiteral(" ABC PRINTERS "), QStringLiteral("1500.50"));
    f.txtPartyAddress->setText(QStringLiteral("5 MILL ROAD"));
    f.txtPartyPhone->setText(QStringLiteral("(042) 111-222 ext. 9"));
    f.txtPartyFax->setText(QStringLiteral("042-111 222,3"));
    f.txtPartyEmail->setText(QStringLiteral("abc@example.com"));
    f.mskNTN->setMaskText(QStringLiteral("1234567-8"));
    f.txtDueDays->setText(QStringLiteral("45"));
    f.cmbCareOf->setCurrentIndex(f.cmbCareOf->findText(QStringLiteral("MR BABAR")));
    f.txtPartyDesc->setText(QStringLiteral("PACKAGING"));
    f.cmbDBCR->setCurrentIndex(1);
    f.mskDate->setMaskText(QStringLiteral("02/01/2026"));
    shoot(&f, QStringLiteral("frmPartyInfo-filled"));
    click(f.cmdPartySave);
    QCOMPARE(rec.texts(), QStringList{QStringLiteral("Party Info. has added successfully")});
    QVERIFY(rec.last().isInformation());

    const auto info = s.db().selectOne(QStringLiteral("SELECT * FROM tblPartyInfo WHERE PartyCode = '17-10-001'"));
    QVERIFY(info);
    QCOMPARE(info->text("PartyName").trimmed(), QStringLiteral("ABC PRINTERS"));
    QCOMPARE(info->text("PartyPhone"), QStringLiteral("(042) 111-222 ext. 9"));
    QCOMPARE(info->text("PartyFax"), QStringLiteral("042-111 222,3"));
    QCOMPARE(info->text("PartySaleTaxNo"), QStringLiteral("__-__-____-___-__"));
    QCOMPARE(info->text("PartyNTN"), QStringLiteral("1234567-8"));
    QCOMPARE(info->integer("DueDays"), 45);
    QCOMPARE(info->text("CareOf").trimmed(), QStringLiteral("MR BABAR"));
    QCOMPARE(info->text("UserName").trimmed(), QStringLiteral("CLERK"));
    QCOMPARE(info->date("EntryDate"), QDate(2026, 2, 10));
    const auto opening = s.db().selectOne(QStringLiteral("SELECT * FROM tblPartyBalance WHERE PartyCode = '17-10-001'"));
    QVERIFY(opening);
    QCOMPARE(opening->money("PartyCR"), Money::fromCents(150050));
    QCOMPARE(opening->money("PartyBalance"), Money::fromCents(-150050));
    QCOMPARE(opening->date("VDate"), QDate(2026, 1, 2));

    // What the save clears and what it keeps.
    QCOMPARE(f.mskPartyCode->maskText(), QStringLiteral("__-__-___"));
    QCOMPARE(f.txtPartyName->text(), QString());
    QCOMPARE(f.txtPartyFax->text(), QString());
    QCOMPARE(f.txtBalance->text(), QString());
    QCOMPARE(f.mskNTN->maskText(), QStringLiteral("_______-_"));
    QCOMPARE(f.txtDueDays->text(), QStringLiteral("0"));
    QCOMPARE(f.cmbCareOf->currentText(), QStringLiteral("MR BABAR"));
    QCOMPARE(f.cmbDBCR->currentText(), QStringLiteral("CR"));
    QCOMPARE(f.mskDate->maskText(), QStringLiteral("02/01/2026"));
    QCOMPARE(f.txtLastCode->text(), QStringLiteral("17-10-001")); // the group's last code, the one just saved
    QCOMPARE(QApplication::focusWidget(), f.mskPartyCode);

    // The second account takes the kept care-of, side and date; a zero
    // balance still writes its opening row.
    rec.clear();
    fillAccount(f, QStringLiteral("17-10-002"), QStringLiteral("XYZ PACK"), QStringLiteral("0"));
    click(f.cmdPartySave);
    QCOMPARE(rec.texts(), QStringList{QStringLiteral("Party Info. has added successfully")});
    const auto second = s.db().selectOne(QStringLiteral("SELECT p.CareOf, b.PartyDR, b.PartyCR, b.PartyBalance, b.VDate "
                                                        "FROM tblPartyInfo p JOIN tblPartyBalance b ON b.PartyCode = p.PartyCode "
                                                        "WHERE p.PartyCode = '17-10-002'"));
    QVERIFY(second);
    QCOMPARE(second->text("CareOf").trimmed(), QStringLiteral("MR BABAR"));
    QCOMPARE(second->money("PartyDR"), Money());
    QCOMPARE(second->money("PartyCR"), Money());
    QCOMPARE(second->money("PartyBalance"), Money());
    QCOMPARE(second->date("VDate"), QDate(2026, 1, 2));
    QCOMPARE(f.txtLastCode->text(), QStringLiteral("17-10-002")); // refreshed by the save
    QCOMPARE(count(s.db(), QStringLiteral("SELECT COUNT(*) FROM tblDBCR WHERE PartyCode IN ('17-10-001', '17-10-002')")), 2);
}

void TestAccountScreens::partyInfoHints()
{
    TESSEL_YEAR(year);
    SessionScope s(year);
    frmPartyInfo f;
    showActive(&f);
    // The last code under what is typed so far.
    f.mskPartyCode->setFocus();
    QTest::keyClicks(f.mskPartyCode, QStringLiteral("1910"));
    QCOMPARE(f.txtLastCode->text(), QStringLiteral("19-10-001"));
    // A group with no codes leaves the hint as it stood.
    f.mskPartyCode->setMaskText(QStringLiteral("55-10-"));
    QCOMPARE(f.txtLastCode->text(), QStringLiteral("19-10-001"));
    f.mskPartyCode->setMaskText(QStringLiteral("20-10-"));
    QCOMPARE(f.txtLastCode->text(), QStringLiteral("20-10-002"));

    // The near names while the name is typed.
    f.txtPartyName->setFocus();
    QTest::keyClicks(f.txtPartyName, QStringLiteral("inc"));
    QCOMPARE(f.txtPartyName->text(), QStringLiteral("INC"));
    auto *model = qobject_cast<QueryTableModel *>(f.dgPartyInfo->model());
    QVERIFY(model);
    QCOMPARE(model->headerData(0, Qt::Horizontal).toString(), QStringLiteral("PARTY CODE"));
    QCOMPARE(model->headerData(1, Qt::Horizontal).toString(), QStringLiteral("PARTY NAME"));
    QCOMPARE(model->rowCount(), 2); // INCOME, OTHER SERVICES INCOM
    QCOMPARE(model->data(model->index(0, 0)).toString().trimmed(), QStringLiteral("20-10-000"));
    shoot(&f, QStringLiteral("frmPartyInfo-hints"));
}

void TestAccountScreens::partyInfoKeyFilters()
{
    TESSEL_YEAR(year);
    SessionScope s(year);
    frmPartyInfo f;
    showActive(&f);
    f.txtPartyFax->setFocus();
    QTest::keyClicks(f.txtPartyFax, QStringLiteral("042-111 222,3ab;x/"));
    QCOMPARE(f.txtPartyFax->text(), QStringLiteral("042-111 222,3"));
    f.txtPartyPhone->setFocus();
    QTest::keyClicks(f.txtPartyPhone, QStringLiteral("ext; 5, (a)"));
    QCOMPARE(f.txtPartyPhone->text(), QStringLiteral("ext; 5, (a)"));
    f.txtPartyName->setFocus();
    QTest::keyClicks(f.txtPartyName, QStringLiteral("o'neil; co, ltd"));
    QCOMPARE(f.txtPartyName->text(), QStringLiteral("ONEIL CO LTD"));
    f.txtBalance->setFocus();
    QTest::keyClicks(f.txtBalance, QStringLiteral("-12.5.0x"));
    QCOMPARE(f.txtBalance->text(), QStringLiteral("12.50"));
    // No more digits than the column holds.
    f.txtBalance->clear();
    QTest::keyClicks(f.txtBalance, QString(20, QLatin1Char('9')));
    QCOMPARE(f.txtBalance->text(), QString(16, QLatin1Char('9')));
    // Leaving an empty days or balance field puts 0 into it.
    f.txtBalance->clear();
    f.txtDueDays->setFocus();
    QCOMPARE(f.txtBalance->text(), QStringLiteral("0"));
    f.txtDueDays->clear();
    QTest::keyClicks(f.txtDueDays, QStringLiteral("3a0"));
    QCOMPARE(f.txtDueDays->text(), QStringLiteral("30"));
    f.txtDueDays->clear();
    f.txtPartyDesc->setFocus();
    QCOMPARE(f.txtDueDays->text(), QStringLiteral("0"));
    // Enter moves on.
    f.txtPartyEmail->setFocus();
    QTest::keyClick(f.txtPartyEmail, Qt::Key_Return);
    QCOMPARE(QApplication::focusWidget(), f.mskSaleTax);
}

void TestAccountScreens::partyInfoDateCheckOnFocus()
{
    TESSEL_YEAR(year);
    SessionScope s(year);
    MessageRecorder rec;
    frmPartyInfo f;
    showActive(&f);
    fillAccount(f, QStringLiteral("17-10-001"), QStringLiteral("NEW"), QStringLiteral("1"));
    f.mskDate->setMaskText(QStringLiteral("31/04/2026"));
    // Tabbing onto the button checks the date, once, and sends the user
    // back to it; the click that follows does nothing more.
    f.txtBalance->setFocus();
    QTest::keyClick(f.txtBalance, Qt::Key_Tab);
    QCOMPARE(rec.texts(), QStringList{QStringLiteral("Wrong date, please enter correct date")});
    QCOMPARE(QApplication::focusWidget(), f.mskDate);
    rec.clear();
    click(f.cmdPartySave);
    QCOMPARE(rec.texts(), QStringList{QStringLiteral("Wrong date, please enter correct date")});
    // The focus coming back to the button as a message box closes checks
    // nothing (else the refusal would repeat for ever).
    rec.clear();
    QFocusEvent back(QEvent::FocusIn, Qt::ActiveWindowFocusReason);
    QApplication::sendEvent(f.cmdPartySave, &back);
    QVERIFY(rec.isEmpty());
    f.mskDate->setMaskText(QStringLiteral("__/__/____"));
    rec.clear();
    click(f.cmdPartySave);
    QCOMPARE(rec.texts(), QStringList{QStringLiteral("Date is missing, please enter proper date")});
    QCOMPARE(count(s.db(), QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo WHERE PartyCode = '17-10-001'")), 0);
    // The closing date itself is open here.
    f.mskDate->setMaskText(QStringLiteral("31/12/2025"));
    rec.clear();
    click(f.cmdPartySave);
    QCOMPARE(rec.texts(), QStringList{QStringLiteral("Party Info. has added successfully")});
}

void TestAccountScreens::partyInfoDatabaseFailure()
{
    TESSEL_YEAR(year);
    SessionScope s(year);
    MessageRecorder rec;
    frmPartyInfo f;
    showActive(&f);
    fillAccount(f, QStringLiteral("17-10-001"), QStringLiteral("NEW"), QStringLiteral("10"));
    s.db().setStatementHook([](const QString &sql) {
        if (sql.contains(QLatin1String("INTO tblPartyBalance")))
            throw DbError(QStringLiteral("the disk is full"), sql);
    });
    click(f.cmdPartySave);
    s.db().setStatementHook({});
    QCOMPARE(rec.count(), 1);
    QVERIFY(rec.last().isCritical());
    QVERIFY2(rec.last().text.contains(QLatin1String("the disk is full")), qPrintable(rec.last().text));
    QCOMPARE(count(s.db(), QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo WHERE PartyCode = '17-10-001'")), 0);
    // The fields stand as typed, and the next try saves.
    QCOMPARE(f.txtPartyName->text(), QStringLiteral("NEW"));
    rec.clear();
    click(f.cmdPartySave);
    QCOMPARE(rec.texts(), QStringList{QStringLiteral("Party Info. has added successfully")});
}

void TestAccountScreens::accountPick()
{
    TESSEL_YEAR(year);
    SessionScope s(year);
    for (const auto &a : {std::pair{"17-10-001", "ALPHA PRESS"}, {"17-10-002", "BETA PRINT HOUSE"}, {"17-10-003", "GAMMA PRESS"}})
        s.db().execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES (?, ?)"),
                       {QString::fromLatin1(a.first), QString::fromLatin1(a.second)});
    QWidget w;
    auto *name = new QComboBox(&w);
    name->setObjectName(QStringLiteral("cmbPartyName"));
    auto *code = new MaskedLineEdit(MaskedLineEdit::accountCodeMask(), &w);
    code->setObjectName(QStringLiteral("mskPartyCode"));
    auto *other = new QLineEdit(&w);
    name->setGeometry(10, 10, 300, 24);
    code->setGeometry(10, 40, 120, 24);
    other->setGeometry(10, 70, 120, 24);
    AccountPick pick(name, code, nullptr);
    pick.loadPartyList();
    QSignalSpy changed(&pick, &AccountPick::accountChanged);
    showActive(&w);

    // A name sets its code; an unknown one empties the code at once.
    name->setFocus();
    name->setEditText(QStringLiteral("GAMMA PRESS"));
    QCOMPARE(code->maskText(), QStringLiteral("17-10-003"));
    QCOMPARE(pick.code(), QStringLiteral("17-10-003"));
    QVERIFY(!changed.isEmpty());
    name->setEditText(QStringLiteral("GAMMA PRES"));
    QCOMPARE(code->maskText(), QStringLiteral("__-__-___"));
    QVERIFY(!pick.hasAccount());

    // A code sets its name; a half-typed or unknown code leaves the name
    // while typing, and leaving with an unknown code blanks it.
    code->setMaskText(QStringLiteral("17-10-002"));
    QCOMPARE(name->currentText(), QStringLiteral("BETA PRINT HOUSE"));
    code->setFocus();
    code->setMaskText(QStringLiteral("17-10-00"));
    QCOMPARE(name->currentText(), QStringLiteral("BETA PRINT HOUSE"));
    code->setMaskText(QStringLiteral("17-10-009"));
    QCOMPARE(name->currentText(), QStringLiteral("BETA PRINT HOUSE"));
    QVERIFY(!pick.hasAccount());
    other->setFocus();
    QCOMPARE(name->currentText(), QString());

    // Escape opens the word search; Enter takes the row and focuses the code.
    name->setFocus();
    name->setEditText(QStringLiteral("PRESS  AL"));
    QTest::keyClick(name, Qt::Key_Escape);
    QTableView *grid = w.findChild<QTableView *>(QStringLiteral("dgSearch"));
    QVERIFY(grid);
    QVERIFY(grid->isVisible());
    QCOMPARE(grid->model()->rowCount(), 1);
    QCOMPARE(grid->model()->headerData(0, Qt::Horizontal).toString(), QStringLiteral("A/C CODE"));
    QSignalSpy picked(&pick, &AccountPick::picked);
    QTest::keyClick(grid, Qt::Key_Return);
    QVERIFY(!grid->isVisible());
    QCOMPARE(name->currentText(), QStringLiteral("ALPHA PRESS"));
    QCOMPARE(code->maskText(), QStringLiteral("17-10-001"));
    QCOMPARE(QApplication::focusWidget(), code);
    QCOMPARE(picked.size(), 1);
    QCOMPARE(picked.first().at(0).toString(), QStringLiteral("17-10-001"));

    // An empty search lists every account; Escape in the list closes it.
    name->setFocus();
    name->setEditText(QString());
    QTest::keyClick(name, Qt::Key_Escape);
    QCOMPARE(grid->model()->rowCount(), 12);
    QTest::keyClick(grid, Qt::Key_Escape);
    QVERIFY(!grid->isVisible());

    // One Escape opens the search even while the completion list is open.
    name->setFocus();
    name->setEditText(QString());
    QTest::keyClicks(name->lineEdit(), QStringLiteral("PRESS"));
    QTRY_VERIFY(name->completer()->popup()->isVisible());
    QTest::keyClick(name->completer()->popup(), Qt::Key_Escape);
    QVERIFY(grid->isVisible());
    QCOMPARE(grid->model()->rowCount(), 2);
    QVERIFY(!name->completer()->popup()->isVisible());
    QTest::keyClick(grid, Qt::Key_Escape);

    // A reload lists an account made meanwhile and keeps both fields as
    // they stood, an account's or a half-typed code beside a name.
    s.db().execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES ('17-10-004', 'DELTA INKS')"));
    other->setFocus();
    code->setMaskText(QStringLiteral("17-10-002"));
    pick.reload();
    QCOMPARE(name->currentText(), QStringLiteral("BETA PRINT HOUSE"));
    QCOMPARE(pick.code(), QStringLiteral("17-10-002"));
    QVERIFY(name->findText(QStringLiteral("DELTA INKS")) >= 0);
    // An account renamed meanwhile shows its new name.
    s.db().execute(QStringLiteral("UPDATE tblPartyInfo SET PartyName = 'BETA PRESS' WHERE PartyCode = '17-10-002'"));
    pick.reload();
    QCOMPARE(name->currentText(), QStringLiteral("BETA PRESS"));
    QCOMPARE(pick.code(), QStringLiteral("17-10-002"));
    code->setFocus();
    code->setMaskText(QStringLiteral("17-10-00"));
    const QString halfTyped = code->maskText();
    changed.clear();
    pick.reload();
    QCOMPARE(name->currentText(), QStringLiteral("BETA PRESS"));
    QCOMPARE(code->maskText(), halfTyped);
    QVERIFY(changed.isEmpty()); // nothing moved
}

void TestAccountScreens::debitCreditScreen()
{
    TESSEL_YEAR(year);
    SessionScope s(year);
    MessageRecorder rec;
    frmDBCRAccount f;
    showActive(&f);
    QCOMPARE(f.title(), QStringLiteral("DEBIT/CREDIT ACCOUNT"));

    f.mskPartyCode->setMaskText(QStringLiteral("17-10"));
    click(f.cmdSave);
    QCOMPARE(rec.last().text, QStringLiteral("Party Code is missing, Enter proper party code"));
    QCOMPARE(QApplication::focusWidget(), f.mskPartyCode);

    f.mskPartyCode->setMaskText(QStringLiteral("17-10-000"));
    click(f.cmdSave);
    QCOMPARE(rec.last().text, QStringLiteral("Account code has added in debited/credited list successfully"));
    QVERIFY(rec.last().isInformation());
    QCOMPARE(f.mskPartyCode->maskText(), QStringLiteral("__-__-___"));

    // A duplicate keeps the field; a code not listed clears it.
    f.mskPartyCode->setMaskText(QStringLiteral("17-10-000"));
    click(f.cmdSave);
    QCOMPARE(rec.last().text, QStringLiteral("Account Code already exist, Duplication is not allowed"));
    QCOMPARE(f.mskPartyCode->maskText(), QStringLiteral("17-10-000"));
    shoot(&f, QStringLiteral("frmDBCRAccount-refused"));
    click(f.cmdDelete);
    QCOMPARE(rec.last().text, QStringLiteral("Account Code has deleted successfully"));
    QCOMPARE(f.mskPartyCode->maskText(), QStringLiteral("__-__-___"));
    f.mskPartyCode->setMaskText(QStringLiteral("17-10-000"));
    click(f.cmdDelete);
    QCOMPARE(rec.last().text, QStringLiteral("Account code has not yet added in debit/credit list"));
    QVERIFY(rec.last().isCritical());
    QCOMPARE(f.mskPartyCode->maskText(), QStringLiteral("__-__-___"));
    QCOMPARE(count(s.db(), QStringLiteral("SELECT COUNT(*) FROM tblDBCR")), 0);
    f.mskPartyCode->setMaskText(QStringLiteral("21-10-001"));
    shoot(&f, QStringLiteral("frmDBCRAccount-filled"));
}

void TestAccountScreens::titleScreens()
{
    TESSEL_YEAR(year);
    SessionScope s(year);
    MessageRecorder rec;
    {
        frmAddTitleName f;
        showActive(&f);
        QCOMPARE(f.title(), QStringLiteral("ADD TITLE NAME"));
        // a title of blanks is taken, as any other text
        f.txtTitleName->setText(QStringLiteral("   "));
        click(f.cmdOkay);
        QCOMPARE(rec.last().text, QStringLiteral("Title Name has been saved successfully."));
        session().db().execute(QStringLiteral("DELETE FROM tblTitleName"));
        f.txtTitleName->setFocus();
        QTest::keyClicks(f.txtTitleName, QStringLiteral("noor printers"));
        shoot(&f, QStringLiteral("frmAddTitleName-filled"));
        click(f.cmdOkay);
        QCOMPARE(rec.last().text, QStringLiteral("Title Name has been saved successfully."));
        QCOMPARE(f.txtTitleName->text(), QString());
        f.txtTitleName->setText(QStringLiteral("NOOR PRINTERS"));
        click(f.cmdOkay);
        QCOMPARE(rec.last().text, QStringLiteral("Title Name already exist, duplication is not allowed."));
        f.txtTitleName->setText(QStringLiteral("ZEST PACK"));
        click(f.cmdOkay);
    }
    {
        frmLetterhead f;
        showActive(&f);
        QCOMPARE(f.cmbTitleName->currentText(), QStringLiteral("NOOR PRINTERS"));
        f.txtCompanyName->setText(QStringLiteral("NOOR PRINTERS (PVT) LTD"));
        f.txtCompanyAddress->setText(QStringLiteral("5 PRESS STREET, LAHORE"));
        f.txtCompanyNTN->setText(QStringLiteral("1234567-8"));
        shoot(&f, QStringLiteral("frmLetterhead-filled"));
        click(f.cmdSave);
        QCOMPARE(rec.last().text, QStringLiteral("Letterhead has been saved successfully."));
        f.cmbTitleName->setCurrentIndex(f.cmbTitleName->findText(QStringLiteral("ZEST PACK")));
        QCOMPARE(f.txtCompanyName->text(), QString());
        f.cmbTitleName->setCurrentIndex(f.cmbTitleName->findText(QStringLiteral("NOOR PRINTERS")));
        QCOMPARE(f.txtCompanyAddress->text(), QStringLiteral("5 PRESS STREET, LAHORE"));
    }
    {
        frmTitleName f;
        showActive(&f);
        QCOMPARE(f.title(), QStringLiteral("TITLE NAME"));
        QCOMPARE(f.cmbTitleName->count(), 2);
        QCOMPARE(f.cmbTitleName->currentText(), QStringLiteral("NOOR PRINTERS"));
        shoot(&f, QStringLiteral("frmTitleName-filled"));
        click(f.cmdOkay);
        QCOMPARE(session().currentTitle, QStringLiteral("NOOR PRINTERS"));
        QCOMPARE(session().companyName, QStringLiteral("NOOR PRINTERS (PVT) LTD"));
        QCOMPARE(session().companyNTN, QStringLiteral("1234567-8"));
        QVERIFY(!f.isVisible());
    }
    {
        // A title without a letterhead row, typed or picked, leaves the
        // working title and its company lines as they were, silently.
        frmTitleName f;
        showActive(&f);
        const int before = rec.count();
        f.cmbTitleName->setEditText(QStringLiteral("NO SUCH TITLE"));
        click(f.cmdOkay);
        QCOMPARE(rec.count(), before); // silent, as the system is
        QCOMPARE(session().currentTitle, QStringLiteral("NOOR PRINTERS"));
        frmTitleName g;
        showActive(&g);
        g.cmbTitleName->setCurrentIndex(g.cmbTitleName->findText(QStringLiteral("ZEST PACK")));
        click(g.cmdOkay);
        QCOMPARE(session().currentTitle, QStringLiteral("NOOR PRINTERS"));
        QCOMPARE(session().companyName, QStringLiteral("NOOR PRINTERS (PVT) LTD"));
    }
}

void TestAccountScreens::careOfScreen()
{
    TESSEL_YEAR(year);
    SessionScope s(year);
    MessageRecorder rec;
    frmCareOf f;
    showActive(&f);
    // The checks run when the button takes the focus: empty name first.
    f.txtDesignation->setText(QStringLiteral("AGENT"));
    click(f.cmdSave);
    QCOMPARE(rec.texts(), QStringList{QStringLiteral("Name is missing, please enter name")});
    QCOMPARE(QApplication::focusWidget(), f.txtName);
    rec.clear();
    f.txtName->setText(QStringLiteral("MR ALI"));
    f.txtDesignation->clear();
    click(f.cmdSave);
    QCOMPARE(rec.texts(), QStringList{QStringLiteral("Designation is missing, please enter designation")});
    QCOMPARE(QApplication::focusWidget(), f.txtDesignation);
    rec.clear();
    f.txtDesignation->setText(QStringLiteral("AGENT"));
    click(f.cmdSave);
    QCOMPARE(rec.texts(), QStringList{QStringLiteral("Care of person has created successfully")});
    QCOMPARE(f.txtName->text(), QString());
    QCOMPARE(f.dgCareOf->model()->rowCount(), 1);
    QCOMPARE(f.dgCareOf->model()->headerData(1, Qt::Horizontal).toString(), QStringLiteral("DESIGNATION"));
    const auto row = s.db().selectOne(QStringLiteral("SELECT UserName FROM tblCareOf WHERE Name = 'MR ALI'"));
    QCOMPARE(row->text(0).trimmed(), QStringLiteral("CLERK"));

    rec.clear();
    f.txtName->setText(QStringLiteral("MR BABAR"));
    f.txtDesignation->setText(QStringLiteral("BROKER"));
    click(f.cmdSave);
    // A name already there is refused, in the words of the list of users.
    f.txtName->setText(QStringLiteral("MR ALI"));
    f.txtDesignation->setText(QStringLiteral("AGENT"));
    rec.clear();
    click(f.cmdSave);
    QCOMPARE(rec.texts(), QStringList{QStringLiteral("User already created, please choose another one")});
    shoot(&f, QStringLiteral("frmCareOf-refused"));
    // Typing the name narrows the list.
    f.txtName->setText(QStringLiteral("BAB"));
    QCOMPARE(f.dgCareOf->model()->rowCount(), 1);
    f.txtName->clear();
    QCOMPARE(f.dgCareOf->model()->rowCount(), 2);
    f.txtName->setText(QStringLiteral("MR SAJID"));
    f.txtDesignation->setText(QStringLiteral("SALES"));
    shoot(&f, QStringLiteral("frmCareOf-filled"));
}

void TestAccountScreens::menuEntries()
{
    TESSEL_YEAR(year);
    SessionScope s(year);
    MessageRecorder rec;
    MenuRouter router;
    router.registerAll();
    Host host;
    const QList<std::tuple<const char *, const char *, const char *>> entries{
        {"mnuPPartyInfo", "frmPartyInfo", "PARTY INFO"},
        {"mnuPDebitCreditAccount", "frmDBCRAccount", "DEBIT/CREDIT ACCOUNT"},
        {"mnuAddTitleName", "frmAddTitleName", "ADD TITLE NAME"},
        {"mnuTitleName", "frmTitleName", "TITLE NAME"},
        {"mnuLetterhead", "frmLetterhead", "LETTERHEAD"},
        {"mnuCareOf", "frmCareOf", "CARE OF"},
        {"mnuEnterItemCoding", "frmItemCoding", "ITEM CODING"},
        {"mnuModifyItemCoding", "frmModifyItemCoding", "MODIFY ITEM CODING"},
    };
    for (const auto &[action, screen, title] : entries) {
        QVERIFY2(router.trigger(QString::fromLatin1(action), host), action);
        auto *opened = qobject_cast<BaseScreen *>(host.findScreen(QString::fromLatin1(screen)));
        QVERIFY2(opened, screen);
        QCOMPARE(opened->title(), QString::fromLatin1(title));
    }
    QVERIFY(rec.isEmpty());

    // A care-of person added while the account screen is open is offered
    // when the account screen comes to the front again.
    auto *careOf = qobject_cast<frmCareOf *>(host.findScreen(QStringLiteral("frmCareOf")));
    careOf->txtName->setText(QStringLiteral("MR QASIM"));
    careOf->txtDesignation->setText(QStringLiteral("AGENT"));
    click(careOf->cmdSave);
    QCOMPARE(rec.last().text, QStringLiteral("Care of person has created successfully"));
    QVERIFY(router.trigger(QStringLiteral("mnuPPartyInfo"), host));
    auto *party = qobject_cast<frmPartyInfo *>(host.findScreen(QStringLiteral("frmPartyInfo")));
    QCOMPARE(party->cmbCareOf->currentText(), QStringLiteral("MR QASIM"));
    shoot(host.mainWindow(), QStringLiteral("main-window-frmPartyInfo"));
    QCOMPARE(host.mdiArea()->subWindowList().size(), entries.size());

    // The letterhead is for administrators only.
    host.findScreen(QStringLiteral("frmLetterhead"))->parentWidget()->close();
    QApplication::processEvents();
    session().currentUserType = QStringLiteral("COMMON USER");
    rec.clear();
    router.trigger(QStringLiteral("mnuLetterhead"), host);
    QCOMPARE(rec.texts(), QStringList{QStringLiteral("Only an administrator can change the letterhead.")});
    QVERIFY(!host.findScreen(QStringLiteral("frmLetterhead")));
}

// Another screen's "add party" button: the account screen over it, modal,
// and the code of the account made there handed back.
void TestAccountScreens::partyInfoModal()
{
    TESSEL_YEAR(year);
    SessionScope s(year);
    MessageRecorder rec;
    QWidget owner;
    showActive(&owner);
    QTimer::singleShot(0, [&] {
        frmPartyInfo *f = nullptr;
        for (QWidget *w : QApplication::topLevelWidgets())
            if (auto *p = qobject_cast<frmPartyInfo *>(w); p && p->isVisible())
                f = p;
        QVERIFY(f);
        QVERIFY(f->isModal());
        fillAccount(*f, QStringLiteral("17-10-004"), QStringLiteral("DELTA BOX"), QStringLiteral("0"));
        click(f->cmdPartySave);
        click(f->cmdPartyCancel);
    });
    QCOMPARE(frmPartyInfo::addAccountModal(&owner), QStringLiteral("17-10-004"));
    QCOMPARE(rec.texts(), QStringList{QStringLiteral("Party Info. has added successfully")});
}

// With real message boxes: a refusal at the save button is shown once,
// and closing it does not bring it back.
void TestAccountScreens::realMessageBoxShownOnce()
{
    TestDb::Year year(QStringLiteral("sqlite"));
    SessionScope s(year);
    frmPartyInfo f;
    showActive(&f);
    fillAccount(f, QStringLiteral("17-10-001"), QStringLiteral("NEW"), QStringLiteral("1"));
    f.mskDate->setMaskText(QStringLiteral("31/04/2026"));
    QStringList shown;
    QTimer closer;
    QObject::connect(&closer, &QTimer::timeout, [&] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
            shown << box->text();
            box->accept();
        }
    });
    closer.start(30);
    f.txtBalance->setFocus();
    QTest::keyClick(f.txtBalance, Qt::Key_Tab);
    QTest::qWait(400);
    closer.stop();
    QCOMPARE(shown, QStringList{QStringLiteral("Wrong date, please enter correct date")});
    QTRY_COMPARE(f.focusWidget(), f.mskDate);
}

QTEST_MAIN(TestAccountScreens)
#include "tst_accountscreens.moc"
