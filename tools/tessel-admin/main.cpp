// tessel-admin: lists, creates, upgrades and removes account years.
#include "admin/BooksCheck.h"
#include "admin/NewYear.h"
#include "admin/UserAccounts.h"
#include "admin/YearBackup.h"
#include "foundation/AccountYear.h"
#include "foundation/CommandLine.h"
#include "foundation/Schema.h"
#include "foundation/SessionConnection.h"
#include "vouchers/DemoGenerator.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>
#include <QTextStream>
#include <functional>
#include <memory>

namespace {

int fail(const QString &message, int code = 1)
{
    QTextStream(stderr) << "tessel-admin: " << message << "\n";
    return code;
}

// The password of --password: "-" reads a line of standard input, and no
// value at all asks for it (standard input when it is not a terminal). A
// password on the command line is seen by every user of the machine.
QString passwordFrom(const QCommandLineParser &parser, const QCommandLineOption &option, const QString &user)
{
    if (parser.isSet(option) && parser.value(option) != QLatin1String("-"))
        return parser.value(option);
    if (parser.isSet(option))
        return QTextStream(stdin).readLine();
    return CommandLine::promptPassword(QStringLiteral("Password for %1: ").arg(user));
}

// demo NAME --rows N: a new account year filled with a press's accounts
// and a year of vouchers.
int demoCommand(const ConnectionProfile &profile, const QString &name, const QString &password, qint64 rows,
                quint32 seed, const QString &company)
{
    if (rows < 1)
        return fail(QStringLiteral("--rows must be a positive number."), 2);
    DemoOptions d;
    d.rows = rows;
    d.seed = seed;
    d.to = QDate::currentDate();
    d.from = d.to.addDays(-364);
    AccountYear::CreateOptions o;
    o.adminPassword = password;
    o.companyName = company.isEmpty() ? QStringLiteral("TESSEL DEMO PRESS") : company;
    o.closingDate = d.from.addDays(-1); // the demonstration year is open from its first day
    AccountYear::create(profile, name, o);
    try {
        auto s = SessionConnection::open(profile, name);
        DemoGenerator g(*s, d);
        g.addStandardParts();
        const DemoSummary sum = g.run();
        AccountYear::verifyWritten(*s);
        QTextStream(stdout) << "Created " << name << " on " << profile.name << ": " << sum.accounts << " accounts, "
                            << sum.vouchers << " vouchers, " << sum.ledgerRows << " ledger rows from "
                            << d.from.toString(QStringLiteral("dd/MM/yyyy")) << " to "
                            << d.to.toString(QStringLiteral("dd/MM/yyyy")) << " in "
                            << QString::number(sum.milliseconds / 1000.0, 'f', 1) << " s.\n";
    } catch (...) {
        try {
            AccountYear::drop(profile, name);
        } catch (...) {
        }
        throw;
    }
    return 0;
}

// users NAME: the users of a year, one a line.
int usersCommand(const ConnectionProfile &profile, const QString &name)
{
    auto s = SessionConnection::open(profile, name);
    QTextStream out(stdout);
    for (const UserAccounts::User &u : UserAccounts::list(*s)) {
        const QString last = u.lastLogOn.isValid()
            ? u.lastLogOn.toLocalTime().toString(QStringLiteral("dd/MM/yyyy hh:mm"))
            : QStringLiteral("never");
        out << u.name.leftJustified(20) << " " << u.type.leftJustified(14) << " last log-on " << last
            << (u.locked ? QStringLiteral("  locked") : QString()) << "\n";
    }
    return 0;
}

// user NAME add|passwd|lock|unlock USER: the same rules as the user
// screens, given by an administrator.
int userCommand(const ConnectionProfile &profile, const QString &name, const QString &action, const QString &user,
                const QString &typeOption, const std::function<QString()> &password)
{
    const UserAccounts::Actor admin{QStringLiteral("tessel-admin"), UserAccounts::administrator()};
    const QString who = user.trimmed().toUpper();
    Outcome r;
    if (action == QLatin1String("add")) {
        QString type = typeOption.trimmed().toUpper();
        if (type.isEmpty() || type == QLatin1String("COMMON") || type == UserAccounts::commonUser())
            type = UserAccounts::commonUser();
        else if (type == QLatin1String("ADMIN") || type == UserAccounts::administrator())
            type = UserAccounts::administrator();
        else
            return fail(QStringLiteral("--type must be administrator or common."), 2);
        const QString pass = password();
        auto s = SessionConnection::open(profile, name);
        r = UserAccounts::createUser(*s, admin, who, pass, type);
    } else if (action == QLatin1String("passwd")) {
        const QString pass = password();
        auto s = SessionConnection::open(profile, name);
        r = UserAccounts::changePassword(*s, admin, who, QString(), pass, pass);
    } else if (action == QLatin1String("lock") || action == QLatin1String("unlock")) {
        auto s = SessionConnection::open(profile, name);
        r = UserAccounts::setLocked(*s, admin, who, action == QLatin1String("lock"));
    } else {
        return fail(QStringLiteral("unknown user action \"%1\": add, passwd, lock or unlock.").arg(action), 2);
    }
    if (!r.ok)
        return fail(r.message, 1);
    QTextStream(stdout) << who << ": " << r.message << ".\n";
    return 0;
}

// The progress of a long copy on standard error, every tenth.
YearBackup::Progress progressOnStderr()
{
    auto shown = std::make_shared<int>(-1);
    return [shown](int percent, const QString &) {
        if (percent / 10 == *shown / 10 && percent != 100)
            return;
        if (percent == 100 && *shown == 100)
            return;
        *shown = percent;
        QTextStream(stderr) << percent << "%" << (percent == 100 ? "\n" : " ") << Qt::flush;
    };
}

// backup NAME --out FILE: the year into a backup file.
int backupCommand(const ConnectionProfile &profile, const QString &name, const QString &file, bool replace)
{
    if (file.isEmpty())
        return fail(YearBackup::cancelledMessage() + QStringLiteral(": --out FILE names the backup file."), 2);
    if (QFileInfo::exists(file) && !replace)
        return fail(QStringLiteral("The file %1 already exists (--yes replaces it).").arg(file), 1);
    YearBackup::backupYear(profile, name, file, replace, QString(), progressOnStderr());
    QTextStream(stdout) << YearBackup::completedMessage() << ": " << name << " into " << file << ".\n";
    return 0;
}

// restore NAME --from FILE: a backup file into the year NAME. An existing
// year is replaced only when its name is typed again (or with --yes).
int restoreCommand(const ConnectionProfile &profile, const QString &name, const QString &file, bool yes)
{
    if (file.isEmpty())
        return fail(QStringLiteral("restore needs the backup file: --from FILE."), 2);
    const bool exists = YearBackup::yearExists(profile, name);
    if (exists && !yes) {
        const QString answer = CommandLine::promptPassword(
            QStringLiteral("%1\nType the name %2 to replace it: ").arg(YearBackup::replaceQuestion(name), name));
        if (answer.trimmed() != name)
            return fail(QStringLiteral("nothing was restored."), 1);
    }
    YearBackup::restoreYear(profile, file, name, exists, QString(), progressOnStderr());
    QTextStream(stdout) << YearBackup::restoredMessage(name) << "\n";
    return 0;
}

// check NAME: the books check; each fault a line, exit status 3 when
// there is one.
int checkCommand(const ConnectionProfile &profile, const QString &name)
{
    auto s = SessionConnection::open(profile, name);
    const BooksCheck::Result r = BooksCheck::run(*s);
    QTextStream out(stdout);
    for (const BooksCheck::Fault &f : r.faults) {
        out << BooksCheck::kindName(f.kind).leftJustified(19) << " " << f.document().leftJustified(34) << " "
            << f.account.leftJustified(9) << " " << f.text << "\n";
    }
    if (r.truncated > 0)
        out << "... and " << r.truncated << " more faults not listed.\n";
    const int count = r.faults.size() + r.truncated;
    out << name << ": " << (count == 0 ? QStringLiteral("the books are whole")
                        : count == 1 ? QStringLiteral("1 fault") : QStringLiteral("%1 faults").arg(count))
        << " (" << r.checked.size() << " checks in " << QString::number(r.milliseconds / 1000.0, 'f', 1) << " s).\n";
    return count == 0 ? 0 : 3;
}

// new-year NAME --to NEXT --from DD/MM/YYYY: the next year as a copy of
// NAME cut to the rows from its first day on, and the carry compared
// account by account.
int newYearCommand(const ConnectionProfile &profile, const QString &name, const QString &to, const QString &from,
                   bool carryProfit, bool listAll)
{
    NewYear::Request r;
    r.fromYear = name;
    r.toYear = to.isEmpty() ? NewYear::proposedName(name) : to;
    r.start = QDate::fromString(from, QStringLiteral("dd/MM/yyyy"));
    if (!r.start.isValid())
        return fail(QStringLiteral("--from must be the new year's first day, a real date written dd/mm/yyyy."), 2);
    r.carryProfit = carryProfit;
    r.user = QStringLiteral("tessel-admin");
    r.today = QDate::currentDate();
    QTextStream err(stderr);
    NewYear::Result result;
    const Outcome out = NewYear::make(profile, r, result, [&](int percent, const QString &what) {
        err << QStringLiteral("%1% %2").arg(percent, 3).arg(what) << "\n";
        err.flush();
    });
    if (!out.ok)
        return fail(out.message, 1);
    QTextStream o(stdout);
    o << QStringLiteral("%1 %2 %3 %4 %5\n")
             .arg(QStringLiteral("CODE").leftJustified(10), QStringLiteral("ACCOUNT").leftJustified(30),
                  QStringLiteral("CLOSING").rightJustified(18), QStringLiteral("OPENING").rightJustified(18),
                  QStringLiteral("DIFFERENCE").rightJustified(18));
    for (const NewYear::CarryLine &l : result.lines) {
        if (!listAll && l.difference().isZero())
            continue;
        o << QStringLiteral("%1 %2 %3 %4 %5\n")
                 .arg(l.code.leftJustified(10), l.name.left(30).leftJustified(30),
                      l.closing.toDisplayString().rightJustified(18), l.opening.toDisplayString().rightJustified(18),
                      l.difference().toDisplayString().rightJustified(18));
    }
    o << QStringLiteral("%1 %2 %3\n")
             .arg(QStringLiteral("TOTAL").leftJustified(41), result.closingTotal.toDisplayString().rightJustified(18),
                  result.openingTotal.toDisplayString().rightJustified(18));
    o << out.message << "\n";
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tessel-admin"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TESSEL_VERSION));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Account years of Tessel.\n\n"
        "Commands:\n"
        "  list                 the account years of the profile\n"
        "  create NAME          a new account year with its fixed accounts and administrator\n"
        "  upgrade NAME         bring an older account year's schema up to date\n"
        "  drop NAME            remove an account year for good\n"
        "  backup NAME --out FILE      a full backup of an account year into FILE (--yes replaces a file)\n"
        "  restore NAME --from FILE    the backup FILE made into the account year NAME\n"
        "  demo NAME            a new account year filled with demonstration accounts and vouchers\n"
        "  users NAME           the users of an account year: type, last log-on, locked\n"
        "  user NAME add USER   a new user (--type administrator|common, common when left out)\n"
        "  user NAME passwd USER   sets a user's password\n"
        "  user NAME lock USER  keeps a user from logging on; unlock lets him in again\n"
        "  check NAME           checks the books whole: each fault a line, exit status 3 when there is one\n"
        "  new-year NAME --to NEXT --from DD/MM/YYYY   the next year: a copy of NAME from that day on, with the\n"
        "                       balances before it carried into opening rows (--profit-and-loss also carries the\n"
        "                       result to 20-01-001; --all lists every account, not only differences)\n"
        "The password of add and passwd is asked, or read from standard input with --password -."));
    parser.addHelpOption();
    parser.addVersionOption();
    QCommandLineOption profileOpt(QStringLiteral("profile"), QStringLiteral("Connection profile (default: the embedded store)."), QStringLiteral("name"));
    QCommandLineOption configOpt(QStringLiteral("config"), QStringLiteral("Settings file (default: TESSEL_CONFIG or the user's config folder)."), QStringLiteral("file"));
    QCommandLineOption userOpt(QStringLiteral("user"), QStringLiteral("Administrator of a new year (default ADMIN)."), QStringLiteral("name"), QStringLiteral("ADMIN"));
    QCommandLineOption passwordOpt(QStringLiteral("password"), QStringLiteral("Administrator's password: \"-\" reads it from standard input; asked when left out."), QStringLiteral("password"));
    QCommandLineOption closingOpt(QStringLiteral("closing-date"), QStringLiteral("Closing date of a new year, dd/mm/yyyy."), QStringLiteral("date"));
    QCommandLineOption companyOpt(QStringLiteral("company"), QStringLiteral("Company name for the reports' letterhead."), QStringLiteral("name"));
    QCommandLineOption yesOpt(QStringLiteral("yes"), QStringLiteral("Do not ask before dropping."));
    QCommandLineOption rowsOpt(QStringLiteral("rows"), QStringLiteral("Ledger rows a demo year aims at (default 400)."), QStringLiteral("n"), QStringLiteral("400"));
    QCommandLineOption seedOpt(QStringLiteral("seed"), QStringLiteral("Random seed of a demo year."), QStringLiteral("n"), QStringLiteral("2026"));
    QCommandLineOption typeOpt(QStringLiteral("type"), QStringLiteral("Type of a new user: administrator or common."), QStringLiteral("type"));
    parser.addOptions({profileOpt, configOpt, userOpt, passwordOpt, closingOpt, companyOpt, yesOpt, rowsOpt, seedOpt, typeOpt});
    QCommandLineOption outOpt(QStringLiteral("out"), QStringLiteral("backup: the backup file to write."), QStringLiteral("file"));
    QCommandLineOption fromOpt(QStringLiteral("from"),
                               QStringLiteral("restore: the backup file to read; new-year: the new year's first day, dd/mm/yyyy."),
                               QStringLiteral("file|date"));
    parser.addOptions({outOpt, fromOpt});
    QCommandLineOption newYearToOpt(QStringLiteral("to"), QStringLiteral("Name of the new year (new-year; default: the next number)."), QStringLiteral("name"));
    QCommandLineOption carryProfitOpt(QStringLiteral("profit-and-loss"), QStringLiteral("Also carry the result to 20-01-001 (new-year)."));
    QCommandLineOption listAllOpt(QStringLiteral("all"), QStringLiteral("List every account's carry (new-year)."));
    parser.addOptions({newYearToOpt, carryProfitOpt, listAllOpt});
    parser.addPositionalArgument(QStringLiteral("command"), QStringLiteral("list, create, upgrade, drop, demo, users or user"));
    parser.addPositionalArgument(QStringLiteral("name"), QStringLiteral("Account-year name, beginning with Tessel"), QStringLiteral("[name]"));
    parser.process(app);

    const QStringList args = parser.positionalArguments();
    if (args.isEmpty())
        return fail(QStringLiteral("a command is needed: list, create, upgrade, drop, demo, users or user (see --help)."), 2);
    const QString command = args.at(0);

    ConnectionProfile profile;
    QString error;
    if (!CommandLine::resolveProfile(parser.value(profileOpt), parser.value(configOpt), profile, error))
        return fail(error, 2);

    try {
        if (command == QLatin1String("list")) {
            QTextStream out(stdout);
            for (const QString &name : AccountYear::list(profile))
                out << name << "\n";
            return 0;
        }
        if (args.size() < 2)
            return fail(QStringLiteral("%1 needs the account-year name.").arg(command), 2);
        const QString name = args.at(1);
        if (!AccountYear::isValidName(name))
            return fail(QStringLiteral("\"%1\" is not an account-year name: it must begin with \"Tessel\" and hold "
                                       "only letters, digits and underscores.").arg(name), 2);

        if (command == QLatin1String("users"))
            return usersCommand(profile, name);
        if (command == QLatin1String("check"))
            return checkCommand(profile, name);
        if (command == QLatin1String("user")) {
            if (args.size() < 4)
                return fail(QStringLiteral("user needs the account-year name, an action (add, passwd, lock, unlock) "
                                           "and the user's name."), 2);
            return userCommand(profile, name, args.at(2), args.at(3), parser.value(typeOpt),
                               [&] { return passwordFrom(parser, passwordOpt, args.at(3).toUpper()); });
        }
        if (command == QLatin1String("create")) {
            AccountYear::CreateOptions o;
            o.adminUser = parser.value(userOpt);
            o.companyName = parser.value(companyOpt);
            o.adminPassword = passwordFrom(parser, passwordOpt, o.adminUser);
            if (parser.isSet(closingOpt)) {
                o.closingDate = QDate::fromString(parser.value(closingOpt), QStringLiteral("dd/MM/yyyy"));
                if (!o.closingDate.isValid())
                    return fail(QStringLiteral("the closing date must be a real date written dd/mm/yyyy."), 2);
            }
            AccountYear::create(profile, name, o);
            QTextStream(stdout) << "Created " << name << " on " << profile.name << ".\n";
            return 0;
        }
        if (command == QLatin1String("demo")) {
            const QString password = passwordFrom(parser, passwordOpt, QStringLiteral("ADMIN"));
            return demoCommand(profile, name, password, parser.value(rowsOpt).toLongLong(),
                               parser.value(seedOpt).toUInt(), parser.value(companyOpt));
        }
        if (command == QLatin1String("new-year"))
            return newYearCommand(profile, name, parser.value(newYearToOpt), parser.value(fromOpt),
                                  parser.isSet(carryProfitOpt), parser.isSet(listAllOpt));
        if (command == QLatin1String("upgrade")) {
            auto s = SessionConnection::open(profile, name);
            const QString stamp = Schema::storedStamp(*s);
            if (Schema::compareStamp(stamp) == Schema::VersionCheck::Newer)
                return fail(QStringLiteral("%1 was made by a newer program (schema %2, this program %3).")
                                .arg(name, stamp, QString::fromLatin1(Schema::kStamp)), 1);
            Schema::ensure(*s);
            AccountYear::verifyWritten(*s);
            QTextStream(stdout) << name << " is up to date (schema " << Schema::kStamp << ").\n";
            return 0;
        }
        if (command == QLatin1String("backup"))
            return backupCommand(profile, name, parser.value(outOpt), parser.isSet(yesOpt));
        if (command == QLatin1String("restore"))
            return restoreCommand(profile, name, parser.value(fromOpt), parser.isSet(yesOpt));
        if (command == QLatin1String("drop")) {
            if (!AccountYear::exists(profile, name))
                return fail(QStringLiteral("there is no account year %1 on %2.").arg(name, profile.name), 1);
            if (!parser.isSet(yesOpt)) {
                const QString answer = CommandLine::promptPassword(
                    QStringLiteral("Type the name %1 to remove it for good: ").arg(name));
                if (answer.trimmed() != name)
                    return fail(QStringLiteral("nothing was removed."), 1);
            }
            AccountYear::drop(profile, name);
            QTextStream(stdout) << "Removed " << name << ".\n";
            return 0;
        }
        return fail(QStringLiteral("unknown command \"%1\" (see --help).").arg(command), 2);
    } catch (const AccountYear::Error &e) {
        return fail(e.message(), 1);
    } catch (const DbError &e) {
        return fail(QStringLiteral("the database said: %1").arg(e.driverText()), 1);
    }
}
