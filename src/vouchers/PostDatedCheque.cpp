#include "vouchers/PostDatedCheque.h"

#include "foundation/DateRules.h"
#include "foundation/Lookups.h"
#include "foundation/SessionConnection.h"
#include "vouchers/PostingChecks.h"
#include "vouchers/VoucherPosting.h"

#include <QMap>

namespace {

const QString kColumns = QStringLiteral(
    "VoucherNo, PartyCode, PartyName, VDate, ChequeDate, ChequeNo, Description, Amount, BankCode, BankName, "
    "CareOf, Status, ChequeKind");

PostDatedChequeEntry entryOf(const Row &r)
{
    PostDatedChequeEntry c;
    c.voucherNo = r.integer("VoucherNo");
    c.partyCode = r.text("PartyCode").trimmed();
    c.partyName = r.text("PartyName").trimmed();
    c.vDate = r.date("VDate");
    c.chequeDate = r.date("ChequeDate");
    c.chequeNo = r.text("ChequeNo").trimmed();
    c.description = r.text("Description");
    c.amount = r.moneyOrZero("Amount");
    c.bankCode = r.text("BankCode").trimmed();
    c.bankName = r.text("BankName").trimmed();
    c.careOf = r.text("CareOf").trimmed();
    c.status = r.text("Status").trimmed();
    c.kind = r.text("ChequeKind").trimmed();
    if (c.kind.isEmpty())
        c.kind = ChequeStatus::kReceived;
    return c;
}

// An account the cheque may name: a real account, no heading.
Outcome checkAccount(SessionConnection &db, const QString &code, const QString &name, const QString &field)
{
    const auto found = Lookups::codeFromName(db, name);
    if (!found || found->trimmed() != code.trimmed())
        return Outcome::refusal(Lookups::partyNotFoundMessage(), field);
    if (PostingChecks::isHeading(code))
        return Outcome::refusal(PostingMessages::kHeading, field);
    return Outcome::passed();
}

Outcome checkDate(const QDate &date, const std::optional<QDate> &closing, const QString &field)
{
    if (!date.isValid())
        return Outcome::refusal(DateRules::dateMissingMessage(), field);
    const DateRules::Closing c = DateRules::checkClosing(date, closing);
    if (c != DateRules::Closing::Open)
        return Outcome::refusal(DateRules::messageFor(c), field);
    return Outcome::passed();
}

bool isBounce(const VoucherKey &key) { return key.type == QLatin1String("BC"); }

} // namespace

PostDatedCheques::PostDatedCheques(SessionConnection &db, const QString &userName, const QDate &today)
    : m_db(db), m_user(userName), m_today(today)
{
}

qint64 PostDatedCheques::nextNumber()
{
    return m_db.scalar(QStringLiteral("SELECT MAX(VoucherNo) FROM tblPostDatedCheque")).toLongLong() + 1;
}

std::optional<PostDatedChequeEntry> PostDatedCheques::find(qint64 voucherNo)
{
    auto r = m_db.selectOne(QStringLiteral("SELECT %1 FROM tblPostDatedCheque WHERE VoucherNo = ?").arg(kColumns),
                            {voucherNo});
    if (!r)
        return std::nullopt;
    return entryOf(*r);
}

Outcome PostDatedCheques::check(const PostDatedChequeEntry &c)
{
    if (Outcome o = checkAccount(m_db, c.partyCode, c.partyName, QStringLiteral("cmbPartyName")); !o)
        return o;
    const auto closing = Lookups::closingDate(m_db);
    if (Outcome o = checkDate(c.vDate, closing, QStringLiteral("mskDate")); !o)
        return o;
    if (Outcome o = checkDate(c.chequeDate, closing, QStringLiteral("mskChequeDate")); !o)
        return o;
    if (Outcome o = checkAccount(m_db, c.bankCode, c.bankName, QStringLiteral("cmbBankName")); !o)
        return o;
    if (c.amount.isNegative())
        return Outcome::refusal(PostingMessages::kNegative, QStringLiteral("txtAmount"));
    if (c.kind != ChequeStatus::kReceived && c.kind != ChequeStatus::kIssued)
        return Outcome::refusal(ChequeMessages::kBadKind, QStringLiteral("cmbChequeKind"));
    if (c.status != ChequeStatus::kPostDated && c.status != ChequeStatus::kPosted
        && c.status != ChequeStatus::kBounced)
        return Outcome::refusal(ChequeMessages::kBadStatus, QStringLiteral("cmbStatus"));
    return Outcome::passed();
}

