#include "admin/ui/frmBackup.h"

#include "foundation/Session.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/ScreenBuild.h"
#include "foundation/ui/ScreenServices.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QStandardPaths>

namespace {

QString defaultFolder()
{
    const QString docs = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return docs.isEmpty() ? QDir::homePath() : docs;
}

} // namespace

bool runWithProgress(BaseScreen *screen, QProgressBar *bar, QLabel *label,
                     const std::function<void(const YearBackup::Progress &)> &work)
{
    bar->setRange(0, 100);
    bar->setValue(0);
    label->clear();
    screen->detailFrame()->setEnabled(false);
    screen->buttonFrame()->setEnabled(false);
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const YearBackup::Progress progress = [bar, label](int percent, const QString &what) {
        bar->setValue(percent);
        label->setText(what);
        QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    };
    const bool ok = runSafely(screen, [&] { work(progress); });
    QApplication::restoreOverrideCursor();
    screen->detailFrame()->setEnabled(true);
    screen->buttonFrame()->setEnabled(true);
    if (!ok) {
        bar->setValue(0);
        label->clear();
    }
    return ok;
}

QString sessionServerPassword()
{
    SessionConnection &db = session().db();
    return db.isPostgres() ? db.database().password() : QString();
}

frmBackup::FileDialog &frmBackup::saveDialog()
{
    static FileDialog dialog = [](QWidget *parent, const QString &title, const QString &start, const QString &filter) {
        return QFileDialog::getSaveFileName(parent, title, start, filter, nullptr, QFileDialog::DontConfirmOverwrite);
    };
    return dialog;
}

frmBackup::frmBackup(QWidget *parent)
    : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmBackup"));
    setTitle(QStringLiteral("BACK UP"));

    txtDatabaseName = ScreenBuild::display(detailFrame(), QStringLiteral("txtDatabaseName"));
    addRow(QStringLiteral("ACCOUNT YEAR"), txtDatabaseName);
    txtFileName = addLineEdit(QStringLiteral("txtFileName"), QStringLiteral("BACKUP FILE"));
    txtFileName->setMinimumWidth(420);
    EnterToTab::attach(txtFileName);
    cmdBrowse = addButtonBeside(txtFileName, QStringLiteral("cmdBrowse"), QStringLiteral("&BROWSE..."));
    prgBackup = addProgressBar(QStringLiteral("prgBackup"), QStringLiteral("PROGRESS"));
    lblProgress = addLabel(QStringLiteral("lblProgress"), QString());
    packFields();

    cmdBackup = addButton(QStringLiteral("cmdBackup"), QStringLiteral("&BACK UP"));
    cmdCancel = addButton(QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    connect(cmdBrowse, &QPushButton::clicked, this, &frmBackup::browse);
    connect(cmdBackup, &QPushButton::clicked, this, &frmBackup::backup);
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);
}

void frmBackup::onOpened()
{
    txtDatabaseName->setText(session().db().databaseName());
    prgBackup->setValue(0);
    lblProgress->clear();
    txtFileName->setFocus(Qt::OtherFocusReason);
}

void frmBackup::browse()
{
    const QString year = session().db().databaseName();
    const QString typed = txtFileName->text().trimmed();
    const QString start = typed.isEmpty() ? QDir(defaultFolder()).filePath(year + QStringLiteral(".bak")) : typed;
    const QString chosen = saveDialog()(this, YearBackup::dialogTitle(year), start, YearBackup::fileFilter(year));
    if (chosen.isEmpty()) {
        MessageService::critical(this, YearBackup::cancelledMessage());
        return;
    }
    txtFileName->setText(QDir::toNativeSeparators(chosen));
    cmdBackup->setFocus(Qt::OtherFocusReason);
}

void frmBackup::backup()
{
    QString file = txtFileName->text().trimmed();
    if (file.isEmpty()) {
        MessageService::critical(this, YearBackup::cancelledMessage());
        txtFileName->setFocus(Qt::OtherFocusReason);
        return;
    }
    if (QFileInfo(file).suffix().isEmpty()) {
        file += QStringLiteral(".bak");
        txtFileName->setText(file);
    }
    bool replace = false;
    if (QFileInfo::exists(file)) {
        if (!MessageService::askYesNo(this, QStringLiteral("The file %1 already exists. Do you want to replace it?")
                                                .arg(QDir::toNativeSeparators(file))))
            return;
        replace = true;
    }
    SessionConnection &db = session().db();
    const ConnectionProfile profile = db.profile();
    const QString year = db.databaseName();
    const QString password = sessionServerPassword();
    if (!runWithProgress(this, prgBackup, lblProgress, [&](const YearBackup::Progress &progress) {
            YearBackup::backupYear(profile, year, file, replace, password, progress);
        }))
        return;
    MessageService::information(this, YearBackup::completedMessage());
    txtFileName->clear();
}
