-- The lines of the sale invoices as a bill prints them: each line with its
-- customer's address and registration numbers, the text that stands on the
-- bill (the invoice description, else the item's), the line's taxes
-- together, and the customer's balance on the invoice's date with and
-- without this invoice (the invoice is the lines of one title, number and
-- date). Reports select one invoice by TitleName, InvoiceNo and
-- InvoiceDate.
CREATE VIEW Bill AS
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
       i.ValueIncludingTax - i.Price AS TaxAmount,
       i.ValueIncludingTax AS ValueIncludingTax,
       i.DTRE AS DTRE,
       i.Weight AS Weight,
       (SELECT SUM(CAST(ROUND(b.PartyBalance * 100) AS BIGINT)) FROM tblPartyBalance b
         WHERE b.PartyCode = i.PartyCode AND b.VDate <= i.InvoiceDate) / 100.0 AS Balance,
       ((SELECT SUM(CAST(ROUND(b.PartyBalance * 100) AS BIGINT)) FROM tblPartyBalance b
          WHERE b.PartyCode = i.PartyCode AND b.VDate <= i.InvoiceDate)
        - (SELECT SUM(CAST(ROUND(t.ValueIncludingTax * 100) AS BIGINT)) FROM tblInvoice t
            WHERE t.TitleName = i.TitleName AND t.InvoiceNo = i.InvoiceNo AND t.InvoiceDate = i.InvoiceDate)) / 100.0
           AS PreviousBalance,
       (SELECT SUM(CAST(ROUND(t.ValueIncludingTax * 100) AS BIGINT)) FROM tblInvoice t
         WHERE t.TitleName = i.TitleName AND t.InvoiceNo = i.InvoiceNo AND t.InvoiceDate = i.InvoiceDate) / 100.0
           AS InvoiceTotal
FROM tblInvoice i
LEFT JOIN tblPartyInfo p ON p.PartyCode = i.PartyCode
