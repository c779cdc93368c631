#include "vouchers/VoucherStaging.h"

#include "foundation/SessionConnection.h"

namespace {

const QString kColumns = QStringLiteral(
    "SrNo, VoucherType, VoucherNo, VDate, InvoiceNo, PartyCode, PartyName, PartyDR, PartyCR, PartyBalance, "
    "PartyDesc, DBCR, ChequeNo, ChequeDesc");

VoucherLine lineFromInput(const LineInput &in)
{
    VoucherLine l;
    l.invoiceNo = in.invoiceNo;
    l.partyCode = in.partyCode;
    l.partyName = in.partyName;
    l.description = in.description.trimmed();
    if (in.side == QLatin1String("CR"))
        l.credit = in.amount;
    else
        l.debit = in.amount;
    l.cheque = in.cheque;
    return l;
}

VoucherLine lineFromRow(const Row &r)
{
    VoucherLine l;
    l.srNo = r.integer("SrNo");
    l.state = lineStateFromWord(r.text("DBCR")).value_or(LineState::Insert);
    l.invoiceNo = r.text("InvoiceNo");
    l.partyCode = r.text("PartyCode").trimmed();
    l.partyName = r.text("PartyName").trimmed();
    l.description = r.text("PartyDesc");
    l.debit = r.moneyOrZero("PartyDR");
    l.credit = r.moneyOrZero("PartyCR");
    if (!r.isNull("ChequeNo") || !r.text("ChequeDesc").isEmpty())
        l.cheque = ChequeLink{r.integer("ChequeNo"), r.text("ChequeDesc")};
    return l;
}

QVariant chequeNo(const std::optional<ChequeLink> &c)
{
    return c ? QVariant(c->voucherNo) : QVariant(QMetaType::fromType<qlonglong>());
}
QVariant chequeDesc(const std::optional<ChequeLink> &c)
{
    return c ? QVariant(c->description) : QVariant(QMetaType::fromType<QString>());
}

} // namespace

void VoucherStaging::clear()
{
    m_db.execute(QStringLiteral("DELETE FROM tblPartyBalanceEmpty"));
}

