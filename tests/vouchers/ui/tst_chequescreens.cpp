// The cheque screens and the due list driven through their controls,
// headless: entry, change and delete by number; deposit through the
// voucher screen, abandoned and saved; bounce after the question.
#include "foundation/Session.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MenuRouter.h"
#include "support/TestDb.h"
#include "support/ui/MessageRecorder.h"
#include "support/ui/ScreenKit.h"
#include "support/ui/ScreenTest.h"
#include "vouchers/PostDatedCheque.h"
#include "vouchers/ui/frmChequeDueList.h"
#include "vouchers/ui/frmJournalVoucher.h"
#include "vouchers/ui/frmPostDatedCheque.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QtTest>

namespace {

const QDate kToday(2026, 3, 10);

class Host : public MenuHost
{
public:
    Host() { registerVouchersMenu(router); }
};

void prepare(ScreenTest &t)
{
    t.addAccounts({{"17-10-001", "CRESCENT TEXTILES"}, {"14-10-001", "PAPER HOUSE"}, {"19-20-001", "CITY BANK"},
                   {"19-20-002", "UNION BANK"}});
    t.db().execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {QDate(2026, 2, 28)});
}

void typeCheque(frmPostDatedCheque *f, const QString &chequeNo, const QString &amount,
                const QString &chequeDate = QStringLiteral("25/03/2026"))
{
    f->cmbPartyName->setEditText(QStringLiteral("CRESCENT TEXTILES"));
    f->mskDate->setMaskText(QStringLiteral("09/03/2026"));
    f->mskChequeDate->setMaskText(chequeDate);
    f->txtChequeNo->setText(chequeNo);
    f->txtDesc->setText(QStringLiteral("AGAINST BILL 17"));
    f->txtAmount->setText(amount);
    f->cmbBankName->setEditText(QStringLiteral("CITY BANK"));
}

QString statusOf(SessionConnection &db, qint64 no)
{
    return db.scalar(QStringLiteral("SELECT Status FROM tblPostDatedCheque WHERE VoucherNo = ?"), {no})
        .toString()
        .trimmed();
}

void saveCheque(SessionConnection &db, const QString &chequeNo, const QString &bank, const QString &bankName,
                int daysAhead, const QString &amount)
{
    PostDatedCheques rules(db, QStringLiteral("CLERK"), kToday);
    PostDatedChequeEntry c;
    c.voucherNo = rules.nextNumber();
    c.partyCode = QStringLiteral("17-10-001");
    c.partyName = QStringLiteral("CRESCENT TEXTILES");
    c.vDate = kToday.addDays(-1);
    c.chequeDate = kToday.addDays(daysAhead);
    c.chequeNo = chequeNo;
    c.description = QStringLiteral("CHQ ") + chequeNo;
    c.amount = *Money::parse(amount);
    c.bankCode = bank;
    c.bankName = bankName;
    QVERIFY(rules.save(c).ok);
}

QString cellText(QTableView *g, int row, int column) { return g->model()->index(row, column).data().toString(); }

} // namespace

class TestChequeScreens : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void enterChangeDelete_data() { TestDb::addBackends(); }
    void enterChangeDelete();
    void refusalsOnSave_data();
    void refusalsOnSave();
    void dueListDepositAndBounce_data() { TestDb::addBackends(); }
    void dueListDepositAndBounce();
};

