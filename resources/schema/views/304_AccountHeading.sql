-- Each account with the two headings it stands under, its group
-- ("NN-NN-000") and its main heading ("NN-00-000"), and its contact.
CREATE VIEW AccountHeading AS
SELECT a.PartyCode AS PartyCode,
       a.PartyName AS PartyName,
       SUBSTR(a.PartyCode, 1, 6) || '000' AS GroupCode,
       COALESCE(g.PartyName, '') AS GroupName,
       SUBSTR(a.PartyCode, 1, 3) || '00-000' AS HeadCode,
       COALESCE(h.PartyName, '') AS HeadName,
       COALESCE(a.PartyAddress, '') AS PartyAddress,
       COALESCE(a.PartyPhone, '') AS PartyPhone,
       COALESCE(a.CareOf, '') AS CareOf
FROM tblPartyInfo a
LEFT JOIN tblPartyInfo g ON g.PartyCode = CAST(SUBSTR(a.PartyCode, 1, 6) || '000' AS CHAR(9))
LEFT JOIN tblPartyInfo h ON h.PartyCode = CAST(SUBSTR(a.PartyCode, 1, 3) || '00-000' AS CHAR(9))
