#include "VelmoCore/Foundation/DurationText.h"

#include <QRegularExpression>

namespace velmo {

std::optional<Seconds> durationFromText(QStringView text)
{
    static const QRegularExpression byColons(
        QStringLiteral(R"(^(?:(\d{1,2}):)?(\d{1,4}):(\d{2})$)"));
    static const QRegularExpression byUnits(
        QStringLiteral(R"(^(?:(\d{1,4})\s*h(?:oras?)?)?\s*)"
                       R"((?:(\d{1,4})(?!\d)\s*(?:m(?:in(?:utos?)?)?)?)?\s*)"
                       R"((?:(\d{1,4})\s*s(?:eg(?:undos?)?)?)?$)"),
        QRegularExpression::CaseInsensitiveOption);
    const QString trimmed = text.trimmed().toString();
    QRegularExpressionMatch match = byColons.match(trimmed);
    if (match.hasMatch() ? match.capturedView(3).toInt() > 59 : trimmed.contains(QLatin1Char(':')))
        return std::nullopt;
    if (!match.hasMatch())
        match = byUnits.match(trimmed);
    const Seconds duration = std::chrono::hours(match.capturedView(1).toInt()) +
                             std::chrono::minutes(match.capturedView(2).toInt()) +
                             std::chrono::seconds(match.capturedView(3).toInt());
    return duration > Seconds(0) && duration <= 99h ? std::optional(duration) : std::nullopt;
}

} // namespace velmo
