// The consumables screens driven through their controls from the stock
// menu, headless: receipt, change, issue to an employee, use, the stock
// report and the employee's stock.
#include "foundation/Session.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "reports/ui/frmViewReport.h"
#include "stock/Consumables.h"
#include "stock/EmployeeStock.h"
#include "stock/ui/frmEmployeeStock.h"
#include "stock/ui/frmEmployeeStockFinished.h"
#include "stock/ui/frmStockModify.h"
#include "stock/ui/frmStockPrint.h"
#include "stock/ui/frmStockReceipt.h"
#include "stock/ui/frmStockSearch.h"
#include "support/TestDb.h"
#include "support/ui/MessageRecorder.h"
#include "support/ui/ScreenKit.h"
#include "support/ui/ScreenTest.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QtTest>

void registerStockMenu(MenuRouter &router);

using Consumables::Item;
using ScreenKit::click;
using ScreenKit::items;
using ScreenKit::shoot;

namespace {

class Host : public MenuHost
{
public:
    Host()
    {
        registerStockMenu(router);
        show();
    }
    template <typename Screen>
    Screen *openScreen(const QString &entry, const QString &name)
    {
        Screen *s = open<Screen>(entry, name);
        if (s) {
            QApplication::setActiveWindow(this);
            QApplication::processEvents();
        }
        return s;
    }
};

const QString kEmployee = QStringLiteral("ASLAM PRESSMAN");

// Accounts, and receipts of ORBIT CYAN (5 and 4 units, the older first),
// ORBIT BLACK (3) and a plate.
void addStock(ScreenTest &t)
{
    t.addAccounts({{"14-10-001", "PAPER HOUSE"}, {"16-10-000", "EMPLOYEES"}, {"16-10-001", "ASLAM PRESSMAN"},
                   {"16-10-002", "BASHIR PLATE MAKER"}});
    auto add = [&](Item item, const char *brand, const char *type, qint64 units, const char *price, QDate d) {
        Consumables::Receipt r;
        r.item = item;
        r.brand = QString::fromLatin1(brand);
        r.type = QString::fromLatin1(type);
        r.partyCode = QStringLiteral("14-10-001");
        r.partyName = QStringLiteral("PAPER HOUSE");
        r.units = units;
        r.unitPrice = *Money::parse(QString::fromLatin1(price));
        r.date = d;
        QVERIFY(Consumables::addReceipt(t.db(), r).ok);
    };
    add(Item::Ink, "ORBIT", "CYAN", 4, "1200", QDate(2026, 2, 20));
    add(Item::Ink, "ORBIT", "CYAN", 5, "1100", QDate(2026, 2, 10));
    add(Item::Ink, "ORBIT", "BLACK", 3, "950", QDate(2026, 2, 11));
    add(Item::Plate, "NOVAPLATE", "CTP 745 X 605", 100, "512.50", QDate(2026, 2, 12));
}

QString issuedText(SessionConnection &db)
{
    QStringList out;
    for (const Row &r : db.select(QStringLiteral("SELECT Units, Issue FROM tblStock WHERE Type = 'CYAN' ORDER BY VDate")))
        out << QStringLiteral("%1/%2").arg(r.integer(0)).arg(r.integer(1));
    return out.join(QLatin1Char(' '));
}

QString focusName()
{
    return QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : QString();
}

} // namespace

class TestConsumablesScreens : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void cleanup();
    void issueRefusals_data();
    void issueRefusals();
    void issueDrawsOldestFirst_data() { TestDb::addBackends(); }
    void issueDrawsOldestFirst();
    void optionsChooseItemAndCommand();
    void finishedScreen_data() { TestDb::addBackends(); }
    void finishedScreen();
    void printScreen();
    void receiptScreen_data() { TestDb::addBackends(); }
    void receiptScreen();
    void modifyScreen_data() { TestDb::addBackends(); }
    void modifyScreen();
    void modifyDeletesAll();
    void employeeStockView();
};

void TestConsumablesScreens::cleanup()
{
    if (auto *v = Reports::currentViewer())
        delete v;
}

