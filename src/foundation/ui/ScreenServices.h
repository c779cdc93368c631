#pragma once

#include "foundation/LineStaging.h"

#include <QDate>
#include <QString>
#include <functional>

class QComboBox;
class QLineEdit;
class QTableView;
class QWidget;
class MaskedLineEdit;
class QueryTableModel;

// The shared routines of the entry screens over their fields. Each reports
// a refusal with a critical message, puts the focus on the field at fault
// and leaves its result flag in session() false; the caller tests the flag
// (or the return value) and stops without a message of its own.
//
// A "name field" may be a QLineEdit or a (editable) QComboBox.

// Runs `work`; when the database refuses a statement, shows its reason as
// a critical message and returns false. The screen stays as it was.
bool runSafely(QWidget *parent, const std::function<void()> &work);

// Whether a document screen may close: with lines typed it asks `question`
// first (No keeps the screen and its lines). Closing empties this
// workstation's staging of the lines.
bool askCloseQuestion(QWidget *screen, bool linesTyped, const QString &question);
template <typename Line>
bool mayCloseDocument(QWidget *screen, SessionConnection &db, StagedLines<Line> &lines, const QString &question)
{
    if (!askCloseQuestion(screen, !lines.all().isEmpty(), question))
        return false;
    runSafely(screen, [&] { lines.clear(db); });
    return true;
}

// Text of a line edit or combo, and writing it.
QString fieldText(const QWidget *field);
void setFieldText(QWidget *field, const QString &text);

// Dates.
void DateToMaskText(const QDate &date, MaskedLineEdit *field);
bool ValidateDate(MaskedLineEdit *field);    // sets session().dateValid
bool ValidateYear(MaskedLineEdit *field);    // sets session().dateValid
bool CheckClosingDate(MaskedLineEdit *field); // sets session().closingDateOk

// Look-ups.
void CodeFromName(QWidget *nameField, MaskedLineEdit *codeField, QWidget *otherField = nullptr);
void NameFromCode(MaskedLineEdit *codeField, QWidget *nameField);
bool PartyNameExists(QWidget *nameField);    // sets session().partyFound
// Proposes Max+1 of the voucher type in `numberField`; the date field's
// date becomes session().workDate.
void NextVoucherNo(MaskedLineEdit *dateField, QWidget *numberField, const QString &voucherType);

// Lists. The combos become editable with a completer that matches any part
// of a name. The party list keeps the codes as item data.
void LoadPartyList(QComboBox *combo);   // text left empty
void LoadCareOfList(QComboBox *combo);  // text: the first name
void LoadTitleList(QComboBox *combo);   // text: the first title
// Fills a combo from rows (first column the text, second the item data).
void fillCombo(QComboBox *combo, const QStringList &texts, const QStringList &data = {});
// Editable, with a completer matching any part of an item, case-insensitive.
void makeSearchable(QComboBox *combo);

// The word search: the accounts whose names hold every word of the field's
// text, in the grid "A/C CODE", "A/C NAME", which is shown and focused.
void SearchPartyByWords(QWidget *textField, QTableView *grid);
// The grid's current row into the name and code fields; hides the grid.
void PickGridRowToCode(QWidget *nameField, MaskedLineEdit *codeField, QTableView *grid);
void PickGridRowToText(QWidget *nameField, QWidget *codeField, QTableView *grid);

// The letterhead of the combo's title into the session. False when the
// title has no letterhead (the session keeps what it had).
bool ApplyLetterhead(QComboBox *titleCombo);
