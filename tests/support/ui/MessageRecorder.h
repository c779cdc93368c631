#pragma once

#include "foundation/ui/MessageService.h"

#include <QList>
#include <QQueue>
#include <QString>
#include <QStringList>

// Records every message a screen shows while it lives, and answers its
// questions: with the answers queued by answerNext(), then with No (the
// default button of every question).
//
//   MessageRecorder rec;
//   rec.answerNext(true);
//   QTest::mouseClick(screen->findChild<QPushButton *>("cmdDelete"), Qt::LeftButton);
//   QCOMPARE(rec.last().text, QString("..."));
class MessageRecorder : public MessageService::Interceptor
{
public:
    struct Message
    {
        MessageService::Kind kind;
        QString text;
        bool isCritical() const { return kind == MessageService::Kind::Critical; }
        bool isInformation() const { return kind == MessageService::Kind::Information; }
        bool isQuestion() const
        {
            return kind == MessageService::Kind::Question || kind == MessageService::Kind::CriticalQuestion;
        }
    };

    MessageRecorder();
    ~MessageRecorder() override;

    void answerNext(bool yes);
    void setDefaultAnswer(bool yes) { m_defaultAnswer = yes; }

    const QList<Message> &messages() const { return m_messages; }
    QStringList texts() const;
    int count() const { return m_messages.size(); }
    bool isEmpty() const { return m_messages.isEmpty(); }
    // The last message; an empty one (kind Information, no text) when none.
    Message last() const;
    void clear() { m_messages.clear(); }

    bool intercept(MessageService::Kind kind, const QString &text) override;

private:
    QList<Message> m_messages;
    QQueue<bool> m_answers;
    bool m_defaultAnswer = false;
    MessageService::Interceptor *m_previous = nullptr;
};
