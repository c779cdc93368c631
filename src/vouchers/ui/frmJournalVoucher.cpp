#include "vouchers/ui/frmJournalVoucher.h"

#include "foundation/Session.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/QueryTableModel.h"
#include "foundation/ui/ScreenServices.h"
#include "vouchers/VoucherLookups.h"
#include "vouchers/VoucherPosting.h"
#include "vouchers/VoucherStaging.h"

#include <QAction>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QFocusEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QVBoxLayout>

namespace {

const QString kAddedMessage = QStringLiteral("Party has Debited/Credited successfully");
const QString kChangedMessage = QStringLiteral("Party has modified successfully");
const QString kRemovedMessage = QStringLiteral("Party has deleted successfully");
const QString kNoVoucherNo = QStringLiteral("Voucher # is missing, please enter voucher #");
const QString kNoAmount = QStringLiteral("Amount is missing, please enter amount");
const QString kBadSide = QStringLiteral("Select DR/CR, nothing accept others");
const QString kNoChequeDesc = QStringLiteral("Enter cheque description, empty or blank description is not allowed.");
const QString kNoChequeNo = QStringLiteral("Enter cheque voucher #, empty or blank voucher # is not allowed.");
const QString kCloseQuestion = QStringLiteral("Are you sure you want to close this voucher");
const QString kDeleteQuestion = QStringLiteral("Are you sure you want to delete this voucher");

const QStringList kGridCaptions = {QStringLiteral("SR #"),    QStringLiteral("TYPE"),      QStringLiteral("DATE"),
                                   QStringLiteral("V.#"),     QStringLiteral("DETAIL"),    QStringLiteral("A/C NAME"),
                                   QStringLiteral("DEBIT"),   QStringLiteral("CREDIT")};
const int kGridTwips[] = {0, 600, 1100, 600, 2613, 2400, 1200, 1200};

// Amount columns stand to the right.
class RightAligned : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->displayAlignment = Qt::AlignRight | Qt::AlignVCenter;
    }
};

QLabel *caption(const QString &text, QWidget *buddy, QWidget *parent)
{
    auto *l = new QLabel(text, parent);
    l->setBuddy(buddy);
    return l;
}

QLineEdit *display(const QString &name, QWidget *parent)
{
    auto *e = new QLineEdit(parent);
    e->setObjectName(name);
    e->setReadOnly(true);
    e->setFocusPolicy(Qt::ClickFocus); // coloured when clicked, never in the Enter chain
    return e;
}

QComboBox *combo(const QString &name, QWidget *parent, bool editable = true)
{
    auto *c = new QComboBox(parent);
    c->setObjectName(name);
    c->setEditable(editable);
    if (editable)
        c->setInsertPolicy(QComboBox::NoInsert);
    return c;
}

QPushButton *button(const QString &name, const QString &text, QWidget *parent)
{
    auto *b = new QPushButton(text, parent);
    b->setObjectName(name);
    b->setAutoDefault(true);
    b->setMinimumWidth(110);
    return b;
}

SessionConnection &db() { return session().db(); }

QDate today()
{
    return session().today.isValid() ? session().today : QDate::currentDate();
}

} // namespace

// ------------------------------------------------------------ building

frmJournalVoucher::frmJournalVoucher(QWidget *parent) : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmJournalVoucher"));
    setTitle(QStringLiteral("ACCOUNTS VOUCHER"));
    setWindowTitle(QStringLiteral("ENTER VOUCHER"));
    buttonFrame()->hide();

    buildEntryPanel();
    buildQuestionPanel();
    detailLayout()->addWidget(frOuterVoucherNo, 0, 0, 1, 2, Qt::AlignTop | Qt::AlignHCenter);
    detailLayout()->addWidget(frOuterVoucher, 1, 0, 1, 2);
    detailLayout()->setRowStretch(1, 1);
    frOuterVoucherNo->hide();

    // Form load.
    {
        const QSignalBlocker b(cmbDBCR);
        cmbDBCR->addItems({QStringLiteral("CR"), QStringLiteral("DR")});
        cmbDBCR->setCurrentText(QStringLiteral("CR"));
    }
    if (session().connection)
        runSafely(this, [&] {
            fillCombo(cmbModifyVoucherType, VoucherLookups::ledgerVoucherTypes(db()));
            cmbModifyVoucherType->setCurrentIndex(-1);
        });
}

