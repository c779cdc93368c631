#pragma once

#include "foundation/ui/BaseScreen.h"

#include <QHash>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QString>
#include <QStringList>
#include <functional>

class QMainWindow;

// What a menu handler gets: the main window, to open screens in.
class MdiHost
{
public:
    virtual ~MdiHost() = default;
    virtual QMdiArea *mdiArea() const = 0;
    virtual QMainWindow *mainWindow() = 0;

    // The open screen of that objectName, or nullptr.
    QWidget *findScreen(const QString &objectName) const;
    // Puts a new screen in a window of the main window, sized to its
    // client area, and shows it.
    QMdiSubWindow *addScreen(QWidget *screen);
    void bringForward(QWidget *screen);

    // Opens a screen: shows the open one of that name and brings it to the
    // front, or makes a new one (T needs a constructor taking a parent).
    // A BaseScreen's onOpened() runs either way, so set the mode variables
    // of session() before calling this; set title and buttons after it.
    //
    //   session().voucherMode = "NEW";
    //   auto *f = host.showScreen<frmJournalVoucher>("frmJournalVoucher");
    //   f->setTitle("JOURNAL VOUCHER");
    template <class T>
    T *showScreen(const QString &objectName)
    {
        T *screen = qobject_cast<T *>(findScreen(objectName));
        if (screen) {
            bringForward(screen);
        } else {
            screen = new T(nullptr);
            screen->setObjectName(objectName);
            addScreen(screen);
        }
        if (auto *base = qobject_cast<BaseScreen *>(screen))
            base->onOpened();
        return screen;
    }
};

// Menu entries and what they do. Each subsystem registers the handlers of
// its entries in its own file (src/<subsystem>/ui/<Subsystem>Menu.cpp):
//
//   void registerAccountsMenu(MenuRouter &router)
//   {
//       router.on("mnuPPartyInfo", [](MdiHost &host) {
//           host.showScreen<frmPartyInfo>("frmPartyInfo");
//       });
//   }
//
// The main window builds the whole menu; an entry with a handler is
// enabled, one without stays visible and disabled.
class MenuRouter
{
public:
    using Handler = std::function<void(MdiHost &host)>;

    void on(const QString &actionName, Handler handler);
    bool has(const QString &actionName) const { return m_handlers.contains(actionName); }
    QStringList actionNames() const { return m_handlers.keys(); }
    // Runs the entry's handler with the busy cursor. A database failure is
    // shown as a critical message; the program goes on. False when there
    // is no handler or it failed.
    bool trigger(const QString &actionName, MdiHost &host) const;

    // Calls every subsystem's register function.
    void registerAll();

private:
    QHash<QString, Handler> m_handlers;
};

void registerAccountsMenu(MenuRouter &router);
void registerVouchersMenu(MenuRouter &router);
void registerSalesMenu(MenuRouter &router);
void registerStockMenu(MenuRouter &router);
void registerPayrollMenu(MenuRouter &router);
void registerReportsMenu(MenuRouter &router);
void registerAdminMenu(MenuRouter &router);
void registerServicesMenu(MenuRouter &router);
