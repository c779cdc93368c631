#include "services/ui/frmOtherServices.h"

#include "accounts/ui/AccountPick.h"
#include "foundation/DateRules.h"
#include "foundation/Session.h"
#include "foundation/ui/CarryOut.h"
#include "foundation/ui/CommandGate.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/ScreenBuild.h"
#include "foundation/ui/ScreenServices.h"
#include "reports/ui/frmViewReport.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>

using namespace ScreenBuild;

namespace {

OtherServices rules()
{
    return OtherServices(session().db(), session().currentUserName, session().dateToday());
}

} // namespace

frmOtherServices::frmOtherServices(QWidget *parent) : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmOtherServices"));
    using K = KeyRules::Kind;
    QWidget *p = detailFrame();
    txtVoucherType = display(p, QStringLiteral("txtVoucherType"));
    txtVoucherType->setText(OtherServiceRules::kType);
    txtVoucherNo = lineEdit(p, QStringLiteral("txtVoucherNo"), K::DigitsOnly);
    mskDate = masked(p, QStringLiteral("mskDate"), MaskedLineEdit::dateMask());
    txtInvoiceNo = lineEdit(p, QStringLiteral("txtInvoiceNo"), K::SafeText);
    mskPartyCode = masked(p, QStringLiteral("mskPartyCode"), MaskedLineEdit::accountCodeMask());
    cmbPartyName = combo(p, QStringLiteral("cmbPartyName"));
    mskSupplierCode = masked(p, QStringLiteral("mskSupplierCode"), MaskedLineEdit::accountCodeMask());
    cmbSupplierName = combo(p, QStringLiteral("cmbSupplierName"));
    for (QComboBox *c : {cmbPartyName, cmbSupplierName}) {
        c->setMinimumContentsLength(36);
        c->lineEdit()->setPlaceholderText(QStringLiteral("Select Airline Name"));
    }
    txtDescription = lineEdit(p, QStringLiteral("txtDescription"), K::SafeText);
    txtReceivedAmount = lineEdit(p, QStringLiteral("txtReceivedAmount"), K::DigitsOnly);
    txtPaidAmount = lineEdit(p, QStringLiteral("txtPaidAmount"), K::DigitsOnly);
    for (QLineEdit *a : {txtReceivedAmount, txtPaidAmount}) {
        a->setAlignment(Qt::AlignRight);
        connect(a, &QLineEdit::editingFinished, a, [a] {
            if (a->text().trimmed().isEmpty())
                a->setText(QStringLiteral("0"));
        });
    }
    cmbCareOf = combo(p, QStringLiteral("cmbCareOf"), K::SafeText);
    dgSearch = grid(p, QStringLiteral("dgSearch"));
    dgSearch->hide();

    FieldGrid g(detailLayout());
    g.putFixed(0, 0, QStringLiteral("VOUCHER TYPE:"), txtVoucherType, 60);
    g.putFixed(1, 0, QStringLiteral("VOUCHER #:"), txtVoucherNo, 100);
    g.putFixed(2, 0, QStringLiteral("DATE:"), mskDate, 110);
    g.putFixed(3, 0, QStringLiteral("INVOICE #:"), txtInvoiceNo, 140);
    g.putFixed(4, 0, QStringLiteral("RECEIVABLE CODE:"), mskPartyCode, 100);
    g.put(5, 0, QStringLiteral("RECEIVABLE NAME:"), cmbPartyName, 1, true);
    g.putFixed(6, 0, QStringLiteral("PAYABLE CODE:"), mskSupplierCode, 100);
    g.put(7, 0, QStringLiteral("PAYABLE NAME:"), cmbSupplierName, 1, true);
    g.put(0, 1, QStringLiteral("DESCRIPTION:"), txtDescription, 1, true);
    g.putFixed(1, 1, QStringLiteral("RECEIVABLE:"), txtReceivedAmount, 140);
    g.putFixed(2, 1, QStringLiteral("PAYABLE AMOUNT:"), txtPaidAmount, 140);
    g.put(3, 1, QStringLiteral("CARE OF:"), cmbCareOf, 1, true);
    detailLayout()->addWidget(dgSearch, 8, 0, 1, 4);
    detailLayout()->setRowStretch(9, 1);

    m_customer = new AccountPick(cmbPartyName, mskPartyCode, dgSearch, this);
    m_supplier = new AccountPick(cmbSupplierName, mskSupplierCode, dgSearch, this);

    cmdOkay = addButton(QStringLiteral("cmdOkay"), QStringLiteral("&SAVE"));
    cmdModify = addButton(QStringLiteral("cmdModify"), QStringLiteral("&MODIFY"));
    cmdDelete = addButton(QStringLiteral("cmdDelete"), QStringLiteral("&DELETE"));
    cmdCancel = addButton(QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    typingOrder({txtVoucherNo, mskDate, txtInvoiceNo, cmbPartyName, cmbSupplierName, txtDescription,
                 txtReceivedAmount, txtPaidAmount, cmbCareOf, cmdOkay, cmdModify, cmdDelete, cmdCancel},
                cmdOkay, {cmbPartyName, cmbSupplierName});

    new CommandGate(cmdOkay, [this] { return entryAllowed(); }, [this] { save(); });
    new CommandGate(cmdModify, [this] { return entryAllowed(); }, [this] { modify(); });
    connect(cmdDelete, &QPushButton::clicked, this, &frmOtherServices::remove);
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);
    connect(mskDate, &QLineEdit::editingFinished, this, [this] {
        if (mskDate->typedText().isEmpty() || !mskDate->isVisible())
            return;
        if (ValidateDate(mskDate))
            CheckClosingDate(mskDate);
    });
    connect(txtVoucherNo, &QLineEdit::editingFinished, this, [this] {
        if (m_mode == Mode::Modify)
            loadVoucher();
    });
    startNew();
}