void frmJournalVoucher::buildEntryPanel()
{
    frOuterVoucher = new QFrame(frDetail);
    frOuterVoucher->setObjectName(QStringLiteral("frOuterVoucher"));
    auto *outer = new QVBoxLayout(frOuterVoucher);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->setSpacing(8);

    auto *fields = new QGridLayout;
    fields->setHorizontalSpacing(10);
    fields->setVerticalSpacing(7);
    outer->addLayout(fields);
    QWidget *p = frOuterVoucher;

    mskDate = new MaskedLineEdit(MaskedLineEdit::dateMask(), p);
    mskDate->setObjectName(QStringLiteral("mskDate"));
    cmbVoucherType = combo(QStringLiteral("cmbVoucherType"), p);
    LettersUpperObj::attach(cmbVoucherType);
    txtVoucherNo = new QLineEdit(p);
    txtVoucherNo->setObjectName(QStringLiteral("txtVoucherNo"));
    DigitsOnly::attach(txtVoucherNo);
    txtInvoiceNo = new QLineEdit(p);
    txtInvoiceNo->setObjectName(QStringLiteral("txtInvoiceNo"));
    DigitsOnly::attach(txtInvoiceNo);
    cmbPartyName = combo(QStringLiteral("cmbPartyName"), p);
    makeSearchable(cmbPartyName);
    SafeTextKey::attach(cmbPartyName);
    txtPartyCode = display(QStringLiteral("txtPartyCode"), p);
    txtBalance = display(QStringLiteral("txtBalance"), p);
    txtDesc = new QLineEdit(p);
    txtDesc->setObjectName(QStringLiteral("txtDesc"));
    SafeTextKey::attach(txtDesc);
    txtAmount = new QLineEdit(p);
    txtAmount->setObjectName(QStringLiteral("txtAmount"));
    txtAmount->setAlignment(Qt::AlignRight);
    DecimalOnly::attach(txtAmount);
    cmbDBCR = combo(QStringLiteral("cmbDBCR"), p);
    LettersUpperObj::attach(cmbDBCR);
    chkPostDatedCheque = new QCheckBox(QStringLiteral("POSTED CHEQUE"), p);
    chkPostDatedCheque->setObjectName(QStringLiteral("chkPostDatedCheque"));
    cmbChequeDesc = combo(QStringLiteral("cmbChequeDesc"), p);
    SafeTextKey::attach(cmbChequeDesc);
    cmbCHQVoucherNo = combo(QStringLiteral("cmbCHQVoucherNo"), p);
    DigitsOnly::attach(cmbCHQVoucherNo);
    cmbChequeDesc->setEnabled(false);
    cmbCHQVoucherNo->setEnabled(false);

    mskDate->setFixedWidth(110);
    cmbVoucherType->setFixedWidth(90);
    txtVoucherNo->setFixedWidth(100);
    txtInvoiceNo->setFixedWidth(120);
    txtPartyCode->setFixedWidth(100);
    txtBalance->setFixedWidth(170);
    txtAmount->setFixedWidth(140);
    cmbDBCR->setFixedWidth(90);
    cmbCHQVoucherNo->setFixedWidth(100);
    cmbPartyName->setMinimumContentsLength(40);
    cmbChequeDesc->setMinimumContentsLength(20);

    // label, field pairs in four columns; the last column takes the slack
    auto put = [&](int row, int col, const QString &text, QWidget *w, int span = 1) {
        if (!text.isEmpty())
            fields->addWidget(caption(text, w, p), row, col * 2, Qt::AlignRight | Qt::AlignVCenter);
        fields->addWidget(w, row, col * 2 + 1, 1, span * 2 - 1, Qt::AlignLeft);
    };
    put(0, 0, QStringLiteral("DATE"), mskDate);
    put(0, 1, QStringLiteral("VOUCHER TYPE"), cmbVoucherType);
    put(0, 2, QStringLiteral("VOUCHER #"), txtVoucherNo);
    put(0, 3, QStringLiteral("INV/RECEIPT #"), txtInvoiceNo);
    fields->addWidget(cmbPartyName, 1, 1, 1, 3);
    fields->addWidget(caption(QStringLiteral("PARTY NAME"), cmbPartyName, p), 1, 0, Qt::AlignRight | Qt::AlignVCenter);
    put(1, 2, QStringLiteral("PARTY CODE"), txtPartyCode);
    put(1, 3, QStringLiteral("ACCOUNT BALANCE"), txtBalance);
    fields->addWidget(caption(QStringLiteral("DESCRIPTION"), txtDesc, p), 2, 0, Qt::AlignRight | Qt::AlignVCenter);
    fields->addWidget(txtDesc, 2, 1, 1, 5);
    put(3, 0, QStringLiteral("AMOUNT"), txtAmount);
    put(3, 1, QStringLiteral("DR/CR"), cmbDBCR);
    fields->addWidget(chkPostDatedCheque, 3, 5, 1, 1, Qt::AlignLeft);
    fields->addWidget(caption(QStringLiteral("CHQ DESC:"), cmbChequeDesc, p), 4, 0, Qt::AlignRight | Qt::AlignVCenter);
    fields->addWidget(cmbChequeDesc, 4, 1, 1, 3);
    put(4, 2, QStringLiteral("VOUCHER #:"), cmbCHQVoucherNo);
    fields->setColumnStretch(8, 1);

    frDebitButton = new QFrame(p);
    frDebitButton->setObjectName(QStringLiteral("frDebitButton"));
    auto *lineButtons = new QHBoxLayout(frDebitButton);
    lineButtons->setContentsMargins(0, 0, 0, 0);
    cmdNew = button(QStringLiteral("cmdNew"), QStringLiteral("&NEW"), frDebitButton);
    cmdModify = button(QStringLiteral("cmdModify"), QStringLiteral("&MODIFY"), frDebitButton);
    cmdDelete = button(QStringLiteral("cmdDelete"), QStringLiteral("&DELETE"), frDebitButton);
    cmdNew->setToolTip(QStringLiteral("Add the line to the voucher"));
    cmdModify->setToolTip(QStringLiteral("Change the line loaded from the list"));
    cmdDelete->setToolTip(QStringLiteral("Remove the line loaded from the list"));
    lineButtons->addStretch(1);
    lineButtons->addWidget(cmdNew);
    lineButtons->addWidget(cmdModify);
    lineButtons->addWidget(cmdDelete);
    lineButtons->addStretch(1);
    outer->addWidget(frDebitButton);

    auto *gridHead = new QHBoxLayout;
    auto *gridCaption = new QLabel(QStringLiteral("VOUCHER TRANSACTION LIST"), p);
    gridCaption->setObjectName(QStringLiteral("lblVoucherList"));
    gridCaption->setStyleSheet(QStringLiteral("font-weight: bold;"));
    auto *hint = new QLabel(QStringLiteral("SELECT AND DOUBLE CLICK TO MODIFY ANY ENTRY"), p);
    hint->setObjectName(QStringLiteral("lblHint"));
    hint->setStyleSheet(QStringLiteral("color: #017C6A;"));
    gridHead->addWidget(gridCaption);
    gridHead->addStretch(1);
    gridHead->addWidget(hint);
    outer->addLayout(gridHead);

    dgVoucher = new QTableView(p);
    dgVoucher->setObjectName(QStringLiteral("dgVoucher"));
    dgVoucher->setModel(new QueryTableModel(dgVoucher));
    dgVoucher->setSelectionBehavior(QAbstractItemView::SelectRows);
    dgVoucher->setSelectionMode(QAbstractItemView::SingleSelection);
    dgVoucher->setEditTriggers(QAbstractItemView::NoEditTriggers);
    dgVoucher->setAlternatingRowColors(true);
    dgVoucher->verticalHeader()->hide();
    dgVoucher->verticalHeader()->setDefaultSectionSize(dgVoucher->fontMetrics().height() + 6);
    dgVoucher->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    dgVoucher->setItemDelegateForColumn(6, new RightAligned(dgVoucher));
    dgVoucher->setItemDelegateForColumn(7, new RightAligned(dgVoucher));
    dgVoucher->setMinimumHeight(150);
    outer->addWidget(dgVoucher, 1);

    auto *figures = new QGridLayout;
    lblPCashInHand = new QLabel(QStringLiteral("PREVIOUS CASH :"), p);
    lblPCashInHand->setObjectName(QStringLiteral("lblPCashInHand"));
    txtPCashInHand = display(QStringLiteral("txtPCashInHand"), p);
    lblCCashInHand = new QLabel(QStringLiteral("CURRENT CASH :"), p);
    lblCCashInHand->setObjectName(QStringLiteral("lblCCashInHand"));
    txtCCashInHand = display(QStringLiteral("txtCCashInHand"), p);
    txtTotalDebit = display(QStringLiteral("txtTotalDebit"), p);
    txtTotalCredit = display(QStringLiteral("txtTotalCredit"), p);
    for (QLineEdit *e : {txtPCashInHand, txtCCashInHand, txtTotalDebit, txtTotalCredit}) {
        e->setAlignment(Qt::AlignRight);
        e->setMaximumWidth(160);
    }
    figures->addWidget(lblPCashInHand, 0, 0, Qt::AlignRight);
    figures->addWidget(txtPCashInHand, 0, 1);
    figures->addWidget(lblCCashInHand, 0, 2, Qt::AlignRight);
    figures->addWidget(txtCCashInHand, 0, 3);
    figures->setColumnStretch(4, 1);
    figures->addWidget(caption(QStringLiteral("DEBIT"), txtTotalDebit, p), 0, 5, Qt::AlignRight);
    figures->addWidget(txtTotalDebit, 0, 6);
    figures->addWidget(caption(QStringLiteral("CREDIT"), txtTotalCredit, p), 0, 7, Qt::AlignRight);
    figures->addWidget(txtTotalCredit, 0, 8);
    outer->addLayout(figures);

    frSave = new QFrame(p);
    frSave->setObjectName(QStringLiteral("frSave"));
    frSave->setFrameShape(QFrame::StyledPanel);
    auto *saveButtons = new QHBoxLayout(frSave);
    saveButtons->setContentsMargins(10, 6, 10, 6);
    cmdModifyVoucher = button(QStringLiteral("cmdModifyVoucher"), QStringLiteral("&SAVE"), frSave);
    cmdDeleteVoucher = button(QStringLiteral("cmdDeleteVoucher"), QStringLiteral("DELETE &VOUCHER"), frSave);
    cmdAddParty = button(QStringLiteral("cmdAddParty"), QStringLiteral("ADD &PARTY"), frSave);
    cmdModifyVoucher->setToolTip(QStringLiteral("Save the voucher (Alt+S)"));
    saveButtons->addStretch(1);
    saveButtons->addWidget(cmdModifyVoucher);
    saveButtons->addWidget(cmdDeleteVoucher);
    saveButtons->addWidget(cmdAddParty);
    saveButtons->addStretch(1);
    outer->addWidget(frSave);

    // Enter moves on, in the order a clerk types a line.
    for (QWidget *w : std::initializer_list<QWidget *>{mskDate, cmbVoucherType, txtVoucherNo, txtInvoiceNo, cmbPartyName,
                                                        txtDesc, txtAmount, cmbDBCR, chkPostDatedCheque, cmbChequeDesc,
                                                        cmbCHQVoucherNo})
        EnterToTab::attach(w);
    QWidget::setTabOrder(mskDate, cmbVoucherType);
    QWidget::setTabOrder(cmbVoucherType, txtVoucherNo);
    QWidget::setTabOrder(txtVoucherNo, txtInvoiceNo);
    QWidget::setTabOrder(txtInvoiceNo, cmbPartyName);
    QWidget::setTabOrder(cmbPartyName, txtDesc);
    QWidget::setTabOrder(txtDesc, txtAmount);
    QWidget::setTabOrder(txtAmount, cmbDBCR);
    QWidget::setTabOrder(cmbDBCR, chkPostDatedCheque);
    QWidget::setTabOrder(chkPostDatedCheque, cmbChequeDesc);
    QWidget::setTabOrder(cmbChequeDesc, cmbCHQVoucherNo);
    QWidget::setTabOrder(cmbCHQVoucherNo, cmdNew);
    QWidget::setTabOrder(cmdNew, cmdModify);
    QWidget::setTabOrder(cmdModify, cmdDelete);
    QWidget::setTabOrder(cmdDelete, dgVoucher);
    QWidget::setTabOrder(dgVoucher, cmdModifyVoucher);
    QWidget::setTabOrder(cmdModifyVoucher, cmdDeleteVoucher);
    QWidget::setTabOrder(cmdDeleteVoucher, cmdAddParty);

    mskDate->installEventFilter(this);
    cmbDBCR->installEventFilter(this);
    for (QPushButton *b : {cmdNew, cmdModify, cmdDelete, cmdModifyVoucher})
        b->installEventFilter(this);

    connect(cmbVoucherType, &QComboBox::editTextChanged, this, [this] { voucherTypeChanged(); });
    connect(cmbPartyName, &QComboBox::editTextChanged, this, [this] { accountChanged(); });
    connect(cmbChequeDesc, &QComboBox::editTextChanged, this, [this] { chequeDescChanged(); });
    connect(cmbCHQVoucherNo, &QComboBox::editTextChanged, this, [this] { chequeNoChanged(); });
    connect(chkPostDatedCheque, &QCheckBox::toggled, this, [this](bool on) {
        cmbChequeDesc->setEnabled(on);
        cmbCHQVoucherNo->setEnabled(on);
    });
    connect(cmdNew, &QPushButton::clicked, this, [this] { addLine(); });
    connect(cmdModify, &QPushButton::clicked, this, [this] { changeLine(); });
    connect(cmdDelete, &QPushButton::clicked, this, [this] { removeLine(); });
    connect(cmdModifyVoucher, &QPushButton::clicked, this, [this] { saveVoucher(); });
    connect(cmdDeleteVoucher, &QPushButton::clicked, this, [this] { deleteVoucher(); });
    connect(cmdAddParty, &QPushButton::clicked, this, [this] {
        if (QAction *a = window()->findChild<QAction *>(QStringLiteral("mnuPPartyInfo")); a && a->isEnabled())
            a->trigger();
    });
    connect(dgVoucher, &QTableView::doubleClicked, this, [this](const QModelIndex &i) { loadLine(i.row()); });
    connect(dgVoucher, &QTableView::activated, this, [this](const QModelIndex &i) { loadLine(i.row()); });
}

