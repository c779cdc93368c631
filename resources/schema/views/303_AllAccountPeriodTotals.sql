-- The figures of AccountPeriodTotals for every account at once, for the
-- statements that list all accounts, without the date of the last posting.
-- Whole months come from the kept month figures (tblAccountMonthBalance,
-- moved with every posting), so that a period of whole months reads no
-- ledger row at all; only the days of a month the period cuts are read,
-- from the index on the date that carries the amounts:
--   o   the opening cut: rows before it are brought forward (the period's
--       start, or the day after its end when it ends before it starts);
--       the months before o's month are whole, the days of o's month
--       before o come from the rows;
--   fs  the first day of the first whole month of the period;
--   fe  the first day after the last whole month of the period; months
--       from fs up to fe are whole, the period's other days come from the
--       rows, read as two ranges of the date index: from the start up to
--       fs, and from fb (the later of fs and fe) to the end, so that a
--       period inside one month reads its days once.
-- A period with no start runs from the first posting. Rows without a date
-- are in no period, as in AccountPeriodTotals. An account is listed when
-- it has a posting up to the period's end.
--@sqlite
CREATE VIEW AllAccountPeriodTotals AS
WITH q AS (
    SELECT COALESCE(SDate, '0001-01-01') AS s, EDate AS e FROM LedgerPeriod
), b AS (
    SELECT s, e,
           MIN(s, date(e, '+1 day')) AS o,
           CASE WHEN s = date(s, 'start of month') THEN s ELSE date(s, 'start of month', '+1 month') END AS fs,
           CASE WHEN date(e, '+1 day') = date(e, '+1 day', 'start of month') THEN date(e, '+1 day')
                ELSE date(e, 'start of month') END AS fe
    FROM q
), m AS (
    SELECT s, e, o, fs, fe, MAX(fs, fe) AS fb, date(o, 'start of month') AS oStart,
           CAST(strftime('%Y%m', o) AS INTEGER) AS oYM,
           CAST(strftime('%Y%m', fs) AS INTEGER) AS fsYM,
           CAST(strftime('%Y%m', fe) AS INTEGER) AS feYM
    FROM b
)
SELECT t.PartyCode AS PartyCode,
       CAST('' AS TEXT) AS PartyName,
       SUM(t.OpeningCents) AS OpeningCents,
       SUM(t.DebitCents) AS DebitCents,
       SUM(t.CreditCents) AS CreditCents,
       SUM(t.PeriodCents) AS PeriodCents,
       SUM(t.OpeningCents) + SUM(t.PeriodCents) AS ClosingCents,
       SUM(t.PeriodRows) AS PeriodRows
