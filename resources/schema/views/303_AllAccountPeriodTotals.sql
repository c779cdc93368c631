-- The figures of AccountPeriodTotals for every account at once, for the
-- statements that list all accounts. On SQLite each branch reads its rows
-- from the index on RTRIM(PartyCode) in code order with no test per row:
-- the rows before the period, the rows inside it, and (only when the
-- period has no start) every row up to its end with nothing counted, as
-- the comparisons with no start give. A filter on one account does not
-- reach inside the branches, so the ledger of one account stays on
-- AccountPeriodTotals.
--@sqlite
CREATE VIEW AllAccountPeriodTotals AS
SELECT x.PartyCode AS PartyCode,
       CAST('' AS TEXT) AS PartyName,
       MAX(x.VDate) AS VDate,
       SUM(x.OpeningCents) AS OpeningCents,
       SUM(x.DebitCents) AS DebitCents,
       SUM(x.CreditCents) AS CreditCents,
       SUM(x.PeriodCents) AS PeriodCents,
       SUM(x.OpeningCents) + SUM(x.PeriodCents) AS ClosingCents,
       SUM(x.PeriodRows) AS PeriodRows
FROM (
    SELECT RTRIM(b.PartyCode) AS PartyCode,
           MAX(b.VDate) AS VDate,
           SUM(CAST(ROUND(b.PartyBalance * 100) AS BIGINT)) AS OpeningCents,
           0 AS DebitCents, 0 AS CreditCents, 0 AS PeriodCents, 0 AS PeriodRows
    FROM tblPartyBalance b
    WHERE b.VDate < (SELECT SDate FROM LedgerPeriod)
      AND b.VDate <= (SELECT EDate FROM LedgerPeriod)
    GROUP BY RTRIM(b.PartyCode)
    UNION ALL
    SELECT RTRIM(b.PartyCode),
           MAX(b.VDate),
           0,
           SUM(CAST(ROUND(b.PartyDR * 100) AS BIGINT)),
           SUM(CAST(ROUND(b.PartyCR * 100) AS BIGINT)),
           SUM(CAST(ROUND(b.PartyBalance * 100) AS BIGINT)),
           COUNT(*)
    FROM tblPartyBalance b
    WHERE b.VDate >= (SELECT SDate FROM LedgerPeriod)
      AND b.VDate <= (SELECT EDate FROM LedgerPeriod)
    GROUP BY RTRIM(b.PartyCode)
    UNION ALL
    SELECT RTRIM(b.PartyCode), MAX(b.VDate), 0, 0, 0, 0, 0
    FROM tblPartyBalance b
    WHERE (SELECT SDate FROM LedgerPeriod) IS NULL
      AND b.VDate <= (SELECT EDate FROM LedgerPeriod)
    GROUP BY RTRIM(b.PartyCode)
) x
GROUP BY x.PartyCode
--@postgres
CREATE VIEW AllAccountPeriodTotals AS
SELECT * FROM AccountPeriodTotals
