#include "stock/ui/frmPurchaseStock.h"

#include "accounts/ui/AccountPick.h"
#include "accounts/ui/frmPartyInfo.h"
#include "foundation/DateRules.h"
#include "foundation/Lookups.h"
#include "foundation/Session.h"
#include "foundation/ui/CommandGate.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/QueryTableModel.h"
#include "foundation/ui/ScreenBuild.h"
#include "foundation/ui/ScreenServices.h"
#include "stock/PurchaseStockPosting.h"
#include "stock/ui/frmItemCoding.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

using namespace ScreenBuild;
using namespace PurchaseStock;

namespace {

SessionConnection &db() { return session().db(); }

const QStringList kGridCaptions = {QStringLiteral("REC #"), QStringLiteral("WEIGHT"), QStringLiteral("DESC"),
                                   QStringLiteral("QTY"),   QStringLiteral("RATE"),   QString(),
                                   QStringLiteral("V #")};

QString zeroWhenEmpty(QLineEdit *e)
{
    if (e->text().trimmed().isEmpty())
        e->setText(QStringLiteral("0"));
    return e->text().trimmed();
}

} // namespace

frmStock::frmStock(QWidget *parent)
    : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmStock"));
    setTitle(QStringLiteral("PURCHASE STOCK"));
    setWindowTitle(QStringLiteral("PURCHASE STOCK"));
    buttonFrame()->hide();
    buildFields();
    wireCommands();
    cmbVoucherType->addItem(kType);
    cmbVoucherType->setCurrentText(kType);
}

