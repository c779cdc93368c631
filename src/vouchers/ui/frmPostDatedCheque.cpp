#include "vouchers/ui/frmPostDatedCheque.h"

#include "accounts/ui/AccountPick.h"
#include "accounts/ui/frmPartyInfo.h"
#include "foundation/DateRules.h"
#include "foundation/Session.h"
#include "foundation/ui/CarryOut.h"
#include "foundation/ui/CommandGate.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MenuRouter.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/ScreenBuild.h"
#include "foundation/ui/ScreenServices.h"
#include "vouchers/VoucherLookups.h"
#include "vouchers/ui/frmChequeDueList.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>

using namespace ScreenBuild;

namespace {

SessionConnection &db() { return session().db(); }

PostDatedCheques rules()
{
    return PostDatedCheques(session().db(), session().currentUserName, session().dateToday());
}

} // namespace

frmPostDatedCheque::frmPostDatedCheque(QWidget *parent) : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmPostDatedCheque"));
    using K = KeyRules::Kind;
    QWidget *p = detailFrame();
    txtVoucherType = display(p, QStringLiteral("txtVoucherType"));
    txtVoucherType->setText(QStringLiteral("PD"));
    txtVoucherNo = lineEdit(p, QStringLiteral("txtVoucherNo"), K::DigitsOnly);
    cmbPartyName = combo(p, QStringLiteral("cmbPartyName"));
    cmbPartyName->setMinimumContentsLength(36);
    mskPartyCode = masked(p, QStringLiteral("mskPartyCode"), MaskedLineEdit::accountCodeMask());
    mskDate = masked(p, QStringLiteral("mskDate"), MaskedLineEdit::dateMask());
    mskChequeDate = masked(p, QStringLiteral("mskChequeDate"), MaskedLineEdit::dateMask());
    cmbChequeKind = combo(p, QStringLiteral("cmbChequeKind"), K::LettersUpper, false);
    cmbChequeKind->addItems({ChequeStatus::kReceived, ChequeStatus::kIssued});
    txtChequeNo = lineEdit(p, QStringLiteral("txtChequeNo"), K::SafeText);
    txtDesc = lineEdit(p, QStringLiteral("txtDesc"), K::SafeText);
    txtAmount = amountEdit(p, QStringLiteral("txtAmount"));
    cmbBankName = combo(p, QStringLiteral("cmbBankName"));
    cmbBankName->setMinimumContentsLength(36);
    mskBankCode = masked(p, QStringLiteral("mskBankCode"), MaskedLineEdit::accountCodeMask());
    cmbCareOf = combo(p, QStringLiteral("cmbCareOf"), K::SafeText);
    cmbStatus = combo(p, QStringLiteral("cmbStatus"), K::LettersUpper, false);
    cmbStatus->addItems({ChequeStatus::kPostDated, ChequeStatus::kPosted, ChequeStatus::kBounced});
    dgPartyInfo = grid(p, QStringLiteral("dgPartyInfo"));
    dgPartyInfo->hide();

    FieldGrid g(detailLayout());
    g.putFixed(0, 0, QStringLiteral("VOUCHER TYPE:"), txtVoucherType, 60);
    g.putFixed(1, 0, QStringLiteral("VOUCHER #:"), txtVoucherNo, 100);
    g.put(2, 0, QStringLiteral("PARTY NAME:"), cmbPartyName, 1, true);
    g.putFixed(3, 0, QStringLiteral("PARTY CODE:"), mskPartyCode, 100);
    g.putFixed(4, 0, QStringLiteral("RECEIVING DATE:"), mskDate, 110);
    g.putFixed(5, 0, QStringLiteral("CHEQUE DATE:"), mskChequeDate, 110);
    g.putFixed(6, 0, QStringLiteral("CHEQUE TYPE:"), cmbChequeKind, 120);
    g.putFixed(0, 1, QStringLiteral("CHEQUE #:"), txtChequeNo, 160);
    g.put(1, 1, QStringLiteral("DESCRIPTION:"), txtDesc, 1, true);
    g.putFixed(2, 1, QStringLiteral("AMOUNT:"), txtAmount, 160);
    g.put(3, 1, QStringLiteral("BANK NAME:"), cmbBankName, 1, true);
    g.putFixed(4, 1, QStringLiteral("BANK CODE:"), mskBankCode, 100);
    g.put(5, 1, QStringLiteral("CARE OF:"), cmbCareOf, 1, true);
    g.putFixed(6, 1, QStringLiteral("STATUS:"), cmbStatus, 140);
    detailLayout()->addWidget(dgPartyInfo, 7, 0, 1, 4);
    detailLayout()->setRowStretch(8, 1);

    m_party = new AccountPick(cmbPartyName, mskPartyCode, dgPartyInfo, this);
    m_bank = new AccountPick(cmbBankName, mskBankCode, nullptr, this);

    cmdSave = addButton(QStringLiteral("cmdSave"), QStringLiteral("&SAVE"));
    cmdModify = addButton(QStringLiteral("cmdModify"), QStringLiteral("&MODIFY"));
    cmdDelete = addButton(QStringLiteral("cmdDelete"), QStringLiteral("&DELETE"));
    cmdAddParty = addButton(QStringLiteral("cmdAddParty"), QStringLiteral("ADD &PARTY"));
    cmdDueList = addButton(QStringLiteral("cmdDueList"), QStringLiteral("DUE &LIST"));
    cmdCancel = addButton(QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));

    typingOrder({txtVoucherNo, cmbPartyName, mskDate, mskChequeDate, cmbChequeKind, txtChequeNo, txtDesc, txtAmount,
                 cmbBankName, cmbCareOf, cmbStatus, cmdSave, cmdModify, cmdDelete, cmdAddParty, cmdDueList,
                 cmdCancel},
                cmdSave, {cmbPartyName, cmbBankName});

    new CommandGate(cmdSave, [this] { return chequeAllowed(); }, [this] { save(); });
    new CommandGate(cmdModify, [this] { return chequeAllowed(); }, [this] { modify(); });
    connect(cmdDelete, &QPushButton::clicked, this, &frmPostDatedCheque::remove);
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);
    connect(cmdDueList, &QPushButton::clicked, this, &frmPostDatedCheque::openDueList);
    connect(cmdAddParty, &QPushButton::clicked, this, [this] {
        const QString code = frmPartyInfo::addAccountModal(this);
        onOpened();
        if (!code.isEmpty())
            m_party->setCode(code);
    });
    connect(txtVoucherNo, &QLineEdit::editingFinished, this, [this] {
        if (m_mode == Mode::Modify)
            loadCheque();
    });
    startNew();
}

