// The opening balance screen (both panels) and the account modification
// screen, headless, opened from their menu entries and driven through the
// controls' names.
#include "support/TestDb.h"
#include "support/ui/MessageRecorder.h"
#include "support/ui/ScreenKit.h"
#include "support/ui/ScreenTest.h"

#include "accounts/AccountModification.h"
#include "accounts/OpeningBalance.h"
#include "accounts/ui/frmModPartyInfo.h"
#include "accounts/ui/frmOpeningBalance.h"
#include "admin/ui/frmIdentification.h"
#include "foundation/DateRules.h"
#include "foundation/Logon.h"
#include "foundation/Session.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "vouchers/Ledger.h"
#include "vouchers/LedgerCheck.h"

#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

using ScreenKit::click;
using ScreenKit::items;
using TestDb::count;

namespace {

const QDate kClosing(2026, 1, 31);

class Host : public MenuHost
{
public:
    Host()
    {
        registerAccountsMenu(router);
        show();
    }
};

// A year with a heading, two customers (one with an opening row) and a
// supplier.
void prepare(ScreenTest &t)
{
    t.db().execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {kClosing});
    t.addAccounts({{"17-10-000", "CUSTOMERS"},
                   {"17-10-001", "CRESCENT TEXTILES"},
                   {"17-10-002", "GAMMA PRESS"},
                   {"14-10-001", "PAPER HOUSE"}});
    OpeningBalance::Entry e;
    e.code = QStringLiteral("17-10-002");
    e.date = kClosing;
    e.amount = *Money::parse(QStringLiteral("300.50"));
    QVERIFY(OpeningBalance::open(t.db(), e, QStringLiteral("CLERK"), kClosing));
}

Money money(const char *text) { return *Money::parse(QString::fromLatin1(text)); }

} // namespace

class TestOpeningBalanceScreens : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void newPanel_data() { TestDb::addBackends(); }
    void newPanel();
    void modifyPanelThroughTheGate_data() { TestDb::addBackends(); }
    void modifyPanelThroughTheGate();
    void modifyAccount_data() { TestDb::addBackends(); }
    void modifyAccount();
};

