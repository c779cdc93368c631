#pragma once

#include <QDate>
#include <QVector>

// First in, first out: a quantity issued is drawn from the open receipts
// of one item, brand and type, the oldest date first and, on one date, the
// lower SrNo first. Widget-free and database-free; EmployeeStock reads
// the receipts under a lock and writes what this plans.
namespace Fifo {

struct OpenReceipt
{
    qint64 srNo = 0;
    QDate date;
    qint64 units = 0;
    qint64 issued = 0;
    qint64 available() const { return units - issued; }
};

// What one receipt gives: its issued units before and after.
struct Draw
{
    qint64 srNo = 0;
    qint64 units = 0;
    qint64 issuedBefore = 0;
    qint64 drawn = 0;
    qint64 issuedAfter() const { return issuedBefore + drawn; }
    qint64 inHand() const { return units - issuedAfter(); }
};

struct Plan
{
    enum class Result {
        Drawn,      // the quantity is spread over `draws`
        NoneOpen,   // no receipt has units left
        Short,      // fewer units left than asked
    };
    Result result = Result::Drawn;
    qint64 available = 0;   // units left over all open receipts
    // Every open receipt in the order drawn, those left untouched too
    // (drawn 0).
    QVector<Draw> draws;
    qint64 drawnTotal() const;
};

// Receipts without units left, and any that show more issued than
// received, are not open and are passed over. A quantity of 0 draws
// nothing and is no refusal; a negative one is Short.
Plan allocate(QVector<OpenReceipt> receipts, qint64 quantity);

} // namespace Fifo
