// END YEAR PROCESSING, headless, through its menu entry and the gate: a
// step asks first and runs only on Yes, a bad period is refused before
// anything is asked, and NEW YEAR makes the next year and shows its carry.
#include "support/TestDb.h"
#include "support/ui/MessageRecorder.h"
#include "support/ui/ScreenKit.h"
#include "support/ui/ScreenTest.h"

#include "admin/EndYear.h"
#include "admin/ui/frmEndYearProcessing.h"
#include "admin/ui/frmIdentification.h"
#include "foundation/AccountYear.h"
#include "foundation/DateRules.h"
#include "foundation/PasswordHash.h"
#include "foundation/Session.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "vouchers/LedgerWriter.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTableView>
#include <QtTest>

using ScreenKit::click;
using TestDb::count;

namespace {

class Host : public MenuHost
{
public:
    Host() { registerAdminMenu(router); }
};

// The screen through the menu entry and the gate, passed by a common user.
frmEndYearProcessing *openScreen(Host &host, SessionConnection &db)
{
    db.execute(QStringLiteral("INSERT INTO tblLogon (UserName, Password, UserType) VALUES (?, ?, ?)"),
               {QStringLiteral("CLERK"), PasswordHash::hash(QStringLiteral("clerk")), QStringLiteral("COMMON USER")});
    host.router.trigger(QStringLiteral("mnuEndYearProcessing"), host);
    auto *gate = qobject_cast<frmIdentification *>(host.findScreen(QStringLiteral("frmIdentification")));
    if (!gate)
        return nullptr;
    gate->txtUserName->setText(QStringLiteral("CLERK"));
    gate->txtPassword->setText(QStringLiteral("clerk"));
    click(gate->cmdEndYearClosing);
    return qobject_cast<frmEndYearProcessing *>(host.findScreen(QStringLiteral("frmEndYearProcessing")));
}

void post(SessionConnection &db, const QDate &day, qint64 cents)
{
    Transaction tx(db);
    LedgerWriter(db, QStringLiteral("CLERK"), day)
        .insert(LedgerRow::debit({QStringLiteral("JV"), 1, day}, QStringLiteral("19-10-001"),
                                 QStringLiteral("CASH IN HAND"), Money::fromCents(cents), QStringLiteral("ENTRY")));
    tx.commit();
}

} // namespace

class TestEndYearScreen : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void stepAsksThenRuns_data() { TestDb::addBackends(); }
    void stepAsksThenRuns();
    void badPeriodRefused_data() { TestDb::addBackends(); }
    void badPeriodRefused();
    void newYearShowsCarry_data() { TestDb::addBackends(); }
    void newYearShowsCarry();
};

