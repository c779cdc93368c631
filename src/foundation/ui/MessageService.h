#pragma once

#include <QString>

class QWidget;

// Every message box of the program goes through here: a refusal with the
// critical icon, a success with the information icon, a question with
// Yes and No where No is the default. Tests install an interceptor that
// records the messages and answers the questions, so no box ever blocks a
// headless run.
class MessageService
{
public:
    enum class Kind { Critical, Information, Question, CriticalQuestion };

    class Interceptor
    {
    public:
        virtual ~Interceptor() = default;
        // Called instead of showing a box. The return value answers a
        // question (true = Yes) and is ignored for the other kinds.
        virtual bool intercept(Kind kind, const QString &text) = 0;
    };

    static void critical(QWidget *parent, const QString &text);
    static void information(QWidget *parent, const QString &text);
    // Yes/No with the question icon, No the default. True for Yes.
    static bool askYesNo(QWidget *parent, const QString &text);
    // Yes/No with the critical icon, No the default (the quit question).
    static bool askYesNoCritical(QWidget *parent, const QString &text);

    // The confirmation of a line added, changed or removed on an entry
    // screen: a box, or for a user who prefers it a note in the main
    // window's status bar. Refusals are always boxes.
    static void confirmLine(QWidget *parent, const QString &text);

    // The caption of every message box.
    static QString caption();
    static void setCaption(const QString &caption);

    // At most one interceptor at a time; pass nullptr to remove it.
    static void setInterceptor(Interceptor *interceptor);
    static Interceptor *interceptor();

private:
    static bool show(QWidget *parent, Kind kind, const QString &text);
};
