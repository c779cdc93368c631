// The order, job card and challan screens driven headless through their
// controls, from their menu entries, in each mode.
#include "accounts/TitleList.h"
#include "foundation/Session.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "sales/DeliveryChallanRules.h"
#include "sales/JobCardRules.h"
#include "sales/PurchaseOrderRules.h"
#include "sales/ui/frmDeliveryChallan.h"
#include "sales/ui/frmJobCard.h"
#include "sales/ui/frmPurchaseOrder.h"
#include "sales/ui/JobPaperScreen.h"
#include "support/TestDb.h"
#include "support/ui/MessageRecorder.h"
#include "support/ui/ScreenKit.h"
#include "support/ui/ScreenTest.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QtTest>

void registerJobPaperMenu(MenuRouter &router);

using ScreenKit::items;
using TestDb::count;

namespace {

const QString kA = QStringLiteral("ALPHA PRINTERS");
const QString kB = QStringLiteral("BETA PACKAGES");
const QDate kDay(2026, 3, 10);

class Host : public MenuHost
{
public:
    Host() { registerJobPaperMenu(router); }
};

// Moves the focus from `from` to `to` and lets the queued leave work run.
void leave(QWidget *from, QWidget *to)
{
    from->setFocus(Qt::TabFocusReason);
    QApplication::processEvents();
    to->setFocus(Qt::TabFocusReason);
    QApplication::processEvents();
    QApplication::processEvents();
}

void pick(QTableView *grid, int row)
{
    Q_EMIT grid->activated(grid->model()->index(row, 0));
}

int rows(QTableView *grid) { return grid->model() ? grid->model()->rowCount() : 0; }

QStringList visibleButtons(BaseScreen *f)
{
    QStringList out;
    for (const char *b : {"cmdSave", "cmdModify", "cmdDelete", "cmdNew", "cmdPrint", "cmdAddParty"})
        if (QWidget *w = f->field(QString::fromLatin1(b)); w && w->isVisible())
            out << QString::fromLatin1(b);
    return out;
}

void addOrder(SessionConnection &db, const QString &title, const QString &partyPO,
              const QList<std::pair<const char *, const char *>> &items)
{
    bool first = true;
    qint64 no = PurchaseOrderRules::nextOrderNo(db, title);
    for (const auto &it : items) {
        OrderLine l;
        l.titleName = title;
        l.poNo = no;
        l.date = QDate(2026, 3, 1);
        l.partyPONo = partyPO;
        l.partyCode = QStringLiteral("17-10-001");
        l.partyName = QStringLiteral("CRESCENT TEXTILES");
        l.description = QString::fromLatin1(it.first);
        l.demandNo = QString::fromLatin1(it.second);
        l.quantity = Money::fromUnits(100);
        l.unitPrice = Money::fromUnits(2);
        const Outcome o = PurchaseOrderRules::saveLine(db, l, first ? JobPaper::Numbering::Proposed
                                                                    : JobPaper::Numbering::Existing);
        QVERIFY(o.ok);
        no = o.number;
        first = false;
    }
}

} // namespace

class TestJobPaperScreens : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void purchaseOrder_data() { TestDb::addBackends(); }
    void purchaseOrder();
    void jobCard_data() { TestDb::addBackends(); }
    void jobCard();
    void deliveryChallan_data() { TestDb::addBackends(); }
    void deliveryChallan();
    void openedAgainKeepsParty_data();
    void openedAgainKeepsParty();

private:
    void start(const QString &backend);
    std::unique_ptr<ScreenTest> m_t;
    std::unique_ptr<Host> m_host;
};

void TestJobPaperScreens::init() {}

void TestJobPaperScreens::cleanup()
{
    m_host.reset();
    m_t.reset();
}

void TestJobPaperScreens::start(const QString &backend)
{
    m_t = std::make_unique<ScreenTest>(backend, kDay);
    m_t->addAccounts({{"17-10-001", "CRESCENT TEXTILES"}, {"17-10-002", "NOVA FOODS"}, {"17-10-000", "CUSTOMERS"}});
    for (const QString &t : {kA, kB})
        QVERIFY(TitleList::add(m_t->db(), t).ok);
    session().currentTitle = kA;
    m_host = std::make_unique<Host>();
    m_host->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_host.get()));
}

