-- Each account's position in the report period: the balance brought
-- forward, the debits and credits of the period and the balance at its
-- end. The screen selects a range of codes (parties, or expense and income
-- accounts to compare them); accounts without a posting up to the period's
-- end have no row.
CREATE VIEW PartyPosition AS
SELECT t.PartyCode AS PartyCode,
       COALESCE(a.PartyName, t.PartyName) AS PartyName,
       SUBSTR(t.PartyCode, 1, 6) || '000' AS GroupCode,
       COALESCE(g.PartyName, '') AS GroupName,
       t.OpeningCents / 100.0 AS OpeningBalance,
       t.DebitCents / 100.0 AS DebitTotal,
       t.CreditCents / 100.0 AS CreditTotal,
       t.PeriodCents / 100.0 AS PeriodBalance,
       t.ClosingCents / 100.0 AS ClosingBalance,
       (SELECT SDate FROM LedgerPeriod) AS SDate,
       (SELECT EDate FROM LedgerPeriod) AS EDate
FROM AllAccountPeriodTotals t
LEFT JOIN tblPartyInfo a ON a.PartyCode = t.PartyCode
LEFT JOIN tblPartyInfo g ON g.PartyCode = CAST(SUBSTR(t.PartyCode, 1, 6) || '000' AS CHAR(9))
