#pragma once

// A press's orders, challans and invoices under two titles, made through
// the documents' own rules, for the sales register and status report tests.

#include "tst_invoicefixture.h"

#include "sales/DeliveryChallanRules.h"
#include "sales/PurchaseOrderRules.h"

namespace SalesReportsFixture {

using JobPaper::Numbering;

inline const QString kPress = QStringLiteral("PRESS");
inline const QString kPackaging = QStringLiteral("PACKAGING");
inline const QString kCrescent = QStringLiteral("CRESCENT TEXTILES");
inline const QString kSunrise = QStringLiteral("SUNRISE PACKAGES");

inline Money qty(qint64 units) { return Money::fromUnits(units); }

inline bool order(SessionConnection &db, const QString &title, const QString &po, const QDate &date,
                  const QList<std::tuple<QString, qint64, QString>> &items, const QString &code = "17-10-001",
                  const QString &name = kCrescent)
{
    bool first = true;
    qint64 number = PurchaseOrderRules::nextOrderNo(db, title);
    for (const auto &[desc, quantity, demand] : items) {
        OrderLine o;
        o.poNo = number;
        o.titleName = title;
        o.date = date;
        o.partyPONo = po;
        o.partyCode = code;
        o.partyName = name;
        o.description = desc;
        o.quantity = qty(quantity);
        o.unitPrice = Money::fromUnits(5);
        o.demandNo = demand;
        const Outcome out = PurchaseOrderRules::saveLine(db, o, first ? Numbering::Proposed : Numbering::Existing);
        if (!out.ok) {
            qWarning("order refused: %s", qPrintable(out.message));
            return false;
        }
        number = out.number;
        first = false;
    }
    return true;
}

// A challan of the title; returns its number (0 when refused).
inline qint64 challan(SessionConnection &db, const QString &title, const QString &po, const QDate &date,
                      const QList<std::tuple<QString, qint64, QString>> &items, const QString &code = "17-10-001",
                      const QString &name = kCrescent)
{
    qint64 number = 0;
    for (const auto &[desc, quantity, demand] : items) {
        ChallanLine c;
        c.titleName = title;
        c.challanNo = number ? number : DeliveryChallanRules::nextChallanNo(db, title);
        c.date = date;
        c.partyCode = code;
        c.partyName = name;
        c.partyPONo = po;
        c.description = desc;
        c.demandNo = demand;
        c.quantity = qty(quantity);
        c.ctn = QStringLiteral("2");
        const Outcome out = DeliveryChallanRules::saveLine(db, c, number ? Numbering::Existing : Numbering::Proposed, date);
        if (!out.ok) {
            qWarning("challan refused: %s", qPrintable(out.message));
            return 0;
        }
        number = out.number;
    }
    return number;
}

inline bool invoice(SessionConnection &db, const QString &title, qint64 no, const QDate &date,
                    QVector<InvoiceLine> lines, const QString &code = "17-10-001", const QString &name = kCrescent)
{
    const Outcome out = InvoicePosting(db, InvoiceFixture::kUser, InvoiceFixture::kToday)
                            .saveNew(InvoiceFixture::header(title, no, date, code, name), lines, NumberPolicy::Typed);
    if (!out.ok)
        qWarning("invoice refused: %s", qPrintable(out.message));
    return out.ok;
}

inline InvoiceLine challanLine(const QString &desc, const QString &quantity, qint64 challanNo, const QString &po)
{
    InvoiceLine l = InvoiceFixture::line(QStringLiteral("CREDIT"), desc, quantity, QStringLiteral("5"),
                                         QStringLiteral("17"));
    l.challanNo = QString::number(challanNo);
    l.poNo = po;
    return l;
}

// The year:
// - PRESS order KP-1 (05/03): CARTON 1000 (D-1), LABEL 600 (D-2), CARTON 400
//   (D-1 again, a repeated line). Challan 1 (06/03): CARTON 700 (D-1),
//   LABEL 600. Challan 2 (08/03): CARTON 200 (D-1), and LEAFLET 50 on no
//   order line.
// - PACKAGING order KP-1 of SUNRISE (05/03): BOX 300 (D-9), nothing delivered.
// - Invoices: PRESS 1 (09/03) of challan 1: CARTON 700, LABEL 500 (100 left);
//   PRESS 2 (12/03) typed, 3 lines (11,800); PRESS 3 (03/01) typed;
//   PACKAGING 1 (10/03) typed for SUNRISE; PACKAGING 2 (01/04) typed.
inline bool fill(SessionConnection &db)
{
    InvoiceFixture::prepareYear(db);
    const QDate mar5(2026, 3, 5);
    if (!order(db, kPress, "KP-1", mar5, {{"CARTON", 1000, "D-1"}, {"LABEL", 600, "D-2"}, {"CARTON", 400, "D-1"}}))
        return false;
    if (!order(db, kPackaging, "KP-1", mar5, {{"BOX", 300, "D-9"}}, "17-10-002", kSunrise))
        return false;
    const qint64 c1 = challan(db, kPress, "KP-1", QDate(2026, 3, 6), {{"CARTON", 700, "D-1"}, {"LABEL", 600, "D-2"}});
    const qint64 c2 = challan(db, kPress, "KP-1", QDate(2026, 3, 8), {{"CARTON", 200, "D-1"}, {"LEAFLET", 50, ""}});
    if (c1 != 1 || c2 != 2)
        return false;
    return invoice(db, kPress, 1, QDate(2026, 3, 9),
                   {challanLine("CARTON", "700", 1, "KP-1"), challanLine("LABEL", "500", 1, "KP-1")})
        && invoice(db, kPress, 2, QDate(2026, 3, 12), InvoiceFixture::threeLines())
        && invoice(db, kPress, 3, QDate(2026, 1, 3), InvoiceFixture::threeLines())
        && invoice(db, kPackaging, 1, QDate(2026, 3, 10), InvoiceFixture::threeLines(), "17-10-002", kSunrise)
        && invoice(db, kPackaging, 2, QDate(2026, 4, 1), InvoiceFixture::threeLines(), "17-10-002", kSunrise);
}

} // namespace SalesReportsFixture
