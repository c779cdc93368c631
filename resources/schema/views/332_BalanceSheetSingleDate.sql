-- The balance sheet up to a date: the balance sheet from the first posting
-- to the period's end (the single-date screen opens the period on
-- 01/01/1900), balancing through its result line.
CREATE VIEW BalanceSheetSingleDate AS
SELECT PartyCode, PartyName, LineKind, GroupCode, GroupName, HeadCode, HeadName,
       PartyBalance, PartyDR, PartyCR, DrCr, EDate
FROM BalanceSheet