void TestJobPaperScreens::purchaseOrder()
{
    TESSEL_BACKEND()
    start(backend);
    MessageRecorder &rec = m_t->rec;
    auto *f = m_host->open<frmPurchaseOrder>(QStringLiteral("mnuEnterPurchaseOrder"), QStringLiteral("frmPurchaseOrder"));
    QVERIFY(f);
    QCOMPARE(f->title(), QStringLiteral("PURCHASE ORDER"));
    QCOMPARE(visibleButtons(f), (QStringList{"cmdSave", "cmdNew", "cmdPrint", "cmdAddParty"}));
    QVERIFY(f->txtPONo->isReadOnly());
    QCOMPARE(f->cmbTitleName->currentText(), kA);
    QCOMPARE(f->txtPONo->text(), QStringLiteral("1"));
    QCOMPARE(f->txtRecordNo->text(), QStringLiteral("1"));
    QCOMPARE(f->mskDate->maskText(), QStringLiteral("10/03/2026"));
    QVERIFY(!items(f->cmbPartyName).contains(QStringLiteral("CUSTOMERS"))); // no headings

    // Refused before anything is written: the party first.
    f->cmdSave->click();
    QCOMPARE(rec.last().text, PurchaseOrderMsg::kPartyMissing);
    QVERIFY(rec.last().isCritical());

    f->cmbPartyName->setEditText(QStringLiteral("CRESCENT TEXTILES"));
    QCOMPARE(f->txtPartyCode->text(), QStringLiteral("17-10-001"));
    f->txtPartyPONo->setText(QStringLiteral("KP-77"));
    f->cmbDesc->setEditText(QStringLiteral("LABEL 2X3"));
    f->txtQuantity->setText(QStringLiteral("1000"));
    f->txtUnitPrice->clear();
    f->cmdSave->click();
    QCOMPARE(rec.last().text, PurchaseOrderMsg::kPriceMissing);
    f->txtUnitPrice->setText(QStringLiteral("2.5"));
    f->txtDemandNo->setText(QStringLiteral("D-9"));
    f->cmdSave->click();
    QCOMPARE(rec.last().text, PurchaseOrderMsg::kSaved);
    QCOMPARE(rows(f->dg), 1);
    QCOMPARE(f->txtQuantity->text(), QString());
    QCOMPARE(f->txtRecordNo->text(), QStringLiteral("2"));
    // The next item of the same order.
    f->cmbDesc->setEditText(QStringLiteral("CARTON"));
    f->txtQuantity->setText(QStringLiteral("50"));
    f->cmdSave->click();
    QCOMPARE(rec.last().text, PurchaseOrderMsg::kSaved);
    QCOMPARE(f->txtPONo->text(), QStringLiteral("1"));
    QCOMPARE(rows(f->dg), 2);
    ScreenKit::shoot(m_host.get(), QStringLiteral("purchase-order-") + backend);
    // Passing over the title keeps the order being typed.
    leave(f->cmbTitleName, f->cmbDesc);
    QCOMPARE(f->txtPONo->text(), QStringLiteral("1"));
    QCOMPARE(f->openOrder(), qint64(1));

    // A new order whose number another workstation takes meanwhile.
    f->cmdNew->click();
    QCOMPARE(f->txtPONo->text(), QStringLiteral("2"));
    {
        auto other = m_t->year.connect();
        OrderLine l = PurchaseOrderRules::order(*other, kA, 1).first();
        l.poNo = 2;
        QVERIFY(PurchaseOrderRules::saveLine(*other, l, JobPaper::Numbering::Proposed).ok);
    }
    f->cmbDesc->setEditText(QStringLiteral("BAG"));
    f->txtQuantity->setText(QStringLiteral("7"));
    f->cmdSave->click();
    QCOMPARE(rec.texts().mid(rec.count() - 2),
             (QStringList{JobPaper::numberMoved(QStringLiteral("Purchase Order"), 2, 3), PurchaseOrderMsg::kSaved}));
    QCOMPARE(f->txtPONo->text(), QStringLiteral("3"));
    f->cmbDesc->setEditText(QStringLiteral("FOLDER"));
    f->txtQuantity->setText(QStringLiteral("8"));
    f->cmdSave->click();
    QCOMPARE(count(m_t->db(), QStringLiteral("SELECT COUNT(*) FROM tblPurchaseOrder WHERE PONo = 3")), 2);

    // Another title has its own numbers.
    f->cmbTitleName->setCurrentText(kB);
    QCOMPARE(f->txtPONo->text(), QStringLiteral("1"));
    f->cmbTitleName->setCurrentText(kA);

    // Modify: an item picked from the order and rewritten.
    m_host->open<frmPurchaseOrder>(QStringLiteral("mnuModifyPurchaseOrder"), QStringLiteral("frmPurchaseOrder"));
    QCOMPARE(f->title(), QStringLiteral("MODIFY PURCHASE ORDER"));
    QCOMPARE(visibleButtons(f), (QStringList{"cmdSave", "cmdModify", "cmdPrint", "cmdAddParty"}));
    QVERIFY(!f->txtPONo->isReadOnly());
    f->txtPONo->setText(QStringLiteral("1"));
    leave(f->txtPONo, f->mskDate);
    QCOMPARE(rows(f->dg), 2);
    pick(f->dg, 1);
    QCOMPARE(f->cmbDesc->currentText(), QStringLiteral("CARTON"));
    QCOMPARE(f->txtQuantity->text(), QStringLiteral("50"));
    QCOMPARE(f->txtUnitPrice->text(), QStringLiteral("2.5"));
    f->txtQuantity->setText(QStringLiteral("60"));
    f->txtPartyPONo->setText(QStringLiteral("KP-78"));
    f->cmdModify->click();
    QCOMPARE(rec.last().text, PurchaseOrderMsg::kModified);
    const auto order = PurchaseOrderRules::order(m_t->db(), kA, 1);
    QCOMPARE(order[1].quantity, std::optional<Money>(Money::fromUnits(60)));
    QCOMPARE(order[0].partyPONo, QStringLiteral("KP-78"));
    QCOMPARE(order[0].quantity, std::optional<Money>(Money::fromUnits(1000)));
    // An empty number is named when the field is left.
    f->txtPONo->clear();
    leave(f->txtPONo, f->mskDate);
    QCOMPARE(rec.last().text, PurchaseOrderMsg::kNumberMissingOnLeave);

    // Delete: one item at a time.
    m_host->open<frmPurchaseOrder>(QStringLiteral("mnuDeletePurchaseOrder"), QStringLiteral("frmPurchaseOrder"));
    QCOMPARE(visibleButtons(f), (QStringList{"cmdDelete", "cmdNew", "cmdPrint", "cmdAddParty"}));
    f->txtPONo->setText(QStringLiteral("1"));
    leave(f->txtPONo, f->mskDate);
    pick(f->dg, 0);
    f->cmdDelete->click();
    QCOMPARE(rec.last().text, PurchaseOrderMsg::kDeleted);
    QCOMPARE(rows(f->dg), 1);
    QCOMPARE(PurchaseOrderRules::order(m_t->db(), kA, 1).first().description, QStringLiteral("CARTON"));
}

