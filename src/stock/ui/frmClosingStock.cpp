#include "stock/ui/frmClosingStock.h"

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
#include "stock/ClosingStockPosting.h"
#include "stock/PurchaseStockPosting.h"
#include "stock/ui/frmItemCoding.h"
#include "vouchers/Ledger.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

using namespace ScreenBuild;
using namespace ClosingStock;

namespace {

SessionConnection &db() { return session().db(); }

const QStringList kGridCaptions = {QStringLiteral("REC #"), QStringLiteral("V #"), QStringLiteral("PARTY NAME"),
                                   QStringLiteral("DR"), QStringLiteral("CR")};

} // namespace

frmClosingStock::frmClosingStock(QWidget *parent)
    : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmClosingStock"));
    setTitle(QStringLiteral("CLOSING STOCK"));
    setWindowTitle(QStringLiteral("CLOSING STOCK"));
    buttonFrame()->hide();
    buildFields();
    wireCommands();
    cmbVoucherType->addItem(kType);
    cmbVoucherType->setCurrentText(kType);
}

void frmClosingStock::buildFields()
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
    mskDate = masked(p, QStringLiteral("mskDate"), MaskedLineEdit::dateMask());
    mskPurchaseCode = masked(p, QStringLiteral("mskPurchaseCode"), MaskedLineEdit::accountCodeMask());
    cmbPurchaseName = combo(p, QStringLiteral("cmbPurchaseName"));
    cmbPurchaseName->setMinimumContentsLength(32);
    mskPartyCode = masked(p, QStringLiteral("mskPartyCode"), MaskedLineEdit::accountCodeMask());
    cmbPartyName = combo(p, QStringLiteral("cmbPartyName"));
    cmbPartyName->setMinimumContentsLength(32);
    txtBalance = display(p, QStringLiteral("txtBalance"), true);
    txtClosingValue = amountEdit(p, QStringLiteral("txtClosingValue"));
    txtAdjustmentValue = display(p, QStringLiteral("txtAdjustmentValue"), true);
    txtDrCr = display(p, QStringLiteral("txtDrCr"));
    txtDesc = lineEdit(p, QStringLiteral("txtDesc"), K::SafeText);
    txtDesc->setText(QStringLiteral("CLOSING STOCK"));
    cmbCareOf = combo(p, QStringLiteral("cmbCareOf"), K::SafeText);

    f.putFixed(0, 0, QString(), cmbVoucherType, 70);
    f.putFixed(0, 1, QStringLiteral("VOUCHER #:"), txtVoucherNo, 90);
    f.putFixed(0, 2, QStringLiteral("RECORD #:"), txtRecordNo, 90);
    f.putFixed(0, 3, QStringLiteral("DATE:"), mskDate, 110);
    f.putFixed(1, 0, QStringLiteral("PURCHASE CODE:"), mskPurchaseCode, 100);
    f.put(1, 1, QStringLiteral("PURCHASE A/C:"), cmbPurchaseName, 3, true);
    f.putFixed(2, 0, QStringLiteral("ADJUSTMENT CODE:"), mskPartyCode, 100);
    f.put(2, 1, QStringLiteral("ADJUSTMENT A/C:"), cmbPartyName, 3, true);
    f.putFixed(3, 0, QStringLiteral("A/C BALANCE:"), txtBalance, 170);
    f.putFixed(3, 1, QStringLiteral("CLOSING VALUE:"), txtClosingValue, 140);
    f.putFixed(3, 2, QStringLiteral("ADJUSTMENT VALUE:"), txtAdjustmentValue, 140);
    f.putFixed(3, 3, QString(), txtDrCr, 50);
    f.put(4, 0, QStringLiteral("DESCRIPTION:"), txtDesc, 3, true);
    f.put(4, 3, QStringLiteral("CARE OF:"), cmbCareOf, 1, true);
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
    proportionalColumns(dg, {700, 700, 3600, 1400, 1400});
    amountColumns(dg, {3, 4});
    dg->setMinimumHeight(140);
    outer->addWidget(dg, 1);

    m_stock = new AccountPick(cmbPurchaseName, mskPurchaseCode, nullptr, this);
    m_adjust = new AccountPick(cmbPartyName, mskPartyCode, nullptr, this);
    typingOrder({cmbVoucherType, txtVoucherNo, mskDate, cmbPurchaseName, mskPurchaseCode, cmbPartyName,
                 mskPartyCode, txtClosingValue, txtDesc, cmbCareOf, cmdSave, cmdModify, cmdDelete, cmdNewVoucher,
                 cmdAddItem, cmdAddParty, dg},
                cmdSave, {cmbPurchaseName, mskPurchaseCode, cmbPartyName, mskPartyCode});
}

