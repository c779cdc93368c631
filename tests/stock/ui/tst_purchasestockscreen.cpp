// The purchase stock screen driven through its controls, headless: a bill
// entered from the menu to its ledger rows, the refusals, a line changed
// and removed from the list, and a database failure that keeps the screen.
#include "foundation/Session.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/QueryTableModel.h"
#include "support/ui/ScreenKit.h"
#include "support/ui/ScreenTest.h"

#include "stock/PurchaseStockPosting.h"
#include "stock/ui/frmPurchaseStock.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QtTest>

void registerStockMenu(MenuRouter &router);

namespace {

const QList<QPair<QString, QString>> kAccounts = {{"14-10-001", "PAPER HOUSE"},
                                                  {"14-10-002", "INK TRADERS"},
                                                  {"20-11-000", "PURCHASES"},
                                                  {"20-11-001", "PAPER PURCHASES"},
                                                  {"20-11-002", "INK PURCHASES"},
                                                  {"21-10-001", "ELECTRICITY"}};

struct Screen
{
    explicit Screen(const QString &backend) : t(backend)
    {
        t.db().execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {QDate(2025, 12, 31)});
        t.addAccounts(kAccounts);
        registerStockMenu(host.router);
        ScreenKit::showActive(&host, QSize(1280, 820));
    }
    frmStock *open(const QString &entry) { return host.open<frmStock>(entry, QStringLiteral("frmStock")); }
    ScreenTest t;
    MenuHost host;
};

void typeHeader(frmStock *f, const QString &bill, const QString &party, const QString &purchase)
{
    f->txtBillNo->setText(bill);
    f->mskDate->setMaskText(QStringLiteral("09/03/2026"));
    f->cmbPartyName->setEditText(party);
    f->cmbPurchaseName->setEditText(purchase);
}

void typeLine(frmStock *f, const QString &desc, const QString &qty, const QString &rate)
{
    f->txtItemDesc->setText(desc);
    f->txtWeight->setText(QStringLiteral("70X100"));
    f->txtQuantity->setText(qty);
    f->txtUnitType->setText(QStringLiteral("REAM"));
    f->txtUnitRate->setText(rate);
}

QStringList ledger(SessionConnection &db)
{
    QStringList out;
    for (const Row &r : db.select(QStringLiteral("SELECT VoucherNo, PartyCode, PartyDR, PartyCR, InvoiceNo FROM "
                                                 "tblPartyBalance WHERE VoucherType = 'PS' ORDER BY SrNo")))
        out << QStringLiteral("%1 %2 %3 %4 %5")
                   .arg(r.integer(0))
                   .arg(r.text(1).trimmed(), r.moneyOrZero(QStringLiteral("PartyDR")).toPlainString(),
                        r.moneyOrZero(QStringLiteral("PartyCR")).toPlainString(), r.text(4).trimmed());
    return out;
}

int gridRows(frmStock *f) { return f->dg->model()->rowCount(); }

} // namespace

class TestPurchaseStockScreen : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void enterBillFromMenu_data() { TestDb::addBackends(); }
    void enterBillFromMenu();
    void refusals_data();
    void refusals();
    void changeAndRemoveFromList();
    void failureKeepsTheScreen();
};

