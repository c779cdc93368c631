// "SALE TAX INVOICE / BILL" driven headless from its menu entries through
// its controls: the options each entry offers, the search under the
// working title, a row taken into the fields, the print button's checks,
// and the copies opening one after the other as each viewer is closed.
#include "accounts/TitleList.h"
#include "foundation/DateRules.h"
#include "foundation/Session.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "reports/ui/frmViewReport.h"
#include "sales/InvoiceDocuments.h"
#include "sales/InvoicePosting.h"
#include "sales/ui/frmInvoiceGenerate.h"
#include "support/TestDb.h"
#include "support/ui/MessageRecorder.h"
#include "support/ui/ScreenKit.h"
#include "support/ui/ScreenTest.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QtTest>

void registerInvoiceMenu(MenuRouter &router);

using InvoiceDocuments::Document;
namespace Msg = InvoiceDocuments::Messages;

namespace {

const QString kPress = QStringLiteral("PRESS");
const QString kPackaging = QStringLiteral("PACKAGING");
const QDate kDay(2026, 3, 9);

class Host : public MenuHost
{
public:
    Host() { registerInvoiceMenu(router); }
};

void saveInvoice(SessionConnection &db, const QString &title, qint64 no, const QString &code, const QString &name,
                 const QString &desc)
{
    InvoiceLine l;
    l.termsOfSale = QStringLiteral("CREDIT SALE");
    l.description = desc;
    l.quantity = QStringLiteral("100");
    l.rate = QStringLiteral("10");
    l.saleTaxRate = QStringLiteral("17");
    l.type = QStringLiteral("Pcs");
    l.challanNo = QStringLiteral("3");
    QVERIFY(InvoiceRules::computeFigures(l).ok);
    InvoiceHeader h;
    h.key = {title, no, kDay};
    h.partyCode = code;
    h.partyName = name;
    QVERIFY(InvoicePosting(db, QStringLiteral("CLERK"), kDay).saveNew(h, {l}, NumberPolicy::Typed).ok);
}

QStringList shownOptions(frmInvoiceGenerate *f)
{
    QStringList out;
    for (QRadioButton *o : f->findChildren<QRadioButton *>())
        if (o->isVisible())
            out << o->objectName();
    out.sort();
    return out;
}

// Closes the viewer on show and waits for the next copy's, if any.
void closeAndNext(frmViewReport *&v)
{
    QPointer<frmViewReport> gone = v;
    v->close();
    QTRY_VERIFY_WITH_TIMEOUT(gone.isNull(), 5000);
    QApplication::processEvents();
    QApplication::processEvents();
    v = Reports::currentViewer();
}

} // namespace

class TestFrmInvoiceGenerate : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void cleanup();
    void printInvoices_data() { TestDb::addBackends(); }
    void printInvoices();
    void printChallans_data() { TestDb::addBackends(); }
    void printChallans();

private:
    void start(const QString &backend);
    std::unique_ptr<ScreenTest> m_t;
    std::unique_ptr<Host> m_host;
};

void TestFrmInvoiceGenerate::cleanup()
{
    if (auto *v = Reports::currentViewer())
        delete v;
    m_host.reset();
    m_t.reset();
}

void TestFrmInvoiceGenerate::start(const QString &backend)
{
    m_t = std::make_unique<ScreenTest>(backend, QDate(2026, 3, 10));
    m_t->addAccounts({{"17-10-001", "CRESCENT TEXTILES"}, {"17-10-002", "NOVA FOODS"}, {"17-10-000", "CUSTOMERS"}});
    SessionConnection &db = m_t->db();
    db.execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {QDate(2025, 12, 31)});
    for (const QString &t : {kPress, kPackaging}) {
        QVERIFY(TitleList::add(db, t).ok);
        TitleList::Letterhead l;
        l.titleName = t;
        l.companyName = t + QStringLiteral(" PRINTERS");
        l.companySaleTaxNo = QStringLiteral("STN-") + t.left(3);
        QVERIFY(TitleList::saveLetterhead(db, l).ok);
    }
    QVERIFY(TitleList::applyLetterhead(db, kPress, session()));
    m_host = std::make_unique<Host>();
    m_host->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_host.get()));
}

