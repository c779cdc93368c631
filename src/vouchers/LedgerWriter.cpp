#include "vouchers/LedgerWriter.h"

#include "foundation/Schema.h"
#include "foundation/SessionConnection.h"

#include <QStringList>

namespace {

const QString kInsertHead = QStringLiteral(
    "INSERT INTO tblPartyBalance (RecordNo, VoucherType, VoucherNo, VDate, InvoiceNo, PartyCode, PartyName, "
    "PartyDR, PartyCR, PartyBalance, PartyDesc, CareOf, UserName, EntryDate) VALUES ");
const QString kRowPlaces = QStringLiteral("(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");

QVariant nullableText(const QString &s)
{
    return s.isNull() ? QVariant(QMetaType::fromType<QString>()) : QVariant(s);
}

void appendParams(QVariantList &p, const LedgerRow &r, const QString &user, const QDate &entryDate)
{
    p << (r.recordNo ? QVariant(*r.recordNo) : QVariant(QMetaType::fromType<qlonglong>()))
      << r.voucherType << r.voucherNo << r.vDate << nullableText(r.invoiceNo) << r.partyCode << r.partyName
      << r.partyDR.toVariant() << r.partyCR.toVariant() << r.partyBalance().toVariant() << nullableText(r.partyDesc)
      << nullableText(r.careOf) << user << entryDate;
}

} // namespace

LedgerRow LedgerRow::debit(const VoucherKey &key, const QString &code, const QString &name, Money amount,
                           const QString &desc, const QString &invoiceNo)
{
    LedgerRow r;
    r.voucherType = key.type;
    r.voucherNo = key.number;
    r.vDate = key.date;
    r.partyCode = code;
    r.partyName = name;
    r.partyDR = amount;
    r.partyDesc = desc;
    r.invoiceNo = invoiceNo;
    return r;
}

LedgerRow LedgerRow::credit(const VoucherKey &key, const QString &code, const QString &name, Money amount,
                            const QString &desc, const QString &invoiceNo)
{
    LedgerRow r = debit(key, code, name, Money(), desc, invoiceNo);
    r.partyCR = amount;
    return r;
}

LedgerWriter::LedgerWriter(SessionConnection &db, const QString &userName, const QDate &entryDate)
    : m_db(db), m_user(userName), m_entryDate(entryDate)
{
}

qint64 LedgerWriter::insert(const LedgerRow &row)
{
    QVariantList p;
    appendParams(p, row, m_user, m_entryDate);
    const qint64 srNo = m_db.insertReturningKey(kInsertHead + kRowPlaces, p);
    keepRow(row, 1);
    applyKept();
    return srNo;
}

namespace {

// One element of a PostgreSQL array literal: quoted, with its quotes and
// backslashes escaped, or NULL. The literal travels as a bound value.
void appendElement(QString &out, const QString &value, bool isNull)
{
    if (out.size() > 1)
        out += QLatin1Char(',');
    if (isNull) {
        out += QLatin1String("NULL");
        return;
    }
    out += QLatin1Char('"');
    for (const QChar c : value) {
        if (c == QLatin1Char('"') || c == QLatin1Char('\\'))
            out += QLatin1Char('\\');
        out += c;
    }
    out += QLatin1Char('"');
}

} // namespace

// On a server, a large batch goes as one array a column: a few bound
// values a statement instead of fourteen a row.
void LedgerWriter::insertArrays(const QVector<LedgerRow> &rows, int start, int n)
{
    QVector<QString> cols(14, QStringLiteral("{"));
    const QString user = m_user;
    const QString entry = m_entryDate.toString(Qt::ISODate);
    for (int i = start; i < start + n; ++i) {
        const LedgerRow &r = rows.at(i);
        appendElement(cols[0], r.recordNo ? QString::number(*r.recordNo) : QString(), !r.recordNo);
        appendElement(cols[1], r.voucherType, false);
        appendElement(cols[2], QString::number(r.voucherNo), false);
        appendElement(cols[3], r.vDate.toString(Qt::ISODate), !r.vDate.isValid());
        appendElement(cols[4], r.invoiceNo, r.invoiceNo.isNull());
        appendElement(cols[5], r.partyCode, false);
        appendElement(cols[6], r.partyName, false);
        appendElement(cols[7], r.partyDR.toPlainString(), false);
        appendElement(cols[8], r.partyCR.toPlainString(), false);
        appendElement(cols[9], r.partyBalance().toPlainString(), false);
        appendElement(cols[10], r.partyDesc, r.partyDesc.isNull());
        appendElement(cols[11], r.careOf, r.careOf.isNull());
        appendElement(cols[12], user, user.isNull());
        appendElement(cols[13], entry, !m_entryDate.isValid());
    }
    QVariantList p;
    for (QString &c : cols) {
        c += QLatin1Char('}');
        p << c;
    }
    m_db.execute(QStringLiteral(
                     "INSERT INTO tblPartyBalance (RecordNo, VoucherType, VoucherNo, VDate, InvoiceNo, PartyCode, "
                     "PartyName, PartyDR, PartyCR, PartyBalance, PartyDesc, CareOf, UserName, EntryDate) "
                     "SELECT a, b, c, d, e, f, g, h, i, j, k, l, m, n FROM unnest(CAST(? AS BIGINT[]), CAST(? AS TEXT[]), CAST(? AS BIGINT[]), "
                     "CAST(? AS DATE[]), CAST(? AS TEXT[]), CAST(? AS TEXT[]), CAST(? AS TEXT[]), "
                     "CAST(? AS NUMERIC[]), CAST(? AS NUMERIC[]), CAST(? AS NUMERIC[]), CAST(? AS TEXT[]), "
                     "CAST(? AS TEXT[]), CAST(? AS TEXT[]), CAST(? AS DATE[])) WITH ORDINALITY "
                     "AS u(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o) ORDER BY o"),
                 p);
}

