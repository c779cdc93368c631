#pragma once

// Customers, lines and saves for the invoice tests, as the invoice screen
// makes them.

#include "foundation/SessionConnection.h"
#include "sales/InvoicePosting.h"
#include "sales/InvoiceRules.h"

#include <QDate>
#include <QString>

namespace InvoiceFixture {

inline const QDate kDay(2026, 3, 9);
inline const QDate kToday(2026, 3, 10);
inline const QString kUser = QStringLiteral("CLERK");

inline void prepareYear(SessionConnection &db)
{
    db.execute(QStringLiteral("UPDATE tblClosingDate SET ClosingDate = ?"), {QDate(2025, 12, 31)});
    const QList<QPair<QString, QString>> accounts
        = {{"17-10-001", "CRESCENT TEXTILES"}, {"17-10-002", "SUNRISE PACKAGES"}, {"14-10-001", "PAPER HOUSE"}};
    for (const auto &a : accounts)
        db.execute(
            QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES (?, ?)"), {a.first, a.second});
    for (const char *t : {"PRESS", "PACKAGING"})
        db.execute(QStringLiteral("INSERT INTO tblTitleName (TitleName) VALUES (?)"), {QString::fromLatin1(t)});
}

// A line with its figures computed as the screen computes them.
inline InvoiceLine line(const QString &terms, const QString &desc, const QString &quantity, const QString &rate,
    const QString &saleTax = QStringLiteral("0"))
{
    InvoiceLine l;
    l.termsOfSale = terms;
    l.description = desc;
    l.quantity = quantity;
    l.rate = rate;
    l.saleTaxRate = saleTax;
    l.type = QStringLiteral("Pcs");
    InvoiceRules::computeFigures(l);
    return l;
}

inline InvoiceHeader header(const QString &title, qint64 no, const QDate &date = kDay,
    const QString &code = QStringLiteral("17-10-001"), const QString &name = QStringLiteral("CRESCENT TEXTILES"))
{
    InvoiceHeader h;
    h.key = {title, no, date};
    h.partyCode = code;
    h.partyName = name;
    return h;
}

// Three lines worth 11,800 with tax: 5,000 + 850, 3,000 + 510, 2,000 + 440.
inline QVector<InvoiceLine> threeLines()
{
    return {line(QStringLiteral("CREDIT"), QStringLiteral("CARTON"), QStringLiteral("1000"), QStringLiteral("5"),
                QStringLiteral("17")),
        line(QStringLiteral("CASH"), QStringLiteral("LABEL"), QStringLiteral("600"), QStringLiteral("5"),
            QStringLiteral("17")),
        line(QStringLiteral("CREDIT"), QStringLiteral("LEAFLET"), QStringLiteral("400"), QStringLiteral("5"),
            QStringLiteral("22"))};
}

} // namespace InvoiceFixture
