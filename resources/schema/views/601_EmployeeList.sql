-- The employee register.
CREATE VIEW EmployeeList AS
SELECT SrNo, EmployeeCode, EmployeeName, Salary, InDate, IncrementDate, Status
FROM tblEmployeeInfo