Outcome PostDatedCheques::checkNumbers(const PostDatedChequeEntry &c, bool isNew)
{
    if (c.voucherNo <= 0)
        return Outcome::refusal(ChequeMessages::kNoVoucherNo, QStringLiteral("txtVoucherNo"));
    const QString chequeNo = c.chequeNo.trimmed();
    if (chequeNo.isEmpty())
        return Outcome::passed();
    const qint64 same = m_db.scalar(QStringLiteral("SELECT COUNT(*) FROM tblPostDatedCheque WHERE BankCode = ? "
                                                   "AND ChequeNo = ? AND VoucherNo <> ?"),
                                    {c.bankCode, chequeNo, isNew ? qint64(-1) : c.voucherNo})
                            .toLongLong();
    if (same > 0)
        return Outcome::refusal(ChequeMessages::kDuplicateCheque, QStringLiteral("txtChequeNo"));
    return Outcome::passed();
}

Outcome PostDatedCheques::save(PostDatedChequeEntry c)
{
    Transaction tx(m_db);
    c.status = ChequeStatus::kPostDated;
    c.description = c.description.trimmed();
    if (Outcome o = check(c); !o)
        return o;
    Ledger::lockVoucherSeries(m_db, QStringLiteral("PD"));
    Outcome out;
    if (c.voucherNo > 0 && find(c.voucherNo)) {
        const qint64 next = nextNumber();
        out.notice = VoucherMessages::numberMoved(c.voucherNo, next);
        c.voucherNo = next;
    }
    if (Outcome o = checkNumbers(c, true); !o)
        return o;
    m_db.execute(QStringLiteral("INSERT INTO tblPostDatedCheque (VoucherType, VoucherNo, PartyName, PartyCode, VDate, "
                                "ChequeDate, ChequeNo, Description, Amount, BankName, BankCode, Status, CareOf, "
                                "ChequeKind, UserName, EntryDate) VALUES ('PD', ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, "
                                "?, ?, ?)"),
                 {c.voucherNo, c.partyName, c.partyCode, c.vDate, c.chequeDate, c.chequeNo.trimmed(), c.description,
                  c.amount.toVariant(), c.bankName, c.bankCode, c.status, c.careOf, c.kind, m_user, m_today});
    tx.commit();
    out.ok = true;
    out.message = ChequeMessages::kSaved;
    out.number = c.voucherNo;
    out.rowsWritten = 1;
    return out;
}

Outcome PostDatedCheques::modify(const PostDatedChequeEntry &given)
{
    PostDatedChequeEntry c = given;
    c.description = c.description.trimmed();
    Transaction tx(m_db);
    if (!find(c.voucherNo))
        return Outcome::refusal(ChequeMessages::kNotFound, QStringLiteral("txtVoucherNo"));
    if (Outcome o = check(c); !o)
        return o;
    if (Outcome o = checkNumbers(c, false); !o)
        return o;
    m_db.execute(QStringLiteral("UPDATE tblPostDatedCheque SET PartyName = ?, PartyCode = ?, VDate = ?, ChequeDate = ?, "
                                "ChequeNo = ?, Description = ?, Amount = ?, BankName = ?, BankCode = ?, Status = ?, "
                                "CareOf = ?, ChequeKind = ?, UserName = ?, EntryDate = ? "
                                "WHERE VoucherType = 'PD' AND VoucherNo = ?"),
                 {c.partyName, c.partyCode, c.vDate, c.chequeDate, c.chequeNo.trimmed(), c.description,
                  c.amount.toVariant(), c.bankName, c.bankCode, c.status, c.careOf, c.kind, m_user, m_today,
                  c.voucherNo});
    tx.commit();
    Outcome out = Outcome::success(ChequeMessages::kModified);
    out.number = c.voucherNo;
    out.rowsWritten = 1;
    return out;
}

Outcome PostDatedCheques::remove(qint64 voucherNo)
{
    Transaction tx(m_db);
    const int n = m_db.execute(
        QStringLiteral("DELETE FROM tblPostDatedCheque WHERE VoucherType = 'PD' AND VoucherNo = ?"), {voucherNo});
    if (n == 0)
        return Outcome::refusal(ChequeMessages::kNothingDeleted, QStringLiteral("txtVoucherNo"));
    tx.commit();
    Outcome out = Outcome::success(ChequeMessages::kDeleted);
    out.number = voucherNo;
    out.rowsWritten = n;
    return out;
}

