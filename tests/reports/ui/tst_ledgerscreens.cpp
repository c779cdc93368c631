// The ledger, ageing and statement screens, headless: their dates, the
// refusal of a missing party, each option's report and title, and the
// menu entries that open them.
#include "../LedgerFixture.h"
#include "support/TestDb.h"
#include "support/ui/MessageRecorder.h"
#include "support/ui/ScreenKit.h"

#include "foundation/Session.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MenuRouter.h"
#include "accounts/ui/AccountPick.h"
#include "reports/ui/frmPartySearch.h"
#include "reports/ui/frmProfitAndLoss.h"
#include "reports/ui/frmSingleDateReport.h"
#include "reports/ui/frmTrialBalance.h"
#include "reports/ui/frmViewReport.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QtTest>

using ScreenKit::shoot;

namespace {

frmViewReport *viewer() { return Reports::currentViewer(); }

} // namespace

class tst_LedgerScreens : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestDb::Year> m_year;

    void openYear(const QString &backend)
    {
        m_year = std::make_unique<TestDb::Year>(backend);
        session().connection = m_year->connect();
        session().today = QDate(2026, 3, 31);
        session().firstOpenDate = QDate(2026, 1, 1);
        session().reportZoom = 100;
        LedgerFixture::seedYear(session().db());
    }

    void pickParty(frmPartySearch &f, const QString &name)
    {
        f.cmbPartyName->setCurrentText(name);
        f.pick()->setCode(f.pick()->code()); // settle the code from the name
        if (f.pick()->code().isEmpty()) {
            const int i = f.cmbPartyName->findText(name);
            if (i >= 0)
                f.pick()->setCode(f.cmbPartyName->itemData(i).toString());
        }
    }

