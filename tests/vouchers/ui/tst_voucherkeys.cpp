// A clerk's day on the voucher screen, by keyboard alone: a three-line
// cash payment and a two-line journal voucher are typed key by key into
// the focused field, and the keys are counted (each chord once, each
// message box closed with one Enter). The count is printed, so a change
// that costs the clerk keys shows up.
#include "foundation/Session.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MenuRouter.h"
#include "support/TestDb.h"
#include "support/ui/MessageRecorder.h"
#include "support/ui/ScreenKit.h"
#include "support/ui/ScreenTest.h"
#include "vouchers/ui/frmJournalVoucher.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QMainWindow>
#include <QMdiArea>
#include <QPushButton>
#include <QtTest>

namespace {

// Sends keys to whatever has the focus, and counts them.
class Keyboard
{
public:
    Keyboard(MessageRecorder &rec, QWidget *main) : m_rec(rec), m_main(main) {}
    void type(const QString &text)
    {
        for (const QChar c : text)
            QTest::keyClick(QApplication::focusWidget(), c.toLatin1());
        m_count += text.size();
        m_log << text;
    }
    void press(Qt::Key key, Qt::KeyboardModifiers mods = Qt::NoModifier, const QString &name = QStringLiteral("Enter"))
    {
        QTest::keyClick(QApplication::focusWidget(), key, mods);
        ++m_count;
        m_log << name;
        closeBoxes();
    }
    // The headless platform leaves a closed completion list as the active
    // window; a desktop gives the activation back to the main window.
    void settle()
    {
        QApplication::processEvents();
        QWidget *active = QApplication::activeWindow();
        if (active && !active->isVisible() && m_main)
            QApplication::setActiveWindow(m_main);
    }
    void enter(int times = 1)
    {
        for (int i = 0; i < times; ++i)
            press(Qt::Key_Return);
    }
    // A box shown since the last key costs the Enter that closes it.
    void closeBoxes()
    {
        while (m_seen < m_rec.count()) {
            ++m_seen;
            ++m_count;
            m_log << QStringLiteral("(Enter on the box)");
        }
    }
    int count() const { return m_count; }
    QString log() const { return m_log.join(QLatin1Char(' ')); }

private:
    MessageRecorder &m_rec;
    QWidget *m_main;
    int m_seen = 0;
    int m_count = 0;
    QStringList m_log;
};

QueryResult ledger()
{
    return session().db().select(QStringLiteral(
        "SELECT VoucherType, VoucherNo, PartyCode, PartyDR, PartyCR, PartyDesc FROM tblPartyBalance ORDER BY SrNo"));
}

} // namespace

class TestVoucherKeys : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void threeLineCashPaymentAndJournal();
};

void TestVoucherKeys::threeLineCashPaymentAndJournal()
{
    ScreenTest t(QStringLiteral("sqlite"));
    t.addAccounts({{"21-10-001", "ELECTRICITY"},
                   {"21-10-002", "TEA AND REFRESHMENT"},
                   {"21-10-003", "POSTAGE AND COURIER"},
                   {"14-10-001", "PAPER HOUSE"},
                   {"19-20-001", "CITY BANK"}});
    MenuHost host;
    registerVouchersMenu(host.router);
    host.show();
    QApplication::setActiveWindow(&host);
    QVERIFY(QTest::qWaitForWindowActive(&host));
    MessageRecorder &rec = t.rec;
    Keyboard keys(rec, &host);

    // CASH PAID VOUCHER: the date, type and number are proposed; three lines.
    host.router.trigger(QStringLiteral("mnuPCashPaidVoucher"), host);
    auto *f = qobject_cast<frmJournalVoucher *>(host.findScreen(QStringLiteral("frmJournalVoucher")));
    QVERIFY(f);
    QTRY_COMPARE(QApplication::focusWidget(), static_cast<QWidget *>(f->mskDate));
    keys.enter(4); // date, type, number, invoice #
    QCOMPARE(QApplication::focusWidget(), static_cast<QWidget *>(f->cmbPartyName));
    const QList<QStringList> lines = {{"TRIC", "METER 7", "1500.50"}, {"TEA", "", "250"}, {"POST", "", "75.25"}};
    for (const QStringList &l : lines) {
        keys.type(l[0]);
        keys.enter(); // the first account that holds it
        keys.type(l[1]); // the description stays from the line before when nothing is typed
        keys.enter();
        keys.type(l[2]);
        keys.enter(4); // amount, DR/CR, POSTED CHEQUE, NEW
    }
    QCOMPARE(rec.count(), 3);
    QCOMPARE(f->txtTotalDebit->text(), QStringLiteral("1,825.75"));
    keys.press(Qt::Key_S, Qt::AltModifier, QStringLiteral("Alt+S"));
    QTRY_COMPARE(rec.last().text, QStringLiteral("Voucher has saved successfully"));
    keys.closeBoxes();
    const int cashKeys = keys.count();

    QueryResult rows = ledger();
    QCOMPARE(rows.size(), 4);
    QCOMPARE(rows.at(0).text("PartyCode").trimmed(), QStringLiteral("21-10-001"));
    QCOMPARE(rows.at(1).text("PartyCode").trimmed(), QStringLiteral("21-10-002"));
    QCOMPARE(rows.at(1).text("PartyDesc").trimmed(), QStringLiteral("METER 7"));
    QCOMPARE(rows.at(2).text("PartyCode").trimmed(), QStringLiteral("21-10-003"));
    QCOMPARE(rows.at(3).moneyOrZero("PartyCR"), *Money::parse("1825.75"));
    QCOMPARE(f->txtPCashInHand->text(), QStringLiteral("1,825.75 CR"));

    // JOURNAL VOUCHER: paper bought on the bank, one debit and one credit.
    keys.settle();
    host.router.trigger(QStringLiteral("mnuPJournalVoucher"), host);
    QTRY_COMPARE(QApplication::focusWidget(), static_cast<QWidget *>(f->mskDate));
    keys.enter(4);
    keys.type(QStringLiteral("PAPER"));
    keys.enter();
    keys.type(QStringLiteral("BILL 77"));
    keys.enter();
    keys.type(QStringLiteral("2400"));
    keys.enter();
    keys.type(QStringLiteral("DR"));
    keys.enter(3); // DR/CR, POSTED CHEQUE, NEW
    keys.type(QStringLiteral("CITY"));
    keys.enter(2); // the account; the description stays
    keys.type(QStringLiteral("2400"));
    keys.enter();
    keys.type(QStringLiteral("CR"));
    keys.enter(3);
    keys.press(Qt::Key_S, Qt::AltModifier, QStringLiteral("Alt+S"));
    QTRY_COMPARE(rec.last().text, QStringLiteral("Voucher has saved successfully"));
    keys.closeBoxes();
    rows = ledger();
    QCOMPARE(rows.size(), 6);
    QCOMPARE(rows.at(4).text("VoucherType").trimmed(), QStringLiteral("JV"));
    QCOMPARE(rows.at(4).moneyOrZero("PartyDR"), Money::fromUnits(2400));
    QCOMPARE(rows.at(5).text("PartyCode").trimmed(), QStringLiteral("19-20-001"));
    QCOMPARE(rows.at(5).moneyOrZero("PartyCR"), Money::fromUnits(2400));

    qInfo().noquote() << "keys for a three-line cash payment:" << cashKeys;
    qInfo().noquote() << "keys for a two-line journal voucher:" << keys.count() - cashKeys;
    qInfo().noquote() << "keys:" << keys.log();
}

QTEST_MAIN(TestVoucherKeys)
#include "tst_voucherkeys.moc"
