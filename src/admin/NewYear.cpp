#include "admin/NewYear.h"

#include "admin/ClosingDate.h"
#include "admin/EndYear.h"
#include "admin/YearBackup.h"
#include "foundation/AccountYear.h"
#include "foundation/DateRules.h"
#include "foundation/Schema.h"
#include "foundation/SessionConnection.h"

#include <QRegularExpression>
#include <QSet>

namespace NewYear {

namespace {

// The new year keeps every row from its first day on.
const QDate kNoEnd(9999, 12, 31);

void report(const Progress &progress, int percent, const QString &what)
{
    if (progress)
        progress(percent, what);
}

} // namespace

QString proposedName(const QString &name)
{
    static const QRegularExpression trailing(QStringLiteral("^(.*?)(\\d+)$"));
    const QRegularExpressionMatch m = trailing.match(name);
    if (m.hasMatch()) {
        const QString digits = m.captured(2);
        const QString next = QString::number(digits.toLongLong() + 1).rightJustified(digits.size(), QLatin1Char('0'));
        return m.captured(1) + next;
    }
    return name + QStringLiteral("_next");
}

Outcome check(const Request &r)
{
    if (!AccountYear::isValidName(r.toYear))
        return Outcome::refusal(QStringLiteral("The new year's name must begin with \"Tessel\" and hold only letters, "
                                               "digits and underscores"),
                                QStringLiteral("txtNewYear"));
    if (r.toYear.compare(r.fromYear, Qt::CaseInsensitive) == 0)
        return Outcome::refusal(QStringLiteral("The new year must have a name of its own"),
                                QStringLiteral("txtNewYear"));
    if (!r.start.isValid())
        return Outcome::refusal(DateRules::dateMissingMessage(), QStringLiteral("mskDateFrom"));
    return Outcome::passed();
}

Result compare(SessionConnection &oldYear, SessionConnection &newYear, const QDate &start)
{
    // Both sides from the rows themselves: the carry was made from the kept
    // balances, and a proof must not read what it proves.
    const QMap<QString, Money> closing = EndYear::ledgerBalancesBefore(oldYear, start);
    const QMap<QString, Money> opening = EndYear::ledgerBalancesBefore(newYear, start);
    const QMap<QString, QString> names = EndYear::accountNames(oldYear);
    QStringList codes = closing.keys() + opening.keys();
    codes.sort();
    codes.removeDuplicates();
    Result out;
    for (const QString &code : codes) {
        CarryLine line{code, names.value(code), closing.value(code), opening.value(code)};
        if (line.closing != line.opening)
            ++out.differences;
        out.closingTotal += line.closing;
        out.openingTotal += line.opening;
        out.lines.append(line);
    }
    return out;
}

namespace {

// The end-year steps on the copy under its working name, its closing date
// and report period, and the comparison. Every connection to the copy is
// closed on return.
Outcome closeAside(const ConnectionProfile &profile, const QString &aside, const Request &r, Result &result,
                   const Progress &progress)
{
    SessionConnection::OpenOptions options;
    options.password = r.serverPassword;
    auto next = SessionConnection::open(profile, aside, options);
    const EndYear::Run run{r.start, kNoEnd, r.user, r.today};
    QVector<EndYear::Step> steps{EndYear::Step::Accounts};
    if (r.carryProfit)
        steps << EndYear::Step::ProfitAndLoss;
    for (const EndYear::StepInfo &s : EndYear::steps())
        if (!s.table.isEmpty())
            steps << s.step;
    int done = 0;
    for (EndYear::Step step : steps) {
        report(progress, 60 + 30 * done++ / int(steps.size()), EndYear::info(step).caption);
        const Outcome out = EndYear::runStep(*next, step, run);
        if (!out)
            return out;
    }
    {
        Transaction tx(*next);
        const Outcome closing = ClosingDate::set(*next, r.start.addDays(-1));
        if (!closing)
            return closing;
        next->execute(QStringLiteral("UPDATE tblTLClientInfo SET SDate = ?, EDate = ?"),
                      {r.start, r.start.addYears(1).addDays(-1)});
        tx.commit();
    }
    report(progress, 92, QStringLiteral("Statistics"));
    Schema::refreshStatistics(*next);
    AccountYear::verifyWritten(*next);
    report(progress, 95, QStringLiteral("Comparing the balances"));
    auto old = SessionConnection::open(profile, r.fromYear, options);
    result = compare(*old, *next, r.start);
    return Outcome::passed();
}

} // namespace

Outcome make(const ConnectionProfile &profile, const Request &r, Result &result, const Progress &progress)
{
    const Outcome checked = check(r);
    if (!checked)
        return checked;
    report(progress, 0, QStringLiteral("Copying %1 to %2").arg(r.fromYear, r.toYear));
    // The copy is made and closed out of sight, and takes the new name only
    // when every step has passed: no workstation logs on to a year half
    // closed, and a failure leaves no year under the new name.
    const QString aside = YearBackup::copyYearAside(profile, r.fromYear, r.toYear, r.serverPassword,
                                                    [&](int percent, const QString &what) {
                                                        report(progress, percent * 6 / 10, what);
                                                    });
    try {
        const Outcome out = closeAside(profile, aside, r, result, progress);
        if (!out) {
            YearBackup::dropYearAside(profile, r.toYear, r.serverPassword);
            return out;
        }
        report(progress, 98, QStringLiteral("Naming the new year"));
        YearBackup::finishYearAside(profile, r.toYear, r.serverPassword);
    } catch (...) {
        try {
            YearBackup::dropYearAside(profile, r.toYear, r.serverPassword);
        } catch (...) {
        }
        throw;
    }
    report(progress, 100, QStringLiteral("Done"));
    return Outcome::success(doneMessage(r, result));
}

QString doneMessage(const Request &r, const Result &result)
{
    QString text = QStringLiteral("The new year %1 has been made from %2, opening on %3: %4 accounts carried")
                       .arg(r.toYear, r.fromYear, r.start.toString(QStringLiteral("dd/MM/yyyy")))
                       .arg(result.lines.size());
    if (result.differences == 0)
        return text + QStringLiteral(", every opening equal to its closing.");
    return text + QStringLiteral(", %1 of them with an opening that differs from its closing.").arg(result.differences);
}

} // namespace NewYear
