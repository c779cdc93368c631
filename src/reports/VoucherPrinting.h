#pragma once

#include "foundation/SessionConnection.h"
#include "reports/ReportFrame.h"

#include <QDate>
#include <QStringList>
#include <optional>

// What the voucher printing screen asks of the ledger and the report
// frame: the voucher types in use, the first open day, and the requests
// of the single voucher and of the four listings.
namespace VoucherPrinting {

enum class Listing { None, SingleType, AllVouchers, BounceVouchers, RecordTracking };

// Every type the ledger holds, in order (SV, PS, CS, OS and BC included).
QStringList voucherTypesInLedger(SessionConnection &db);
// The closing date plus one day; nothing when no closing date is set.
std::optional<QDate> firstOpenDate(SessionConnection &db);

// One posted voucher by type, number and date.
Reports::ReportRequest singleVoucher(const QString &type, qint64 number, const QDate &date);

// A listing over a period. `type` is read by SingleType only; the texts
// are the period as typed, for the report's date line. With Listing::None
// the design runs as it stands, with the period and no selection.
Reports::ReportRequest listing(Listing option, const QString &type, const QDate &from, const QDate &to,
                               const QString &fromText = QString(), const QString &toText = QString());

} // namespace VoucherPrinting
