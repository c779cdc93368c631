#include "vouchers/ui/frmJournalVoucher.h"

#include "accounts/ui/AccountPick.h"
#include "accounts/ui/frmPartyInfo.h"
#include "foundation/Session.h"
#include "foundation/ui/CommandGate.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/QueryTableModel.h"
#include "foundation/ui/ScreenBuild.h"
#include "foundation/ui/ScreenServices.h"
#include "vouchers/Ledger.h"
#include "vouchers/VoucherLookups.h"
#include "vouchers/VoucherPosting.h"
#include "vouchers/VoucherStaging.h"
#include "vouchers/ui/ChequePick.h"
#include "vouchers/ui/VoucherFinder.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFocusEvent>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

using namespace ScreenBuild;

namespace {

const QString kAddedMessage = QStringLiteral("Party has Debited/Credited successfully");
const QString kChangedMessage = QStringLiteral("Party has modified successfully");
const QString kRemovedMessage = QStringLiteral("Party has deleted successfully");
const QString kCloseQuestion = QStringLiteral("Are you sure you want to close this voucher");
const QString kDeleteQuestion = QStringLiteral("Are you sure you want to delete this voucher");

const QStringList kGridCaptions = {QStringLiteral("SR #"),  QStringLiteral("TYPE"),   QStringLiteral("DATE"),
                                   QStringLiteral("V.#"),   QStringLiteral("DETAIL"), QStringLiteral("A/C NAME"),
                                   QStringLiteral("DEBIT"), QStringLiteral("CREDIT")};

SessionConnection &db() { return session().db(); }

} // namespace

// ------------------------------------------------------------ building

frmJournalVoucher::frmJournalVoucher(QWidget *parent)
    : BaseScreen(parent),
      m_lines({[](SessionConnection &c) { VoucherStaging(c).clear(); },
               [this](SessionConnection &c, const VoucherLine &l) { VoucherStaging(c).put(header(), l); }})
{
    setObjectName(QStringLiteral("frmJournalVoucher"));
    setTitle(QStringLiteral("ACCOUNTS VOUCHER"));
    setWindowTitle(QStringLiteral("ENTER VOUCHER"));
    buttonFrame()->hide();

    buildEntryPanel();
    frOuterVoucherNo = new VoucherFinder(frDetail);
    cmbModifyVoucherType = frOuterVoucherNo->cmbModifyVoucherType;
    txtShowVoucherNo = frOuterVoucherNo->txtShowVoucherNo;
    mskDateModifyVoucher = frOuterVoucherNo->mskDateModifyVoucher;
    cmdVoucherNoOkay = frOuterVoucherNo->cmdVoucherNoOkay;
    cmdVoucherNoCancel = frOuterVoucherNo->cmdVoucherNoCancel;
    detailLayout()->addWidget(frOuterVoucherNo, 0, 0, 1, 2, Qt::AlignTop | Qt::AlignHCenter);
    detailLayout()->addWidget(frOuterVoucher, 1, 0, 1, 2);
    detailLayout()->setRowStretch(1, 1);
    frOuterVoucherNo->hide();
    wireCommands();

    {
        const QSignalBlocker b(cmbDBCR);
        cmbDBCR->addItems({QStringLiteral("CR"), QStringLiteral("DR")});
        cmbDBCR->setCurrentText(QStringLiteral("CR"));
    }
    if (session().connection)
        runSafely(this, [&] { frOuterVoucherNo->setTypes(VoucherLookups::ledgerVoucherTypes(db())); });
}

