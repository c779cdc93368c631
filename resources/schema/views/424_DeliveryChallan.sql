-- The lines of the delivery challans, with the party's address.
CREATE VIEW DeliveryChallan AS
SELECT c.SrNo, c.RecordNo, c.DeliveryChallanNo, c.VDate, c.PartyCode, c.PartyName, p.PartyAddress,
       c.Description, c.PONo, c.Quantity, c.Type, c.DemandNo, c.GateEntryNo, c.TitleName, c.CTN
FROM tblDeliveryChallan c
LEFT JOIN tblPartyInfo p ON p.PartyCode = c.PartyCode
