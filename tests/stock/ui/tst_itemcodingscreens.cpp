// The item coding screens, headless: the add screen's and the modify
// screen's checks and words, the hints, and the rows written.
#include "support/TestDb.h"
#include "support/ui/MessageRecorder.h"
#include "support/ui/ScreenKit.h"

#include "foundation/Session.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "stock/ItemCoding.h"
#include "stock/ui/frmItemCoding.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QtTest>

using ScreenKit::shoot;

namespace {

void showActive(QWidget *w) { ScreenKit::showActive(w, QSize(900, 560)); }

struct SessionScope
{
    explicit SessionScope(const TestDb::Year &year)
    {
        session().connection = year.connect();
        session().currentUserName = QStringLiteral("CLERK");
        session().today = QDate(2026, 2, 10);
        auto &db = session().db();
        for (const auto &i : {std::tuple{"10-01-001", "ART PAPER 80G", "12.50"}, {"10-01-002", "ART PAPER 100G", "15"},
                              {"20-05-001", "OFFSET INK BLACK", "900"}})
            db.execute(QStringLiteral("INSERT INTO tblItemCoding (ItemCode, ItemName, CostRate, SaleRate, UnitType) "
                                      "VALUES (?, ?, ?, ?, 'UNIT')"),
                       {QString::fromLatin1(std::get<0>(i)), QString::fromLatin1(std::get<1>(i)),
                        Money::parseOrZero(QString::fromLatin1(std::get<2>(i))).toVariant(), Money().toVariant()});
    }
    ~SessionScope() { session().connection.reset(); }
    SessionConnection &db() { return session().db(); }
};

} // namespace

class TestItemCodingScreens : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void addScreen_data();
    void addScreen();
    void addSavesAndClears_data() { TestDb::addBackends(); }
    void addSavesAndClears();
    void modifyScreen_data();
    void modifyScreen();
    void modifyFindsByOldCode_data() { TestDb::addBackends(); }
    void modifyFindsByOldCode();
};

void TestItemCodingScreens::addScreen_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("focus");
    for (const char *b : {"sqlite", "postgres"}) {
        const QByteArray p = QByteArray(b) + ": ";
        QTest::newRow(p + "no name") << b << "30-01-001" << "" << ItemCoding::Msg::nameMissing() << "txtItemName";
        QTest::newRow(p + "no code") << b << "" << "PLATE CTP" << ItemCoding::Msg::codeMissing() << "mskItemCode";
        QTest::newRow(p + "partly typed code is taken") << b << "30-0" << "PLATE CTP" << ItemCoding::Msg::added()
                                                        << "mskItemCode";
        QTest::newRow(p + "code taken") << b << "10-01-002" << "PLATE CTP" << ItemCoding::Msg::codeExists()
                                        << "mskItemCode";
        QTest::newRow(p + "name taken") << b << "30-01-001" << "OFFSET INK BLACK" << ItemCoding::Msg::nameExists()
                                        << "txtItemName";
    }
}

void TestItemCodingScreens::addScreen()
{
    TESSEL_YEAR(year);
    QFETCH(QString, code);
    QFETCH(QString, name);
    QFETCH(QString, message);
    QFETCH(QString, focus);
    SessionScope s(year);
    MessageRecorder rec;
    frmItemCoding f;
    showActive(&f);
    f.mskItemCode->setMaskText(code);
    f.txtItemName->setText(name);
    QTest::mouseClick(f.cmdOk, Qt::LeftButton);
    QCOMPARE(rec.texts(), QStringList{message});
    QCOMPARE(QApplication::focusWidget()->objectName(), focus);
    if (QTest::currentDataTag() == QByteArray("sqlite: code taken"))
        shoot(&f, QStringLiteral("frmItemCoding-refused"));
}

