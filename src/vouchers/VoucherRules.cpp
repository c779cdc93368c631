#include "vouchers/VoucherRules.h"

#include <QHash>
#include <QSet>

namespace VoucherMessages {
QString farDate(const QDate &date)
{
    return QStringLiteral("The date %1 is more than a year after today, do you want to keep it?")
        .arg(date.toString(QStringLiteral("dd/MM/yyyy")));
}

QString numberMoved(qint64 from, qint64 to)
{
    return QStringLiteral("Voucher # %1 was taken on another workstation meanwhile, so this voucher has been saved "
                          "as voucher # %2.")
        .arg(from)
        .arg(to);
}
} // namespace VoucherMessages

namespace VoucherRules {

bool addsCashRow(const QString &type)
{
    return type == QLatin1String("CP") || type == QLatin1String("CR");
}

bool needsBalance(const QString &type)
{
    return type == QLatin1String("BC") || type == QLatin1String("BR") || type == QLatin1String("BP")
        || type == QLatin1String("JV");
}

std::optional<QString> forcedSide(const QString &type)
{
    if (type == QLatin1String("CP"))
        return QStringLiteral("DR");
    if (type == QLatin1String("CR"))
        return QStringLiteral("CR");
    return std::nullopt;
}

VoucherTotals totals(const QVector<VoucherLine> &lines)
{
    VoucherTotals t;
    for (const VoucherLine &l : lines) {
        if (!l.isLive())
            continue;
        t.debit = t.debit.value_or(Money()) + l.debit;
        t.credit = t.credit.value_or(Money()) + l.credit;
    }
    return t;
}

std::optional<QString> check(const Voucher &voucher)
{
    if (!needsBalance(voucher.key.type))
        return std::nullopt;
    const VoucherTotals t = totals(voucher.lines);
    if (t.debit.value_or(Money()) != t.credit.value_or(Money()))
        return VoucherMessages::kNotBalanced;
    return std::nullopt;
}

std::optional<LedgerRow> cashRow(const VoucherKey &key, const VoucherTotals &t)
{
    if (key.type == QLatin1String("CP"))
        return LedgerRow::credit(key, Ledger::kCashCode, Ledger::kCashName, t.debit.value_or(Money()),
                                 Ledger::kCashName);
    if (key.type == QLatin1String("CR"))
        return LedgerRow::debit(key, Ledger::kCashCode, Ledger::kCashName, t.credit.value_or(Money()),
                                Ledger::kCashName);
    return std::nullopt;
}

LedgerRow rowOfLine(const VoucherKey &key, const VoucherLine &l)
{
    LedgerRow r;
    r.voucherType = key.type;
    r.voucherNo = key.number;
    r.vDate = key.date;
    r.invoiceNo = l.invoiceNo;
    r.partyCode = l.partyCode;
    r.partyName = l.partyName;
    r.partyDR = l.debit;
    r.partyCR = l.credit;
    r.partyDesc = l.description;
    return r;
}

QVector<LedgerRow> postingRows(const Voucher &v)
{
    QVector<LedgerRow> rows;
    rows.reserve(v.lines.size() + 1);
    for (const VoucherLine &l : v.lines)
        if (l.isLive())
            rows << rowOfLine(v.key, l);
    if (auto cash = cashRow(v.key, totals(v.lines)))
        rows << *cash;
    return rows;
}

CashFigure cashFigure(const std::optional<Money> &balance)
{
    const Money b = balance.value_or(Money());
    return {b.abs(), b.isNegative() ? QStringLiteral("CR") : QStringLiteral("DR")};
}

std::optional<Money> currentCash(const QString &type, Money previousMagnitude, const VoucherTotals &t)
{
    if (type == QLatin1String("CP"))
        return previousMagnitude - t.debit.value_or(Money());
    if (type == QLatin1String("CR"))
        return previousMagnitude + t.credit.value_or(Money());
    return std::nullopt;
}

Outcome checkSide(const QString &side)
{
    if (side != QLatin1String("CR") && side != QLatin1String("DR"))
        return Outcome::refusal(VoucherMessages::kBadSide, QStringLiteral("cmbDBCR"));
    return Outcome::passed();
}

Outcome checkLine(const LineEntry &e, LineCommand command)
{
    if (e.voucherNo.trimmed().isEmpty())
        return Outcome::refusal(VoucherMessages::kNoVoucherNo, QStringLiteral("txtVoucherNo"));
    if (!e.accountFound)
        return Outcome::refusal(VoucherMessages::kNoParty, QStringLiteral("cmbPartyName"));
    if (e.amount.trimmed().isEmpty())
        return Outcome::refusal(VoucherMessages::kNoAmount, QStringLiteral("txtAmount"));
    if (command != LineCommand::Remove) {
        if (const Outcome side = checkSide(e.side); !side)
            return side;
    }
    if (e.cheque && e.chequeDesc.trimmed().isEmpty())
        return Outcome::refusal(VoucherMessages::kNoChequeDesc, QStringLiteral("cmbChequeDesc"));
    if (e.cheque && e.chequeNo.trimmed().isEmpty())
        return Outcome::refusal(VoucherMessages::kNoChequeNo, QStringLiteral("cmbCHQVoucherNo"));
    return Outcome::passed();
}

Outcome checkVoucherQuestion(const QString &number, const QString &type)
{
    if (number.trimmed().isEmpty())
        return Outcome::refusal(VoucherMessages::kNumberMissing, QStringLiteral("txtShowVoucherNo"));
    if (type.trimmed().isEmpty())
        return Outcome::refusal(VoucherMessages::kTypeMissing, QStringLiteral("cmbModifyVoucherType"));
    return Outcome::passed();
}

QString titleOfType(const QString &type)
{
    static const QHash<QString, QString> titles = {
        {QStringLiteral("CP"), QStringLiteral("CASH PAID VOUCHER")},
        {QStringLiteral("CR"), QStringLiteral("CASH RECEIVED VOUCHER")},
        {QStringLiteral("BP"), QStringLiteral("BANK PAID VOUCHER")},
        {QStringLiteral("BR"), QStringLiteral("BANK RECEIVED VOUCHER")},
        {QStringLiteral("JV"), QStringLiteral("JOURNAL VOUCHER")},
    };
    return titles.value(type, QStringLiteral("ACCOUNTS VOUCHER"));
}

bool opensInVoucherScreen(const QString &type)
{
    static const QSet<QString> types = {QStringLiteral("CP"), QStringLiteral("CR"), QStringLiteral("BP"),
                                        QStringLiteral("BR"), QStringLiteral("JV"), QStringLiteral("BC")};
    return types.contains(type);
}

} // namespace VoucherRules
