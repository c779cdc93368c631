#include "vouchers/ui/frmBillWisePayment.h"

#include "accounts/ui/AccountPick.h"
#include "foundation/Session.h"
#include "foundation/ui/CommandGate.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/ScreenBuild.h"
#include "foundation/ui/ScreenServices.h"
#include "reports/ui/frmViewReport.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLabel>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QRadioButton>
#include <QStandardItemModel>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>

using namespace ScreenBuild;

namespace {

const QString kWindowTitle = QStringLiteral("TICKET WISE PAYMENT");
const QString kMinimisedTitle = QStringLiteral("TICKET WISE STATUS");

QStandardItem *cell(const QString &text, bool right = false)
{
    auto *i = new QStandardItem(text);
    if (right)
        i->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return i;
}

// A list and the count and total of its bills.
void fillList(QStandardItemModel *model, QLabel *total, const QVector<BillLine> &bills)
{
    Money sum;
    for (const BillLine &b : bills)
        sum += b.amount;
    total->setText(bills.isEmpty()
            ? QString()
            : QStringLiteral("%1 %2   %3")
                  .arg(bills.size())
                  .arg(bills.size() == 1 ? QStringLiteral("BILL") : QStringLiteral("BILLS"), sum.toDisplayString()));
    model->clear();
    model->setHorizontalHeaderLabels(
        {QStringLiteral("INVOICE #"), QStringLiteral("DESC"), QStringLiteral("AMOUNT"), QStringLiteral("TITLE")});
    for (const BillLine &b : bills)
        model->appendRow({cell(QString::number(b.key.invoiceNo), true), cell(b.key.termsOfSale),
            cell(b.amount.toDisplayString(), true), cell(b.key.titleName)});
}

} // namespace

frmBillWisePayment::frmBillWisePayment(QWidget *parent)
    : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmBillWisePayment"));
    setTitle(QStringLiteral("BILL WISE PAYMENT"));
    setWindowTitle(kWindowTitle);
    QWidget *p = detailFrame();

    mskPartyCode = masked(p, QStringLiteral("mskPartyCode"), MaskedLineEdit::accountCodeMask());
    cmbPartyName = combo(p, QStringLiteral("cmbPartyName"), KeyRules::Kind::LettersUpper);
    cmbPartyName->setMinimumWidth(360);
    mskDateFrom = masked(p, QStringLiteral("mskDateFrom"), MaskedLineEdit::dateMask());
    mskDateTo = masked(p, QStringLiteral("mskDateTo"), MaskedLineEdit::dateMask());

    QFrame *options = frame(p, QStringLiteral("frOptions"), true);
    auto *box = new QVBoxLayout(options);
    auto *group = new QButtonGroup(this);
    optBillWiseSearch = option(options, QStringLiteral("optBillWiseSearch"), QStringLiteral("CUSTOMER SEARCH"));
    optBillWisePayment
        = option(options, QStringLiteral("optBillWisePayment"), QStringLiteral("BILL WISE PAYMENT REPORT"));
    optPendingPayment
        = option(options, QStringLiteral("optPendingPayment"), QStringLiteral("CUSTOMER PENDING PAYMENT"));
    for (QRadioButton *o : {optBillWiseSearch, optBillWisePayment, optPendingPayment}) {
        group->addButton(o);
        box->addWidget(o);
    }
    optBillWiseSearch->setChecked(true);

    auto *top = new QGridLayout;
    FieldGrid fields(top);
    fields.put(0, 0, QStringLiteral("PARTY CODE:"), mskPartyCode);
    fields.put(1, 0, QStringLiteral("PARTY NAME:"), cmbPartyName);
    fields.put(2, 0, QStringLiteral("DATE FROM:"), mskDateFrom);
    fields.put(3, 0, QStringLiteral("DATE TO:"), mskDateTo);
    top->addWidget(options, 0, 2, 4, 1, Qt::AlignLeft | Qt::AlignTop);
    top->setColumnStretch(3, 1);

    dgPending = grid(p, QStringLiteral("dgPending"));
    dgDone = grid(p, QStringLiteral("dgDone"));
    m_pendingModel = new QStandardItemModel(this);
    m_doneModel = new QStandardItemModel(this);
    dgPending->setModel(m_pendingModel);
    dgDone->setModel(m_doneModel);
    auto *lists = new QHBoxLayout;
    lists->setSpacing(18);
    for (auto [g, caption] : {std::pair{dgPending, "PENDING BILL"}, std::pair{dgDone, "PAYMENT DONE"}}) {
        g->setSelectionMode(QAbstractItemView::ExtendedSelection);
        proportionalColumns(g, {1000, 2400, 1500, 1700});
        g->installEventFilter(this);
        connect(g, &QTableView::doubleClicked, this, [this, g = g] { pick(g); });
        auto *column = new QVBoxLayout;
        column->setSpacing(4);
        QHBoxLayout *heading = gridHeading(p, QString::fromLatin1(caption), QString());
        auto *total = qobject_cast<QLabel *>(heading->itemAt(heading->count() - 1)->widget());
        total->setObjectName(g == dgPending ? QStringLiteral("lblPendingTotal") : QStringLiteral("lblDoneTotal"));
        (g == dgPending ? lblPendingTotal : lblDoneTotal) = total;
        column->addLayout(heading);
        column->addWidget(g, 1);
        lists->addLayout(column, 1);
    }
    fillList(m_pendingModel, lblPendingTotal, {});
    fillList(m_doneModel, lblDoneTotal, {});

    auto *l = detailLayout();
    l->addLayout(top, 0, 0);
    l->addLayout(lists, 1, 0);
    l->setRowStretch(1, 1);

    cmdSearch = addButton(QStringLiteral("cmdSearch"), QStringLiteral("&SEARCH"));
    cmdCancel = addButton(QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    typingOrder({mskPartyCode, cmbPartyName, mskDateFrom, mskDateTo, optBillWiseSearch, optBillWisePayment,
                    optPendingPayment, cmdSearch, dgPending, dgDone, cmdCancel},
        cmdSearch, {mskPartyCode, cmbPartyName});

    m_pick = new AccountPick(cmbPartyName, mskPartyCode, nullptr, this);
    m_gate = new CommandGate(
        cmdSearch, [this] { return check(); }, [this] { search(); });
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);

    // The period starts on the first open day and ends today.
    if (session().firstOpenDate.isValid())
        DateToMaskText(session().firstOpenDate, mskDateFrom);
    DateToMaskText(session().dateToday(), mskDateTo);
}

