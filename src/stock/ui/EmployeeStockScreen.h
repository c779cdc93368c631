#pragma once

#include "stock/ui/ConsumablesScreen.h"

class AccountPick;
class MaskedLineEdit;
class QComboBox;
class QLineEdit;
class QPushButton;
class QTableView;

// What the two employee-stock screens share: the item options, the date,
// the employee's name and code, brand, type and units, the item buttons
// with CANCEL, and a headed list below.
class EmployeeStockScreen : public ConsumablesScreen
{
    Q_OBJECT
public:
    void onOpened() override;

    MaskedLineEdit *mskDate = nullptr;
    QComboBox *cmbPartyName = nullptr;
    QComboBox *cmbBrandName = nullptr;
    QComboBox *cmbType = nullptr;
    QLineEdit *txtUnits = nullptr;
    QPushButton *cmdInkStock = nullptr;
    QPushButton *cmdPlateStock = nullptr;
    QPushButton *cmdBlanketStock = nullptr;
    QPushButton *cmdDeveloperStock = nullptr;
    QPushButton *cmdCancel = nullptr;
    QTableView *dgStock = nullptr;

protected:
    // How one screen differs: the code field's objectName, the caption of
    // the item buttons, the list's two headings and its column widths.
    struct Layout
    {
        QString codeName;
        QString commandCaption;
        QString heading;
        QString headingNote;
        QList<int> columnWidths;
    };
    // Builds the form. The item buttons run checkRequest() and, when it
    // passes, work(); a new brand refills the types, a new type shows the
    // list again.
    EmployeeStockScreen(const Layout &layout, QWidget *parent);

    MaskedLineEdit *partyCode() const { return m_partyCode; }
    AccountPick *pick() const { return m_pick; }

    // The fields every request of these screens carries.
    template <class Request> Request fieldsRequest() const
    {
        Request r;
        r.item = item();
        r.brand = brandText();
        r.type = typeText();
        r.employeeName = employeeName();
        r.employeeCode = employeeCode();
        r.unitsText = unitsText();
        return r;
    }

    virtual bool checkRequest() = 0;
    virtual void work() = 0;
    virtual void brandChanged() = 0;
    virtual void showList() = 0;

private:
    QString brandText() const;
    QString typeText() const;
    QString employeeName() const;
    QString employeeCode() const;
    QString unitsText() const;

    MaskedLineEdit *m_partyCode = nullptr;
    AccountPick *m_pick = nullptr;
};
