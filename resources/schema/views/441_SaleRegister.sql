-- The sale register of the report period: one line an invoice (its lines
-- added up), so that the register's total is the "SV" credits of the
-- period.
CREATE VIEW SaleRegister AS
SELECT TitleName, InvoiceNo, InvoiceDate, PartyCode, MIN(PartyName) AS PartyName, MIN(TermsOfSale) AS TermsOfSale,
       MIN(COALESCE(Status, '')) AS Status,
       COUNT(*) AS Lines,
       SUM(Price) AS Price,
       SUM(SaleTaxPayable) AS SaleTaxPayable,
       SUM(ValueIncludingTax) - SUM(Price) - SUM(SaleTaxPayable) AS OtherTax,
       SUM(ValueIncludingTax) AS ValueIncludingTax
FROM tblInvoice
WHERE InvoiceDate >= (SELECT SDate FROM LedgerPeriod) AND InvoiceDate <= (SELECT EDate FROM LedgerPeriod)
GROUP BY TitleName, InvoiceNo, InvoiceDate, PartyCode
