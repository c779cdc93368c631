#include "admin/ui/frmRestore.h"

#include "foundation/AccountYear.h"
#include "foundation/Session.h"
#include "foundation/ui/KeyFilters.h"
#include "foundation/ui/MessageService.h"
#include "foundation/ui/ScreenBuild.h"
#include "foundation/ui/ScreenServices.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QStandardPaths>

frmBackup::FileDialog &frmRestore::openDialog()
{
    static frmBackup::FileDialog dialog = [](QWidget *parent, const QString &title, const QString &start,
                                             const QString &filter) {
        return QFileDialog::getOpenFileName(parent, title, start, filter);
    };
    return dialog;
}

frmRestore::frmRestore(QWidget *parent)
    : BaseScreen(parent)
{
    setObjectName(QStringLiteral("frmRestore"));
    setTitle(QStringLiteral("RESTORE"));

    txtFileName = addLineEdit(QStringLiteral("txtFileName"), QStringLiteral("BACKUP FILE"));
    txtFileName->setMinimumWidth(420);
    EnterToTab::attach(txtFileName);
    cmdBrowse = addButtonBeside(txtFileName, QStringLiteral("cmdBrowse"), QStringLiteral("&BROWSE..."));
    txtYearName = addLineEdit(QStringLiteral("txtYearName"), QStringLiteral("INTO ACCOUNT YEAR"));
    EnterToTab::attach(txtYearName);
    prgRestore = addProgressBar(QStringLiteral("prgRestore"), QStringLiteral("PROGRESS"));
    lblProgress = addLabel(QStringLiteral("lblProgress"), QString());
    packFields();

    cmdRestore = addButton(QStringLiteral("cmdRestore"), QStringLiteral("&RESTORE"));
    cmdCancel = addButton(QStringLiteral("cmdCancel"), QStringLiteral("&CANCEL"));
    connect(cmdBrowse, &QPushButton::clicked, this, &frmRestore::browse);
    connect(cmdRestore, &QPushButton::clicked, this, &frmRestore::restore);
    connect(cmdCancel, &QPushButton::clicked, this, &BaseScreen::closeScreen);
}

void frmRestore::onOpened()
{
    prgRestore->setValue(0);
    lblProgress->clear();
    txtFileName->setFocus(Qt::OtherFocusReason);
}

void frmRestore::browse()
{
    const QString typed = txtFileName->text().trimmed();
    const QString docs = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString chosen = openDialog()(this, QStringLiteral("RESTORE"), typed.isEmpty() ? docs : typed,
                                        QStringLiteral("Backups (*.bak);;All files (*)"));
    if (chosen.isEmpty())
        return;
    txtFileName->setText(QDir::toNativeSeparators(chosen));
    // A backup named after its year proposes that name.
    const QString base = QFileInfo(chosen).completeBaseName();
    if (txtYearName->text().trimmed().isEmpty() && AccountYear::isValidName(base))
        txtYearName->setText(base);
    txtYearName->setFocus(Qt::OtherFocusReason);
}

void frmRestore::restore()
{
    const QString file = txtFileName->text().trimmed();
    if (file.isEmpty()) {
        MessageService::critical(this, QStringLiteral("Choose the backup file to restore."));
        txtFileName->setFocus(Qt::OtherFocusReason);
        return;
    }
    const QString year = txtYearName->text().trimmed();
    if (!AccountYear::isValidName(year)) {
        MessageService::critical(this, QStringLiteral("\"%1\" is not an account-year name: it must begin with "
                                                      "\"Tessel\" and hold only letters, digits and underscores.")
                                           .arg(year));
        txtYearName->setFocus(Qt::OtherFocusReason);
        return;
    }
    SessionConnection &db = session().db();
    const ConnectionProfile profile = db.profile();
    const QString password = sessionServerPassword();
    if (!MessageService::askYesNo(this, YearBackup::restoreQuestion(file, year)))
        return;
    bool exists = false;
    if (!runSafely(this, [&] { exists = YearBackup::yearExists(profile, year, password); }))
        return;
    if (exists) {
        // The year this workstation works in cannot be pulled from under it.
        if (year == db.databaseName()) {
            MessageService::critical(this, QStringLiteral("The account year %1 is open on this workstation: log on "
                                                          "to another year to restore over it.").arg(year));
            txtYearName->setFocus(Qt::OtherFocusReason);
            return;
        }
        if (!MessageService::askYesNo(this, YearBackup::replaceQuestion(year)))
            return;
    }
    if (!runWithProgress(this, prgRestore, lblProgress, [&](const YearBackup::Progress &progress) {
            YearBackup::restoreYear(profile, file, year, exists, password, progress);
        }))
        return;
    MessageService::information(this, YearBackup::restoredMessage(year));
}