FROM (
    SELECT RTRIM(k.PartyCode) AS PartyCode, k.BalanceCents AS OpeningCents, 0 AS DebitCents, 0 AS CreditCents,
           0 AS PeriodCents, 0 AS PeriodRows, k.RowCount AS AllRows
    FROM tblAccountMonthBalance k, m
    WHERE k.YearMonth > 0 AND k.YearMonth < m.oYM
    UNION ALL
    SELECT RTRIM(r.PartyCode), CAST(ROUND(r.PartyBalance * 100) AS BIGINT), 0, 0, 0, 0, 1
    FROM tblPartyBalance r INDEXED BY ixPartyBalanceDateAmounts, m
    WHERE r.VDate >= m.oStart AND r.VDate < m.o
    UNION ALL
    SELECT RTRIM(k.PartyCode), 0, k.DebitCents, k.CreditCents, k.BalanceCents, k.RowCount, k.RowCount
    FROM tblAccountMonthBalance k, m
    WHERE k.YearMonth >= m.fsYM AND k.YearMonth < m.feYM AND m.s <= m.e
    UNION ALL
    SELECT RTRIM(r.PartyCode), 0, CAST(ROUND(r.PartyDR * 100) AS BIGINT), CAST(ROUND(r.PartyCR * 100) AS BIGINT),
           CAST(ROUND(r.PartyBalance * 100) AS BIGINT), 1, 1
    FROM tblPartyBalance r INDEXED BY ixPartyBalanceDateAmounts, m
    WHERE r.VDate >= m.s AND r.VDate < m.fs AND r.VDate <= m.e
    UNION ALL
    SELECT RTRIM(r.PartyCode), 0, CAST(ROUND(r.PartyDR * 100) AS BIGINT), CAST(ROUND(r.PartyCR * 100) AS BIGINT),
           CAST(ROUND(r.PartyBalance * 100) AS BIGINT), 1, 1
    FROM tblPartyBalance r INDEXED BY ixPartyBalanceDateAmounts, m
    WHERE r.VDate >= m.fb AND r.VDate >= m.s AND r.VDate <= m.e
) t
GROUP BY t.PartyCode
HAVING SUM(t.AllRows) > 0
--@postgres
CREATE VIEW AllAccountPeriodTotals AS
WITH q AS (
    SELECT COALESCE(SDate, DATE '0001-01-01') AS s, EDate AS e FROM LedgerPeriod
), b AS (
    SELECT s, e,
           LEAST(s, e + 1) AS o,
           CASE WHEN s = CAST(date_trunc('month', s) AS DATE) THEN s
                ELSE CAST(date_trunc('month', s) + INTERVAL '1 month' AS DATE) END AS fs,
           CASE WHEN e + 1 = CAST(date_trunc('month', e + 1) AS DATE) THEN e + 1
                ELSE CAST(date_trunc('month', e) AS DATE) END AS fe
    FROM q
), m AS (
    SELECT s, e, o, fs, fe, GREATEST(fs, fe) AS fb, CAST(date_trunc('month', o) AS DATE) AS oStart,
           CAST(EXTRACT(YEAR FROM o) * 100 + EXTRACT(MONTH FROM o) AS BIGINT) AS oYM,
           CAST(EXTRACT(YEAR FROM fs) * 100 + EXTRACT(MONTH FROM fs) AS BIGINT) AS fsYM,
           CAST(EXTRACT(YEAR FROM fe) * 100 + EXTRACT(MONTH FROM fe) AS BIGINT) AS feYM
    FROM b
)
SELECT t.PartyCode AS PartyCode,
       CAST('' AS TEXT) AS PartyName,
       SUM(t.OpeningCents) AS OpeningCents,
       SUM(t.DebitCents) AS DebitCents,
       SUM(t.CreditCents) AS CreditCents,
       SUM(t.PeriodCents) AS PeriodCents,
       SUM(t.OpeningCents) + SUM(t.PeriodCents) AS ClosingCents,
       SUM(t.PeriodRows) AS PeriodRows
FROM (
    SELECT RTRIM(k.PartyCode) AS PartyCode, CAST(k.BalanceCents AS NUMERIC) AS OpeningCents, CAST(0 AS NUMERIC) AS DebitCents,
           CAST(0 AS NUMERIC) AS CreditCents, CAST(0 AS NUMERIC) AS PeriodCents, CAST(0 AS BIGINT) AS PeriodRows,
           k.RowCount AS AllRows
    FROM tblAccountMonthBalance k, m
    WHERE k.YearMonth > 0 AND k.YearMonth < m.oYM
    UNION ALL
    SELECT RTRIM(r.PartyCode), r.PartyBalance * 100, 0, 0, 0, 0, 1
    FROM tblPartyBalance r, m
    WHERE r.VDate >= m.oStart AND r.VDate < m.o
    UNION ALL
    SELECT RTRIM(k.PartyCode), 0, k.DebitCents, k.CreditCents, k.BalanceCents, k.RowCount, k.RowCount
    FROM tblAccountMonthBalance k, m
    WHERE k.YearMonth >= m.fsYM AND k.YearMonth < m.feYM AND m.s <= m.e
    UNION ALL
    SELECT RTRIM(r.PartyCode), 0, r.PartyDR * 100, r.PartyCR * 100, r.PartyBalance * 100, 1, 1
    FROM tblPartyBalance r, m
    WHERE r.VDate >= m.s AND r.VDate < m.fs AND r.VDate <= m.e
    UNION ALL
    SELECT RTRIM(r.PartyCode), 0, r.PartyDR * 100, r.PartyCR * 100, r.PartyBalance * 100, 1, 1
    FROM tblPartyBalance r, m
    WHERE r.VDate >= m.fb AND r.VDate >= m.s AND r.VDate <= m.e
) t
GROUP BY t.PartyCode
HAVING SUM(t.AllRows) > 0
