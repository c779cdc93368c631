#pragma once

#include "foundation/SessionConnection.h"

#include <QString>
#include <QStringList>
#include <QVector>
#include <optional>

// What an invoice takes from the job's earlier paperwork: the customer's
// orders and the delivery challans made against them. Read only.
namespace InvoiceSources {

struct ChallanLine
{
    qint64 srNo = 0;
    qint64 challanNo = 0;
    QString poNo;
    QString description;
    QString demandNo;
    QString quantity; // as a decimal text
    QString type;
    QString gateEntryNo;
};

// The customer's own order numbers (of purchase orders), each once.
QStringList partyOrders(SessionConnection &db, const QString &partyCode);
// The challan numbers of a title made for a customer against one of its
// orders.
QStringList challanNumbers(SessionConnection &db, const QString &title, const QString &partyCode, const QString &poNo);
// The lines of a title's challan, in the order they were typed. An empty
// `poNo` reads the challan whatever order it went against.
QVector<ChallanLine> challanLines(SessionConnection &db, const QString &title, const QString &partyCode,
                                  const QString &poNo, qint64 challanNo);
// The unit price of an item on the customer's order, when it has one.
std::optional<QString> orderPrice(
    SessionConnection &db, const QString &partyCode, const QString &partyPONo, const QString &description);

} // namespace InvoiceSources