void TestFrmInvoiceGenerate::printInvoices()
{
    TESSEL_BACKEND()
    start(backend);
    SessionConnection &db = m_t->db();
    saveInvoice(db, kPress, 1, QStringLiteral("17-10-001"), QStringLiteral("CRESCENT TEXTILES"), QStringLiteral("CARTON"));
    saveInvoice(db, kPress, 2, QStringLiteral("17-10-002"), QStringLiteral("NOVA FOODS"), QStringLiteral("LABEL"));
    // Another title's invoice under the same number and date.
    saveInvoice(db, kPackaging, 1, QStringLiteral("17-10-002"), QStringLiteral("NOVA FOODS"), QStringLiteral("BOX"));
    MessageRecorder &rec = m_t->rec;

    // Every invoice entry keeps the invoice with its sale tax on offer; only
    // VIEW INVOICE adds the one with the balance.
    const QStringList four = {"optBill", "optInvoice", "optInvoiceWithSalesTax", "optSaleTaxInvoice",
                              "optSaleTaxInvoiceDW"};
    auto *f = m_host->open<frmInvoiceGenerate>(QStringLiteral("mnuViewInvoice"), QStringLiteral("frmInvoiceGenerate"));
    QVERIFY(f);
    QCOMPARE(shownOptions(f), QStringList({"optBill", "optInvoice", "optInvoiceWithBalance", "optInvoiceWithSalesTax",
                                           "optSaleTaxInvoice", "optSaleTaxInvoiceDW"}));
    f = m_host->open<frmInvoiceGenerate>(QStringLiteral("mnuViewPrintBill"), QStringLiteral("frmInvoiceGenerate"));
    QCOMPARE(shownOptions(f), four);
    f = m_host->open<frmInvoiceGenerate>(QStringLiteral("mnuViewPrintInvoice"), QStringLiteral("frmInvoiceGenerate"));
    QCOMPARE(shownOptions(f), four);
    QVERIFY(f->optSaleTaxInvoice->isChecked());
    QCOMPARE(f->titleLabel()->text(), QStringLiteral("SALE TAX INVOICE"));
    QCOMPARE(ScreenKit::items(f->cmbStamp), InvoiceDocuments::kStamps);
    f->optBill->click();
    QCOMPARE(f->titleLabel()->text(), QStringLiteral("BILL"));
    f->optSaleTaxInvoice->click();

    // Nothing to print without a number.
    f->cmdView->click();
    QCOMPARE(rec.last().text, Msg::kNoInvoiceNo);
    QVERIFY(!Reports::currentViewer());

    // The period's invoices of the working title, all parties, then one.
    f->mskDateFrom->setMaskText(QStringLiteral("01/03/2026"));
    f->mskDateTo->setMaskText(QStringLiteral("10/03/2026"));
    f->cmdSearch->click();
    QCOMPARE(f->dg->model()->rowCount(), 2);
    QCOMPARE(f->dg->model()->headerData(0, Qt::Horizontal).toString(), QStringLiteral("INVOICE #"));
    f->cmbPartyName->setCurrentText(QStringLiteral("NOVA"));
    f->cmdSearch->click();
    QCOMPARE(f->dg->model()->rowCount(), 1);
    f->cmbPartyName->setCurrentText(QString());
    f->cmdSearch->click();
    ScreenKit::shoot(f, QStringLiteral("invoice-frmInvoiceGenerate"));

    // The first row taken: number, date and party.
    Q_EMIT f->dg->activated(f->dg->model()->index(0, 0));
    QCOMPARE(f->txtInvoiceNo->text(), QStringLiteral("1"));
    QCOMPARE(f->mskDate->maskText(), QStringLiteral("09/03/2026"));
    QCOMPARE(f->cmbPartyName->currentText(), QStringLiteral("CRESCENT TEXTILES"));
    QCOMPARE(f->mskPartyCode->maskText(), QStringLiteral("17-10-001"));

    // Three copies of the sales-tax invoice, one viewer after the other.
    f->cmbStamp->setCurrentText(QStringLiteral("ACCOUNTANT"));
    f->cmdView->click();
    frmViewReport *v = Reports::currentViewer();
    QVERIFY(v);
    QCOMPARE(f->copiesWaiting(), 2);
    const QStringList words = {QStringLiteral("ORIGINAL"), QStringLiteral("DUPLICATE"), QStringLiteral("TRIPLICATE")};
    for (int i = 0; i < 3; ++i) {
        QVERIFY(v);
        QCOMPARE(v->windowTitle(), words.at(i));
        QCOMPARE(v->report().request.copyCaption, words.at(i));
        QCOMPARE(v->report().rows.size(), 1);
        QCOMPARE(v->report().rows.first().text("BillDesc").trimmed(), QStringLiteral("CARTON"));
        QCOMPARE(v->report().header.clientName, QStringLiteral("PRESS PRINTERS"));
        const QString page = v->report().pageTexts().join(QLatin1Char('\n'));
        QVERIFY(page.contains(QLatin1String("ACCOUNTANT")));
        QVERIFY(page.contains(words.at(i)));
        if (i == 0)
            ScreenKit::shoot(v, QStringLiteral("invoice-viewer-sales-tax-invoice"));
        closeAndNext(v);
    }
    QVERIFY(!v);
    QCOMPARE(f->copiesWaiting(), 0);

    // A bill is one copy with no word, of the number typed.
    f->optBill->click();
    f->txtInvoiceNo->setText(QStringLiteral("2"));
    f->cmdView->click();
    v = Reports::currentViewer();
    QVERIFY(v);
    QCOMPARE(v->windowTitle(), QStringLiteral("BILL"));
    QCOMPARE(v->report().rows.size(), 1);
    QCOMPARE(v->report().rows.first().text("BillDesc").trimmed(), QStringLiteral("LABEL"));
    QCOMPARE(f->copiesWaiting(), 0);
    closeAndNext(v);
    QVERIFY(!v);

    // A bad date is refused before anything opens.
    f->mskDate->setMaskText(QStringLiteral("31/02/2026"));
    f->cmdView->click();
    QCOMPARE(rec.last().text, DateRules::wrongDateMessage());
    QVERIFY(!Reports::currentViewer());
}

