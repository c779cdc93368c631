#include "stock/PurchaseStockPosting.h"

#include "foundation/DateRules.h"
#include "foundation/Lookups.h"
#include "foundation/SessionConnection.h"
#include "vouchers/Ledger.h"
#include "vouchers/PostingChecks.h"
#include "vouchers/VoucherRules.h"

#include <QSet>

using namespace PurchaseStock;

namespace {

// "2.500000" -> "2.5", "12.00" -> "12": a stored number as the user typed it.
QString decimalText(const QString &stored)
{
    QString t = stored.trimmed();
    if (t.contains(QLatin1Char('.'))) {
        while (t.endsWith(QLatin1Char('0')))
            t.chop(1);
        if (t.endsWith(QLatin1Char('.')))
            t.chop(1);
    }
    return t.isEmpty() ? QStringLiteral("0") : t;
}

QString numberText(const QString &typed)
{
    const QString t = typed.trimmed();
    return t.isEmpty() ? QStringLiteral("0") : t;
}

bool lineExists(SessionConnection &db, const QString &type, qint64 voucherNo, qint64 recordNo)
{
    return db.selectOne(QStringLiteral("SELECT RecordNo FROM tblPurchaseStock WHERE VoucherType = ? AND VoucherNo = ? "
                                       "AND RecordNo = ?"),
                        {type, voucherNo, recordNo})
        .has_value();
}

// The checks of the screen, made again on what reaches the database.
Outcome checkHeader(SessionConnection &db, const Header &h, const QString &quantity, Command command)
{
    if (h.voucherType != kType)
        return Outcome::refusal(PostingMessages::kUnknownType, QStringLiteral("cmbVoucherType"));
    Entry e;
    e.header = h;
    e.voucherNoText = QString::number(h.voucherNo);
    e.dateText = DateRules::toMaskText(h.date);
    e.purchaseCode = Lookups::codeFromName(db, h.purchaseName).value_or(QString());
    e.quantityText = quantity;
    return checkEntry(e, command, Lookups::partyNameExists(db, h.partyName));
}

} // namespace

PurchaseStockPosting::PurchaseStockPosting(SessionConnection &db, const QString &userName, const QDate &today)
    : m_db(db), m_user(userName), m_today(today)
{
}

qint64 PurchaseStockPosting::nextVoucherNo(SessionConnection &db, const QString &type)
{
    return db.scalar(QStringLiteral("SELECT MAX(VoucherNo) FROM tblPurchaseStock WHERE VoucherType = ?"), {type})
               .toLongLong()
        + 1;
}

qint64 PurchaseStockPosting::nextRecordNo(SessionConnection &db, const QString &type)
{
    return db.scalar(QStringLiteral("SELECT MAX(RecordNo) FROM tblPurchaseStock WHERE VoucherType = ?"), {type})
               .toLongLong()
        + 1;
}

std::optional<qint64> PurchaseStockPosting::voucherOfRecord(SessionConnection &db, const QString &type,
                                                            qint64 recordNo)
{
    const auto r = db.selectOne(QStringLiteral("SELECT VoucherNo FROM tblPurchaseStock WHERE VoucherType = ? "
                                               "AND RecordNo = ?"),
                                {type, recordNo});
    if (!r)
        return std::nullopt;
    return r->integer(0);
}

QVector<Line> PurchaseStockPosting::lines(SessionConnection &db, const QString &type, qint64 voucherNo)
{
    QVector<Line> out;
    const QueryResult rows = db.select(
        QStringLiteral("SELECT RecordNo, ItemDesc, Weight, Quantity, UnitRate, UnitType, Amount "
                       "FROM tblPurchaseStock WHERE VoucherType = ? AND VoucherNo = ? ORDER BY RecordNo"),
        {type, voucherNo});
    for (const Row &r : rows) {
        Line l;
        l.recordNo = r.integer(0);
        l.itemDesc = r.text(1).trimmed();
        l.weight = r.text(2).trimmed();
        l.quantity = decimalText(r.text(3));
        l.unitRate = decimalText(r.text(4));
        l.unitType = r.text(5).trimmed();
        l.amount = r.moneyOrZero(QStringLiteral("Amount"));
        out << l;
    }
    return out;
}

std::optional<Header> PurchaseStockPosting::storedHeader(SessionConnection &db, const QString &type, qint64 voucherNo)
{
    const auto r = db.selectOne(
        QStringLiteral("SELECT BillNo, VDate, PartyName, PurchaseName, Freight, SaleTax FROM tblPurchaseStock "
                       "WHERE VoucherType = ? AND VoucherNo = ? ORDER BY RecordNo"),
        {type, voucherNo});
    if (!r)
        return std::nullopt;
    Header h;
    h.voucherType = type;
    h.voucherNo = voucherNo;
    h.billNo = r->text(0).trimmed();
    h.date = r->date(1);
    h.partyName = r->text(2).trimmed();
    h.purchaseName = r->text(3).trimmed();
    h.freight = r->moneyOrZero(QStringLiteral("Freight"));
    h.saleTax = decimalText(r->text(5));
    return h;
}

