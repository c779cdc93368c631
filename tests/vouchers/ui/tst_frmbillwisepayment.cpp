// The bill-wise payment screen driven through its controls, headless:
// its three captions, the search, bills moved across by Enter and double
// click, the date refusal, the other options and their printed lists.
#include "foundation/Session.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MenuRouter.h"
#include "reports/ui/frmViewReport.h"
#include "support/ui/ScreenKit.h"
#include "support/ui/ScreenTest.h"
#include "vouchers/tst_billwisefixture.h"
#include "vouchers/ui/frmBillWisePayment.h"

#include <QComboBox>
#include <QLabel>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QtTest>

using namespace BillWiseFixture;

namespace {

class Host : public MenuHost
{
public:
    Host() { registerVouchersMenu(router); }
};

// A list's rows as "INVOICE # DESC AMOUNT TITLE".
QStringList rows(QTableView *g)
{
    QStringList out;
    for (int r = 0; r < g->model()->rowCount(); ++r) {
        QStringList cells;
        for (int c = 0; c < g->model()->columnCount(); ++c)
            cells << g->model()->index(r, c).data().toString();
        out << cells.join(QLatin1Char(' '));
    }
    return out;
}

void typeSearch(frmBillWisePayment *f, const QString &code, const QString &to)
{
    f->mskPartyCode->setFocus();
    f->mskPartyCode->setMaskText(code);
    f->mskDateFrom->setMaskText(QStringLiteral("01/03/2026"));
    f->mskDateTo->setMaskText(to);
    ScreenKit::click(f->cmdSearch);
}

void pickRow(QTableView *g, int row)
{
    g->setFocus();
    g->setCurrentIndex(g->model()->index(row, 0));
    QTest::keyClick(g, Qt::Key_Return);
}

} // namespace

class TestFrmBillWisePayment : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void cleanup()
    {
        if (auto *v = Reports::currentViewer())
            delete v;
    }
    void searchAndMark_data() { TestDb::addBackends(); }
    void searchAndMark();
    void otherOptions();
};

void TestFrmBillWisePayment::searchAndMark()
{
    TESSEL_BACKEND()
    ScreenTest t(backend, kToday);
    saveInvoices(t.db());
    session().firstOpenDate = QDate(2026, 1, 1);
    Host host;
    host.show();
    auto *f = host.open<frmBillWisePayment>(QStringLiteral("mnuBillWisePayment"), QStringLiteral("frmBillWisePayment"));
    QVERIFY(f);

    // The three captions: the window's, the title's, and the minimised one.
    QCOMPARE(f->title(), QStringLiteral("BILL WISE PAYMENT"));
    auto *sub = qobject_cast<QMdiSubWindow *>(f->parentWidget());
    QVERIFY(sub);
    QCOMPARE(sub->windowTitle(), QStringLiteral("TICKET WISE PAYMENT"));
    sub->showMinimized();
    QCOMPARE(sub->windowTitle(), QStringLiteral("TICKET WISE STATUS"));
    host.open<frmBillWisePayment>(QStringLiteral("mnuBillWisePayment"), QStringLiteral("frmBillWisePayment"));
    QCOMPARE(sub->windowTitle(), QStringLiteral("TICKET WISE PAYMENT"));

    QVERIFY(f->optBillWiseSearch->isChecked());
    QCOMPARE(f->mskDateFrom->maskText(), QStringLiteral("01/01/2026"));
    QCOMPARE(f->mskDateTo->maskText(), QStringLiteral("10/03/2026"));
    QCOMPARE(f->dgPending->model()->headerData(2, Qt::Horizontal).toString(), QStringLiteral("AMOUNT"));

    // The code names the party; the search lists its bills, pending first.
    typeSearch(f, QStringLiteral("17-10-001"), QStringLiteral("31/03/2026"));
    QCOMPARE(f->cmbPartyName->currentText(), QStringLiteral("CRESCENT TEXTILES"));
    QVERIFY2(t.rec.isEmpty(), qPrintable(t.rec.texts().join(QLatin1Char('\n'))));
    QCOMPARE(rows(f->dgPending),
        (QStringList{"1 CREDIT 300.00 PACKAGING", "1 CASH 3,510.00 PRESS", "1 CREDIT 8,290.00 PRESS"}));
    QCOMPARE(rows(f->dgDone), QStringList());
    QCOMPARE(f->focusWidget(), f->dgPending);

    // Enter on a pending bill pays it; the list keeps its place.
    pickRow(f->dgPending, 2);
    QCOMPARE(rows(f->dgDone), QStringList{"1 CREDIT 8,290.00 PRESS"});
    QCOMPARE(rows(f->dgPending), (QStringList{"1 CREDIT 300.00 PACKAGING", "1 CASH 3,510.00 PRESS"}));
    QCOMPARE(f->lblPendingTotal->text(), QStringLiteral("2 BILLS   3,810.00"));
    QCOMPARE(f->lblDoneTotal->text(), QStringLiteral("1 BILL   8,290.00"));
    QCOMPARE(f->dgPending->currentIndex().row(), 1);
    QCOMPARE(TestDb::count(t.db(), QStringLiteral("SELECT COUNT(*) FROM tblInvoice WHERE Status = 'DONE'")), 2);

    // Two bills chosen together move together.
    f->dgPending->selectAll();
    QTest::keyClick(f->dgPending, Qt::Key_Enter);
    QCOMPARE(rows(f->dgPending), QStringList());
    QCOMPARE(f->lblPendingTotal->text(), QString());
    QCOMPARE(rows(f->dgDone),
        (QStringList{"1 CREDIT 300.00 PACKAGING", "1 CASH 3,510.00 PRESS", "1 CREDIT 8,290.00 PRESS"}));
    ScreenKit::shoot(&host, QStringLiteral("billwise-") + backend);

    // A double click on a paid bill sends it back to pending.
    const QRect cell = f->dgDone->visualRect(f->dgDone->model()->index(1, 1));
    QTest::mouseClick(f->dgDone->viewport(), Qt::LeftButton, {}, cell.center());
    QCOMPARE(rows(f->dgDone).size(), 3); // a click alone marks nothing
    QTest::mouseDClick(f->dgDone->viewport(), Qt::LeftButton, {}, cell.center());
    QCOMPARE(rows(f->dgPending), QStringList{"1 CASH 3,510.00 PRESS"});
    QCOMPARE(rows(f->dgDone).size(), 2);

    // A bill deleted on another workstation meanwhile: the pick is refused
    // and the lists show the bills as they stand.
    t.db().execute(QStringLiteral("DELETE FROM tblInvoice WHERE TitleName = 'PACKAGING'"));
    pickRow(f->dgDone, 0);
    QCOMPARE(t.rec.last().text, BillWiseMessages::kChangedElsewhere);
    QVERIFY(t.rec.last().isCritical());
    QCOMPARE(rows(f->dgDone), QStringList{"1 CREDIT 8,290.00 PRESS"});
    QCOMPARE(rows(f->dgPending), QStringList{"1 CASH 3,510.00 PRESS"});
}