void TestConsumablesScreens::issueRefusals_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("focus");
    namespace M = EmployeeStock::Msg;
    QTest::newRow("no brand") << "cmbBrandName" << "" << M::brandMissing() << "cmbBrandName";
    QTest::newRow("no type") << "cmbType" << "" << M::typeMissing() << "cmbType";
    QTest::newRow("no employee") << "cmbPartyName" << "" << M::employeeMissing() << "cmbPartyName";
    QTest::newRow("no units") << "txtUnits" << "" << M::unitsMissing() << "txtUnits";
    QTest::newRow("no date") << "mskDate" << "" << QStringLiteral("Wrong date, please enter correct date") << "mskDate";
    QTest::newRow("more than held") << "txtUnits" << "10" << M::quantityShort() << "txtUnits";
    QTest::newRow("a type never received") << "cmbType" << "MAUVE" << M::noOpenReceipt() << "cmdInkStock";
}

void TestConsumablesScreens::issueRefusals()
{
    QFETCH(QString, field);
    QFETCH(QString, value);
    QFETCH(QString, message);
    QFETCH(QString, focus);
    ScreenTest t(QStringLiteral("sqlite"));
    addStock(t);
    Host host;
    auto *f = host.openScreen<frmEmployeeStock>(QStringLiteral("mnuSEmployeeStock"), QStringLiteral("frmEmployeeStock"));
    QVERIFY(f);
    f->cmbPartyName->setEditText(kEmployee);
    QCOMPARE(f->mskPartyCode->maskText(), QStringLiteral("16-10-001"));
    f->txtUnits->setText(QStringLiteral("2"));
    QWidget *w = f->findChild<QWidget *>(field);
    QVERIFY(w);
    if (auto *c = qobject_cast<QComboBox *>(w))
        c->setEditText(value);
    else if (auto *m = qobject_cast<MaskedLineEdit *>(w))
        m->setMaskText(value);
    else
        qobject_cast<QLineEdit *>(w)->setText(value);
    click(f->cmdInkStock);
    QCOMPARE(t.rec.texts(), QStringList{message});
    QVERIFY(t.rec.last().isCritical());
    QCOMPARE(focusName(), focus);
    QCOMPARE(issuedText(t.db()), QStringLiteral("5/0 4/0"));
    if (QTest::currentDataTag() == QByteArray("more than held"))
        shoot(host.mdiArea()->activeSubWindow(), QStringLiteral("frmEmployeeStock-refused"));
}

void TestConsumablesScreens::issueDrawsOldestFirst()
{
    TESSEL_BACKEND()
    ScreenTest t(backend);
    addStock(t);
    Host host;
    auto *f = host.openScreen<frmEmployeeStock>(QStringLiteral("mnuSEmployeeStock"), QStringLiteral("frmEmployeeStock"));
    QCOMPARE(f->title(), QStringLiteral("EMPLOYEE STOCK"));
    QCOMPARE(f->mskDate->maskText(), QStringLiteral("10/03/2026"));
    QCOMPARE(items(f->cmbBrandName), QStringList{QStringLiteral("ORBIT")});
    QCOMPARE(items(f->cmbType), (QStringList{QStringLiteral("BLACK"), QStringLiteral("CYAN")}));
    f->cmbType->setCurrentText(QStringLiteral("CYAN"));
    QCOMPARE(f->dgStock->model()->rowCount(), 2);
    f->cmbPartyName->setEditText(kEmployee);
    f->txtUnits->setText(QStringLiteral("7"));
    click(f->cmdInkStock);
    QCOMPARE(t.rec.texts(), QStringList{QStringLiteral("INK stock has sended to employee successfully")});
    QVERIFY(t.rec.last().isInformation());
    QCOMPARE(issuedText(t.db()), QStringLiteral("5/5 4/2"));
    // The fields stay, so the same issue can be repeated: 2 are left.
    QCOMPARE(f->txtUnits->text(), QStringLiteral("7"));
    QCOMPARE(f->dgStock->model()->index(1, 5).data().toString(), QStringLiteral("2"));
    t.rec.clear();
    click(f->cmdInkStock);
    QCOMPARE(t.rec.texts(), QStringList{EmployeeStock::Msg::quantityShort()});
    QCOMPARE(TestDb::count(t.db(), QStringLiteral("SELECT COUNT(*) FROM tblEmployeeStock WHERE PartyCode = '16-10-001' "
                                                  "AND Units = 7 AND EntryDate = ?"),
                           {QDate(2026, 3, 10)}),
             1);
    shoot(host.mdiArea()->activeSubWindow(), QStringLiteral("frmEmployeeStock"));
}

