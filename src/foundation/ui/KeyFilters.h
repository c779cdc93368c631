#pragma once

#include "foundation/KeyRules.h"

#include <QObject>
#include <QPointer>
#include <QValidator>

class QWidget;
class QLineEdit;

// The key filters of the entry fields. Each is attached in one line to a
// QLineEdit or an editable QComboBox and lives as long as the field:
//
//   SafeTextKey::attach(txtPartyName);
//   EnterToTab::attach(txtPartyName);
//
// The character filters work on the field's text, so a paste or a drop is
// filtered exactly like typing: what cannot be typed cannot be pasted.

// Enter (or the keypad's Enter) moves the focus to the next field, as Tab.
class EnterToTab : public QObject
{
    Q_OBJECT
public:
    static EnterToTab *attach(QWidget *field);
protected:
    explicit EnterToTab(QWidget *field);
    bool eventFilter(QObject *watched, QEvent *event) override;
};

// Filters each character through one of KeyRules.
class KeyRuleValidator : public QValidator
{
    Q_OBJECT
public:
    KeyRuleValidator(KeyRules::Kind kind, QObject *parent);
    State validate(QString &input, int &pos) const override;
    void fixup(QString &input) const override;
    KeyRules::Kind kind() const { return m_kind; }
private:
    KeyRules::Kind m_kind;
};

// Installs a KeyRuleValidator on the field (its line edit for a combo).
KeyRuleValidator *attachKeyRule(QWidget *field, KeyRules::Kind kind);

// Digits only.
struct DigitsOnly { static KeyRuleValidator *attach(QWidget *field) { return attachKeyRule(field, KeyRules::Kind::DigitsOnly); } };
// Digits and one decimal point; no sign.
struct DecimalOnly { static KeyRuleValidator *attach(QWidget *field) { return attachKeyRule(field, KeyRules::Kind::DecimalOnly); } };
// Letters (codes 65 to 122), raised to upper case.
struct LettersUpperObj { static KeyRuleValidator *attach(QWidget *field) { return attachKeyRule(field, KeyRules::Kind::LettersUpper); } };
// Free text: no ";" "," or "'", raised to upper case.
struct SafeTextKey { static KeyRuleValidator *attach(QWidget *field) { return attachKeyRule(field, KeyRules::Kind::SafeText); } };

// The fax field: digits, blank, comma and dash.
struct FaxFilter { static KeyRuleValidator *attach(QWidget *field) { return attachKeyRule(field, KeyRules::Kind::Fax); } };

// Shift pressed alone in `field` sends the focus to `next`: the jump from
// a combo to a fixed following field.
class FocusNextOnKey : public QObject
{
    Q_OBJECT
public:
    static FocusNextOnKey *attach(QWidget *field, QWidget *next);
protected:
    FocusNextOnKey(QWidget *field, QWidget *next);
    bool eventFilter(QObject *watched, QEvent *event) override;
private:
    QPointer<QWidget> m_next;
};