void frmClosingStock::wireCommands()
{
    new CommandGate(cmdSave, [this] { return allowed(); }, [this] { runCommand(Mode::Enter); });
    new CommandGate(cmdModify, [this] { return allowed(); }, [this] { runCommand(Mode::Modify); });
    new CommandGate(cmdDelete, [this] { return allowed(); }, [this] { runCommand(Mode::Delete); });
    connect(cmdNewVoucher, &QPushButton::clicked, this, [this] { newVoucher(); });
    connect(cmdAddItem, &QPushButton::clicked, this, [this] { frmItemCoding::addItemModal(this); });
    connect(cmdAddParty, &QPushButton::clicked, this, [this] {
        const QString code = frmPartyInfo::addAccountModal(this);
        loadLists();
        if (!code.isEmpty())
            m_adjust->setCode(code);
        cmbPartyName->setFocus();
    });
    connect(cmbVoucherType, &QComboBox::editTextChanged, this, [this] { proposeNumbers(); });
    connect(m_stock, &AccountPick::accountChanged, this, [this] {
        showBalance();
        showAdjustment();
    });
    connect(txtClosingValue, &QLineEdit::editingFinished, this, [this] { showAdjustment(); });
    connect(mskDate, &QLineEdit::editingFinished, this, [this] { loadGrid(); });
    connect(dg, &QTableView::clicked, this, [this](const QModelIndex &i) { loadVoucher(i.row()); });
    connect(dg, &QTableView::activated, this, [this](const QModelIndex &i) { loadVoucher(i.row()); });
}

void frmClosingStock::start(Mode mode)
{
    m_mode = mode;
    cmdSave->setVisible(mode == Mode::Enter);
    cmdModify->setVisible(mode == Mode::Modify);
    cmdDelete->setVisible(mode == Mode::Delete);
    setWindowTitle(mode == Mode::Enter    ? QStringLiteral("ENTER CLOSING STOCK")
                   : mode == Mode::Modify ? QStringLiteral("MODIFY CLOSING STOCK")
                                          : QStringLiteral("DELETE CLOSING STOCK"));
    onOpened();
    mskDate->setDate(session().dateToday());
    newVoucher();
}

void frmClosingStock::onOpened() { loadLists(); }

void frmClosingStock::loadLists()
{
    runSafely(this, [&] {
        const QString stock = cmbPurchaseName->currentText();
        const QString adjust = cmbPartyName->currentText();
        const QueryResult stocks = PurchaseStockPosting::purchaseAccounts(db());
        const QueryResult adjusts = ClosingStockPosting::adjustmentAccounts(db());
        m_stock->setAccounts(stocks);
        m_adjust->setAccounts(adjusts);
        setFieldText(cmbPurchaseName, !stock.isEmpty() || stocks.isEmpty() ? stock : stocks.first().text(0).trimmed());
        setFieldText(cmbPartyName, !adjust.isEmpty() || adjusts.isEmpty() ? adjust : adjusts.first().text(0).trimmed());
        const QString careOf = cmbCareOf->currentText();
        cmbCareOf->clear();
        cmbCareOf->addItems(Lookups::careOfList(db()));
        cmbCareOf->setEditText(careOf);
    });
}

void frmClosingStock::proposeNumbers()
{
    runSafely(this, [&] {
        const QString type = cmbVoucherType->currentText().trimmed();
        m_proposedNo = QString::number(ClosingStockPosting::nextVoucherNo(db(), type));
        txtVoucherNo->setText(m_proposedNo);
        txtRecordNo->setText(QString::number(ClosingStockPosting::nextRecordNo(db(), type)));
    });
}

void frmClosingStock::newVoucher()
{
    m_loadedNo = 0;
    proposeNumbers();
    loadGrid();
    m_adjust->clear();
    txtClosingValue->clear();
    txtAdjustmentValue->clear();
    txtDrCr->clear();
    showBalance();
    mskDate->setFocus();
}

// The balance the voucher adjusts: the account without this voucher's rows.
void frmClosingStock::showBalance()
{
    const QString code = m_stock->code();
    if (code.isEmpty()) {
        txtBalance->clear();
        return;
    }
    runSafely(this, [&] {
        txtBalance->setText(Ledger::balanceText(
            ClosingStockPosting::balanceWithout(db(), code, cmbVoucherType->currentText().trimmed(), m_loadedNo)));
    });
}