void TestChequeScreens::enterChangeDelete()
{
    TESSEL_BACKEND()
    ScreenTest t(backend, kToday);
    prepare(t);
    Host host;
    host.show();
    auto *f = host.open<frmPostDatedCheque>(QStringLiteral("mnuPostDatedCheque"), QStringLiteral("frmPostDatedCheque"));
    QVERIFY(f);
    QCOMPARE(f->title(), QStringLiteral("POST DATED CHEQUE"));
    QCOMPARE(f->txtVoucherType->text(), QStringLiteral("PD"));
    QCOMPARE(f->txtVoucherNo->text(), QStringLiteral("1"));
    QCOMPARE(f->mskDate->maskText(), QStringLiteral("10/03/2026"));
    QVERIFY(!f->cmdModify->isVisible());
    QVERIFY(ScreenKit::items(f->cmbBankName).contains(QStringLiteral("CITY BANK")));
    QVERIFY(!ScreenKit::items(f->cmbBankName).contains(QStringLiteral("CASH IN HAND")));

    typeCheque(f, QStringLiteral("100234"), QStringLiteral("125000.50"));
    QCOMPARE(f->mskBankCode->maskText(), QStringLiteral("19-20-001"));
    ScreenKit::shoot(&host, QStringLiteral("cheque-entry-") + backend);
    ScreenKit::click(f->cmdSave);
    QCOMPARE(t.rec.last().text, QStringLiteral("Post dated cheque has saved successfully."));
    QCOMPARE(f->txtAmount->text(), QStringLiteral("0"));
    QCOMPARE(f->txtDesc->text(), QString());
    QCOMPARE(f->txtVoucherNo->text(), QStringLiteral("2"));
    QCOMPARE(f->cmbPartyName->currentText(), QStringLiteral("CRESCENT TEXTILES")); // stays for the next cheque
    QCOMPARE(statusOf(t.db(), 1), QStringLiteral("POST DATED"));

    // The same cheque number at the same bank is refused.
    typeCheque(f, QStringLiteral("100234"), QStringLiteral("10"));
    ScreenKit::click(f->cmdSave);
    QCOMPARE(t.rec.last().text, ChequeMessages::kDuplicateCheque);
    QCOMPARE(TestDb::count(t.db(), QStringLiteral("SELECT COUNT(*) FROM tblPostDatedCheque")), 1);

    auto *m = host.open<frmModifyPostDatedCheque>(QStringLiteral("mnuModifyPostDatedCheque"),
                                                  QStringLiteral("frmModifyPostDatedCheque"));
    QVERIFY(m);
    QCOMPARE(m->title(), QStringLiteral("MODIFY POST DATED CHEQUE"));
    QVERIFY(m->cmdModify->isVisible());
    QVERIFY(!m->cmdSave->isVisible());
    m->txtVoucherNo->setText(QStringLiteral("9"));
    emit m->txtVoucherNo->editingFinished();
    QCOMPARE(t.rec.last().text, QStringLiteral("Voucher # not found, please enter another."));
    QCOMPARE(m->mskChequeDate->maskText(), QStringLiteral("__/__/____"));
    m->txtVoucherNo->setText(QStringLiteral("1"));
    emit m->txtVoucherNo->editingFinished();
    QCOMPARE(m->mskPartyCode->maskText(), QStringLiteral("17-10-001"));
    QCOMPARE(m->mskChequeDate->maskText(), QStringLiteral("25/03/2026"));
    QCOMPARE(m->txtAmount->text(), QStringLiteral("125000.5"));
    QCOMPARE(m->cmbStatus->currentText(), QStringLiteral("POST DATED"));
    m->txtAmount->setFocus(); // leaving the number loads it once more
    QCOMPARE(m->txtAmount->text(), QStringLiteral("125000.5"));
    m->txtAmount->setText(QStringLiteral("120000"));
    m->cmbBankName->setEditText(QStringLiteral("UNION BANK"));
    ScreenKit::click(m->cmdModify);
    QCOMPARE(t.rec.last().text, QStringLiteral("Post dated cheque has modified successfully."));
    QCOMPARE(t.db().scalar(QStringLiteral("SELECT BankCode FROM tblPostDatedCheque")).toString().trimmed(),
             QStringLiteral("19-20-002"));
    QCOMPARE(m->txtAmount->text(), QStringLiteral("0"));

    m->txtVoucherNo->setText(QStringLiteral("77"));
    ScreenKit::click(m->cmdDelete);
    QCOMPARE(t.rec.last().text, ChequeMessages::kNothingDeleted);
    QVERIFY(t.rec.last().isCritical());
    m->txtVoucherNo->setText(QStringLiteral("1"));
    ScreenKit::click(m->cmdDelete);
    QCOMPARE(t.rec.last().text, QStringLiteral("Post dated cheque has deleted successfully."));
    QCOMPARE(TestDb::count(t.db(), QStringLiteral("SELECT COUNT(*) FROM tblPostDatedCheque")), 0);
}

