#include "foundation/ui/frmSplashScreen.h"

#include "foundation/AccountYear.h"
#include "foundation/Session.h"
#include "foundation/SessionConnection.h"
#include "foundation/Startup.h"
#include "foundation/ui/FieldStyle.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MessageService.h"

#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QEvent>
#include <QFocusEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QLabel>
#include <QProgressBar>
#include <QPropertyAnimation>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
bool defaultPrompt(QWidget *parent, const ConnectionProfile &profile, QString &password)
{
    bool ok = false;
    const QString typed = QInputDialog::getText(
        parent, MessageService::caption(),
        QStringLiteral("Password of %1 on %2:").arg(profile.user, Startup::serverAddress(profile)),
        QLineEdit::Password, QString(), &ok);
    if (ok)
        password = typed;
    return ok;
}

bool looksLikePasswordRefusal(const QString &text)
{
    return text.contains(QLatin1String("password"), Qt::CaseInsensitive)
        || text.contains(QLatin1String("authentication"), Qt::CaseInsensitive);
}
} // namespace

frmSplashScreen::frmSplashScreen(const AppSettings &settings, QWidget *parent)
    : QWidget(parent), m_settings(settings), m_prompt(defaultPrompt)
{
    setObjectName(QStringLiteral("frmSplashScreen"));
    setWindowTitle(QStringLiteral("Tessel Business Suite"));
    setWindowFlag(Qt::WindowMaximizeButtonHint, false);

    auto *outer = new QHBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->setSpacing(0);

    auto *banner = new QFrame(this);
    banner->setObjectName(QStringLiteral("frBanner"));
    banner->setStyleSheet(QStringLiteral(
        "QFrame#frBanner { background: qlineargradient(x1:0, y1:0, x2:1, y2:1, stop:0 #014D42, stop:1 #017C6A); }"
        "QLabel { color: white; }"));
    banner->setFixedWidth(250);
    auto *bannerLayout = new QVBoxLayout(banner);
    bannerLayout->setContentsMargins(26, 34, 20, 24);
    auto *product = new QLabel(QStringLiteral("TESSEL"), banner);
    product->setStyleSheet(QStringLiteral("font-size: 30pt; font-weight: bold; letter-spacing: 4px;"));
    auto *suite = new QLabel(QStringLiteral("Business Suite"), banner);
    suite->setStyleSheet(QStringLiteral("font-size: 14pt;"));
    auto *tag = new QLabel(QStringLiteral("Accounts, sales, stock and payroll\nfor the printing press"), banner);
    tag->setStyleSheet(QStringLiteral("color: #CDE7E2; font-size: 9pt;"));
    bannerLayout->addWidget(product);
    bannerLayout->addWidget(suite);
    bannerLayout->addSpacing(14);
    bannerLayout->addWidget(tag);
    bannerLayout->addStretch(1);
    outer->addWidget(banner);

    auto *panel = new QWidget(this);
    auto *layout = new QVBoxLayout(panel);
    layout->setContentsMargins(28, 28, 28, 20);
    auto *heading = new QLabel(QStringLiteral("SELECT ACCOUNT YEAR"), panel);
    heading->setStyleSheet(QStringLiteral("font-size: 12pt; font-weight: bold; color: #017C6A;"));
    layout->addWidget(heading);
    layout->addSpacing(10);

    auto *form = new QFormLayout;
    form->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
    form->setHorizontalSpacing(12);
    form->setVerticalSpacing(10);
    cmbType = new QComboBox(panel);
    cmbType->setObjectName(QStringLiteral("cmbType"));
    cmbType->setToolTip(QStringLiteral("Select Server Type"));
    cmbServer = new QComboBox(panel);
    cmbServer->setObjectName(QStringLiteral("cmbServer"));
    cmbServer->setToolTip(QStringLiteral("Select Server Name"));
    cmbDataBase = new QComboBox(panel);
    cmbDataBase->setObjectName(QStringLiteral("cmbDataBase"));
    cmbDataBase->setToolTip(QStringLiteral("Select Database"));
    for (QComboBox *c : {cmbType, cmbServer, cmbDataBase}) {
        c->setMinimumContentsLength(26);
        c->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        attachHighlight(c, HighlightKind::Field2);
        EnterToTab::attach(c);
    }
    auto label = [panel](const QString &text, QWidget *buddy) {
        auto *l = new QLabel(text, panel);
        l->setBuddy(buddy);
        return l;
    };
    form->addRow(label(QStringLiteral("Server &type"), cmbType), cmbType);
    form->addRow(label(QStringLiteral("&Server"), cmbServer), cmbServer);
    form->addRow(label(QStringLiteral("&Database"), cmbDataBase), cmbDataBase);
    layout->addLayout(form);
    layout->addSpacing(16);

    lblLoading = new QLabel(QStringLiteral("LOADING"), panel);
    lblLoading->setObjectName(QStringLiteral("lblLoading"));
    lblLoading->setStyleSheet(QStringLiteral("color: #555; font-size: 8pt; font-weight: bold;"));
    pgbSplashScreen = new QProgressBar(panel);
    pgbSplashScreen->setObjectName(QStringLiteral("pgbSplashScreen"));
    pgbSplashScreen->setRange(0, 1000);
    pgbSplashScreen->setValue(0);
    pgbSplashScreen->setTextVisible(false);
    pgbSplashScreen->setFixedHeight(8);
    pgbSplashScreen->setStyleSheet(QStringLiteral(
        "QProgressBar { border: 1px solid #B8C8C4; border-radius: 3px; background: #EEF3F2; }"
        "QProgressBar::chunk { background: #017C6A; border-radius: 2px; }"));
    layout->addWidget(lblLoading);
    layout->addWidget(pgbSplashScreen);
    layout->addStretch(1);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    cmdLogOnForm = new QPushButton(QStringLiteral("&Log On"), panel);
    cmdLogOnForm->setObjectName(QStringLiteral("cmdLogOnForm"));
    cmdLogOnForm->setAutoDefault(true);
    cmdLogOnForm->setMinimumWidth(100);
    cmdExit = new QPushButton(QStringLiteral("E&xit"), panel);
    cmdExit->setObjectName(QStringLiteral("cmdExit"));
    cmdExit->setAutoDefault(true);
    cmdExit->setMinimumWidth(100);
    buttons->addWidget(cmdLogOnForm);
    buttons->addWidget(cmdExit);
    layout->addLayout(buttons);
    outer->addWidget(panel, 1);

    m_loading = new QPropertyAnimation(pgbSplashScreen, "value", this);
    m_loading->setStartValue(0);
    m_loading->setEndValue(1000);
    m_loading->setEasingCurve(QEasingCurve::InOutQuad);
    connect(m_loading, &QPropertyAnimation::finished, this, [this] {
        m_busy = false;
        Q_EMIT databaseOpened();
    });

    for (const ConnectionProfile &p : m_settings.profiles)
        cmbType->addItem(p.isEmbedded() ? p.name + QStringLiteral(" (this workstation)") : p.name, p.name);
    cmbType->setCurrentIndex(0);
    const ConnectionProfile *first = currentProfile();
    if (first)
        cmbServer->addItem(Startup::serverAddress(*first));

    connect(cmbType, qOverload<int>(&QComboBox::activated), this, [this] { typeChosen(); });
    cmbServer->installEventFilter(this);
    connect(cmdLogOnForm, &QPushButton::clicked, this, &frmSplashScreen::logOnForm);
    connect(cmdExit, &QPushButton::clicked, this, &frmSplashScreen::exitRequested);

    setFixedSize(sizeHint().expandedTo(QSize(660, 330)));

    // The embedded store is on this workstation: its years can be listed
    // at once without reaching any server.
    if (first && first->isEmbedded())
        listDatabases();
    cmbType->setFocus();
}

