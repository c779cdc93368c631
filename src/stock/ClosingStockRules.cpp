#include "stock/ClosingStockRules.h"

#include "foundation/DateRules.h"
#include "foundation/Lookups.h"
#include "stock/PurchaseStockRules.h"
#include "vouchers/PostingChecks.h"

namespace ClosingStock {

Adjustment adjustment(Money balance, Money closing)
{
    Adjustment a;
    if (!balance.isNegative() && balance >= closing)
        a.adjustCR = balance - closing;
    else
        a.adjustDR = closing - balance;
    return a;
}

Outcome checkEntry(const Entry &e, bool adjustKnown)
{
    using namespace ClosingStockMessages;
    if (e.adjustName.trimmed() == e.stockName.trimmed())
        return Outcome::refusal(kSameAccount, QStringLiteral("cmbPartyName"));
    if (e.voucherNoText.trimmed().isEmpty() || e.voucherNoText.trimmed().toLongLong() <= 0)
        return Outcome::refusal(kVoucherMissing, QStringLiteral("txtVoucherNo"));
    const DateRules::Check date = DateRules::checkDate(e.dateText);
    if (date != DateRules::Check::Ok)
        return Outcome::refusal(DateRules::messageFor(date), QStringLiteral("mskDate"));
    if (!adjustKnown)
        return Outcome::refusal(Lookups::partyNotFoundMessage(), QStringLiteral("cmbPartyName"));
    if (!PurchaseStock::isPurchaseCode(e.stockCode))
        return Outcome::refusal(kNotStockAccount, QStringLiteral("cmbPurchaseName"));
    const auto value = Money::parse(e.closingValue.trimmed().isEmpty() ? QStringLiteral("0") : e.closingValue);
    if (!value || value->isNegative())
        return Outcome::refusal(PostingMessages::kNegative, QStringLiteral("txtClosingValue"));
    return Outcome::passed();
}

QVector<LedgerRow> rows(const VoucherKey &key, qint64 recordNo, const Entry &e, const Adjustment &a)
{
    QVector<LedgerRow> out;
    if (a.isZero())
        return out;
    LedgerRow stock;
    stock.voucherType = key.type;
    stock.voucherNo = key.number;
    stock.vDate = key.date;
    stock.partyCode = e.stockCode.trimmed();
    stock.partyName = e.stockName.trimmed();
    stock.partyDR = a.adjustDR;
    stock.partyCR = a.adjustCR;
    stock.partyDesc = e.desc.trimmed();
    stock.recordNo = recordNo;
    LedgerRow mirror = stock;
    mirror.partyCode = e.adjustCode.trimmed();
    mirror.partyName = e.adjustName.trimmed();
    mirror.partyDR = a.adjustCR;
    mirror.partyCR = a.adjustDR;
    mirror.partyDesc = QStringLiteral("ADJUSTMENT ") + e.desc.trimmed();
    out << stock << mirror;
    return out;
}

} // namespace ClosingStock
