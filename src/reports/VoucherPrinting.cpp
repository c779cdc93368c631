#include "reports/VoucherPrinting.h"

namespace VoucherPrinting {

using Reports::ReportCondition;
using Reports::ReportRequest;

QStringList voucherTypesInLedger(SessionConnection &db)
{
    QStringList out;
    for (const Row &r : db.select(QStringLiteral("SELECT DISTINCT VoucherType AS VT FROM tblPartyBalance ORDER BY VoucherType"))) {
        const QString t = r.text(0).trimmed();
        if (!t.isEmpty() && !out.contains(t))
            out << t;
    }
    return out;
}

std::optional<QDate> firstOpenDate(SessionConnection &db)
{
    const auto row = db.selectOne(QStringLiteral("SELECT ClosingDate FROM tblClosingDate"));
    if (!row || !row->date(0).isValid())
        return std::nullopt;
    return row->date(0).addDays(1);
}

ReportRequest singleVoucher(const QString &type, qint64 number, const QDate &date)
{
    ReportRequest r;
    r.design = QStringLiteral("crSingleVoucher");
    r.title = QStringLiteral("SINGLE VOUCHER");
    r.conditions << ReportCondition::equal(QStringLiteral("VoucherType"), type)
                 << ReportCondition::equal(QStringLiteral("VoucherNo"), number)
                 << ReportCondition::equal(QStringLiteral("VDate"), date);
    return r;
}

ReportRequest listing(Listing option, const QString &type, const QDate &from, const QDate &to,
                      const QString &fromText, const QString &toText)
{
    ReportRequest r;
    r.design = QStringLiteral("crVoucherListing");
    r.from = from;
    r.to = to;
    r.fromText = fromText;
    r.toText = toText;
    auto byVoucherDate = [&] {
        r.conditions << ReportCondition::atLeast(QStringLiteral("VDate"), from)
                     << ReportCondition::atMost(QStringLiteral("VDate"), to);
    };
    switch (option) {
    case Listing::SingleType:
        r.title = QStringLiteral("%1 VOUCHER LISTING").arg(type);
        r.heading = r.title;
        r.conditions << ReportCondition::equal(QStringLiteral("VoucherType"), type);
        byVoucherDate();
        break;
    case Listing::AllVouchers:
        r.title = QStringLiteral("VOUCHER LISTING");
        r.heading = QStringLiteral("ALL VOUCHER LISTING");
        byVoucherDate();
        break;
    case Listing::BounceVouchers:
        r.title = QStringLiteral("BOUNCE VOUCHERS");
        r.heading = QStringLiteral("BOUNCE VOUCHER LISTING");
        byVoucherDate();
        r.conditions << ReportCondition::equal(QStringLiteral("VoucherType"), QStringLiteral("BC"));
        break;
    case Listing::RecordTracking:
        // By the day the rows were typed, whatever dates the vouchers bear.
        r.title = QStringLiteral("RECORD TRACKING");
        r.heading = r.title;
        r.conditions << ReportCondition::atLeast(QStringLiteral("EntryDate"), from)
                     << ReportCondition::atMost(QStringLiteral("EntryDate"), to);
        break;
    case Listing::None:
        break;
    }
    return r;
}

} // namespace VoucherPrinting
