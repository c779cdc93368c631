#include "accounts/ui/frmOpeningBalance.h"

#include "accounts/OpeningBalance.h"
#include "accounts/ui/AccountPick.h"
#include "accounts/ui/frmPartyInfo.h"
#include "foundation/Session.h"
#include "foundation/ui/CommandGate.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/ScreenBuild.h"
#include "foundation/ui/ScreenServices.h"

#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>

namespace {

QComboBox *sideCombo(QWidget *parent, const QString &name)
{
    QComboBox *c = ScreenBuild::combo(parent, name, KeyRules::Kind::LettersUpper, false);
    c->addItems({QStringLiteral("DR"), QStringLiteral("CR")});
    c->setCurrentIndex(0);
    return c;
}

// A side and amount as the field holds them: nothing for an empty field.
OpeningBalance::Entry entryOf(MaskedLineEdit *code, MaskedLineEdit *date, QComboBox *side, QLineEdit *amount)
{
    OpeningBalance::Entry e;
    e.code = code->maskText();
    e.date = date->date();
    e.side = side->currentText();
    if (!amount->text().isEmpty())
        e.amount = Money::parseOrZero(amount->text());
    return e;
}

} // namespace

frmOpeningBalance::frmOpeningBalance(QWidget *parent)
    : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmOpeningBalance"));
    setTitle(QStringLiteral("OPENING BALANCE"));
    buildNewPanel();
    buildModifyPanel();
    auto *panels = new QVBoxLayout;
    panels->addWidget(frOuterOpeningBalance);
    panels->addWidget(frOuterModifyBalance);
    panels->addStretch(1);
    detailLayout()->addLayout(panels, 0, 0);
    detailLayout()->setColumnStretch(1, 1);
    // Each panel carries its own buttons.
    buttonFrame()->hide();
    startNew();
}

void frmOpeningBalance::buildNewPanel()
{
    frOuterOpeningBalance = ScreenBuild::frame(detailFrame(), QStringLiteral("frOuterOpeningBalance"), true);
    QWidget *p = frOuterOpeningBalance;
    cmbPartyName = ScreenBuild::combo(p, QStringLiteral("cmbPartyName"));
    mskPartyCode = ScreenBuild::masked(p, QStringLiteral("mskPartyCode"), MaskedLineEdit::accountCodeMask());
    mskDate = ScreenBuild::masked(p, QStringLiteral("mskDate"), MaskedLineEdit::dateMask());
    cmbDBCR = sideCombo(p, QStringLiteral("cmbDBCR"));
    txtBalance = ScreenBuild::amountEdit(p, QStringLiteral("txtBalance"));
    txtBalance->setMaxLength(16);
    cmdOpeningBalance = ScreenBuild::button(p, QStringLiteral("cmdOpeningBalance"), QStringLiteral("&SAVE"));
    cmdAddParty = ScreenBuild::button(p, QStringLiteral("cmdAddParty"), QStringLiteral("&ADD PARTY"));

    FieldGrid g(new QGridLayout(p));
    g.put(0, 0, QStringLiteral("PARTY NAME:"), cmbPartyName, 1, false, 360);
    g.put(1, 0, QStringLiteral("PARTY CODE:"), mskPartyCode);
    g.put(2, 0, QStringLiteral("DATE:"), mskDate);
    g.put(3, 0, QStringLiteral("DB/CR:"), cmbDBCR);
    g.put(4, 0, QStringLiteral("BALANCE:"), txtBalance, 1, false, 160);
    g.buttons(5, 0, {cmdOpeningBalance, cmdAddParty});
    ScreenBuild::typingOrder({cmbPartyName, mskPartyCode, mskDate, cmbDBCR, txtBalance, cmdOpeningBalance, cmdAddParty},
                             cmdOpeningBalance, {cmbPartyName, mskPartyCode});

    m_pick = new AccountPick(cmbPartyName, mskPartyCode, nullptr, this);
    m_newGate = new CommandGate(cmdOpeningBalance, [this] { return ValidateDate(mskDate); }, [this] { saveNew(); });
    connect(cmdAddParty, &QPushButton::clicked, this, &frmOpeningBalance::addParty);
}

