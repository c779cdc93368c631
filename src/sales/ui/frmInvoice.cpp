#include "sales/ui/frmInvoice.h"

#include "accounts/ui/AccountPick.h"
#include "accounts/ui/frmPartyInfo.h"
#include "foundation/Session.h"
#include "foundation/ui/CommandGate.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/QueryTableModel.h"
#include "foundation/ui/ScreenBuild.h"
#include "foundation/ui/ScreenServices.h"
#include "sales/InvoicePosting.h"
#include "sales/InvoiceStaging.h"

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
using namespace InvoiceMessages;
using InvoiceRules::LineCommand;

namespace {

const QStringList kGridCaptions = {QStringLiteral("SR #"), QStringLiteral("DESCRIPTION"), QStringLiteral("P.O"),
    QStringLiteral("QUANTITY"), QStringLiteral("RATE")};

SessionConnection &db()
{
    return session().db();
}

QString orZero(const QString &text)
{
    return text.trimmed().isEmpty() ? QStringLiteral("0") : text.trimmed();
}

} // namespace

// ------------------------------------------------------------ building

frmInvoice::frmInvoice(QWidget *parent)
    : BaseScreen(parent)
    , m_lines({[](SessionConnection &c) { InvoiceStaging(c).clear(); },
          [this](SessionConnection &c, const InvoiceLine &l) { InvoiceStaging(c).put(header(), l); }})
{
    setObjectName(QStringLiteral("frmInvoice"));
    setTitle(QStringLiteral("SALES TAX INVOICE"));
    setWindowTitle(QStringLiteral("SALES TAX INVOICE"));
    buttonFrame()->hide();

    buildEntryPanel();
    buildFinder();
    detailLayout()->addWidget(frOuterInvoiceNo, 0, 0, 1, 2, Qt::AlignTop | Qt::AlignHCenter);
    detailLayout()->addWidget(frOuterInvoice, 1, 0, 1, 2);
    detailLayout()->setRowStretch(1, 1);
    frOuterInvoiceNo->hide();
    wireCommands();
    if (session().connection)
        runSafely(this, [&] {
            m_quiet = true;
            LoadTitleList(cmbTitleName);
            LoadTitleList(cmbModifyTitleName);
            fillCombo(txtTermOfSale, InvoiceLookups::termsOfSale(db()));
            txtTermOfSale->setEditText(QString());
            m_quiet = false;
        });
}

