#pragma once

#include "foundation/ui/BaseScreen.h"

class QPushButton;
class QStandardItemModel;
class QTableView;

// USER LIST: every user with his type, last log-on and whether he is
// locked; an administrator locks and unlocks the selected user here.
class frmUserList : public BaseScreen
{
    Q_OBJECT
public:
    explicit frmUserList(QWidget *parent = nullptr);
    void onOpened() override;

    void refresh();
    // Selects the user's row; false when he is not listed.
    bool selectUser(const QString &userName);
    QString selectedUser() const;

    QTableView *dgUsers = nullptr;
    QPushButton *cmdLock = nullptr;
    QPushButton *cmdUnlock = nullptr;
    QPushButton *cmdCancel = nullptr;

private:
    void lockSelected(bool locked);

    QStandardItemModel *m_model = nullptr;
};
