-- Every posting, with its voucher's printed type and who entered it when:
-- the voucher listings and the record-tracking audit list.
CREATE VIEW VoucherListing AS
SELECT SrNo, VoucherType, VoucherTitle, VoucherNo, VDate, InvoiceNo, PartyCode, PartyName, PartyDesc,
       PartyDR, PartyCR, PartyBalance, CareOf, UserName, EntryDate
FROM SingleVoucher
