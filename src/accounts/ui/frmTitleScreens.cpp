#include "accounts/ui/frmTitleScreens.h"

#include "accounts/CareOfList.h"
#include "accounts/TitleList.h"
#include "foundation/ui/CommandGate.h"
#include "foundation/Session.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/ScreenServices.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>

namespace {
// Keeps a short screen's fields at the top.
void packTop(BaseScreen *s)
{
    s->detailLayout()->setRowStretch(s->detailLayout()->rowCount(), 1);
    s->detailLayout()->setColumnStretch(2, 1);
}
} // namespace

// ---------------------------------------------------------------- titles

frmAddTitleName::frmAddTitleName(QWidget *parent)
    : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmAddTitleName"));
    setTitle(QStringLiteral("ADD TITLE NAME"));
    txtTitleName = addLineEdit(QStringLiteral("txtTitleName"), QStringLiteral("TITLE NAME:"));
    txtTitleName->setMinimumWidth(360);
    SafeTextKey::attach(txtTitleName);
    EnterToTab::attach(txtTitleName);
    packTop(this);
    cmdOkay = addButton(QStringLiteral("cmdOkay"), QStringLiteral("&OKAY"));
    cmdCancel = addButton(QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    connect(cmdOkay, &QPushButton::clicked, this, &frmAddTitleName::save);
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);
}

void frmAddTitleName::onOpened()
{
    txtTitleName->setFocus(Qt::OtherFocusReason);
}

void frmAddTitleName::save()
{
    Outcome r;
    if (!runSafely(this, [&] { r = TitleList::add(session().db(), txtTitleName->text()); }))
        return;
    if (!r.ok) {
        refuse(r);
        return;
    }
    MessageService::information(this, r.message);
    txtTitleName->clear();
    txtTitleName->setFocus(Qt::OtherFocusReason);
}

frmTitleName::frmTitleName(QWidget *parent)
    : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmTitleName"));
    setTitle(QStringLiteral("TITLE NAME"));
    cmbTitleName = addComboBox(QStringLiteral("cmbTitleName"), QStringLiteral("TITLE NAME:"));
    cmbTitleName->setMinimumWidth(360);
    EnterToTab::attach(cmbTitleName);
    packTop(this);
    cmdOkay = addButton(QStringLiteral("cmdOkay"), QStringLiteral("&OKAY"));
    cmdCancel = addButton(QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    connect(cmdOkay, &QPushButton::clicked, this, &frmTitleName::choose);
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);
    LoadTitleList(cmbTitleName);
}

void frmTitleName::onOpened()
{
    LoadTitleList(cmbTitleName);
    cmbTitleName->setFocus(Qt::OtherFocusReason);
}

void frmTitleName::choose()
{
    // The invoice screen keeps the title it opened with: close it so that
    // it opens afresh under the new one.
    if (QWidget *host = window()) {
        if (auto *invoice = host->findChild<BaseScreen *>(QStringLiteral("frmInvoiceGenerate")))
            invoice->closeScreen();
    }
    const QString title = cmbTitleName->currentText();
    if (runSafely(this, [&] { TitleList::applyLetterhead(session().db(), title, session()); }))
        closeScreen();
}

// ---------------------------------------------------------------- letterhead

frmLetterhead::frmLetterhead(QWidget *parent)
    : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmLetterhead"));
    setTitle(QStringLiteral("LETTERHEAD"));
    cmbTitleName = addComboBox(QStringLiteral("cmbTitleName"), QStringLiteral("TITLE NAME:"));
    txtCompanyName = addLineEdit(QStringLiteral("txtCompanyName"), QStringLiteral("COMPANY NAME:"));
    txtCompanyAddress = addLineEdit(QStringLiteral("txtCompanyAddress"), QStringLiteral("ADDRESS:"));
    txtCompanyPhone = addLineEdit(QStringLiteral("txtCompanyPhone"), QStringLiteral("PHONE #:"));
    txtCompanyEmail = addLineEdit(QStringLiteral("txtCompanyEmail"), QStringLiteral("EMAIL:"));
    txtCompanySaleTaxNo = addLineEdit(QStringLiteral("txtCompanySaleTaxNo"), QStringLiteral("SALE TAX #:"));
    txtCompanyNTN = addLineEdit(QStringLiteral("txtCompanyNTN"), QStringLiteral("NTN #:"));
    for (QWidget *w : std::initializer_list<QWidget *>{cmbTitleName, txtCompanyName, txtCompanyAddress, txtCompanyPhone,
                                                       txtCompanyEmail, txtCompanySaleTaxNo, txtCompanyNTN}) {
        EnterToTab::attach(w);
        w->setMinimumWidth(420);
    }
    packTop(this);
    cmdSave = addButton(QStringLiteral("cmdSave"), QStringLiteral("&SAVE"));
    cmdCancel = addButton(QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    connect(cmdSave, &QPushButton::clicked, this, &frmLetterhead::save);
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);
    connect(cmbTitleName, &QComboBox::currentTextChanged, this, &frmLetterhead::showLetterhead);
    onOpened();
}

