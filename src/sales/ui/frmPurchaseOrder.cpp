#include "sales/ui/frmPurchaseOrder.h"

#include "accounts/ui/AccountPick.h"
#include "foundation/Session.h"
#include "foundation/ui/CommandGate.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/ScreenBuild.h"
#include "foundation/ui/ScreenServices.h"
#include "sales/JobPaperPrinting.h"
#include "stock/ItemCoding.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

using namespace ScreenBuild;
using Command = PurchaseOrderRules::Command;

namespace {

const QStringList kGridCaptions = {QStringLiteral("RECORD #"), QStringLiteral("DESCRIPTION"), QStringLiteral("P.O #"),
                                   QStringLiteral("DEMAND #"), QStringLiteral("QUANTITY")};

SessionConnection &db() { return session().db(); }

} // namespace

frmPurchaseOrder::frmPurchaseOrder(QWidget *parent) : JobPaperScreen(parent)
{
    setObjectName(QStringLiteral("frmPurchaseOrder"));
    setTitle(QStringLiteral("PURCHASE ORDER"));
    build();
    wire();
    if (session().connection) {
        loadTitles(cmbTitleName);
        runSafely(this, [&] { proposeNumber(); });
    }
    mskDate->setDate(session().dateToday());
    txtType->setText(QStringLiteral("PCS"));
}

void frmPurchaseOrder::build()
{
    frOuter = frame(frDetail, QStringLiteral("frOuter"));
    auto *outer = new QVBoxLayout(frOuter);
    outer->setContentsMargins(0, 0, 0, 0);
    auto *fieldLayout = new QGridLayout;
    outer->addLayout(fieldLayout);
    FieldGrid g(fieldLayout);
    using K = KeyRules::Kind;
    QWidget *p = frOuter;
    cmbTitleName = combo(p, QStringLiteral("cmbTitleName"), K::SafeText, false);
    txtPONo = lineEdit(p, QStringLiteral("txtPONo"), K::DigitsOnly);
    txtRecordNo = display(p, QStringLiteral("txtRecordNo"));
    mskDate = masked(p, QStringLiteral("mskDate"), MaskedLineEdit::dateMask());
    txtPartyPONo = lineEdit(p, QStringLiteral("txtPartyPONo"), K::SafeText);
    cmbPartyName = combo(p, QStringLiteral("cmbPartyName"));
    cmbPartyName->setMinimumContentsLength(36);
    txtPartyCode = masked(p, QStringLiteral("txtPartyCode"), MaskedLineEdit::accountCodeMask());
    chkDesc = check(p, QStringLiteral("chkDesc"), QStringLiteral("ITEM DESC:"));
    cmbDesc = combo(p, QStringLiteral("cmbDesc"), K::SafeText);
    cmbDesc->setMinimumContentsLength(36);
    txtQuantity = amountEdit(p, QStringLiteral("txtQuantity"));
    txtType = lineEdit(p, QStringLiteral("txtType"), K::SafeText);
    txtCostPrice = display(p, QStringLiteral("txtCostPrice"), true);
    txtUnitPrice = amountEdit(p, QStringLiteral("txtUnitPrice"));
    txtDemandNo = lineEdit(p, QStringLiteral("txtDemandNo"), K::SafeText);
    txtJobNo = lineEdit(p, QStringLiteral("txtJobNo"), K::SafeText);

    g.put(0, 0, QStringLiteral("TITLE:"), cmbTitleName, 1, true);
    g.putFixed(0, 1, QStringLiteral("P.O #:"), txtPONo, 90);
    g.putFixed(0, 2, QStringLiteral("RECORD #:"), txtRecordNo, 90);
    g.putFixed(1, 0, QStringLiteral("DATE:"), mskDate, 110);
    g.putFixed(1, 1, QStringLiteral("PARTY P.O.#:"), txtPartyPONo, 140);
    g.put(2, 0, QStringLiteral("PARTY NAME:"), cmbPartyName, 1, true);
    g.putFixed(2, 1, QStringLiteral("PARTY CODE:"), txtPartyCode, 100);
    fieldLayout->addWidget(chkDesc, 3, 0, Qt::AlignRight | Qt::AlignVCenter);
    g.put(3, 0, QString(), cmbDesc, 2, true);
    g.putFixed(4, 0, QStringLiteral("QUANTITY:"), txtQuantity, 120);
    g.putFixed(4, 1, QStringLiteral("UNIT:"), txtType, 90);
    g.putFixed(5, 0, QStringLiteral("COST PRICE:"), txtCostPrice, 120);
    g.putFixed(5, 1, QStringLiteral("SALE PRICE:"), txtUnitPrice, 120);
    g.putFixed(6, 0, QStringLiteral("DEMAND #:"), txtDemandNo, 140);
    g.putFixed(6, 1, QStringLiteral("STORE INDENT #:"), txtJobNo, 140);
    fieldLayout->setColumnStretch(6, 1);

    outer->addLayout(gridHeading(p, QStringLiteral("PURCHASE ORDER DETAIL"),
                                 QStringLiteral("DOUBLE CLICK AN ITEM TO MODIFY OR DELETE IT")));
    dg = grid(p, QStringLiteral("dg"));
    proportionalColumns(dg, {1000, 2050, 1000, 1000, 1000});
    dg->setMinimumHeight(140);
    outer->addWidget(dg, 1);
    detailLayout()->addWidget(frOuter, 0, 0, 1, 2);
    detailLayout()->setRowStretch(0, 1);

    addPaperCommands(cmbPartyName, txtPartyCode);
    typingOrder({cmbTitleName, txtPONo, mskDate, txtPartyPONo, cmbPartyName, txtPartyCode, chkDesc, cmbDesc,
                 txtQuantity, txtType, txtUnitPrice, txtDemandNo, txtJobNo, cmdSave, cmdModify, cmdDelete, cmdNew,
                 cmdPrint, cmdAddParty, dg},
                cmdSave, {cmbPartyName, txtPartyCode});
}

