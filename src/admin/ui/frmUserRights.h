#pragma once

#include "foundation/ui/BaseScreen.h"

#include <QHash>

class MdiHost;
class QCheckBox;
class QLabel;
class QPushButton;
class QTabWidget;

// USER RIGHTS: a box per menu entry a user may be denied, on one tab per
// menu. A ticked box gives the entry; the unticked ones are saved as the
// user's switched-off list, applied at his next log-on.
class frmUserRights : public BaseScreen
{
    Q_OBJECT
public:
    explicit frmUserRights(QWidget *parent = nullptr);

    // Opens the screen (or brings it forward) for the user's rights.
    static frmUserRights *openFor(MdiHost &host, const QString &userName);

    // Ticks every box but those of the user's switched-off entries.
    void loadUser(const QString &userName);
    QString rightsUser() const { return m_user; }

    QCheckBox *box(const QString &entry) const { return m_boxes.value(entry); }
    QStringList untickedEntries() const;

    QTabWidget *tabMenu = nullptr;
    QLabel *lblRightsUser = nullptr;
    QPushButton *cmdUpdateUser = nullptr;
    QPushButton *cmdCancel = nullptr;

private:
    void save();

    QString m_user;
    QHash<QString, QCheckBox *> m_boxes;
};