void frmInvoice::buildEntryPanel()
{
    using K = KeyRules::Kind;
    frOuterInvoice = frame(frDetail, QStringLiteral("frOuterInvoice"));
    QWidget *p = frOuterInvoice;
    auto *outer = new QVBoxLayout(p);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->setSpacing(6);
    auto *fieldLayout = new QGridLayout;
    outer->addLayout(fieldLayout);
    FieldGrid f(fieldLayout);

    cmbTitleName = combo(p, QStringLiteral("cmbTitleName"), K::LettersUpper);
    cmbTitleName->setMinimumContentsLength(22);
    mskDate = masked(p, QStringLiteral("mskDate"), MaskedLineEdit::dateMask());
    txtInvoiceNo = lineEdit(p, QStringLiteral("txtInvoiceNo"), K::DigitsOnly);
    cmbPartyName = combo(p, QStringLiteral("cmbPartyName"));
    cmbPartyName->setMinimumContentsLength(36);
    txtPartyCode = masked(p, QStringLiteral("txtPartyCode"), MaskedLineEdit::accountCodeMask());
    txtPartyCode->setReadOnly(true);
    txtPartyCode->setFocusPolicy(Qt::ClickFocus);
    cmdAddParty = button(p, QStringLiteral("cmdAddParty"), QStringLiteral("ADD &PARTY"));
    txtTermOfSale = combo(p, QStringLiteral("txtTermOfSale"), K::SafeText);
    makeSearchable(txtTermOfSale);
    txtDescCode = lineEdit(p, QStringLiteral("txtDescCode"), K::SafeText);
    cmbPartyPONo = combo(p, QStringLiteral("cmbPartyPONo"), K::SafeText);
    cmbPartyPONo->setMinimumContentsLength(12);
    cmbChallanNo = combo(p, QStringLiteral("cmbChallanNo"), K::DigitsOnly);
    cmbChallanNo->setMinimumContentsLength(8);
    cmbDescSrNo = combo(p, QStringLiteral("cmbDescSrNo"), K::SafeText);
    cmbDescSrNo->setMinimumContentsLength(30);
    cmbDesc = combo(p, QStringLiteral("cmbDesc"), K::SafeText);
    cmbDesc->setMinimumContentsLength(30);
    chkInvoiceDesc = check(p, QStringLiteral("chkInvoiceDesc"), QStringLiteral("INVOICE DESC"));
    txtInvoiceDesc = lineEdit(p, QStringLiteral("txtInvoiceDesc"), K::SafeText);
    cmbDemandNo = combo(p, QStringLiteral("cmbDemandNo"), K::SafeText);
    cmbDemandNo->setMinimumContentsLength(10);
    txtWeight = lineEdit(p, QStringLiteral("txtWeight"), K::DecimalOnly);
    txtQuantity = amountEdit(p, QStringLiteral("txtQuantity"));
    txtRate = amountEdit(p, QStringLiteral("txtRate"));
    txtType = lineEdit(p, QStringLiteral("txtType"), K::SafeText);
    txtPrice = display(p, QStringLiteral("txtPrice"), true);
    txtRateOfSaleTax = amountEdit(p, QStringLiteral("txtRateOfSaleTax"));
    txtFurtherTax = amountEdit(p, QStringLiteral("txtFurtherTax"));
    txtCED = amountEdit(p, QStringLiteral("txtCED"));
    txtDTRE = lineEdit(p, QStringLiteral("txtDTRE"), K::SafeText);
    txtGateEntryNo = lineEdit(p, QStringLiteral("txtGateEntryNo"), K::SafeText);

    f.put(0, 0, QStringLiteral("TITLE:"), cmbTitleName);
    f.putFixed(0, 1, QStringLiteral("DATE/INVOICE #:"), mskDate, 110);
    f.putFixed(0, 2, QString(), txtInvoiceNo, 100);
    f.put(1, 0, QStringLiteral("PARTY NAME:"), cmbPartyName, 2, true);
    f.putFixed(1, 2, QString(), txtPartyCode, 100);
    f.put(1, 3, QString(), cmdAddParty);
    f.put(2, 0, QStringLiteral("SALE REG. DESC:"), txtTermOfSale, 2, true);
    f.putFixed(2, 2, QStringLiteral("DESC.CODE:"), txtDescCode, 100);
    f.put(2, 3, QStringLiteral("P.O #:"), cmbPartyPONo);
    f.put(3, 0, QStringLiteral("CHALLAN #:"), cmbChallanNo);
    f.put(3, 1, QStringLiteral("SORT DESC:"), cmbDescSrNo, 2, true);
    f.put(3, 3, QString(), chkInvoiceDesc);
    f.put(4, 1, QString(), cmbDesc, 2, true);
    f.put(5, 0, QStringLiteral("INVOICE DESC:"), txtInvoiceDesc, 3, true);
    f.put(6, 0, QStringLiteral("WEIGHT/DEMAND:"), cmbDemandNo);
    f.putFixed(6, 1, QString(), txtWeight, 100);
    f.putFixed(6, 2, QStringLiteral("TYPE:"), txtType, 100);
    f.putFixed(7, 0, QStringLiteral("QUANTITY:"), txtQuantity, 120);
    f.putFixed(7, 1, QStringLiteral("RATE/AMOUNT:"), txtRate, 110);
    f.putFixed(7, 2, QString(), txtPrice, 140);
    f.putFixed(8, 0, QStringLiteral("S.TAX / F.TAX %:"), txtRateOfSaleTax, 120);
    f.putFixed(8, 1, QString(), txtFurtherTax, 110);
    f.putFixed(8, 2, QStringLiteral("CED / DTRE #:"), txtCED, 100);
    f.put(8, 3, QString(), txtDTRE);
    f.putFixed(9, 0, QStringLiteral("GATE EENTRY #:"), txtGateEntryNo, 120);
    fieldLayout->setColumnStretch(8, 1);

    cmdNewInvoice = button(p, QStringLiteral("cmdNewInvoice"), QStringLiteral("NEXT &INVOICE #"));
    cmdNew = button(p, QStringLiteral("cmdNew"), QStringLiteral("&NEW"));
    cmdModify = button(p, QStringLiteral("cmdModify"), QStringLiteral("&MODIFY"));
    cmdDelete = button(p, QStringLiteral("cmdDelete"), QStringLiteral("&DELETE"));
    outer->addWidget(buttonBar(p, QStringLiteral("frLineButton"), {cmdNewInvoice, cmdNew, cmdModify, cmdDelete}));

    lblInvoiceGrid = new QLabel(QStringLiteral(" ITEM DETAIL"), p);
    lblInvoiceGrid->setObjectName(QStringLiteral("lblInvoiceGrid"));
    lblInvoiceGrid->setStyleSheet(QStringLiteral("font-weight: bold;"));
    outer->addWidget(lblInvoiceGrid);
    dgInvoice = grid(p, QStringLiteral("dgInvoice"));
    proportionalColumns(dgInvoice, {0, 2800, 1200, 1200, 1200});
    dgInvoice->setMinimumHeight(130);
    outer->addWidget(dgInvoice, 1);

    txtValueExSaleTax = display(p, QStringLiteral("txtValueExSaleTax"), true);
    txtSaleTax = display(p, QStringLiteral("txtSaleTax"), true);
    txtTotalCED = display(p, QStringLiteral("txtTotalCED"), true);
    txtNetAmount = display(p, QStringLiteral("txtNetAmount"), true);
    auto *totalLayout = new QGridLayout;
    FieldGrid totals(totalLayout);
    totals.put(0, 0, QStringLiteral("VALUE EX."), txtValueExSaleTax);
    totals.put(0, 1, QStringLiteral("SALE TAX"), txtSaleTax);
    totals.put(0, 2, QStringLiteral("NET CED"), txtTotalCED);
    totals.put(0, 3, QStringLiteral("NET AMOUNT"), txtNetAmount);
    outer->addLayout(totalLayout);

    cmdModifyInvoice = button(p, QStringLiteral("cmdModifyInvoice"), QStringLiteral("&SAVE"));
    cmdDeleteInvoice = button(p, QStringLiteral("cmdDeleteInvoice"), QStringLiteral("DELETE IN&VOICE"));
    outer->addWidget(buttonBar(p, QStringLiteral("frSave"), {cmdModifyInvoice, cmdDeleteInvoice}, true));

    m_pick = new AccountPick(cmbPartyName, txtPartyCode, nullptr, this);

    typingOrder({cmbTitleName, mskDate, txtInvoiceNo, cmbPartyName, txtTermOfSale, txtDescCode, cmbPartyPONo,
                    cmbChallanNo, cmbDescSrNo, cmbDesc, chkInvoiceDesc, txtInvoiceDesc, cmbDemandNo, txtWeight, txtType,
                    txtQuantity, txtRate, txtRateOfSaleTax, txtFurtherTax, txtCED, txtDTRE, txtGateEntryNo, cmdNew,
                    cmdModify, cmdDelete, dgInvoice, cmdModifyInvoice, cmdDeleteInvoice, cmdNewInvoice},
        cmdNew, {cmbPartyName});
    for (QWidget *w : std::initializer_list<QWidget *>{txtTermOfSale, cmbPartyPONo, cmbChallanNo, cmbDesc, cmbDemandNo,
             txtWeight, txtQuantity, txtRate, txtRateOfSaleTax, txtFurtherTax, txtCED})
        w->installEventFilter(this);
}

