#include "admin/ui/frmClosingDate.h"

#include "admin/ClosingDate.h"
#include "foundation/Session.h"
#include "foundation/ui/CommandGate.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/ScreenBuild.h"
#include "foundation/ui/ScreenServices.h"

#include <QFont>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

frmClosingDate::frmClosingDate(QWidget *parent)
    : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmClosingDate"));
    setTitle(QStringLiteral("CLOSING DATE"));

    lblClosingDate = addLabel(QStringLiteral("lblClosingDate"), QStringLiteral("CLOSING DATE"));
    QFont big = lblClosingDate->font();
    big.setBold(true);
    big.setPointSizeF(big.pointSizeF() * 1.4);
    lblClosingDate->setFont(big);

    mskDate = ScreenBuild::masked(detailFrame(), QStringLiteral("mskDate"), MaskedLineEdit::dateMask());
    lblDate = new QLabel(QStringLiteral("CLOSING DATE"), detailFrame());
    lblDate->setObjectName(QStringLiteral("lblDate"));
    lblDate->setBuddy(mskDate);
    const int row = detailLayout()->rowCount();
    detailLayout()->addWidget(lblDate, row, 0);
    detailLayout()->addWidget(mskDate, row, 1);
    EnterToTab::attach(mskDate);
    packFields();

    cmdClosingOkay = addButton(QStringLiteral("cmdClosingOkay"), QStringLiteral("&OKAY"));
    cmdCancel = addButton(QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    m_gate = new CommandGate(cmdClosingOkay, [this] { return ValidateDate(mskDate); }, [this] { save(); });
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);
}

void frmClosingDate::onOpened()
{
    runSafely(this, [this] {
        if (const auto closing = ClosingDate::current(session().db()))
            DateToMaskText(*closing, mskDate);
        else
            mskDate->clearMask();
    });
    mskDate->setFocus(Qt::OtherFocusReason);
}

void frmClosingDate::save()
{
    const QDate date = mskDate->date();
    Outcome r;
    if (!runSafely(this, [&] { r = ClosingDate::set(session().db(), date); }))
        return;
    if (!r.ok) {
        refuse(r);
        return;
    }
    // Every date check of this workstation follows the new date at once.
    session().firstOpenDate = date.addDays(1);
    MessageService::information(this, r.message);
}
