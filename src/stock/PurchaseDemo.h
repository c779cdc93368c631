#pragma once

class DemoContext;

// The demonstration year's purchases: suppliers' bills through the year,
// with and without freight and sales tax, and the closing stock counted
// on the last day, all made by the posting rules the screens use.
void purchaseDemoPart(DemoContext &c);
