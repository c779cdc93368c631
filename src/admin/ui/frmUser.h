#pragma once

#include "foundation/ui/BaseScreen.h"

class MdiHost;
class QFrame;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

// USER ACCOUNTS: one screen, two frames. FrameNewUser creates a user, or
// (update frame) changes a user's type and goes on to his rights;
// FrameChangePassword sets a password. The menu entry picks the frame.
class frmUser : public BaseScreen
{
    Q_OBJECT
public:
    enum class Mode { NewUser, UpdateUser, ChangePassword };

    explicit frmUser(QWidget *parent = nullptr);

    void startNewUser();
    void startUpdateUser();
    void startChangePassword();
    Mode mode() const { return m_mode; }
    // Where the update frame opens the rights screen.
    void setHost(MdiHost *host) { m_host = host; }

    QFrame *FrameNewUser = nullptr;
    QLabel *lblNewUser = nullptr;
    QLineEdit *txtNewUser = nullptr;
    QLabel *lblPassword = nullptr;
    QLineEdit *txtPassword = nullptr;
    QRadioButton *optAdministrator = nullptr;
    QRadioButton *optCommonUser = nullptr;
    QPushButton *cmdNewUser = nullptr;
    QPushButton *cmdUpdateUser = nullptr;
    QPushButton *cmdCancel = nullptr;

    QFrame *FrameChangePassword = nullptr;
    QLabel *lblChangePassword = nullptr;
    QLineEdit *txtUserName = nullptr;
    QLabel *lblOldPassword = nullptr;
    QLineEdit *txtOldPassword = nullptr;
    QLineEdit *txtNewPassword = nullptr;
    QLineEdit *txtConfirmPassword = nullptr;
    QPushButton *cmdChangePassword = nullptr;
    QPushButton *cmdCancel1 = nullptr;

private:
    QString selectedType() const;
    void showFrame(Mode mode);
    bool checkNewUser();
    bool checkChangePassword();
    void createUser();
    void updateUser();
    void changePassword();

    Mode m_mode = Mode::NewUser;
    MdiHost *m_host = nullptr;
};

// The menu's ways in (AdminMenu.cpp). The update frame opens straight
// through this; the identification gate stands in front of it in the menu.
frmUser *openNewUser(MdiHost &host);
frmUser *openUpdateUser(MdiHost &host);
frmUser *openChangePassword(MdiHost &host);