void frmStock::buildFields()
{
    QWidget *p = frDetail;
    auto *outer = new QVBoxLayout;
    detailLayout()->addLayout(outer, 0, 0);
    detailLayout()->setRowStretch(0, 1);
    detailLayout()->setColumnStretch(0, 1);
    auto *fieldLayout = new QGridLayout;
    outer->addLayout(fieldLayout);
    FieldGrid f(fieldLayout);

    using K = KeyRules::Kind;
    cmbVoucherType = combo(p, QStringLiteral("cmbVoucherType"), K::LettersUpper);
    txtVoucherNo = lineEdit(p, QStringLiteral("txtVoucherNo"), K::DigitsOnly);
    txtRecordNo = display(p, QStringLiteral("txtRecordNo"));
    txtBillNo = lineEdit(p, QStringLiteral("txtBillNo"), K::SafeText);
    mskDate = masked(p, QStringLiteral("mskDate"), MaskedLineEdit::dateMask());
    mskPartyCode = masked(p, QStringLiteral("mskPartyCode"), MaskedLineEdit::accountCodeMask());
    cmbPartyName = combo(p, QStringLiteral("cmbPartyName"));
    cmbPartyName->setMinimumContentsLength(32);
    cmbCareOf = combo(p, QStringLiteral("cmbCareOf"), K::SafeText);
    cmbCareOf->setMinimumContentsLength(16);
    mskPurchaseCode = masked(p, QStringLiteral("mskPurchaseCode"), MaskedLineEdit::accountCodeMask());
    cmbPurchaseName = combo(p, QStringLiteral("cmbPurchaseName"));
    cmbPurchaseName->setMinimumContentsLength(32);
    txtItemDesc = lineEdit(p, QStringLiteral("txtItemDesc"), K::SafeText);
    txtWeight = lineEdit(p, QStringLiteral("txtWeight"), K::SafeText);
    txtQuantity = amountEdit(p, QStringLiteral("txtQuantity"));
    txtUnitType = lineEdit(p, QStringLiteral("txtUnitType"), K::LettersUpper);
    txtUnitRate = amountEdit(p, QStringLiteral("txtUnitRate"));
    txtAmount = display(p, QStringLiteral("txtAmount"), true);
    txtFreight = lineEdit(p, QStringLiteral("txtFreight"), K::DigitsOnly);
    txtFreight->setAlignment(Qt::AlignRight);
    txtSaleTax = amountEdit(p, QStringLiteral("txtSaleTax"));
    txtSaleTaxAmount = display(p, QStringLiteral("txtSaleTaxAmount"), true);
    txtTotal = display(p, QStringLiteral("txtTotal"), true);
    txtNetAmount = display(p, QStringLiteral("txtNetAmount"), true);

    f.putFixed(0, 0, QString(), cmbVoucherType, 70);
    f.putFixed(0, 1, QStringLiteral("VOUCHER #:"), txtVoucherNo, 90);
    f.putFixed(0, 2, QStringLiteral("RECORD #:"), txtRecordNo, 90);
    f.putFixed(0, 3, QStringLiteral("BILL #:"), txtBillNo, 140);
    f.putFixed(1, 0, QStringLiteral("DATE:"), mskDate, 110);
    f.putFixed(1, 1, QStringLiteral("PARTY CODE:"), mskPartyCode, 100);
    f.put(1, 2, QStringLiteral("PARTY NAME:"), cmbPartyName, 2, true);
    f.putFixed(2, 1, QStringLiteral("PURCHASE CODE:"), mskPurchaseCode, 100);
    f.put(2, 2, QStringLiteral("PURCHASE A/C:"), cmbPurchaseName, 2, true);
    f.put(2, 0, QStringLiteral("CARE OF:"), cmbCareOf, 1, true);
    f.put(3, 0, QStringLiteral("DESCRIPTION:"), txtItemDesc, 3, true);
    f.putFixed(3, 3, QStringLiteral("SIZE / WEIGHT:"), txtWeight, 140);
    f.putFixed(4, 0, QStringLiteral("QUANTITY/UNIT:"), txtQuantity, 110);
    f.putFixed(4, 1, QStringLiteral("UNIT:"), txtUnitType, 90);
    f.putFixed(4, 2, QStringLiteral("RATE:"), txtUnitRate, 110);
    f.putFixed(4, 3, QStringLiteral("AMOUNT:"), txtAmount, 140);
    f.putFixed(5, 0, QStringLiteral("FREIGHT:"), txtFreight, 110);
    f.putFixed(5, 1, QStringLiteral("SALE TAX %:"), txtSaleTax, 90);
    f.putFixed(5, 2, QStringLiteral("SALE TAX:"), txtSaleTaxAmount, 110);
    f.putFixed(6, 2, QStringLiteral("TOTAL:"), txtTotal, 110);
    f.putFixed(6, 3, QStringLiteral("NET AMOUNT:"), txtNetAmount, 140);
    fieldLayout->setColumnStretch(8, 1);

    cmdNewVoucher = button(p, QStringLiteral("cmdNewVoucher"), QStringLiteral("&NEW VOUCHER"));
    cmdSave = button(p, QStringLiteral("cmdSave"), QStringLiteral("&SAVE"));
    cmdModify = button(p, QStringLiteral("cmdModify"), QStringLiteral("&MODIFY"));
    cmdDelete = button(p, QStringLiteral("cmdDelete"), QStringLiteral("&DELETE"));
    cmdAddItem = button(p, QStringLiteral("cmdAddItem"), QStringLiteral("ADD &ITEM"));
    cmdAddParty = button(p, QStringLiteral("cmdAddParty"), QStringLiteral("ADD &PARTY"));
    outer->addWidget(buttonBar(p, QStringLiteral("frCommands"),
                               {cmdNewVoucher, cmdSave, cmdModify, cmdDelete, cmdAddItem, cmdAddParty}, true));

    dg = grid(p, QStringLiteral("dg"));
    proportionalColumns(dg, {0, 1450, 3350, 800, 800, 0, 600});
    dg->setMinimumHeight(160);
    outer->addWidget(dg, 1);

    m_party = new AccountPick(cmbPartyName, mskPartyCode, nullptr, this);
    m_purchase = new AccountPick(cmbPurchaseName, mskPurchaseCode, nullptr, this);

    for (QLineEdit *e : {txtQuantity, txtUnitRate, txtFreight, txtSaleTax})
        e->setText(QStringLiteral("0"));
    typingOrder({cmbVoucherType, txtVoucherNo, txtBillNo, mskDate, cmbPartyName, mskPartyCode, cmbCareOf,
                 cmbPurchaseName, mskPurchaseCode, txtItemDesc, txtWeight, txtQuantity, txtUnitType, txtUnitRate,
                 txtFreight, txtSaleTax, cmdSave, cmdModify, cmdDelete, cmdNewVoucher, cmdAddItem, cmdAddParty, dg},
                cmdSave, {cmbPartyName, mskPartyCode, cmbPurchaseName, mskPurchaseCode});
}

