#include "admin/EditLogView.h"
#include "foundation/SessionConnection.h"
#include "sales/InvoiceRules.h"
#include "vouchers/PostingChecks.h"
#include "vouchers/VoucherRules.h"

#include <QDateTime>

namespace EditLogView {

Outcome readFilter(const QDate &from, const QDate &to, const QString &user, const QString &docType,
                   const QString &docNo, EditLog::Filter &filter)
{
    EditLog::Filter f;
    f.from = from;
    f.to = to;
    if (from.isValid() && to.isValid() && from > to)
        return Outcome::refusal(Messages::badPeriod(), QStringLiteral("mskDateFrom"));
    f.userName = user.trimmed();
    f.docType = docType.trimmed();
    const QString no = docNo.trimmed();
    if (!no.isEmpty()) {
        bool ok = false;
        const qint64 n = no.toLongLong(&ok);
        if (!ok || n < 0)
            return Outcome::refusal(Messages::badNumber(), QStringLiteral("txtDocNo"));
        f.docNo = n;
    }
    filter = f;
    return Outcome::passed();
}

QStringList userNames(SessionConnection &db)
{
    QStringList out;
    for (const Row &r : db.select(QStringLiteral("SELECT DISTINCT UserName FROM tblEditLog WHERE UserName <> '' "
                                                 "ORDER BY UserName")))
        out << r.text(0).trimmed();
    return out;
}

QStringList documentTypes(SessionConnection &db)
{
    QStringList out;
    for (const Row &r : db.select(QStringLiteral("SELECT DISTINCT DocType FROM tblEditLog WHERE DocType IS NOT NULL "
                                                 "ORDER BY DocType")))
        out << r.text(0).trimmed();
    return out;
}

Reports::ReportRequest request(const EditLog::Filter &f, const QString &fromText, const QString &toText)
{
    using Reports::ReportCondition;
    Reports::ReportRequest r;
    r.design = QStringLiteral("crEditLog");
    r.title = QStringLiteral("EDIT LOG");
    r.writePeriodRow = false; // the view reads this session's period alone
    // The days logged are the report's period; an open end takes every day.
    r.from = f.from.isValid() ? f.from : QDate(1900, 1, 1);
    r.to = f.to.isValid() ? f.to : QDate(9999, 12, 31);
    r.fromText = f.from.isValid() ? fromText : QStringLiteral("01/01/1900");
    r.toText = f.to.isValid() ? toText : QStringLiteral("THE LAST CHANGE");
    if (!f.userName.isEmpty())
        r.conditions << ReportCondition::equal(QStringLiteral("UserName"), f.userName);
    // The view names each row's document: an SV row is its invoice's.
    if (!f.docType.isEmpty())
        r.conditions << ReportCondition::equal(
            f.voucherType.isEmpty() ? QStringLiteral("DocType") : QStringLiteral("DocumentType"), f.docType);
    if (f.docNo)
        r.conditions << ReportCondition::equal(QStringLiteral("DocNo"), *f.docNo);
    if (!f.docTitle.isEmpty())
        r.conditions << ReportCondition::equal(QStringLiteral("DocTitle"), f.docTitle);
    return r;
}

Target targetOf(const EditLog::Entry &e)
{
    Target t;
    if (!e.docNo)
        return t;
    t.type = e.docType;
    t.number = *e.docNo;
    t.date = e.docDate;
    t.title = e.docTitle;
    const bool ledgerRow = e.tableName.compare(QLatin1String("tblPartyBalance"), Qt::CaseInsensitive) == 0;
    if (VoucherRules::opensInVoucherScreen(e.docType) && ledgerRow && e.docDate.isValid() && t.number > 0)
        t.kind = Target::Kind::Voucher;
    else if (PostingChecks::isKnownType(e.docType) && e.docDate.isValid())
        t.kind = Target::Kind::SingleVoucher;
    else if (e.docType == QLatin1String("INVOICE") && !e.docTitle.isEmpty() && e.docDate.isValid())
        t.kind = Target::Kind::Invoice;
    return t;
}

QString voucherTypeOf(const QString &docType)
{
    return docType.trimmed() == QLatin1String("INVOICE") ? InvoiceRules::kVoucherType : QString();
}

EditLog::Filter historyOf(const QString &docType, std::optional<qint64> docNo, const QString &title)
{
    EditLog::Filter f;
    f.docType = docType.trimmed();
    f.docNo = docNo;
    f.docTitle = title.trimmed();
    // Without a title the voucher's rows of every title would come along.
    if (docNo && !f.docTitle.isEmpty())
        f.voucherType = voucherTypeOf(f.docType);
    return f;
}

QString shownTime(const QString &loggedAt)
{
    const QDateTime at = QDateTime::fromString(loggedAt, QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    return at.isValid() ? at.toString(QStringLiteral("dd/MM/yyyy HH:mm:ss")) : loggedAt;
}

} // namespace EditLogView
