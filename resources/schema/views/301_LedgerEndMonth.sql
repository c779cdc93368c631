-- The month the end of the report period cuts: EDate, the first day of
-- that month (CutDate; the day after EDate when EDate ends its month) and
-- the month as tblAccountMonthBalance counts it (CutYearMonth, year * 100 +
-- month). The kept months before CutYearMonth lie wholly before the end;
-- the days from CutDate to EDate are for the rows. One row, always.
--@sqlite
CREATE VIEW LedgerEndMonth AS
SELECT EDate,
       date(EDate, '+1 day', 'start of month') AS CutDate,
       CAST(strftime('%Y%m', date(EDate, '+1 day', 'start of month')) AS INTEGER) AS CutYearMonth
FROM LedgerPeriod
--@postgres
CREATE VIEW LedgerEndMonth AS
SELECT EDate,
       CAST(date_trunc('month', EDate + 1) AS DATE) AS CutDate,
       CAST(EXTRACT(YEAR FROM EDate + 1) * 100 + EXTRACT(MONTH FROM EDate + 1) AS BIGINT) AS CutYearMonth
FROM LedgerPeriod
