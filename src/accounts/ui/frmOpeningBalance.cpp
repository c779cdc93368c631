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

QFrame *frmOpeningBalance::buildPanel(const QString &frameName, const QString &m, Panel out,
                                      const QPair<QString, QString> &save, const QPair<QString, QString> &other)
{
    QFrame *p = ScreenBuild::frame(detailFrame(), frameName, true);
    out.name = ScreenBuild::combo(p, QStringLiteral("cmb%1PartyName").arg(m));
    out.code = ScreenBuild::masked(p, QStringLiteral("msk%1PartyCode").arg(m), MaskedLineEdit::accountCodeMask());
    out.date = ScreenBuild::masked(p, QStringLiteral("msk%1Date").arg(m), MaskedLineEdit::dateMask());
    out.side = ScreenBuild::combo(p, QStringLiteral("cmb%1DBCR").arg(m), KeyRules::Kind::LettersUpper, false);
    out.side->addItems({QStringLiteral("DR"), QStringLiteral("CR")});
    out.side->setCurrentIndex(0);
    out.amount = ScreenBuild::amountEdit(p, QStringLiteral("txt%1Balance").arg(m));
    out.amount->setMaxLength(16);
    out.save = ScreenBuild::button(p, save.first, save.second);
    out.other = ScreenBuild::button(p, other.first, other.second);

    FieldGrid g(new QGridLayout(p));
    g.put(0, 0, QStringLiteral("PARTY NAME:"), out.name, 1, false, 360);
    g.put(1, 0, QStringLiteral("PARTY CODE:"), out.code);
    g.put(2, 0, QStringLiteral("DATE:"), out.date);
    g.put(3, 0, QStringLiteral("DB/CR:"), out.side);
    g.put(4, 0, QStringLiteral("BALANCE:"), out.amount, 1, false, 160);
    g.buttons(5, 0, {out.save, out.other});
    ScreenBuild::typingOrder({out.name, out.code, out.date, out.side, out.amount, out.save, out.other}, out.save,
                             {out.name, out.code});
    return p;
}

void frmOpeningBalance::buildNewPanel()
{
    frOuterOpeningBalance = buildPanel(
        QStringLiteral("frOuterOpeningBalance"), QString(),
        {cmbPartyName, mskPartyCode, mskDate, cmbDBCR, txtBalance, cmdOpeningBalance, cmdAddParty},
        {QStringLiteral("cmdOpeningBalance"), QStringLiteral("&SAVE")},
        {QStringLiteral("cmdAddParty"), QStringLiteral("&ADD PARTY")});
    m_pick = new AccountPick(cmbPartyName, mskPartyCode, nullptr, this);
    m_newGate = new CommandGate(cmdOpeningBalance, [this] { return ValidateDate(mskDate); }, [this] { saveNew(); });
    connect(cmdAddParty, &QPushButton::clicked, this, &frmOpeningBalance::addParty);
}

void frmOpeningBalance::buildModifyPanel()
{
    frOuterModifyBalance = buildPanel(
        QStringLiteral("frOuterModifyBalance"), QStringLiteral("M"),
        {cmbMPartyName, mskMPartyCode, mskMDate, cmbMDBCR, txtMBalance, cmdModifyBalance, cmdCancel},
        {QStringLiteral("cmdModifyBalance"), QStringLiteral("&SAVE")},
        {QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL")});
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