void frmInvoice::buildFinder()
{
    frOuterInvoiceNo = frame(frDetail, QStringLiteral("frOuterInvoiceNo"));
    frOuterInvoiceNo->setFrameShape(QFrame::StyledPanel);
    auto *layout = new QGridLayout(frOuterInvoiceNo);
    layout->setContentsMargins(24, 16, 24, 16);
    FieldGrid g(layout);
    auto *heading = new QLabel(QStringLiteral("MODIFY INVOICE"), frOuterInvoiceNo);
    heading->setObjectName(QStringLiteral("lblInvoiceNo"));
    heading->setAlignment(Qt::AlignCenter);
    heading->setStyleSheet(QStringLiteral("font-weight: bold; font-size: 12pt; color: #017C6A;"));
    cmbModifyTitleName = combo(frOuterInvoiceNo, QStringLiteral("cmbModifyTitleName"), KeyRules::Kind::LettersUpper);
    cmbModifyTitleName->setMinimumContentsLength(22);
    txtShowInvoiceNo = lineEdit(frOuterInvoiceNo, QStringLiteral("txtShowInvoiceNo"), KeyRules::Kind::DigitsOnly);
    mskDateModifyInvoice = masked(frOuterInvoiceNo, QStringLiteral("mskDateModifyInvoice"), MaskedLineEdit::dateMask());
    cmdInvoiceNoOkay = button(frOuterInvoiceNo, QStringLiteral("cmdInvoiceNoOkay"), QStringLiteral("&OKAY"));
    cmdInvoiceNoCancel = button(frOuterInvoiceNo, QStringLiteral("cmdInvoiceNoCancel"), QStringLiteral("&CANCEL"));
    layout->addWidget(heading, 0, 0, 1, 2);
    g.put(1, 0, QStringLiteral("TITLE NAME:"), cmbModifyTitleName);
    g.put(2, 0, QStringLiteral("INVOICE #:"), txtShowInvoiceNo, 1, true);
    g.put(3, 0, QStringLiteral("INVOICE DATE:"), mskDateModifyInvoice);
    g.buttons(4, 0, {cmdInvoiceNoOkay, cmdInvoiceNoCancel});
    typingOrder({cmbModifyTitleName, txtShowInvoiceNo, mskDateModifyInvoice, cmdInvoiceNoOkay, cmdInvoiceNoCancel},
        cmdInvoiceNoOkay);
}

