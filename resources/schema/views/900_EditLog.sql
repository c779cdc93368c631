-- The edit log as the viewer and its printout read it: who changed what,
-- when, on which document, with the values before and after; the rows
-- logged within the report period.
CREATE VIEW EditLog AS
SELECT LogNo, LoggedAt, SUBSTR(LoggedAt, 12, 8) AS LogTime, LogDate, UserName, Workstation, Change, TableName, What, RowKey, DocType, DocNo, DocDate,
       DocTitle, ValuesBefore, ValuesAfter
FROM tblEditLog
WHERE LogDate >= COALESCE(ReportSDate(), (SELECT SDate FROM tblTLClientInfo))
  AND LogDate <= COALESCE(ReportEDate(), (SELECT EDate FROM tblTLClientInfo))
