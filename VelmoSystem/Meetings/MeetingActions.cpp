#include "VelmoSystem/Meetings/MeetingActions.h"

#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoCore/Foundation/Overloaded.h"
#include "VelmoCore/Timers/TimerCenter.h"
#include "VelmoSystem/Ports/BrowserWindows.h"
#include "VelmoSystem/Ports/CaptureDevices.h"

#include <QPointer>

#include <algorithm>

namespace velmo {

namespace {

/// A call ends only when its grace is over.
constexpr Seconds beyondGrace = 1s;

QString symbol()
{
    return QStringLiteral("video.fill");
}

QString source()
{
    return QStringLiteral("meeting");
}

QString title(WebMeetingService service)
{
    switch (service) {
    case WebMeetingService::meet:
        return QStringLiteral("Google Meet");
    case WebMeetingService::teams:
        return QStringLiteral("Microsoft Teams");
    case WebMeetingService::zoom:
        return QStringLiteral("Zoom");
    }
    Q_UNREACHABLE();
}

} // namespace

/// The calls in the windows, and whose window the one that counts is in.
struct MeetingActions::Seen {
    std::optional<WebMeeting> visible;
    std::optional<WebMeeting> stillOpen;
    QString browser; ///< empty without a call, and for a dismissed one
};

MeetingActions::MeetingActions(const BrowserWindows &windows, CaptureDevices &devices,
                               ActivityCenter &activity, Scheduler &scheduler)
    : m_windows(windows), m_devices(devices), m_activity(activity), m_scheduler(scheduler)
{
}

void MeetingActions::start()
{
    connect(&m_windows, &BrowserWindows::changed, this, &MeetingActions::look);
    connect(&m_devices, &CaptureDevices::microphoneUsersChanged, this, &MeetingActions::look);
    look();
}

void MeetingActions::dismiss()
{
    if (!m_session || m_session->ended)
        return;
    m_dismissed = m_session->meeting;
    m_session.reset();
    m_activity.finish(activityID);
    look();
}

void MeetingActions::look()
{
    decide(); // up to now all was as it was seen last: the grace begins only here
    const Seen seen = windows();
    m_signal = {seen.visible, seen.stillOpen, followDevices(seen)};
    decide();
    waitForGrace();
}

MeetingActions::Seen MeetingActions::windows() const
{
    Seen seen;
    QString frontBrowser;
    QString openBrowser;
    for (const BrowserWindows::Window &window : m_windows.windows()) {
        const auto meeting = WebMeeting::fromTitle(window.title);
        if (!meeting)
            continue;
        if (window.isFront) {
            seen.visible = meeting;
            frontBrowser = window.browser;
        } else if (mayResume(*meeting)) {
            seen.stillOpen = meeting;
            openBrowser = window.browser;
        }
    }
    const auto &candidate = seen.visible ? seen.visible : seen.stillOpen;
    if (candidate && candidate != m_dismissed)
        seen.browser = seen.visible ? frontBrowser : openBrowser;
    return seen;
}

bool MeetingActions::mayResume(const WebMeeting &meeting) const
{
    return m_session && m_session->meeting == meeting &&
           (!m_session->ended ||
            m_scheduler.now() - m_session->lastActive < WebMeetingTracker::resumption);
}

bool MeetingActions::followDevices(const Seen &seen)
{
    const bool isCall = !seen.browser.isEmpty();
    m_devices.watchMicrophone(isCall);
    const bool isListening = isCall && m_devices.microphoneUsers().contains(seen.browser);
    followCamera(isCall && !isListening);
    return isListening || m_isCameraInUse;
}

void MeetingActions::followCamera(bool isNeeded)
{
    m_isCameraNeeded = isNeeded;
    if (!isNeeded) {
        m_isCameraInUse = false;
        m_cameraTask.cancel();
        return;
    }
    if (m_isCameraAsked || m_cameraTask.isPending())
        return;
    const Seconds wait = m_nextCameraLook - m_scheduler.elapsed();
    if (wait > 0s)
        m_cameraTask = m_scheduler.after(wait, [this] { askCamera(); });
    else
        askCamera();
}

void MeetingActions::askCamera()
{
    m_isCameraAsked = true;
    m_devices.isCameraInUse([self = QPointer(this)](bool isInUse) {
        if (!self)
            return;
        self->m_isCameraAsked = false;
        self->m_isCameraInUse = isInUse && self->m_isCameraNeeded;
        self->m_nextCameraLook = self->m_scheduler.elapsed() + cameraInterval;
        self->look();
    });
}

void MeetingActions::decide()
{
    const Date now = m_scheduler.now();
    if (m_session) // where the clock was set back
        m_session->lastActive = std::min(m_session->lastActive, now);
    const auto keep = [this](const WebMeetingTracker::Session &session) {
        m_session = session;
        show();
    };
    std::visit(overloaded{[](const WebMeetingTracker::None &) {},
                          [&](const WebMeetingTracker::Start &started) {
                              m_dismissed.reset();
                              keep(started.session);
                          },
                          [&](const WebMeetingTracker::Keep &kept) { keep(kept.session); },
                          [&](const WebMeetingTracker::Finish &finished) {
                              m_session = finished.session;
                              end();
                          }},
               WebMeetingTracker::decide(m_signal, m_session, m_dismissed, now));
}

void MeetingActions::show()
{
    const WebMeeting &meeting = m_session->meeting;
    m_activity.upsert(
        {.id = activityID,
         .source = source(),
         .symbol = symbol(),
         .title = QStringLiteral("Em reunião"),
         .detail = QStringLiteral("%1 · %2").arg(title(meeting.service), meeting.name),
         .progress = {},
         .countdown = {},
         .startedAt = m_session->started,
         .priority = 8,
         .isCancellable = true},
        [this] { dismiss(); });
}

void MeetingActions::end()
{
    const Date now = m_scheduler.now();
    const QString duration = TimerCenter::format(std::max(now - m_session->started, Seconds(0s)));
    m_activity.finish(activityID,
                      ActivityEvent::make(now, symbol(), QStringLiteral("Reunião: ") + duration,
                                          FeedbackStyle::info, source()));
}

void MeetingActions::waitForGrace()
{
    using WebMeetingTracker::grace;
    if (!m_session || m_session->ended || m_signal.capturing) {
        m_graceTask.cancel();
        return;
    }
    const Seconds left = m_session->lastActive + grace - m_scheduler.now();
    m_graceTask = m_scheduler.after(std::max(left, Seconds(0s)) + beyondGrace, [this] { look(); });
}

} // namespace velmo
