-- One line a purchase voucher: the bill with its supplier and purchase
-- account, the goods of its lines, and the sales tax, freight and net
-- amount as its ledger rows carry them, so that the register adds up to
-- the "PS" rows of the period.
CREATE VIEW PurchaseRegister AS
SELECT s.VoucherType AS VoucherType,
       s.VoucherNo AS VoucherNo,
       s.VDate AS VDate,
       s.BillNo AS BillNo,
       s.PartyName AS PartyName,
       s.PurchaseName AS PurchaseName,
       s.Lines AS Lines,
       s.Amount AS Amount,
       s.SaleTax AS SaleTax,
       COALESCE(l.Goods, 0) - s.Amount AS SaleTaxAmount,
       COALESCE(l.Freight, 0) AS Freight,
       COALESCE(l.NetAmount, 0) AS NetAmount
FROM (SELECT VoucherType, VoucherNo, MIN(VDate) AS VDate, MIN(BillNo) AS BillNo, MIN(PartyName) AS PartyName,
             MIN(PurchaseName) AS PurchaseName, COUNT(*) AS Lines, SUM(Amount) AS Amount, MAX(SaleTax) AS SaleTax
      FROM tblPurchaseStock
      GROUP BY VoucherType, VoucherNo) s
LEFT JOIN (SELECT VoucherType, VoucherNo,
                  SUM(CASE WHEN PartyDR = 0 AND PartyDesc LIKE 'PURCHASE%' THEN PartyCR ELSE 0 END) AS Goods,
                  SUM(CASE WHEN PartyDR = 0 AND PartyDesc LIKE 'FREIGHT%' THEN PartyCR ELSE 0 END) AS Freight,
                  SUM(PartyDR) AS NetAmount
           FROM tblPartyBalance
           WHERE VoucherType = 'PS'
           GROUP BY VoucherType, VoucherNo) l
  ON l.VoucherType = s.VoucherType AND l.VoucherNo = s.VoucherNo
