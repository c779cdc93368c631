#pragma once

// Ledger rows for the tests of the ledger, the ageing and the statements.

#include "foundation/Money.h"
#include "foundation/SessionConnection.h"
#include "vouchers/LedgerWriter.h"

#include <QDate>
#include <QString>
#include <QtTest>

namespace LedgerFixture {

inline void account(SessionConnection &db, const QString &code, const QString &name)
{
    db.execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName, PartyAddress, PartyPhone, CareOf, DueDays, "
                              "UserName, EntryDate) VALUES (?, ?, ?, ?, '', 0, 'TEST', ?)"),
               {code, name, QStringLiteral("ADDRESS OF %1").arg(name), QStringLiteral("042-%1").arg(code.left(2)),
                QDate(2026, 1, 1)});
}

inline Money money(const QString &text)
{
    const auto m = Money::parse(text);
    if (!m)
        qFatal("not an amount: %s", qPrintable(text));
    return *m;
}

// One ledger row; a positive amount is a debit, a negative one a credit.
// Written by the ledger writer, as every posting is, so that the kept
// balances move with it.
inline qint64 post(SessionConnection &db, const QString &type, qint64 no, const QDate &date, const QString &code,
                   const QString &name, const QString &amount, const QString &desc = QString())
{
    const Money m = money(amount);
    LedgerRow row;
    row.voucherType = type;
    row.voucherNo = no;
    row.vDate = date;
    row.invoiceNo = QString::number(no);
    row.partyCode = code;
    row.partyName = name;
    row.partyDR = m.isPositive() ? m : Money();
    row.partyCR = m.isNegative() ? -m : Money();
    row.partyDesc = desc.isEmpty() ? type : desc;
    return LedgerWriter(db, QStringLiteral("TEST"), date).insert(row);
}

// A voucher of two rows: `amount` debited to one account, credited to the
// other.
inline void voucher(SessionConnection &db, const QString &type, qint64 no, const QDate &date, const QString &drCode,
                    const QString &drName, const QString &crCode, const QString &crName, const QString &amount)
{
    post(db, type, no, date, drCode, drName, amount);
    post(db, type, no, date, crCode, crName, QLatin1Char('-') + amount);
}

inline Money sum(SessionConnection &db, const QString &sql, const QVariantList &params = {})
{
    return db.scalarMoney(sql, params).value_or(Money());
}