void TestJobPaperScreens::jobCard()
{
    TESSEL_BACKEND()
    start(backend);
    MessageRecorder &rec = m_t->rec;
    OrderLine o;
    o.titleName = kA;
    o.poNo = 1;
    o.date = QDate(2026, 3, 1);
    o.partyPONo = QStringLiteral("KP-5");
    o.partyCode = QStringLiteral("17-10-002");
    o.partyName = QStringLiteral("NOVA FOODS");
    o.description = QStringLiteral("CARTON");
    o.quantity = Money::fromUnits(10);
    o.unitPrice = Money::fromUnits(1);
    QVERIFY(PurchaseOrderRules::saveLine(m_t->db(), o, JobPaper::Numbering::Proposed).ok);

    auto *f = m_host->open<frmJobCard>(QStringLiteral("mnuEnterJobCard"), QStringLiteral("frmJobCard"));
    QVERIFY(f);
    QCOMPARE(f->title(), QStringLiteral("JOB CARD DETAIL"));
    QCOMPARE(visibleButtons(f), (QStringList{"cmdSave", "cmdNew", "cmdPrint", "cmdAddParty"}));
    QCOMPARE(f->txtJobCardNo->text(), QStringLiteral("1"));
    QCOMPARE(f->pressCombo(QStringLiteral("Paper")), f->cmbPaper);

    leave(f->txtJobCardNo, f->cmbPartyName); // the number of a new card: nothing to bring up
    f->cmbPartyName->setEditText(QStringLiteral("NOVA FOODS"));
    QCOMPARE(items(f->cmbPartyPONo), QStringList{QStringLiteral("KP-5")});
    f->cmbPartyPONo->setEditText(QStringLiteral("KP-5"));
    leave(f->cmbPartyPONo, f->mskIssueDate);
    QCOMPARE(f->mskPODate->maskText(), QStringLiteral("01/03/2026"));
    f->cmdSave->click();
    QCOMPARE(rec.last().text, JobCardMsg::kQuantityMissing);
    f->txtQuantity->setText(QStringLiteral("5000 PCS"));
    f->cmbPaper->setEditText(QStringLiteral("ART CARD 300G"));
    f->cmbMachine->setEditText(QStringLiteral("GTO 52"));
    f->cmdSave->click();
    QCOMPARE(rec.last().text, JobCardMsg::kSaved);
    QCOMPARE(f->txtJobCardNo->text(), QStringLiteral("2"));
    QCOMPARE(items(f->cmbPaper), QStringList{QStringLiteral("ART CARD 300G")}); // offered on the next card
    const auto saved = JobCardRules::card(m_t->db(), 1);
    QVERIFY(saved);
    QCOMPARE(saved->poDate, QDate(2026, 3, 1));
    QVERIFY(!saved->issueDate.isValid());
    QCOMPARE(saved->partyPONo, QStringLiteral("KP-5"));
    ScreenKit::shoot(m_host.get(), QStringLiteral("job-card-") + backend);

    // A card's number typed again is refused, not failed at the server.
    f->txtJobCardNo->setText(QStringLiteral("1"));
    leave(f->txtJobCardNo, f->mskDate);
    QCOMPARE(f->cmbPaper->currentText(), QStringLiteral("ART CARD 300G")); // the card comes up
    f->cmdSave->click();
    QCOMPARE(rec.last().text, JobCardMsg::kDuplicate);
    QCOMPARE(count(m_t->db(), QStringLiteral("SELECT COUNT(*) FROM tblJobCard")), 1);
    // A number without a card empties the fields and keeps the number.
    f->txtJobCardNo->setText(QStringLiteral("9"));
    leave(f->txtJobCardNo, f->mskDate);
    QCOMPARE(f->txtJobCardNo->text(), QStringLiteral("9"));
    QCOMPARE(f->cmbPaper->currentText(), QString());
    QCOMPARE(f->cmbPartyName->currentText(), QString());

    // Modify: the card by its number.
    m_host->open<frmJobCard>(QStringLiteral("mnuModifyJobCard"), QStringLiteral("frmJobCard"));
    QCOMPARE(f->title(), QStringLiteral("MODIFY JOB CARD"));
    QCOMPARE(visibleButtons(f), (QStringList{"cmdModify", "cmdNew", "cmdPrint", "cmdAddParty"}));
    f->txtJobCardNo->setText(QStringLiteral("1"));
    leave(f->txtJobCardNo, f->mskDate);
    QCOMPARE(f->cmbPartyName->currentText(), QStringLiteral("NOVA FOODS"));
    QCOMPARE(f->txtQuantity->text(), QStringLiteral("5000 PCS"));
    QCOMPARE(f->printJobCardNo(), qint64(1));
    f->cmbStatus->setEditText(QStringLiteral("PRINTED"));
    f->cmdModify->click();
    QCOMPARE(rec.last().text, JobCardMsg::kUpdated);
    QCOMPARE(JobCardRules::card(m_t->db(), 1)->pressValue(QStringLiteral("Status")), QStringLiteral("PRINTED"));
    QCOMPARE(items(f->cmbStatus), QStringList{QStringLiteral("PRINTED")});

    m_host->open<frmJobCard>(QStringLiteral("mnuViewJobCard"), QStringLiteral("frmJobCard"));
    QCOMPARE(visibleButtons(f), (QStringList{"cmdNew", "cmdPrint", "cmdAddParty"}));

    // Delete: a new number deletes nothing; the card's number deletes it.
    m_host->open<frmJobCard>(QStringLiteral("mnuDeleteJobCard"), QStringLiteral("frmJobCard"));
    QCOMPARE(f->title(), QStringLiteral("DELETE JOB CARD"));
    f->txtJobCardNo->setText(QStringLiteral("1"));
    f->cmdDelete->click();
    QCOMPARE(rec.last().text, JobCardMsg::kDeleted);
    QCOMPARE(count(m_t->db(), QStringLiteral("SELECT COUNT(*) FROM tblJobCard")), 0);
}

