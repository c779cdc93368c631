#include "stock/PurchaseDemo.h"

#include "foundation/DateRules.h"
#include "foundation/SessionConnection.h"
#include "stock/ClosingStockPosting.h"
#include "stock/PurchaseStockPosting.h"
#include "vouchers/DemoGenerator.h"

#include <algorithm>

namespace {

const char *const kItems[] = {"ART CARD 300G", "OFFSET PAPER 80G", "BLEACH BOARD 350G", "STICKER PAPER",
                              "PROCESS INK CYAN", "PROCESS INK BLACK", "CTP PLATES", "LAMINATION FILM",
                              "CORRUGATED SHEET", "GUM AND BINDING"};
const char *const kSizes[] = {"23X36", "20X30", "25X36", "18X23", "1 KG", "5 KG", "510X400", "ROLL", "", "4 LTR"};
const char *const kUnits[] = {"REAM", "REAM", "SHEET", "REAM", "KG", "KG", "PCS", "ROLL", "SHEET", "LTR"};

QString fail(const Outcome &out) { return QStringLiteral("The demonstration purchases were refused: %1").arg(out.message); }

} // namespace

void purchaseDemoPart(DemoContext &c)
{
    if (c.chart.suppliers.isEmpty())
        return;
    c.flush(); // the rules below read and write the ledger themselves
    QVector<DemoAccount> accounts;
    for (const Row &r : PurchaseStockPosting::purchaseAccounts(c.db))
        if (r.text(1).startsWith(QLatin1String("20-11")))
            accounts.append({r.text(1).trimmed(), r.text(0).trimmed()});
    if (accounts.isEmpty())
        return;

    // About one bill for every hundred ledger rows asked for, in date order.
    const int bills = int(std::clamp<qint64>(c.options.rows / 100, 6, 1500));
    QVector<QDate> dates;
    for (int i = 0; i < bills; ++i)
        dates << c.dateBetween(c.options.from, c.options.to);
    std::sort(dates.begin(), dates.end());

    PurchaseStockPosting posting(c.db, c.options.userName, c.options.to);
    posting.keepLookups();
    const qint64 rowsBefore = c.db.scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")).toLongLong();
    qint64 number = PurchaseStockPosting::nextVoucherNo(c.db, PurchaseStock::kType);
    for (const QDate &date : dates) {
        PurchaseStock::Header h;
        h.voucherNo = number++;
        h.billNo = QStringLiteral("%1-%2").arg(c.rng.bounded(3) ? QStringLiteral("INV") : QStringLiteral("BL"))
                       .arg(c.rng.bounded(100, 99999));
        h.date = date;
        const DemoAccount &supplier = c.pick(c.chart.suppliers);
        const int k = c.rng.bounded(int(accounts.size()));
        h.partyName = supplier.name;
        h.purchaseName = accounts.at(k).name;
        if (c.rng.bounded(5) < 2)
            h.freight = c.amount(150, 4000, false);
        const int tax = c.rng.bounded(4);
        h.saleTax = tax == 0 ? QString() : tax == 1 ? QStringLiteral("16") : QStringLiteral("17");
        const int lines = 1 + c.rng.bounded(3);
        for (int i = 0; i < lines; ++i) {
            const int item = c.rng.bounded(int(std::size(kItems)));
            PurchaseStock::Line l;
            l.itemDesc = QString::fromLatin1(kItems[item]);
            l.weight = QString::fromLatin1(kSizes[item]);
            l.unitType = QString::fromLatin1(kUnits[item]);
            l.quantity = c.rng.bounded(4) == 0 ? QStringLiteral("%1.5").arg(c.rng.bounded(1, 40))
                                               : QString::number(c.rng.bounded(1, 60));
            l.unitRate = c.amount(40, 6000).toPlainString();
            const Outcome out = posting.saveLine(h, l, i == 0);
            if (!out)
                throw DbError(fail(out));
            h.voucherNo = out.number;
        }
        ++c.vouchers;
    }

    // The count on the last day: a share of the year's purchases still in hand.
    const Money bought = c.db.scalarMoney(QStringLiteral("SELECT SUM(PartyDR) FROM tblPartyBalance "
                                                         "WHERE VoucherType = ?"),
                                          {PurchaseStock::kType})
                             .value_or(Money());
    const auto stock = c.db.selectOne(QStringLiteral("SELECT PartyName FROM tblPartyInfo WHERE PartyCode = ?"),
                                      {ClosingStock::kFirstClosingCode});
    if (stock && !bought.isZero()) {
        ClosingStock::Entry e;
        e.voucherNoText = QString::number(ClosingStockPosting::nextVoucherNo(c.db, ClosingStock::kType));
        e.dateText = DateRules::toMaskText(c.options.to);
        e.stockName = stock->text(0).trimmed();
        e.adjustName = accounts.first().name;
        e.closingValue = bought.percent(QStringLiteral("12")).roundedToUnits().toPlainString();
        const Outcome out = ClosingStockPosting(c.db, c.options.userName, c.options.to).save(e, NumberPolicy::Proposed);
        if (!out)
            throw DbError(fail(out));
        ++c.vouchers;
    }
    c.ledgerRows += c.db.scalar(QStringLiteral("SELECT COUNT(*) FROM tblPartyBalance")).toLongLong() - rowsBefore;
}