void LedgerWriter::insertMany(const QVector<LedgerRow> &rows)
{
    for (const LedgerRow &r : rows)
        keepRow(r, 1);
    if (m_db.isPostgres() && rows.size() >= kArrayThreshold) {
        for (int start = 0; start < rows.size(); start += kArrayChunk)
            insertArrays(rows, start, qMin(kArrayChunk, int(rows.size()) - start));
        applyKept();
        return;
    }
    const int chunk = rowsPerStatement();
    QString fullSql;
    for (int start = 0; start < rows.size(); start += chunk) {
        const int n = qMin(chunk, int(rows.size()) - start);
        QString sql;
        if (n == chunk && !fullSql.isEmpty()) {
            sql = fullSql;
        } else {
            QStringList places;
            places.reserve(n);
            for (int i = 0; i < n; ++i)
                places << kRowPlaces;
            sql = kInsertHead + places.join(QStringLiteral(", "));
            if (n == chunk)
                fullSql = sql;
        }
        QVariantList p;
        p.reserve(n * 14);
        for (int i = 0; i < n; ++i)
            appendParams(p, rows.at(start + i), m_user, m_entryDate);
        m_db.execute(sql, p);
    }
    applyKept();
}

namespace {

const QString kAmountColumns = QStringLiteral("PartyCode, VDate, PartyDR, PartyCR, PartyBalance");

} // namespace

bool LedgerWriter::update(qint64 srNo, const VoucherKey &guard, const LedgerRow &r)
{
    // The row as it stands, locked until the transaction ends, so that the
    // amounts taken off the kept balances are the ones being replaced.
    const QString lock = m_db.isPostgres() ? QStringLiteral(" FOR UPDATE") : QString();
    const std::optional<Row> old = m_db.selectOne(
        QStringLiteral("SELECT ") + kAmountColumns
            + QStringLiteral(" FROM tblPartyBalance WHERE SrNo = ? AND VoucherType = ? AND VoucherNo = ? AND VDate = ?")
            + lock,
        {srNo, guard.type, guard.number, guard.date});
    if (!old)
        return false;
    const bool done = m_db.execute(QStringLiteral("UPDATE tblPartyBalance SET InvoiceNo = ?, PartyCode = ?, PartyName = ?, "
                                                  "VoucherType = ?, VoucherNo = ?, VDate = ?, PartyDR = ?, PartyCR = ?, "
                                                  "PartyBalance = ?, PartyDesc = ?, UserName = ?, EntryDate = ? "
                                                  "WHERE SrNo = ?"),
                                   {nullableText(r.invoiceNo), r.partyCode, r.partyName, r.voucherType, r.voucherNo,
                                    r.vDate, r.partyDR.toVariant(), r.partyCR.toVariant(), r.partyBalance().toVariant(),
                                    nullableText(r.partyDesc), m_user, m_entryDate, srNo})
        > 0;
    if (!done)
        return false;
    keep(old->text(0), old->date(1), old->moneyOrZero(QStringLiteral("PartyDR")),
         old->moneyOrZero(QStringLiteral("PartyCR")), old->moneyOrZero(QStringLiteral("PartyBalance")), -1);
    keepRow(r, 1);
    applyKept();
    return true;
}