namespace {

VoucherLine lineOf(const QString &code, const QString &name, Money amount, bool debit, const QString &desc)
{
    VoucherLine l;
    l.state = LineState::Insert;
    l.partyCode = code;
    l.partyName = name;
    l.description = desc;
    (debit ? l.debit : l.credit) = amount;
    return l;
}

// The party's line and the bank's line of a cheque's voucher; the party's
// carries the cheque. `partyDebit` puts the party on the debit side.
QVector<VoucherLine> chequeLines(const PostDatedChequeEntry &c, bool partyDebit, const QString &bankDesc)
{
    VoucherLine party = lineOf(c.partyCode, c.partyName, c.amount, partyDebit, c.description);
    party.cheque = ChequeLink{c.voucherNo, c.description};
    VoucherLine bank = lineOf(c.bankCode, c.bankName, c.amount, !partyDebit, bankDesc);
    return partyDebit ? QVector<VoucherLine>{party, bank} : QVector<VoucherLine>{bank, party};
}

QString chequeWords(const PostDatedChequeEntry &c)
{
    return c.chequeNo.isEmpty() ? c.description : QStringLiteral("CHQ # %1").arg(c.chequeNo);
}

} // namespace

Outcome PostDatedCheques::clearingVoucher(qint64 voucherNo, const QDate &date, Voucher *voucher)
{
    const auto c = find(voucherNo);
    if (!c)
        return Outcome::refusal(ChequeMessages::kNotFound, QStringLiteral("txtVoucherNo"));
    if (c->status != ChequeStatus::kPostDated)
        return Outcome::refusal(ChequeMessages::kNotOpen);
    const bool received = c->kind != ChequeStatus::kIssued;
    Voucher v;
    v.key.type = received ? QStringLiteral("BR") : QStringLiteral("BP");
    v.key.date = date;
    v.key.number = Ledger::nextVoucherNo(m_db, v.key.type);
    v.lines = chequeLines(*c, !received,
                          chequeWords(*c) + (received ? QStringLiteral(" DEPOSITED") : QStringLiteral(" CLEARED")));
    *voucher = v;
    return Outcome::passed();
}

Outcome PostDatedCheques::bounce(qint64 voucherNo, const QDate &date)
{
    Transaction tx(m_db);
    const auto c = find(voucherNo);
    if (!c)
        return Outcome::refusal(ChequeMessages::kNotFound, QStringLiteral("txtVoucherNo"));
    if (c->status != ChequeStatus::kPosted)
        return Outcome::refusal(ChequeMessages::kNotPosted);
    const bool received = c->kind != ChequeStatus::kIssued;
    Voucher v;
    v.key.type = QStringLiteral("BC");
    v.key.date = date;
    v.key.number = Ledger::nextVoucherNo(m_db, v.key.type);
    v.lines = chequeLines(*c, received, chequeWords(*c) + QStringLiteral(" RETURNED UNPAID"));
    Outcome out = VoucherPosting(m_db, m_user, m_today).post(v, NumberPolicy::Proposed);
    if (!out)
        return out;
    tx.commit();
    out.message = ChequeMessages::kBounced;
    return out;
}

void PostDatedCheques::settle(SessionConnection &db, const VoucherKey &key, const QString &partyCode,
                              const ChequeLink &c)
{
    if (isBounce(key))
        db.execute(QStringLiteral("UPDATE tblPostDatedCheque SET Status = ?, BouncedNo = ?, BouncedDate = ? "
                                  "WHERE PartyCode = ? AND Description = ? AND VoucherNo = ?"),
                   {ChequeStatus::kBounced, key.number, key.date, partyCode, c.description, c.voucherNo});
    else
        db.execute(QStringLiteral("UPDATE tblPostDatedCheque SET Status = ?, ClearedType = ?, ClearedNo = ?, "
                                  "ClearedDate = ? WHERE PartyCode = ? AND Description = ? AND VoucherNo = ?"),
                   {ChequeStatus::kPosted, key.type, key.number, key.date, partyCode, c.description, c.voucherNo});
}

