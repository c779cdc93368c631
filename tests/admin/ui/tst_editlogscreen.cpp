// The edit log's viewer headless: opened from UTILITIES, filtered by day,
// user, document type and number, its refusals, a double click that opens
// the voucher, F8 on the voucher screen for the voucher's own history, F8
// on the invoice screen for the invoice's lines and sale voucher, and the
// printed log over the same filter.
#include "support/ui/ScreenTest.h"

#include "admin/EditLogView.h"
#include "admin/ui/frmEditLog.h"
#include "foundation/EditLogSchema.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/frmMDITessel.h"
#include "reports/ReportExport.h"
#include "reports/ReportFrame.h"
#include "sales/tst_invoicefixture.h"
#include "sales/ui/frmInvoice.h"
#include "support/ui/ScreenKit.h"
#include "vouchers/VoucherPosting.h"
#include "vouchers/ui/frmJournalVoucher.h"

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTableView>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const QDate kDay(2026, 3, 9);

Money m(const char *text) { return *Money::parse(QString::fromLatin1(text)); }

// Two cash vouchers, the first by CLERK and the second by OWNER.
void postVouchers(ScreenTest &t)
{
    t.addAccounts({{"21-10-001", "ELECTRICITY"}, {"14-10-001", "PAPER HOUSE"}});
    qint64 number = 0;
    for (const char *user : {"CLERK", "OWNER"}) {
        t.db().setActor(QString::fromLatin1(user), QStringLiteral("DESK"));
        Voucher v{{QStringLiteral("CP"), ++number, kDay}, {}};
        VoucherLine a;
        a.partyCode = QStringLiteral("21-10-001");
        a.partyName = QStringLiteral("ELECTRICITY");
        a.debit = m("100");
        a.description = QStringLiteral("BILL");
        v.lines << a;
        const Outcome out = VoucherPosting(t.db(), QString::fromLatin1(user), kDay).post(v, NumberPolicy::Proposed);
        QVERIFY2(out.ok, qPrintable(out.message));
    }
}

struct Main
{
    Main()
    {
        main.show();
        QApplication::setActiveWindow(&main);
        active = QTest::qWaitForWindowActive(&main);
    }
    frmEditLog *editLog()
    {
        main.runMenuEntry(QStringLiteral("mnuUEditLog"));
        return qobject_cast<frmEditLog *>(main.findScreen(QStringLiteral("frmEditLog")));
    }
    frmMDITessel main;
    bool active = false;
};

// The days by the database's own clock, which the log keeps, from before
// the vouchers were posted to after.
struct Days
{
    QDate first;
    QDate last;
};

QDate databaseDay(SessionConnection &db)
{
    return db.scalar(QStringLiteral("SELECT ") + EditLogSchema::todaySql(db.isPostgres())).toDate();
}

Days postVouchersLogged(ScreenTest &t)
{
    Days d;
    d.first = databaseDay(t.db());
    postVouchers(t);
    d.last = databaseDay(t.db());
    return d;
}

void filter(frmEditLog *f, const Days &days, const QString &type, const QString &number,
            const QString &user = QString())
{
    f->mskDateFrom->setDate(days.first);
    f->mskDateTo->setDate(days.last);
    f->cmbUserName->setEditText(user);
    f->cmbDocType->setEditText(type);
    f->txtDocNo->setText(number);
    f->cmdShow->click();
}

int rows(frmEditLog *f) { return f->dgEditLog->model()->rowCount(); }

} // namespace

class TestEditLogScreen : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void filtersAndRefusals_data() { TestDb::addBackends(); }
    void filtersAndRefusals();
    void opensTheVoucherAndItsHistory();
    void invoiceHistoryByKey();
    void printedLogTakesTheFilter();
};

