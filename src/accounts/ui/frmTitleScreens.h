#pragma once

#include "foundation/ui/BaseScreen.h"

class QComboBox;
class QLineEdit;
class QPushButton;
class QTableView;

// ADD TITLE NAME: adds a document title.
class frmAddTitleName : public BaseScreen
{
    Q_OBJECT
public:
    explicit frmAddTitleName(QWidget *parent = nullptr);
    void onOpened() override;

    QLineEdit *txtTitleName = nullptr;
    QPushButton *cmdOkay = nullptr;
    QPushButton *cmdCancel = nullptr;

private:
    void save();
};

// TITLE NAME: chooses the working title, whose letterhead and numbering
// the documents use from then on.
class frmTitleName : public BaseScreen
{
    Q_OBJECT
public:
    explicit frmTitleName(QWidget *parent = nullptr);
    void onOpened() override;

    QComboBox *cmbTitleName = nullptr;
    QPushButton *cmdOkay = nullptr;
    QPushButton *cmdCancel = nullptr;

private:
    void choose();
};

// LETTERHEAD: the company lines printed on the documents of each title.
class frmLetterhead : public BaseScreen
{
    Q_OBJECT
public:
    explicit frmLetterhead(QWidget *parent = nullptr);
    void onOpened() override;

    QComboBox *cmbTitleName = nullptr;
    QLineEdit *txtCompanyName = nullptr;
    QLineEdit *txtCompanyAddress = nullptr;
    QLineEdit *txtCompanyPhone = nullptr;
    QLineEdit *txtCompanyEmail = nullptr;
    QLineEdit *txtCompanySaleTaxNo = nullptr;
    QLineEdit *txtCompanyNTN = nullptr;
    QPushButton *cmdSave = nullptr;
    QPushButton *cmdCancel = nullptr;

private:
    void showLetterhead();
    void save();
};

// CARE OF: the persons through whom parties are handled.
class frmCareOf : public BaseScreen
{
    Q_OBJECT
public:
    explicit frmCareOf(QWidget *parent = nullptr);
    void onOpened() override;

    QLineEdit *txtName = nullptr;
    QLineEdit *txtDesignation = nullptr;
    QTableView *dgCareOf = nullptr;
    QPushButton *cmdSave = nullptr;
    QPushButton *cmdCancel = nullptr;

private:
    void showPersons(const QString &text);
    bool check();
    void save();
};
