#include "vouchers/VoucherLookups.h"

#include "vouchers/VoucherStaging.h"

namespace VoucherLookups {

QueryResult accountList(SessionConnection &db)
{
    return db.select(QStringLiteral("SELECT PartyName, PartyCode FROM tblPartyInfo WHERE PartyCode NOT LIKE '__-__-000%' "
                                    "AND PartyCode <> ? ORDER BY PartyName"),
                     {Ledger::kCashCode});
}

QueryResult openCheques(SessionConnection &db)
{
    return db.select(QStringLiteral("SELECT Description, VoucherNo FROM tblPostDatedCheque WHERE Status = 'POST DATED' "
                                    "ORDER BY VoucherNo"));
}

std::optional<qint64> openChequeNo(SessionConnection &db, const QString &description)
{
    auto r = db.selectOne(QStringLiteral("SELECT VoucherNo FROM tblPostDatedCheque WHERE Description = ? "
                                         "AND Status = 'POST DATED'"),
                          {description});
    if (!r || r->isNull(0))
        return std::nullopt;
    return r->integer(0);
}

std::optional<QString> openChequeDescription(SessionConnection &db, qint64 voucherNo)
{
    auto r = db.selectOne(QStringLiteral("SELECT Description FROM tblPostDatedCheque WHERE VoucherNo = ? "
                                         "AND Status = 'POST DATED'"),
                          {voucherNo});
    if (!r)
        return std::nullopt;
    return r->text(0);
}

QStringList ledgerVoucherTypes(SessionConnection &db)
{
    QStringList out;
    for (const Row &r : db.select(QStringLiteral("SELECT DISTINCT VoucherType FROM tblPartyBalance ORDER BY VoucherType")))
        out << r.text(0).trimmed();
    return out;
}

QueryResult gridRows(SessionConnection &db)
{
    QueryResult out;
    out.columns = QStringList{QStringLiteral("SrNo"),      QStringLiteral("VoucherType"), QStringLiteral("VDate"),
                              QStringLiteral("VoucherNo"), QStringLiteral("PartyDesc"),   QStringLiteral("PartyName"),
                              QStringLiteral("PartyDR"),   QStringLiteral("PartyCR")};
    auto index = std::make_shared<QHash<QString, int>>();
    for (int i = 0; i < out.columns.size(); ++i)
        index->insert(out.columns.at(i).toLower(), i);
    const QueryResult rows = db.select(QStringLiteral(
        "SELECT SrNo, VoucherType, VDate, VoucherNo, PartyDesc, PartyName, PartyDR, PartyCR FROM tblPartyBalanceEmpty "
        "WHERE DBCR IN ('INSERT','UPDATE') ORDER BY SrNo"));
    for (const Row &r : rows) {
        QVector<QVariant> v;
        v << r.integer(0) << r.text(1).trimmed() << (r.date(2).isValid() ? QVariant(r.date(2)) : QVariant())
          << r.integer(3) << r.text(4) << r.text(5).trimmed() << r.moneyOrZero("PartyDR").toPlainString()
          << r.moneyOrZero("PartyCR").toPlainString();
        out.rows.append(Row(index, v));
    }
    return out;
}

} // namespace VoucherLookups
