#pragma once

class DemoContext;

namespace InvoiceDemo {

// The demonstration year's sales-tax invoices, saved through the invoice
// posting as the screen saves them: one for every delivery challan not
// invoiced yet, then invoices of typed lines for the customers, about one
// for every hundred ledger rows wanted. Each writes its SV voucher.
void invoicePart(DemoContext &c);

} // namespace InvoiceDemo