void frmOtherServices::startNew()
{
    m_mode = Mode::New;
    setTitle(QStringLiteral("OTHER SERVICES"));
    setWindowTitle(QStringLiteral("ENTER OTHER SERVICES"));
    showOnlyButtons({QStringLiteral("cmdOkay"), QStringLiteral("cmdCancel")});
    txtReceivedAmount->setText(QStringLiteral("0"));
    txtPaidAmount->setText(QStringLiteral("0"));
    if (session().connection) {
        mskDate->setDate(session().dateToday());
        proposeNumber();
    }
}

void frmOtherServices::startModify()
{
    m_mode = Mode::Modify;
    setTitle(QStringLiteral("MODIFY OTHER SERVICES"));
    setWindowTitle(QStringLiteral("MODIFY OTHER SERVICES"));
    showOnlyButtons({QStringLiteral("cmdModify"), QStringLiteral("cmdDelete"), QStringLiteral("cmdCancel")});
    txtVoucherNo->clear();
    clearFields();
}

void frmOtherServices::onOpened()
{
    const QString party = cmbPartyName->currentText();
    const QString supplier = cmbSupplierName->currentText();
    m_customer->loadPartyList();
    m_supplier->loadPartyList();
    cmbPartyName->setEditText(party);
    cmbSupplierName->setEditText(supplier);
    const QString careOf = cmbCareOf->currentText();
    LoadCareOfList(cmbCareOf);
    if (!careOf.isEmpty())
        cmbCareOf->setEditText(careOf);
    (m_mode == Mode::New ? static_cast<QWidget *>(mskDate) : txtVoucherNo)->setFocus();
}

void frmOtherServices::proposeNumber()
{
    runSafely(this, [&] { txtVoucherNo->setText(QString::number(rules().nextNumber())); });
}

OtherServiceEntry frmOtherServices::entry() const
{
    OtherServiceEntry e;
    e.voucherNo = txtVoucherNo->text().trimmed().toLongLong();
    e.date = DateRules::fromMaskText(mskDate->maskText());
    e.invoiceNo = txtInvoiceNo->text().trimmed();
    e.partyCode = m_customer->code();
    e.partyName = cmbPartyName->currentText().trimmed();
    e.supplierCode = m_supplier->code();
    e.supplierName = cmbSupplierName->currentText().trimmed();
    e.description = txtDescription->text().trimmed();
    e.received = OtherServiceRules::wholeAmount(txtReceivedAmount->text()).value_or(Money());
    e.paid = OtherServiceRules::wholeAmount(txtPaidAmount->text()).value_or(Money());
    e.careOf = cmbCareOf->currentText().trimmed();
    return e;
}

bool frmOtherServices::entryAllowed()
{
    if (m_mode == Mode::Modify && txtVoucherNo->text().trimmed().isEmpty())
        return refuse(Outcome::refusal(OtherServicesMessages::kNoVoucherNo, QStringLiteral("txtVoucherNo")));
    if (!ValidateDate(mskDate) || !CheckClosingDate(mskDate))
        return false;
    for (QLineEdit *a : {txtReceivedAmount, txtPaidAmount})
        if (!OtherServiceRules::wholeAmount(a->text()))
            return refuse(Outcome::refusal(OtherServicesMessages::kTooLarge, a->objectName()));
    Outcome o;
    if (!runSafely(this, [&] { o = rules().check(entry()); }))
        return false;
    return o ? true : refuse(o);
}

