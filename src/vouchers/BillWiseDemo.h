#pragma once

class DemoContext;

// The demonstration year's bill-wise payment: each customer's bills,
// oldest first, marked paid while what the customer paid in the year
// covers them, through the same mark as the screen's.
void billWiseDemoPart(DemoContext &c);