void VoucherStaging::put(const VoucherKey &h, const VoucherLine &l)
{
    m_db.execute(QStringLiteral("INSERT INTO tblPartyBalanceEmpty (") + kColumns
                     + QStringLiteral(") VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
                 {l.srNo, h.type, h.number, h.date, l.invoiceNo, l.partyCode, l.partyName, l.debit.toVariant(),
                  l.credit.toVariant(), (l.debit - l.credit).toVariant(), l.description, lineStateWord(l.state),
                  chequeNo(l.cheque), chequeDesc(l.cheque)});
}

qint64 VoucherStaging::addLine(const VoucherKey &header, const LineInput &in, qint64 &lineSrNo)
{
    Transaction tx(m_db);
    const qint64 top = m_db.scalar(QStringLiteral("SELECT MAX(SrNo) FROM tblPartyBalanceEmpty")).toLongLong();
    VoucherLine l = lineFromInput(in);
    l.srNo = qMax(lineSrNo, top) + 1;
    l.state = LineState::Insert;
    put(header, l);
    restamp(header);
    tx.commit();
    lineSrNo = l.srNo;
    return l.srNo;
}

bool VoucherStaging::changeLine(qint64 srNo, const VoucherKey &header, const LineInput &in)
{
    Transaction tx(m_db);
    restamp(header);
    const VoucherLine l = lineFromInput(in);
    const int n = m_db.execute(
        QStringLiteral("UPDATE tblPartyBalanceEmpty SET InvoiceNo = ?, PartyCode = ?, PartyName = ?, PartyDR = ?, "
                       "PartyCR = ?, PartyBalance = ?, PartyDesc = ?, ChequeNo = ?, ChequeDesc = ?, "
                       "DBCR = CASE WHEN DBCR = 'INSERT' THEN 'INSERT' ELSE 'UPDATE' END WHERE SrNo = ?"),
        {l.invoiceNo, l.partyCode, l.partyName, l.debit.toVariant(), l.credit.toVariant(),
         (l.debit - l.credit).toVariant(), l.description, chequeNo(l.cheque), chequeDesc(l.cheque), srNo});
    tx.commit();
    return n > 0;
}

bool VoucherStaging::removeLine(qint64 srNo, const std::optional<ChequeLink> &giveBack)
{
    Transaction tx(m_db);
    int n = m_db.execute(QStringLiteral("DELETE FROM tblPartyBalanceEmpty WHERE SrNo = ? AND DBCR = 'INSERT'"),
                         {srNo});
    if (n == 0)
        n = m_db.execute(QStringLiteral("UPDATE tblPartyBalanceEmpty SET DBCR = 'DELETE', ChequeNo = ?, "
                                        "ChequeDesc = ? WHERE SrNo = ?"),
                         {chequeNo(giveBack), chequeDesc(giveBack), srNo});
    tx.commit();
    return n > 0;
}

void VoucherStaging::restamp(const VoucherKey &h)
{
    m_db.execute(QStringLiteral("UPDATE tblPartyBalanceEmpty SET VoucherType = ?, VoucherNo = ?, VDate = ?"),
                 {h.type, h.number, h.date});
}

std::optional<VoucherLine> VoucherStaging::line(qint64 srNo)
{
    auto r = m_db.selectOne(QStringLiteral("SELECT ") + kColumns
                                + QStringLiteral(" FROM tblPartyBalanceEmpty WHERE SrNo = ?"),
                            {srNo});
    if (!r)
        return std::nullopt;
    return lineFromRow(*r);
}

QVector<VoucherLine> VoucherStaging::lines(bool liveOnly)
{
    QVector<VoucherLine> out;
    const QString where = liveOnly ? QStringLiteral(" WHERE DBCR IN ('INSERT','UPDATE')") : QString();
    for (const Row &r : m_db.select(QStringLiteral("SELECT ") + kColumns + QStringLiteral(" FROM tblPartyBalanceEmpty")
                                    + where + QStringLiteral(" ORDER BY SrNo")))
        out << lineFromRow(r);
    return out;
}

VoucherTotals VoucherStaging::totals()
{
    VoucherTotals t;
    auto r = m_db.selectOne(QStringLiteral("SELECT SUM(PartyDR) AS Debit, SUM(PartyCR) AS Credit "
                                           "FROM tblPartyBalanceEmpty WHERE DBCR IN ('UPDATE','INSERT')"));
    if (r) {
        t.debit = r->money("Debit");
        t.credit = r->money("Credit");
    }
    return t;
}

bool VoucherStaging::isEmpty()
{
    return m_db.scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalanceEmpty")).toLongLong() == 0;
}

QVector<VoucherLine> VoucherStaging::postedLines(const VoucherKey &key)
{
    const QueryResult rows = m_db.select(
        QStringLiteral("SELECT SrNo, InvoiceNo, PartyCode, PartyName, PartyDR, PartyCR, PartyDesc FROM tblPartyBalance "
                       "WHERE PartyCode <> ? AND VoucherType = ? AND VoucherNo = ? AND VDate = ? ORDER BY SrNo"),
        {Ledger::kCashCode, key.type, key.number, key.date});
    QVector<VoucherLine> lines;
    for (const Row &r : rows) {
        VoucherLine l;
        l.srNo = r.integer("SrNo");
        l.state = LineState::Update;
        l.invoiceNo = r.text("InvoiceNo");
        l.partyCode = r.text("PartyCode").trimmed();
        l.partyName = r.text("PartyName").trimmed();
        l.description = r.text("PartyDesc");
        l.debit = r.moneyOrZero("PartyDR");
        l.credit = r.moneyOrZero("PartyCR");
        lines << l;
    }
    return lines;
}

int VoucherStaging::loadVoucher(const VoucherKey &key)
{
    Transaction tx(m_db);
    clear();
    const QVector<VoucherLine> lines = postedLines(key);
    for (const VoucherLine &l : lines)
        put(key, l);
    tx.commit();
    return lines.size();
}