void frmJournalVoucher::buildEntryPanel()
{
    frOuterVoucher = frame(frDetail, QStringLiteral("frOuterVoucher"));
    QWidget *p = frOuterVoucher;
    auto *outer = new QVBoxLayout(p);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->setSpacing(8);
    auto *fieldLayout = new QGridLayout;
    outer->addLayout(fieldLayout);
    FieldGrid fields(fieldLayout);

    using K = KeyRules::Kind;
    mskDate = masked(p, QStringLiteral("mskDate"), MaskedLineEdit::dateMask());
    cmbVoucherType = combo(p, QStringLiteral("cmbVoucherType"), K::LettersUpper);
    txtVoucherNo = lineEdit(p, QStringLiteral("txtVoucherNo"), K::DigitsOnly);
    txtInvoiceNo = lineEdit(p, QStringLiteral("txtInvoiceNo"), K::DigitsOnly);
    cmbPartyName = combo(p, QStringLiteral("cmbPartyName"));
    cmbPartyName->setMinimumContentsLength(40);
    txtPartyCode = masked(p, QStringLiteral("txtPartyCode"), MaskedLineEdit::accountCodeMask()); // from the name
    txtPartyCode->setReadOnly(true);
    txtPartyCode->setFocusPolicy(Qt::ClickFocus);
    txtBalance = display(p, QStringLiteral("txtBalance"), true);
    txtDesc = lineEdit(p, QStringLiteral("txtDesc"), K::SafeText);
    txtAmount = amountEdit(p, QStringLiteral("txtAmount"));
    cmbDBCR = combo(p, QStringLiteral("cmbDBCR"), K::LettersUpper);
    chkPostDatedCheque = check(p, QStringLiteral("chkPostDatedCheque"), QStringLiteral("POSTED CHEQUE"));
    cmbChequeDesc = combo(p, QStringLiteral("cmbChequeDesc"), K::SafeText);
    cmbChequeDesc->setMinimumContentsLength(20);
    cmbCHQVoucherNo = combo(p, QStringLiteral("cmbCHQVoucherNo"), K::DigitsOnly);
    m_cheque = new ChequePick(chkPostDatedCheque, cmbChequeDesc, cmbCHQVoucherNo, this);

    fields.putFixed(0, 0, QStringLiteral("DATE"), mskDate, 110);
    fields.putFixed(0, 1, QStringLiteral("VOUCHER TYPE"), cmbVoucherType, 90);
    fields.putFixed(0, 2, QStringLiteral("VOUCHER #"), txtVoucherNo, 100);
    fields.putFixed(0, 3, QStringLiteral("INV/RECEIPT #"), txtInvoiceNo, 120);
    fields.put(1, 0, QStringLiteral("PARTY NAME"), cmbPartyName, 2, true);
    fields.putFixed(1, 2, QStringLiteral("PARTY CODE"), txtPartyCode, 100);
    fields.putFixed(1, 3, QStringLiteral("ACCOUNT BALANCE"), txtBalance, 190);
    fields.put(2, 0, QStringLiteral("DESCRIPTION"), txtDesc, 3, true);
    fields.putFixed(3, 0, QStringLiteral("AMOUNT"), txtAmount, 140);
    fields.putFixed(3, 1, QStringLiteral("DR/CR"), cmbDBCR, 90);
    fields.put(3, 2, QString(), chkPostDatedCheque);
    fields.put(4, 0, QStringLiteral("CHQ DESC:"), cmbChequeDesc, 2, true);
    fields.putFixed(4, 2, QStringLiteral("VOUCHER #:"), cmbCHQVoucherNo, 100);
    fieldLayout->setColumnStretch(8, 1);

    cmdNew = button(p, QStringLiteral("cmdNew"), QStringLiteral("&NEW"));
    cmdModify = button(p, QStringLiteral("cmdModify"), QStringLiteral("&MODIFY"));
    cmdDelete = button(p, QStringLiteral("cmdDelete"), QStringLiteral("&DELETE"));
    frDebitButton = buttonBar(p, QStringLiteral("frDebitButton"), {cmdNew, cmdModify, cmdDelete});
    outer->addWidget(frDebitButton);

    outer->addLayout(gridHeading(p, QStringLiteral("VOUCHER TRANSACTION LIST"),
                                 QStringLiteral("SELECT AND DOUBLE CLICK TO MODIFY ANY ENTRY")));
    dgVoucher = grid(p, QStringLiteral("dgVoucher"));
    proportionalColumns(dgVoucher, {0, 600, 1100, 600, 2613, 2400, 1200, 1200});
    amountColumns(dgVoucher, {6, 7});
    dgVoucher->setMinimumHeight(150);
    outer->addWidget(dgVoucher, 1);

    lblPCashInHand = new QLabel(QStringLiteral("PREVIOUS CASH :"), p);
    lblPCashInHand->setObjectName(QStringLiteral("lblPCashInHand"));
    lblCCashInHand = new QLabel(QStringLiteral("CURRENT CASH :"), p);
    lblCCashInHand->setObjectName(QStringLiteral("lblCCashInHand"));
    txtPCashInHand = display(p, QStringLiteral("txtPCashInHand"), true);
    txtCCashInHand = display(p, QStringLiteral("txtCCashInHand"), true);
    txtTotalDebit = display(p, QStringLiteral("txtTotalDebit"), true);
    txtTotalCredit = display(p, QStringLiteral("txtTotalCredit"), true);
    for (QLineEdit *e : {txtPCashInHand, txtCCashInHand, txtTotalDebit, txtTotalCredit})
        e->setMaximumWidth(180);
    auto *figureLayout = new QGridLayout;
    FieldGrid figures(figureLayout);
    figureLayout->addWidget(lblPCashInHand, 0, 0, Qt::AlignRight);
    figures.put(0, 0, QString(), txtPCashInHand);
    figureLayout->addWidget(lblCCashInHand, 0, 2, Qt::AlignRight);
    figures.put(0, 1, QString(), txtCCashInHand);
    figureLayout->setColumnStretch(4, 1);
    figures.put(0, 3, QStringLiteral("DEBIT"), txtTotalDebit);
    figures.put(0, 4, QStringLiteral("CREDIT"), txtTotalCredit);
    outer->addLayout(figureLayout);

    cmdModifyVoucher = button(p, QStringLiteral("cmdModifyVoucher"), QStringLiteral("&SAVE"));
    cmdDeleteVoucher = button(p, QStringLiteral("cmdDeleteVoucher"), QStringLiteral("DELETE &VOUCHER"));
    cmdAddParty = button(p, QStringLiteral("cmdAddParty"), QStringLiteral("ADD &PARTY"));
    frSave = buttonBar(p, QStringLiteral("frSave"), {cmdModifyVoucher, cmdDeleteVoucher, cmdAddParty}, true);
    outer->addWidget(frSave);

    m_pick = new AccountPick(cmbPartyName, txtPartyCode, nullptr, this);

    // Enter moves on, in the order a clerk types a line.
    typingOrder({mskDate, cmbVoucherType, txtVoucherNo, txtInvoiceNo, cmbPartyName, txtDesc, txtAmount, cmbDBCR,
                 chkPostDatedCheque, cmbChequeDesc, cmbCHQVoucherNo, cmdNew, cmdModify, cmdDelete, dgVoucher,
                 cmdModifyVoucher, cmdDeleteVoucher, cmdAddParty},
                cmdNew, {cmbPartyName});
    mskDate->installEventFilter(this);
    cmbDBCR->installEventFilter(this);
}

