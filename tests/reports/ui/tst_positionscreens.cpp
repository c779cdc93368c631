// The party position, recovery, cash book and comparison screens, headless,
// opened through their menu entries: each option's report, the date and
// year checks, and the comparison's chart page.
#include "../LedgerFixture.h"
#include "../ReportReadBack.h"
#include "support/TestDb.h"
#include "support/ui/MessageRecorder.h"
#include "support/ui/ScreenKit.h"
#include "support/ui/ScreenTest.h"

#include "foundation/Schema.h"
#include "foundation/Session.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "reports/ui/frmComparisonReports.h"
#include "reports/ui/frmPositionReports.h"
#include "reports/ui/frmSingleDateReport.h"
#include "reports/ui/frmViewReport.h"

#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QtTest>

void registerReportsMenu(MenuRouter &router);

using ScreenKit::shoot;

namespace {
frmViewReport *viewer() { return Reports::currentViewer(); }
}

class tst_PositionScreens : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<ScreenTest> m_t;
    std::unique_ptr<MenuHost> m_host;

    void open(const QString &backend = QStringLiteral("sqlite"), bool closing = true)
    {
        m_t = std::make_unique<ScreenTest>(backend, QDate(2026, 3, 31));
        LedgerFixture::seedYear(m_t->db());
        Schema::rebuildKeptBalances(m_t->db());
        m_t->db().execute(QStringLiteral("DELETE FROM tblClosingDate"));
        if (closing)
            m_t->db().execute(QStringLiteral("INSERT INTO tblClosingDate (ClosingDate) VALUES (?)"), {QDate(2025, 12, 31)});
        m_host = std::make_unique<MenuHost>();
        registerReportsMenu(m_host->router);
        m_host->show();
    }

