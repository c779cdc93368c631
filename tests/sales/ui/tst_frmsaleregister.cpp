// The sales register and status report screens, headless: each opened from
// its menu entry, driven through its controls' names, its refusals and
// the report it opens.
#include "foundation/Session.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "reports/ui/frmViewReport.h"
#include "support/ui/ScreenKit.h"
#include "support/ui/ScreenTest.h"
#include "sales/tst_salesreportsfixture.h"

#include "sales/ui/frmSalesReports.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QtTest>

void registerSalesMenu(MenuRouter &router);

namespace {

// The viewer the last command opened, checked and closed.
struct Opened
{
    QString design;
    int rows = -1;
    QString title;
    QString periodText;
};

Opened takeViewer(const QString &shot = QString())
{
    Opened o;
    frmViewReport *v = Reports::currentViewer();
    if (!v)
        return o;
    o.design = v->report().design.name;
    o.rows = v->report().rows.size();
    o.title = v->windowTitle();
    o.periodText = v->report().periodText;
    if (!shot.isEmpty())
        ScreenKit::shoot(v, shot);
    v->close();
    delete v;
    return o;
}

} // namespace

class TestSalesReportScreens : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void saleRegister();
    void summary();
    void clientDetail();
    void statusReport();
    void partyPO();

private:
    struct Setup
    {
        ScreenTest t{QStringLiteral("sqlite")};
        MenuHost host;
    };
    static void prepare(Setup &s)
    {
        QVERIFY(SalesReportsFixture::fill(s.t.db()));
        session().currentTitle = SalesReportsFixture::kPress;
        registerSalesMenu(s.host.router);
        ScreenKit::showActive(&s.host, QSize(1100, 760));
    }
};

void TestSalesReportScreens::saleRegister()
{
    Setup s;
    prepare(s);
    auto *f = s.host.open<frmSaleRegister>(QStringLiteral("mnuViewPrintSaleRegister"), QStringLiteral("frmSaleRegister"));
    QVERIFY(f);
    QCOMPARE(f->title(), QStringLiteral("SALE REGISTER"));
    QVERIFY(f->optSaleRegister->isChecked());
    QCOMPARE(f->mskDateFrom->maskText(), QStringLiteral("01/01/2026"));
    QCOMPARE(f->mskDateTo->maskText(), QStringLiteral("10/03/2026"));
    ScreenKit::shoot(f, QStringLiteral("sales-register-screen"));

    f->mskDateTo->setMaskText(QStringLiteral("32/03/2026"));
    f->cmdSaleRegister->click();
    QCOMPARE(s.t.rec.last().text, QStringLiteral("Wrong date, please enter correct date"));
    QVERIFY(!Reports::currentViewer());

    f->mskDateFrom->setMaskText(QStringLiteral("01/03/2026"));
    f->mskDateTo->setMaskText(QStringLiteral("31/03/2026"));
    f->cmdSaleRegister->click();
    Opened o = takeViewer(QStringLiteral("sales-register-viewer"));
    QCOMPARE(o.design, QStringLiteral("crSaleRegister"));
    QCOMPARE(o.rows, 2); // the working title's invoices of March
    QCOMPARE(o.periodText, QStringLiteral("FROM 01/03/2026 TO 31/03/2026"));

    f->optSaleRegisterAllTitle->setChecked(true);
    f->cmdSaleRegister->click();
    QCOMPARE(takeViewer().rows, 3);

    // A single party: the name picks the code.
    f->cmbPartyName->setEditText(SalesReportsFixture::kSunrise);
    QCOMPARE(f->mskPartyCode->maskText(), QStringLiteral("17-10-002"));
    f->optSaleRegisterSingleParty->setChecked(true);
    f->cmdSaleRegister->click();
    QCOMPARE(takeViewer().rows, 0); // none under the working title
    f->optSaleSummarySingleParty->setChecked(true);
    session().currentTitle = SalesReportsFixture::kPackaging;
    f->cmdSaleRegister->click();
    o = takeViewer();
    QCOMPARE(o.design, QStringLiteral("crSaleRegisterSummary"));
    QCOMPARE(o.rows, 2); // one line a bill: its invoice has two terms of sale

    // The summary entry brings the open screen forward on the summary.
    f->optSaleRegister->setChecked(true);
    auto *g = s.host.open<frmSaleRegister>(QStringLiteral("mnuViewSaleRegisterSummary"), QStringLiteral("frmSaleRegister"));
    QCOMPARE(g, f);
    QVERIFY(f->optSaleSummary->isChecked());
}

void TestSalesReportScreens::summary()
{
    Setup s;
    prepare(s);
    auto *f = s.host.open<frmSummary>(QStringLiteral("mnuViewPrintSaleSummary"), QStringLiteral("frmSummary"));
    QVERIFY(f);
    QCOMPARE(f->windowTitle(), QStringLiteral("SALE SUMMARY"));
    QCOMPARE(f->title(), QStringLiteral("SALE"));
    QCOMPARE(f->cmbMonth->currentText(), QStringLiteral("JANUARY"));
    QCOMPARE(f->cmbMonth->count(), 12);
    QCOMPARE(f->mskYear->maskText(), QStringLiteral("2026"));
    ScreenKit::shoot(f, QStringLiteral("sales-summary-screen"));

    f->mskYear->setMaskText(QStringLiteral("____"));
    f->cmdSaleSummary->click();
    QCOMPARE(s.t.rec.last().text, QStringLiteral("Year is missing, please enter year"));
    QVERIFY(!Reports::currentViewer());

    // March is March, not the third of January.
    f->mskYear->setMaskText(QStringLiteral("2026"));
    f->cmbMonth->setCurrentIndex(2);
    f->cmdSaleSummary->click();
    const Opened o = takeViewer(QStringLiteral("sales-summary-viewer"));
    QCOMPARE(o.design, QStringLiteral("crSaleSummary"));
    QCOMPARE(o.rows, 2);
    QCOMPARE(o.periodText, QStringLiteral("FROM 01/03/2026 TO 31/03/2026"));
}

