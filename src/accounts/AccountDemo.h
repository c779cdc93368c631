#pragma once

class DemoContext;

// The demonstration year's account maintenance, made through the same
// rules as the screens: a few customers renamed, one moved to another
// code, and a pair of accounts brought in from elsewhere given their
// opening balances.
namespace AccountDemo {

void maintenancePart(DemoContext &c);

} // namespace AccountDemo
