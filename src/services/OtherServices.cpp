#include "services/OtherServices.h"

#include "foundation/DateRules.h"
#include "foundation/Lookups.h"
#include "foundation/SessionConnection.h"
#include "vouchers/Ledger.h"
#include "vouchers/PostingChecks.h"
#include "vouchers/VoucherRules.h"

#include <limits>

namespace {

const QString kColumns = QStringLiteral(
    "VoucherNo, InvoiceNo, PartyCode, PartyName, ServiceDate, Service, ServiceAmount, SupplierCode, SupplierName, "
    "SupplierAmount, CareOf");

VoucherKey keyOf(const OtherServiceEntry &e) { return {OtherServiceRules::kType, e.voucherNo, e.date}; }

LedgerRow stamped(LedgerRow r, const OtherServiceEntry &e)
{
    r.careOf = e.careOf;
    return r;
}

bool isMarginCode(const QString &code) { return code.trimmed() == OtherServiceRules::kMarginCode.trimmed(); }

} // namespace

namespace OtherServiceRules {

std::optional<Money> wholeAmount(const QString &text)
{
    const QString t = text.trimmed();
    if (t.isEmpty())
        return Money();
    bool ok = false;
    const qint64 v = t.toLongLong(&ok);
    if (!ok || v < 0 || v > std::numeric_limits<qint32>::max())
        return std::nullopt;
    return Money::fromUnits(v);
}

QVector<LedgerRow> voucherRows(const OtherServiceEntry &e)
{
    const VoucherKey key = keyOf(e);
    QVector<LedgerRow> rows;
    rows << stamped(LedgerRow::debit(key, e.partyCode, e.partyName, e.received, e.description, e.invoiceNo), e);
    rows << stamped(LedgerRow::credit(key, e.supplierCode, e.supplierName, e.paid, e.description, e.invoiceNo), e);
    const Money d = e.margin();
    if (d.isPositive())
        rows << stamped(LedgerRow::credit(key, kMarginCode, kMarginName, d, e.description, e.invoiceNo), e);
    else if (d.isNegative())
        rows << stamped(LedgerRow::debit(key, kMarginCode, kMarginName, -d, e.description, e.invoiceNo), e);
    return rows;
}

LedgerRow changedMarginRow(const OtherServiceEntry &e, Money oldMargin)
{
    const Money d = e.margin();
    LedgerRow r = stamped(LedgerRow::credit(keyOf(e), kMarginCode, kMarginName, Money(), e.description, e.invoiceNo), e);
    if (oldMargin.isNegative())
        r.partyDR = -d;
    else
        r.partyCR = d;
    return r;
}

Reports::ReportRequest registerRequest(const QDate &from, const QDate &to, const QString &fromText,
                                       const QString &toText)
{
    Reports::ReportRequest req;
    req.design = QStringLiteral("crOtherServicesRegister");
    req.title = QStringLiteral("OTHER SERVICES REGISTER");
    req.from = from;
    req.to = to;
    req.fromText = fromText;
    req.toText = toText;
    req.conditions << Reports::ReportCondition::atLeast(QStringLiteral("ServiceDate"), from)
                   << Reports::ReportCondition::atMost(QStringLiteral("ServiceDate"), to);
    return req;
}

} // namespace OtherServiceRules

OtherServices::OtherServices(SessionConnection &db, const QString &userName, const QDate &today)
    : m_db(db), m_user(userName), m_today(today)
{
}

qint64 OtherServices::nextNumber()
{
    return m_db.scalar(QStringLiteral("SELECT MAX(VoucherNo) FROM tblOtherServices WHERE VoucherType = ?"),
                       {OtherServiceRules::kType})
               .toLongLong()
        + 1;
}

