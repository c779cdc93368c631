#include "foundation/AccountYear.h"
#include "foundation/PasswordHash.h"
#include "foundation/Schema.h"
#include "foundation/SessionConnection.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace AccountYear {

bool isValidName(const QString &name)
{
    static const QRegularExpression re(QStringLiteral("^Tessel[A-Za-z0-9_]{0,54}$"));
    return re.match(name).hasMatch();
}

QStringList list(const ConnectionProfile &profile, const QString &password)
{
    QStringList names;
    if (profile.isEmbedded()) {
        QDir dir(profile.dataDir);
        for (const QString &f : dir.entryList({QStringLiteral("Tessel*.sqlite")}, QDir::Files, QDir::Name)) {
            const QString name = f.chopped(7);
            if (isValidName(name))
                names << name;
        }
        names.sort();
        return names;
    }
    auto s = SessionConnection::openMaintenance(profile, password);
    for (const Row &r : s->select(QStringLiteral("SELECT datname FROM pg_database WHERE datname LIKE ? "
                                                 "AND NOT datistemplate ORDER BY datname"),
                                  {QStringLiteral("Tessel%")}))
        names << r.text(0);
    return names;
}

bool exists(const ConnectionProfile &profile, const QString &name, const QString &password)
{
    return list(profile, password).contains(name);
}

QDate defaultClosingDate(const QString &name)
{
    static const QRegularExpression year(QStringLiteral("(19|20|21)\\d\\d"));
    const auto m = year.match(name);
    if (m.hasMatch())
        return QDate(m.captured(0).toInt() - 1, 12, 31);
    return QDate::currentDate().addDays(-1);
}

namespace {

struct Account { const char *code; const char *name; };

// The headings and fixed accounts every year must hold: cash, the sales
// account of invoices, the income account of other services and the
// profit and loss account that end-year processing carries forward.
const Account kFixedAccounts[] = {
    {"19-00-000", "CURRENT ASSETS"},
    {"19-10-000", "CASH AND BANK"},
    {"19-10-001", "CASH IN HAND"},
    {"20-00-000", "TRADING AND PROFIT AND LOSS"},
    {"20-01-000", "CAPITAL AND RESERVES"},
    {"20-01-001", "PROFIT AND LOSS ACCOUNT"},
    {"20-10-000", "INCOME"},
    {"20-10-001", "OTHER SERVICES INCOM"},
    {"20-10-002", "INVOICE BALANCE"},
};

QString quotedIdentifier(const QString &name)
{
    // Only names that passed isValidName() reach here: letters, digits, "_".
    return QLatin1Char('"') + name + QLatin1Char('"');
}

} // namespace

void seed(SessionConnection &s, const CreateOptions &o, const QString &name)
{
    Transaction tx(s);
    const QDate today = QDate::currentDate();
    const QString admin = o.adminUser.trimmed().isEmpty() ? QStringLiteral("ADMIN") : o.adminUser.trimmed().toUpper();
    for (const Account &a : kFixedAccounts) {
        s.execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName, PartyAddress, PartyPhone, PartyFax, "
                                 "PartyEmail, PartyDesc, PartySaleTaxNo, PartyNTN, CareOf, DueDays, UserName, EntryDate) "
                                 "VALUES (?, ?, '', '', '', '', '', '', '', '', 0, ?, ?)"),
                  {QString::fromLatin1(a.code), QString::fromLatin1(a.name), admin, today});
    }
    s.execute(QStringLiteral("INSERT INTO tblTLClientInfo (TLClientName, TLClientAddress, TLClientPhone, TLClientEmail, "
                             "TLClientSaleTaxNo, TLClientNTN, SDate, EDate, InvoiceNo, VoucherNo, PartyCode, PartyName) "
                             "VALUES (?, '', '', '', '', '', ?, ?, 0, 0, '', '')"),
              {o.companyName, QDate(1900, 1, 1), today});
    const QDate closing = o.closingDate.isValid() ? o.closingDate : defaultClosingDate(name);
    s.execute(QStringLiteral("INSERT INTO tblClosingDate (ClosingDate) VALUES (?)"), {closing});
    s.execute(QStringLiteral("INSERT INTO tblLogon (UserName, Password, UserType) VALUES (?, ?, ?)"),
              {admin, PasswordHash::hash(o.adminPassword), QStringLiteral("ADMINISTRATOR")});
    tx.commit();
}

void verifyWritten(SessionConnection &s)
{
    if (!s.isSQLite())
        return;
    const auto cp = s.selectOne(QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE)"));
    // busy, frames in the log, frames moved into the file
    if (cp && (cp->integer(0) != 0 || cp->integer(1) != cp->integer(2)))
        throw Error(QStringLiteral("The account year %1 could not be written out in full (the checkpoint moved %2 "
                                   "of %3 pages).").arg(s.databaseName()).arg(cp->integer(2)).arg(cp->integer(1)));
    const QueryResult check = s.select(QStringLiteral("PRAGMA integrity_check"));
    if (check.size() != 1 || check.first().text(0) != QLatin1String("ok"))
        throw Error(QStringLiteral("The account year %1 failed the integrity check: %2")
                        .arg(s.databaseName(), check.isEmpty() ? QString() : check.first().text(0)));
}