void frmBillWisePayment::onOpened()
{
    // The minimised window carries its own caption.
    if (auto *sub = qobject_cast<QMdiSubWindow *>(parentWidget()))
        sub->installEventFilter(this);
    showCaption();
    m_pick->reload();
    mskPartyCode->setFocus(Qt::OtherFocusReason);
}

bool frmBillWisePayment::check()
{
    return ValidateDate(mskDateFrom) && ValidateDate(mskDateTo);
}

void frmBillWisePayment::search()
{
    session().periodFrom = mskDateFrom->date();
    session().periodTo = mskDateTo->date();
    if (optBillWiseSearch->isChecked()) {
        m_code = m_pick->code();
        m_from = session().periodFrom;
        m_to = session().periodTo;
        fillGrids();
        dgPending->setFocus(Qt::OtherFocusReason);
        if (!m_pending.isEmpty())
            dgPending->setCurrentIndex(m_pendingModel->index(0, 0));
        return;
    }
    const LedgerStatements::Period period{
        session().periodFrom, session().periodTo, mskDateFrom->maskText(), mskDateTo->maskText()};
    const auto kind
        = optPendingPayment->isChecked() ? BillWisePayment::Report::Pending : BillWisePayment::Report::BillWise;
    cmdSearch->setEnabled(false);
    Reports::showReport(this, BillWisePayment::report(kind, cmbPartyName->currentText(), period));
    cmdSearch->setEnabled(true);
}

void frmBillWisePayment::fillGrids()
{
    m_pending.clear();
    m_done.clear();
    runSafely(this, [this] {
        using namespace BillWisePayment;
        m_pending = bills(session().db(), m_code, m_from, m_to, Mark::Pending);
        m_done = bills(session().db(), m_code, m_from, m_to, Mark::Done);
    });
    fillList(m_pendingModel, lblPendingTotal, m_pending);
    fillList(m_doneModel, lblDoneTotal, m_done);
}

void frmBillWisePayment::pick(QTableView *grid)
{
    if (!optBillWiseSearch->isChecked())
        return;
    const bool fromPending = grid == dgPending;
    const QVector<BillLine> &shown = fromPending ? m_pending : m_done;
    QList<int> rows;
    for (const QModelIndex &i : grid->selectionModel()->selectedRows())
        rows << i.row();
    if (rows.isEmpty() && grid->currentIndex().isValid())
        rows << grid->currentIndex().row();
    std::sort(rows.begin(), rows.end());
    QVector<BillKey> keys;
    for (int r : rows)
        if (r >= 0 && r < shown.size())
            keys << shown.at(r).key;
    if (keys.isEmpty())
        return;

    Outcome out;
    const bool ran = runSafely(this, [&] {
        out = BillWisePayment::mark(
            session().db(), keys, fromPending ? BillWisePayment::Mark::Done : BillWisePayment::Mark::Pending);
    });
    if (ran && !out)
        refuse(out);
    // The bills move across; the list keeps its place for the next pick.
    fillGrids();
    auto *model = fromPending ? m_pendingModel : m_doneModel;
    grid->setFocus(Qt::OtherFocusReason);
    if (model->rowCount() > 0)
        grid->setCurrentIndex(model->index(qMin(rows.first(), model->rowCount() - 1), 0));
}

bool frmBillWisePayment::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress && (watched == dgPending || watched == dgDone)) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            pick(static_cast<QTableView *>(watched));
            return true;
        }
    }
    if (event->type() == QEvent::WindowStateChange && watched == parentWidget())
        showCaption();
    return BaseScreen::eventFilter(watched, event);
}

void frmBillWisePayment::changeEvent(QEvent *event)
{
    BaseScreen::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange)
        showCaption();
}

void frmBillWisePayment::showCaption()
{
    const QWidget *w = qobject_cast<QMdiSubWindow *>(parentWidget()) ? parentWidget() : window();
    setWindowTitle(w->isMinimized() ? kMinimisedTitle : kWindowTitle);
}
