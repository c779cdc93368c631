#pragma once

#include "foundation/Session.h"
#include "foundation/ui/MenuRouter.h"
#include "support/TestDb.h"
#include "support/ui/MessageRecorder.h"

#include <QDate>
#include <QMainWindow>
#include <QMdiArea>
#include <QString>

// What every screen test starts from: a fresh year on one engine, this
// workstation's session on it (a user, a working day), and a recorder
// that takes the message boxes. Everything is put back when it ends.
//
//   void tst::foo() { TESSEL_BACKEND() ScreenTest t(backend); ...; QCOMPARE(t.rec.last().text, ...); }
class ScreenTest
{
public:
    explicit ScreenTest(const QString &backend, const QDate &today = QDate(2026, 3, 10),
                        const QString &user = QStringLiteral("CLERK"),
                        const QString &userType = QStringLiteral("ADMINISTRATOR"))
        : year(backend)
    {
        session().connection = year.connect();
        session().currentUserName = user;
        session().currentUserType = userType;
        session().today = today;
    }
    ~ScreenTest()
    {
        session().connection.reset();
        session().currentTitle.clear();
        session().companyName.clear();
    }
    ScreenTest(const ScreenTest &) = delete;
    ScreenTest &operator=(const ScreenTest &) = delete;

    SessionConnection &db() { return session().db(); }
    // Accounts by code and name, with no opening rows.
    void addAccounts(const QList<QPair<QString, QString>> &accounts)
    {
        for (const auto &a : accounts)
            db().execute(QStringLiteral("INSERT INTO tblPartyInfo (PartyCode, PartyName) VALUES (?, ?)"),
                         {a.first, a.second});
    }

    TestDb::Year year;
    MessageRecorder rec;
};

// A main window with a router, for opening screens through their menu
// entries: register the subsystem's menu, then open.
//
//   MenuHost host;
//   registerVouchersMenu(host.router);
//   auto *f = host.open<frmJournalVoucher>("mnuPCashPaidVoucher", "frmJournalVoucher");
class MenuHost : public QMainWindow, public MdiHost
{
public:
    MenuHost()
    {
        m_area = new QMdiArea(this);
        setCentralWidget(m_area);
        resize(1280, 820);
    }
    QMdiArea *mdiArea() const override { return m_area; }
    QMainWindow *mainWindow() override { return this; }
    template <typename Screen>
    Screen *open(const QString &entry, const QString &screenName)
    {
        router.trigger(entry, *this);
        return qobject_cast<Screen *>(findScreen(screenName));
    }

    MenuRouter router;

private:
    QMdiArea *m_area;
};
