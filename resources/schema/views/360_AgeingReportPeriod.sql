-- The outstanding sale invoices of every party at the period's end, in
-- age buckets of 0-30, 31-60, 61-90 and over 90 days. A party's balance at
-- the period's end (when it is a debit) is laid on its invoices newest
-- first, by invoice number; an invoice older than those the balance covers
-- is paid. What of the balance lies beyond all its invoices (an opening
-- balance, say) stays with the oldest invoice, so that a party's buckets
-- add up to its balance. With no start to the period the balance is taken
-- from the first posting.
-- The invoices come from the index that holds only the sale-invoice debits,
-- already in each party's order, and the balances only for the parties
-- ("14-10-000" to "18-99-999") from the index on the code.
--@sqlite
CREATE VIEW AgeingReportPeriod AS
SELECT a.PartyCode AS PartyCode,
       a.PartyName AS PartyName,
       a.SrNo AS SrNo,
       a.VoucherNo AS VoucherNo,
       a.VDate AS VDate,
       a.InvoiceNo AS InvoiceNo,
       a.PartyDR AS PartyDR,
       a.BalanceCents / 100.0 AS PartyBalance,
       a.OutstandingCents / 100.0 AS Outstanding,
       a.Days AS Days,
       CASE WHEN a.Days <= 30 THEN a.OutstandingCents / 100.0 ELSE 0 END AS Days0To30,
       CASE WHEN a.Days > 30 AND a.Days <= 60 THEN a.OutstandingCents / 100.0 ELSE 0 END AS Days31To60,
       CASE WHEN a.Days > 60 AND a.Days <= 90 THEN a.OutstandingCents / 100.0 ELSE 0 END AS Days61To90,
       CASE WHEN a.Days > 90 THEN a.OutstandingCents / 100.0 ELSE 0 END AS DaysOver90,
       (SELECT SDate FROM LedgerPeriod) AS SDate,
       (SELECT EDate FROM LedgerPeriod) AS EDate
FROM (
    SELECT s.PartyCode AS PartyCode, s.PartyName AS PartyName, s.SrNo AS SrNo, s.VoucherNo AS VoucherNo,
           s.VDate AS VDate, s.InvoiceNo AS InvoiceNo, s.PartyDR AS PartyDR, s.BalanceCents AS BalanceCents,
           CASE WHEN s.BalanceCents - s.NewerCents <= 0 THEN 0
                WHEN s.OldestFirst = 1 THEN s.BalanceCents - s.NewerCents
                WHEN s.BalanceCents - s.NewerCents < s.DebitCents THEN s.BalanceCents - s.NewerCents
                ELSE s.DebitCents END AS OutstandingCents,
           CAST(julianday((SELECT EDate FROM LedgerPeriod)) - julianday(s.VDate) AS INTEGER) AS Days
    FROM (
        SELECT w.PartyCode AS PartyCode,
               COALESCE(pi.PartyName, w.PartyName) AS PartyName,
               w.SrNo AS SrNo,
               w.VoucherNo AS VoucherNo,
               w.VDate AS VDate,
               w.InvoiceNo AS InvoiceNo,
               w.PartyDR AS PartyDR,
               t.ClosingCents AS BalanceCents,
               w.DebitCents AS DebitCents,
               w.NewerCents AS NewerCents,
               w.OldestFirst AS OldestFirst
        FROM (
            -- Each party's balance at the period's end, one amount a row.
            SELECT RTRIM(b.PartyCode) AS PartyCode,
                   SUM(CASE WHEN b.VDate <= (SELECT EDate FROM LedgerPeriod) THEN CAST(ROUND(b.PartyBalance * 100) AS BIGINT) ELSE 0 END) AS ClosingCents
            FROM tblPartyBalance b INDEXED BY ixPartyBalanceTrimCode
            WHERE RTRIM(b.PartyCode) >= '14-10-000' AND RTRIM(b.PartyCode) <= '18-99-999'
            GROUP BY RTRIM(b.PartyCode)
        ) t
        JOIN (
            -- Newest first within each party, the oldest counting 1 from
            -- the end.
            SELECT v.PartyCode AS PartyCode, v.PartyName AS PartyName, v.SrNo AS SrNo,
                   v.VoucherNo AS VoucherNo, v.VDate AS VDate, v.InvoiceNo AS InvoiceNo, v.PartyDR AS PartyDR,
                   CAST(ROUND(v.PartyDR * 100) AS BIGINT) AS DebitCents,
                   COALESCE(SUM(CAST(ROUND(v.PartyDR * 100) AS BIGINT))
                                OVER (PARTITION BY v.PartyCode ORDER BY v.VoucherNo DESC, v.SrNo DESC
                                      ROWS BETWEEN UNBOUNDED PRECEDING AND 1 PRECEDING), 0) AS NewerCents,
                   COUNT(*) OVER (PARTITION BY v.PartyCode ORDER BY v.VoucherNo DESC, v.SrNo DESC
                                  ROWS BETWEEN CURRENT ROW AND UNBOUNDED FOLLOWING) AS OldestFirst
            FROM tblPartyBalance v INDEXED BY ixPartyBalanceSaleInvoice
            WHERE v.VoucherType = 'SV' AND v.PartyDR > 0
              AND v.VDate <= (SELECT EDate FROM LedgerPeriod)
        ) w ON RTRIM(w.PartyCode) = t.PartyCode
        LEFT JOIN tblPartyInfo pi ON pi.PartyCode = w.PartyCode
        WHERE t.ClosingCents > 0
    ) s
) a
WHERE a.OutstandingCents > 0
--@postgres
CREATE VIEW AgeingReportPeriod AS
SELECT a.PartyCode AS PartyCode,
       a.PartyName AS PartyName,
       a.SrNo AS SrNo,
       a.VoucherNo AS VoucherNo,
       a.VDate AS VDate,
       a.InvoiceNo AS InvoiceNo,
       a.PartyDR AS PartyDR,
       a.BalanceCents / 100.0 AS PartyBalance,
       a.OutstandingCents / 100.0 AS Outstanding,
       a.Days AS Days,
       CASE WHEN a.Days <= 30 THEN a.OutstandingCents / 100.0 ELSE 0 END AS Days0To30,
       CASE WHEN a.Days > 30 AND a.Days <= 60 THEN a.OutstandingCents / 100.0 ELSE 0 END AS Days31To60,
       CASE WHEN a.Days > 60 AND a.Days <= 90 THEN a.OutstandingCents / 100.0 ELSE 0 END AS Days61To90,
       CASE WHEN a.Days > 90 THEN a.OutstandingCents / 100.0 ELSE 0 END AS DaysOver90,
       (SELECT SDate FROM LedgerPeriod) AS SDate,
       (SELECT EDate FROM LedgerPeriod) AS EDate