const ConnectionProfile *frmSplashScreen::currentProfile() const
{
    return m_settings.profile(cmbType->currentData().toString());
}

void frmSplashScreen::typeChosen()
{
    cmbServer->clear();
    if (const ConnectionProfile *p = currentProfile())
        cmbServer->addItem(Startup::serverAddress(*p));
    listDatabases();
}

bool frmSplashScreen::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == cmbServer && event->type() == QEvent::FocusOut && !cmbServer->view()->isVisible()) {
        // Only the user moving on from the field lists the years, not the
        // window losing the focus to another (or to a message).
        const auto reason = static_cast<QFocusEvent *>(event)->reason();
        if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason) {
            RestoreField(cmbServer);
            listDatabases();
        }
    }
    return QWidget::eventFilter(watched, event);
}

bool frmSplashScreen::passwordFor(const ConnectionProfile &profile, QString &password, bool force)
{
    if (!profile.isPostgres() || !profile.password.isEmpty()) {
        password.clear();
        return true;
    }
    if (!force && m_passwords.contains(profile.name)) {
        password = m_passwords.value(profile.name);
        return true;
    }
    if (!force && !profile.askPassword) {
        password.clear();
        return true;
    }
    if (!m_prompt || !m_prompt(this, profile, password))
        return false;
    m_passwords.insert(profile.name, password);
    return true;
}