void TestEditLogScreen::filtersAndRefusals()
{
    TESSEL_BACKEND()
    const QDate today = QDate::currentDate();
    ScreenTest t(backend, today);
    const Days days = postVouchersLogged(t);
    QVERIFY(days.first.isValid());
    Main m;
    QVERIFY(m.active);
    frmEditLog *f = m.editLog();
    QVERIFY(f);
    QCOMPARE(f->mskDateFrom->date(), today); // the workstation's day first
    QCOMPARE(f->mskDateTo->date(), today);
    filter(f, days, QString(), QString());
    QVERIFY(rows(f) >= 6);
    QVERIFY(ScreenKit::items(f->cmbDocType).contains(QStringLiteral("CP")));
    QVERIFY(ScreenKit::items(f->cmbUserName).contains(QStringLiteral("OWNER")));

    filter(f, days, QStringLiteral("CP"), QStringLiteral("2"));
    QCOMPARE(rows(f), 2); // the line and the cash row
    for (const EditLog::Entry &e : f->entries()) {
        QCOMPARE(e.userName, QStringLiteral("OWNER"));
        QCOMPARE(e.change, QStringLiteral("INSERT"));
    }
    QCOMPARE(f->dgEditLog->model()->index(0, 7).data().toString(), QStringLiteral("2"));
    QCOMPARE(f->dgEditLog->model()->index(0, 8).data().toString(), QStringLiteral("09/03/2026"));
    // The newest row is selected, its values in full below the grid.
    QVERIFY(f->txtAfter->toPlainText().split(QLatin1Char('\n')).contains(QStringLiteral("PartyCR=100.00")));
    QVERIFY(f->txtBefore->toPlainText().isEmpty());
    f->dgEditLog->setCurrentIndex(f->dgEditLog->model()->index(0, 0));
    QVERIFY(f->txtAfter->toPlainText().split(QLatin1Char('\n')).contains(QStringLiteral("PartyDR=100.00")));
    ScreenKit::shoot(&m.main, QStringLiteral("editlog-") + backend);

    filter(f, days, QStringLiteral("CP"), QString(), QStringLiteral("CLERK"));
    QCOMPARE(rows(f), 2);
    filter(f, days, QStringLiteral("JV"), QString());
    QCOMPARE(rows(f), 0);

    // Days before the posting: nothing; a period that ends before it starts: refused.
    f->mskDateFrom->setDate(days.first.addDays(-3));
    f->mskDateTo->setDate(days.first.addDays(-1));
    f->cmbDocType->setEditText(QString());
    f->cmdShow->click();
    QCOMPARE(rows(f), 0);
    f->mskDateFrom->setDate(days.first);
    f->cmdShow->click();
    QCOMPARE(t.rec.last().text, EditLogView::Messages::badPeriod());
    QCOMPARE(QApplication::focusWidget(), static_cast<QWidget *>(f->mskDateFrom));
    f->mskDateTo->setMaskText(QStringLiteral("31/02/2026"));
    f->cmdShow->click();
    QVERIFY(t.rec.last().isCritical());
    QCOMPARE(QApplication::focusWidget(), static_cast<QWidget *>(f->mskDateTo));
    // Empty dates take every day.
    f->mskDateFrom->setMaskText(MaskedLineEdit::dateMask());
    f->mskDateTo->setMaskText(MaskedLineEdit::dateMask());
    f->cmdShow->click();
    QVERIFY(rows(f) >= 6);
}

void TestEditLogScreen::opensTheVoucherAndItsHistory()
{
    ScreenTest t(QStringLiteral("sqlite"), QDate::currentDate());
    const Days days = postVouchersLogged(t);
    Main m;
    QVERIFY(m.active);
    frmEditLog *f = m.editLog();
    filter(f, days, QStringLiteral("CP"), QStringLiteral("1"));
    QCOMPARE(rows(f), 2);
    emit f->dgEditLog->doubleClicked(f->dgEditLog->model()->index(0, 3));
    auto *v = qobject_cast<frmJournalVoucher *>(m.main.findScreen(QStringLiteral("frmJournalVoucher")));
    QVERIFY(v);
    QCOMPARE(v->mode(), frmJournalVoucher::Mode::Modify);
    QVERIFY(v->frOuterVoucher->isVisible()); // loaded, on the entry panel
    QCOMPARE(v->txtVoucherNo->text(), QStringLiteral("1"));
    QCOMPARE(v->dgVoucher->model()->rowCount(), 1);

    // F8 on the voucher: its own history, and nothing else.
    const auto doc = v->currentDocument();
    QVERIFY(doc);
    QCOMPARE(doc->type, QStringLiteral("CP"));
    v->txtDesc->setFocus();
    QTest::keyClick(v->txtDesc, Qt::Key_F8);
    QCOMPARE(m.main.findScreen(QStringLiteral("frmEditLog")), static_cast<QWidget *>(f));
    QCOMPARE(f->cmbDocType->currentText(), QStringLiteral("CP"));
    QCOMPARE(f->txtDocNo->text(), QStringLiteral("1"));
    QCOMPARE(f->title(), QStringLiteral("EDIT LOG OF CP 1"));
    QCOMPARE(rows(f), 2);
    QVERIFY(f->mskDateFrom->typedText().trimmed().isEmpty()); // every day of its life

    // A new voucher has no history yet; the key opens nothing.
    t.rec.answerNext(true); // leave the voucher loaded for a change
    m.main.runMenuEntry(QStringLiteral("mnuPCashPaidVoucher"));
    QCOMPARE(v->mode(), frmJournalVoucher::Mode::New);
    QVERIFY(!v->currentDocument());
    QVERIFY(!v->openHistory());
}

