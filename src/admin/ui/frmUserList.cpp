#include "admin/ui/frmUserList.h"

#include "admin/UserAccounts.h"
#include "foundation/Session.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/ScreenBuild.h"
#include "foundation/ui/ScreenServices.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTableView>

frmUserList::frmUserList(QWidget *parent)
    : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmUserList"));
    setTitle(QStringLiteral("USER LIST"));
    dgUsers = addGrid(QStringLiteral("dgUsers"));
    m_model = new QStandardItemModel(0, 4, this);
    m_model->setHorizontalHeaderLabels(
        {QStringLiteral("USER NAME"), QStringLiteral("USER TYPE"), QStringLiteral("LAST LOG ON"), QStringLiteral("LOCKED")});
    dgUsers->setModel(m_model);
    dgUsers->setSelectionBehavior(QAbstractItemView::SelectRows);
    dgUsers->setSelectionMode(QAbstractItemView::SingleSelection);
    dgUsers->setEditTriggers(QAbstractItemView::NoEditTriggers);
    dgUsers->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    cmdLock = addButton(QStringLiteral("cmdLock"), QStringLiteral("&LOCK"));
    cmdUnlock = addButton(QStringLiteral("cmdUnlock"), QStringLiteral("U&NLOCK"));
    cmdCancel = addButton(QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    connect(cmdLock, &QPushButton::clicked, this, [this] { lockSelected(true); });
    connect(cmdUnlock, &QPushButton::clicked, this, [this] { lockSelected(false); });
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);
}

void frmUserList::onOpened()
{
    // Only an administrator locks and unlocks; the rule refuses anyone else too.
    cmdLock->setEnabled(session().isAdministrator());
    cmdUnlock->setEnabled(session().isAdministrator());
    refresh();
    dgUsers->setFocus(Qt::OtherFocusReason);
}

void frmUserList::refresh()
{
    const QString keep = selectedUser();
    QVector<UserAccounts::User> users;
    if (!runSafely(this, [&] { users = UserAccounts::list(session().db()); }))
        return;
    m_model->removeRows(0, m_model->rowCount());
    for (const UserAccounts::User &u : users) {
        const QString last = u.lastLogOn.isValid()
            ? u.lastLogOn.toLocalTime().toString(QStringLiteral("dd/MM/yyyy hh:mm"))
            : QStringLiteral("NEVER");
        QList<QStandardItem *> row;
        for (const QString &text : {u.name, u.type, last, u.locked ? QStringLiteral("LOCKED") : QString()})
            row << new QStandardItem(text);
        m_model->appendRow(row);
    }
    if (keep.isEmpty() || !selectUser(keep))
        dgUsers->selectRow(0);
}

bool frmUserList::selectUser(const QString &userName)
{
    for (int r = 0; r < m_model->rowCount(); ++r)
        if (m_model->item(r, 0)->text() == userName.trimmed()) {
            dgUsers->selectRow(r);
            return true;
        }
    return false;
}

QString frmUserList::selectedUser() const
{
    const QModelIndexList rows = dgUsers->selectionModel() ? dgUsers->selectionModel()->selectedRows()
                                                           : QModelIndexList();
    return rows.isEmpty() ? QString() : m_model->item(rows.first().row(), 0)->text();
}

void frmUserList::lockSelected(bool locked)
{
    const QString user = selectedUser();
    if (user.isEmpty())
        return;
    Outcome r;
    if (!runSafely(this, [&] {
            r = UserAccounts::setLocked(session().db(), {session().currentUserName, session().currentUserType},
                                        user, locked);
        }))
        return;
    if (!r.ok) {
        refuse(r);
        return;
    }
    MessageService::information(this, r.message);
    refresh();
}