void TestPurchaseStockScreen::enterBillFromMenu()
{
    TESSEL_BACKEND()
    Screen s(backend);
    frmStock *f = s.open(QStringLiteral("mnuSEnterStock"));
    QVERIFY(f);
    QCOMPARE(f->title(), QStringLiteral("PURCHASE STOCK"));
    QVERIFY(f->cmdSave->isVisible());
    QVERIFY(!f->cmdModify->isVisible());
    QVERIFY(!f->cmdDelete->isVisible());
    QCOMPARE(f->cmbVoucherType->currentText(), QStringLiteral("PS"));
    QCOMPARE(f->txtVoucherNo->text(), QStringLiteral("1"));
    QCOMPARE(f->txtRecordNo->text(), QStringLiteral("1"));
    QCOMPARE(f->mskDate->maskText(), QStringLiteral("10/03/2026"));
    // Only the accounts of the purchase range are offered, the first one ready.
    QCOMPARE(ScreenKit::items(f->cmbPurchaseName),
             QStringList({"PROFIT AND LOSS ACCOUNT", "OTHER SERVICES INCOM", "INVOICE BALANCE", "PAPER PURCHASES",
                          "INK PURCHASES"}));
    QCOMPARE(f->cmbPurchaseName->currentText(), QStringLiteral("PROFIT AND LOSS ACCOUNT"));

    typeHeader(f, QStringLiteral("PH-1021"), QStringLiteral("PAPER HOUSE"), QStringLiteral("PAPER PURCHASES"));
    QCOMPARE(f->mskPartyCode->text(), QStringLiteral("14-10-001"));
    QCOMPARE(f->mskPurchaseCode->text(), QStringLiteral("20-11-001"));
    f->txtFreight->setText(QStringLiteral("250"));
    f->txtSaleTax->setText(QStringLiteral("17.5"));
    typeLine(f, QStringLiteral("ART CARD 300G"), QStringLiteral("10"), QStringLiteral("1250.50"));
    f->cmdSave->click();
    QCOMPARE(s.t.rec.last().text, QStringLiteral("Purchase stock has been saved successfully."));
    QVERIFY(s.t.rec.last().isInformation());
    QCOMPARE(f->txtQuantity->text(), QStringLiteral("0"));
    QCOMPARE(f->txtRecordNo->text(), QStringLiteral("2"));
    QCOMPARE(f->txtTotal->text(), QStringLiteral("12505"));
    typeLine(f, QStringLiteral("OFFSET 80G"), QStringLiteral("2.5"), QStringLiteral("401"));
    f->cmdSave->click();
    QCOMPARE(s.t.rec.count(), 2);
    QCOMPARE(gridRows(f), 2);
    // 12505 + 1002 = 13507; 17.5 % = 2363.725 -> 2364; with freight 250.
    QCOMPARE(f->txtTotal->text(), QStringLiteral("13507"));
    QCOMPARE(f->txtSaleTaxAmount->text(), QStringLiteral("2364"));
    QCOMPARE(f->txtNetAmount->text(), QStringLiteral("16121"));
    QCOMPARE(ledger(s.t.db()), QStringList({"1 14-10-001 0.00 15871.00 PH-1021", "1 14-10-001 0.00 250.00 PH-1021",
                                            "1 20-11-001 16121.00 0.00 PH-1021"}));
    ScreenKit::shoot(&s.host, QStringLiteral("purchase-stock-") + backend);

    // A new voucher starts afresh under the next number.
    f->cmdNewVoucher->click();
    QCOMPARE(f->txtVoucherNo->text(), QStringLiteral("2"));
    QCOMPARE(f->txtBillNo->text(), QString());
    QCOMPARE(f->cmbPartyName->currentText(), QString());
    typeHeader(f, QStringLiteral("IT-7"), QStringLiteral("INK TRADERS"), QStringLiteral("INK PURCHASES"));
    f->txtFreight->setText(QStringLiteral("0"));
    f->txtSaleTax->setText(QStringLiteral("0"));
    typeLine(f, QStringLiteral("PROCESS CYAN"), QStringLiteral("4"), QStringLiteral("900"));
    f->cmdSave->click();
    QCOMPARE(s.t.rec.last().text, QStringLiteral("Purchase stock has been saved successfully."));
    QCOMPARE(ledger(s.t.db()).mid(3), QStringList({"2 14-10-002 0.00 3600.00 IT-7", "2 20-11-002 3600.00 0.00 IT-7"}));
}

void TestPurchaseStockScreen::refusals_data()
{
    QTest::addColumn<QString>("change");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("focus");
    QTest::newRow("same accounts") << "same" << "Purchase A/C and Party A/C can not be same. Please change atleast one A/C."
                                   << "cmbPartyName";
    QTest::newRow("no bill") << "nobill" << "Bill # is missing, please enter bill #." << "txtBillNo";
    QTest::newRow("no date") << "nodate" << "Date is missing, please enter proper date" << "mskDate";
    QTest::newRow("unknown party") << "party" << "Party name not found, please enter correct party name"
                                   << "cmbPartyName";
    QTest::newRow("zero quantity") << "qty" << "Quantity must be greater than 0, please enter again" << "txtQuantity";
    QTest::newRow("closed period") << "closed" << "Sorry, you enter wrong date because data has closed at this date"
                                   << "mskDate";
}