void frmStock::wireCommands()
{
    new CommandGate(cmdSave, [this] { return allowed(Command::Save); }, [this] { saveLine(); });
    new CommandGate(cmdModify, [this] { return allowed(Command::Modify); }, [this] { modifyLine(); });
    new CommandGate(cmdDelete, [this] { return allowed(Command::Delete); }, [this] { deleteLine(); });
    connect(cmdNewVoucher, &QPushButton::clicked, this, [this] { newVoucher(); });
    connect(cmdAddItem, &QPushButton::clicked, this, [this] {
        frmItemCoding::addItemModal(this);
        txtItemDesc->setFocus();
    });
    connect(cmdAddParty, &QPushButton::clicked, this, [this] {
        const QString code = frmPartyInfo::addAccountModal(this);
        loadLists();
        if (!code.isEmpty())
            m_party->setCode(code);
        cmbPartyName->setFocus();
    });
    connect(cmbVoucherType, &QComboBox::editTextChanged, this, [this] { proposeNumbers(); });
    connect(txtQuantity, &QLineEdit::editingFinished, this, [this] { showLineAmount(); });
    connect(txtUnitRate, &QLineEdit::editingFinished, this, [this] { showLineAmount(); });
    for (QLineEdit *e : {txtFreight, txtSaleTax})
        connect(e, &QLineEdit::editingFinished, this, [this, e] {
            zeroWhenEmpty(e);
            recalcTotals();
        });
    connect(txtBillNo, &QLineEdit::editingFinished, this, [this] {
        if (!txtBillNo->text().trimmed().isEmpty())
            recalcTotals();
        loadGrid();
    });
    connect(dg, &QTableView::clicked, this, [this](const QModelIndex &i) { loadLine(i.row()); });
    connect(dg, &QTableView::activated, this, [this](const QModelIndex &i) { loadLine(i.row()); });
}

// ------------------------------------------------------------ opening

void frmStock::start(Mode mode)
{
    m_mode = mode;
    cmdSave->setVisible(mode == Mode::Enter);
    cmdModify->setVisible(mode == Mode::Modify);
    cmdDelete->setVisible(mode == Mode::Delete);
    setWindowTitle(mode == Mode::Enter    ? QStringLiteral("ENTER PURCHASE STOCK")
                   : mode == Mode::Modify ? QStringLiteral("MODIFY PURCHASE STOCK")
                                          : QStringLiteral("DELETE PURCHASE STOCK"));
    onOpened();
    newVoucher();
    mskDate->setDate(session().dateToday());
}

void frmStock::onOpened() { loadLists(); }

void frmStock::loadLists()
{
    runSafely(this, [&] {
        const QString party = cmbPartyName->currentText();
        const QString purchase = cmbPurchaseName->currentText();
        const QString careOf = cmbCareOf->currentText();
        m_party->loadPartyList();
        setFieldText(cmbPartyName, party);
        const QueryResult accounts = PurchaseStockPosting::purchaseAccounts(db());
        m_purchase->setAccounts(accounts);
        // The first purchase account stands ready; a choice made stays.
        if (!purchase.isEmpty())
            setFieldText(cmbPurchaseName, purchase);
        else if (!accounts.isEmpty())
            setFieldText(cmbPurchaseName, accounts.first().text(0).trimmed());
        cmbCareOf->clear();
        cmbCareOf->addItems(Lookups::careOfList(db()));
        cmbCareOf->setEditText(careOf);
    });
}

