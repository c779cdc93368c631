#pragma once

#include "foundation/Outcome.h"

#include <QStringList>

class SessionConnection;
class QueryResult;

// The care-of persons through whom parties are handled (tblCareOf).
namespace CareOfList {

namespace Msg {
inline QString nameMissing() { return QStringLiteral("Name is missing, please enter name"); }
inline QString designationMissing() { return QStringLiteral("Designation is missing, please enter designation"); }
inline QString exists() { return QStringLiteral("User already created, please choose another one"); }
inline QString created() { return QStringLiteral("Care of person has created successfully"); }
} // namespace Msg

// All names, ordered (what the care-of combos list).
QStringList names(SessionConnection &db);
// Columns Name, Designation of the persons whose names contain `text`
// (all of them for an empty text), ordered by name.
QueryResult persons(SessionConnection &db, const QString &text = QString());

// The checks of a save: a name already listed first, then the empty fields.
Outcome check(SessionConnection &db, const QString &name, const QString &designation);
// Checks and adds the person.
Outcome add(SessionConnection &db, const QString &name, const QString &designation, const QString &userName);

} // namespace CareOfList
