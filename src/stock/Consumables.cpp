#include "stock/Consumables.h"

#include "foundation/DateRules.h"
#include "foundation/Lookups.h"
#include "foundation/SessionConnection.h"

namespace Consumables {

namespace {

QStringList firstColumn(const QueryResult &rows)
{
    QStringList out;
    for (const Row &r : rows)
        out << r.text(0).trimmed();
    return out;
}

Receipt fromRow(const Row &r, Item item)
{
    Receipt c;
    c.srNo = r.integer(QStringLiteral("SrNo"));
    c.item = item;
    c.brand = r.text(QStringLiteral("BrandName")).trimmed();
    c.type = r.text(QStringLiteral("Type")).trimmed();
    c.partyCode = r.text(QStringLiteral("PartyCode")).trimmed();
    c.partyName = r.text(QStringLiteral("PartyName")).trimmed();
    c.units = r.integer(QStringLiteral("Units"));
    c.unitPrice = r.moneyOrZero(QStringLiteral("UnitPrice"));
    c.date = r.date(QStringLiteral("VDate"));
    c.issued = r.integer(QStringLiteral("Issue"));
    return c;
}

// An account that takes postings: known, and no heading.
bool isPostingAccount(SessionConnection &db, const QString &code)
{
    if (code.trimmed().isEmpty() || code.trimmed().endsWith(QLatin1String("-000")))
        return false;
    return Lookups::accountExists(db, code.trimmed());
}

} // namespace

const QVector<Item> &items()
{
    static const QVector<Item> all = {Item::Ink, Item::Blanket, Item::Plate, Item::Developer};
    return all;
}

QString itemWord(Item item)
{
    switch (item) {
    case Item::Ink: return QStringLiteral("INK");
    case Item::Plate: return QStringLiteral("PLATE");
    case Item::Blanket: return QStringLiteral("BLANKET");
    case Item::Developer: return QStringLiteral("DEVELOPER");
    }
    return QString();
}

std::optional<Item> itemFromWord(const QString &word)
{
    for (Item i : items())
        if (itemWord(i) == word.trimmed().toUpper())
            return i;
    return std::nullopt;
}

QString optionCaption(Item item) { return itemWord(item) + QStringLiteral(" STOCK"); }
QString reportTitle(Item item) { return itemWord(item) + QStringLiteral(" STOCK REPORT"); }

QString controlStem(Item item)
{
    const QString w = itemWord(item);
    return w.left(1) + w.mid(1).toLower();
}

QStringList brands(SessionConnection &db, Item item)
{
    return firstColumn(db.select(QStringLiteral("SELECT DISTINCT BrandName AS BN FROM tblStock WHERE Item = ? "
                                                "ORDER BY BrandName"),
                                 {itemWord(item)}));
}

QStringList types(SessionConnection &db, Item item, const QString &brand)
{
    return firstColumn(db.select(QStringLiteral("SELECT DISTINCT Type AS TP FROM tblStock WHERE Item = ? AND BrandName = ? "
                                                "ORDER BY Type"),
                                 {itemWord(item), brand.trimmed()}));
}

Money Receipt::amount() const { return unitPrice.multipliedBy(QString::number(units)); }

std::optional<qint64> parseUnits(const QString &text)
{
    const QString t = text.trimmed();
    if (t.isEmpty())
        return std::nullopt;
    for (QChar ch : t)
        if (!ch.isDigit())
            return std::nullopt;
    bool ok = false;
    const qint64 n = t.toLongLong(&ok);
    if (!ok)
        return std::nullopt;
    return n;
}

Outcome checkReceiptFields(const QString &brand, const QString &type, const QString &partyName,
                           const QString &unitsText, const QString &priceText)
{
    if (brand.trimmed().isEmpty())
        return Outcome::refusal(Msg::brandMissing(), QStringLiteral("cmbBrandName"));
    if (type.trimmed().isEmpty())
        return Outcome::refusal(Msg::typeMissing(), QStringLiteral("cmbType"));
    if (partyName.trimmed().isEmpty())
        return Outcome::refusal(Msg::partyMissing(), QStringLiteral("cmbPartyName"));
    if (!parseUnits(unitsText))
        return Outcome::refusal(Msg::unitsMissing(), QStringLiteral("txtUnits"));
    const auto price = Money::parse(priceText.trimmed());
    if (priceText.trimmed().isEmpty() || !price || price->isNegative())
        return Outcome::refusal(Msg::unitPriceMissing(), QStringLiteral("txtUnitPrice"));
    return Outcome::passed();
}

Outcome addReceipt(SessionConnection &db, const Receipt &r)
{
    if (!r.date.isValid())
        return Outcome::refusal(DateRules::dateMissingMessage(), QStringLiteral("mskDate"));
    Transaction tx(db);
    const DateRules::Closing closing = DateRules::checkClosing(r.date, Lookups::closingDate(db));
    if (closing != DateRules::Closing::Open)
        return Outcome::refusal(DateRules::messageFor(closing), QStringLiteral("mskDate"));
    Receipt fresh = r;
    fresh.issued = 0;
    const Outcome checked = checkReceipt(db, fresh, r.units < 0 ? QStringLiteral("-") : QString::number(r.units),
                                         r.unitPrice.toPlainString());
    if (!checked)
        return checked;
    const qint64 sr = db.insertReturningKey(
        QStringLiteral("INSERT INTO tblStock (Item, BrandName, Type, PartyCode, PartyName, Units, UnitPrice, Issue, VDate) "
                       "VALUES (?, ?, ?, ?, ?, ?, ?, 0, ?)"),
        {itemWord(r.item), r.brand.trimmed(), r.type.trimmed(), r.partyCode.trimmed(), r.partyName.trimmed(), r.units,
         r.unitPrice.toVariant(), r.date});
    tx.commit();
    Outcome out = Outcome::success(Msg::saved());
    out.number = sr;
    out.rowsWritten = 1;
    return out;
}

QVector<Receipt> receipts(SessionConnection &db, Item item, const QString &brand, const QString &type)
{
    QVector<Receipt> out;
    for (const Row &r : db.select(QStringLiteral("SELECT SrNo, BrandName, Type, PartyCode, PartyName, Units, UnitPrice, "
                                                 "Issue, VDate FROM tblStock WHERE Item = ? AND BrandName = ? AND Type = ? "
                                                 "ORDER BY VDate, SrNo"),
                                  {itemWord(item), brand.trimmed(), type.trimmed()}))
        out << fromRow(r, item);
    return out;
}

QueryResult receiptList(SessionConnection &db, Item item, const QString &brand, const QString &type)
{
    return db.select(QStringLiteral("SELECT SrNo, VDate, PartyName, Units, Issue, InHand FROM Stock "
                                    "WHERE Item = ? AND BrandName = ? AND Type = ? ORDER BY VDate, SrNo"),
                     {itemWord(item), brand.trimmed(), type.trimmed()});
}

Outcome checkReceipt(SessionConnection &db, const Receipt &r, const QString &unitsText, const QString &priceText)
{
    const Outcome fields = checkReceiptFields(r.brand, r.type, r.partyName, unitsText, priceText);
    if (!fields)
        return fields;
    const qint64 units = *parseUnits(unitsText);
    if (units == 0)
        return Outcome::refusal(Msg::unitsMissing(), QStringLiteral("txtUnits"));
    if (units < r.issued)
        return Outcome::refusal(Msg::unitsBelowIssued(), QStringLiteral("txtUnits"));
    if (!isPostingAccount(db, r.partyCode))
        return Outcome::refusal(Msg::partyNotFound(), QStringLiteral("cmbPartyName"));
    return Outcome::passed();
}

Outcome saveChanges(SessionConnection &db, Item item, const QString &brandRead, const QString &typeRead,
                    const QVector<ReceiptEdit> &edits, const QString &successMessage)
{
    Transaction tx(db);
    int written = 0;
    const QString lockTail = db.isPostgres() ? QStringLiteral(" FOR UPDATE") : QString();
    for (const ReceiptEdit &e : edits) {
        const Receipt &r = e.receipt;
        const auto stored = db.selectOne(QStringLiteral("SELECT Issue, VDate FROM tblStock WHERE SrNo = ? AND Item = ? "
                                                        "AND BrandName = ? AND Type = ?")
                                             + lockTail,
                                         {r.srNo, itemWord(item), brandRead.trimmed(), typeRead.trimmed()});
        if (!stored)
            return Outcome::refusal(Msg::changedElsewhere());
        // The closed period holds for the receipt's old date and its new one.
        for (const QDate &d : {stored->date(QStringLiteral("VDate")), e.remove ? QDate() : r.date}) {
            if (!d.isValid())
                continue;
            const DateRules::Closing closing = DateRules::checkClosing(d, Lookups::closingDate(db));
            if (closing != DateRules::Closing::Open)
                return Outcome::refusal(DateRules::messageFor(closing), QStringLiteral("mskDate"));
        }
        if (e.remove) {
            if (stored->integer(QStringLiteral("Issue")) > 0)
                return Outcome::refusal(Msg::issuedCannotDelete());
            db.execute(QStringLiteral("DELETE FROM tblStock WHERE SrNo = ?"), {r.srNo});
        } else {
            Receipt now = r;
            now.issued = stored->integer(QStringLiteral("Issue"));
            const Outcome c = checkReceipt(db, now, QString::number(r.units), r.unitPrice.toPlainString());
            if (!c)
                return c;
            if (!r.date.isValid())
                return Outcome::refusal(DateRules::dateMissingMessage(), QStringLiteral("mskDate"));
            db.execute(QStringLiteral("UPDATE tblStock SET BrandName = ?, Type = ?, PartyCode = ?, PartyName = ?, "
                                      "Units = ?, UnitPrice = ?, VDate = ? WHERE SrNo = ?"),
                       {r.brand.trimmed(), r.type.trimmed(), r.partyCode.trimmed(), r.partyName.trimmed(), r.units,
                        r.unitPrice.toVariant(), r.date, r.srNo});
        }
        ++written;
    }
    tx.commit();
    Outcome out = Outcome::success(successMessage);
    out.rowsWritten = written;
    return out;
}

void clearStaging(SessionConnection &db)
{
    db.execute(QStringLiteral("DELETE FROM tblStockEmpty"));
}

void stage(SessionConnection &db, const StagedReceipt &l)
{
    const Receipt &r = l.receipt;
    db.execute(QStringLiteral("INSERT INTO tblStockEmpty (SrNo, Item, BrandName, Type, PartyName, PartyCode, Units, "
                              "UnitPrice, Issue, StockDate, StockDesc) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
               {l.srNo, itemWord(r.item), r.brand.trimmed(), r.type.trimmed(), r.partyName.trimmed(),
                r.partyCode.trimmed(), r.units, r.unitPrice.toVariant(), r.issued, r.date, lineStateWord(l.state)});
}

QueryResult stagedList(SessionConnection &db)
{
    return db.select(QStringLiteral("SELECT SrNo, BrandName, Type, PartyName, PartyCode, Units, UnitPrice, StockDate "
                                    "FROM tblStockEmpty WHERE StockDesc IN ('INSERT', 'UPDATE') ORDER BY StockDate, SrNo"));
}

QueryResult stockInHand(SessionConnection &db, Item item)
{
    return db.select(QStringLiteral("SELECT BrandName, Type, Received, Issued, InHand, InHandValue FROM StockInHand "
                                    "WHERE Item = ? ORDER BY BrandName, Type"),
                     {itemWord(item)});
}

Outcome checkReportFields(const QString &brand, const QString &type)
{
    if (brand.trimmed().isEmpty())
        return Outcome::refusal(Msg::brandMissingOnPrint(), QStringLiteral("cmbBrandName"));
    if (type.trimmed().isEmpty())
        return Outcome::refusal(Msg::typeMissingOnPrint(), QStringLiteral("cmbType"));
    return Outcome::passed();
}

Reports::ReportRequest stockReport(Item item, const QString &brand, const QDate &from, const QDate &to,
                                   const QString &fromText, const QString &toText)
{
    Reports::ReportRequest req;
    req.design = QStringLiteral("crStockReport");
    req.title = reportTitle(item);
    req.heading = brand.trimmed() + QLatin1Char(' ') + reportTitle(item);
    req.from = from;
    req.to = to;
    req.fromText = fromText;
    req.toText = toText;
    req.conditions << Reports::ReportCondition::equal(QStringLiteral("BrandName"), brand.trimmed())
                   << Reports::ReportCondition::atLeast(QStringLiteral("VDate"), from)
                   << Reports::ReportCondition::atMost(QStringLiteral("VDate"), to);
    return req;
}

} // namespace Consumables