void TestOpeningBalanceScreens::newPanel()
{
    TESSEL_BACKEND()
    ScreenTest t(backend, QDate(2026, 3, 10));
    prepare(t);
    Host host;
    auto *f = host.open<frmOpeningBalance>(QStringLiteral("mnuPOpeningBalance"), QStringLiteral("frmOpeningBalance"));
    QVERIFY(f);
    QVERIFY(f->frOuterOpeningBalance->isVisible());
    QVERIFY(!f->frOuterModifyBalance->isVisible());
    QCOMPARE(f->mskDate->maskText(), QStringLiteral("10/03/2026"));
    QCOMPARE(items(f->cmbDBCR), QStringList({"DR", "CR"}));
    QVERIFY(!items(f->cmbPartyName).contains(QStringLiteral("CUSTOMERS")));
    QTRY_VERIFY(f->cmbPartyName->hasFocus());

    // Nothing picked: the code is asked for.
    click(f->cmdOpeningBalance);
    QCOMPARE(t.rec.last().text, OpeningBalance::Msg::codeToSelect());
    QTRY_VERIFY(f->mskPartyCode->hasFocus());

    // A credit opening, exact to the cent, on the closing date itself.
    f->cmbPartyName->setEditText(QStringLiteral("CRESCENT TEXTILES"));
    QCOMPARE(f->mskPartyCode->maskText(), QStringLiteral("17-10-001"));
    f->mskDate->setMaskText(QStringLiteral("31/01/2026"));
    f->cmbDBCR->setCurrentText(QStringLiteral("CR"));
    QTest::keyClicks(f->txtBalance, QStringLiteral("1234567.89"));
    ScreenKit::shoot(host.mainWindow(), QStringLiteral("openingbalance"));
    click(f->cmdOpeningBalance);
    QCOMPARE(t.rec.last().text, OpeningBalance::Msg::opened());
    QCOMPARE(*Ledger::accountBalance(t.db(), QStringLiteral("17-10-001")), money("-1234567.89"));
    QVERIFY(f->cmbPartyName->currentText().isEmpty());
    QVERIFY(f->txtBalance->text().isEmpty());
    QTRY_VERIFY(f->cmbPartyName->hasFocus());

    // A second opening of the same account, and a closed date.
    f->mskPartyCode->setMaskText(QStringLiteral("17-10-001"));
    f->txtBalance->setText(QStringLiteral("5"));
    click(f->cmdOpeningBalance);
    QCOMPARE(t.rec.last().text, OpeningBalance::Msg::alreadyOpen());
    f->mskPartyCode->setMaskText(QStringLiteral("14-10-001"));
    f->mskDate->setMaskText(QStringLiteral("30/01/2026"));
    click(f->cmdOpeningBalance);
    QCOMPARE(t.rec.last().text, DateRules::closedPeriodMessage());
    QTRY_VERIFY(f->mskDate->hasFocus());
    QCOMPARE(count(t.db(), QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")), 2);
}

void TestOpeningBalanceScreens::modifyPanelThroughTheGate()
{
    TESSEL_BACKEND()
    ScreenTest t(backend, QDate(2026, 3, 10));
    prepare(t);
    Host host;

    // A wrong password opens nothing.
    host.router.trigger(QStringLiteral("mnuPModifyBalance"), host);
    auto *gate = qobject_cast<frmIdentification *>(host.findScreen(QStringLiteral("frmIdentification")));
    QVERIFY(gate);
    QCOMPARE(gate->lblRestore->text(), QStringLiteral("MODIFY BALANCE"));
    QVERIFY(gate->lblWarning->text().startsWith(QStringLiteral("Modification of balance is a risk")));
    QVERIFY(!gate->cmdBalanceOkay->isHidden());
    QVERIFY(gate->cmdClosingOkay->isHidden());
    gate->txtUserName->setText(QStringLiteral("ADMIN"));
    gate->txtPassword->setText(QStringLiteral("nope"));
    click(gate->cmdBalanceOkay);
    QCOMPARE(t.rec.last().text, Logon::invalidMessage());
    QVERIFY(!host.findScreen(QStringLiteral("frmOpeningBalance")));

    gate->txtUserName->setText(QStringLiteral("ADMIN"));
    gate->txtPassword->setText(QStringLiteral("secret"));
    click(gate->cmdBalanceOkay);
    auto *f = qobject_cast<frmOpeningBalance *>(host.findScreen(QStringLiteral("frmOpeningBalance")));
    QVERIFY(f);
    QCOMPARE(f->mode(), frmOpeningBalance::Mode::Modify);
    QVERIFY(f->frOuterModifyBalance->isVisible());
    QVERIFY(!f->frOuterOpeningBalance->isVisible());
    // Only the accounts that have an opening row.
    QCOMPARE(items(f->cmbMPartyName), QStringList({"GAMMA PRESS"}));

    f->cmbMPartyName->setEditText(QStringLiteral("GAMMA PRESS"));
    QCOMPARE(f->mskMPartyCode->maskText(), QStringLiteral("17-10-002"));
    QCOMPARE(f->mskMDate->maskText(), QStringLiteral("31/01/2026"));
    QCOMPARE(f->cmbMDBCR->currentText(), QStringLiteral("DR"));
    QCOMPARE(f->txtMBalance->text(), QStringLiteral("300.5"));

    // An empty amount is refused; a credit of 80.25 is written.
    f->txtMBalance->clear();
    click(f->cmdModifyBalance);
    QCOMPARE(t.rec.last().text, OpeningBalance::Msg::balanceMissing());
    QTRY_VERIFY(f->txtMBalance->hasFocus());
    f->txtMBalance->setText(QStringLiteral("80.25"));
    f->cmbMDBCR->setCurrentText(QStringLiteral("CR"));
    f->mskMDate->setMaskText(QStringLiteral("01/02/2026"));
    ScreenKit::shoot(host.mainWindow(), QStringLiteral("modifybalance"));
    click(f->cmdModifyBalance);
    QCOMPARE(t.rec.last().text, OpeningBalance::Msg::modified());
    QCOMPARE(*Ledger::accountBalance(t.db(), QStringLiteral("17-10-002")), money("-80.25"));
    QCOMPARE(OpeningBalance::openingRow(t.db(), QStringLiteral("17-10-002"))->date, QDate(2026, 2, 1));
    QVERIFY(f->cmbMPartyName->currentText().isEmpty());
    QVERIFY(f->txtMBalance->text().isEmpty());
    QVERIFY(LedgerCheck::keptBalancesAgree(t.db()));
}

void TestOpeningBalanceScreens::modifyAccount()
{
    TESSEL_BACKEND()
    ScreenTest t(backend, QDate(2026, 3, 10));
    prepare(t);
    Host host;
    auto *f = host.open<frmModPartyInfo>(QStringLiteral("mnuPModifyPartyInfo"), QStringLiteral("frmModPartyInfo"));
    QVERIFY(f);
    QCOMPARE(f->title(), QStringLiteral("MODIFY PARTY INFORMATION"));
    // Headings too.
    QVERIFY(items(f->cmbPartyName).contains(QStringLiteral("CUSTOMERS")));

    // Nothing loaded: refused.
    click(f->cmdPartyModify);
    QVERIFY(!t.rec.messages().isEmpty());

    // By old code; the fields load with the opening row.
    f->mskOldPartyCode->setMaskText(QStringLiteral("17-10-002"));
    QCOMPARE(f->cmbPartyName->currentText(), QStringLiteral("GAMMA PRESS"));
    QCOMPARE(f->txtPartyName->text(), QStringLiteral("GAMMA PRESS"));
    QCOMPARE(f->mskPartyCode->maskText(), QStringLiteral("17-10-002"));
    QCOMPARE(f->mskMDate->maskText(), QStringLiteral("31/01/2026"));
    QCOMPARE(f->txtMBalance->text(), QStringLiteral("300.5"));

    // Another account's name is refused.
    f->txtPartyName->setText(QStringLiteral("PAPER HOUSE"));
    click(f->cmdPartyModify);
    QCOMPARE(t.rec.last().text, AccountModification::Msg::nameExists());
    QTRY_VERIFY(f->txtPartyName->hasFocus());

    // New code, name and description.
    f->txtPartyName->setText(QStringLiteral("GAMMA PRINTERS"));
    f->mskPartyCode->setMaskText(QStringLiteral("18-10-004"));
    f->txtPartyDesc->setText(QStringLiteral("SINCE 1990"));
    ScreenKit::shoot(host.mainWindow(), QStringLiteral("modpartyinfo"));
    click(f->cmdPartyModify);
    QCOMPARE(t.rec.last().text, AccountModification::Msg::modified());
    QCOMPARE(count(t.db(), QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo WHERE PartyCode = '18-10-004' AND "
                                          "PartyName = 'GAMMA PRINTERS' AND PartyDesc = 'SINCE 1990'")),
             1);
    QCOMPARE(*Ledger::accountBalance(t.db(), QStringLiteral("18-10-004")), money("300.50"));
    QCOMPARE(count(t.db(), QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE PartyCode = '17-10-002'")), 0);
    QVERIFY(f->cmbPartyName->currentText().isEmpty());
    QVERIFY(items(f->cmbPartyName).contains(QStringLiteral("GAMMA PRINTERS")));

    // An unknown old code clears the form when the field is left.
    f->mskOldPartyCode->setFocus();
    f->mskOldPartyCode->setMaskText(QStringLiteral("17-10-001"));
    QCOMPARE(f->txtPartyName->text(), QStringLiteral("CRESCENT TEXTILES"));
    f->mskOldPartyCode->setMaskText(QStringLiteral("17-10-099"));
    f->txtPartyName->setFocus();
    QTRY_VERIFY(f->cmbPartyName->currentText().isEmpty());
    QVERIFY(f->txtPartyName->text().isEmpty());
}

QTEST_MAIN(TestOpeningBalanceScreens)
#include "tst_openingbalancescreens.moc"
