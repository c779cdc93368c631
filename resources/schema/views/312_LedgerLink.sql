-- The ledger under a balance line of the statements: the same lines as the
-- ledger, so that the account's balance at the end of its lines is the
-- figure of the line it stands under.
CREATE VIEW LedgerLink AS
SELECT * FROM Ledger
