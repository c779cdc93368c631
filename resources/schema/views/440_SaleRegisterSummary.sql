-- One line a bill: the lines of an invoice that share its terms of sale,
-- with their value before tax, sales tax, other taxes and value with tax,
-- and the bill's payment mark. Every date; the screens select the period.
CREATE VIEW SaleRegisterSummary AS
SELECT TitleName, InvoiceNo, InvoiceDate, PartyCode, PartyName, TermsOfSale, COALESCE(Status, '') AS Status,
       COUNT(*) AS Lines,
       SUM(Price) AS Price,
       SUM(SaleTaxPayable) AS SaleTaxPayable,
       SUM(ValueIncludingTax) - SUM(Price) - SUM(SaleTaxPayable) AS OtherTax,
       SUM(ValueIncludingTax) AS ValueIncludingTax
FROM tblInvoice
GROUP BY TitleName, InvoiceNo, InvoiceDate, PartyCode, PartyName, TermsOfSale, COALESCE(Status, '')