void TestFrmInvoiceGenerate::printChallans()
{
    TESSEL_BACKEND()
    start(backend);
    SessionConnection &db = m_t->db();
    for (const QString &title : {kPress, kPackaging})
        for (const char *item : {"CARTON", "LABEL"})
            db.execute(QStringLiteral("INSERT INTO tblDeliveryChallan (RecordNo, DeliveryChallanNo, VDate, PartyCode, "
                                      "PartyName, Description, PONo, Quantity, Type, DemandNo, TitleName) VALUES "
                                      "(1, 5, ?, '17-10-001', 'CRESCENT TEXTILES', ?, 'PO-1', 120, 'Pcs', 'D-1', ?)"),
                       {kDay, title + QLatin1Char(' ') + QString::fromLatin1(item), title});
    MessageRecorder &rec = m_t->rec;
    auto *f = m_host->open<frmInvoiceGenerate>(QStringLiteral("mnuViewDeliveryChallan"),
                                               QStringLiteral("frmInvoiceGenerate"));
    QVERIFY(f);
    QCOMPARE(shownOptions(f), QStringList({"optDeliveryChallan", "optDeliveryChallanByDemandNo"}));
    QCOMPARE(f->titleLabel()->text(), QStringLiteral("DELIVERY CHALLAN"));
    QCOMPARE(f->lblPartyName->text(), QStringLiteral("PARTY CODE:"));
    QCOMPARE(f->lblChallanNo->text(), QStringLiteral("CHALLAN #:"));
    f->cmdView->click();
    QCOMPARE(rec.last().text, Msg::kNoChallanNo);

    f->mskDateFrom->setMaskText(QStringLiteral("01/03/2026"));
    f->cmdSearch->click();
    QCOMPARE(f->dg->model()->rowCount(), 1);
    QCOMPARE(f->dg->model()->headerData(0, Qt::Horizontal).toString(), QStringLiteral("CHALLAN #"));
    Q_EMIT f->dg->activated(f->dg->model()->index(0, 0));
    QCOMPARE(f->txtChallanNo->text(), QStringLiteral("5"));
    QCOMPARE(f->mskPartyCode->maskText(), QStringLiteral("17-10-001"));
    f->cmdView->click();
    frmViewReport *v = Reports::currentViewer();
    for (const char *word : {"ORIGINAL", "DUPLICATE"}) {
        QVERIFY(v);
        QCOMPARE(v->report().request.copyCaption, QString::fromLatin1(word));
        QCOMPARE(v->report().rows.size(), 2);
        QVERIFY(v->report().rows.first().text("Description").startsWith(kPress));
        closeAndNext(v);
    }
    QVERIFY(!v);

    // The same menu again, for orders: the options and captions follow.
    f = m_host->open<frmInvoiceGenerate>(QStringLiteral("mnuViewPurchaseOrder"), QStringLiteral("frmInvoiceGenerate"));
    QCOMPARE(shownOptions(f), QStringList({"optPurchaseOrder", "optPurchaseOrderWithoutRate"}));
    QCOMPARE(f->lblChallanNo->text(), QStringLiteral("PO.#:"));
    f->txtChallanNo->clear();
    f->cmdView->click();
    QCOMPARE(rec.last().text, Msg::kNoOrderNo);
}

QTEST_MAIN(TestFrmInvoiceGenerate)
#include "tst_frminvoicegenerate.moc"
