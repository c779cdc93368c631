// The voucher screen driven through its controls, headless: from the menu
// entry to ledger rows, the type change, the refusals and the close
// question.
#include "foundation/Session.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MenuRouter.h"
#include "foundation/ui/QueryTableModel.h"
#include "support/TestDb.h"
#include "support/ui/MessageRecorder.h"
#include "support/ui/ScreenKit.h"
#include "support/ui/ScreenTest.h"
#include "vouchers/VoucherPosting.h"
#include "vouchers/VoucherStaging.h"
#include "vouchers/ui/frmJournalVoucher.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QCompleter>
#include <QAbstractItemView>
#include <QLineEdit>
#include <QMainWindow>
#include <QMdiArea>
#include <QPushButton>
#include <QTableView>
#include <QStatusBar>
#include <QStyledItemDelegate>
#include <QtTest>

namespace {

class Host : public MenuHost
{
public:
    Host() { registerVouchersMenu(router); }
    frmJournalVoucher *open(const QString &entry)
    {
        return MenuHost::open<frmJournalVoucher>(entry, QStringLiteral("frmJournalVoucher"));
    }
};

void addAccounts(SessionConnection &db)
{
    const QList<QPair<QString, QString>> accounts = {{"17-10-001", "CRESCENT TEXTILES"},
                                                     {"14-10-001", "PAPER HOUSE"},
                                                     {"21-10-001", "ELECTRICITY"},
                                                     {"21-10-002", "TEA AND REFRESHMENT"},
                                                     {"19-20-001", "CITY BANK"}};
    for (const auto &a : accounts)
        db.execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES (?, ?)"), {a.first, a.second});
}

void typeLine(frmJournalVoucher *f, const QString &account, const QString &amount, const QString &desc = QString())
{
    f->cmbPartyName->setEditText(account);
    f->txtDesc->setText(desc);
    f->txtAmount->setText(amount);
}

using ScreenKit::items;

int gridRows(frmJournalVoucher *f) { return f->dgVoucher->model()->rowCount(); }

} // namespace

class TestJournalVoucherScreen : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void cashPaymentFromMenuToLedger_data() { TestDb::addBackends(); }
    void cashPaymentFromMenuToLedger();
    void cashReceipt();
    void bankVoucherSwitchedToJournal_data() { TestDb::addBackends(); }
    void bankVoucherSwitchedToJournal();
    void lineRefusals_data();
    void lineRefusals();
    void unbalancedJournalRefused();
    void closeQuestion();
    void wholeVoucherByKeyboard();
    void databaseFailureKeepsTheVoucher();
    void chequeSettledBySave();
    void modifyVoucherFromQuestionPanel_data() { TestDb::addBackends(); }
    void modifyVoucherFromQuestionPanel();
    void figuresFollowTheLedger();
    void titleEscapeAndFocus();
    void farDateAskedOnce();
    void accountTypedByWords();
    void lineConfirmationsInStatusBar();

private:
    std::unique_ptr<TestDb::Year> m_year;
    std::unique_ptr<Host> m_host;
    void startYear(const QString &backend);
};

void TestJournalVoucherScreen::init()
{
    session().currentUserName = QStringLiteral("CLERK");
    session().today = QDate(2026, 3, 10);
}

void TestJournalVoucherScreen::cleanup()
{
    m_host.reset();
    session().connection.reset();
    m_year.reset();
}

void TestJournalVoucherScreen::startYear(const QString &backend)
{
    m_year = std::make_unique<TestDb::Year>(backend);
    session().connection = m_year->connect();
    addAccounts(session().db());
    m_host = std::make_unique<Host>();
    m_host->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_host.get()));
}

