#pragma once

#include "VelmoCore/Calendar/WebMeetingTracker.h"
#include "VelmoCore/Foundation/Scheduler.h"

#include <QObject>

namespace velmo {

class ActivityCenter;
class BrowserWindows;
class CaptureDevices;

/// Calls held in a browser, as a live activity with a timer. Without a window that shows a call it
/// sleeps; with one it looks at microphone and camera. Main thread only.
class MeetingActions : public QObject {
    Q_OBJECT

public:
    static constexpr const char *activityID = "meeting.timer";
    /// Between two looks at the camera, which doesn't say when it changes.
    static constexpr Seconds cameraInterval = 5s;

    /// All of them outlive this object.
    MeetingActions(const BrowserWindows &windows, CaptureDevices &devices, ActivityCenter &activity,
                   Scheduler &scheduler);

    void start();
    /// Ends the activity, and shows no more of this call until another one has started.
    void dismiss();

private:
    struct Seen;

    void look();
    Seen windows() const;
    bool mayResume(const WebMeeting &meeting) const;
    /// Whether they are in use by the call.
    bool followDevices(const Seen &seen);
    void followCamera(bool isNeeded);
    void askCamera();
    void decide();
    void show();
    void end();
    void waitForGrace();

    const BrowserWindows &m_windows;
    CaptureDevices &m_devices;
    ActivityCenter &m_activity;
    Scheduler &m_scheduler;

    WebMeetingTracker::Signal m_signal; ///< when it was last looked at
    std::optional<WebMeetingTracker::Session> m_session;
    std::optional<WebMeeting> m_dismissed;

    bool m_isCameraNeeded = false;
    bool m_isCameraAsked = false;
    bool m_isCameraInUse = false;
    Seconds m_nextCameraLook{0}; ///< elapsed time
    ScheduledTask m_cameraTask;
    ScheduledTask m_graceTask;
};

} // namespace velmo
