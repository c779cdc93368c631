-- The invoice lines as a sales-tax invoice prints them: the value before
-- tax, the sale tax, the further tax and the CED of each line in whole
-- money, adding up to the line's value with tax exactly. The further tax
-- is the price times its rate over 100, rounded half to even as the
-- invoice worked it out (FurtherTaxN: the price times the rate in
-- millionths, a whole number); the CED is what the stored value with tax
-- leaves, so the four always make the value the ledger took. OtherTax is
-- the further tax and CED together.
CREATE VIEW SaleTaxInvoice AS
SELECT t.*,
       t.ValueIncludingTax - t.Price - t.SaleTaxPayable - t.FurtherTaxAmount AS CedAmount,
       t.ValueIncludingTax - t.Price - t.SaleTaxPayable AS OtherTax
FROM (SELECT n.*,
             n.FurtherTaxN / 100000000
                 + CASE WHEN (n.FurtherTaxN % 100000000) * 2 > 100000000 THEN 1
                        WHEN (n.FurtherTaxN % 100000000) * 2 = 100000000 THEN (n.FurtherTaxN / 100000000) % 2
                        ELSE 0 END AS FurtherTaxAmount
      FROM (SELECT l.*,
                   CAST(ROUND(l.Price) AS BIGINT) * CAST(ROUND(COALESCE(l.FurtherTax, 0) * 1000000) AS BIGINT)
                       AS FurtherTaxN
            FROM InvoiceLine l) n) t
