#pragma once

#include "foundation/ConnectionProfile.h"

#include <QString>
#include <functional>

// Whole copies of an account year: into another year of the same profile,
// into a backup file, and from a backup file into a year.
//
// The embedded store copies through SQLite's online backup, which reads one
// consistent state of the year while other workstations go on reading and
// writing. A server copies through pg_dump in its custom format and
// pg_restore of the same version as the server; the password reaches them
// through their environment, never on a command line or in the file.
//
// A refusal (a bad name, a year that exists, a file that is no backup)
// throws AccountYear::Error with the words to show; a database failure
// throws DbError. Nothing is left behind on failure: a year appears under
// its name only when it is whole, and a backup file only when written out.
namespace YearBackup {

using Progress = std::function<void(int percent, const QString &what)>;

// Makes the year `to` as a full copy of the year `from`. Refuses a `to`
// that exists or is not a valid year name, and a `from` that is missing.
void copyYear(const ConnectionProfile &profile, const QString &from, const QString &to,
              const QString &serverPassword = QString(), const Progress &progress = {});

// A copy of a year made out of sight, for work to be done on it before any
// workstation may log on to it: copyYearAside() makes the copy of `from`
// under asideName(to), which no year list shows, with the refusals of
// copyYear(); finishYearAside() gives it the name `to` once every
// connection to it is closed, refusing while another is open or when a
// year of that name has appeared meanwhile; dropYearAside() removes it.
QString asideName(const ConnectionProfile &profile, const QString &year);
QString copyYearAside(const ConnectionProfile &profile, const QString &from, const QString &to,
                      const QString &serverPassword = QString(), const Progress &progress = {});
void finishYearAside(const ConnectionProfile &profile, const QString &to, const QString &serverPassword = QString());
void dropYearAside(const ConnectionProfile &profile, const QString &to, const QString &serverPassword = QString());

// Writes a full backup of `year` into `file` (a path this workstation
// sees). An existing file is refused unless `replaceFile` is set (the
// save dialogue has asked). The file is readable by its owner only.
void backupYear(const ConnectionProfile &profile, const QString &year, const QString &file,
                bool replaceFile = false, const QString &serverPassword = QString(),
                const Progress &progress = {});

// Makes the year `to` from the backup `file`. An existing `to` is refused
// unless `replaceYear` is set (the user answered the second question);
// then it is replaced only once the backup has been restored in full, and
// on a server only while no session is connected to it.
void restoreYear(const ConnectionProfile &profile, const QString &file, const QString &to, bool replaceYear = false,
                 const QString &serverPassword = QString(), const Progress &progress = {});

// What a file holds, by its first bytes.
enum class FileKind { Missing, Unreadable, Embedded, Server, Other };
FileKind fileKind(const QString &file);

// True when the year exists on the profile (without listing the others).
bool yearExists(const ConnectionProfile &profile, const QString &year, const QString &serverPassword = QString());

// The pg_dump or pg_restore program matching a server's major version:
// TESSEL_PG_BINDIR, the server packages' folder of that version, a newer
// one, else the one on the PATH. Empty when none is found.
QString serverTool(const QString &tool, int serverMajorVersion);

// The words of the backup command.
QString dialogTitle(const QString &year);    // "{year} (BACKUP) *AVOID SPACE IN BACKUP NAME"
QString fileFilter(const QString &year);     // "{year}(*.bak)"
QString cancelledMessage();                  // "Backup command cancelled, so backup not completed"
QString completedMessage();                  // "Congradulation, process of Backup has completed"
QString restoreQuestion(const QString &file, const QString &year);
QString replaceQuestion(const QString &year);
QString restoredMessage(const QString &year);

} // namespace YearBackup
