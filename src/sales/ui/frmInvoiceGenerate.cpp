#include "sales/ui/frmInvoiceGenerate.h"

#include "accounts/ui/AccountPick.h"
#include "foundation/Session.h"
#include "foundation/ui/CommandGate.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/QueryTableModel.h"
#include "foundation/ui/ScreenBuild.h"
#include "foundation/ui/ScreenServices.h"
#include "reports/ui/frmViewReport.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QVBoxLayout>

using namespace ScreenBuild;
using InvoiceDocuments::Document;
using InvoiceDocuments::Group;

frmInvoiceGenerate::frmInvoiceGenerate(QWidget *parent) : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmInvoiceGenerate"));
    setTitle(QStringLiteral("SALE TAX INVOICE / BILL"));
    setWindowTitle(QStringLiteral("SALE TAX INVOICE / BILL"));

    QFrame *frOptions = frame(frDetail, QStringLiteral("frOptions"), true);
    auto *optionGrid = new QGridLayout(frOptions);
    auto *group = new QButtonGroup(this);
    int i = 0;
    for (const InvoiceDocuments::Variant &v : InvoiceDocuments::variants()) {
        QRadioButton *o = option(frOptions, v.option, v.caption);
        group->addButton(o);
        optionGrid->addWidget(o, i / 2, i % 2);
        m_options << o;
        const Document d = v.document;
        connect(o, &QRadioButton::clicked, this, [this, d] { optionPicked(d); });
        ++i;
    }
    optDeliveryChallan = m_options.at(0);
    optDeliveryChallanByDemandNo = m_options.at(1);
    optPurchaseOrder = m_options.at(2);
    optPurchaseOrderWithoutRate = m_options.at(3);
    optSaleTaxInvoice = m_options.at(4);
    optSaleTaxInvoiceDW = m_options.at(5);
    optBill = m_options.at(6);
    optInvoice = m_options.at(7);
    optInvoiceWithSalesTax = m_options.at(8);
    optInvoiceWithBalance = m_options.at(9);

    QFrame *frFields = frame(frDetail, QStringLiteral("frFields"));
    auto *g = new QGridLayout(frFields);
    g->setContentsMargins(0, 0, 0, 0);
    using K = KeyRules::Kind;
    mskDateFrom = masked(frFields, QStringLiteral("mskDateFrom"), MaskedLineEdit::dateMask());
    mskDateTo = masked(frFields, QStringLiteral("mskDateTo"), MaskedLineEdit::dateMask());
    cmbPartyName = combo(frFields, QStringLiteral("cmbPartyName"));
    cmbPartyName->setMinimumContentsLength(36);
    mskPartyCode = masked(frFields, QStringLiteral("mskPartyCode"), MaskedLineEdit::accountCodeMask());
    txtInvoiceNo = lineEdit(frFields, QStringLiteral("txtInvoiceNo"), K::DigitsOnly);
    txtChallanNo = lineEdit(frFields, QStringLiteral("txtChallanNo"), K::DigitsOnly);
    mskDate = masked(frFields, QStringLiteral("mskDate"), MaskedLineEdit::dateMask());
    cmbStamp = combo(frFields, QStringLiteral("cmbStamp"), K::None, false);
    cmbStamp->addItems(InvoiceDocuments::kStamps);
    lblPartyName = caption(QStringLiteral("PARTY NAME:"), cmbPartyName);
    lblPartyName->setObjectName(QStringLiteral("lblPartyName"));
    lblChallanNo = caption(QStringLiteral("CHALLAN #:"), txtChallanNo);
    lblChallanNo->setObjectName(QStringLiteral("lblChallanNo"));
    for (QWidget *w : std::initializer_list<QWidget *>{mskDateFrom, mskDateTo, mskDate})
        w->setFixedWidth(110);
    mskPartyCode->setFixedWidth(100);
    txtInvoiceNo->setFixedWidth(100);
    txtChallanNo->setFixedWidth(100);
    g->addWidget(caption(QStringLiteral("DATE FROM:"), mskDateFrom), 0, 0, Qt::AlignRight);
    g->addWidget(mskDateFrom, 0, 1, Qt::AlignLeft);
    g->addWidget(caption(QStringLiteral("DATE TO:"), mskDateTo), 0, 2, Qt::AlignRight);
    g->addWidget(mskDateTo, 0, 3, Qt::AlignLeft);
    g->addWidget(lblPartyName, 1, 0, Qt::AlignRight);
    g->addWidget(cmbPartyName, 1, 1, 1, 3);
    g->addWidget(mskPartyCode, 1, 4, Qt::AlignLeft);
    g->addWidget(caption(QStringLiteral("INVOICE #:"), txtInvoiceNo), 2, 0, Qt::AlignRight);
    g->addWidget(txtInvoiceNo, 2, 1, Qt::AlignLeft);
    g->addWidget(lblChallanNo, 2, 2, Qt::AlignRight);
    g->addWidget(txtChallanNo, 2, 3, Qt::AlignLeft);
    g->addWidget(caption(QStringLiteral("DATE:"), mskDate), 3, 0, Qt::AlignRight);
    g->addWidget(mskDate, 3, 1, Qt::AlignLeft);
    g->addWidget(caption(QStringLiteral("STAMP:"), cmbStamp), 3, 2, Qt::AlignRight);
    g->addWidget(cmbStamp, 3, 3, Qt::AlignLeft);
    g->setColumnStretch(5, 1);

    dg = grid(frDetail, QStringLiteral("dg"));
    m_found = new QueryTableModel(dg);
    dg->setModel(m_found);
    proportionalColumns(dg, {1000, 1200, 3200, 1200});
    dg->setMinimumHeight(180);

    auto *box = new QVBoxLayout;
    box->addWidget(frOptions);
    box->addWidget(frFields);
    box->addLayout(gridHeading(frDetail, QStringLiteral("DOCUMENTS FOUND"), QStringLiteral("ENTER OR DOUBLE CLICK TAKES ONE")));
    box->addWidget(dg, 1);
    detailLayout()->addLayout(box, 0, 0, 1, 2);
    detailLayout()->setRowStretch(0, 1);

    cmdSearch = addButton(QStringLiteral("cmdSearch"), QStringLiteral("&SEARCH"));
    cmdView = addButton(QStringLiteral("cmdView"), QStringLiteral("&VIEW"));
    cmdCancel = addButton(QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));

    m_pick = new AccountPick(cmbPartyName, mskPartyCode, nullptr, this);
    typingOrder({mskDateFrom, mskDateTo, cmbPartyName, mskPartyCode, cmdSearch, dg, txtInvoiceNo, txtChallanNo, mskDate,
                 cmbStamp, cmdView, cmdCancel},
                cmdSearch, {cmbPartyName, mskPartyCode});

    connect(cmdSearch, &QPushButton::clicked, this, [this] { searchDocuments(); });
    new CommandGate(cmdView, [this] { return viewAllowed(); }, [this] { viewDocument(); });
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);
    auto take = [this](const QModelIndex &index) { pickRow(index.row()); };
    connect(dg, &QTableView::activated, this, take);
    connect(dg, &QTableView::doubleClicked, this, take);

    const QDate today = session().dateToday();
    const QDate first = session().firstOpenDate.isValid() && session().firstOpenDate <= today
                            ? session().firstOpenDate
                            : QDate(today.year(), 1, 1);
    DateToMaskText(first, mskDateFrom);
    DateToMaskText(today, mskDateTo);
    DateToMaskText(today, mskDate);
    offer(QStringLiteral("mnuViewInvoice"));
}

