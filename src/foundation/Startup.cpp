#include "foundation/Startup.h"

#include "foundation/Lookups.h"
#include "foundation/Schema.h"
#include "foundation/Session.h"
#include "foundation/SessionConnection.h"

#include <cmath>

namespace Startup {

QString windowTitle(const QString &databaseName)
{
    return QStringLiteral("Tessel Business Suite ( %1 )").arg(databaseName);
}

QString serverAddress(const ConnectionProfile &profile)
{
    if (profile.isEmbedded())
        return profile.dataDir;
    const QString host = profile.host.isEmpty() ? QStringLiteral("localhost") : profile.host;
    return host + QLatin1Char(':') + QString::number(profile.port);
}

Gate versionGate(SessionConnection &db, bool upgradeOlder)
{
    switch (Schema::compareStamp(Schema::storedStamp(db))) {
    case Schema::VersionCheck::Newer:
        return Gate::Newer;
    case Schema::VersionCheck::Older:
        if (upgradeOlder && !db.isReadOnly())
            Schema::ensure(db);
        return Gate::Upgraded;
    case Schema::VersionCheck::Current:
        break;
    }
    return Gate::Current;
}

void connectDatabase(Session &s, const ConnectionProfile &profile, const QString &databaseName,
                     const QString &password)
{
    s.connectOk = false;
    s.connection.reset();
    SessionConnection::OpenOptions options;
    options.password = password;
    std::unique_ptr<SessionConnection> db = SessionConnection::open(profile, databaseName, options);
    versionGate(*db, true);
    Schema::ensureStatistics(*db);
    s.connection = std::move(db);
    s.profileName = profile.name;
    s.serverAddress = serverAddress(profile);
    s.databaseName = databaseName;
    s.windowTitle = windowTitle(databaseName);
    s.connectOk = true;
}

int reportZoom(int screenWidthPixels)
{
    return int(std::lround(screenWidthPixels * 15 / 130.0));
}

void loadCompany(Session &s)
{
    const auto row = s.db().selectOne(QStringLiteral(
        "SELECT TLClientName, TLClientAddress, TLClientPhone, TLClientEmail, TLClientSaleTaxNo, TLClientNTN "
        "FROM tblTLClientInfo"));
    if (!row)
        return;
    s.companyName = row->text(0);
    s.companyAddress = row->text(1);
    s.companyPhone = row->text(2);
    s.companyEmail = row->text(3);
    s.companySaleTaxNo = row->text(4);
    s.companyNTN = row->text(5);
}

Gate loadMainWindow(Session &s, const QDate &today, int screenWidthPixels)
{
    SessionConnection &db = s.db();
    if (!db.isReadOnly()) { // an archived copy is only read
        Transaction tx(db);
        db.execute(QStringLiteral("UPDATE tblTLClientInfo SET TLClientName = ?, TLClientAddress = ?"),
                   {s.companyName, s.companyAddress});
        tx.commit();
    }
    s.reportZoom = reportZoom(screenWidthPixels);
    s.today = today;
    const Gate gate = versionGate(db, false);
    if (gate == Gate::Newer)
        return gate;
    if (const auto closing = Lookups::closingDate(db)) {
        s.workDate = closing->addDays(1);
        s.firstOpenDate = s.workDate;
    }
    return gate;
}

} // namespace Startup