void frmPurchaseOrder::wire()
{
    new CommandGate(cmdSave, [this] { return allowed(Command::Save); }, [this] { save(); });
    new CommandGate(cmdModify, [this] { return allowed(Command::Modify); }, [this] { modify(); });
    new CommandGate(cmdDelete, [this] { return allowed(Command::Delete); }, [this] { remove(); });
    new CommandGate(cmdPrint, [this] { return allowed(Command::Print); }, [this] { printOrder(); });
    connect(cmdNew, &QPushButton::clicked, this, [this] {
        runSafely(this, [&] {
            proposeNumber();
            showOrderLines();
            loadOrderDescriptions();
        });
        mskDate->setFocus();
    });
    connect(cmbTitleName, &QComboBox::currentTextChanged, this, [this] {
        if (!m_quiet)
            runSafely(this, [&] { proposeNumber(); });
    });
    onLeave(cmbTitleName, [this] {
        if (cmbTitleName->currentText() != m_numberTitle)
            runSafely(this, [&] { proposeNumber(); });
    });
    connect(chkDesc, &QCheckBox::toggled, this, [this] { loadDescriptionList(); });
    onLeave(cmbDesc, [this] { descriptionLeft(); });
    onLeave(txtPONo, [this] { orderNumberLeft(); });
    onLeave(txtPartyPONo, [this] { partyOrderLeft(); });
    auto pick = [this](const QModelIndex &i) { pickRow(i.row()); };
    connect(dg, &QTableView::doubleClicked, this, pick);
    connect(dg, &QTableView::activated, this, pick);
}

// ------------------------------------------------------------ modes

void frmPurchaseOrder::setMode(Mode mode, const QString &title)
{
    m_mode = mode;
    setTitle(title);
    setWindowTitle(title);
    txtPONo->setReadOnly(mode == Mode::Enter);
    txtPONo->setFocusPolicy(mode == Mode::Enter ? Qt::ClickFocus : Qt::StrongFocus);
    QStringList shown;
    if (mode == Mode::Enter)
        shown = {QStringLiteral("cmdSave"), QStringLiteral("cmdNew")};
    else if (mode == Mode::Modify)
        shown = {QStringLiteral("cmdSave"), QStringLiteral("cmdModify")};
    else
        shown = {QStringLiteral("cmdDelete"), QStringLiteral("cmdNew")};
    showOnlyButtons(shown + QStringList{QStringLiteral("cmdPrint"), QStringLiteral("cmdAddParty")});
    m_openOrder = 0;
}

