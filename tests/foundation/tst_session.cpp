#include "foundation/Schema.h"
#include "foundation/SessionConnection.h"
#include "support/TestDb.h"

#include <QtTest>

// The session connection on both engines: binding, typed reads, the
// transaction guard, private staging and the SQL functions.
class TestSession : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void boundValuesSurvive_data() { TestDb::addBackends(); }
    void boundValuesSurvive();
    void namedParameters_data() { TestDb::addBackends(); }
    void namedParameters();
    void typedReads_data() { TestDb::addBackends(); }
    void typedReads();
    void sumOverNoRowsIsNoValue_data() { TestDb::addBackends(); }
    void sumOverNoRowsIsNoValue();
    void moneySumsWithoutNoise_data() { TestDb::addBackends(); }
    void moneySumsWithoutNoise();
    void failingStatementLeavesNoRow_data() { TestDb::addBackends(); }
    void failingStatementLeavesNoRow();
    void nestedGuardRollsBackInnerOnly_data() { TestDb::addBackends(); }
    void nestedGuardRollsBackInnerOnly();
    void statementHookFailsMidway_data() { TestDb::addBackends(); }
    void statementHookFailsMidway();
    void stagingIsPrivate_data() { TestDb::addBackends(); }
    void stagingIsPrivate();
    void trailingBlanksInCodes_data() { TestDb::addBackends(); }
    void trailingBlanksInCodes();
    void monthAndYear_data() { TestDb::addBackends(); }
    void monthAndYear();
    void reportPeriodIsPerSession_data() { TestDb::addBackends(); }
    void reportPeriodIsPerSession();
    void identityKeyIsReturned_data() { TestDb::addBackends(); }
    void identityKeyIsReturned();
    void uniqueViolationIsRecognised_data() { TestDb::addBackends(); }
    void uniqueViolationIsRecognised();
};

void TestSession::boundValuesSurvive()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    const QStringList values = {QStringLiteral("O'BRIEN & SONS"), QStringLiteral("A;B;C"), QStringLiteral("1,2,3"),
                                QStringLiteral("100% COTTON"), QStringLiteral("'); DROP TABLE tblPartyInfo; --"),
                                QStringLiteral("ÇAĞRI ÖZ — اردو 漢字"), QStringLiteral("back\\slash \"quoted\""),
                                QStringLiteral("?:name $1")};
    int i = 0;
    for (const QString &v : values) {
        const QString code = QStringLiteral("17-10-%1").arg(++i, 3, 10, QLatin1Char('0'));
        db->execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName, PartyDesc) VALUES (?, ?, ?)"),
                    {code, v, v});
        const auto row = db->selectOne(QStringLiteral("SELECT PartyName, PartyDesc FROM tblPartyInfo WHERE PartyName = ?"), {v});
        QVERIFY2(row.has_value(), qPrintable(v));
        QCOMPARE(row->text(QStringLiteral("PartyName")), v);
        QCOMPARE(row->text(QStringLiteral("partydesc")), v);
    }
    // LIKE with a bound pattern finds the percent sign literally placed.
    const auto like = db->select(QStringLiteral("SELECT PartyName FROM tblPartyInfo WHERE PartyName LIKE ?"),
                                 {QStringLiteral("%COTTON%")});
    QCOMPARE(like.size(), 1);
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyInfo WHERE PartyCode LIKE ?"),
                        {QStringLiteral("17-10-%")}).toInt(), values.size());
}

void TestSession::namedParameters()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    QVariantMap p;
    p.insert(QStringLiteral("code"), QStringLiteral("17-10-001"));
    p.insert(QStringLiteral(":name"), QStringLiteral("NAMED PARTY"));
    db->execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES (:code, :name)"), p);
    QVariantMap q;
    q.insert(QStringLiteral("code"), QStringLiteral("17-10-001"));
    QCOMPARE(db->scalar(QStringLiteral("SELECT PartyName FROM tblPartyInfo WHERE PartyCode = :code"), q).toString(),
             QStringLiteral("NAMED PARTY"));
}

