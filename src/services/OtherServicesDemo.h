#pragma once

class DemoContext;

// The demonstration year's other services: a few vouchers a week, with
// gains, losses and a few at cost, through the rules of the screens.
void otherServicesDemoPart(DemoContext &c);
