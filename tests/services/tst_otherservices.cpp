// Other services: the rows of an OS voucher for a gain, a loss and no
// margin; a change that keeps the form of the margin row it had; a second
// change without reloading; a delete that leaves the books as they were.
#include "foundation/SessionConnection.h"
#include "services/OtherServices.h"
#include "support/TestDb.h"
#include "vouchers/LedgerCheck.h"

#include <QtTest>

namespace {

const QString kUser = QStringLiteral("CLERK");
const QDate kToday(2026, 3, 10);
const QDate kDay(2026, 3, 9);

void prepare(SessionConnection &db)
{
    for (const auto &a : QList<QPair<QString, QString>>{{"17-10-001", "CRESCENT TEXTILES"}, {"14-10-001", "PAPER HOUSE"},
                                                        {"14-10-002", "FAST COURIERS"}})
        db.execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES (?, ?)"), {a.first, a.second});
    db.execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {QDate(2026, 2, 28)});
}

OtherServiceEntry entry(qint64 received, qint64 paid)
{
    OtherServiceEntry e;
    e.voucherNo = 1;
    e.date = kDay;
    e.invoiceNo = QStringLiteral("B-17");
    e.partyCode = QStringLiteral("17-10-001");
    e.partyName = QStringLiteral("CRESCENT TEXTILES");
    e.supplierCode = QStringLiteral("14-10-001");
    e.supplierName = QStringLiteral("PAPER HOUSE");
    e.description = QStringLiteral("LAMINATION OUTSIDE");
    e.received = Money::fromUnits(received);
    e.paid = Money::fromUnits(paid);
    e.careOf = QStringLiteral("ASLAM");
    return e;
}

// The voucher's rows as "code DR CR BAL", in SrNo order.
QStringList rowsOf(SessionConnection &db)
{
    QStringList out;
    for (const Row &r : db.select(QStringLiteral("SELECT PartyCode, PartyDR, PartyCR, PartyBalance, PartyDesc, VDate "
                                                 "FROM tblPartyBalance WHERE VoucherType = 'OS' ORDER BY SrNo")))
        out << QStringLiteral("%1 %2 %3 %4")
                   .arg(r.text(0).trimmed(), r.moneyOrZero("PartyDR").toPlainString(),
                        r.moneyOrZero("PartyCR").toPlainString(), r.moneyOrZero("PartyBalance").toPlainString());
    return out;
}

void verifyKept(SessionConnection &db)
{
    QStringList differences;
    QVERIFY2(LedgerCheck::keptBalancesAgree(db, &differences), qPrintable(differences.join(QLatin1Char('\n'))));
}

} // namespace

class TestOtherServices : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void wholeAmount_data();
    void wholeAmount();
    void saveRows_data();
    void saveRows();
    void modifyKeepsMarginForm_data();
    void modifyKeepsMarginForm();
    void secondModifyAndDelete_data() { TestDb::addBackends(); }
    void secondModifyAndDelete();
    void refusals_data() { TestDb::addBackends(); }
    void refusals();
};

void TestOtherServices::wholeAmount_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("cents"); // -1: refused
    QTest::newRow("empty is zero") << "" << qint64(0);
    QTest::newRow("plain") << "1500" << qint64(150000);
    QTest::newRow("largest") << "2147483647" << qint64(214748364700);
    QTest::newRow("beyond 32 bits") << "2147483648" << qint64(-1);
    QTest::newRow("fraction") << "12.5" << qint64(-1);
    QTest::newRow("letters") << "12A" << qint64(-1);
}

void TestOtherServices::wholeAmount()
{
    QFETCH(QString, text);
    QFETCH(qint64, cents);
    const auto m = OtherServiceRules::wholeAmount(text);
    QCOMPARE(m.has_value(), cents >= 0);
    if (m)
        QCOMPARE(m->cents(), cents);
}

void TestOtherServices::saveRows_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<qint64>("received");
    QTest::addColumn<qint64>("paid");
    QTest::addColumn<QStringList>("rows");
    for (const char *b : {"sqlite", "postgres"}) {
        const QString be = QString::fromLatin1(b);
        QTest::addRow("%s gain", b) << be << qint64(1500) << qint64(1200)
                                    << QStringList{"17-10-001 1500.00 0.00 1500.00", "14-10-001 0.00 1200.00 -1200.00",
                                                   "20-10-001 0.00 300.00 -300.00"};
        QTest::addRow("%s loss", b) << be << qint64(1000) << qint64(1250)
                                    << QStringList{"17-10-001 1000.00 0.00 1000.00", "14-10-001 0.00 1250.00 -1250.00",
                                                   "20-10-001 250.00 0.00 250.00"};
        QTest::addRow("%s no margin", b) << be << qint64(800) << qint64(800)
                                         << QStringList{"17-10-001 800.00 0.00 800.00", "14-10-001 0.00 800.00 -800.00"};
    }
}

void TestOtherServices::saveRows()
{
    QFETCH(qint64, received);
    QFETCH(qint64, paid);
    QFETCH(QStringList, rows);
    TESSEL_YEAR(year);
    auto db = year.connect();
    prepare(*db);
    OtherServices os(*db, kUser, kToday);
    const Outcome out = os.save(entry(received, paid));
    QVERIFY2(out.ok, qPrintable(out.message));
    QCOMPARE(out.message, OtherServicesMessages::kSaved);
    QCOMPARE(rowsOf(*db), rows);
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblOtherServices WHERE Remarks = 'OK'")), 1);
    QCOMPARE(os.nextNumber(), 2);
    verifyKept(*db);
}