void TestSession::typedReads()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    db->execute(QStringLiteral("INSERT INTO tblPartyBalance (VoucherType, VoucherNo, VDate, PartyCode, PartyName, "
                               "PartyDR, PartyCR, PartyBalance, EntryDate) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)"),
                {QStringLiteral("CP"), 7, QDate(2026, 2, 28), QStringLiteral("19-10-001"), QStringLiteral("CASH IN HAND"),
                 Money::parse(QStringLiteral("1234567.89"))->toVariant(), Money().toVariant(),
                 Money::parse(QStringLiteral("1234567.89"))->toVariant(), QDate(2026, 3, 1)});
    const auto row = db->selectOne(QStringLiteral("SELECT SrNo, VoucherNo, VDate, PartyDR, PartyCR, PartyBalance, "
                                                  "RecordNo, InvoiceNo FROM tblPartyBalance"));
    QVERIFY(row);
    QCOMPARE(row->date(QStringLiteral("VDate")), QDate(2026, 2, 28));
    QCOMPARE(row->integer(QStringLiteral("VoucherNo")), qint64(7));
    QCOMPARE(row->money(QStringLiteral("PartyDR"))->cents(), qint64(123456789));
    QCOMPARE(row->money(QStringLiteral("PartyCR"))->cents(), qint64(0));
    QVERIFY(row->isNull(QStringLiteral("RecordNo")));   // nullable line number
    QVERIFY(!row->money(QStringLiteral("InvoiceNo")).has_value());
    QVERIFY(row->integer(QStringLiteral("SrNo")) > 0);   // assigned by the database
    // Dates compare as dates, not as text.
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE VDate BETWEEN ? AND ?"),
                        {QDate(2026, 2, 1), QDate(2026, 2, 28)}).toInt(), 1);
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE VDate > ?"),
                        {QDate(2026, 2, 28)}).toInt(), 0);
    // The opening balance default of VoucherNo.
    db->execute(QStringLiteral("INSERT INTO tblPartyBalance (VoucherType, PartyCode) VALUES (?, ?)"),
                {QStringLiteral("JV"), QStringLiteral("17-10-001")});
    QCOMPARE(db->scalar(QStringLiteral("SELECT VoucherNo FROM tblPartyBalance WHERE PartyCode = ?"),
                        {QStringLiteral("17-10-001")}).toInt(), 0);
}

void TestSession::sumOverNoRowsIsNoValue()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    const QString sum = QStringLiteral("SELECT SUM(PartyBalance) FROM tblPartyBalance WHERE PartyCode = ?");
    QVERIFY(!db->scalarMoney(sum, {QStringLiteral("19-10-001")}).has_value());
    QVERIFY(db->scalar(sum, {QStringLiteral("19-10-001")}).isNull());
    db->execute(QStringLiteral("INSERT INTO tblPartyBalance (VoucherType, VoucherNo, PartyCode, PartyDR, PartyCR, PartyBalance) "
                               "VALUES ('JV', 0, ?, 0, 0, 0)"), {QStringLiteral("19-10-001")});
    const auto zero = db->scalarMoney(sum, {QStringLiteral("19-10-001")});
    QVERIFY(zero.has_value());
    QCOMPARE(zero->cents(), qint64(0));
    QCOMPARE(db->scalar(QStringLiteral("SELECT MAX(VoucherNo) FROM tblPartyBalance WHERE VoucherType = ?"),
                        {QStringLiteral("CP")}).isNull(), true);
}

