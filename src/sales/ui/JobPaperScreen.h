#pragma once

#include "foundation/ui/BaseScreen.h"
#include "reports/ReportFrame.h"
#include "sales/JobPaper.h"

#include <QString>
#include <functional>

class AccountPick;
class MaskedLineEdit;
class QComboBox;
class QLineEdit;
class QPushButton;
class QTableView;

// What the order, job card and challan screens share: the mode the menu
// sets, the buttons each mode shows, the leaving of a field, the title
// list and the grid's picked record.
class JobPaperScreen : public BaseScreen
{
    Q_OBJECT
public:
    using Mode = JobPaper::Mode;
    explicit JobPaperScreen(QWidget *parent = nullptr);

    Mode mode() const { return m_mode; }

    QPushButton *cmdSave = nullptr;
    QPushButton *cmdModify = nullptr;
    QPushButton *cmdDelete = nullptr;
    QPushButton *cmdNew = nullptr;
    QPushButton *cmdPrint = nullptr;
    QPushButton *cmdAddParty = nullptr;

protected:
    // The six command buttons in the button frame, SAVE to ADD PARTY, and
    // the party pick over the name and code fields. ADD PARTY adds an
    // account and picks it when one was added.
    void addPaperCommands(QComboBox *partyName, MaskedLineEdit *partyCode);
    // The party list read again, the name shown kept; the screen stays
    // quiet meanwhile.
    void reloadParties();
    // The buttons of a mode on the job card and challan: NEW, PRINT and ADD
    // PARTY, and the mode's own command.
    void showModeCommands(Mode mode);
    // Runs `work` (queued) when `field` loses the focus to another field of
    // the screen; a message box or a popup taking it is no leaving.
    void onLeave(QWidget *field, std::function<void()> work);
    // The titles, with the working title shown when it is one of them.
    static void loadTitles(QComboBox *combo);
    // The number typed in a field; 0 for an empty one.
    static qint64 numberIn(const QLineEdit *field);
    // The value of the first column of the grid's row `row`, as a number.
    static qint64 recordAt(QTableView *grid, int row);
    // Shows rows in a grid made by ScreenBuild::grid, keeping its column
    // proportions.
    static void showRows(QTableView *grid, const QueryResult &rows, const QStringList &captions);
    // Opens the viewer on the request (messages on failure).
    void print(const Reports::ReportRequest &request);
    // Shows the outcome of a save: the notice, then the confirmation.
    void confirm(const Outcome &out);
    // Runs a write into `out`: a failure or a refusal is shown and gives
    // false.
    bool write(Outcome &out, const std::function<Outcome()> &work);

    bool eventFilter(QObject *watched, QEvent *event) override;

    Mode m_mode = Mode::Enter;
    bool m_quiet = false; // set while the screen fills its own fields
    AccountPick *m_pick = nullptr;

private:
    QHash<QObject *, std::function<void()>> m_leave;
    QComboBox *m_partyName = nullptr;
};
