-- The chart of accounts, headings included.
CREATE VIEW ChartOfAccount AS
SELECT PartyCode, PartyName, PartyAddress, PartyPhone, PartyFax, PartyEmail, PartyDesc,
       PartySaleTaxNo, PartyNTN, CareOf, DueDays
FROM tblPartyInfo
