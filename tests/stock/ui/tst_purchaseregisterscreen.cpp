// The purchase register screen, headless: from its menu entry, the period
// it proposes, the date check and the report it opens.
#include "foundation/Session.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "reports/ui/frmViewReport.h"
#include "support/ui/ScreenKit.h"
#include "support/ui/ScreenTest.h"

#include "stock/PurchaseStockPosting.h"
#include "stock/ui/frmPurchaseRegister.h"

#include <QPushButton>
#include <QtTest>

void registerStockMenu(MenuRouter &router);

class TestPurchaseRegisterScreen : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void periodCheckAndReport();
};

void TestPurchaseRegisterScreen::periodCheckAndReport()
{
    ScreenTest t(QStringLiteral("sqlite"));
    t.db().execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {QDate(2025, 12, 31)});
    t.addAccounts({{"14-10-001", "PAPER HOUSE"}, {"20-11-001", "PAPER PURCHASES"}});
    PurchaseStock::Header h;
    h.voucherNo = 1;
    h.billNo = QStringLiteral("PH-1");
    h.date = QDate(2026, 2, 3);
    h.partyName = QStringLiteral("PAPER HOUSE");
    h.purchaseName = QStringLiteral("PAPER PURCHASES");
    PurchaseStock::Line l;
    l.quantity = QStringLiteral("4");
    l.unitRate = QStringLiteral("250");
    QVERIFY(PurchaseStockPosting(t.db(), QStringLiteral("CLERK"), QDate(2026, 3, 10)).saveLine(h, l, true).ok);

    MenuHost host;
    registerStockMenu(host.router);
    ScreenKit::showActive(&host, QSize(1000, 700));
    auto *f = host.open<frmPurchaseRegister>(QStringLiteral("mnuViewPurchaseRegister"),
                                             QStringLiteral("frmPurchaseRegister"));
    QVERIFY(f);
    QCOMPARE(f->title(), QStringLiteral("PURCHASE REGISTER"));
    QCOMPARE(f->mskDateFrom->maskText(), QStringLiteral("01/01/2026"));
    QCOMPARE(f->mskDateTo->maskText(), QStringLiteral("10/03/2026"));

    f->mskDateTo->setMaskText(QStringLiteral("31/02/2026"));
    f->cmdSearch->click();
    QCOMPARE(t.rec.last().text, QStringLiteral("Wrong date, please enter correct date"));
    QVERIFY(!Reports::currentViewer());

    f->mskDateTo->setMaskText(QStringLiteral("28/02/2026"));
    f->cmdSearch->click();
    frmViewReport *v = Reports::currentViewer();
    QVERIFY(v);
    QCOMPARE(v->report().design.name, QStringLiteral("crPurchaseRegister"));
    QCOMPARE(v->report().heading, QStringLiteral("PURCHASE REGISTER"));
    QCOMPARE(v->report().periodText, QStringLiteral("FROM 01/01/2026 TO 28/02/2026"));
    QCOMPARE(v->report().rows.size(), 1);
    QCOMPARE(v->report().rows.first().moneyOrZero(QStringLiteral("NetAmount")), Money::fromUnits(1000));
    ScreenKit::shoot(v, QStringLiteral("purchase-register-viewer"));
    v->close();
}

QTEST_MAIN(TestPurchaseRegisterScreen)
#include "tst_purchaseregisterscreen.moc"
