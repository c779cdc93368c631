-- Each account's figures for the report period, in whole cents so that the
-- sums are exact on every engine: the balance brought forward from before
-- the period, the debits, credits and net movement inside it, and the
-- balance at its end. Accounts with no posting up to the period's end have
-- no row; with no start to the period nothing is brought forward or moved.
-- The statements are built on this view.
-- Each account's rows are read once, in code order, from the index on
-- RTRIM(PartyCode), which carries the date and the amounts: there is no
-- condition on the date for the planner to take another index for, so the
-- plan is the same with or without statistics, and a filter on the code
-- reaches that index on every engine. The account's name is the chart's
-- (AccountHeading).
-- SQLite holds amounts as binary numbers, so each is turned into cents
-- before it is added; PostgreSQL adds its exact decimals and scales the sum.
--@sqlite
CREATE VIEW AccountPeriodTotals AS
SELECT RTRIM(b.PartyCode) AS PartyCode,
       CAST('' AS TEXT) AS PartyName,
       MAX(CASE WHEN b.VDate <= (SELECT EDate FROM LedgerPeriod) THEN b.VDate END) AS VDate,
       SUM(CASE WHEN b.VDate < (SELECT SDate FROM LedgerPeriod) AND b.VDate <= (SELECT EDate FROM LedgerPeriod)
                THEN CAST(ROUND(b.PartyBalance * 100) AS BIGINT) ELSE 0 END) AS OpeningCents,
       SUM(CASE WHEN b.VDate >= (SELECT SDate FROM LedgerPeriod) AND b.VDate <= (SELECT EDate FROM LedgerPeriod)
                THEN CAST(ROUND(b.PartyDR * 100) AS BIGINT) ELSE 0 END) AS DebitCents,
       SUM(CASE WHEN b.VDate >= (SELECT SDate FROM LedgerPeriod) AND b.VDate <= (SELECT EDate FROM LedgerPeriod)
                THEN CAST(ROUND(b.PartyCR * 100) AS BIGINT) ELSE 0 END) AS CreditCents,
       SUM(CASE WHEN b.VDate >= (SELECT SDate FROM LedgerPeriod) AND b.VDate <= (SELECT EDate FROM LedgerPeriod)
                THEN CAST(ROUND(b.PartyBalance * 100) AS BIGINT) ELSE 0 END) AS PeriodCents,
       SUM(CASE WHEN (SELECT SDate FROM LedgerPeriod) IS NOT NULL AND b.VDate <= (SELECT EDate FROM LedgerPeriod)
                THEN CAST(ROUND(b.PartyBalance * 100) AS BIGINT) ELSE 0 END) AS ClosingCents,
       SUM(CASE WHEN b.VDate >= (SELECT SDate FROM LedgerPeriod) AND b.VDate <= (SELECT EDate FROM LedgerPeriod)
                THEN 1 ELSE 0 END) AS PeriodRows
FROM tblPartyBalance b INDEXED BY ixPartyBalanceTrimCode
GROUP BY RTRIM(b.PartyCode)
HAVING MAX(CASE WHEN b.VDate <= (SELECT EDate FROM LedgerPeriod) THEN b.VDate END) IS NOT NULL
--@postgres
CREATE VIEW AccountPeriodTotals AS
SELECT RTRIM(b.PartyCode) AS PartyCode,
       CAST('' AS TEXT) AS PartyName,
       MAX(CASE WHEN b.VDate <= (SELECT EDate FROM LedgerPeriod) THEN b.VDate END) AS VDate,
       SUM(CASE WHEN b.VDate < (SELECT SDate FROM LedgerPeriod) AND b.VDate <= (SELECT EDate FROM LedgerPeriod)
                THEN b.PartyBalance ELSE 0 END) * 100 AS OpeningCents,
       SUM(CASE WHEN b.VDate >= (SELECT SDate FROM LedgerPeriod) AND b.VDate <= (SELECT EDate FROM LedgerPeriod)
                THEN b.PartyDR ELSE 0 END) * 100 AS DebitCents,
       SUM(CASE WHEN b.VDate >= (SELECT SDate FROM LedgerPeriod) AND b.VDate <= (SELECT EDate FROM LedgerPeriod)
                THEN b.PartyCR ELSE 0 END) * 100 AS CreditCents,
       SUM(CASE WHEN b.VDate >= (SELECT SDate FROM LedgerPeriod) AND b.VDate <= (SELECT EDate FROM LedgerPeriod)
                THEN b.PartyBalance ELSE 0 END) * 100 AS PeriodCents,
       SUM(CASE WHEN (SELECT SDate FROM LedgerPeriod) IS NOT NULL AND b.VDate <= (SELECT EDate FROM LedgerPeriod)
                THEN b.PartyBalance ELSE 0 END) * 100 AS ClosingCents,
       SUM(CASE WHEN b.VDate >= (SELECT SDate FROM LedgerPeriod) AND b.VDate <= (SELECT EDate FROM LedgerPeriod)
                THEN 1 ELSE 0 END) AS PeriodRows
FROM tblPartyBalance b
GROUP BY RTRIM(b.PartyCode)
HAVING MAX(CASE WHEN b.VDate <= (SELECT EDate FROM LedgerPeriod) THEN b.VDate END) IS NOT NULL
