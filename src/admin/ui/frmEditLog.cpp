#include "admin/ui/frmEditLog.h"

#include "admin/EditLogView.h"
#include "foundation/KeyRules.h"
#include "foundation/Session.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/ScreenBuild.h"
#include "foundation/ui/ScreenServices.h"
#include "foundation/ui/frmMDITessel.h"
#include "reports/VoucherPrinting.h"
#include "reports/ui/frmViewReport.h"
#include "sales/ui/frmInvoice.h"
#include "vouchers/ui/frmJournalVoucher.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QPlainTextEdit>
#include <QVBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTableView>

using namespace ScreenBuild;

namespace {

// The grid holds the newest rows of the filter; PRINT takes them all.
constexpr int kGridRows = 5000;

const QStringList &captions()
{
    static const QStringList c = {QStringLiteral("LOG #"),  QStringLiteral("TIME"),     QStringLiteral("USER"),
                                  QStringLiteral("STATION"), QStringLiteral("CHANGE"), QStringLiteral("WHAT"),
                                  QStringLiteral("TYPE"),   QStringLiteral("DOC #"),    QStringLiteral("DOC DATE"),
                                  QStringLiteral("TITLE"),  QStringLiteral("KEY"),      QStringLiteral("BEFORE"),
                                  QStringLiteral("AFTER")};
    return c;
}

QString dateText(const QDate &d) { return d.isValid() ? d.toString(QStringLiteral("dd/MM/yyyy")) : QString(); }

// An empty date field takes every day on its side; a typed one must be a date.
bool readDate(MaskedLineEdit *field, QDate &date)
{
    date = QDate();
    if (field->typedText().trimmed().isEmpty())
        return true;
    if (!ValidateDate(field))
        return false;
    date = field->date();
    return true;
}

} // namespace

frmEditLog::frmEditLog(QWidget *parent)
    : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmEditLog"));
    setTitle(QStringLiteral("EDIT LOG"));
    mskDateFrom = masked(this, QStringLiteral("mskDateFrom"), MaskedLineEdit::dateMask());
    mskDateTo = masked(this, QStringLiteral("mskDateTo"), MaskedLineEdit::dateMask());
    cmbUserName = combo(this, QStringLiteral("cmbUserName"), KeyRules::Kind::LettersUpper);
    cmbDocType = combo(this, QStringLiteral("cmbDocType"), KeyRules::Kind::LettersUpper);
    txtDocNo = lineEdit(this, QStringLiteral("txtDocNo"), KeyRules::Kind::DigitsOnly);
    cmdShow = button(this, QStringLiteral("cmdShow"), QStringLiteral("&SHOW"));

    auto *filters = new QHBoxLayout;
    filters->setSpacing(6);
    for (auto [text, field, width] :
         {std::tuple{"FROM", static_cast<QWidget *>(mskDateFrom), 96}, std::tuple{"TO", static_cast<QWidget *>(mskDateTo), 96},
          std::tuple{"USER", static_cast<QWidget *>(cmbUserName), 120},
          std::tuple{"DOCUMENT", static_cast<QWidget *>(cmbDocType), 150},
          std::tuple{"NUMBER", static_cast<QWidget *>(txtDocNo), 70}}) {
        field->setFixedWidth(width);
        filters->addWidget(caption(QString::fromLatin1(text), field));
        filters->addWidget(field);
        filters->addSpacing(4);
    }
    filters->addWidget(cmdShow);
    filters->addStretch(1);
    detailLayout()->addLayout(filters, 0, 0, 1, 13);

    dgEditLog = grid(this, QStringLiteral("dgEditLog"));
    detailLayout()->addWidget(dgEditLog, 1, 0, 1, 13);
    detailLayout()->setRowStretch(1, 1);
    m_model = new QStandardItemModel(0, captions().size(), this);
    m_model->setHorizontalHeaderLabels(captions());
    dgEditLog->setModel(m_model);
    dgEditLog->setSelectionBehavior(QAbstractItemView::SelectRows);
    dgEditLog->setSelectionMode(QAbstractItemView::SingleSelection);
    dgEditLog->setEditTriggers(QAbstractItemView::NoEditTriggers);
    dgEditLog->setWordWrap(false);
    proportionalColumns(dgEditLog, {600, 1900, 900, 1000, 900, 1400, 1400, 600, 1100, 900, 800, 1300, 1300});

    // The selected row's values in full.
    txtBefore = new QPlainTextEdit(this);
    txtBefore->setObjectName(QStringLiteral("txtBefore"));
    txtAfter = new QPlainTextEdit(this);
    txtAfter->setObjectName(QStringLiteral("txtAfter"));
    auto *values = new QHBoxLayout;
    for (auto [box, text] : {std::pair{txtBefore, "BEFORE"}, std::pair{txtAfter, "AFTER"}}) {
        box->setReadOnly(true);
        box->setFixedHeight(96);
        box->setTabChangesFocus(true);
        auto *column = new QVBoxLayout;
        column->addWidget(new QLabel(QString::fromLatin1(text), this));
        column->addWidget(box);
        values->addLayout(column, 1);
    }
    detailLayout()->addLayout(values, 2, 0, 1, 13);
    connect(dgEditLog->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &current) { showValues(current.row()); });

    cmdPrint = addButton(QStringLiteral("cmdPrint"), QStringLiteral("&PRINT"));
    cmdCancel = addButton(QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    setTabOrder(mskDateFrom, mskDateTo);
    setTabOrder(mskDateTo, cmbUserName);
    setTabOrder(cmbUserName, cmbDocType);
    setTabOrder(cmbDocType, txtDocNo);
    setTabOrder(txtDocNo, cmdShow);
    setTabOrder(cmdShow, dgEditLog);

    connect(cmdShow, &QPushButton::clicked, this, [this] {
        m_history = false; // the fields as typed, no longer one document's history
        m_title.clear();
        setTitle(QStringLiteral("EDIT LOG"));
        refresh();
    });
    connect(txtDocNo, &QLineEdit::returnPressed, cmdShow, &QPushButton::click);
    connect(cmdPrint, &QPushButton::clicked, this, &frmEditLog::print);
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);
    connect(dgEditLog, &QTableView::doubleClicked, this, [this](const QModelIndex &i) { openRow(i.row()); });
}

