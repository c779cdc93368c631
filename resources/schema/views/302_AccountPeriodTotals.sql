-- Each account's figures for the report period, in whole cents so that the
-- sums are exact on every engine: the balance brought forward from before
-- the period, the debits, credits and net movement inside it, and the
-- balance at its end. Accounts with no posting up to the period's end have
-- no row. The statements are built on this view. The code is grouped
-- without its trailing blanks, so that a filter on it reaches the index on
-- RTRIM(PartyCode) on every engine, and the sums are read from that index
-- alone. The account's name is the chart's (AccountHeading).
-- SQLite holds amounts as binary numbers, so each is turned into cents
-- before it is added; PostgreSQL adds its exact decimals and scales the sum.
--@sqlite
CREATE VIEW AccountPeriodTotals AS
SELECT RTRIM(b.PartyCode) AS PartyCode,
       CAST('' AS TEXT) AS PartyName,
       MAX(b.VDate) AS VDate,
       SUM(CASE WHEN b.VDate < (SELECT SDate FROM LedgerPeriod)
                THEN CAST(ROUND(b.PartyBalance * 100) AS BIGINT) ELSE 0 END) AS OpeningCents,
       SUM(CASE WHEN b.VDate >= (SELECT SDate FROM LedgerPeriod)
                THEN CAST(ROUND(b.PartyDR * 100) AS BIGINT) ELSE 0 END) AS DebitCents,
       SUM(CASE WHEN b.VDate >= (SELECT SDate FROM LedgerPeriod)
                THEN CAST(ROUND(b.PartyCR * 100) AS BIGINT) ELSE 0 END) AS CreditCents,
       SUM(CASE WHEN b.VDate >= (SELECT SDate FROM LedgerPeriod)
                THEN CAST(ROUND(b.PartyBalance * 100) AS BIGINT) ELSE 0 END) AS PeriodCents,
       SUM(CASE WHEN b.VDate < (SELECT SDate FROM LedgerPeriod)
                THEN CAST(ROUND(b.PartyBalance * 100) AS BIGINT) ELSE 0 END)
       + SUM(CASE WHEN b.VDate >= (SELECT SDate FROM LedgerPeriod)
                  THEN CAST(ROUND(b.PartyBalance * 100) AS BIGINT) ELSE 0 END) AS ClosingCents,
       SUM(CASE WHEN b.VDate >= (SELECT SDate FROM LedgerPeriod) THEN 1 ELSE 0 END) AS PeriodRows
FROM tblPartyBalance b
WHERE b.VDate <= (SELECT EDate FROM LedgerPeriod)
GROUP BY RTRIM(b.PartyCode)
--@postgres
CREATE VIEW AccountPeriodTotals AS
SELECT RTRIM(b.PartyCode) AS PartyCode,
       CAST('' AS TEXT) AS PartyName,
       MAX(b.VDate) AS VDate,
       SUM(CASE WHEN b.VDate < (SELECT SDate FROM LedgerPeriod) THEN b.PartyBalance ELSE 0 END) * 100 AS OpeningCents,
       SUM(CASE WHEN b.VDate >= (SELECT SDate FROM LedgerPeriod) THEN b.PartyDR ELSE 0 END) * 100 AS DebitCents,
       SUM(CASE WHEN b.VDate >= (SELECT SDate FROM LedgerPeriod) THEN b.PartyCR ELSE 0 END) * 100 AS CreditCents,
       SUM(CASE WHEN b.VDate >= (SELECT SDate FROM LedgerPeriod) THEN b.PartyBalance ELSE 0 END) * 100 AS PeriodCents,
       SUM(b.PartyBalance) * 100 AS ClosingCents,
       SUM(CASE WHEN b.VDate >= (SELECT SDate FROM LedgerPeriod) THEN 1 ELSE 0 END) AS PeriodRows
FROM tblPartyBalance b
WHERE b.VDate <= (SELECT EDate FROM LedgerPeriod)
GROUP BY RTRIM(b.PartyCode)
