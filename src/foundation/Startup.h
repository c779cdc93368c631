#pragma once

#include "foundation/ConnectionProfile.h"

#include <QDate>
#include <QString>

class SessionConnection;
struct Session;

// The steps of start-up that touch no widget: connecting to an account
// year, and the work of the main window's Load.
namespace Startup {

inline QString connectionFailedMessage() { return QStringLiteral("Connection not established, please check the server configuration."); }
inline QString noDatabaseMessage() { return QStringLiteral("Database not found, please select the required account year database."); }
inline QString configurationProblemMessage() { return QStringLiteral("Database configuration problem, please select the required database."); }
inline QString needsUpdateMessage() { return QStringLiteral("Your software needs some updates, Please update your software."); }
inline QString quitQuestion() { return QStringLiteral("Do you really want to Quit ..."); }

QString windowTitle(const QString &databaseName);

// What the settings file calls the place of a profile's account years:
// the data folder, or host and port of the server.
QString serverAddress(const ConnectionProfile &profile);

// Opens the account year into session().connection and fills the session's
// connection values. An account year stamped older than this program is
// brought up to date. Throws DbError (the session is left unconnected).
void connectDatabase(Session &s, const ConnectionProfile &profile, const QString &databaseName,
                     const QString &password = QString());

enum class Gate { Current, Upgraded, Newer };
// The stored stamp against this program's: a newer database is refused,
// an older one is upgraded in place.
Gate versionGate(SessionConnection &db, bool upgradeOlder = true);

// The zoom of the report viewer for a screen this many pixels wide:
// width in twips (15 per pixel) over 130, rounded.
int reportZoom(int screenWidthPixels);

// The letterhead the year was made with (tblTLClientInfo), into the session.
void loadCompany(Session &s);
// The main window's Load, past the title, in its order: writes the company name and
// address into tblTLClientInfo, sets Today, and sets WorkDate and
// FirstOpenDate from the closing date. Returns the version gate's answer
// (checked before the dates): on Newer the dates are not read.
Gate loadMainWindow(Session &s, const QDate &today, int screenWidthPixels);

} // namespace Startup
