#include "vouchers/ui/frmChequeDueList.h"

#include "foundation/Session.h"
#include "foundation/ui/CarryOut.h"
#include "foundation/ui/MenuRouter.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/ScreenBuild.h"
#include "foundation/ui/ScreenServices.h"
#include "vouchers/ui/frmJournalVoucher.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTableView>

using namespace ScreenBuild;

namespace {

PostDatedCheques rules()
{
    return PostDatedCheques(session().db(), session().currentUserName, session().dateToday());
}

QStandardItem *cell(const QString &text, bool right = false)
{
    auto *i = new QStandardItem(text);
    if (right)
        i->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return i;
}

QString dateText(const QDate &d) { return d.isValid() ? d.toString(QStringLiteral("dd/MM/yyyy")) : QString(); }

} // namespace

frmChequeDueList::frmChequeDueList(QWidget *parent) : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmChequeDueList"));
    setTitle(QStringLiteral("CHEQUE DUE LIST"));
    setWindowTitle(QStringLiteral("CHEQUE DUE LIST"));
    QWidget *p = detailFrame();
    chkShowPosted = check(p, QStringLiteral("chkShowPosted"), QStringLiteral("SHOW POSTED CHEQUES"));
    chkShowPosted->setChecked(true);
    dgCheques = grid(p, QStringLiteral("dgCheques"));
    dgBankTotals = grid(p, QStringLiteral("dgBankTotals"));
    m_cheques = new QStandardItemModel(this);
    m_totals = new QStandardItemModel(this);
    dgCheques->setModel(m_cheques);
    dgBankTotals->setModel(m_totals);
    proportionalColumns(dgCheques, {600, 1100, 1500, 2800, 1000, 2200, 1000, 1500, 1200});
    proportionalColumns(dgBankTotals, {3000, 1000, 1800});
    dgBankTotals->setMinimumWidth(560);

    auto *l = detailLayout();
    l->addWidget(chkShowPosted, 0, 0);
    l->addWidget(dgCheques, 1, 0, 1, 2);
    l->addWidget(new QLabel(QStringLiteral("DUE A BANK"), p), 2, 0);
    l->addWidget(dgBankTotals, 3, 0);
    l->setRowStretch(1, 3);
    l->setRowStretch(3, 1);
    l->setColumnStretch(1, 1);

    cmdDeposit = addButton(QStringLiteral("cmdDeposit"), QStringLiteral("DEPOSIT/&CLEAR"));
    cmdBounce = addButton(QStringLiteral("cmdBounce"), QStringLiteral("&BOUNCE"));
    cmdRefresh = addButton(QStringLiteral("cmdRefresh"), QStringLiteral("&REFRESH"));
    cmdCancel = addButton(QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    connect(cmdDeposit, &QPushButton::clicked, this, &frmChequeDueList::deposit);
    connect(cmdBounce, &QPushButton::clicked, this, &frmChequeDueList::bounce);
    connect(cmdRefresh, &QPushButton::clicked, this, &frmChequeDueList::refresh);
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);
    connect(chkShowPosted, &QCheckBox::toggled, this, &frmChequeDueList::refresh);
}

void frmChequeDueList::onOpened()
{
    refresh();
    dgCheques->setFocus();
}

void frmChequeDueList::refresh()
{
    const qint64 keep = chosenCheque();
    runSafely(this, [&] {
        m_lines = ChequeDueList::lines(session().db(), session().dateToday(), chkShowPosted->isChecked());
    });
    m_cheques->clear();
    m_cheques->setHorizontalHeaderLabels({QStringLiteral("V.#"), QStringLiteral("CHEQUE DATE"), QStringLiteral("DUE"),
                                          QStringLiteral("PARTY NAME"), QStringLiteral("CHEQUE #"),
                                          QStringLiteral("BANK NAME"), QStringLiteral("TYPE"),
                                          QStringLiteral("AMOUNT"), QStringLiteral("STATUS")});
    for (const ChequeDueLine &d : m_lines) {
        const PostDatedChequeEntry &c = d.cheque;
        m_cheques->appendRow({cell(QString::number(c.voucherNo), true), cell(dateText(c.chequeDate)),
                              cell(d.dueText()), cell(c.partyName), cell(c.chequeNo), cell(c.bankName),
                              cell(c.kind), cell(c.amount.toDisplayString(), true), cell(c.status)});
    }
    m_totals->clear();
    m_totals->setHorizontalHeaderLabels(
        {QStringLiteral("BANK NAME"), QStringLiteral("CHEQUES"), QStringLiteral("AMOUNT DUE")});
    Money all;
    int count = 0;
    for (const BankTotal &t : ChequeDueList::bankTotals(m_lines)) {
        m_totals->appendRow(
            {cell(t.bankName), cell(QString::number(t.count), true), cell(t.total.toDisplayString(), true)});
        all += t.total;
        count += t.count;
    }
    m_totals->appendRow({cell(QStringLiteral("TOTAL")), cell(QString::number(count), true),
                         cell(all.toDisplayString(), true)});
    chooseCheque(keep);
    if (!dgCheques->currentIndex().isValid() && !m_lines.isEmpty())
        dgCheques->setCurrentIndex(m_cheques->index(0, 0));
}

qint64 frmChequeDueList::chosenCheque() const
{
    const QModelIndex i = dgCheques->currentIndex();
    if (!i.isValid() || i.row() >= m_lines.size())
        return 0;
    return m_lines.at(i.row()).cheque.voucherNo;
}

void frmChequeDueList::chooseCheque(qint64 voucherNo)
{
    for (int r = 0; r < m_lines.size(); ++r)
        if (m_lines.at(r).cheque.voucherNo == voucherNo)
            dgCheques->setCurrentIndex(m_cheques->index(r, 0));
}

void frmChequeDueList::deposit()
{
    const qint64 no = chosenCheque();
    if (!no)
        return;
    Voucher v;
    Outcome o;
    if (!runSafely(this, [&] { o = rules().clearingVoucher(no, session().dateToday(), &v); }))
        return;
    if (!o) {
        refuse(o);
        return;
    }
    if (auto *host = dynamic_cast<MdiHost *>(window()))
        openReadyVoucher(*host, v);
}

void frmChequeDueList::bounce()
{
    const qint64 no = chosenCheque();
    if (!no)
        return;
    if (!MessageService::askYesNo(this, ChequeMessages::kAskBounce))
        return;
    if (carryOut(this, [&] { return rules().bounce(no, session().dateToday()); }))
        refresh();
}