int LedgerWriter::removeReturning(const QString &deleteSql, const QVariantList &params)
{
    const QueryResult gone = m_db.select(deleteSql + QStringLiteral(" RETURNING ") + kAmountColumns, params);
    for (const Row &old : gone)
        keep(old.text(0), old.date(1), old.moneyOrZero(QStringLiteral("PartyDR")),
             old.moneyOrZero(QStringLiteral("PartyCR")), old.moneyOrZero(QStringLiteral("PartyBalance")), -1);
    applyKept();
    return gone.size();
}

bool LedgerWriter::remove(qint64 srNo, const VoucherKey &guard)
{
    return removeReturning(QStringLiteral("DELETE FROM tblPartyBalance WHERE SrNo = ? AND VoucherType = ? "
                                          "AND VoucherNo = ? AND VDate = ?"),
                           {srNo, guard.type, guard.number, guard.date})
        > 0;
}

int LedgerWriter::removeAccountRows(const VoucherKey &voucher, const QString &partyCode)
{
    return removeReturning(QStringLiteral("DELETE FROM tblPartyBalance WHERE VoucherType = ? AND VoucherNo = ? "
                                          "AND VDate = ? AND PartyCode = ?"),
                           {voucher.type, voucher.number, voucher.date, partyCode});
}

int LedgerWriter::removeZeroRows()
{
    return removeReturning(QStringLiteral("DELETE FROM tblPartyBalance WHERE PartyDR = 0 AND PartyCR = 0 "
                                          "AND PartyBalance = 0 AND VoucherType <> 'JV'"),
                           {});
}

int LedgerWriter::removeWhere(const QString &where, const QVariantList &params, bool mostOfTheLedger)
{
    // On a server the ledger is held against other writers between the
    // sums and the removal, so that both see the same rows; the embedded
    // store's write lock does the same.
    if (m_db.isPostgres())
        m_db.execute(QStringLiteral("LOCK TABLE tblPartyBalance IN SHARE ROW EXCLUSIVE MODE"));
    const QueryResult sums = m_db.select(
        QStringLiteral("SELECT RTRIM(PartyCode), COALESCE(Year(VDate) * 100 + Month(VDate), 0), "
                       "COALESCE(SUM(CAST(ROUND(PartyDR * 100) AS BIGINT)), 0), "
                       "COALESCE(SUM(CAST(ROUND(PartyCR * 100) AS BIGINT)), 0), "
                       "COALESCE(SUM(CAST(ROUND(PartyBalance * 100) AS BIGINT)), 0), COUNT(*) "
                       "FROM tblPartyBalance WHERE PartyCode IS NOT NULL AND (")
            + where + QStringLiteral(") GROUP BY RTRIM(PartyCode), COALESCE(Year(VDate) * 100 + Month(VDate), 0)"),
        params);
    for (const Row &r : sums) {
        KeptDelta &d = m_pending[{r.text(0), int(r.integer(1))}];
        d.debitCents -= r.integer(2);
        d.creditCents -= r.integer(3);
        d.balanceCents -= r.integer(4);
        d.rows -= r.integer(5);
    }
    QVector<Schema::Index> dropped;
    if (mostOfTheLedger && m_db.isSQLite()) {
        for (const Schema::Index &ix : Schema::indexes()) {
            if (ix.table.compare(QLatin1String("tblPartyBalance"), Qt::CaseInsensitive) != 0)
                continue;
            m_db.execute(QStringLiteral("DROP INDEX IF EXISTS ") + ix.name);
            dropped.append(ix);
        }
    }
    const int removed = m_db.execute(QStringLiteral("DELETE FROM tblPartyBalance WHERE ") + where, params);
    for (const Schema::Index &ix : dropped)
        m_db.execute(Schema::createIndexSql(ix));
    applyKept();
    return removed;
}

void LedgerWriter::endBatch()
{
    if (m_batchDepth > 0)
        --m_batchDepth;
    applyKept();
}

void LedgerWriter::keep(const QString &code, const QDate &date, Money dr, Money cr, Money balance, int sign)
{
    QString key = code;
    while (key.endsWith(QLatin1Char(' ')))
        key.chop(1);
    const int month = date.isValid() ? date.year() * 100 + date.month() : 0;
    KeptDelta &d = m_pending[{key, month}];
    d.debitCents += sign * dr.cents();
    d.creditCents += sign * cr.cents();
    d.balanceCents += sign * balance.cents();
    d.rows += sign;
}

