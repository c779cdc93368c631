#include "foundation/ui/MenuTree.h"

const QVector<MenuEntry> &mainMenuTree()
{
    static const QVector<MenuEntry> tree = {
        {0, "mnuAccount", "&ACCOUNT"},
        {1, "mnuPPartyInfo", "CREATE ACCOUNT"},
        {1, "mnuPModifyPartyInfo", "MODIFY ACCOUNT"},
        {1, "mnuEnterVoucher", "ENTER VOUCHER"},
        {2, "mnuPJournalVoucher", "JOURNAL VOUCHER"},
        {2, "mnuPCashPaidVoucher", "CASH PAID VOUCHER"},
        {2, "mnuPCashReceivedVoucher", "CASH RECEIVED VOUCHER"},
        {2, "mnuBankPaidVoucher", "BANK PAID VOUCHER"},
        {2, "mnuBankReceivedVoucher", "BANK RECEIVED VOUCHER"},
        {1, "mnuPModifyJournalVoucher", "MODIFY VOUCHER"},
        {1, "mnuPostDatedCheque", "POST DATED CHEQUE"},
        {1, "mnuModifyPostDatedCheque", "MODIFY POST DATED CHEQUE"},
        {1, "mnuPDebitCreditAccount", "DEBIT/CREDIT ACCOUNT"},
        {1, "mnuPShowDBCRAccounts", "SHOW DB/CR ACCOUNTS"},
        {1, "mnuPChartOfAccount", "CHART OF ACCOUNT"},
        {2, "mnuChartOfAccountByAccount", "ACCOUNT WISE"},
        {2, "mnuChartOfAccountByName", "NAME WISE"},
        {1, "mnuPTrialBalance", "PARTY BALANCES"},
        {2, "mnuPOpeningBalance", "OPENING BALANCE"},
        {2, "mnuPModifyBalance", "MODIFY BALANCE"},

        {0, "mnuPPrintParty", "&VIEW / PRINT REPORTS"},
        {1, "mnuPrintVoucher", "PRINT VOUCHER"},
        {1, "mnuCashAndBanks", "CASH AND BANKS"},
        {2, "mnuCashBookBetweenTwoDates", "CASH BOOK BETWEEN TWO DATES"},
        {2, "mnuCashAndBankUptoDate", "UPTO DATE"},
        {1, "mnuVoucherListing", "VOUCHER LISTING"},
        {1, "mnuRecordTracking", "RECORD TRACKING"},
        {1, "mnuPrintPostDatedCheque", "POST DATED CHEQUE"},
        {1, "mnuPPDebitList", "DEBIT LIST / RECEIVABLE"},
        {1, "mnuPPCreditList", "CREDIT LIST / PAYABALE"},
        {1, "mnuTrialBalance", "TRIAL BALANCE"},
        {1, "mnuPPBalanceSheet", "BALANCE SHEET"},
        {1, "mnuBalanceSheetSingleDate", "BALANCE SHEET SINGLE DATE"},
        {1, "mnuPartyPosition", "PARTY POSITION"},
        {1, "mnuPartyPositionSingleDate", "PARTY POSITION SINGLE DATE"},
        {1, "mnuPPLedgerOfAccount", "LEDGER OF ACCOUNT"},
        {1, "mnuPPLedgerOfAccountVW", "LEDGER OF ACCOUNT VOUCHER WISE"},
        {1, "mnuProfitAndLoss", "PROFIT AND LOSS"},
        {1, "mnuRecoveryReports", "RECOVERY REPORTS"},
        {1, "mnuComparisonReports", "COMPARISON REPORTS"},
        {2, "mnuMonthlyExpenseReport", "MONTHLY EXPENSE REPORT"},
        {2, "mnuMonthlyProfitAndLossReport", "MONTHLY PROFIT AND LOSS REPORT"},
        {1, "mnuAgingReport", "AGING REPORT"},

        {0, "mnuItemCoding", "ITE&M CODING"},
        {1, "mnuEnterItemCoding", "ENTER ITEM CODING"},
        {1, "mnuModifyItemCoding", "MODIFY ITEM CODING"},
        {1, "mnuViewItemCoding", "VIEW ITEM CODING"},

        {0, "mnuPurchaseOrder", "&PURCHASE ORDER"},
        {1, "mnuEnterPurchaseOrder", "ENTER PURCHASE ORDER"},
        {1, "mnuModifyPurchaseOrder", "MODIFY PURCHASE ORDER"},
        {1, "mnuDeletePurchaseOrder", "DELETE PURCHASE ORDER"},
        {1, "mnuViewPurchaseOrder", "VIEW PURCHASE ORDER"},
        {1, "mnuViewPurchaseOrderStatusReport", "VIEW PURCHASE ORDER STATUS REPORT"},

        {0, "mnuDeliveryChallan", "&DELIVERY CHALLAN"},
        {1, "mnuEnterDeliveryChallan", "ENTER DELIVERY CHALLAN"},
        {1, "mnuModifyDeliveryChallan", "MODIFY DELIVERY CHALLAN"},
        {1, "mnuDeleteDeliveryChallan", "DELETE DELIVERY CHALLAN"},
        {1, "mnuViewDeliveryChallan", "VIEW DELIVERY CHALLAN"},
        {1, "mnuViewDeliveryInvoiceStatusReport", "VIEW DELIVERY / INVOICE STATUS REPORT"},
        {1, "mnuViewDeliveryChallanSummary", "VIEW DELIVERY CHALLAN SUMMARY"},

        {0, "mnuInvoice", "&INVOICE"},
        {1, "mnuEnterInvoice", "ENTER INVOICE"},
        {1, "mnuModifyInvoice", "MODIFY INVOICE"},
        {1, "mnuViewPrintInvoice", "VIEW SALE TAX INVOICE"},
        {1, "mnuViewPrintBill", "VIEW BILL"},
        {1, "mnuViewInvoice", "VIEW INVOICE"},
        {1, "mnuViewPrintSaleRegister", "VIEW SALE REGISTER"},
        {1, "mnuViewSaleRegisterSummary", "VIEW SALE REGISTER SUMMARY"},
        {1, "mnuViewPrintClientDetail", "VIEW CLIENT DETAIL"},
        {1, "mnuViewPrintSaleSummary", "VIEW SALE SUMMARY"},
        {1, "mnuBillWisePayment", "BILL WISE PAYMENT"},

        {0, "mnuEmployeeSalary", "&EMPLOYEE SALARY"},
        {1, "mnuPEmployeeMonthlySalary", "EMPLOYEE MONTHLY SALARY"},
        {1, "mnuEModifyMonthlySalary", "MODIFY MONTHLY SALARY"},
        {1, "mnuUEmployeeSalary", "EMPLOYEE SALARY"},
        {1, "mnuPModifyEmployeeSalary", "MODIFY EMPLOYEE SALARY"},
        {1, "mnuEmployeeList", "VIEW EMPLOYEE LIST"},
        {1, "mnuUViewEmployeeSalary", "VIEW EMPLOYEE SALARY"},

        {0, "mnuStock", "&STOCK"},
        {1, "mnuSEnterStock", "ENTER PURCHASE STOCK"},
        {1, "mnuSModifyStock", "MODIFY PURCHASE STOCK"},
        {1, "mnuDeletePurchaseStock", "DELETE PURCHASE STOCK"},
        {1, "mnuEnterClosingStock", "ENTER CLOSING STOCK"},
        {1, "mnuModifyClosingStock", "MODIFY CLOSING STOCK"},
        {1, "mnuDeleteClosingStock", "DELETE CLOSING STOCK"},
        {1, "mnuViewPurchaseRegister", "VIEW PURCHASE REGISTER"},
        {1, "mnuSEnterConsumables", "ENTER CONSUMABLE STOCK"},
        {1, "mnuSModifyConsumables", "MODIFY CONSUMABLE STOCK"},
        {1, "mnuSEmployeeStock", "EMPLOYEE STOCK"},
        {1, "mnuSPrintStock", "VIEW STOCK"},
        {1, "mnuSEmployeeStockFinished", "EMPLOYEE STOCK FINISHED"},
        {1, "mnuSViewEmployeeStock", "VIEW EMPLOYEE STOCK"},

        {0, "mnuOtherServices", "&OTHER SERVICES"},
        {1, "mnuEnterOtherServices", "ENTER OTHER SERVICES"},
        {1, "mnuModifyOtherServices", "MODIFY OTHER SERVICES"},
        {1, "mnuViewOtherServicesRegister", "VIEW OTHER SERVICES REGISTER"},

        {0, "mnuJobCard", "&JOB CARD"},
        {1, "mnuEnterJobCard", "ENTER JOB CARD"},
        {1, "mnuModifyJobCard", "MODIFY JOB CARD"},
        {1, "mnuDeleteJobCard", "DELETE JOB CARD"},
        {1, "mnuViewJobCard", "VIEW JOB CARD"},

        {0, "mnuTitle", "&TITLE"},
        {1, "mnuAddTitleName", "ADD TITLE NAME"},
        {1, "mnuTitleName", "TITLE NAME"},
        {1, "mnuLetterhead", "LETTERHEAD"},
        {1, "mnuCareOf", "CARE OF"},

        {0, "mnuUtilities", "&UTILITIES"},
        {1, "mnuUBackUp", "BACK UP"},
        {1, "mnuURestore", "RESTORE"},
        {1, "mnuUNewUser", "CREATE NEW USER"},
        {1, "mnuUChangePassword", "CHANGE PASSWORD"},
        {1, "mnuUUpdateUser", "UPDATE USER"},
        {1, "mnuUUserList", "USER LIST"},
        {1, "mnuUClosingDate", "CLOSING DATE"},
        {1, "mnuUCheckBooks", "CHECK BOOKS"},
        {1, "mnuUEditLog", "EDIT LOG"},
        {1, "mnuEndYearProcessing", "END YEAR PROCESSING"},

        {0, "mnuAbout", "A&BOUT"},
        {1, "mnuATessel", "TESSEL"},
    };
    return tree;
}

