#pragma once

class DemoContext;

// The payroll of the demonstration year: the staff as accounts of the
// chart and rows of the register, and a salary sheet at the end of each
// month of the year, all made through the payroll's own rules.
namespace PayrollDemo {
void part(DemoContext &c);
}
