#include "stock/Fifo.h"

#include <algorithm>

namespace Fifo {

qint64 Plan::drawnTotal() const
{
    qint64 n = 0;
    for (const Draw &d : draws)
        n += d.drawn;
    return n;
}

Plan allocate(QVector<OpenReceipt> receipts, qint64 quantity)
{
    receipts.erase(std::remove_if(receipts.begin(), receipts.end(),
                                  [](const OpenReceipt &r) { return r.available() <= 0; }),
                   receipts.end());
    std::stable_sort(receipts.begin(), receipts.end(), [](const OpenReceipt &a, const OpenReceipt &b) {
        if (a.date != b.date) {
            // A receipt without a date stands before every dated one.
            if (!a.date.isValid() || !b.date.isValid())
                return !a.date.isValid() && b.date.isValid();
            return a.date < b.date;
        }
        return a.srNo < b.srNo;
    });

    Plan plan;
    for (const OpenReceipt &r : receipts)
        plan.available += r.available();
    if (receipts.isEmpty()) {
        plan.result = Plan::Result::NoneOpen;
        return plan;
    }
    if (quantity < 0 || quantity > plan.available) {
        plan.result = Plan::Result::Short;
        return plan;
    }
    qint64 remaining = quantity;
    for (const OpenReceipt &r : receipts) {
        const qint64 take = std::min(remaining, r.available());
        plan.draws.append({r.srNo, r.units, r.issued, take});
        remaining -= take;
    }
    return plan;
}

} // namespace Fifo