void frmInvoiceGenerate::onOpened()
{
    runSafely(this, [this] { m_pick->loadPartyList(); });
    m_pick->clear();
    mskDateFrom->setFocus(Qt::OtherFocusReason);
}

QRadioButton *frmInvoiceGenerate::optionOf(Document d) const
{
    return m_options.at(static_cast<int>(d));
}

void frmInvoiceGenerate::offer(const QString &menuEntry)
{
    const QVector<Document> offered = InvoiceDocuments::offeredBy(menuEntry);
    for (QRadioButton *o : m_options)
        o->hide();
    for (const Document d : offered)
        optionOf(d)->show();
    if (!offered.isEmpty()) {
        optionOf(offered.first())->setChecked(true);
        optionPicked(offered.first());
    }
    m_waiting.clear();
}

Document frmInvoiceGenerate::document() const
{
    for (const InvoiceDocuments::Variant &v : InvoiceDocuments::variants())
        if (optionOf(v.document)->isChecked() && !optionOf(v.document)->isHidden())
            return v.document;
    return Document::SaleTaxInvoice;
}

void frmInvoiceGenerate::optionPicked(Document d)
{
    const InvoiceDocuments::Labels labels = InvoiceDocuments::labelsOf(d);
    if (!labels.title.isEmpty())
        setTitle(labels.title);
    if (!labels.partyCaption.isEmpty())
        lblPartyName->setText(labels.partyCaption);
    const bool invoice = InvoiceDocuments::variant(d).group == Group::Invoice;
    // An invoice's caption is the invoice field's own.
    if (!labels.numberCaption.isEmpty() && !invoice)
        lblChallanNo->setText(labels.numberCaption);
    txtInvoiceNo->setEnabled(invoice);
    txtChallanNo->setEnabled(!invoice);
}

