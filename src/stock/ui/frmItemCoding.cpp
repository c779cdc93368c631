#include "stock/ui/frmItemCoding.h"

#include "foundation/ui/CommandGate.h"
#include "accounts/ui/frmPartyInfo.h"
#include "foundation/Session.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/ScreenServices.h"
#include "stock/ItemCoding.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QEventLoop>
#include <QEvent>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>

namespace {
QDate entryDate()
{
    return session().dateToday();
}
} // namespace

frmItemCoding::frmItemCoding(QWidget *parent)
    : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmItemCoding"));
    setTitle(QStringLiteral("ITEM CODING"));
    buildFields();
    buildButtons(QStringLiteral("cmdOk"), QStringLiteral("&OK"));
    cmdOk = m_command;
    new CommandGate(cmdOk, [this] { return check(); }, [this] { add(); });
}

frmItemCoding::frmItemCoding(ModifyTag, QWidget *parent)
    : BaseScreen(parent)
{
}

void frmItemCoding::buildFields()
{
    mskItemCode = addMaskedEdit(QStringLiteral("mskItemCode"), QStringLiteral("ITEM CODE:"),
                                MaskedLineEdit::accountCodeMask());
    txtLastCode = addLineEdit(QStringLiteral("txtLastCode"), QStringLiteral("LAST CODE:"));
    txtLastCode->setReadOnly(true);
    txtLastCode->setFocusPolicy(Qt::NoFocus);
    txtLastCode->setMaximumWidth(mskItemCode->maximumWidth());
    txtItemName = addLineEdit(QStringLiteral("txtItemName"), QStringLiteral("ITEM NAME:"));
    txtItemName->setMinimumWidth(360);
    txtCostRate = addLineEdit(QStringLiteral("txtCostRate"), QStringLiteral("COST RATE:"));
    txtSaleRate = addLineEdit(QStringLiteral("txtSaleRate"), QStringLiteral("SALE RATE:"));
    cmbUnitType = addComboBox(QStringLiteral("cmbUnitType"), QStringLiteral("UNIT TYPE:"));
    for (QWidget *w : std::initializer_list<QWidget *>{txtCostRate, txtSaleRate, cmbUnitType})
        w->setMaximumWidth(mskItemCode->maximumWidth() + 40);
    cmbUnitType->addItems(ItemCoding::unitTypes());
    cmbUnitType->setCurrentIndex(0);
    txtCostRate->setText(QStringLiteral("0"));
    txtSaleRate->setText(QStringLiteral("0"));
    for (QWidget *w : std::initializer_list<QWidget *>{mskItemCode, txtItemName, txtCostRate, txtSaleRate, cmbUnitType})
        EnterToTab::attach(w);
    SafeTextKey::attach(txtItemName);
    DecimalOnly::attach(txtCostRate);
    DecimalOnly::attach(txtSaleRate);
    txtCostRate->setMaxLength(16);
    txtSaleRate->setMaxLength(16);
    connect(mskItemCode, &QLineEdit::textChanged, this, &frmItemCoding::showLastCode);
    connect(txtItemName, &QLineEdit::textChanged, this, &frmItemCoding::showSimilarNames);
}

void frmItemCoding::buildButtons(const QString &commandName, const QString &caption)
{
    m_command = addButton(commandName, caption);
    cmdCancel = addButton(QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    cmdAddCompany = addButton(QStringLiteral("cmdAddCompany"), QStringLiteral("ADD &COMPANY"));
    dgItemCoding = addGrid(QStringLiteral("dgItemCoding"));
    dgItemCoding->setFocusPolicy(Qt::NoFocus);
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);
    connect(cmdAddCompany, &QPushButton::clicked, this, [this] { frmPartyInfo::addAccountModal(this); });
}

void frmItemCoding::onOpened()
{
    mskItemCode->setFocus(Qt::OtherFocusReason);
}

void frmItemCoding::closeEvent(QCloseEvent *event)
{
    BaseScreen::closeEvent(event);
    Q_EMIT closed();
}

QString frmItemCoding::addItemModal(QWidget *parent)
{
    auto *f = new frmItemCoding(parent);
    f->setWindowFlags(Qt::Dialog);
    f->setWindowModality(Qt::ApplicationModal);
    f->resize(820, 520);
    QEventLoop loop;
    connect(f, &frmItemCoding::closed, &loop, &QEventLoop::quit);
    f->show();
    f->mskItemCode->setFocus(Qt::OtherFocusReason);
    loop.exec();
    const QString code = f->lastAddedCode();
    f->deleteLater();
    return code;
}

void frmItemCoding::showLastCode()
{
    runSafely(this, [this] {
        const QString last = ItemCoding::lastCodeUnder(session().db(), mskItemCode->maskText());
        if (!last.isEmpty())
            txtLastCode->setText(last);
    });
}

void frmItemCoding::showSimilarNames()
{
    runSafely(this, [this] {
        fillGrid(dgItemCoding, ItemCoding::itemsNamed(session().db(), txtItemName->text()),
                 {QStringLiteral("ITEM CODE"), QStringLiteral("IEM NAME"), QStringLiteral("COST RATE"),
                  QStringLiteral("SALE RATE")});
        dgItemCoding->setColumnWidth(1, qMax(dgItemCoding->columnWidth(1), 360));
    });
}

