#include "sales/PurchaseOrderRules.h"

#include "foundation/DateRules.h"

namespace PurchaseOrderRules {

using JobPaper::text;
namespace Msg = PurchaseOrderMsg;

namespace {

const QString kTable = QStringLiteral("tblPurchaseOrder");
const QString kColumns = QStringLiteral("RecordNo, PONo, PartyPONo, VDate, PartyCode, PartyName, Description, "
                                        "Quantity, Type, UnitPrice, DemandNo, JobNo, TitleName");

OrderLine fromRow(const Row &r)
{
    OrderLine l;
    l.recordNo = r.integer(QStringLiteral("RecordNo"));
    l.poNo = r.integer(QStringLiteral("PONo"));
    l.partyPONo = r.text(QStringLiteral("PartyPONo"));
    l.date = r.date(QStringLiteral("VDate"));
    l.partyCode = r.text(QStringLiteral("PartyCode")).trimmed();
    l.partyName = r.text(QStringLiteral("PartyName")).trimmed();
    l.description = r.text(QStringLiteral("Description"));
    l.quantity = r.money(QStringLiteral("Quantity"));
    l.type = r.text(QStringLiteral("Type"));
    l.unitPrice = r.money(QStringLiteral("UnitPrice"));
    l.demandNo = r.text(QStringLiteral("DemandNo"));
    l.jobNo = r.text(QStringLiteral("JobNo"));
    l.titleName = r.text(QStringLiteral("TitleName")).trimmed();
    return l;
}

QVariant figure(const std::optional<Money> &m) { return m ? m->toVariant() : QVariant(); }

Outcome checkParty(SessionConnection &db, const OrderLine &line, const QString &notFound)
{
    if (!JobPaper::isDocumentParty(db, line.partyCode))
        return Outcome::refusal(notFound, QStringLiteral("cmbPartyName"));
    return Outcome::passed();
}

} // namespace

qint64 nextOrderNo(SessionConnection &db, const QString &title)
{
    return JobPaper::nextNumber(db, kTable, QStringLiteral("PONo"), title.trimmed());
}

qint64 nextRecordNo(SessionConnection &db)
{
    return JobPaper::nextNumber(db, kTable, QStringLiteral("RecordNo"));
}

Outcome check(const OrderLine &l, Command command)
{
    const bool save = command == Command::Save;
    if (l.poNo <= 0) {
        const QString &why = save ? Msg::kNumberMissing
            : command == Command::Print ? Msg::kNumberMissingPrint : Msg::kNumberMissingLower;
        return Outcome::refusal(why, QStringLiteral("txtPONo"));
    }
    if (!l.date.isValid())
        return Outcome::refusal(DateRules::dateMissingMessage(), QStringLiteral("mskDate"));
    if (command == Command::Print)
        return Outcome::passed();
    if (l.partyName.trimmed().isEmpty())
        return Outcome::refusal(Msg::kPartyMissing, QStringLiteral("cmbPartyName"));
    if (l.partyCode.trimmed().isEmpty())
        return Outcome::refusal(save ? Msg::kPartyNotFound : Msg::kPartyCodeNotFound, QStringLiteral("txtPartyCode"));
    if (command == Command::Delete)
        return Outcome::passed();
    if (save && l.description.trimmed().isEmpty())
        return Outcome::refusal(Msg::kDescriptionMissing, QStringLiteral("cmbDesc"));
    if (!l.quantity)
        return Outcome::refusal(save ? Msg::kQuantityMissing : Msg::kQuantityMissingDot, QStringLiteral("txtQuantity"));
    if (!l.unitPrice)
        return Outcome::refusal(Msg::kPriceMissing, QStringLiteral("txtUnitPrice"));
    return Outcome::passed();
}

QueryResult orderLines(SessionConnection &db, const QString &title, qint64 poNo)
{
    return db.select(QStringLiteral("SELECT RecordNo, Description, PONo, DemandNo, Quantity FROM tblPurchaseOrder "
                                    "WHERE PONo = ? AND TitleName = ? ORDER BY SrNo"),
                     {poNo, text(title.trimmed())});
}

QueryResult linesOfPartyOrder(SessionConnection &db, const QString &title, const QString &partyPONo)
{
    return db.select(QStringLiteral("SELECT RecordNo, Description, PONo, DemandNo, Quantity FROM tblPurchaseOrder "
                                    "WHERE PartyPONo = ? AND TitleName = ? ORDER BY SrNo"),
                     {text(partyPONo), text(title.trimmed())});
}

QStringList descriptionHistory(SessionConnection &db)
{
    QStringList out;
    for (const Row &r : db.select(QStringLiteral("SELECT Description FROM tblPurchaseOrder ORDER BY SrNo")))
        out << r.text(0);
    return out;
}

QStringList distinctDescriptions(SessionConnection &db)
{
    QStringList out;
    for (const Row &r : db.select(QStringLiteral("SELECT DISTINCT Description AS Descr FROM tblPurchaseOrder "
                                                 "ORDER BY Descr")))
        out << r.text(0);
    return out;
}

QStringList partyOrderNumbers(SessionConnection &db, const QString &partyCode)
{
    QStringList out;
    for (const Row &r : db.select(QStringLiteral("SELECT DISTINCT PartyPONo AS PPN FROM tblPurchaseOrder "
                                                 "WHERE PartyCode = ? ORDER BY PPN"),
                                  {partyCode.trimmed()}))
        out << r.text(0);
    return out;
}

QDate orderDate(SessionConnection &db, const QString &partyCode, const QString &partyPONo)
{
    const auto r = db.selectOne(QStringLiteral("SELECT VDate FROM tblPurchaseOrder WHERE PartyCode = ? "
                                               "AND PartyPONo = ? ORDER BY SrNo"),
                                {partyCode.trimmed(), text(partyPONo)});
    return r ? r->date(0) : QDate();
}

std::optional<OrderLine> lineByRecordNo(SessionConnection &db, qint64 recordNo, const QString &title)
{
    const auto r = db.selectOne(QStringLiteral("SELECT %1 FROM tblPurchaseOrder WHERE RecordNo = ? AND TitleName = ?")
                                    .arg(kColumns),
                                {recordNo, text(title.trimmed())});
    if (!r)
        return std::nullopt;
    return fromRow(*r);
}

QVector<OrderLine> order(SessionConnection &db, const QString &title, qint64 poNo)
{
    QVector<OrderLine> out;
    for (const Row &r : db.select(QStringLiteral("SELECT %1 FROM tblPurchaseOrder WHERE PONo = ? AND TitleName = ? "
                                                 "ORDER BY SrNo").arg(kColumns),
                                  {poNo, text(title.trimmed())}))
        out << fromRow(r);
    return out;
}

Outcome saveLine(SessionConnection &db, const OrderLine &line, JobPaper::Numbering numbering, qint64 *recordNo)
{
    if (Outcome c = check(line, Command::Save); !c)
        return c;
    Transaction tx(db);
    if (Outcome c = checkParty(db, line, Msg::kPartyNotFound); !c)
        return c;
    JobPaper::lockNumbering(db, kTable);
    Outcome out = Outcome::success(Msg::kSaved);
    out.number = line.poNo;
    const QString title = text(line.titleName.trimmed());
    if (numbering == JobPaper::Numbering::Proposed
        && JobPaper::numberTaken(db, kTable, QStringLiteral("PONo"), line.poNo, title)) {
        out.number = nextOrderNo(db, title);
        out.notice = JobPaper::numberMoved(QStringLiteral("Purchase Order"), line.poNo, out.number);
    }
    const qint64 record = nextRecordNo(db);
    db.execute(QStringLiteral("INSERT INTO tblPurchaseOrder (%1) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")
                   .arg(kColumns),
               {record, out.number, text(line.partyPONo), line.date, line.partyCode.trimmed(),
                line.partyName.trimmed(), line.description.trimmed(), figure(line.quantity), text(line.type),
                figure(line.unitPrice), text(line.demandNo), text(line.jobNo), title});
    tx.commit();
    out.rowsWritten = 1;
    if (recordNo)
        *recordNo = record;
    return out;
}

Outcome modifyLine(SessionConnection &db, const OrderLine &line)
{
    if (Outcome c = check(line, Command::Modify); !c)
        return c;
    Transaction tx(db);
    if (Outcome c = checkParty(db, line, Msg::kPartyCodeNotFound); !c)
        return c;
    const QString title = text(line.titleName.trimmed());
    const int head = db.execute(QStringLiteral("UPDATE tblPurchaseOrder SET PartyPONo = ?, VDate = ?, PartyCode = ?, "
                                               "PartyName = ? WHERE PONo = ? AND TitleName = ?"),
                                {text(line.partyPONo), line.date, line.partyCode.trimmed(), line.partyName.trimmed(),
                                 line.poNo, title});
    const int row = db.execute(QStringLiteral("UPDATE tblPurchaseOrder SET Description = ?, Quantity = ?, Type = ?, "
                                              "UnitPrice = ?, JobNo = ?, DemandNo = ? "
                                              "WHERE PONo = ? AND RecordNo = ? AND TitleName = ?"),
                               {line.description.trimmed(), figure(line.quantity), text(line.type),
                                figure(line.unitPrice), text(line.jobNo), text(line.demandNo), line.poNo,
                                line.recordNo, title});
    // A line picked from another order (or gone meanwhile) is not half
    // written: the head stays as it was too.
    if (row == 0)
        return Outcome::refusal(Msg::kLineNotFound, QStringLiteral("txtPONo"));
    tx.commit();
    Outcome out = Outcome::success(Msg::kModified);
    out.number = line.poNo;
    out.rowsWritten = head;
    return out;
}

Outcome deleteLine(SessionConnection &db, const QString &title, qint64 poNo, qint64 recordNo)
{
    Transaction tx(db);
    const int n = db.execute(QStringLiteral("DELETE FROM tblPurchaseOrder WHERE PONo = ? AND RecordNo = ? "
                                            "AND TitleName = ?"),
                             {poNo, recordNo, text(title.trimmed())});
    if (n == 0)
        return Outcome::refusal(Msg::kLineNotFound, QStringLiteral("txtPONo"));
    tx.commit();
    Outcome out = Outcome::success(Msg::kDeleted);
    out.number = poNo;
    out.rowsWritten = n;
    return out;
}

} // namespace PurchaseOrderRules