void TestSession::moneySumsWithoutNoise()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    Transaction tx(*db);
    Money expected;
    for (int i = 0; i < 1000; ++i) {
        const Money m = Money::fromCents(10 + (i % 7) * 333); // 0.10, 3.43, 6.76 ...
        expected += m;
        db->execute(QStringLiteral("INSERT INTO tblPartyBalance (VoucherType, VoucherNo, PartyCode, PartyDR, PartyCR, "
                                   "PartyBalance) VALUES ('CP', ?, '19-10-001', ?, 0, ?)"),
                    {i + 1, m.toVariant(), m.toVariant()});
    }
    tx.commit();
    const auto sum = db->scalarMoney(QStringLiteral("SELECT SUM(PartyBalance) FROM tblPartyBalance"));
    QVERIFY(sum);
    QCOMPARE(sum->cents(), expected.cents());
    QCOMPARE(sum->toPlainString(), expected.toPlainString());
}

void TestSession::failingStatementLeavesNoRow()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    bool threw = false;
    try {
        Transaction tx(*db);
        db->execute(QStringLiteral("INSERT INTO tblCareOf (Name, Designation) VALUES (?, ?)"),
                    {QStringLiteral("FIRST"), QStringLiteral("MANAGER")});
        db->execute(QStringLiteral("INSERT INTO tblNoSuchTable (Name) VALUES (?)"), {QStringLiteral("X")});
        tx.commit();
    } catch (const DbError &e) {
        threw = true;
        QVERIFY(!e.driverText().isEmpty());
        QVERIFY(e.sql().contains(QLatin1String("tblNoSuchTable")));
    }
    QVERIFY(threw);
    QCOMPARE(db->transactionDepth(), 0);
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblCareOf")).toInt(), 0);
    // The session is usable afterwards.
    db->execute(QStringLiteral("INSERT INTO tblCareOf (Name) VALUES (?)"), {QStringLiteral("SECOND")});
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblCareOf")).toInt(), 1);
}

void TestSession::nestedGuardRollsBackInnerOnly()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    {
        Transaction outer(*db);
        db->execute(QStringLiteral("INSERT INTO tblCareOf (Name) VALUES (?)"), {QStringLiteral("OUTER")});
        try {
            Transaction inner(*db);
            db->execute(QStringLiteral("INSERT INTO tblCareOf (Name) VALUES (?)"), {QStringLiteral("INNER")});
            db->execute(QStringLiteral("INSERT INTO tblCareOf (Name) VALUES (?)"), {QStringLiteral("OUTER")}); // unique
            inner.commit();
        } catch (const DbError &e) {
            QVERIFY(e.isUniqueViolation());
        }
        QCOMPARE(db->transactionDepth(), 1);
        outer.commit();
    }
    const auto names = db->select(QStringLiteral("SELECT Name FROM tblCareOf ORDER BY Name"));
    QCOMPARE(names.size(), 1);
    QCOMPARE(names.first().text(0).trimmed(), QStringLiteral("OUTER"));
}

void TestSession::statementHookFailsMidway()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    int count = 0;
    db->setStatementHook([&count](const QString &sql) {
        if (sql.startsWith(QLatin1String("INSERT")) && ++count == 3)
            throw DbError(QStringLiteral("injected failure"), sql);
    });
    bool threw = false;
    try {
        Transaction tx(*db);
        for (int i = 0; i < 5; ++i) {
            const QString title = QStringLiteral("T") + QString::number(i);
            db->execute(QStringLiteral("INSERT INTO tblTitleName (TitleName) VALUES (?)"), {title});
        }
        tx.commit();
    } catch (const DbError &e) {
        threw = true;
        QCOMPARE(e.driverText(), QStringLiteral("injected failure"));
    }
    db->setStatementHook({});
    QVERIFY(threw);
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblTitleName")).toInt(), 0);
}