private slots:
    void cleanup()
    {
        delete viewer();
        m_host.reset();
        m_t.reset();
    }

    // Each option and the report it opens.
    void partyPositionOptions_data()
    {
        QTest::addColumn<QString>("option");
        QTest::addColumn<QString>("codeFrom");
        QTest::addColumn<QString>("codeTo");
        QTest::addColumn<QString>("design");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("heading");
        QTest::addColumn<int>("rows");
        QTest::newRow("customers") << "optReceivableCustomers" << "" << "" << "crTrialBalanceUptoDate"
                                   << "CUSTOMERS RECEIVABLE UPTO DATE" << "CUSTOMERS POSITION UPTO DATE" << 3;
        QTest::newRow("purchasers") << "optPayablePurchaser" << "" << "" << "crTrialBalanceUptoDate" << "PURCHASER PAYABLE UPTO DATE"
                                    << "PURCHASER PAYABLE UPTO DATE" << 2;
        QTest::newRow("parties between dates") << "optPartyPositionTwoDates" << "14-10-000" << "18-99-999" << "crPartyPosition"
                                               << "PARTY POSITION" << "PARTY POSITION" << 5;
        QTest::newRow("expenses and incomes") << "optPartyPositionTwoDates" << "20-00-000" << "__-__-___" << "crPartyPosition"
                                              << "PARTY POSITION" << "EXPENSE / INCOME COMPARISON REPORT" << 7;
    }
    void partyPositionOptions()
    {
        QFETCH(QString, option);
        QFETCH(QString, codeFrom);
        QFETCH(QString, codeTo);
        QFETCH(QString, design);
        QFETCH(QString, title);
        QFETCH(QString, heading);
        QFETCH(int, rows);
        open();
        auto *f = m_host->open<frmPartyPosition>(QStringLiteral("mnuPartyPosition"), QStringLiteral("frmPartyPosition"));
        QVERIFY(f);
        QVERIFY(m_t->rec.isEmpty());
        QCOMPARE(f->mskDateFrom->maskText(), QStringLiteral("01/01/2026"));
        QCOMPARE(f->mskDateTo->maskText(), QStringLiteral("31/03/2026"));
        QVERIFY(f->optReceivableCustomers->isChecked());
        QVERIFY(!f->mskCodeFrom->isEnabled());
        f->findChild<QRadioButton *>(option)->setChecked(true);
        QCOMPARE(f->mskCodeFrom->isEnabled(), option == QLatin1String("optPartyPositionTwoDates"));
        if (!codeFrom.isEmpty()) {
            f->mskCodeFrom->setMaskText(codeFrom);
            f->mskCodeTo->setMaskText(codeTo);   // blank: up to the last code
        }
        f->cmdPartyPosition->click();
        QVERIFY2(m_t->rec.isEmpty(), qPrintable(m_t->rec.texts().join(QLatin1Char('|'))));
        QVERIFY(viewer());
        QCOMPARE(viewer()->report().design.name, design);
        QCOMPARE(viewer()->windowTitle(), title);
        QCOMPARE(viewer()->report().heading, heading);
        QCOMPARE(viewer()->report().rows.size(), rows);
        shoot(f, QStringLiteral("frmPartyPosition-") + option);
    }

    void partyPositionChecks()
    {
        open(QStringLiteral("sqlite"), false);
        auto *f = m_host->open<frmPartyPosition>(QStringLiteral("mnuPartyPosition"), QStringLiteral("frmPartyPosition"));
        QCOMPARE(m_t->rec.last().text, QStringLiteral("Closing date is missing, please specify closing date"));
        f->optPartyPositionTwoDates->setChecked(true);
        f->mskDateFrom->setMaskText(QStringLiteral("01/02/2026"));
        f->mskDateTo->setMaskText(QStringLiteral("31/02/2026"));
        f->cmdPartyPosition->click();
        QVERIFY(!viewer());
        QVERIFY(m_t->rec.texts().size() >= 2);
    }

    void singleDatePosition()
    {
        open();
        auto *f = m_host->open<frmSingleDateReport>(QStringLiteral("mnuPartyPositionSingleDate"), QStringLiteral("frmSingleDateReport"));
        QVERIFY(f);
        QVERIFY(f->cmdSearch->isVisibleTo(f));
        QVERIFY(!f->cmdBalanceSheet->isVisibleTo(f));
        f->mskDate->setMaskText(QStringLiteral("31/01/2026"));
        f->cmdSearch->click();
        QVERIFY(viewer());
        QCOMPARE(viewer()->report().design.name, QStringLiteral("crPartyPositionSingleDate"));
        QCOMPARE(viewer()->windowTitle(), QStringLiteral("PARTY POSITION REPORT"));
        // Up to the 31st of January: the February invoice is not there yet.
        for (const Row &r : viewer()->report().rows)
            QVERIFY(r.text(QStringLiteral("PartyCode")) != QStringLiteral("18-10-001"));
        QVERIFY(viewer()->report().rows.size() > 0);
    }

    void periodScreens_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("screen");
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("design");
        QTest::addColumn<QString>("title");
        QTest::newRow("recovery") << "mnuRecoveryReports" << "frmRecoveryReports" << "cmdRecoveryReports" << "crRecoveryReport"
                                  << "RECOVERY REPORT";
        QTest::newRow("cash book") << "mnuCashBookBetweenTwoDates" << "frmCashBook" << "cmdCashBook" << "crCashBook"
                                   << "CASH BOOK";
    }
    void periodScreens()
    {
        QFETCH(QString, entry);
        QFETCH(QString, screen);
        QFETCH(QString, button);
        QFETCH(QString, design);
        QFETCH(QString, title);
        open();
        auto *f = m_host->open<PeriodReportScreen>(entry, screen);
        QVERIFY(f);
        QCOMPARE(f->mskDateFrom->maskText(), QStringLiteral("01/01/2026"));
        auto *print = f->findChild<QPushButton *>(button);
        QVERIFY(print);
        f->mskDateTo->setMaskText(QStringLiteral("__/__/____"));
        print->click();
        QCOMPARE(m_t->rec.last().text, QStringLiteral("Date is missing, please enter proper date"));
        QVERIFY(!viewer());
        f->mskDateTo->setMaskText(QStringLiteral("28/02/2026"));
        print->click();
        QVERIFY(viewer());
        QCOMPARE(viewer()->report().design.name, design);
        QCOMPARE(viewer()->windowTitle(), title);
        QVERIFY(viewer()->report().rows.size() > 0);
        shoot(f, screen);
    }

    // The two comparisons: caption, label and button of each, the year
    // check, and the report with its chart page, in the viewer and in PDF.
    void comparisons_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QString>("label");
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("heading");
        QTest::addColumn<int>("rows");
        QTest::newRow("expenses") << "mnuMonthlyExpenseReport" << "MONTHLY EXPENSES COMPARISON REPORT" << "EXPENSE COMP"
                                  << "cmdMonthlyExpenseReport" << "MONTHLY EXPENSES REPORT"
                                  << "MONTHLY EXPENSE COMPARISON REPORT" << 2;
        QTest::newRow("profit and loss") << "mnuMonthlyProfitAndLossReport" << "MONTHLY PROFIT & LOSS COMPARISON REPORT"
                                         << "PROFIT COMP" << "cmdMonthlyProfitAndLossReport" << "MONTHLY PROFIT AND LOSS REPORT"
                                         << "MONTHLY INCOM COMPARISON REPORT" << 1;
    }
    void comparisons()
    {
        QFETCH(QString, entry);
        QFETCH(QString, caption);
        QFETCH(QString, label);
        QFETCH(QString, button);
        QFETCH(QString, title);
        QFETCH(QString, heading);
        QFETCH(int, rows);
        open();
        auto *f = m_host->open<frmComparisonReports>(entry, QStringLiteral("frmComparisonReports"));
        QVERIFY(f);
        QCOMPARE(f->findChild<QLabel *>(QStringLiteral("lblTitle"))->text(), caption);
        QCOMPARE(f->lblReport->text(), label);
        auto *print = f->findChild<QPushButton *>(button);
        QVERIFY(print->isVisibleTo(f));
        QCOMPARE(f->cmdMonthlyExpenseReport->isVisibleTo(f), button == QLatin1String("cmdMonthlyExpenseReport"));
        QCOMPARE(f->mskDate->maskText(), QStringLiteral("2026"));

        f->mskDate->setMaskText(QStringLiteral("20__"));
        print->click();
        QVERIFY(!m_t->rec.isEmpty());
        QVERIFY(!viewer());

        f->mskDate->setMaskText(QStringLiteral("2026"));
        print->click();
        QVERIFY(viewer());
        const Reports::RenderedReport &r = viewer()->report();
        QCOMPARE(viewer()->windowTitle(), title);
        QCOMPARE(r.heading, heading);
        QCOMPARE(r.rows.size(), rows);
        QVERIFY(r.hasChartPage());
        QVERIFY(r.pageCount() >= 2);
        QTemporaryDir dir;
        const QString text = ReportReadBack::pdfText(r, dir.path());
        QCOMPARE(text.count(heading), r.pageCount());
        QVERIFY(text.contains(QStringLiteral("TOTAL")));
        QVERIFY(text.contains(QStringLiteral("JAN")));
        shoot(f, QStringLiteral("frmComparisonReports-") + button);
        shoot(viewer(), QStringLiteral("viewer-") + button);
        const QString keep = qEnvironmentVariable("TESSEL_SCREENSHOT_DIR");
        if (!keep.isEmpty())
            Reports::exportFile(r, QDir(keep).filePath(button + QStringLiteral(".pdf")), nullptr);
    }
};

QTEST_MAIN(tst_PositionScreens)
#include "tst_positionscreens.moc"
