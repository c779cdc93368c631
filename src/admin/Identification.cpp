#include "admin/Identification.h"

#include "foundation/Logon.h"

namespace Identification {

QString buttonName(GateButton button)
{
    switch (button) {
    case GateButton::Balance: return QStringLiteral("cmdBalanceOkay");
    case GateButton::Closing: return QStringLiteral("cmdClosingOkay");
    case GateButton::UpdateUser: return QStringLiteral("cmdUpdateUserOkay");
    case GateButton::EndYear: return QStringLiteral("cmdEndYearClosing");
    }
    return QString();
}

bool typeAllowed(GateButton button, const QString &userType)
{
    if (button == GateButton::EndYear)
        return true;
    return userType.trimmed() == QLatin1String("ADMINISTRATOR");
}

Outcome check(SessionConnection &db, const QString &user, const QString &password, GateButton button,
              const QDateTime &now)
{
    const Logon::Result r = Logon::check(db, user, password, now, Logon::Stamp::No);
    if (!r.ok)
        return Outcome::refusal(r.message, QStringLiteral("txtUserName"));
    if (!typeAllowed(button, r.userType))
        return Outcome::refusal(Logon::invalidMessage(), QStringLiteral("txtUserName"));
    return Outcome::passed();
}

} // namespace Identification