void frmLetterhead::onOpened()
{
    LoadTitleList(cmbTitleName);
    showLetterhead();
    cmbTitleName->setFocus(Qt::OtherFocusReason);
}

void frmLetterhead::showLetterhead()
{
    std::optional<TitleList::Letterhead> l;
    if (!runSafely(this, [&] { l = TitleList::storedLetterhead(session().db(), cmbTitleName->currentText()); }))
        return;
    const TitleList::Letterhead shown = l.value_or(TitleList::Letterhead{});
    txtCompanyName->setText(shown.companyName);
    txtCompanyAddress->setText(shown.companyAddress);
    txtCompanyPhone->setText(shown.companyPhone);
    txtCompanyEmail->setText(shown.companyEmail);
    txtCompanySaleTaxNo->setText(shown.companySaleTaxNo);
    txtCompanyNTN->setText(shown.companyNTN);
}

void frmLetterhead::save()
{
    TitleList::Letterhead l;
    l.titleName = cmbTitleName->currentText();
    l.companyName = txtCompanyName->text().trimmed();
    l.companyAddress = txtCompanyAddress->text().trimmed();
    l.companyPhone = txtCompanyPhone->text().trimmed();
    l.companyEmail = txtCompanyEmail->text().trimmed();
    l.companySaleTaxNo = txtCompanySaleTaxNo->text().trimmed();
    l.companyNTN = txtCompanyNTN->text().trimmed();
    Outcome r;
    if (!runSafely(this, [&] { r = TitleList::saveLetterhead(session().db(), l); }))
        return;
    if (!r.ok) {
        refuse(r);
        return;
    }
    // The working title shows its new lines at once.
    if (session().currentTitle == l.titleName.trimmed())
        runSafely(this, [&] { TitleList::applyLetterhead(session().db(), session().currentTitle, session()); });
    MessageService::information(this, r.message);
    cmbTitleName->setFocus(Qt::OtherFocusReason);
}

// ---------------------------------------------------------------- care of

frmCareOf::frmCareOf(QWidget *parent)
    : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmCareOf"));
    setTitle(QStringLiteral("CARE OF"));
    txtName = addLineEdit(QStringLiteral("txtName"), QStringLiteral("NAME:"));
    txtDesignation = addLineEdit(QStringLiteral("txtDesignation"), QStringLiteral("DESIGNATION:"));
    for (QLineEdit *e : {txtName, txtDesignation}) {
        SafeTextKey::attach(e);
        EnterToTab::attach(e);
        e->setMinimumWidth(360);
    }
    detailLayout()->setColumnStretch(2, 1);
    cmdSave = addButton(QStringLiteral("cmdSave"), QStringLiteral("&SAVE"));
    cmdCancel = addButton(QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    dgCareOf = addGrid(QStringLiteral("dgCareOf"));
    dgCareOf->setFocusPolicy(Qt::NoFocus);
    connect(txtName, &QLineEdit::textChanged, this, &frmCareOf::showPersons);
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);
    new CommandGate(cmdSave, [this] { return check(); }, [this] { save(); });
    showPersons(QString());
}

void frmCareOf::onOpened()
{
    txtName->setFocus(Qt::OtherFocusReason);
}

void frmCareOf::showPersons(const QString &text)
{
    runSafely(this, [&] {
        fillGrid(dgCareOf, CareOfList::persons(session().db(), text),
                 {QStringLiteral("NAME"), QStringLiteral("DESIGNATION")});
        dgCareOf->setColumnWidth(0, qMax(dgCareOf->columnWidth(0), 260));
        dgCareOf->horizontalHeader()->setStretchLastSection(true);
    });
}

bool frmCareOf::check()
{
    Outcome r;
    if (!runSafely(this, [&] { r = CareOfList::check(session().db(), txtName->text(), txtDesignation->text()); }))
        return false;
    if (!r.ok)
        refuse(r);
    return r.ok;
}

void frmCareOf::save()
{
    Outcome r;
    if (!runSafely(this, [&] {
            r = CareOfList::add(session().db(), txtName->text(), txtDesignation->text(), session().currentUserName);
        }))
        return;
    if (!r.ok) {
        refuse(r);
        return;
    }
    MessageService::information(this, r.message);
    txtName->clear();
    txtDesignation->clear();
    showPersons(QString());
    txtName->setFocus(Qt::OtherFocusReason);
}
