#include "admin/BooksCheck.h"

#include "foundation/Money.h"
#include "foundation/SessionConnection.h"
#include "sales/InvoiceRules.h"
#include "services/OtherServices.h"
#include "stock/PurchaseStockRules.h"
#include "vouchers/Ledger.h"
#include "vouchers/LedgerCheck.h"
#include "vouchers/PostingChecks.h"
#include "vouchers/VoucherRules.h"

#include <QElapsedTimer>
#include <QHash>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <algorithm>
#include <limits>
#include <map>
#include <tuple>

namespace BooksCheck {

namespace {

const QString kDateFormat = QStringLiteral("dd/MM/yyyy");

// An amount column as whole cents, exact on both engines whatever the
// column's storage.
QString cents(const QString &column)
{
    return QStringLiteral("CAST(ROUND(COALESCE(%1, 0) * 100) AS BIGINT)").arg(column);
}

QString money(qint64 c) { return Money::fromCents(c).toDisplayString(); }

QString trimmed(const QString &s)
{
    QString t = s;
    while (t.endsWith(QLatin1Char(' ')))
        t.chop(1);
    return t;
}

// The fault list, cut at the limit per kind.
class Faults
{
public:
    Faults(Result &result, int limit) : m_result(result), m_limit(limit) {}

    void start(Kind kind)
    {
        if (!m_result.checked.contains(kind))
            m_result.checked << kind;
    }
    void add(Fault f)
    {
        if (m_count[int(f.kind)]++ < m_limit)
            m_result.faults << std::move(f);
        else
            ++m_result.truncated;
    }
    // A fault of the voucher in columns first (type), first + 1 (number)
    // and first + 2 (date) of the row.
    static Fault voucher(Kind kind, const Row &r, int first)
    {
        Fault f;
        f.kind = kind;
        f.docType = trimmed(r.text(first));
        f.number = r.integer(first + 1);
        f.date = r.date(first + 2);
        return f;
    }

private:
    Result &m_result;
    int m_limit;
    QHash<int, int> m_count;
};

Fault fault(Kind kind, const QString &type, qint64 number, const QDate &date, const QString &text,
            const QString &account = QString(), const QString &title = QString())
{
    Fault f;
    f.kind = kind;
    f.docType = type;
    f.number = number;
    f.date = date;
    f.text = text;
    f.account = account;
    f.title = title;
    return f;
}

// ------------------------------------------------------------ vouchers

const QStringList &knownTypes()
{
    static const QStringList types = {QStringLiteral("CP"), QStringLiteral("CR"), QStringLiteral("BP"),
                                      QStringLiteral("BR"), QStringLiteral("BC"), QStringLiteral("JV"),
                                      QStringLiteral("SV"), QStringLiteral("PS"), QStringLiteral("CS"),
                                      QStringLiteral("OS")};
    return types;
}

// A ledger row that breaks the row rule: an amount missing, two sides, a
// balance that is not debit less credit, no date, an unknown type. The
// placeholders take knownTypes().
QString badRowCondition()
{
    QStringList places;
    for (int i = 0; i < knownTypes().size(); ++i)
        places << QStringLiteral("?");
    return QStringLiteral("(PartyDR IS NULL OR PartyCR IS NULL OR PartyBalance IS NULL OR VDate IS NULL "
                          "OR VoucherType IS NULL OR (PartyDR <> 0 AND PartyCR <> 0) "
                          "OR ROUND((PartyDR - PartyCR - PartyBalance) * 100) <> 0 OR VoucherType NOT IN (%1))")
        .arg(places.join(QStringLiteral(", ")));
}

QVariantList knownTypeParams()
{
    QVariantList params;
    for (const QString &t : knownTypes()) {
        Q_ASSERT(PostingChecks::isKnownType(t));
        params << t;
    }
    return params;
}

// The faults of one voucher (type, number, date) from its sums: columns
// type, number, date, then the difference, the cash rows and the cash
// balance, all in cents.
void voucherFaults(const Row &r, Faults &out)
{
    const qint64 diff = r.integer(3);
    const QString type = trimmed(r.text(0));
    if (diff != 0) {
        Fault f = Faults::voucher(Kind::Unbalanced, r, 0);
        f.text = QStringLiteral("Debit and credit differ by %1 %2")
                     .arg(money(qAbs(diff)), diff > 0 ? QStringLiteral("DR") : QStringLiteral("CR"));
        out.add(std::move(f));
    }
    const bool cp = type == QLatin1String("CP");
    const bool cr = type == QLatin1String("CR");
    if ((cp || cr) && (r.integer(4) == 0 || (cp && r.integer(5) > 0) || (cr && r.integer(5) < 0))) {
        Fault f = Faults::voucher(Kind::CashRow, r, 0);
        f.account = Ledger::kCashCode;
        f.text = cp ? QStringLiteral("Cash payment without its CASH IN HAND credit")
                    : QStringLiteral("Cash receipt without its CASH IN HAND debit");
        out.add(std::move(f));
    }
}

// Every voucher (type, number, date) balances, and a cash voucher carries
// its CASH IN HAND row: a credit for CP, a debit for CR; and a voucher
// number of a type stands on one date. One grouped pass over the ledger
// in the order of its voucher index, a group a number: a number on one
// date is the voucher itself, and only the few numbers on several dates
// are then read date by date. A sale voucher's number is its title's, so
// several dates are right for it; each sale voucher is proved against its
// invoice by invoices(). The opening balances (JV 0) are checked together
// by openings().
void vouchers(SessionConnection &db, Faults &out)
{
    out.start(Kind::Unbalanced);
    out.start(Kind::CashRow);
    out.start(Kind::Duplicate);
    const QString bal = cents(QStringLiteral("PartyBalance"));
    const QString sums = QStringLiteral("SUM(%1) AS Diff, SUM(CASE WHEN PartyCode = ? THEN 1 ELSE 0 END) AS CashRows, "
                                        "SUM(CASE WHEN PartyCode = ? THEN %1 ELSE 0 END) AS Cash")
                             .arg(bal);
    const QString faulty = QStringLiteral("(Diff <> 0 OR (VoucherType IN ('CP', 'CR') AND CashRows = 0) "
                                          "OR (VoucherType = 'CP' AND Cash > 0) OR (VoucherType = 'CR' AND Cash < 0))");
    const QueryResult numbers = db.select(
        QStringLiteral("SELECT VoucherType, VoucherNo, FirstDate, Diff, CashRows, Cash, LastDate FROM ("
                       "SELECT VoucherType, VoucherNo, MIN(VDate) AS FirstDate, MAX(VDate) AS LastDate, %1 "
                       "FROM tblPartyBalance WHERE NOT (VoucherType = 'JV' AND VoucherNo = 0) "
                       "GROUP BY VoucherType, VoucherNo) v "
                       "WHERE (FirstDate = LastDate AND %2) OR (FirstDate <> LastDate AND VoucherType <> 'SV') "
                       "ORDER BY VoucherType, VoucherNo")
            .arg(sums, faulty),
        {Ledger::kCashCode, Ledger::kCashCode});
    QStringList twice;
    QVariantList params{Ledger::kCashCode, Ledger::kCashCode};
    for (const Row &r : numbers) {
        if (r.date(2) == r.date(6)) {
            voucherFaults(r, out);
            continue;
        }
        Fault f = Faults::voucher(Kind::Duplicate, r, 0);
        f.text = QStringLiteral("Vouchers on several dates share this number");
        out.add(std::move(f));
        if (twice.size() < 500) {
            twice << QStringLiteral("(VoucherType = ? AND VoucherNo = ?)");
            params << trimmed(r.text(0)) << r.integer(1);
        }
    }
    if (twice.isEmpty())
        return;
    for (const Row &r : db.select(QStringLiteral("SELECT VoucherType, VoucherNo, VDate, Diff, CashRows, Cash FROM ("
                                                 "SELECT VoucherType, VoucherNo, VDate, %1 FROM tblPartyBalance "
                                                 "WHERE %2 GROUP BY VoucherType, VoucherNo, VDate) v WHERE %3 "
                                                 "ORDER BY VoucherType, VoucherNo, VDate")
                                      .arg(sums, twice.join(QStringLiteral(" OR ")), faulty),
                                  params))
        voucherFaults(r, out);
}

// The opening balances (JV 0, one row an account) balance together.
void openings(SessionConnection &db, Faults &out)
{
    out.start(Kind::Opening);
    const QueryResult rows = db.select(
        QStringLiteral("SELECT RTRIM(PartyCode) AS Code, COUNT(*) AS N, SUM(%1) AS Balance, MIN(VDate) AS VDate "
                       "FROM tblPartyBalance WHERE VoucherType = 'JV' AND VoucherNo = 0 "
                       "GROUP BY RTRIM(PartyCode) ORDER BY 1")
            .arg(cents(QStringLiteral("PartyBalance"))));
    qint64 total = 0;
    QDate date;
    for (const Row &r : rows) {
        total += r.integer(2);
        if (!date.isValid() || (r.date(3).isValid() && r.date(3) < date))
            date = r.date(3);
        if (r.integer(1) > 1)
            out.add(fault(Kind::Opening, QStringLiteral("JV"), 0, r.date(3),
                          QStringLiteral("The account has %1 opening balance rows").arg(r.integer(1)), r.text(0)));
    }
    // The profit and loss carry of the end of a year rounds its two sums to
    // whole money, so a year it ran on may open up to one unit apart.
    const bool roundedCarry = total != 0 && qAbs(total) <= 100
        && db.scalar(QStringLiteral("SELECT COUNT(*) FROM tblEditLog WHERE DocType = 'END YEAR' "
                                    "AND DocTitle = 'PROFIT/LOSS'")).toLongLong() > 0;
    if (total != 0 && !roundedCarry)
        out.add(fault(Kind::Opening, QStringLiteral("JV"), 0, date,
                      QStringLiteral("Opening balances differ by %1 %2")
                          .arg(money(qAbs(total)), total > 0 ? QStringLiteral("DR") : QStringLiteral("CR"))));
}

// ------------------------------------------------------------ rows

// Each row has one side, its balance is debit less credit, a date and a
// type the ledger knows.
void rows(SessionConnection &db, Faults &out)
{
    out.start(Kind::Row);
    const QueryResult bad = db.select(
        QStringLiteral("SELECT VoucherType, VoucherNo, VDate, SrNo, PartyCode, %1 AS DR, %2 AS CR, %3 AS Balance, "
                       "CASE WHEN PartyDR IS NULL OR PartyCR IS NULL OR PartyBalance IS NULL THEN 1 ELSE 0 END AS Empty "
                       "FROM tblPartyBalance WHERE %4 ORDER BY SrNo")
            .arg(cents(QStringLiteral("PartyDR")), cents(QStringLiteral("PartyCR")),
                 cents(QStringLiteral("PartyBalance")), badRowCondition()),
        knownTypeParams());
    for (const Row &r : bad) {
        Fault f = out.voucher(Kind::Row, r, 0);
        f.account = trimmed(r.text(4));
        const qint64 dr = r.integer(5), cr = r.integer(6), balance = r.integer(7);
        QStringList what;
        if (r.integer(8))
            what << QStringLiteral("an amount is empty");
        if (dr != 0 && cr != 0)
            what << QStringLiteral("debit %1 and credit %2 on one row").arg(money(dr), money(cr));
        if (balance != dr - cr)
            what << QStringLiteral("balance %1 is not debit less credit (%2)").arg(money(balance), money(dr - cr));
        if (!f.date.isValid())
            what << QStringLiteral("no date");
        if (!knownTypes().contains(f.docType))
            what << QStringLiteral("unknown voucher type \"%1\"").arg(f.docType);
        f.text = QStringLiteral("Row %1: %2").arg(r.integer(3)).arg(what.join(QStringLiteral("; ")));
        out.add(std::move(f));
    }
}

// ------------------------------------------------------------ accounts

// No row stands on a heading (-000) or on a code the chart does not have.
// The codes of the ledger come from its index on the code; only the rows
// of a wrong code are then read.
void accounts(SessionConnection &db, Faults &out)
{
    out.start(Kind::Account);
    QSet<QString> chart;
    for (const Row &r : db.select(QStringLiteral("SELECT PartyCode FROM tblPartyInfo")))
        chart.insert(trimmed(r.text(0)));
    QStringList wrong;
    bool nullCode = false;
    for (const Row &r : db.select(QStringLiteral("SELECT RTRIM(PartyCode) AS Code, COUNT(*) FROM tblPartyBalance "
                                                 "GROUP BY RTRIM(PartyCode)"))) {
        if (r.isNull(0)) {
            nullCode = true;
            continue;
        }
        const QString code = trimmed(r.text(0));
        if (code.isEmpty() || PostingChecks::isHeading(code) || !chart.contains(code))
            wrong << code;
    }
    if (wrong.isEmpty() && !nullCode)
        return;
    wrong = wrong.mid(0, 500);
    QStringList places;
    QVariantList params;
    for (const QString &c : wrong) {
        places << QStringLiteral("?");
        params << c;
    }
    const QString in = wrong.isEmpty() ? QStringLiteral("1 = 0")
                                       : QStringLiteral("PartyCode IN (%1)").arg(places.join(QStringLiteral(", ")));
    const QueryResult rows = db.select(
        QStringLiteral("SELECT VoucherType, VoucherNo, VDate, RTRIM(PartyCode) AS Code, COUNT(*) AS N "
                       "FROM tblPartyBalance WHERE %1 OR PartyCode IS NULL "
                       "GROUP BY VoucherType, VoucherNo, VDate, RTRIM(PartyCode) ORDER BY 1, 2, 3, 4")
            .arg(in),
        params);
    for (const Row &r : rows) {
        Fault f = out.voucher(Kind::Account, r, 0);
        f.account = trimmed(r.text(3));
        if (r.isNull(3) || f.account.isEmpty())
            f.text = QStringLiteral("A posting without an account");
        else if (PostingChecks::isHeading(f.account))
            f.text = QStringLiteral("A posting under the group heading %1").arg(f.account);
        else
            f.text = QStringLiteral("A posting to %1, which is not in the chart of accounts").arg(f.account);
        out.add(std::move(f));
    }
}

// The kept balances of every account and month equal its rows.
void kept(SessionConnection &db, Faults &out)
{
    out.start(Kind::Kept);
    QStringList differences;
    if (LedgerCheck::keptBalancesAgree(db, &differences))
        return;
    for (const QString &d : differences) {
        Fault f;
        f.kind = Kind::Kept;
        f.account = d.section(QLatin1Char(' '), 0, 0);
        f.text = QStringLiteral("Kept balance ") + d.section(QLatin1Char(' '), 1);
        out.add(std::move(f));
    }
}

// ------------------------------------------------------------ documents

// Every sale voucher equals its invoice: the customer debited and
// INVOICE BALANCE credited with the total of the lines, the voucher found
// by number, date and title as the invoice posting keeps it. The lines and
// the vouchers are read by one statement, so both sides are of one moment.
void invoices(SessionConnection &db, Faults &out)
{
    out.start(Kind::Invoice);
    struct Side
    {
        QString party;
        int parties = 0;
        qint64 total = 0;      // invoice: the lines' values with tax
        qint64 debit = 0;      // voucher: the customer rows
        qint64 credit = 0;     // voucher: the sales rows
        int customerRows = 0, salesRows = 0, otherRows = 0;
        bool invoice = false, voucher = false;
    };
    using Key = std::tuple<qint64, QDate, QString>;
    std::map<Key, Side> all;
    const QueryResult rows = db.select(
        QStringLiteral("SELECT 'I' AS Side, InvoiceNo, InvoiceDate, RTRIM(TitleName) AS Title, RTRIM(PartyCode) AS Code, "
                       "SUM(%1) AS DR, 0 AS CR, COUNT(*) AS N FROM tblInvoice "
                       "GROUP BY InvoiceNo, InvoiceDate, RTRIM(TitleName), RTRIM(PartyCode) "
                       "UNION ALL "
                       "SELECT 'V', VoucherNo, VDate, COALESCE(RTRIM(CareOf), ''), RTRIM(PartyCode), SUM(%2), SUM(%3), "
                       "COUNT(*) FROM tblPartyBalance WHERE VoucherType = ? "
                       "GROUP BY VoucherNo, VDate, COALESCE(RTRIM(CareOf), ''), RTRIM(PartyCode) ORDER BY 1")
            .arg(cents(QStringLiteral("ValueIncludingTax")), cents(QStringLiteral("PartyDR")),
                 cents(QStringLiteral("PartyCR"))),
        {InvoiceRules::kVoucherType});
    for (const Row &r : rows) {
        Side &s = all[Key{r.integer(1), r.date(2), trimmed(r.text(3))}];
        const QString code = trimmed(r.text(4));
        if (r.text(0) == QLatin1String("I")) {
            s.invoice = true;
            s.party = code;
            ++s.parties;
            s.total += r.integer(5);
            continue;
        }
        s.voucher = true;
        const qint64 n = r.integer(7), dr = r.integer(5), cr = r.integer(6);
        if (code == InvoiceRules::kSalesCode) {
            s.salesRows += int(n);
            s.credit += cr - dr;
        } else if (s.invoice && code == s.party) {
            s.customerRows += int(n);
            s.debit += dr - cr;
        } else {
            s.otherRows += int(n);
            if (!s.invoice && s.party.isEmpty())
                s.party = code;
        }
    }
    for (const auto &[key, s] : all) {
        const auto &[number, date, title] = key;
        QString text;
        if (!s.voucher)
            text = QStringLiteral("Invoice of %1 has no sale voucher").arg(money(s.total));
        else if (!s.invoice)
            text = QStringLiteral("Sale voucher without an invoice of its title");
        else if (s.parties > 1)
            text = QStringLiteral("The invoice's lines stand under %1 parties").arg(s.parties);
        else if (s.otherRows > 0 || s.customerRows != 1)
            text = QStringLiteral("The voucher does not debit the invoice's party %1 once").arg(s.party);
        else if (s.salesRows != 1)
            text = QStringLiteral("The voucher does not credit %1 once").arg(InvoiceRules::kSalesCode);
        else if (s.debit != s.total || s.credit != s.total)
            text = QStringLiteral("Voucher debit %1, credit %2; the invoice's lines %3")
                       .arg(money(s.debit), money(s.credit), money(s.total));
        if (!text.isEmpty())
            out.add(fault(Kind::Invoice, InvoiceRules::kVoucherType, number, date, text, s.party, title));
    }
}

// What a voucher's rows come to per account: code -> balance in cents.
using Legs = QMap<QString, qint64>;

QString describe(const Legs &legs)
{
    QStringList parts;
    for (auto it = legs.cbegin(); it != legs.cend(); ++it)
        parts << QStringLiteral("%1 %2").arg(it.key(), money(it.value()));
    return parts.isEmpty() ? QStringLiteral("nothing") : parts.join(QStringLiteral(", "));
}

void dropZero(Legs &legs)
{
    for (auto it = legs.begin(); it != legs.end();)
        it = it.value() == 0 ? legs.erase(it) : std::next(it);
}

// A document's ledger rows of one type and number: their dates, and what
// they come to per account.
struct Posted
{
    QSet<QDate> dates;
    Legs legs;
    QDate date() const { return dates.isEmpty() ? QDate() : *std::min_element(dates.begin(), dates.end()); }
};

// The ledger side of a document check: rows of the form 'V', number,
// date, code, balance in cents.
void addPosted(QMap<qint64, Posted> &posted, const Row &r, int codeColumn, int balanceColumn)
{
    Posted &p = posted[r.integer(1)];
    p.dates.insert(r.date(2));
    p.legs[trimmed(r.text(codeColumn))] += r.integer(balanceColumn);
}

QList<qint64> allNumbers(const QList<qint64> &a, const QList<qint64> &b)
{
    QList<qint64> all = a + b;
    std::sort(all.begin(), all.end());
    all.erase(std::unique(all.begin(), all.end()), all.end());
    return all;
}

// Every purchase voucher equals what its stored lines give (the goods and
// freight credited to the supplier, the whole debited to the purchase
// account), worked out by the purchase rule itself.
void purchases(SessionConnection &db, Faults &out)
{
    out.start(Kind::Purchase);
    const QString type = PurchaseStock::kType;
    QHash<QString, QString> codes;
    for (const Row &r : db.select(QStringLiteral("SELECT PartyName, PartyCode FROM tblPartyInfo")))
        codes.insert(trimmed(r.text(0)), trimmed(r.text(1)));
    struct Voucher
    {
        PurchaseStock::Header header;
        QVector<PurchaseStock::Line> lines;
    };
    QMap<qint64, Voucher> stored;
    QMap<qint64, Posted> posted;
    const QueryResult rows = db.select(
        QStringLiteral("SELECT 'L' AS Side, VoucherNo, VDate, RecordNo, RTRIM(PartyName) AS A, RTRIM(PurchaseName) AS B, "
                       "%1 AS X, %2 AS Y, CAST(SaleTax AS TEXT) AS T FROM tblPurchaseStock WHERE VoucherType = ? "
                       "UNION ALL "
                       "SELECT 'V', VoucherNo, VDate, 0, RTRIM(PartyCode), '', SUM(%3), 0, '' FROM tblPartyBalance "
                       "WHERE VoucherType = ? GROUP BY VoucherNo, VDate, RTRIM(PartyCode) ORDER BY 2, 1, 4")
            .arg(cents(QStringLiteral("Freight")), cents(QStringLiteral("Amount")), cents(QStringLiteral("PartyBalance"))),
        {type, type});
    for (const Row &r : rows) {
        if (r.text(0) == QLatin1String("V")) {
            addPosted(posted, r, 4, 6);
            continue;
        }
        Voucher &v = stored[r.integer(1)];
        if (v.lines.isEmpty()) {
            // The header as the first line carries it, as the purchase rule reads it.
            v.header.voucherType = type;
            v.header.voucherNo = r.integer(1);
            v.header.date = r.date(2);
            v.header.partyName = trimmed(r.text(4));
            v.header.purchaseName = trimmed(r.text(5));
            v.header.freight = Money::fromCents(r.integer(6));
            v.header.saleTax = r.text(8).trimmed();
        }
        PurchaseStock::Line l;
        l.recordNo = r.integer(3);
        l.amount = Money::fromCents(r.integer(7));
        v.lines << l;
    }
    for (const qint64 n : allNumbers(stored.keys(), posted.keys())) {
        const auto v = stored.constFind(n);
        const auto p = posted.constFind(n);
        if (v == stored.cend()) {
            out.add(fault(Kind::Purchase, type, n, p->date(), QStringLiteral("Purchase voucher without purchase lines")));
            continue;
        }
        const PurchaseStock::Header &h = v->header;
        const QString party = codes.value(h.partyName), purchase = codes.value(h.purchaseName);
        Legs expected;
        for (const LedgerRow &row : PurchaseStock::legs(h, party, purchase, v->lines))
            expected[trimmed(row.partyCode)] += row.partyBalance().cents();
        dropZero(expected);
        Legs held = p == posted.cend() ? Legs() : p->legs;
        dropZero(held);
        QString text;
        if (party.isEmpty() || purchase.isEmpty())
            text = QStringLiteral("The lines name an account the chart does not have (%1, %2)")
                       .arg(h.partyName, h.purchaseName);
        else if (p == posted.cend())
            text = expected.isEmpty() ? QString() : QStringLiteral("Purchase lines without their voucher");
        else if (p->dates.size() > 1 || p->date() != h.date)
            text = QStringLiteral("The voucher's rows are not dated as its lines (%1)").arg(h.date.toString(kDateFormat));
        else if (held != expected)
            text = QStringLiteral("The voucher holds %1; its lines give %2").arg(describe(held), describe(expected));
        if (!text.isEmpty())
            out.add(fault(Kind::Purchase, type, n, h.date, text, party));
    }
}

// Every other-services voucher equals its service: the customer debited
// with what he pays, the supplier credited with what he is paid, and the
// difference on OTHER SERVICES INCOM.
void services(SessionConnection &db, Faults &out)
{
    out.start(Kind::Service);
    const QString type = OtherServiceRules::kType;
    const QString margin = trimmed(OtherServiceRules::kMarginCode);
    struct Service
    {
        QDate date;
        Legs legs;
        QString party;
    };
    QMap<qint64, Service> stored;
    QMap<qint64, Posted> posted;
    const QueryResult rows = db.select(
        QStringLiteral("SELECT 'S' AS Side, VoucherNo, ServiceDate, RTRIM(PartyCode) AS A, RTRIM(SupplierCode) AS B, "
                       "%1 AS X, %2 AS Y FROM tblOtherServices WHERE VoucherType = ? "
                       "UNION ALL "
                       "SELECT 'V', VoucherNo, VDate, RTRIM(PartyCode), '', SUM(%3), 0 FROM tblPartyBalance "
                       "WHERE VoucherType = ? GROUP BY VoucherNo, VDate, RTRIM(PartyCode) ORDER BY 2, 1")
            .arg(cents(QStringLiteral("ServiceAmount")), cents(QStringLiteral("SupplierAmount")),
                 cents(QStringLiteral("PartyBalance"))),
        {type, type});
    for (const Row &r : rows) {
        if (r.text(0) == QLatin1String("V")) {
            addPosted(posted, r, 3, 5);
            continue;
        }
        Service &s = stored[r.integer(1)];
        s.date = r.date(2);
        s.party = trimmed(r.text(3));
        const qint64 received = r.integer(5), paid = r.integer(6);
        s.legs[s.party] += received;
        s.legs[trimmed(r.text(4))] -= paid;
        s.legs[margin] -= received - paid;
        dropZero(s.legs);
    }
    for (const qint64 n : allNumbers(stored.keys(), posted.keys())) {
        const auto s = stored.constFind(n);
        const auto p = posted.constFind(n);
        if (s == stored.cend()) {
            out.add(fault(Kind::Service, type, n, p->date(), QStringLiteral("Other-services voucher without its service")));
            continue;
        }
        Legs held = p == posted.cend() ? Legs() : p->legs;
        dropZero(held);
        QString text;
        if (p == posted.cend())
            text = QStringLiteral("Service without its voucher");
        else if (p->dates.size() > 1 || p->date() != s->date)
            text = QStringLiteral("The voucher's rows are not dated as the service (%1)").arg(s->date.toString(kDateFormat));
        else if (held != s->legs)
            text = QStringLiteral("The voucher holds %1; the service gives %2").arg(describe(held), describe(s->legs));
        if (!text.isEmpty())
            out.add(fault(Kind::Service, type, n, s->date, text, s->party));
    }
}

// ------------------------------------------------------------ numbers

// No two documents share a number (vouchers() sees the ledger's own): a
// sale voucher's number of a title on two dates, an invoice, challan or order
// number of a title on two dates or parties, and the documents numbered
// over their own table.
void duplicates(SessionConnection &db, Faults &out)
{
    out.start(Kind::Duplicate);
    struct Query
    {
        QString docType;   // empty: the type is the first column
        QString sql;       // type, number, first date, title, dates, parties/rows
        QString what;
    };
    const QVector<Query> queries = {
        {QString(),
         QStringLiteral("SELECT VoucherType, VoucherNo, MIN(VDate), COALESCE(RTRIM(CareOf), ''), COUNT(DISTINCT VDate), "
                        "0 FROM tblPartyBalance WHERE VoucherType = 'SV' "
                        "GROUP BY VoucherType, VoucherNo, COALESCE(RTRIM(CareOf), '') HAVING COUNT(DISTINCT VDate) > 1"),
         QStringLiteral("sale vouchers")},
        {QStringLiteral("INVOICE"),
         QStringLiteral("SELECT '', InvoiceNo, MIN(InvoiceDate), RTRIM(TitleName), COUNT(DISTINCT InvoiceDate), "
                        "COUNT(DISTINCT RTRIM(PartyCode)) FROM tblInvoice GROUP BY InvoiceNo, RTRIM(TitleName) "
                        "HAVING COUNT(DISTINCT InvoiceDate) > 1 OR COUNT(DISTINCT RTRIM(PartyCode)) > 1"),
         QStringLiteral("invoices")},
        {QStringLiteral("CHALLAN"),
         QStringLiteral("SELECT '', DeliveryChallanNo, MIN(VDate), RTRIM(TitleName), COUNT(DISTINCT VDate), "
                        "COUNT(DISTINCT RTRIM(PartyCode)) FROM tblDeliveryChallan "
                        "GROUP BY DeliveryChallanNo, RTRIM(TitleName) "
                        "HAVING COUNT(DISTINCT VDate) > 1 OR COUNT(DISTINCT RTRIM(PartyCode)) > 1"),
         QStringLiteral("challans")},
        {QStringLiteral("ORDER"),
         QStringLiteral("SELECT '', PONo, MIN(VDate), RTRIM(TitleName), COUNT(DISTINCT VDate), "
                        "COUNT(DISTINCT RTRIM(PartyCode)) FROM tblPurchaseOrder GROUP BY PONo, RTRIM(TitleName) "
                        "HAVING COUNT(DISTINCT VDate) > 1 OR COUNT(DISTINCT RTRIM(PartyCode)) > 1"),
         QStringLiteral("orders")},
        {QString(),
         QStringLiteral("SELECT VoucherType, VoucherNo, MIN(VDate), '', COUNT(DISTINCT VDate), "
                        "COUNT(DISTINCT RTRIM(PartyName)) FROM tblPurchaseStock GROUP BY VoucherType, VoucherNo "
                        "HAVING COUNT(DISTINCT VDate) > 1 OR COUNT(DISTINCT RTRIM(PartyName)) > 1"),
         QStringLiteral("purchase bills")},
        {QString(),
         QStringLiteral("SELECT VoucherType, VoucherNo, MIN(ServiceDate), '', COUNT(DISTINCT ServiceDate), COUNT(*) "
                        "FROM tblOtherServices GROUP BY VoucherType, VoucherNo HAVING COUNT(*) > 1"),
         QStringLiteral("services")},
        {QStringLiteral("SALARY"),
         QStringLiteral("SELECT '', VoucherNo, MIN(VDate), '', COUNT(DISTINCT VDate), 0 FROM tblEmployeeSalary "
                        "GROUP BY VoucherNo HAVING COUNT(DISTINCT VDate) > 1"),
         QStringLiteral("salary sheets")},
        {QStringLiteral("CHEQUE"),
         QStringLiteral("SELECT '', VoucherNo, MIN(VDate), '', COUNT(DISTINCT VDate), COUNT(*) FROM tblPostDatedCheque "
                        "GROUP BY VoucherNo HAVING COUNT(*) > 1"),
         QStringLiteral("post-dated cheques")},
        {QStringLiteral("JOB CARD"),
         QStringLiteral("SELECT '', JobCardNo, MIN(VDate), '', COUNT(DISTINCT VDate), COUNT(*) FROM tblJobCard "
                        "GROUP BY JobCardNo HAVING COUNT(*) > 1"),
         QStringLiteral("job cards")},
    };
    for (const Query &q : queries) {
        for (const Row &r : db.select(q.sql)) {
            Fault f = fault(Kind::Duplicate, q.docType.isEmpty() ? trimmed(r.text(0)) : q.docType, r.integer(1),
                            r.date(2), QString(), QString(), trimmed(r.text(3)));
            const qint64 dates = r.integer(4), second = r.integer(5);
            if (dates > 1)
                f.text = QStringLiteral("%1 %2 share this number on %3 dates").arg(dates).arg(q.what).arg(dates);
            else if (q.docType == QLatin1String("INVOICE") || q.docType == QLatin1String("CHALLAN")
                     || q.docType == QLatin1String("ORDER") || f.docType == PurchaseStock::kType)
                f.text = QStringLiteral("%1 parties share this number").arg(second);
            else
                f.text = QStringLiteral("%1 %2 share this number").arg(second).arg(q.what);
            out.add(std::move(f));
        }
    }
}

// ------------------------------------------------------------ closing date

bool hasTable(SessionConnection &db, const QString &table)
{
    if (db.isSQLite())
        return db.scalar(QStringLiteral("SELECT COUNT(*) FROM sqlite_master WHERE type = 'table' AND name = ? "
                                        "COLLATE NOCASE"),
                         {table})
                   .toLongLong()
            > 0;
    return db.scalar(QStringLiteral("SELECT COUNT(*) FROM information_schema.tables WHERE table_schema = current_schema() "
                                    "AND table_name = ?"),
                     {table.toLower()})
               .toLongLong()
        > 0;
}

// Nothing was posted, changed or removed in the ledger on or before the
// closing date once that date was set, but through the gate (the opening
// balances, JV 0, stand on the closing date and are changed behind the
// identification gate). The edit log tells what happened when: its rows
// of the closing date give the date in force between them, and one
// statement reads the ledger's log rows dated in the period closed at the
// time they were written.
void closedPeriod(SessionConnection &db, Faults &out)
{
    if (!hasTable(db, QStringLiteral("tblEditLog")))
        return;
    out.start(Kind::Closed);
    struct Closing
    {
        qint64 from;   // the log row that set it
        QDate date;    // invalid: no closing date
    };
    QVector<Closing> closings;
    for (const Row &r : db.select(QStringLiteral("SELECT LogNo, Change, DocDate FROM tblEditLog "
                                                 "WHERE TableName = 'tblClosingDate' ORDER BY LogNo")))
        closings << Closing{r.integer(0), trimmed(r.text(1)) == QLatin1String("DELETE") ? QDate() : r.date(2)};
    QStringList ranges;
    QVariantList params{QStringLiteral("tblPartyBalance")};
    // Rows changed to a date after the closing date, which may have been
    // moved out of the closed period.
    QStringList laterRanges;
    QVariantList laterParams{QStringLiteral("tblPartyBalance"), QStringLiteral("%VDate=%")};
    for (int i = 0; i < closings.size(); ++i) {
        if (!closings.at(i).date.isValid())
            continue;
        const qint64 until = i + 1 < closings.size() ? closings.at(i + 1).from : std::numeric_limits<qint64>::max();
        ranges << QStringLiteral("(LogNo > ? AND LogNo < ? AND DocDate <= ?)");
        params << closings.at(i).from << until << closings.at(i).date;
        laterRanges << QStringLiteral("(LogNo > ? AND LogNo < ? AND (DocDate > ? OR DocDate IS NULL))");
        laterParams << closings.at(i).from << until << closings.at(i).date;
    }
    if (ranges.isEmpty())
        return;
    auto closedAt = [&](qint64 logNo) {
        QDate closed;
        for (const Closing &c : closings)
            if (c.from < logNo)
                closed = c.date;
        return closed;
    };
    auto rowsText = [](qint64 n) {
        return n == 1 ? QStringLiteral("1 ledger row") : QStringLiteral("%1 ledger rows").arg(n);
    };
    const QueryResult rows = db.select(
        QStringLiteral("SELECT DocType, DocNo, DocDate, Change, UserName, MIN(LogNo) AS FirstNo, MIN(LoggedAt) AS FirstAt, "
                       "COUNT(*) AS N FROM tblEditLog WHERE TableName = ? AND NOT (DocType = 'JV' AND DocNo = 0) "
                       "AND (%1) GROUP BY DocType, DocNo, DocDate, Change, UserName ORDER BY MIN(LogNo)")
            .arg(ranges.join(QStringLiteral(" OR "))),
        params);
    for (const Row &r : rows) {
        Fault f = Faults::voucher(Kind::Closed, r, 0);
        const QDate closed = closedAt(r.integer(5));
        const QString change = trimmed(r.text(3));
        const QString did = change == QLatin1String("INSERT")   ? QStringLiteral("posted")
                            : change == QLatin1String("DELETE") ? QStringLiteral("removed")
                                                                : QStringLiteral("changed");
        const qint64 n = r.integer(7);
        f.text = QStringLiteral("%1 %2 by %3 at %4, when the books were closed up to %5")
                     .arg(rowsText(n))
                     .arg(did, trimmed(r.text(4)), r.text(6), closed.toString(kDateFormat));
        out.add(std::move(f));
    }

    // A row moved out of the closed period: the log dates the change by
    // the row's new date, and keeps its date before among the values
    // before. The voucher is named where it stands now.
    static const QRegularExpression dateBefore(QStringLiteral("(?:^|; )VDate=(\\d\\d/\\d\\d/\\d{4})"));
    struct Moved
    {
        Fault fault;
        qint64 rows = 0;
    };
    QVector<Moved> moved;
    QHash<QString, int> movedIndex;
    const QueryResult later = db.select(
        QStringLiteral("SELECT DocType, DocNo, DocDate, UserName, LogNo, LoggedAt, ValuesBefore FROM tblEditLog "
                       "WHERE TableName = ? AND Change = 'UPDATE' AND ValuesBefore LIKE ? "
                       "AND NOT (DocType = 'JV' AND DocNo = 0) AND (%1) ORDER BY LogNo")
            .arg(laterRanges.join(QStringLiteral(" OR "))),
        laterParams);
    for (const Row &r : later) {
        const QRegularExpressionMatch found = dateBefore.match(r.text(6));
        if (!found.hasMatch())
            continue;
        const QDate before = QDate::fromString(found.captured(1), kDateFormat);
        const QDate closed = closedAt(r.integer(4));
        if (!before.isValid() || !closed.isValid() || before > closed)
            continue;
        const QString user = trimmed(r.text(3));
        const QString key = QStringList{trimmed(r.text(0)), r.text(1), r.text(2), user, found.captured(1),
                                        closed.toString(Qt::ISODate)}
                                .join(QLatin1Char('|'));
        auto it = movedIndex.find(key);
        if (it == movedIndex.end()) {
            Moved entry{Faults::voucher(Kind::Closed, r, 0), 0};
            entry.fault.text = QStringLiteral("moved out of the closed period from %1 by %2 at %3, when the books were "
                                           "closed up to %4")
                                .arg(before.toString(kDateFormat), user, r.text(5), closed.toString(kDateFormat));
            it = movedIndex.insert(key, int(moved.size()));
            moved.append(entry);
        }
        ++moved[*it].rows;
    }
    for (Moved &m : moved) {
        m.fault.text = rowsText(m.rows) + QLatin1Char(' ') + m.fault.text;
        out.add(std::move(m.fault));
    }
}

// ------------------------------------------------------------ staging

// Lines typed on this workstation and never saved or dropped.
void staging(SessionConnection &db, Faults &out)
{
    out.start(Kind::Staging);
    struct Table
    {
        QString name;
        QString state;
        QString what;
    };
    const QVector<Table> tables = {
        {QStringLiteral("tblPartyBalanceEmpty"), QStringLiteral("DBCR"), QStringLiteral("voucher lines")},
        {QStringLiteral("tblInvoiceEmpty"), QStringLiteral("Remarks"), QStringLiteral("invoice lines")},
        {QStringLiteral("tblStockEmpty"), QStringLiteral("StockDesc"), QStringLiteral("stock lines")},
    };
    for (const Table &t : tables) {
        const qint64 n = db.scalar(QStringLiteral("SELECT COUNT(*) FROM %1 WHERE %2 IN ('INSERT', 'UPDATE', 'DELETE')")
                                       .arg(t.name, t.state))
                             .toLongLong();
        if (n > 0)
            out.add(fault(Kind::Staging, QString(), 0, QDate(),
                          QStringLiteral("%1 holds %2 %3 never saved").arg(t.name).arg(n).arg(t.what)));
    }
}

} // namespace

QString kindName(Kind kind)
{
    switch (kind) {
    case Kind::Unbalanced: return QStringLiteral("UNBALANCED VOUCHER");
    case Kind::CashRow: return QStringLiteral("CASH ROW");
    case Kind::Opening: return QStringLiteral("OPENING BALANCE");
    case Kind::Row: return QStringLiteral("LEDGER ROW");
    case Kind::Account: return QStringLiteral("ACCOUNT");
    case Kind::Kept: return QStringLiteral("KEPT BALANCE");
    case Kind::Invoice: return QStringLiteral("INVOICE");
    case Kind::Purchase: return QStringLiteral("PURCHASE");
    case Kind::Service: return QStringLiteral("OTHER SERVICES");
    case Kind::Duplicate: return QStringLiteral("NUMBER");
    case Kind::Closed: return QStringLiteral("CLOSED PERIOD");
    case Kind::Staging: return QStringLiteral("STAGING");
    }
    return QString();
}

QString Fault::document() const
{
    if (docType.isEmpty())
        return QString();
    QString s = QStringLiteral("%1 # %2").arg(docType).arg(number);
    if (!title.isEmpty())
        s += QStringLiteral(" (%1)").arg(title);
    if (date.isValid())
        s += QStringLiteral(" OF ") + date.toString(kDateFormat);
    return s;
}

bool Fault::isScreenVoucher() const
{
    return VoucherRules::opensInVoucherScreen(docType) && number > 0 && date.isValid();
}

Result run(SessionConnection &db, const Options &options)
{
    QElapsedTimer clock;
    clock.start();
    Result result;
    Faults out(result, options.maxPerKind);
    const auto step = [&](const char *name, void (*pass)(SessionConnection &, Faults &)) {
        QElapsedTimer t;
        t.start();
        pass(db, out);
        result.steps.append({QString::fromLatin1(name), t.elapsed()});
    };
    step("vouchers", &vouchers);
    step("opening balances", &openings);
    step("rows", &rows);
    step("accounts", &accounts);
    step("kept balances", &kept);
    step("invoices", &invoices);
    step("purchases", &purchases);
    step("other services", &services);
    step("numbers", &duplicates);
    step("closing date", &closedPeriod);
    if (options.ownStaging)
        step("staging", &staging);
    result.milliseconds = clock.elapsed();
    return result;
}

} // namespace BooksCheck
