#pragma once

#include "foundation/SessionConnection.h"

#include <QString>
#include <QStringList>
#include <optional>

// What the voucher screen reads besides its staging: the accounts a line
// may take, the open post-dated cheques, the types standing in the ledger.
namespace VoucherLookups {

// Every account that takes postings except cash, by name: PartyName,
// PartyCode.
QueryResult accountList(SessionConnection &db);

// Cheques still "POST DATED": Description, VoucherNo, by number.
QueryResult openCheques(SessionConnection &db);
std::optional<qint64> openChequeNo(SessionConnection &db, const QString &description);
std::optional<QString> openChequeDescription(SessionConnection &db, qint64 voucherNo);

// The voucher types that stand in the ledger, in order.
QStringList ledgerVoucherTypes(SessionConnection &db);

// The staged lines as the grid shows them: SrNo, VoucherType, VDate,
// VoucherNo, PartyDesc, PartyName, PartyDR, PartyCR (dates as dates,
// amounts as plain text with two decimals).
QueryResult gridRows(SessionConnection &db);

} // namespace VoucherLookups
