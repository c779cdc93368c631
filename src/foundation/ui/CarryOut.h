#pragma once

#include "foundation/Outcome.h"

#include <functional>

class BaseScreen;

// Runs a rule that writes, for a screen's command: a database failure shows
// its reason and keeps the screen usable, a refusal goes through
// BaseScreen::refuse, a success shows its notice (when it has one) and its
// words. True when the rule succeeded.
//
//   if (!carryOut(this, [&] { return rules().save(entry()); }))
//       return;
bool carryOut(BaseScreen *screen, const std::function<Outcome()> &rule);
