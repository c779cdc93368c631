#pragma once

#include "admin/YearBackup.h"
#include "foundation/ui/BaseScreen.h"

#include <functional>

class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;

// BACK UP: a full backup of the account year this workstation works in,
// into a file the user chooses.
class frmBackup : public BaseScreen
{
    Q_OBJECT
public:
    explicit frmBackup(QWidget *parent = nullptr);

    void onOpened() override;

    QLineEdit *txtDatabaseName = nullptr;
    QLineEdit *txtFileName = nullptr;
    QPushButton *cmdBrowse = nullptr;
    QProgressBar *prgBackup = nullptr;
    QLabel *lblProgress = nullptr;
    QPushButton *cmdBackup = nullptr;
    QPushButton *cmdCancel = nullptr;

    // The file dialogue (title, folder or file, filter) -> the chosen file,
    // "" when cancelled. Tests put their own in its place.
    using FileDialog = std::function<QString(QWidget *parent, const QString &title, const QString &start,
                                             const QString &filter)>;
    static FileDialog &saveDialog();

private:
    void browse();
    void backup();
};

// Runs a long copy with `bar` and `label` showing how far it is, the
// window repainting and the screen's fields off meanwhile. Shows a failure
// as a critical message; returns whether the work finished.
bool runWithProgress(BaseScreen *screen, QProgressBar *bar, QLabel *label,
                     const std::function<void(const YearBackup::Progress &)> &work);

// The server password of this workstation's session ("" on the embedded
// store), for the programs that copy a year.
QString sessionServerPassword();
