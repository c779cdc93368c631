#include "admin/ui/frmCheckBooks.h"

#include "foundation/Session.h"
#include "foundation/ui/MaskedLineEdit.h"
#include "foundation/ui/ScreenServices.h"
#include "foundation/ui/frmMDITessel.h"
#include "vouchers/ui/frmJournalVoucher.h"

#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTableView>

frmCheckBooks::frmCheckBooks(QWidget *parent)
    : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmCheckBooks"));
    setTitle(QStringLiteral("CHECK BOOKS"));
    lblResult = addLabel(QStringLiteral("lblResult"), QString());
    dgFaults = addGrid(QStringLiteral("dgFaults"));
    m_model = new QStandardItemModel(0, 4, this);
    m_model->setHorizontalHeaderLabels(
        {QStringLiteral("CHECK"), QStringLiteral("DOCUMENT"), QStringLiteral("A/C CODE"), QStringLiteral("FAULT")});
    dgFaults->setModel(m_model);
    dgFaults->setSelectionBehavior(QAbstractItemView::SelectRows);
    dgFaults->setSelectionMode(QAbstractItemView::SingleSelection);
    dgFaults->setEditTriggers(QAbstractItemView::NoEditTriggers);
    dgFaults->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    dgFaults->horizontalHeader()->setStretchLastSection(true);
    cmdCheck = addButton(QStringLiteral("cmdCheck"), QStringLiteral("C&HECK"));
    cmdCancel = addButton(QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    connect(cmdCheck, &QPushButton::clicked, this, &frmCheckBooks::check);
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);
    connect(dgFaults, &QTableView::doubleClicked, this, [this](const QModelIndex &i) { openFault(i.row()); });
}

void frmCheckBooks::onOpened()
{
    check();
    dgFaults->setFocus(Qt::OtherFocusReason);
}

void frmCheckBooks::check()
{
    // Lines of a document open on another screen of this workstation are
    // in its staging by right: staging is checked only when this screen is
    // alone.
    BooksCheck::Options options;
    auto *host = qobject_cast<frmMDITessel *>(window());
    options.ownStaging = !host || host->mdiArea()->subWindowList().size() <= 1;
    lblResult->setText(QStringLiteral("CHECKING THE BOOKS ..."));
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const bool done = runSafely(this, [&] { m_result = BooksCheck::run(session().db(), options); });
    QApplication::restoreOverrideCursor();
    m_model->removeRows(0, m_model->rowCount());
    if (!done) {
        lblResult->setText(QStringLiteral("THE CHECK COULD NOT RUN"));
        return;
    }
    for (const BooksCheck::Fault &f : m_result.faults) {
        QList<QStandardItem *> row;
        for (const QString &text : {BooksCheck::kindName(f.kind), f.document(), f.account, f.text})
            row << new QStandardItem(text);
        m_model->appendRow(row);
    }
    const int count = m_result.faults.size() + m_result.truncated;
    QString text = count == 0 ? QStringLiteral("THE BOOKS ARE WHOLE")
                   : count == 1 ? QStringLiteral("1 FAULT FOUND")
                                : QStringLiteral("%1 FAULTS FOUND").arg(count);
    if (m_result.truncated > 0)
        text += QStringLiteral(" (THE FIRST %1 OF EACH CHECK LISTED)").arg(BooksCheck::Options().maxPerKind);
    text += QStringLiteral(" IN %1 S").arg(QString::number(m_result.milliseconds / 1000.0, 'f', 1));
    if (!options.ownStaging)
        text += QStringLiteral("; STAGING NOT CHECKED WHILE OTHER SCREENS ARE OPEN");
    lblResult->setText(text);
    if (m_model->rowCount() > 0)
        dgFaults->selectRow(0);
}

bool frmCheckBooks::openFault(int row)
{
    if (row < 0 || row >= m_result.faults.size())
        return false;
    const BooksCheck::Fault &f = m_result.faults.at(row);
    auto *host = qobject_cast<frmMDITessel *>(window());
    return f.isScreenVoucher() && host && openPostedVoucher(*host, {f.docType, f.number, f.date});
}