ItemCoding::Item frmItemCoding::enteredItem() const
{
    ItemCoding::Item i;
    i.code = mskItemCode->maskText();
    i.name = txtItemName->text();
    i.costRate = Money::parseOrZero(txtCostRate->text());
    i.saleRate = Money::parseOrZero(txtSaleRate->text());
    i.unitType = cmbUnitType->currentText();
    return i;
}

bool frmItemCoding::check()
{
    Outcome r;
    if (!runSafely(this, [&] { r = ItemCoding::checkNew(session().db(), enteredItem()); }))
        return false;
    if (!r.ok)
        refuse(r);
    return r.ok;
}

void frmItemCoding::add()
{
    Outcome r;
    if (!runSafely(this, [&] {
            r = ItemCoding::add(session().db(), enteredItem(), session().currentUserName, entryDate());
        }))
        return;
    if (!r.ok) {
        refuse(r);
        return;
    }
    m_lastAddedCode = mskItemCode->maskText();
    MessageService::information(this, r.message);
    txtItemName->clear();
    mskItemCode->clearMask();
    txtCostRate->setText(QStringLiteral("0"));
    txtSaleRate->setText(QStringLiteral("0"));
    mskItemCode->setFocus(Qt::OtherFocusReason);
}

// ---------------------------------------------------------------- modify

frmModifyItemCoding::frmModifyItemCoding(QWidget *parent)
    : frmItemCoding(ModifyTag{}, parent)
{
    setObjectName(QStringLiteral("frmModifyItemCoding"));
    setTitle(QStringLiteral("MODIFY ITEM CODING"));
    cmbOldItemName = addComboBox(QStringLiteral("cmbOldItemName"), QStringLiteral("OLD ITEM NAME:"));
    mskOldItemCode = addMaskedEdit(QStringLiteral("mskOldItemCode"), QStringLiteral("OLD ITEM CODE:"),
                                   MaskedLineEdit::accountCodeMask());
    EnterToTab::attach(cmbOldItemName);
    EnterToTab::attach(mskOldItemCode);
    buildFields();
    buildButtons(QStringLiteral("cmdModify"), QStringLiteral("&MODIFY"));
    cmdModify = m_command;
    new CommandGate(cmdModify, [this] { return check(); }, [this] { modify(); });
    connect(cmbOldItemName, &QComboBox::currentTextChanged, this, &frmModifyItemCoding::showOldItem);
    mskOldItemCode->installEventFilter(this);
    loadOldNames();
}

void frmModifyItemCoding::onOpened()
{
    cmbOldItemName->setFocus(Qt::OtherFocusReason);
}

void frmModifyItemCoding::loadOldNames()
{
    runSafely(this, [this] {
        const QStringList names = ItemCoding::names(session().db());
        makeSearchable(cmbOldItemName);
        fillCombo(cmbOldItemName, names);
        cmbOldItemName->setCurrentIndex(-1);
        cmbOldItemName->setEditText(QString());
    });
}

void frmModifyItemCoding::showOldItem()
{
    std::optional<ItemCoding::Item> item;
    if (!runSafely(this, [&] { item = ItemCoding::itemByName(session().db(), cmbOldItemName->currentText()); }))
        return;
    if (!item) {
        mskOldItemCode->clearMask();
        return;
    }
    mskOldItemCode->setMaskText(item->code);
    mskItemCode->setMaskText(item->code);
    txtItemName->setText(item->name);
    txtCostRate->setText(item->costRate.toFieldString());
    txtSaleRate->setText(item->saleRate.toFieldString());
    cmbUnitType->setCurrentIndex(qMax(0, cmbUnitType->findText(item->unitType)));
    m_oldItemCode = item->code;
    m_oldItemName = item->name;
}

bool frmModifyItemCoding::eventFilter(QObject *watched, QEvent *event)
{
    // Leaving the old code brings up the item of that code.
    if (watched == mskOldItemCode && event->type() == QEvent::FocusOut) {
        std::optional<ItemCoding::Item> item;
        runSafely(this, [&] { item = ItemCoding::itemByCode(session().db(), mskOldItemCode->maskText()); });
        if (item && item->name != cmbOldItemName->currentText())
            setFieldText(cmbOldItemName, item->name);
    }
    return frmItemCoding::eventFilter(watched, event);
}

bool frmModifyItemCoding::check()
{
    if (txtCostRate->text().isEmpty())
        txtCostRate->setText(QStringLiteral("0"));
    if (txtSaleRate->text().isEmpty())
        txtSaleRate->setText(QStringLiteral("0"));
    Outcome r;
    if (!runSafely(this, [&] {
            r = ItemCoding::checkChange(session().db(), m_oldItemCode, m_oldItemName, enteredItem());
        }))
        return false;
    if (!r.ok)
        refuse(r);
    return r.ok;
}

void frmModifyItemCoding::modify()
{
    Outcome r;
    if (!runSafely(this, [&] {
            r = ItemCoding::modify(session().db(), mskOldItemCode->maskText(), m_oldItemName, enteredItem(),
                                   session().currentUserName, entryDate());
        }))
        return;
    if (!r.ok) {
        refuse(r);
        if (r.field.isEmpty())
            cmbOldItemName->setFocus(Qt::OtherFocusReason);
        return;
    }
    MessageService::information(this, r.message);
    txtItemName->clear();
    mskItemCode->clearMask();
    loadOldNames();
    mskOldItemCode->clearMask();
    m_oldItemCode.clear();
    m_oldItemName.clear();
    cmbOldItemName->setFocus(Qt::OtherFocusReason);
}
