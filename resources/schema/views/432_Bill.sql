-- The invoice lines as a bill prints them: the line's taxes together, and
-- the customer's balance on the invoice's date with and without this
-- invoice (the invoice is the lines of one title, number and date).
CREATE VIEW Bill AS
SELECT l.*,
       l.ValueIncludingTax - l.Price AS TaxAmount,
       (SELECT SUM(CAST(ROUND(b.PartyBalance * 100) AS BIGINT)) FROM tblPartyBalance b
         WHERE b.PartyCode = l.PartyCode AND b.VDate <= l.InvoiceDate) / 100.0 AS Balance,
       ((SELECT SUM(CAST(ROUND(b.PartyBalance * 100) AS BIGINT)) FROM tblPartyBalance b
          WHERE b.PartyCode = l.PartyCode AND b.VDate <= l.InvoiceDate)
        - (SELECT SUM(CAST(ROUND(t.ValueIncludingTax * 100) AS BIGINT)) FROM tblInvoice t
            WHERE t.TitleName = l.TitleName AND t.InvoiceNo = l.InvoiceNo AND t.InvoiceDate = l.InvoiceDate)) / 100.0
           AS PreviousBalance,
       (SELECT SUM(CAST(ROUND(t.ValueIncludingTax * 100) AS BIGINT)) FROM tblInvoice t
         WHERE t.TitleName = l.TitleName AND t.InvoiceNo = l.InvoiceNo AND t.InvoiceDate = l.InvoiceDate) / 100.0
           AS InvoiceTotal
FROM InvoiceLine l