void frmInvoiceGenerate::searchDocuments()
{
    if (!ValidateDate(mskDateFrom) || !ValidateDate(mskDateTo))
        return;
    InvoiceDocuments::Search s;
    s.group = InvoiceDocuments::variant(document()).group;
    s.from = mskDateFrom->date();
    s.to = mskDateTo->date();
    s.title = session().currentTitle;
    s.partyWords = cmbPartyName->currentText();
    runSafely(this, [&] {
        m_rows = InvoiceDocuments::search(session().db(), s);
        m_listed = s.group;
        m_found->setResult(m_rows, InvoiceDocuments::searchCaptions(s.group));
    });
    if (m_found->rowCount() > 0) {
        dg->setFocus(Qt::OtherFocusReason);
        dg->selectRow(0);
    }
}

void frmInvoiceGenerate::pickRow(int row)
{
    if (row < 0 || row >= m_rows.size())
        return;
    const Row &r = m_rows.at(row);
    const QString number = QString::number(r.integer(0));
    if (m_listed == Group::Invoice)
        txtInvoiceNo->setText(number);
    else
        txtChallanNo->setText(number);
    DateToMaskText(r.date(1), mskDate);
    if (m_listed == Group::Invoice)
        cmbPartyName->setCurrentText(r.text(2).trimmed());
    else
        m_pick->setCode(r.text(3).trimmed());
    cmdView->setFocus(Qt::OtherFocusReason);
}

bool frmInvoiceGenerate::viewAllowed()
{
    const Document d = document();
    const bool invoice = InvoiceDocuments::variant(d).group == Group::Invoice;
    const Outcome out
        = InvoiceDocuments::checkView(d, (invoice ? txtInvoiceNo : txtChallanNo)->text(), mskDate->maskText());
    if (!out)
        return refuse(out);
    return ValidateDate(mskDate);
}

void frmInvoiceGenerate::viewDocument()
{
    const Document d = document();
    InvoiceDocuments::Selection s;
    s.document = d;
    s.title = session().currentTitle;
    const bool invoice = InvoiceDocuments::variant(d).group == Group::Invoice;
    s.number = (invoice ? txtInvoiceNo : txtChallanNo)->text().trimmed().toLongLong();
    s.date = mskDate->date();
    s.stamp = cmbStamp->currentText();
    InvoiceDocuments::Copies copies;
    if (!runSafely(this, [&] { copies = InvoiceDocuments::copies(session().db(), s); }))
        return;
    if (!copies.outcome) {
        refuse(copies.outcome);
        return;
    }
    session().workDate = s.date;
    QObject::disconnect(m_nextCopy);
    m_waiting = copies.requests;
    showNextCopy();
}

void frmInvoiceGenerate::showNextCopy()
{
    QObject::disconnect(m_nextCopy);
    if (m_waiting.isEmpty())
        return;
    const Reports::ReportRequest req = m_waiting.takeFirst();
    frmViewReport *viewer = Reports::showReport(this, req);
    if (!viewer) {
        m_waiting.clear();
        return;
    }
    // The next copy when this one's viewer is closed.
    if (!m_waiting.isEmpty())
        m_nextCopy = connect(viewer, &QObject::destroyed, this, [this] { showNextCopy(); }, Qt::QueuedConnection);
}