void TestChequeScreens::refusalsOnSave_data()
{
    QTest::addColumn<QString>("party");
    QTest::addColumn<QString>("date");
    QTest::addColumn<QString>("chequeDate");
    QTest::addColumn<QString>("bank");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("focus");
    const QString party = QStringLiteral("Party name not found, please enter correct party name");
    const QString closed = QStringLiteral("Sorry, you enter wrong date because data has closed at this date");
    QTest::newRow("party") << "NOBODY" << "09/03/2026" << "25/03/2026" << "CITY BANK" << party << "cmbPartyName";
    QTest::newRow("wrong date") << "CRESCENT TEXTILES" << "31/02/2026" << "25/03/2026" << "CITY BANK"
                                << "Wrong date, please enter correct date" << "mskDate";
    QTest::newRow("closed cheque date") << "CRESCENT TEXTILES" << "09/03/2026" << "28/02/2026" << "CITY BANK"
                                        << closed << "mskChequeDate";
    QTest::newRow("bank") << "CRESCENT TEXTILES" << "09/03/2026" << "25/03/2026" << "NO BANK" << party
                          << "cmbBankName";
}

void TestChequeScreens::refusalsOnSave()
{
    QFETCH(QString, party);
    QFETCH(QString, date);
    QFETCH(QString, chequeDate);
    QFETCH(QString, bank);
    QFETCH(QString, message);
    QFETCH(QString, focus);
    ScreenTest t(QStringLiteral("sqlite"), kToday);
    prepare(t);
    Host host;
    host.show();
    QVERIFY(QTest::qWaitForWindowActive(&host));
    auto *f = host.open<frmPostDatedCheque>(QStringLiteral("mnuPostDatedCheque"), QStringLiteral("frmPostDatedCheque"));
    typeCheque(f, QStringLiteral("5"), QStringLiteral("10"), chequeDate);
    f->cmbPartyName->setEditText(party);
    f->mskDate->setMaskText(date);
    f->cmbBankName->setEditText(bank);
    ScreenKit::click(f->cmdSave);
    QCOMPARE(t.rec.last().text, message);
    QVERIFY(t.rec.last().isCritical());
    QCOMPARE(QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : QString(), focus);
    QCOMPARE(TestDb::count(t.db(), QStringLiteral("SELECT COUNT(*) FROM tblPostDatedCheque")), 0);
}

