#pragma once

#include <QString>

// What a rule of the reference screens answers: success with the words to
// show (information), or a refusal with its words (critical) and the field
// that gets the focus. Errors of the database itself are not outcomes: they
// come as DbError and the screen shows the database's words.
struct Outcome
{
    enum class Field {
        None,
        Code,
        Name,
        Balance,
        Date,
        Designation,
        Title,
    };

    bool ok = true;
    QString message;
    Field field = Field::None;

    static Outcome success(const QString &message) { return {true, message, Field::None}; }
    static Outcome refusal(const QString &message, Field field) { return {false, message, field}; }
    static Outcome passed() { return {true, QString(), Field::None}; }
    explicit operator bool() const { return ok; }
};

// Account and item codes are typed in the mask "__-__-___".
namespace CodeMask {
inline QString empty() { return QStringLiteral("__-__-___"); }
// True when every one of the nine places is typed.
inline bool isComplete(const QString &maskText)
{
    return maskText.size() == 9 && !maskText.contains(QLatin1Char('_')) && !maskText.contains(QLatin1Char(' '));
}
} // namespace CodeMask
