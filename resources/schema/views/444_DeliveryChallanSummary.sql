-- The lines of the delivery challans of every title, with the order they
-- went against.
CREATE VIEW DeliveryChallanSummary AS
SELECT SrNo, RecordNo, DeliveryChallanNo, VDate, TitleName, PartyCode, PartyName, PONo, Description, DemandNo,
       Quantity, Type, CTN, GateEntryNo
FROM tblDeliveryChallan