std::optional<OtherServiceEntry> OtherServices::find(qint64 voucherNo)
{
    auto r = m_db.selectOne(
        QStringLiteral("SELECT %1 FROM tblOtherServices WHERE VoucherType = ? AND VoucherNo = ?").arg(kColumns),
        {OtherServiceRules::kType, voucherNo});
    if (!r)
        return std::nullopt;
    OtherServiceEntry e;
    e.voucherNo = r->integer("VoucherNo");
    e.invoiceNo = r->text("InvoiceNo");
    e.partyCode = r->text("PartyCode").trimmed();
    e.partyName = r->text("PartyName").trimmed();
    e.date = r->date("ServiceDate");
    e.description = r->text("Service");
    e.received = r->moneyOrZero("ServiceAmount");
    e.paid = r->moneyOrZero("SupplierAmount");
    e.supplierCode = r->text("SupplierCode").trimmed();
    e.supplierName = r->text("SupplierName").trimmed();
    e.careOf = r->text("CareOf").trimmed();
    return e;
}

Outcome OtherServices::check(const OtherServiceEntry &e)
{
    if (e.voucherNo <= 0)
        return Outcome::refusal(OtherServicesMessages::kNoVoucherNo, QStringLiteral("txtVoucherNo"));
    if (!e.date.isValid())
        return Outcome::refusal(DateRules::dateMissingMessage(), QStringLiteral("mskDate"));
    const struct
    {
        QString code, name, field;
    } sides[] = {{e.partyCode, e.partyName, QStringLiteral("cmbPartyName")},
                 {e.supplierCode, e.supplierName, QStringLiteral("cmbSupplierName")}};
    for (const auto &s : sides) {
        const auto code = Lookups::codeFromName(m_db, s.name);
        if (!code || code->trimmed() != s.code.trimmed())
            return Outcome::refusal(Lookups::partyNotFoundMessage(), s.field);
    }
    for (Money m : {e.received, e.paid})
        if (m.isNegative() || m > Money::fromUnits(std::numeric_limits<qint32>::max()))
            return Outcome::refusal(OtherServicesMessages::kTooLarge, QStringLiteral("txtReceivedAmount"));
    return checkRows(e);
}

Outcome OtherServices::checkRows(const OtherServiceEntry &e)
{
    Outcome o = PostingChecks(m_db).check(OtherServiceRules::voucherRows(e));
    if (!o && o.field.isEmpty())
        o.field = QStringLiteral("mskDate");
    return o;
}

Outcome OtherServices::save(OtherServiceEntry e)
{
    Transaction tx(m_db);
    if (Outcome o = check(e); !o)
        return o;
    Ledger::lockVoucherSeries(m_db, OtherServiceRules::kType);
    Outcome out;
    if (find(e.voucherNo) || Ledger::voucherNumberTaken(m_db, OtherServiceRules::kType, e.voucherNo)) {
        qint64 next = qMax(nextNumber(), Ledger::nextVoucherNo(m_db, OtherServiceRules::kType));
        out.notice = VoucherMessages::numberMoved(e.voucherNo, next);
        e.voucherNo = next;
    }
    m_db.execute(QStringLiteral("INSERT INTO tblOtherServices (VoucherType, VoucherNo, InvoiceNo, PartyCode, PartyName, "
                                "ServiceDate, Service, ServiceAmount, SupplierCode, SupplierName, SupplierAmount, "
                                "CareOf, UserName, Remarks, EntryDate) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, "
                                "'OK', ?)"),
                 {OtherServiceRules::kType, e.voucherNo, e.invoiceNo, e.partyCode, e.partyName, e.date, e.description,
                  e.received.toVariant(), e.supplierCode, e.supplierName, e.paid.toVariant(), e.careOf, m_user,
                  m_today});
    const QVector<LedgerRow> rows = OtherServiceRules::voucherRows(e);
    LedgerWriter(m_db, m_user, m_today).insertMany(rows);
    tx.commit();
    out.ok = true;
    out.message = OtherServicesMessages::kSaved;
    out.number = e.voucherNo;
    out.rowsWritten = rows.size();
    return out;
}

