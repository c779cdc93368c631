-- Each account's balance from the first posting up to the period's end,
-- on its debit or credit side, with the date of its last posting, its
-- headings and its contact. The debit and credit columns total alike
-- whenever the postings do.
CREATE VIEW TrialBalanceUptoDate AS
SELECT t.PartyCode AS PartyCode,
       COALESCE(ah.PartyName, t.PartyName) AS PartyName,
       t.VDate AS VDate,
       t.ClosingCents / 100.0 AS PartyBalance,
       CASE WHEN t.ClosingCents > 0 THEN t.ClosingCents / 100.0 ELSE 0 END AS PartyDR,
       CASE WHEN t.ClosingCents < 0 THEN -t.ClosingCents / 100.0 ELSE 0 END AS PartyCR,
       CASE WHEN t.ClosingCents > 0 THEN 'DR' WHEN t.ClosingCents < 0 THEN 'CR' ELSE '' END AS DrCr,
       SUBSTR(t.PartyCode, 1, 6) || '000' AS GroupCode,
       COALESCE(ah.GroupName, '') AS GroupName,
       SUBSTR(t.PartyCode, 1, 3) || '00-000' AS HeadCode,
       COALESCE(ah.HeadName, '') AS HeadName,
       COALESCE(ah.PartyAddress, '') AS PartyAddress,
       COALESCE(ah.PartyPhone, '') AS PartyPhone,
       COALESCE(ah.CareOf, '') AS CareOf,
       (SELECT EDate FROM LedgerPeriod) AS EDate
FROM AccountPeriodTotals t
LEFT JOIN AccountHeading ah ON ah.PartyCode = t.PartyCode