void frmPostDatedCheque::startNew()
{
    m_mode = Mode::New;
    setTitle(QStringLiteral("POST DATED CHEQUE"));
    setWindowTitle(QStringLiteral("POST DATED CHEQUE"));
    showOnlyButtons({QStringLiteral("cmdSave"), QStringLiteral("cmdAddParty"), QStringLiteral("cmdDueList"),
                     QStringLiteral("cmdCancel")});
    cmbStatus->setEnabled(false);
    txtAmount->setText(QStringLiteral("0"));
    if (session().connection) {
        mskDate->setDate(session().dateToday());
        proposeNumber();
    }
}

void frmPostDatedCheque::startModify()
{
    m_mode = Mode::Modify;
    setTitle(QStringLiteral("MODIFY POST DATED CHEQUE"));
    setWindowTitle(QStringLiteral("MODIFY POST DATED CHEQUE"));
    showOnlyButtons({QStringLiteral("cmdModify"), QStringLiteral("cmdDelete"), QStringLiteral("cmdAddParty"),
                     QStringLiteral("cmdDueList"), QStringLiteral("cmdCancel")});
    cmbStatus->setEnabled(true);
    cmbStatus->setCurrentText(ChequeStatus::kPostDated);
    txtVoucherNo->clear();
    txtAmount->setText(QStringLiteral("0"));
    mskDate->clearMask();
    mskChequeDate->clearMask();
}

void frmPostDatedCheque::onOpened()
{
    runSafely(this, [&] {
        const QString party = cmbPartyName->currentText();
        const QString bank = cmbBankName->currentText();
        const QueryResult accounts = VoucherLookups::accountList(db());
        m_party->setAccounts(accounts);
        m_bank->setAccounts(accounts);
        cmbPartyName->setEditText(party);
        cmbBankName->setEditText(bank);
    });
    const QString careOf = cmbCareOf->currentText();
    LoadCareOfList(cmbCareOf);
    if (!careOf.isEmpty())
        cmbCareOf->setEditText(careOf);
    (m_mode == Mode::New ? static_cast<QWidget *>(cmbPartyName) : txtVoucherNo)->setFocus();
}

void frmPostDatedCheque::proposeNumber()
{
    runSafely(this, [&] { txtVoucherNo->setText(QString::number(rules().nextNumber())); });
}

