-- The sales of each party in the report period (the month chosen), all
-- titles: the number of invoices, the first and last invoice date and the
-- amounts.
CREATE VIEW SaleSummary AS
SELECT PartyCode, MIN(PartyName) AS PartyName, MIN(InvoiceDate) AS InvoiceDate, MAX(InvoiceDate) AS LastInvoiceDate,
       COUNT(*) AS Invoices,
       SUM(Price) AS Price,
       SUM(SaleTaxPayable) AS SaleTaxPayable,
       SUM(OtherTax) AS OtherTax,
       SUM(ValueIncludingTax) AS ValueIncludingTax
FROM SaleRegister
GROUP BY PartyCode