void PostDatedCheques::giveBack(SessionConnection &db, const VoucherKey &key, const QString &partyCode,
                                const ChequeLink &c)
{
    if (isBounce(key))
        db.execute(QStringLiteral("UPDATE tblPostDatedCheque SET Status = ?, BouncedNo = NULL, BouncedDate = NULL "
                                  "WHERE PartyCode = ? AND Description = ? AND VoucherNo = ?"),
                   {ChequeStatus::kPosted, partyCode, c.description, c.voucherNo});
    else
        db.execute(QStringLiteral("UPDATE tblPostDatedCheque SET Status = ?, ClearedType = NULL, ClearedNo = NULL, "
                                  "ClearedDate = NULL WHERE PartyCode = ? AND Description = ? AND VoucherNo = ?"),
                   {ChequeStatus::kPostDated, partyCode, c.description, c.voucherNo});
}

void PostDatedCheques::voucherMoved(SessionConnection &db, const VoucherKey &from, const VoucherKey &to)
{
    if (from == to)
        return;
    db.execute(QStringLiteral("UPDATE tblPostDatedCheque SET ClearedType = ?, ClearedNo = ?, ClearedDate = ? "
                              "WHERE ClearedType = ? AND ClearedNo = ? AND ClearedDate = ?"),
               {to.type, to.number, to.date, from.type, from.number, from.date});
    if (isBounce(from) && isBounce(to))
        db.execute(QStringLiteral("UPDATE tblPostDatedCheque SET BouncedNo = ?, BouncedDate = ? "
                                  "WHERE BouncedNo = ? AND BouncedDate = ?"),
                   {to.number, to.date, from.number, from.date});
}

void PostDatedCheques::voucherRemoved(SessionConnection &db, const VoucherKey &key)
{
    if (isBounce(key)) {
        db.execute(QStringLiteral("UPDATE tblPostDatedCheque SET Status = ?, BouncedNo = NULL, BouncedDate = NULL "
                                  "WHERE BouncedNo = ? AND BouncedDate = ? AND Status = ?"),
                   {ChequeStatus::kPosted, key.number, key.date, ChequeStatus::kBounced});
        return;
    }
    db.execute(QStringLiteral("UPDATE tblPostDatedCheque SET Status = ?, ClearedType = NULL, ClearedNo = NULL, "
                              "ClearedDate = NULL WHERE ClearedType = ? AND ClearedNo = ? AND ClearedDate = ? "
                              "AND Status = ?"),
               {ChequeStatus::kPostDated, key.type, key.number, key.date, ChequeStatus::kPosted});
}

QString ChequeDueLine::dueText() const
{
    if (cheque.status != ChequeStatus::kPostDated)
        return cheque.status;
    if (daysLeft == 0)
        return QStringLiteral("DUE TODAY");
    const qint64 n = daysLeft < 0 ? -daysLeft : daysLeft;
    return QStringLiteral("%1 DAY%2 %3").arg(n).arg(n == 1 ? QString() : QStringLiteral("S"),
                                                daysLeft < 0 ? QStringLiteral("OVERDUE") : QStringLiteral("LEFT"));
}

namespace ChequeDueList {

QVector<ChequeDueLine> lines(SessionConnection &db, const QDate &today, bool postedToo)
{
    QVariantList statuses{ChequeStatus::kPostDated, postedToo ? ChequeStatus::kPosted : ChequeStatus::kPostDated};
    QVector<ChequeDueLine> out;
    for (const Row &r : db.select(QStringLiteral("SELECT %1 FROM tblPostDatedCheque WHERE Status IN (?, ?) "
                                                 "ORDER BY ChequeDate, VoucherNo")
                                      .arg(kColumns),
                                  statuses)) {
        ChequeDueLine l;
        l.cheque = entryOf(r);
        l.daysLeft = l.cheque.chequeDate.isValid() ? today.daysTo(l.cheque.chequeDate) : 0;
        out << l;
    }
    return out;
}

QVector<BankTotal> bankTotals(const QVector<ChequeDueLine> &lines)
{
    QMap<QString, BankTotal> byName;
    for (const ChequeDueLine &l : lines) {
        if (l.cheque.status != ChequeStatus::kPostDated)
            continue;
        BankTotal &t = byName[l.cheque.bankName];
        t.bankName = l.cheque.bankName;
        t.total += l.cheque.amount;
        ++t.count;
    }
    return byName.values().toVector();
}

} // namespace ChequeDueList