void TestEditLogScreen::invoiceHistoryByKey()
{
    ScreenTest t(QStringLiteral("sqlite"), QDate::currentDate());
    InvoiceFixture::prepareYear(t.db());
    InvoicePosting posting(t.db(), InvoiceFixture::kUser, InvoiceFixture::kToday);
    for (const char *title : {"PACKAGING", "PRESS"})
        QVERIFY(posting.saveNew(InvoiceFixture::header(QString::fromLatin1(title), 4), InvoiceFixture::threeLines(),
                                NumberPolicy::Typed)
                    .ok);
    Main m;
    QVERIFY(m.active);
    frmEditLog *f = m.editLog();
    f->mskDateFrom->setMaskText(MaskedLineEdit::dateMask());
    f->mskDateTo->setMaskText(MaskedLineEdit::dateMask());
    f->cmbDocType->setEditText(QStringLiteral("INVOICE"));
    f->txtDocNo->setText(QStringLiteral("4"));
    f->cmdShow->click();
    QCOMPARE(rows(f), 6); // the lines of both titles
    const int last = rows(f) - 1;
    QCOMPARE(f->entries().at(last).docTitle, QStringLiteral("PRESS"));
    f->openRow(last);
    auto *inv = qobject_cast<frmInvoice *>(m.main.findScreen(QStringLiteral("frmInvoice")));
    QVERIFY(inv);
    QVERIFY(inv->currentDocument());

    // F8: the PRESS invoice's three lines and its voucher's two rows.
    QVERIFY(inv->openHistory());
    QCOMPARE(f->title(), QStringLiteral("EDIT LOG OF INVOICE 4 (PRESS)"));
    QCOMPARE(rows(f), 5);
    QStringList types;
    for (const EditLog::Entry &e : f->entries()) {
        QCOMPARE(e.docTitle, QStringLiteral("PRESS"));
        types << e.docType;
    }
    QCOMPARE(types.count(QStringLiteral("SV")), 2);
    QCOMPARE(types.count(QStringLiteral("INVOICE")), 3);
    ScreenKit::shoot(&m.main, QStringLiteral("edit-log-invoice-history"));
    // SHOW takes the fields as typed again: the lines of both titles.
    f->cmdShow->click();
    QCOMPARE(rows(f), 6);
}

void TestEditLogScreen::printedLogTakesTheFilter()
{
    ScreenTest t(QStringLiteral("sqlite"), QDate::currentDate());
    const Days days = postVouchersLogged(t);
    EditLog::Filter f;
    QVERIFY(EditLogView::readFilter(days.first, days.last, QStringLiteral("OWNER"),
                                    QStringLiteral("CP"), QString(), f)
                .ok);
    QVERIFY(!EditLogView::readFilter(QDate(), QDate(), QString(), QString(), QStringLiteral("X1"), f).ok);
    const Reports::ReportRequest req = EditLogView::request(f, QStringLiteral("dd"), QStringLiteral("dd"));
    Reports::RenderedReport r = Reports::ReportFrame::render(t.db(), req);
    QCOMPARE(r.rows.size(), 2);
    for (const Row &row : r.rows.rows)
        QCOMPARE(row.text(QStringLiteral("UserName")).trimmed(), QStringLiteral("OWNER"));
    QCOMPARE(r.rows.first().text(QStringLiteral("ValuesAfter")).contains(QLatin1String("PartyDR=100.00")), true);

    // No dates: every day; a day with nothing logged: nothing.
    EditLog::Filter all;
    QCOMPARE(Reports::ReportFrame::render(t.db(), EditLogView::request(all)).rows.size(),
             int(EditLog::entries(t.db(), all).size()));
    all.to = days.first.addDays(-1);
    QCOMPARE(Reports::ReportFrame::render(t.db(), EditLogView::request(all)).rows.size(), 0);

    QTemporaryDir dir;
    const QString csv = dir.filePath(QStringLiteral("log.csv"));
    QString error;
    QVERIFY2(Reports::exportFile(r, csv, &error), qPrintable(error));
    QFile file(csv);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    QVERIFY(text.contains(QLatin1String("OWNER")));
    QVERIFY(!text.contains(QLatin1String("CLERK")));
}

QTEST_MAIN(TestEditLogScreen)
#include "tst_editlogscreen.moc"