void frmOtherServices::save()
{
    if (!carryOut(this, [&] { return rules().save(entry()); }))
        return;
    // The next voucher starts from this one's fields.
    proposeNumber();
    txtVoucherNo->setFocus();
}

void frmOtherServices::loadVoucher()
{
    const QString typed = txtVoucherNo->text().trimmed();
    if (typed.isEmpty()) {
        refuse(Outcome::refusal(OtherServicesMessages::kNoVoucherNo, QStringLiteral("txtVoucherNo")));
        return;
    }
    std::optional<OtherServiceEntry> e;
    if (!runSafely(this, [&] { e = rules().find(typed.toLongLong()); }))
        return;
    if (!e) {
        clearFields();
        return;
    }
    txtInvoiceNo->setText(e->invoiceNo);
    m_customer->setCode(e->partyCode);
    m_supplier->setCode(e->supplierCode);
    DateToMaskText(e->date, mskDate);
    txtDescription->setText(e->description);
    txtReceivedAmount->setText(QString::number(e->received.toWholeUnits()));
    txtPaidAmount->setText(QString::number(e->paid.toWholeUnits()));
    cmbCareOf->setEditText(e->careOf);
}

void frmOtherServices::modify()
{
    carryOut(this, [&] { return rules().modify(entry()); });
}

void frmOtherServices::remove()
{
    const QString typed = txtVoucherNo->text().trimmed();
    if (typed.isEmpty()) {
        refuse(Outcome::refusal(OtherServicesMessages::kNoVoucherNo, QStringLiteral("txtVoucherNo")));
        return;
    }
    if (!carryOut(this, [&] { return rules().remove(typed.toLongLong()); }))
        return;
    txtVoucherNo->clear();
    clearFields();
    txtVoucherNo->setFocus();
}

void frmOtherServices::clearFields()
{
    txtInvoiceNo->clear();
    m_customer->clear();
    m_supplier->clear();
    mskDate->clearMask();
    txtDescription->clear();
    txtReceivedAmount->setText(QStringLiteral("0"));
    txtPaidAmount->setText(QStringLiteral("0"));
}

frmModifyOtherServices::frmModifyOtherServices(QWidget *parent) : frmOtherServices(parent)
{
    setObjectName(QStringLiteral("frmModifyOtherServices"));
    startModify();
}

// ------------------------------------------------------------ register

frmPrintOtherServices::frmPrintOtherServices(QWidget *parent) : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmPrintOtherServices"));
    setTitle(QStringLiteral("OTHER SERVICES REGISTER"));
    setWindowTitle(QStringLiteral("VIEW OTHER SERVICES REGISTER"));
    mskDateFrom = addMaskedEdit(QStringLiteral("mskDateFrom"), QStringLiteral("DATE FROM:"), MaskedLineEdit::dateMask());
    mskDateTo = addMaskedEdit(QStringLiteral("mskDateTo"), QStringLiteral("DATE TO:"), MaskedLineEdit::dateMask());
    cmdOtherServices = addButton(QStringLiteral("cmdOtherServices"), QStringLiteral("&OTHER SERVICES"));
    cmdCancel = addButton(QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    packFields();
    typingOrder({mskDateFrom, mskDateTo, cmdOtherServices, cmdCancel}, cmdOtherServices);
    new CommandGate(cmdOtherServices, [this] { return ValidateDate(mskDateFrom) && ValidateDate(mskDateTo); },
                    [this] { showRegister(); });
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);
}

void frmPrintOtherServices::onOpened()
{
    if (mskDateTo->typedText().isEmpty() && session().connection)
        mskDateTo->setDate(session().dateToday());
    mskDateFrom->setFocus();
}

void frmPrintOtherServices::showRegister()
{
    const QDate from = DateRules::fromMaskText(mskDateFrom->maskText());
    const QDate to = DateRules::fromMaskText(mskDateTo->maskText());
    session().periodFrom = from;
    session().periodTo = to;
    Reports::showReport(this, OtherServiceRules::registerRequest(from, to, mskDateFrom->maskText(),
                                                                 mskDateTo->maskText()));
}