void TestConsumablesScreens::optionsChooseItemAndCommand()
{
    ScreenTest t(QStringLiteral("sqlite"));
    addStock(t);
    Host host;
    auto *f = host.openScreen<frmEmployeeStock>(QStringLiteral("mnuSEmployeeStock"), QStringLiteral("frmEmployeeStock"));
    QVERIFY(f->option(Item::Ink)->isChecked());
    QCOMPARE(f->option(Item::Plate)->text(), QStringLiteral("PLATE STOCK"));
    click(f->findChild<QPushButton *>(QStringLiteral("cmdCancel"))); // nothing typed: closes
    f = host.openScreen<frmEmployeeStock>(QStringLiteral("mnuSEmployeeStock"), QStringLiteral("frmEmployeeStock"));
    QTest::mouseClick(f->findChild<QRadioButton *>(QStringLiteral("optPlateStock")), Qt::LeftButton);
    QCOMPARE(f->item(), Item::Plate);
    QVERIFY(f->cmdPlateStock->isVisible());
    QVERIFY(!f->cmdInkStock->isVisible() && !f->cmdBlanketStock->isVisible() && !f->cmdDeveloperStock->isVisible());
    QCOMPARE(items(f->cmbBrandName), QStringList{QStringLiteral("NOVAPLATE")});
    QCOMPARE(f->cmbType->currentText(), QStringLiteral("CTP 745 X 605"));
    f->cmbPartyName->setEditText(QStringLiteral("BASHIR PLATE MAKER"));
    f->txtUnits->setText(QStringLiteral("40"));
    click(f->cmdPlateStock);
    QCOMPARE(t.rec.last().text, QStringLiteral("PLATE stock has sended to employee successfully"));
    QTest::mouseClick(f->findChild<QRadioButton *>(QStringLiteral("optBlanketStock")), Qt::LeftButton);
    QCOMPARE(f->cmbBrandName->count(), 0);
    QVERIFY(f->cmdBlanketStock->isVisible() && !f->cmdPlateStock->isVisible());
}

void TestConsumablesScreens::finishedScreen()
{
    TESSEL_BACKEND()
    ScreenTest t(backend);
    addStock(t);
    for (const char *units : {"3", "3"})
        QVERIFY(EmployeeStock::issue(t.db(), {Item::Ink, "ORBIT", "CYAN", kEmployee, "16-10-001", units, "01/03/2026"}).ok);
    Host host;
    auto *f = host.openScreen<frmEmployeeStockFinished>(QStringLiteral("mnuSEmployeeStockFinished"),
                                                        QStringLiteral("frmEmployeeStockFinished"));
    QCOMPARE(f->title(), QStringLiteral("EMPLOYEE STOCK"));
    f->cmbPartyName->setEditText(kEmployee);
    QCOMPARE(f->cmbPartyCode->maskText(), QStringLiteral("16-10-001"));
    QCOMPARE(items(f->cmbBrandName), QStringList{QStringLiteral("ORBIT")});
    QCOMPARE(f->cmbType->currentText(), QStringLiteral("CYAN"));
    QCOMPARE(f->dgStock->model()->rowCount(), 2);
    // 5 of 3 + 3: the first row alone counts.
    f->txtUnits->setText(QStringLiteral("5"));
    click(f->cmdInkStock);
    QCOMPARE(t.rec.texts(), QStringList{EmployeeStock::Msg::quantityShort()});
    QCOMPARE(focusName(), QStringLiteral("txtUnits"));
    t.rec.clear();
    f->txtUnits->setText(QStringLiteral("2"));
    click(f->cmdInkStock);
    QCOMPARE(t.rec.texts(), QStringList{EmployeeStock::Msg::finished()});
    QCOMPARE(f->dgStock->model()->index(0, 4).data().toString(), QStringLiteral("2"));
    t.rec.clear();
    f->cmbPartyName->setEditText(QString());
    click(f->cmdInkStock);
    QCOMPARE(t.rec.texts(), QStringList{EmployeeStock::Msg::employeeMissing()});
    f->cmbPartyName->setEditText(kEmployee);
    shoot(host.mdiArea()->activeSubWindow(), QStringLiteral("frmEmployeeStockFinished"));
}

