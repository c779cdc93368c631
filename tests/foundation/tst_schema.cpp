#include "foundation/EditLogSchema.h"
#include "foundation/Schema.h"
#include "foundation/SessionConnection.h"
#include "support/TestDb.h"

#include <QSet>
#include <QtTest>

class TestSchema : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void everyTableAndColumn_data() { TestDb::addBackends(); }
    void everyTableAndColumn();
    void stagingTablesAreNotShared_data() { TestDb::addBackends(); }
    void stagingTablesAreNotShared();
    void lookupIndexes_data() { TestDb::addBackends(); }
    void lookupIndexes();
    void upgradeBringsOlderYearUpToDate_data() { TestDb::addBackends(); }
    void upgradeBringsOlderYearUpToDate();
    void versionGate_data();
    void versionGate();
    void emptyConfigReadsAsZero_data() { TestDb::addBackends(); }
    void emptyConfigReadsAsZero();
};

namespace {
QSet<QString> columnsOf(SessionConnection &db, const QString &table)
{
    QSet<QString> cols;
    const QueryResult r = db.isSQLite()
        ? db.select(QStringLiteral("SELECT name FROM pragma_table_info(?)"), {table})
        : db.select(QStringLiteral("SELECT column_name FROM information_schema.columns WHERE table_schema = 'public' "
                                   "AND table_name = ?"), {table.toLower()});
    for (const Row &row : r)
        cols.insert(row.text(0).toLower());
    return cols;
}
} // namespace

