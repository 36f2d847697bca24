#pragma once

#include <QString>

#include <boost/describe.hpp>

#include <optional>

namespace velmo {

enum class WebMeetingService { meet, teams, zoom };
BOOST_DESCRIBE_ENUM(WebMeetingService, meet, teams, zoom)

/// A call held in a browser.
struct WebMeeting {
    WebMeetingService service = WebMeetingService::meet;
    QString name; ///< Meet's code of three groups of letters, else the page's title

    bool operator==(const WebMeeting &) const = default;

    /// The call that a window with this title shows, if it does.
    static std::optional<WebMeeting> fromTitle(const QString &title);
};
BOOST_DESCRIBE_STRUCT(WebMeeting, (), (service, name))

} // namespace velmo
