-- What is in hand of each item, brand and type, valued at the prices of the
-- receipts it is left on.
CREATE VIEW StockInHand AS
SELECT Item, BrandName, Type, SUM(Units) AS Received, SUM(Issue) AS Issued, SUM(Units - Issue) AS InHand,
       SUM(ROUND((Units - Issue) * UnitPrice, 2)) AS InHandValue
FROM tblStock
GROUP BY Item, BrandName, Type
