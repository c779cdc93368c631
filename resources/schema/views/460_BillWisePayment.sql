-- The bills of the bill-wise payment: the lines of an invoice that share a
-- terms of sale make one bill, with their values with tax added up, and
-- the bill's mark: "DONE" when paid, "" while pending (a line added to a
-- paid bill later is pending, and makes a bill of its own until marked).
-- A bill stands on its first line, so that a choice of party and dates
-- reads the party's own lines from their index.
CREATE VIEW BillWisePayment AS
SELECT i.TitleName, i.InvoiceNo, i.InvoiceDate, i.PartyCode, i.PartyName,
       COALESCE(i.TermsOfSale, '') AS TermsOfSale, COALESCE(i.Status, '') AS Status,
       CASE WHEN COALESCE(i.Status, '') = 'DONE' THEN 'PAYMENT DONE' ELSE 'PENDING BILL' END AS StatusCaption,
       (SELECT SUM(x.ValueIncludingTax) FROM tblInvoice x
        WHERE x.TitleName = i.TitleName AND x.InvoiceNo = i.InvoiceNo AND x.PartyCode = i.PartyCode
          AND COALESCE(x.TermsOfSale, '') = COALESCE(i.TermsOfSale, '')
          AND COALESCE(x.Status, '') = COALESCE(i.Status, '')) AS ValueIncludingTax
FROM tblInvoice i
WHERE NOT EXISTS (SELECT 1 FROM tblInvoice y
                  WHERE y.TitleName = i.TitleName AND y.InvoiceNo = i.InvoiceNo AND y.PartyCode = i.PartyCode
                    AND COALESCE(y.TermsOfSale, '') = COALESCE(i.TermsOfSale, '')
                    AND COALESCE(y.Status, '') = COALESCE(i.Status, '') AND y.SrNo < i.SrNo)
