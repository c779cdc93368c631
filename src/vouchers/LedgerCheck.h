#pragma once

#include <QStringList>

class SessionConnection;

// Checks of the books that any tool or test may run on an account year.
namespace LedgerCheck {

// True when the kept balances (each account's, and each account's a
// month) equal the sums of the ledger rows, to the cent and the row.
// Each disagreement is described in `differences` when given, as
// "17-10-001 2026-03: kept 10.00 DR / 1.00 CR / 9.00 in 2 rows, ledger ...".
bool keptBalancesAgree(SessionConnection &db, QStringList *differences = nullptr);

} // namespace LedgerCheck
