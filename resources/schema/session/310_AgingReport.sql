-- The ageing of one party, as the last ageing run of this session left it:
-- the sale invoices the party's balance still stands for, with the running
-- balance after each (PartyBalance) and the part of it that is outstanding
-- (TotalDr). Made when the session opens, before the year's tables may
-- exist, so it reads the staging table alone.
CREATE TEMPORARY VIEW AgingReport AS
SELECT PartyCode, PartyName, SrNo, VDate, VoucherType, VoucherNo, InvoiceNo,
       PartyDR, PartyCR, PartyBalance, TotalDr
FROM tblPartyBalanceEmpty
WHERE DBCR = 'AGEING'
