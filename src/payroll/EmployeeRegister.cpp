#include "payroll/EmployeeRegister.h"

#include "foundation/Lookups.h"
#include "foundation/CodeMask.h"
#include "foundation/DateRules.h"
#include "foundation/SessionConnection.h"

namespace EmployeeRegister {

namespace {

// A date field of the register: the empty mask is no date; anything else
// must be a whole, real date.
Outcome checkDateField(const QString &maskText, const QString &field)
{
    if (maskText.isEmpty() || maskText == DateRules::toMaskText(QDate()))
        return Outcome::passed();
    const DateRules::Check c = DateRules::checkDate(maskText);
    if (c != DateRules::Check::Ok)
        return Outcome::refusal(DateRules::messageFor(c), field);
    return Outcome::passed();
}

QVariant dateValue(const QString &maskText)
{
    const QDate d = DateRules::fromMaskText(maskText);
    return d.isValid() ? QVariant(d) : QVariant(QMetaType::fromType<QDate>());
}

bool codeHeldByAnother(SessionConnection &db, const QString &code, qint64 srNo)
{
    return db.selectOne(QStringLiteral("SELECT SrNo FROM tblEmployeeInfo WHERE EmployeeCode = ? AND SrNo <> ?"),
                        {code, srNo})
        .has_value();
}

Employee fromRow(const Row &r)
{
    Employee e;
    e.srNo = r.integer(QStringLiteral("SrNo"));
    e.code = r.text(QStringLiteral("EmployeeCode")).trimmed();
    e.name = r.text(QStringLiteral("EmployeeName")).trimmed();
    e.salary = r.moneyOrZero(QStringLiteral("Salary"));
    e.inDate = r.date(QStringLiteral("InDate"));
    e.incrementDate = r.date(QStringLiteral("IncrementDate"));
    e.status = r.text(QStringLiteral("Status")).trimmed();
    return e;
}

QVariantList values(const Entry &e)
{
    return {e.name.trimmed(), e.code, Money::parseOrZero(e.salary).toVariant(), dateValue(e.inDate),
            dateValue(e.incrementDate), e.status};
}

} // namespace

Outcome checkEntry(SessionConnection &db, const Entry &entry)
{
    if (entry.name.trimmed().isEmpty())
        return Outcome::refusal(Msg::nameMissing(), QStringLiteral("cmbPartyName"));
    if (entry.code.isEmpty() || entry.code == CodeMask::empty())
        return Outcome::refusal(Msg::codeMissing(), QStringLiteral("mskPartyCode"));
    if (entry.salary.trimmed().isEmpty() || !Money::parse(entry.salary) || Money::parseOrZero(entry.salary).isNegative())
        return Outcome::refusal(Msg::salaryMissing(), QStringLiteral("txtSalary"));
    if (!Lookups::accountExists(db, entry.code))
        return Outcome::refusal(Msg::codeNotFound(), QStringLiteral("mskPartyCode"));
    if (const Outcome d = checkDateField(entry.inDate, QStringLiteral("mskInDate")); !d)
        return d;
    if (const Outcome d = checkDateField(entry.incrementDate, QStringLiteral("mskIncrementDate")); !d)
        return d;
    if (!statuses().contains(entry.status))
        return Outcome::refusal(Msg::badStatus(), QStringLiteral("cmbStatus"));
    return Outcome::passed();
}

Outcome add(SessionConnection &db, const Entry &entry)
{
    try {
        Transaction tx(db);
        if (const Outcome c = checkEntry(db, entry); !c)
            return c;
        if (codeHeldByAnother(db, entry.code, 0))
            return Outcome::refusal(Msg::alreadySaved(), QStringLiteral("mskPartyCode"));
        db.execute(QStringLiteral("INSERT INTO tblEmployeeInfo (EmployeeName, EmployeeCode, Salary, InDate, "
                                  "IncrementDate, Status) VALUES (?, ?, ?, ?, ?, ?)"),
                   values(entry));
        tx.commit();
    } catch (const DbError &e) {
        // Another workstation saved the same employee a moment earlier.
        if (!e.isUniqueViolation())
            throw;
        return Outcome::refusal(Msg::alreadySaved(), QStringLiteral("mskPartyCode"));
    }
    return Outcome::success(Msg::saved());
}

Outcome modify(SessionConnection &db, qint64 srNo, const Entry &entry)
{
    try {
        Transaction tx(db);
        if (const Outcome c = checkEntry(db, entry); !c)
            return c;
        if (!db.selectOne(QStringLiteral("SELECT SrNo FROM tblEmployeeInfo WHERE SrNo = ?"), {srNo}))
            return Outcome::refusal(Msg::noRowPicked(), QStringLiteral("dgVoucher"));
        if (codeHeldByAnother(db, entry.code, srNo))
            return Outcome::refusal(Msg::alreadySavedOnModify(), QStringLiteral("mskPartyCode"));
        QVariantList p = values(entry);
        p << srNo;
        const int n = db.execute(QStringLiteral("UPDATE tblEmployeeInfo SET EmployeeName = ?, EmployeeCode = ?, "
                                                "Salary = ?, InDate = ?, IncrementDate = ?, Status = ? WHERE SrNo = ?"),
                                 p);
        if (n == 0)
            return Outcome::refusal(Msg::noRowPicked(), QStringLiteral("dgVoucher"));
        tx.commit();
    } catch (const DbError &e) {
        if (!e.isUniqueViolation())
            throw;
        return Outcome::refusal(Msg::alreadySavedOnModify(), QStringLiteral("mskPartyCode"));
    }
    return Outcome::success(Msg::updated());
}

Outcome remove(SessionConnection &db, const Entry &entry)
{
    if (const Outcome c = checkEntry(db, entry); !c)
        return c;
    return Outcome::refusal(Msg::noDelete());
}

QueryResult gridRows(SessionConnection &db)
{
    return db.select(QStringLiteral("SELECT SrNo, EmployeeName, Salary, InDate, IncrementDate, Status "
                                    "FROM tblEmployeeInfo ORDER BY Status, EmployeeName"));
}

std::optional<Employee> employee(SessionConnection &db, qint64 srNo)
{
    const auto r = db.selectOne(QStringLiteral("SELECT SrNo, EmployeeCode, EmployeeName, Salary, InDate, "
                                               "IncrementDate, Status FROM tblEmployeeInfo WHERE SrNo = ?"),
                                {srNo});
    if (!r)
        return std::nullopt;
    return fromRow(*r);
}

} // namespace EmployeeRegister
