#include "accounts/TitleList.h"
#include "foundation/Session.h"
#include "foundation/SessionConnection.h"

namespace TitleList {

namespace {
QString text(const QString &s)
{
    return s.isNull() ? QStringLiteral("") : s;
}
} // namespace

QStringList names(SessionConnection &db)
{
    return Lookups::titleList(db);
}

bool exists(SessionConnection &db, const QString &title)
{
    return db.selectOne(QStringLiteral("SELECT TitleName FROM tblTitleName WHERE TitleName = ?"), {title}).has_value();
}

Outcome add(SessionConnection &db, const QString &title)
{
    // Any text is a title, the empty one and one of blanks included; keys
    // ignore trailing blanks, so "   " stands as the empty title.
    const QString t = text(title.trimmed());
    try {
        Transaction tx(db);
        if (exists(db, t))
            return Outcome::refusal(Msg::exists(), QStringLiteral("txtTitleName"));
        db.execute(QStringLiteral("INSERT INTO tblTitleName (TitleName) VALUES (?)"), {t});
        tx.commit();
    } catch (const DbError &e) {
        if (!e.isUniqueViolation())
            throw;
        return Outcome::refusal(Msg::exists(), QStringLiteral("txtTitleName"));
    }
    return Outcome::success(Msg::saved());
}

std::optional<Letterhead> storedLetterhead(SessionConnection &db, const QString &title)
{
    if (title.trimmed().isEmpty())
        return std::nullopt;
    return Lookups::letterhead(db, title);
}

Outcome saveLetterhead(SessionConnection &db, const Letterhead &l)
{
    const QString t = l.titleName.trimmed();
    // A title not on the list has no letterhead to keep: refused without
    // words of its own, the focus back on the title.
    Transaction tx(db);
    if (!exists(db, t))
        return Outcome::refusal(QString(), QStringLiteral("cmbTitleName"));
    const QVariantList values{text(l.companyName), text(l.companyAddress), text(l.companyPhone),
                              text(l.companyEmail), text(l.companySaleTaxNo), text(l.companyNTN), t};
    const int n = db.execute(QStringLiteral("UPDATE tblLetterhead SET CompanyName = ?, CompanyAddress = ?, CompanyPhone = ?, "
                                            "CompanyEmail = ?, CompanySaleTaxNo = ?, CompanyNTN = ? WHERE TitleName = ?"),
                             values);
    if (n == 0)
        db.execute(QStringLiteral("INSERT INTO tblLetterhead (CompanyName, CompanyAddress, CompanyPhone, CompanyEmail, "
                                  "CompanySaleTaxNo, CompanyNTN, TitleName) VALUES (?, ?, ?, ?, ?, ?, ?)"),
                   values);
    tx.commit();
    return Outcome::success(Msg::letterheadSaved());
}

bool applyLetterhead(SessionConnection &db, const QString &title, Session &s)
{
    // A title without a letterhead row leaves the working title and every
    // company line as they were.
    const auto l = Lookups::letterhead(db, title);
    if (!l)
        return false;
    Lookups::applyLetterhead(s, *l);
    s.currentTitle = title;
    return true;
}

} // namespace TitleList
