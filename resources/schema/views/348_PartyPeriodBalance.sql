-- The parties ("14-10-000" to "18-99-999") with their postings in the report
-- period: the one body of the credit and debit lists, which take the
-- balances below and above zero. Amount is the balance without sign.
CREATE VIEW PartyPeriodBalance AS
SELECT t.PartyCode AS PartyCode,
       COALESCE(a.PartyName, t.PartyName) AS PartyName,
       t.PeriodCents / 100.0 AS PartyBalance,
       ABS(t.PeriodCents) / 100.0 AS Amount,
       t.DebitCents / 100.0 AS DebitTotal,
       t.CreditCents / 100.0 AS CreditTotal,
       t.OpeningCents / 100.0 AS OpeningBalance,
       t.ClosingCents / 100.0 AS ClosingBalance,
       SUBSTR(t.PartyCode, 1, 6) || '000' AS GroupCode,
       COALESCE(g.PartyName, '') AS GroupName,
       COALESCE(a.PartyAddress, '') AS PartyAddress,
       COALESCE(a.PartyPhone, '') AS PartyPhone,
       COALESCE(a.CareOf, '') AS CareOf,
       (SELECT SDate FROM LedgerPeriod) AS SDate,
       (SELECT EDate FROM LedgerPeriod) AS EDate
FROM AllAccountPeriodTotals t
LEFT JOIN tblPartyInfo a ON a.PartyCode = t.PartyCode
LEFT JOIN tblPartyInfo g ON g.PartyCode = CAST(SUBSTR(a.PartyCode, 1, 6) || '000' AS CHAR(9))
WHERE t.PartyCode >= '14-10-000' AND t.PartyCode <= '18-99-999'
