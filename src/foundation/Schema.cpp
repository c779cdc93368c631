#include "foundation/Schema.h"
#include "foundation/EditLogSchema.h"
#include "foundation/SessionConnection.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QSet>

namespace Schema {

namespace {

Column T(const char *n) { return {QString::fromLatin1(n), Type::Text, QString()}; }
Column K(const char *n) { return {QString::fromLatin1(n), Type::Key, QString()}; }
Column I(const char *n) { return {QString::fromLatin1(n), Type::Integer, QString()}; }
Column M(const char *n) { return {QString::fromLatin1(n), Type::Money, QString()}; }
Column N(const char *n) { return {QString::fromLatin1(n), Type::Number, QString()}; }
Column D(const char *n) { return {QString::fromLatin1(n), Type::Date, QString()}; }
Column ID(const char *n) { return {QString::fromLatin1(n), Type::Identity, QString()}; }
Column withDefault(Column c, const char *def) { c.defaultValue = QString::fromLatin1(def); return c; }

QVector<Column> partyBalanceColumns()
{
    return {ID("SrNo"), I("RecordNo"), K("VoucherType"), withDefault(I("VoucherNo"), "0"), D("VDate"),
            T("InvoiceNo"), K("PartyCode"), K("PartyName"), M("PartyDR"), M("PartyCR"), M("PartyBalance"),
            T("PartyDesc"), K("CareOf"), K("UserName"), D("EntryDate")};
}

QVector<Column> invoiceColumns()
{
    return {ID("SrNo"), T("TermsOfSale"), I("InvoiceNo"), D("InvoiceDate"), K("PartyCode"), K("PartyName"),
            T("Description"), T("PONo"), N("Quantity"), N("Rate"), M("Price"), N("RateOfSaleTax"),
            M("SaleTaxPayable"), M("ValueIncludingTax"), T("ChallanNo"), T("GateEntryNo"), T("Type"),
            K("TitleName"), T("JobNo"), N("CED"), T("InvoiceDesc"), T("DTRE"), T("Weight"), N("FurtherTax"),
            T("DescCode"), withDefault(T("Status"), "''")};
}

QVector<Column> stockColumns()
{
    return {ID("SrNo"), K("Item"), K("BrandName"), K("Type"), K("PartyCode"), K("PartyName"), I("Units"),
            M("UnitPrice"), I("Issue"), D("VDate")};
}

// Staging rows carry the key the screen gives them, not an identity.
QVector<Column> asStaging(QVector<Column> cols)
{
    for (Column &c : cols)
        if (c.type == Type::Identity)
            c.type = Type::Integer;
    return cols;
}

} // namespace

const QVector<Table> &tables()
{
    static const QVector<Table> all = [] {
        QVector<Table> t;
        t.append({QStringLiteral("tblPartyInfo"),
                  {K("PartyCode"), K("PartyName"), T("PartyAddress"), T("PartyPhone"), T("PartyFax"),
                   T("PartyEmail"), T("PartyDesc"), T("PartySaleTaxNo"), T("PartyNTN"), K("CareOf"),
                   I("DueDays"), K("UserName"), D("EntryDate")}});
        t.append({QStringLiteral("tblPartyBalance"), partyBalanceColumns()});
        // The ledger's totals kept by the writer of its rows: an account's
        // whole-year figures, and its figures a month (YearMonth =
        // year * 100 + month, 0 for rows without a date), in cents.
        t.append({QStringLiteral("tblAccountBalance"),
                  {K("PartyCode"), I("DebitCents"), I("CreditCents"), I("BalanceCents"), I("RowCount")}});
        t.append({QStringLiteral("tblAccountMonthBalance"),
                  {K("PartyCode"), I("YearMonth"), I("DebitCents"), I("CreditCents"), I("BalanceCents"), I("RowCount")}});
        t.append({QStringLiteral("tblDBCR"), {K("PartyCode")}});
        t.append({QStringLiteral("tblCareOf"), {K("Name"), T("Designation"), K("UserName")}});
        t.append({QStringLiteral("tblTitleName"), {K("TitleName")}});
        t.append({QStringLiteral("tblLetterhead"),
                  {K("TitleName"), T("CompanyName"), T("CompanyAddress"), T("CompanyPhone"), T("CompanyEmail"),
                   T("CompanySaleTaxNo"), T("CompanyNTN")}});
        t.append({QStringLiteral("tblPostDatedCheque"),
                  {withDefault(K("VoucherType"), "'PD'"), I("VoucherNo"), K("PartyName"), K("PartyCode"), D("VDate"),
                   D("ChequeDate"), T("Description"), M("Amount"), K("BankName"), K("BankCode"), T("Status"),
                   K("CareOf"), K("UserName"), D("EntryDate"),
                   // The cheque's own number at its bank, whether it came in or went
                   // out, and the vouchers that cleared and bounced it.
                   K("ChequeNo"), withDefault(K("ChequeKind"), "'RECEIVED'"), K("ClearedType"), I("ClearedNo"),
                   D("ClearedDate"), I("BouncedNo"), D("BouncedDate")}});
        t.append({QStringLiteral("tblOtherServices"),
                  {withDefault(K("VoucherType"), "'OS'"), I("VoucherNo"), T("InvoiceNo"), K("PartyCode"),
                   K("PartyName"), D("ServiceDate"), T("Service"), M("ServiceAmount"), K("SupplierCode"),
                   K("SupplierName"), M("SupplierAmount"), K("CareOf"), K("UserName"), T("Remarks"),
                   D("EntryDate")}});
        t.append({QStringLiteral("tblInvoice"), invoiceColumns()});
        t.append({QStringLiteral("tblPurchaseOrder"),
                  {ID("SrNo"), I("RecordNo"), I("PONo"), T("PartyPONo"), D("VDate"), K("PartyCode"),
                   K("PartyName"), T("Description"), N("Quantity"), T("Type"), N("UnitPrice"), T("DemandNo"),
                   T("JobNo"), K("TitleName")}});
        t.append({QStringLiteral("tblDeliveryChallan"),
                  {ID("SrNo"), I("RecordNo"), I("DeliveryChallanNo"), D("VDate"), K("PartyCode"), K("PartyName"),
                   T("Description"), T("PONo"), N("Quantity"), T("Type"), T("DemandNo"), T("GateEntryNo"),
                   K("TitleName"), T("CTN"), D("EntryDate")}});
        t.append({QStringLiteral("tblJobCard"),
                  {I("JobCardNo"), T("PartyPoNo"), K("PartyName"), K("PartyCode"), D("VDate"), D("IssueDate"),
                   D("PoDate"), T("JobDetail"), T("Paper"), T("PaperSize"), T("Quantity"), T("CuttingSize"),
                   T("Printing"), T("Machine"), T("Design"), T("Positive"), T("Plate"), T("Die"), T("Bleach"),
                   T("Lamination"), T("Other"), T("Status"), K("UserName"), D("EntryDate")}});
        // Every value ever typed in a press field of a job card (Field is
        // the column's name), kept as cards are saved.
        t.append({QStringLiteral("tblJobCardList"), {K("Field"), K("Value")}});
        t.append({QStringLiteral("tblItemCoding"),
                  {K("ItemCode"), K("ItemName"), M("CostRate"), M("SaleRate"), T("UnitType"), K("UserName"),
                   D("EntryDate")}});
        t.append({QStringLiteral("tblPurchaseStock"),
                  {withDefault(K("VoucherType"), "'PS'"), I("VoucherNo"), I("RecordNo"), T("BillNo"), D("VDate"),
                   K("PartyName"), T("ItemDesc"), T("Weight"), N("Quantity"), N("UnitRate"), T("UnitType"),
                   M("Freight"), M("Amount"), K("PurchaseName"), K("UserName"), D("EntryDate"), M("SaleTax")}});
        t.append({QStringLiteral("tblStock"), stockColumns()});
        t.append({QStringLiteral("tblEmployeeStock"),
                  {ID("SrNo"), K("Item"), K("BrandName"), K("Type"), K("PartyCode"), I("Units"), I("Issue"),
                   D("EntryDate")}});
        t.append({QStringLiteral("tblEmployeeInfo"),
                  {ID("SrNo"), K("EmployeeName"), K("EmployeeCode"), M("Salary"), D("InDate"), D("IncrementDate"),
                   T("Status")}});
        t.append({QStringLiteral("tblEmployeeSalary"),
                  {ID("SrNo"), withDefault(K("VoucherType"), "'ES'"), I("VoucherNo"), D("VDate"), K("EmployeeCode"),
                   K("EmployeeName"), M("EmployeeSalary"), N("OverTime"), N("Holidays"), N("OverDays"),
                   M("OTAmount"), M("TotalSalary"), M("Advance"), M("Balance"), K("UserName"), D("EntryDate")}});
        // Locked: 1 keeps the user out without removing him; LastLogOnAt:
        // the last good log-on (milliseconds since 1970, UTC), NULL for never.
        t.append({QStringLiteral("tblLogon"),
                  {K("UserName"), T("Password"), T("UserType"), withDefault(I("Locked"), "0"), I("LastLogOnAt")}});
        t.append({QStringLiteral("tblUserRights"), {K("USERNAME"), T("Menu")}});
        // Failed log-ons in a row per user name, and when the next attempt
        // may come (milliseconds since 1970, UTC).
        t.append({QStringLiteral("tblLogonAttempt"), {K("UserName"), I("Failures"), I("NextAttemptAt")}});
        t.append({QStringLiteral("tblClosingDate"), {D("ClosingDate")}});
        t.append({QStringLiteral("tblConfig"), {T("UpdateStatus")}});
        t.append({QStringLiteral("tblTLClientInfo"),
                  {T("TLClientName"), T("TLClientAddress"), T("TLClientPhone"), T("TLClientEmail"),
                   T("TLClientSaleTaxNo"), T("TLClientNTN"), D("SDate"), D("EDate"), I("InvoiceNo"),
                   I("VoucherNo"), K("PartyCode"), K("PartyName")}});
        // The edit log: one row per insert, change or delete of a logged
        // table (written by the database's triggers) and per step of a
        // command that is not one row. Never changed or deleted.
        t.append({QStringLiteral("tblEditLog"),
                  {ID("LogNo"), T("LoggedAt"), D("LogDate"), K("UserName"), K("Workstation"), K("Change"),
                   K("TableName"), T("What"), T("RowKey"), K("DocType"), I("DocNo"), D("DocDate"), K("DocTitle"),
                   T("ValuesBefore"), T("ValuesAfter")}});
        return t;
    }();
    return all;
}

const QVector<Table> &stagingTables()
{
    static const QVector<Table> all = [] {
        QVector<Table> t;
        QVector<Column> pb = asStaging(partyBalanceColumns());
        pb << K("DBCR") << M("EmployeeSalary") << M("TotalDr");
        // The post-dated cheque a voucher line settles when the voucher is saved.
        pb << I("ChequeNo") << T("ChequeDesc");
        t.append({QStringLiteral("tblPartyBalanceEmpty"), pb});
        QVector<Column> inv = asStaging(invoiceColumns());
        inv << K("Remarks");
        t.append({QStringLiteral("tblInvoiceEmpty"), inv});
        QVector<Column> st = asStaging(stockColumns());
        st << D("StockDate") << K("StockDesc") << I("StockInHand");
        t.append({QStringLiteral("tblStockEmpty"), st});
        QVector<Column> mc{K("PartyCode"), K("PartyName")};
        for (const char *m : {"January", "February", "March", "April", "May", "June", "July", "August",
                              "September", "October", "November", "December"})
            mc << M(m);
        t.append({QStringLiteral("tblMonthlyComparisonReportEmpty"), mc});
        return t;
    }();
    return all;
}

const QVector<Index> &indexes()
{
    static const QVector<Index> all = {
        // Carries the amount too, so an account's balance (the busy cash
        // account above all) is summed from the index alone.
        {QStringLiteral("ixPartyBalanceCode"), QStringLiteral("tblPartyBalance"), QStringLiteral("PartyCode, VDate, PartyBalance"), false},
        {QStringLiteral("ixPartyBalanceVoucher"), QStringLiteral("tblPartyBalance"), QStringLiteral("VoucherType, VoucherNo, VDate"), false},
        // The days of the months a statement's period cuts are summed from
        // the index alone.
        {QStringLiteral("ixPartyBalanceDateAmounts"), QStringLiteral("tblPartyBalance"),
         QStringLiteral("VDate, PartyCode, PartyDR, PartyCR, PartyBalance"), false},
        // The sale-invoice debits alone, in the order the ageing lays a
        // party's balance on them (newest first), with what it prints.
        {QStringLiteral("ixPartyBalanceSaleInvoice"), QStringLiteral("tblPartyBalance"),
         QStringLiteral("PartyCode, VoucherNo DESC, SrNo DESC, VDate, PartyDR, InvoiceNo, PartyName"), false,
         QStringLiteral("VoucherType = 'SV' AND PartyDR > 0")},
        // The ledger views group and select accounts by the code without its
        // trailing blanks; the amounts ride along so that the statements add
        // up from the index alone.
        {QStringLiteral("ixPartyBalanceTrimCode"), QStringLiteral("tblPartyBalance"),
         QStringLiteral("(RTRIM(PartyCode)), VDate, PartyCode, PartyDR, PartyCR, PartyBalance"), false},
        {QStringLiteral("uxAccountBalanceCode"), QStringLiteral("tblAccountBalance"), QStringLiteral("PartyCode"), true},
        {QStringLiteral("uxAccountMonthBalance"), QStringLiteral("tblAccountMonthBalance"), QStringLiteral("PartyCode, YearMonth"), true},
        {QStringLiteral("uxPartyInfoCode"), QStringLiteral("tblPartyInfo"), QStringLiteral("PartyCode"), true},
        {QStringLiteral("uxPartyInfoName"), QStringLiteral("tblPartyInfo"), QStringLiteral("PartyName"), true},
        {QStringLiteral("ixInvoiceTitle"), QStringLiteral("tblInvoice"), QStringLiteral("TitleName, InvoiceNo"), false},
        {QStringLiteral("ixInvoiceParty"), QStringLiteral("tblInvoice"), QStringLiteral("PartyCode, InvoiceDate"), false},
        {QStringLiteral("ixPurchaseOrderNo"), QStringLiteral("tblPurchaseOrder"), QStringLiteral("TitleName, PONo"), false},
        {QStringLiteral("ixDeliveryChallanNo"), QStringLiteral("tblDeliveryChallan"), QStringLiteral("TitleName, DeliveryChallanNo"), false},
        {QStringLiteral("ixJobCardNo"), QStringLiteral("tblJobCard"), QStringLiteral("JobCardNo"), false},
        {QStringLiteral("ixPurchaseOrderParty"), QStringLiteral("tblPurchaseOrder"), QStringLiteral("PartyCode, PartyPONo"), false},
        {QStringLiteral("ixPurchaseOrderRecord"), QStringLiteral("tblPurchaseOrder"), QStringLiteral("RecordNo"), false},
        {QStringLiteral("ixDeliveryChallanRecord"), QStringLiteral("tblDeliveryChallan"), QStringLiteral("RecordNo"), false},
        {QStringLiteral("ixDeliveryChallanOrder"), QStringLiteral("tblDeliveryChallan"), QStringLiteral("PONo, TitleName"), false},
        {QStringLiteral("uxJobCardList"), QStringLiteral("tblJobCardList"), QStringLiteral("Field, Value"), true},
        {QStringLiteral("uxItemCode"), QStringLiteral("tblItemCoding"), QStringLiteral("ItemCode"), true},
        {QStringLiteral("uxItemName"), QStringLiteral("tblItemCoding"), QStringLiteral("ItemName"), true},
        {QStringLiteral("uxLogonUser"), QStringLiteral("tblLogon"), QStringLiteral("UserName"), true},
        {QStringLiteral("uxUserRightsUser"), QStringLiteral("tblUserRights"), QStringLiteral("USERNAME"), true},
        {QStringLiteral("uxLogonAttemptUser"), QStringLiteral("tblLogonAttempt"), QStringLiteral("UserName"), true},
        {QStringLiteral("uxTitleName"), QStringLiteral("tblTitleName"), QStringLiteral("TitleName"), true},
        {QStringLiteral("uxLetterheadTitle"), QStringLiteral("tblLetterhead"), QStringLiteral("TitleName"), true},
        {QStringLiteral("uxCareOfName"), QStringLiteral("tblCareOf"), QStringLiteral("Name"), true},
        {QStringLiteral("uxDBCRCode"), QStringLiteral("tblDBCR"), QStringLiteral("PartyCode"), true},
        {QStringLiteral("ixPostDatedChequeNo"), QStringLiteral("tblPostDatedCheque"), QStringLiteral("VoucherNo"), false},
        // Consumables: the open receipts of an item, brand and type in the
        // order they are issued from; what an employee holds.
        {QStringLiteral("ixStockItem"), QStringLiteral("tblStock"), QStringLiteral("Item, BrandName, Type, VDate, SrNo"), false},
        {QStringLiteral("ixEmployeeStockParty"), QStringLiteral("tblEmployeeStock"),
         QStringLiteral("PartyCode, Item, BrandName, Type"), false},
        {QStringLiteral("ixPurchaseStockNo"), QStringLiteral("tblPurchaseStock"), QStringLiteral("VoucherNo"), false},
        {QStringLiteral("ixOtherServicesNo"), QStringLiteral("tblOtherServices"), QStringLiteral("VoucherNo"), false},
        {QStringLiteral("ixEmployeeSalaryNo"), QStringLiteral("tblEmployeeSalary"), QStringLiteral("VoucherNo"), false},
        // One register row per employee account.
        {QStringLiteral("uxEmployeeInfoCode"), QStringLiteral("tblEmployeeInfo"), QStringLiteral("EmployeeCode"), true},
        // The edit log by day, and a document's history.
        {QStringLiteral("ixEditLogDate"), QStringLiteral("tblEditLog"), QStringLiteral("LogDate"), false},
        {QStringLiteral("ixEditLogDoc"), QStringLiteral("tblEditLog"), QStringLiteral("DocType, DocNo"), false},
    };
    return all;
}

const Table *findTable(const QString &name)
{
    for (const Table &t : tables())
        if (t.name.compare(name, Qt::CaseInsensitive) == 0)
            return &t;
    for (const Table &t : stagingTables())
        if (t.name.compare(name, Qt::CaseInsensitive) == 0)
            return &t;
    return nullptr;
}

QString columnSql(const Column &c, bool postgres, bool staging)
{
    QString type;
    switch (c.type) {
    case Type::Text: type = QStringLiteral("TEXT"); break;
    // A key ignores trailing blanks in every comparison and in its unique
    // index: "ABC " and "ABC" are the same account.
    case Type::Key: type = postgres ? QStringLiteral("BPCHAR") : QStringLiteral("TEXT COLLATE RTRIM"); break;
    case Type::Integer: type = postgres ? QStringLiteral("BIGINT") : QStringLiteral("INTEGER"); break;
    case Type::Money: type = postgres ? QStringLiteral("NUMERIC(18,2)") : QStringLiteral("NUMERIC"); break;
    case Type::Number: type = postgres ? QStringLiteral("NUMERIC(20,6)") : QStringLiteral("NUMERIC"); break;
    case Type::Date: type = QStringLiteral("DATE"); break;
    case Type::Identity:
        if (staging)
            type = postgres ? QStringLiteral("BIGINT") : QStringLiteral("INTEGER");
        else
            type = postgres ? QStringLiteral("BIGINT GENERATED BY DEFAULT AS IDENTITY PRIMARY KEY")
                            : QStringLiteral("INTEGER PRIMARY KEY AUTOINCREMENT");
        break;
    }
    QString sql = c.name + QLatin1Char(' ') + type;
    if (!c.defaultValue.isEmpty())
        sql += QStringLiteral(" DEFAULT ") + c.defaultValue;
    return sql;
}

QString createTableSql(const Table &t, bool postgres, bool temporary)
{
    QStringList cols;
    for (const Column &c : t.columns)
        cols << columnSql(c, postgres, temporary);
    return QStringLiteral("CREATE %1TABLE %2%3 (%4)")
        .arg(temporary ? QStringLiteral("TEMPORARY ") : QString(),
             temporary ? QString() : QStringLiteral("IF NOT EXISTS "), t.name, cols.join(QStringLiteral(", ")));
}

QVector<ViewFile> viewFiles(const QString &folder, bool postgres)
{
    QVector<ViewFile> out;
    QDir dir(QStringLiteral(":/schema/") + folder);
    QStringList files = dir.entryList({QStringLiteral("*.sql")}, QDir::Files, QDir::Name);
    static const QRegularExpression nameRe(QStringLiteral("CREATE\\s+(?:TEMPORARY\\s+|TEMP\\s+)?VIEW\\s+(\\w+)"),
                                           QRegularExpression::CaseInsensitiveOption);
    for (const QString &f : files) {
        QFile file(dir.filePath(f));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        QString text = QString::fromUtf8(file.readAll());
        // A file may hold one body for both engines, or a block for each
        // after the markers "--@sqlite" and "--@postgres".
        const int s = text.indexOf(QLatin1String("--@sqlite"));
        const int p = text.indexOf(QLatin1String("--@postgres"));
        if (s >= 0 && p >= 0) {
            if (postgres)
                text = s > p ? text.mid(p, s - p) : text.mid(p);
            else
                text = p > s ? text.mid(s, p - s) : text.mid(s);
        }
        const auto m = nameRe.match(text);
        if (!m.hasMatch())
            continue;
        out.append({m.captured(1), text.trimmed()});
    }
    return out;
}

namespace {

QSet<QString> existingColumns(SessionConnection &s, const QString &table)
{
    QSet<QString> cols;
    if (s.isSQLite()) {
        for (const Row &r : s.select(QStringLiteral("SELECT name FROM pragma_table_info(?)"), {table}))
            cols.insert(r.text(0).toLower());
    } else {
        for (const Row &r : s.select(QStringLiteral("SELECT column_name FROM information_schema.columns "
                                                    "WHERE table_schema = current_schema() AND table_name = ?"),
                                     {table.toLower()}))
            cols.insert(r.text(0).toLower());
    }
    return cols;
}

void createFunctions(SessionConnection &s)
{
    if (!s.isPostgres())
        return; // SQLite gets its functions when the connection opens
    const QStringList fns = {
        QStringLiteral("CREATE OR REPLACE FUNCTION Month(d date) RETURNS integer LANGUAGE sql IMMUTABLE PARALLEL SAFE "
                       "AS $$ SELECT CAST(EXTRACT(MONTH FROM d) AS integer) $$"),
        QStringLiteral("CREATE OR REPLACE FUNCTION Year(d date) RETURNS integer LANGUAGE sql IMMUTABLE PARALLEL SAFE "
                       "AS $$ SELECT CAST(EXTRACT(YEAR FROM d) AS integer) $$"),
        QStringLiteral("CREATE OR REPLACE FUNCTION Day(d date) RETURNS integer LANGUAGE sql IMMUTABLE PARALLEL SAFE "
                       "AS $$ SELECT CAST(EXTRACT(DAY FROM d) AS integer) $$"),
        QStringLiteral("CREATE OR REPLACE FUNCTION ReportSDate() RETURNS date LANGUAGE sql STABLE PARALLEL SAFE "
                       "AS $$ SELECT CAST(NULLIF(current_setting('tessel.sdate', true), '') AS date) $$"),
        QStringLiteral("CREATE OR REPLACE FUNCTION ReportEDate() RETURNS date LANGUAGE sql STABLE PARALLEL SAFE "
                       "AS $$ SELECT CAST(NULLIF(current_setting('tessel.edate', true), '') AS date) $$"),
    };
    for (const QString &f : fns)
        s.execute(f);
}

} // namespace

QString storedStamp(SessionConnection &s)
{
    const QVariant v = s.scalar(QStringLiteral("SELECT UpdateStatus FROM tblConfig"));
    return v.isNull() ? QStringLiteral("0") : v.toString().trimmed();
}

VersionCheck compareStamp(const QString &stored, const QString &client)
{
    const int c = QString::compare(stored, client);
    if (c > 0)
        return VersionCheck::Newer;
    if (c < 0)
        return VersionCheck::Older;
    return VersionCheck::Current;
}

QString createIndexSql(const Index &ix)
{
    return QStringLiteral("CREATE %1INDEX IF NOT EXISTS %2 ON %3 (%4)%5")
        .arg(ix.unique ? QStringLiteral("UNIQUE ") : QString(), ix.name, ix.table, ix.columns,
             ix.where.isEmpty() ? QString() : QStringLiteral(" WHERE ") + ix.where);
}

QString ledgerMonthTotalsSql()
{
    return QStringLiteral(
        "SELECT RTRIM(PartyCode) AS PartyCode, COALESCE(Year(VDate) * 100 + Month(VDate), 0) AS YearMonth, "
        "COALESCE(SUM(CAST(ROUND(PartyDR * 100) AS BIGINT)), 0) AS DebitCents, "
        "COALESCE(SUM(CAST(ROUND(PartyCR * 100) AS BIGINT)), 0) AS CreditCents, "
        "COALESCE(SUM(CAST(ROUND(PartyBalance * 100) AS BIGINT)), 0) AS BalanceCents, "
        "COUNT(*) AS RowCount "
        "FROM tblPartyBalance WHERE PartyCode IS NOT NULL "
        "GROUP BY RTRIM(PartyCode), COALESCE(Year(VDate) * 100 + Month(VDate), 0)");
}

void rebuildKeptBalances(SessionConnection &s)
{
    Transaction tx(s);
    s.execute(QStringLiteral("DELETE FROM tblAccountMonthBalance"));
    s.execute(QStringLiteral("DELETE FROM tblAccountBalance"));
    s.execute(QStringLiteral("INSERT INTO tblAccountMonthBalance (PartyCode, YearMonth, DebitCents, CreditCents, "
                             "BalanceCents, RowCount) ")
              + ledgerMonthTotalsSql());
    s.execute(QStringLiteral("INSERT INTO tblAccountBalance (PartyCode, DebitCents, CreditCents, BalanceCents, RowCount) "
                             "SELECT PartyCode, SUM(DebitCents), SUM(CreditCents), SUM(BalanceCents), SUM(RowCount) "
                             "FROM tblAccountMonthBalance GROUP BY PartyCode"));
    tx.commit();
}

void refreshStatistics(SessionConnection &s)
{
    if (s.isSQLite()) {
        // A sample of each index is enough for the planner and keeps this
        // quick on a large year.
        s.execute(QStringLiteral("PRAGMA analysis_limit = 1000"));
        s.execute(QStringLiteral("ANALYZE"));
    } else {
        s.execute(QStringLiteral("ANALYZE"));
    }
}

bool hasStatistics(SessionConnection &s)
{
    if (s.isSQLite())
        return s.scalar(QStringLiteral("SELECT COUNT(*) FROM sqlite_master WHERE name = 'sqlite_stat1'")).toLongLong() > 0;
    return s.scalar(QStringLiteral("SELECT COUNT(*) FROM pg_stat_user_tables WHERE relname = 'tblpartybalance' "
                                   "AND (last_analyze IS NOT NULL OR last_autoanalyze IS NOT NULL)"))
               .toLongLong()
        > 0;
}

void ensureStatistics(SessionConnection &s)
{
    if (!hasStatistics(s))
        refreshStatistics(s);
}

void ensure(SessionConnection &s)
{
    const bool pg = s.isPostgres();
    Transaction tx(s);
    createFunctions(s);
    for (const Table &t : tables()) {
        s.execute(createTableSql(t, pg, false));
        const QSet<QString> have = existingColumns(s, t.name);
        for (const Column &c : t.columns) {
            if (have.contains(c.name.toLower()))
                continue;
            Column added = c;
            if (added.type == Type::Identity)
                added.type = Type::Integer; // an identity cannot be added to a table with rows
            s.execute(QStringLiteral("ALTER TABLE ") + t.name + QStringLiteral(" ADD COLUMN ")
                      + columnSql(added, pg, false));
        }
    }
    for (const Index &ix : indexes()) {
        s.execute(QStringLiteral("CREATE %1INDEX IF NOT EXISTS %2 ON %3 (%4)%5")
                      .arg(ix.unique ? QStringLiteral("UNIQUE ") : QString(), ix.name, ix.table, ix.columns,
                           ix.where.isEmpty() ? QString() : QStringLiteral(" WHERE ") + ix.where));
    }
    // Indexes no query uses any more; a year made before they were retired
    // still carries them and pays for them on every write.
    for (const char *retired : {"ixPartyBalanceDate"})
        s.execute(QStringLiteral("DROP INDEX IF EXISTS ") + QLatin1String(retired));
    EditLogSchema::createTriggers(s);
    // Views are rebuilt from their files every time: drop in reverse order,
    // create in order (a view may stand on an earlier one).
    const QVector<ViewFile> views = viewFiles(QStringLiteral("views"), pg);
    for (int i = views.size() - 1; i >= 0; --i)
        s.execute(QStringLiteral("DROP VIEW IF EXISTS ") + views.at(i).name + (pg ? QStringLiteral(" CASCADE") : QString()));
    for (const ViewFile &v : views)
        s.execute(v.sql);

    // A year from before this schema gets its kept balances from its rows.
    const bool stamped = s.scalar(QStringLiteral("SELECT COUNT(*) FROM tblConfig")).toLongLong() > 0;
    const bool older = !stamped || compareStamp(storedStamp(s)) == VersionCheck::Older;
    if (older)
        rebuildKeptBalances(s);
    if (!stamped)
        s.execute(QStringLiteral("INSERT INTO tblConfig (UpdateStatus) VALUES (?)"), {QString::fromLatin1(kStamp)});
    else if (older)
        s.execute(QStringLiteral("UPDATE tblConfig SET UpdateStatus = ?"), {QString::fromLatin1(kStamp)});
    tx.commit();
    if (older)
        refreshStatistics(s);
}

void createSessionObjects(SessionConnection &s)
{
    const bool pg = s.isPostgres();
    for (const Table &t : stagingTables()) {
        if (pg)
            s.execute(QStringLiteral("DROP TABLE IF EXISTS pg_temp.") + t.name);
        else
            s.execute(QStringLiteral("DROP TABLE IF EXISTS temp.") + t.name);
        s.execute(createTableSql(t, pg, true));
    }
    for (const ViewFile &v : viewFiles(QStringLiteral("session"), pg))
        s.execute(v.sql);
}

} // namespace Schema
