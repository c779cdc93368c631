-- The order book: per order line the quantity ordered and the quantity the
-- challans delivered against it (same title, party, the party's order
-- number, item and demand number). When an order has the same item and
-- demand number on two lines, the first carries the deliveries. Challan
-- lines that match no order line follow with nothing ordered, so that the
-- deliveries here always add up to the challans.
CREATE VIEW PoDcStatus AS
SELECT o.SrNo, o.TitleName, o.PONo, o.VDate AS PODate, o.PartyCode, o.PartyName, o.PartyPONo, o.Description,
       o.DemandNo, o.Type, o.JobNo,
       o.Quantity AS OrderedQuantity,
       COALESCE(c.Delivered, 0) AS DeliveredQuantity,
       o.Quantity - COALESCE(c.Delivered, 0) AS BalanceQuantity,
       COALESCE(c.Challans, 0) AS Challans,
       c.LastDcDate AS LastDcDate
FROM (SELECT p.*,
             (SELECT MIN(f.SrNo) FROM tblPurchaseOrder f
              WHERE f.TitleName = p.TitleName AND f.PartyCode = p.PartyCode AND f.PartyPONo = p.PartyPONo
                AND f.Description = p.Description AND COALESCE(f.DemandNo, '') = COALESCE(p.DemandNo, '')) AS FirstSrNo
      FROM tblPurchaseOrder p) o
LEFT JOIN (SELECT TitleName, PartyCode, PONo, Description, COALESCE(DemandNo, '') AS DemandNo,
                  SUM(Quantity) AS Delivered, COUNT(DISTINCT DeliveryChallanNo) AS Challans, MAX(VDate) AS LastDcDate
           FROM tblDeliveryChallan
           GROUP BY TitleName, PartyCode, PONo, Description, COALESCE(DemandNo, '')) c
  ON c.TitleName = o.TitleName AND c.PartyCode = o.PartyCode AND c.PONo = o.PartyPONo
 AND c.Description = o.Description AND c.DemandNo = COALESCE(o.DemandNo, '') AND o.SrNo = o.FirstSrNo
UNION ALL
SELECT NULL, d.TitleName, NULL, MIN(d.VDate), d.PartyCode, MIN(d.PartyName), d.PONo, d.Description,
       COALESCE(d.DemandNo, ''), MIN(d.Type), NULL,
       0, SUM(d.Quantity), 0 - SUM(d.Quantity), COUNT(DISTINCT d.DeliveryChallanNo), MAX(d.VDate)
FROM tblDeliveryChallan d
WHERE NOT EXISTS (SELECT 1 FROM tblPurchaseOrder p
                  WHERE p.TitleName = d.TitleName AND p.PartyCode = d.PartyCode AND p.PartyPONo = d.PONo
                    AND p.Description = d.Description AND COALESCE(p.DemandNo, '') = COALESCE(d.DemandNo, ''))
GROUP BY d.TitleName, d.PartyCode, d.PONo, d.Description, COALESCE(d.DemandNo, '')