void restrictToOwner(const QString &path)
{
    QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}

void create(const ConnectionProfile &profile, const QString &name, const CreateOptions &o)
{
    if (!isValidName(name))
        throw Error(QStringLiteral("\"%1\" is not an account-year name: it must begin with \"Tessel\" and hold only "
                                   "letters, digits and underscores.").arg(name));
    if (o.adminPassword.isEmpty())
        throw Error(QStringLiteral("The administrator needs a password."));

    if (profile.isEmbedded()) {
        QDir dir(profile.dataDir);
        if (!dir.exists()) {
            if (!QDir().mkpath(profile.dataDir))
                throw Error(QStringLiteral("The data folder %1 cannot be made.").arg(QDir::toNativeSeparators(profile.dataDir)));
            QFile::setPermissions(profile.dataDir, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        }
        const QString target = dir.filePath(name + QStringLiteral(".sqlite"));
        if (QFile::exists(target))
            throw Error(QStringLiteral("The account year %1 already exists.").arg(name));
        // Built under a working name and renamed at the end, so that a failed
        // creation leaves no file that looks like an account year.
        const QString work = name + QStringLiteral(".creating");
        const QString workFile = dir.filePath(work + QStringLiteral(".sqlite"));
        auto removeWork = [&] {
            for (const QString &suffix : {QString(), QStringLiteral("-wal"), QStringLiteral("-shm"), QStringLiteral("-journal")})
                QFile::remove(workFile + suffix);
        };
        removeWork();
        {
            QFile f(workFile);
            if (!f.open(QIODevice::WriteOnly))
                throw Error(QStringLiteral("The file %1 cannot be written.").arg(QDir::toNativeSeparators(workFile)));
        }
        restrictToOwner(workFile);
        try {
            {
                auto s = SessionConnection::open(profile, work);
                Schema::ensure(*s);
                seed(*s, o, name);
                verifyWritten(*s);
            }
            // Closed: the write-ahead file must hold nothing the year needs.
            if (QFileInfo(workFile + QStringLiteral("-wal")).size() > 0)
                throw Error(QStringLiteral("The account year %1 could not be written out in full.").arg(name));
        } catch (...) {
            removeWork();
            throw;
        }
        for (const QString &suffix : {QStringLiteral("-wal"), QStringLiteral("-shm")})
            QFile::remove(workFile + suffix);
        if (!QFile::rename(workFile, target)) {
            removeWork();
            throw Error(QStringLiteral("The file %1 cannot be written.").arg(QDir::toNativeSeparators(target)));
        }
        return;
    }

    auto admin = SessionConnection::openMaintenance(profile, o.serverPassword);
    if (admin->scalar(QStringLiteral("SELECT 1 FROM pg_database WHERE datname = ?"), {name}).isValid())
        throw Error(QStringLiteral("The account year %1 already exists.").arg(name));
    admin->execute(QStringLiteral("CREATE DATABASE ") + quotedIdentifier(name)
                   + QStringLiteral(" TEMPLATE template0 ENCODING 'UTF8'"));
    try {
        SessionConnection::OpenOptions opts;
        opts.password = o.serverPassword;
        auto s = SessionConnection::open(profile, name, opts);
        Schema::ensure(*s);
        seed(*s, o, name);
        verifyWritten(*s);
    } catch (...) {
        try {
            admin->execute(QStringLiteral("DROP DATABASE IF EXISTS ") + quotedIdentifier(name));
        } catch (...) {
        }
        throw;
    }
}

void drop(const ConnectionProfile &profile, const QString &name, const QString &password)
{
    const QString creating = QStringLiteral(".creating");
    if (!isValidName(name) && !(name.endsWith(creating) && isValidName(name.chopped(creating.size()))))
        throw Error(QStringLiteral("\"%1\" is not an account-year name.").arg(name));
    if (profile.isEmbedded()) {
        const QString file = QDir(profile.dataDir).filePath(name + QStringLiteral(".sqlite"));
        for (const QString &suffix : {QString(), QStringLiteral("-wal"), QStringLiteral("-shm"), QStringLiteral("-journal")})
            QFile::remove(file + suffix);
        return;
    }
    auto admin = SessionConnection::openMaintenance(profile, password);
    admin->execute(QStringLiteral("DROP DATABASE IF EXISTS ") + quotedIdentifier(name) + QStringLiteral(" WITH (FORCE)"));
}

} // namespace AccountYear