void frmJournalVoucher::wireCommands()
{
    using VoucherRules::LineCommand;
    // The line buttons check as they are entered only when an amount is
    // typed: passing over them on the way elsewhere says nothing.
    auto lineGate = [this](QPushButton *b, LineCommand c, void (frmJournalVoucher::*work)()) {
        auto *gate = new CommandGate(b, [this, c] { return lineAllowed(c); }, [this, work] { (this->*work)(); });
        gate->checkOnFocusWhen([this] { return !txtAmount->text().isEmpty(); });
    };
    lineGate(cmdNew, LineCommand::Add, &frmJournalVoucher::addLine);
    lineGate(cmdModify, LineCommand::Change, &frmJournalVoucher::changeLine);
    lineGate(cmdDelete, LineCommand::Remove, &frmJournalVoucher::removeLine);
    new CommandGate(cmdModifyVoucher, [this] { return saveAllowed(); }, [this] { saveVoucher(); });
    new CommandGate(cmdVoucherNoOkay, [this] { return ValidateDate(mskDateModifyVoucher); },
                    [this] { loadVoucher(); });
    connect(cmdDeleteVoucher, &QPushButton::clicked, this, [this] { deleteVoucher(); });
    connect(cmdVoucherNoCancel, &QPushButton::clicked, this, [this] { closeScreen(); });
    connect(cmdAddParty, &QPushButton::clicked, this, [this] {
        const QString code = frmPartyInfo::addAccountModal(this);
        loadLists();
        if (!code.isEmpty())
            m_pick->setCode(code);
        cmbPartyName->setFocus();
    });

    connect(cmbVoucherType, &QComboBox::editTextChanged, this, [this] { voucherTypeChanged(); });
    connect(m_pick, &AccountPick::accountChanged, this, [this](const QString &code) {
        if (m_quiet || code.isEmpty())
            return; // an unknown name leaves the balance as it stands
        runSafely(this, [&] { txtBalance->setText(Ledger::balanceText(Ledger::accountBalance(db(), code))); });
    });
    connect(dgVoucher, &QTableView::doubleClicked, this, [this](const QModelIndex &i) { loadLine(i.row()); });
    connect(dgVoucher, &QTableView::activated, this, [this](const QModelIndex &i) { loadLine(i.row()); });
}

