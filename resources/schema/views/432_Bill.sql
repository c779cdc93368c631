-- The invoice lines as a bill prints them: the line's taxes together, and
-- the customer's balance before and after this invoice (the invoice is the
-- lines of one title, number and date). Rows of the invoice's own day count
-- up to its own sale voucher row, so what was entered after it that day (a
-- receipt, another invoice) is not shown as owed before it.
CREATE VIEW Bill AS
SELECT l.*,
       l.ValueIncludingTax - l.Price AS TaxAmount,
       (SELECT SUM(CAST(ROUND(b.PartyBalance * 100) AS BIGINT)) FROM tblPartyBalance b
         WHERE b.PartyCode = l.PartyCode
           AND (b.VDate < l.InvoiceDate
                OR (b.VDate = l.InvoiceDate AND b.SrNo <= COALESCE(
                    (SELECT MAX(v.SrNo) FROM tblPartyBalance v
                      WHERE v.VoucherType = 'SV' AND v.VoucherNo = l.InvoiceNo AND v.VDate = l.InvoiceDate
                        AND COALESCE(v.CareOf, '') = COALESCE(l.TitleName, '') AND v.PartyCode = l.PartyCode),
                    b.SrNo)))) / 100.0 AS Balance,
       ((SELECT SUM(CAST(ROUND(b.PartyBalance * 100) AS BIGINT)) FROM tblPartyBalance b
          WHERE b.PartyCode = l.PartyCode
            AND (b.VDate < l.InvoiceDate
                 OR (b.VDate = l.InvoiceDate AND b.SrNo <= COALESCE(
                     (SELECT MAX(v.SrNo) FROM tblPartyBalance v
                       WHERE v.VoucherType = 'SV' AND v.VoucherNo = l.InvoiceNo AND v.VDate = l.InvoiceDate
                         AND COALESCE(v.CareOf, '') = COALESCE(l.TitleName, '') AND v.PartyCode = l.PartyCode),
                     b.SrNo))))
        - (SELECT SUM(CAST(ROUND(t.ValueIncludingTax * 100) AS BIGINT)) FROM tblInvoice t
            WHERE t.TitleName = l.TitleName AND t.InvoiceNo = l.InvoiceNo AND t.InvoiceDate = l.InvoiceDate)) / 100.0
           AS PreviousBalance,
       (SELECT SUM(CAST(ROUND(t.ValueIncludingTax * 100) AS BIGINT)) FROM tblInvoice t
         WHERE t.TitleName = l.TitleName AND t.InvoiceNo = l.InvoiceNo AND t.InvoiceDate = l.InvoiceDate) / 100.0
           AS InvoiceTotal
FROM InvoiceLine l