void frmInvoice::wireCommands()
{
    auto lineGate = [this](QPushButton *b, LineCommand c, void (frmInvoice::*work)()) {
        auto *gate = new CommandGate(
            b, [this, c] { return lineAllowed(c); }, [this, work] { (this->*work)(); });
        gate->checkOnFocusWhen([this] { return !cmbDesc->currentText().trimmed().isEmpty(); });
    };
    lineGate(cmdNew, LineCommand::Add, &frmInvoice::addLine);
    lineGate(cmdModify, LineCommand::Change, &frmInvoice::changeLine);
    // Removing a line checks on the click alone.
    connect(cmdDelete, &QPushButton::clicked, this, [this] {
        if (lineAllowed(LineCommand::Remove))
            removeLine();
    });
    new CommandGate(
        cmdModifyInvoice, [this] { return invoiceHasValue(); }, [this] { saveInvoice(); });
    new CommandGate(
        cmdDeleteInvoice, [this] { return invoiceHasValue(); }, [this] { deleteInvoice(); });
    new CommandGate(
        cmdInvoiceNoOkay,
        [this] {
            if (txtShowInvoiceNo->text().trimmed().isEmpty())
                return refuse(Outcome::refusal(kNoFinderNo, QStringLiteral("txtShowInvoiceNo")));
            return ValidateDate(mskDateModifyInvoice);
        },
        [this] { findInvoice(); });
    connect(cmdInvoiceNoCancel, &QPushButton::clicked, this, [this] { closeScreen(); });
    connect(cmdNewInvoice, &QPushButton::clicked, this, [this] { proposeNumber(); });
    connect(cmdAddParty, &QPushButton::clicked, this, [this] {
        const QString code = frmPartyInfo::addAccountModal(this);
        onOpened();
        if (!code.isEmpty())
            m_pick->setCode(code);
        cmbPartyName->setFocus();
    });

    connect(cmbTitleName, &QComboBox::currentTextChanged, this, [this] { titleChanged(); });
    connect(m_pick, &AccountPick::accountChanged, this, [this] { partyChanged(); });
    connect(chkInvoiceDesc, &QCheckBox::toggled, this, [this] { loadItems(); });
    connect(cmbDescSrNo, qOverload<int>(&QComboBox::currentIndexChanged), this, [this] { descSrNoChanged(); });
    connect(cmbDesc, &QComboBox::currentTextChanged, this, [this] { lookUpPrice(); });
    connect(cmbDemandNo, &QComboBox::currentTextChanged, this, [this] { lookUpPrice(); });
    connect(dgInvoice, &QTableView::doubleClicked, this, [this](const QModelIndex &i) { loadLine(i.row()); });
    connect(dgInvoice, &QTableView::activated, this, [this](const QModelIndex &i) { loadLine(i.row()); });
}

// ------------------------------------------------------------ opening

void frmInvoice::startNew()
{
    m_mode = Mode::New;
    runSafely(this, [&] { m_lines.clear(db()); });
    setWindowTitle(QStringLiteral("SALES TAX INVOICE"));
    setTitle(QStringLiteral("SALES TAX INVOICE"));
    txtInvoiceNo->setReadOnly(false);
    cmbTitleName->setEnabled(true);
    onOpened();
    mskDate->setDate(session().dateToday());
    txtType->setText(QStringLiteral("Pcs"));
    for (QLineEdit *e : {txtWeight, txtQuantity, txtRate, txtRateOfSaleTax, txtFurtherTax, txtCED})
        e->setText(QStringLiteral("0"));
    showEntryPanel(true);
    runSafely(this, [&] { proposeNumber(); });
    refreshFigures();
    mskDate->setFocus();
}

