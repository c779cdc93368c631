#include "foundation/ui/KeyFilters.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>

namespace {
QLineEdit *lineEditOf(QWidget *field)
{
    if (auto *e = qobject_cast<QLineEdit *>(field))
        return e;
    if (auto *c = qobject_cast<QComboBox *>(field))
        return c->lineEdit();
    return nullptr;
}
} // namespace

EnterToTab *EnterToTab::attach(QWidget *field)
{
    return field ? new EnterToTab(field) : nullptr;
}

EnterToTab::EnterToTab(QWidget *field)
    : QObject(field)
{
    field->installEventFilter(this);
}

bool EnterToTab::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    auto *key = static_cast<QKeyEvent *>(event);
    if (key->key() != Qt::Key_Return && key->key() != Qt::Key_Enter)
        return false;
    if (key->modifiers() & ~(Qt::KeypadModifier))
        return false;
    auto *field = qobject_cast<QWidget *>(watched);
    if (auto *combo = qobject_cast<QComboBox *>(field); combo && combo->view() && combo->view()->isVisible())
        return false; // Enter picks from the open list
    QKeyEvent tab(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
    QCoreApplication::sendEvent(field, &tab);
    return true;
}

KeyRuleValidator::KeyRuleValidator(KeyRules::Kind kind, QObject *parent)
    : QValidator(parent), m_kind(kind)
{
}

QValidator::State KeyRuleValidator::validate(QString &input, int &pos) const
{
    if (m_kind == KeyRules::Kind::DecimalOnly) {
        // A second point is refused as a key would be: the edit does not
        // happen at all (rather than a point elsewhere being dropped).
        if (input.count(QLatin1Char('.')) > 1)
            return Invalid;
    }
    const QString filtered = KeyRules::filterText(m_kind, input);
    if (filtered != input) {
        pos = KeyRules::filterText(m_kind, input.left(pos)).size();
        input = filtered;
    }
    return Acceptable;
}

void KeyRuleValidator::fixup(QString &input) const
{
    input = KeyRules::filterText(m_kind, input);
}

KeyRuleValidator *attachKeyRule(QWidget *field, KeyRules::Kind kind)
{
    QLineEdit *edit = lineEditOf(field);
    if (!edit)
        return nullptr;
    auto *v = new KeyRuleValidator(kind, field);
    if (auto *combo = qobject_cast<QComboBox *>(field))
        combo->setValidator(v);
    else
        edit->setValidator(v);
    return v;
}

FocusNextOnKey *FocusNextOnKey::attach(QWidget *field, QWidget *next)
{
    return field ? new FocusNextOnKey(field, next) : nullptr;
}

FocusNextOnKey::FocusNextOnKey(QWidget *field, QWidget *next)
    : QObject(field), m_next(next)
{
    field->installEventFilter(this);
}

bool FocusNextOnKey::eventFilter(QObject *, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    auto *key = static_cast<QKeyEvent *>(event);
    if (key->key() == Qt::Key_Shift && key->modifiers() == Qt::ShiftModifier && m_next) {
        m_next->setFocus(Qt::TabFocusReason);
        return true;
    }
    return false;
}
