-- The lines of the monthly salary sheets.
CREATE VIEW EmployeeSalary AS
SELECT SrNo, VoucherType, VoucherNo, VDate, EmployeeCode, EmployeeName, EmployeeSalary, OverTime, Holidays,
       OverDays, OTAmount, TotalSalary, Advance, Balance, UserName, EntryDate
FROM tblEmployeeSalary
