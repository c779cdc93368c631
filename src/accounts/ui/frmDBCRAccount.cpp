#include "accounts/ui/frmDBCRAccount.h"

#include "accounts/DebitCreditList.h"
#include "foundation/Session.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/ScreenServices.h"

#include <QGridLayout>
#include <QPushButton>

frmDBCRAccount::frmDBCRAccount(QWidget *parent)
    : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmDBCRAccount"));
    setTitle(QStringLiteral("DEBIT/CREDIT ACCOUNT"));
    mskPartyCode = addMaskedEdit(QStringLiteral("mskPartyCode"), QStringLiteral("PARTY CODE:"),
                                 MaskedLineEdit::accountCodeMask());
    EnterToTab::attach(mskPartyCode);
    detailLayout()->setRowStretch(1, 1);
    detailLayout()->setColumnStretch(2, 1);
    cmdSave = addButton(QStringLiteral("cmdSave"), QStringLiteral("&SAVE"));
    cmdDelete = addButton(QStringLiteral("cmdDelete"), QStringLiteral("&DELETE"));
    cmdCancel = addButton(QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    connect(cmdSave, &QPushButton::clicked, this, &frmDBCRAccount::add);
    connect(cmdDelete, &QPushButton::clicked, this, &frmDBCRAccount::remove);
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);
}

void frmDBCRAccount::onOpened()
{
    // The minimised window carries the short caption.
    setWindowTitle(QStringLiteral("DR / CR ACCOUNTS"));
    mskPartyCode->setFocus(Qt::OtherFocusReason);
}

void frmDBCRAccount::add()
{
    Outcome r;
    if (!runSafely(this, [&] { r = DebitCreditList::add(session().db(), mskPartyCode->maskText()); }))
        return;
    if (!r.ok) {
        // A refused code stays in the field to be corrected.
        MessageService::critical(this, r.message);
        mskPartyCode->setFocus(Qt::OtherFocusReason);
        return;
    }
    MessageService::information(this, r.message);
    mskPartyCode->clearMask();
    mskPartyCode->setFocus(Qt::OtherFocusReason);
}

void frmDBCRAccount::remove()
{
    Outcome r;
    if (!runSafely(this, [&] { r = DebitCreditList::remove(session().db(), mskPartyCode->maskText()); }))
        return;
    if (r.ok) {
        MessageService::information(this, r.message);
    } else {
        MessageService::critical(this, r.message);
        if (r.message == DebitCreditList::Msg::codeMissing()) {
            mskPartyCode->setFocus(Qt::OtherFocusReason);
            return;
        }
    }
    // Found or not, the field starts again.
    mskPartyCode->clearMask();
    mskPartyCode->setFocus(Qt::OtherFocusReason);
}