void frmPurchaseOrder::startEnter()
{
    setMode(Mode::Enter, QStringLiteral("PURCHASE ORDER"));
    runSafely(this, [&] {
        proposeNumber();
        showOrderLines();
    });
    cmbTitleName->setFocus();
}

void frmPurchaseOrder::startModify()
{
    setMode(Mode::Modify, QStringLiteral("MODIFY PURCHASE ORDER"));
    txtPONo->setFocus();
}

void frmPurchaseOrder::startDelete()
{
    setMode(Mode::Delete, QStringLiteral("DELETE PURCHASE ORDER"));
    txtPONo->setFocus();
}

void frmPurchaseOrder::onOpened()
{
    runSafely(this, [&] { reloadParties(); });
    loadDescriptionList();
}

// ------------------------------------------------------------ lists

void frmPurchaseOrder::proposeNumber()
{
    m_numberTitle = cmbTitleName->currentText();
    txtPONo->setText(QString::number(PurchaseOrderRules::nextOrderNo(db(), m_numberTitle)));
    m_openOrder = 0;
    proposeRecordNo();
}

void frmPurchaseOrder::proposeRecordNo()
{
    txtRecordNo->setText(QString::number(PurchaseOrderRules::nextRecordNo(db())));
}

void frmPurchaseOrder::showOrderLines()
{
    showRows(dg, PurchaseOrderRules::orderLines(db(), cmbTitleName->currentText(), numberIn(txtPONo)), kGridCaptions);
}

void frmPurchaseOrder::loadOrderDescriptions()
{
    const QString keep = cmbDesc->currentText();
    fillCombo(cmbDesc, PurchaseOrderRules::descriptionHistory(db()));
    cmbDesc->setEditText(keep);
}

void frmPurchaseOrder::loadDescriptionList()
{
    runSafely(this, [&] {
        cmbDesc->clear();
        fillCombo(cmbDesc, chkDesc->isChecked() ? ItemCoding::names(db())
                                                : PurchaseOrderRules::distinctDescriptions(db()));
        cmbDesc->setEditText(QString());
    });
}

void frmPurchaseOrder::descriptionLeft()
{
    if (!chkDesc->isChecked()) {
        // A description from the history: the prices are typed afresh.
        txtType->setText(QStringLiteral("PCS"));
        txtCostPrice->setText(QStringLiteral("0"));
        txtUnitPrice->setText(QStringLiteral("0"));
        return;
    }
    std::optional<ItemCoding::Item> item;
    runSafely(this, [&] { item = ItemCoding::itemByName(db(), cmbDesc->currentText().trimmed()); });
    if (!item)
        return;
    txtType->setText(item->unitType);
    txtCostPrice->setText(item->costRate.toFieldString());
    txtUnitPrice->setText(item->saleRate.toFieldString());
}

void frmPurchaseOrder::orderNumberLeft()
{
    if (txtPONo->isReadOnly())
        return;
    if (txtPONo->text().trimmed().isEmpty()) {
        refuse(Outcome::refusal(PurchaseOrderMsg::kNumberMissingOnLeave, QStringLiteral("txtPONo")));
        return;
    }
    runSafely(this, [&] {
        showOrderLines();
        loadOrderDescriptions();
    });
}

void frmPurchaseOrder::partyOrderLeft()
{
    // Shows at once whether the party's number is on an order already.
    runSafely(this, [&] {
        showRows(dg, PurchaseOrderRules::linesOfPartyOrder(db(), cmbTitleName->currentText(), txtPartyPONo->text()),
                 kGridCaptions);
    });
}

