#include "foundation/ui/StartupFlow.h"

#include "foundation/Session.h"
#include "foundation/ui/frmLogOn.h"
#include "foundation/ui/frmMDITessel.h"
#include "foundation/ui/frmSplashScreen.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTimer>

namespace {
// Puts a window in the middle of the screen it will open on.
void centre(QWidget *w)
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen)
        return;
    w->adjustSize();
    const QRect area = screen->availableGeometry();
    w->move(area.center() - QPoint(w->width() / 2, w->height() / 2));
}
} // namespace

StartupFlow::StartupFlow(const AppSettings &settings, QObject *parent)
    : QObject(parent), m_settings(settings)
{
}

StartupFlow::~StartupFlow()
{
    delete m_main;
    delete m_logOn;
    delete m_splash;
}

void StartupFlow::start(const QString &profileName, const QString &yearName)
{
    m_splash = new frmSplashScreen(m_settings);
    if (m_quick)
        m_splash->setLoadingDuration(1);
    connect(m_splash, &frmSplashScreen::exitRequested, this, [this] { Q_EMIT finished(0); });
    connect(m_splash, &frmSplashScreen::databaseOpened, this, &StartupFlow::showLogOn);
    if (!profileName.isEmpty() || !yearName.isEmpty())
        m_splash->preselect(profileName, yearName);
    centre(m_splash);
    m_splash->show();
}

void StartupFlow::showLogOn()
{
    m_splash->hide();
    m_splash->deleteLater();
    m_logOn = new frmLogOn;
    if (m_quick)
        m_logOn->setDelayScale(0.01);
    m_logOn->setWindowModality(Qt::ApplicationModal);
    connect(m_logOn, &frmLogOn::exitRequested, this, [this] { Q_EMIT finished(0); });
    connect(m_logOn, &frmLogOn::rejected, this, [this] {
        if (session().currentUserType.isEmpty())
            Q_EMIT finished(0);
    });
    connect(m_logOn, &frmLogOn::loggedOn, this, &StartupFlow::showMainWindow);
    centre(m_logOn);
    m_logOn->show();
}

void StartupFlow::showMainWindow()
{
    m_logOn->hide();
    m_logOn->deleteLater();
    m_main = new frmMDITessel;
    connect(m_main, &frmMDITessel::quitConfirmed, this, [this] { Q_EMIT finished(0); });
    if (!m_main->load()) {
        // The database is newer than this program: nothing is shown.
        QTimer::singleShot(0, this, [this] { Q_EMIT finished(0); });
        return;
    }
    if (const QScreen *screen = QGuiApplication::primaryScreen())
        m_main->setGeometry(screen->availableGeometry());
    m_main->showMaximized();
    m_main->ApplyUserRights();
    if (session().currentUserType == QLatin1String("COMMON USER"))
        m_main->hideSidePanelLabels();
    Q_EMIT mainWindowShown(m_main);
}