namespace {

// Adds the deltas to a kept table, a few hundred rows a statement, in the
// order given.
void upsertKept(SessionConnection &db, const QString &table, bool byMonth,
                const QVector<QPair<QPair<QString, int>, QVector<qint64>>> &rows)
{
    const int perRow = byMonth ? 6 : 5;
    const int chunk = 200;
    const QString cols = byMonth ? QStringLiteral("PartyCode, YearMonth, DebitCents, CreditCents, BalanceCents, RowCount")
                                 : QStringLiteral("PartyCode, DebitCents, CreditCents, BalanceCents, RowCount");
    const QString places = byMonth ? QStringLiteral("(?, ?, ?, ?, ?, ?)") : QStringLiteral("(?, ?, ?, ?, ?)");
    const QString conflict = byMonth ? QStringLiteral("PartyCode, YearMonth") : QStringLiteral("PartyCode");
    QString set;
    for (const char *c : {"DebitCents", "CreditCents", "BalanceCents", "RowCount"}) {
        if (!set.isEmpty())
            set += QStringLiteral(", ");
        set += QStringLiteral("%1 = %2.%1 + excluded.%1").arg(QLatin1String(c), table);
    }
    for (int start = 0; start < rows.size(); start += chunk) {
        const int n = qMin(chunk, int(rows.size()) - start);
        QStringList values;
        QVariantList p;
        p.reserve(n * perRow);
        for (int i = start; i < start + n; ++i) {
            const auto &r = rows.at(i);
            values << places;
            p << r.first.first;
            if (byMonth)
                p << r.first.second;
            for (qint64 v : r.second)
                p << v;
        }
        db.execute(QStringLiteral("INSERT INTO ") + table + QStringLiteral(" (") + cols + QStringLiteral(") VALUES ")
                       + values.join(QStringLiteral(", ")) + QStringLiteral(" ON CONFLICT (") + conflict
                       + QStringLiteral(") DO UPDATE SET ") + set,
                   p);
    }
}

} // namespace

void LedgerWriter::applyKept()
{
    if (m_batchDepth > 0 || m_pending.isEmpty())
        return;
    // Accounts first, then their months, each in code order: every writer
    // takes the kept rows it needs in the same order.
    QVector<QPair<QPair<QString, int>, QVector<qint64>>> months, accounts;
    for (auto it = m_pending.cbegin(); it != m_pending.cend(); ++it) {
        const KeptDelta &d = it.value();
        if (!d.debitCents && !d.creditCents && !d.balanceCents && !d.rows)
            continue;
        months.append({it.key(), {d.debitCents, d.creditCents, d.balanceCents, d.rows}});
        if (accounts.isEmpty() || accounts.last().first.first != it.key().first) {
            accounts.append({{it.key().first, 0}, {0, 0, 0, 0}});
        }
        QVector<qint64> &sum = accounts.last().second;
        sum[0] += d.debitCents;
        sum[1] += d.creditCents;
        sum[2] += d.balanceCents;
        sum[3] += d.rows;
    }
    m_pending.clear();
    upsertKept(m_db, QStringLiteral("tblAccountBalance"), false, accounts);
    upsertKept(m_db, QStringLiteral("tblAccountMonthBalance"), true, months);
}


int LedgerWriter::renameAccount(const QString &oldCode, const QString &newCode, const QString &newName)
{
    QString from = oldCode, to = newCode;
    while (from.endsWith(QLatin1Char(' ')))
        from.chop(1);
    while (to.endsWith(QLatin1Char(' ')))
        to.chop(1);
    if (from == to)
        return m_db.execute(QStringLiteral("UPDATE tblPartyBalance SET PartyName = ? WHERE PartyCode = ?"),
                            {newName, oldCode});

    // The old code's kept months go over to the new code (added to any the
    // new code has already) and the old code's kept rows go.
    const QueryResult months = m_db.select(
        QStringLiteral("SELECT YearMonth, DebitCents, CreditCents, BalanceCents, RowCount "
                       "FROM tblAccountMonthBalance WHERE PartyCode = ?"),
        {from});
    m_db.execute(QStringLiteral("DELETE FROM tblAccountMonthBalance WHERE PartyCode = ?"), {from});
    m_db.execute(QStringLiteral("DELETE FROM tblAccountBalance WHERE PartyCode = ?"), {from});
    for (const Row &m : months) {
        KeptDelta &d = m_pending[{to, int(m.integer(0))}];
        d.debitCents += m.integer(1);
        d.creditCents += m.integer(2);
        d.balanceCents += m.integer(3);
        d.rows += m.integer(4);
    }
    const int moved = m_db.execute(
        QStringLiteral("UPDATE tblPartyBalance SET PartyCode = ?, PartyName = ? WHERE PartyCode = ?"),
        {newCode, newName, oldCode});
    applyKept();
    return moved;
}
