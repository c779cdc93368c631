-- The lines of the purchase orders, with the party's address and each
-- line's amount at its sale price.
CREATE VIEW PurchaseOrder AS
SELECT o.SrNo, o.RecordNo, o.PONo, o.PartyPONo, o.VDate, o.PartyCode, o.PartyName, p.PartyAddress,
       o.Description, o.Quantity, o.Type, o.UnitPrice, ROUND(o.Quantity * o.UnitPrice, 2) AS Amount,
       o.DemandNo, o.JobNo, o.TitleName
FROM tblPurchaseOrder o
LEFT JOIN tblPartyInfo p ON p.PartyCode = o.PartyCode