void TestJournalVoucherScreen::cashPaymentFromMenuToLedger()
{
    TESSEL_BACKEND()
    startYear(backend);
    MessageRecorder rec;
    frmJournalVoucher *f = m_host->open(QStringLiteral("mnuPCashPaidVoucher"));
    QVERIFY(f);
    QCOMPARE(f->title(), QStringLiteral("ACCOUNTS VOUCHER"));
    QCOMPARE(session().voucherMode, QStringLiteral("NEW"));
    QCOMPARE(items(f->cmbVoucherType), QStringList{"CP"});
    QCOMPARE(f->txtVoucherNo->text(), QStringLiteral("1"));
    QCOMPARE(f->mskDate->maskText(), QStringLiteral("10/03/2026"));
    QCOMPARE(f->txtPCashInHand->text(), QStringLiteral("0.00 DR"));
    QCOMPARE(f->txtCCashInHand->text(), QStringLiteral("0.00 DR"));
    QCOMPARE(f->cmbDBCR->currentText(), QStringLiteral("DR")); // a payment debits the paid account
    QVERIFY(!items(f->cmbPartyName).contains(QStringLiteral("CASH IN HAND")));
    QVERIFY(f->frOuterVoucher->isVisible());
    QVERIFY(!f->frOuterVoucherNo->isVisible());

    typeLine(f, QStringLiteral("ELECTRICITY"), QStringLiteral("1500.5"), QStringLiteral("BILL FOR FEBRUARY"));
    QCOMPARE(f->txtPartyCode->text(), QStringLiteral("21-10-001"));
    QCOMPARE(f->txtBalance->text(), QString());
    f->cmdNew->click();
    QCOMPARE(rec.last().text, QStringLiteral("Party has Debited/Credited successfully"));
    QVERIFY(rec.last().isInformation());
    QCOMPARE(f->txtAmount->text(), QString());
    QCOMPARE(f->cmbPartyName->currentText(), QStringLiteral("ELECTRICITY")); // the account stays for the next line
    typeLine(f, QStringLiteral("TEA AND REFRESHMENT"), QStringLiteral(".5"));
    f->cmdNew->click();
    QCOMPARE(gridRows(f), 2);
    QCOMPARE(f->txtTotalDebit->text(), QStringLiteral("1,501.00"));
    QCOMPARE(f->txtTotalCredit->text(), QStringLiteral("0.00"));
    QCOMPARE(f->txtCCashInHand->text(), QStringLiteral("1,501.00 CR"));
    ScreenKit::shoot(m_host.get(), QStringLiteral("voucher-filled-") + backend);

    f->cmdModifyVoucher->click();
    QCOMPARE(rec.last().text, QStringLiteral("Voucher has saved successfully"));
    const QueryResult rows = session().db().select(QStringLiteral(
        "SELECT VoucherType, VoucherNo, VDate, PartyCode, PartyDR, PartyCR, UserName FROM tblPartyBalance ORDER BY SrNo"));
    QCOMPARE(rows.size(), 3);
    QCOMPARE(rows.at(0).text("PartyCode").trimmed(), QStringLiteral("21-10-001"));
    QCOMPARE(rows.at(0).moneyOrZero("PartyDR"), *Money::parse("1500.5"));
    QCOMPARE(rows.at(2).text("PartyCode").trimmed(), QStringLiteral("19-10-001"));
    QCOMPARE(rows.at(2).moneyOrZero("PartyCR"), Money::fromUnits(1501));
    QCOMPARE(rows.at(2).date("VDate"), QDate(2026, 3, 10));
    QCOMPARE(rows.at(2).text("UserName").trimmed(), QStringLiteral("CLERK"));

    // ready for the next voucher
    QCOMPARE(f->txtVoucherNo->text(), QStringLiteral("2"));
    QCOMPARE(f->txtTotalDebit->text(), QString());
    QCOMPARE(f->txtPCashInHand->text(), QStringLiteral("1,501.00 CR"));
    QCOMPARE(gridRows(f), 0);
    f->cmdModifyVoucher->click();
    QCOMPARE(rec.last().text, QStringLiteral("No entry is till entered, so data can not be saved"));
    QVERIFY(rec.last().isCritical());
}

void TestJournalVoucherScreen::cashReceipt()
{
    startYear(QStringLiteral("sqlite"));
    MessageRecorder rec;
    frmJournalVoucher *f = m_host->open(QStringLiteral("mnuPCashReceivedVoucher"));
    QCOMPARE(items(f->cmbVoucherType), QStringList{"CR"});
    QCOMPARE(f->cmbDBCR->currentText(), QStringLiteral("CR")); // a receipt credits the paying party
    typeLine(f, QStringLiteral("CRESCENT TEXTILES"), QStringLiteral("750.25"), QStringLiteral("AGAINST BILL 12"));
    f->cmdNew->click();
    typeLine(f, QStringLiteral("CRESCENT TEXTILES"), QStringLiteral("249.75"), QStringLiteral("AGAINST BILL 13"));
    f->cmdNew->click();
    QCOMPARE(f->txtTotalCredit->text(), QStringLiteral("1,000.00"));
    f->cmdModifyVoucher->click();
    QCOMPARE(rec.last().text, QStringLiteral("Voucher has saved successfully"));
    const QueryResult rows = session().db().select(QStringLiteral(
        "SELECT VoucherType, VoucherNo, PartyCode, PartyDR, PartyCR, PartyBalance FROM tblPartyBalance ORDER BY SrNo"));
    QCOMPARE(rows.size(), 3);
    QCOMPARE(rows.at(0).text("VoucherType").trimmed(), QStringLiteral("CR"));
    QCOMPARE(rows.at(0).moneyOrZero("PartyBalance"), -*Money::parse("750.25"));
    QCOMPARE(rows.at(2).text("PartyCode").trimmed(), QStringLiteral("19-10-001")); // the cash row comes last
    QCOMPARE(rows.at(2).moneyOrZero("PartyDR"), Money::fromUnits(1000));
    QCOMPARE(f->txtPCashInHand->text(), QStringLiteral("1,000.00 DR"));
    QCOMPARE(f->txtVoucherNo->text(), QStringLiteral("2"));
}

