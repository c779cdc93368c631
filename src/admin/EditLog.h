#pragma once

#include <QDate>
#include <QString>
#include <QVector>
#include <optional>

class SessionConnection;

// The edit log (tblEditLog): who changed what, when, on which document,
// and the values before and after. The database writes a row for every
// insert, change and delete of the logged tables itself (its triggers, see
// foundation/EditLogSchema.h), in the same transaction as the change, with
// the user and workstation the connection was given
// (SessionConnection::setActor). Nothing changes or deletes a log row: the
// database refuses it.
namespace EditLog {

// The log's words for a command's step that is not one row.
inline QString stepChange() { return QStringLiteral("STEP"); }

// Logs one step of a command that is not a row of a logged table (a step
// of the end of the year, a bulk cut made under a BulkScope), inside the
// caller's transaction, so that it lands or goes with the work. `what`
// names the step; `before` and `after` say what it changed, in words.
void logStep(SessionConnection &db, const QString &docType, std::optional<qint64> docNo, const QDate &docDate,
             const QString &title, const QString &what, const QString &before, const QString &after);

// While one lives, the triggers log no row of this connection (other
// workstations go on being logged). For mass work that logs itself as one
// step instead: open it inside the transaction of the work, log the step
// with logStep, and let it end before the commit or with it.
class BulkScope
{
public:
    explicit BulkScope(SessionConnection &db);
    ~BulkScope();
    BulkScope(const BulkScope &) = delete;
    BulkScope &operator=(const BulkScope &) = delete;

private:
    SessionConnection &m_db;
};

// One row of the log as read back.
struct Entry
{
    qint64 logNo = 0;
    QString loggedAt;     // "yyyy-mm-dd hh:mm:ss", the database's clock
    QDate logDate;
    QString userName;
    QString workstation;
    QString change;       // "INSERT", "UPDATE", "DELETE" or "STEP"
    QString tableName;    // empty for a step
    QString what;         // the kind of row ("LEDGER ROW") or the step's name
    QString rowKey;
    QString docType;
    std::optional<qint64> docNo;
    QDate docDate;
    QString docTitle;
    QString before;       // "Column=value; ..." (a change: the columns it moved)
    QString after;
};

// What to read: every field left empty takes everything.
struct Filter
{
    QDate from;           // the day logged
    QDate to;
    QString userName;
    QString docType;
    std::optional<qint64> docNo;
    QString docTitle;
    // With docType: the type of the document's own voucher in the ledger,
    // whose rows of the same number and title are part of its history
    // (an invoice's SV voucher).
    QString voucherType;
};

// The rows of the log the filter takes, in the order they were written;
// with `lastRows` > 0 only the newest that many of them.
QVector<Entry> entries(SessionConnection &db, const Filter &filter, int lastRows = 0);

} // namespace EditLog
