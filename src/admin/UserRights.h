#pragma once

#include "admin/UserAccounts.h"

#include <QStringList>

// Each user's switched-off menu entries (tblUserRights: one row a user,
// Menu the comma-separated names). The main window reads them at log-on;
// the rights screen edits them through these.
namespace UserRights {

namespace Msg {
inline QString updated() { return QStringLiteral("User rights updated"); }
} // namespace Msg

// The entries the rights screen offers, one box each, in its order. Five
// of them name no entry of the main window and so switch nothing off.
const QStringList &boxNames();

// The entries switched off for the user; empty when he has no row.
QStringList switchedOff(SessionConnection &db, const QString &userName);

// The comma-separated list as stored: each name once, in the boxes' order,
// names the rights screen does not offer left out.
QString menuText(const QStringList &switchedOff);

// Replaces the user's list (administrators only, an existing user). The
// row is written even when nothing is switched off. One transaction.
Outcome save(SessionConnection &db, const UserAccounts::Actor &by, const QString &userName,
             const QStringList &switchedOff);

} // namespace UserRights