Outcome OtherServices::modify(const OtherServiceEntry &e)
{
    Transaction tx(m_db);
    const auto old = find(e.voucherNo);
    if (!old)
        return Outcome::refusal(OtherServicesMessages::kNotFound, QStringLiteral("txtVoucherNo"));
    if (Outcome o = check(e); !o)
        return o;
    if (Outcome o = PostingChecks(m_db).checkVoucher(OtherServiceRules::kType, old->date); !o)
        return Outcome::refusal(o.message, QStringLiteral("mskDate"));

    // The voucher's rows in the order they were written: the customer,
    // the supplier, then the margin when there is one.
    const VoucherKey oldKey = keyOf(*old);
    std::optional<qint64> customer, supplier, margin;
    for (const Row &r : m_db.select(QStringLiteral("SELECT SrNo, PartyCode FROM tblPartyBalance WHERE VoucherType = ? "
                                                   "AND VoucherNo = ? AND VDate = ? ORDER BY SrNo"),
                                    {oldKey.type, oldKey.number, oldKey.date})) {
        if (isMarginCode(r.text(1)) && !margin)
            margin = r.integer(0);
        else if (!customer)
            customer = r.integer(0);
        else if (!supplier)
            supplier = r.integer(0);
    }
    if (!customer || !supplier)
        return Outcome::refusal(OtherServicesMessages::kLedgerChanged, QStringLiteral("txtVoucherNo"));

    m_db.execute(QStringLiteral("UPDATE tblOtherServices SET InvoiceNo = ?, PartyCode = ?, PartyName = ?, "
                                "ServiceDate = ?, Service = ?, ServiceAmount = ?, SupplierCode = ?, SupplierName = ?, "
                                "SupplierAmount = ?, CareOf = ?, UserName = ?, Remarks = 'OK', EntryDate = ? "
                                "WHERE VoucherType = ? AND VoucherNo = ?"),
                 {e.invoiceNo, e.partyCode, e.partyName, e.date, e.description, e.received.toVariant(),
                  e.supplierCode, e.supplierName, e.paid.toVariant(), e.careOf, m_user, m_today,
                  OtherServiceRules::kType, e.voucherNo});

    const QVector<LedgerRow> fresh = OtherServiceRules::voucherRows(e);
    LedgerWriter writer(m_db, m_user, m_today);
    writer.beginBatch();
    int written = 0;
    bool found = writer.update(*customer, oldKey, fresh.at(0)) && writer.update(*supplier, oldKey, fresh.at(1));
    written += 2;
    const Money d = e.margin();
    if (d.isZero()) {
        if (margin)
            found = found && writer.remove(*margin, oldKey);
    } else if (margin) {
        found = found && writer.update(*margin, oldKey, OtherServiceRules::changedMarginRow(e, old->margin()));
        ++written;
    } else {
        writer.insert(fresh.at(2));
        ++written;
    }
    writer.endBatch();
    if (!found)
        return Outcome::refusal(OtherServicesMessages::kLedgerChanged, QStringLiteral("txtVoucherNo"));
    tx.commit();
    Outcome out = Outcome::success(OtherServicesMessages::kUpdated);
    out.number = e.voucherNo;
    out.rowsWritten = written;
    return out;
}

Outcome OtherServices::remove(qint64 voucherNo)
{
    Transaction tx(m_db);
    const auto old = find(voucherNo);
    if (!old)
        return Outcome::refusal(OtherServicesMessages::kNotFound, QStringLiteral("txtVoucherNo"));
    if (Outcome o = PostingChecks(m_db).checkVoucher(OtherServiceRules::kType, old->date); !o)
        return Outcome::refusal(o.message, QStringLiteral("mskDate"));
    m_db.execute(QStringLiteral("DELETE FROM tblOtherServices WHERE VoucherType = ? AND VoucherNo = ?"),
                 {OtherServiceRules::kType, voucherNo});
    const VoucherKey key = keyOf(*old);
    LedgerWriter writer(m_db, m_user, m_today);
    writer.beginBatch();
    int n = 0;
    for (const Row &r : m_db.select(QStringLiteral("SELECT SrNo FROM tblPartyBalance WHERE VoucherType = ? "
                                                   "AND VoucherNo = ? AND VDate = ? ORDER BY SrNo"),
                                    {key.type, key.number, key.date}))
        n += writer.remove(r.integer(0), key) ? 1 : 0;
    writer.endBatch();
    tx.commit();
    Outcome out = Outcome::success(OtherServicesMessages::kDeleted);
    out.number = voucherNo;
    out.rowsWritten = n;
    return out;
}
