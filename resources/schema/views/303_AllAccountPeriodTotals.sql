-- The figures of AccountPeriodTotals for every account at once, for the
-- statements that list all accounts: the same single pass over the index
-- on the code.
CREATE VIEW AllAccountPeriodTotals AS
SELECT * FROM AccountPeriodTotals
