-- The ledger with the sales-tax make-up of each sale invoice: the value
-- before tax, the sales tax, the other taxes and the value with tax, taken
-- from the invoice's lines: same number, date and party, and the title the
-- voucher's rows carry in CareOf (two titles number their invoices apart,
-- so one number may stand in both on one day). A row without a title
-- (written before rows carried one) takes the invoices of any title.
CREATE VIEW LedgerWithSaleTax AS
SELECT l.PartyCode AS PartyCode,
       l.PartyName AS PartyName,
       l.LineKind AS LineKind,
       l.SrNo AS SrNo,
       l.VoucherType AS VoucherType,
       l.VoucherNo AS VoucherNo,
       l.VDate AS VDate,
       l.InvoiceNo AS InvoiceNo,
       l.PartyDesc AS PartyDesc,
       l.PartyDR AS PartyDR,
       l.PartyCR AS PartyCR,
       l.PartyBalance AS PartyBalance,
       l.ClosingBalance AS ClosingBalance,
       l.SDate AS SDate,
       l.EDate AS EDate,
       CASE WHEN l.VoucherType = 'SV' THEN
            (SELECT SUM(CAST(ROUND(i.Price * 100) AS BIGINT)) FROM tblInvoice i
             WHERE i.PartyCode = CAST(l.PartyCode AS CHAR(9)) AND i.InvoiceDate = l.VDate AND i.InvoiceNo = l.VoucherNo
               AND (i.TitleName = v.CareOf OR TRIM(COALESCE(v.CareOf, '')) = '')) / 100.0
       END AS ValueExSaleTax,
       CASE WHEN l.VoucherType = 'SV' THEN
            (SELECT SUM(CAST(ROUND(i.SaleTaxPayable * 100) AS BIGINT)) FROM tblInvoice i
             WHERE i.PartyCode = CAST(l.PartyCode AS CHAR(9)) AND i.InvoiceDate = l.VDate AND i.InvoiceNo = l.VoucherNo
               AND (i.TitleName = v.CareOf OR TRIM(COALESCE(v.CareOf, '')) = '')) / 100.0
       END AS SaleTax,
       CASE WHEN l.VoucherType = 'SV' THEN
            (SELECT SUM(CAST(ROUND((i.ValueIncludingTax - i.Price - i.SaleTaxPayable) * 100) AS BIGINT)) FROM tblInvoice i
             WHERE i.PartyCode = CAST(l.PartyCode AS CHAR(9)) AND i.InvoiceDate = l.VDate AND i.InvoiceNo = l.VoucherNo
               AND (i.TitleName = v.CareOf OR TRIM(COALESCE(v.CareOf, '')) = '')) / 100.0
       END AS OtherTax,
       CASE WHEN l.VoucherType = 'SV' THEN
            (SELECT SUM(CAST(ROUND(i.ValueIncludingTax * 100) AS BIGINT)) FROM tblInvoice i
             WHERE i.PartyCode = CAST(l.PartyCode AS CHAR(9)) AND i.InvoiceDate = l.VDate AND i.InvoiceNo = l.VoucherNo
               AND (i.TitleName = v.CareOf OR TRIM(COALESCE(v.CareOf, '')) = '')) / 100.0
       END AS ValueIncludingTax
FROM Ledger l
LEFT JOIN tblPartyBalance v ON v.SrNo = l.SrNo AND l.LineKind = 1
