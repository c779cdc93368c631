#include "vouchers/PartyAgeing.h"

#include "foundation/SessionConnection.h"

#include <algorithm>

namespace PartyAgeing {

Result compute(const QVector<Posting> &postingsByDate)
{
    Result r;
    r.ran = true;

    // The running balance, a whole number at every step.
    Money running;
    QVector<Line> invoices;
    for (const Posting &p : postingsByDate) {
        running = (running + p.partyDR - p.partyCR).roundedToUnits();
        if (p.voucherType.trimmed() == QLatin1String("SV"))
            invoices.append({p, running, p.partyDR});
    }
    r.runningBalance = running;

    // Newest invoice first.
    std::stable_sort(invoices.begin(), invoices.end(), [](const Line &a, const Line &b) {
        if (a.posting.voucherNo != b.posting.voucherNo)
            return a.posting.voucherNo > b.posting.voucherNo;
        return a.posting.srNo > b.posting.srNo;
    });

    Money remaining = running;
    Money totalTaken;
    Money lastAmount;
    qint64 lastVoucherNo = 0;
    for (const Line &l : invoices) {
        if (!remaining.isPositive())
            break;
        remaining -= l.posting.partyDR;
        lastVoucherNo = l.posting.voucherNo;
        totalTaken += l.posting.partyDR;
        lastAmount = l.posting.partyDR;
    }
    // The balance less all the invoices newer than the oldest one reached.
    const Money partAmount = running - (totalTaken - lastAmount).roundedToUnits();
    r.lastVoucherNo = lastVoucherNo;
    r.partAmount = partAmount;

    // Older invoices are paid, first in, first out; the oldest reached
    // shows only what is outstanding of it.
    for (Line &l : invoices) {
        if (l.posting.voucherNo < lastVoucherNo)
            continue;
        if (l.posting.voucherNo == lastVoucherNo)
            l.outstanding = partAmount;
        r.lines.append(l);
    }
    return r;
}

namespace {

void writeLines(SessionConnection &db, const QString &partyCode, const QVector<Line> &lines)
{
    constexpr int kPerStatement = 200;
    for (int start = 0; start < lines.size(); start += kPerStatement) {
        const int end = std::min<int>(lines.size(), start + kPerStatement);
        QString sql = QStringLiteral("INSERT INTO tblPartyBalanceEmpty (SrNo, VDate, VoucherType, VoucherNo, InvoiceNo, "
                                     "PartyCode, PartyName, PartyDR, PartyCR, PartyBalance, TotalDr, DBCR) VALUES ");
        QVariantList params;
        for (int i = start; i < end; ++i) {
            const Line &l = lines.at(i);
            if (i > start)
                sql += QStringLiteral(", ");
            sql += QStringLiteral("(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
            params << l.posting.srNo << l.posting.vDate << l.posting.voucherType << l.posting.voucherNo
                   << l.posting.invoiceNo << partyCode << l.posting.partyName << l.posting.partyDR.toVariant()
                   << l.posting.partyCR.toVariant() << l.runningBalance.toVariant() << l.outstanding.toVariant()
                   << QString::fromLatin1(kMarker);
        }
        db.execute(sql, params);
    }
}

} // namespace

Result runForParty(SessionConnection &db, const QString &partyCode)
{
    Transaction tx(db);
    db.execute(QStringLiteral("DELETE FROM tblPartyBalanceEmpty WHERE DBCR = ?"), {QString::fromLatin1(kMarker)});

    Result r;
    const auto balance = db.selectOne(QStringLiteral("SELECT PartyBalance FROM TrialBalanceUptoDate WHERE PartyCode = ?"),
                                      {partyCode});
    r.periodBalance = balance ? balance->moneyOrZero(QStringLiteral("PartyBalance")) : Money();
    if (!r.periodBalance.isPositive()) {
        tx.commit();
        return r;
    }

    QVector<Posting> postings;
    const QueryResult rows = db.select(
        QStringLiteral("SELECT SrNo, VDate, VoucherType, VoucherNo, InvoiceNo, PartyName, PartyDR, PartyCR "
                       "FROM tblPartyBalance WHERE PartyCode = ? ORDER BY VDate, SrNo"),
        {partyCode});
    postings.reserve(rows.size());
    for (const Row &row : rows) {
        Posting p;
        p.srNo = row.integer(0);
        p.vDate = row.date(1);
        p.voucherType = row.text(2).trimmed();
        p.voucherNo = row.integer(3);
        p.invoiceNo = row.text(4);
        p.partyName = row.text(5).trimmed();
        p.partyDR = row.money(6).value_or(Money());
        p.partyCR = row.money(7).value_or(Money());
        postings.append(p);
    }

    const Money decided = r.periodBalance;
    r = compute(postings);
    r.periodBalance = decided;
    writeLines(db, partyCode, r.lines);
    tx.commit();
    return r;
}

void clearWorkRows(SessionConnection &db)
{
    Transaction tx(db);
    db.execute(QStringLiteral("DELETE FROM tblPartyBalanceEmpty WHERE DBCR = ?"), {QString::fromLatin1(kMarker)});
    tx.commit();
}

} // namespace PartyAgeing
