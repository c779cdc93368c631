-- Every post-dated cheque, whatever its status: the printed cheque list.
CREATE VIEW PostDatedCheque AS
SELECT VoucherType, VoucherNo, VDate, ChequeDate, ChequeNo, ChequeKind, PartyCode, PartyName, Description, Amount,
       BankCode, BankName, Status, CareOf, ClearedType, ClearedNo, ClearedDate, BouncedNo, BouncedDate, UserName,
       EntryDate
FROM tblPostDatedCheque