void frmInvoice::startModify()
{
    m_mode = Mode::Modify;
    runSafely(this, [&] { m_lines.clear(db()); });
    setWindowTitle(QStringLiteral("MODIFY SALES TAX INVOICE"));
    setTitle(QStringLiteral("MODIFY SALES TAX INVOICE"));
    onOpened();
    mskDate->setDate(session().dateToday());
    mskDateModifyInvoice->setDate(session().dateToday());
    showEntryPanel(false);
    refreshFigures();
    txtShowInvoiceNo->setFocus();
}

void frmInvoice::onOpened()
{
    runSafely(this, [&] {
        const QString keep = cmbPartyName->currentText();
        m_quiet = true;
        m_pick->setAccounts(InvoiceLookups::invoiceParties(db()));
        cmbPartyName->setEditText(keep);
        m_quiet = false;
    });
}

void frmInvoice::showEntryPanel(bool entry)
{
    frOuterInvoice->setVisible(entry);
    frOuterInvoiceNo->setVisible(!entry);
}

// ------------------------------------------------------------ field behaviours

void frmInvoice::proposeNumber()
{
    if (m_mode != Mode::New)
        return;
    txtInvoiceNo->setText(QString::number(InvoiceLookups::nextInvoiceNo(db(), cmbTitleName->currentText().trimmed())));
    m_proposedNo = txtInvoiceNo->text();
}

void frmInvoice::titleChanged()
{
    if (m_quiet)
        return;
    ApplyLetterhead(cmbTitleName);
    // An invoice being changed keeps its number; a new one takes the
    // title's next.
    runSafely(this, [&] { proposeNumber(); });
}

void frmInvoice::partyChanged()
{
    if (m_quiet)
        return;
    loadOrders();
}

void frmInvoice::loadOrders()
{
    runSafely(this, [&] { fillCombo(cmbPartyPONo, InvoiceSources::partyOrders(db(), m_pick->code())); });
    cmbPartyPONo->setEditText(QString());
}

void frmInvoice::loadChallans()
{
    const QString po = cmbPartyPONo->currentText().trimmed();
    runSafely(this, [&] { fillCombo(cmbChallanNo, InvoiceSources::challanNumbers(db(), cmbTitleName->currentText().trimmed(), m_pick->code(), po)); });
    cmbChallanNo->setEditText(QString());
}

// The items the description lists offer: the challan's lines, or the
// descriptions of earlier invoices while "INVOICE DESC" is ticked.
void frmInvoice::loadItems()
{
    const QSignalBlocker b1(cmbDescSrNo), b2(cmbDesc), b3(cmbDemandNo);
    if (chkInvoiceDesc->isChecked()) {
        runSafely(this, [&] {
            const QStringList history = InvoiceLookups::descriptionHistory(db());
            fillCombo(cmbDescSrNo, history);
            fillCombo(cmbDesc, history);
        });
        cmbDescSrNo->setEditText(QString());
        cmbDesc->setEditText(QString());
        return;
    }
    const QString challan = cmbChallanNo->currentText().trimmed();
    if (challan.isEmpty())
        return;
    runSafely(this, [&] {
        m_challanLines = InvoiceSources::challanLines(
            db(), cmbTitleName->currentText().trimmed(), m_pick->code(), cmbPartyPONo->currentText().trimmed(), challan.toLongLong());
    });
    QStringList numbered, descriptions, demands;
    for (int i = 0; i < m_challanLines.size(); ++i) {
        numbered << QStringLiteral("%1 - %2").arg(i + 1).arg(m_challanLines[i].description);
        descriptions << m_challanLines[i].description;
        demands << m_challanLines[i].demandNo;
    }
    fillCombo(cmbDescSrNo, numbered);
    fillCombo(cmbDesc, descriptions);
    fillCombo(cmbDemandNo, demands);
    for (QComboBox *c : {cmbDescSrNo, cmbDesc, cmbDemandNo}) {
        c->setCurrentIndex(-1);
        c->setEditText(QString());
    }
}

void frmInvoice::descSrNoChanged()
{
    const int i = cmbDescSrNo->currentIndex();
    if (i >= 0 && i < cmbDesc->count())
        cmbDesc->setCurrentIndex(i);
}