void frmJournalVoucher::buildQuestionPanel()
{
    frOuterVoucherNo = new QFrame(frDetail);
    frOuterVoucherNo->setObjectName(QStringLiteral("frOuterVoucherNo"));
    frOuterVoucherNo->setFrameShape(QFrame::StyledPanel);
    auto *g = new QGridLayout(frOuterVoucherNo);
    g->setContentsMargins(24, 16, 24, 16);
    g->setVerticalSpacing(10);
    QWidget *p = frOuterVoucherNo;
    lblVoucherNo = new QLabel(QStringLiteral("MODIFY VOUCHER"), p);
    lblVoucherNo->setObjectName(QStringLiteral("lblVoucherNo"));
    lblVoucherNo->setAlignment(Qt::AlignCenter);
    lblVoucherNo->setStyleSheet(QStringLiteral("font-weight: bold; font-size: 12pt; color: #017C6A;"));
    cmbModifyVoucherType = combo(QStringLiteral("cmbModifyVoucherType"), p);
    LettersUpperObj::attach(cmbModifyVoucherType);
    cmbModifyVoucherType->setMinimumContentsLength(6);
    txtShowVoucherNo = new QLineEdit(p);
    txtShowVoucherNo->setObjectName(QStringLiteral("txtShowVoucherNo"));
    DigitsOnly::attach(txtShowVoucherNo);
    mskDateModifyVoucher = new MaskedLineEdit(MaskedLineEdit::dateMask(), p);
    mskDateModifyVoucher->setObjectName(QStringLiteral("mskDateModifyVoucher"));
    cmdVoucherNoOkay = button(QStringLiteral("cmdVoucherNoOkay"), QStringLiteral("&OKAY"), p);
    cmdVoucherNoCancel = button(QStringLiteral("cmdVoucherNoCancel"), QStringLiteral("&CANCEL"), p);

    g->addWidget(lblVoucherNo, 0, 0, 1, 2);
    g->addWidget(caption(QStringLiteral("VOUCHER TYPE:"), cmbModifyVoucherType, p), 1, 0, Qt::AlignRight);
    g->addWidget(cmbModifyVoucherType, 1, 1);
    g->addWidget(caption(QStringLiteral("VOUCHER #:"), txtShowVoucherNo, p), 2, 0, Qt::AlignRight);
    g->addWidget(txtShowVoucherNo, 2, 1);
    g->addWidget(caption(QStringLiteral("VOUCHER DATE:"), mskDateModifyVoucher, p), 3, 0, Qt::AlignRight);
    g->addWidget(mskDateModifyVoucher, 3, 1);
    auto *row = new QHBoxLayout;
    row->addWidget(cmdVoucherNoOkay);
    row->addWidget(cmdVoucherNoCancel);
    g->addLayout(row, 4, 0, 1, 2);

    for (QWidget *w : std::initializer_list<QWidget *>{cmbModifyVoucherType, txtShowVoucherNo, mskDateModifyVoucher})
        EnterToTab::attach(w);
    QWidget::setTabOrder(cmbModifyVoucherType, txtShowVoucherNo);
    QWidget::setTabOrder(txtShowVoucherNo, mskDateModifyVoucher);
    QWidget::setTabOrder(mskDateModifyVoucher, cmdVoucherNoOkay);
    QWidget::setTabOrder(cmdVoucherNoOkay, cmdVoucherNoCancel);
    cmdVoucherNoOkay->installEventFilter(this);
    connect(cmdVoucherNoOkay, &QPushButton::clicked, this, [this] { loadVoucher(); });
    connect(cmdVoucherNoCancel, &QPushButton::clicked, this, [this] { closeScreen(); });
}

