-- Each account's balance from the first posting up to the period's end,
-- on its debit or credit side, with the date of its last posting, its
-- headings and its contact. The debit and credit columns total alike
-- whenever the postings do.
-- Only the balance at the period's end is wanted. The start of the period
-- plays no part: a period without a start date takes everything up to its
-- end. Whole months come from the kept month figures
-- (tblAccountMonthBalance); only the days of the month the end cuts
-- (LedgerEndMonth) are read from the rows, through the index on the date
-- that carries the amounts; the last posting of each account is one seek
-- of the index on the account and the date. An account is listed when it
-- has a posting up to the end.
-- The same statement serves both engines.
CREATE VIEW TrialBalanceUptoDate AS
WITH t AS (
    SELECT u.PartyCode AS PartyCode, CAST('' AS TEXT) AS PartyName, SUM(u.Cents) AS ClosingCents
    FROM (
        SELECT RTRIM(k.PartyCode) AS PartyCode, CAST(k.BalanceCents AS NUMERIC) AS Cents, k.RowCount AS Rows
        FROM tblAccountMonthBalance k, LedgerEndMonth m
        WHERE k.YearMonth > 0 AND k.YearMonth < m.CutYearMonth
        UNION ALL
        SELECT RTRIM(r.PartyCode), CAST(ROUND(r.PartyBalance * 100) AS BIGINT), 1
        FROM tblPartyBalance r, LedgerEndMonth m
        WHERE r.VDate >= m.CutDate AND r.VDate <= m.EDate
    ) u
    GROUP BY u.PartyCode
    HAVING SUM(u.Rows) > 0
)
SELECT t.PartyCode AS PartyCode,
       COALESCE(a.PartyName, t.PartyName) AS PartyName,
       (SELECT MAX(x.VDate) FROM tblPartyBalance x
        WHERE x.PartyCode = CAST(t.PartyCode AS BPCHAR) AND x.VDate <= (SELECT EDate FROM LedgerEndMonth)) AS VDate,
       t.ClosingCents / 100.0 AS PartyBalance,
       CASE WHEN t.ClosingCents > 0 THEN t.ClosingCents / 100.0 ELSE 0 END AS PartyDR,
       CASE WHEN t.ClosingCents < 0 THEN -t.ClosingCents / 100.0 ELSE 0 END AS PartyCR,
       CASE WHEN t.ClosingCents > 0 THEN 'DR' WHEN t.ClosingCents < 0 THEN 'CR' ELSE '' END AS DrCr,
       SUBSTR(t.PartyCode, 1, 6) || '000' AS GroupCode,
       COALESCE(g.PartyName, '') AS GroupName,
       SUBSTR(t.PartyCode, 1, 3) || '00-000' AS HeadCode,
       COALESCE(h.PartyName, '') AS HeadName,
       COALESCE(a.PartyAddress, '') AS PartyAddress,
       COALESCE(a.PartyPhone, '') AS PartyPhone,
       COALESCE(a.CareOf, '') AS CareOf,
       (SELECT EDate FROM LedgerEndMonth) AS EDate
FROM t
LEFT JOIN tblPartyInfo a ON a.PartyCode = t.PartyCode
LEFT JOIN tblPartyInfo g ON g.PartyCode = CAST(SUBSTR(a.PartyCode, 1, 6) || '000' AS CHAR(9))
LEFT JOIN tblPartyInfo h ON h.PartyCode = CAST(SUBSTR(a.PartyCode, 1, 3) || '00-000' AS CHAR(9))