void frmEditLog::onOpened()
{
    loadLists();
    if (mskDateFrom->typedText().trimmed().isEmpty() && mskDateTo->typedText().trimmed().isEmpty()
        && m_model->rowCount() == 0) {
        mskDateFrom->setDate(session().dateToday());
        mskDateTo->setDate(session().dateToday());
        refresh();
    }
    mskDateFrom->setFocus(Qt::OtherFocusReason);
}

void frmEditLog::loadLists()
{
    runSafely(this, [&] {
        for (auto [box, items] : {std::pair{cmbUserName, EditLogView::userNames(session().db())},
                                  std::pair{cmbDocType, EditLogView::documentTypes(session().db())}}) {
            const QString keep = box->currentText();
            box->clear();
            box->addItem(QString());
            box->addItems(items);
            box->setEditText(keep);
        }
    });
}

void frmEditLog::showHistory(const ScreenDocument &document)
{
    mskDateFrom->setMaskText(MaskedLineEdit::dateMask());
    mskDateTo->setMaskText(MaskedLineEdit::dateMask());
    cmbUserName->setEditText(QString());
    cmbDocType->setEditText(document.type);
    txtDocNo->setText(document.number ? QString::number(*document.number) : QString());
    m_history = true;
    m_title = document.title;
    setTitle(document.title.isEmpty() ? QStringLiteral("EDIT LOG OF %1 %2").arg(document.type, txtDocNo->text()).trimmed()
                                      : QStringLiteral("EDIT LOG OF %1 %2 (%3)")
                                            .arg(document.type, txtDocNo->text(), document.title));
    refresh();
}