// ------------------------------------------------------------ opening

void StartVoucherScreen(frmJournalVoucher *f)
{
    f->lblPCashInHand->show();
    f->txtPCashInHand->show();
    f->lblCCashInHand->show();
    f->txtCCashInHand->show();
    runSafely(f, [&] {
        f->showPreviousCash(Ledger::accountBalance(session().db(), Ledger::kCashCode).value_or(Money()));
        VoucherStaging(session().db()).clear();
    });
    f->frOuterVoucherNo->hide();
    f->frOuterVoucher->show();
    session().voucherMode = QStringLiteral("NEW");
    f->setWindowTitle(QStringLiteral("JOURNAL VOUCHER"));
    f->onOpened();
    f->cmbPartyName->setEditText(QString());
    f->mskDate->setDate(session().today.isValid() ? session().today : QDate::currentDate());
    f->txtTotalCredit->clear();
    f->txtTotalDebit->clear();
    f->txtCCashInHand->setText(f->txtPCashInHand->text()); // nothing typed yet: the cash as it stands
    f->rebindGrid();
    f->mskDate->setFocus();
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
    runSafely(this, [&] {
        VoucherStaging(db()).clear();
        const QString keep = cmbModifyVoucherType->currentText();
        fillCombo(cmbModifyVoucherType, VoucherLookups::ledgerVoucherTypes(db()));
        cmbModifyVoucherType->setEditText(keep);
    });
    session().voucherMode = QStringLiteral("MODIFY");
    frOuterVoucher->hide();
    frOuterVoucherNo->show();
    mskDate->setDate(today());
    setWindowTitle(QStringLiteral("MODIFY VOUCHER"));
    rebindGrid();
    cmbModifyVoucherType->setFocus();
}