void frmClosingStock::showAdjustment()
{
    if (txtClosingValue->text().trimmed().isEmpty() || m_stock->code().isEmpty())
        return;
    runSafely(this, [&] {
        const Money balance = ClosingStockPosting::balanceWithout(db(), m_stock->code(),
                                                                  cmbVoucherType->currentText().trimmed(), m_loadedNo)
                                  .value_or(Money());
        const Adjustment a = adjustment(balance, Money::parseOrZero(txtClosingValue->text()));
        txtAdjustmentValue->setText(a.value().toDisplayString());
        txtDrCr->setText(a.side());
    });
}

void frmClosingStock::loadGrid()
{
    const QDate date = mskDate->date();
    runSafely(this, [&] {
        qobject_cast<QueryTableModel *>(dg->model())
            ->setResult(ClosingStockPosting::gridRows(db(), cmbVoucherType->currentText().trimmed(), date),
                        kGridCaptions);
    });
}

void frmClosingStock::loadVoucher(int row)
{
    auto *model = qobject_cast<QueryTableModel *>(dg->model());
    if (!model || row < 0 || row >= model->rowCount())
        return;
    const qint64 no = model->rawValue(row, 1).toLongLong();
    runSafely(this, [&] {
        const auto s = ClosingStockPosting::stored(db(), cmbVoucherType->currentText().trimmed(), no);
        if (!s)
            return;
        m_loadedNo = no;
        txtVoucherNo->setText(QString::number(no));
        txtRecordNo->setText(QString::number(s->recordNo));
        mskDate->setDate(s->date);
        setFieldText(cmbPurchaseName, s->stockName);
        if (!s->adjustName.isEmpty())
            setFieldText(cmbPartyName, s->adjustName);
        txtDesc->setText(s->desc);
        const Money balance =
            ClosingStockPosting::balanceWithout(db(), m_stock->code(), cmbVoucherType->currentText().trimmed(), no)
                .value_or(Money());
        txtClosingValue->setText((balance + s->stockBalance).toFieldString());
        const Adjustment a = adjustment(balance, balance + s->stockBalance);
        txtAdjustmentValue->setText(a.value().toDisplayString());
        txtDrCr->setText(a.side());
    });
    showBalance();
}

bool frmClosingStock::allowed()
{
    Entry e;
    e.voucherType = cmbVoucherType->currentText().trimmed();
    e.voucherNoText = txtVoucherNo->text();
    e.dateText = mskDate->maskText();
    e.stockCode = m_stock->code();
    e.stockName = cmbPurchaseName->currentText().trimmed();
    e.adjustCode = m_adjust->code();
    e.adjustName = cmbPartyName->currentText().trimmed();
    e.closingValue = txtClosingValue->text();
    bool known = false;
    if (!runSafely(this, [&] { known = Lookups::partyNameExists(db(), e.adjustName); }))
        return false;
    const Outcome checked = checkEntry(e, known);
    if (!checked)
        return refuse(checked);
    return true;
}

void frmClosingStock::runCommand(Mode command)
{
    Entry e;
    e.voucherType = cmbVoucherType->currentText().trimmed();
    e.voucherNoText = txtVoucherNo->text().trimmed();
    e.dateText = mskDate->maskText();
    e.stockName = cmbPurchaseName->currentText().trimmed();
    e.adjustName = cmbPartyName->currentText().trimmed();
    e.closingValue = txtClosingValue->text();
    e.desc = txtDesc->text().trimmed();
    Outcome out;
    if (!runSafely(this, [&] {
            ClosingStockPosting posting(db(), session().currentUserName, session().dateToday());
            if (command == Mode::Enter)
                out = posting.save(e, e.voucherNoText == m_proposedNo ? NumberPolicy::Proposed : NumberPolicy::Typed);
            else if (command == Mode::Modify)
                out = posting.modify(e);
            else
                out = posting.remove(e.voucherType, e.voucherNoText.toLongLong());
        }))
        return;
    if (!out) {
        refuse(out);
        return;
    }
    MessageService::information(this, out.message);
    if (!out.notice.isEmpty())
        MessageService::information(this, out.notice);
    m_loadedNo = 0;
    txtClosingValue->clear();
    txtAdjustmentValue->clear();
    txtDrCr->clear();
    loadGrid();
    proposeNumbers();
    showBalance();
}
