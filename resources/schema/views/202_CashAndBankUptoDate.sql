-- Postings of the cash and bank accounts (the 19-.. group: cash in hand
-- 19-10-001 and the bank accounts after it, headings left out) up to the
-- end of this session's report period.
CREATE VIEW CashAndBankUptoDate AS
SELECT SrNo, PartyCode, PartyName, VoucherType, VoucherNo, VDate, InvoiceNo, PartyDesc,
       PartyDR, PartyCR, PartyBalance,
       COALESCE(ReportEDate(), (SELECT MAX(EDate) FROM tblTLClientInfo)) AS UptoDate
FROM tblPartyBalance
WHERE PartyCode >= '19-10-001' AND PartyCode <= '19-99-999' AND PartyCode NOT LIKE '__-__-000%'
  AND VDate <= COALESCE(ReportEDate(), (SELECT MAX(EDate) FROM tblTLClientInfo))
