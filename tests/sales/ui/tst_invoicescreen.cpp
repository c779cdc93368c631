// The invoice screen driven through its controls, headless: a challan's
// items taken into a new invoice and saved, then the invoice found,
// changed and deleted; the refusals of the line buttons and the save.
#include "foundation/Session.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MenuRouter.h"
#include "sales/InvoicePosting.h"
#include "sales/InvoiceRules.h"
#include "sales/ui/frmInvoice.h"
#include "support/TestDb.h"
#include "support/ui/MessageRecorder.h"
#include "support/ui/ScreenKit.h"
#include "support/ui/ScreenTest.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QtTest>

void registerSalesMenu(MenuRouter &router);

namespace {

using namespace InvoiceMessages;
using ScreenKit::click;
using ScreenKit::items;

const QDate kDay(2026, 3, 9);

class Host : public MenuHost
{
public:
    Host() { registerSalesMenu(router); }
    frmInvoice *open(const QString &entry) { return MenuHost::open<frmInvoice>(entry, QStringLiteral("frmInvoice")); }
};

// A customer with an order and a challan of three items against it.
void prepare(ScreenTest &t)
{
    SessionConnection &db = t.db();
    db.execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {QDate(2025, 12, 31)});
    t.addAccounts({{"17-10-001", "CRESCENT TEXTILES"}, {"17-10-002", "SUNRISE PACKAGES"}});
    db.execute(QStringLiteral("INSERT INTO tblTitleName (TitleName) VALUES ('PRESS')"));
    const QList<QStringList> items = {
        {"CARTON 12X8", "D-1", "1000", "4.5"}, {"LABEL ROLL", "D-2", "250", "12"}, {"CARTON 12X8", "D-3", "40", "4.5"}};
    for (const QStringList &i : items) {
        db.execute(QStringLiteral("INSERT INTO tblDeliveryChallan (RecordNo, DeliveryChallanNo, VDate, PartyCode, "
                                  "PartyName, Description, PONo, Quantity, Type, DemandNo, GateEntryNo, TitleName) "
                                  "VALUES (1, 5, ?, '17-10-001', 'CRESCENT TEXTILES', ?, 'PO-77', ?, 'Pcs', ?, 'G-9', "
                                  "'PRESS')"),
            {kDay, i[0], i[2], i[1]});
        db.execute(
            QStringLiteral("INSERT INTO tblPurchaseOrder (RecordNo, PONo, PartyPONo, VDate, PartyCode, PartyName, "
                           "Description, Quantity, Type, UnitPrice, DemandNo, TitleName) VALUES (1, 1, 'PO-77', ?, "
                           "'17-10-001', 'CRESCENT TEXTILES', ?, ?, 'Pcs', ?, ?, 'PRESS')"),
            {kDay, i[0], i[2], i[3], i[1]});
    }
}

// Leaves a field the way a clerk does, by moving on.
void leave(QWidget *field, QWidget *next)
{
    field->setFocus(Qt::TabFocusReason);
    QApplication::processEvents();
    next->setFocus(Qt::TabFocusReason);
    QApplication::processEvents();
}

void pickRow(frmInvoice *f, int row)
{
    const QModelIndex i = f->dgInvoice->model()->index(row, 1);
    f->dgInvoice->setCurrentIndex(i);
    emit f->dgInvoice->activated(i);
}

Money ledgerOf(SessionConnection &db, const QString &code)
{
    return db.scalarMoney(QStringLiteral("SELECT SUM(PartyBalance) FROM tblPartyBalance WHERE PartyCode = ?"), {code})
        .value_or(Money());
}

} // namespace

class TestInvoiceScreen : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void fromChallanToSavedInvoice_data() { TestDb::addBackends(); }
    void fromChallanToSavedInvoice();
    void refusals();
};

