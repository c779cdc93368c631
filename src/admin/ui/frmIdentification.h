#pragma once

#include "admin/Identification.h"
#include "foundation/ui/BaseScreen.h"

#include <functional>

class MdiHost;
class QLabel;
class QLineEdit;
class QPushButton;

// IDENTIFICATION: the user name and password asked again before a
// dangerous job opens. The menu entry shows one go-ahead button with its
// title and warning; that button checks the user and opens the job.
class frmIdentification : public BaseScreen
{
    Q_OBJECT
public:
    using Target = std::function<void(MdiHost &)>;

    explicit frmIdentification(QWidget *parent = nullptr);

    // Shows the gate in the main window with only `button`, the title and
    // the warning. A user who passes closes the gate and `target` opens
    // the job; one who does not is told so and may try again.
    static void open(MdiHost &host, GateButton button, const QString &title, const QString &warning,
                     Target target);

    void prepare(MdiHost &host, GateButton button, const QString &title, const QString &warning, Target target);
    void onOpened() override;

    GateButton button() const { return m_button; }

    QLabel *lblRestore = nullptr;
    QLabel *lblWarning = nullptr;
    QLineEdit *txtUserName = nullptr;
    QLineEdit *txtPassword = nullptr;
    QPushButton *cmdBalanceOkay = nullptr;
    QPushButton *cmdClosingOkay = nullptr;
    QPushButton *cmdUpdateUserOkay = nullptr;
    QPushButton *cmdEndYearClosing = nullptr;
    QPushButton *cmdCancel = nullptr;

private:
    void goAhead(GateButton pressed);

    MdiHost *m_host = nullptr;
    GateButton m_button = GateButton::Balance;
    Target m_target;
};
