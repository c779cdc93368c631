#pragma once

#include "foundation/ConnectionProfile.h"

#include "foundation/ui/frmLogOn.h"
#include "foundation/ui/frmMDITessel.h"
#include "foundation/ui/frmSplashScreen.h"

#include <QObject>
#include <QPointer>

// Start-up: the account-year screen, the log-on, then the main window
// with the user's rights. The program ends when `finished` is sent.
class StartupFlow : public QObject
{
    Q_OBJECT
public:
    explicit StartupFlow(const AppSettings &settings, QObject *parent = nullptr);
    ~StartupFlow() override;

    void start(const QString &profileName = QString(), const QString &yearName = QString());

    frmSplashScreen *splash() const { return m_splash; }
    frmLogOn *logOn() const { return m_logOn; }
    frmMDITessel *mainWindow() const { return m_main; }

    // Tests: quicker loading bar and log-on waits.
    void setQuick(bool quick) { m_quick = quick; }

Q_SIGNALS:
    void mainWindowShown(frmMDITessel *window);
    void finished(int exitCode);

private:
    void showLogOn();
    void showMainWindow();

    AppSettings m_settings;
    QPointer<frmSplashScreen> m_splash;
    QPointer<frmLogOn> m_logOn;
    QPointer<frmMDITessel> m_main;
    bool m_quick = false;
};
