#include "support/ui/MessageRecorder.h"

MessageRecorder::MessageRecorder()
    : m_previous(MessageService::interceptor())
{
    MessageService::setInterceptor(this);
}

MessageRecorder::~MessageRecorder()
{
    MessageService::setInterceptor(m_previous);
}

void MessageRecorder::answerNext(bool yes) { m_answers.enqueue(yes); }

QStringList MessageRecorder::texts() const
{
    QStringList out;
    for (const Message &m : m_messages)
        out << m.text;
    return out;
}

MessageRecorder::Message MessageRecorder::last() const
{
    if (m_messages.isEmpty())
        return {MessageService::Kind::Information, QString()};
    return m_messages.last();
}

bool MessageRecorder::intercept(MessageService::Kind kind, const QString &text)
{
    m_messages.append({kind, text});
    if (kind == MessageService::Kind::Question || kind == MessageService::Kind::CriticalQuestion)
        return m_answers.isEmpty() ? m_defaultAnswer : m_answers.dequeue();
    return false;
}
