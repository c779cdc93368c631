#include "vouchers/BillWiseDemo.h"

#include "foundation/SessionConnection.h"
#include "vouchers/BillWisePayment.h"
#include "vouchers/DemoGenerator.h"

#include <QHash>

void billWiseDemoPart(DemoContext &c)
{
    c.flush(); // the receipts of the parts before this one
    // What each customer paid: the credits on its account, less the debit
    // it opened the year with, which they settle first.
    QHash<QString, Money> paid;
    const QueryResult receipts = c.db.select(
        QStringLiteral("SELECT PartyCode, SUM(PartyCR) AS Paid, "
                       "SUM(CASE WHEN VoucherType = 'JV' AND VoucherNo = 0 THEN PartyDR ELSE 0 END) AS Opening "
                       "FROM tblPartyBalance WHERE PartyCode >= ? AND PartyCode <= ? GROUP BY PartyCode"),
        {QStringLiteral("17-10-000"), QStringLiteral("18-99-999")});
    for (const Row &r : receipts)
        paid.insert(r.text(0).trimmed(), r.moneyOrZero("Paid") - r.moneyOrZero("Opening"));

    const QueryResult pending = c.db.select(
        QStringLiteral("SELECT PartyCode, TitleName, InvoiceNo, TermsOfSale, ValueIncludingTax FROM BillWisePayment "
                       "WHERE Status = ? ORDER BY PartyCode, InvoiceDate, InvoiceNo, TitleName, TermsOfSale"),
        {BillWisePayment::statusWord(BillWisePayment::Mark::Pending)});
    QVector<BillKey> done;
    for (const Row &r : pending) {
        const QString code = r.text("PartyCode").trimmed();
        const Money amount = r.moneyOrZero("ValueIncludingTax");
        Money &left = paid[code];
        if (amount > left)
            continue;
        left -= amount;
        done.append({r.text("TitleName").trimmed(), r.integer("InvoiceNo"), r.text("TermsOfSale"), code});
    }
    if (done.isEmpty())
        return;
    const Outcome out = BillWisePayment::mark(c.db, done, BillWisePayment::Mark::Done);
    if (!out)
        throw DbError(QStringLiteral("The demonstration bills were not marked: %1").arg(out.message));
}
