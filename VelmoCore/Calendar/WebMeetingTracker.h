#pragma once

#include "VelmoCore/Calendar/WebMeeting.h"
#include "VelmoCore/Foundation/Date.h"

#include <variant>

/// Decides when a call in a browser starts, goes on and ends.
namespace velmo::WebMeetingTracker {

/// How long a call may be without camera and microphone before it is over.
constexpr Seconds grace = 20s;
/// A call that comes back sooner after its last activity is the same one.
constexpr Seconds resumption = 600s;

/// A call, as it was last seen. The caller keeps it from decision to decision.
struct Session {
    WebMeeting meeting;
    Date started;
    Date lastActive;
    bool ended = false;

    bool operator==(const Session &) const = default;
};
BOOST_DESCRIBE_STRUCT(Session, (), (meeting, started, lastActive, ended))

/// What is seen now.
struct Signal {
    std::optional<WebMeeting> visible;   ///< in the front window
    std::optional<WebMeeting> stillOpen; ///< in a browser's window behind
    bool capturing = false;              ///< the camera or the microphone is in use

    bool operator==(const Signal &) const = default;
};
BOOST_DESCRIBE_STRUCT(Signal, (), (visible, stillOpen, capturing))

struct Start {
    Session session;
    bool operator==(const Start &) const = default;
};
struct Keep {
    Session session;
    bool operator==(const Keep &) const = default;
};
struct Finish {
    Session session;
    bool operator==(const Finish &) const = default;
};
/// Nothing changes: a session that runs goes on.
struct None {
    bool operator==(const None &) const = default;
};
/// The session in it takes the place of the last one.
using Decision = std::variant<None, Start, Keep, Finish>;

/// `session` is that of the last decision that had one; `dismissed` is the call of which the user
/// doesn't want to see more.
Decision decide(const Signal &signal, const std::optional<Session> &session,
                const std::optional<WebMeeting> &dismissed, Date now);

} // namespace velmo::WebMeetingTracker