// A year of the press in 2026 with vouchers of every type that write the
// ledger: balanced opening balances, sale invoices, cash and bank receipts
// and payments, a journal, a bounced cheque, purchase and closing stock,
// other services (whose income code carries its trailing blank) and a
// customer who ends at exactly 0. Amounts carry cents that binary floating
// point cannot hold.
inline void seedYear(SessionConnection &db)
{
    Transaction tx(db);
    const struct { const char *code; const char *name; } accounts[] = {
        {"11-00-000", "FIXED ASSETS"},       {"11-10-000", "FURNITURE AND MACHINES"}, {"11-10-001", "PRINTING MACHINE"},
        {"11-20-000", "STOCK"},              {"11-20-001", "STOCK IN HAND"},
        {"12-00-000", "LIABILITIES"},        {"12-10-000", "LOANS"},                  {"12-10-001", "BANK LOAN"},
        {"14-00-000", "PURCHASERS"},         {"14-10-000", "PAPER SUPPLIERS"},        {"14-10-001", "PAPER HOUSE"},
        {"14-10-002", "INK HOUSE"},
        {"17-00-000", "CUSTOMERS"},          {"17-10-000", "LOCAL CUSTOMERS"},        {"17-10-001", "ALPHA TRADERS"},
        {"17-10-002", "BETA FOODS"},         {"18-10-000", "CORPORATE CUSTOMERS"},    {"18-10-001", "GAMMA MILLS"},
        {"19-20-000", "BANKS"},              {"19-20-001", "CITY BANK"},
        {"20-02-000", "PURCHASES"},          {"20-02-001", "PAPER PURCHASE"},
        {"20-12-000", "CLOSING STOCKS"},     {"20-12-001", "CLOSING STOCK PAPER"},
        {"21-00-000", "EXPENSES"},           {"21-10-000", "ADMINISTRATION"},         {"21-10-001", "SALARIES"},
        {"21-10-002", "ELECTRICITY"},
    };
    for (const auto &a : accounts)
        account(db, QString::fromLatin1(a.code), QString::fromLatin1(a.name));

    const QDate open(2026, 1, 1);
    // Opening balances, one row an account, adding up to nothing.
    post(db, "JV", 0, open, "11-10-001", "PRINTING MACHINE", "50000", "OPENING BALANCE");
    post(db, "JV", 0, open, "19-10-001", "CASH IN HAND", "7000.10", "OPENING BALANCE");
    post(db, "JV", 0, open, "17-10-001", "ALPHA TRADERS", "1500.20", "OPENING BALANCE");
    post(db, "JV", 0, open, "12-10-001", "BANK LOAN", "-30000", "OPENING BALANCE");
    post(db, "JV", 0, open, "14-10-001", "PAPER HOUSE", "-8500.30", "OPENING BALANCE");
    post(db, "JV", 0, open, "20-01-001", "PROFIT AND LOSS ACCOUNT", "-20000", "OPENING BALANCE");

    voucher(db, "SV", 1, QDate(2026, 1, 10), "17-10-001", "ALPHA TRADERS", "20-10-002", "INVOICE BALANCE", "11800.10");
    voucher(db, "SV", 2, QDate(2026, 1, 20), "17-10-002", "BETA FOODS", "20-10-002", "INVOICE BALANCE", "590.20");
    voucher(db, "SV", 3, QDate(2026, 2, 5), "18-10-001", "GAMMA MILLS", "20-10-002", "INVOICE BALANCE", "2360.30");
    voucher(db, "CR", 1, QDate(2026, 1, 25), "19-10-001", "CASH IN HAND", "17-10-001", "ALPHA TRADERS", "5000.10");
    voucher(db, "BR", 1, QDate(2026, 2, 10), "19-20-001", "CITY BANK", "18-10-001", "GAMMA MILLS", "2360.30");
    voucher(db, "CP", 1, QDate(2026, 1, 31), "21-10-001", "SALARIES", "19-10-001", "CASH IN HAND", "3200.70");
    voucher(db, "BP", 1, QDate(2026, 2, 15), "14-10-001", "PAPER HOUSE", "19-20-001", "CITY BANK", "1000.10");
    voucher(db, "JV", 1, QDate(2026, 2, 20), "21-10-002", "ELECTRICITY", "14-10-002", "INK HOUSE", "450.45");
    voucher(db, "BC", 1, QDate(2026, 2, 25), "18-10-001", "GAMMA MILLS", "19-20-001", "CITY BANK", "0.10");
    voucher(db, "BR", 2, QDate(2026, 2, 26), "19-20-001", "CITY BANK", "18-10-001", "GAMMA MILLS", "0.10");
    voucher(db, "PS", 1, QDate(2026, 2, 12), "20-02-001", "PAPER PURCHASE", "14-10-001", "PAPER HOUSE", "6400.20");
    voucher(db, "CS", 1, QDate(2026, 2, 28), "11-20-001", "STOCK IN HAND", "20-12-001", "CLOSING STOCK PAPER", "2100.05");
    // Other services: the customer owes 1000, the supplier is owed 800, the
    // press keeps 200 under the income code written with a trailing blank.
    post(db, "OS", 1, QDate(2026, 3, 3), "17-10-002", "BETA FOODS", "1000");
    post(db, "OS", 1, QDate(2026, 3, 3), "14-10-002", "INK HOUSE", "-800");
    post(db, "OS", 1, QDate(2026, 3, 3), "20-10-001 ", "OTHER SERVICES INCOM", "-200");
    voucher(db, "CR", 2, QDate(2026, 3, 10), "19-10-001", "CASH IN HAND", "17-10-002", "BETA FOODS", "300.15");
    tx.commit();
}

} // namespace LedgerFixture
