#include "services/OtherServicesDemo.h"

#include "services/OtherServices.h"
#include "vouchers/DemoGenerator.h"

#include <algorithm>

void otherServicesDemoPart(DemoContext &c)
{
    if (c.chart.customers.isEmpty() || c.chart.suppliers.isEmpty())
        return;
    c.flush();
    const QStringList services = {QStringLiteral("LAMINATION OUTSIDE"), QStringLiteral("UV COATING"),
                                  QStringLiteral("DIE CUTTING"),        QStringLiteral("PERFECT BINDING"),
                                  QStringLiteral("FOIL STAMPING"),      QStringLiteral("COURIER CHARGES")};
    const int n = int(std::clamp<qint64>(c.options.rows / 2000, 10, 400));
    for (int i = 0; i < n; ++i) {
        OtherServiceEntry e;
        e.date = c.dateBetween(c.options.from, c.options.to);
        const DemoAccount &customer = c.pick(c.chart.customers);
        const DemoAccount &supplier = c.pick(c.chart.suppliers);
        e.partyCode = customer.code;
        e.partyName = customer.name;
        e.supplierCode = supplier.code;
        e.supplierName = supplier.name;
        e.description = services.at(c.rng.bounded(int(services.size())));
        e.invoiceNo = QString::number(c.rng.bounded(1000, 9999));
        e.paid = c.amount(500, 60000, false).roundedToUnits();
        // Mostly a margin of up to a quarter, now and then at cost or at a loss.
        const int roll = c.rng.bounded(10);
        const qint64 paidUnits = e.paid.toWholeUnits();
        const qint64 units = roll == 0 ? paidUnits
            : roll == 1               ? paidUnits - paidUnits * c.rng.bounded(1, 10) / 100
                                      : paidUnits + paidUnits * c.rng.bounded(5, 25) / 100;
        e.received = Money::fromUnits(units);
        OtherServices os(c.db, c.options.userName, e.date);
        e.voucherNo = os.nextNumber();
        const Outcome out = os.save(e);
        if (!out)
            continue;
        c.ledgerRows += out.rowsWritten;
        ++c.vouchers;
    }
}
