#pragma once

#include "foundation/Outcome.h"
#include "foundation/Lookups.h"

#include <QStringList>
#include <optional>

class SessionConnection;
struct Session;

// Document titles (tblTitleName): the business names under which the press
// issues its papers, each with its own numbering and its own letterhead
// (tblLetterhead).
namespace TitleList {

namespace Msg {
inline QString exists() { return QStringLiteral("Title Name already exist, duplication is not allowed."); }
inline QString saved() { return QStringLiteral("Title Name has been saved successfully."); }
inline QString letterheadSaved() { return QStringLiteral("Letterhead has been saved successfully."); }
} // namespace Msg

// All titles, ordered (what the title combos list).
QStringList names(SessionConnection &db);
bool exists(SessionConnection &db, const QString &title);
// Adds a title. An empty or all-blank title is refused.
Outcome add(SessionConnection &db, const QString &title);

using Letterhead = Lookups::Letterhead;

// The letterhead stored for `title` (the empty title has none stored).
std::optional<Letterhead> storedLetterhead(SessionConnection &db, const QString &title);
// Writes (or rewrites) the letterhead of an existing title.
Outcome saveLetterhead(SessionConnection &db, const Letterhead &letterhead);

// Makes `title` the working title of the session and puts its letterhead in
// the session's company fields. The empty title takes the blank letterhead;
// a title without a letterhead still becomes the working title (its
// documents are numbered under it) but leaves the company fields as they
// were.
// Returns whether a letterhead was applied.
bool applyLetterhead(SessionConnection &db, const QString &title, Session &session);

} // namespace TitleList