void TestJournalVoucherScreen::bankVoucherSwitchedToJournal()
{
    TESSEL_BACKEND()
    startYear(backend);
    VoucherPosting posting(session().db(), QStringLiteral("CLERK"), QDate(2026, 3, 10));
    for (int i = 1; i <= 3; ++i) {
        Voucher v{{QStringLiteral("JV"), i, QDate(2026, 2, 1)}, {}};
        VoucherLine a, b;
        a.partyCode = QStringLiteral("21-10-001");
        a.debit = Money::fromUnits(10);
        b.partyCode = QStringLiteral("14-10-001");
        b.credit = Money::fromUnits(10);
        v.lines << a << b;
        QVERIFY(posting.post(v, NumberPolicy::Typed).ok);
    }
    MessageRecorder rec;
    frmJournalVoucher *f = m_host->open(QStringLiteral("mnuBankPaidVoucher"));
    QCOMPARE(items(f->cmbVoucherType), (QStringList{"BP", "JV"}));
    QCOMPARE(f->cmbVoucherType->currentText(), QStringLiteral("BP"));
    QCOMPARE(f->txtVoucherNo->text(), QStringLiteral("1"));
    f->cmbDBCR->setCurrentText(QStringLiteral("CR"));
    f->cmbVoucherType->setCurrentText(QStringLiteral("JV"));
    QCOMPARE(f->txtVoucherNo->text(), QStringLiteral("4")); // the JV series
    QCOMPARE(f->cmbDBCR->currentText(), QStringLiteral("CR")); // the side is the user's on a JV
    QVERIFY(rec.isEmpty());
}

void TestJournalVoucherScreen::lineRefusals_data()
{
    QTest::addColumn<QString>("voucherNo");
    QTest::addColumn<QString>("account");
    QTest::addColumn<QString>("amount");
    QTest::addColumn<bool>("cheque");
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("message");
    QTest::newRow("no number") << "" << "ELECTRICITY" << "5" << false << "cmdNew"
                               << "Voucher # is missing, please enter voucher #";
    QTest::newRow("unknown account") << "1" << "ELECTRIC" << "5" << false << "cmdNew"
                                     << "Party name not found, please enter correct party name";
    QTest::newRow("no amount") << "1" << "ELECTRICITY" << "" << false << "cmdModify"
                               << "Amount is missing, please enter amount";
    QTest::newRow("cheque without description") << "1" << "ELECTRICITY" << "5" << true << "cmdDelete"
                                                << "Enter cheque description, empty or blank description is not allowed.";
}

void TestJournalVoucherScreen::lineRefusals()
{
    QFETCH(QString, voucherNo);
    QFETCH(QString, account);
    QFETCH(QString, amount);
    QFETCH(bool, cheque);
    QFETCH(QString, button);
    QFETCH(QString, message);
    startYear(QStringLiteral("sqlite"));
    MessageRecorder rec;
    frmJournalVoucher *f = m_host->open(QStringLiteral("mnuPJournalVoucher"));
    f->txtVoucherNo->setText(voucherNo);
    typeLine(f, account, amount);
    f->chkPostDatedCheque->setChecked(cheque);
    f->findChild<QPushButton *>(button)->click();
    QCOMPARE(rec.count(), 1);
    QCOMPARE(rec.last().text, message);
    QVERIFY(rec.last().isCritical());
    QCOMPARE(VoucherStaging(session().db()).lines(false).size(), 0);
}

