-- The parties ("14-10-000" to "18-99-999") whose postings in the report
-- period come to a debit (positive) balance. An account at 0 is in neither
-- list. Amount is the balance without sign.
CREATE VIEW DebitList AS
SELECT t.PartyCode AS PartyCode,
       COALESCE(ah.PartyName, t.PartyName) AS PartyName,
       t.PeriodCents / 100.0 AS PartyBalance,
       ABS(t.PeriodCents) / 100.0 AS Amount,
       t.DebitCents / 100.0 AS DebitTotal,
       t.CreditCents / 100.0 AS CreditTotal,
       t.OpeningCents / 100.0 AS OpeningBalance,
       t.ClosingCents / 100.0 AS ClosingBalance,
       SUBSTR(t.PartyCode, 1, 6) || '000' AS GroupCode,
       COALESCE(ah.GroupName, '') AS GroupName,
       COALESCE(ah.PartyAddress, '') AS PartyAddress,
       COALESCE(ah.PartyPhone, '') AS PartyPhone,
       COALESCE(ah.CareOf, '') AS CareOf,
       (SELECT SDate FROM LedgerPeriod) AS SDate,
       (SELECT EDate FROM LedgerPeriod) AS EDate
FROM AccountPeriodTotals t
LEFT JOIN AccountHeading ah ON ah.PartyCode = t.PartyCode
WHERE t.PartyCode >= '14-10-000' AND t.PartyCode <= '18-99-999' AND t.PeriodCents > 0
