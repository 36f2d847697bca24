#include "VelmoCore/Calendar/MeetingLinks.h"

#include <QRegularExpression>

#include <array>
#include <utility>

namespace velmo {

namespace {

using Pattern = std::pair<MeetingProvider, QRegularExpression>;

/// REST stands for all up to the end of the address.
Pattern pattern(MeetingProvider provider, const char *address)
{
    auto expression = QStringLiteral("https://") + QLatin1String(address);
    return {provider, QRegularExpression(expression.replace(QStringLiteral("REST"),
                                                            QStringLiteral(R"([^\s<>"]*)")),
                                         QRegularExpression::CaseInsensitiveOption |
                                             QRegularExpression::UseUnicodePropertiesOption)};
}

/// In the order of `MeetingProvider`.
const std::array<Pattern, 5> &patterns()
{
    using enum MeetingProvider;
    static const std::array<Pattern, 5> patterns{
        pattern(googleMeet, R"(meet\.google\.com/[a-z]{3}-[a-z]{4}-[a-z]{3}REST)"),
        pattern(zoom, R"((?:[\w-]++\.)?zoom\.us/(?:j|my|w)/REST)"),
        pattern(teams, R"(teams\.(?:microsoft|live)\.com/(?:l/meetup-join|meet)REST)"),
        // What follows this host may be the end of the sentence, but not of another host's name.
        pattern(webex, R"([\w-]++\.webex\.com(?:[/?#]REST|(?=[.,;:!')\]]*+(?:[\s<>"]|$))))"),
        pattern(facetime, R"(facetime\.apple\.com/joinREST)"),
    };
    return patterns;
}

QStringView withoutPunctuation(QStringView address)
{
    const auto isOuter = [](QChar c) { return QStringView(u".,;)>").contains(c); };
    while (!address.isEmpty() && isOuter(address.back()))
        address.chop(1);
    return address; // which begins with its scheme
}

std::optional<MeetingLink> firstIn(const QString &text)
{
    for (const auto &[provider, expression] : patterns()) {
        const auto match = expression.match(text);
        if (!match.hasMatch())
            continue;
        const QUrl url(withoutPunctuation(match.capturedView()).toString());
        if (url.isValid() && !url.host().isEmpty())
            return MeetingLink{provider, url};
    }
    return std::nullopt;
}

} // namespace

QString MeetingLinks::title(MeetingProvider provider)
{
    switch (provider) {
    case MeetingProvider::googleMeet:
        return QStringLiteral("Google Meet");
    case MeetingProvider::zoom:
        return QStringLiteral("Zoom");
    case MeetingProvider::teams:
        return QStringLiteral("Microsoft Teams");
    case MeetingProvider::webex:
        return QStringLiteral("Webex");
    case MeetingProvider::facetime:
        return QStringLiteral("FaceTime");
    }
    return {};
}

std::optional<MeetingLink> MeetingLinks::first(const std::vector<std::optional<QString>> &texts)
{
    for (const auto &text : texts) {
        if (!text || text->isEmpty())
            continue;
        if (auto link = firstIn(*text))
            return link;
    }
    return std::nullopt;
}

} // namespace velmo