void frmOpeningBalance::buildModifyPanel()
{
    frOuterModifyBalance = ScreenBuild::frame(detailFrame(), QStringLiteral("frOuterModifyBalance"), true);
    QWidget *p = frOuterModifyBalance;
    cmbMPartyName = ScreenBuild::combo(p, QStringLiteral("cmbMPartyName"));
    mskMPartyCode = ScreenBuild::masked(p, QStringLiteral("mskMPartyCode"), MaskedLineEdit::accountCodeMask());
    mskMDate = ScreenBuild::masked(p, QStringLiteral("mskMDate"), MaskedLineEdit::dateMask());
    cmbMDBCR = sideCombo(p, QStringLiteral("cmbMDBCR"));
    txtMBalance = ScreenBuild::amountEdit(p, QStringLiteral("txtMBalance"));
    txtMBalance->setMaxLength(16);
    cmdModifyBalance = ScreenBuild::button(p, QStringLiteral("cmdModifyBalance"), QStringLiteral("&SAVE"));
    cmdCancel = ScreenBuild::button(p, QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));

    FieldGrid g(new QGridLayout(p));
    g.put(0, 0, QStringLiteral("PARTY NAME:"), cmbMPartyName, 1, false, 360);
    g.put(1, 0, QStringLiteral("PARTY CODE:"), mskMPartyCode);
    g.put(2, 0, QStringLiteral("DATE:"), mskMDate);
    g.put(3, 0, QStringLiteral("DB/CR:"), cmbMDBCR);
    g.put(4, 0, QStringLiteral("BALANCE:"), txtMBalance, 1, false, 160);
    g.buttons(5, 0, {cmdModifyBalance, cmdCancel});
    ScreenBuild::typingOrder({cmbMPartyName, mskMPartyCode, mskMDate, cmbMDBCR, txtMBalance, cmdModifyBalance, cmdCancel},
                             cmdModifyBalance, {cmbMPartyName, mskMPartyCode});

    m_mpick = new AccountPick(cmbMPartyName, mskMPartyCode, nullptr, this);
    connect(m_mpick, &AccountPick::accountChanged, this, [this](const QString &code) { showOpeningRow(code); });
    m_modifyGate =
        new CommandGate(cmdModifyBalance, [this] { return ValidateDate(mskMDate); }, [this] { saveModify(); });
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);
}

void frmOpeningBalance::startNew()
{
    m_mode = Mode::New;
    frOuterModifyBalance->hide();
    frOuterOpeningBalance->show();
    DateToMaskText(session().dateToday(), mskDate);
    runSafely(this, [this] { m_pick->loadPartyList(); });
    cmbPartyName->setFocus(Qt::OtherFocusReason);
}

void frmOpeningBalance::startModify()
{
    m_mode = Mode::Modify;
    frOuterOpeningBalance->hide();
    frOuterModifyBalance->show();
    loadModifyList();
    cmbMPartyName->setFocus(Qt::OtherFocusReason);
}

void frmOpeningBalance::onOpened()
{
    // Accounts made elsewhere meanwhile are offered too.
    if (m_mode == Mode::New)
        runSafely(this, [this] { m_pick->loadPartyList(); });
}

void frmOpeningBalance::loadModifyList()
{
    runSafely(this, [this] { m_mpick->setAccounts(OpeningBalance::accountsWithOpeningRow(session().db())); });
    m_mpick->clear();
    showOpeningRow(QString());
}

void frmOpeningBalance::showOpeningRow(const QString &code)
{
    std::optional<OpeningBalance::Shown> row;
    if (!code.isEmpty())
        runSafely(this, [&] { row = OpeningBalance::openingRow(session().db(), code); });
    if (!row) {
        mskMDate->clearMask();
        txtMBalance->clear();
        cmbMDBCR->setCurrentIndex(0);
        return;
    }
    DateToMaskText(row->date, mskMDate);
    cmbMDBCR->setCurrentText(row->side);
    txtMBalance->setText(row->amount.toFieldString());
}

void frmOpeningBalance::saveNew()
{
    const OpeningBalance::Entry e = entryOf(mskPartyCode, mskDate, cmbDBCR, txtBalance);
    Outcome r;
    if (!runSafely(this, [&] {
            r = OpeningBalance::open(session().db(), e, session().currentUserName, session().dateToday());
        }))
        return;
    if (!r.ok) {
        refuse(r);
        return;
    }
    MessageService::information(this, r.message);
    m_pick->clear();
    txtBalance->clear();
    cmbPartyName->setFocus(Qt::OtherFocusReason);
}

void frmOpeningBalance::saveModify()
{
    const OpeningBalance::Entry e = entryOf(mskMPartyCode, mskMDate, cmbMDBCR, txtMBalance);
    Outcome r;
    if (!runSafely(this, [&] {
            r = OpeningBalance::modify(session().db(), e, session().currentUserName, session().dateToday());
        }))
        return;
    if (!r.ok) {
        refuse(r);
        return;
    }
    MessageService::information(this, r.message);
    loadModifyList();
    cmbMPartyName->setFocus(Qt::OtherFocusReason);
}

void frmOpeningBalance::addParty()
{
    const QString code = frmPartyInfo::addAccountModal(this);
    runSafely(this, [this] { m_pick->loadPartyList(); });
    if (!code.isEmpty())
        m_pick->setCode(code);
    cmbPartyName->setFocus(Qt::OtherFocusReason);
}
