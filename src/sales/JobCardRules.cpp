#include "sales/JobCardRules.h"

#include "foundation/DateRules.h"

namespace JobCardRules {

using JobPaper::text;
namespace Msg = JobCardMsg;

namespace {

const QString kTable = QStringLiteral("tblJobCard");

QString headColumns()
{
    return QStringLiteral("PartyPoNo, PartyName, PartyCode, VDate, IssueDate, PoDate, Quantity");
}

JobCard fromRow(const Row &r)
{
    JobCard c;
    c.number = r.integer(QStringLiteral("JobCardNo"));
    c.partyPONo = r.text(QStringLiteral("PartyPoNo"));
    c.partyName = r.text(QStringLiteral("PartyName")).trimmed();
    c.partyCode = r.text(QStringLiteral("PartyCode")).trimmed();
    c.date = r.date(QStringLiteral("VDate"));
    c.issueDate = r.date(QStringLiteral("IssueDate"));
    c.poDate = r.date(QStringLiteral("PoDate"));
    c.quantity = r.text(QStringLiteral("Quantity"));
    for (const QString &col : pressColumns())
        c.press.insert(col, r.text(col));
    return c;
}

// The head and press values in the order of headColumns() then pressColumns().
QVariantList values(const JobCard &c)
{
    QVariantList v{text(c.partyPONo), c.partyName.trimmed(), c.partyCode.trimmed(), c.date, c.issueDate,
                   c.poDate, text(c.quantity)};
    for (const QString &col : pressColumns())
        v << text(c.pressValue(col));
    return v;
}

// Keeps the values of the card on the press fields' lists.
void keepChoices(SessionConnection &db, const JobCard &c)
{
    for (const QString &col : pressColumns()) {
        const QString value = c.pressValue(col);
        if (value.trimmed().isEmpty())
            continue;
        db.execute(QStringLiteral("INSERT INTO tblJobCardList (Field, Value) SELECT CAST(? AS TEXT), CAST(? AS TEXT) WHERE NOT EXISTS "
                                  "(SELECT 1 FROM tblJobCardList WHERE Field = ? AND Value = ?)"),
                   {col, value, col, value});
    }
}

Outcome checkParty(SessionConnection &db, const JobCard &c, const QString &notFound)
{
    if (!JobPaper::isDocumentParty(db, c.partyCode))
        return Outcome::refusal(notFound, QStringLiteral("cmbPartyName"));
    return Outcome::passed();
}

} // namespace

const QStringList &pressColumns()
{
    static const QStringList all = {
        QStringLiteral("JobDetail"),   QStringLiteral("Paper"),    QStringLiteral("PaperSize"),
        QStringLiteral("CuttingSize"), QStringLiteral("Printing"), QStringLiteral("Machine"),
        QStringLiteral("Design"),      QStringLiteral("Positive"), QStringLiteral("Plate"),
        QStringLiteral("Die"),         QStringLiteral("Bleach"),   QStringLiteral("Lamination"),
        QStringLiteral("Other"),       QStringLiteral("Status")};
    return all;
}

QString comboName(const QString &column) { return QStringLiteral("cmb") + column; }

qint64 nextJobCardNo(SessionConnection &db)
{
    return JobPaper::nextNumber(db, kTable, QStringLiteral("JobCardNo"));
}

Outcome check(const JobCard &c, Command command)
{
    if (c.number <= 0)
        return Outcome::refusal(command == Command::Print ? Msg::kNumberMissingPrint : Msg::kNumberMissing,
                                QStringLiteral("txtJobCardNo"));
    if (command == Command::Print || command == Command::Delete)
        return Outcome::passed();
    if (!c.date.isValid())
        return Outcome::refusal(DateRules::dateMissingMessage(), QStringLiteral("mskDate"));
    const bool save = command == Command::Save;
    if (c.partyName.trimmed().isEmpty())
        return Outcome::refusal(Msg::kPartyMissing, QStringLiteral("cmbPartyName"));
    if (c.partyCode.trimmed().isEmpty())
        return Outcome::refusal(save ? Msg::kPartyNotFound : Msg::kPartyCodeNotFound, QStringLiteral("txtPartyCode"));
    if (c.quantity.trimmed().isEmpty())
        return Outcome::refusal(save ? Msg::kQuantityMissing : Msg::kQuantityMissingDot, QStringLiteral("txtQuantity"));
    return Outcome::passed();
}

std::optional<JobCard> card(SessionConnection &db, qint64 number)
{
    const auto r = db.selectOne(QStringLiteral("SELECT JobCardNo, %1, %2 FROM tblJobCard WHERE JobCardNo = ?")
                                    .arg(headColumns(), pressColumns().join(QStringLiteral(", "))),
                                {number});
    if (!r)
        return std::nullopt;
    return fromRow(*r);
}

QHash<QString, QStringList> pressChoices(SessionConnection &db)
{
    QHash<QString, QStringList> out;
    QueryResult rows = db.select(QStringLiteral("SELECT Field, Value FROM tblJobCardList ORDER BY Field, Value"));
    if (rows.isEmpty() && db.selectOne(QStringLiteral("SELECT JobCardNo FROM tblJobCard LIMIT 1"))) {
        // Cards written before the lists were kept: the lists are made
        // from them once (read as they are when the year is read-only).
        if (!db.isReadOnly()) {
            Transaction tx(db);
            JobPaper::lockNumbering(db, kTable);
            if (!db.selectOne(QStringLiteral("SELECT Field FROM tblJobCardList LIMIT 1"))) {
                for (const QString &col : pressColumns())
                    db.execute(QStringLiteral("INSERT INTO tblJobCardList (Field, Value) SELECT DISTINCT CAST(? AS TEXT), %1 "
                                              "FROM tblJobCard WHERE %1 IS NOT NULL AND TRIM(%1) <> ''").arg(col),
                               {col});
            }
            tx.commit();
            rows = db.select(QStringLiteral("SELECT Field, Value FROM tblJobCardList ORDER BY Field, Value"));
        } else {
            for (const QString &col : pressColumns())
                for (const Row &r : db.select(QStringLiteral("SELECT DISTINCT %1 AS JD FROM tblJobCard "
                                                             "WHERE TRIM(%1) <> '' ORDER BY JD").arg(col)))
                    out[col] << r.text(0);
            return out;
        }
    }
    for (const Row &r : rows)
        out[r.text(0).trimmed()] << r.text(1);
    return out;
}

Outcome save(SessionConnection &db, const JobCard &c, JobPaper::Numbering numbering, const QString &userName,
             const QDate &today)
{
    if (Outcome o = check(c, Command::Save); !o)
        return o;
    Transaction tx(db);
    if (Outcome o = checkParty(db, c, Msg::kPartyNotFound); !o)
        return o;
    JobPaper::lockNumbering(db, kTable);
    Outcome out = Outcome::success(Msg::kSaved);
    out.number = c.number;
    if (JobPaper::numberTaken(db, kTable, QStringLiteral("JobCardNo"), c.number)) {
        if (numbering != JobPaper::Numbering::Proposed)
            return Outcome::refusal(Msg::kDuplicate, QStringLiteral("txtJobCardNo"));
        out.number = nextJobCardNo(db);
        out.notice = JobPaper::numberMoved(QStringLiteral("Job Card"), c.number, out.number);
    }
    QVariantList v{out.number};
    v << values(c) << text(userName) << today;
    QStringList marks;
    for (int i = 0; i < v.size(); ++i)
        marks << QStringLiteral("?");
    db.execute(QStringLiteral("INSERT INTO tblJobCard (JobCardNo, %1, %2, UserName, EntryDate) VALUES (%3)")
                   .arg(headColumns(), pressColumns().join(QStringLiteral(", ")), marks.join(QStringLiteral(", "))),
               v);
    keepChoices(db, c);
    tx.commit();
    out.rowsWritten = 1;
    return out;
}

Outcome modify(SessionConnection &db, const JobCard &c, const QString &userName, const QDate &today)
{
    if (Outcome o = check(c, Command::Modify); !o)
        return o;
    Transaction tx(db);
    if (Outcome o = checkParty(db, c, Msg::kPartyCodeNotFound); !o)
        return o;
    QStringList sets;
    for (const QString &col : headColumns().split(QStringLiteral(", ")) + pressColumns())
        sets << col + QStringLiteral(" = ?");
    QVariantList v = values(c);
    v << text(userName) << today << c.number;
    const int n = db.execute(QStringLiteral("UPDATE tblJobCard SET %1, UserName = ?, EntryDate = ? WHERE JobCardNo = ?")
                                 .arg(sets.join(QStringLiteral(", "))),
                             v);
    if (n == 0)
        return Outcome::refusal(Msg::kNotFound, QStringLiteral("txtJobCardNo"));
    keepChoices(db, c);
    tx.commit();
    Outcome out = Outcome::success(Msg::kUpdated);
    out.number = c.number;
    out.rowsWritten = n;
    return out;
}

Outcome remove(SessionConnection &db, qint64 number)
{
    if (number <= 0)
        return Outcome::refusal(Msg::kNumberMissing, QStringLiteral("txtJobCardNo"));
    Transaction tx(db);
    const int n = db.execute(QStringLiteral("DELETE FROM tblJobCard WHERE JobCardNo = ?"), {number});
    tx.commit();
    Outcome out = Outcome::success(Msg::kDeleted);
    out.number = number;
    out.rowsWritten = n;
    return out;
}

} // namespace JobCardRules