bool frmEditLog::readFilter(EditLog::Filter &filter)
{
    QDate from, to;
    if (!readDate(mskDateFrom, from) || !readDate(mskDateTo, to))
        return false;
    const Outcome r = EditLogView::readFilter(from, to, cmbUserName->currentText(), cmbDocType->currentText(),
                                              txtDocNo->text(), filter);
    if (!r)
        return refuse(r);
    if (m_history) {
        // One document's history: its title and, for an invoice, the
        // rows of its voucher too.
        const EditLog::Filter history = EditLogView::historyOf(filter.docType, filter.docNo, m_title);
        filter.docTitle = history.docTitle;
        filter.voucherType = history.voucherType;
    }
    return true;
}

bool frmEditLog::refresh()
{
    EditLog::Filter f;
    if (!readFilter(f))
        return false;
    QVector<EditLog::Entry> rows;
    if (!runSafely(this, [&] { rows = EditLog::entries(session().db(), f, kGridRows); }))
        return false;
    m_entries = rows;
    m_model->removeRows(0, m_model->rowCount());
    for (const EditLog::Entry &e : m_entries) {
        QList<QStandardItem *> row;
        const QStringList texts = {QString::number(e.logNo), EditLogView::shownTime(e.loggedAt), e.userName, e.workstation, e.change, e.what,
                                   e.docType, e.docNo ? QString::number(*e.docNo) : QString(), dateText(e.docDate),
                                   e.docTitle, e.rowKey, e.before, e.after};
        for (const QString &t : texts)
            row << new QStandardItem(t);
        m_model->appendRow(row);
    }
    if (!m_entries.isEmpty())
        dgEditLog->selectRow(m_entries.size() - 1);
    showValues(m_entries.size() - 1);
    return true;
}

void frmEditLog::showValues(int row)
{
    const bool on = row >= 0 && row < m_entries.size();
    txtBefore->setPlainText(on ? m_entries.at(row).before.split(QStringLiteral("; ")).join(QLatin1Char('\n')) : QString());
    txtAfter->setPlainText(on ? m_entries.at(row).after.split(QStringLiteral("; ")).join(QLatin1Char('\n')) : QString());
}

void frmEditLog::openRow(int row)
{
    if (row < 0 || row >= m_entries.size())
        return;
    const EditLogView::Target t = EditLogView::targetOf(m_entries.at(row));
    auto *host = qobject_cast<frmMDITessel *>(window());
    switch (t.kind) {
    case EditLogView::Target::Kind::Voucher:
        if (host)
            openPostedVoucher(*host, {t.type, t.number, t.date});
        return;
    case EditLogView::Target::Kind::SingleVoucher:
        Reports::showReport(this, VoucherPrinting::singleVoucher(t.type, t.number, t.date));
        return;
    case EditLogView::Target::Kind::Invoice: {
        if (!host || !host->runMenuEntry(QStringLiteral("mnuModifyInvoice")))
            return;
        auto *f = qobject_cast<frmInvoice *>(host->findScreen(QStringLiteral("frmInvoice")));
        if (!f || f->mode() != frmInvoice::Mode::Modify)
            return;
        f->cmbModifyTitleName->setCurrentText(t.title);
        f->txtShowInvoiceNo->setText(QString::number(t.number));
        f->mskDateModifyInvoice->setDate(t.date);
        f->cmdInvoiceNoOkay->click();
        return;
    }
    case EditLogView::Target::Kind::Nothing:
        break;
    }
    MessageService::information(this, EditLogView::Messages::cannotOpen());
}

void frmEditLog::print()
{
    EditLog::Filter f;
    if (!readFilter(f))
        return;
    Reports::showReport(this, EditLogView::request(f, mskDateFrom->maskText(), mskDateTo->maskText()));
}

frmEditLog *openEditLog(MdiHost &host)
{
    return host.showScreen<frmEditLog>(QStringLiteral("frmEditLog"));
}

void installEditLogHistoryKey()
{
    BaseScreen::setHistoryOpener([](BaseScreen *screen, const ScreenDocument &document) {
        auto *host = qobject_cast<frmMDITessel *>(screen->window());
        if (!host || !host->allowsEntry(QStringLiteral("mnuUEditLog")))
            return;
        openEditLog(*host)->showHistory(document);
    });
}
