#pragma once

class DemoContext;

// The demonstration year's consumables: receipts of ink, plates, blankets
// and developer over the year, issued to employees first in, first out
// and partly used up, all through the rules the screens call.
void consumablesDemoPart(DemoContext &c);
