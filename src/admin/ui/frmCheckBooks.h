#pragma once

#include "admin/BooksCheck.h"
#include "foundation/ui/BaseScreen.h"

class QLabel;
class QPushButton;
class QStandardItemModel;
class QTableView;

// CHECK BOOKS: runs the books check on the year and lists each fault with
// its document; a double click on a voucher of the voucher screen opens it
// there to be put right.
class frmCheckBooks : public BaseScreen
{
    Q_OBJECT
public:
    explicit frmCheckBooks(QWidget *parent = nullptr);
    // Checks at once when the screen opens.
    void onOpened() override;

    // Runs the check and lists what it found.
    void check();
    const BooksCheck::Result &result() const { return m_result; }
    // Opens the document of the listed fault `row`; false when no screen
    // can load it.
    bool openFault(int row);

    QLabel *lblResult = nullptr;
    QTableView *dgFaults = nullptr;
    QPushButton *cmdCheck = nullptr;
    QPushButton *cmdCancel = nullptr;

private:
    QStandardItemModel *m_model = nullptr;
    BooksCheck::Result m_result;
};