void TestJournalVoucherScreen::unbalancedJournalRefused()
{
    startYear(QStringLiteral("sqlite"));
    MessageRecorder rec;
    frmJournalVoucher *f = m_host->open(QStringLiteral("mnuPJournalVoucher"));
    f->cmbDBCR->setCurrentText(QStringLiteral("DR"));
    typeLine(f, QStringLiteral("PAPER HOUSE"), QStringLiteral("2500"), QStringLiteral("PAPER BILL 77"));
    f->cmdNew->click();
    f->cmbDBCR->setCurrentText(QStringLiteral("CR"));
    typeLine(f, QStringLiteral("CITY BANK"), QStringLiteral("2400"), QStringLiteral("PAPER BILL 77"));
    f->cmdNew->click();
    f->cmdModifyVoucher->click();
    QCOMPARE(rec.last().text, QStringLiteral("Debit and Credit amount are not same, please check your entry"));
    ScreenKit::shoot(m_host.get(), QStringLiteral("voucher-refused"));
    QCOMPARE(gridRows(f), 2); // staging and screen as they were
    QCOMPARE(f->txtTotalDebit->text(), QStringLiteral("2,500.00"));
    QCOMPARE(session().db().scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")).toInt(), 0);

    // a line picked from the grid by keyboard and corrected balances it
    f->dgVoucher->setCurrentIndex(f->dgVoucher->model()->index(1, 5));
    QTest::keyClick(f->dgVoucher, Qt::Key_Return);
    QCOMPARE(f->cmbPartyName->currentText(), QStringLiteral("CITY BANK"));
    QCOMPARE(f->txtAmount->text(), QStringLiteral("2400"));
    f->txtAmount->setText(QStringLiteral("2500"));
    f->cmdModify->click();
    QCOMPARE(rec.last().text, QStringLiteral("Party has modified successfully"));
    f->cmdModifyVoucher->click();
    QTRY_COMPARE(rec.last().text, QStringLiteral("Voucher has saved successfully"));
    QCOMPARE(session().db().scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")).toInt(), 2);
}

void TestJournalVoucherScreen::closeQuestion()
{
    startYear(QStringLiteral("sqlite"));
    MessageRecorder rec;
    frmJournalVoucher *f = m_host->open(QStringLiteral("mnuPCashReceivedVoucher"));
    typeLine(f, QStringLiteral("CRESCENT TEXTILES"), QStringLiteral("900"));
    f->cmdNew->click();
    QCOMPARE(f->cmbDBCR->currentText(), QStringLiteral("CR"));

    rec.answerNext(false);
    f->closeScreen();
    QCOMPARE(rec.last().text, QStringLiteral("Are you sure you want to close this voucher"));
    QVERIFY(rec.last().isQuestion());
    QVERIFY(m_host->findScreen(QStringLiteral("frmJournalVoucher")));
    QCOMPARE(VoucherStaging(session().db()).lines().size(), 1);

    rec.answerNext(true);
    f->closeScreen();
    QApplication::processEvents();
    QVERIFY(!m_host->findScreen(QStringLiteral("frmJournalVoucher")));
    QCOMPARE(VoucherStaging(session().db()).lines(false).size(), 0);
}

// A clerk's voucher without the mouse: Enter moves on, the account is
// found by part of its name, the amount comes from the numeric pad.
void TestJournalVoucherScreen::wholeVoucherByKeyboard()
{
    startYear(QStringLiteral("sqlite"));
    MessageRecorder rec;
    QApplication::setActiveWindow(m_host.get());
    QVERIFY(QTest::qWaitForWindowActive(m_host.get()));
    frmJournalVoucher *f = m_host->open(QStringLiteral("mnuPCashPaidVoucher"));
    QApplication::processEvents();
    auto focused = [] { return QApplication::focusWidget(); };
    QTRY_COMPARE(focused(), static_cast<QWidget *>(f->mskDate));
    QTest::keyClick(focused(), Qt::Key_Return);
    QCOMPARE(focused(), static_cast<QWidget *>(f->cmbVoucherType));
    QTest::keyClick(focused(), Qt::Key_Return);
    QTest::keyClick(focused(), Qt::Key_Return);
    QTest::keyClick(focused(), Qt::Key_Return);
    QCOMPARE(focused(), static_cast<QWidget *>(f->cmbPartyName));

    // part of the name offers the account
    QTest::keyClicks(f->cmbPartyName, QStringLiteral("TRIC"));
    QCompleter *completer = f->cmbPartyName->completer();
    QVERIFY(completer);
    QCOMPARE(completer->completionCount(), 1);
    QCOMPARE(completer->currentCompletion(), QStringLiteral("ELECTRICITY"));
    f->cmbPartyName->setEditText(completer->currentCompletion()); // what picking it from the list does
    completer->popup()->hide();
    QCOMPARE(f->txtPartyCode->text(), QStringLiteral("21-10-001"));
    QTest::keyClick(focused(), Qt::Key_Return);
    QCOMPARE(focused(), static_cast<QWidget *>(f->txtDesc));
    QTest::keyClicks(focused(), QStringLiteral("meter 7; bill"));
    QCOMPARE(f->txtDesc->text(), QStringLiteral("METER 7 BILL")); // upper case, no separators
    QTest::keyClick(focused(), Qt::Key_Return);
    QCOMPARE(focused(), static_cast<QWidget *>(f->txtAmount));
    for (Qt::Key k : {Qt::Key_2, Qt::Key_5, Qt::Key_0, Qt::Key_Period, Qt::Key_7, Qt::Key_5})
        QTest::keyClick(focused(), k, Qt::KeypadModifier);
    QCOMPARE(f->txtAmount->text(), QStringLiteral("250.75"));
    QTest::keyClick(focused(), Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(focused(), static_cast<QWidget *>(f->cmbDBCR));
    QTest::keyClick(focused(), Qt::Key_Return);
    QCOMPARE(focused(), static_cast<QWidget *>(f->chkPostDatedCheque));
    QTest::keyClick(focused(), Qt::Key_Return);
    QCOMPARE(focused(), static_cast<QWidget *>(f->cmdNew)); // the cheque fields are skipped when not in use
    QVERIFY(rec.isEmpty());
    QTest::keyClick(focused(), Qt::Key_Return);
    QCOMPARE(rec.last().text, QStringLiteral("Party has Debited/Credited successfully"));
    QCOMPARE(focused(), static_cast<QWidget *>(f->cmbPartyName));
    QTest::keyClick(m_host->windowHandle(), Qt::Key_S, Qt::AltModifier); // the SAVE button's mnemonic
    QTRY_COMPARE(rec.last().text, QStringLiteral("Voucher has saved successfully"));
    QCOMPARE(session().db().scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")).toInt(), 2);
}

void TestJournalVoucherScreen::databaseFailureKeepsTheVoucher()
{
    startYear(QStringLiteral("sqlite"));
    MessageRecorder rec;
    frmJournalVoucher *f = m_host->open(QStringLiteral("mnuPCashReceivedVoucher"));
    typeLine(f, QStringLiteral("CRESCENT TEXTILES"), QStringLiteral("700"));
    f->cmdNew->click();
    typeLine(f, QStringLiteral("PAPER HOUSE"), QStringLiteral("50"));
    f->cmdNew->click();
    session().db().setStatementHook([](const QString &sql) {
        if (sql.startsWith(QLatin1String("DELETE FROM tblPartyBalanceEmpty")))
            throw DbError(QStringLiteral("database or disk is full"), sql);
    });
    f->cmdModifyVoucher->click();
    session().db().setStatementHook({});
    QCOMPARE(rec.last().text, QStringLiteral("database or disk is full"));
    QVERIFY(rec.last().isCritical());
    QCOMPARE(session().db().scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")).toInt(), 0);
    QCOMPARE(gridRows(f), 2);
    QCOMPARE(f->txtTotalCredit->text(), QStringLiteral("750.00"));
    f->cmdModifyVoucher->click(); // the same voucher, once the trouble has passed
    QCOMPARE(rec.last().text, QStringLiteral("Voucher has saved successfully"));
    QCOMPARE(session().db().scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")).toInt(), 3);
}

void TestJournalVoucherScreen::chequeSettledBySave()
{
    startYear(QStringLiteral("sqlite"));
    session().db().execute(QStringLiteral("INSERT INTO tblPostDatedCheque (VoucherType, VoucherNo, PartyName, PartyCode, "
                                          "Description, Status) VALUES ('PD', 12, 'CRESCENT TEXTILES', '17-10-001', "
                                          "'CHQ 5521', 'POST DATED')"));
    auto status = [] {
        return session().db().scalar(QStringLiteral("SELECT Status FROM tblPostDatedCheque")).toString().trimmed();
    };
    MessageRecorder rec;
    frmJournalVoucher *f = m_host->open(QStringLiteral("mnuBankReceivedVoucher"));
    QCOMPARE(items(f->cmbChequeDesc), QStringList{"CHQ 5521"});
    f->chkPostDatedCheque->setChecked(true);
    f->cmbChequeDesc->setEditText(QStringLiteral("CHQ 5521"));
    QCOMPARE(f->cmbCHQVoucherNo->currentText(), QStringLiteral("12")); // the number follows the description
    f->cmbDBCR->setCurrentText(QStringLiteral("CR"));
    typeLine(f, QStringLiteral("CRESCENT TEXTILES"), QStringLiteral("300"));
    f->cmdNew->click();
    QCOMPARE(status(), QStringLiteral("POST DATED")); // only a save settles it
    f->chkPostDatedCheque->setChecked(false);
    f->cmbDBCR->setCurrentText(QStringLiteral("DR"));
    typeLine(f, QStringLiteral("CITY BANK"), QStringLiteral("300"));
    f->cmdNew->click();
    f->cmdModifyVoucher->click();
    QCOMPARE(rec.last().text, QStringLiteral("Voucher has saved successfully"));
    QCOMPARE(status(), QStringLiteral("POSTED"));
}

void TestJournalVoucherScreen::modifyVoucherFromQuestionPanel()
{
    TESSEL_BACKEND()
    startYear(backend);
    MessageRecorder rec;
    frmJournalVoucher *f = m_host->open(QStringLiteral("mnuPCashPaidVoucher"));
    typeLine(f, QStringLiteral("ELECTRICITY"), QStringLiteral("100"));
    f->cmdNew->click();
    typeLine(f, QStringLiteral("TEA AND REFRESHMENT"), QStringLiteral("40"));
    f->cmdNew->click();
    f->cmdModifyVoucher->click();
    QCOMPARE(rec.last().text, QStringLiteral("Voucher has saved successfully"));
    const qint64 cashSrNo = session().db().scalar(QStringLiteral("SELECT SrNo FROM tblPartyBalance WHERE PartyCode = '19-10-001'")).toLongLong();

    f = m_host->open(QStringLiteral("mnuPModifyJournalVoucher"));
    QCOMPARE(session().voucherMode, QStringLiteral("MODIFY"));
    QCOMPARE(f->windowTitle(), QStringLiteral("MODIFY VOUCHER"));
    QVERIFY(f->frOuterVoucherNo->isVisible());
    QVERIFY(!f->frOuterVoucher->isVisible());
    QVERIFY(items(f->cmbModifyVoucherType).contains(QStringLiteral("CP")));
    ScreenKit::shoot(m_host.get(), QStringLiteral("voucher-modify-question-") + backend);

    f->cmdVoucherNoOkay->click(); // the date is checked as the button is entered
    QCOMPARE(rec.last().text, QStringLiteral("Date is missing, please enter proper date"));
    f->mskDateModifyVoucher->setDate(QDate(2026, 3, 10));
    f->cmdVoucherNoOkay->click();
    QCOMPARE(rec.last().text, QStringLiteral("Please enter voucher #, empty field doesn't show any voucher"));
    f->cmbModifyVoucherType->setCurrentText(QStringLiteral("CP"));
    f->txtShowVoucherNo->setText(QStringLiteral("9"));
    f->cmdVoucherNoOkay->click();
    QCOMPARE(rec.last().text, QStringLiteral("No voucher # found, please enter correct voucher #"));
    f->txtShowVoucherNo->setText(QStringLiteral("1"));
    f->cmdVoucherNoOkay->click();
    QVERIFY(f->frOuterVoucher->isVisible());
    QCOMPARE(gridRows(f), 2); // the cash row is not a line
    QCOMPARE(f->txtTotalDebit->text(), QStringLiteral("140.00"));
    QCOMPARE(items(f->cmbVoucherType), QStringList{"CP"});

    emit f->dgVoucher->doubleClicked(f->dgVoucher->model()->index(0, 5)); // double click on the first line
    QCOMPARE(f->cmbPartyName->currentText(), QStringLiteral("ELECTRICITY"));
    f->txtAmount->setText(QStringLiteral("125.25"));
    f->cmdModify->click();
    QCOMPARE(f->txtTotalDebit->text(), QStringLiteral("165.25"));
    f->cmdModifyVoucher->click();
    QCOMPARE(rec.last().text, QStringLiteral("Voucher has modified successfully"));
    QVERIFY(f->frOuterVoucherNo->isVisible());
    QCOMPARE(session().db().scalarMoney(QStringLiteral("SELECT PartyCR FROM tblPartyBalance WHERE SrNo = ?"), {cashSrNo}),
             std::optional<Money>(*Money::parse("165.25")));

    // and deleted
    f->cmdVoucherNoOkay->click();
    rec.answerNext(true); // delete the voucher
    rec.answerNext(true); // and close the screen
    f->cmdDeleteVoucher->click();
    QVERIFY(rec.texts().contains(QStringLiteral("Voucher has deleted successfully")));
    QCOMPARE(session().db().scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")).toInt(), 0);
}

// After a save the account's balance and the cash are the ledger's as it
// now stands, formatted with separators and their side; a voucher loaded
// for a change brings no account or description of the last one along.
void TestJournalVoucherScreen::figuresFollowTheLedger()
{
    startYear(QStringLiteral("sqlite"));
    MessageRecorder rec;
    frmJournalVoucher *f = m_host->open(QStringLiteral("mnuPCashPaidVoucher"));
    typeLine(f, QStringLiteral("ELECTRICITY"), QStringLiteral("1055824.5"), QStringLiteral("ANNUAL BILL"));
    QCOMPARE(f->txtBalance->text(), QString());
    f->cmdNew->click();
    QCOMPARE(f->txtTotalDebit->text(), QStringLiteral("1,055,824.50"));
    QCOMPARE(f->txtCCashInHand->text(), QStringLiteral("1,055,824.50 CR"));
    QCOMPARE(f->txtBalance->text(), QString()); // nothing posted yet
    f->cmdModifyVoucher->click();
    QCOMPARE(rec.last().text, QStringLiteral("Voucher has saved successfully"));
    QCOMPARE(f->cmbPartyName->currentText(), QStringLiteral("ELECTRICITY"));
    QCOMPARE(f->txtBalance->text(), QStringLiteral("1,055,824.50 DR"));
    QCOMPARE(f->txtPCashInHand->text(), QStringLiteral("1,055,824.50 CR"));
    QCOMPARE(f->txtCCashInHand->text(), QStringLiteral("1,055,824.50 CR"));
    auto *model = f->dgVoucher->model();
    QCOMPARE(model->rowCount(), 0);

    f = m_host->open(QStringLiteral("mnuPModifyJournalVoucher"));
    f->cmbModifyVoucherType->setCurrentText(QStringLiteral("CP"));
    f->txtShowVoucherNo->setText(QStringLiteral("1"));
    f->mskDateModifyVoucher->setDate(QDate(2026, 3, 10));
    f->cmdVoucherNoOkay->click();
    QVERIFY(f->frOuterVoucher->isVisible());
    QCOMPARE(f->cmbPartyName->currentText(), QString());
    QCOMPARE(f->txtDesc->text(), QString());
    QCOMPARE(f->txtPCashInHand->text(), QStringLiteral("0.00 DR")); // the cash before the voucher's day
    QCOMPARE(model->rowCount(), 1);
    QCOMPARE(model->index(0, 6).data().toString(), QStringLiteral("1055824.50"));
    auto *amounts = qobject_cast<QStyledItemDelegate *>(f->dgVoucher->itemDelegateForColumn(6));
    QVERIFY(amounts);
    QCOMPARE(amounts->displayText(model->index(0, 6).data(), QLocale()), QStringLiteral("1,055,824.50"));
}

// The window is named by its voucher type; Tab leaves the list; a refused
// save puts the focus on the field at fault; Escape closes the screen,
// asking first when lines are typed.
void TestJournalVoucherScreen::titleEscapeAndFocus()
{
    startYear(QStringLiteral("sqlite"));
    MessageRecorder rec;
    QApplication::setActiveWindow(m_host.get());
    QVERIFY(QTest::qWaitForWindowActive(m_host.get()));
    frmJournalVoucher *f = m_host->open(QStringLiteral("mnuPCashPaidVoucher"));
    QCOMPARE(f->windowTitle(), QStringLiteral("CASH PAID VOUCHER"));
    f = m_host->open(QStringLiteral("mnuBankReceivedVoucher"));
    QCOMPARE(f->windowTitle(), QStringLiteral("BANK RECEIVED VOUCHER"));
    f->cmbVoucherType->setCurrentText(QStringLiteral("JV"));
    QCOMPARE(f->windowTitle(), QStringLiteral("JOURNAL VOUCHER"));

    VoucherLine a, b;
    a.partyCode = QStringLiteral("21-10-001");
    a.debit = Money::fromUnits(10);
    b.partyCode = QStringLiteral("14-10-001");
    b.credit = Money::fromUnits(10);
    QVERIFY(VoucherPosting(session().db(), QStringLiteral("CLERK"), QDate(2026, 3, 10))
                .post({{QStringLiteral("JV"), 5, QDate(2026, 3, 9)}, {a, b}}, NumberPolicy::Typed)
                .ok);
    f->cmbDBCR->setCurrentText(QStringLiteral("DR"));
    typeLine(f, QStringLiteral("PAPER HOUSE"), QStringLiteral("100"));
    f->cmdNew->click();
    f->cmbDBCR->setCurrentText(QStringLiteral("CR"));
    typeLine(f, QStringLiteral("CITY BANK"), QStringLiteral("100"));
    f->cmdNew->click();
    f->txtVoucherNo->setText(QStringLiteral("5")); // typed, and taken
    f->txtAmount->setFocus();
    f->cmdModifyVoucher->click();
    QCOMPARE(rec.last().text, VoucherMessages::kDuplicate);
    QTRY_VERIFY(f->txtVoucherNo->hasFocus());

    f->dgVoucher->setFocus();
    QTest::keyClick(f->dgVoucher, Qt::Key_Tab);
    QVERIFY(!f->dgVoucher->hasFocus()); // on to the save button, not to the next cell

    rec.answerNext(false);
    QTest::keyClick(f->txtDesc, Qt::Key_Escape);
    QCOMPARE(rec.last().text, QStringLiteral("Are you sure you want to close this voucher"));
    QVERIFY(m_host->findScreen(QStringLiteral("frmJournalVoucher")));
    rec.answerNext(true);
    QTest::keyClick(f->txtDesc, Qt::Key_Escape);
    QApplication::processEvents();
    QVERIFY(!m_host->findScreen(QStringLiteral("frmJournalVoucher")));

    // nothing typed: Ctrl+F4 closes without a question
    f = m_host->open(QStringLiteral("mnuPJournalVoucher"));
    const int before = rec.count();
    QTest::keyClick(f->txtDesc, Qt::Key_F4, Qt::ControlModifier);
    QApplication::processEvents();
    QVERIFY(!m_host->findScreen(QStringLiteral("frmJournalVoucher")));
    QCOMPARE(rec.count(), before);
}

// A date more than a year after the working day is asked about once.
void TestJournalVoucherScreen::farDateAskedOnce()
{
    startYear(QStringLiteral("sqlite"));
    MessageRecorder rec;
    QApplication::setActiveWindow(m_host.get());
    QVERIFY(QTest::qWaitForWindowActive(m_host.get()));
    frmJournalVoucher *f = m_host->open(QStringLiteral("mnuPJournalVoucher"));
    QTRY_VERIFY(f->mskDate->hasFocus());
    f->mskDate->setDate(QDate(2072, 3, 10));
    rec.answerNext(false);
    QTest::keyClick(f->mskDate, Qt::Key_Return);
    QTRY_COMPARE(rec.count(), 1);
    QCOMPARE(rec.last().text, QStringLiteral("The date 10/03/2072 is more than a year after today, do you want to keep it?"));
    QTRY_VERIFY(f->mskDate->hasFocus());
    rec.answerNext(true);
    QTest::keyClick(f->mskDate, Qt::Key_Return);
    QTRY_COMPARE(rec.count(), 2);
    QTRY_VERIFY(!f->mskDate->hasFocus());
    f->mskDate->setFocus();
    QTest::keyClick(f->mskDate, Qt::Key_Return);
    QApplication::processEvents();
    QCOMPARE(rec.count(), 2); // the same date is not asked again
    f->mskDate->setDate(QDate(2027, 3, 10));
    f->mskDate->setFocus();
    QTest::keyClick(f->mskDate, Qt::Key_Return);
    QApplication::processEvents();
    QCOMPARE(rec.count(), 2); // a year ahead is no slip
}

// Text that matches no account stays as typed, and Escape searches by
// its words.
void TestJournalVoucherScreen::accountTypedByWords()
{
    startYear(QStringLiteral("sqlite"));
    MessageRecorder rec;
    QApplication::setActiveWindow(m_host.get());
    QVERIFY(QTest::qWaitForWindowActive(m_host.get()));
    frmJournalVoucher *f = m_host->open(QStringLiteral("mnuPJournalVoucher"));
    f->cmbPartyName->setFocus();
    QTest::keyClicks(f->cmbPartyName, QStringLiteral("HOUSE PAP"));
    QCOMPARE(f->cmbPartyName->currentText(), QStringLiteral("HOUSE PAP"));
    QTest::keyClick(f->cmbPartyName, Qt::Key_Escape);
    auto *grid = f->window()->findChild<QTableView *>(QStringLiteral("dgSearch"));
    QVERIFY(grid);
    QTRY_VERIFY(grid->isVisible());
    QCOMPARE(grid->model()->rowCount(), 1);
    QTest::keyClick(grid, Qt::Key_Return);
    QCOMPARE(f->cmbPartyName->currentText(), QStringLiteral("PAPER HOUSE"));
    QCOMPARE(f->txtPartyCode->text(), QStringLiteral("14-10-001"));
    QVERIFY(rec.isEmpty());
}

// A user who prefers it sees line confirmations in the status bar; a
// refusal is still a box.
void TestJournalVoucherScreen::lineConfirmationsInStatusBar()
{
    startYear(QStringLiteral("sqlite"));
    MessageRecorder rec;
    session().lineConfirmationsInStatusBar = true;
    frmJournalVoucher *f = m_host->open(QStringLiteral("mnuPCashPaidVoucher"));
    typeLine(f, QStringLiteral("ELECTRICITY"), QStringLiteral("10"));
    f->cmdNew->click();
    const QString shown = m_host->statusBar()->currentMessage();
    typeLine(f, QStringLiteral("ELECTRICITY"), QString());
    f->cmdNew->click();
    session().lineConfirmationsInStatusBar = false;
    QCOMPARE(shown, QStringLiteral("Party has Debited/Credited successfully"));
    QCOMPARE(rec.texts(), QStringList{QStringLiteral("Amount is missing, please enter amount")});
}

QTEST_MAIN(TestJournalVoucherScreen)
#include "tst_journalvoucherscreen.moc"
