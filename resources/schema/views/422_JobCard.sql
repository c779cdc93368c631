-- A job card as its sheet prints it: the card's head on every row, and one
-- row for each field of the press, in the order of the card.
CREATE VIEW JobCard AS
SELECT JobCardNo, PartyPoNo, PartyName, PartyCode, VDate, IssueDate, PoDate, Quantity AS CardQuantity, UserName,
       1 AS SortNo, 'JOB DETAIL' AS Particular, JobDetail AS Detail FROM tblJobCard
UNION ALL
SELECT JobCardNo, PartyPoNo, PartyName, PartyCode, VDate, IssueDate, PoDate, Quantity AS CardQuantity, UserName,
       2 AS SortNo, 'PAPER/BOARD' AS Particular, Paper AS Detail FROM tblJobCard
UNION ALL
SELECT JobCardNo, PartyPoNo, PartyName, PartyCode, VDate, IssueDate, PoDate, Quantity AS CardQuantity, UserName,
       3 AS SortNo, 'PAPER SIZE' AS Particular, PaperSize AS Detail FROM tblJobCard
UNION ALL
SELECT JobCardNo, PartyPoNo, PartyName, PartyCode, VDate, IssueDate, PoDate, Quantity AS CardQuantity, UserName,
       4 AS SortNo, 'QUANTITY' AS Particular, Quantity AS Detail FROM tblJobCard
UNION ALL
SELECT JobCardNo, PartyPoNo, PartyName, PartyCode, VDate, IssueDate, PoDate, Quantity AS CardQuantity, UserName,
       5 AS SortNo, 'CUTTING SIZE' AS Particular, CuttingSize AS Detail FROM tblJobCard
UNION ALL
SELECT JobCardNo, PartyPoNo, PartyName, PartyCode, VDate, IssueDate, PoDate, Quantity AS CardQuantity, UserName,
       6 AS SortNo, 'PRINTING' AS Particular, Printing AS Detail FROM tblJobCard
UNION ALL
SELECT JobCardNo, PartyPoNo, PartyName, PartyCode, VDate, IssueDate, PoDate, Quantity AS CardQuantity, UserName,
       7 AS SortNo, 'MACHINE' AS Particular, Machine AS Detail FROM tblJobCard
UNION ALL
SELECT JobCardNo, PartyPoNo, PartyName, PartyCode, VDate, IssueDate, PoDate, Quantity AS CardQuantity, UserName,
       8 AS SortNo, 'DESIGN' AS Particular, Design AS Detail FROM tblJobCard
UNION ALL
SELECT JobCardNo, PartyPoNo, PartyName, PartyCode, VDate, IssueDate, PoDate, Quantity AS CardQuantity, UserName,
       9 AS SortNo, 'POSITIVE' AS Particular, Positive AS Detail FROM tblJobCard
UNION ALL
SELECT JobCardNo, PartyPoNo, PartyName, PartyCode, VDate, IssueDate, PoDate, Quantity AS CardQuantity, UserName,
       10 AS SortNo, 'PLATE' AS Particular, Plate AS Detail FROM tblJobCard
UNION ALL
SELECT JobCardNo, PartyPoNo, PartyName, PartyCode, VDate, IssueDate, PoDate, Quantity AS CardQuantity, UserName,
       11 AS SortNo, 'DIE' AS Particular, Die AS Detail FROM tblJobCard
UNION ALL
SELECT JobCardNo, PartyPoNo, PartyName, PartyCode, VDate, IssueDate, PoDate, Quantity AS CardQuantity, UserName,
       12 AS SortNo, 'BLEACH' AS Particular, Bleach AS Detail FROM tblJobCard
UNION ALL
SELECT JobCardNo, PartyPoNo, PartyName, PartyCode, VDate, IssueDate, PoDate, Quantity AS CardQuantity, UserName,
       13 AS SortNo, 'LAMINATION' AS Particular, Lamination AS Detail FROM tblJobCard
UNION ALL
SELECT JobCardNo, PartyPoNo, PartyName, PartyCode, VDate, IssueDate, PoDate, Quantity AS CardQuantity, UserName,
       14 AS SortNo, 'OTHER PROCESS' AS Particular, Other AS Detail FROM tblJobCard
UNION ALL
SELECT JobCardNo, PartyPoNo, PartyName, PartyCode, VDate, IssueDate, PoDate, Quantity AS CardQuantity, UserName,
       15 AS SortNo, 'STATUS' AS Particular, Status AS Detail FROM tblJobCard
