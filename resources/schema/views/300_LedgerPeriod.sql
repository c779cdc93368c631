-- The report period of this session: the dates the report screen set for
-- it, or else the dates kept in the company row. One row, always.
CREATE VIEW LedgerPeriod AS
SELECT COALESCE(ReportSDate(), (SELECT MIN(SDate) FROM tblTLClientInfo)) AS SDate,
       COALESCE(ReportEDate(), (SELECT MAX(EDate) FROM tblTLClientInfo)) AS EDate
