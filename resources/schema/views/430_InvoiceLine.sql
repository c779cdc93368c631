-- The lines of the sale invoices as the printed invoices show them: each
-- with its customer's address and registration numbers, and the text that
-- stands on the paper (the invoice description, else the item's). The
-- printed forms read it through Bill and SaleTaxInvoice; they select one
-- invoice by TitleName, InvoiceNo and InvoiceDate.
CREATE VIEW InvoiceLine AS
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
       i.CED AS CED,
       i.ValueIncludingTax AS ValueIncludingTax,
       i.DTRE AS DTRE,
       i.Weight AS Weight
FROM tblInvoice i
LEFT JOIN tblPartyInfo p ON p.PartyCode = i.PartyCode
