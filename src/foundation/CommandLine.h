#pragma once

#include "foundation/ConnectionProfile.h"

#include <QString>
#include <QStringList>

// Helpers shared by the command-line tools.
namespace CommandLine {

// Reads a password from the terminal without echo (or a line of standard
// input when it is not a terminal).
QString promptPassword(const QString &prompt);

// The profile named on the command line ("" for the embedded store),
// asking for its password when the settings file leaves it out and the
// profile says to ask. Returns false with a message when there is no such
// profile.
bool resolveProfile(const QString &name, const QString &configPath, ConnectionProfile &out, QString &error);

} // namespace CommandLine
