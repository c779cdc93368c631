// The other-services screens driven through their controls, headless:
// entry from the menu, a change and a second change without reloading,
// the delete, and the register between two dates.
#include "foundation/Session.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MenuRouter.h"
#include "reports/ReportFrame.h"
#include "services/ui/frmOtherServices.h"
#include "support/TestDb.h"
#include "support/ui/MessageRecorder.h"
#include "support/ui/ScreenKit.h"
#include "support/ui/ScreenTest.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

namespace {

const QDate kToday(2026, 3, 10);

class Host : public MenuHost
{
public:
    Host() { registerServicesMenu(router); }
};

void prepare(ScreenTest &t)
{
    t.addAccounts({{"17-10-001", "CRESCENT TEXTILES"}, {"14-10-001", "PAPER HOUSE"}, {"14-10-002", "FAST COURIERS"}});
    t.db().execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {QDate(2026, 2, 28)});
}

QStringList ledger(SessionConnection &db)
{
    QStringList out;
    for (const Row &r : db.select(QStringLiteral("SELECT PartyCode, PartyBalance, PartyDesc FROM tblPartyBalance "
                                                 "WHERE VoucherType = 'OS' ORDER BY SrNo")))
        out << r.text(0).trimmed() + QLatin1Char(' ') + r.moneyOrZero("PartyBalance").toPlainString() + QLatin1Char(' ')
                + r.text(2);
    return out;
}

} // namespace

class TestOtherServicesScreens : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void enterModifyDelete_data() { TestDb::addBackends(); }
    void enterModifyDelete();
    void refusals();
    void registerBetweenDates();
};

void TestOtherServicesScreens::enterModifyDelete()
{
    TESSEL_BACKEND()
    ScreenTest t(backend, kToday);
    prepare(t);
    Host host;
    host.show();
    auto *f = host.open<frmOtherServices>(QStringLiteral("mnuEnterOtherServices"), QStringLiteral("frmOtherServices"));
    QVERIFY(f);
    QCOMPARE(f->txtVoucherType->text(), QStringLiteral("OS"));
    QCOMPARE(f->txtVoucherNo->text(), QStringLiteral("1"));
    QCOMPARE(f->mskDate->maskText(), QStringLiteral("10/03/2026"));
    QVERIFY(!f->cmdModify->isVisible());
    f->txtInvoiceNo->setText(QStringLiteral("B-17"));
    f->cmbPartyName->setEditText(QStringLiteral("CRESCENT TEXTILES"));
    f->cmbSupplierName->setEditText(QStringLiteral("PAPER HOUSE"));
    QCOMPARE(f->mskSupplierCode->maskText(), QStringLiteral("14-10-001"));
    f->txtDescription->setText(QStringLiteral("LAMINATION OUTSIDE"));
    f->txtReceivedAmount->setText(QStringLiteral("1500"));
    f->txtPaidAmount->setText(QStringLiteral("1200"));
    ScreenKit::shoot(&host, QStringLiteral("other-services-") + backend);
    ScreenKit::click(f->cmdOkay);
    QCOMPARE(t.rec.last().text, QStringLiteral("Other services has saved successfully"));
    QCOMPARE(f->txtVoucherNo->text(), QStringLiteral("2"));
    QCOMPARE(f->txtDescription->text(), QStringLiteral("LAMINATION OUTSIDE")); // the next starts from this one
    QCOMPARE(ledger(t.db()), QStringList({"17-10-001 1500.00 LAMINATION OUTSIDE", "14-10-001 -1200.00 LAMINATION OUTSIDE",
                                          "20-10-001 -300.00 LAMINATION OUTSIDE"}));

    auto *m = host.open<frmModifyOtherServices>(QStringLiteral("mnuModifyOtherServices"),
                                                QStringLiteral("frmModifyOtherServices"));
    QVERIFY(m);
    QVERIFY(m->cmdModify->isVisible());
    QVERIFY(!m->cmdOkay->isVisible());
    emit m->txtVoucherNo->editingFinished();
    QCOMPARE(t.rec.last().text, QStringLiteral("Voucher # is missing, please enter voucher #."));
    m->txtVoucherNo->setText(QStringLiteral("1"));
    emit m->txtVoucherNo->editingFinished();
    QCOMPARE(m->mskPartyCode->maskText(), QStringLiteral("17-10-001"));
    QCOMPARE(m->mskDate->maskText(), QStringLiteral("10/03/2026"));
    QCOMPARE(m->txtReceivedAmount->text(), QStringLiteral("1500"));
    m->txtDescription->setFocus();

    // Two changes in a row, the second without loading again: both land.
    m->txtDescription->setText(QStringLiteral("UV COATING"));
    m->txtReceivedAmount->setText(QStringLiteral("1100"));
    ScreenKit::click(m->cmdModify);
    QCOMPARE(t.rec.last().text, QStringLiteral("Other services has updated successfully"));
    m->txtDescription->setText(QStringLiteral("UV COATING AGAIN"));
    m->cmbSupplierName->setEditText(QStringLiteral("FAST COURIERS"));
    ScreenKit::click(m->cmdModify);
    QCOMPARE(t.rec.last().text, QStringLiteral("Other services has updated successfully"));
    QCOMPARE(ledger(t.db()), QStringList({"17-10-001 1100.00 UV COATING AGAIN", "14-10-002 -1200.00 UV COATING AGAIN",
                                          "20-10-001 100.00 UV COATING AGAIN"}));

    ScreenKit::click(m->cmdDelete);
    QCOMPARE(t.rec.last().text, QStringLiteral("Other services has deleted successfully"));
    QCOMPARE(m->txtVoucherNo->text(), QString());
    QCOMPARE(ledger(t.db()), QStringList());
    m->txtVoucherNo->setText(QStringLiteral("1"));
    ScreenKit::click(m->cmdDelete);
    QCOMPARE(t.rec.last().text, QStringLiteral("No voucher # found, please enter correct voucher #"));
}

