#include "foundation/ui/frmLogOn.h"

#include "foundation/ConnectionProfile.h"

#include "foundation/Logon.h"
#include "foundation/Session.h"
#include "foundation/ui/FieldStyle.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/ScreenServices.h"

#include <QApplication>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

frmLogOn::frmLogOn(QWidget *parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmLogOn"));
    setWindowTitle(QStringLiteral("Tessel Press Office"));

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 16);
    auto *head = new QLabel(QStringLiteral("Tessel Press Office"), this);
    head->setObjectName(QStringLiteral("lblTitle"));
    head->setStyleSheet(QStringLiteral(
        "background: #017C6A; color: white; font-size: 13pt; font-weight: bold; padding: 12px 18px;"));
    layout->addWidget(head);

    auto *form = new QFormLayout;
    form->setContentsMargins(24, 18, 24, 8);
    form->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
    form->setHorizontalSpacing(12);
    form->setVerticalSpacing(10);
    txtUserName = new QLineEdit(this);
    txtUserName->setObjectName(QStringLiteral("txtUserName"));
    txtUserName->setMinimumWidth(220);
    txtPassword = new QLineEdit(this);
    txtPassword->setObjectName(QStringLiteral("txtPassword"));
    txtPassword->setEchoMode(QLineEdit::Password);
    SafeTextKey::attach(txtUserName);
    EnterToTab::attach(txtUserName);
    attachHighlight(txtUserName);
    attachHighlight(txtPassword);
    auto *lblUser = new QLabel(QStringLiteral("&User name"), this);
    lblUser->setBuddy(txtUserName);
    auto *lblPass = new QLabel(QStringLiteral("&Password"), this);
    lblPass->setBuddy(txtPassword);
    form->addRow(lblUser, txtUserName);
    form->addRow(lblPass, txtPassword);
    layout->addLayout(form);

    auto *buttons = new QHBoxLayout;
    buttons->setContentsMargins(24, 8, 24, 0);
    buttons->addStretch(1);
    cmdLogOn = new QPushButton(QStringLiteral("&Log On"), this);
    cmdLogOn->setObjectName(QStringLiteral("cmdLogOn"));
    cmdLogOn->setDefault(true);
    cmdLogOn->setMinimumWidth(96);
    cmdExit = new QPushButton(QStringLiteral("E&xit"), this);
    cmdExit->setObjectName(QStringLiteral("cmdExit"));
    cmdExit->setAutoDefault(true);
    cmdExit->setMinimumWidth(96);
    buttons->addWidget(cmdLogOn);
    buttons->addWidget(cmdExit);
    layout->addLayout(buttons);

    m_wait = new QTimer(this);
    m_wait->setSingleShot(true);
    connect(m_wait, &QTimer::timeout, this, [this] { cmdLogOn->setEnabled(true); });

    connect(txtPassword, &QLineEdit::returnPressed, this, &frmLogOn::logOn);
    connect(cmdLogOn, &QPushButton::clicked, this, &frmLogOn::logOn);
    connect(cmdExit, &QPushButton::clicked, this, &frmLogOn::exitRequested);
    setFixedSize(sizeHint());
    txtUserName->setFocus();
}

void frmLogOn::logOn()
{
    if (!cmdLogOn->isEnabled())
        return; // still waiting after failed attempts
    Session &s = session();
    s.currentUserName = txtUserName->text().trimmed();
    Logon::Result result;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const bool ran = runSafely(this, [&] { result = Logon::check(s.db(), txtUserName->text(), txtPassword->text()); });
    QApplication::restoreOverrideCursor();
    if (!ran)
        return;
    if (result.ok) {
        m_failures = 0;
        s.currentUserName = result.userName;
        s.currentUserType = result.userType;
        runSafely(this, [&] { s.db().setActor(result.userName); }); // the edit log's user from now on
        s.lineConfirmationsInStatusBar = AppSettings::lineConfirmationsInStatusBar(s.currentUserName);
        accept();
        Q_EMIT loggedOn();
        return;
    }
    ++m_failures;
    MessageService::critical(this, result.message);
    txtUserName->clear();
    txtPassword->clear();
    txtUserName->setFocus();
    // The wait is counted in the year per user name; the window only holds
    // the button back meanwhile.
    const int delay = int(qMax(result.waitMs, Logon::delayMsAfterFailures(m_failures)) * m_delayScale);
    if (delay > 0) {
        cmdLogOn->setEnabled(false);
        m_wait->start(delay);
    }
}
