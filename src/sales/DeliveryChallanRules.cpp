#include "sales/DeliveryChallanRules.h"

#include "foundation/DateRules.h"

namespace DeliveryChallanRules {

using JobPaper::text;
namespace Msg = ChallanMsg;

namespace {

const QString kTable = QStringLiteral("tblDeliveryChallan");
const QString kColumns = QStringLiteral("RecordNo, DeliveryChallanNo, VDate, PartyCode, PartyName, Description, PONo, "
                                        "Quantity, Type, DemandNo, GateEntryNo, TitleName, CTN");

ChallanLine fromRow(const Row &r)
{
    ChallanLine l;
    l.recordNo = r.integer(QStringLiteral("RecordNo"));
    l.challanNo = r.integer(QStringLiteral("DeliveryChallanNo"));
    l.date = r.date(QStringLiteral("VDate"));
    l.partyCode = r.text(QStringLiteral("PartyCode")).trimmed();
    l.partyName = r.text(QStringLiteral("PartyName")).trimmed();
    l.description = r.text(QStringLiteral("Description"));
    l.partyPONo = r.text(QStringLiteral("PONo"));
    l.quantity = r.money(QStringLiteral("Quantity"));
    l.type = r.text(QStringLiteral("Type"));
    l.demandNo = r.text(QStringLiteral("DemandNo"));
    l.gateEntryNo = r.text(QStringLiteral("GateEntryNo"));
    l.titleName = r.text(QStringLiteral("TitleName")).trimmed();
    l.ctn = r.text(QStringLiteral("CTN"));
    return l;
}

QVariant figure(const std::optional<Money> &m) { return m ? m->toVariant() : QVariant(); }

} // namespace

qint64 nextChallanNo(SessionConnection &db, const QString &title)
{
    return JobPaper::nextNumber(db, kTable, QStringLiteral("DeliveryChallanNo"), title.trimmed());
}

qint64 nextRecordNo(SessionConnection &db)
{
    return JobPaper::nextNumber(db, kTable, QStringLiteral("RecordNo"));
}

Outcome check(const ChallanLine &l, Command command)
{
    if (l.challanNo <= 0)
        return Outcome::refusal(command == Command::Print ? Msg::kNumberMissingPrint : Msg::kNumberMissing,
                                QStringLiteral("txtDeliveryChallanNo"));
    if (!l.date.isValid())
        return Outcome::refusal(DateRules::dateMissingMessage(), QStringLiteral("mskDate"));
    if (command == Command::Print)
        return Outcome::passed();
    const bool save = command == Command::Save;
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
    return Outcome::passed();
}

QVector<OrderItem> orderItems(SessionConnection &db, const QString &partyCode, const QString &partyPONo)
{
    QVector<OrderItem> out;
    for (const Row &r : db.select(QStringLiteral("SELECT Description, DemandNo FROM tblPurchaseOrder "
                                                 "WHERE PartyCode = ? AND PartyPONo = ? ORDER BY SrNo"),
                                  {partyCode.trimmed(), text(partyPONo)}))
        out.append({r.text(0), r.text(1)});
    return out;
}

QStringList numberedItems(const QVector<OrderItem> &items)
{
    QStringList out;
    for (int i = 0; i < items.size(); ++i)
        out << QStringLiteral("%1 - %2").arg(i + 1).arg(items.at(i).description);
    return out;
}

QStringList demandNumbers(SessionConnection &db, const QString &partyCode, const QString &partyPONo,
                          const QString &description)
{
    QStringList out;
    for (const Row &r : db.select(QStringLiteral("SELECT DemandNo FROM tblPurchaseOrder WHERE PartyCode = ? "
                                                 "AND PartyPONo = ? AND Description = ? ORDER BY SrNo"),
                                  {partyCode.trimmed(), text(partyPONo), text(description)}))
        out << r.text(0);
    return out;
}

QStringList distinctDescriptions(SessionConnection &db)
{
    QStringList out;
    for (const Row &r : db.select(QStringLiteral("SELECT DISTINCT Description AS Descr FROM tblDeliveryChallan "
                                                 "ORDER BY Descr")))
        out << r.text(0);
    return out;
}

QueryResult challanGrid(SessionConnection &db, const QString &title, qint64 challanNo)
{
    return db.select(QStringLiteral("SELECT RecordNo, Description, PONo, DemandNo, Quantity FROM tblDeliveryChallan "
                                    "WHERE DeliveryChallanNo = ? AND TitleName = ? ORDER BY SrNo"),
                     {challanNo, text(title.trimmed())});
}

QueryResult deliveredGrid(SessionConnection &db, const QString &title, const QString &partyPONo)
{
    return db.select(QStringLiteral("SELECT RecordNo, Description, PONo, DemandNo, Quantity FROM tblDeliveryChallan "
                                    "WHERE PONo = ? AND TitleName = ? ORDER BY SrNo"),
                     {text(partyPONo), text(title.trimmed())});
}

QVector<ChallanLine> lines(SessionConnection &db, const QString &title, qint64 challanNo)
{
    QVector<ChallanLine> out;
    for (const Row &r : db.select(QStringLiteral("SELECT %1 FROM tblDeliveryChallan WHERE DeliveryChallanNo = ? "
                                                 "AND TitleName = ? ORDER BY SrNo").arg(kColumns),
                                  {challanNo, text(title.trimmed())}))
        out << fromRow(r);
    return out;
}

std::optional<ChallanLine> lineByRecordNo(SessionConnection &db, qint64 recordNo)
{
    const auto r = db.selectOne(QStringLiteral("SELECT %1 FROM tblDeliveryChallan WHERE RecordNo = ?").arg(kColumns),
                                {recordNo});
    if (!r)
        return std::nullopt;
    return fromRow(*r);
}

Outcome saveLine(SessionConnection &db, const ChallanLine &line, JobPaper::Numbering numbering,
                 const QDate &entryDate, qint64 *recordNo)
{
    if (Outcome c = check(line, Command::Save); !c)
        return c;
    Transaction tx(db);
    if (!JobPaper::isDocumentParty(db, line.partyCode))
        return Outcome::refusal(Msg::kPartyNotFound, QStringLiteral("cmbPartyName"));
    JobPaper::lockNumbering(db, kTable);
    Outcome out = Outcome::success(Msg::kSaved);
    out.number = line.challanNo;
    const QString title = text(line.titleName.trimmed());
    if (numbering == JobPaper::Numbering::Proposed
        && JobPaper::numberTaken(db, kTable, QStringLiteral("DeliveryChallanNo"), line.challanNo, title)) {
        out.number = nextChallanNo(db, title);
        out.notice = JobPaper::numberMoved(QStringLiteral("DeliveryChallan"), line.challanNo, out.number);
    }
    const qint64 record = nextRecordNo(db);
    db.execute(QStringLiteral("INSERT INTO tblDeliveryChallan (%1, EntryDate) "
                              "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)").arg(kColumns),
               {record, out.number, line.date, line.partyCode.trimmed(), line.partyName.trimmed(),
                line.description.trimmed(), text(line.partyPONo), figure(line.quantity), text(line.type),
                text(line.demandNo), text(line.gateEntryNo), title, text(line.ctn), entryDate});
    tx.commit();
    out.rowsWritten = 1;
    if (recordNo)
        *recordNo = record;
    return out;
}

Outcome modifyLine(SessionConnection &db, const ChallanLine &line)
{
    if (Outcome c = check(line, Command::Modify); !c)
        return c;
    Transaction tx(db);
    if (!JobPaper::isDocumentParty(db, line.partyCode))
        return Outcome::refusal(Msg::kPartyCodeNotFound, QStringLiteral("cmbPartyName"));
    const QString title = text(line.titleName.trimmed());
    // The carton count belongs to its line: the head leaves it alone.
    const int head = db.execute(QStringLiteral("UPDATE tblDeliveryChallan SET VDate = ?, PartyCode = ?, PartyName = ?, "
                                               "GateEntryNo = ? WHERE DeliveryChallanNo = ? AND TitleName = ?"),
                                {line.date, line.partyCode.trimmed(), line.partyName.trimmed(),
                                 text(line.gateEntryNo), line.challanNo, title});
    const int row = db.execute(QStringLiteral("UPDATE tblDeliveryChallan SET Description = ?, PONo = ?, Quantity = ?, "
                                              "Type = ?, GateEntryNo = ?, DemandNo = ?, CTN = ? "
                                              "WHERE DeliveryChallanNo = ? AND RecordNo = ? AND TitleName = ?"),
                               {line.description.trimmed(), text(line.partyPONo), figure(line.quantity),
                                text(line.type), text(line.gateEntryNo), text(line.demandNo), text(line.ctn),
                                line.challanNo, line.recordNo, title});
    if (row == 0)
        return Outcome::refusal(Msg::kLineNotFound, QStringLiteral("txtDeliveryChallanNo"));
    tx.commit();
    Outcome out = Outcome::success(Msg::kModified);
    out.number = line.challanNo;
    out.rowsWritten = head;
    return out;
}

Outcome deleteLine(SessionConnection &db, qint64 challanNo, qint64 recordNo)
{
    Transaction tx(db);
    const int n = db.execute(QStringLiteral("DELETE FROM tblDeliveryChallan WHERE DeliveryChallanNo = ? "
                                            "AND RecordNo = ?"),
                             {challanNo, recordNo});
    if (n == 0)
        return Outcome::refusal(Msg::kLineNotFound, QStringLiteral("txtDeliveryChallanNo"));
    tx.commit();
    Outcome out = Outcome::success(Msg::kDeleted);
    out.number = challanNo;
    out.rowsWritten = n;
    return out;
}

} // namespace DeliveryChallanRules