void TestChequeScreens::dueListDepositAndBounce()
{
    TESSEL_BACKEND()
    ScreenTest t(backend, kToday);
    prepare(t);
    saveCheque(t.db(), QStringLiteral("501"), QStringLiteral("19-20-001"), QStringLiteral("CITY BANK"), -2, "5000");
    saveCheque(t.db(), QStringLiteral("502"), QStringLiteral("19-20-002"), QStringLiteral("UNION BANK"), 0, "750.25");
    saveCheque(t.db(), QStringLiteral("503"), QStringLiteral("19-20-001"), QStringLiteral("CITY BANK"), 14, "1200");
    Host host;
    host.show();
    auto *f = host.open<frmPostDatedCheque>(QStringLiteral("mnuPostDatedCheque"), QStringLiteral("frmPostDatedCheque"));
    ScreenKit::click(f->cmdDueList);
    auto *d = qobject_cast<frmChequeDueList *>(host.findScreen(QStringLiteral("frmChequeDueList")));
    QVERIFY(d);
    QCOMPARE(d->dgCheques->model()->rowCount(), 3);
    QCOMPARE(cellText(d->dgCheques, 0, 2), QStringLiteral("2 DAYS OVERDUE"));
    QCOMPARE(cellText(d->dgCheques, 1, 2), QStringLiteral("DUE TODAY"));
    QCOMPARE(cellText(d->dgCheques, 2, 2), QStringLiteral("14 DAYS LEFT"));
    QCOMPARE(cellText(d->dgBankTotals, 0, 0), QStringLiteral("CITY BANK"));
    QCOMPARE(cellText(d->dgBankTotals, 0, 2), QStringLiteral("6,200.00"));
    QCOMPARE(cellText(d->dgBankTotals, 2, 2), QStringLiteral("6,950.25"));
    ScreenKit::shoot(&host, QStringLiteral("cheque-due-list-") + backend);

    // A post-dated cheque can not bounce.
    d->chooseCheque(1);
    ScreenKit::click(d->cmdBounce);
    QCOMPARE(t.rec.last().text, ChequeMessages::kAskBounce);
    t.rec.answerNext(true);
    ScreenKit::click(d->cmdBounce);
    QCOMPARE(t.rec.last().text, ChequeMessages::kNotPosted);

    // Deposit, abandoned: the voucher screen closes and the cheque stays open.
    ScreenKit::click(d->cmdDeposit);
    auto *v = qobject_cast<frmJournalVoucher *>(host.findScreen(QStringLiteral("frmJournalVoucher")));
    QVERIFY(v);
    QCOMPARE(v->cmbVoucherType->currentText(), QStringLiteral("BR"));
    QCOMPARE(v->txtTotalDebit->text(), QStringLiteral("5,000.00"));
    QCOMPARE(v->txtTotalCredit->text(), QStringLiteral("5,000.00"));
    QCOMPARE(v->dgVoucher->model()->rowCount(), 2);
    ScreenKit::shoot(&host, QStringLiteral("cheque-deposit-voucher-") + backend);
    t.rec.answerNext(true);
    v->closeScreen();
    QTRY_VERIFY(!host.findScreen(QStringLiteral("frmJournalVoucher")));
    QCOMPARE(statusOf(t.db(), 1), QStringLiteral("POST DATED"));

    // Deposit, saved: POSTED, and the ledger has the bank voucher.
    d->chooseCheque(1);
    ScreenKit::click(d->cmdDeposit);
    v = qobject_cast<frmJournalVoucher *>(host.findScreen(QStringLiteral("frmJournalVoucher")));
    QVERIFY(v);
    ScreenKit::click(v->cmdModifyVoucher);
    QCOMPARE(t.rec.last().text, QStringLiteral("Voucher has saved successfully"));
    QCOMPARE(statusOf(t.db(), 1), QStringLiteral("POSTED"));
    QCOMPARE(*t.db().scalarMoney(QStringLiteral("SELECT SUM(PartyBalance) FROM tblPartyBalance WHERE PartyCode = ?"),
                                 {QStringLiteral("19-20-001")}),
             Money::fromUnits(5000));

    // Bounce, refused at the question, then done.
    d->refresh();
    d->chooseCheque(1);
    QCOMPARE(cellText(d->dgCheques, 0, 8), QStringLiteral("POSTED"));
    ScreenKit::click(d->cmdDeposit);
    QCOMPARE(t.rec.last().text, ChequeMessages::kNotOpen);
    ScreenKit::click(d->cmdBounce);
    QCOMPARE(statusOf(t.db(), 1), QStringLiteral("POSTED"));
    t.rec.answerNext(true);
    ScreenKit::click(d->cmdBounce);
    QCOMPARE(t.rec.last().text, ChequeMessages::kBounced);
    QCOMPARE(statusOf(t.db(), 1), QStringLiteral("BOUNCED"));
    QCOMPARE(d->dgCheques->model()->rowCount(), 2); // a bounced cheque leaves the list
    QCOMPARE(*t.db().scalarMoney(QStringLiteral("SELECT SUM(PartyBalance) FROM tblPartyBalance WHERE PartyCode = ?"),
                                 {QStringLiteral("19-20-001")}),
             Money());
}

QTEST_MAIN(TestChequeScreens)
#include "tst_chequescreens.moc"