void TestOtherServices::modifyKeepsMarginForm_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<qint64>("fromReceived");
    QTest::addColumn<qint64>("toReceived");
    QTest::addColumn<QString>("margin"); // the margin row after the change, "" for none
    for (const char *b : {"sqlite", "postgres"}) {
        const QString be = QString::fromLatin1(b);
        // Paid stays 1000 throughout.
        QTest::addRow("%s gain to loss keeps the credit form", b) << be << qint64(1300) << qint64(900)
                                                                   << "20-10-001 0.00 -100.00 100.00";
        QTest::addRow("%s loss to gain keeps the debit form", b) << be << qint64(900) << qint64(1300)
                                                                  << "20-10-001 -300.00 0.00 -300.00";
        QTest::addRow("%s gain to more gain", b) << be << qint64(1300) << qint64(1400) << "20-10-001 0.00 400.00 -400.00";
        QTest::addRow("%s gain to none removes it", b) << be << qint64(1300) << qint64(1000) << "";
        QTest::addRow("%s none to gain adds it", b) << be << qint64(1000) << qint64(1200)
                                                     << "20-10-001 0.00 200.00 -200.00";
        QTest::addRow("%s none to loss adds it", b) << be << qint64(1000) << qint64(700) << "20-10-001 300.00 0.00 300.00";
    }
}

void TestOtherServices::modifyKeepsMarginForm()
{
    QFETCH(qint64, fromReceived);
    QFETCH(qint64, toReceived);
    QFETCH(QString, margin);
    TESSEL_YEAR(year);
    auto db = year.connect();
    prepare(*db);
    OtherServices os(*db, kUser, kToday);
    QVERIFY(os.save(entry(fromReceived, 1000)).ok);
    const Outcome out = os.modify(entry(toReceived, 1000));
    QVERIFY2(out.ok, qPrintable(out.message));
    QCOMPARE(out.message, OtherServicesMessages::kUpdated);
    const QStringList rows = rowsOf(*db);
    QCOMPARE(rows.value(0), QStringLiteral("17-10-001 %1.00 0.00 %1.00").arg(toReceived));
    QCOMPARE(rows.value(1), QStringLiteral("14-10-001 0.00 1000.00 -1000.00"));
    QCOMPARE(rows.value(2), margin);
    QCOMPARE(rows.size(), margin.isEmpty() ? 2 : 3);
    // The ledger balances whichever form the margin row kept.
    QCOMPARE(*db->scalarMoney(QStringLiteral("SELECT SUM(PartyBalance) FROM tblPartyBalance")), Money());
    verifyKept(*db);
}

void TestOtherServices::secondModifyAndDelete()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    prepare(*db);
    const auto before = db->scalarMoney(QStringLiteral("SELECT SUM(PartyBalance) FROM tblPartyBalance"));
    OtherServices os(*db, kUser, kToday);
    QVERIFY(os.save(entry(1500, 1200)).ok);

    // Changed twice from the same screen values, new description and date
    // and parties each time: both changes reach the ledger.
    OtherServiceEntry e = entry(1500, 1200);
    e.description = QStringLiteral("COURIER CHARGES");
    e.date = kDay.addDays(2);
    e.supplierCode = QStringLiteral("14-10-002");
    e.supplierName = QStringLiteral("FAST COURIERS");
    QVERIFY(os.modify(e).ok);
    e.description = QStringLiteral("COURIER CHARGES AGAIN");
    e.paid = Money::fromUnits(1300);
    QVERIFY(os.modify(e).ok);
    QCOMPARE(rowsOf(*db), QStringList({"17-10-001 1500.00 0.00 1500.00", "14-10-002 0.00 1300.00 -1300.00",
                                       "20-10-001 0.00 200.00 -200.00"}));
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE VoucherType = 'OS' AND "
                                               "PartyDesc = 'COURIER CHARGES AGAIN' AND VDate = ?"),
                           {kDay.addDays(2)}),
             3);
    QCOMPARE(os.find(1)->paid, Money::fromUnits(1300));

    const Outcome gone = os.remove(1);
    QVERIFY2(gone.ok, qPrintable(gone.message));
    QCOMPARE(gone.rowsWritten, 3);
    QCOMPARE(rowsOf(*db), QStringList());
    QCOMPARE(db->scalarMoney(QStringLiteral("SELECT SUM(PartyBalance) FROM tblPartyBalance")), before);
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblOtherServices")), 0);
    QCOMPARE(os.nextNumber(), 1); // the number comes back
    QCOMPARE(os.remove(1).message, OtherServicesMessages::kNotFound);
    verifyKept(*db);
}

void TestOtherServices::refusals()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    prepare(*db);
    OtherServices os(*db, kUser, kToday);
    OtherServiceEntry e = entry(100, 50);
    e.partyName.clear();
    QCOMPARE(os.save(e).field, QStringLiteral("cmbPartyName"));
    e = entry(100, 50);
    e.supplierCode = QStringLiteral("14-10-000");
    QCOMPARE(os.save(e).field, QStringLiteral("cmbSupplierName"));
    e = entry(100, 50);
    e.date = QDate(2026, 2, 28);
    const Outcome closed = os.save(e);
    QCOMPARE(closed.message, QStringLiteral("Sorry, you enter wrong date because data has closed at this date"));
    QCOMPARE(closed.field, QStringLiteral("mskDate"));
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblOtherServices")), 0);
    QCOMPARE(TestDb::count(*db, QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")), 0);

    // A voucher standing in the closed period can not be changed or deleted.
    QVERIFY(os.save(entry(100, 50)).ok);
    db->execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {kDay});
    QVERIFY(!os.modify(entry(200, 50)).ok);
    QVERIFY(!os.remove(1).ok);
    QCOMPARE(rowsOf(*db).value(0), QStringLiteral("17-10-001 100.00 0.00 100.00"));
}

QTEST_GUILESS_MAIN(TestOtherServices)
#include "tst_otherservices.moc"