FROM (
    SELECT s.PartyCode AS PartyCode, s.PartyName AS PartyName, s.SrNo AS SrNo, s.VoucherNo AS VoucherNo,
           s.VDate AS VDate, s.InvoiceNo AS InvoiceNo, s.PartyDR AS PartyDR, s.BalanceCents AS BalanceCents,
           CASE WHEN s.BalanceCents - s.NewerCents <= 0 THEN 0
                WHEN s.OldestFirst = 1 THEN s.BalanceCents - s.NewerCents
                WHEN s.BalanceCents - s.NewerCents < s.DebitCents THEN s.BalanceCents - s.NewerCents
                ELSE s.DebitCents END AS OutstandingCents,
           ((SELECT EDate FROM LedgerPeriod) - s.VDate) AS Days
    FROM (
        SELECT w.PartyCode AS PartyCode,
               COALESCE(pi.PartyName, w.PartyName) AS PartyName,
               w.SrNo AS SrNo,
               w.VoucherNo AS VoucherNo,
               w.VDate AS VDate,
               w.InvoiceNo AS InvoiceNo,
               w.PartyDR AS PartyDR,
               t.ClosingCents AS BalanceCents,
               w.DebitCents AS DebitCents,
               w.NewerCents AS NewerCents,
               w.OldestFirst AS OldestFirst
        FROM (
            -- Each party's balance at the period's end, one amount a row.
            SELECT RTRIM(b.PartyCode) AS PartyCode,
                   SUM(CASE WHEN b.VDate <= (SELECT EDate FROM LedgerPeriod) THEN b.PartyBalance ELSE 0 END) * 100 AS ClosingCents
            FROM tblPartyBalance b
            WHERE RTRIM(b.PartyCode) >= '14-10-000' AND RTRIM(b.PartyCode) <= '18-99-999'
            GROUP BY RTRIM(b.PartyCode)
        ) t
        JOIN (
            -- Newest first within each party, the oldest counting 1 from
            -- the end.
            SELECT v.PartyCode AS PartyCode, v.PartyName AS PartyName, v.SrNo AS SrNo,
                   v.VoucherNo AS VoucherNo, v.VDate AS VDate, v.InvoiceNo AS InvoiceNo, v.PartyDR AS PartyDR,
                   CAST(ROUND(v.PartyDR * 100) AS BIGINT) AS DebitCents,
                   COALESCE(SUM(CAST(ROUND(v.PartyDR * 100) AS BIGINT))
                                OVER (PARTITION BY v.PartyCode ORDER BY v.VoucherNo DESC, v.SrNo DESC
                                      ROWS BETWEEN UNBOUNDED PRECEDING AND 1 PRECEDING), 0) AS NewerCents,
                   COUNT(*) OVER (PARTITION BY v.PartyCode ORDER BY v.VoucherNo DESC, v.SrNo DESC
                                  ROWS BETWEEN CURRENT ROW AND UNBOUNDED FOLLOWING) AS OldestFirst
            FROM tblPartyBalance v
            WHERE v.VoucherType = 'SV' AND v.PartyDR > 0
              AND v.VDate <= (SELECT EDate FROM LedgerPeriod)
        ) w ON RTRIM(w.PartyCode) = t.PartyCode
        LEFT JOIN tblPartyInfo pi ON pi.PartyCode = w.PartyCode
        WHERE t.ClosingCents > 0
    ) s
) a
WHERE a.OutstandingCents > 0
