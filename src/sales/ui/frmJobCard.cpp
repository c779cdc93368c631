#include "sales/ui/frmJobCard.h"

#include "accounts/ui/AccountPick.h"
#include "foundation/Session.h"
#include "foundation/ui/CommandGate.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/ScreenBuild.h"
#include "foundation/ui/ScreenServices.h"
#include "sales/JobPaperPrinting.h"
#include "sales/PurchaseOrderRules.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

using namespace ScreenBuild;
using Command = JobCardRules::Command;

namespace {

SessionConnection &db() { return session().db(); }

// The captions of the press fields, by column.
const QHash<QString, QString> &pressCaptions()
{
    static const QHash<QString, QString> all = {
        {QStringLiteral("JobDetail"), QStringLiteral("JOB DETAIL:")},
        {QStringLiteral("Paper"), QStringLiteral("PAPER/BOARD:")},
        {QStringLiteral("PaperSize"), QStringLiteral("PAPER SIZE:")},
        {QStringLiteral("CuttingSize"), QStringLiteral("CUTTING SIZE:")},
        {QStringLiteral("Printing"), QStringLiteral("PRINTING:")},
        {QStringLiteral("Machine"), QStringLiteral("MACHINE:")},
        {QStringLiteral("Design"), QStringLiteral("DESIGN:")},
        {QStringLiteral("Positive"), QStringLiteral("POSITIVE:")},
        {QStringLiteral("Plate"), QStringLiteral("PLATE:")},
        {QStringLiteral("Die"), QStringLiteral("DIE:")},
        {QStringLiteral("Bleach"), QStringLiteral("BLEACH:")},
        {QStringLiteral("Lamination"), QStringLiteral("LAMINATION:")},
        {QStringLiteral("Other"), QStringLiteral("OTHER PROCESS:")},
        {QStringLiteral("Status"), QStringLiteral("STATUS:")}};
    return all;
}

} // namespace

frmJobCard::frmJobCard(QWidget *parent) : JobPaperScreen(parent)
{
    setObjectName(QStringLiteral("frmJobCard"));
    setTitle(QStringLiteral("JOB CARD DETAIL"));
    build();
    wire();
    if (session().connection)
        runSafely(this, [&] {
            proposeNumber();
            loadJobCardLists();
        });
    mskDate->setDate(session().dateToday());
}

void frmJobCard::build()
{
    frOuter = frame(frDetail, QStringLiteral("frOuter"));
    auto *outer = new QVBoxLayout(frOuter);
    outer->setContentsMargins(0, 0, 0, 0);
    auto *fieldLayout = new QGridLayout;
    outer->addLayout(fieldLayout);
    outer->addStretch(1);
    FieldGrid g(fieldLayout);
    using K = KeyRules::Kind;
    QWidget *p = frOuter;
    txtJobCardNo = lineEdit(p, QStringLiteral("txtJobCardNo"), K::DigitsOnly);
    cmbPartyPONo = combo(p, QStringLiteral("cmbPartyPONo"), K::SafeText);
    cmbPartyName = combo(p, QStringLiteral("cmbPartyName"));
    cmbPartyName->setMinimumContentsLength(36);
    txtPartyCode = masked(p, QStringLiteral("txtPartyCode"), MaskedLineEdit::accountCodeMask());
    mskDate = masked(p, QStringLiteral("mskDate"), MaskedLineEdit::dateMask());
    mskIssueDate = masked(p, QStringLiteral("mskIssueDate"), MaskedLineEdit::dateMask());
    mskPODate = masked(p, QStringLiteral("mskPODate"), MaskedLineEdit::dateMask());
    txtQuantity = lineEdit(p, QStringLiteral("txtQuantity"), K::SafeText);
    for (const QString &col : JobCardRules::pressColumns()) {
        QComboBox *c = combo(p, JobCardRules::comboName(col), K::SafeText);
        c->setMinimumContentsLength(24);
        m_press.insert(col, c);
    }
    cmbJobDetail = m_press.value(QStringLiteral("JobDetail"));
    cmbPaper = m_press.value(QStringLiteral("Paper"));
    cmbPaperSize = m_press.value(QStringLiteral("PaperSize"));
    cmbCuttingSize = m_press.value(QStringLiteral("CuttingSize"));
    cmbPrinting = m_press.value(QStringLiteral("Printing"));
    cmbMachine = m_press.value(QStringLiteral("Machine"));
    cmbDesign = m_press.value(QStringLiteral("Design"));
    cmbPositive = m_press.value(QStringLiteral("Positive"));
    cmbPlate = m_press.value(QStringLiteral("Plate"));
    cmbDie = m_press.value(QStringLiteral("Die"));
    cmbBleach = m_press.value(QStringLiteral("Bleach"));
    cmbLamination = m_press.value(QStringLiteral("Lamination"));
    cmbOther = m_press.value(QStringLiteral("Other"));
    cmbStatus = m_press.value(QStringLiteral("Status"));

    g.putFixed(0, 0, QStringLiteral("JOB CARD #:"), txtJobCardNo, 100);
    g.putFixed(0, 1, QStringLiteral("DATE:"), mskDate, 110);
    g.put(1, 0, QStringLiteral("PARTY NAME:"), cmbPartyName, 1, true);
    g.putFixed(1, 1, QStringLiteral("PARTY CODE:"), txtPartyCode, 100);
    g.putFixed(2, 0, QStringLiteral("P.O #:"), cmbPartyPONo, 180);
    g.putFixed(2, 1, QStringLiteral("P.O DATE:"), mskPODate, 110);
    g.putFixed(3, 0, QStringLiteral("ISSUE DATE:"), mskIssueDate, 110);
    g.putFixed(3, 1, QStringLiteral("QUANTITY:"), txtQuantity, 140);
    // The press fields, two to a row, in the order of the card.
    const QStringList cols = JobCardRules::pressColumns();
    for (int i = 0; i < cols.size(); ++i)
        g.put(4 + i / 2, i % 2, pressCaptions().value(cols.at(i)), m_press.value(cols.at(i)), 1, true);
    fieldLayout->setColumnStretch(1, 1);
    fieldLayout->setColumnStretch(3, 1);
    detailLayout()->addWidget(frOuter, 0, 0, 1, 2);
    detailLayout()->setRowStretch(0, 1);

    addPaperCommands(cmbPartyName, txtPartyCode);
    QList<QWidget *> chain{txtJobCardNo, mskDate, cmbPartyName, txtPartyCode, cmbPartyPONo, mskPODate, mskIssueDate,
                           txtQuantity};
    for (const QString &col : cols)
        chain << m_press.value(col);
    chain << cmdSave << cmdModify << cmdDelete << cmdNew << cmdPrint << cmdAddParty;
    typingOrder(chain, cmdSave, {cmbPartyName, txtPartyCode});
}

