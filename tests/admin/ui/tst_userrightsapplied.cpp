// A user's switched-off entries in the main window: the menu, everything
// under a switched-off menu, the side panel's labels, the menu bar's keys,
// the buttons inside screens that open those entries, and F8, which opens
// the edit log.
#include "support/ui/ScreenTest.h"

#include "admin/UserAccounts.h"
#include "admin/UserRights.h"
#include "foundation/ui/frmMDITessel.h"
#include "vouchers/VoucherPosting.h"
#include "vouchers/ui/frmJournalVoucher.h"

#include <QApplication>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QtTest>

namespace {

const UserAccounts::Actor kAdmin{QStringLiteral("ADMIN"), UserAccounts::administrator()};

QLabel *label(frmMDITessel &main, const char *name)
{
    return main.findChild<QLabel *>(QString::fromLatin1(name));
}

QMenu *topMenu(frmMDITessel &main, const char *caption)
{
    for (QAction *a : main.menuBar()->actions())
        if (a->menu() && a->text().remove(QLatin1Char('&')) == QLatin1String(caption))
            return a->menu();
    return nullptr;
}

// The main window of a user logged on to the test's year, rights applied.
struct Main
{
    Main(ScreenTest &t, const QStringList &switchedOff)
    {
        if (!switchedOff.isEmpty())
            saved = UserRights::save(t.db(), kAdmin, QStringLiteral("ADMIN"), switchedOff).ok;
        main.show();
        QApplication::setActiveWindow(&main);
        active = QTest::qWaitForWindowActive(&main);
        main.ApplyUserRights();
    }
    frmJournalVoucher *cashPaid()
    {
        main.runMenuEntry(QStringLiteral("mnuPCashPaidVoucher"));
        return qobject_cast<frmJournalVoucher *>(main.findScreen(QStringLiteral("frmJournalVoucher")));
    }
    frmMDITessel main;
    bool saved = true;
    bool active = false;
};

} // namespace

class TestUserRightsApplied : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void menuAndPanel_data() { TestDb::addBackends(); }
    void menuAndPanel();
    void menuKeys();
    void screenButtons_data();
    void screenButtons();
    void editLogAndCheckBooks_data() { TestDb::addBackends(); }
    void editLogAndCheckBooks();
};

void TestUserRightsApplied::menuAndPanel()
{
    TESSEL_BACKEND()
    ScreenTest t(backend, QDate(2026, 3, 10), QStringLiteral("ADMIN"));
    Main m(t, {QStringLiteral("mnuInvoice"), QStringLiteral("mnuPPartyInfo"), QStringLiteral("mnuPBankPaidVoucher"),
               QStringLiteral("mnuSEnter")});
    QVERIFY(m.saved && m.active);
    frmMDITessel &w = m.main;

    struct Expect
    {
        const char *entry;
        bool on;
    };
    for (const Expect &e : {Expect{"mnuInvoice", false}, Expect{"mnuEnterInvoice", false},
                            Expect{"mnuBillWisePayment", false}, Expect{"mnuPPartyInfo", false},
                            Expect{"mnuPCashPaidVoucher", true}, Expect{"mnuAccount", true},
                            // names that stand for no entry change nothing
                            Expect{"mnuBankPaidVoucher", true}, Expect{"mnuStock", true}}) {
        const QString name = QString::fromLatin1(e.entry);
        QVERIFY2(w.menuAction(name)->isEnabled() == e.on, e.entry);
        QVERIFY2(w.allowsEntry(name) == e.on, e.entry);
    }
    QVERIFY(!w.runMenuEntry(QStringLiteral("mnuEnterInvoice")));

    // The side panel: the labels of switched-off entries are off, and a
    // click on one opens nothing.
    QVERIFY(!label(w, "lblAccounts")->isEnabled());
    QVERIFY(!label(w, "lblSale")->isEnabled());
    QVERIFY(!label(w, "lblInvoice")->isEnabled());
    QVERIFY(label(w, "lblCashPaid")->isEnabled());
    QTest::mouseClick(label(w, "lblAccounts"), Qt::LeftButton);
    QVERIFY(!w.findScreen(QStringLiteral("frmPartyInfo")));
    // F6 passes over them (ACCOUNTS is the panel's first label) to the
    // first label the user can reach.
    QTest::keyClick(&w, Qt::Key_F6);
    QTRY_VERIFY(qobject_cast<QLabel *>(QApplication::focusWidget()));
    QVERIFY(QApplication::focusWidget() != label(w, "lblAccounts"));
    QVERIFY(QApplication::focusWidget()->isEnabled());
    QTest::keyClick(label(w, "lblCashPaid"), Qt::Key_Return);
    QVERIFY(w.findScreen(QStringLiteral("frmJournalVoucher")));
}

