#include "vouchers/VoucherPosting.h"

#include "foundation/SessionConnection.h"
#include "vouchers/PostDatedCheque.h"
#include "vouchers/PostingChecks.h"
#include "vouchers/VoucherStaging.h"

namespace {

const QString kNumberField = QStringLiteral("txtVoucherNo");

std::optional<qint64> cashRowSrNo(SessionConnection &db, const VoucherKey &key)
{
    auto r = db.selectOne(QStringLiteral("SELECT SrNo FROM tblPartyBalance WHERE VoucherType = ? AND VoucherNo = ? "
                                         "AND VDate = ? AND PartyCode = ? ORDER BY SrNo"),
                          {key.type, key.number, key.date, Ledger::kCashCode});
    if (!r)
        return std::nullopt;
    return r->integer(0);
}

} // namespace

VoucherPosting::VoucherPosting(SessionConnection &db, const QString &userName, const QDate &today)
    : m_db(db), m_user(userName), m_today(today)
{
}

void VoucherPosting::settleCheques(const VoucherKey &key, const QVector<VoucherLine> &lines)
{
    for (const VoucherLine &l : lines) {
        if (!l.cheque)
            continue;
        if (l.isLive())
            PostDatedCheques::settle(m_db, key, l.partyCode, *l.cheque);
        else
            PostDatedCheques::giveBack(m_db, key, l.partyCode, *l.cheque);
    }
}

Outcome VoucherPosting::postLocked(Voucher &v, NumberPolicy policy)
{
    if (auto why = VoucherRules::check(v))
        return Outcome::refusal(*why);
    const Outcome checked = PostingChecks(m_db).check(VoucherRules::postingRows(v));
    if (!checked)
        return checked;

    Outcome out;
    Ledger::lockVoucherSeries(m_db, v.key.type);
    if (Ledger::voucherNumberTaken(m_db, v.key.type, v.key.number)) {
        if (policy == NumberPolicy::Typed)
            return Outcome::refusal(VoucherMessages::kDuplicate, kNumberField);
        const qint64 next = Ledger::nextVoucherNo(m_db, v.key.type);
        out.notice = VoucherMessages::numberMoved(v.key.number, next);
        v.key.number = next;
    }

    const QVector<LedgerRow> rows = VoucherRules::postingRows(v);
    LedgerWriter(m_db, m_user, m_today).insertMany(rows);
    settleCheques(v.key, v.lines);

    out.ok = true;
    out.message = VoucherMessages::kSaved;
    out.number = v.key.number;
    out.rowsWritten = rows.size();
    return out;
}

Outcome VoucherPosting::post(Voucher voucher, NumberPolicy policy)
{
    Transaction tx(m_db);
    Outcome out = postLocked(voucher, policy);
    if (out.ok)
        tx.commit();
    return out;
}

Outcome VoucherPosting::saveNew(const VoucherKey &header, NumberPolicy policy)
{
    Transaction tx(m_db);
    VoucherStaging staging(m_db);
    Voucher v{header, staging.lines(true)};
    Outcome out = postLocked(v, policy);
    if (!out.ok)
        return out;
    staging.clear();
    tx.commit();
    return out;
}

Outcome VoucherPosting::saveModified(const VoucherKey &original, const VoucherKey &header)
{
    Transaction tx(m_db);
    VoucherStaging staging(m_db);
    const QVector<VoucherLine> all = staging.lines(false);
    Voucher v{header, all};
    if (auto why = VoucherRules::check(v))
        return Outcome::refusal(*why);
    // The voucher leaves its old date and takes its new one: both must be open.
    PostingChecks checks(m_db);
    for (const Outcome &checked : {checks.checkVoucher(original.type, original.date),
                                   checks.check(VoucherRules::postingRows(v))})
        if (!checked)
            return checked;

    Ledger::lockVoucherSeries(m_db, header.type);
    if ((header.number != original.number || header.date != original.date || header.type != original.type)
        && Ledger::voucherNumberTaken(m_db, header.type, header.number, original))
        return Outcome::refusal(VoucherMessages::kDuplicate, kNumberField);

    LedgerWriter writer(m_db, m_user, m_today);
    writer.beginBatch();
    Outcome out;
    QVector<LedgerRow> inserts;
    for (const VoucherLine &l : all) {
        if (l.state == LineState::Update) {
            if (!writer.update(l.srNo, original, VoucherRules::rowOfLine(header, l)))
                return Outcome::refusal(VoucherMessages::kChangedElsewhere);
            ++out.rowsWritten;
        } else if (l.state == LineState::Delete) {
            if (!writer.remove(l.srNo, original))
                return Outcome::refusal(VoucherMessages::kChangedElsewhere);
            ++out.rowsWritten;
        } else {
            inserts << VoucherRules::rowOfLine(header, l);
        }
    }
    std::optional<LedgerRow> cash = VoucherRules::cashRow(header, VoucherRules::totals(all));
    if (cash) {
        if (auto srNo = cashRowSrNo(m_db, original)) {
            writer.update(*srNo, original, *cash);
            ++out.rowsWritten;
            cash.reset();
        }
    }
    if (cash)
        inserts << *cash; // a cash voucher that had lost its cash row gets it back
    writer.insertMany(inserts);
    writer.endBatch();
    out.rowsWritten += inserts.size();
    PostDatedCheques::voucherMoved(m_db, original, header);
    settleCheques(header, all);
    staging.clear();
    tx.commit();

    out.ok = true;
    out.message = VoucherMessages::kModified;
    out.number = header.number;
    return out;
}

Outcome VoucherPosting::deleteVoucher(const VoucherKey &original)
{
    Transaction tx(m_db);
    const Outcome open = PostingChecks(m_db).checkVoucher(original.type, original.date);
    if (!open)
        return open;
    VoucherStaging staging(m_db);
    LedgerWriter writer(m_db, m_user, m_today);
    writer.beginBatch();
    Outcome out;
    for (const VoucherLine &l : staging.lines(false)) {
        if (l.state == LineState::Insert)
            continue; // never reached the ledger
        if (writer.remove(l.srNo, original))
            ++out.rowsWritten;
    }
    if (VoucherRules::addsCashRow(original.type))
        out.rowsWritten += writer.removeAccountRows(original, Ledger::kCashCode);
    PostDatedCheques::voucherRemoved(m_db, original);
    staging.clear();
    writer.removeZeroRows();
    writer.endBatch();
    tx.commit();
    out.ok = true;
    out.message = VoucherMessages::kDeleted;
    out.number = original.number;
    return out;
}
