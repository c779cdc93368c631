-- The balance sheet at the period's end: every account from "10-00-000" to
-- "20-01-999" with its balance (and what was brought forward and moved in
-- the period), and one line more, LineKind 1, for the result of the
-- accounts outside that range (income, purchases, expenses) not yet
-- carried to capital, under code "20-01-999" in the capital group. With
-- that line the balances add up to nothing: the sheet balances.
CREATE VIEW BalanceSheet AS
WITH t AS (SELECT * FROM AllAccountPeriodTotals)
SELECT t.PartyCode AS PartyCode,
       COALESCE(a.PartyName, t.PartyName) AS PartyName,
       0 AS LineKind,
       SUBSTR(t.PartyCode, 1, 6) || '000' AS GroupCode,
       COALESCE(g.PartyName, '') AS GroupName,
       SUBSTR(t.PartyCode, 1, 3) || '00-000' AS HeadCode,
       COALESCE(h.PartyName, '') AS HeadName,
       t.OpeningCents / 100.0 AS OpeningBalance,
       t.DebitCents / 100.0 AS DebitTotal,
       t.CreditCents / 100.0 AS CreditTotal,
       t.ClosingCents / 100.0 AS PartyBalance,
       CASE WHEN t.ClosingCents > 0 THEN t.ClosingCents / 100.0 ELSE 0 END AS PartyDR,
       CASE WHEN t.ClosingCents < 0 THEN -t.ClosingCents / 100.0 ELSE 0 END AS PartyCR,
       CASE WHEN t.ClosingCents > 0 THEN 'DR' WHEN t.ClosingCents < 0 THEN 'CR' ELSE '' END AS DrCr,
       (SELECT SDate FROM LedgerPeriod) AS SDate,
       (SELECT EDate FROM LedgerPeriod) AS EDate
FROM t
LEFT JOIN tblPartyInfo a ON a.PartyCode = t.PartyCode
LEFT JOIN tblPartyInfo g ON g.PartyCode = CAST(SUBSTR(a.PartyCode, 1, 6) || '000' AS CHAR(9))
LEFT JOIN tblPartyInfo h ON h.PartyCode = CAST(SUBSTR(a.PartyCode, 1, 3) || '00-000' AS CHAR(9))
WHERE t.PartyCode >= '10-00-000' AND t.PartyCode <= '20-01-999'
UNION ALL
SELECT '20-01-999',
       CASE WHEN r.ClosingCents <= 0 THEN 'NET PROFIT' ELSE 'NET LOSS' END,
       1,
       '20-01-000',
       COALESCE((SELECT g.PartyName FROM tblPartyInfo g WHERE g.PartyCode = '20-01-000'), ''),
       '20-00-000',
       COALESCE((SELECT h.PartyName FROM tblPartyInfo h WHERE h.PartyCode = '20-00-000'), ''),
       r.OpeningCents / 100.0,
       r.DebitCents / 100.0,
       r.CreditCents / 100.0,
       r.ClosingCents / 100.0,
       CASE WHEN r.ClosingCents > 0 THEN r.ClosingCents / 100.0 ELSE 0 END,
       CASE WHEN r.ClosingCents < 0 THEN -r.ClosingCents / 100.0 ELSE 0 END,
       CASE WHEN r.ClosingCents > 0 THEN 'DR' WHEN r.ClosingCents < 0 THEN 'CR' ELSE '' END,
       (SELECT SDate FROM LedgerPeriod),
       (SELECT EDate FROM LedgerPeriod)
FROM (SELECT COUNT(*) AS Accounts,
             SUM(OpeningCents) AS OpeningCents,
             SUM(DebitCents) AS DebitCents,
             SUM(CreditCents) AS CreditCents,
             SUM(ClosingCents) AS ClosingCents
      FROM t
      WHERE PartyCode < '10-00-000' OR PartyCode > '20-01-999') r
WHERE r.Accounts > 0
