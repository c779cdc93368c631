#pragma once

#include "foundation/Money.h"
#include "foundation/Outcome.h"

#include <QString>
#include <optional>

class SessionConnection;

// What the three papers of a job share: purchase orders, job cards and
// delivery challans are numbered by Max + 1 (orders and challans per
// title, job cards over the whole table) and written straight to their
// tables, one command one transaction.
namespace JobPaper {

// How the number of a document being saved is treated.
enum class Numbering {
    Proposed, // the number the screen proposed for a new document: when
              // another workstation took it meanwhile, the next free one
    Existing, // the document already stands under this number (a further
              // line of an order or challan being typed): kept as it is
    Typed,    // a number the user typed for a new document: refused when used
};

// The screens' three modes, as the menu sets them.
enum class Mode { Enter, Modify, Delete, View };

// Serialises the numbering of one table among workstations until the
// current transaction ends. Call inside a Transaction, before the Max.
void lockNumbering(SessionConnection &db, const QString &table);

// Max(column) + 1 of `table`, over the rows of `title` when one is given
// (an empty title is a title too: pass std::nullopt for the whole table).
qint64 nextNumber(SessionConnection &db, const QString &table, const QString &column,
                  const std::optional<QString> &title = std::nullopt);
bool numberTaken(SessionConnection &db, const QString &table, const QString &column, qint64 number,
                 const std::optional<QString> &title = std::nullopt);

// True when the code is a party that takes documents: on the chart, not a
// heading, not the cash account.
bool isDocumentParty(SessionConnection &db, const QString &partyCode);

// A quantity or price as typed: digits with at most one point; empty for
// an empty field, and for text that is no number.
std::optional<Money> parseFigure(const QString &text);
// A figure as a field shows it ("5000", "12.5").
QString figureText(const std::optional<Money> &value);

// The text of a null string as an empty one (a column never takes NULL
// from a field left empty).
inline QString text(const QString &s) { return s.isNull() ? QStringLiteral("") : s; }

// "... # 4 was taken on another workstation meanwhile, so ... # 5."
QString numberMoved(const QString &what, qint64 from, qint64 to);

} // namespace JobPaper
