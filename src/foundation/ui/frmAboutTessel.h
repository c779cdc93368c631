#pragma once

#include <QDialog>

class QPushButton;

// Version, account year and user of this run.
class frmAboutTessel : public QDialog
{
    Q_OBJECT
public:
    explicit frmAboutTessel(QWidget *parent = nullptr);
private:
    QPushButton *cmdOk = nullptr;
};