void TestUserRightsApplied::menuKeys()
{
    ScreenTest t(QStringLiteral("sqlite"), QDate(2026, 3, 10), QStringLiteral("ADMIN"));
    Main m(t, {QStringLiteral("mnuInvoice")});
    QVERIFY(m.saved && m.active);
    QMenu *invoice = topMenu(m.main, "INVOICE");
    QMenu *stock = topMenu(m.main, "STOCK");
    QVERIFY(invoice && stock);
    // Alt and the menu's letter opens a menu the user has, not one he lacks.
    m.main.setFocus();
    QTest::keyClick(&m.main, Qt::Key_I, Qt::AltModifier);
    QApplication::processEvents();
    QVERIFY(!invoice->isVisible());
    QTest::keyClick(&m.main, Qt::Key_S, Qt::AltModifier);
    QTRY_VERIFY(stock->isVisible());
    stock->close();
    // No key given to an entry under the menu reaches it either.
    for (QAction *a : invoice->actions())
        QVERIFY2(!a->isEnabled() || a->isSeparator(), qPrintable(a->objectName()));
}

void TestUserRightsApplied::screenButtons_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<bool>("partyInfoOff");
    QTest::newRow("sqlite, account creation switched off") << QStringLiteral("sqlite") << true;
    QTest::newRow("sqlite, another entry switched off") << QStringLiteral("sqlite") << false;
    QTest::newRow("postgres, account creation switched off") << QStringLiteral("postgres") << true;
}

void TestUserRightsApplied::screenButtons()
{
    TESSEL_BACKEND()
    QFETCH(bool, partyInfoOff);
    ScreenTest t(backend, QDate(2026, 3, 10), QStringLiteral("ADMIN"));
    // Without a list the button is there.
    Main control(t, {});
    frmJournalVoucher *free = control.cashPaid();
    QVERIFY(free);
    QVERIFY(free->cmdAddParty->isEnabled());

    Main m(t, {partyInfoOff ? QStringLiteral("mnuPPartyInfo") : QStringLiteral("mnuPModifyPartyInfo")});
    QVERIFY(m.saved);
    frmJournalVoucher *f = m.cashPaid();
    QVERIFY(f);
    QCOMPARE(f->cmdAddParty->isEnabled(), !partyInfoOff);
    // The screen switching its buttons on again does not bring it back.
    f->cmdAddParty->setEnabled(true);
    QCOMPARE(f->cmdAddParty->isEnabled(), !partyInfoOff);
    if (partyInfoOff) {
        f->cmbPartyName->setFocus();
        QTest::keyClick(f->cmbPartyName, Qt::Key_P, Qt::AltModifier); // ADD &PARTY
        QApplication::processEvents();
        QVERIFY(!QApplication::activeModalWidget());
    }
}

// EDIT LOG and CHECK BOOKS switched off: neither opens by its menu entry,
// and F8 on a loaded voucher opens no history; the entries beside them stay.
void TestUserRightsApplied::editLogAndCheckBooks()
{
    TESSEL_BACKEND()
    const QDate day(2026, 3, 9);
    ScreenTest t(backend, QDate(2026, 3, 10), QStringLiteral("ADMIN"));
    t.addAccounts({{"21-10-001", "ELECTRICITY"}});
    Voucher v{{QStringLiteral("CP"), 1, day}, {}};
    VoucherLine l;
    l.partyCode = QStringLiteral("21-10-001");
    l.partyName = QStringLiteral("ELECTRICITY");
    l.debit = *Money::parse(QStringLiteral("100"));
    l.description = QStringLiteral("BILL");
    v.lines << l;
    QVERIFY(VoucherPosting(t.db(), QStringLiteral("ADMIN"), day).post(v, NumberPolicy::Typed).ok);

    Main m(t, {QStringLiteral("mnuUEditLog"), QStringLiteral("mnuUCheckBooks")});
    QVERIFY(m.saved && m.active);
    QCOMPARE(t.db().scalar(QStringLiteral("SELECT Menu FROM tblUserRights WHERE USERNAME = 'ADMIN'")).toString(),
             QStringLiteral("mnuUCheckBooks,mnuUEditLog"));
    frmMDITessel &w = m.main;
    for (const char *entry : {"mnuUEditLog", "mnuUCheckBooks"}) {
        QVERIFY2(!w.allowsEntry(QString::fromLatin1(entry)), entry);
        QVERIFY2(!w.runMenuEntry(QString::fromLatin1(entry)), entry);
    }
    QVERIFY(!w.findScreen(QStringLiteral("frmEditLog")));
    QVERIFY(!w.findScreen(QStringLiteral("frmCheckBooks")));
    QVERIFY(w.allowsEntry(QStringLiteral("mnuUClosingDate")));
    QVERIFY(w.allowsEntry(QStringLiteral("mnuEndYearProcessing")));

    frmJournalVoucher *f = openPostedVoucher(w, {QStringLiteral("CP"), 1, day});
    QVERIFY(f && f->currentDocument());
    f->txtDesc->setFocus();
    QTest::keyClick(f->txtDesc, Qt::Key_F8);
    QApplication::processEvents();
    QVERIFY(!w.findScreen(QStringLiteral("frmEditLog")));
}

QTEST_MAIN(TestUserRightsApplied)
#include "tst_userrightsapplied.moc"