// ------------------------------------------------------------ opening

void StartVoucherScreen(frmJournalVoucher *screen) { screen->startNew(); }

void frmJournalVoucher::startNew()
{
    m_mode = Mode::New;
    runSafely(this, [&] { m_lines.clear(db()); });
    showEntryPanel(true);
    onOpened();
    m_pick->clear();
    mskDate->setDate(session().dateToday());
    txtTotalCredit->clear();
    txtTotalDebit->clear();
    showCashFigures();
    rebindGrid();
    mskDate->setFocus();
}

void frmJournalVoucher::setVoucherTypes(const QStringList &items, const QString &start)
{
    {
        const QSignalBlocker b(cmbVoucherType);
        cmbVoucherType->clear();
        cmbVoucherType->addItems(items);
        cmbVoucherType->setEditText(QString());
    }
    cmbVoucherType->setCurrentText(start);
    voucherTypeChanged();
    mskDate->setFocus();
}

void frmJournalVoucher::startModify()
{
    m_mode = Mode::Modify;
    runSafely(this, [&] {
        m_lines.clear(db());
        frOuterVoucherNo->setTypes(VoucherLookups::ledgerVoucherTypes(db()));
    });
    showEntryPanel(false);
    mskDate->setDate(session().dateToday());
    setWindowTitle(QStringLiteral("MODIFY VOUCHER"));
    rebindGrid();
    cmbModifyVoucherType->setFocus();
}

void frmJournalVoucher::onOpened() { loadLists(); }

void frmJournalVoucher::loadReadyVoucher(const Voucher &voucher)
{
    startNew();
    setVoucherTypes({voucher.key.type}, voucher.key.type);
    mskDate->setDate(voucher.key.date);
    runSafely(this, [&] {
        for (const VoucherLine &l : voucher.lines)
            m_lineSrNo = m_lines.add(db(), l);
    });
    refreshFigures();
    txtVoucherNo->setFocus();
}

void frmJournalVoucher::loadLists()
{
    runSafely(this, [&] {
        const QString keep = cmbPartyName->currentText();
        m_quiet = true;
        m_pick->setAccounts(VoucherLookups::accountList(db()));
        cmbPartyName->setEditText(keep);
        m_quiet = false;
    });
    m_cheque->load();
}

void frmJournalVoucher::showEntryPanel(bool entry)
{
    frOuterVoucher->setVisible(entry);
    frOuterVoucherNo->setVisible(!entry);
    for (QWidget *w : std::initializer_list<QWidget *>{lblPCashInHand, txtPCashInHand, lblCCashInHand, txtCCashInHand})
        w->setVisible(entry);
}

// ------------------------------------------------------------ figures

void frmJournalVoucher::rebindGrid()
{
    runSafely(this, [&] {
        qobject_cast<QueryTableModel *>(dgVoucher->model())->setResult(VoucherLookups::gridRows(db()), kGridCaptions);
    });
}

void frmJournalVoucher::showTotals()
{
    const VoucherTotals t = VoucherRules::totals(m_lines.all());
    txtTotalDebit->setText(t.debit.value_or(Money()).toDisplayString());
    txtTotalCredit->setText(t.credit.value_or(Money()).toDisplayString());
}

