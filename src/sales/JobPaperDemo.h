#pragma once

class DemoContext;

// The demonstration year's purchase orders, job cards and delivery
// challans for its customers, made through the same rules as the screens:
// some orders delivered in full, some in part, some not at all.
void jobPaperDemoPart(DemoContext &c);