// The rate from the customer's order and the quantity from the challan
// line of this description and demand number.
void frmInvoice::lookUpPrice()
{
    if (m_quiet || chkInvoiceDesc->isChecked())
        return;
    const QString desc = cmbDesc->currentText().trimmed();
    runSafely(this, [&] {
        if (const auto price
            = InvoiceSources::orderPrice(db(), m_pick->code(), cmbPartyPONo->currentText().trimmed(), desc))
            txtRate->setText(*price);
    });
    if (cmbChallanNo->currentText().trimmed().isEmpty())
        return;
    QString quantity = QStringLiteral("0");
    for (const InvoiceSources::ChallanLine &l : m_challanLines)
        if (l.description == desc && l.demandNo == cmbDemandNo->currentText().trimmed()) {
            quantity = l.quantity;
            break;
        }
    txtQuantity->setText(quantity);
}

void frmInvoice::termsLeft()
{
    const QString terms = txtTermOfSale->currentText().trimmed();
    runSafely(this, [&] {
        const QString code = InvoiceLookups::descCodeOfTerms(db(), terms);
        if (!code.isEmpty())
            txtDescCode->setText(code);
    });
}

bool frmInvoice::computeLine()
{
    for (QLineEdit *e : {txtQuantity, txtRate, txtRateOfSaleTax, txtFurtherTax})
        if (e->text().trimmed().isEmpty())
            e->setText(QStringLiteral("0"));
    InvoiceLine l = currentLine();
    if (!InvoiceRules::computeFigures(l))
        return false;
    txtPrice->setText(QString::number(l.price.toWholeUnits()));
    return true;
}

void frmInvoice::fieldLeft(QObject *field)
{
    if (field == txtQuantity || field == txtRate)
        computeLine();
    else if (field == txtWeight || field == txtRateOfSaleTax || field == txtFurtherTax || field == txtCED)
        static_cast<QLineEdit *>(field)->setText(orZero(static_cast<QLineEdit *>(field)->text()));
    else if (field == txtTermOfSale)
        termsLeft();
    else if (field == cmbPartyPONo)
        loadChallans();
    else if (field == cmbChallanNo)
        loadItems();
    else if (field == cmbDesc)
        txtInvoiceDesc->setText(cmbDesc->currentText().trimmed());
    else if (field == cmbDemandNo)
        lookUpPrice();
}

bool frmInvoice::eventFilter(QObject *watched, QEvent *event)
{
    if (!m_quiet && isVisible() && frOuterInvoice->isVisible()) {
        if (event->type() == QEvent::FocusIn && watched == cmbDesc && cmbDesc->currentText().isEmpty())
            cmbDesc->setEditText(cmbDescSrNo->currentText());
        if (event->type() == QEvent::FocusOut) {
            const auto reason = static_cast<QFocusEvent *>(event)->reason();
            // A box or another window taking the focus is no leaving of the field.
            if (reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason)
                fieldLeft(watched);
        }
    }
    return BaseScreen::eventFilter(watched, event);
}

// ------------------------------------------------------------ lines

InvoiceLine frmInvoice::currentLine() const
{
    InvoiceLine l;
    l.termsOfSale = txtTermOfSale->currentText().trimmed();
    l.description = cmbDesc->currentText().trimmed();
    l.poNo = cmbPartyPONo->currentText().trimmed();
    l.quantity = orZero(txtQuantity->text());
    l.rate = orZero(txtRate->text());
    l.saleTaxRate = orZero(txtRateOfSaleTax->text());
    l.furtherTaxRate = orZero(txtFurtherTax->text());
    l.cedRate = orZero(txtCED->text());
    l.challanNo = cmbChallanNo->currentText().trimmed();
    l.gateEntryNo = txtGateEntryNo->text().trimmed();
    l.type = txtType->text().trimmed();
    l.jobNo = cmbDemandNo->currentText().trimmed();
    l.invoiceDesc = txtInvoiceDesc->text().trimmed();
    l.dtre = txtDTRE->text().trimmed();
    l.weight = orZero(txtWeight->text());
    l.descCode = txtDescCode->text().trimmed();
    InvoiceRules::computeFigures(l);
    return l;
}

InvoiceHeader frmInvoice::header() const
{
    InvoiceHeader h;
    h.key = {cmbTitleName->currentText().trimmed(), txtInvoiceNo->text().trimmed().toLongLong(), mskDate->date()};
    h.partyCode = m_pick->code();
    h.partyName = cmbPartyName->currentText().trimmed();
    h.cedRate = orZero(txtCED->text());
    h.dtre = txtDTRE->text().trimmed();
    h.descCode = txtDescCode->text().trimmed();
    return h;
}

