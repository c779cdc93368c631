#pragma once

#include "foundation/Outcome.h"
#include "foundation/SessionConnection.h"
#include "sales/JobPaper.h"

#include <QDate>
#include <QHash>
#include <QString>
#include <QStringList>
#include <optional>

// The press's work ticket (tblJobCard): one row per job, numbered over the
// whole table, with the press fields that tell the floor what to do. Each
// press field offers every value ever typed into it: the values are kept
// in tblJobCardList (Field, Value) as cards are saved, so the lists are
// read at once however many cards the year holds.
struct JobCard
{
    qint64 number = 0;      // 0: not typed
    QString partyPONo;
    QString partyName;
    QString partyCode;
    QDate date;
    QDate issueDate;        // may stay blank
    QDate poDate;           // may stay blank
    QString quantity;       // text, as typed
    QHash<QString, QString> press; // by column name (JobCardRules::pressColumns())

    QString pressValue(const QString &column) const { return press.value(column); }
};

namespace JobCardMsg {
inline const QString kNumberMissing = QStringLiteral("Job Card # is missing, please enter job card #");
inline const QString kNumberMissingPrint = QStringLiteral("Job Card # is missing, please enter job card #.");
inline const QString kPartyMissing = QStringLiteral("Party name is missing, please select party name");
inline const QString kPartyNotFound = QStringLiteral("Party name not found, please select correct party name");
inline const QString kPartyCodeNotFound = QStringLiteral("Party Code not found, please select correct party name");
inline const QString kQuantityMissing = QStringLiteral("Quantity is missing, please enter quantity");
inline const QString kQuantityMissingDot = QStringLiteral("Quantity is missing, please enter quantity.");
inline const QString kDuplicate =
    QStringLiteral("Job Card # already exist, duplication is not allowed, please change the job card #.");
inline const QString kNotFound = QStringLiteral("Job Card # not found, please enter correct job card #");
inline const QString kSaved = QStringLiteral("Job Card detail has saved successfully");
inline const QString kUpdated = QStringLiteral("Job Card detail has updated successfully");
inline const QString kDeleted = QStringLiteral("Job Card detail has deleted successfully");
} // namespace JobCardMsg

namespace JobCardRules {

enum class Command { Save, Modify, Delete, Print };

// The fourteen press fields in the order of the card: column names.
const QStringList &pressColumns();
// The combo of a press column: "Paper" -> "cmbPaper", "Other" -> "cmbOther".
QString comboName(const QString &column);

qint64 nextJobCardNo(SessionConnection &db);
Outcome check(const JobCard &card, Command command);
std::optional<JobCard> card(SessionConnection &db, qint64 number);

// Every value ever typed in each press column, by column, sorted. A year
// whose kept lists are empty while it has cards has them made first.
QHash<QString, QStringList> pressChoices(SessionConnection &db);

// A new card as one transaction. Proposed: moved on to the next free
// number when taken meanwhile (notice). Typed: refused when the number is
// in use. The outcome's number is the card's.
Outcome save(SessionConnection &db, const JobCard &card, JobPaper::Numbering numbering, const QString &userName,
             const QDate &today);
// Rewrites the card of `card.number`; the user and date stamp the last writer.
Outcome modify(SessionConnection &db, const JobCard &card, const QString &userName, const QDate &today);
// Deletes the card of that number (a number without a card deletes nothing).
Outcome remove(SessionConnection &db, qint64 number);

} // namespace JobCardRules