void frmJobCard::wire()
{
    new CommandGate(cmdSave, [this] { return allowed(Command::Save); }, [this] { save(); });
    new CommandGate(cmdModify, [this] { return allowed(Command::Modify); }, [this] { modify(); });
    new CommandGate(cmdDelete, [this] { return allowed(Command::Delete); }, [this] { remove(); });
    new CommandGate(cmdPrint, [this] { return allowed(Command::Print); }, [this] { printCard(); });
    connect(cmdNew, &QPushButton::clicked, this, [this] {
        runSafely(this, [&] { proposeNumber(); });
        numberLeft();
        txtJobCardNo->setFocus();
    });
    connect(m_pick, &AccountPick::accountChanged, this, [this] {
        if (!m_quiet)
            partyChanged();
    });
    onLeave(cmbPartyPONo, [this] { partyOrderLeft(); });
    onLeave(txtJobCardNo, [this] { numberLeft(); });
}

// ------------------------------------------------------------ modes

void frmJobCard::setMode(Mode mode, const QString &title)
{
    m_mode = mode;
    setTitle(title);
    setWindowTitle(title);
    showModeCommands(mode);
    txtJobCardNo->setFocus();
}

void frmJobCard::startEnter() { setMode(Mode::Enter, QStringLiteral("JOB CARD DETAIL")); }
void frmJobCard::startModify() { setMode(Mode::Modify, QStringLiteral("MODIFY JOB CARD")); }
void frmJobCard::startDelete() { setMode(Mode::Delete, QStringLiteral("DELETE JOB CARD")); }
void frmJobCard::startView() { setMode(Mode::View, QStringLiteral("JOB CARD DETAIL")); }

void frmJobCard::onOpened()
{
    runSafely(this, [&] { reloadParties(); });
}

// ------------------------------------------------------------ lists

void frmJobCard::proposeNumber()
{
    m_proposedNo = QString::number(JobCardRules::nextJobCardNo(db()));
    txtJobCardNo->setText(m_proposedNo);
}

void frmJobCard::loadJobCardLists()
{
    const QHash<QString, QStringList> choices = JobCardRules::pressChoices(db());
    for (auto it = m_press.cbegin(); it != m_press.cend(); ++it) {
        const QString keep = it.value()->currentText();
        fillCombo(it.value(), choices.value(it.key()));
        it.value()->setEditText(keep);
    }
}

void frmJobCard::partyChanged()
{
    runSafely(this, [&] {
        const QString keep = cmbPartyPONo->currentText();
        cmbPartyPONo->clear();
        const QString code = m_pick->code();
        if (!code.isEmpty())
            cmbPartyPONo->addItems(PurchaseOrderRules::partyOrderNumbers(db(), code));
        cmbPartyPONo->setEditText(m_quiet ? keep : QString());
    });
}

