-- The edit log as the viewer and its printout read it: who changed what,
-- when, on which document, with the values before and after; the rows
-- logged within the report period. DocumentType names the document a row
-- belongs to: the ledger rows of an invoice's sale voucher (SV, under the
-- invoice's number and title) belong to the invoice.
CREATE VIEW EditLog AS
SELECT LogNo, LoggedAt, SUBSTR(LoggedAt, 12, 8) AS LogTime, LogDate, UserName, Workstation, Change, TableName, What, RowKey, DocType, DocNo, DocDate,
       DocTitle, ValuesBefore, ValuesAfter,
       CASE WHEN DocType = 'SV' THEN 'INVOICE' ELSE DocType END AS DocumentType
FROM tblEditLog
WHERE LogDate >= COALESCE(ReportSDate(), (SELECT SDate FROM tblTLClientInfo))
  AND LogDate <= COALESCE(ReportEDate(), (SELECT EDate FROM tblTLClientInfo))
