#include "payroll/SalarySheet.h"

#include "foundation/CodeMask.h"
#include "foundation/DateRules.h"
#include "foundation/Lookups.h"
#include "foundation/SessionConnection.h"
#include "payroll/EmployeeRegister.h"
#include "vouchers/Ledger.h"

namespace SalaryMessages {
QString numberMoved(qint64 from, qint64 to)
{
    return QStringLiteral("Voucher # %1 was taken on another workstation meanwhile, so this salary sheet has been "
                          "started as voucher # %2.")
        .arg(from)
        .arg(to);
}
} // namespace SalaryMessages

using namespace SalaryMessages;

namespace SalaryRules {

Outcome checkNumber(const QString &voucherNoText)
{
    if (voucherNoText.trimmed().isEmpty())
        return Outcome::refusal(kNoVoucherNo, QStringLiteral("txtVoucherNo"));
    return Outcome::passed();
}

Outcome checkEmployeeFields(const QString &name, const QString &code, const QString &salary, bool needCode)
{
    if (name.trimmed().isEmpty())
        return Outcome::refusal(kNoParty, QStringLiteral("cmbPartyName"));
    if (needCode && (code.trimmed().isEmpty() || code == CodeMask::empty()))
        return Outcome::refusal(kPartyNotFound, QStringLiteral("cmbPartyName"));
    if (salary.trimmed().isEmpty())
        return Outcome::refusal(kNoSalary, QStringLiteral("txtSalary"));
    return Outcome::passed();
}

Outcome checkSheetQuestion(const QString &numberText, const QString &dateMaskText, const QString &type)
{
    if (numberText.trimmed().isEmpty())
        return Outcome::refusal(kNumberMissing, QStringLiteral("txtShowVoucherNo"));
    if (dateMaskText == DateRules::toMaskText(QDate()))
        return Outcome::refusal(DateRules::dateMissingMessage(), QStringLiteral("mskDateModifyVoucher"));
    if (type.trimmed().isEmpty())
        return Outcome::refusal(kTypeMissing, QStringLiteral("cmbModifyVoucherType"));
    if (const auto c = DateRules::checkDate(dateMaskText); c != DateRules::Check::Ok)
        return Outcome::refusal(DateRules::messageFor(c), QStringLiteral("mskDateModifyVoucher"));
    return Outcome::passed();
}

} // namespace SalaryRules

namespace {

const QString kColumns = QStringLiteral(
    "SrNo, EmployeeName, EmployeeSalary, OverTime, Holidays, OverDays, OTAmount, TotalSalary, Advance, Balance");

QVariantList keyParams(const SalaryKey &k) { return {k.type.trimmed(), k.number, k.date}; }

} // namespace

SalarySheet::SalarySheet(SessionConnection &db, const QString &userName, const QDate &today)
    : m_db(db), m_user(userName), m_today(today)
{
}

qint64 SalarySheet::nextNumber()
{
    return m_db.scalar(QStringLiteral("SELECT MAX(VoucherNo) AS VNo FROM tblEmployeeSalary WHERE VoucherType = ?"),
                       {sheetType()})
               .toLongLong()
        + 1;
}

Outcome SalarySheet::checkKey(const SalaryKey &key)
{
    if (key.number <= 0)
        return Outcome::refusal(kNoVoucherNo, QStringLiteral("txtVoucherNo"));
    if (!isSheetType(key.type))
        return Outcome::refusal(kBadType, QStringLiteral("cmbVoucherType"));
    if (!key.date.isValid())
        return Outcome::refusal(DateRules::dateMissingMessage(), QStringLiteral("mskDate"));
    const DateRules::Closing c = DateRules::checkClosing(key.date, Lookups::closingDate(m_db));
    if (c != DateRules::Closing::Open)
        return Outcome::refusal(DateRules::messageFor(c), QStringLiteral("mskDate"));
    return Outcome::passed();
}

