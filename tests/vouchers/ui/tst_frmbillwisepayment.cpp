// The bill-wise payment screen driven through its controls, headless:
// opened from its menu entry with its three captions, the search that
// fills the two lists, bills moved across by Enter and double click (one
// and several), a pick under another option that does nothing, the date
// refusal, and the two printed lists.
#include "foundation/Session.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MenuRouter.h"
#include "reports/ui/frmViewReport.h"
#include "sales/InvoicePosting.h"
#include "sales/tst_invoicefixture.h"
#include "support/TestDb.h"
#include "support/ui/MessageRecorder.h"
#include "support/ui/ScreenKit.h"
#include "support/ui/ScreenTest.h"
#include "vouchers/ui/frmBillWisePayment.h"

#include <QComboBox>
#include <QItemSelectionModel>
#include <QLabel>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QtTest>

using namespace InvoiceFixture;

namespace {

class Host : public MenuHost
{
public:
    Host() { registerVouchersMenu(router); }
};

void saveInvoices(SessionConnection &db)
{
    prepareYear(db);
    InvoicePosting posting(db, kUser, kToday);
    QVERIFY(posting.saveNew(header(QStringLiteral("PRESS"), 1), threeLines(), NumberPolicy::Typed).ok);
    QVERIFY(posting
                .saveNew(header(QStringLiteral("PACKAGING"), 1),
                         {line(QStringLiteral("CREDIT"), QStringLiteral("TAG"), QStringLiteral("100"),
                               QStringLiteral("3"))},
                         NumberPolicy::Typed)
                .ok);
    QVERIFY(posting
                .saveNew(header(QStringLiteral("PRESS"), 2, kDay, QStringLiteral("17-10-002"),
                                QStringLiteral("SUNRISE PACKAGES")),
                         {line(QStringLiteral("CREDIT"), QStringLiteral("BOX"), QStringLiteral("100"),
                               QStringLiteral("5"))},
                         NumberPolicy::Typed)
                .ok);
}

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

QStringList captions(QTableView *g)
{
    QStringList out;
    for (int c = 0; c < g->model()->columnCount(); ++c)
        out << g->model()->headerData(c, Qt::Horizontal).toString();
    return out;
}

void typeSearch(frmBillWisePayment *f, const QString &code, const QString &from, const QString &to)
{
    f->mskPartyCode->setFocus();
    f->mskPartyCode->setMaskText(code);
    f->mskDateFrom->setMaskText(from);
    f->mskDateTo->setMaskText(to);
}

void chooseRow(QTableView *g, int row)
{
    g->setFocus();
    g->setCurrentIndex(g->model()->index(row, 0));
}

const QStringList kPendingAtFirst = {"1 CREDIT 300.00 PACKAGING", "1 CASH 3,510.00 PRESS", "1 CREDIT 8,290.00 PRESS"};

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
    void pickOnlyWhileSearching();
    void refusesBadDates();
    void printedLists_data();
    void printedLists();
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
    QCOMPARE(captions(f->dgPending), (QStringList{"INVOICE #", "DESC", "AMOUNT", "TITLE"}));
    QCOMPARE(captions(f->dgDone), captions(f->dgPending));

    // No party: both lists empty, and nothing said.
    ScreenKit::click(f->cmdSearch);
    QVERIFY(t.rec.isEmpty());
    QCOMPARE(f->dgPending->model()->rowCount(), 0);

    // The code names the party; the search lists its bills, pending first.
    typeSearch(f, QStringLiteral("17-10-001"), QStringLiteral("01/03/2026"), QStringLiteral("31/03/2026"));
    QCOMPARE(f->cmbPartyName->currentText(), QStringLiteral("CRESCENT TEXTILES"));
    ScreenKit::click(f->cmdSearch);
    QVERIFY2(t.rec.isEmpty(), qPrintable(t.rec.texts().join(QLatin1Char('\n'))));
    QCOMPARE(rows(f->dgPending), kPendingAtFirst);
    QCOMPARE(rows(f->dgDone), QStringList());
    QCOMPARE(f->focusWidget(), f->dgPending);

    // Enter on a pending bill pays it; the list keeps its place.
    chooseRow(f->dgPending, 2);
    QTest::keyClick(f->dgPending, Qt::Key_Return);
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
    QCOMPARE(rows(f->dgDone), (QStringList{"1 CREDIT 300.00 PACKAGING", "1 CASH 3,510.00 PRESS",
                                           "1 CREDIT 8,290.00 PRESS"}));
    ScreenKit::shoot(&host, QStringLiteral("billwise-") + backend);

    // A double click on a paid bill sends it back to pending.
    chooseRow(f->dgDone, 1);
    const QRect cell = f->dgDone->visualRect(f->dgDone->model()->index(1, 1));
    QTest::mouseClick(f->dgDone->viewport(), Qt::LeftButton, {}, cell.center());
    QCOMPARE(rows(f->dgDone).size(), 3); // a click alone marks nothing
    QTest::mouseDClick(f->dgDone->viewport(), Qt::LeftButton, {}, cell.center());
    QCOMPARE(rows(f->dgPending), QStringList{"1 CASH 3,510.00 PRESS"});
    QCOMPARE(rows(f->dgDone).size(), 2);