void TestJobPaperScreens::deliveryChallan()
{
    TESSEL_BACKEND()
    start(backend);
    MessageRecorder &rec = m_t->rec;
    addOrder(m_t->db(), kA, QStringLiteral("KP-77"), {{"LABEL 2X3", "D-9"}, {"CARTON", "D-4"}, {"LABEL 2X3", "D-2"}});

    auto *f = m_host->open<frmDeliveryChallan>(QStringLiteral("mnuEnterDeliveryChallan"),
                                               QStringLiteral("frmDeliveryChallan"));
    QVERIFY(f);
    QCOMPARE(f->title(), QStringLiteral("DELIVERY CHALLAN"));
    QCOMPARE(visibleButtons(f), (QStringList{"cmdSave", "cmdNew", "cmdPrint", "cmdAddParty"}));
    QCOMPARE(QApplication::focusWidget(), f->cmbTitleName);
    QCOMPARE(f->txtDeliveryChallanNo->text(), QStringLiteral("1"));

    f->cmbPartyName->setEditText(QStringLiteral("CRESCENT TEXTILES"));
    QCOMPARE(items(f->cmbPartyPONo), QStringList{QStringLiteral("KP-77")});
    f->cmbPartyPONo->setEditText(QStringLiteral("KP-77"));
    leave(f->cmbPartyPONo, f->cmbDescSrNo);
    QCOMPARE(items(f->cmbDescSrNo),
             (QStringList{QStringLiteral("1 - LABEL 2X3"), QStringLiteral("2 - CARTON"), QStringLiteral("3 - LABEL 2X3")}));
    f->cmbDescSrNo->setCurrentIndex(1);
    QCOMPARE(f->cmbDesc->currentText(), QStringLiteral("CARTON"));
    QCOMPARE(f->cmbDemandNo->currentText(), QStringLiteral("D-4"));
    f->cmbDescSrNo->setCurrentIndex(0);
    QCOMPARE(items(f->cmbDemandNo), (QStringList{QStringLiteral("D-9"), QStringLiteral("D-2")}));
    QCOMPARE(f->cmbDemandNo->currentText(), QStringLiteral("D-9"));
    f->cmdSave->click();
    QCOMPARE(rec.last().text, ChallanMsg::kQuantityMissing);
    f->txtQuantity->setText(QStringLiteral("40"));
    f->txtCtn->setText(QStringLiteral("3"));
    f->txtGateEntryNo->setText(QStringLiteral("GE-1"));
    f->cmdSave->click();
    QCOMPARE(rec.last().text, ChallanMsg::kSaved);
    QCOMPARE(rows(f->dgDeliveryChallan), 1);
    f->cmbDescSrNo->setCurrentIndex(1);
    f->txtQuantity->setText(QStringLiteral("25"));
    f->txtCtn->setText(QStringLiteral("5"));
    f->cmdSave->click();
    QCOMPARE(rec.last().text, ChallanMsg::kSaved);
    QCOMPARE(f->txtDeliveryChallanNo->text(), QStringLiteral("1"));
    QCOMPARE(rows(f->dgDeliveryChallan), 2);
    ScreenKit::shoot(m_host.get(), QStringLiteral("delivery-challan-") + backend);

    // Modify: a picked line brings its own carton count, and the other
    // line keeps its own.
    m_host->open<frmDeliveryChallan>(QStringLiteral("mnuModifyDeliveryChallan"), QStringLiteral("frmDeliveryChallan"));
    QCOMPARE(f->title(), QStringLiteral("MODIFY DELIVERY CHALLAN"));
    QCOMPARE(visibleButtons(f), (QStringList{"cmdModify", "cmdNew", "cmdPrint", "cmdAddParty"}));
    f->txtCtn->setText(QStringLiteral("99"));
    f->txtDeliveryChallanNo->setText(QStringLiteral("1"));
    leave(f->txtDeliveryChallanNo, f->mskDate);
    QCOMPARE(rows(f->dgDeliveryChallan), 2);
    pick(f->dgDeliveryChallan, 0);
    QCOMPARE(f->txtCtn->text(), QStringLiteral("3"));
    QCOMPARE(f->cmbDesc->currentText(), QStringLiteral("LABEL 2X3"));
    QCOMPARE(f->cmbDemandNo->currentText(), QStringLiteral("D-9"));
    QCOMPARE(f->txtQuantity->text(), QStringLiteral("40"));
    f->txtQuantity->setText(QStringLiteral("45"));
    f->cmdModify->click();
    QCOMPARE(rec.last().text, ChallanMsg::kModified);
    auto lines = DeliveryChallanRules::lines(m_t->db(), kA, 1);
    QCOMPARE(lines[0].quantity, std::optional<Money>(Money::fromUnits(45)));
    QCOMPARE(lines[0].ctn, QStringLiteral("3"));
    QCOMPARE(lines[1].ctn, QStringLiteral("5"));
    QCOMPARE(lines[0].demandNo, QStringLiteral("D-9"));

    // Delete by the picked line.
    m_host->open<frmDeliveryChallan>(QStringLiteral("mnuDeleteDeliveryChallan"), QStringLiteral("frmDeliveryChallan"));
    f->txtDeliveryChallanNo->setText(QStringLiteral("1"));
    leave(f->txtDeliveryChallanNo, f->mskDate);
    pick(f->dgDeliveryChallan, 1);
    f->cmdDelete->click();
    QCOMPARE(rec.last().text, ChallanMsg::kDeleted);
    lines = DeliveryChallanRules::lines(m_t->db(), kA, 1);
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines[0].description, QStringLiteral("LABEL 2X3"));

    // A new challan whose proposed number another workstation takes
    // meanwhile moves on; a number typed by the clerk takes the line.
    m_host->open<frmDeliveryChallan>(QStringLiteral("mnuEnterDeliveryChallan"), QStringLiteral("frmDeliveryChallan"));
    QCOMPARE(f->txtDeliveryChallanNo->text(), QStringLiteral("2"));
    {
        auto other = m_t->year.connect();
        ChallanLine taken = lines[0];
        taken.challanNo = 2;
        QVERIFY(DeliveryChallanRules::saveLine(*other, taken, JobPaper::Numbering::Proposed, kDay).ok);
    }
    f->cmbDescSrNo->setCurrentIndex(2);
    f->txtQuantity->setText(QStringLiteral("10"));
    f->cmdSave->click();
    QCOMPARE(rec.texts().mid(rec.count() - 2),
             (QStringList{JobPaper::numberMoved(QStringLiteral("DeliveryChallan"), 2, 3), ChallanMsg::kSaved}));
    QCOMPARE(f->txtDeliveryChallanNo->text(), QStringLiteral("3"));
    f->txtDeliveryChallanNo->setText(QStringLiteral("1"));
    f->txtQuantity->setText(QStringLiteral("11"));
    f->cmdSave->click();
    QCOMPARE(rec.last().text, ChallanMsg::kSaved);
    QCOMPARE(DeliveryChallanRules::lines(m_t->db(), kA, 1).size(), 2);
    QCOMPARE(DeliveryChallanRules::lines(m_t->db(), kA, 3).size(), 1);
}