void TestItemCodingScreens::addSavesAndClears()
{
    TESSEL_YEAR(year);
    SessionScope s(year);
    MessageRecorder rec;
    frmItemCoding f;
    showActive(&f);
    QCOMPARE(f.title(), QStringLiteral("ITEM CODING"));
    QCOMPARE(f.cmbUnitType->currentText(), QStringLiteral("UNIT"));
    QCOMPARE(f.cmbUnitType->count(), 3);

    f.mskItemCode->setFocus();
    QTest::keyClicks(f.mskItemCode, QStringLiteral("1001"));
    QCOMPARE(f.txtLastCode->text(), QStringLiteral("10-01-002"));
    QTest::keyClicks(f.mskItemCode, QStringLiteral("003"));
    f.txtItemName->setFocus();
    QTest::keyClicks(f.txtItemName, QStringLiteral("art paper 120g"));
    QCOMPARE(f.txtItemName->text(), QStringLiteral("ART PAPER 120G"));
    f.txtItemName->setText(QStringLiteral("ART PAPER"));
    const auto *grid = f.dgItemCoding->model();
    QCOMPARE(grid->rowCount(), 2);
    QStringList captions;
    for (int c = 0; c < grid->columnCount(); ++c)
        captions << grid->headerData(c, Qt::Horizontal).toString();
    QCOMPARE(captions, (QStringList{"ITEM CODE", "IEM NAME", "COST RATE", "SALE RATE"}));
    f.txtItemName->setText(QStringLiteral("ART PAPER 120G"));
    f.txtCostRate->setFocus();
    f.txtCostRate->clear();
    QTest::keyClicks(f.txtCostRate, QStringLiteral("17.255"));
    QCOMPARE(f.txtCostRate->text(), QStringLiteral("17.255"));
    f.txtSaleRate->setText(QStringLiteral(".5"));
    f.cmbUnitType->setCurrentIndex(1);
    shoot(&f, QStringLiteral("frmItemCoding-filled"));
    QTest::mouseClick(f.cmdOk, Qt::LeftButton);
    QCOMPARE(rec.texts(), QStringList{QStringLiteral("Item name has been added successfully.")});

    const auto item = ItemCoding::itemByCode(s.db(), QStringLiteral("10-01-003"));
    QVERIFY(item);
    QCOMPARE(item->name, QStringLiteral("ART PAPER 120G"));
    QCOMPARE(item->costRate, Money::fromCents(1726)); // half to even at the cent
    QCOMPARE(item->saleRate, Money::fromCents(50));
    QCOMPARE(item->unitType, QStringLiteral("KG"));
    QCOMPARE(f.txtItemName->text(), QString());
    QCOMPARE(f.mskItemCode->maskText(), QStringLiteral("__-__-___"));
    QCOMPARE(f.txtCostRate->text(), QStringLiteral("0"));
    QCOMPARE(f.txtSaleRate->text(), QStringLiteral("0"));
}

void TestItemCodingScreens::modifyScreen_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("message");
    for (const char *b : {"sqlite", "postgres"}) {
        const QByteArray p = QByteArray(b) + ": ";
        QTest::newRow(p + "nothing changed") << b << "10-01-001" << "ART PAPER 80G" << ItemCoding::Msg::modified();
        QTest::newRow(p + "no name") << b << "10-01-001" << "" << ItemCoding::Msg::nameMissing();
        QTest::newRow(p + "no code") << b << "" << "ART PAPER 80G" << ItemCoding::Msg::codeMissing();
        QTest::newRow(p + "partly typed code") << b << "10-01-0" << "ART PAPER 80G" << ItemCoding::Msg::codeIncomplete();
        QTest::newRow(p + "another's code") << b << "20-05-001" << "ART PAPER 80G"
                                            << ItemCoding::Msg::codeExistsOnModify();
        QTest::newRow(p + "another's name") << b << "10-01-001" << "ART PAPER 100G"
                                            << ItemCoding::Msg::nameExistsOnModify();
    }
}