void frmJournalVoucher::onOpened()
{
    loadAccountList();
    loadCheques();
}

void frmJournalVoucher::showEvent(QShowEvent *event)
{
    BaseScreen::showEvent(event);
    if (m_activationHooked)
        return;
    if (auto *sub = qobject_cast<QMdiSubWindow *>(parentWidget()); sub && sub->mdiArea()) {
        m_activationHooked = true;
        connect(sub->mdiArea(), &QMdiArea::subWindowActivated, this, [this, sub](QMdiSubWindow *active) {
            if (active == sub)
                onOpened(); // back from another screen, e.g. a new account
        });
    }
}

void frmJournalVoucher::loadAccountList()
{
    runSafely(this, [&] {
        const QueryResult rows = VoucherLookups::accountList(db());
        QStringList names, codes;
        for (const Row &r : rows) {
            names << r.text(0).trimmed();
            codes << r.text(1).trimmed();
        }
        const QString keep = cmbPartyName->currentText();
        m_quiet = true;
        fillCombo(cmbPartyName, names, codes);
        cmbPartyName->setCurrentIndex(-1);
        cmbPartyName->setEditText(keep);
        m_quiet = false;
    });
}

void frmJournalVoucher::loadCheques()
{
    runSafely(this, [&] {
        QStringList descs, numbers;
        for (const Row &r : VoucherLookups::openCheques(db())) {
            descs << r.text(0);
            numbers << r.text(1);
        }
        const QSignalBlocker a(cmbChequeDesc);
        const QSignalBlocker b(cmbCHQVoucherNo);
        const QString d = cmbChequeDesc->currentText();
        const QString n = cmbCHQVoucherNo->currentText();
        cmbChequeDesc->clear();
        cmbChequeDesc->addItems(descs);
        cmbCHQVoucherNo->clear();
        cmbCHQVoucherNo->addItems(numbers);
        cmbChequeDesc->setEditText(d);
        cmbCHQVoucherNo->setEditText(n);
    });
}

void frmJournalVoucher::showPreviousCash(const std::optional<Money> &balance)
{
    if (!balance)
        return; // no cash row: the figure stays as it was
    const auto fig = VoucherRules::cashFigure(balance);
    m_previousCash = fig.magnitude;
    m_previousCashSide = fig.side;
    txtPCashInHand->setText(fig.text());
}

void frmJournalVoucher::rebindGrid()
{
    runSafely(this, [&] {
        auto *model = qobject_cast<QueryTableModel *>(dgVoucher->model());
        model->setResult(VoucherLookups::gridRows(db()), kGridCaptions);
        dgVoucher->setColumnHidden(0, true);
        fitGridColumns();
    });
}

// The columns keep their proportions and fill the grid's width.
void frmJournalVoucher::fitGridColumns()
{
    int total = 0;
    for (int w : kGridTwips)
        total += w;
    const double perTwip = qMax(dgVoucher->logicalDpiX() / 1440.0, (dgVoucher->viewport()->width() - 4) / double(total));
    for (int c = 1; c < 8; ++c)
        dgVoucher->setColumnWidth(c, int(kGridTwips[c] * perTwip));
}