void TestSalesReportScreens::clientDetail()
{
    Setup s;
    prepare(s);
    auto *f = s.host.open<frmClientDetail>(QStringLiteral("mnuViewPrintClientDetail"), QStringLiteral("frmClientDetail"));
    QVERIFY(f);
    QCOMPARE(f->title(), QStringLiteral("CLIENT DETAIL"));
    QVERIFY(ScreenKit::items(f->cmbPartyName).contains(SalesReportsFixture::kCrescent));

    f->cmdClientDetail->click();
    QCOMPARE(s.t.rec.last().text, QStringLiteral("Party name not found, please select correct party name"));
    QVERIFY(!Reports::currentViewer());

    f->mskPartyCode->setMaskText(QStringLiteral("17-10-001"));
    QCOMPARE(f->cmbPartyName->currentText(), SalesReportsFixture::kCrescent);
    f->mskDateTo->setMaskText(QStringLiteral("31/03/2026"));
    f->cmdClientDetail->click();
    const Opened o = takeViewer(QStringLiteral("sales-client-detail-viewer"));
    QCOMPARE(o.design, QStringLiteral("crClientDetail"));
    QCOMPARE(o.rows, 8); // every line of its three invoices of the quarter
}

void TestSalesReportScreens::statusReport()
{
    Setup s;
    prepare(s);
    auto *f = s.host.open<frmStatusReport>(QStringLiteral("mnuViewDeliveryInvoiceStatusReport"), QStringLiteral("frmStatusReport"));
    QVERIFY(f);
    QCOMPARE(f->title(), QStringLiteral("STATUS REPORT"));
    QVERIFY(f->optDcInvoiceStatus->isChecked());
    f->cmdSearch->click();
    Opened o = takeViewer(QStringLiteral("sales-status-viewer"));
    QCOMPARE(o.design, QStringLiteral("crDcInvStatusReport"));
    QCOMPARE(o.title, QStringLiteral("DELIVERY / INVOICE STATUS REPORT"));
    QCOMPARE(o.rows, 4);

    auto *g = s.host.open<frmStatusReport>(QStringLiteral("mnuViewDeliveryChallanSummary"), QStringLiteral("frmStatusReport"));
    QCOMPARE(g, f);
    QVERIFY(f->optDc->isChecked());
    f->cmdSearch->click();
    o = takeViewer();
    QCOMPARE(o.design, QStringLiteral("crDeliveryChallanSummary"));
    QCOMPARE(o.rows, 4);

    f->optDcSingleParty->setChecked(true);
    f->mskPartyCode->setMaskText(QStringLiteral("17-10-002"));
    f->cmdSearch->click();
    QCOMPARE(takeViewer().rows, 0);
}

void TestSalesReportScreens::partyPO()
{
    Setup s;
    prepare(s);
    auto *f = s.host.open<frmPartyPO>(QStringLiteral("mnuViewPurchaseOrderStatusReport"), QStringLiteral("frmPartyPO"));
    QVERIFY(f);
    QCOMPARE(f->title(), QStringLiteral("SEARCH PARTY PO"));
    QVERIFY(f->optSearchByDate->isChecked());
    QVERIFY(!f->txtPOFrom->isEnabled());
    f->cmbPartyName->setEditText(SalesReportsFixture::kCrescent);
    ScreenKit::shoot(f, QStringLiteral("sales-party-po-screen"));
    f->cmdSearch->click();
    Opened o = takeViewer(QStringLiteral("sales-party-po-viewer"));
    QCOMPARE(o.design, QStringLiteral("crPoDcStatusReport"));
    QCOMPARE(o.title, QStringLiteral("PURCHASE ORDER STATUS REPORT"));
    QCOMPARE(o.rows, 4);

    f->optSearchByPO->setChecked(true);
    QVERIFY(f->txtPOFrom->isEnabled());
    QVERIFY(!f->mskDateFrom->isEnabled());
    f->txtPOTo->setText(QStringLiteral("KP-1"));
    f->cmdSearch->click();
    QCOMPARE(s.t.rec.last().text, QStringLiteral("P.O # can not empty, please enter P.O #."));
    QCOMPARE(f->focusWidget(), f->txtPOFrom);
    QVERIFY(!Reports::currentViewer());

    // A range upside down: an empty report and no message.
    const int messages = s.t.rec.count();
    f->txtPOFrom->setText(QStringLiteral("KP-9"));
    f->cmdSearch->click();
    QCOMPARE(takeViewer().rows, 0);
    QCOMPARE(s.t.rec.count(), messages);
}

QTEST_MAIN(TestSalesReportScreens)
#include "tst_frmsaleregister.moc"