InvoiceKey frmInvoice::originalKey() const
{
    return {cmbModifyTitleName->currentText().trimmed(), txtShowInvoiceNo->text().trimmed().toLongLong(),
        mskDateModifyInvoice->date()};
}

std::optional<ScreenDocument> frmInvoice::currentDocument() const
{
    if (m_mode != Mode::Modify || !frOuterInvoice->isVisibleTo(this) || m_original.number <= 0)
        return std::nullopt;
    return ScreenDocument{QStringLiteral("INVOICE"), m_original.number, m_original.title};
}

bool frmInvoice::lineAllowed(LineCommand command)
{
    InvoiceRules::LineEntry e;
    e.termsOfSale = txtTermOfSale->currentText();
    e.invoiceNo = txtInvoiceNo->text();
    e.partyName = cmbPartyName->currentText();
    e.partyCode = m_pick->code();
    e.description = cmbDesc->currentText();
    e.quantity = txtQuantity->text();
    e.rate = txtRate->text();
    if (const Outcome o = InvoiceRules::checkLineHead(e, command); !o)
        return refuse(o);
    if (!ValidateDate(mskDate))
        return false;
    if (const Outcome o = InvoiceRules::checkLineTail(e, command); !o)
        return refuse(o);
    if (command != LineCommand::Remove && !computeLine())
        return refuse(Outcome::refusal(kBadFigures, QStringLiteral("txtQuantity")));
    return true;
}

void frmInvoice::afterLineCommand(const QString &confirmation)
{
    refreshFigures();
    MessageService::confirmLine(this, confirmation);
    for (QLineEdit *e : {txtQuantity, txtRate, txtPrice})
        e->setText(QStringLiteral("0"));
    cmbDescSrNo->setFocus();
    loadItems();
}

void frmInvoice::addLine()
{
    if (runSafely(this, [&] { m_lineSrNo = m_lines.add(db(), currentLine()); }))
        afterLineCommand(kLineAdded);
}

void frmInvoice::changeLine()
{
    // Rewrites every staged line with the header too.
    if (runSafely(this, [&] { m_lines.change(db(), m_lineSrNo, currentLine()); }))
        afterLineCommand(kLineChanged);
}

void frmInvoice::removeLine()
{
    if (runSafely(this, [&] { m_lines.remove(db(), m_lineSrNo); }))
        afterLineCommand(kLineRemoved);
}

void frmInvoice::loadLine(int row)
{
    auto *model = qobject_cast<QueryTableModel *>(dgInvoice->model());
    if (!model || row < 0 || row >= model->rowCount())
        return;
    const InvoiceLine *line = m_lines.find(model->rawValue(row, 0).toLongLong());
    if (!line)
        return;
    const InvoiceLine l = *line;
    m_lineSrNo = l.srNo;
    // The line's own values, as it was stored: no look-up overwrites them.
    m_quiet = true;
    txtTermOfSale->setEditText(l.termsOfSale);
    txtRateOfSaleTax->setText(l.saleTaxRate);
    txtFurtherTax->setText(l.furtherTaxRate);
    cmbDescSrNo->setEditText(l.description);
    cmbDesc->setEditText(l.description);
    cmbPartyPONo->setEditText(l.poNo);
    txtQuantity->setText(l.quantity);
    txtRate->setText(l.rate);
    txtPrice->setText(QString::number(l.price.toWholeUnits()));
    cmbChallanNo->setEditText(l.challanNo);
    txtGateEntryNo->setText(l.gateEntryNo);
    txtType->setText(l.type);
    cmbDemandNo->setEditText(l.jobNo);
    txtInvoiceDesc->setText(l.invoiceDesc);
    txtWeight->setText(l.weight);
    m_quiet = false;
    txtQuantity->setFocus();
}

// ------------------------------------------------------------ figures

void frmInvoice::refreshFigures()
{
    const InvoiceTotals t = InvoiceRules::totals(m_lines.all(), txtCED->text());
    auto show = [&t](QLineEdit *e, Money m) { e->setText(t.any ? m.toDisplayString() : QStringLiteral("0")); };
    show(txtValueExSaleTax, t.valueExSaleTax);
    show(txtSaleTax, t.saleTax);
    if (t.any)
        txtTotalCED->setText(t.totalCed.toDisplayString());
    show(txtNetAmount, t.net);
    lblInvoiceGrid->setText(cmbPartyName->currentText().trimmed() + QStringLiteral(" ITEM DETAIL"));
    runSafely(this, [&] {
        qobject_cast<QueryTableModel *>(dgInvoice->model())->setResult(InvoiceStaging(db()).gridRows(), kGridCaptions);
    });
}

