#include "reports/ui/PeriodReportScreen.h"

#include "foundation/Session.h"
#include "foundation/ui/CommandGate.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/ScreenServices.h"
#include "reports/ui/frmViewReport.h"

#include <QApplication>
#include <QPushButton>

PeriodReportScreen::PeriodReportScreen(QWidget *parent, const char *name, const QString &title) : BaseScreen(parent)
{
    setObjectName(QLatin1String(name));
    setTitle(title);
}

void PeriodReportScreen::addPeriodFields()
{
    mskDateFrom = addMaskedEdit(QStringLiteral("mskDateFrom"), QStringLiteral("DATE FROM:"), MaskedLineEdit::dateMask());
    mskDateTo = addMaskedEdit(QStringLiteral("mskDateTo"), QStringLiteral("DATE TO:"), MaskedLineEdit::dateMask());
    EnterToTab::attach(mskDateFrom);
    EnterToTab::attach(mskDateTo);
}

QPushButton *PeriodReportScreen::addPrintButton(const char *name, const QString &caption)
{
    if (!mskDateFrom)
        addPeriodFields();
    m_print = addButton(QLatin1String(name), caption);
    cmdCancel = addButton(QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    packFields();
    m_gate = new CommandGate(m_print, [this] { return check(); }, [this] { print(); });
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);
    return m_print;
}

void PeriodReportScreen::onOpened()
{
    if (!m_loaded) {
        m_loaded = true;
        loadDates();
    }
}

void PeriodReportScreen::loadDates()
{
    runSafely(this, [this] {
        const QDate today = session().dateToday();
        const auto first = LedgerStatements::firstOpenDate(session().db());
        DateToMaskText(first.value_or(QDate(today.year(), 1, 1)), mskDateFrom);
        DateToMaskText(today, mskDateTo);
    });
}

LedgerStatements::Period PeriodReportScreen::period() const
{
    return {mskDateFrom->date(), mskDateTo->date(), mskDateFrom->maskText(), mskDateTo->maskText()};
}

bool PeriodReportScreen::check()
{
    if (!datesWanted())
        return true;
    return ValidateDate(mskDateFrom) && ValidateDate(mskDateTo);
}

void PeriodReportScreen::print()
{
    m_print->setEnabled(false);
    if (datesWanted()) {
        session().periodFrom = mskDateFrom->date();
        session().periodTo = mskDateTo->date();
    }
    std::optional<Reports::ReportRequest> req;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    runSafely(this, [&] { req = request(); });
    QApplication::restoreOverrideCursor();
    if (req)
        Reports::showReport(this, *req);
    m_print->setEnabled(true);
}
