#include "vouchers/LedgerWriter.h"

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
    return m_db.insertReturningKey(kInsertHead + kRowPlaces, p);
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
    if (m_db.isPostgres() && rows.size() >= kArrayThreshold) {
        for (int start = 0; start < rows.size(); start += kArrayChunk)
            insertArrays(rows, start, qMin(kArrayChunk, int(rows.size()) - start));
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
}

bool LedgerWriter::update(qint64 srNo, const VoucherKey &guard, const LedgerRow &r)
{
    return m_db.execute(QStringLiteral("UPDATE tblPartyBalance SET InvoiceNo = ?, PartyCode = ?, PartyName = ?, "
                                       "VoucherType = ?, VoucherNo = ?, VDate = ?, PartyDR = ?, PartyCR = ?, "
                                       "PartyBalance = ?, PartyDesc = ?, UserName = ?, EntryDate = ? "
                                       "WHERE SrNo = ? AND VoucherType = ? AND VoucherNo = ? AND VDate = ?"),
                        {nullableText(r.invoiceNo), r.partyCode, r.partyName, r.voucherType, r.voucherNo, r.vDate,
                         r.partyDR.toVariant(), r.partyCR.toVariant(), r.partyBalance().toVariant(),
                         nullableText(r.partyDesc), m_user, m_entryDate, srNo, guard.type, guard.number, guard.date})
        > 0;
}

int LedgerWriter::removeAccountRows(const VoucherKey &key, const QString &partyCode)
{
    return m_db.execute(QStringLiteral("DELETE FROM tblPartyBalance WHERE VoucherType = ? AND VoucherNo = ? AND "
                                       "VDate = ? AND PartyCode = ?"),
                        {key.type, key.number, key.date, partyCode});
}

int LedgerWriter::removeZeroRows()
{
    return m_db.execute(QStringLiteral("DELETE FROM tblPartyBalance WHERE PartyDR = 0 AND PartyCR = 0 AND "
                                       "PartyBalance = 0 AND VoucherType <> 'JV'"));
}

bool LedgerWriter::remove(qint64 srNo, const VoucherKey &guard)
{
    return m_db.execute(QStringLiteral("DELETE FROM tblPartyBalance WHERE SrNo = ? AND VoucherType = ? "
                                       "AND VoucherNo = ? AND VDate = ?"),
                        {srNo, guard.type, guard.number, guard.date})
        > 0;
}
