#include "admin/ui/frmIdentification.h"

#include "foundation/Session.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MenuRouter.h"
#include "foundation/ui/ScreenServices.h"

#include <QFont>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

frmIdentification::frmIdentification(QWidget *parent)
    : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmIdentification"));
    setTitle(QStringLiteral("IDENTIFICATION"));

    lblRestore = addLabel(QStringLiteral("lblRestore"), QString());
    QFont big = lblRestore->font();
    big.setBold(true);
    big.setPointSizeF(big.pointSizeF() * 1.4);
    lblRestore->setFont(big);
    lblWarning = addLabel(QStringLiteral("lblWarning"), QString());
    lblWarning->setWordWrap(true);
    lblWarning->setMaximumWidth(520);
    lblWarning->setMinimumHeight(lblWarning->fontMetrics().height() * 3);
    txtUserName = addLineEdit(QStringLiteral("txtUserName"), QStringLiteral("USER NAME:"));
    txtPassword = addLineEdit(QStringLiteral("txtPassword"), QStringLiteral("PASSWORD:"));
    txtPassword->setEchoMode(QLineEdit::Password);
    for (QLineEdit *e : {txtUserName, txtPassword}) {
        e->setMinimumWidth(260);
        EnterToTab::attach(e);
    }
    SafeTextKey::attach(txtUserName);
    packFields();

    cmdBalanceOkay = addButton(QStringLiteral("cmdBalanceOkay"), QStringLiteral("&OKAY"));
    cmdClosingOkay = addButton(QStringLiteral("cmdClosingOkay"), QStringLiteral("&OKAY"));
    cmdUpdateUserOkay = addButton(QStringLiteral("cmdUpdateUserOkay"), QStringLiteral("&OKAY"));
    cmdEndYearClosing = addButton(QStringLiteral("cmdEndYearClosing"), QStringLiteral("&OKAY"));
    cmdCancel = addButton(QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));

    const QPair<QPushButton *, GateButton> goAheads[] = {{cmdBalanceOkay, GateButton::Balance},
                                                         {cmdClosingOkay, GateButton::Closing},
                                                         {cmdUpdateUserOkay, GateButton::UpdateUser},
                                                         {cmdEndYearClosing, GateButton::EndYear}};
    for (const auto &g : goAheads) {
        const GateButton pressed = g.second;
        connect(g.first, &QPushButton::clicked, this, [this, pressed] { goAhead(pressed); });
    }
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);
}

void frmIdentification::open(MdiHost &host, GateButton button, const QString &title, const QString &warning,
                             Target target)
{
    auto *gate = host.showScreen<frmIdentification>(QStringLiteral("frmIdentification"));
    gate->prepare(host, button, title, warning, std::move(target));
}

void frmIdentification::prepare(MdiHost &host, GateButton button, const QString &title, const QString &warning,
                                Target target)
{
    m_host = &host;
    m_button = button;
    m_target = std::move(target);
    lblRestore->setText(title);
    lblWarning->setText(warning);
    showOnlyButtons({Identification::buttonName(button), QStringLiteral("cmdCancel")});
    txtUserName->clear();
    txtPassword->clear();
    txtUserName->setFocus(Qt::OtherFocusReason);
}

void frmIdentification::onOpened()
{
    txtUserName->setFocus(Qt::OtherFocusReason);
}

void frmIdentification::goAhead(GateButton pressed)
{
    // Only the button the menu showed opens anything.
    if (pressed != m_button || !m_host || !m_target)
        return;
    Outcome r;
    if (!runSafely(this, [&] {
            r = Identification::check(session().db(), txtUserName->text(), txtPassword->text(), pressed);
        }))
        return;
    if (!r.ok) {
        txtUserName->clear();
        txtPassword->clear();
        refuse(r);
        return;
    }
    // The gate goes before the job opens; the session's user stays as it is.
    MdiHost *host = m_host;
    const Target target = m_target;
    m_target = nullptr;
    closeScreen();
    target(*host);
}
