#include "foundation/LineStaging.h"

QString lineStateWord(LineState state)
{
    switch (state) {
    case LineState::Insert: return QStringLiteral("INSERT");
    case LineState::Update: return QStringLiteral("UPDATE");
    case LineState::Delete: return QStringLiteral("DELETE");
    }
    return QString();
}

std::optional<LineState> lineStateFromWord(const QString &word)
{
    const QString w = word.trimmed().toUpper();
    if (w == QLatin1String("INSERT"))
        return LineState::Insert;
    if (w == QLatin1String("UPDATE"))
        return LineState::Update;
    if (w == QLatin1String("DELETE"))
        return LineState::Delete;
    return std::nullopt;
}