void PurchaseStockPosting::writeHeader(const Header &h)
{
    m_db.execute(QStringLiteral("UPDATE tblPurchaseStock SET BillNo = ?, VDate = ?, PartyName = ?, PurchaseName = ?, "
                                "Freight = ?, SaleTax = CAST(? AS NUMERIC) WHERE VoucherType = ? AND VoucherNo = ?"),
                 {h.billNo, h.date, h.partyName, h.purchaseName, wholeMoney(h.freight).toVariant(), numberText(h.saleTax),
                  h.voucherType, h.voucherNo});
}

Outcome PurchaseStockPosting::rewriteLegs(const QString &type, qint64 voucherNo, const QString &careOf)
{
    const QVector<Line> stored = lines(m_db, type, voucherNo);
    QVector<LedgerRow> rows;
    if (!stored.isEmpty()) {
        Header h = *storedHeader(m_db, type, voucherNo);
        h.careOf = careOf;
        const auto partyCode = Lookups::codeFromName(m_db, h.partyName);
        const auto purchaseCode = Lookups::codeFromName(m_db, h.purchaseName);
        if (!partyCode)
            return Outcome::refusal(Lookups::partyNotFoundMessage(), QStringLiteral("cmbPartyName"));
        if (!purchaseCode || !isPurchaseCode(*purchaseCode))
            return Outcome::refusal(PurchaseStockMessages::kNotPurchaseAccount, QStringLiteral("cmbPurchaseName"));
        if (*partyCode == *purchaseCode)
            return Outcome::refusal(PurchaseStockMessages::kSameAccount, QStringLiteral("cmbPartyName"));
        rows = legs(h, *partyCode, *purchaseCode, stored);
    }

    PostingChecks checks(m_db);
    checks.keepLookups(m_keepLookups);
    const QueryResult old = m_db.select(QStringLiteral("SELECT SrNo, VDate FROM tblPartyBalance "
                                                       "WHERE VoucherType = ? AND VoucherNo = ? ORDER BY SrNo"),
                                        {type, voucherNo});
    QSet<QDate> oldDates;
    for (const Row &r : old)
        oldDates.insert(r.date(1));
    for (const QDate &d : oldDates)
        if (Outcome open = checks.checkVoucher(type, d); !open)
            return open;
    if (!rows.isEmpty())
        if (Outcome ok = checks.check(rows); !ok)
            return ok;

    LedgerWriter writer(m_db, m_user, m_today);
    writer.beginBatch();
    for (const Row &r : old)
        writer.remove(r.integer(0), VoucherKey{type, voucherNo, r.date(1)});
    writer.insertMany(rows);
    writer.endBatch();
    Outcome out = Outcome::passed();
    out.rowsWritten = rows.size();
    return out;
}

Outcome PurchaseStockPosting::saveLine(const Header &given, Line line, bool startsVoucher, qint64 *recordNo)
{
    Transaction tx(m_db);
    Header h = given;
    if (Outcome ok = checkHeader(m_db, h, line.quantity, Command::Save); !ok)
        return ok;
    PostingChecks checks(m_db);
    checks.keepLookups(m_keepLookups);
    if (Outcome open = checks.checkVoucher(h.voucherType, h.date); !open)
        return open;

    Outcome out;
    Ledger::lockVoucherSeries(m_db, h.voucherType);
    if (startsVoucher) {
        const bool taken = storedHeader(m_db, h.voucherType, h.voucherNo).has_value()
            || Ledger::voucherNumberTaken(m_db, h.voucherType, h.voucherNo);
        if (taken) {
            const qint64 next = qMax(nextVoucherNo(m_db, h.voucherType), Ledger::nextVoucherNo(m_db, h.voucherType));
            out.notice = VoucherMessages::numberMoved(h.voucherNo, next);
            h.voucherNo = next;
        }
    } else if (auto before = storedHeader(m_db, h.voucherType, h.voucherNo)) {
        // The voucher's lines leave their old date: it must be open too.
        if (Outcome open = checks.checkVoucher(h.voucherType, before->date); !open)
            return open;
    }
    line.recordNo = nextRecordNo(m_db, h.voucherType);
    line.amount = lineAmount(line.quantity, line.unitRate);

    writeHeader(h);
    m_db.execute(QStringLiteral("INSERT INTO tblPurchaseStock (VoucherType, VoucherNo, RecordNo, BillNo, VDate, "
                                "PartyName, ItemDesc, Weight, Quantity, UnitRate, UnitType, Freight, Amount, "
                                "PurchaseName, UserName, EntryDate, SaleTax) VALUES (?, ?, ?, ?, ?, ?, ?, ?, "
                                "CAST(? AS NUMERIC), CAST(? AS NUMERIC), ?, ?, ?, ?, ?, ?, CAST(? AS NUMERIC))"),
                 {h.voucherType, h.voucherNo, line.recordNo, h.billNo, h.date, h.partyName, line.itemDesc,
                  line.weight, numberText(line.quantity), numberText(line.unitRate), line.unitType,
                  wholeMoney(h.freight).toVariant(), line.amount.toVariant(), h.purchaseName, m_user, m_today, numberText(h.saleTax)});
    const Outcome legsDone = rewriteLegs(h.voucherType, h.voucherNo, h.careOf);
    if (!legsDone)
        return legsDone;
    tx.commit();
    out.ok = true;
    out.message = PurchaseStockMessages::kSaved;
    out.number = h.voucherNo;
    out.rowsWritten = legsDone.rowsWritten;
    if (recordNo)
        *recordNo = line.recordNo;
    return out;
}

