#include "foundation/Lookups.h"

#include "foundation/Session.h"

namespace Lookups {

std::optional<QString> codeFromName(SessionConnection &db, const QString &partyName)
{
    const auto row = db.selectOne(QStringLiteral("SELECT PartyCode FROM tblPartyInfo WHERE PartyName = ?"), {partyName});
    if (!row)
        return std::nullopt;
    return row->text(0).trimmed();
}

std::optional<QString> nameFromCode(SessionConnection &db, const QString &partyCode)
{
    const auto row = db.selectOne(QStringLiteral("SELECT PartyName FROM tblPartyInfo WHERE PartyCode = ?"), {partyCode});
    if (!row)
        return std::nullopt;
    return row->text(0);
}

bool accountExists(SessionConnection &db, const QString &partyCode)
{
    return nameFromCode(db, partyCode).has_value();
}

bool partyNameExists(SessionConnection &db, const QString &partyName)
{
    return db.selectOne(QStringLiteral("SELECT PartyName FROM tblPartyInfo WHERE PartyName = ?"), {partyName}).has_value();
}

qint64 nextVoucherNo(SessionConnection &db, const QString &voucherType)
{
    const QVariant max = db.scalar(
        QStringLiteral("SELECT MAX(VoucherNo) AS VN FROM tblPartyBalance WHERE VoucherType = ?"), {voucherType});
    if (max.isNull())
        return 1;
    return max.toLongLong() + 1;
}

QueryResult partyList(SessionConnection &db)
{
    return db.select(QStringLiteral(
        "SELECT PartyName, PartyCode FROM tblPartyInfo "
        "WHERE PartyCode NOT LIKE '__-__-000%' AND PartyCode <= '18-99-999' ORDER BY PartyName"));
}

static QStringList firstColumn(const QueryResult &r)
{
    QStringList out;
    out.reserve(r.size());
    for (const Row &row : r)
        out << row.text(0);
    return out;
}

QStringList careOfList(SessionConnection &db)
{
    return firstColumn(db.select(QStringLiteral("SELECT Name FROM tblCareOf ORDER BY Name")));
}

QStringList titleList(SessionConnection &db)
{
    return firstColumn(db.select(QStringLiteral("SELECT TitleName FROM tblTitleName ORDER BY TitleName")));
}

QStringList searchWords(const QString &text)
{
    QStringList words;
    QString rest = text.trimmed();
    while (words.size() < 4 && !rest.isEmpty()) {
        const int blank = rest.indexOf(QLatin1Char(' '));
        if (blank < 0) {
            words << rest;
            break;
        }
        words << rest.left(blank).trimmed();
        rest = rest.mid(blank + 1).trimmed();
    }
    if (words.isEmpty())
        words << QString();
    return words;
}

QueryResult searchPartyByWords(SessionConnection &db, const QString &text)
{
    const QStringList words = searchWords(text);
    QString sql = QStringLiteral("SELECT PartyCode, PartyName FROM tblPartyInfo WHERE ");
    QVariantList params;
    const QString like = db.likeOperatorCaseInsensitive();
    for (int i = 0; i < words.size(); ++i) {
        if (i)
            sql += QStringLiteral(" AND ");
        sql += QStringLiteral("PartyName ") + like + QStringLiteral(" ?");
        params << QString(QLatin1Char('%') + words.at(i) + QLatin1Char('%'));
    }
    sql += QStringLiteral(" ORDER BY PartyName");
    return db.select(sql, params);
}

std::optional<Letterhead> letterhead(SessionConnection &db, const QString &titleName)
{
    if (titleName.isEmpty()) {
        Letterhead l;
        l.companySaleTaxNo = QStringLiteral("-----------------");
        l.companyNTN = QStringLiteral("---------");
        return l;
    }
    // Titles are compared exactly: the database's own comparison of key
    // columns ignores trailing blanks and (on some engines) case, so the
    // row is checked again here.
    const QueryResult rows = db.select(QStringLiteral(
        "SELECT TitleName, CompanyName, CompanyAddress, CompanyPhone, CompanyEmail, CompanySaleTaxNo, CompanyNTN "
        "FROM tblLetterhead WHERE TitleName = ?"), {titleName});
    for (const Row &row : rows) {
        if (row.text(QStringLiteral("TitleName")) != titleName)
            continue;
        Letterhead l;
        l.titleName = titleName;
        l.companyName = row.text(QStringLiteral("CompanyName"));
        l.companyAddress = row.text(QStringLiteral("CompanyAddress"));
        l.companyPhone = row.text(QStringLiteral("CompanyPhone"));
        l.companyEmail = row.text(QStringLiteral("CompanyEmail"));
        l.companySaleTaxNo = row.text(QStringLiteral("CompanySaleTaxNo"));
        l.companyNTN = row.text(QStringLiteral("CompanyNTN"));
        return l;
    }
    return std::nullopt;
}

void applyLetterhead(Session &s, const Letterhead &l)
{
    s.currentTitle = l.titleName;
    s.companyName = l.companyName;
    s.companyAddress = l.companyAddress;
    s.companyPhone = l.companyPhone;
    s.companyEmail = l.companyEmail;
    s.companySaleTaxNo = l.companySaleTaxNo;
    s.companyNTN = l.companyNTN;
}

std::optional<QDate> closingDate(SessionConnection &db)
{
    const auto row = db.selectOne(QStringLiteral("SELECT ClosingDate FROM tblClosingDate"));
    if (!row)
        return std::nullopt;
    const QDate d = row->date(0);
    if (!d.isValid())
        return std::nullopt;
    return d;
}

} // namespace Lookups