Outcome SalarySheet::checkEmployee(const SalaryLine &line, bool mustBeActive)
{
    if (line.employeeName.trimmed().isEmpty())
        return Outcome::refusal(kNoParty, QStringLiteral("cmbPartyName"));
    if (line.employeeCode.trimmed().isEmpty())
        return Outcome::refusal(kPartyNotFound, QStringLiteral("cmbPartyName"));
    const auto r = m_db.selectOne(QStringLiteral("SELECT Status FROM tblEmployeeInfo WHERE EmployeeCode = ?"),
                                  {line.employeeCode.trimmed()});
    if (!r || (mustBeActive && r->text(0).trimmed() != EmployeeRegister::kActive))
        return Outcome::refusal(kPartyNotFound, QStringLiteral("cmbPartyName"));
    if (line.figures.salary.isNegative())
        return Outcome::refusal(kNoSalary, QStringLiteral("txtSalary"));
    return Outcome::passed();
}

void SalarySheet::insertLine(const SalaryKey &key, const SalaryLine &line)
{
    // The figures that follow from the typed ones are worked out here, so
    // a sheet never holds a total that does not add up.
    const SalaryArithmetic::Figures &t = line.figures;
    const SalaryArithmetic::Figures f = SalaryArithmetic::compute(t.salary, t.time, t.holidays, t.advance);
    m_db.execute(QStringLiteral("INSERT INTO tblEmployeeSalary (VoucherType, VoucherNo, VDate, EmployeeCode, "
                                "EmployeeName, EmployeeSalary, OverTime, Holidays, OverDays, OTAmount, TotalSalary, "
                                "Advance, Balance, UserName, EntryDate) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
                 {key.type.trimmed(), key.number, key.date, line.employeeCode.trimmed(), line.employeeName.trimmed(),
                  f.salary.toVariant(), f.time.toVariant(), f.holidays.toVariant(), f.days.toVariant(),
                  f.otAmount.toVariant(), f.totalSalary.toVariant(), f.advance.toVariant(), f.balance.toVariant(),
                  m_user, m_today});
}

Outcome SalarySheet::addLine(SalaryKey &key, const SalaryLine &line, bool proposed, std::optional<Money> *totalOut)
{
    Transaction tx(m_db);
    Ledger::lockVoucherSeries(m_db, sheetType());
    if (const Outcome k = checkKey(key); !k)
        return k;
    if (const Outcome e = checkEmployee(line, true); !e)
        return e;
    Outcome out = Outcome::success(kAdded);
    // A number stands for one sheet on one date. The proposed number of a
    // new sheet that another workstation started meanwhile moves on; a
    // typed number of a sheet on another date is refused, where it once
    // pulled that sheet over to this date.
    const QVariant taken = m_db.scalar(
        QStringLiteral("SELECT COUNT(*) FROM tblEmployeeSalary WHERE VoucherType = ? AND VoucherNo = ? %1")
            .arg(proposed ? QString() : QStringLiteral("AND VDate <> ?")),
        proposed ? QVariantList{key.type.trimmed(), key.number} : keyParams(key));
    if (taken.toLongLong() > 0) {
        if (!proposed)
            return Outcome::refusal(kNumberOnOtherDate, QStringLiteral("txtVoucherNo"));
        const qint64 next = nextNumber();
        out.notice = numberMoved(key.number, next);
        key.number = next;
    }
    insertLine(key, line);
    if (totalOut)
        *totalOut = total(key);
    tx.commit();
    out.number = key.number;
    out.rowsWritten = 1;
    return out;
}

Outcome SalarySheet::changeLine(const SalaryKey &original, const SalaryKey &key, const SalaryLine &line,
                                std::optional<Money> *totalOut)
{
    Transaction tx(m_db);
    if (const Outcome k = checkKey(key); !k)
        return k;
    if (original.date != key.date) {
        // Both the old place of the sheet and the new one must be open.
        if (const Outcome k = checkKey(original); !k)
            return k;
        if (exists(key))
            return Outcome::refusal(kNumberOnOtherDate, QStringLiteral("mskDate"));
    }
    if (const Outcome e = checkEmployee(line, false); !e)
        return e;
    if (original.type.trimmed() != key.type.trimmed() || original.number != key.number)
        return Outcome::refusal(kNoRowPicked, QStringLiteral("dgVoucher"));
    // A changed date moves the whole sheet.
    m_db.execute(QStringLiteral("UPDATE tblEmployeeSalary SET VDate = ? WHERE VoucherType = ? AND VoucherNo = ? AND VDate = ?"),
                 {key.date, original.type.trimmed(), original.number, original.date});
    const SalaryArithmetic::Figures &t = line.figures;
    const SalaryArithmetic::Figures f = SalaryArithmetic::compute(t.salary, t.time, t.holidays, t.advance);
    QVariantList p{line.employeeCode.trimmed(), line.employeeName.trimmed(), f.balance.toVariant(), f.salary.toVariant(),
                   f.time.toVariant(), f.holidays.toVariant(), f.days.toVariant(), f.otAmount.toVariant(),
                   f.totalSalary.toVariant(), f.advance.toVariant(), m_user, m_today, line.srNo};
    p += keyParams(key);
    const int n = m_db.execute(
        QStringLiteral("UPDATE tblEmployeeSalary SET EmployeeCode = ?, EmployeeName = ?, Balance = ?, EmployeeSalary = ?, "
                       "OverTime = ?, Holidays = ?, OverDays = ?, OTAmount = ?, TotalSalary = ?, Advance = ?, "
                       "UserName = ?, EntryDate = ? WHERE SrNo = ? AND VoucherType = ? AND VoucherNo = ? AND VDate = ?"),
        p);
    if (n == 0)
        return Outcome::refusal(kNoRowPicked, QStringLiteral("dgVoucher"));
    if (totalOut)
        *totalOut = total(key);
    tx.commit();
    Outcome out = Outcome::success(kModified);
    out.number = key.number;
    out.rowsWritten = n;
    return out;
}

Outcome SalarySheet::deleteLine(const SalaryKey &key, qint64 srNo, std::optional<Money> *totalOut)
{
    Transaction tx(m_db);
    if (const Outcome k = checkKey(key); !k)
        return k;
    QVariantList p = keyParams(key);
    p << srNo;
    const int n = m_db.execute(
        QStringLiteral("DELETE FROM tblEmployeeSalary WHERE VoucherType = ? AND VoucherNo = ? AND VDate = ? AND SrNo = ?"), p);
    if (n == 0)
        return Outcome::refusal(kNothingDeleted, QStringLiteral("dgVoucher"));
    if (totalOut)
        *totalOut = total(key);
    tx.commit();
    Outcome out = Outcome::success(kDeleted);
    out.rowsWritten = n;
    return out;
}

Outcome SalarySheet::deleteSheet(const SalaryKey &key)
{
    Transaction tx(m_db);
    if (const Outcome k = checkKey(key); !k)
        return k;
    const int n = m_db.execute(
        QStringLiteral("DELETE FROM tblEmployeeSalary WHERE VoucherType = ? AND VoucherNo = ? AND VDate = ?"),
        keyParams(key));
    tx.commit();
    Outcome out = Outcome::success(QString()); // the sheet goes without a word
    out.rowsWritten = n;
    return out;
}

Outcome SalarySheet::addMonth(SalaryKey &key)
{
    Transaction tx(m_db);
    Ledger::lockVoucherSeries(m_db, sheetType());
    if (const Outcome k = checkKey(key); !k)
        return k;
    Outcome out = Outcome::success(kAdded);
    const qint64 taken = m_db.scalar(QStringLiteral("SELECT COUNT(*) FROM tblEmployeeSalary WHERE VoucherType = ? "
                                                    "AND VoucherNo = ?"),
                                     {key.type.trimmed(), key.number})
                             .toLongLong();
    if (taken > 0) {
        const qint64 next = nextNumber();
        out.notice = numberMoved(key.number, next);
        key.number = next;
    }
    const QueryResult staff = m_db.select(QStringLiteral("SELECT EmployeeCode, EmployeeName, Salary FROM tblEmployeeInfo "
                                                         "WHERE Status = ? ORDER BY EmployeeName"),
                                          {EmployeeRegister::kActive});
    for (const Row &r : staff) {
        SalaryLine l;
        l.employeeCode = r.text(0).trimmed();
        l.employeeName = r.text(1).trimmed();
        l.figures = SalaryArithmetic::compute(r.moneyOrZero(QStringLiteral("Salary")), Money(), Money(), Money());
        insertLine(key, l);
    }
    tx.commit();
    out.number = key.number;
    out.rowsWritten = staff.size();
    return out;
}

std::optional<Money> SalarySheet::total(const SalaryKey &key)
{
    return m_db.scalarMoney(QStringLiteral("SELECT SUM(Balance) AS Balance FROM tblEmployeeSalary "
                                           "WHERE VoucherType = ? AND VoucherNo = ? AND VDate = ?"),
                            keyParams(key));
}

bool SalarySheet::exists(const SalaryKey &key)
{
    return m_db.selectOne(QStringLiteral("SELECT VoucherNo FROM tblEmployeeSalary WHERE VoucherType = ? AND "
                                         "VoucherNo = ? AND VDate = ?"),
                          keyParams(key))
        .has_value();
}

QueryResult SalarySheet::gridRows(const SalaryKey &key)
{
    return m_db.select(QStringLiteral("SELECT %1 FROM tblEmployeeSalary WHERE VoucherType = ? AND VoucherNo = ? "
                                      "AND VDate = ? ORDER BY SrNo")
                           .arg(kColumns),
                       keyParams(key));
}

std::optional<SalaryLine> SalarySheet::line(qint64 srNo, SalaryKey *keyOut)
{
    const auto r = m_db.selectOne(QStringLiteral("SELECT VoucherType, VoucherNo, VDate, EmployeeCode, %1 "
                                                 "FROM tblEmployeeSalary WHERE SrNo = ?")
                                      .arg(kColumns),
                                  {srNo});
    if (!r)
        return std::nullopt;
    SalaryLine l;
    l.srNo = r->integer(QStringLiteral("SrNo"));
    l.employeeCode = r->text(QStringLiteral("EmployeeCode")).trimmed();
    l.employeeName = r->text(QStringLiteral("EmployeeName")).trimmed();
    SalaryArithmetic::Figures &f = l.figures;
    f.salary = r->moneyOrZero(QStringLiteral("EmployeeSalary"));
    f.time = r->moneyOrZero(QStringLiteral("OverTime"));
    f.holidays = r->moneyOrZero(QStringLiteral("Holidays"));
    f.days = r->moneyOrZero(QStringLiteral("OverDays"));
    f.otAmount = r->moneyOrZero(QStringLiteral("OTAmount"));
    f.totalSalary = r->moneyOrZero(QStringLiteral("TotalSalary"));
    f.advance = r->moneyOrZero(QStringLiteral("Advance"));
    f.balance = r->moneyOrZero(QStringLiteral("Balance"));
    if (keyOut)
        *keyOut = {r->text(QStringLiteral("VoucherType")).trimmed(), r->integer(QStringLiteral("VoucherNo")),
                   r->date(QStringLiteral("VDate"))};
    return l;
}

QueryResult SalarySheet::activeEmployees()
{
    return m_db.select(QStringLiteral("SELECT EmployeeName, EmployeeCode FROM tblEmployeeInfo WHERE Status = ? "
                                      "ORDER BY EmployeeName"),
                       {EmployeeRegister::kActive});
}

std::optional<SalarySheet::Employee> SalarySheet::employeeNamed(const QString &name)
{
    const auto r = m_db.selectOne(QStringLiteral("SELECT EmployeeCode, IncrementDate, Salary, Status FROM tblEmployeeInfo "
                                                 "WHERE EmployeeName = ?"),
                                  {name.trimmed()});
    if (!r)
        return std::nullopt;
    return Employee{r->text(0).trimmed(), r->date(1), r->moneyOrZero(QStringLiteral("Salary")),
                    r->text(3).trimmed() == EmployeeRegister::kActive};
}
