#pragma once

#include <QString>
#include <QUrl>

#include <boost/describe.hpp>

#include <optional>
#include <vector>

namespace velmo {

enum class MeetingProvider { googleMeet, zoom, teams, webex, facetime };
BOOST_DESCRIBE_ENUM(MeetingProvider, googleMeet, zoom, teams, webex, facetime)

/// Where a meeting is joined.
struct MeetingLink {
    MeetingProvider provider = MeetingProvider::googleMeet;
    QUrl url;

    bool operator==(const MeetingLink &) const = default;
};
BOOST_DESCRIBE_STRUCT(MeetingLink, (), (provider, url))

/// Finds links to meetings in what an event says. Takes time that grows with the texts alone.
namespace MeetingLinks {

/// The service's name for itself.
QString title(MeetingProvider provider);

/// The first link in the first text that has one; of several services in one text the first of
/// `MeetingProvider`. An address goes on to white space, "<", ">" or a double quote, without the
/// punctuation of a sentence at its end.
std::optional<MeetingLink> first(const std::vector<std::optional<QString>> &texts);

} // namespace MeetingLinks

} // namespace velmo
