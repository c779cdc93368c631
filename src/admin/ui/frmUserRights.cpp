#include "admin/ui/frmUserRights.h"

#include "admin/UserRights.h"
#include "foundation/Session.h"
#include "foundation/ui/MenuRouter.h"
#include "foundation/ui/MenuTree.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/ScreenBuild.h"
#include "foundation/ui/ScreenServices.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

namespace {

// Boxes whose names stand for no entry of the menu: their words, and the
// menu whose tab shows them.
struct Stray
{
    const char *name;
    const char *caption;
    const char *menu;
};
const Stray kStrays[] = {
    {"mnuPBankPaidVoucher", "BANK PAID VOUCHER", "mnuAccount"},
    {"mnuPBankReceivedVoucher", "BANK RECEIVED VOUCHER", "mnuAccount"},
    {"mnuPrintStockRequest", "VIEW SALE REGISTER", "mnuInvoice"},
    {"mnuSEnter", "ENTER PURCHASE STOCK", "mnuStock"},
    {"mnuURestore", "RESTORE", "mnuUtilities"},
};

struct Place
{
    QString caption;
    QString menu; // the top menu it stands under (itself for a top menu)
    int order = 0; // its place in the menu tree
};

QHash<QString, Place> placesOfEntries()
{
    QHash<QString, Place> out;
    QString top;
    int order = 0;
    for (const MenuEntry &e : mainMenuTree()) {
        if (e.depth == 0)
            top = QString::fromLatin1(e.name);
        out.insert(QString::fromLatin1(e.name), {QString::fromLatin1(e.caption).remove(QLatin1Char('&')), top, ++order});
    }
    for (const Stray &s : kStrays)
        out.insert(QString::fromLatin1(s.name), {QString::fromLatin1(s.caption), QString::fromLatin1(s.menu), ++order});
    return out;
}

// Rows of boxes a tab column holds before the next column starts.
constexpr int kRowsPerColumn = 10;

} // namespace

frmUserRights::frmUserRights(QWidget *parent)
    : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmUserRights"));
    setTitle(QStringLiteral("USER RIGHTS"));
    lblRightsUser = addLabel(QStringLiteral("lblRightsUser"), QString());
    lblRightsUser->setStyleSheet(QStringLiteral("font-weight: bold;"));
    tabMenu = new QTabWidget(this);
    tabMenu->setObjectName(QStringLiteral("tabMenu"));
    tabMenu->setUsesScrollButtons(false); // every menu's tab in sight
    const int row = detailLayout()->rowCount();
    detailLayout()->addWidget(tabMenu, row, 0, 1, -1);
    detailLayout()->setRowStretch(row, 1);

    const QHash<QString, Place> places = placesOfEntries();
    // One tab per menu, in the menu bar's order; each box in its menu's tab.
    QHash<QString, QStringList> byMenu;
    for (const QString &name : UserRights::boxNames())
        byMenu[places.value(name).menu].append(name);
    for (const MenuEntry &e : mainMenuTree()) {
        const QString menu = QString::fromLatin1(e.name);
        if (e.depth != 0 || !byMenu.contains(menu))
            continue;
        auto *page = new QWidget(tabMenu);
        page->setObjectName(QStringLiteral("tab") + menu.mid(3));
        auto *grid = new QGridLayout(page);
        grid->setContentsMargins(16, 12, 16, 12);
        grid->setHorizontalSpacing(28);
        grid->setVerticalSpacing(8);
        // The menu's own box first, then its entries in the menu's order.
        QStringList names = byMenu.value(menu);
        std::sort(names.begin(), names.end(), [&](const QString &a, const QString &b) {
            return places.value(a).order < places.value(b).order;
        });
        for (int i = 0; i < names.size(); ++i) {
            const QString &name = names.at(i);
            auto *box = ScreenBuild::check(page, name, places.value(name).caption);
            box->setChecked(true);
            grid->addWidget(box, i % kRowsPerColumn, i / kRowsPerColumn);
            m_boxes.insert(name, box);
        }
        grid->setRowStretch(kRowsPerColumn, 1);
        grid->setColumnStretch((names.size() - 1) / kRowsPerColumn + 1, 1);
        tabMenu->addTab(page, places.value(menu).caption);
    }

    cmdUpdateUser = addButton(QStringLiteral("cmdUpdateUser"), QStringLiteral("&UPDATE"));
    cmdCancel = addButton(QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    connect(cmdUpdateUser, &QPushButton::clicked, this, &frmUserRights::save);
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);
}

frmUserRights *frmUserRights::openFor(MdiHost &host, const QString &userName)
{
    auto *f = host.showScreen<frmUserRights>(QStringLiteral("frmUserRights"));
    f->loadUser(userName);
    return f;
}

void frmUserRights::loadUser(const QString &userName)
{
    m_user = userName.trimmed();
    lblRightsUser->setText(QStringLiteral("USER: ") + m_user);
    QStringList off;
    if (!runSafely(this, [&] { off = UserRights::switchedOff(session().db(), m_user); }))
        return;
    for (auto it = m_boxes.cbegin(); it != m_boxes.cend(); ++it)
        it.value()->setChecked(!off.contains(it.key()));
    tabMenu->setCurrentIndex(0);
    tabMenu->setFocus(Qt::OtherFocusReason);
}

QStringList frmUserRights::untickedEntries() const
{
    QStringList out;
    for (const QString &name : UserRights::boxNames())
        if (!m_boxes.value(name)->isChecked())
            out << name;
    return out;
}

void frmUserRights::save()
{
    Outcome r;
    if (!runSafely(this, [&] {
            r = UserRights::save(session().db(), {session().currentUserName, session().currentUserType}, m_user,
                                 untickedEntries());
        }))
        return;
    if (!r.ok) {
        refuse(r);
        return;
    }
    MessageService::information(this, r.message);
}
