#include "sales/ui/frmSalesReports.h"

#include "accounts/ui/AccountPick.h"
#include "foundation/Session.h"
#include "foundation/ui/CommandGate.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/ScreenBuild.h"
#include "foundation/ui/ScreenServices.h"
#include "reports/ui/frmViewReport.h"

#include <QApplication>
#include <QButtonGroup>
#include <QComboBox>
#include <QFrame>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

using namespace SalesReports;

namespace {

// The option buttons of a report screen, one under the other in a frame.
class OptionFrame
{
public:
    explicit OptionFrame(QWidget *screen)
        : m_frame(ScreenBuild::frame(screen, QStringLiteral("frOptions"), true)), m_layout(new QVBoxLayout(m_frame))
    {
    }
    QRadioButton *add(const char *name, const char *caption)
    {
        QRadioButton *b = ScreenBuild::option(m_frame, QString::fromLatin1(name), QString::fromLatin1(caption));
        m_layout->addWidget(b);
        return b;
    }
    QFrame *frame() const { return m_frame; }

private:
    QFrame *m_frame;
    QVBoxLayout *m_layout;
};

// The party name and code fields with their shared pick.
AccountPick *addPartyFields(BaseScreen *screen, QComboBox *&name, MaskedLineEdit *&code)
{
    name = screen->addComboBox(QStringLiteral("cmbPartyName"), QStringLiteral("PARTY NAME:"));
    code = screen->addMaskedEdit(QStringLiteral("mskPartyCode"), QStringLiteral("PARTY CODE:"),
                                 MaskedLineEdit::accountCodeMask());
    name->setMinimumWidth(380);
    return new AccountPick(name, code, nullptr, screen);
}

// The request when the rule passed; its refusal shown otherwise.
std::optional<Reports::ReportRequest> take(BaseScreen *screen, const Built &b)
{
    if (!b) {
        screen->refuse(b.outcome);
        return std::nullopt;
    }
    return b.request;
}

QString workingTitle()
{
    return session().currentTitle;
}

} // namespace

// ---------------------------------------------------------------- SALE REGISTER

frmSaleRegister::frmSaleRegister(QWidget *parent)
    : PeriodReportScreen(parent, "frmSaleRegister", QStringLiteral("SALE REGISTER"))
{
    setWindowTitle(QStringLiteral("SALE REGISTER"));
    addPeriodFields();
    m_pick = addPartyFields(this, cmbPartyName, mskPartyCode);
    OptionFrame options(this);
    optSaleRegister = options.add("optSaleRegister", "SALE REGISTER ALL PARTIES");
    optSaleRegisterAllTitle = options.add("optSaleRegisterAllTitle", "SALE REGISTER ALL TITLE");
    optSaleRegisterSingleParty = options.add("optSaleRegisterSingleParty", "SALE REGISTER SINGLE PARTY");
    optSaleSummary = options.add("optSaleSummary", "SALE SUMMARY ALL PARTIES");
    optSaleSummarySingleParty = options.add("optSaleSummarySingleParty", "SALE SUMMARY SINGLE PARTY");
    addRow(QString(), options.frame());
    optSaleRegister->setChecked(true);
    cmdSaleRegister = addPrintButton("cmdSaleRegister", QStringLiteral("&PRINT"));
}

void frmSaleRegister::onOpened()
{
    PeriodReportScreen::onOpened();
    if (!m_listLoaded)
        m_listLoaded = runSafely(this, [this] { m_pick->loadPartyList(); });
}

void frmSaleRegister::startSummary()
{
    optSaleSummary->setChecked(true);
}

std::optional<Reports::ReportRequest> frmSaleRegister::request()
{
    // Tested in the order of the old screen: the options are exclusive.
    SaleRegisterOption o = SaleRegisterOption::AllParties;
    if (optSaleRegisterAllTitle->isChecked())
        o = SaleRegisterOption::AllTitles;
    else if (optSaleRegisterSingleParty->isChecked())
        o = SaleRegisterOption::SingleParty;
    else if (optSaleSummary->isChecked())
        o = SaleRegisterOption::SummaryAllParties;
    else if (optSaleSummarySingleParty->isChecked())
        o = SaleRegisterOption::SummarySingleParty;
    return take(this, saleRegister(o, period(), m_pick->code(), workingTitle()));
}

// ---------------------------------------------------------------- SUMMARY

frmSummary::frmSummary(QWidget *parent) : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmSummary"));
    setTitle(QStringLiteral("SUMMARY"));
    setWindowTitle(QStringLiteral("SUMMARY"));
    cmbMonth = addComboBox(QStringLiteral("cmbMonth"), QStringLiteral("MONTH:"));
    cmbMonth->addItems(monthNames());
    cmbMonth->setEditable(false);
    mskYear = addMaskedEdit(QStringLiteral("mskYear"), QStringLiteral("YEAR:"), MaskedLineEdit::yearMask());
    EnterToTab::attach(cmbMonth);
    EnterToTab::attach(mskYear);
    cmdSaleSummary = addButton(QStringLiteral("cmdSaleSummary"), QStringLiteral("&PRINT"));
    cmdCancel = addButton(QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    packFields();
    m_gate = new CommandGate(cmdSaleSummary, [this] { return check(); }, [this] { print(); });
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);
}

void frmSummary::onOpened()
{
    if (m_loaded)
        return;
    m_loaded = true;
    cmbMonth->setCurrentIndex(0);
    mskYear->setMaskText(QString::number(session().dateToday().year()));
}

