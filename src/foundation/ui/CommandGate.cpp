#include "foundation/ui/CommandGate.h"

#include <QEvent>
#include <QFocusEvent>
#include <QPushButton>

CommandGate::CommandGate(QPushButton *button, Check check, Work work)
    : QObject(button), m_button(button), m_check(std::move(check)), m_work(std::move(work))
{
    button->installEventFilter(this);
    connect(button, &QPushButton::clicked, this, &CommandGate::clicked);
}

bool CommandGate::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_button && event->type() == QEvent::FocusIn && !m_checking) {
        // Only the user's own move onto the button counts: the focus coming
        // back when a message box closes must not check (and refuse) again.
        const Qt::FocusReason reason = static_cast<QFocusEvent *>(event)->reason();
        if (reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason)
            return QObject::eventFilter(watched, event);
        if (m_focusWhen && !m_focusWhen())
            return QObject::eventFilter(watched, event);
        m_checking = true;
        m_checkedOnFocus = true;
        m_focusCheckPassed = !m_check || m_check();
        m_checking = false;
    }
    return QObject::eventFilter(watched, event);
}

void CommandGate::clicked()
{
    if (m_checkedOnFocus) {
        m_checkedOnFocus = false;
        if (!m_focusCheckPassed)
            return;
    } else if (m_check && !m_check()) {
        return;
    }
    if (m_work)
        m_work();
}
