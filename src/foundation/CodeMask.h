#pragma once

#include <QString>

// Account and item codes are typed in the mask "__-__-___".
namespace CodeMask {
inline QString empty() { return QStringLiteral("__-__-___"); }
// True when every one of the nine places is typed.
inline bool isComplete(const QString &maskText)
{
    return maskText.size() == 9 && !maskText.contains(QLatin1Char('_')) && !maskText.contains(QLatin1Char(' '));
}
// The group heading a code belongs to: "17-10-004" -> "17-10-000".
inline QString headingOf(const QString &code) { return code.left(6) + QStringLiteral("000"); }
inline bool isHeading(const QString &code) { return code.endsWith(QLatin1String("-000")); }
} // namespace CodeMask
