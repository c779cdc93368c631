// The closing stock screen driven through its controls, headless: the
// balance and the adjustment as the count is typed, the save and its
// rows, a second save under the same number, change and removal from the
// list.
#include "foundation/Session.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "support/ui/ScreenKit.h"
#include "support/ui/ScreenTest.h"

#include "stock/ui/frmClosingStock.h"
#include "vouchers/Ledger.h"
#include "vouchers/LedgerWriter.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QtTest>

void registerStockMenu(MenuRouter &router);

namespace {

struct Screen
{
    explicit Screen(const QString &backend) : t(backend)
    {
        t.db().execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {QDate(2025, 12, 31)});
        t.addAccounts({{"20-11-001", "PAPER PURCHASES"}, {"20-12-000", "STOCK"}, {"20-12-001", "CLOSING STOCK"},
                       {"21-10-001", "ELECTRICITY"}});
        // The stock account stands at 5,000.00 DR.
        Transaction tx(t.db());
        LedgerWriter(t.db(), QStringLiteral("CLERK"), QDate(2026, 3, 1))
            .insert(LedgerRow::debit({QStringLiteral("JV"), 1, QDate(2026, 3, 1)}, QStringLiteral("20-12-001"),
                                     QStringLiteral("CLOSING STOCK"), Money::fromUnits(5000)));
        tx.commit();
        registerStockMenu(host.router);
        ScreenKit::showActive(&host, QSize(1280, 820));
    }
    frmClosingStock *open(const QString &entry)
    {
        return host.open<frmClosingStock>(entry, QStringLiteral("frmClosingStock"));
    }
    ScreenTest t;
    MenuHost host;
};

void typeVoucher(frmClosingStock *f, const QString &count)
{
    f->mskDate->setMaskText(QStringLiteral("30/06/2026"));
    Q_EMIT f->mskDate->editingFinished();
    f->cmbPurchaseName->setEditText(QStringLiteral("CLOSING STOCK"));
    f->cmbPartyName->setEditText(QStringLiteral("PAPER PURCHASES"));
    f->txtClosingValue->setText(count);
    Q_EMIT f->txtClosingValue->editingFinished();
}

QStringList rows(SessionConnection &db)
{
    QStringList out;
    for (const Row &r : db.select(QStringLiteral("SELECT VoucherNo, PartyCode, PartyDR, PartyCR, PartyDesc FROM "
                                                 "tblPartyBalance WHERE VoucherType = 'CS' ORDER BY SrNo")))
        out << QStringLiteral("%1 %2 %3 %4 %5")
                   .arg(r.integer(0))
                   .arg(r.text(1).trimmed(), r.moneyOrZero(QStringLiteral("PartyDR")).toPlainString(),
                        r.moneyOrZero(QStringLiteral("PartyCR")).toPlainString(), r.text(4).trimmed());
    return out;
}

} // namespace

class TestClosingStockScreen : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void enterFromMenu_data() { TestDb::addBackends(); }
    void enterFromMenu();
    void refusals_data();
    void refusals();
    void changeAndRemoveFromList();
};

void TestClosingStockScreen::enterFromMenu()
{
    TESSEL_BACKEND()
    Screen s(backend);
    frmClosingStock *f = s.open(QStringLiteral("mnuEnterClosingStock"));
    QVERIFY(f);
    QCOMPARE(f->title(), QStringLiteral("CLOSING STOCK"));
    QVERIFY(f->cmdSave->isVisible());
    QVERIFY(!f->cmdModify->isVisible() && !f->cmdDelete->isVisible());
    QCOMPARE(f->cmbVoucherType->currentText(), QStringLiteral("CS"));
    QCOMPARE(f->txtVoucherNo->text(), QStringLiteral("1"));
    QCOMPARE(f->txtDesc->text(), QStringLiteral("CLOSING STOCK"));
    typeVoucher(f, QStringLiteral("3000"));
    QCOMPARE(f->mskPurchaseCode->text(), QStringLiteral("20-12-001"));
    QCOMPARE(f->txtBalance->text(), QStringLiteral("5,000.00 DR"));
    QCOMPARE(f->txtAdjustmentValue->text(), QStringLiteral("2,000.00"));
    QCOMPARE(f->txtDrCr->text(), QStringLiteral("CR"));
    f->cmdSave->click();
    QCOMPARE(s.t.rec.last().text, QStringLiteral("Closing stock value has been updated successfully."));
    QVERIFY(s.t.rec.last().isInformation());
    QCOMPARE(rows(s.t.db()), QStringList({"1 20-12-001 0.00 2000.00 CLOSING STOCK",
                                          "1 20-11-001 2000.00 0.00 ADJUSTMENT CLOSING STOCK"}));
    QCOMPARE(f->dg->model()->rowCount(), 1);
    QCOMPARE(f->txtVoucherNo->text(), QStringLiteral("2"));
    QCOMPARE(f->txtBalance->text(), QStringLiteral("3,000.00 DR"));
    ScreenKit::shoot(&s.host, QStringLiteral("closing-stock-") + backend);

    // Number 1 typed again: refused, the rows stay one set.
    f->txtVoucherNo->setText(QStringLiteral("1"));
    f->cmdSave->click();
    QCOMPARE(s.t.rec.last().text,
             QStringLiteral("Voucher # already exist, duplication is not allowed, please change the voucher #."));
    QCOMPARE(rows(s.t.db()).size(), 2);
}

