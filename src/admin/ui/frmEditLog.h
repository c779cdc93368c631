#pragma once

#include "admin/EditLog.h"
#include "foundation/ui/BaseScreen.h"

class MaskedLineEdit;
class QComboBox;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QStandardItemModel;
class QTableView;

// EDIT LOG: who changed what and when, filtered by the days it was logged,
// the user, the document type and number. A double click on a row opens
// its document where a screen can show it; PRINT sends the rows shown to
// the report viewer (printer, PDF, Excel, CSV).
class frmEditLog : public BaseScreen
{
    Q_OBJECT
public:
    explicit frmEditLog(QWidget *parent = nullptr);
    void onOpened() override;

    // Shows the history of one document (F8 on its own screen).
    void showHistory(const ScreenDocument &document);
    // Reads the fields and lists the rows; false when a field is refused.
    bool refresh();
    // Opens the document of the grid's row.
    void openRow(int row);
    const QVector<EditLog::Entry> &entries() const { return m_entries; }

    MaskedLineEdit *mskDateFrom = nullptr;
    MaskedLineEdit *mskDateTo = nullptr;
    QComboBox *cmbUserName = nullptr;
    QComboBox *cmbDocType = nullptr;
    QLineEdit *txtDocNo = nullptr;
    QTableView *dgEditLog = nullptr;
    QPlainTextEdit *txtBefore = nullptr;   // the selected row's values, one a line
    QPlainTextEdit *txtAfter = nullptr;
    QPushButton *cmdShow = nullptr;
    QPushButton *cmdPrint = nullptr;
    QPushButton *cmdCancel = nullptr;

private:
    bool readFilter(EditLog::Filter &filter);
    void loadLists();
    void print();
    void showValues(int row);

    QStandardItemModel *m_model = nullptr;
    QVector<EditLog::Entry> m_entries;
    bool m_history = false; // the fields name one document, from its screen
    QString m_title; // the title of the document whose history is shown
};

class MdiHost;
// UTILITIES > EDIT LOG: opens the viewer on today's rows.
frmEditLog *openEditLog(MdiHost &host);
// Makes F8 on every screen open the edit log of its current document, for
// a user who may open the log.
void installEditLogHistoryKey();
