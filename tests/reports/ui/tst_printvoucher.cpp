// The voucher printing screen and the report viewer, headless: the load,
// the checks and their words, the titles and headings of the listings,
// the viewer's zoom, pages, export and drill-down, and the menu entries.
#include "support/TestDb.h"
#include "support/ui/MessageRecorder.h"
#include "support/ui/ScreenKit.h"

#include "foundation/Session.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MenuRouter.h"
#include "reports/ReportFrame.h"
#include "reports/ui/frmPrintVoucher.h"
#include "reports/ui/frmViewReport.h"

#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QtTest>

using ScreenKit::shoot;

namespace {

Money m(const char *t) { return *Money::parse(QString::fromLatin1(t)); }

void post(SessionConnection &db, const QString &type, int no, const QDate &date, const QString &code,
          const QString &name, Money dr, Money cr, const QDate &entry)
{
    db.execute(QStringLiteral("INSERT INTO tblPartyBalance (VoucherType, VoucherNo, VDate, InvoiceNo, PartyCode, PartyName, "
                              "PartyDR, PartyCR, PartyBalance, PartyDesc, CareOf, UserName, EntryDate) "
                              "VALUES (?, ?, ?, '', ?, ?, ?, ?, ?, 'LINE', '', 'CLERK', ?)"),
               {type, no, date, code, name, dr.toVariant(), cr.toVariant(), (dr - cr).toVariant(), entry});
}

void seed(SessionConnection &db)
{
    Transaction tx(db);
    db.execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES ('21-10-001', 'ELECTRICITY')"));
    db.execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {QDate(2025, 12, 31)});
    const QDate d(2026, 1, 5);
    post(db, "CP", 1, d, "21-10-001", "ELECTRICITY", m("100"), Money(), d);
    post(db, "CP", 1, d, "19-10-001", "CASH IN HAND", Money(), m("100"), d);
    post(db, "JV", 1, d, "21-10-001", "ELECTRICITY", m("40.50"), Money(), QDate(2026, 1, 20));
    post(db, "JV", 1, d, "19-10-001", "CASH IN HAND", Money(), m("40.50"), QDate(2026, 1, 20));
    tx.commit();
}

} // namespace

class tst_PrintVoucher : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestDb::Year> m_year;

    void openYear(const QString &backend)
    {
        m_year = std::make_unique<TestDb::Year>(backend);
        session().connection = m_year->connect();
        session().today = QDate(2026, 1, 31);
        session().reportZoom = 118;
        session().companyName.clear();
        seed(session().db());
    }