void frmJournalVoucher::resizeEvent(QResizeEvent *event)
{
    BaseScreen::resizeEvent(event);
    fitGridColumns();
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
    if (!ValidateDate(mskDate))
        return;
    if (!CheckClosingDate(mskDate))
        return;
    if (session().voucherMode == QLatin1String("NEW"))
        proposeNumber();
}

void frmJournalVoucher::accountChanged()
{
    if (m_quiet)
        return;
    runSafely(this, [&] {
        const auto code = VoucherLookups::codeOfName(db(), cmbPartyName->currentText());
        if (!code) {
            txtPartyCode->clear();
            return; // the balance keeps what it shows
        }
        txtPartyCode->setText(*code);
        txtBalance->setText(Ledger::balanceText(Ledger::accountBalance(db(), *code)));
    });
}

void frmJournalVoucher::sideLeft()
{
    const QString side = cmbDBCR->currentText();
    if (side != QLatin1String("CR") && side != QLatin1String("DR")) {
        MessageService::critical(this, kBadSide);
        cmbDBCR->setFocus();
        return;
    }
    forceSide();
}

void frmJournalVoucher::chequeDescChanged()
{
    const QString d = cmbChequeDesc->currentText();
    if (d.isEmpty())
        return;
    runSafely(this, [&] {
        const auto no = VoucherLookups::openChequeNo(db(), d);
        const QSignalBlocker b(cmbCHQVoucherNo);
        cmbCHQVoucherNo->setEditText(no ? QString::number(*no) : QString());
    });
}

void frmJournalVoucher::chequeNoChanged()
{
    const QString n = cmbCHQVoucherNo->currentText();
    if (n.isEmpty())
        return;
    runSafely(this, [&] {
        const auto d = VoucherLookups::openChequeDescription(db(), n.toLongLong());
        const QSignalBlocker b(cmbChequeDesc);
        cmbChequeDesc->setEditText(d.value_or(QString()));
    });
}

bool frmJournalVoucher::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusOut && !m_quiet) {
        const auto reason = static_cast<QFocusEvent *>(event)->reason();
        // A box or another window taking the focus is no leaving of the field.
        const bool leaving = reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason;
        if (leaving && isVisible()) {
            if (watched == mskDate && frOuterVoucher->isVisible())
                QMetaObject::invokeMethod(this, [this] { dateLeft(); }, Qt::QueuedConnection);
            else if (watched == cmbDBCR && frOuterVoucher->isVisible())
                QMetaObject::invokeMethod(this, [this] { sideLeft(); }, Qt::QueuedConnection);
        }
    } else if (event->type() == QEvent::FocusIn) {
        if (auto *b = qobject_cast<QPushButton *>(watched)) {
            const auto reason = static_cast<QFocusEvent *>(event)->reason();
            if (reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason) {
                m_refusedOnEntry = nullptr;
                if (!buttonChecks(b))
                    m_refusedOnEntry = b;
            }
        }
    }
    return BaseScreen::eventFilter(watched, event);
}

// ------------------------------------------------------------ checks

bool frmJournalVoucher::lineChecks(LineButton b)
{
    auto refuse = [&](const QString &text, QWidget *focus) {
        MessageService::critical(this, text);
        if (focus)
            focus->setFocus();
        return false;
    };
    if (b == LineButton::New && !ValidateDate(mskDate))
        return false;
    if (txtVoucherNo->text().trimmed().isEmpty())
        return refuse(kNoVoucherNo, txtVoucherNo);
    if (!PartyNameExists(cmbPartyName))
        return false;
    if (txtAmount->text().trimmed().isEmpty())
        return refuse(kNoAmount, txtAmount);
    if (b != LineButton::Delete) {
        const QString side = cmbDBCR->currentText();
        if (side != QLatin1String("CR") && side != QLatin1String("DR"))
            return refuse(kBadSide, cmbDBCR);
        forceSide();
    }
    if (chkPostDatedCheque->isChecked() && cmbChequeDesc->currentText().trimmed().isEmpty())
        return refuse(kNoChequeDesc, cmbChequeDesc);
    if (chkPostDatedCheque->isChecked() && cmbCHQVoucherNo->currentText().trimmed().isEmpty())
        return refuse(kNoChequeNo, cmbCHQVoucherNo);
    return true;
}

bool frmJournalVoucher::buttonChecks(QPushButton *b)
{
    if (b == cmdNew)
        return lineChecks(LineButton::New);
    if (b == cmdModify)
        return lineChecks(LineButton::Modify);
    if (b == cmdDelete)
        return lineChecks(LineButton::Delete);
    if (b == cmdVoucherNoOkay)
        return ValidateDate(mskDateModifyVoucher);
    if (b == cmdModifyVoucher && session().voucherMode == QLatin1String("MODIFY")) {
        // A new number or date must not be another voucher's.
        const VoucherKey original = originalKey();
        const VoucherKey h = header();
        if (h.number == original.number && h.date == original.date)
            return true;
        bool taken = false;
        if (!runSafely(this, [&] { taken = Ledger::voucherNumberTaken(db(), h.type, h.number, original); }))
            return false;
        if (taken) {
            MessageService::critical(this, VoucherMessages::kDuplicate);
            txtVoucherNo->setFocus();
            return false;
        }
    }
    return true;
}

