#include "sales/ui/frmDeliveryChallan.h"

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
#include <QTableView>
#include <QVBoxLayout>

using namespace ScreenBuild;
using Command = DeliveryChallanRules::Command;

namespace {

const QStringList kGridCaptions = {QStringLiteral("RECORD"), QStringLiteral("DESCRIPTION"), QStringLiteral("P.O #"),
                                   QStringLiteral("DEMAND #"), QStringLiteral("QUANTITY")};

SessionConnection &db() { return session().db(); }

} // namespace

frmDeliveryChallan::frmDeliveryChallan(QWidget *parent) : JobPaperScreen(parent)
{
    setObjectName(QStringLiteral("frmDeliveryChallan"));
    setTitle(QStringLiteral("DELIVERY CHALLAN"));
    build();
    wire();
    if (session().connection) {
        m_quiet = true;
        loadTitles(cmbTitleName);
        m_quiet = false;
        runSafely(this, [&] { proposeNumber(); });
    }
    mskDate->setDate(session().dateToday());
    txtType->setText(QStringLiteral("Pcs"));
}

void frmDeliveryChallan::build()
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
    txtDeliveryChallanNo = lineEdit(p, QStringLiteral("txtDeliveryChallanNo"), K::DigitsOnly);
    txtRecordNo = display(p, QStringLiteral("txtRecordNo"));
    mskDate = masked(p, QStringLiteral("mskDate"), MaskedLineEdit::dateMask());
    cmbPartyName = combo(p, QStringLiteral("cmbPartyName"));
    cmbPartyName->setMinimumContentsLength(36);
    txtPartyCode = masked(p, QStringLiteral("txtPartyCode"), MaskedLineEdit::accountCodeMask());
    cmbPartyPONo = combo(p, QStringLiteral("cmbPartyPONo"), K::SafeText);
    cmbDescSrNo = combo(p, QStringLiteral("cmbDescSrNo"), K::SafeText, false);
    cmbDescSrNo->setMinimumContentsLength(20);
    cmbDesc = combo(p, QStringLiteral("cmbDesc"), K::SafeText);
    cmbDesc->setMinimumContentsLength(36);
    cmbDemandNo = combo(p, QStringLiteral("cmbDemandNo"), K::SafeText);
    txtQuantity = amountEdit(p, QStringLiteral("txtQuantity"));
    txtType = lineEdit(p, QStringLiteral("txtType"), K::SafeText);
    txtCtn = lineEdit(p, QStringLiteral("txtCtn"), K::SafeText);
    txtGateEntryNo = lineEdit(p, QStringLiteral("txtGateEntryNo"), K::SafeText);

    g.put(0, 0, QStringLiteral("TITLE:"), cmbTitleName, 1, true);
    g.putFixed(0, 1, QStringLiteral("DELIVERY CH.#:"), txtDeliveryChallanNo, 90);
    g.putFixed(0, 2, QStringLiteral("RECORD #:"), txtRecordNo, 90);
    g.putFixed(1, 0, QStringLiteral("DATE:"), mskDate, 110);
    g.putFixed(1, 1, QStringLiteral("P.O #:"), cmbPartyPONo, 160);
    g.put(2, 0, QStringLiteral("PARTY NAME:"), cmbPartyName, 1, true);
    g.putFixed(2, 1, QStringLiteral("PARTY CODE:"), txtPartyCode, 100);
    g.put(3, 0, QStringLiteral("DESCRIPTION:"), cmbDescSrNo, 1, true);
    g.put(3, 1, QString(), cmbDesc, 2, true);
    g.putFixed(4, 0, QStringLiteral("DEMAND #:"), cmbDemandNo, 160);
    g.putFixed(4, 1, QStringLiteral("QUANTITY:"), txtQuantity, 120);
    g.putFixed(4, 2, QStringLiteral("UNIT:"), txtType, 90);
    g.putFixed(5, 0, QStringLiteral("NO. OF CTN:"), txtCtn, 90);
    g.putFixed(5, 1, QStringLiteral("G.E.# / BILTY #:"), txtGateEntryNo, 160);
    fieldLayout->setColumnStretch(6, 1);

    outer->addLayout(gridHeading(p, QStringLiteral("DELIVERY CHALLAN DETAIL"),
                                 QStringLiteral("DOUBLE CLICK AN ITEM TO MODIFY OR DELETE IT")));
    dgDeliveryChallan = grid(p, QStringLiteral("dgDeliveryChallan"));
    proportionalColumns(dgDeliveryChallan, {1000, 2050, 1000, 1000, 1000});
    dgDeliveryChallan->setMinimumHeight(140);
    outer->addWidget(dgDeliveryChallan, 1);
    detailLayout()->addWidget(frOuter, 0, 0, 1, 2);
    detailLayout()->setRowStretch(0, 1);

    addPaperCommands(cmbPartyName, txtPartyCode);
    typingOrder({cmbTitleName, txtDeliveryChallanNo, mskDate, cmbPartyName, txtPartyCode, cmbPartyPONo, cmbDescSrNo,
                 cmbDesc, cmbDemandNo, txtQuantity, txtType, txtCtn, txtGateEntryNo, cmdSave, cmdModify, cmdDelete,
                 cmdNew, cmdPrint, cmdAddParty, dgDeliveryChallan},
                cmdSave, {cmbPartyName, txtPartyCode});
}

