#include "VelmoCore/Calendar/WebMeetingTracker.h"

namespace velmo::WebMeetingTracker {

namespace {

/// What is in front counts alone: behind a dismissed call no other is looked for.
const WebMeeting *candidate(const Signal &signal, const std::optional<WebMeeting> &dismissed)
{
    const auto &seen = signal.visible ? signal.visible : signal.stillOpen;
    return signal.capturing && seen && seen != dismissed ? &*seen : nullptr;
}

} // namespace

Decision decide(const Signal &signal, const std::optional<Session> &session,
                const std::optional<WebMeeting> &dismissed, Date now)
{
    const WebMeeting *meeting = candidate(signal, dismissed);
    if (meeting) {
        const bool goesOn = session && session->meeting == *meeting &&
                            (!session->ended || now - session->lastActive < resumption);
        const Date started = goesOn ? session->started : now;
        const Session current{*meeting, started, now, false};
        return goesOn ? Decision(Keep{current}) : Decision(Start{current});
    }
    if (session && !session->ended && now - session->lastActive > grace) {
        Session over = *session;
        over.ended = true;
        return Finish{over};
    }
    return None{};
}

} // namespace velmo::WebMeetingTracker
