-- The parties' balances from the first posting up to one date (the report
-- period's end), on their debit or credit side: the party position of a
-- single date.
CREATE VIEW PartyPositionSingleDate AS
SELECT PartyCode, PartyName, GroupCode, GroupName, PartyBalance, PartyDR, PartyCR,
       PartyAddress, PartyPhone, EDate
FROM TrialBalanceUptoDate
WHERE PartyCode >= '14-10-000' AND PartyCode <= '18-99-999'
