-- The profit and loss account of the period: every account outside the
-- balance sheet ("10-00-000" to "20-01-999") with postings in the period,
-- under its headings, on the INCOME side when its movement is a credit and
-- on the EXPENSE side when a debit (Amount is the figure without sign).
-- One line more, LineKind 1, gives the NET PROFIT (on the expense side) or
-- NET LOSS (on the income side), so that the two sides total alike; its
-- PartyBalance is the result as the balance sheet takes it.
CREATE VIEW ProfitAndLoss AS
WITH t AS (SELECT * FROM AllAccountPeriodTotals)
SELECT t.PartyCode AS PartyCode,
       COALESCE(a.PartyName, t.PartyName) AS PartyName,
       0 AS LineKind,
       CASE WHEN t.PeriodCents < 0 THEN 'INCOME' ELSE 'EXPENSE' END AS Side,
       SUBSTR(t.PartyCode, 1, 6) || '000' AS GroupCode,
       COALESCE(g.PartyName, '') AS GroupName,
       SUBSTR(t.PartyCode, 1, 3) || '00-000' AS HeadCode,
       COALESCE(h.PartyName, '') AS HeadName,
       t.DebitCents / 100.0 AS DebitTotal,
       t.CreditCents / 100.0 AS CreditTotal,
       t.PeriodCents / 100.0 AS PartyBalance,
       ABS(t.PeriodCents) / 100.0 AS Amount,
       (SELECT SDate FROM LedgerPeriod) AS SDate,
       (SELECT EDate FROM LedgerPeriod) AS EDate
FROM t
LEFT JOIN tblPartyInfo a ON a.PartyCode = t.PartyCode
LEFT JOIN tblPartyInfo g ON g.PartyCode = CAST(SUBSTR(a.PartyCode, 1, 6) || '000' AS CHAR(9))
LEFT JOIN tblPartyInfo h ON h.PartyCode = CAST(SUBSTR(a.PartyCode, 1, 3) || '00-000' AS CHAR(9))
WHERE (t.PartyCode < '10-00-000' OR t.PartyCode > '20-01-999') AND t.PeriodRows > 0
UNION ALL
SELECT '',
       CASE WHEN r.PeriodCents <= 0 THEN 'NET PROFIT' ELSE 'NET LOSS' END,
       1,
       CASE WHEN r.PeriodCents <= 0 THEN 'EXPENSE' ELSE 'INCOME' END,
       '',
       CASE WHEN r.PeriodCents <= 0 THEN 'NET PROFIT' ELSE 'NET LOSS' END,
       '',
       '',
       r.DebitCents / 100.0,
       r.CreditCents / 100.0,
       -r.PeriodCents / 100.0,
       ABS(r.PeriodCents) / 100.0,
       (SELECT SDate FROM LedgerPeriod),
       (SELECT EDate FROM LedgerPeriod)
FROM (SELECT COUNT(*) AS Accounts,
             SUM(DebitCents) AS DebitCents,
             SUM(CreditCents) AS CreditCents,
             SUM(PeriodCents) AS PeriodCents
      FROM t
      WHERE (PartyCode < '10-00-000' OR PartyCode > '20-01-999') AND PeriodRows > 0) r
WHERE r.Accounts > 0