void TestJobPaperScreens::openedAgainKeepsParty_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("screen");
    QTest::newRow("order") << "sqlite" << "mnuEnterPurchaseOrder" << "frmPurchaseOrder";
    QTest::newRow("job card") << "sqlite" << "mnuModifyJobCard" << "frmJobCard";
    QTest::newRow("challan") << "sqlite" << "mnuEnterDeliveryChallan" << "frmDeliveryChallan";
}

void TestJobPaperScreens::openedAgainKeepsParty()
{
    TESSEL_BACKEND()
    QFETCH(QString, entry);
    QFETCH(QString, screen);
    start(backend);
    auto *f = m_host->open<JobPaperScreen>(entry, screen);
    QVERIFY(f);
    auto *name = f->findChild<QComboBox *>(QStringLiteral("cmbPartyName"));
    auto *code = f->findChild<MaskedLineEdit *>(QStringLiteral("txtPartyCode"));
    QVERIFY(name && code);
    name->setCurrentIndex(name->findText(QStringLiteral("NOVA FOODS")));
    QCOMPARE(code->maskText(), QStringLiteral("17-10-002"));

    // Another workstation adds a party; opening the screen again lists it
    // and keeps the party being typed.
    m_t->addAccounts({{"17-10-003", "ORBIT PAPERS"}});
    QCOMPARE(m_host->open<JobPaperScreen>(entry, screen), f);
    QVERIFY(name->findText(QStringLiteral("ORBIT PAPERS")) >= 0);
    QCOMPARE(name->currentText(), QStringLiteral("NOVA FOODS"));
    QCOMPARE(code->maskText(), QStringLiteral("17-10-002"));
}

QTEST_MAIN(TestJobPaperScreens)
#include "tst_jobpaperscreens.moc"
