#include "accounts/ui/frmModPartyInfo.h"

#include "accounts/AccountModification.h"
#include "accounts/ui/AccountPick.h"
#include "accounts/ui/frmPartyInfo.h"
#include "foundation/Session.h"
#include "foundation/ui/CommandGate.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/ScreenServices.h"

#include <QComboBox>
#include <QEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>

frmModPartyInfo::frmModPartyInfo(QWidget *parent)
    : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmModPartyInfo"));
    setTitle(QStringLiteral("MODIFY PARTY INFORMATION"));

    cmbPartyName = addComboBox(QStringLiteral("cmbPartyName"), QStringLiteral("OLD PARTY NAME:"));
    cmbPartyName->setMinimumWidth(360);
    mskOldPartyCode = addMaskedEdit(QStringLiteral("mskOldPartyCode"), QStringLiteral("OLD PARTY CODE:"),
                                    MaskedLineEdit::accountCodeMask());
    txtPartyName = addLineEdit(QStringLiteral("txtPartyName"), QStringLiteral("PARTY NAME:"));
    mskPartyCode = addMaskedEdit(QStringLiteral("mskPartyCode"), QStringLiteral("PARTY CODE:"),
                                 MaskedLineEdit::accountCodeMask());
    txtPartyAddress = addLineEdit(QStringLiteral("txtPartyAddress"), QStringLiteral("ADDRESS:"));
    txtPartyPhone = addLineEdit(QStringLiteral("txtPartyPhone"), QStringLiteral("PHONE #:"));
    txtPartyFax = addLineEdit(QStringLiteral("txtPartyFax"), QStringLiteral("FAX #:"));
    txtPartyEmail = addLineEdit(QStringLiteral("txtPartyEmail"), QStringLiteral("EMAIL:"));
    mskSaleTax = addMaskedEdit(QStringLiteral("mskSaleTax"), QStringLiteral("SALE TAX #:"),
                               MaskedLineEdit::saleTaxNoMask(), 1);
    mskNTN = addMaskedEdit(QStringLiteral("mskNTN"), QStringLiteral("NTN #:"), MaskedLineEdit::taxNoMask(), 1);
    txtDueDays = addLineEdit(QStringLiteral("txtDueDays"), QStringLiteral("DUE DAYS:"), 1);
    txtDueDays->setMaximumWidth(mskPartyCode->maximumWidth());
    cmbCareOf = addComboBox(QStringLiteral("cmbCareOf"), QStringLiteral("CARE OF:"), 1);
    txtPartyDesc = addLineEdit(QStringLiteral("txtPartyDesc"), QStringLiteral("DESCRIPTION:"), 1);
    mskMDate = addMaskedEdit(QStringLiteral("mskMDate"), QStringLiteral("DATE:"), MaskedLineEdit::dateMask(), 1);
    cmbMDBCR = addComboBox(QStringLiteral("cmbMDBCR"), QStringLiteral("DB/CR:"), 1);
    cmbMDBCR->setEditable(false);
    cmbMDBCR->addItems({QStringLiteral("DR"), QStringLiteral("CR")});
    cmbMDBCR->setMinimumContentsLength(4);
    cmbMDBCR->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    txtMBalance = addLineEdit(QStringLiteral("txtMBalance"), QStringLiteral("BALANCE:"), 1);
    txtMBalance->setMaximumWidth(mskSaleTax->maximumWidth());

    cmdPartyModify = addButton(QStringLiteral("cmdPartyModify"), QStringLiteral("&MODIFY"));
    cmdPartyCancel = addButton(QStringLiteral("cmdPartyCancel"), QStringLiteral("&CANCEL"));
    dgPartyInfo = addGrid(QStringLiteral("dgPartyInfo"));
    dgPartyInfo->setFocusPolicy(Qt::NoFocus);

    frmPartyInfo::attachAccountKeys({{txtPartyName, mskPartyCode, txtPartyAddress, txtPartyPhone, txtPartyFax,
                                      txtPartyEmail, mskSaleTax, mskNTN, txtDueDays, cmbCareOf, txtPartyDesc, mskMDate,
                                      cmbMDBCR, txtMBalance},
                                     txtPartyName, txtPartyAddress, txtPartyFax, txtDueDays,
                                     txtPartyDesc, txtMBalance, cmbCareOf, cmbMDBCR});
    txtDueDays->installEventFilter(this);

    m_pick = new AccountPick(cmbPartyName, mskOldPartyCode, nullptr, this);
    connect(m_pick, &AccountPick::accountChanged, this, [this](const QString &code) { loadAccount(code); });
    connect(txtPartyName, &QLineEdit::textChanged, this,
            [this](const QString &name) { frmPartyInfo::showSimilarNames(dgPartyInfo, name); });
    m_gate = new CommandGate(cmdPartyModify, [this] { return ValidateDate(mskMDate); }, [this] { save(); });
    connect(cmdPartyCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);

    LoadCareOfList(cmbCareOf);
    clearFields();
}