private slots:
    void cleanup()
    {
        if (auto *v = viewer())
            delete v;
        session().connection.reset();
        m_year.reset();
    }

    void partySearchLoads_data() { TestDb::addBackends(); }
    void partySearchLoads()
    {
        TESSEL_BACKEND()
        openYear(backend);
        MessageRecorder rec;
        frmPartySearch f;
        f.onOpened();
        QVERIFY(rec.isEmpty());
        QCOMPARE(f.mskDateFrom->maskText(), QStringLiteral("01/01/2026"));
        QCOMPARE(f.mskDateTo->maskText(), QStringLiteral("31/03/2026"));
        QCOMPARE(f.cmbPartyName->currentText(), QString());
        QVERIFY(f.cmbPartyName->findText(QStringLiteral("CASH IN HAND")) >= 0);
        QCOMPARE(f.cmbPartyName->findText(QStringLiteral("CUSTOMERS")), -1);
        QCOMPARE(f.optLedger->text(), QStringLiteral("LEDGER OF ACCOUNT"));
        QCOMPARE(f.optAgeingReportPeriod->text(), QStringLiteral("AGING REPORT 30-90 DAYS"));
    }

    // Each option of the party screen: the report, its window title and
    // what it reads. Only the period ageing runs without a party.
    void partySearchOptions_data()
    {
        QTest::addColumn<QString>("option");
        QTest::addColumn<bool>("voucherWise");
        QTest::addColumn<QString>("party");
        QTest::addColumn<QString>("design");
        QTest::addColumn<QString>("title");
        QTest::addColumn<int>("rows");
        QTest::newRow("ledger") << "optLedger" << false << "ALPHA TRADERS" << "crLedgerofAccount" << "LEDGER ALPHA TRADERS" << 5;
        QTest::newRow("ledger voucher wise") << "optLedger" << true << "ALPHA TRADERS" << "crLedgerOfAccountVW"
                                             << "LEDGER ALPHA TRADERS" << 5;
        QTest::newRow("ledger with sale tax") << "optLedgerWithSaleTax" << false << "BETA FOODS" << "crLedgerWithSaleTax"
                                              << "LEDGER BETA FOODS" << 5;
        QTest::newRow("cash ledger") << "optLedger" << false << "CASH IN HAND" << "crLedgerofAccount" << "LEDGER CASH IN HAND" << 6;
        QTest::newRow("ageing") << "optAgingReport" << false << "ALPHA TRADERS" << "crAgingReport" << "AGING REPORT ALPHA TRADERS" << 1;
        QTest::newRow("ageing, in credit") << "optAgingReport" << false << "PAPER HOUSE" << "crAgingReport" << "AGING REPORT PAPER HOUSE" << 0;
        QTest::newRow("period ageing, one party") << "optAgeingReportPeriod" << false << "BETA FOODS" << "crAgeingReportPeriod"
                                                  << "AGEING REPORT" << 1;
        QTest::newRow("period ageing, all parties") << "optAgeingReportPeriod" << false << "" << "crAgeingReportPeriod"
                                                    << "AGEING REPORT" << 2;
    }
    void partySearchOptions()
    {
        QFETCH(QString, option);
        QFETCH(bool, voucherWise);
        QFETCH(QString, party);
        QFETCH(QString, design);
        QFETCH(QString, title);
        QFETCH(int, rows);
        openYear(QStringLiteral("sqlite"));
        MessageRecorder rec;
        frmPartySearch f;
        f.onOpened();
        f.setVoucherWise(voucherWise);
        f.show();
        pickParty(f, party);
        f.findChild<QRadioButton *>(option)->setChecked(true);
        f.cmdLedgerOfAccount->click();
        QVERIFY2(rec.isEmpty(), qPrintable(rec.texts().join(QLatin1Char('|'))));
        QVERIFY(viewer());
        QCOMPARE(viewer()->report().design.name, design);
        QCOMPARE(viewer()->windowTitle(), title);
        QCOMPARE(viewer()->report().rows.size(), rows);
        QCOMPARE(viewer()->report().periodText.isEmpty(), false);
        QVERIFY(f.cmdLedgerOfAccount->isEnabled());
        // The ageing's work rows are gone once the report has read them.
        QCOMPARE(session().db().scalar(QStringLiteral("SELECT COUNT(*) FROM PartyBalanceEmpty")).toLongLong(), qint64(0));
        shoot(&f, QStringLiteral("frmPartySearch-") + option);
    }

    // Without a party the account reports are refused with the shared
    // message, in the order of the checks: the party, then the dates.
    void partySearchRefuses_data()
    {
        QTest::addColumn<QString>("option");
        QTest::addColumn<QString>("party");
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("message");
        const QString noParty = QStringLiteral("Party name not found, please enter correct party name");
        QTest::newRow("ledger, no party") << "optLedger" << "" << "01/01/2026" << noParty;
        QTest::newRow("sale tax, unknown party") << "optLedgerWithSaleTax" << "NO SUCH PARTY" << "01/01/2026" << noParty;
        QTest::newRow("ageing, no party") << "optAgingReport" << "" << "01/01/2026" << noParty;
        QTest::newRow("party first, then the date") << "optLedger" << "" << "__/__/____" << noParty;
        QTest::newRow("period ageing checks the date") << "optAgeingReportPeriod" << "" << "__/__/____"
                                                       << "Date is missing, please enter proper date";
        QTest::newRow("ledger, wrong date") << "optLedger" << "ALPHA TRADERS" << "32/01/2026"
                                            << "Wrong date, please enter correct date";
    }
    void partySearchRefuses()
    {
        QFETCH(QString, option);
        QFETCH(QString, party);
        QFETCH(QString, from);
        QFETCH(QString, message);
        openYear(QStringLiteral("sqlite"));
        MessageRecorder rec;
        frmPartySearch f;
        f.onOpened();
        f.show();
        pickParty(f, party);
        f.mskDateFrom->setMaskText(from);
        f.findChild<QRadioButton *>(option)->setChecked(true);
        f.cmdLedgerOfAccount->click();
        QCOMPARE(rec.count(), 1);
        QVERIFY(rec.last().isCritical());
        QCOMPARE(rec.last().text, message);
        QVERIFY(!viewer());
        QVERIFY(f.cmdLedgerOfAccount->isEnabled());
    }

    void trialBalanceOptions_data()
    {
        QTest::addColumn<QString>("option");
        QTest::addColumn<QString>("design");
        QTest::addColumn<QString>("heading");
        QTest::newRow("without contact") << "optWithoutContact" << "crTrialBalanceWithoutContact" << "TRIAL BALANCE UPTO DATE";
        QTest::newRow("without closing") << "optWithoutClosing" << "crTrialBalanceUptoDate" << "TRIAL BALANCE";
        QTest::newRow("between two dates") << "optBetweenTwoDates" << "crTrialBalance" << "TRIAL BALANCE";
    }
    void trialBalanceOptions()
    {
        QFETCH(QString, option);
        QFETCH(QString, design);
        QFETCH(QString, heading);
        openYear(QStringLiteral("sqlite"));
        MessageRecorder rec;
        frmTrialBalance f;
        f.onOpened();
        f.show();
        QVERIFY(f.optWithoutContact->isChecked());
        QVERIFY(!f.mskDateFrom->isEnabled() && !f.mskDateTo->isEnabled());
        QCOMPARE(f.mskDateFrom->maskText(), QStringLiteral("__/__/____"));
        f.findChild<QRadioButton *>(option)->setChecked(true);
        QCOMPARE(f.mskDateFrom->isEnabled(), option == QLatin1String("optBetweenTwoDates"));
        f.mskDateFrom->setMaskText(QStringLiteral("01/02/2026"));
        f.mskDateTo->setMaskText(QStringLiteral("28/02/2026"));
        f.cmdPrintTrialBalance->click();
        QVERIFY2(rec.isEmpty(), qPrintable(rec.texts().join(QLatin1Char('|'))));
        QVERIFY(viewer());
        QCOMPARE(viewer()->report().design.name, design);
        QCOMPARE(viewer()->report().heading, heading);
        QVERIFY(viewer()->report().rows.size() > 0);
        shoot(&f, QStringLiteral("frmTrialBalance-") + option);
    }

    void trialBalanceChecksDates()
    {
        openYear(QStringLiteral("sqlite"));
        MessageRecorder rec;
        frmTrialBalance f;
        f.show();
        f.optBetweenTwoDates->setChecked(true);
        f.mskDateFrom->setMaskText(QStringLiteral("01/02/2026"));
        f.cmdPrintTrialBalance->click();
        QCOMPARE(rec.last().text, QStringLiteral("Date is missing, please enter proper date"));
        QVERIFY(!viewer());
    }

    void balanceSheetUptoADate_data() { TestDb::addBackends(); }
    void balanceSheetUptoADate()
    {
        TESSEL_BACKEND()
        openYear(backend);
        MessageRecorder rec;
        frmSingleDateReport f;
        f.showBalanceSheetForm();
        f.show();
        QCOMPARE(f.title(), QStringLiteral("BALANCE SHEET"));
        QVERIFY(f.cmdBalanceSheet->isVisible());
        QVERIFY(!f.cmdSearch->isVisible());
        f.mskDate->setMaskText(QStringLiteral("28/02/2026"));
        f.cmdBalanceSheet->click();
        QVERIFY2(rec.isEmpty(), qPrintable(rec.texts().join(QLatin1Char('|'))));
        QVERIFY(viewer());
        QCOMPARE(viewer()->windowTitle(), QStringLiteral("BALANCE SHEET"));
        QCOMPARE(viewer()->report().heading, QStringLiteral("BALANCE SHEET UPTO 28/02/2026"));
        Money balance;
        for (const Row &r : viewer()->report().rows)
            balance += r.moneyOrZero("PartyBalance");
        QCOMPARE(balance, Money());
        QVERIFY(viewer()->report().rows.size() > 5);
        shoot(&f, QStringLiteral("frmSingleDateReport"));

        // A date before any posting: an empty sheet, no message.
        f.mskDate->setMaskText(QStringLiteral("01/01/2020"));
        f.cmdBalanceSheet->click();
        QVERIFY(rec.isEmpty());
        QCOMPARE(viewer()->report().rows.size(), 0);
    }

    // The profit and loss frame opens on the day after the closing date.
    void profitAndLossDates_data()
    {
        QTest::addColumn<QDate>("closing");
        QTest::addColumn<QString>("from");
        QTest::newRow("year end") << QDate(2025, 12, 31) << "01/01/2026";
        QTest::newRow("in the year") << QDate(2026, 3, 9) << "10/03/2026";
    }
    void profitAndLossDates()
    {
        QFETCH(QDate, closing);
        QFETCH(QString, from);
        openYear(QStringLiteral("sqlite"));
        session().db().execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {closing});
        MessageRecorder rec;
        frmProfitAndLoss f;
        f.onOpened();
        QVERIFY(rec.isEmpty());
        QCOMPARE(f.mskDateFrom->maskText(), from);
        QCOMPARE(f.mskDateTo->maskText(), QStringLiteral("31/03/2026"));
    }

    void profitAndLossWithoutClosingDate()
    {
        openYear(QStringLiteral("sqlite"));
        session().db().execute(QStringLiteral("DELETE FROM tblClosingDate"));
        MessageRecorder rec;
        frmProfitAndLoss f;
        f.onOpened();
        QCOMPARE(rec.last().text, QStringLiteral("Closing date is missing, please specify closing date"));
        QVERIFY(rec.last().isCritical());
        QCOMPARE(f.mskDateFrom->maskText(), QStringLiteral("__/__/____"));
    }

    void profitAndLossFrames_data()
    {
        QTest::addColumn<int>("frame");
        QTest::addColumn<QString>("option");
        QTest::addColumn<QString>("design");
        QTest::addColumn<QString>("title");
        using F = frmProfitAndLoss::Frame;
        QTest::newRow("profit and loss") << int(F::ProfitAndLoss) << "optProfitAndLoss" << "crProfitAndLoss" << "PROFIT AND LOSS";
        QTest::newRow("all payable") << int(F::CreditList) << "optAllPayable" << "crTrialBalanceUptoDate" << "ALL PAYABLE UPTO DATE";
        QTest::newRow("credit list") << int(F::CreditList) << "optCreditListTwoDates" << "crCreditList" << "CREDIT LIST";
        QTest::newRow("all receivable") << int(F::DebitList) << "optAllReceivable" << "crTrialBalanceUptoDate"
                                        << "ALL RECEIVABLE UPTO DATE";
        QTest::newRow("debit list") << int(F::DebitList) << "optDebitListTwoDates" << "crDebitList" << "DEBIT LIST";
    }
    void profitAndLossFrames()
    {
        QFETCH(int, frame);
        QFETCH(QString, option);
        QFETCH(QString, design);
        QFETCH(QString, title);
        openYear(QStringLiteral("sqlite"));
        MessageRecorder rec;
        frmProfitAndLoss f;
        f.onOpened();
        f.show();
        f.showFrame(frmProfitAndLoss::Frame(frame));
        const QList<QFrame *> frames{f.frOuterProfitAndLoss, f.frOuterCreditList, f.frOuterDebitList};
        for (int i = 0; i < frames.size(); ++i)
            QCOMPARE(frames.at(i)->isVisible(), i == frame);
        f.findChild<QRadioButton *>(option)->setChecked(true);
        for (MaskedLineEdit *m : {f.mskDateFromCreditList, f.mskDateFromDebitList})
            m->setMaskText(QStringLiteral("01/01/2026"));
        for (MaskedLineEdit *m : {f.mskDateToCreditList, f.mskDateToDebitList})
            m->setMaskText(QStringLiteral("31/03/2026"));
        QCOMPARE(f.mskDateFromCreditList->isEnabled(), f.optCreditListTwoDates->isChecked());
        QCOMPARE(f.mskDateFromDebitList->isEnabled(), f.optDebitListTwoDates->isChecked());
        QPushButton *print = frame == 0 ? f.cmdProfitAndLoss : frame == 1 ? f.cmdPrintCreditList : f.cmdPrintDebitList;
        print->click();
        QVERIFY2(rec.isEmpty(), qPrintable(rec.texts().join(QLatin1Char('|'))));
        QVERIFY(viewer());
        QCOMPARE(viewer()->report().design.name, design);
        QCOMPARE(viewer()->windowTitle(), title);
        QVERIFY(viewer()->report().rows.size() > 0);
        shoot(&f, QStringLiteral("frmProfitAndLoss-") + option);
    }

    // The menu entries open their screens in the form they ask for.
    void menuEntries()
    {
        openYear(QStringLiteral("sqlite"));
        MessageRecorder rec;
        MenuRouter router;
        registerReportsMenu(router);
        ScreenKit::Host host(false);
        for (const char *name : {"mnuPPLedgerOfAccount", "mnuPPLedgerOfAccountVW", "mnuAgingReport", "mnuTrialBalance",
                                 "mnuBalanceSheetSingleDate", "mnuPPBalanceSheet", "mnuProfitAndLoss", "mnuPPCreditList",
                                 "mnuPPDebitList"})
            QVERIFY2(router.has(QLatin1String(name)), name);

        QVERIFY(router.trigger(QStringLiteral("mnuPPLedgerOfAccountVW"), host));
        auto *search = qobject_cast<frmPartySearch *>(host.findScreen(QStringLiteral("frmPartySearch")));
        QVERIFY(search);
        QVERIFY(search->voucherWise());
        QCOMPARE(search->title(), QStringLiteral("LEDGER OF ACCOUNT VOUCHER WISE"));
        QVERIFY(router.trigger(QStringLiteral("mnuAgingReport"), host));
        QCOMPARE(host.findScreen(QStringLiteral("frmPartySearch")), search);
        QVERIFY(!search->voucherWise());
        QVERIFY(search->optAgingReport->isChecked());

        QVERIFY(router.trigger(QStringLiteral("mnuPPCreditList"), host));
        auto *pl = qobject_cast<frmProfitAndLoss *>(host.findScreen(QStringLiteral("frmProfitAndLoss")));
        QVERIFY(pl);
        QCOMPARE(pl->title(), QStringLiteral("CREDIT LIST"));
        QVERIFY(!pl->frOuterProfitAndLoss->isVisibleTo(pl) && pl->frOuterCreditList->isVisibleTo(pl));
        QVERIFY(router.trigger(QStringLiteral("mnuProfitAndLoss"), host));
        QCOMPARE(pl->title(), QStringLiteral("PROFIT & LOSS"));
        QCOMPARE(pl->lblProfitAndLoss->text(), QStringLiteral("PROFIT/LOSS"));

        QVERIFY(router.trigger(QStringLiteral("mnuBalanceSheetSingleDate"), host));
        auto *single = qobject_cast<frmSingleDateReport *>(host.findScreen(QStringLiteral("frmSingleDateReport")));
        QVERIFY(single && single->cmdSearch->isHidden());

        // The balance sheet of all postings opens at once, and balances.
        QVERIFY(router.trigger(QStringLiteral("mnuPPBalanceSheet"), host));
        QVERIFY(viewer());
        QCOMPARE(viewer()->windowTitle(), QStringLiteral("BALANCE SHEET"));
        Money balance;
        for (const Row &r : viewer()->report().rows)
            balance += r.moneyOrZero("PartyBalance");
        QCOMPARE(balance, Money());
        QVERIFY(rec.isEmpty());
    }
};

QTEST_MAIN(tst_LedgerScreens)
#include "tst_ledgerscreens.moc"