// ------------------------------------------------------------ saving

bool frmInvoice::invoiceHasValue()
{
    if (InvoiceRules::netAmount(m_lines.all()).isZero())
        return refuse(Outcome::refusal(kEmpty, QStringLiteral("txtInvoiceNo")));
    return true;
}

void frmInvoice::resetAfterSave()
{
    m_quiet = true;
    for (QComboBox *c : {txtTermOfSale, cmbDesc, cmbPartyPONo})
        c->setEditText(QString());
    for (QLineEdit *e : {txtInvoiceDesc, txtDTRE, txtDescCode})
        e->clear();
    if (m_mode == Mode::Modify)
        txtGateEntryNo->clear();
    for (QLineEdit *e : {txtRateOfSaleTax, txtFurtherTax, txtQuantity, txtRate, txtPrice, txtWeight})
        e->setText(QStringLiteral("0"));
    m_quiet = false;
}

void frmInvoice::saveInvoice()
{
    if (txtNetAmount->text().isEmpty()) {
        refuse(Outcome::refusal(kNothingEntered, QStringLiteral("cmbPartyName")));
        return;
    }
    if (!ValidateDate(mskDate))
        return;
    InvoicePosting posting(db(), session().currentUserName, session().dateToday());
    Outcome out;
    const bool ran = runSafely(this, [&] {
        m_lines.ensureMirror(db());
        if (m_mode == Mode::Modify)
            out = posting.saveModified(m_original, header(), m_lines.all());
        else
            out = posting.saveNew(header(), m_lines.all(),
                txtInvoiceNo->text() == m_proposedNo ? NumberPolicy::Proposed : NumberPolicy::Typed);
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
    resetAfterSave();
    refreshFigures();
    runSafely(this, [&] {
        const QSignalBlocker b(txtTermOfSale);
        fillCombo(txtTermOfSale, InvoiceLookups::termsOfSale(db()));
        txtTermOfSale->setEditText(QString());
    });
    if (m_mode == Mode::Modify) {
        showEntryPanel(false);
        txtShowInvoiceNo->setFocus();
        return;
    }
    runSafely(this, [&] { proposeNumber(); });
    loadItems();
    mskDate->setFocus();
}

void frmInvoice::deleteInvoice()
{
    if (!MessageService::askYesNoCritical(this, kDeleteQuestion))
        return;
    if (m_mode == Mode::Modify) {
        Outcome out;
        if (!runSafely(this, [&] {
                out = InvoicePosting(db(), session().currentUserName, session().dateToday()).deleteInvoice(m_original);
            }))
            return;
        if (!out) {
            refuse(out);
            return;
        }
        m_lines.forget();
        MessageService::information(this, out.message);
    } else if (!runSafely(this, [&] { m_lines.clear(db()); })) {
        return;
    }
    closeScreen();
}

void frmInvoice::findInvoice()
{
    runSafely(this, [&] {
        m_lines.clear(db());
        const InvoiceKey key = originalKey();
        InvoiceHeader h;
        const QVector<InvoiceLine> lines = InvoiceStaging(db()).postedLines(key, &h);
        mskDate->setDate(key.date);
        if (lines.isEmpty()) {
            refuse(Outcome::refusal(kNotFound, QStringLiteral("txtShowInvoiceNo")));
            return;
        }
        m_original = key;
        m_quiet = true;
        cmbTitleName->setCurrentText(key.title);
        cmbTitleName->setEnabled(false);
        txtInvoiceNo->setText(QString::number(key.number));
        txtInvoiceNo->setReadOnly(true);
        m_pick->setCode(h.partyCode);
        if (cmbPartyName->currentText().trimmed() != h.partyName)
            setFieldText(cmbPartyName, h.partyName);
        txtCED->setText(h.cedRate);
        txtDTRE->setText(h.dtre);
        txtDescCode->setText(h.descCode);
        m_quiet = false;
        ApplyLetterhead(cmbTitleName);
        loadOrders();
        m_lines.load(db(), lines);
        m_lineSrNo = 0;
        showEntryPanel(true);
        refreshFigures();
        cmbPartyName->setFocus();
    });
}

// ------------------------------------------------------------ closing

void frmInvoice::closeEvent(QCloseEvent *event)
{
    if (mayCloseDocument(this, db(), m_lines, kCloseQuestion))
        event->accept();
    else
        event->ignore();
}
