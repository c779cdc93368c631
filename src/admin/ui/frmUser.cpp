#include "admin/ui/frmUser.h"

#include "admin/UserAccounts.h"
#include "admin/ui/frmUserRights.h"
#include "foundation/Session.h"
#include "foundation/ui/CommandGate.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MenuRouter.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/ScreenBuild.h"
#include "foundation/ui/ScreenServices.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

namespace {

// User names hold no blanks: the space key does nothing in them.
class NoSpaceKey : public QObject
{
public:
    using QObject::QObject;
    static void attach(QWidget *w) { w->installEventFilter(new NoSpaceKey(w)); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Space)
            return true;
        return QObject::eventFilter(watched, event);
    }
};

QLineEdit *nameEdit(QWidget *parent, const QString &name)
{
    QLineEdit *e = ScreenBuild::lineEdit(parent, name, KeyRules::Kind::SafeText);
    NoSpaceKey::attach(e);
    return e;
}

// Passwords are taken exactly as typed: no filter, nothing raised.
QLineEdit *passwordEdit(QWidget *parent, const QString &name)
{
    QLineEdit *e = ScreenBuild::lineEdit(parent, name);
    e->setEchoMode(QLineEdit::Password);
    return e;
}

QLabel *fieldLabel(QWidget *parent, const QString &name, const QString &text)
{
    auto *l = new QLabel(text, parent);
    l->setObjectName(name);
    return l;
}

UserAccounts::Actor actor()
{
    return {session().currentUserName, session().currentUserType};
}

} // namespace