Outcome PurchaseStockPosting::modifyLine(const Header &h, const Line &given)
{
    Transaction tx(m_db);
    if (Outcome ok = checkHeader(m_db, h, given.quantity, Command::Modify); !ok)
        return ok;
    if (given.recordNo <= 0)
        return Outcome::refusal(PurchaseStockMessages::kNoLine, QStringLiteral("dg"));
    if (!lineExists(m_db, h.voucherType, h.voucherNo, given.recordNo))
        return Outcome::refusal(PurchaseStockMessages::kOtherVoucher, QStringLiteral("txtVoucherNo"));
    PostingChecks checks(m_db);
    for (const QDate &d : {storedHeader(m_db, h.voucherType, h.voucherNo)->date, h.date})
        if (Outcome open = checks.checkVoucher(h.voucherType, d); !open)
            return open;

    Line line = given;
    line.amount = lineAmount(line.quantity, line.unitRate);
    writeHeader(h);
    m_db.execute(QStringLiteral("UPDATE tblPurchaseStock SET ItemDesc = ?, Weight = ?, Quantity = CAST(? AS NUMERIC), "
                                "UnitRate = CAST(? AS NUMERIC), UnitType = ?, Amount = ?, UserName = ?, EntryDate = ? "
                                "WHERE VoucherType = ? AND VoucherNo = ? AND RecordNo = ?"),
                 {line.itemDesc, line.weight, numberText(line.quantity), numberText(line.unitRate), line.unitType,
                  line.amount.toVariant(), m_user, m_today, h.voucherType, h.voucherNo, line.recordNo});
    const Outcome legsDone = rewriteLegs(h.voucherType, h.voucherNo, h.careOf);
    if (!legsDone)
        return legsDone;
    tx.commit();
    Outcome out = Outcome::success(PurchaseStockMessages::kModified);
    out.number = h.voucherNo;
    out.rowsWritten = legsDone.rowsWritten;
    return out;
}

Outcome PurchaseStockPosting::deleteLine(const Header &h, qint64 recordNo)
{
    Transaction tx(m_db);
    if (Outcome ok = checkHeader(m_db, h, QString(), Command::Delete); !ok)
        return ok;
    if (recordNo <= 0)
        return Outcome::refusal(PurchaseStockMessages::kNoLine, QStringLiteral("dg"));
    if (!lineExists(m_db, h.voucherType, h.voucherNo, recordNo))
        return Outcome::refusal(PurchaseStockMessages::kOtherVoucher, QStringLiteral("txtVoucherNo"));
    if (Outcome open = PostingChecks(m_db).checkVoucher(h.voucherType,
                                                        storedHeader(m_db, h.voucherType, h.voucherNo)->date);
        !open)
        return open;
    m_db.execute(QStringLiteral("DELETE FROM tblPurchaseStock WHERE VoucherType = ? AND VoucherNo = ? AND RecordNo = ?"),
                 {h.voucherType, h.voucherNo, recordNo});
    const Outcome legsDone = rewriteLegs(h.voucherType, h.voucherNo, h.careOf);
    if (!legsDone)
        return legsDone;
    tx.commit();
    Outcome out = Outcome::success(PurchaseStockMessages::kModified);
    out.number = h.voucherNo;
    out.rowsWritten = legsDone.rowsWritten;
    return out;
}

QueryResult PurchaseStockPosting::purchaseAccounts(SessionConnection &db)
{
    return db.select(QStringLiteral("SELECT PartyName, PartyCode FROM tblPartyInfo WHERE PartyCode NOT LIKE '__-__-000%' "
                                    "AND PartyCode >= ? AND PartyCode <= ? ORDER BY PartyCode"),
                     {kFirstPurchaseCode, kLastPurchaseCode});
}

QueryResult PurchaseStockPosting::billLines(SessionConnection &db, const QString &type, const QString &billNo)
{
    return db.select(QStringLiteral("SELECT RecordNo, Weight, ItemDesc, Quantity, UnitRate, PartyName, VoucherNo "
                                    "FROM tblPurchaseStock WHERE VoucherType = ? AND BillNo = ? ORDER BY RecordNo"),
                     {type, billNo});
}
