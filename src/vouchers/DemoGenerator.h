#pragma once

#include "foundation/Money.h"
#include "vouchers/LedgerWriter.h"
#include "vouchers/PostingChecks.h"
#include "vouchers/VoucherRules.h"

#include <QDate>
#include <QRandomGenerator>
#include <QString>
#include <QVector>
#include <functional>

class SessionConnection;

// Fills an account year with a press's chart of accounts and a year of
// realistic documents, for demonstrations and for measuring. The work is
// split in parts (the chart, opening balances, vouchers, ...) that run in
// order in one transaction; a subsystem adds its own documents with
// addPart().
struct DemoOptions
{
    qint64 rows = 400;            // ledger rows to aim at, all parts together
    quint32 seed = 2026;
    QDate from;                   // default: a year back from `to`
    QDate to;                     // default: today
    QString userName = QStringLiteral("ADMIN");
};

struct DemoAccount
{
    QString code;
    QString name;
};

struct DemoChart
{
    QVector<DemoAccount> customers;  // 17-10-xxx, 18-xx-xxx
    QVector<DemoAccount> suppliers;  // 14-10-xxx
    QVector<DemoAccount> banks;      // 19-20-xxx
    QVector<DemoAccount> expenses;   // 21-xx-xxx
    QVector<DemoAccount> incomes;    // 20-10-0xx
    QVector<DemoAccount> employees;  // 16-10-xxx
    int accountCount() const;
};

// What the parts share while they run.
class DemoContext
{
public:
    DemoContext(SessionConnection &db, const DemoOptions &options);

    SessionConnection &db;
    DemoOptions options;
    QRandomGenerator rng;
    DemoChart chart;
    qint64 ledgerRows = 0;
    qint64 vouchers = 0;

    // Ledger rows pass the checks of every posting (the closing date and
    // the chart read once a run), are buffered and written a few hundred a
    // statement.
    void addRows(const QVector<LedgerRow> &rows);
    void flush();
    // The rows still wanted by the target.
    qint64 rowsLeft() const { return options.rows - ledgerRows; }

    // Helpers for the parts.
    const DemoAccount &pick(const QVector<DemoAccount> &from);
    Money amount(qint64 minUnits, qint64 maxUnits, bool withCents = true);
    QDate dateBetween(const QDate &a, const QDate &b);

private:
    QVector<LedgerRow> m_buffer;
    LedgerWriter m_writer;
    PostingChecks m_checks;
};

using DemoPart = std::function<void(DemoContext &)>;

struct DemoSummary
{
    int accounts = 0;
    qint64 vouchers = 0;
    qint64 ledgerRows = 0;
    qint64 milliseconds = 0;
};

class DemoGenerator
{
public:
    DemoGenerator(SessionConnection &db, DemoOptions options);

    // Parts run in the order added.
    void addPart(const QString &name, DemoPart part);
    // The chart, opening balances, post-dated cheques and the vouchers of
    // the voucher screen (CP, CR, BP, BR, JV, BC).
    void addStandardParts();
    DemoSummary run();
    // The standard parts run on `db` at once.
    static DemoSummary standardYear(SessionConnection &db, const DemoOptions &options);

    static void chartPart(DemoContext &c);
    static void openingBalancePart(DemoContext &c);
    static void postDatedChequePart(DemoContext &c);
    static void voucherPart(DemoContext &c);

private:
    SessionConnection &m_db;
    DemoOptions m_options;
    QVector<QPair<QString, DemoPart>> m_parts;
};
