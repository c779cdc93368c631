#include "stock/ui/frmStockModify.h"

#include "accounts/ui/AccountPick.h"
#include "foundation/Session.h"
#include "foundation/ui/CommandGate.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/ScreenBuild.h"
#include "foundation/ui/ScreenServices.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

using namespace ScreenBuild;
using Consumables::Item;
using Consumables::StagedReceipt;

namespace {
SessionConnection &db() { return session().db(); }
const QStringList kCaptions = {QStringLiteral("SR #"),       QStringLiteral("BRAND NAME"), QStringLiteral("TYPE"),
                               QStringLiteral("PARTY NAME"), QStringLiteral("PARTY CODE"), QStringLiteral("UNITS"),
                               QStringLiteral("U/PRICE"),    QStringLiteral("DATE")};
} // namespace

frmStockModify::frmStockModify(QWidget *parent)
    : ConsumablesScreen(parent),
      m_lines({[](SessionConnection &c) { Consumables::clearStaging(c); },
               [](SessionConnection &c, const StagedReceipt &l) { Consumables::stage(c, l); }})
{
    setObjectName(QStringLiteral("frmStockModify"));
    setTitle(QStringLiteral("MODIFY STOCK"));
    buttonFrame()->hide();
    using K = KeyRules::Kind;

    frOuterStockModify = frame(frDetail, QStringLiteral("frOuterStockModify"), true);
    {
        auto *outer = new QVBoxLayout(frOuterStockModify);
        outer->addWidget(buildOptions(frOuterStockModify));
        auto *grid = new QGridLayout;
        outer->addLayout(grid);
        FieldGrid fields(grid);
        cmbBrandNameModify = combo(frOuterStockModify, QStringLiteral("cmbBrandNameModify"), K::SafeText);
        cmbBrandNameModify->setMinimumContentsLength(20);
        cmbTypeModify = combo(frOuterStockModify, QStringLiteral("cmbTypeModify"), K::SafeText);
        cmbTypeModify->setMinimumContentsLength(20);
        cmdOkay = button(frOuterStockModify, QStringLiteral("cmdOkay"), QStringLiteral("&OKAY"));
        cmdCancel = button(frOuterStockModify, QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
        fields.put(0, 0, QStringLiteral("BRAND NAME"), cmbBrandNameModify, 1, true);
        fields.put(0, 1, QStringLiteral("TYPE/COLOUR"), cmbTypeModify, 1, true);
        fields.buttons(0, 2, {cmdOkay, cmdCancel});
        grid->setColumnStretch(6, 1);
    }

    frOuterStock = frame(frDetail, QStringLiteral("frOuterStock"));
    auto *outer = new QVBoxLayout(frOuterStock);
    outer->setContentsMargins(0, 0, 0, 0);
    QWidget *p = frOuterStock;
    dgVoucher = ScreenBuild::grid(p, QStringLiteral("dgVoucher"));
    proportionalColumns(dgVoucher, {700, 1500, 1500, 2600, 1100, 800, 1000, 1100});
    amountColumns(dgVoucher, {6});
    outer->addLayout(gridHeading(p, QStringLiteral("RECEIPTS"), QStringLiteral("SELECT AND DOUBLE CLICK TO MODIFY ANY ENTRY")));
    outer->addWidget(dgVoucher, 1);
    auto *grid = new QGridLayout;
    outer->addLayout(grid);
    FieldGrid fields(grid);
    cmbBrandName = combo(p, QStringLiteral("cmbBrandName"), K::SafeText);
    cmbType = combo(p, QStringLiteral("cmbType"), K::SafeText);
    cmbPartyName = combo(p, QStringLiteral("cmbPartyName"));
    cmbPartyName->setMinimumContentsLength(30);
    txtPartyCode = masked(p, QStringLiteral("txtPartyCode"), MaskedLineEdit::accountCodeMask());
    txtUnits = lineEdit(p, QStringLiteral("txtUnits"), K::DigitsOnly);
    txtUnits->setMaxLength(12);
    txtUnitPrice = amountEdit(p, QStringLiteral("txtUnitPrice"));
    txtUnitPrice->setMaxLength(16);
    mskDate = masked(p, QStringLiteral("mskDate"), MaskedLineEdit::dateMask());
    fields.put(0, 0, QStringLiteral("BRAND NAME"), cmbBrandName, 1, true);
    fields.put(0, 1, QStringLiteral("TYPE/COLOUR"), cmbType, 1, true);
    fields.putFixed(0, 2, QStringLiteral("DATE"), mskDate, 110);
    fields.put(1, 0, QStringLiteral("PARTY NAME"), cmbPartyName, 1, true);
    fields.putFixed(1, 1, QStringLiteral("PARTY CODE"), txtPartyCode, 100);
    fields.putFixed(2, 0, QStringLiteral("UNIT"), txtUnits, 110);
    fields.putFixed(2, 1, QStringLiteral("UNIT PRICE"), txtUnitPrice, 140);
    grid->setColumnStretch(6, 1);
    cmdModify = button(p, QStringLiteral("cmdModify"), QStringLiteral("&MODIFY"));
    cmdDelete = button(p, QStringLiteral("cmdDelete"), QStringLiteral("&DELETE"));
    cmdModifyStock = button(p, QStringLiteral("cmdModifyStock"), QStringLiteral("MODIFY &STOCK"));
    cmdDeleteStock = button(p, QStringLiteral("cmdDeleteStock"), QStringLiteral("DELETE S&TOCK"));
    outer->addWidget(buttonBar(p, QStringLiteral("frButtons"), {cmdModify, cmdDelete, cmdModifyStock, cmdDeleteStock}, true));

    detailLayout()->addWidget(frOuterStockModify, 0, 0, 1, 2);
    detailLayout()->addWidget(frOuterStock, 1, 0, 1, 2);
    detailLayout()->setRowStretch(1, 1);

    m_pick = new AccountPick(cmbPartyName, txtPartyCode, nullptr, this);
    typingOrder({cmbBrandNameModify, cmbTypeModify, cmdOkay, cmdCancel}, cmdOkay);
    typingOrder({cmbBrandName, cmbType, mskDate, cmbPartyName, txtPartyCode, txtUnits, txtUnitPrice, cmdModify, cmdDelete,
                 cmdModifyStock, cmdDeleteStock},
                cmdModify, {cmbPartyName});
    connect(cmbBrandNameModify, &QComboBox::currentTextChanged, this, [this] { brandChanged(); });
    connect(cmdOkay, &QPushButton::clicked, this, [this] { load(); });
    connect(cmdCancel, &QPushButton::clicked, this, [this] { closeScreen(); });
    new CommandGate(cmdModify, [this] { return checkChange(); }, [this] { changeLine(); });
    connect(cmdDelete, &QPushButton::clicked, this, [this] { removeLine(); });
    connect(cmdModifyStock, &QPushButton::clicked, this, [this] { save(Consumables::Msg::modified()); });
    connect(cmdDeleteStock, &QPushButton::clicked, this, [this] { deleteAll(); });
    connect(dgVoucher, &QTableView::clicked, this, [this](const QModelIndex &i) { pickRow(i.row()); });
    connect(dgVoucher, &QTableView::activated, this, [this](const QModelIndex &i) { pickRow(i.row()); });
}

void frmStockModify::startNew()
{
    runSafely(this, [&] { m_lines.clear(db()); });
    m_selected = 0;
    clearFields();
    rebindGrid();
    chooseItem(Item::Ink);
    cmbBrandNameModify->setFocus();
}

void frmStockModify::onOpened()
{
    runSafely(this, [&] {
        const QString keep = cmbPartyName->currentText();
        m_pick->loadPartyList();
        cmbPartyName->setEditText(keep);
    });
}

void frmStockModify::itemChanged()
{
    runSafely(this, [&] { fillList(cmbBrandNameModify, Consumables::brands(db(), item())); });
    brandChanged();
}

void frmStockModify::brandChanged()
{
    runSafely(this, [&] {
        fillList(cmbTypeModify, Consumables::types(db(), item(), cmbBrandNameModify->currentText()));
    });
}

void frmStockModify::load()
{
    runSafely(this, [&] {
        m_lines.clear(db());
        m_selected = 0;
        m_itemRead = item();
        m_brandRead = cmbBrandNameModify->currentText().trimmed();
        m_typeRead = cmbTypeModify->currentText().trimmed();
        if (!m_brandRead.isEmpty() && !m_typeRead.isEmpty()) {
            QVector<StagedReceipt> lines;
            for (const Consumables::Receipt &r : Consumables::receipts(db(), m_itemRead, m_brandRead, m_typeRead))
                lines.append({r.srNo, LineState::Update, r});
            m_lines.load(db(), lines);
        }
    });
    clearFields();
    rebindGrid();
    dgVoucher->setFocus();
}

void frmStockModify::rebindGrid()
{
    runSafely(this, [&] {
        m_lines.ensureMirror(db());
        showRows(dgVoucher, Consumables::stagedList(db()), kCaptions);
    });
}

void frmStockModify::clearFields()
{
    cmbBrandName->setEditText(QString());
    cmbType->setEditText(QString());
    m_pick->clear();
    txtUnits->clear();
    txtUnitPrice->clear();
    mskDate->clearMask();
}

void frmStockModify::pickRow(int row)
{
    const QModelIndex sr = dgVoucher->model()->index(row, 0);
    const StagedReceipt *l = m_lines.find(dgVoucher->model()->data(sr).toString().toLongLong());
    if (!l)
        return;
    m_selected = l->srNo;
    const Consumables::Receipt &r = l->receipt;
    cmbBrandName->setEditText(r.brand);
    cmbType->setEditText(r.type);
    m_pick->setCode(r.partyCode);
    if (!m_pick->hasAccount())
        cmbPartyName->setEditText(r.partyName);
    txtUnits->setText(QString::number(r.units));
    txtUnitPrice->setText(r.unitPrice.toFieldString());
    mskDate->setDate(r.date);
}

Consumables::Receipt frmStockModify::edited() const
{
    const StagedReceipt *l = m_lines.find(m_selected);
    Consumables::Receipt r = l ? l->receipt : Consumables::Receipt();
    r.item = m_itemRead;
    r.brand = cmbBrandName->currentText().trimmed();
    r.type = cmbType->currentText().trimmed();
    r.partyCode = m_pick->code();
    r.partyName = cmbPartyName->currentText().trimmed();
    r.units = Consumables::parseUnits(txtUnits->text()).value_or(0);
    r.unitPrice = Money::parseOrZero(txtUnitPrice->text());
    r.date = mskDate->date();
    return r;
}

bool frmStockModify::checkChange()
{
    if (!m_lines.find(m_selected))
        return refuse(Outcome::refusal(Consumables::Msg::stockMissing(), QStringLiteral("dgVoucher")));
    Outcome r;
    if (!runSafely(this, [&] { r = Consumables::checkReceipt(db(), edited(), txtUnits->text(), txtUnitPrice->text()); }))
        return false;
    if (!r)
        return refuse(r);
    return ValidateDate(mskDate);
}

void frmStockModify::changeLine()
{
    const StagedReceipt *l = m_lines.find(m_selected);
    if (!l)
        return;
    StagedReceipt next = *l;
    next.receipt = edited();
    if (!runSafely(this, [&] { m_lines.change(db(), m_selected, next); }))
        return;
    MessageService::information(this, Consumables::Msg::modified());
    rebindGrid();
}

void frmStockModify::removeLine()
{
    if (!m_lines.find(m_selected))
        return void(refuse(Outcome::refusal(Consumables::Msg::stockMissing(), QStringLiteral("dgVoucher"))));
    if (cmbPartyName->currentText().trimmed().isEmpty())
        return void(refuse(Outcome::refusal(Consumables::Msg::partyMissing(), QStringLiteral("cmbPartyName"))));
    if (m_lines.find(m_selected)->receipt.issued > 0)
        return void(refuse(Outcome::refusal(Consumables::Msg::issuedCannotDelete(), QStringLiteral("dgVoucher"))));
    if (!runSafely(this, [&] { m_lines.remove(db(), m_selected); }))
        return;
    m_selected = 0;
    MessageService::information(this, Consumables::Msg::deleted());
    clearFields();
    rebindGrid();
}

void frmStockModify::save(const QString &successMessage)
{
    QVector<Consumables::ReceiptEdit> edits;
    for (const StagedReceipt &l : m_lines.all())
        edits.append({l.receipt, l.state == LineState::Delete});
    Outcome r;
    if (!runSafely(this, [&] {
            r = Consumables::saveChanges(db(), m_itemRead, m_brandRead, m_typeRead, edits, successMessage);
            if (r.ok)
                m_lines.clear(db());
        }))
        return;
    if (!showOutcome(r))
        return;
    m_selected = 0;
    clearFields();
    rebindGrid();
    itemChanged();
    cmbBrandNameModify->setFocus();
}

void frmStockModify::deleteAll()
{
    if (!MessageService::askYesNoCritical(this, Consumables::Msg::deleteQuestion()))
        return;
    if (!runSafely(this, [&] {
            for (const StagedReceipt &l : m_lines.live())
                m_lines.remove(db(), l.srNo);
        }))
        return;
    save(Consumables::Msg::deleted());
}

void frmStockModify::closeEvent(QCloseEvent *event)
{
    runSafely(this, [&] { m_lines.clear(db()); });
    ConsumablesScreen::closeEvent(event);
}
