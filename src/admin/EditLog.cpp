#include "admin/EditLog.h"
#include "foundation/EditLogSchema.h"
#include "foundation/SessionConnection.h"

#include <QStringList>
#include <algorithm>
#include <QVariantList>

namespace EditLog {

void logStep(SessionConnection &db, const QString &docType, std::optional<qint64> docNo, const QDate &docDate,
             const QString &title, const QString &what, const QString &before, const QString &after)
{
    const bool pg = db.isPostgres();
    db.execute(QStringLiteral("INSERT INTO tblEditLog (LoggedAt, LogDate, UserName, Workstation, Change, What, DocType, "
                              "DocNo, DocDate, DocTitle, ValuesBefore, ValuesAfter) VALUES (%1, %2, ?, ?, ?, ?, ?, ?, ?, "
                              "?, ?, ?)")
                   .arg(EditLogSchema::nowSql(pg), EditLogSchema::todaySql(pg)),
               {db.actorUser(), db.actorWorkstation(), stepChange(), what, docType,
                docNo ? QVariant(*docNo) : QVariant(QMetaType::fromType<qlonglong>()), docDate, title, before, after});
}

BulkScope::BulkScope(SessionConnection &db) : m_db(db)
{
    m_db.pauseRowLog();
}

BulkScope::~BulkScope()
{
    try {
        m_db.resumeRowLog();
    } catch (...) {
        // A transaction the server already failed: the pause ends with it.
    }
}

QVector<Entry> entries(SessionConnection &db, const Filter &f, int lastRows)
{
    QStringList where;
    QVariantList params;
    if (f.from.isValid()) {
        where << QStringLiteral("LogDate >= ?");
        params << f.from;
    }
    if (f.to.isValid()) {
        where << QStringLiteral("LogDate <= ?");
        params << f.to;
    }
    if (!f.userName.trimmed().isEmpty()) {
        where << QStringLiteral("UserName = ?");
        params << f.userName.trimmed();
    }
    if (!f.docType.trimmed().isEmpty() && !f.voucherType.trimmed().isEmpty()) {
        where << QStringLiteral("DocType IN (?, ?)");
        params << f.docType.trimmed() << f.voucherType.trimmed();
    } else if (!f.docType.trimmed().isEmpty()) {
        where << QStringLiteral("DocType = ?");
        params << f.docType.trimmed();
    }
    if (f.docNo) {
        where << QStringLiteral("DocNo = ?");
        params << *f.docNo;
    }
    if (!f.docTitle.trimmed().isEmpty()) {
        where << QStringLiteral("DocTitle = ?");
        params << f.docTitle.trimmed();
    }
    QString sql = QStringLiteral("SELECT LogNo, LoggedAt, LogDate, UserName, Workstation, Change, TableName, What, RowKey, "
                                 "DocType, DocNo, DocDate, DocTitle, ValuesBefore, ValuesAfter FROM tblEditLog");
    if (!where.isEmpty())
        sql += QStringLiteral(" WHERE ") + where.join(QStringLiteral(" AND "));
    if (lastRows > 0) {
        sql += QStringLiteral(" ORDER BY LogNo DESC LIMIT ?");
        params << qint64(lastRows);
    } else {
        sql += QStringLiteral(" ORDER BY LogNo");
    }
    QVector<Entry> out;
    for (const Row &r : db.select(sql, params)) {
        Entry e;
        e.logNo = r.integer(QStringLiteral("LogNo"));
        e.loggedAt = r.text(QStringLiteral("LoggedAt"));
        e.logDate = r.date(QStringLiteral("LogDate"));
        e.userName = r.text(QStringLiteral("UserName")).trimmed();
        e.workstation = r.text(QStringLiteral("Workstation")).trimmed();
        e.change = r.text(QStringLiteral("Change")).trimmed();
        e.tableName = r.text(QStringLiteral("TableName")).trimmed();
        e.what = r.text(QStringLiteral("What"));
        e.rowKey = r.text(QStringLiteral("RowKey")).trimmed();
        e.docType = r.text(QStringLiteral("DocType")).trimmed();
        if (!r.isNull(QStringLiteral("DocNo")))
            e.docNo = r.integer(QStringLiteral("DocNo"));
        e.docDate = r.date(QStringLiteral("DocDate"));
        e.docTitle = r.text(QStringLiteral("DocTitle")).trimmed();
        e.before = r.text(QStringLiteral("ValuesBefore"));
        e.after = r.text(QStringLiteral("ValuesAfter"));
        out << e;
    }
    if (lastRows > 0)
        std::reverse(out.begin(), out.end());
    return out;
}

} // namespace EditLog
