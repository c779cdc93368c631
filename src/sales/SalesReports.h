#pragma once

#include "foundation/Outcome.h"
#include "reports/LedgerStatements.h"

#include <QDate>
#include <QString>
#include <optional>

class SessionConnection;

// The sales registers and the status reports of the job's paperwork: which
// design, which heading, which period and which selection each choice of
// the report screens opens. The figures lie in the views (SaleRegister,
// SaleRegisterSummary, SaleSummary, ClientDetail, DcInvoiceStatus,
// DeliveryChallanSummary, PoDcStatus); these requests only say what to
// read. Each builder refuses what its screen refuses. `title` is the
// working title; empty (none chosen yet) takes every title.
namespace SalesReports {

namespace Msg {
inline const QString kYearMissing = QStringLiteral("Year is missing, please enter year");
inline const QString kPartyNotFound = QStringLiteral("Party name not found, please select correct party name");
inline const QString kPONoMissing = QStringLiteral("P.O # can not empty, please enter P.O #.");
} // namespace Msg

using LedgerStatements::Period;

// A request, or the refusal that stands in its way.
struct Built
{
    Outcome outcome;
    Reports::ReportRequest request;
    explicit operator bool() const { return outcome.ok; }
};

// Both dates of a period real dates ("Date is missing ..." / "Wrong date
// ..."), the field at fault named.
Outcome checkPeriod(const Period &p);

// "SALE REGISTER": the five options in the screen's order.
enum class SaleRegisterOption { AllParties, AllTitles, SingleParty, SummaryAllParties, SummarySingleParty };
Built saleRegister(SaleRegisterOption option, const Period &p, const QString &partyCode, const QString &title);

// "SUMMARY": the month of a year, from its first day to its last, whatever
// the order the date's text would be read in. `yearText` as typed (4
// digits, "____" when empty); `month` 1 to 12.
Built saleSummary(int month, const QString &yearText);
const QStringList &monthNames(); // "JANUARY" ... "DECEMBER"

// "CLIENT DETAIL": the invoice lines of one client in a period. The code
// must be an account of the chart.
Built clientDetail(SessionConnection &db, const QString &partyCode, const Period &p);

// "STATUS REPORT".
enum class StatusOption { DcInvoiceStatus, ChallansAllParties, ChallansSingleParty };
Built statusReport(StatusOption option, const Period &p, const QString &partyCode, const QString &title);

// "SEARCH PARTY PO": a party's orders against their deliveries, by order
// date or by the party's order numbers (compared as text: "9" comes after
// "10"). Without a party, the order book of every party.
enum class PartyPOSearch { ByDate, ByPONo };
Built partyPO(PartyPOSearch by, const QString &partyName, const Period &p, const QString &poFrom,
              const QString &poTo, const QString &title);

} // namespace SalesReports