private slots:
    void cleanup()
    {
        if (auto *v = Reports::currentViewer())
            delete v;
        session().connection.reset();
        m_year.reset();
    }

    void loadFillsTypesAndDates_data() { TestDb::addBackends(); }
    void loadFillsTypesAndDates()
    {
        TESSEL_BACKEND()
        openYear(backend);
        MessageRecorder rec;
        frmPrintVoucher f;
        f.onOpened();
        QVERIFY(rec.isEmpty());
        QCOMPARE(ScreenKit::items(f.cmbVoucherType), (QStringList{"CP", "JV"}));
        QCOMPARE(f.cmbVoucherTypeSingle->count(), 2);
        QCOMPARE(f.mskDateFrom->maskText(), QStringLiteral("01/01/2026"));
        QCOMPARE(f.mskDateTo->maskText(), QStringLiteral("31/01/2026"));

        // No closing date: the message, and the dates stay masks.
        session().db().execute(QStringLiteral("DELETE FROM tblClosingDate"));
        frmPrintVoucher g;
        g.onOpened();
        QCOMPARE(rec.last().text, QStringLiteral("Closing date is missing, please specify closing date"));
        QVERIFY(rec.last().isCritical());
        QCOMPARE(g.mskDateFrom->maskText(), QStringLiteral("__/__/____"));
        QCOMPARE(g.mskDateTo->maskText(), QStringLiteral("__/__/____"));
    }

    void singleVoucherChecks()
    {
        openYear(QStringLiteral("sqlite"));
        MessageRecorder rec;
        frmPrintVoucher f;
        f.onOpened();
        f.show();
        f.cmdVoucherNoOkay->click();
        QCOMPARE(rec.last().text, QStringLiteral("Please enter voucher #, empty field doesn't show any voucher"));
        QVERIFY(!Reports::currentViewer());

        f.txtShowVoucherNo->setText(QStringLiteral("1"));
        f.cmdVoucherNoOkay->click();
        QCOMPARE(rec.last().text, QStringLiteral("Voucher type is missing, please select voucher type"));
        QVERIFY(!Reports::currentViewer());

        f.cmbVoucherType->setCurrentText(QStringLiteral("JV"));
        f.mskDate->setMaskText(QStringLiteral("05/01/2026"));
        rec.clear();
        f.cmdVoucherNoOkay->click();
        QVERIFY2(rec.isEmpty(), qPrintable(rec.texts().join(QLatin1Char('|'))));
        frmViewReport *v = Reports::currentViewer();
        QVERIFY(v);
        QCOMPARE(v->windowTitle(), QStringLiteral("SINGLE VOUCHER"));
        QCOMPARE(v->report().rows.size(), 2);
        // The first zoom fits the page's width to the window.
        QVERIFY(v->crViewer->width() <= v->findChild<QScrollArea *>()->viewport()->width());
        QVERIFY(v->zoom() > 25);
        QCOMPARE(session().workDate, QDate(2026, 1, 5));
        QVERIFY(f.cmdVoucherNoOkay->isEnabled());
        QVERIFY(f.frOuterVoucherNo->isVisible());
        shoot(&f, QStringLiteral("frmPrintVoucher-single"));

        // A voucher that does not exist: an empty report, no message.
        f.txtShowVoucherNo->setText(QStringLiteral("77"));
        f.cmdVoucherNoOkay->click();
        QVERIFY(rec.isEmpty());
        QCOMPARE(Reports::currentViewer(), v); // the one viewer shows the latest report
        QCOMPARE(v->report().rows.size(), 0);
    }

    void listings_data()
    {
        QTest::addColumn<QString>("option");
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("heading");
        QTest::addColumn<int>("rows");
        QTest::newRow("single type") << "optSingleVoucher" << "CP" << "CP VOUCHER LISTING" << "CP VOUCHER LISTING" << 2;
        QTest::newRow("single, no type") << "optSingleVoucher" << "" << " VOUCHER LISTING" << " VOUCHER LISTING" << 0;
        QTest::newRow("all") << "optAllVouchers" << "" << "VOUCHER LISTING" << "ALL VOUCHER LISTING" << 4;
        QTest::newRow("bounced") << "optBounceVouchers" << "" << "BOUNCE VOUCHERS" << "BOUNCE VOUCHER LISTING" << 0;
        // Typed from the 10th on: only the JV, dated the 5th but entered on the 20th.
        QTest::newRow("record tracking") << "optRecordTracking" << "" << "RECORD TRACKING" << "RECORD TRACKING" << 2;
        QTest::newRow("no option") << "" << "" << "VOUCHER LISTING" << "VOUCHER LISTING" << 4;
    }
    void listings()
    {
        QFETCH(QString, option);
        QFETCH(QString, type);
        QFETCH(QString, title);
        QFETCH(QString, heading);
        QFETCH(int, rows);
        openYear(QStringLiteral("sqlite"));
        MessageRecorder rec;
        frmPrintVoucher f;
        f.onOpened();
        f.showVoucherDatePanel(true);
        f.show();
        f.mskDateFrom->setMaskText(QStringLiteral("10/01/2026"));
        if (option != QLatin1String("optRecordTracking"))
            f.mskDateFrom->setMaskText(QStringLiteral("01/01/2026"));
        if (!option.isEmpty())
            f.findChild<QRadioButton *>(option)->setChecked(true);
        f.cmbVoucherTypeSingle->setCurrentText(type);
        f.cmdDailyVoucherListing->click();
        QVERIFY2(rec.isEmpty(), qPrintable(rec.texts().join(QLatin1Char('|'))));
        frmViewReport *v = Reports::currentViewer();
        QVERIFY(v);
        QCOMPARE(v->windowTitle(), title);
        QCOMPARE(v->report().heading, heading);
        QCOMPARE(v->report().rows.size(), rows);
        QCOMPARE(session().periodTo, QDate(2026, 1, 31));
        QVERIFY(v->report().periodText.startsWith(QLatin1String("FROM ")));
        // The period row is written for the views that read it.
        QCOMPARE(session().db().selectOne(QStringLiteral("SELECT EDate FROM tblTLClientInfo"))->date(0), QDate(2026, 1, 31));
    }

    void listingChecksDates()
    {
        openYear(QStringLiteral("sqlite"));
        MessageRecorder rec;
        frmPrintVoucher f;
        f.onOpened();
        f.showVoucherDatePanel(false);
        QVERIFY(f.optRecordTracking->isHidden());
        f.mskDateTo->setMaskText(QStringLiteral("31/02/2026"));
        f.cmdDailyVoucherListing->click();
        QVERIFY(!rec.isEmpty());
        QVERIFY(rec.last().isCritical());
        QVERIFY(!Reports::currentViewer());
    }

    void viewer()
    {
        openYear(QStringLiteral("sqlite"));
        {
            Transaction tx(session().db());
            for (int i = 2; i < 200; ++i) {
                post(session().db(), "CP", i, QDate(2026, 1, 6), "21-10-001", "ELECTRICITY", m("10"), Money(), QDate(2026, 1, 6));
                post(session().db(), "CP", i, QDate(2026, 1, 6), "19-10-001", "CASH IN HAND", Money(), m("10"), QDate(2026, 1, 6));
            }
            tx.commit();
        }
        MessageRecorder rec;
        // The logged-on session's letterhead heads the pages and is written
        // to the period row with the period.
        session().companyName = QStringLiteral("EVERGREEN PRINTERS (PVT) LTD");
        session().companyAddress = QStringLiteral("14-B INDUSTRIAL AREA, LAHORE");
        session().companyPhone = QStringLiteral("042-111-222");
        Reports::ReportRequest req{QStringLiteral("crVoucherListing"), QStringLiteral("VOUCHER LISTING")};
        req.from = QDate(2026, 1, 1);
        req.to = QDate(2026, 1, 31);
        frmViewReport *v = Reports::showReport(nullptr, req);
        QVERIFY(v);
        QCOMPARE(v->report().header.clientName, QStringLiteral("EVERGREEN PRINTERS (PVT) LTD"));
        QCOMPARE(session().db().scalar(QStringLiteral("SELECT TLClientName FROM tblTLClientInfo")).toString().trimmed(),
                 QStringLiteral("EVERGREEN PRINTERS (PVT) LTD"));
        session().companyName.clear();
        int pages = v->report().pageCount();
        QVERIFY(pages > 3);
        // The keys work from the moment the viewer opens, whatever has the
        // focus: the page number box does not take PgUp for itself.
        QVERIFY(QTest::qWaitForWindowActive(v));
        QCOMPARE(QApplication::focusWidget(), static_cast<QWidget *>(v->crViewer));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_PageDown);
        QCOMPARE(v->currentPage(), 1);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_End);
        QCOMPARE(v->currentPage(), pages - 1);
        v->txtPage->setFocus();
        QTest::keyClick(v->txtPage, Qt::Key_PageUp);
        QCOMPARE(v->currentPage(), pages - 2);
        QTest::keyClick(v->cmbZoom, Qt::Key_Home);
        QCOMPARE(v->currentPage(), 0);
        // Ctrl++ zooms and the zoom chosen is kept for the next report;
        // "Page width" fits the page again.
        const int fitted = v->zoom();
        QTest::keyClick(v->crViewer, Qt::Key_Plus, Qt::ControlModifier);
        QCOMPARE(v->zoom(), fitted + 25);
        QVERIFY(Reports::showReport(nullptr, req) == v);
        QCOMPARE(v->zoom(), fitted + 25);
        v->chooseZoom(0);
        QCOMPARE(v->zoom(), fitted);
        QCOMPARE(v->cmbZoom->currentText(), QStringLiteral("Page width"));
        pages = v->report().pageCount();
        QCOMPARE(v->lblPageCount->text(), QStringLiteral("of %1").arg(pages));
        QVERIFY(!v->cmdPreviousPage->isEnabled());
        v->cmdNextPage->click();
        QCOMPARE(v->currentPage(), 1);
        QCOMPARE(v->txtPage->value(), 2);
        v->cmdLastPage->click();
        QCOMPARE(v->currentPage(), pages - 1);
        QVERIFY(!v->cmdNextPage->isEnabled());
        QTest::keyClick(v, Qt::Key_PageUp);
        QCOMPARE(v->currentPage(), pages - 2);
        QTest::keyClick(v->crViewer, Qt::Key_Home); // the page, not the scroll area, takes the key
        QCOMPARE(v->currentPage(), 0);
        QTest::keyClick(v->crViewer, Qt::Key_PageDown);
        QCOMPARE(v->currentPage(), 1);
        v->txtPage->setValue(1);
        QCOMPARE(v->currentPage(), 0);
        v->setZoom(75);
        QCOMPARE(v->crViewer->width(), v->crViewer->sizeHint().width());
        v->chooseZoom(0);
        QTest::qWait(0);
        shoot(v, QStringLiteral("frmViewReport-listing"));

        QTemporaryDir dir;
        for (const char *ext : {"pdf", "xlsx", "csv"}) {
            const QString path = dir.filePath(QStringLiteral("r.") + QLatin1String(ext));
            QVERIFY(v->exportTo(path));
            QVERIFY(QFileInfo(path).size() > 100);
        }
        QVERIFY(!v->exportTo(dir.filePath(QStringLiteral("r.doc"))));
        QVERIFY(rec.last().text.contains(QLatin1String(".pdf, .xlsx or .csv")));

        // A double click on a voucher line opens that voucher.
        int line = -1;
        for (int i = 0; i < v->report().lines.size() && line < 0; ++i)
            if (v->report().lines.at(i).kind == Reports::ReportLine::Kind::Detail)
                line = i;
        frmViewReport *voucher = v->drillDown(line);
        QVERIFY(voucher);
        QVERIFY(voucher != v);
        QCOMPARE(voucher->report().design.name, QStringLiteral("crSingleVoucher"));
        QCOMPARE(voucher->report().rows.size(), 2);
        delete voucher;

        // The chart's ledger link names a design that may not be there yet:
        // a message, not a failure.
        frmViewReport *chart = Reports::showReport(nullptr, {QStringLiteral("crChartOfAccount"), QStringLiteral("CHART")});
        QVERIFY(chart);
        int acct = -1;
        for (int i = 0; i < chart->report().lines.size() && acct < 0; ++i)
            if (chart->report().lines.at(i).kind == Reports::ReportLine::Kind::Detail)
                acct = i;
        rec.clear();
        frmViewReport *ledger = chart->drillDown(acct);
        if (ledger)
            delete ledger;
        else
            QVERIFY(!rec.isEmpty());

        // A report that cannot be made leaves a message and no viewer.
        rec.clear();
        QVERIFY(!Reports::showReport(nullptr, {QStringLiteral("crNoSuchDesign")}));
        QCOMPARE(rec.count(), 1);
        QVERIFY(rec.last().isCritical());
    }

    void menuEntries()
    {
        MenuRouter router;
        registerReportsMenu(router);
        for (const char *name : {"mnuPrintVoucher", "mnuVoucherListing", "mnuRecordTracking", "mnuChartOfAccountByAccount",
                                 "mnuChartOfAccountByName", "mnuCashAndBankUptoDate", "mnuViewItemCoding"})
            QVERIFY2(router.has(QLatin1String(name)), name);
    }
};

QTEST_MAIN(tst_PrintVoucher)
#include "tst_printvoucher.moc"