void TestSession::stagingIsPrivate()
{
    TESSEL_YEAR(year);
    auto a = year.connect();
    auto b = year.connect();
    a->execute(QStringLiteral("INSERT INTO tblPartyBalanceEmpty (SrNo, VoucherType, PartyCode, DBCR) VALUES (1, 'CP', ?, 'INSERT')"),
               {QStringLiteral("17-10-001")});
    b->execute(QStringLiteral("INSERT INTO tblPartyBalanceEmpty (SrNo, VoucherType, PartyCode, DBCR) VALUES (1, 'JV', ?, 'INSERT')"),
               {QStringLiteral("18-10-001")});
    b->execute(QStringLiteral("INSERT INTO tblInvoiceEmpty (SrNo, InvoiceNo, Remarks) VALUES (1, 5, 'INSERT')"));
    QCOMPARE(a->scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalanceEmpty")).toInt(), 1);
    QCOMPARE(a->scalar(QStringLiteral("SELECT VoucherType FROM tblPartyBalanceEmpty")).toString().trimmed(), QStringLiteral("CP"));
    QCOMPARE(a->scalar(QStringLiteral("SELECT COUNT(*) FROM tblInvoiceEmpty")).toInt(), 0);
    // Emptying one workstation's staging leaves the other's lines alone.
    a->execute(QStringLiteral("DELETE FROM tblPartyBalanceEmpty"));
    QCOMPARE(b->scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalanceEmpty")).toInt(), 1);
    // Every staging table and its extra columns are there.
    for (const char *sql : {"SELECT DBCR, EmployeeSalary, TotalDr FROM tblPartyBalanceEmpty",
                            "SELECT Remarks, Status FROM tblInvoiceEmpty",
                            "SELECT StockDate, StockDesc, StockInHand FROM tblStockEmpty",
                            "SELECT PartyCode, PartyName, January, December FROM tblMonthlyComparisonReportEmpty"})
        a->select(QString::fromLatin1(sql));
}

void TestSession::trailingBlanksInCodes()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    db->execute(QStringLiteral("INSERT INTO tblPartyBalance (VoucherType, VoucherNo, PartyCode, PartyName, PartyBalance) "
                               "VALUES ('OS', 1, ?, 'OTHER SERVICES INCOM', -5)"), {QStringLiteral("20-10-001 ")});
    db->execute(QStringLiteral("INSERT INTO tblPartyBalance (VoucherType, VoucherNo, PartyCode, PartyName, PartyBalance) "
                               "VALUES ('OS', 2, ?, 'OTHER SERVICES INCOM', -7)"), {QStringLiteral("20-10-001")});
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE PartyCode = ?"),
                        {QStringLiteral("20-10-001")}).toInt(), 2);
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE PartyCode = ?"),
                        {QStringLiteral("20-10-001 ")}).toInt(), 2);
    QCOMPARE(db->scalarMoney(QStringLiteral("SELECT SUM(PartyBalance) FROM tblPartyBalance WHERE PartyCode = ?"),
                             {QStringLiteral("20-10-001")})->cents(), qint64(-1200));
    // A heading test still works on a code with a trailing blank.
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE PartyCode NOT LIKE ?"),
                        {QStringLiteral("__-__-000%")}).toInt(), 2);
    // Joined to the chart, whose row has no blank.
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance b JOIN tblPartyInfo p ON p.PartyCode = b.PartyCode "
                                       "WHERE p.PartyName = ?"), {QStringLiteral("OTHER SERVICES INCOM")}).toInt(), 2);
    // A name with a trailing blank collides with the same name without.
    bool refused = false;
    try {
        db->execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES (?, ?)"),
                    {QStringLiteral("17-10-009"), QStringLiteral("CASH IN HAND ")});
    } catch (const DbError &e) {
        refused = e.isUniqueViolation();
    }
    QVERIFY(refused);
}

