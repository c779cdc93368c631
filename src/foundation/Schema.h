#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

class SessionConnection;

// The database schema of an account year, the one source of truth for both
// engines: tables and columns here, views and session objects as SQL files
// under resources/schema/ (compiled in). Creating a year and upgrading an
// older one both run ensure(), which adds what is missing and rebuilds the
// views, so a later release only adds columns, tables or view files here.
namespace Schema {

// The stamp of the schema this program writes and understands. A database
// stamped later was made by a newer program and is refused (see Version).
inline constexpr const char *kStamp = "20261201";

enum class Type {
    Text,      // free text
    Key,       // text compared without trailing blanks (codes, names)
    Integer,   // whole number
    Money,     // exact to the cent
    Number,    // quantity, rate: exact decimal
    Date,      // a real date
    Identity,  // key assigned by the database
};

struct Column
{
    QString name;
    Type type;
    QString defaultValue; // SQL literal, as written in DDL; empty for none
};

struct Table
{
    QString name;
    QVector<Column> columns;
};

struct Index
{
    QString name;
    QString table;
    QString columns; // comma separated
    bool unique = false;
    QString where;   // a partial index: the rows it holds; empty for all
};

const QVector<Table> &tables();          // permanent tables
const QVector<Table> &stagingTables();   // private to each session
const QVector<Index> &indexes();
const Table *findTable(const QString &name);
// The statement that makes an index, as ensure() makes it.
QString createIndexSql(const Index &index);

// Column type as written in this engine's DDL.
QString columnSql(const Column &c, bool postgres, bool staging);
QString createTableSql(const Table &t, bool postgres, bool temporary);

// Creates or upgrades the whole schema in one transaction and stamps
// tblConfig.UpdateStatus with kStamp when the stored stamp is older; an
// older year gets its kept balances rebuilt and its statistics refreshed.
void ensure(SessionConnection &session);
// Each account's ledger figures a month, from the rows: PartyCode (without
// trailing blanks), YearMonth (0 for rows without a date), DebitCents,
// CreditCents, BalanceCents, Rows. What the kept balances must equal.
QString ledgerMonthTotalsSql();
// Makes the kept balances (tblAccountBalance, tblAccountMonthBalance) anew
// from the ledger rows, in one transaction.
void rebuildKeptBalances(SessionConnection &session);
// Brings the planner's statistics up to date: after a bulk load, an
// upgrade, an end of year. ensureStatistics() makes them only when the
// year has none.
void refreshStatistics(SessionConnection &session);
bool hasStatistics(SessionConnection &session);
void ensureStatistics(SessionConnection &session);
// The session's private staging tables and the views over them.
void createSessionObjects(SessionConnection &session);

// The stamp stored in tblConfig, "0" when there is no row.
QString storedStamp(SessionConnection &session);

// Version gate: the stamps are compared as text, as they always were.
enum class VersionCheck { Current, Older, Newer };
VersionCheck compareStamp(const QString &stored, const QString &client = QString::fromLatin1(kStamp));

// View definitions from the compiled-in resources, in file-name order.
struct ViewFile
{
    QString name;
    QString sql;
};
QVector<ViewFile> viewFiles(const QString &folder, bool postgres);

} // namespace Schema
