-- The parties whose postings in the report period come to a debit
-- (positive) balance. An account at 0 is in neither list.
CREATE VIEW DebitList AS
SELECT * FROM PartyPeriodBalance WHERE PartyBalance > 0
