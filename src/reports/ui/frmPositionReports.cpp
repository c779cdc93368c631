#include "reports/ui/frmPositionReports.h"

#include "foundation/Session.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/ScreenServices.h"
#include "reports/PositionReports.h"

#include <QButtonGroup>
#include <QGroupBox>
#include <QRadioButton>
#include <QVBoxLayout>

frmPartyPosition::frmPartyPosition(QWidget *parent)
    : PeriodReportScreen(parent, "frmPartyPosition", QStringLiteral("PARTY POSITION"))
{
    auto *options = new QGroupBox(this);
    options->setObjectName(QStringLiteral("frOptions"));
    auto *box = new QVBoxLayout(options);
    auto *group = new QButtonGroup(this);
    auto option = [&](QRadioButton *&member, const char *name, const char *caption) {
        member = new QRadioButton(QString::fromLatin1(caption), options);
        member->setObjectName(QString::fromLatin1(name));
        group->addButton(member);
        box->addWidget(member);
        connect(member, &QRadioButton::toggled, this, &frmPartyPosition::optionChanged);
    };
    option(optReceivableCustomers, "optReceivableCustomers", "CUSTOMERS POSITION UPTO DATE");
    option(optPayablePurchaser, "optPayablePurchaser", "PURCHASER POSITION UPTO DATE");
    option(optPartyPositionTwoDates, "optPartyPositionTwoDates", "PARTY POSITION BETWEEN TWO DATES");
    addRow(QString(), options);
    addPeriodFields();
    mskCodeFrom = addMaskedEdit(QStringLiteral("mskCodeFrom"), QStringLiteral("CODE FROM:"), MaskedLineEdit::accountCodeMask());
    mskCodeTo = addMaskedEdit(QStringLiteral("mskCodeTo"), QStringLiteral("CODE TO:"), MaskedLineEdit::accountCodeMask());
    EnterToTab::attach(mskCodeFrom);
    EnterToTab::attach(mskCodeTo);
    cmdPartyPosition = addPrintButton("cmdPartyPosition", QStringLiteral("&PRINT"));
    optReceivableCustomers->setChecked(true);
    optionChanged();
}

void frmPartyPosition::loadDates()
{
    // As the profit and loss: from the day after the closing date to today.
    runSafely(this, [this] {
        const auto first = LedgerStatements::firstOpenDate(session().db());
        if (!first) {
            MessageService::critical(this, QStringLiteral("Closing date is missing, please specify closing date"));
            return;
        }
        DateToMaskText(*first, mskDateFrom);
        DateToMaskText(session().dateToday(), mskDateTo);
    });
}

void frmPartyPosition::optionChanged()
{
    const bool dates = optPartyPositionTwoDates->isChecked();
    for (MaskedLineEdit *f : {mskDateFrom, mskDateTo, mskCodeFrom, mskCodeTo})
        f->setEnabled(dates);
}

bool frmPartyPosition::datesWanted() const
{
    return optPartyPositionTwoDates->isChecked();
}

std::optional<Reports::ReportRequest> frmPartyPosition::request()
{
    if (optReceivableCustomers->isChecked())
        return PositionReports::customersPosition();
    if (optPayablePurchaser->isChecked())
        return PositionReports::purchasersPosition();
    if (optPartyPositionTwoDates->isChecked())
        // Places left blank take the lowest code from, the highest to.
        return PositionReports::partyPosition(period(), mskCodeFrom->maskText().replace(QLatin1Char('_'), QLatin1Char('0')),
                                              mskCodeTo->maskText().replace(QLatin1Char('_'), QLatin1Char('9')));
    return std::nullopt;
}

frmRecoveryReports::frmRecoveryReports(QWidget *parent)
    : PeriodReportScreen(parent, "frmRecoveryReports", QStringLiteral("RECOVERY REPORTS"))
{
    cmdRecoveryReports = addPrintButton("cmdRecoveryReports", QStringLiteral("&PRINT"));
}

std::optional<Reports::ReportRequest> frmRecoveryReports::request()
{
    return PositionReports::recovery(period());
}

frmCashBook::frmCashBook(QWidget *parent) : PeriodReportScreen(parent, "frmCashBook", QStringLiteral("CASH BOOK"))
{
    cmdCashBook = addPrintButton("cmdCashBook", QStringLiteral("&PRINT"));
}

std::optional<Reports::ReportRequest> frmCashBook::request()
{
    return PositionReports::cashBook(period());
}
