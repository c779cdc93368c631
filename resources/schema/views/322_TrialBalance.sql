-- The trial balance of the report period: for each account with postings
-- in the period, its debits and credits inside it (PartyDR, PartyCR, which
-- total alike), the balance brought forward and the balance at the end.
CREATE VIEW TrialBalance AS
SELECT t.PartyCode AS PartyCode,
       COALESCE(ah.PartyName, t.PartyName) AS PartyName,
       t.DebitCents / 100.0 AS PartyDR,
       t.CreditCents / 100.0 AS PartyCR,
       t.PeriodCents / 100.0 AS PartyBalance,
       t.OpeningCents / 100.0 AS OpeningBalance,
       t.ClosingCents / 100.0 AS ClosingBalance,
       CASE WHEN t.ClosingCents > 0 THEN 'DR' WHEN t.ClosingCents < 0 THEN 'CR' ELSE '' END AS DrCr,
       SUBSTR(t.PartyCode, 1, 6) || '000' AS GroupCode,
       COALESCE(ah.GroupName, '') AS GroupName,
       SUBSTR(t.PartyCode, 1, 3) || '00-000' AS HeadCode,
       COALESCE(ah.HeadName, '') AS HeadName,
       (SELECT SDate FROM LedgerPeriod) AS SDate,
       (SELECT EDate FROM LedgerPeriod) AS EDate
FROM AccountPeriodTotals t
LEFT JOIN AccountHeading ah ON ah.PartyCode = t.PartyCode
WHERE t.PeriodRows > 0