void TestClosingStockScreen::refusals_data()
{
    QTest::addColumn<QString>("change");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("focus");
    QTest::newRow("same accounts") << "same"
                                   << "Purchase A/C and Party A/C can not be same. Please change atleast one A/C."
                                   << "cmbPartyName";
    QTest::newRow("no voucher #") << "novoucher" << "Voucher # is missing, please enter voucher #." << "txtVoucherNo";
    QTest::newRow("wrong date") << "baddate" << "Wrong date, please enter correct date" << "mskDate";
    QTest::newRow("closed date") << "closed" << "Sorry, you enter wrong date because data has closed at this date"
                                 << "mskDate";
}

void TestClosingStockScreen::refusals()
{
    QFETCH(QString, change);
    QFETCH(QString, message);
    QFETCH(QString, focus);
    Screen s(QStringLiteral("sqlite"));
    frmClosingStock *f = s.open(QStringLiteral("mnuEnterClosingStock"));
    typeVoucher(f, QStringLiteral("100"));
    if (change == QLatin1String("same"))
        f->cmbPartyName->setEditText(QStringLiteral("CLOSING STOCK"));
    else if (change == QLatin1String("novoucher"))
        f->txtVoucherNo->clear();
    else if (change == QLatin1String("baddate"))
        f->mskDate->setMaskText(QStringLiteral("31/04/2026"));
    else if (change == QLatin1String("closed"))
        f->mskDate->setMaskText(QStringLiteral("01/12/2025"));
    f->cmdSave->click();
    QCOMPARE(s.t.rec.last().text, message);
    QVERIFY(s.t.rec.last().isCritical());
    QCOMPARE(QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : QString(), focus);
    QVERIFY(rows(s.t.db()).isEmpty());
}

void TestClosingStockScreen::changeAndRemoveFromList()
{
    Screen s(QStringLiteral("sqlite"));
    frmClosingStock *f = s.open(QStringLiteral("mnuEnterClosingStock"));
    typeVoucher(f, QStringLiteral("3000"));
    f->cmdSave->click();

    f = s.open(QStringLiteral("mnuModifyClosingStock"));
    QVERIFY(f->cmdModify->isVisible() && !f->cmdSave->isVisible());
    f->mskDate->setMaskText(QStringLiteral("30/06/2026"));
    Q_EMIT f->mskDate->editingFinished();
    QCOMPARE(f->dg->model()->rowCount(), 1);
    f->loadVoucher(0);
    QCOMPARE(f->txtVoucherNo->text(), QStringLiteral("1"));
    QCOMPARE(f->cmbPurchaseName->currentText(), QStringLiteral("CLOSING STOCK"));
    QCOMPARE(f->cmbPartyName->currentText(), QStringLiteral("PAPER PURCHASES"));
    // The balance leaves the voucher's own rows out: it is what it adjusts.
    QCOMPARE(f->txtBalance->text(), QStringLiteral("5,000.00 DR"));
    QCOMPARE(f->txtClosingValue->text(), QStringLiteral("3000"));
    f->txtClosingValue->setText(QStringLiteral("6500.50"));
    Q_EMIT f->txtClosingValue->editingFinished();
    QCOMPARE(f->txtAdjustmentValue->text(), QStringLiteral("1,500.50"));
    QCOMPARE(f->txtDrCr->text(), QStringLiteral("DR"));
    f->cmdModify->click();
    QCOMPARE(s.t.rec.last().text, QStringLiteral("Closing stock value has been updated successfully."));
    QCOMPARE(rows(s.t.db()), QStringList({"1 20-12-001 1500.50 0.00 CLOSING STOCK",
                                          "1 20-11-001 0.00 1500.50 ADJUSTMENT CLOSING STOCK"}));
    QCOMPARE(*Ledger::accountBalance(s.t.db(), QStringLiteral("20-12-001")), *Money::parse("6500.50"));

    f = s.open(QStringLiteral("mnuDeleteClosingStock"));
    QVERIFY(f->cmdDelete->isVisible() && !f->cmdModify->isVisible());
    f->mskDate->setMaskText(QStringLiteral("30/06/2026"));
    Q_EMIT f->mskDate->editingFinished();
    f->loadVoucher(0);
    f->cmdDelete->click();
    QCOMPARE(s.t.rec.last().text, QStringLiteral("Closing stock value has been updated successfully."));
    QVERIFY(rows(s.t.db()).isEmpty());
    QCOMPARE(f->dg->model()->rowCount(), 0);
}

QTEST_MAIN(TestClosingStockScreen)
#include "tst_closingstockscreen.moc"