Built frmSummary::built() const
{
    return saleSummary(cmbMonth->currentIndex() + 1, mskYear->maskText());
}

bool frmSummary::check()
{
    const Built b = built();
    return b ? true : refuse(b.outcome);
}

void frmSummary::print()
{
    const Built b = built();
    if (!b) {
        refuse(b.outcome);
        return;
    }
    cmdSaleSummary->setEnabled(false);
    Reports::showReport(this, b.request);
    cmdSaleSummary->setEnabled(true);
}

// ---------------------------------------------------------------- CLIENT DETAIL

frmClientDetail::frmClientDetail(QWidget *parent)
    : PeriodReportScreen(parent, "frmClientDetail", QStringLiteral("CLIENT DETAIL"))
{
    setWindowTitle(QStringLiteral("CLIENT DETAIL"));
    m_pick = addPartyFields(this, cmbPartyName, mskPartyCode);
    addPeriodFields();
    cmdClientDetail = addPrintButton("cmdClientDetail", QStringLiteral("&PRINT"));
}

void frmClientDetail::onOpened()
{
    PeriodReportScreen::onOpened();
    // Every time, so that an account made meanwhile is there.
    m_pick->reload();
}

std::optional<Reports::ReportRequest> frmClientDetail::request()
{
    return take(this, clientDetail(session().db(), mskPartyCode->maskText(), period()));
}

// ---------------------------------------------------------------- STATUS REPORT

frmStatusReport::frmStatusReport(QWidget *parent)
    : PeriodReportScreen(parent, "frmStatusReport", QStringLiteral("STATUS REPORT"))
{
    setWindowTitle(QStringLiteral("STATUS REPORT"));
    addPeriodFields();
    m_pick = addPartyFields(this, cmbPartyName, mskPartyCode);
    OptionFrame options(this);
    optDcInvoiceStatus = options.add("optDcInvoiceStatus", "DELIVERY CHALLAN / INVOICE STATUS REPORT");
    optDc = options.add("optDc", "DELIVERY CHALLAN ALL PARTIES");
    optDcSingleParty = options.add("optDcSingleParty", "DELIVERY CHALLAN SINGLE PARTY");
    addRow(QString(), options.frame());
    optDcInvoiceStatus->setChecked(true);
    cmdSearch = addPrintButton("cmdSearch", QStringLiteral("&SEARCH"));
}

void frmStatusReport::onOpened()
{
    PeriodReportScreen::onOpened();
    if (!m_listLoaded)
        m_listLoaded = runSafely(this, [this] { m_pick->loadPartyList(); });
}

void frmStatusReport::startChallanSummary()
{
    optDc->setChecked(true);
}

std::optional<Reports::ReportRequest> frmStatusReport::request()
{
    StatusOption o = StatusOption::DcInvoiceStatus;
    if (optDc->isChecked())
        o = StatusOption::ChallansAllParties;
    else if (optDcSingleParty->isChecked())
        o = StatusOption::ChallansSingleParty;
    return take(this, statusReport(o, period(), m_pick->code(), workingTitle()));
}

// ---------------------------------------------------------------- SEARCH PARTY PO

frmPartyPO::frmPartyPO(QWidget *parent)
    : PeriodReportScreen(parent, "frmPartyPO", QStringLiteral("SEARCH PARTY PO"))
{
    setWindowTitle(QStringLiteral("SEARCH PARTY PO"));
    m_pick = addPartyFields(this, cmbPartyName, mskPartyCode);
    OptionFrame byDate(this);
    optSearchByDate = byDate.add("optSearchByDate", "SEARCH BY DATE");
    addRow(QString(), byDate.frame());
    addPeriodFields();
    // One group for the two options, across their frames.
    auto *group = new QButtonGroup(this);
    OptionFrame byPO(this);
    optSearchByPO = byPO.add("optSearchByPO", "SEARCH BY P.O #");
    group->addButton(optSearchByDate);
    group->addButton(optSearchByPO);
    addRow(QString(), byPO.frame());
    txtPOFrom = addLineEdit(QStringLiteral("txtPOFrom"), QStringLiteral("P.O. # FROM:"));
    txtPOTo = addLineEdit(QStringLiteral("txtPOTo"), QStringLiteral("P.O. # TO:"));
    for (QLineEdit *e : {txtPOFrom, txtPOTo}) {
        SafeTextKey::attach(e);
        EnterToTab::attach(e);
    }
    cmdSearch = addPrintButton("cmdSearch", QStringLiteral("&SEARCH"));
    connect(optSearchByDate, &QRadioButton::toggled, this, &frmPartyPO::optionChanged);
    optSearchByDate->setChecked(true);
    optionChanged();
}

void frmPartyPO::onOpened()
{
    PeriodReportScreen::onOpened();
    m_pick->reload();
}

void frmPartyPO::optionChanged()
{
    const bool dates = optSearchByDate->isChecked();
    mskDateFrom->setEnabled(dates);
    mskDateTo->setEnabled(dates);
    txtPOFrom->setEnabled(!dates);
    txtPOTo->setEnabled(!dates);
}

bool frmPartyPO::datesWanted() const
{
    return optSearchByDate->isChecked();
}

std::optional<Reports::ReportRequest> frmPartyPO::request()
{
    const PartyPOSearch by = optSearchByDate->isChecked() ? PartyPOSearch::ByDate : PartyPOSearch::ByPONo;
    return take(this, partyPO(by, m_pick->name(), period(), txtPOFrom->text(), txtPOTo->text(), workingTitle()));
}