void TestSession::monthAndYear()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    const QList<QDate> dates = {QDate(2026, 1, 31), QDate(2026, 2, 1), QDate(2026, 12, 31), QDate(2025, 12, 1)};
    int n = 0;
    for (const QDate &d : dates)
        db->execute(QStringLiteral("INSERT INTO tblPartyBalance (VoucherType, VoucherNo, VDate, PartyCode) VALUES ('JV', ?, ?, '17-10-001')"),
                    {++n, d});
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE Month(VDate) = ? AND Year(VDate) = ?"),
                        {12, 2026}).toInt(), 1);
    QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance WHERE Year(VDate) = ?"), {2026}).toInt(), 3);
    const auto grouped = db->select(QStringLiteral("SELECT Month(VDate) AS M, COUNT(*) AS N FROM tblPartyBalance "
                                                   "GROUP BY Month(VDate) ORDER BY Month(VDate)"));
    QCOMPARE(grouped.size(), 3);
    QCOMPARE(grouped.at(0).integer(QStringLiteral("M")), qint64(1));
    QCOMPARE(grouped.at(2).integer(QStringLiteral("N")), qint64(2));
    QCOMPARE(db->scalar(QStringLiteral("SELECT Day(VDate) FROM tblPartyBalance WHERE VoucherNo = 1")).toInt(), 31);
}

void TestSession::reportPeriodIsPerSession()
{
    TESSEL_YEAR(year);
    auto a = year.connect();
    auto b = year.connect();
    const QString sql = QStringLiteral("SELECT COALESCE(ReportSDate(), (SELECT SDate FROM tblTLClientInfo)) AS F, "
                                       "COALESCE(ReportEDate(), (SELECT EDate FROM tblTLClientInfo)) AS T");
    // Unset: the shared row.
    QCOMPARE(a->selectOne(sql)->date(QStringLiteral("F")), QDate(1900, 1, 1));
    a->setReportPeriod(QDate(2026, 1, 1), QDate(2026, 1, 31));
    b->setReportPeriod(QDate(2026, 6, 1), QDate(2026, 6, 30));
    QCOMPARE(a->selectOne(sql)->date(QStringLiteral("T")), QDate(2026, 1, 31));
    QCOMPARE(b->selectOne(sql)->date(QStringLiteral("F")), QDate(2026, 6, 1));
    QCOMPARE(b->selectOne(sql)->date(QStringLiteral("T")), QDate(2026, 6, 30));
}

void TestSession::identityKeyIsReturned()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    const qint64 first = db->insertReturningKey(QStringLiteral("INSERT INTO tblPartyBalance (VoucherType, VoucherNo, PartyCode) "
                                                               "VALUES ('JV', 1, ?)"), {QStringLiteral("17-10-001")});
    const qint64 second = db->insertReturningKey(QStringLiteral("INSERT INTO tblPartyBalance (VoucherType, VoucherNo, PartyCode) "
                                                                "VALUES ('JV', 1, ?)"), {QStringLiteral("17-10-001")});
    QVERIFY(first > 0);
    QCOMPARE(second, first + 1);
    db->execute(QStringLiteral("DELETE FROM tblPartyBalance WHERE SrNo = ?"), {second});
    const qint64 third = db->insertReturningKey(QStringLiteral("INSERT INTO tblPartyBalance (VoucherType, VoucherNo, PartyCode) "
                                                               "VALUES ('JV', 1, ?)"), {QStringLiteral("17-10-001")});
    QVERIFY(third > second); // a key is never handed out twice
}

void TestSession::uniqueViolationIsRecognised()
{
    TESSEL_YEAR(year);
    auto db = year.connect();
    try {
        db->execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES (?, ?)"),
                    {QStringLiteral("19-10-001"), QStringLiteral("ANOTHER CASH")});
        QFAIL("a duplicate code was accepted");
    } catch (const DbError &e) {
        QVERIFY(e.isUniqueViolation());
    }
    try {
        db->execute(QStringLiteral("INSERT INTO tblNoSuchTable VALUES (1)"));
        QFAIL("a bad statement ran");
    } catch (const DbError &e) {
        QVERIFY(!e.isUniqueViolation());
    }
}

QTEST_GUILESS_MAIN(TestSession)
#include "tst_session.moc"
