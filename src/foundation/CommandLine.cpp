#include "foundation/CommandLine.h"

#include <QTextStream>
#include <cstdio>
#include <termios.h>
#include <unistd.h>

namespace CommandLine {

QString promptPassword(const QString &prompt)
{
    QTextStream err(stderr);
    err << prompt << Qt::flush;
    const bool tty = isatty(STDIN_FILENO);
    termios old{};
    if (tty) {
        tcgetattr(STDIN_FILENO, &old);
        termios quiet = old;
        quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        tcsetattr(STDIN_FILENO, TCSANOW, &quiet);
    }
    QTextStream in(stdin);
    const QString line = in.readLine();
    if (tty) {
        tcsetattr(STDIN_FILENO, TCSANOW, &old);
        err << "\n" << Qt::flush;
    }
    return line;
}

bool resolveProfile(const QString &name, const QString &configPath, ConnectionProfile &out, QString &error)
{
    const AppSettings settings = AppSettings::load(configPath.isEmpty() ? AppSettings::defaultPath() : configPath);
    if (!settings.error.isEmpty()) {
        error = settings.error;
        return false;
    }
    if (name.isEmpty()) {
        out = settings.profiles.first();
        return true;
    }
    const ConnectionProfile *p = settings.profile(name);
    if (!p) {
        QStringList names;
        for (const ConnectionProfile &q : settings.profiles)
            names << q.name;
        error = QStringLiteral("There is no connection profile \"%1\" (the settings file %2 has: %3).")
                    .arg(name, settings.path, names.join(QStringLiteral(", ")));
        return false;
    }
    out = *p;
    if (out.isPostgres() && out.password.isEmpty() && out.askPassword)
        out.password = promptPassword(QStringLiteral("Password for %1: ").arg(out.user));
    return true;
}

} // namespace CommandLine