void TestSchema::everyTableAndColumn()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    // The tables and columns the rest of the program relies on, written out
    // here rather than read back from the schema source.
    const QHash<QString, QStringList> expected = {
        {QStringLiteral("tblPartyInfo"), {"PartyCode", "PartyName", "PartyAddress", "PartyPhone", "PartyFax", "PartyEmail",
                                          "PartyDesc", "PartySaleTaxNo", "PartyNTN", "CareOf", "DueDays", "UserName", "EntryDate"}},
        {QStringLiteral("tblPartyBalance"), {"SrNo", "RecordNo", "VoucherType", "VoucherNo", "VDate", "InvoiceNo", "PartyCode",
                                             "PartyName", "PartyDR", "PartyCR", "PartyBalance", "PartyDesc", "CareOf",
                                             "UserName", "EntryDate"}},
        {QStringLiteral("tblDBCR"), {"PartyCode"}},
        {QStringLiteral("tblCareOf"), {"Name", "Designation", "UserName"}},
        {QStringLiteral("tblTitleName"), {"TitleName"}},
        {QStringLiteral("tblLetterhead"), {"TitleName", "CompanyName", "CompanyAddress", "CompanyPhone", "CompanyEmail",
                                           "CompanySaleTaxNo", "CompanyNTN"}},
        {QStringLiteral("tblPostDatedCheque"), {"VoucherType", "VoucherNo", "PartyName", "PartyCode", "VDate", "ChequeDate",
                                                "Description", "Amount", "BankName", "BankCode", "Status", "CareOf",
                                                "UserName", "EntryDate"}},
        {QStringLiteral("tblOtherServices"), {"VoucherType", "VoucherNo", "InvoiceNo", "PartyCode", "PartyName", "ServiceDate",
                                              "Service", "ServiceAmount", "SupplierCode", "SupplierName", "SupplierAmount",
                                              "CareOf", "UserName", "Remarks", "EntryDate"}},
        {QStringLiteral("tblInvoice"), {"SrNo", "TermsOfSale", "InvoiceNo", "InvoiceDate", "PartyCode", "PartyName",
                                        "Description", "PONo", "Quantity", "Rate", "Price", "RateOfSaleTax", "SaleTaxPayable",
                                        "ValueIncludingTax", "ChallanNo", "GateEntryNo", "Type", "TitleName", "JobNo", "CED",
                                        "InvoiceDesc", "DTRE", "Weight", "FurtherTax", "DescCode", "Status"}},
        {QStringLiteral("tblPurchaseOrder"), {"SrNo", "RecordNo", "PONo", "PartyPONo", "VDate", "PartyCode", "PartyName",
                                              "Description", "Quantity", "Type", "UnitPrice", "DemandNo", "JobNo", "TitleName"}},
        {QStringLiteral("tblDeliveryChallan"), {"SrNo", "RecordNo", "DeliveryChallanNo", "VDate", "PartyCode", "PartyName",
                                                "Description", "PONo", "Quantity", "Type", "DemandNo", "GateEntryNo",
                                                "TitleName", "CTN", "EntryDate"}},
        {QStringLiteral("tblJobCard"), {"JobCardNo", "PartyPoNo", "PartyName", "PartyCode", "VDate", "IssueDate", "PoDate",
                                        "JobDetail", "Paper", "PaperSize", "Quantity", "CuttingSize", "Printing", "Machine",
                                        "Design", "Positive", "Plate", "Die", "Bleach", "Lamination", "Other", "Status",
                                        "UserName", "EntryDate"}},
        {QStringLiteral("tblItemCoding"), {"ItemCode", "ItemName", "CostRate", "SaleRate", "UnitType", "UserName", "EntryDate"}},
        {QStringLiteral("tblPurchaseStock"), {"VoucherType", "VoucherNo", "RecordNo", "BillNo", "VDate", "PartyName", "ItemDesc",
                                              "Weight", "Quantity", "UnitRate", "UnitType", "Freight", "Amount",
                                              "PurchaseName", "UserName", "EntryDate", "SaleTax"}},
        {QStringLiteral("tblStock"), {"SrNo", "Item", "BrandName", "Type", "PartyCode", "PartyName", "Units", "UnitPrice",
                                      "Issue", "VDate"}},
        {QStringLiteral("tblEmployeeStock"), {"SrNo", "Item", "BrandName", "Type", "PartyCode", "Units", "Issue", "EntryDate"}},
        {QStringLiteral("tblEmployeeInfo"), {"SrNo", "EmployeeName", "EmployeeCode", "Salary", "InDate", "IncrementDate", "Status"}},
        {QStringLiteral("tblEmployeeSalary"), {"SrNo", "VoucherType", "VoucherNo", "VDate", "EmployeeCode", "EmployeeName",
                                               "EmployeeSalary", "OverTime", "Holidays", "OverDays", "OTAmount",
                                               "TotalSalary", "Advance", "Balance", "UserName", "EntryDate"}},
        {QStringLiteral("tblLogon"), {"UserName", "Password", "UserType"}},
        {QStringLiteral("tblUserRights"), {"USERNAME", "Menu"}},
        {QStringLiteral("tblClosingDate"), {"ClosingDate"}},
        {QStringLiteral("tblConfig"), {"UpdateStatus"}},
        {QStringLiteral("tblTLClientInfo"), {"TLClientName", "TLClientAddress", "TLClientPhone", "TLClientEmail",
                                             "TLClientSaleTaxNo", "TLClientNTN", "SDate", "EDate", "InvoiceNo",
                                             "VoucherNo", "PartyCode", "PartyName"}},
    };
    for (auto it = expected.cbegin(); it != expected.cend(); ++it) {
        const QSet<QString> have = columnsOf(*db, it.key());
        QVERIFY2(!have.isEmpty(), qPrintable(it.key() + QStringLiteral(" is missing")));
        for (const QString &c : it.value())
            QVERIFY2(have.contains(c.toLower()), qPrintable(it.key() + QLatin1Char('.') + c + QStringLiteral(" is missing")));
    }
    // Money columns keep cents exactly.
    db->execute(QStringLiteral("INSERT INTO tblItemCoding (ItemCode, ItemName, CostRate, SaleRate) VALUES ('01', 'PAPER', ?, ?)"),
                {Money::fromCents(1999999999999).toVariant(), Money::fromCents(1).toVariant()});
    const auto row = db->selectOne(QStringLiteral("SELECT CostRate, SaleRate FROM tblItemCoding"));
    QCOMPARE(row->money(QStringLiteral("CostRate"))->cents(), qint64(1999999999999));
    QCOMPARE(row->money(QStringLiteral("SaleRate"))->cents(), qint64(1));
}

void TestSchema::stagingTablesAreNotShared()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    // The staging tables exist only as each session's own temporary tables.
    const QString probe = db->isSQLite()
        ? QStringLiteral("SELECT COUNT(*) FROM sqlite_master WHERE name = ?")
        : QStringLiteral("SELECT COUNT(*) FROM information_schema.tables WHERE table_schema = 'public' AND table_name = ?");
    for (const Schema::Table &t : Schema::stagingTables()) {
        QCOMPARE(db->scalar(probe, {db->isSQLite() ? t.name : t.name.toLower()}).toInt(), 0);
        db->select(QStringLiteral("SELECT * FROM ") + t.name); // but the session has it
    }
}

