#pragma once

#include "foundation/Outcome.h"
#include "foundation/SessionConnection.h"

#include <QFrame>
#include <QStringList>
#include <QWidget>
#include <functional>
#include <optional>

class QComboBox;
class QGridLayout;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QTableView;
class QToolButton;
class QVBoxLayout;
class MaskedLineEdit;

// A document a screen shows, as the edit log names it: its type ("CP",
// "INVOICE"), its number and the title it stands under ("" for none).
struct ScreenDocument
{
    QString type;
    std::optional<qint64> number;
    QString title;
};

// The base of every screen: the title strip (lblTitle, with imgMinimize and
// imgCancel at its right), the detail frame with the fields, and the
// button row frButton. A screen adds its fields and buttons with the
// helpers below and connects its handlers; the geometry follows from the
// layouts. Every text field, combo and masked field in the screen is
// highlighted on entry without the screen asking for it.
//
//   frmCareOf::frmCareOf(QWidget *parent) : BaseScreen(parent)
//   {
//       setTitle("CARE OF");
//       txtName = addLineEdit("txtName", "NAME");
//       SafeTextKey::attach(txtName);
//       cmdSave = addButton("cmdSave", "&SAVE");
//       connect(cmdSave, &QPushButton::clicked, this, &frmCareOf::save);
//   }
class BaseScreen : public QWidget
{
    Q_OBJECT
public:
    explicit BaseScreen(QWidget *parent = nullptr);

    QString title() const;
    void setTitle(const QString &title);

    // Fields in the detail frame: a label and its field on the next free
    // row of a column pair (0 = left, 1 = right, ...).
    QLineEdit *addLineEdit(const QString &objectName, const QString &label, int column = 0);
    MaskedLineEdit *addMaskedEdit(const QString &objectName, const QString &label, const QString &mask,
                                  int column = 0);
    QComboBox *addComboBox(const QString &objectName, const QString &label, int column = 0);
    QLabel *addLabel(const QString &objectName, const QString &text, int column = 0);
    // Any widget with its label ("" for none); returns the widget.
    QWidget *addRow(const QString &label, QWidget *field, int column = 0);
    // A progress bar from 0 to 100, at 0, with its label.
    QProgressBar *addProgressBar(const QString &objectName, const QString &label, int column = 0);
    // A button on the row of `field`, just right of it (BROWSE... beside
    // a file name).
    QPushButton *addButtonBeside(QWidget *field, const QString &objectName, const QString &caption);
    // A grid over the full width below the fields.
    QTableView *addGrid(const QString &objectName);
    // A button in frButton; the caption may carry "&" for Alt.
    QPushButton *addButton(const QString &objectName, const QString &caption);

    // Shows the named buttons of frButton and hides all the others.
    void showOnlyButtons(const QStringList &objectNames);

    // Fills a grid from rows under the given captions (one per column).
    static void fillGrid(QTableView *grid, const QueryResult &rows, const QStringList &captions);

    QLabel *titleLabel() const { return lblTitle; }
    QFrame *buttonFrame() const { return frButton; }
    QFrame *detailFrame() const { return frDetail; }
    QGridLayout *detailLayout() const { return m_detail; }
    // For a form without a grid: keeps the fields at the top left, their
    // labels next to them, and gives the space left over to an empty last
    // column and row. Call once all fields are added.
    void packFields();

    // Called every time the main window opens this screen from the menu,
    // the first time and when it brings an open one forward, after the
    // menu has set the session's mode variables.
    virtual void onOpened() {}

    // The document the screen shows now, for its history in the edit log;
    // nothing when it shows none (a new document not saved yet).
    virtual std::optional<ScreenDocument> currentDocument() const { return std::nullopt; }
    // F8 on any screen: the edit log of the screen's current document. The
    // log's viewer sets what opens it once, when its menu is registered.
    using HistoryOpener = std::function<void(BaseScreen *screen, const ScreenDocument &document)>;
    static void setHistoryOpener(HistoryOpener opener);
    // Opens the current document's history; false when the screen shows
    // no document or nothing opens histories.
    bool openHistory();

    // Closes the screen (and its window in the main window). Escape that
    // no field takes, and Ctrl+F4, do the same.
    void closeScreen();

    // Shows a rule's refusal (critical; no box when it has no words) and
    // puts the focus on the field it names. Returns false, for checks.
    bool refuse(const Outcome &outcome);
    // The child widget of that objectName, or nullptr.
    QWidget *field(const QString &objectName) const;

protected:
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

    QLabel *lblTitle = nullptr;
    QToolButton *imgMinimize = nullptr;
    QToolButton *imgCancel = nullptr;
    QFrame *frButton = nullptr;
    QFrame *frDetail = nullptr;

private:
    int nextRow(int column);
    void highlightAllFields();

    QVBoxLayout *m_outer = nullptr;
    QGridLayout *m_detail = nullptr;
    QHBoxLayout *m_buttons = nullptr;
    QVector<int> m_rows;
};

// Sizes a screen's window to the main window's client area, at its origin.
void LayoutFormToClient(QWidget *screen);