void TestConsumablesScreens::printScreen()
{
    ScreenTest t(QStringLiteral("sqlite"));
    addStock(t);
    QVERIFY(EmployeeStock::issue(t.db(), {Item::Ink, "ORBIT", "CYAN", kEmployee, "16-10-001", "6", "01/03/2026"}).ok);
    Host host;
    auto *f = host.openScreen<frmStockPrint>(QStringLiteral("mnuSPrintStock"), QStringLiteral("frmStockPrint"));
    QCOMPARE(f->title(), QStringLiteral("PRINT STOCK"));
    QVERIFY(f->findChild<QRadioButton *>(QStringLiteral("optViewInkStock"))->isChecked());
    QCOMPARE(f->dgStockInHand->model()->rowCount(), 2);
    f->cmbBrandName->setEditText(QString());
    click(f->cmdSearch);
    QCOMPARE(t.rec.texts(), QStringList{QStringLiteral("Brand name is missing,please select brand name")});
    QVERIFY(!Reports::currentViewer());
    t.rec.clear();
    f->cmbBrandName->setCurrentIndex(0);
    f->cmbType->setEditText(QString());
    click(f->cmdSearch);
    QCOMPARE(t.rec.texts(), QStringList{QStringLiteral("Type/colour is missing, please select type/colour")});
    t.rec.clear();
    f->cmbType->setCurrentIndex(0);
    f->mskDateTo->setMaskText(QStringLiteral("31/02/2026"));
    click(f->cmdSearch);
    QCOMPARE(t.rec.texts(), QStringList{QStringLiteral("Wrong date, please enter correct date")});
    QCOMPARE(focusName(), QStringLiteral("mskDateTo"));
    t.rec.clear();
    f->mskDateFrom->setMaskText(QStringLiteral("11/02/2026"));
    f->mskDateTo->setMaskText(QStringLiteral("28/02/2026"));
    click(f->cmdSearch);
    QVERIFY2(t.rec.isEmpty(), qPrintable(t.rec.texts().join(QLatin1Char('\n'))));
    frmViewReport *v = Reports::currentViewer();
    QVERIFY(v);
    QCOMPARE(v->windowTitle(), QStringLiteral("INK STOCK REPORT"));
    QCOMPARE(v->report().heading, QStringLiteral("ORBIT INK STOCK REPORT"));
    // The brand's receipts of the period, black and cyan alike; the cyan
    // of 10/02 stands before the period.
    QCOMPARE(v->report().rows.size(), 2);
    QCOMPARE(v->report().periodText, QStringLiteral("FROM 11/02/2026 TO 28/02/2026"));
    QVERIFY(v->report().pageCount() == 1);
    shoot(v, QStringLiteral("crStockReport"));
    shoot(host.mdiArea()->subWindowList().first(), QStringLiteral("frmStockPrint"));
}

void TestConsumablesScreens::receiptScreen()
{
    TESSEL_BACKEND()
    ScreenTest t(backend);
    addStock(t);
    Host host;
    auto *f = host.openScreen<frmStockReceipt>(QStringLiteral("mnuSEnterConsumables"), QStringLiteral("frmStockReceipt"));
    QCOMPARE(f->title(), QStringLiteral("CONSUMABLE STOCK RECEIPT"));
    QTest::mouseClick(f->findChild<QRadioButton *>(QStringLiteral("optDeveloperStock")), Qt::LeftButton);
    QCOMPARE(f->cmbBrandName->count(), 0);
    // A new brand and type are typed.
    f->cmbBrandName->setEditText(QStringLiteral("CLEARDEV"));
    f->cmbType->setEditText(QStringLiteral("CTP DEVELOPER"));
    f->cmbPartyName->setEditText(QStringLiteral("PAPER HOUSE"));
    f->txtUnits->setText(QStringLiteral("12"));
    f->txtUnitPrice->setText(QStringLiteral("2500.25"));
    QCOMPARE(f->txtAmount->text(), QStringLiteral("30,003.00"));
    f->mskDate->setMaskText(QStringLiteral("31/12/2025"));
    click(f->cmdSave);
    QCOMPARE(t.rec.texts(), QStringList{QStringLiteral("Sorry, you enter wrong date because data has closed at this date")});
    QCOMPARE(TestDb::count(t.db(), QStringLiteral("SELECT COUNT(*) FROM tblStock WHERE Item = 'DEVELOPER'")), 0);
    t.rec.clear();
    f->mskDate->setMaskText(QStringLiteral("05/03/2026"));
    f->txtUnits->setText(QStringLiteral("0"));
    click(f->cmdSave);
    QCOMPARE(t.rec.texts(), QStringList{Consumables::Msg::unitsMissing()});
    QCOMPARE(focusName(), QStringLiteral("txtUnits"));
    t.rec.clear();
    f->txtUnits->setText(QStringLiteral("12"));
    click(f->cmdSave);
    QCOMPARE(t.rec.texts(), QStringList{Consumables::Msg::saved()});
    const auto row = t.db().selectOne(QStringLiteral("SELECT BrandName, Type, PartyCode, Units, UnitPrice, Issue, VDate "
                                                     "FROM tblStock WHERE Item = 'DEVELOPER'"));
    QVERIFY(row);
    QCOMPARE(row->text(0).trimmed(), QStringLiteral("CLEARDEV"));
    QCOMPARE(row->text(2).trimmed(), QStringLiteral("14-10-001"));
    QCOMPARE(row->integer(3), qint64(12));
    QCOMPARE(row->money(4)->cents(), qint64(250025));
    QCOMPARE(row->date(6), QDate(2026, 3, 5));
    // Ready for the next receipt of the same brand and type.
    QCOMPARE(f->cmbBrandName->currentText(), QStringLiteral("CLEARDEV"));
    QCOMPARE(f->cmbType->currentText(), QStringLiteral("CTP DEVELOPER"));
    QVERIFY(f->txtUnits->text().isEmpty());
    QCOMPARE(f->dgStock->model()->rowCount(), 1);
    QCOMPARE(f->dgStock->model()->index(0, 4).data().toString(), QStringLiteral("12"));
    shoot(host.mdiArea()->activeSubWindow(), QStringLiteral("frmStockReceipt"));
}