void frmJobCard::partyOrderLeft()
{
    if (cmbPartyPONo->currentText().trimmed().isEmpty())
        return;
    QDate d;
    if (!runSafely(this, [&] { d = PurchaseOrderRules::orderDate(db(), m_pick->code(), cmbPartyPONo->currentText()); }))
        return;
    if (d.isValid())
        DateToMaskText(d, mskPODate);
}

void frmJobCard::clearCard()
{
    m_quiet = true;
    m_pick->clear();
    cmbPartyPONo->clear();
    cmbPartyPONo->setEditText(QString());
    txtQuantity->clear();
    mskIssueDate->clearMask();
    mskPODate->clearMask();
    for (QComboBox *c : std::as_const(m_press))
        c->setEditText(QString());
    m_quiet = false;
}

void frmJobCard::numberLeft()
{
    const qint64 number = numberIn(txtJobCardNo);
    if (number <= 0)
        return;
    std::optional<JobCard> c;
    if (!runSafely(this, [&] { c = JobCardRules::card(db(), number); }))
        return;
    m_printJobCardNo = number;
    if (!c) {
        // A number without a card: the fields stand ready for a new card.
        clearCard();
        return;
    }
    m_quiet = true;
    mskDate->setDate(c->date);
    if (c->issueDate.isValid())
        mskIssueDate->setDate(c->issueDate);
    else
        mskIssueDate->clearMask();
    m_pick->setCode(c->partyCode);
    if (cmbPartyName->currentText() != c->partyName)
        setFieldText(cmbPartyName, c->partyName);
    partyChanged();
    cmbPartyPONo->setEditText(c->partyPONo);
    if (c->poDate.isValid())
        mskPODate->setDate(c->poDate);
    else
        mskPODate->clearMask();
    txtQuantity->setText(c->quantity);
    for (auto it = m_press.cbegin(); it != m_press.cend(); ++it)
        it.value()->setEditText(c->pressValue(it.key()));
    m_quiet = false;
}

// ------------------------------------------------------------ commands

JobCard frmJobCard::entered() const
{
    JobCard c;
    c.number = numberIn(txtJobCardNo);
    c.partyPONo = cmbPartyPONo->currentText().trimmed();
    c.partyName = cmbPartyName->currentText().trimmed();
    c.partyCode = m_pick->code();
    c.date = mskDate->date();
    c.issueDate = mskIssueDate->date();
    c.poDate = mskPODate->date();
    c.quantity = txtQuantity->text().trimmed();
    for (auto it = m_press.cbegin(); it != m_press.cend(); ++it)
        c.press.insert(it.key(), it.value()->currentText().trimmed());
    return c;
}

bool frmJobCard::allowed(Command command)
{
    JobCard c = entered();
    if (command == Command::Print)
        c.number = m_printJobCardNo;
    if (c.number <= 0 || command == Command::Print || command == Command::Delete) {
        const Outcome o = JobCardRules::check(c, command);
        return o ? true : refuse(o);
    }
    if (!ValidateDate(mskDate))
        return false;
    // The issue and order dates may stay blank, but not half typed.
    for (MaskedLineEdit *d : {mskIssueDate, mskPODate})
        if (!d->typedText().trimmed().isEmpty() && !ValidateDate(d))
            return false;
    const Outcome o = JobCardRules::check(c, command);
    return o ? true : refuse(o);
}

void frmJobCard::save()
{
    const JobCard c = entered();
    const auto numbering = txtJobCardNo->text().trimmed() == m_proposedNo ? JobPaper::Numbering::Proposed
                                                                          : JobPaper::Numbering::Typed;
    Outcome out;
    if (!write(out, [&] {
            return JobCardRules::save(db(), c, numbering, session().currentUserName, session().dateToday());
        }))
        return;
    m_printJobCardNo = out.number;
    confirm(out);
    runSafely(this, [&] {
        proposeNumber();
        loadJobCardLists();
    });
    txtJobCardNo->setFocus();
}

void frmJobCard::modify()
{
    Outcome out;
    if (!write(out, [&] {
            return JobCardRules::modify(db(), entered(), session().currentUserName, session().dateToday());
        }))
        return;
    confirm(out);
    runSafely(this, [&] { loadJobCardLists(); });
}

void frmJobCard::remove()
{
    Outcome out;
    if (!write(out, [&] { return JobCardRules::remove(db(), numberIn(txtJobCardNo)); }))
        return;
    confirm(out);
}

void frmJobCard::printCard()
{
    Reports::ReportRequest req;
    if (runSafely(this, [&] { req = JobPaperPrinting::jobCard(db(), m_printJobCardNo, session().currentTitle); }))
        print(req);
}
