#include "admin/UserRights.h"

#include "foundation/Logon.h"
#include "foundation/SessionConnection.h"

namespace UserRights {

const QStringList &boxNames()
{
    static const QStringList names = {
        QStringLiteral("mnuAccount"), QStringLiteral("mnuAddTitleName"), QStringLiteral("mnuCashAndBankUptoDate"),
        QStringLiteral("mnuCashAndBanks"), QStringLiteral("mnuCashBookBetweenTwoDates"),
        QStringLiteral("mnuChartOfAccountByAccount"), QStringLiteral("mnuChartOfAccountByName"),
        QStringLiteral("mnuComparisonReports"), QStringLiteral("mnuDeleteDeliveryChallan"),
        QStringLiteral("mnuDeletePurchaseOrder"), QStringLiteral("mnuDeliveryChallan"),
        QStringLiteral("mnuEModifyMonthlySalary"), QStringLiteral("mnuEmployeeSalary"),
        QStringLiteral("mnuEndYearProcessing"), QStringLiteral("mnuEnterDeliveryChallan"),
        QStringLiteral("mnuEnterInvoice"), QStringLiteral("mnuEnterItemCoding"), QStringLiteral("mnuEnterOtherServices"),
        QStringLiteral("mnuEnterPurchaseOrder"), QStringLiteral("mnuEnterVoucher"), QStringLiteral("mnuInvoice"),
        QStringLiteral("mnuItemCoding"), QStringLiteral("mnuModifyDeliveryChallan"), QStringLiteral("mnuModifyInvoice"),
        QStringLiteral("mnuModifyItemCoding"), QStringLiteral("mnuModifyOtherServices"),
        QStringLiteral("mnuModifyPostDatedCheque"), QStringLiteral("mnuModifyPurchaseOrder"),
        QStringLiteral("mnuMonthlyExpenseReport"), QStringLiteral("mnuMonthlyProfitAndLossReport"),
        QStringLiteral("mnuOtherServices"), QStringLiteral("mnuPBankPaidVoucher"),
        QStringLiteral("mnuPBankReceivedVoucher"), QStringLiteral("mnuPCashPaidVoucher"),
        QStringLiteral("mnuPCashReceivedVoucher"), QStringLiteral("mnuPChartOfAccount"),
        QStringLiteral("mnuPDebitCreditAccount"), QStringLiteral("mnuPEmployeeMonthlySalary"),
        QStringLiteral("mnuPJournalVoucher"), QStringLiteral("mnuPModifyBalance"),
        QStringLiteral("mnuPModifyEmployeeSalary"), QStringLiteral("mnuPModifyJournalVoucher"),
        QStringLiteral("mnuPModifyPartyInfo"), QStringLiteral("mnuPOpeningBalance"), QStringLiteral("mnuPPBalanceSheet"),
        QStringLiteral("mnuPPCreditList"), QStringLiteral("mnuPPDebitList"), QStringLiteral("mnuPPLedgerOfAccount"),
        QStringLiteral("mnuPPartyInfo"), QStringLiteral("mnuPPrintParty"), QStringLiteral("mnuPShowDBCRAccounts"),
        QStringLiteral("mnuPTrialBalance"), QStringLiteral("mnuPartyPosition"),
        QStringLiteral("mnuPartyPositionSingleDate"), QStringLiteral("mnuPostDatedCheque"),
        QStringLiteral("mnuPrintPostDatedCheque"), QStringLiteral("mnuPrintStockRequest"),
        QStringLiteral("mnuPrintVoucher"), QStringLiteral("mnuProfitAndLoss"), QStringLiteral("mnuPurchaseOrder"),
        QStringLiteral("mnuRecordTracking"), QStringLiteral("mnuRecoveryReports"), QStringLiteral("mnuSEmployeeStock"),
        QStringLiteral("mnuSEmployeeStockFinished"), QStringLiteral("mnuSEnter"), QStringLiteral("mnuSModifyStock"),
        QStringLiteral("mnuSPrintStock"), QStringLiteral("mnuSViewEmployeeStock"), QStringLiteral("mnuStock"),
        QStringLiteral("mnuTitle"), QStringLiteral("mnuTitleName"), QStringLiteral("mnuTrialBalance"),
        QStringLiteral("mnuUBackUp"), QStringLiteral("mnuUChangePassword"), QStringLiteral("mnuUCheckBooks"),
        QStringLiteral("mnuUClosingDate"), QStringLiteral("mnuUEditLog"), QStringLiteral("mnuUEmployeeSalary"), QStringLiteral("mnuUNewUser"), QStringLiteral("mnuURestore"),
        QStringLiteral("mnuUUpdateUser"), QStringLiteral("mnuUViewEmployeeSalary"), QStringLiteral("mnuUtilities"),
        QStringLiteral("mnuViewDeliveryChallan"), QStringLiteral("mnuViewInvoice"), QStringLiteral("mnuViewItemCoding"),
        QStringLiteral("mnuViewOtherServicesRegister"), QStringLiteral("mnuViewPrintBill"),
        QStringLiteral("mnuViewPrintClientDetail"), QStringLiteral("mnuViewPrintInvoice"),
        QStringLiteral("mnuViewPrintSaleSummary"), QStringLiteral("mnuViewPurchaseOrder"),
        QStringLiteral("mnuViewPurchaseOrderStatusReport"), QStringLiteral("mnuVoucherListing"),
    };
    return names;
}

QStringList switchedOff(SessionConnection &db, const QString &userName)
{
    return Logon::disabledMenus(db, userName.trimmed());
}

QString menuText(const QStringList &off)
{
    QStringList kept;
    for (const QString &name : boxNames())
        if (off.contains(name))
            kept << name;
    return kept.join(QLatin1Char(','));
}

Outcome save(SessionConnection &db, const UserAccounts::Actor &by, const QString &userName, const QStringList &off)
{
    if (!by.isAdministrator())
        return Outcome::refusal(UserAccounts::Msg::administratorsOnly());
    const QString user = userName.trimmed();
    Transaction tx(db);
    if (user.isEmpty() || !UserAccounts::find(db, user))
        return Outcome::refusal(UserAccounts::Msg::invalidUser());
    db.execute(QStringLiteral("DELETE FROM tblUserRights WHERE USERNAME = ?"), {user});
    db.execute(QStringLiteral("INSERT INTO tblUserRights (USERNAME, Menu) VALUES (?, ?)"), {user, menuText(off)});
    tx.commit();
    return Outcome::success(Msg::updated());
}

} // namespace UserRights
