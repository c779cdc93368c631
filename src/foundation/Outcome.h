#pragma once

#include <QString>

// What a rule answers a screen: success with the words to show
// (information), or a refusal with its words (critical) and the objectName
// of the field that gets the focus ("" leaves the focus where it is).
// Errors of the database itself are not outcomes: they come as DbError and
// the screen shows the database's words.
//
// A document save fills the figures below as well: the number the
// document stands under, the rows it wrote, and a notice to show besides
// the confirmation (a proposed number that had been taken meanwhile).
struct Outcome
{
    bool ok = true;
    QString message;
    QString field;
    QString notice;
    qint64 number = 0;
    int rowsWritten = 0;

    static Outcome success(const QString &message) { return {true, message, QString(), QString(), 0, 0}; }
    static Outcome refusal(const QString &message, const QString &field = QString())
    {
        return {false, message, field, QString(), 0, 0};
    }
    static Outcome passed() { return {}; }
    explicit operator bool() const { return ok; }
};