void frmStock::proposeNumbers()
{
    runSafely(this, [&] {
        const QString type = cmbVoucherType->currentText().trimmed();
        m_proposedNo = QString::number(PurchaseStockPosting::nextVoucherNo(db(), type));
        txtVoucherNo->setText(m_proposedNo);
        txtRecordNo->setText(QString::number(PurchaseStockPosting::nextRecordNo(db(), type)));
    });
}

void frmStock::newVoucher()
{
    proposeNumbers();
    loadGrid();
    m_voucherStarted = false;
    txtBillNo->clear();
    m_party->clear();
    for (QLineEdit *e : {txtQuantity, txtUnitRate, txtAmount, txtFreight})
        e->setText(QStringLiteral("0"));
    mskDate->setMaskText(DateRules::toMaskText(QDate()));
    txtBillNo->setFocus();
}

// ------------------------------------------------------------ figures

void frmStock::showLineAmount()
{
    txtAmount->setText(lineAmount(zeroWhenEmpty(txtQuantity), zeroWhenEmpty(txtUnitRate)).toFieldString());
}

void frmStock::recalcTotals()
{
    runSafely(this, [&] {
        const Header h = header();
        QVector<Line> stored = PurchaseStockPosting::lines(db(), h.voucherType, h.voucherNo);
        if (stored.isEmpty()) {
            // Nothing saved yet: the line on the screen is the bill.
            Line l = currentLine();
            l.amount = lineAmount(l.quantity, l.unitRate);
            stored << l;
        }
        const Totals t = totals(h, stored);
        txtTotal->setText(t.total.toFieldString());
        txtSaleTaxAmount->setText(t.saleTaxAmount.toFieldString());
        txtNetAmount->setText(t.net().toFieldString());
    });
}

void frmStock::loadGrid()
{
    runSafely(this, [&] {
        const QueryResult rows =
            PurchaseStockPosting::billLines(db(), cmbVoucherType->currentText().trimmed(), txtBillNo->text().trimmed());
        QStringList captions = kGridCaptions;
        if (!rows.isEmpty())
            captions[5] = rows.first().text(5).trimmed();
        qobject_cast<QueryTableModel *>(dg->model())->setResult(rows, captions);
    });
}

// ------------------------------------------------------------ lines

Header frmStock::header() const
{
    Header h;
    h.voucherType = cmbVoucherType->currentText().trimmed();
    h.voucherNo = txtVoucherNo->text().trimmed().toLongLong();
    h.billNo = txtBillNo->text().trimmed();
    h.date = mskDate->date();
    h.partyName = cmbPartyName->currentText().trimmed();
    h.purchaseName = cmbPurchaseName->currentText().trimmed();
    h.freight = Money::parseOrZero(txtFreight->text());
    h.saleTax = txtSaleTax->text().trimmed();
    h.careOf = cmbCareOf->currentText().trimmed();
    return h;
}

Line frmStock::currentLine() const
{
    Line l;
    l.recordNo = txtRecordNo->text().trimmed().toLongLong();
    l.itemDesc = txtItemDesc->text().trimmed();
    l.weight = txtWeight->text().trimmed();
    l.quantity = txtQuantity->text().trimmed();
    l.unitRate = txtUnitRate->text().trimmed();
    l.unitType = txtUnitType->text().trimmed();
    return l;
}