void frmModPartyInfo::onOpened()
{
    // The minimised window carries the short caption.
    setWindowTitle(QStringLiteral("MODIFY PARTY INFO"));
    loadList();
    cmbPartyName->setFocus(Qt::OtherFocusReason);
}

bool frmModPartyInfo::eventFilter(QObject *watched, QEvent *event)
{
    // Leaving an empty days field puts 0 into it.
    if (event->type() == QEvent::FocusOut && watched == txtDueDays && txtDueDays->text().isEmpty())
        txtDueDays->setText(QStringLiteral("0"));
    return BaseScreen::eventFilter(watched, event);
}

void frmModPartyInfo::loadList()
{
    runSafely(this, [this] { m_pick->setAccounts(AccountModification::allAccounts(session().db())); });
    m_pick->clear();
    clearFields();
}

void frmModPartyInfo::clearFields()
{
    m_oldCode.clear();
    m_oldName.clear();
    for (QLineEdit *e : {txtPartyName, txtPartyAddress, txtPartyPhone, txtPartyFax, txtPartyEmail, txtPartyDesc,
                         txtMBalance})
        e->clear();
    for (MaskedLineEdit *m : {mskPartyCode, mskSaleTax, mskNTN, mskMDate})
        m->clearMask();
    txtDueDays->setText(QStringLiteral("0"));
    cmbMDBCR->setCurrentIndex(0);
}

void frmModPartyInfo::loadAccount(const QString &code)
{
    std::optional<AccountModification::Change> a;
    if (!code.isEmpty())
        runSafely(this, [&] { a = AccountModification::load(session().db(), code); });
    if (!a) {
        clearFields();
        return;
    }
    m_oldCode = a->oldCode;
    m_oldName = a->oldName;
    txtPartyName->setText(a->name);
    mskPartyCode->setMaskText(a->code);
    txtPartyAddress->setText(a->address);
    txtPartyPhone->setText(a->phone);
    txtPartyFax->setText(a->fax);
    txtPartyEmail->setText(a->email);
    txtPartyDesc->setText(a->description);
    mskSaleTax->setMaskText(a->saleTaxNo);
    mskNTN->setMaskText(a->ntn);
    txtDueDays->setText(QString::number(a->dueDays));
    const int careOf = cmbCareOf->findText(a->careOf);
    if (careOf >= 0)
        cmbCareOf->setCurrentIndex(careOf);
    else
        cmbCareOf->setEditText(a->careOf);
    if (a->balance) {
        DateToMaskText(a->date, mskMDate);
        cmbMDBCR->setCurrentText(a->side);
        txtMBalance->setText(a->balance->toFieldString());
    } else {
        mskMDate->clearMask();
        cmbMDBCR->setCurrentIndex(0);
        txtMBalance->clear();
    }
}

void frmModPartyInfo::save()
{
    AccountModification::Change c;
    // The account as loaded; a name typed over the list without a load
    // names no account.
    c.oldCode = cmbPartyName->currentText().trimmed().isEmpty() ? QString() : m_oldCode;
    c.oldName = m_oldName;
    c.code = mskPartyCode->maskText();
    c.name = txtPartyName->text();
    c.address = txtPartyAddress->text();
    c.phone = txtPartyPhone->text();
    c.fax = txtPartyFax->text();
    c.email = txtPartyEmail->text();
    c.description = txtPartyDesc->text();
    c.saleTaxNo = mskSaleTax->maskText();
    c.ntn = mskNTN->maskText();
    c.dueDays = txtDueDays->text().toLongLong();
    c.careOf = cmbCareOf->currentText();
    c.date = mskMDate->date();
    c.side = cmbMDBCR->currentText();
    if (!txtMBalance->text().isEmpty())
        c.balance = Money::parseOrZero(txtMBalance->text());

    Outcome r;
    if (!runSafely(this, [&] {
            r = AccountModification::save(session().db(), c, session().currentUserName, session().dateToday());
        }))
        return;
    if (!r.ok) {
        refuse(r);
        return;
    }
    MessageService::information(this, r.message);
    loadList();
    cmbPartyName->setFocus(Qt::OtherFocusReason);
}
