-- Delivered against invoiced, per challan line: the quantity invoiced is
-- what the invoice lines of the challan (same title, party and challan
-- number) carry for the item. When a challan has the same item on two
-- lines, the first of them carries the invoiced quantity, so that nothing
-- is counted twice.
CREATE VIEW DcInvoiceStatus AS
SELECT d.SrNo, d.VDate AS DcDate, d.DeliveryChallanNo, d.TitleName, d.PartyCode, d.PartyName, d.PONo,
       d.Description, d.DemandNo, d.Type, d.GateEntryNo,
       d.Quantity AS DeliveredQuantity,
       COALESCE(v.Invoiced, 0) AS InvoicedQuantity,
       d.Quantity - COALESCE(v.Invoiced, 0) AS BalanceQuantity,
       v.InvoiceNo AS InvoiceNo,
       v.InvoiceDate AS InvoiceDate
FROM (SELECT c.*,
             (SELECT MIN(f.SrNo) FROM tblDeliveryChallan f
              WHERE f.TitleName = c.TitleName AND f.DeliveryChallanNo = c.DeliveryChallanNo
                AND f.PartyCode = c.PartyCode AND f.Description = c.Description) AS FirstSrNo
      FROM tblDeliveryChallan c) d
LEFT JOIN (SELECT TitleName, PartyCode, TRIM(ChallanNo) AS ChallanNo, Description, SUM(Quantity) AS Invoiced,
                  MIN(InvoiceNo) AS InvoiceNo, MIN(InvoiceDate) AS InvoiceDate
           FROM tblInvoice
           WHERE ChallanNo IS NOT NULL AND TRIM(ChallanNo) <> ''
           GROUP BY TitleName, PartyCode, TRIM(ChallanNo), Description) v
  ON v.TitleName = d.TitleName AND v.PartyCode = d.PartyCode
 AND v.ChallanNo = CAST(d.DeliveryChallanNo AS TEXT) AND v.Description = d.Description
 AND d.SrNo = d.FirstSrNo