void frmSplashScreen::listDatabases()
{
    cmbDataBase->clear();
    const ConnectionProfile *profile = currentProfile();
    if (!profile)
        return;
    session().serverAddress = Startup::serverAddress(*profile);
    QString password;
    if (!passwordFor(*profile, password, false))
        return;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    QStringList years;
    bool ok = false;
    for (int attempt = 0; attempt < 2 && !ok; ++attempt) {
        try {
            years = AccountYear::list(*profile, password);
            ok = true;
        } catch (const DbError &e) {
            qWarning("account years of %s: %s", qPrintable(profile->name), qPrintable(e.driverText()));
            // A server that wants a password the settings file does not hold.
            if (attempt == 0 && profile->isPostgres() && profile->password.isEmpty()
                && password.isEmpty() && looksLikePasswordRefusal(e.driverText())) {
                QApplication::restoreOverrideCursor();
                if (!passwordFor(*profile, password, true))
                    return;
                QApplication::setOverrideCursor(Qt::WaitCursor);
                continue;
            }
            break;
        } catch (const std::exception &e) {
            qWarning("account years of %s: %s", qPrintable(profile->name), e.what());
            break;
        }
    }
    QApplication::restoreOverrideCursor();
    if (!ok) {
        m_passwords.remove(profile->name);
        MessageService::critical(this, Startup::connectionFailedMessage());
        return;
    }
    cmbDataBase->addItems(years);
}

void frmSplashScreen::preselect(const QString &profileName, const QString &yearName)
{
    if (!profileName.isEmpty()) {
        const int i = cmbType->findData(profileName, Qt::UserRole, Qt::MatchFixedString);
        if (i >= 0 && i != cmbType->currentIndex()) {
            cmbType->setCurrentIndex(i);
            typeChosen();
        } else if (cmbDataBase->count() == 0) {
            listDatabases();
        }
    }
    if (!yearName.isEmpty()) {
        const int j = cmbDataBase->findText(yearName);
        if (j >= 0)
            cmbDataBase->setCurrentIndex(j);
    }
}

bool frmSplashScreen::ConnectDatabase()
{
    Session &s = session();
    s.connectOk = false;
    const ConnectionProfile *profile = currentProfile();
    QString password;
    if (profile && passwordFor(*profile, password, false)) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        try {
            Startup::connectDatabase(s, *profile, cmbDataBase->currentText(), password);
            Startup::loadCompany(s);
        } catch (const DbError &e) {
            qWarning("opening %s: %s", qPrintable(cmbDataBase->currentText()), qPrintable(e.driverText()));
            s.connection.reset();
            s.connectOk = false;
        } catch (const std::exception &e) {
            qWarning("opening %s: %s", qPrintable(cmbDataBase->currentText()), e.what());
            s.connection.reset();
            s.connectOk = false;
        }
        QApplication::restoreOverrideCursor();
    }
    if (!s.connectOk)
        MessageService::critical(this, Startup::configurationProblemMessage());
    return s.connectOk;
}

void frmSplashScreen::closeEvent(QCloseEvent *event)
{
    // Closing the window is the same as Exit.
    event->accept();
    Q_EMIT exitRequested();
}

void frmSplashScreen::logOnForm()
{
    if (m_busy)
        return;
    if (cmbDataBase->currentText().isEmpty()) {
        MessageService::critical(this, Startup::noDatabaseMessage());
        cmbDataBase->setFocus();
        return;
    }
    if (!ConnectDatabase()) {
        cmbDataBase->setFocus();
        return;
    }
    m_busy = true;
    m_loading->setDuration(qMax(1, m_loadingMs));
    m_loading->start();
}
