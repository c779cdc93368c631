#pragma once

#include <QDialog>

class QLineEdit;
class QPushButton;
class QTimer;

// "Tessel Press Office": user name and password of the account year.
class frmLogOn : public QDialog
{
    Q_OBJECT
public:
    explicit frmLogOn(QWidget *parent = nullptr);

    int failures() const { return m_failures; }
    // Scales the wait after repeated failures (tests shorten it).
    void setDelayScale(double scale) { m_delayScale = scale; }

Q_SIGNALS:
    // session() holds the user: the main window loads next.
    void loggedOn();
    void exitRequested();

private:
    void logOn();

    QLineEdit *txtUserName = nullptr;
    QLineEdit *txtPassword = nullptr;
    QPushButton *cmdLogOn = nullptr;
    QPushButton *cmdExit = nullptr;
    QTimer *m_wait = nullptr;
    int m_failures = 0;
    double m_delayScale = 1.0;
};
