#include "foundation/KeyRules.h"

namespace KeyRules {

namespace {
constexpr int kBackspace = 8;

bool isDigit(int key) { return key >= '0' && key <= '9'; }
} // namespace

int digitsOnly(int key)
{
    return (key == kBackspace || isDigit(key)) ? key : 0;
}

int decimalOnly(int key, bool textHasPoint)
{
    if (key == kBackspace || isDigit(key))
        return key;
    if (key == '.' && !textHasPoint)
        return key;
    return 0;
}

int lettersUpper(int key)
{
    if (key == kBackspace)
        return key;
    if (key < 65 || key > 122)
        return 0;
    return key >= 97 ? key - 32 : key;
}

int safeText(int key)
{
    if (key == ';' || key == ',' || key == '\'')
        return 0;
    if (key >= 97 && key <= 122)
        return key - 32;
    return key;
}

int fax(int key)
{
    return (key == kBackspace || isDigit(key) || key == ' ' || key == ',' || key == '-') ? key : 0;
}

int apply(Kind kind, int key, bool textHasPoint)
{
    switch (kind) {
    case Kind::None: return key;
    case Kind::DigitsOnly: return digitsOnly(key);
    case Kind::DecimalOnly: return decimalOnly(key, textHasPoint);
    case Kind::LettersUpper: return lettersUpper(key);
    case Kind::SafeText: return safeText(key);
    case Kind::Fax: return fax(key);
    }
    return key;
}

QString filterText(Kind kind, const QString &text)
{
    QString out;
    out.reserve(text.size());
    bool hasPoint = false;
    for (const QChar ch : text) {
        const int code = ch.unicode();
        if (code < 32 || code == 127)
            continue; // no control character reaches a field, backspace included
        const int mapped = apply(kind, code, hasPoint);
        if (mapped == 0)
            continue;
        if (mapped == '.')
            hasPoint = true;
        out.append(QChar(mapped));
    }
    return out;
}

} // namespace KeyRules
