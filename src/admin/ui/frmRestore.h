#pragma once

#include "admin/ui/frmBackup.h"
#include "foundation/ui/BaseScreen.h"

class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;

// RESTORE: a backup file made into an account year of this workstation's
// profile, after a question, and a second one before an existing year is
// replaced.
class frmRestore : public BaseScreen
{
    Q_OBJECT
public:
    explicit frmRestore(QWidget *parent = nullptr);

    void onOpened() override;

    QLineEdit *txtFileName = nullptr;
    QPushButton *cmdBrowse = nullptr;
    QLineEdit *txtYearName = nullptr;
    QProgressBar *prgRestore = nullptr;
    QLabel *lblProgress = nullptr;
    QPushButton *cmdRestore = nullptr;
    QPushButton *cmdCancel = nullptr;

    static frmBackup::FileDialog &openDialog();

private:
    void browse();
    void restore();
};