void TestOtherServicesScreens::refusals()
{
    ScreenTest t(QStringLiteral("sqlite"), kToday);
    prepare(t);
    Host host;
    host.show();
    QVERIFY(QTest::qWaitForWindowActive(&host));
    auto *f = host.open<frmOtherServices>(QStringLiteral("mnuEnterOtherServices"), QStringLiteral("frmOtherServices"));
    f->cmbPartyName->setEditText(QStringLiteral("CRESCENT TEXTILES"));
    f->cmbSupplierName->setEditText(QStringLiteral("NOBODY"));
    f->txtReceivedAmount->setText(QStringLiteral("100"));
    ScreenKit::click(f->cmdOkay);
    QCOMPARE(t.rec.last().text, QStringLiteral("Party name not found, please enter correct party name"));
    QCOMPARE(QApplication::focusWidget()->objectName(), QStringLiteral("cmbSupplierName"));

    f->cmbSupplierName->setEditText(QStringLiteral("PAPER HOUSE"));
    f->txtPaidAmount->setText(QStringLiteral("99999999999"));
    ScreenKit::click(f->cmdOkay);
    QCOMPARE(t.rec.last().text, QStringLiteral("Amount is too large, please enter correct amount"));
    QCOMPARE(QApplication::focusWidget()->objectName(), QStringLiteral("txtPaidAmount"));

    f->txtPaidAmount->setText(QStringLiteral("50"));
    f->mskDate->setMaskText(QStringLiteral("15/02/2026"));
    ScreenKit::click(f->cmdOkay);
    QCOMPARE(t.rec.last().text, QStringLiteral("Sorry, you enter wrong date because data has closed at this date"));
    QCOMPARE(TestDb::count(t.db(), QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")), 0);
}

void TestOtherServicesScreens::registerBetweenDates()
{
    ScreenTest t(QStringLiteral("sqlite"), kToday);
    prepare(t);
    OtherServices os(t.db(), QStringLiteral("CLERK"), kToday);
    for (int day : {1, 9, 20}) {
        OtherServiceEntry e;
        e.voucherNo = os.nextNumber();
        e.date = QDate(2026, 3, day);
        e.partyCode = QStringLiteral("17-10-001");
        e.partyName = QStringLiteral("CRESCENT TEXTILES");
        e.supplierCode = QStringLiteral("14-10-001");
        e.supplierName = QStringLiteral("PAPER HOUSE");
        e.description = QStringLiteral("DIE CUTTING");
        e.received = Money::fromUnits(100 * day);
        e.paid = Money::fromUnits(50 * day);
        QVERIFY(os.save(e).ok);
    }
    const Reports::ReportRequest req = OtherServiceRules::registerRequest(QDate(2026, 3, 2), QDate(2026, 3, 20));
    const Reports::RenderedReport r = Reports::ReportFrame::render(t.db(), req);
    QCOMPARE(r.rows.size(), 2); // the 1st is outside the period, the 20th inside
    QCOMPARE(req.title, QStringLiteral("OTHER SERVICES REGISTER"));

    Host host;
    host.show();
    auto *f = host.open<frmPrintOtherServices>(QStringLiteral("mnuViewOtherServicesRegister"),
                                               QStringLiteral("frmPrintOtherServices"));
    QVERIFY(f);
    QCOMPARE(f->mskDateTo->maskText(), QStringLiteral("10/03/2026"));
    f->mskDateFrom->setMaskText(QStringLiteral("31/02/2026"));
    ScreenKit::click(f->cmdOtherServices);
    QCOMPARE(t.rec.last().text, QStringLiteral("Wrong date, please enter correct date"));
}

QTEST_MAIN(TestOtherServicesScreens)
#include "tst_otherservicesscreens.moc"