frmUser::frmUser(QWidget *parent)
    : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmUser"));

    FrameNewUser = ScreenBuild::frame(this, QStringLiteral("FrameNewUser"), true);
    lblNewUser = fieldLabel(FrameNewUser, QStringLiteral("lblNewUser"), QStringLiteral("NEW USER"));
    lblNewUser->setStyleSheet(QStringLiteral("font-weight: bold;"));
    txtNewUser = nameEdit(FrameNewUser, QStringLiteral("txtNewUser"));
    lblPassword = fieldLabel(FrameNewUser, QStringLiteral("lblPassword"), QStringLiteral("PASSWORD:"));
    txtPassword = passwordEdit(FrameNewUser, QStringLiteral("txtPassword"));
    optAdministrator = ScreenBuild::option(FrameNewUser, QStringLiteral("optAdministrator"), QStringLiteral("ADMINISTRATOR"));
    optCommonUser = ScreenBuild::option(FrameNewUser, QStringLiteral("optCommonUser"), QStringLiteral("COMMON USER"));
    optCommonUser->setChecked(true);
    cmdNewUser = ScreenBuild::button(FrameNewUser, QStringLiteral("cmdNewUser"), QStringLiteral("C&REATE USER"));
    cmdUpdateUser = ScreenBuild::button(FrameNewUser, QStringLiteral("cmdUpdateUser"), QStringLiteral("&UPDATE USER"));
    cmdCancel = ScreenBuild::button(FrameNewUser, QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    {
        auto *g = new QGridLayout(FrameNewUser);
        g->setContentsMargins(18, 14, 18, 14);
        g->setHorizontalSpacing(12);
        g->setVerticalSpacing(10);
        g->addWidget(lblNewUser, 0, 0, 1, 2);
        g->addWidget(fieldLabel(FrameNewUser, QStringLiteral("lblUserName"), QStringLiteral("USER NAME:")), 1, 0);
        g->addWidget(txtNewUser, 1, 1);
        g->addWidget(lblPassword, 2, 0);
        g->addWidget(txtPassword, 2, 1);
        auto *types = new QHBoxLayout;
        types->addWidget(optAdministrator);
        types->addWidget(optCommonUser);
        types->addStretch(1);
        g->addWidget(fieldLabel(FrameNewUser, QStringLiteral("lblUserType"), QStringLiteral("USER TYPE:")), 3, 0);
        g->addLayout(types, 3, 1);
        auto *buttons = new QHBoxLayout;
        buttons->setSpacing(8);
        buttons->addStretch(1);
        for (QPushButton *b : {cmdNewUser, cmdUpdateUser, cmdCancel})
            buttons->addWidget(b);
        g->addLayout(buttons, 4, 0, 1, 2);
        txtNewUser->setMinimumWidth(260);
    }

    FrameChangePassword = ScreenBuild::frame(this, QStringLiteral("FrameChangePassword"), true);
    lblChangePassword = fieldLabel(FrameChangePassword, QStringLiteral("lblChangePassword"), QStringLiteral("CHANGE PASSWORD"));
    lblChangePassword->setStyleSheet(QStringLiteral("font-weight: bold;"));
    txtUserName = nameEdit(FrameChangePassword, QStringLiteral("txtUserName"));
    lblOldPassword = fieldLabel(FrameChangePassword, QStringLiteral("lblOldPassword"), QStringLiteral("OLD PASSWORD:"));
    txtOldPassword = passwordEdit(FrameChangePassword, QStringLiteral("txtOldPassword"));
    txtNewPassword = passwordEdit(FrameChangePassword, QStringLiteral("txtNewPassword"));
    txtConfirmPassword = passwordEdit(FrameChangePassword, QStringLiteral("txtConfirmPassword"));
    cmdChangePassword = ScreenBuild::button(FrameChangePassword, QStringLiteral("cmdChangePassword"), QStringLiteral("C&HANGE PASSWORD"));
    cmdCancel1 = ScreenBuild::button(FrameChangePassword, QStringLiteral("cmdCancel1"), QStringLiteral("&CANCEL"));
    {
        auto *g = new QGridLayout(FrameChangePassword);
        g->setContentsMargins(18, 14, 18, 14);
        g->setHorizontalSpacing(12);
        g->setVerticalSpacing(10);
        g->addWidget(lblChangePassword, 0, 0, 1, 2);
        g->addWidget(fieldLabel(FrameChangePassword, QStringLiteral("lblUserName1"), QStringLiteral("USER NAME:")), 1, 0);
        g->addWidget(txtUserName, 1, 1);
        g->addWidget(lblOldPassword, 2, 0);
        g->addWidget(txtOldPassword, 2, 1);
        g->addWidget(fieldLabel(FrameChangePassword, QStringLiteral("lblNewPassword"), QStringLiteral("NEW PASSWORD:")), 3, 0);
        g->addWidget(txtNewPassword, 3, 1);
        g->addWidget(fieldLabel(FrameChangePassword, QStringLiteral("lblConfirmPassword"), QStringLiteral("CONFIRM PASSWORD:")), 4, 0);
        g->addWidget(txtConfirmPassword, 4, 1);
        auto *buttons = new QHBoxLayout;
        buttons->setSpacing(8);
        buttons->addStretch(1);
        buttons->addWidget(cmdChangePassword);
        buttons->addWidget(cmdCancel1);
        g->addLayout(buttons, 5, 0, 1, 2);
        txtUserName->setMinimumWidth(260);
    }

    addRow(QString(), FrameNewUser);
    addRow(QString(), FrameChangePassword);
    packFields();
    buttonFrame()->hide();

    for (QWidget *w : {static_cast<QWidget *>(txtNewUser), static_cast<QWidget *>(txtPassword),
                       static_cast<QWidget *>(txtUserName), static_cast<QWidget *>(txtOldPassword),
                       static_cast<QWidget *>(txtNewPassword), static_cast<QWidget *>(txtConfirmPassword)})
        EnterToTab::attach(w);

    new CommandGate(cmdNewUser, [this] { return checkNewUser(); }, [this] { createUser(); });
    new CommandGate(cmdChangePassword, [this] { return checkChangePassword(); }, [this] { changePassword(); });
    connect(cmdUpdateUser, &QPushButton::clicked, this, &frmUser::updateUser);
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);
    connect(cmdCancel1, &QPushButton::clicked, this, &BaseScreen::closeScreen);
    showFrame(Mode::NewUser);
}

void frmUser::showFrame(Mode mode)
{
    m_mode = mode;
    const bool change = mode == Mode::ChangePassword;
    FrameNewUser->setVisible(!change);
    FrameChangePassword->setVisible(change);
    // The caption of the screen's window stays the same whatever the frame.
    setWindowTitle(QStringLiteral("USER ACCOUNTS"));
}

