#pragma once

#include "foundation/SessionConnection.h"

#include <QString>
#include <QVector>
#include <functional>
#include <optional>

// The state of a line of a document being typed, as its save treats it:
// Insert adds it, Update rewrites the posted row it came from, Delete
// removes that row. The staging tables keep it as a word.
enum class LineState { Insert, Update, Delete };

QString lineStateWord(LineState state);                     // "INSERT", "UPDATE", "DELETE"
std::optional<LineState> lineStateFromWord(const QString &word);

// The lines of a document being typed (a voucher, an invoice, an order, a
// challan, a purchase, a salary sheet): held here, in memory, which is the
// truth, and mirrored row by row into this workstation's staging table so
// that rules and views can read them. When the connection was opened
// again since the mirror was last written (a lost server), the next write
// or save() rebuilds the whole mirror from the lines first.
//
// `Line` needs `qint64 srNo` and `LineState state`. The mirror is given as
// two functions: `clear(db)` empties the staging table and `write(db, line)`
// inserts one line (with whatever the document's header is now).
//
//   StagedLines<VoucherLine> lines(mirror);
//   qint64 sr = lines.add(db, line);        // a new line, state Insert
//   lines.change(db, sr, edited);           // Insert stays Insert, else Update
//   lines.remove(db, sr);                   // Insert goes, else Delete
//   lines.save(db, [&] { ...post... });     // mirror checked, then the save
template <typename Line>
class StagedLines
{
public:
    struct Mirror
    {
        std::function<void(SessionConnection &)> clear;
        std::function<void(SessionConnection &, const Line &)> write;
    };

    explicit StagedLines(Mirror mirror) : m_mirror(std::move(mirror)) {}

    const QVector<Line> &all() const { return m_lines; }
    QVector<Line> live() const
    {
        QVector<Line> out;
        for (const Line &l : m_lines)
            if (l.state != LineState::Delete)
                out << l;
        return out;
    }
    bool isEmpty() const { return live().isEmpty(); }
    const Line *find(qint64 srNo) const
    {
        for (const Line &l : m_lines)
            if (l.srNo == srNo)
                return &l;
        return nullptr;
    }
    qint64 lastSrNo() const { return m_lastSrNo; }

    // A new line under a SrNo no line has; returns it.
    qint64 add(SessionConnection &db, Line line)
    {
        line.srNo = ++m_lastSrNo;
        line.state = LineState::Insert;
        QVector<Line> next = m_lines;
        next << line;
        commit(db, next);
        return line.srNo;
    }
    // Rewrites a line, keeping its SrNo; false when there is none.
    bool change(SessionConnection &db, qint64 srNo, Line line)
    {
        QVector<Line> next = m_lines;
        for (Line &l : next) {
            if (l.srNo != srNo)
                continue;
            line.srNo = srNo;
            line.state = l.state == LineState::Insert ? LineState::Insert : LineState::Update;
            l = line;
            commit(db, next);
            return true;
        }
        return false;
    }
    // A line never posted goes; a posted one is kept as Delete for the save.
    // `edit` may touch the line before it is marked (a cheque handed back).
    bool remove(SessionConnection &db, qint64 srNo, const std::function<void(Line &)> &edit = {})
    {
        QVector<Line> next = m_lines;
        for (int i = 0; i < next.size(); ++i) {
            if (next[i].srNo != srNo)
                continue;
            if (next[i].state == LineState::Insert) {
                next.removeAt(i);
            } else {
                if (edit)
                    edit(next[i]);
                next[i].state = LineState::Delete;
            }
            commit(db, next);
            return true;
        }
        return false;
    }
    // Lines of a posted document, as Update under their own SrNo.
    void load(SessionConnection &db, QVector<Line> lines)
    {
        for (Line &l : lines) {
            l.state = LineState::Update;
            m_lastSrNo = qMax(m_lastSrNo, l.srNo);
        }
        commit(db, lines);
    }
    // Forgets every line (the document saved or thrown away) and empties
    // the mirror.
    void clear(SessionConnection &db)
    {
        m_mirror.clear(db);
        m_lines.clear();
        m_epoch = db.connectionEpoch();
    }
    // Forgets the lines without touching the database (the save emptied
    // the mirror in its own transaction).
    void forget() { m_lines.clear(); }

    // Rewrites the mirror from the lines, in one transaction.
    void rebuild(SessionConnection &db) { writeAll(db, m_lines); }
    // The mirror as the save will read it: rebuilt first when the
    // connection was opened again since it was written.
    void ensureMirror(SessionConnection &db)
    {
        if (m_epoch != db.connectionEpoch())
            rebuild(db);
    }

private:
    // The new lines are taken only once the mirror holds them.
    void commit(SessionConnection &db, const QVector<Line> &next)
    {
        writeAll(db, next);
        m_lines = next;
    }
    void writeAll(SessionConnection &db, const QVector<Line> &lines)
    {
        Transaction tx(db);
        m_mirror.clear(db);
        for (const Line &l : lines)
            m_mirror.write(db, l);
        tx.commit();
        m_epoch = db.connectionEpoch();
    }

    Mirror m_mirror;
    QVector<Line> m_lines;
    qint64 m_lastSrNo = 0;
    quint64 m_epoch = 0;
};
