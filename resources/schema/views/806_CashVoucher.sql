-- The cash book of the report period: the ledger of CASH IN HAND
-- ("19-10-001"), its balance brought forward, the receipts (debits) and
-- payments (credits) of each day, and its closing balance. In the order
-- LineKind, VDate, SrNo the running sum of PartyBalance is the cash in
-- hand after each line.
CREATE VIEW CashVoucher AS
SELECT PartyCode, PartyName, LineKind, SrNo, VoucherType, VoucherNo, VDate, InvoiceNo, PartyDesc,
       PartyDR, PartyCR, PartyBalance, ClosingBalance, SDate, EDate
FROM Ledger
WHERE PartyCode = '19-10-001'
