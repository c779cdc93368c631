#pragma once

#include <QString>

// What the field filters let through. Each rule takes one character code
// (as a key press delivers it) and gives the code to use instead, or 0 to
// swallow the key. Backspace (8) always passes where the rule lets it.
// The same rules filter pasted or dropped text, character by character.
namespace KeyRules {

enum class Kind {
    None,
    DigitsOnly,    // 0-9
    DecimalOnly,   // 0-9 and one "." at most; no sign
    LettersUpper,  // codes 65 to 122, lowered ones raised to upper case
    SafeText,      // no ";" "," "'"; a-z raised to upper case
    Fax,           // 0-9, blank, "," and "-"
};

int digitsOnly(int key);
// `textHasPoint`: the field's text already holds a ".".
int decimalOnly(int key, bool textHasPoint);
int lettersUpper(int key);
int safeText(int key);
int fax(int key);

int apply(Kind kind, int key, bool textHasPoint = false);

// Filters a whole text (a paste, a drop, or the field's text after an
// edit) through the rule. Characters the rule swallows are dropped, and
// control characters never pass. For DecimalOnly a second point is
// dropped like a typed one would be.
QString filterText(Kind kind, const QString &text);

} // namespace KeyRules
