#include "sales/InvoiceSources.h"

#include "sales/InvoiceArithmetic.h"

namespace InvoiceSources {

QStringList partyOrders(SessionConnection &db, const QString &partyCode)
{
    QStringList out;
    for (const Row &r : db.select(QStringLiteral("SELECT DISTINCT PartyPONo FROM tblPurchaseOrder WHERE PartyCode = ? "
                                                 "AND PartyPONo IS NOT NULL ORDER BY PartyPONo"),
             {partyCode}))
        out << r.text(0);
    return out;
}

QStringList challanNumbers(SessionConnection &db, const QString &title, const QString &partyCode, const QString &poNo)
{
    QStringList out;
    for (const Row &r : db.select(QStringLiteral("SELECT DISTINCT DeliveryChallanNo FROM tblDeliveryChallan "
                                                 "WHERE TitleName = ? AND PartyCode = ? AND PONo = ? "
                                                 "ORDER BY DeliveryChallanNo"),
             {title, partyCode, poNo}))
        out << QString::number(r.integer(0));
    return out;
}

QVector<ChallanLine> challanLines(SessionConnection &db, const QString &title, const QString &partyCode,
                                  const QString &poNo, qint64 challanNo)
{
    // Challans are numbered per title: the title is part of the challan.
    QString sql = QStringLiteral("SELECT SrNo, DeliveryChallanNo, PONo, Description, DemandNo, Quantity, Type, "
                                 "GateEntryNo FROM tblDeliveryChallan WHERE TitleName = ? AND PartyCode = ? "
                                 "AND DeliveryChallanNo = ?");
    QVariantList params{title, partyCode, challanNo};
    if (!poNo.isEmpty()) {
        sql += QStringLiteral(" AND PONo = ?");
        params << poNo;
    }
    sql += QStringLiteral(" ORDER BY SrNo");
    QVector<ChallanLine> out;
    for (const Row &r : db.select(sql, params))
        out << ChallanLine{r.integer(0), r.integer(1), r.text(2), r.text(3), r.text(4),
            InvoiceArithmetic::decimalText(r.value(5)), r.text(6), r.text(7)};
    return out;
}

std::optional<QString> orderPrice(
    SessionConnection &db, const QString &partyCode, const QString &partyPONo, const QString &description)
{
    const auto r = db.selectOne(QStringLiteral("SELECT UnitPrice FROM tblPurchaseOrder WHERE PartyCode = ? "
                                               "AND PartyPONo = ? AND Description = ? ORDER BY SrNo"),
        {partyCode, partyPONo, description});
    if (!r)
        return std::nullopt;
    return InvoiceArithmetic::decimalText(r->value(0));
}

} // namespace InvoiceSources
