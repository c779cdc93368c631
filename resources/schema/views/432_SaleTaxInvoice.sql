-- The lines of the sale invoices as a sales-tax invoice prints them: the
-- value before tax, the sale tax, the further tax and the CED of each line
-- in whole money, adding up to the line's value with tax exactly. The
-- further tax is the price times its rate over 100, rounded half to even
-- as the invoice worked it out (the rate's six decimals kept as a whole
-- number); the CED is what the stored value with tax leaves, so the four
-- always make the value the ledger took. With the customer's address and
-- registration numbers, and the further tax and CED together (OtherTax).
-- Reports select one invoice by TitleName, InvoiceNo and InvoiceDate.
CREATE VIEW SaleTaxInvoice AS
SELECT i.SrNo AS SrNo,
       i.TitleName AS TitleName,
       i.InvoiceNo AS InvoiceNo,
       i.InvoiceDate AS InvoiceDate,
       i.PartyCode AS PartyCode,
       i.PartyName AS PartyName,
       p.PartyAddress AS PartyAddress,
       p.PartySaleTaxNo AS PartySaleTaxNo,
       p.PartyNTN AS PartyNTN,
       i.TermsOfSale AS TermsOfSale,
       i.Description AS Description,
       CASE WHEN TRIM(COALESCE(i.InvoiceDesc, '')) = '' THEN i.Description ELSE i.InvoiceDesc END AS BillDesc,
       i.PONo AS PONo,
       i.ChallanNo AS ChallanNo,
       i.GateEntryNo AS GateEntryNo,
       i.JobNo AS DemandNo,
       i.Type AS Type,
       i.Quantity AS Quantity,
       i.Rate AS Rate,
       i.Price AS Price,
       i.RateOfSaleTax AS RateOfSaleTax,
       i.SaleTaxPayable AS SaleTaxPayable,
       i.FurtherTax AS FurtherTax,
       i.FurtherTaxN / 100000000
           + CASE WHEN (i.FurtherTaxN % 100000000) * 2 > 100000000 THEN 1
                  WHEN (i.FurtherTaxN % 100000000) * 2 = 100000000 THEN (i.FurtherTaxN / 100000000) % 2
                  ELSE 0 END AS FurtherTaxAmount,
       i.CED AS CED,
       i.ValueIncludingTax - i.Price - i.SaleTaxPayable
           - (i.FurtherTaxN / 100000000
              + CASE WHEN (i.FurtherTaxN % 100000000) * 2 > 100000000 THEN 1
                     WHEN (i.FurtherTaxN % 100000000) * 2 = 100000000 THEN (i.FurtherTaxN / 100000000) % 2
                     ELSE 0 END) AS CedAmount,
       i.ValueIncludingTax - i.Price - i.SaleTaxPayable AS OtherTax,
       i.ValueIncludingTax AS ValueIncludingTax,
       i.DTRE AS DTRE,
       i.Weight AS Weight
FROM (SELECT t.*, CAST(ROUND(t.Price) AS BIGINT) * CAST(ROUND(COALESCE(t.FurtherTax, 0) * 1000000) AS BIGINT) AS FurtherTaxN
      FROM tblInvoice t) i
LEFT JOIN tblPartyInfo p ON p.PartyCode = i.PartyCode