// A click that follows a refused entry into the button does nothing; any
// other click runs the checks itself (a click on a button that already
// had the focus, or from a test).
bool frmJournalVoucher::refusedOnEntry(QPushButton *b)
{
    if (m_refusedOnEntry == b) {
        m_refusedOnEntry = nullptr;
        return true;
    }
    return !buttonChecks(b);
}

// ------------------------------------------------------------ lines

LineInput frmJournalVoucher::currentLine() const
{
    LineInput in;
    in.invoiceNo = txtInvoiceNo->text().trimmed();
    in.partyName = cmbPartyName->currentText();
    in.partyCode = txtPartyCode->text();
    if (const auto code = VoucherLookups::codeOfName(db(), in.partyName))
        in.partyCode = *code;
    in.description = txtDesc->text().trimmed();
    in.amount = Money::parseOrZero(txtAmount->text());
    in.side = cmbDBCR->currentText();
    if (chkPostDatedCheque->isChecked())
        in.cheque = ChequeLink{cmbCHQVoucherNo->currentText().trimmed().toLongLong(), cmbChequeDesc->currentText()};
    return in;
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

void frmJournalVoucher::showTotals(bool zeroWhenEmpty)
{
    const VoucherTotals t = VoucherStaging(db()).totals();
    if (t.debit || t.credit) {
        txtTotalDebit->setText(t.debit.value_or(Money()).toFieldString());
        txtTotalCredit->setText(t.credit.value_or(Money()).toFieldString());
    } else if (zeroWhenEmpty) {
        txtTotalDebit->setText(QStringLiteral("0"));
        txtTotalCredit->setText(QStringLiteral("0"));
    }
}

void frmJournalVoucher::showCurrentCash(bool leaveOtherTypes)
{
    const QString type = cmbVoucherType->currentText().trimmed();
    const VoucherTotals t{Money::parse(txtTotalDebit->text()), Money::parse(txtTotalCredit->text())};
    const auto cash = VoucherRules::currentCash(type, m_previousCash, t);
    if (cash)
        txtCCashInHand->setText(cash->toFieldString());
    else if (!leaveOtherTypes)
        txtCCashInHand->clear();
}

void frmJournalVoucher::addLine()
{
    if (refusedOnEntry(cmdNew))
        return;
    runSafely(this, [&] {
        const VoucherKey h = header();
        session().workDate = h.date;
        VoucherStaging(db()).addLine(h, currentLine(), m_lineSrNo);
        showTotals(false);
        showCurrentCash(false);
        MessageService::information(this, kAddedMessage);
        txtAmount->clear();
        cmbPartyName->setFocus();
        rebindGrid();
    });
}

void frmJournalVoucher::changeLine()
{
    if (refusedOnEntry(cmdModify))
        return;
    runSafely(this, [&] {
        VoucherStaging(db()).changeLine(m_lineSrNo, header(), currentLine());
        showTotals(false);
        showCurrentCash(false);
        MessageService::information(this, kChangedMessage);
        txtAmount->clear();
        cmbPartyName->setFocus();
        rebindGrid();
    });
}

void frmJournalVoucher::removeLine()
{
    if (refusedOnEntry(cmdDelete))
        return;
    runSafely(this, [&] {
        std::optional<ChequeLink> giveBack;
        if (chkPostDatedCheque->isChecked())
            giveBack = ChequeLink{cmbCHQVoucherNo->currentText().trimmed().toLongLong(), cmbChequeDesc->currentText()};
        VoucherStaging(db()).removeLine(m_lineSrNo, giveBack);
        showTotals(true);
        showCurrentCash(true);
        MessageService::information(this, kRemovedMessage);
        txtAmount->clear();
        cmbPartyName->setFocus();
        rebindGrid();
    });
}

void frmJournalVoucher::loadLine(int row)
{
    auto *model = qobject_cast<QueryTableModel *>(dgVoucher->model());
    if (!model || row < 0 || row >= model->rowCount())
        return;
    m_lineSrNo = model->rawValue(row, 0).toLongLong();
    runSafely(this, [&] {
        const auto line = VoucherStaging(db()).line(m_lineSrNo);
        if (!line)
            return;
        const auto r = db().selectOne(QStringLiteral("SELECT VoucherType, VoucherNo, VDate FROM tblPartyBalanceEmpty "
                                                     "WHERE SrNo = ?"),
                                      {m_lineSrNo});
        if (!r)
            return;
        m_quiet = true;
        cmbVoucherType->setCurrentText(r->text(0).trimmed());
        m_quiet = false;
        txtVoucherNo->setText(QString::number(r->integer(1)));
        txtInvoiceNo->setText(line->invoiceNo);
        if (r->date(2).isValid())
            mskDate->setDate(r->date(2));
        cmbPartyName->setEditText(line->partyName);
        txtDesc->setText(line->description);
        if (line->debit.isPositive()) {
            txtAmount->setText(line->debit.toFieldString());
            cmbDBCR->setCurrentText(QStringLiteral("DR"));
        } else if (line->credit.isPositive()) {
            txtAmount->setText(line->credit.toFieldString());
            cmbDBCR->setCurrentText(QStringLiteral("CR"));
        }
    });
}

// ------------------------------------------------------------ saving

void frmJournalVoucher::saveVoucher()
{
    if (refusedOnEntry(cmdModifyVoucher))
        return;
    if (txtTotalDebit->text().isEmpty() && txtTotalCredit->text().isEmpty()) {
        MessageService::critical(this, VoucherMessages::kNothingEntered);
        cmbPartyName->setFocus();
        return;
    }
    if (txtVoucherNo->text().trimmed().isEmpty()) {
        MessageService::critical(this, kNoVoucherNo);
        txtVoucherNo->setFocus();
        return;
    }
    // The date of the rows must be a real, open date, however the focus
    // travelled.
    if (!ValidateDate(mskDate) || !CheckClosingDate(mskDate))
        return;
    if (session().voucherMode == QLatin1String("MODIFY"))
        saveModified();
    else
        saveNew();
}

void frmJournalVoucher::saveNew()
{
    const VoucherKey h = header();
    const NumberPolicy policy = txtVoucherNo->text() == m_proposedNo ? NumberPolicy::Proposed : NumberPolicy::Typed;
    PostingOutcome out;
    if (!runSafely(this, [&] { out = VoucherPosting(db(), session().currentUserName, today()).saveNew(h, policy); }))
        return; // the database's reason was shown; the lines are still staged
    if (!out.posted) {
        MessageService::critical(this, out.message);
        if (out.fault == PostingOutcome::Fault::Number)
            txtVoucherNo->setFocus();
        return;
    }
    txtVoucherNo->setText(QString::number(out.voucherNo));
    if (!out.notice.isEmpty())
        MessageService::information(this, out.notice);
    MessageService::information(this, out.message);
    resetAfterSave();
    runSafely(this, [&] {
        showPreviousCash(Ledger::accountBalance(db(), Ledger::kCashCode));
        rebindGrid();
        txtVoucherNo->setText(QString::number(Ledger::nextVoucherNo(db(), cmbVoucherType->currentText().trimmed())));
        m_proposedNo = txtVoucherNo->text();
    });
}

void frmJournalVoucher::resetAfterSave()
{
    txtTotalCredit->clear();
    txtTotalDebit->clear();
    txtCCashInHand->clear();
    cmbVoucherType->setFocus();
}

void frmJournalVoucher::saveModified()
{
    PostingOutcome out;
    if (!runSafely(this, [&] {
            out = VoucherPosting(db(), session().currentUserName, today()).saveModified(originalKey(), header());
        }))
        return;
    if (!out.posted) {
        MessageService::critical(this, out.message);
        if (out.fault == PostingOutcome::Fault::Number)
            txtVoucherNo->setFocus();
        return;
    }
    MessageService::information(this, out.message);
    txtTotalCredit->clear();
    txtTotalDebit->clear();
    cmbVoucherType->setFocus();
    rebindGrid();
    lblPCashInHand->hide();
    lblCCashInHand->hide();
    txtPCashInHand->hide();
    txtCCashInHand->hide();
    frOuterVoucher->hide();
    frOuterVoucherNo->show();
    txtShowVoucherNo->setFocus();
}

void frmJournalVoucher::deleteVoucher()
{
    if (!MessageService::askYesNoCritical(this, kDeleteQuestion))
        return;
    if (session().voucherMode == QLatin1String("MODIFY")) {
        PostingOutcome out;
        if (!runSafely(this, [&] {
                out = VoucherPosting(db(), session().currentUserName, today()).deleteVoucher(originalKey());
            }))
            return;
        MessageService::information(this, out.message);
    } else {
        if (!runSafely(this, [&] { VoucherStaging(db()).clear(); }))
            return;
    }
    txtTotalCredit->clear();
    txtTotalDebit->clear();
    rebindGrid();
    closeScreen();
}

void frmJournalVoucher::loadVoucher()
{
    if (refusedOnEntry(cmdVoucherNoOkay))
        return;
    runSafely(this, [&] {
        VoucherStaging staging(db());
        staging.clear();
        if (txtShowVoucherNo->text().trimmed().isEmpty()) {
            MessageService::critical(this, VoucherMessages::kNumberMissing);
            txtShowVoucherNo->setFocus();
            return;
        }
        if (cmbModifyVoucherType->currentText().trimmed().isEmpty()) {
            MessageService::critical(this, VoucherMessages::kTypeMissing);
            cmbModifyVoucherType->setFocus();
            return;
        }
        const VoucherKey key = originalKey();
        session().workDate = key.date;
        if (staging.loadVoucher(key) == 0) {
            MessageService::critical(this, VoucherMessages::kNotFound);
            txtShowVoucherNo->setFocus();
            return;
        }
        showPreviousCash(Ledger::accountBalanceBefore(db(), Ledger::kCashCode, key.date));
        m_quiet = true;
        mskDate->setDate(key.date);
        cmbVoucherType->clear();
        cmbVoucherType->addItem(key.type);
        cmbVoucherType->setCurrentText(key.type);
        m_quiet = false;
        txtVoucherNo->setText(QString::number(key.number));
        m_proposedNo.clear();
        forceSide();
        rebindGrid();
        txtTotalDebit->clear();
        txtTotalCredit->clear();
        showTotals(false);
        txtCCashInHand->clear();
        showCurrentCash(true);
        frOuterVoucherNo->hide();
        frOuterVoucher->show();
        cmbPartyName->setFocus();
    });
}

// ------------------------------------------------------------ closing

void frmJournalVoucher::closeEvent(QCloseEvent *event)
{
    if (!MessageService::askYesNoCritical(this, kCloseQuestion)) {
        event->ignore();
        return;
    }
    runSafely(this, [&] { VoucherStaging(db()).clear(); });
    event->accept();
}
