#pragma once

#include <QList>
#include <QString>

// How to reach the account years: the embedded store (a folder of SQLite
// files) or a PostgreSQL server. Profiles are read from the settings file;
// nothing about hosts or passwords lives in the program.
struct ConnectionProfile
{
    enum class Kind { Embedded, PostgreSQL };

    QString name;
    Kind kind = Kind::Embedded;

    // Embedded: the folder holding one NAME.sqlite file per account year.
    QString dataDir;

    // PostgreSQL. An empty host, or a folder path, means the local socket
    // (peer authentication when no password is set).
    QString host;
    int port = 5432;
    QString user;
    QString password;          // may be empty: then it is asked for
    bool askPassword = false;  // ask at start-up even if empty is valid
    QString sslMode;           // disable, allow, prefer, require, verify-ca, verify-full (see isValidSslMode)
    QString maintenanceDatabase = QStringLiteral("postgres");
    int connectTimeoutSeconds = 5;

    bool isEmbedded() const { return kind == Kind::Embedded; }
    // The values the server driver knows for sslmode (and empty: its default).
    static bool isValidSslMode(const QString &mode);
    bool isPostgres() const { return kind == Kind::PostgreSQL; }

    // The embedded store at the default data folder (TESSEL_DATA_DIR, or
    // the platform's application-data folder).
    static ConnectionProfile embeddedDefault();
    static QString defaultDataDir();
};

// The settings file: profiles in the order the start-up screen offers them,
// the embedded store always first, plus the few program-wide settings.
class AppSettings
{
public:
    // TESSEL_CONFIG, else <config dir>/Tessel/tessel.ini.
    static QString defaultPath();
    static AppSettings load(const QString &path = defaultPath());

    QList<ConnectionProfile> profiles;
    QString designDir;   // a user's own report designs, overriding shipped ones
    QString path;
    // Why the file was refused: it holds a password that other users of the
    // computer can read, or a setting with a value the program does not
    // know. Empty when the file is fine. A refused file gives no profiles
    // but the embedded store.
    QString error;

    const ConnectionProfile *profile(const QString &name) const;

    // A user's own preference: line confirmations in the status bar
    // ("lineConfirmations=statusbar" in the group [user.NAME]).
    static bool lineConfirmationsInStatusBar(const QString &userName, const QString &path = defaultPath());
};