PostDatedChequeEntry frmPostDatedCheque::entry() const
{
    PostDatedChequeEntry c;
    c.voucherNo = txtVoucherNo->text().trimmed().toLongLong();
    c.partyCode = m_party->code();
    c.partyName = cmbPartyName->currentText().trimmed();
    c.vDate = DateRules::fromMaskText(mskDate->maskText());
    c.chequeDate = DateRules::fromMaskText(mskChequeDate->maskText());
    c.kind = cmbChequeKind->currentText();
    c.chequeNo = txtChequeNo->text().trimmed();
    c.description = txtDesc->text().trimmed();
    c.amount = Money::parseOrZero(txtAmount->text());
    c.bankCode = m_bank->code();
    c.bankName = cmbBankName->currentText().trimmed();
    c.careOf = cmbCareOf->currentText().trimmed();
    c.status = m_mode == Mode::Modify ? cmbStatus->currentText() : ChequeStatus::kPostDated;
    return c;
}

// The checks in the screen's order: the party, the two dates with the
// closing date, the bank; then what the rule refuses besides.
bool frmPostDatedCheque::chequeAllowed()
{
    if (!PartyNameExists(cmbPartyName))
        return false;
    if (!ValidateDate(mskDate) || !CheckClosingDate(mskDate))
        return false;
    if (!ValidateDate(mskChequeDate) || !CheckClosingDate(mskChequeDate))
        return false;
    if (!PartyNameExists(cmbBankName))
        return false;
    Outcome o;
    if (!runSafely(this, [&] { o = rules().check(entry()); }))
        return false;
    return o ? true : refuse(o);
}

void frmPostDatedCheque::save()
{
    if (!carryOut(this, [&] { return rules().save(entry()); }))
        return;
    // The party, the dates and the bank stay for the next cheque.
    txtDesc->clear();
    txtChequeNo->clear();
    txtAmount->setText(QStringLiteral("0"));
    proposeNumber();
    cmbPartyName->setFocus();
}

void frmPostDatedCheque::loadCheque()
{
    if (txtVoucherNo->text().trimmed().isEmpty()) {
        txtVoucherNo->setFocus();
        return;
    }
    std::optional<PostDatedChequeEntry> c;
    if (!runSafely(this, [&] { c = rules().find(txtVoucherNo->text().trimmed().toLongLong()); }))
        return;
    if (!c) {
        MessageService::critical(this, ChequeMessages::kNotFound);
        resetAfterChange();
        txtVoucherNo->setFocus();
        return;
    }
    m_party->setCode(c->partyCode);
    DateToMaskText(c->vDate, mskDate);
    DateToMaskText(c->chequeDate, mskChequeDate);
    cmbChequeKind->setCurrentText(c->kind);
    txtChequeNo->setText(c->chequeNo);
    txtDesc->setText(c->description);
    txtAmount->setText(c->amount.toFieldString());
    m_bank->setCode(c->bankCode);
    cmbCareOf->setEditText(c->careOf);
    cmbStatus->setCurrentText(c->status);
}

void frmPostDatedCheque::modify()
{
    if (!carryOut(this, [&] { return rules().modify(entry()); }))
        return;
    resetAfterChange();
    cmbPartyName->setFocus();
}

void frmPostDatedCheque::remove()
{
    const QString typed = txtVoucherNo->text().trimmed();
    if (typed.isEmpty()) {
        refuse(Outcome::refusal(ChequeMessages::kNoVoucherNo, QStringLiteral("txtVoucherNo")));
        return;
    }
    if (!carryOut(this, [&] { return rules().remove(typed.toLongLong()); }))
        return;
    resetAfterChange();
    cmbPartyName->setFocus();
}

void frmPostDatedCheque::resetAfterChange()
{
    mskDate->clearMask();
    mskChequeDate->clearMask();
    txtDesc->clear();
    txtChequeNo->clear();
    txtAmount->setText(QStringLiteral("0"));
}

void frmPostDatedCheque::openDueList()
{
    if (auto *host = dynamic_cast<MdiHost *>(window()))
        host->showScreen<frmChequeDueList>(QStringLiteral("frmChequeDueList"));
}

frmModifyPostDatedCheque::frmModifyPostDatedCheque(QWidget *parent) : frmPostDatedCheque(parent)
{
    setObjectName(QStringLiteral("frmModifyPostDatedCheque"));
    startModify();
}