void TestInvoiceScreen::fromChallanToSavedInvoice()
{
    TESSEL_BACKEND()
    ScreenTest t(backend);
    prepare(t);
    Host host;
    host.show();
    QApplication::setActiveWindow(&host);
    QVERIFY(QTest::qWaitForWindowActive(&host));

    frmInvoice *f = host.open(QStringLiteral("mnuEnterInvoice"));
    QVERIFY(f);
    QCOMPARE(f->windowTitle(), QStringLiteral("SALES TAX INVOICE"));
    QVERIFY(f->frOuterInvoice->isVisible());
    QVERIFY(!f->frOuterInvoiceNo->isVisible());
    QCOMPARE(f->cmbTitleName->currentText(), QStringLiteral("PRESS"));
    QCOMPARE(f->txtInvoiceNo->text(), QStringLiteral("1"));
    QCOMPARE(f->mskDate->maskText(), QStringLiteral("10/03/2026"));
    QVERIFY(!items(f->cmbPartyName).contains(QStringLiteral("CASH IN HAND")));

    // The header and the customer's order and challan.
    f->mskDate->setDate(kDay);
    f->cmbPartyName->setEditText(QStringLiteral("CRESCENT TEXTILES"));
    QCOMPARE(f->txtPartyCode->text(), QStringLiteral("17-10-001"));
    QCOMPARE(items(f->cmbPartyPONo), QStringList{"PO-77"});
    f->txtTermOfSale->setEditText(QStringLiteral("CREDIT"));
    f->cmbPartyPONo->setEditText(QStringLiteral("PO-77"));
    leave(f->cmbPartyPONo, f->cmbChallanNo);
    QCOMPARE(items(f->cmbChallanNo), QStringList{"5"});
    f->cmbChallanNo->setEditText(QStringLiteral("5"));
    leave(f->cmbChallanNo, f->cmbDescSrNo);
    QCOMPARE(items(f->cmbDescSrNo), (QStringList{"1 - CARTON 12X8", "2 - LABEL ROLL", "3 - CARTON 12X8"}));
    QCOMPARE(items(f->cmbDemandNo), (QStringList{"D-1", "D-2", "D-3"}));

    // First item: the rate from the order, the quantity from the challan
    // line of the chosen demand number.
    MessageRecorder rec;
    f->cmbDescSrNo->setCurrentIndex(0);
    QCOMPARE(f->cmbDesc->currentText(), QStringLiteral("CARTON 12X8"));
    QCOMPARE(f->txtRate->text(), QStringLiteral("4.5"));
    QCOMPARE(f->txtQuantity->text(), QStringLiteral("0")); // no demand chosen yet
    f->cmbDemandNo->setCurrentIndex(2);
    QCOMPARE(f->txtQuantity->text(), QStringLiteral("40"));
    f->cmbDemandNo->setCurrentIndex(0);
    QCOMPARE(f->txtQuantity->text(), QStringLiteral("1000"));
    f->txtRateOfSaleTax->setText(QStringLiteral("17"));
    leave(f->txtRate, f->txtRateOfSaleTax);
    QCOMPARE(f->txtPrice->text(), QStringLiteral("4500"));
    click(f->cmdNew);
    QCOMPARE(rec.last().text, kLineAdded);
    QCOMPARE(f->lines().size(), 1);
    QCOMPARE(f->lines()[0].valueWithTax, Money::fromUnits(4500 + 765));
    QCOMPARE(f->txtQuantity->text(), QStringLiteral("0"));

    // Second item, another terms text.
    f->cmbDescSrNo->setCurrentIndex(1);
    f->cmbDemandNo->setCurrentIndex(1);
    QCOMPARE(f->txtQuantity->text(), QStringLiteral("250"));
    QCOMPARE(f->txtRate->text(), QStringLiteral("12"));
    f->txtTermOfSale->setEditText(QStringLiteral("CASH"));
    click(f->cmdNew);
    QCOMPARE(rec.last().text, kLineAdded);
    QCOMPARE(f->dgInvoice->model()->rowCount(), 2);
    QCOMPARE(f->txtValueExSaleTax->text(), QStringLiteral("7,500.00"));
    QCOMPARE(f->txtSaleTax->text(), QStringLiteral("1,275.00"));
    QCOMPARE(f->txtNetAmount->text(), QStringLiteral("8,775.00"));
    ScreenKit::shoot(f, QStringLiteral("invoice-entry"));

    click(f->cmdModifyInvoice);
    QCOMPARE(rec.last().text, kSaved);
    SessionConnection &db = t.db();
    QCOMPARE(ledgerOf(db, QStringLiteral("17-10-001")), Money::fromUnits(8775));
    QCOMPARE(ledgerOf(db, InvoiceRules::kSalesCode), Money::fromUnits(-8775));
    QCOMPARE(db.scalar(QStringLiteral("SELECT PartyDesc FROM tblPartyBalance WHERE VoucherType = 'SV' ORDER BY SrNo"))
                 .toString(),
        QStringLiteral("CASH, CREDIT, "));
    QCOMPARE(
        TestDb::count(db, QStringLiteral("SELECT COUNT(*) FROM tblInvoice WHERE InvoiceNo = 1 AND ChallanNo = '5'")),
        2);
    QCOMPARE(TestDb::count(db, QStringLiteral("SELECT COUNT(*) FROM tblInvoiceEmpty")), 0);
    QCOMPARE(f->txtInvoiceNo->text(), QStringLiteral("2"));
    QCOMPARE(f->txtNetAmount->text(), QStringLiteral("0"));
    QCOMPARE(f->cmbPartyName->currentText(), QStringLiteral("CRESCENT TEXTILES")); // kept for the next invoice
    QCOMPARE(f->dgInvoice->model()->rowCount(), 0);

    // Found again, one line changed, one removed, one added.
    f = host.open(QStringLiteral("mnuModifyInvoice"));
    QCOMPARE(f->windowTitle(), QStringLiteral("MODIFY SALES TAX INVOICE"));
    QVERIFY(f->frOuterInvoiceNo->isVisible());
    ScreenKit::shoot(f, QStringLiteral("invoice-finder"));
    click(f->cmdInvoiceNoOkay);
    QCOMPARE(rec.last().text, kNoFinderNo);
    f->cmbModifyTitleName->setCurrentText(QStringLiteral("PRESS"));
    f->txtShowInvoiceNo->setText(QStringLiteral("1"));
    f->mskDateModifyInvoice->setDate(kDay.addDays(1));
    click(f->cmdInvoiceNoOkay);
    QCOMPARE(rec.last().text, kNotFound);
    f->mskDateModifyInvoice->setDate(kDay);
    click(f->cmdInvoiceNoOkay);
    QVERIFY(f->frOuterInvoice->isVisible());
    QVERIFY(f->txtInvoiceNo->isReadOnly());
    QCOMPARE(f->dgInvoice->model()->rowCount(), 2);
    QCOMPARE(f->txtNetAmount->text(), QStringLiteral("8,775.00"));

    pickRow(f, 0);
    QCOMPARE(f->txtQuantity->text(), QStringLiteral("1000"));
    f->txtQuantity->setText(QStringLiteral("800"));
    click(f->cmdModify);
    QCOMPARE(rec.last().text, kLineChanged);
    pickRow(f, 1);
    click(f->cmdDelete);
    QCOMPARE(rec.last().text, kLineRemoved);
    f->txtTermOfSale->setEditText(QStringLiteral("CREDIT"));
    f->cmbDesc->setEditText(QStringLiteral("PLAIN SHEETS"));
    f->txtQuantity->setText(QStringLiteral("10"));
    f->txtRate->setText(QStringLiteral("3"));
    f->txtRateOfSaleTax->setText(QStringLiteral("0"));
    click(f->cmdNew);
    QCOMPARE(rec.last().text, kLineAdded);
    f->cmbDesc->setEditText(QStringLiteral("PLAIN SHEETS"));
    f->txtQuantity->setText(QStringLiteral("20"));
    f->txtRate->setText(QStringLiteral("3"));
    click(f->cmdModify); // the added line, changed: still a new line
    QCOMPARE(rec.last().text, kLineChanged);
    f->mskDate->setDate(kDay.addDays(2));
    click(f->cmdModifyInvoice);
    QCOMPARE(rec.last().text, kModified);
    QVERIFY(f->frOuterInvoiceNo->isVisible());
    const Money net = Money::fromUnits(3600 + 612 + 60);
    QCOMPARE(ledgerOf(db, QStringLiteral("17-10-001")), net);
    QCOMPARE(db.scalarMoney(QStringLiteral("SELECT SUM(ValueIncludingTax) FROM tblInvoice WHERE InvoiceDate = ?"),
                 {kDay.addDays(2)}),
        std::optional<Money>(net));
    QCOMPARE(
        TestDb::count(db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE VDate = ?"), {kDay.addDays(2)}),
        2);

    // Deleted after the question.
    f->txtShowInvoiceNo->setText(QStringLiteral("1"));
    f->mskDateModifyInvoice->setDate(kDay.addDays(2));
    click(f->cmdInvoiceNoOkay);
    QCOMPARE(f->dgInvoice->model()->rowCount(), 2);
    click(f->cmdDeleteInvoice); // answered No
    QCOMPARE(TestDb::count(db, QStringLiteral("SELECT COUNT(*) FROM tblInvoice")), 2);
    rec.answerNext(true);
    click(f->cmdDeleteInvoice);
    QCOMPARE(rec.last().text, kDeleted);
    QCOMPARE(TestDb::count(db, QStringLiteral("SELECT COUNT(*) FROM tblInvoice")), 0);
    QCOMPARE(TestDb::count(db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE VoucherType = 'SV'")), 0);
}

void TestInvoiceScreen::refusals()
{
    ScreenTest t(QStringLiteral("sqlite"));
    prepare(t);
    Host host;
    host.show();
    QApplication::setActiveWindow(&host);
    QVERIFY(QTest::qWaitForWindowActive(&host));
    MessageRecorder rec;
    frmInvoice *f = host.open(QStringLiteral("mnuEnterInvoice"));

    click(f->cmdModifyInvoice);
    QCOMPARE(rec.last().text, kEmpty);
    click(f->cmdNew);
    QCOMPARE(rec.last().text, kNoTerms);
    f->txtTermOfSale->setEditText(QStringLiteral("CASH"));
    click(f->cmdNew);
    QCOMPARE(rec.last().text, kNoParty);
    f->cmbPartyName->setEditText(QStringLiteral("NOBODY"));
    click(f->cmdNew);
    QCOMPARE(rec.last().text, kPartyNotFound);
    f->cmbPartyName->setEditText(QStringLiteral("SUNRISE PACKAGES"));
    click(f->cmdNew);
    QCOMPARE(rec.last().text, kNoDescription);
    f->cmbDesc->setEditText(QStringLiteral("POSTER"));
    f->txtQuantity->setText(QStringLiteral("99999999999"));
    f->txtRate->setText(QStringLiteral("99"));
    click(f->cmdNew);
    QCOMPARE(rec.last().text, kBadFigures);
    QVERIFY(f->lines().isEmpty());

    // A typed number another invoice of the title holds is refused.
    f->txtQuantity->setText(QStringLiteral("2"));
    click(f->cmdNew);
    QCOMPARE(rec.last().text, kLineAdded);
    InvoiceHeader other;
    other.key = {QStringLiteral("PRESS"), 7, kDay};
    other.partyCode = QStringLiteral("17-10-002");
    other.partyName = QStringLiteral("SUNRISE PACKAGES");
    InvoiceLine l = f->lines().first();
    auto elsewhere = t.year.connect(); // another workstation
    QVERIFY(InvoicePosting(*elsewhere, QStringLiteral("CLERK"), kDay).saveNew(other, {l}, NumberPolicy::Typed).ok);
    f->txtInvoiceNo->setText(QStringLiteral("7"));
    click(f->cmdModifyInvoice);
    QCOMPARE(rec.last().text, kDuplicate);
    QCOMPARE(f->lines().size(), 1); // still on the screen
    QCOMPARE(TestDb::count(t.db(), QStringLiteral("SELECT COUNT(*) FROM tblInvoiceEmpty")), 1);

    // Closing with lines typed asks first.
    f->close();
    QVERIFY(f->isVisible());
    QCOMPARE(rec.last().text, kCloseQuestion);
}

QTEST_MAIN(TestInvoiceScreen)
#include "tst_invoicescreen.moc"
