-- The consumables received, a receipt a row, with what is issued and left
-- of it, and their values at the receipt's price.
CREATE VIEW Stock AS
SELECT SrNo, Item, BrandName, Type, PartyCode, PartyName, VDate, Units, Issue, Units - Issue AS InHand,
       UnitPrice, ROUND(Units * UnitPrice, 2) AS Amount, ROUND((Units - Issue) * UnitPrice, 2) AS InHandValue
FROM tblStock