void TestItemCodingScreens::modifyScreen()
{
    TESSEL_YEAR(year);
    QFETCH(QString, code);
    QFETCH(QString, name);
    QFETCH(QString, message);
    SessionScope s(year);
    MessageRecorder rec;
    frmModifyItemCoding f;
    showActive(&f);
    QCOMPARE(f.title(), QStringLiteral("MODIFY ITEM CODING"));
    QCOMPARE(f.cmbOldItemName->count(), 3);
    f.cmbOldItemName->setCurrentIndex(f.cmbOldItemName->findText(QStringLiteral("ART PAPER 80G")));
    QCOMPARE(f.mskOldItemCode->maskText(), QStringLiteral("10-01-001"));
    QCOMPARE(f.mskItemCode->maskText(), QStringLiteral("10-01-001"));
    QCOMPARE(f.txtCostRate->text(), QStringLiteral("12.5"));
    QCOMPARE(f.oldItemName(), QStringLiteral("ART PAPER 80G"));
    f.mskItemCode->setMaskText(code);
    f.txtItemName->setText(name);
    f.txtSaleRate->clear();
    if (QTest::currentDataTag() == QByteArray("sqlite: nothing changed"))
        shoot(&f, QStringLiteral("frmModifyItemCoding-filled"));
    QTest::mouseClick(f.cmdModify, Qt::LeftButton);
    QCOMPARE(rec.texts(), QStringList{message});
    if (QTest::currentDataTag() == QByteArray("sqlite: partly typed code"))
        shoot(&f, QStringLiteral("frmModifyItemCoding-refused"));
    if (message == ItemCoding::Msg::modified()) {
        QCOMPARE(f.txtItemName->text(), QString());
        QCOMPARE(f.mskItemCode->maskText(), QStringLiteral("__-__-___"));
        QCOMPARE(ItemCoding::itemByCode(s.db(), QStringLiteral("10-01-001"))->saleRate, Money());
    } else {
        QCOMPARE(ItemCoding::itemByCode(s.db(), QStringLiteral("10-01-001"))->name, QStringLiteral("ART PAPER 80G"));
        // The empty sale rate became 0 when the button took the focus.
        QCOMPARE(f.txtSaleRate->text(), QStringLiteral("0"));
    }
}

void TestItemCodingScreens::modifyFindsByOldCode()
{
    TESSEL_YEAR(year);
    SessionScope s(year);
    MessageRecorder rec;
    frmModifyItemCoding f;
    showActive(&f);
    // Leaving the old code brings the item of that code up.
    f.mskOldItemCode->setFocus();
    f.mskOldItemCode->setMaskText(QStringLiteral("20-05-001"));
    f.txtItemName->setFocus();
    QCOMPARE(f.cmbOldItemName->currentText(), QStringLiteral("OFFSET INK BLACK"));
    QCOMPARE(f.txtItemName->text(), QStringLiteral("OFFSET INK BLACK"));
    QCOMPARE(f.txtCostRate->text(), QStringLiteral("900"));
    // A new code and name for it: the row of the old code is rewritten.
    f.mskItemCode->setMaskText(QStringLiteral("20-05-009"));
    f.txtItemName->setText(QStringLiteral("OFFSET INK JET BLACK"));
    f.cmbUnitType->setCurrentIndex(1);
    QTest::mouseClick(f.cmdModify, Qt::LeftButton);
    QCOMPARE(rec.texts(), QStringList{QStringLiteral("Item name has been modified successfully.")});
    QVERIFY(!ItemCoding::itemByCode(s.db(), QStringLiteral("20-05-001")));
    const auto item = ItemCoding::itemByCode(s.db(), QStringLiteral("20-05-009"));
    QVERIFY(item);
    QCOMPARE(item->name, QStringLiteral("OFFSET INK JET BLACK"));
    QCOMPARE(item->costRate, Money::fromUnits(900));
    QCOMPARE(item->unitType, QStringLiteral("KG"));
    QVERIFY(f.cmbOldItemName->findText(QStringLiteral("OFFSET INK JET BLACK")) >= 0);
    QCOMPARE(f.cmbOldItemName->findText(QStringLiteral("OFFSET INK BLACK")), -1);
    QCOMPARE(s.db().scalar(QStringLiteral("SELECT COUNT(*) FROM tblItemCoding")).toLongLong(), 3);
}

QTEST_MAIN(TestItemCodingScreens)
#include "tst_itemcodingscreens.moc"
