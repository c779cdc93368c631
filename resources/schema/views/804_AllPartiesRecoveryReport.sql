-- What each customer owed at the start of the report period, was billed
-- and paid in it, and owes at its end, with the share of what was due
-- (brought forward and billed) that came in. Customers are the accounts
-- "17-10-000" to "18-99-999" with a posting up to the period's end.
CREATE VIEW AllPartiesRecoveryReport AS
SELECT t.PartyCode AS PartyCode,
       COALESCE(a.PartyName, t.PartyName) AS PartyName,
       SUBSTR(t.PartyCode, 1, 6) || '000' AS GroupCode,
       COALESCE(g.PartyName, '') AS GroupName,
       t.OpeningCents / 100.0 AS OpeningBalance,
       t.DebitCents / 100.0 AS BilledAmount,
       t.CreditCents / 100.0 AS RecoveredAmount,
       t.ClosingCents / 100.0 AS ClosingBalance,
       CASE WHEN t.OpeningCents + t.DebitCents > 0
            THEN ROUND(t.CreditCents * 100.0 / (t.OpeningCents + t.DebitCents), 2)
            ELSE 0 END AS RecoveryPercent,
       (SELECT SDate FROM LedgerPeriod) AS SDate,
       (SELECT EDate FROM LedgerPeriod) AS EDate
FROM AllAccountPeriodTotals t
LEFT JOIN tblPartyInfo a ON a.PartyCode = t.PartyCode
LEFT JOIN tblPartyInfo g ON g.PartyCode = CAST(SUBSTR(t.PartyCode, 1, 6) || '000' AS CHAR(9))
WHERE t.PartyCode >= '17-10-000' AND t.PartyCode <= '18-99-999'
