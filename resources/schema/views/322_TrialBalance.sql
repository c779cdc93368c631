-- The trial balance of the report period: for each account with postings
-- in the period, its debits and credits inside it (PartyDR, PartyCR, which
-- total alike), the balance brought forward and the balance at the end.
CREATE VIEW TrialBalance AS
SELECT t.PartyCode AS PartyCode,
       COALESCE(a.PartyName, t.PartyName) AS PartyName,
       t.DebitCents / 100.0 AS PartyDR,
       t.CreditCents / 100.0 AS PartyCR,
       t.PeriodCents / 100.0 AS PartyBalance,
       t.OpeningCents / 100.0 AS OpeningBalance,
       t.ClosingCents / 100.0 AS ClosingBalance,
       CASE WHEN t.ClosingCents > 0 THEN 'DR' WHEN t.ClosingCents < 0 THEN 'CR' ELSE '' END AS DrCr,
       SUBSTR(t.PartyCode, 1, 6) || '000' AS GroupCode,
       COALESCE(g.PartyName, '') AS GroupName,
       SUBSTR(t.PartyCode, 1, 3) || '00-000' AS HeadCode,
       COALESCE(h.PartyName, '') AS HeadName,
       (SELECT SDate FROM LedgerPeriod) AS SDate,
       (SELECT EDate FROM LedgerPeriod) AS EDate
FROM AllAccountPeriodTotals t
LEFT JOIN tblPartyInfo a ON a.PartyCode = t.PartyCode
LEFT JOIN tblPartyInfo g ON g.PartyCode = CAST(SUBSTR(a.PartyCode, 1, 6) || '000' AS CHAR(9))
LEFT JOIN tblPartyInfo h ON h.PartyCode = CAST(SUBSTR(a.PartyCode, 1, 3) || '00-000' AS CHAR(9))
WHERE t.PeriodRows > 0