    // A bill deleted on another workstation meanwhile: the pick is refused
    // and the lists show the bills as they stand.
    t.db().execute(QStringLiteral("DELETE FROM tblInvoice WHERE TitleName = 'PACKAGING'"));
    chooseRow(f->dgDone, 0);
    QTest::keyClick(f->dgDone, Qt::Key_Return);
    QCOMPARE(t.rec.last().text, BillWiseMessages::kChangedElsewhere);
    QVERIFY(t.rec.last().isCritical());
    QCOMPARE(rows(f->dgDone), QStringList{"1 CREDIT 8,290.00 PRESS"});
    QCOMPARE(rows(f->dgPending), QStringList{"1 CASH 3,510.00 PRESS"});
}

void TestFrmBillWisePayment::pickOnlyWhileSearching()
{
    ScreenTest t(QStringLiteral("sqlite"), kToday);
    saveInvoices(t.db());
    frmBillWisePayment f;
    ScreenKit::showActive(&f);
    f.onOpened();
    typeSearch(&f, QStringLiteral("17-10-001"), QStringLiteral("01/03/2026"), QStringLiteral("31/03/2026"));
    ScreenKit::click(f.cmdSearch);
    QCOMPARE(rows(f.dgPending), kPendingAtFirst);

    f.optBillWisePayment->setChecked(true);
    chooseRow(f.dgPending, 0);
    QTest::keyClick(f.dgPending, Qt::Key_Return);
    QCOMPARE(rows(f.dgPending), kPendingAtFirst);
    QCOMPARE(TestDb::count(t.db(), QStringLiteral("SELECT COUNT(*) FROM tblInvoice WHERE Status = 'DONE'")), 0);
    QVERIFY(t.rec.isEmpty());
}

void TestFrmBillWisePayment::refusesBadDates()
{
    ScreenTest t(QStringLiteral("sqlite"), kToday);
    saveInvoices(t.db());
    frmBillWisePayment f;
    ScreenKit::showActive(&f);
    f.onOpened();
    typeSearch(&f, QStringLiteral("17-10-001"), QStringLiteral("01/03/2026"), QStringLiteral("31/02/2026"));
    ScreenKit::click(f.cmdSearch);
    QCOMPARE(t.rec.texts(), QStringList{"Wrong date, please enter correct date"});
    QCOMPARE(f.focusWidget(), f.mskDateTo);
    QCOMPARE(f.dgPending->model()->rowCount(), 0);

    t.rec.clear();
    f.mskDateFrom->setMaskText(QStringLiteral("01/__/2026"));
    f.mskDateTo->setMaskText(QStringLiteral("31/03/2026"));
    ScreenKit::click(f.cmdSearch);
    QCOMPARE(t.rec.texts(), QStringList{"Date is missing, please enter proper date"});
    QCOMPARE(f.focusWidget(), f.mskDateFrom);
}

void TestFrmBillWisePayment::printedLists_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("title");
    QTest::addColumn<int>("bills");
    QTest::newRow("every bill") << "optBillWisePayment" << "BILL WISE PAYMENT" << 3;
    QTest::newRow("pending") << "optPendingPayment" << "CUSTOMER PENDING PAYMENT" << 2;
}

void TestFrmBillWisePayment::printedLists()
{
    QFETCH(QString, option);
    QFETCH(QString, title);
    QFETCH(int, bills);
    ScreenTest t(QStringLiteral("sqlite"), kToday);
    saveInvoices(t.db());
    frmBillWisePayment f;
    ScreenKit::showActive(&f);
    f.onOpened();
    typeSearch(&f, QStringLiteral("17-10-001"), QStringLiteral("01/03/2026"), QStringLiteral("31/03/2026"));
    ScreenKit::click(f.cmdSearch);
    chooseRow(f.dgPending, 2);
    QTest::keyClick(f.dgPending, Qt::Key_Return);

    f.findChild<QRadioButton *>(option)->setChecked(true);
    ScreenKit::click(f.cmdSearch);
    QVERIFY2(t.rec.isEmpty(), qPrintable(t.rec.texts().join(QLatin1Char('\n'))));
    frmViewReport *v = Reports::currentViewer();
    QVERIFY(v);
    QCOMPARE(v->windowTitle(), title);
    QCOMPARE(v->report().request.design, QStringLiteral("crBillWisePayment"));
    QCOMPARE(v->report().rows.size(), bills);
    QCOMPARE(v->report().periodText, QStringLiteral("FROM 01/03/2026 TO 31/03/2026"));
    QVERIFY(f.cmdSearch->isEnabled());
}

QTEST_MAIN(TestFrmBillWisePayment)
#include "tst_frmbillwisepayment.moc"
