-- Other services with their margin: the register of services resold.
CREATE VIEW OtherServices AS
SELECT VoucherType, VoucherNo, InvoiceNo, ServiceDate, PartyCode, PartyName, Service, ServiceAmount, SupplierCode,
       SupplierName, SupplierAmount, ServiceAmount - SupplierAmount AS Margin, CareOf, UserName, Remarks, EntryDate
FROM tblOtherServices
