#include "foundation/ConnectionProfile.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QStandardPaths>

QString ConnectionProfile::defaultDataDir()
{
    const QByteArray env = qgetenv("TESSEL_DATA_DIR");
    if (!env.isEmpty())
        return QString::fromLocal8Bit(env);
    QString base = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (base.isEmpty())
        base = QDir::homePath() + QStringLiteral("/.local/share");
    return base + QStringLiteral("/Tessel");
}

ConnectionProfile ConnectionProfile::embeddedDefault()
{
    ConnectionProfile p;
    p.name = QStringLiteral("EMBEDDED");
    p.kind = Kind::Embedded;
    p.dataDir = defaultDataDir();
    return p;
}

QString AppSettings::defaultPath()
{
    const QByteArray env = qgetenv("TESSEL_CONFIG");
    if (!env.isEmpty())
        return QString::fromLocal8Bit(env);
    QString base = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    if (base.isEmpty())
        base = QDir::homePath() + QStringLiteral("/.config");
    return base + QStringLiteral("/Tessel/tessel.ini");
}

bool ConnectionProfile::isValidSslMode(const QString &mode)
{
    static const QStringList known = {QStringLiteral("disable"), QStringLiteral("allow"), QStringLiteral("prefer"),
                                      QStringLiteral("require"), QStringLiteral("verify-ca"),
                                      QStringLiteral("verify-full")};
    return mode.isEmpty() || known.contains(mode);
}

bool AppSettings::lineConfirmationsInStatusBar(const QString &userName, const QString &path)
{
    if (path.isEmpty() || !QFile::exists(path))
        return false;
    QSettings ini(path, QSettings::IniFormat);
    return ini.value(QStringLiteral("user.") + userName.trimmed() + QStringLiteral("/lineConfirmations"))
               .toString()
               .trimmed()
               .compare(QLatin1String("statusbar"), Qt::CaseInsensitive)
        == 0;
}

AppSettings AppSettings::load(const QString &path)
{
    AppSettings s;
    s.path = path;
    ConnectionProfile embedded = ConnectionProfile::embeddedDefault();
    const auto refuse = [&](const QString &why) {
        AppSettings refused;
        refused.path = path;
        refused.error = why;
        refused.profiles.append(ConnectionProfile::embeddedDefault());
        return refused;
    };

    if (!path.isEmpty() && QFile::exists(path)) {
        QSettings ini(path, QSettings::IniFormat);
        s.designDir = ini.value(QStringLiteral("designDir")).toString();
        if (ini.contains(QStringLiteral("dataDir")) && qEnvironmentVariableIsEmpty("TESSEL_DATA_DIR"))
            embedded.dataDir = ini.value(QStringLiteral("dataDir")).toString();
        const QStringList names = ini.value(QStringLiteral("profiles")).toStringList();
        for (const QString &rawName : names) {
            const QString name = rawName.trimmed();
            if (name.isEmpty())
                continue;
            ini.beginGroup(name);
            ConnectionProfile p;
            p.name = name;
            const QString type = ini.value(QStringLiteral("type"), QStringLiteral("postgres")).toString().toLower();
            if (type == QLatin1String("sqlite") || type == QLatin1String("embedded")) {
                p.kind = ConnectionProfile::Kind::Embedded;
                p.dataDir = ini.value(QStringLiteral("dataDir"), embedded.dataDir).toString();
            } else {
                p.kind = ConnectionProfile::Kind::PostgreSQL;
                p.host = ini.value(QStringLiteral("host")).toString();
                p.port = ini.value(QStringLiteral("port"), 5432).toInt();
                p.user = ini.value(QStringLiteral("user")).toString();
                p.password = ini.value(QStringLiteral("password")).toString();
                p.askPassword = ini.value(QStringLiteral("askPassword"), false).toBool();
                p.sslMode = ini.value(QStringLiteral("sslmode")).toString().trimmed();
                if (!ConnectionProfile::isValidSslMode(p.sslMode))
                    return refuse(QStringLiteral("The settings file %1 gives the profile %2 the sslmode \"%3\"; it must be "
                                                 "one of disable, allow, prefer, require, verify-ca, verify-full.")
                                      .arg(QDir::toNativeSeparators(path), name, p.sslMode));
                p.maintenanceDatabase = ini.value(QStringLiteral("maintenanceDatabase"), QStringLiteral("postgres")).toString();
                p.connectTimeoutSeconds = ini.value(QStringLiteral("connectTimeout"), 5).toInt();
            }
            ini.endGroup();
            if (p.isEmbedded() && p.name.compare(embedded.name, Qt::CaseInsensitive) == 0) {
                embedded = p;
                continue;
            }
            s.profiles.append(p);
        }
        bool holdsPassword = false;
        for (const ConnectionProfile &p : s.profiles)
            holdsPassword = holdsPassword || !p.password.isEmpty();
        const QFileDevice::Permissions others = QFileDevice::ReadGroup | QFileDevice::ReadOther;
        if (holdsPassword && (QFile::permissions(path) & others))
            return refuse(QStringLiteral("The settings file %1 holds a password and other users of this computer can "
                                         "read it. Make it readable by you alone (chmod 600 %1) and start again.")
                              .arg(QDir::toNativeSeparators(path)));
    }
    s.profiles.prepend(embedded);
    return s;
}

const ConnectionProfile *AppSettings::profile(const QString &name) const
{
    for (const ConnectionProfile &p : profiles)
        if (p.name.compare(name, Qt::CaseInsensitive) == 0)
            return &p;
    return nullptr;
}
