#pragma once

#include "foundation/KeyRules.h"

#include <QString>
#include <QVector>
#include <initializer_list>

class MaskedLineEdit;
class QCheckBox;
class QComboBox;
class QFrame;
class QGridLayout;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QStyledItemDelegate;
class QTableView;
class QWidget;

// The widgets of a screen, made the same way on every screen: each named
// (its objectName is its name in the code), each with the behaviour its
// kind always has. BaseScreen places them for a plain form; a screen with
// panels of its own places them with a FieldGrid.
namespace ScreenBuild {

// Each takes the key filter of its field (see KeyFilters.h).
QLineEdit *lineEdit(QWidget *parent, const QString &name, KeyRules::Kind filter = KeyRules::Kind::None);
// A figure the user reads but never types: read-only, coloured when
// clicked, never in the Enter chain, right-aligned when `amount`.
QLineEdit *display(QWidget *parent, const QString &name, bool amount = false);
// An amount typed by the user: right-aligned, digits and one point.
QLineEdit *amountEdit(QWidget *parent, const QString &name);
MaskedLineEdit *masked(QWidget *parent, const QString &name, const QString &mask);
// Editable combos take no new items from typing.
QComboBox *combo(QWidget *parent, const QString &name, KeyRules::Kind filter = KeyRules::Kind::None,
                 bool editable = true);
// Buttons answer Enter when they have the focus.
QPushButton *button(QWidget *parent, const QString &name, const QString &caption);
QCheckBox *check(QWidget *parent, const QString &name, const QString &caption);
QRadioButton *option(QWidget *parent, const QString &name, const QString &caption);
// A panel of fields (a QGroupBox-like frame when `boxed`).
QFrame *frame(QWidget *parent, const QString &name, bool boxed = false);
// A list of rows: whole rows selected, read-only, Tab leaves it.
QTableView *grid(QWidget *parent, const QString &name);
QLabel *caption(const QString &text, QWidget *buddy);
// Shows amount columns with thousands separators, two decimals, right-aligned.
void amountColumns(QTableView *grid, std::initializer_list<int> columns);
// Keeps the columns at these widths (in twips, 0 hides a column) scaled
// to fill the grid's width, whenever the grid is resized or refilled.
void proportionalColumns(QTableView *grid, const QVector<int> &twips);
// A row of buttons in a frame of its own (boxed or not), centred.
QFrame *buttonBar(QWidget *parent, const QString &name, std::initializer_list<QPushButton *> buttons, bool boxed = false);
// The order a clerk types in: Tab and Enter follow `chain`; Enter moves on
// from every field before `enterUntil` (the buttons take their own Enter).
// Fields that attach their own Enter (an AccountPick's) are listed in `own`.
void typingOrder(const QList<QWidget *> &chain, QWidget *enterUntil, const QList<QWidget *> &own = {});
// The caption of a list, with a hint at its right.
QHBoxLayout *gridHeading(QWidget *parent, const QString &caption, const QString &hint);

} // namespace ScreenBuild

// Places label and field pairs on a grid layout, in column pairs: column 0
// is the label and field at grid columns 0 and 1, column 1 at 2 and 3, ...
//
//   FieldGrid g(new QGridLayout(frOuterVoucher));
//   g.put(0, 0, "DATE", mskDate);
//   g.put(1, 0, "PARTY NAME", cmbPartyName, 2);   // spans two column pairs
//   g.buttons(5, 0, {cmdOkay, cmdCancel}, 2);
class FieldGrid
{
public:
    explicit FieldGrid(QGridLayout *layout);
    QGridLayout *layout() const { return m_grid; }
    // `label` "" places the field alone. The field keeps its own width
    // (or `width` pixels when given) unless `stretch`.
    void put(int row, int column, const QString &label, QWidget *field, int span = 1, bool stretch = false,
             int width = 0);
    // A field of a fixed width.
    void putFixed(int row, int column, const QString &label, QWidget *field, int width)
    {
        put(row, column, label, field, 1, false, width);
    }
    // A row of buttons, centred under the fields.
    QHBoxLayout *buttons(int row, int column, std::initializer_list<QPushButton *> buttons, int span = 1);

private:
    QGridLayout *m_grid;
};
