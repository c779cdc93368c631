-- Each account's balance from the first posting up to the period's end,
-- on its debit or credit side, with the date of its last posting, its
-- headings and its contact. The debit and credit columns total alike
-- whenever the postings do.
-- The same statement serves both engines.
CREATE VIEW TrialBalanceUptoDate AS
SELECT t.PartyCode AS PartyCode,
       COALESCE(a.PartyName, t.PartyName) AS PartyName,
       t.VDate AS VDate,
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
       (SELECT EDate FROM LedgerPeriod) AS EDate
FROM (
    -- Only the balance at the period's end is wanted, so each row is read
    -- once and added once. The start of the period plays no part: a
    -- period without a start date takes everything up to its end.
    SELECT RTRIM(b.PartyCode) AS PartyCode,
           CAST('' AS TEXT) AS PartyName,
           MAX(b.VDate) AS VDate,
           SUM(CAST(ROUND(b.PartyBalance * 100) AS BIGINT)) AS ClosingCents
    FROM tblPartyBalance b
    WHERE b.VDate <= (SELECT EDate FROM LedgerPeriod)
    GROUP BY RTRIM(b.PartyCode)
) t
LEFT JOIN tblPartyInfo a ON a.PartyCode = t.PartyCode
LEFT JOIN tblPartyInfo g ON g.PartyCode = CAST(SUBSTR(a.PartyCode, 1, 6) || '000' AS CHAR(9))
LEFT JOIN tblPartyInfo h ON h.PartyCode = CAST(SUBSTR(a.PartyCode, 1, 3) || '00-000' AS CHAR(9))
