-- The lines of the posted vouchers, with the printed name of each type.
CREATE VIEW SingleVoucher AS
SELECT SrNo, VoucherType,
       CASE VoucherType
           WHEN 'CP' THEN 'CASH PAYMENT VOUCHER'
           WHEN 'CR' THEN 'CASH RECEIPT VOUCHER'
           WHEN 'BP' THEN 'BANK PAYMENT VOUCHER'
           WHEN 'BR' THEN 'BANK RECEIPT VOUCHER'
           WHEN 'JV' THEN 'JOURNAL VOUCHER'
           WHEN 'BC' THEN 'BOUNCED CHEQUE VOUCHER'
           WHEN 'SV' THEN 'SALE VOUCHER'
           WHEN 'PS' THEN 'PURCHASE STOCK VOUCHER'
           WHEN 'CS' THEN 'CLOSING STOCK VOUCHER'
           WHEN 'OS' THEN 'OTHER SERVICES VOUCHER'
           ELSE 'VOUCHER'
       END AS VoucherTitle,
       VoucherNo, VDate, InvoiceNo, PartyCode, PartyName, PartyDesc, PartyDR, PartyCR, PartyBalance,
       CareOf, UserName, EntryDate
FROM tblPartyBalance