// A bad date is refused before anything is read; a pick under another
// option marks nothing; the two printed lists open in the viewer.
void TestFrmBillWisePayment::otherOptions()
{
    ScreenTest t(QStringLiteral("sqlite"), kToday);
    saveInvoices(t.db());
    frmBillWisePayment f;
    ScreenKit::showActive(&f);
    f.onOpened();
    typeSearch(&f, QStringLiteral("17-10-001"), QStringLiteral("31/02/2026"));
    QCOMPARE(t.rec.texts(), QStringList{"Wrong date, please enter correct date"});
    QCOMPARE(f.focusWidget(), f.mskDateTo);
    QCOMPARE(f.dgPending->model()->rowCount(), 0);

    t.rec.clear();
    typeSearch(&f, QStringLiteral("17-10-001"), QStringLiteral("31/03/2026"));
    pickRow(f.dgPending, 2);
    f.optBillWisePayment->setChecked(true);
    pickRow(f.dgPending, 0);
    QCOMPARE(rows(f.dgPending).size(), 2);
    QCOMPARE(rows(f.dgDone).size(), 1);

    struct Print
    {
        QRadioButton *option;
        const char *title;
        int bills;
    };
    for (const Print &p : {Print{f.optBillWisePayment, "BILL WISE PAYMENT", 3},
             Print{f.optPendingPayment, "CUSTOMER PENDING PAYMENT", 2}}) {
        p.option->setChecked(true);
        ScreenKit::click(f.cmdSearch);
        frmViewReport *v = Reports::currentViewer();
        QVERIFY(v);
        QCOMPARE(v->windowTitle(), QString::fromLatin1(p.title));
        QCOMPARE(v->report().request.design, QStringLiteral("crBillWisePayment"));
        QCOMPARE(v->report().rows.size(), p.bills);
        QCOMPARE(v->report().periodText, QStringLiteral("FROM 01/03/2026 TO 31/03/2026"));
        QVERIFY(f.cmdSearch->isEnabled());
    }
    QVERIFY(t.rec.isEmpty());
}

QTEST_MAIN(TestFrmBillWisePayment)
#include "tst_frmbillwisepayment.moc"
