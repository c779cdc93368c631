// CHECK BOOKS from its menu entry: a whole demonstration year, then a
// planted fault listed with its voucher, which a double click opens in
// the voucher screen.
#include "admin/ui/frmCheckBooks.h"
#include "foundation/Schema.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/frmMDITessel.h"
#include "support/ui/ScreenKit.h"
#include "support/ui/ScreenTest.h"
#include "vouchers/DemoGenerator.h"
#include "vouchers/ui/frmJournalVoucher.h"

#include <QLabel>
#include <QLineEdit>
#include <QTableView>
#include <QtTest>

class TestCheckBooksScreen : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void faultListedAndOpened_data() { TestDb::addBackends(); }
    void faultListedAndOpened();
};

void TestCheckBooksScreen::faultListedAndOpened()
{
    TESSEL_BACKEND()
    ScreenTest t(backend, QDate(2026, 3, 10), QStringLiteral("ADMIN"));
    t.db().execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {QDate(2025, 12, 31)});
    DemoOptions o;
    o.rows = 300;
    o.from = QDate(2026, 1, 1);
    o.to = QDate(2026, 3, 10);
    DemoGenerator::standardYear(t.db(), o);

    frmMDITessel main;
    main.resize(1366, 768);
    main.show();
    QVERIFY(main.runMenuEntry(QStringLiteral("mnuUCheckBooks")));
    auto *f = qobject_cast<frmCheckBooks *>(main.findScreen(QStringLiteral("frmCheckBooks")));
    QVERIFY(f);
    QVERIFY2(f->result().passed(), qPrintable(f->lblResult->text()));
    QVERIFY(f->lblResult->text().startsWith(QLatin1String("THE BOOKS ARE WHOLE")));
    QCOMPARE(f->dgFaults->model()->rowCount(), 0);

    // A journal voucher's debit raised by hand, the kept balances made to follow.
    const Row r = *t.db().selectOne(QStringLiteral("SELECT SrNo, VoucherNo, VDate FROM tblPartyBalance "
                                                   "WHERE VoucherType = 'JV' AND VoucherNo > 0 AND PartyDR > 0 ORDER BY SrNo"));
    t.db().execute(QStringLiteral("UPDATE tblPartyBalance SET PartyDR = PartyDR + 1, PartyBalance = PartyBalance + 1 "
                                  "WHERE SrNo = ?"), {r.integer(0)});
    Schema::rebuildKeptBalances(t.db());
    f->cmdCheck->click();
    QCOMPARE(f->lblResult->text().left(13), QStringLiteral("1 FAULT FOUND"));
    QAbstractItemModel *m = f->dgFaults->model();
    QCOMPARE(m->rowCount(), 1);
    QCOMPARE(m->index(0, 0).data().toString(), QStringLiteral("UNBALANCED VOUCHER"));
    QCOMPARE(m->index(0, 1).data().toString(),
             QStringLiteral("JV # %1 OF %2").arg(r.integer(1)).arg(r.date(2).toString(QStringLiteral("dd/MM/yyyy"))));
    QCOMPARE(m->index(0, 3).data().toString(), QStringLiteral("Debit and credit differ by 1.00 DR"));
    ScreenKit::shoot(&main, QStringLiteral("checkbooks"));

    QVERIFY(f->openFault(0));
    auto *v = qobject_cast<frmJournalVoucher *>(main.findScreen(QStringLiteral("frmJournalVoucher")));
    QVERIFY(v);
    QCOMPARE(v->mode(), frmJournalVoucher::Mode::Modify);
    QCOMPARE(v->txtVoucherNo->text(), QString::number(r.integer(1)));
    QCOMPARE(v->mskDate->date(), r.date(2));
    QVERIFY(v->dgVoucher->model()->rowCount() >= 2);
    QVERIFY(t.rec.isEmpty());

    // With the voucher screen open, its staged lines are its own.
    f->cmdCheck->click();
    QVERIFY(f->lblResult->text().contains(QLatin1String("STAGING NOT CHECKED")));
    QCOMPARE(m->rowCount(), 1);
}

QTEST_MAIN(TestCheckBooksScreen)
#include "tst_checkbooksscreen.moc"
