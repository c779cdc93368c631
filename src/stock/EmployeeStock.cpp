#include "stock/EmployeeStock.h"

#include "foundation/CodeMask.h"
#include "foundation/DateRules.h"
#include "foundation/Lookups.h"
#include "foundation/SessionConnection.h"
#include "stock/Fifo.h"

namespace EmployeeStock {

using Consumables::itemWord;

namespace {

// The value of the leading digits of a part of a mask text ("1_" is 1,
// "__" is 0).
int leadingValue(const QString &part)
{
    int v = 0;
    for (QChar ch : part) {
        if (!ch.isDigit())
            break;
        v = v * 10 + ch.digitValue();
    }
    return v;
}

Outcome checkDateText(const QString &text)
{
    const QString wrong = DateRules::wrongDateMessage();
    const QString field = QStringLiteral("mskDate");
    if (text.size() != 10)
        return Outcome::refusal(DateRules::dateMissingMessage(), field);
    const int day = leadingValue(text.mid(0, 2));
    const int month = leadingValue(text.mid(3, 2));
    const int year = leadingValue(text.mid(6, 4));
    if (day > 31 || day < 1 || month > 12 || month < 1 || year < 1)
        return Outcome::refusal(wrong, field);
    if (text.contains(QLatin1Char('_')))
        return Outcome::refusal(DateRules::dateMissingMessage(), field);
    // The date is kept with the employee's row: it must be a real one.
    if (DateRules::checkDate(text) != DateRules::Check::Ok)
        return Outcome::refusal(wrong, field);
    return Outcome::passed();
}

QString lockTail(SessionConnection &db)
{
    return db.isPostgres() ? QStringLiteral(" FOR UPDATE") : QString();
}

QStringList firstColumn(const QueryResult &rows)
{
    QStringList out;
    for (const Row &r : rows)
        out << r.text(0).trimmed();
    return out;
}

} // namespace

Outcome checkIssue(const IssueRequest &r)
{
    if (r.brand.trimmed().isEmpty())
        return Outcome::refusal(Msg::brandMissing(), QStringLiteral("cmbBrandName"));
    if (r.type.trimmed().isEmpty())
        return Outcome::refusal(Msg::typeMissing(), QStringLiteral("cmbType"));
    if (r.employeeName.trimmed().isEmpty())
        return Outcome::refusal(Msg::employeeMissing(), QStringLiteral("cmbPartyName"));
    if (r.employeeCode.trimmed().isEmpty() || r.employeeCode == CodeMask::empty())
        return Outcome::refusal(Msg::codeMissing(), QStringLiteral("mskPartyCode"));
    if (r.unitsText.trimmed().isEmpty())
        return Outcome::refusal(Msg::unitsMissing(), QStringLiteral("txtUnits"));
    return checkDateText(r.dateText);
}

Outcome issue(SessionConnection &db, const IssueRequest &r)
{
    const Outcome checked = checkIssue(r);
    if (!checked)
        return checked;
    const auto units = Consumables::parseUnits(r.unitsText);
    const QString item = itemWord(r.item);
    const QString brand = r.brand.trimmed();
    const QString type = r.type.trimmed();
    const QString code = r.employeeCode.trimmed();

    Transaction tx(db);
    if (!CodeMask::isComplete(code) || code.endsWith(QLatin1String("-000"))
        || !Lookups::nameFromCode(db, code))
        return Outcome::refusal(Lookups::partyNotFoundMessage(), QStringLiteral("cmbPartyName"));

    QVector<Fifo::OpenReceipt> open;
    for (const Row &row : db.select(QStringLiteral("SELECT SrNo, VDate, Units, Issue FROM tblStock "
                                                   "WHERE Item = ? AND BrandName = ? AND Type = ? AND Units <> Issue "
                                                   "ORDER BY VDate, SrNo")
                                        + lockTail(db),
                                    {item, brand, type}))
        open.append({row.integer(0), row.date(1), row.integer(2), row.integer(3)});

    // Units past 64 bits are more than any stock holds.
    const Fifo::Plan plan = Fifo::allocate(open, units.value_or(-1));
    if (plan.result == Fifo::Plan::Result::NoneOpen)
        return Outcome::refusal(Msg::noOpenReceipt());
    if (plan.result == Fifo::Plan::Result::Short)
        return Outcome::refusal(Msg::quantityShort(), QStringLiteral("txtUnits"));

    int written = 0;
    for (const Fifo::Draw &d : plan.draws) {
        if (d.drawn == 0)
            continue;
        const int n = db.execute(QStringLiteral("UPDATE tblStock SET Issue = ? WHERE SrNo = ? AND Issue = ? AND Units >= ?"),
                                 {d.issuedAfter(), d.srNo, d.issuedBefore, d.issuedAfter()});
        if (n != 1)
            throw DbError(QStringLiteral("Receipt %1 was changed while it was being issued from.").arg(d.srNo));
        ++written;
    }
    Outcome out = Outcome::success(Msg::issued(r.item));
    if (*units > 0) {
        out.number = db.insertReturningKey(
            QStringLiteral("INSERT INTO tblEmployeeStock (Item, BrandName, Type, PartyCode, Units, Issue, EntryDate) "
                           "VALUES (?, ?, ?, ?, ?, 0, ?)"),
            {item, brand, type, code, *units, DateRules::fromMaskText(r.dateText)});
        ++written;
    }
    tx.commit();
    out.rowsWritten = written;
    return out;
}

Outcome checkFinish(const FinishRequest &r)
{
    if (r.employeeName.trimmed().isEmpty())
        return Outcome::refusal(Msg::employeeMissing(), QStringLiteral("cmbPartyName"));
    if (r.brand.trimmed().isEmpty())
        return Outcome::refusal(Msg::brandMissing(), QStringLiteral("cmbBrandName"));
    if (r.type.trimmed().isEmpty())
        return Outcome::refusal(Msg::typeMissing(), QStringLiteral("cmbType"));
    if (r.unitsText.trimmed().isEmpty())
        return Outcome::refusal(Msg::unitsMissing(), QStringLiteral("txtUnits"));
    return Outcome::passed();
}

Outcome finish(SessionConnection &db, const FinishRequest &r)
{
    const Outcome checked = checkFinish(r);
    if (!checked)
        return checked;
    const auto units = Consumables::parseUnits(r.unitsText);
    Transaction tx(db);
    const auto first = db.selectOne(QStringLiteral("SELECT SrNo, Units, Issue FROM tblEmployeeStock "
                                                   "WHERE Item = ? AND BrandName = ? AND Type = ? AND PartyCode = ? "
                                                   "AND Units <> Issue ORDER BY EntryDate, SrNo")
                                        + lockTail(db),
                                    {itemWord(r.item), r.brand.trimmed(), r.type.trimmed(), r.employeeCode.trimmed()});
    if (!first)
        return Outcome::refusal(Msg::noneHeld());
    if (first->isNull(QStringLiteral("Units")))
        return Outcome::refusal(Msg::heldRowEmpty());
    const qint64 held = first->integer(QStringLiteral("Units")) - first->integer(QStringLiteral("Issue"));
    if (!units || *units > held)
        return Outcome::refusal(Msg::quantityShort(), QStringLiteral("txtUnits"));
    const int n = db.execute(QStringLiteral("UPDATE tblEmployeeStock SET Issue = Issue + ? WHERE SrNo = ? "
                                            "AND Units - Issue >= ?"),
                             {*units, first->integer(QStringLiteral("SrNo")), *units});
    if (n != 1)
        throw DbError(QStringLiteral("The employee's stock was changed while it was being updated."));
    tx.commit();
    Outcome out = Outcome::success(Msg::finished());
    out.rowsWritten = 1;
    return out;
}

QStringList brandsHeld(SessionConnection &db, Consumables::Item item, const QString &employeeCode)
{
    return firstColumn(db.select(QStringLiteral("SELECT DISTINCT BrandName AS BN FROM tblEmployeeStock "
                                                "WHERE PartyCode = ? AND Item = ? ORDER BY BrandName"),
                                 {employeeCode.trimmed(), itemWord(item)}));
}

QStringList typesHeld(SessionConnection &db, Consumables::Item item, const QString &brand)
{
    return firstColumn(db.select(QStringLiteral("SELECT DISTINCT Type AS TP FROM tblEmployeeStock "
                                                "WHERE Item = ? AND BrandName = ? ORDER BY Type"),
                                 {itemWord(item), brand.trimmed()}));
}

QueryResult heldBy(SessionConnection &db, const QString &employeeCode, Consumables::Item item, const QDate &from,
                   const QDate &to)
{
    return db.select(QStringLiteral("SELECT BrandName, Type, EntryDate, Units, Issue, Units - Issue AS InHand "
                                    "FROM tblEmployeeStock WHERE PartyCode = ? AND Item = ? "
                                    "AND EntryDate >= ? AND EntryDate <= ? ORDER BY EntryDate, SrNo"),
                     {employeeCode.trimmed(), itemWord(item), from, to});
}

} // namespace EmployeeStock
