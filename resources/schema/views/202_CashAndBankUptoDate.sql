-- Postings of the cash and bank accounts (19-10-001 to 19-10-999) up to
-- the end of this session's report period.
CREATE VIEW CashAndBankUptoDate AS
SELECT SrNo, PartyCode, PartyName, VoucherType, VoucherNo, VDate, InvoiceNo, PartyDesc,
       PartyDR, PartyCR, PartyBalance,
       COALESCE(ReportEDate(), (SELECT MAX(EDate) FROM tblTLClientInfo)) AS UptoDate
FROM tblPartyBalance
WHERE PartyCode >= '19-10-001' AND PartyCode <= '19-10-999'
  AND VDate <= COALESCE(ReportEDate(), (SELECT MAX(EDate) FROM tblTLClientInfo))
