#pragma once

// The invoices of the bill-wise payment tests, saved as the invoice screen
// saves them, and bills named as "TITLE/NO/TERMS[/PARTY]":
//   PRESS/1 of 17-10-001 on 09/03: CREDIT 5,850.00 + 2,440.00, CASH 3,510.00
//   PACKAGING/1 of 17-10-001 on 09/03: CREDIT 300.00 (the number again, another title)
//   PRESS/2 of 17-10-001 on 01/04: CREDIT 1,000.00
//   PRESS/3 of 17-10-002 on 09/03: CREDIT 500.00

#include "sales/InvoicePosting.h"
#include "sales/tst_invoicefixture.h"
#include "vouchers/BillWisePayment.h"

#include <QtTest>

namespace BillWiseFixture {

using namespace InvoiceFixture;

inline void saveInvoices(SessionConnection &db)
{
    prepareYear(db);
    auto save = [&](const InvoiceHeader &h, const QVector<InvoiceLine> &lines) {
        const Outcome out = InvoicePosting(db, kUser, kToday).saveNew(h, lines, NumberPolicy::Typed);
        QVERIFY2(out.ok, qPrintable(out.message));
    };
    auto credit = [](const char *desc, const char *quantity, const char *rate) {
        return QVector<InvoiceLine>{line(QStringLiteral("CREDIT"), QString::fromLatin1(desc),
            QString::fromLatin1(quantity), QString::fromLatin1(rate))};
    };
    save(header(QStringLiteral("PRESS"), 1), threeLines());
    save(header(QStringLiteral("PACKAGING"), 1), credit("TAG", "100", "3"));
    save(header(QStringLiteral("PRESS"), 2, QDate(2026, 4, 1)), credit("BOX", "200", "5"));
    save(header(QStringLiteral("PRESS"), 3, kDay, QStringLiteral("17-10-002"), QStringLiteral("SUNRISE PACKAGES")),
        credit("BOX", "100", "5"));
}

inline QVector<BillKey> keys(const QStringList &texts)
{
    QVector<BillKey> out;
    for (const QString &t : texts) {
        const QStringList p = t.split(QLatin1Char('/'));
        out.append(
            {p.value(0), p.value(1).toLongLong(), p.value(2), p.size() > 3 ? p.value(3) : QStringLiteral("17-10-001")});
    }
    return out;
}

} // namespace BillWiseFixture