void TestConsumablesScreens::modifyScreen()
{
    TESSEL_BACKEND()
    ScreenTest t(backend);
    addStock(t);
    QVERIFY(EmployeeStock::issue(t.db(), {Item::Ink, "ORBIT", "CYAN", kEmployee, "16-10-001", "6", "01/03/2026"}).ok);
    Host host;
    auto *f = host.openScreen<frmStockModify>(QStringLiteral("mnuSModifyConsumables"), QStringLiteral("frmStockModify"));
    QCOMPARE(f->title(), QStringLiteral("MODIFY STOCK"));
    click(f->cmdModify);
    QCOMPARE(t.rec.texts(), QStringList{Consumables::Msg::stockMissing()});
    t.rec.clear();
    f->cmbTypeModify->setCurrentText(QStringLiteral("CYAN"));
    click(f->cmdOkay);
    QCOMPARE(f->dgVoucher->model()->rowCount(), 2);
    QCOMPARE(f->dgVoucher->model()->headerData(6, Qt::Horizontal).toString(), QStringLiteral("U/PRICE"));
    QCOMPARE(TestDb::count(t.db(), QStringLiteral("SELECT COUNT(*) FROM tblStockEmpty WHERE StockDesc = 'UPDATE'")), 2);

    // The older receipt (5 units, all issued): fewer units than issued is refused.
    QTest::mouseClick(f->dgVoucher->viewport(), Qt::LeftButton, {},
                      f->dgVoucher->visualRect(f->dgVoucher->model()->index(0, 1)).center());
    QCOMPARE(f->txtUnits->text(), QStringLiteral("5"));
    QCOMPARE(f->txtPartyCode->maskText(), QStringLiteral("14-10-001"));
    QCOMPARE(f->mskDate->maskText(), QStringLiteral("10/02/2026"));
    f->txtUnits->setText(QStringLiteral("4"));
    click(f->cmdModify);
    QCOMPARE(t.rec.texts(), QStringList{Consumables::Msg::unitsBelowIssued()});
    t.rec.clear();
    f->txtUnits->setText(QStringLiteral("8"));
    f->txtUnitPrice->setText(QStringLiteral("1150.50"));
    f->mskDate->setMaskText(QStringLiteral("09/02/2026"));
    click(f->cmdModify);
    QCOMPARE(t.rec.texts(), QStringList{Consumables::Msg::modified()});
    t.rec.clear();
    // The newer one cannot be struck out: a unit of it was issued.
    QTest::mouseClick(f->dgVoucher->viewport(), Qt::LeftButton, {},
                      f->dgVoucher->visualRect(f->dgVoucher->model()->index(1, 1)).center());
    QCOMPARE(f->txtUnits->text(), QStringLiteral("4"));
    click(f->cmdDelete);
    QCOMPARE(t.rec.texts(), QStringList{Consumables::Msg::issuedCannotDelete()});
    QCOMPARE(f->dgVoucher->model()->rowCount(), 2);
    // Nothing reached the receipts yet.
    QCOMPARE(issuedText(t.db()), QStringLiteral("5/5 4/1"));
    shoot(host.mdiArea()->activeSubWindow(), QStringLiteral("frmStockModify"));
    t.rec.clear();
    click(f->cmdModifyStock);
    QCOMPARE(t.rec.texts(), QStringList{Consumables::Msg::modified()});
    QCOMPARE(issuedText(t.db()), QStringLiteral("8/5 4/1"));
    const auto row = t.db().selectOne(QStringLiteral("SELECT UnitPrice, VDate FROM tblStock WHERE Type = 'CYAN' AND Units = 8"));
    QCOMPARE(row->money(0)->cents(), qint64(115050));
    QCOMPARE(row->date(1), QDate(2026, 2, 9));
    QCOMPARE(f->dgVoucher->model()->rowCount(), 0);
    QCOMPARE(TestDb::count(t.db(), QStringLiteral("SELECT COUNT(*) FROM tblStockEmpty")), 0);
}