void frmUser::startNewUser()
{
    showFrame(Mode::NewUser);
    setTitle(QStringLiteral("CREATE NEW USER"));
    setWindowTitle(QStringLiteral("USER ACCOUNTS"));
    lblNewUser->setText(QStringLiteral("NEW USER"));
    cmdNewUser->setVisible(true);
    cmdUpdateUser->setVisible(false);
    lblPassword->setVisible(true);
    txtPassword->setVisible(true);
    cmdNewUser->setEnabled(session().isAdministrator());
    txtNewUser->setFocus(Qt::OtherFocusReason);
}

void frmUser::startUpdateUser()
{
    showFrame(Mode::UpdateUser);
    setTitle(QStringLiteral("UPDATE USER"));
    setWindowTitle(QStringLiteral("USER ACCOUNTS"));
    lblNewUser->setText(QStringLiteral("UPDATE USER"));
    cmdNewUser->setVisible(false);
    cmdUpdateUser->setVisible(true);
    lblPassword->setVisible(false);
    txtPassword->setVisible(false);
    txtPassword->clear();
    txtNewUser->setFocus(Qt::OtherFocusReason);
}

void frmUser::startChangePassword()
{
    showFrame(Mode::ChangePassword);
    setTitle(QStringLiteral("CHANGE PASSWORD"));
    setWindowTitle(QStringLiteral("USER ACCOUNTS"));
    const bool common = !session().isAdministrator();
    lblOldPassword->setVisible(common);
    txtOldPassword->setVisible(common);
    txtUserName->setFocus(Qt::OtherFocusReason);
}

QString frmUser::selectedType() const
{
    if (optAdministrator->isChecked())
        return UserAccounts::administrator();
    if (optCommonUser->isChecked())
        return UserAccounts::commonUser();
    return QString();
}

bool frmUser::checkNewUser()
{
    const Outcome r = UserAccounts::checkNewUser(actor(), txtNewUser->text(), txtPassword->text(), selectedType());
    return r.ok || refuse(r);
}

bool frmUser::checkChangePassword()
{
    const Outcome r = UserAccounts::checkPasswordChange(txtUserName->text(), txtNewPassword->text(),
                                                        txtConfirmPassword->text());
    if (r.ok)
        return true;
    if (r.message == UserAccounts::Msg::mismatch()) {
        txtNewPassword->clear();
        txtConfirmPassword->clear();
    }
    return refuse(r);
}

void frmUser::createUser()
{
    Outcome r;
    if (!runSafely(this, [&] {
            r = UserAccounts::createUser(session().db(), actor(), txtNewUser->text(), txtPassword->text(),
                                         selectedType());
        }))
        return;
    if (!r.ok) {
        refuse(r);
        return;
    }
    MessageService::information(this, r.message);
    txtNewUser->clear();
    txtPassword->clear();
    optCommonUser->setChecked(true);
    txtNewUser->setFocus(Qt::OtherFocusReason);
}

void frmUser::updateUser()
{
    const QString user = txtNewUser->text().trimmed();
    Outcome r;
    if (!runSafely(this, [&] { r = UserAccounts::changeType(session().db(), actor(), user, selectedType()); }))
        return;
    if (!r.ok) {
        refuse(r);
        return;
    }
    MessageService::information(this, r.message);
    if (m_host)
        frmUserRights::openFor(*m_host, user);
    txtNewUser->clear();
}

void frmUser::changePassword()
{
    Outcome r;
    if (!runSafely(this, [&] {
            r = UserAccounts::changePassword(session().db(), actor(), txtUserName->text(), txtOldPassword->text(),
                                             txtNewPassword->text(), txtConfirmPassword->text());
        }))
        return;
    if (!r.ok) {
        if (r.message == UserAccounts::Msg::oldIncorrect()) {
            txtUserName->clear();
            txtOldPassword->clear();
        } else if (r.message == UserAccounts::Msg::mismatch()) {
            txtNewPassword->clear();
            txtConfirmPassword->clear();
        }
        refuse(r);
        return;
    }
    MessageService::information(this, r.message);
    for (QLineEdit *e : {txtUserName, txtOldPassword, txtNewPassword, txtConfirmPassword})
        e->clear();
    txtUserName->setFocus(Qt::OtherFocusReason);
}
