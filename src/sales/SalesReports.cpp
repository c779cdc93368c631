#include "sales/SalesReports.h"

#include "foundation/DateRules.h"
#include "foundation/Lookups.h"

namespace SalesReports {

using Reports::ReportCondition;
using Reports::ReportRequest;

namespace {

const QString kTitleName = QStringLiteral("TitleName");
const QString kPartyCode = QStringLiteral("PartyCode");

Outcome checkDateText(const QString &text, const QDate &date, const char *field)
{
    // A period made in code carries no text: its dates speak for it.
    const DateRules::Check c = text.isEmpty()
        ? (date.isValid() ? DateRules::Check::Ok : DateRules::Check::Missing)
        : DateRules::checkDate(text);
    if (c == DateRules::Check::Ok)
        return Outcome::passed();
    return Outcome::refusal(DateRules::messageFor(c), QString::fromLatin1(field));
}

Built refused(const Outcome &o)
{
    return {o, ReportRequest()};
}

Built built(const ReportRequest &r)
{
    return {Outcome::passed(), r};
}

// The working title; a session that has chosen none yet sees every title
// rather than an empty report.
void titleOnly(ReportRequest &r, const QString &title)
{
    if (!title.trimmed().isEmpty())
        r.conditions << ReportCondition::equal(kTitleName, title.trimmed());
}

void dateRange(ReportRequest &r, const QString &field, const Period &p)
{
    r.conditions << ReportCondition::atLeast(field, p.from) << ReportCondition::atMost(field, p.to);
}

} // namespace

Outcome checkPeriod(const Period &p)
{
    Outcome o = checkDateText(p.fromText, p.from, "mskDateFrom");
    if (!o)
        return o;
    return checkDateText(p.toText, p.to, "mskDateTo");
}

Built saleRegister(SaleRegisterOption option, const Period &p, const QString &partyCode, const QString &title)
{
    if (const Outcome o = checkPeriod(p); !o)
        return refused(o);
    const bool summary
        = option == SaleRegisterOption::SummaryAllParties || option == SaleRegisterOption::SummarySingleParty;
    ReportRequest r = summary
        ? LedgerStatements::request(QStringLiteral("crSaleRegisterSummary"), QStringLiteral("SALE REGISTER SUMMARY"))
        : LedgerStatements::request(QStringLiteral("crSaleRegister"), QStringLiteral("SALE REGISTER"));
    LedgerStatements::setPeriod(r, p);
    if (option == SaleRegisterOption::SingleParty || option == SaleRegisterOption::SummarySingleParty)
        r.conditions << ReportCondition::equal(kPartyCode, partyCode.trimmed());
    // The register reads its period from the view; the summary's source
    // has every date and carries the period in its selection.
    if (summary)
        dateRange(r, QStringLiteral("InvoiceDate"), p);
    if (option != SaleRegisterOption::AllTitles)
        titleOnly(r, title);
    return built(r);
}

const QStringList &monthNames()
{
    static const QStringList names{QStringLiteral("JANUARY"), QStringLiteral("FEBRUARY"), QStringLiteral("MARCH"),
        QStringLiteral("APRIL"), QStringLiteral("MAY"), QStringLiteral("JUNE"), QStringLiteral("JULY"),
        QStringLiteral("AUGUST"), QStringLiteral("SEPTEMBER"), QStringLiteral("OCTOBER"), QStringLiteral("NOVEMBER"),
        QStringLiteral("DECEMBER")};
    return names;
}

Built saleSummary(int month, const QString &yearText)
{
    const DateRules::Check c = DateRules::checkYear(yearText);
    if (c == DateRules::Check::Missing)
        return refused(Outcome::refusal(Msg::kYearMissing, QStringLiteral("mskYear")));
    if (c != DateRules::Check::Ok)
        return refused(Outcome::refusal(DateRules::messageFor(c, true), QStringLiteral("mskYear")));
    if (month < 1 || month > 12)
        return refused(Outcome::refusal(DateRules::wrongDateMessage(), QStringLiteral("cmbMonth")));
    const QDate first(yearText.toInt(), month, 1);
    ReportRequest r = LedgerStatements::request(QStringLiteral("crSaleSummary"), QStringLiteral("SALE SUMMARY"),
        QStringLiteral("SALE SUMMARY %1 %2").arg(monthNames().at(month - 1), yearText));
    LedgerStatements::setPeriod(r, Period::of(first, first.addMonths(1).addDays(-1)));
    return built(r);
}

Built clientDetail(SessionConnection &db, const QString &partyCode, const Period &p)
{
    const QString code = partyCode.trimmed();
    if (code.isEmpty() || code.contains(QLatin1Char('_')) || !Lookups::accountExists(db, code))
        return refused(Outcome::refusal(Msg::kPartyNotFound, QStringLiteral("cmbPartyName")));
    if (const Outcome o = checkPeriod(p); !o)
        return refused(o);
    ReportRequest r = LedgerStatements::request(QStringLiteral("crClientDetail"), QStringLiteral("CLIENT DETAIL"));
    LedgerStatements::setPeriod(r, p);
    r.writePeriodRow = false; // the selection carries the period
    r.conditions << ReportCondition::equal(kPartyCode, code);
    dateRange(r, QStringLiteral("InvoiceDate"), p);
    return built(r);
}

Built statusReport(StatusOption option, const Period &p, const QString &partyCode, const QString &title)
{
    if (const Outcome o = checkPeriod(p); !o)
        return refused(o);
    ReportRequest r;
    if (option == StatusOption::DcInvoiceStatus) {
        r = LedgerStatements::request(QStringLiteral("crDcInvStatusReport"),
            QStringLiteral("DELIVERY / INVOICE STATUS REPORT"));
        dateRange(r, QStringLiteral("DcDate"), p);
        titleOnly(r, title);
    } else {
        // The challan summaries take every title.
        r = LedgerStatements::request(QStringLiteral("crDeliveryChallanSummary"),
            QStringLiteral("DELIVERY CHALLAN SUMMARY"));
        if (option == StatusOption::ChallansSingleParty)
            r.conditions << ReportCondition::equal(kPartyCode, partyCode.trimmed());
        dateRange(r, QStringLiteral("VDate"), p);
    }
    LedgerStatements::setPeriod(r, p);
    r.writePeriodRow = false;
    return built(r);
}

Built partyPO(PartyPOSearch by, const QString &partyName, const Period &p, const QString &poFrom,
              const QString &poTo, const QString &title)
{
    if (by == PartyPOSearch::ByDate) {
        if (const Outcome o = checkPeriod(p); !o)
            return refused(o);
    } else {
        if (poFrom.trimmed().isEmpty())
            return refused(Outcome::refusal(Msg::kPONoMissing, QStringLiteral("txtPOFrom")));
        if (poTo.trimmed().isEmpty())
            return refused(Outcome::refusal(Msg::kPONoMissing, QStringLiteral("txtPOTo")));
    }
    const QString name = partyName.trimmed();
    ReportRequest r = LedgerStatements::request(name.isEmpty() ? QStringLiteral("crPoDcStatus")
                                                               : QStringLiteral("crPoDcStatusReport"),
        QStringLiteral("PURCHASE ORDER STATUS REPORT"));
    r.writePeriodRow = false;
    if (!name.isEmpty())
        r.conditions << ReportCondition::equal(QStringLiteral("PartyName"), name);
    if (by == PartyPOSearch::ByDate) {
        LedgerStatements::setPeriod(r, p);
        dateRange(r, QStringLiteral("PODate"), p);
    } else {
        r.conditions << ReportCondition::atLeast(QStringLiteral("PartyPONo"), poFrom.trimmed())
                     << ReportCondition::atMost(QStringLiteral("PartyPONo"), poTo.trimmed());
    }
    titleOnly(r, title);
    return built(r);
}

} // namespace SalesReports