void frmPurchaseOrder::pickRow(int row)
{
    if (m_mode == Mode::Enter)
        return;
    const qint64 record = recordAt(dg, row);
    std::optional<OrderLine> l;
    if (!runSafely(this, [&] { l = PurchaseOrderRules::lineByRecordNo(db(), record, cmbTitleName->currentText()); })
        || !l)
        return;
    m_quiet = true;
    txtRecordNo->setText(QString::number(l->recordNo));
    txtPONo->setText(QString::number(l->poNo));
    txtPartyPONo->setText(l->partyPONo);
    mskDate->setDate(l->date);
    m_pick->setCode(l->partyCode);
    if (cmbPartyName->currentText() != l->partyName)
        setFieldText(cmbPartyName, l->partyName);
    cmbDesc->setEditText(l->description);
    txtJobNo->setText(l->jobNo);
    txtDemandNo->setText(l->demandNo);
    txtQuantity->setText(JobPaper::figureText(l->quantity));
    txtType->setText(l->type);
    txtUnitPrice->setText(JobPaper::figureText(l->unitPrice));
    m_quiet = false;
    txtQuantity->setFocus();
}

// ------------------------------------------------------------ commands

OrderLine frmPurchaseOrder::entered() const
{
    OrderLine l;
    l.titleName = cmbTitleName->currentText();
    l.poNo = numberIn(txtPONo);
    l.recordNo = numberIn(txtRecordNo);
    l.date = mskDate->date();
    l.partyPONo = txtPartyPONo->text().trimmed();
    l.partyCode = m_pick->code();
    l.partyName = cmbPartyName->currentText().trimmed();
    l.description = cmbDesc->currentText();
    l.quantity = JobPaper::parseFigure(txtQuantity->text());
    l.type = txtType->text().trimmed();
    l.unitPrice = JobPaper::parseFigure(txtUnitPrice->text());
    l.demandNo = txtDemandNo->text().trimmed();
    l.jobNo = txtJobNo->text().trimmed();
    return l;
}

bool frmPurchaseOrder::allowed(Command command)
{
    const OrderLine l = entered();
    if (l.poNo <= 0)
        return refuse(PurchaseOrderRules::check(l, command));
    if (!ValidateDate(mskDate))
        return false;
    const Outcome o = PurchaseOrderRules::check(l, command);
    return o ? true : refuse(o);
}

void frmPurchaseOrder::afterLineCommand()
{
    txtQuantity->clear();
    runSafely(this, [&] {
        proposeRecordNo();
        showOrderLines();
        loadOrderDescriptions();
    });
    cmbDesc->setFocus();
}

void frmPurchaseOrder::save()
{
    const OrderLine l = entered();
    // In enter mode the number is the screen's proposal (locked): a new
    // order until its first item is saved. Modify mode adds to the typed order.
    const auto numbering = m_mode == Mode::Enter && l.poNo != m_openOrder ? JobPaper::Numbering::Proposed
                                                                           : JobPaper::Numbering::Existing;
    Outcome out;
    if (!write(out, [&] { return PurchaseOrderRules::saveLine(db(), l, numbering); }))
        return;
    m_quiet = true;
    txtPONo->setText(QString::number(out.number));
    m_quiet = false;
    m_openOrder = out.number;
    confirm(out);
    afterLineCommand();
}

void frmPurchaseOrder::modify()
{
    Outcome out;
    if (!write(out, [&] { return PurchaseOrderRules::modifyLine(db(), entered()); }))
        return;
    confirm(out);
    afterLineCommand();
}

void frmPurchaseOrder::remove()
{
    const OrderLine l = entered();
    Outcome out;
    if (!write(out, [&] { return PurchaseOrderRules::deleteLine(db(), l.titleName, l.poNo, l.recordNo); }))
        return;
    confirm(out);
    afterLineCommand();
}

void frmPurchaseOrder::printOrder()
{
    const OrderLine l = entered();
    Reports::ReportRequest req;
    if (runSafely(this, [&] { req = JobPaperPrinting::purchaseOrder(db(), l.titleName, l.poNo, l.date); }))
        print(req);
}
