-- The ledger of every account for the report period: first a line with
-- the balance brought forward from before the period ("OPENING BALANCE",
-- LineKind 0, present for every account with a posting up to the period's
-- end), then each posting of the period (LineKind 1), then a line
-- "CLOSING BALANCE" (LineKind 2) that moves nothing (PartyBalance 0) and
-- carries the balance at the period's end in ClosingBalance. In the order
-- LineKind, VDate, SrNo the running sum of PartyBalance is the account's
-- balance after each line, so that it stands at the closing balance on the
-- last. Reports select one account with PartyCode; the filter reaches the
-- index.
CREATE VIEW Ledger AS
SELECT l.PartyCode AS PartyCode,
       COALESCE(pi.PartyName, l.PartyName) AS PartyName,
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
       (SELECT SDate FROM LedgerPeriod) AS SDate,
       (SELECT EDate FROM LedgerPeriod) AS EDate
FROM (
    SELECT o.PartyCode AS PartyCode,
           o.PartyName AS PartyName,
           0 AS LineKind,
           CAST(0 AS BIGINT) AS SrNo,
           CAST('' AS TEXT) AS VoucherType,
           CAST(0 AS BIGINT) AS VoucherNo,
           (SELECT SDate FROM LedgerPeriod) AS VDate,
           CAST('' AS TEXT) AS InvoiceNo,
           CAST('OPENING BALANCE' AS TEXT) AS PartyDesc,
           CASE WHEN o.OpeningCents > 0 THEN o.OpeningCents / 100.0 ELSE 0 END AS PartyDR,
           CASE WHEN o.OpeningCents < 0 THEN -o.OpeningCents / 100.0 ELSE 0 END AS PartyCR,
           o.OpeningCents / 100.0 AS PartyBalance,
           CAST(NULL AS NUMERIC) AS ClosingBalance
    FROM AccountPeriodTotals o
    UNION ALL
    SELECT RTRIM(b.PartyCode), b.PartyName, 1, b.SrNo, b.VoucherType, b.VoucherNo, b.VDate, b.InvoiceNo,
           b.PartyDesc, b.PartyDR, b.PartyCR, b.PartyBalance, NULL
    FROM tblPartyBalance b
    WHERE b.VDate >= (SELECT SDate FROM LedgerPeriod)
      AND b.VDate <= (SELECT EDate FROM LedgerPeriod)
    UNION ALL
    SELECT c.PartyCode, c.PartyName, 2, CAST(0 AS BIGINT), CAST('' AS TEXT), CAST(0 AS BIGINT),
           (SELECT EDate FROM LedgerPeriod), CAST('' AS TEXT), CAST('CLOSING BALANCE' AS TEXT),
           0, 0, 0, c.ClosingCents / 100.0
    FROM AccountPeriodTotals c
) l
LEFT JOIN tblPartyInfo pi ON pi.PartyCode = l.PartyCode
