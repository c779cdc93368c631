#pragma once

#include "foundation/ConnectionProfile.h"

#include <QHash>
#include <QWidget>
#include <functional>

class QComboBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QPropertyAnimation;

// The first screen: how to reach the account years (the profiles of the
// settings file), which year, then on to the log-on.
class frmSplashScreen : public QWidget
{
    Q_OBJECT
public:
    explicit frmSplashScreen(const AppSettings &settings, QWidget *parent = nullptr);

    // Asks for a server password; returns false when the user cancels.
    using PasswordPrompt = std::function<bool(QWidget *parent, const ConnectionProfile &profile, QString &password)>;
    void setPasswordPrompt(PasswordPrompt prompt) { m_prompt = std::move(prompt); }

    // Picks a profile and an account year as if the user had (command line).
    void preselect(const QString &profileName, const QString &yearName);

    // The account years of the chosen profile into cmbDataBase.
    void listDatabases();
    // Opens the chosen year into session(); false (with the message shown)
    // when it cannot.
    bool ConnectDatabase();

    const ConnectionProfile *currentProfile() const;
    void setLoadingDuration(int ms) { m_loadingMs = ms; }

Q_SIGNALS:
    // The year is open: go on to the log-on.
    void databaseOpened();
    void exitRequested();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void logOnForm();
    void typeChosen();
    bool passwordFor(const ConnectionProfile &profile, QString &password, bool force);

    AppSettings m_settings;
    QComboBox *cmbType = nullptr;
    QComboBox *cmbServer = nullptr;
    QComboBox *cmbDataBase = nullptr;
    QPushButton *cmdLogOnForm = nullptr;
    QPushButton *cmdExit = nullptr;
    QProgressBar *pgbSplashScreen = nullptr;
    QLabel *lblLoading = nullptr;
    QPropertyAnimation *m_loading = nullptr;
    QHash<QString, QString> m_passwords; // typed this run, by profile
    PasswordPrompt m_prompt;
    int m_loadingMs = 700;
    bool m_busy = false;
};
