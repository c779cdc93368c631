-- This session's staging lines: voucher lines being typed, and the work
-- rows of the ageing of one party.
CREATE TEMPORARY VIEW PartyBalanceEmpty AS
SELECT * FROM tblPartyBalanceEmpty