// Previous cash from the ledger as it stands (in modify mode: before the
// voucher's date), and the cash after this voucher for CP and CR.
void frmJournalVoucher::showCashFigures()
{
    std::optional<Money> cash;
    if (!runSafely(this, [&] {
            cash = m_mode == Mode::Modify ? Ledger::accountBalanceBefore(db(), Ledger::kCashCode, originalKey().date)
                                          : Ledger::accountBalance(db(), Ledger::kCashCode);
        }))
        return;
    const auto fig = VoucherRules::cashFigure(cash);
    m_previousCash = fig.magnitude;
    m_previousCashSide = fig.side;
    txtPCashInHand->setText(fig.text());
    // The cash after this voucher; with no line typed, the cash as it stands.
    if (m_lines.all().isEmpty()) {
        txtCCashInHand->setText(fig.text());
        return;
    }
    const auto now = VoucherRules::currentCash(cmbVoucherType->currentText().trimmed(), m_previousCash,
                                               VoucherRules::totals(m_lines.all()));
    txtCCashInHand->setText(now ? VoucherRules::cashFigure(now).text() : QString());
}

void frmJournalVoucher::refreshFigures()
{
    showTotals();
    showCashFigures();
    if (const QString code = m_pick->code(); !code.isEmpty())
        runSafely(this, [&] { txtBalance->setText(Ledger::balanceText(Ledger::accountBalance(db(), code))); });
    rebindGrid();
}

// ------------------------------------------------------------ field behaviours

void frmJournalVoucher::proposeNumber()
{
    NextVoucherNo(mskDate, txtVoucherNo, cmbVoucherType->currentText().trimmed());
    m_proposedNo = txtVoucherNo->text();
}

void frmJournalVoucher::voucherTypeChanged()
{
    if (m_quiet)
        return;
    proposeNumber();
    forceSide();
    if (m_mode == Mode::New)
        setWindowTitle(VoucherRules::titleOfType(cmbVoucherType->currentText().trimmed()));
}

void frmJournalVoucher::forceSide()
{
    if (const auto side = VoucherRules::forcedSide(cmbVoucherType->currentText().trimmed())) {
        const QSignalBlocker b(cmbDBCR);
        cmbDBCR->setCurrentText(*side);
    }
}

void frmJournalVoucher::dateLeft()
{
    if (!ValidateDate(mskDate) || !CheckClosingDate(mskDate))
        return;
    // A slip of the year's digits: asked once for each date so typed.
    const QDate d = mskDate->date();
    if (d > session().dateToday().addYears(1) && d != m_farDateTaken) {
        if (!MessageService::askYesNo(this, VoucherMessages::farDate(d))) {
            mskDate->setFocus(Qt::OtherFocusReason);
            return;
        }
        m_farDateTaken = d;
    }
    if (m_mode == Mode::New)
        proposeNumber();
}

void frmJournalVoucher::sideLeft()
{
    const Outcome o = VoucherRules::checkSide(cmbDBCR->currentText());
    if (!o) {
        refuse(o);
        return;
    }
    forceSide();
}

bool frmJournalVoucher::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusOut && !m_quiet && isVisible() && frOuterVoucher->isVisible()) {
        const auto reason = static_cast<QFocusEvent *>(event)->reason();
        // A box or another window taking the focus is no leaving of the field.
        if (reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason) {
            if (watched == mskDate)
                QMetaObject::invokeMethod(this, [this] { dateLeft(); }, Qt::QueuedConnection);
            else if (watched == cmbDBCR)
                QMetaObject::invokeMethod(this, [this] { sideLeft(); }, Qt::QueuedConnection);
        }
    }
    return BaseScreen::eventFilter(watched, event);
}

// ------------------------------------------------------------ checks

bool frmJournalVoucher::lineAllowed(VoucherRules::LineCommand command)
{
    if (command == VoucherRules::LineCommand::Add && !ValidateDate(mskDate))
        return false;
    VoucherRules::LineEntry e;
    e.voucherNo = txtVoucherNo->text();
    e.accountFound = m_pick->hasAccount();
    e.amount = txtAmount->text();
    e.side = cmbDBCR->currentText();
    e.cheque = chkPostDatedCheque->isChecked();
    e.chequeDesc = cmbChequeDesc->currentText();
    e.chequeNo = cmbCHQVoucherNo->currentText();
    const Outcome o = VoucherRules::checkLine(e, command);
    if (!o)
        return refuse(o);
    if (command != VoucherRules::LineCommand::Remove)
        forceSide();
    return true;
}

