-- Each account's figures for the report period, in whole cents so that the
-- sums are exact on every engine: the balance brought forward from before
-- the period, the debits, credits and net movement inside it, and the
-- balance at its end. Accounts with no posting up to the period's end have
-- no row; a period with no start runs from the first posting: nothing is
-- brought forward and everything up to the end has moved.
-- The statements are built on this view.
-- Each account's rows are read once, in code order, from the index on
-- RTRIM(PartyCode), which carries the date and the amounts, and split at
-- the period's start by conditional sums; the movement is the balance at
-- the end less the one brought forward. A filter on the code reaches that
-- index on every engine. The account's name is the chart's
-- (AccountHeading).
-- SQLite holds amounts as binary numbers, so each is rounded to whole cents
-- before it is added (a sum of whole numbers is exact); the index is named,
-- so that the plan is the same with or without statistics. PostgreSQL adds
-- its exact decimals and scales the sum; it has no condition on the date,
-- so its plan is one pass whatever its statistics say.
--@sqlite
CREATE VIEW AccountPeriodTotals AS
SELECT t.PartyCode AS PartyCode,
       CAST('' AS TEXT) AS PartyName,
       t.VDate AS VDate,
       t.OpeningCents AS OpeningCents,
       t.DebitCents AS DebitCents,
       t.CreditCents AS CreditCents,
       t.AllCents - t.OpeningCents AS PeriodCents,
       t.AllCents AS ClosingCents,
       t.PeriodRows AS PeriodRows
FROM (
    SELECT RTRIM(b.PartyCode) AS PartyCode,
           MAX(b.VDate) AS VDate,
           CAST(COALESCE(SUM(CASE WHEN b.VDate < (SELECT SDate FROM LedgerPeriod)
                                  THEN ROUND(b.PartyBalance * 100) END), 0) AS BIGINT) AS OpeningCents,
           CAST(COALESCE(SUM(CASE WHEN NOT COALESCE(b.VDate < (SELECT SDate FROM LedgerPeriod), FALSE)
                                  THEN ROUND(b.PartyDR * 100) END), 0) AS BIGINT) AS DebitCents,
           CAST(COALESCE(SUM(CASE WHEN NOT COALESCE(b.VDate < (SELECT SDate FROM LedgerPeriod), FALSE)
                                  THEN ROUND(b.PartyCR * 100) END), 0) AS BIGINT) AS CreditCents,
           CAST(COALESCE(SUM(ROUND(b.PartyBalance * 100)), 0) AS BIGINT) AS AllCents,
           COALESCE(SUM(NOT COALESCE(b.VDate < (SELECT SDate FROM LedgerPeriod), FALSE)), 0) AS PeriodRows
    FROM tblPartyBalance b INDEXED BY ixPartyBalanceTrimCode
    WHERE b.VDate <= (SELECT EDate FROM LedgerPeriod)
    GROUP BY RTRIM(b.PartyCode)
) t
--@postgres
CREATE VIEW AccountPeriodTotals AS
SELECT t.PartyCode AS PartyCode,
       CAST('' AS TEXT) AS PartyName,
       t.VDate AS VDate,
       t.OpeningCents AS OpeningCents,
       t.DebitCents AS DebitCents,
       t.CreditCents AS CreditCents,
       t.AllCents - t.OpeningCents AS PeriodCents,
       t.AllCents AS ClosingCents,
       t.PeriodRows AS PeriodRows
FROM (
    SELECT RTRIM(b.PartyCode) AS PartyCode,
           MAX(CASE WHEN b.VDate <= (SELECT EDate FROM LedgerPeriod) THEN b.VDate END) AS VDate,
           SUM(CASE WHEN b.VDate < (SELECT SDate FROM LedgerPeriod) AND b.VDate <= (SELECT EDate FROM LedgerPeriod)
                    THEN b.PartyBalance ELSE 0 END) * 100 AS OpeningCents,
           SUM(CASE WHEN NOT COALESCE(b.VDate < (SELECT SDate FROM LedgerPeriod), FALSE) AND b.VDate <= (SELECT EDate FROM LedgerPeriod)
                    THEN b.PartyDR ELSE 0 END) * 100 AS DebitCents,
           SUM(CASE WHEN NOT COALESCE(b.VDate < (SELECT SDate FROM LedgerPeriod), FALSE) AND b.VDate <= (SELECT EDate FROM LedgerPeriod)
                    THEN b.PartyCR ELSE 0 END) * 100 AS CreditCents,
           SUM(CASE WHEN b.VDate <= (SELECT EDate FROM LedgerPeriod) THEN b.PartyBalance ELSE 0 END) * 100 AS AllCents,
           SUM(CASE WHEN NOT COALESCE(b.VDate < (SELECT SDate FROM LedgerPeriod), FALSE) AND b.VDate <= (SELECT EDate FROM LedgerPeriod)
                    THEN 1 ELSE 0 END) AS PeriodRows
    FROM tblPartyBalance b
    GROUP BY RTRIM(b.PartyCode)
) t
WHERE t.VDate IS NOT NULL
