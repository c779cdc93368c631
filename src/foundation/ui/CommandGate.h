#pragma once

#include <QObject>
#include <functional>

class QPushButton;

// The checks of a command run when its button takes the focus, so a user
// who tabs onto the button hears of a missing field at once and is sent
// back to it; a click then runs the command. A click whose own focus
// check failed does nothing more, and a click on a button that had the
// focus already runs the check first.
class CommandGate : public QObject
{
    Q_OBJECT
public:
    using Check = std::function<bool()>;
    using Work = std::function<void()>;
    CommandGate(QPushButton *button, Check check, Work work);

    // The check runs on entering the button only while `when` holds (a
    // line button passed over on the way elsewhere stays silent); a click
    // always checks.
    void checkOnFocusWhen(std::function<bool()> when) { m_focusWhen = std::move(when); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void clicked();

    QPushButton *m_button;
    Check m_check;
    Work m_work;
    bool m_checkedOnFocus = false;
    bool m_focusCheckPassed = false;
    bool m_checking = false;
    std::function<bool()> m_focusWhen;
};