bool frmJournalVoucher::saveAllowed()
{
    if (m_mode != Mode::Modify)
        return true;
    // A new number or date must not be another voucher's.
    const VoucherKey original = originalKey();
    const VoucherKey h = header();
    if (h.number == original.number && h.date == original.date)
        return true;
    bool taken = false;
    if (!runSafely(this, [&] { taken = Ledger::voucherNumberTaken(db(), h.type, h.number, original); }))
        return false;
    if (taken)
        return refuse(Outcome::refusal(VoucherMessages::kDuplicate, QStringLiteral("txtVoucherNo")));
    return true;
}

// ------------------------------------------------------------ lines

VoucherLine frmJournalVoucher::currentLine() const
{
    VoucherLine l;
    l.invoiceNo = txtInvoiceNo->text().trimmed();
    l.partyName = cmbPartyName->currentText();
    l.partyCode = m_pick->code();
    l.description = txtDesc->text().trimmed();
    const Money amount = Money::parseOrZero(txtAmount->text());
    (cmbDBCR->currentText() == QLatin1String("CR") ? l.credit : l.debit) = amount;
    l.cheque = m_cheque->link();
    return l;
}

VoucherKey frmJournalVoucher::header() const
{
    return {cmbVoucherType->currentText().trimmed(), txtVoucherNo->text().trimmed().toLongLong(), mskDate->date()};
}

VoucherKey frmJournalVoucher::originalKey() const
{
    return {cmbModifyVoucherType->currentText().trimmed(), txtShowVoucherNo->text().trimmed().toLongLong(),
            mskDateModifyVoucher->date()};
}

std::optional<ScreenDocument> frmJournalVoucher::currentDocument() const
{
    if (m_mode != Mode::Modify || !frOuterVoucher->isVisibleTo(this))
        return std::nullopt;
    const VoucherKey key = originalKey();
    return ScreenDocument{key.type, key.number, QString()};
}

void frmJournalVoucher::afterLineCommand(const QString &confirmation)
{
    refreshFigures();
    MessageService::confirmLine(this, confirmation);
    txtAmount->clear();
    cmbPartyName->setFocus();
}

void frmJournalVoucher::addLine()
{
    session().workDate = header().date;
    if (runSafely(this, [&] { m_lineSrNo = m_lines.add(db(), currentLine()); }))
        afterLineCommand(kAddedMessage);
}

void frmJournalVoucher::changeLine()
{
    if (runSafely(this, [&] { m_lines.change(db(), m_lineSrNo, currentLine()); }))
        afterLineCommand(kChangedMessage);
}

void frmJournalVoucher::removeLine()
{
    const std::optional<ChequeLink> giveBack = m_cheque->link();
    if (runSafely(this, [&] { m_lines.remove(db(), m_lineSrNo, [&](VoucherLine &l) { l.cheque = giveBack; }); }))
        afterLineCommand(kRemovedMessage);
}

void frmJournalVoucher::loadLine(int row)
{
    auto *model = qobject_cast<QueryTableModel *>(dgVoucher->model());
    if (!model || row < 0 || row >= model->rowCount())
        return;
    const VoucherLine *line = m_lines.find(model->rawValue(row, 0).toLongLong());
    if (!line)
        return;
    m_lineSrNo = line->srNo;
    txtInvoiceNo->setText(line->invoiceNo);
    m_pick->setCode(line->partyCode);
    if (cmbPartyName->currentText() != line->partyName)
        setFieldText(cmbPartyName, line->partyName);
    txtDesc->setText(line->description);
    if (line->debit.isPositive()) {
        txtAmount->setText(line->debit.toFieldString());
        cmbDBCR->setCurrentText(QStringLiteral("DR"));
    } else if (line->credit.isPositive()) {
        txtAmount->setText(line->credit.toFieldString());
        cmbDBCR->setCurrentText(QStringLiteral("CR"));
    }
    txtAmount->setFocus();
}

void frmJournalVoucher::clearLineFields()
{
    m_pick->clear();
    txtDesc->clear();
    txtAmount->clear();
    txtInvoiceNo->clear();
    txtBalance->clear();
}

