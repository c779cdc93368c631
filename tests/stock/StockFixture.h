#pragma once

// Accounts, dates and ledger read-back for the purchase and closing stock
// tests.
#include "foundation/Money.h"
#include "foundation/SessionConnection.h"

#include <QDate>
#include <QString>
#include <QVector>

namespace StockFixture {

inline const QDate kClosing(2025, 12, 31);
inline const QDate kDay(2026, 3, 9);
inline const QDate kToday(2026, 3, 10);
inline const QString kUser = QStringLiteral("CLERK");

inline Money m(const QString &text) { return *Money::parse(text); }

inline void prepare(SessionConnection &db)
{
    db.execute(QStringLiteral("DELETE FROM tblClosingDate"));
    db.execute(QStringLiteral("INSERT INTO tblClosingDate (ClosingDate) VALUES (?)"), {kClosing});
    const QList<QPair<QString, QString>> accounts = {
        {"14-10-000", "SUPPLIERS"},          {"14-10-001", "PAPER HOUSE"},       {"14-10-002", "INK TRADERS"},
        {"20-11-000", "PURCHASES"},          {"20-11-001", "PAPER PURCHASES"},   {"20-11-002", "INK PURCHASES"},
        {"20-12-000", "CLOSING STOCK HEAD"}, {"20-12-001", "CLOSING STOCK"},     {"21-10-001", "ELECTRICITY"}};
    for (const auto &a : accounts)
        db.execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES (?, ?)"),
                   {a.first, a.second});
}

// One ledger row as the tests compare it.
struct Leg
{
    QString code;
    Money dr;
    Money cr;
    QString desc;
    bool operator==(const Leg &o) const { return code == o.code && dr == o.dr && cr == o.cr && desc == o.desc; }
};

inline QString toString(const QVector<Leg> &legs)
{
    QStringList s;
    for (const Leg &l : legs)
        s << QStringLiteral("%1 DR %2 CR %3 [%4]").arg(l.code, l.dr.toPlainString(), l.cr.toPlainString(), l.desc);
    return s.join(QStringLiteral("; "));
}

inline QVector<Leg> voucherRows(SessionConnection &db, const QString &type, qint64 no)
{
    QVector<Leg> out;
    for (const Row &r : db.select(QStringLiteral("SELECT PartyCode, PartyDR, PartyCR, PartyDesc, PartyBalance "
                                                 "FROM tblPartyBalance WHERE VoucherType = ? AND VoucherNo = ? "
                                                 "ORDER BY SrNo"),
                                  {type, no})) {
        // Every row keeps PartyBalance = DR - CR.
        if (r.moneyOrZero(QStringLiteral("PartyBalance"))
            != r.moneyOrZero(QStringLiteral("PartyDR")) - r.moneyOrZero(QStringLiteral("PartyCR")))
            out << Leg{QStringLiteral("BAD BALANCE"), Money(), Money(), QString()};
        out << Leg{r.text(0).trimmed(), r.moneyOrZero(QStringLiteral("PartyDR")),
                   r.moneyOrZero(QStringLiteral("PartyCR")), r.text(3).trimmed()};
    }
    return out;
}

// Everything in the two tables, to prove a failed command left them alone.
inline QString snapshot(SessionConnection &db)
{
    QStringList s;
    for (const Row &r : db.select(QStringLiteral("SELECT SrNo, VoucherType, VoucherNo, VDate, PartyCode, PartyDR, "
                                                 "PartyCR, PartyDesc, InvoiceNo FROM tblPartyBalance ORDER BY SrNo")))
        s << QStringLiteral("%1|%2|%3|%4|%5|%6|%7|%8|%9")
                 .arg(r.integer(0))
                 .arg(r.text(1).trimmed())
                 .arg(r.integer(2))
                 .arg(r.date(3).toString(Qt::ISODate), r.text(4).trimmed(),
                      r.moneyOrZero(QStringLiteral("PartyDR")).toPlainString(),
                      r.moneyOrZero(QStringLiteral("PartyCR")).toPlainString(), r.text(7).trimmed(), r.text(8));
    for (const Row &r : db.select(QStringLiteral("SELECT VoucherNo, RecordNo, BillNo, VDate, PartyName, ItemDesc, "
                                                 "Quantity, UnitRate, Amount, Freight FROM tblPurchaseStock "
                                                 "ORDER BY RecordNo")))
        s << QStringLiteral("%1|%2|%3|%4|%5|%6|%7|%8|%9|%10")
                 .arg(r.integer(0))
                 .arg(r.integer(1))
                 .arg(r.text(2), r.date(3).toString(Qt::ISODate), r.text(4).trimmed(), r.text(5), r.text(6),
                      r.text(7), r.moneyOrZero(QStringLiteral("Amount")).toPlainString(),
                      r.moneyOrZero(QStringLiteral("Freight")).toPlainString());
    return s.join(QLatin1Char('\n'));
}

} // namespace StockFixture