bool frmStock::allowed(Command command)
{
    Entry e;
    e.header = header();
    e.voucherNoText = txtVoucherNo->text();
    e.dateText = mskDate->maskText();
    e.partyCode = m_party->code();
    e.purchaseCode = m_purchase->code();
    e.quantityText = txtQuantity->text();
    bool known = false;
    if (!runSafely(this, [&] { known = Lookups::partyNameExists(db(), e.header.partyName); }))
        return false;
    if (command == Command::Save && txtUnitRate->text().trimmed().isEmpty())
        txtUnitRate->setText(QStringLiteral("0"));
    const Outcome checked = checkEntry(e, command, known);
    if (!checked)
        return refuse(checked);
    return true;
}

void frmStock::afterCommand(const Outcome &out)
{
    if (!out.ok) {
        refuse(out);
        return;
    }
    MessageService::information(this, out.message);
    if (!out.notice.isEmpty())
        MessageService::information(this, out.notice);
    txtVoucherNo->setText(QString::number(out.number));
    m_voucherStarted = true;
    for (QLineEdit *e : {txtQuantity, txtUnitRate, txtAmount})
        e->setText(QStringLiteral("0"));
    loadGrid();
    recalcTotals();
    runSafely(this, [&] {
        txtRecordNo->setText(
            QString::number(PurchaseStockPosting::nextRecordNo(db(), cmbVoucherType->currentText().trimmed())));
    });
}

void frmStock::saveLine()
{
    showLineAmount();
    const bool starts = !m_voucherStarted && txtVoucherNo->text().trimmed() == m_proposedNo;
    Outcome out;
    if (!runSafely(this, [&] {
            out = PurchaseStockPosting(db(), session().currentUserName, session().dateToday())
                      .saveLine(header(), currentLine(), starts);
        }))
        return;
    afterCommand(out);
    if (out.ok)
        txtItemDesc->setFocus();
}

void frmStock::modifyLine()
{
    showLineAmount();
    Outcome out;
    if (!runSafely(this, [&] {
            out = PurchaseStockPosting(db(), session().currentUserName, session().dateToday())
                      .modifyLine(header(), currentLine());
        }))
        return;
    afterCommand(out);
    if (out.ok)
        cmbPartyName->setFocus();
}

void frmStock::deleteLine()
{
    Outcome out;
    if (!runSafely(this, [&] {
            out = PurchaseStockPosting(db(), session().currentUserName, session().dateToday())
                      .deleteLine(header(), txtRecordNo->text().trimmed().toLongLong());
        }))
        return;
    afterCommand(out);
    if (out.ok)
        cmbPartyName->setFocus();
}

void frmStock::loadLine(int row)
{
    auto *model = qobject_cast<QueryTableModel *>(dg->model());
    if (!model || row < 0 || row >= model->rowCount())
        return;
    const qint64 recordNo = model->rawValue(row, 0).toLongLong();
    const qint64 voucherNo = model->rawValue(row, 6).toLongLong();
    runSafely(this, [&] {
        const QString type = cmbVoucherType->currentText().trimmed();
        const auto h = PurchaseStockPosting::storedHeader(db(), type, voucherNo);
        if (!h)
            return;
        for (const Line &l : PurchaseStockPosting::lines(db(), type, voucherNo)) {
            if (l.recordNo != recordNo)
                continue;
            txtVoucherNo->setText(QString::number(voucherNo));
            txtRecordNo->setText(QString::number(l.recordNo));
            mskDate->setDate(h->date);
            setFieldText(cmbPartyName, h->partyName);
            txtItemDesc->setText(l.itemDesc);
            txtQuantity->setText(l.quantity);
            txtUnitRate->setText(l.unitRate);
            txtAmount->setText(l.amount.toFieldString());
            txtUnitType->setText(l.unitType);
            txtFreight->setText(h->freight.toFieldString());
            txtWeight->setText(l.weight);
            txtSaleTax->setText(h->saleTax);
            setFieldText(cmbPurchaseName, h->purchaseName);
            m_voucherStarted = true;
        }
    });
    recalcTotals();
}