void frmDeliveryChallan::wire()
{
    new CommandGate(cmdSave, [this] { return allowed(Command::Save); }, [this] { save(); });
    new CommandGate(cmdModify, [this] { return allowed(Command::Modify); }, [this] { modify(); });
    new CommandGate(cmdDelete, [this] { return allowed(Command::Delete); }, [this] { remove(); });
    new CommandGate(cmdPrint, [this] { return allowed(Command::Print); }, [this] { printChallan(); });
    connect(cmdNew, &QPushButton::clicked, this, [this] {
        runSafely(this, [&] {
            proposeNumber();
            showChallanLines();
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
    connect(m_pick, &AccountPick::accountChanged, this, [this] {
        if (!m_quiet)
            partyChanged();
    });
    onLeave(cmbPartyPONo, [this] { partyOrderLeft(); });
    connect(cmbDescSrNo, &QComboBox::currentIndexChanged, this, [this](int i) {
        if (!m_quiet && i >= 0 && i < cmbDesc->count())
            cmbDesc->setCurrentIndex(i);
    });
    connect(cmbDesc, &QComboBox::currentTextChanged, this, [this] {
        if (!m_quiet)
            descriptionChanged();
    });
    onLeave(txtDeliveryChallanNo, [this] { challanNumberLeft(); });
    auto pick = [this](const QModelIndex &i) { pickRow(i.row()); };
    connect(dgDeliveryChallan, &QTableView::doubleClicked, this, pick);
    connect(dgDeliveryChallan, &QTableView::activated, this, pick);
}

// ------------------------------------------------------------ modes

void frmDeliveryChallan::setMode(Mode mode, const QString &title)
{
    m_mode = mode;
    setTitle(title);
    setWindowTitle(title);
    showModeCommands(mode);
    m_openChallan = 0;
}

void frmDeliveryChallan::startEnter()
{
    setMode(Mode::Enter, QStringLiteral("DELIVERY CHALLAN"));
    runSafely(this, [&] {
        proposeNumber();
        showChallanLines();
    });
    cmbTitleName->setFocus();
}

void frmDeliveryChallan::startModify()
{
    setMode(Mode::Modify, QStringLiteral("MODIFY DELIVERY CHALLAN"));
    txtDeliveryChallanNo->setFocus();
}

void frmDeliveryChallan::startDelete()
{
    setMode(Mode::Delete, QStringLiteral("DELETE DELIVERY CHALLAN"));
    txtDeliveryChallanNo->setFocus();
}

void frmDeliveryChallan::onOpened()
{
    runSafely(this, [&] {
        reloadParties();
        m_quiet = true;
        if (cmbDescSrNo->count() == 0) {
            fillCombo(cmbDesc, DeliveryChallanRules::distinctDescriptions(db()));
            cmbDesc->setEditText(QString());
        }
        m_quiet = false;
    });
}

// ------------------------------------------------------------ lists

void frmDeliveryChallan::proposeNumber()
{
    m_numberTitle = cmbTitleName->currentText();
    m_proposedNo = QString::number(DeliveryChallanRules::nextChallanNo(db(), m_numberTitle));
    txtDeliveryChallanNo->setText(m_proposedNo);
    m_openChallan = 0;
    proposeRecordNo();
}

void frmDeliveryChallan::proposeRecordNo()
{
    txtRecordNo->setText(QString::number(DeliveryChallanRules::nextRecordNo(db())));
}

void frmDeliveryChallan::showChallanLines()
{
    showRows(dgDeliveryChallan,
             DeliveryChallanRules::challanGrid(db(), cmbTitleName->currentText(), numberIn(txtDeliveryChallanNo)),
             kGridCaptions);
}

void frmDeliveryChallan::loadOrderItems()
{
    const QVector<OrderItem> items =
        DeliveryChallanRules::orderItems(db(), m_pick->code(), cmbPartyPONo->currentText().trimmed());
    QStringList names;
    for (const OrderItem &i : items)
        names << i.description;
    const bool quiet = m_quiet;
    m_quiet = true;
    cmbDescSrNo->clear();
    cmbDescSrNo->addItems(DeliveryChallanRules::numberedItems(items));
    cmbDescSrNo->setCurrentIndex(-1);
    cmbDesc->clear();
    cmbDesc->addItems(names);
    cmbDesc->setCurrentIndex(-1);
    cmbDesc->setEditText(QString());
    m_quiet = quiet;
}

void frmDeliveryChallan::partyChanged()
{
    runSafely(this, [&] {
        const QString keep = cmbPartyPONo->currentText();
        cmbPartyPONo->clear();
        if (const QString code = m_pick->code(); !code.isEmpty())
            cmbPartyPONo->addItems(PurchaseOrderRules::partyOrderNumbers(db(), code));
        cmbPartyPONo->setEditText(keep);
    });
}

void frmDeliveryChallan::partyOrderLeft()
{
    // The order's items to pick from, and everything delivered against it.
    runSafely(this, [&] {
        loadOrderItems();
        showRows(dgDeliveryChallan,
                 DeliveryChallanRules::deliveredGrid(db(), cmbTitleName->currentText(),
                                                     cmbPartyPONo->currentText().trimmed()),
                 kGridCaptions);
    });
}

void frmDeliveryChallan::descriptionChanged()
{
    runSafely(this, [&] {
        cmbDemandNo->clear();
        const QStringList demands = DeliveryChallanRules::demandNumbers(
            db(), m_pick->code(), cmbPartyPONo->currentText().trimmed(), cmbDesc->currentText().trimmed());
        cmbDemandNo->addItems(demands);
        cmbDemandNo->setEditText(demands.isEmpty() ? QString() : demands.first());
    });
}

void frmDeliveryChallan::challanNumberLeft()
{
    if (txtDeliveryChallanNo->text().trimmed().isEmpty()) {
        refuse(Outcome::refusal(ChallanMsg::kNumberMissing, QStringLiteral("txtDeliveryChallanNo")));
        return;
    }
    runSafely(this, [&] {
        showChallanLines();
        loadOrderItems();
    });
}

void frmDeliveryChallan::pickRow(int row)
{
    if (m_mode == Mode::Enter)
        return;
    const qint64 record = recordAt(dgDeliveryChallan, row);
    std::optional<ChallanLine> l;
    if (!runSafely(this, [&] { l = DeliveryChallanRules::lineByRecordNo(db(), record); }) || !l)
        return;
    // The loads in this order: the title last but one, whose change
    // proposes the title's next number over the loaded one.
    txtRecordNo->setText(QString::number(l->recordNo));
    txtDeliveryChallanNo->setText(QString::number(l->challanNo));
    mskDate->setDate(l->date);
    m_quiet = true;
    m_pick->setCode(l->partyCode);
    if (cmbPartyName->currentText() != l->partyName)
        setFieldText(cmbPartyName, l->partyName);
    m_quiet = false;
    partyChanged();
    m_quiet = true;
    cmbDesc->setEditText(l->description);
    cmbPartyPONo->setEditText(l->partyPONo);
    m_quiet = false;
    txtQuantity->setText(JobPaper::figureText(l->quantity));
    txtType->setText(l->type);
    txtGateEntryNo->setText(l->gateEntryNo);
    txtCtn->setText(l->ctn);
    if (cmbTitleName->currentText() != l->titleName) {
        cmbTitleName->setCurrentText(l->titleName);
        txtRecordNo->setText(QString::number(l->recordNo));
    }
    m_quiet = true;
    cmbDemandNo->setEditText(l->demandNo);
    m_quiet = false;
    txtQuantity->setFocus();
}

// ------------------------------------------------------------ commands

ChallanLine frmDeliveryChallan::entered() const
{
    ChallanLine l;
    l.titleName = cmbTitleName->currentText();
    l.challanNo = numberIn(txtDeliveryChallanNo);
    l.recordNo = numberIn(txtRecordNo);
    l.date = mskDate->date();
    l.partyCode = m_pick->code();
    l.partyName = cmbPartyName->currentText().trimmed();
    l.partyPONo = cmbPartyPONo->currentText().trimmed();
    l.description = cmbDesc->currentText();
    l.demandNo = cmbDemandNo->currentText().trimmed();
    l.quantity = JobPaper::parseFigure(txtQuantity->text());
    l.type = txtType->text().trimmed();
    l.ctn = txtCtn->text().trimmed();
    l.gateEntryNo = txtGateEntryNo->text().trimmed();
    return l;
}

bool frmDeliveryChallan::allowed(Command command)
{
    const ChallanLine l = entered();
    if (l.challanNo <= 0)
        return refuse(DeliveryChallanRules::check(l, command));
    if (!ValidateDate(mskDate))
        return false;
    const Outcome o = DeliveryChallanRules::check(l, command);
    return o ? true : refuse(o);
}

void frmDeliveryChallan::afterLineCommand()
{
    txtQuantity->clear();
    runSafely(this, [&] {
        proposeRecordNo();
        showChallanLines();
    });
    cmbDescSrNo->setFocus();
}

void frmDeliveryChallan::save()
{
    const ChallanLine l = entered();
    // The proposed number of a new challan moves on when taken meanwhile; a
    // number the clerk typed adds the line to that challan.
    const bool proposed = l.challanNo != m_openChallan && txtDeliveryChallanNo->text().trimmed() == m_proposedNo;
    const auto numbering = proposed ? JobPaper::Numbering::Proposed : JobPaper::Numbering::Existing;
    Outcome out;
    if (!write(out, [&] { return DeliveryChallanRules::saveLine(db(), l, numbering, session().dateToday()); }))
        return;
    m_quiet = true;
    txtDeliveryChallanNo->setText(QString::number(out.number));
    m_quiet = false;
    m_openChallan = out.number;
    confirm(out);
    afterLineCommand();
}

void frmDeliveryChallan::modify()
{
    Outcome out;
    if (!write(out, [&] { return DeliveryChallanRules::modifyLine(db(), entered()); }))
        return;
    confirm(out);
    afterLineCommand();
}

void frmDeliveryChallan::remove()
{
    const ChallanLine l = entered();
    Outcome out;
    if (!write(out, [&] { return DeliveryChallanRules::deleteLine(db(), l.challanNo, l.recordNo); }))
        return;
    confirm(out);
    afterLineCommand();
}

void frmDeliveryChallan::printChallan()
{
    const ChallanLine l = entered();
    Reports::ReportRequest req;
    if (runSafely(this, [&] {
            req = JobPaperPrinting::deliveryChallan(db(), l.titleName, l.challanNo, l.date);
        }))
        print(req);
}