const QVector<PanelEntry> &sidePanelEntries()
{
    static const QVector<PanelEntry> panel = {
        {"lblAccounts", "ACCOUNTS", "mnuPPartyInfo"},
        {"lblCashBook", "CASH BOOK", "mnuCashBookBetweenTwoDates"},
        {"lblCashPaid", "CASH PAID", "mnuPCashPaidVoucher"},
        {"lblCashReceived", "CASH RECEIVED", "mnuPCashReceivedVoucher"},
        {"lblInvoice", "INVOICE", "mnuViewPrintInvoice"},
        {"lblLedgerOfAccount", "LEDGER", "mnuPPLedgerOfAccount"},
        {"lblPayable", "PAYABLE", "mnuPPCreditList"},
        {"lblReceivable", "RECEIVABLE", "mnuPPDebitList"},
        {"lblPO", "PURCHASE ORDER", "mnuViewPurchaseOrder"},
        {"lblSale", "SALE", "mnuEnterInvoice"},
        {"lblSaleRegister", "SALE REGISTER", "mnuViewPrintSaleRegister"},
        {"lblPassword", "PASSWORD", "mnuUChangePassword"},
        {"lblDC", "DELIVERY CHALLAN", "mnuViewDeliveryChallan"},
        {"lblSummary", "SUMMARY", "mnuViewPrintSaleSummary"},
        {"lblHelp", "HELP", "mnuATessel"},
    };
    return panel;
}

const QVector<ScreenButtonEntry> &screenButtonEntries()
{
    static const QVector<ScreenButtonEntry> buttons = {
        {"cmdAddParty", "mnuPPartyInfo"},
        {"cmdAddCompany", "mnuPPartyInfo"},
        {"cmdAddItem", "mnuEnterItemCoding"},
    };
    return buttons;
}