void TestPurchaseStockScreen::refusals()
{
    QFETCH(QString, change);
    QFETCH(QString, message);
    QFETCH(QString, focus);
    Screen s(QStringLiteral("sqlite"));
    frmStock *f = s.open(QStringLiteral("mnuSEnterStock"));
    typeHeader(f, QStringLiteral("PH-1"), QStringLiteral("PAPER HOUSE"), QStringLiteral("PAPER PURCHASES"));
    typeLine(f, QStringLiteral("ART CARD"), QStringLiteral("1"), QStringLiteral("10"));
    if (change == QLatin1String("same"))
        f->cmbPurchaseName->setEditText(QStringLiteral("PAPER HOUSE"));
    else if (change == QLatin1String("nobill"))
        f->txtBillNo->clear();
    else if (change == QLatin1String("nodate"))
        f->mskDate->setMaskText(QStringLiteral("__/__/____"));
    else if (change == QLatin1String("party"))
        f->cmbPartyName->setEditText(QStringLiteral("NOBODY"));
    else if (change == QLatin1String("qty"))
        f->txtQuantity->setText(QStringLiteral("0"));
    else if (change == QLatin1String("closed"))
        f->mskDate->setMaskText(QStringLiteral("31/12/2025"));
    f->cmdSave->click();
    QCOMPARE(s.t.rec.count(), 1);
    QCOMPARE(s.t.rec.last().text, message);
    QVERIFY(s.t.rec.last().isCritical());
    QCOMPARE(QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : QString(), focus);
    QCOMPARE(TestDb::count(s.t.db(), QStringLiteral("SELECT COUNT(*) FROM tblPurchaseStock")), 0);
    QCOMPARE(TestDb::count(s.t.db(), QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")), 0);
}

void TestPurchaseStockScreen::changeAndRemoveFromList()
{
    Screen s(QStringLiteral("sqlite"));
    PurchaseStock::Header h;
    h.voucherNo = 1;
    h.billNo = QStringLiteral("PH-9");
    h.date = QDate(2026, 3, 9);
    h.partyName = QStringLiteral("PAPER HOUSE");
    h.purchaseName = QStringLiteral("PAPER PURCHASES");
    h.freight = Money::fromUnits(100);
    PurchaseStockPosting posting(s.t.db(), QStringLiteral("CLERK"), QDate(2026, 3, 10));
    for (const char *qty : {"10", "20"}) {
        PurchaseStock::Line l;
        l.itemDesc = QStringLiteral("BOARD");
        l.quantity = QString::fromLatin1(qty);
        l.unitRate = QStringLiteral("5");
        QVERIFY(posting.saveLine(h, l, qty[0] == '1').ok);
    }

    frmStock *f = s.open(QStringLiteral("mnuSModifyStock"));
    QVERIFY(f->cmdModify->isVisible());
    QVERIFY(!f->cmdSave->isVisible());
    f->txtBillNo->setText(QStringLiteral("PH-9"));
    Q_EMIT f->txtBillNo->editingFinished();
    QCOMPARE(gridRows(f), 2);
    QCOMPARE(f->dg->model()->headerData(5, Qt::Horizontal).toString(), QStringLiteral("PAPER HOUSE"));
    f->loadLine(1);
    QCOMPARE(f->txtRecordNo->text(), QStringLiteral("2"));
    QCOMPARE(f->txtQuantity->text(), QStringLiteral("20"));
    QCOMPARE(f->cmbPurchaseName->currentText(), QStringLiteral("PAPER PURCHASES"));
    QCOMPARE(f->txtFreight->text(), QStringLiteral("100"));
    QCOMPARE(f->txtNetAmount->text(), QStringLiteral("250"));
    f->txtQuantity->setText(QStringLiteral("30"));
    f->cmdModify->click();
    QCOMPARE(s.t.rec.last().text, QStringLiteral("Purchase stock has been modified successfully."));
    QCOMPARE(ledger(s.t.db()), QStringList({"1 14-10-001 0.00 200.00 PH-9", "1 14-10-001 0.00 100.00 PH-9",
                                            "1 20-11-001 300.00 0.00 PH-9"}));

    f = s.open(QStringLiteral("mnuDeletePurchaseStock"));
    QVERIFY(f->cmdDelete->isVisible());
    QVERIFY(!f->cmdModify->isVisible());
    f->txtBillNo->setText(QStringLiteral("PH-9"));
    Q_EMIT f->txtBillNo->editingFinished();
    f->loadLine(0);
    f->cmdDelete->click();
    QCOMPARE(s.t.rec.last().text, QStringLiteral("Purchase stock has been modified successfully."));
    QCOMPARE(gridRows(f), 1);
    QCOMPARE(ledger(s.t.db()), QStringList({"1 14-10-001 0.00 150.00 PH-9", "1 14-10-001 0.00 100.00 PH-9",
                                            "1 20-11-001 250.00 0.00 PH-9"}));
    f->loadLine(0);
    f->cmdDelete->click();
    QCOMPARE(gridRows(f), 0);
    QVERIFY(ledger(s.t.db()).isEmpty());
}

void TestPurchaseStockScreen::failureKeepsTheScreen()
{
    Screen s(QStringLiteral("sqlite"));
    frmStock *f = s.open(QStringLiteral("mnuSEnterStock"));
    typeHeader(f, QStringLiteral("PH-1"), QStringLiteral("PAPER HOUSE"), QStringLiteral("PAPER PURCHASES"));
    typeLine(f, QStringLiteral("ART CARD"), QStringLiteral("3"), QStringLiteral("10"));
    s.t.db().setStatementHook([](const QString &sql) {
        if (sql.contains(QLatin1String("INSERT INTO tblPartyBalance"), Qt::CaseInsensitive))
            throw DbError(QStringLiteral("disk full"));
    });
    f->cmdSave->click();
    s.t.db().setStatementHook({});
    QVERIFY(s.t.rec.last().isCritical());
    QVERIFY2(s.t.rec.last().text.contains(QLatin1String("disk full")), qPrintable(s.t.rec.last().text));
    QCOMPARE(TestDb::count(s.t.db(), QStringLiteral("SELECT COUNT(*) FROM tblPurchaseStock")), 0);
    // The line is still typed; saving again works.
    QCOMPARE(f->txtQuantity->text(), QStringLiteral("3"));
    f->cmdSave->click();
    QCOMPARE(s.t.rec.last().text, QStringLiteral("Purchase stock has been saved successfully."));
    QCOMPARE(ledger(s.t.db()).size(), 2);
}

QTEST_MAIN(TestPurchaseStockScreen)
#include "tst_purchasestockscreen.moc"
