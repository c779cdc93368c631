#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

class SessionConnection;

// The edit log's place in the schema: which tables the database itself
// logs, and the triggers that do it. Every insert, change and delete of a
// listed table writes one row of tblEditLog in the same statement, with
// the session's user and workstation (SessionConnection::setActor), the
// document the row belongs to and its values before and after. The log
// itself refuses every change and delete, on both engines.
namespace EditLogSchema {

// One logged table. The document expressions are SQL over the row, with
// "{r}" standing for the row (NEW or OLD); an empty one logs NULL.
struct LoggedTable
{
    QString table;
    QString what;       // the kind of row, as the log shows it ("LEDGER ROW")
    QString docType;    // the document's type ("{r}.VoucherType", "'ACCOUNT'")
    QString docNo;      // its number
    QString docDate;    // its date
    QString docTitle;   // its title (the letterhead a document is under)
    QString rowKey;     // what tells this row from the others of the document
    QStringList quiet;  // columns whose changes alone are not logged (stamps)
    QStringList secret; // columns whose values are never copied: the log says
                        // only that they were set or changed
};

// Every logged table, one line each.
const QVector<LoggedTable> &loggedTables();

// Drops and makes again the log's triggers (an upgrade may have added
// columns to a logged table). Run by Schema::ensure inside its transaction.
void createTriggers(SessionConnection &db);
// Drops the row triggers of the logged tables (the log's own refusals
// stay). A step that drops or renames a column of a logged table does this
// first (the embedded store refuses to drop a column a trigger names);
// Schema::ensure makes them again.
void dropTriggers(SessionConnection &db);

// The database's clock as the log writes it: "yyyy-mm-dd hh:mm:ss", and
// the date alone.
QString nowSql(bool postgres);
QString todaySql(bool postgres);

// The words the database gives when a log row is to be changed or deleted.
inline constexpr const char *kRefusal = "The edit log is kept as it was written: its rows cannot be changed or deleted.";

} // namespace EditLogSchema
