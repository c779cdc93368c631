#pragma once

#include <QDate>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>

class SessionConnection;

// The books check: proves an account year whole, or lists each fault with
// the document it stands in. Every kind is one set-based pass over its
// tables (a voucher is never read on its own), so a year of millions of
// ledger rows is checked in seconds. Nothing is written.
namespace BooksCheck {

enum class Kind {
    Unbalanced,  // a voucher whose debits and credits differ
    CashRow,     // a cash voucher without its CASH IN HAND row on the right side
    Opening,     // the opening balances together, or an account opened twice
    Row,         // a ledger row with two sides, a wrong balance, no date or an unknown type
    Account,     // a posting under a heading or an account the chart does not have
    Kept,        // an account's kept balance differs from its rows
    Invoice,     // a sale voucher and its invoice's lines differ
    Purchase,    // a purchase voucher and its purchase lines differ
    Service,     // an other-services voucher and its service differ
    Duplicate,   // two documents under one number
    Closed,      // a change dated in the closed period after the closing date was set
    Staging,     // lines left in staging
};

// The words a kind is listed under ("UNBALANCED VOUCHER", ...).
QString kindName(Kind kind);

struct Fault
{
    Kind kind = Kind::Row;
    QString docType;    // "CP", "SV", ..., or "INVOICE", "CHALLAN", "ORDER", "JOB CARD", "SALARY", "CHEQUE"
    qint64 number = 0;
    QDate date;
    QString title;      // the title of an invoice, challan or order
    QString account;    // the account concerned, when one is
    QString text;       // what is wrong, in plain words

    // "CP # 12 OF 03/02/2026", "INVOICE # 5 (PRESS) OF 03/02/2026".
    QString document() const;
    // A voucher of the ledger the voucher screen can open (CP, CR, BP, BR, JV, BC).
    bool isScreenVoucher() const;
};

struct Options
{
    // This connection's own staging is checked too. A workstation with a
    // document open keeps its lines there, so the screen leaves it out
    // while other screens are open.
    bool ownStaging = true;
    // Faults listed per kind at most; the rest are only counted.
    int maxPerKind = 500;
};

struct Result
{
    QVector<Fault> faults;
    QVector<Kind> checked;   // the kinds that ran, in order
    int truncated = 0;       // faults found beyond maxPerKind, not listed
    qint64 milliseconds = 0;
    // Each pass with the time it took: "vouchers", "rows", ...
    QVector<QPair<QString, qint64>> steps;
    bool passed() const { return faults.isEmpty(); }
};

Result run(SessionConnection &db, const Options &options = Options());

} // namespace BooksCheck
