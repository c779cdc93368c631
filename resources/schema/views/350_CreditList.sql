-- The parties whose postings in the report period come to a credit
-- (negative) balance. An account at 0 is in neither list.
CREATE VIEW CreditList AS
SELECT * FROM PartyPeriodBalance WHERE PartyBalance < 0