void TestConsumablesScreens::modifyDeletesAll()
{
    ScreenTest t(QStringLiteral("sqlite"));
    addStock(t);
    Host host;
    auto *f = host.openScreen<frmStockModify>(QStringLiteral("mnuSModifyConsumables"), QStringLiteral("frmStockModify"));
    f->cmbTypeModify->setCurrentText(QStringLiteral("CYAN"));
    click(f->cmdOkay);
    click(f->cmdDeleteStock); // answered No
    QCOMPARE(t.rec.texts(), QStringList{Consumables::Msg::deleteQuestion()});
    QCOMPARE(f->dgVoucher->model()->rowCount(), 2);
    t.rec.clear();
    t.rec.answerNext(true);
    click(f->cmdDeleteStock);
    QCOMPARE(t.rec.texts(), (QStringList{Consumables::Msg::deleteQuestion(), Consumables::Msg::deleted()}));
    QCOMPARE(TestDb::count(t.db(), QStringLiteral("SELECT COUNT(*) FROM tblStock WHERE Type = 'CYAN'")), 0);
    QCOMPARE(TestDb::count(t.db(), QStringLiteral("SELECT COUNT(*) FROM tblStock")), 2);
    // The brand list follows: ORBIT keeps its BLACK.
    QCOMPARE(items(f->cmbTypeModify), QStringList{QStringLiteral("BLACK")});
}

void TestConsumablesScreens::employeeStockView()
{
    ScreenTest t(QStringLiteral("sqlite"));
    addStock(t);
    QVERIFY(EmployeeStock::issue(t.db(), {Item::Ink, "ORBIT", "CYAN", kEmployee, "16-10-001", "6", "01/03/2026"}).ok);
    QVERIFY(EmployeeStock::issue(t.db(), {Item::Ink, "ORBIT", "BLACK", kEmployee, "16-10-001", "1", "02/03/2026"}).ok);
    Host host;
    auto *f = host.openScreen<frmStockSearch>(QStringLiteral("mnuSViewEmployeeStock"), QStringLiteral("frmStockSearch"));
    QCOMPARE(f->title(), QStringLiteral("VIEW STOCK"));
    QVERIFY(!f->cmbPartyName->currentText().isEmpty()); // the first account shown
    f->cmbPartyName->setEditText(kEmployee);
    click(f->cmdInkStock);
    QVERIFY2(t.rec.isEmpty(), qPrintable(t.rec.texts().join(QLatin1Char('\n'))));
    QCOMPARE(f->dgStock->model()->rowCount(), 2);
    QCOMPARE(f->dgStock->model()->index(0, 5).data().toString(), QStringLiteral("6"));
    f->mskDateFromEmployee->setMaskText(QStringLiteral("02/03/2026"));
    click(f->cmdInkStock);
    QCOMPARE(f->dgStock->model()->rowCount(), 1);
    shoot(host.mdiArea()->activeSubWindow(), QStringLiteral("frmStockSearch"));
}

QTEST_MAIN(TestConsumablesScreens)
#include "tst_consumablesscreens.moc"
