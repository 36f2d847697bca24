#include "VelmoCore/Calendar/WebMeeting.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <initializer_list>

namespace velmo {

namespace {

bool isCall(QStringView lowerTitle)
{
    constexpr std::array<QStringView, 6> words{u"meeting", u"reunião", u"call",
                                               u"chamada", u"llamada", u"reunión"};
    return std::ranges::any_of(words, [&](QStringView word) { return lowerTitle.contains(word); });
}

/// A page that shows such a code needn't be a call: the title has to say so as well.
std::optional<QString> meetCode(const QString &lowerTitle)
{
    static const QRegularExpression code(QStringLiteral(R"(\b[a-z]{3}-[a-z]{4}-[a-z]{3}\b)"),
                                         QRegularExpression::UseUnicodePropertiesOption);
    if (!lowerTitle.startsWith(u"meet") && !lowerTitle.contains(u"google meet"))
        return std::nullopt;
    const auto match = code.match(lowerTitle);
    return match.hasMatch() ? std::optional(match.captured()) : std::nullopt;
}

/// Each suffix goes once, in this order.
QString withoutSuffixes(QStringView title, std::initializer_list<QStringView> suffixes)
{
    for (const QStringView suffix : suffixes) {
        if (title.endsWith(suffix))
            title = title.chopped(suffix.size()).trimmed();
    }
    return title.toString();
}

} // namespace

std::optional<WebMeeting> WebMeeting::fromTitle(const QString &title)
{
    const QString trimmed = title.trimmed();
    const QString lower = trimmed.toLower();
    if (const auto code = meetCode(lower))
        return WebMeeting{WebMeetingService::meet, *code};
    const bool isCallLike = isCall(lower);
    if (isCallLike && lower.contains(u"microsoft teams"))
        return WebMeeting{WebMeetingService::teams,
                          withoutSuffixes(trimmed, {u"| Microsoft Teams", u"- Microsoft Teams"})};
    if ((isCallLike && lower.contains(u"zoom")) || lower.contains(u"zoom.us/"))
        return WebMeeting{WebMeetingService::zoom,
                          withoutSuffixes(trimmed, {u"- Zoom", u"| Zoom"})};
    return std::nullopt;
}

} // namespace velmo