void TestEndYearScreen::stepAsksThenRuns()
{
    TESSEL_BACKEND()
    ScreenTest t(backend, QDate(2027, 1, 5), QStringLiteral("CLERK"), QStringLiteral("COMMON USER"));
    post(t.db(), QDate(2025, 12, 31), 1000);
    post(t.db(), QDate(2026, 12, 31), 2000);
    post(t.db(), QDate(2027, 1, 1), 4000);
    Host host;
    host.show();
    frmEndYearProcessing *f = openScreen(host, t.db());
    QVERIFY(f);
    QCOMPARE(f->cmdAccounts->text(), QStringLiteral("ACCOUNT"));
    QCOMPARE(f->cmdProfitAndLoss->text(), QStringLiteral("PROFIT/LOSS"));
    QVERIFY(f->pgbEndYear->isHidden());
    f->mskDateFrom->setMaskText(QStringLiteral("01/01/2026"));
    f->mskDateTo->setMaskText(QStringLiteral("31/12/2026"));
    ScreenKit::shoot(host.mainWindow(), QStringLiteral("endyear"));

    // No: nothing is written, and the report period stays as it was.
    const QDate periodFrom = session().periodFrom;
    click(f->cmdAccounts);
    QVERIFY(t.rec.last().isQuestion());
    QCOMPARE(count(t.db(), QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")), 3);
    QCOMPARE(session().periodFrom, periodFrom);

    // Yes: the step runs and says so; the bar is gone and the button back.
    t.rec.answerNext(true);
    click(f->cmdAccounts);
    QVERIFY(t.rec.last().isInformation());
    QCOMPARE(t.rec.last().text, QStringLiteral("Accounts end year processing has been completed sucessfully."));
    QVERIFY(f->pgbEndYear->isHidden());
    QVERIFY(f->cmdAccounts->isEnabled());
    QCOMPARE(count(t.db(), QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")), 2);
    QCOMPARE(count(t.db(), QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE VoucherNo = 0 AND VDate = ?"),
                   {QDate(2025, 12, 31)}),
             1);
    QCOMPARE(session().periodFrom, QDate(2026, 1, 1));

    // A table step the same way, with its own words.
    t.rec.answerNext(true);
    click(f->cmdPurchaseOrder);
    QCOMPARE(t.rec.last().text,
             QStringLiteral("Purchase Order end year processing has been completed sucessfully."));
}

void TestEndYearScreen::badPeriodRefused()
{
    TESSEL_BACKEND()
    ScreenTest t(backend, QDate(2027, 1, 5), QStringLiteral("CLERK"), QStringLiteral("COMMON USER"));
    post(t.db(), QDate(2025, 12, 31), 1000);
    Host host;
    host.show();
    frmEndYearProcessing *f = openScreen(host, t.db());
    QVERIFY(f);

    f->mskDateFrom->setMaskText(QStringLiteral("01/01/2026"));
    f->mskDateTo->setMaskText(QStringLiteral("31/12/2025"));
    const int before = int(t.rec.messages().size());
    click(f->stepButton(EndYear::Step::Sale));
    QCOMPARE(t.rec.last().text, DateRules::wrongDateMessage());
    QVERIFY(t.rec.last().isCritical());
    QCOMPARE(int(t.rec.messages().size()), before + 1); // refused before any question

    f->mskDateTo->setMaskText(QStringLiteral("31/__/2026"));
    click(f->cmdAccounts);
    QVERIFY(t.rec.last().isCritical());
    QCOMPARE(count(t.db(), QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")), 1);
}

void TestEndYearScreen::newYearShowsCarry()
{
    TESSEL_BACKEND()
    ScreenTest t(backend, QDate(2027, 1, 5), QStringLiteral("CLERK"), QStringLiteral("COMMON USER"));
    post(t.db(), QDate(2026, 6, 30), 123456);
    post(t.db(), QDate(2027, 1, 2), 2000);
    Host host;
    host.show();
    frmEndYearProcessing *f = openScreen(host, t.db());
    QVERIFY(f);
    const QString next = TestDb::uniqueName();
    f->txtNewYear->setText(next);
    f->mskDateFrom->setMaskText(QStringLiteral("01/01/2027"));
    t.rec.answerNext(true);
    click(f->cmdNewYear);
    const bool made = AccountYear::exists(t.year.profile(), next);
    if (made)
        AccountYear::drop(t.year.profile(), next);
    QVERIFY2(t.rec.last().isInformation(), qPrintable(t.rec.last().text));
    QVERIFY(made);
    QVERIFY(t.rec.last().text.endsWith(QLatin1String("every opening equal to its closing.")));
    // One account carried, and the total.
    QCOMPARE(f->dgCarry->model()->rowCount(), 2);
    QCOMPARE(f->dgCarry->model()->index(0, 0).data().toString(), QStringLiteral("19-10-001"));
    QCOMPARE(f->dgCarry->model()->index(0, 3).data().toString(), QStringLiteral("1,234.56"));
    ScreenKit::shoot(host.mainWindow(), QStringLiteral("newyear"));
    // This year is left as it was.
    QCOMPARE(count(t.db(), QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")), 2);
}

QTEST_MAIN(TestEndYearScreen)
#include "tst_frmendyear.moc"