void TestSchema::lookupIndexes()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    const QStringList wanted = {QStringLiteral("ixPartyBalanceCode"), QStringLiteral("ixPartyBalanceVoucher"),
                                QStringLiteral("ixInvoiceTitle"), QStringLiteral("ixPurchaseOrderNo"),
                                QStringLiteral("ixDeliveryChallanNo"), QStringLiteral("uxPartyInfoName")};
    for (const QString &ix : wanted) {
        const QVariant found = db->isSQLite()
            ? db->scalar(QStringLiteral("SELECT COUNT(*) FROM sqlite_master WHERE type = 'index' AND name = ?"), {ix})
            : db->scalar(QStringLiteral("SELECT COUNT(*) FROM pg_indexes WHERE indexname = ?"), {ix.toLower()});
        QVERIFY2(found.toInt() == 1, qPrintable(ix));
    }
    if (db->isSQLite()) {
        // The ledger look-up by account really uses its index.
        const auto plan = db->select(QStringLiteral("EXPLAIN QUERY PLAN SELECT SUM(PartyBalance) FROM tblPartyBalance WHERE PartyCode = ?"),
                                     {QStringLiteral("19-10-001")});
        QString text;
        for (const Row &r : plan)
            text += r.text(QStringLiteral("detail"));
        QVERIFY2(text.contains(QLatin1String("ixPartyBalanceCode")), qPrintable(text));
    }
}

void TestSchema::upgradeBringsOlderYearUpToDate()
{
    TESSEL_YEAR(year);
    {
        auto db = year.connect();
        db->execute(QStringLiteral("UPDATE tblConfig SET UpdateStatus = ?"), {QStringLiteral("20210715")});
        db->execute(QStringLiteral("DROP VIEW ChartOfAccount"));
        EditLogSchema::dropTriggers(*db); // a year from before the edit log
        db->execute(QStringLiteral("ALTER TABLE tblPartyInfo DROP COLUMN DueDays"));
        db->execute(QStringLiteral("DROP TABLE tblLetterhead"));
        db->execute(QStringLiteral("CREATE INDEX ixPartyBalanceDate ON tblPartyBalance (VDate)")); // since retired
    }
    auto db = year.connect();
    QCOMPARE(Schema::compareStamp(Schema::storedStamp(*db)), Schema::VersionCheck::Older);
    Schema::ensure(*db);
    QCOMPARE(Schema::storedStamp(*db), QString::fromLatin1(Schema::kStamp));
    QVERIFY(columnsOf(*db, QStringLiteral("tblPartyInfo")).contains(QStringLiteral("duedays")));
    QVERIFY(columnsOf(*db, QStringLiteral("tblLetterhead")).contains(QStringLiteral("companyntn")));
    const QVariant retired = db->isSQLite()
        ? db->scalar(QStringLiteral("SELECT COUNT(*) FROM sqlite_master WHERE name = 'ixPartyBalanceDate'"))
        : db->scalar(QStringLiteral("SELECT COUNT(*) FROM pg_indexes WHERE indexname = 'ixpartybalancedate'"));
    QCOMPARE(retired.toInt(), 0);
    // The fixed accounts survive and the view is back.
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM ChartOfAccount WHERE PartyCode = ?"),
                        {QStringLiteral("19-10-001")}).toInt(), 1);
    // Running it again changes nothing.
    Schema::ensure(*db);
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblConfig")).toInt(), 1);
    // The edit log's triggers are made with the upgrade, the added column included.
    db->execute(QStringLiteral("UPDATE tblPartyInfo SET DueDays = 30 WHERE PartyCode = ?"), {QStringLiteral("19-10-001")});
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblEditLog WHERE ValuesAfter = 'DueDays=30'")).toInt(), 1);
}

void TestSchema::versionGate_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<int>("expected");
    const QString client = QString::fromLatin1(Schema::kStamp);
    QTest::newRow("same") << client << int(Schema::VersionCheck::Current);
    QTest::newRow("older") << QStringLiteral("20210715") << int(Schema::VersionCheck::Older);
    QTest::newRow("no row") << QStringLiteral("0") << int(Schema::VersionCheck::Older);
    QTest::newRow("empty") << QString() << int(Schema::VersionCheck::Older);
    QTest::newRow("newer") << QStringLiteral("20270101") << int(Schema::VersionCheck::Newer);
    QTest::newRow("next day") << QDate::fromString(client, QStringLiteral("yyyyMMdd")).addDays(1).toString(QStringLiteral("yyyyMMdd"))
                              << int(Schema::VersionCheck::Newer);
    // Compared as text, as it always was: "9" sorts after "2026...".
    QTest::newRow("textual") << QStringLiteral("9") << int(Schema::VersionCheck::Newer);
}

void TestSchema::versionGate()
{
    QFETCH(QString, stored);
    QFETCH(int, expected);
    QCOMPARE(int(Schema::compareStamp(stored)), expected);
}

void TestSchema::emptyConfigReadsAsZero()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    db->execute(QStringLiteral("DELETE FROM tblConfig"));
    QCOMPARE(Schema::storedStamp(*db), QStringLiteral("0"));
    QCOMPARE(Schema::compareStamp(Schema::storedStamp(*db)), Schema::VersionCheck::Older);
}

QTEST_GUILESS_MAIN(TestSchema)
#include "tst_schema.moc"
