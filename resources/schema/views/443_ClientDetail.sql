-- Every invoice line of a client, with the order and challan it came from.
CREATE VIEW ClientDetail AS
SELECT SrNo, TitleName, InvoiceNo, InvoiceDate, PartyCode, PartyName, TermsOfSale, Description, PONo, ChallanNo,
       Quantity, Type, Rate, Price, RateOfSaleTax, SaleTaxPayable,
       ValueIncludingTax - Price - SaleTaxPayable AS OtherTax, ValueIncludingTax, COALESCE(Status, '') AS Status
FROM tblInvoice
