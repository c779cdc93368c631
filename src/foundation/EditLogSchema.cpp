#include "foundation/EditLogSchema.h"
#include "foundation/Schema.h"
#include "foundation/SessionConnection.h"

namespace EditLogSchema {

namespace {

LoggedTable voucherTable(const char *table, const char *what, const char *date, const char *rowKey)
{
    return {QString::fromLatin1(table), QString::fromLatin1(what), QStringLiteral("{r}.VoucherType"),
            QStringLiteral("{r}.VoucherNo"), QStringLiteral("{r}.") + QString::fromLatin1(date), QString(),
            QStringLiteral("{r}.") + QString::fromLatin1(rowKey), {}, {}};
}

LoggedTable keyedTable(const char *table, const char *what, const char *type, const char *key)
{
    return {QString::fromLatin1(table), QString::fromLatin1(what), QStringLiteral("'%1'").arg(QLatin1String(type)),
            QString(), QString(), QString(), QStringLiteral("{r}.") + QString::fromLatin1(key), {}, {}};
}

LoggedTable titledTable(const char *table, const char *what, const char *type, const char *no, const char *date)
{
    return {QString::fromLatin1(table), QString::fromLatin1(what), QStringLiteral("'%1'").arg(QLatin1String(type)),
            QStringLiteral("{r}.") + QString::fromLatin1(no), QStringLiteral("{r}.") + QString::fromLatin1(date),
            QStringLiteral("{r}.TitleName"), QStringLiteral("{r}.SrNo"), {}, {}};
}

const QString kLogColumns = QStringLiteral(
    "LoggedAt, LogDate, UserName, Workstation, Change, TableName, What, RowKey, DocType, DocNo, DocDate, "
    "DocTitle, ValuesBefore, ValuesAfter");

QString rowExpr(const QString &expr, const QString &row)
{
    if (expr.isEmpty())
        return QStringLiteral("NULL");
    QString e = expr;
    return e.replace(QLatin1String("{r}"), row);
}

// A column's value as the log shows it: money with its two places, dates
// as dd/mm/yyyy, quantities without trailing zeros. NULL stays NULL.
QString shown(const Schema::Column &c, const QString &row, bool pg)
{
    const QString v = row + QLatin1Char('.') + c.name;
    switch (c.type) {
    case Schema::Type::Money:
        return pg ? v + QStringLiteral("::text")
                  : QStringLiteral("CASE WHEN %1 IS NULL THEN NULL ELSE printf('%.2f', %1) END").arg(v);
    case Schema::Type::Date:
        return pg ? QStringLiteral("to_char(%1, 'DD/MM/YYYY')").arg(v) : QStringLiteral("strftime('%d/%m/%Y', %1)").arg(v);
    case Schema::Type::Number:
        return pg ? QStringLiteral("rtrim(rtrim(%1::text, '0'), '.')").arg(v)
                  : QStringLiteral("CASE WHEN %1 = CAST(%1 AS INTEGER) THEN CAST(CAST(%1 AS INTEGER) AS TEXT) "
                                   "ELSE CAST(%1 AS TEXT) END").arg(v);
    default:
        return pg ? v + QStringLiteral("::text") : QStringLiteral("CAST(%1 AS TEXT)").arg(v);
    }
}

bool isSecret(const LoggedTable &t, const Schema::Column &c)
{
    return t.secret.contains(c.name, Qt::CaseInsensitive);
}

bool isQuiet(const LoggedTable &t, const Schema::Column &c)
{
    return t.quiet.contains(c.name, Qt::CaseInsensitive);
}

QString distinct(const QString &name, bool pg)
{
    return pg ? QStringLiteral("OLD.%1 IS DISTINCT FROM NEW.%1").arg(name) : QStringLiteral("OLD.%1 IS NOT NEW.%1").arg(name);
}

// "Column=value; ..." of every column that has a value, blanks left out
// (a row written or deleted whole).
QString wholeRow(const LoggedTable &t, const Schema::Table &s, const QString &row, bool inserted, bool pg)
{
    QStringList parts;
    for (const Schema::Column &c : s.columns) {
        if (isSecret(t, c)) {
            parts << QStringLiteral("CASE WHEN %1.%2 IS NULL THEN '' ELSE '; %2=%3' END")
                         .arg(row, c.name, inserted ? QStringLiteral("(set)") : QStringLiteral("(not shown)"));
            continue;
        }
        parts << QStringLiteral("COALESCE('; %1=' || NULLIF(%2, ''), '')").arg(c.name, shown(c, row, pg));
    }
    return QStringLiteral("substr(%1, 3)").arg(parts.join(QStringLiteral(" || ")));
}

// The columns a change moved, with their values on one side.
QString changedColumns(const LoggedTable &t, const Schema::Table &s, const QString &row, bool pg)
{
    QStringList parts;
    for (const Schema::Column &c : s.columns) {
        const QString value = isSecret(t, c)
            ? (row == QLatin1String("OLD") ? QStringLiteral("'(not shown)'") : QStringLiteral("'(changed)'"))
            : QStringLiteral("COALESCE(%1, '')").arg(shown(c, row, pg));
        parts << QStringLiteral("CASE WHEN %1 THEN '; %2=' || %3 ELSE '' END").arg(distinct(c.name, pg), c.name, value);
    }
    return QStringLiteral("substr(%1, 3)").arg(parts.join(QStringLiteral(" || ")));
}

// Something besides the quiet stamps moved.
QString anyChange(const LoggedTable &t, const Schema::Table &s, bool pg)
{
    QStringList parts;
    for (const Schema::Column &c : s.columns)
        if (!isQuiet(t, c))
            parts << distinct(c.name, pg);
    return parts.join(QStringLiteral(" OR "));
}

QString insertSql(const LoggedTable &t, const Schema::Table &s, const char *change, bool pg)
{
    const QString row = QLatin1String(change) == QLatin1String("DELETE") ? QStringLiteral("OLD") : QStringLiteral("NEW");
    QString before = QStringLiteral("NULL");
    QString after = QStringLiteral("NULL");
    if (QLatin1String(change) == QLatin1String("INSERT")) {
        after = wholeRow(t, s, QStringLiteral("NEW"), true, pg);
    } else if (QLatin1String(change) == QLatin1String("DELETE")) {
        before = wholeRow(t, s, QStringLiteral("OLD"), false, pg);
    } else {
        before = changedColumns(t, s, QStringLiteral("OLD"), pg);
        after = changedColumns(t, s, QStringLiteral("NEW"), pg);
    }
    const QString user = pg ? QStringLiteral("COALESCE(current_setting('tessel.user', true), '')") : QStringLiteral("TesselLogUser()");
    const QString station = pg ? QStringLiteral("COALESCE(current_setting('tessel.workstation', true), '')")
                               : QStringLiteral("TesselLogWorkstation()");
    const QString key = t.rowKey.isEmpty() ? QStringLiteral("NULL")
                                           : QStringLiteral("CAST(%1 AS TEXT)").arg(rowExpr(t.rowKey, row));
    return QStringLiteral("INSERT INTO tblEditLog (%1) VALUES (%2, %3, %4, %5, '%6', '%7', '%8', %9, %10, %11, %12, "
                          "%13, %14, %15)")
        .arg(kLogColumns, nowSql(pg), todaySql(pg), user, station, QLatin1String(change), t.table, t.what, key)
        .arg(rowExpr(t.docType, row), rowExpr(t.docNo, row), rowExpr(t.docDate, row), rowExpr(t.docTitle, row),
             before, after);
}

QString functionName(const QString &table) { return QStringLiteral("EditLogRow_") + table; }

void createSQLiteTriggers(SessionConnection &db, const LoggedTable &t, const Schema::Table &s)
{
    for (const char *change : {"INSERT", "UPDATE", "DELETE"}) {
        const QString name = QStringLiteral("trEditLog_%1_%2").arg(t.table, QString::fromLatin1(change).toLower());
        db.execute(QStringLiteral("DROP TRIGGER IF EXISTS ") + name);
        QString when = QStringLiteral("TesselRowLog()");
        if (QLatin1String(change) == QLatin1String("UPDATE"))
            when += QStringLiteral(" AND (%1)").arg(anyChange(t, s, false));
        db.execute(QStringLiteral("CREATE TRIGGER %1 AFTER %2 ON %3 WHEN %4 BEGIN %5; END")
                       .arg(name, QLatin1String(change), t.table, when, insertSql(t, s, change, false)));
    }
}

void createPostgresTrigger(SessionConnection &db, const LoggedTable &t, const Schema::Table &s)
{
    const QString fn = functionName(t.table);
    const QString body = QStringLiteral(
        "CREATE OR REPLACE FUNCTION %1() RETURNS trigger LANGUAGE plpgsql AS $fn$\n"
        "BEGIN\n"
        "  IF COALESCE(current_setting('tessel.nolog', true), '') = '1' THEN RETURN NULL; END IF;\n"
        "  IF TG_OP = 'INSERT' THEN\n    %2;\n"
        "  ELSIF TG_OP = 'UPDATE' THEN\n"
        "    IF NOT (%3) THEN RETURN NULL; END IF;\n    %4;\n"
        "  ELSE\n    %5;\n  END IF;\n"
        "  RETURN NULL;\n"
        "END\n$fn$")
                             .arg(fn, insertSql(t, s, "INSERT", true), anyChange(t, s, true),
                                  insertSql(t, s, "UPDATE", true), insertSql(t, s, "DELETE", true));
    db.execute(body);
    const QString trigger = QStringLiteral("trEditLog_") + t.table;
    db.execute(QStringLiteral("DROP TRIGGER IF EXISTS %1 ON %2").arg(trigger, t.table));
    db.execute(QStringLiteral("CREATE TRIGGER %1 AFTER INSERT OR UPDATE OR DELETE ON %2 FOR EACH ROW EXECUTE FUNCTION %3()")
                   .arg(trigger, t.table, fn));
}

void createRefusals(SessionConnection &db)
{
    const QString words = QString::fromLatin1(kRefusal);
    if (db.isSQLite()) {
        for (const char *change : {"UPDATE", "DELETE"}) {
            const QString name = QStringLiteral("trEditLogKeep%1").arg(QLatin1String(change));
            db.execute(QStringLiteral("DROP TRIGGER IF EXISTS ") + name);
            db.execute(QStringLiteral("CREATE TRIGGER %1 BEFORE %2 ON tblEditLog BEGIN SELECT RAISE(ABORT, '%3'); END")
                           .arg(name, QLatin1String(change), words));
        }
        return;
    }
    db.execute(QStringLiteral("CREATE OR REPLACE FUNCTION EditLogKeep() RETURNS trigger LANGUAGE plpgsql AS $fn$ "
                              "BEGIN RAISE EXCEPTION '%1'; END $fn$")
                   .arg(words));
    db.execute(QStringLiteral("DROP TRIGGER IF EXISTS trEditLogKeep ON tblEditLog"));
    db.execute(QStringLiteral("CREATE TRIGGER trEditLogKeep BEFORE UPDATE OR DELETE ON tblEditLog FOR EACH ROW "
                              "EXECUTE FUNCTION EditLogKeep()"));
    db.execute(QStringLiteral("DROP TRIGGER IF EXISTS trEditLogKeepAll ON tblEditLog"));
    db.execute(QStringLiteral("CREATE TRIGGER trEditLogKeepAll BEFORE TRUNCATE ON tblEditLog FOR EACH STATEMENT "
                              "EXECUTE FUNCTION EditLogKeep()"));
}

} // namespace

const QVector<LoggedTable> &loggedTables()
{
    static const QVector<LoggedTable> all = [] {
        QVector<LoggedTable> t;
        LoggedTable ledger = voucherTable("tblPartyBalance", "LEDGER ROW", "VDate", "SrNo");
        ledger.docTitle = QStringLiteral("CASE WHEN {r}.VoucherType = 'SV' THEN {r}.CareOf END"); // an invoice's title
        t << ledger;
        t << keyedTable("tblPartyInfo", "ACCOUNT", "ACCOUNT", "PartyCode");
        t << titledTable("tblInvoice", "INVOICE LINE", "INVOICE", "InvoiceNo", "InvoiceDate");
        t << titledTable("tblPurchaseOrder", "ORDER LINE", "PURCHASE ORDER", "PONo", "VDate");
        t << titledTable("tblDeliveryChallan", "CHALLAN LINE", "DELIVERY CHALLAN", "DeliveryChallanNo", "VDate");
        t << LoggedTable{QStringLiteral("tblJobCard"), QStringLiteral("JOB CARD"), QStringLiteral("'JOB CARD'"),
                         QStringLiteral("{r}.JobCardNo"), QStringLiteral("{r}.VDate"), QString(),
                         QStringLiteral("{r}.JobCardNo"), {}, {}};
        t << voucherTable("tblPostDatedCheque", "CHEQUE", "VDate", "VoucherNo");
        t << voucherTable("tblOtherServices", "SERVICE", "ServiceDate", "VoucherNo");
        t << voucherTable("tblPurchaseStock", "PURCHASE LINE", "VDate", "RecordNo");
        t << LoggedTable{QStringLiteral("tblStock"), QStringLiteral("STOCK RECEIPT"), QStringLiteral("'STOCK'"),
                         QStringLiteral("{r}.SrNo"), QStringLiteral("{r}.VDate"), QStringLiteral("{r}.Item"),
                         QStringLiteral("{r}.SrNo"), {}, {}};
        t << LoggedTable{QStringLiteral("tblEmployeeStock"), QStringLiteral("EMPLOYEE STOCK"),
                         QStringLiteral("'EMPLOYEE STOCK'"), QStringLiteral("{r}.SrNo"), QStringLiteral("{r}.EntryDate"),
                         QStringLiteral("{r}.Item"), QStringLiteral("{r}.PartyCode"), {}, {}};
        t << voucherTable("tblEmployeeSalary", "SALARY LINE", "VDate", "EmployeeCode");
        t << keyedTable("tblEmployeeInfo", "EMPLOYEE", "EMPLOYEE", "EmployeeCode");
        t << keyedTable("tblItemCoding", "ITEM", "ITEM", "ItemCode");
        LoggedTable users = keyedTable("tblLogon", "USER", "USER", "UserName");
        users.quiet << QStringLiteral("LastLogOnAt");
        users.secret << QStringLiteral("Password");
        t << users;
        t << keyedTable("tblUserRights", "USER RIGHTS", "USER RIGHTS", "USERNAME");
        t << LoggedTable{QStringLiteral("tblClosingDate"), QStringLiteral("CLOSING DATE"), QStringLiteral("'CLOSING DATE'"),
                         QString(), QStringLiteral("{r}.ClosingDate"), QString(), QString(), {}, {}};
        return t;
    }();
    return all;
}

QString nowSql(bool postgres)
{
    return postgres ? QStringLiteral("to_char(clock_timestamp(), 'YYYY-MM-DD HH24:MI:SS')")
                    : QStringLiteral("strftime('%Y-%m-%d %H:%M:%S', 'now', 'localtime')");
}

QString todaySql(bool postgres)
{
    return postgres ? QStringLiteral("CAST(clock_timestamp() AS date)") : QStringLiteral("date('now', 'localtime')");
}

void dropTriggers(SessionConnection &db)
{
    for (const LoggedTable &t : loggedTables()) {
        if (db.isPostgres()) {
            db.execute(QStringLiteral("DROP TRIGGER IF EXISTS trEditLog_%1 ON %1").arg(t.table));
            continue;
        }
        for (const char *change : {"insert", "update", "delete"})
            db.execute(QStringLiteral("DROP TRIGGER IF EXISTS trEditLog_%1_%2").arg(t.table, QLatin1String(change)));
    }
}

void createTriggers(SessionConnection &db)
{
    for (const LoggedTable &t : loggedTables()) {
        const Schema::Table *s = Schema::findTable(t.table);
        if (!s)
            throw DbError(QStringLiteral("The edit log names the table %1, which the schema does not have.").arg(t.table));
        if (db.isPostgres())
            createPostgresTrigger(db, t, *s);
        else
            createSQLiteTriggers(db, t, *s);
    }
    createRefusals(db);
}

} // namespace EditLogSchema
