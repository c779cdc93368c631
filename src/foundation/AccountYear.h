#pragma once

#include "foundation/ConnectionProfile.h"

#include <QDate>
#include <QStringList>
#include <stdexcept>

class SessionConnection;

// Account years: one database per year whose name begins with "Tessel".
// On the embedded store each is a file NAME.sqlite in the data folder; on
// a server, a database of that name.
namespace AccountYear {

class Error : public std::runtime_error
{
public:
    explicit Error(const QString &message) : std::runtime_error(message.toStdString()), m_message(message) {}
    QString message() const { return m_message; }
private:
    QString m_message;
};

// "Tessel" followed by letters, digits or underscores, at most 60 in all.
bool isValidName(const QString &name);

// The account years of a profile, ordered by name. Throws DbError when the
// server cannot be reached.
QStringList list(const ConnectionProfile &profile, const QString &password = QString());
bool exists(const ConnectionProfile &profile, const QString &name, const QString &password = QString());

struct CreateOptions
{
    QString adminUser = QStringLiteral("ADMIN");
    QString adminPassword;
    QDate closingDate;          // default: the day before the year the name carries, else yesterday
    QString serverPassword;     // for a server profile without a stored password
    QString companyName;        // letterhead of the year's reports
};

// Makes the year with the full schema and the rows the program cannot run
// without: the fixed accounts under their headings, the company row, the
// configuration row, the closing date and the administrator. Either all of
// it is made or nothing is left behind. Throws Error or DbError.
void create(const ConnectionProfile &profile, const QString &name, const CreateOptions &options);

// Removes a year (tests and failed creations). The name is checked like
// every other entry point's: nothing outside the data folder is touched.
void drop(const ConnectionProfile &profile, const QString &name, const QString &password = QString());

// Makes sure what the session wrote stands in the year itself: on the
// embedded store a checkpoint that must move every committed page from the
// write-ahead file into the year's file, then the store's integrity check.
// Throws Error when either fails. Nothing to do on a server.
void verifyWritten(SessionConnection &session);

// Year files (and their write-ahead and shared-memory files, which take
// the main file's permissions) are readable by their owner only.
void restrictToOwner(const QString &path);

// Writes the rows a new year needs into an open, schema-complete session.
void seed(SessionConnection &session, const CreateOptions &options, const QString &name);

// The default closing date for a year of this name: 31/12 of the year
// before the four digits in the name, or yesterday.
QDate defaultClosingDate(const QString &name);

} // namespace AccountYear
