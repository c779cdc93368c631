#include "sales/JobPaper.h"

#include "foundation/Lookups.h"
#include "foundation/SessionConnection.h"
#include "vouchers/Ledger.h"

#include <QRegularExpression>

namespace JobPaper {

void lockNumbering(SessionConnection &db, const QString &table)
{
    // The voucher series lock, keyed by the table's name: no voucher type
    // is spelt like a table.
    Ledger::lockVoucherSeries(db, table);
}

qint64 nextNumber(SessionConnection &db, const QString &table, const QString &column,
                  const std::optional<QString> &title)
{
    // Table and column names come from this program's own constants only.
    const QString sql = QStringLiteral("SELECT MAX(%1) FROM %2").arg(column, table);
    const QVariant v = title ? db.scalar(sql + QStringLiteral(" WHERE TitleName = ?"), {text(*title)})
                             : db.scalar(sql);
    return (v.isNull() ? 0 : v.toLongLong()) + 1;
}

bool numberTaken(SessionConnection &db, const QString &table, const QString &column, qint64 number,
                 const std::optional<QString> &title)
{
    QString sql = QStringLiteral("SELECT 1 FROM %1 WHERE %2 = ?").arg(table, column);
    QVariantList params{number};
    if (title) {
        sql += QStringLiteral(" AND TitleName = ?");
        params << text(*title);
    }
    return db.selectOne(sql + QStringLiteral(" LIMIT 1"), params).has_value();
}

bool isDocumentParty(SessionConnection &db, const QString &partyCode)
{
    const QString code = partyCode.trimmed();
    if (code.isEmpty() || code.endsWith(QStringLiteral("-000")) || code == Ledger::kCashCode)
        return false;
    return Lookups::accountExists(db, code);
}

std::optional<Money> parseFigure(const QString &t)
{
    static const QRegularExpression figure(QStringLiteral("^\\d*(\\.\\d*)?$"));
    const QString s = t.trimmed();
    if (s.isEmpty() || s == QStringLiteral(".") || !figure.match(s).hasMatch())
        return std::nullopt;
    return Money::parse(s);
}

QString figureText(const std::optional<Money> &value)
{
    return value ? value->toFieldString() : QString();
}

QString numberMoved(const QString &what, qint64 from, qint64 to)
{
    return QStringLiteral("%1 # %2 was taken on another workstation meanwhile, so it has been saved as %1 # %3.")
        .arg(what)
        .arg(from)
        .arg(to);
}

} // namespace JobPaper
