#include "reports/ui/frmPartySearch.h"

#include "accounts/ui/AccountPick.h"
#include "foundation/ui/CommandGate.h"
#include "foundation/Session.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/ScreenServices.h"
#include "reports/LedgerStatements.h"
#include "reports/ui/frmViewReport.h"
#include "vouchers/PartyAgeing.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QGroupBox>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

frmPartySearch::frmPartySearch(QWidget *parent) : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmPartySearch"));
    setTitle(QStringLiteral("LEDGER OF ACCOUNT"));
    cmbPartyName = addComboBox(QStringLiteral("cmbPartyName"), QStringLiteral("PARTY NAME:"));
    mskPartyCode = addMaskedEdit(QStringLiteral("mskPartyCode"), QStringLiteral("PARTY CODE:"), MaskedLineEdit::accountCodeMask());
    mskDateFrom = addMaskedEdit(QStringLiteral("mskDateFrom"), QStringLiteral("DATE FROM:"), MaskedLineEdit::dateMask());
    mskDateTo = addMaskedEdit(QStringLiteral("mskDateTo"), QStringLiteral("DATE TO:"), MaskedLineEdit::dateMask());

    auto *options = new QGroupBox(this);
    options->setObjectName(QStringLiteral("frOptions"));
    auto *box = new QVBoxLayout(options);
    auto *group = new QButtonGroup(this);
    auto option = [&](QRadioButton *&member, const char *name, const char *caption) {
        member = new QRadioButton(QString::fromLatin1(caption), options);
        member->setObjectName(QString::fromLatin1(name));
        group->addButton(member);
        box->addWidget(member);
    };
    option(optLedger, "optLedger", "LEDGER OF ACCOUNT");
    option(optLedgerWithSaleTax, "optLedgerWithSaleTax", "LEDGER WITH SALE TAX");
    option(optAgingReport, "optAgingReport", "AGING REPORT");
    option(optAgeingReportPeriod, "optAgeingReportPeriod", "AGING REPORT 30-90 DAYS");
    optLedger->setChecked(true);
    addRow(QString(), options);

    cmdLedgerOfAccount = addButton(QStringLiteral("cmdLedgerOfAccount"), QStringLiteral("&SHOW"));
    cmdCancel = addButton(QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    packFields();
    cmbPartyName->setMinimumWidth(380);

    m_pick = new AccountPick(cmbPartyName, mskPartyCode, nullptr, this);
    for (QWidget *w : std::initializer_list<QWidget *>{mskDateFrom, mskDateTo})
        EnterToTab::attach(w);

    m_gate = new CommandGate(cmdLedgerOfAccount, [this] { return check(); }, [this] { run(); });
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);

    // The period starts on the first open day and ends today.
    const QDate first = session().firstOpenDate;
    if (first.isValid())
        DateToMaskText(first, mskDateFrom);
    DateToMaskText(session().dateToday(), mskDateTo);
}

void frmPartySearch::onOpened()
{
    loadParties();
}

void frmPartySearch::loadParties()
{
    // Every account but the headings, cash included, so that the cash
    // ledger can be printed; the name starts blank.
    runSafely(this, [this] {
        m_pick->setAccounts(session().db().select(
            QStringLiteral("SELECT PartyName, PartyCode FROM tblPartyInfo WHERE PartyCode NOT LIKE '__-__-000%' "
                           "ORDER BY PartyName")));
        m_pick->clear();
    });
    cmbPartyName->setFocus();
}

bool frmPartySearch::check()
{
    if (!optAgeingReportPeriod->isChecked() && !PartyNameExists(cmbPartyName))
        return false;
    return ValidateDate(mskDateFrom) && ValidateDate(mskDateTo);
}

void frmPartySearch::run()
{
    cmdLedgerOfAccount->setEnabled(false);
    cmbPartyName->setFocus();
    session().periodFrom = mskDateFrom->date();
    session().periodTo = mskDateTo->date();
    const LedgerStatements::Period p{session().periodFrom, session().periodTo, mskDateFrom->maskText(), mskDateTo->maskText()};
    const QString name = cmbPartyName->currentText().trimmed();
    const QString code = mskPartyCode->maskText();

    using namespace LedgerStatements;
    if (optLedger->isChecked()) {
        Reports::showReport(this, ledger(m_voucherWise ? LedgerKind::LedgerVoucherWise : LedgerKind::Ledger, code, name, p));
    } else if (optLedgerWithSaleTax->isChecked()) {
        Reports::showReport(this, ledger(LedgerKind::LedgerWithSaleTax, code, name, p));
    } else if (optAgingReport->isChecked()) {
        SessionConnection &db = session().db();
        const bool ran = runSafely(this, [&] {
            const QDate keepFrom = db.reportFrom(), keepTo = db.reportTo();
            db.setReportPeriod(p.from, p.to);
            try {
                PartyAgeing::runForParty(db, code);
            } catch (...) {
                db.setReportPeriod(keepFrom, keepTo);
                throw;
            }
            db.setReportPeriod(keepFrom, keepTo);
        });
        if (ran) {
            Reports::showReport(this, agingReport(name, p));
            runSafely(this, [&] { PartyAgeing::clearWorkRows(db); });
        }
    } else if (optAgeingReportPeriod->isChecked()) {
        Reports::showReport(this, ageingReportPeriod(name, p));
    }
    cmdLedgerOfAccount->setEnabled(true);
    cmbPartyName->setFocus();
}