// ------------------------------------------------------------ saving

void frmJournalVoucher::saveVoucher()
{
    if (txtTotalDebit->text().isEmpty() && txtTotalCredit->text().isEmpty()) {
        refuse(Outcome::refusal(VoucherMessages::kNothingEntered, QStringLiteral("cmbPartyName")));
        return;
    }
    if (txtVoucherNo->text().trimmed().isEmpty()) {
        refuse(Outcome::refusal(VoucherMessages::kNoVoucherNo, QStringLiteral("txtVoucherNo")));
        return;
    }
    // The date of the rows must be a real, open date, however the focus
    // travelled.
    if (!ValidateDate(mskDate) || !CheckClosingDate(mskDate))
        return;
    const VoucherKey h = header();
    VoucherPosting posting(db(), session().currentUserName, session().dateToday());
    Outcome out;
    const bool ran = runSafely(this, [&] {
        m_lines.ensureMirror(db());
        if (m_mode == Mode::Modify) {
            out = posting.saveModified(originalKey(), h);
        } else {
            const bool proposed = txtVoucherNo->text() == m_proposedNo;
            out = posting.saveNew(h, proposed ? NumberPolicy::Proposed : NumberPolicy::Typed);
        }
    });
    if (!ran)
        return; // the database's reason was shown; the lines are still on the screen
    if (!out) {
        refuse(out);
        return;
    }
    m_lines.forget();
    if (!out.notice.isEmpty())
        MessageService::information(this, out.notice);
    MessageService::information(this, out.message);
    txtTotalCredit->clear();
    txtTotalDebit->clear();
    if (m_mode == Mode::Modify) {
        clearLineFields();
        rebindGrid();
        showEntryPanel(false);
        txtShowVoucherNo->setFocus();
        return;
    }
    txtVoucherNo->setText(QString::number(out.number));
    refreshFigures();
    txtTotalCredit->clear();
    txtTotalDebit->clear();
    runSafely(this, [&] { proposeNumber(); });
    cmbVoucherType->setFocus();
}

void frmJournalVoucher::deleteVoucher()
{
    if (!MessageService::askYesNoCritical(this, kDeleteQuestion))
        return;
    if (m_mode == Mode::Modify) {
        Outcome out;
        if (!runSafely(this, [&] {
                m_lines.ensureMirror(db());
                out = VoucherPosting(db(), session().currentUserName, session().dateToday())
                          .deleteVoucher(originalKey());
            }))
            return;
        m_lines.forget();
        MessageService::information(this, out.message);
    } else if (!runSafely(this, [&] { m_lines.clear(db()); })) {
        return;
    }
    txtTotalCredit->clear();
    txtTotalDebit->clear();
    rebindGrid();
    closeScreen();
}

void frmJournalVoucher::loadVoucher()
{
    runSafely(this, [&] {
        m_lines.clear(db());
        const Outcome asked = VoucherRules::checkVoucherQuestion(txtShowVoucherNo->text(),
                                                                 cmbModifyVoucherType->currentText());
        if (!asked) {
            refuse(asked);
            return;
        }
        const VoucherKey key = originalKey();
        session().workDate = key.date;
        const QVector<VoucherLine> lines = VoucherStaging(db()).postedLines(key);
        if (lines.isEmpty()) {
            refuse(Outcome::refusal(VoucherMessages::kNotFound, QStringLiteral("txtShowVoucherNo")));
            return;
        }
        m_quiet = true;
        mskDate->setDate(key.date);
        cmbVoucherType->clear();
        cmbVoucherType->addItem(key.type);
        cmbVoucherType->setCurrentText(key.type);
        txtVoucherNo->setText(QString::number(key.number));
        m_quiet = false;
        m_lines.load(db(), lines);
        m_proposedNo.clear();
        forceSide();
        clearLineFields();
        showEntryPanel(true);
        refreshFigures();
        cmbPartyName->setFocus();
    });
}

// ------------------------------------------------------------ closing

void frmJournalVoucher::closeEvent(QCloseEvent *event)
{
    if (mayCloseDocument(this, db(), m_lines, kCloseQuestion))
        event->accept();
    else
        event->ignore();
}
