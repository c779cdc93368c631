-- The twelve months of the last comparison this session staged, with the
-- year's total of each row.
CREATE TEMPORARY VIEW MonthlyComparisonReport AS
SELECT PartyCode, PartyName, January, February, March, April, May, June, July, August,
       September, October, November, December,
       January + February + March + April + May + June + July + August + September + October
           + November + December AS YearTotal
FROM tblMonthlyComparisonReportEmpty
