#pragma once

#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoSystem/Ports/CaptureDevices.h"

#include <QThreadPool>

#include <memory>
#include <stop_token>

namespace velmo {

/// The microphone's users are those of the sound server, and the camera's the processes of this
/// user that have its device open. Both are looked for on threads of their own.
class LinuxCaptureDevices : public CaptureDevices {
    Q_OBJECT

public:
    /// The devices' paths are `cameras` and what comes behind it.
    explicit LinuxCaptureDevices(Scheduler &scheduler,
                                 const QString &cameras = QStringLiteral("/dev/video"));
    /// Waits for the threads a moment at most.
    ~LinuxCaptureDevices() override;

    void watchMicrophone(bool isWatched) override;
    QStringList microphoneUsers() const override { return m_users; }
    void isCameraInUse(std::function<void(bool)> answer) override;

private:
    void follow();
    /// The sound server has gone, or there was none.
    void lose(const QString &reason);
    void setUsers(const QStringList &users);

    Scheduler &m_scheduler;
    const QString m_cameras;
    bool m_isWatched = false;
    bool m_isLost = false; ///< and the user of the log knows it
    std::stop_source m_stop;
    QStringList m_users;
    ScheduledTask m_retry;
    std::unique_ptr<QThreadPool> m_listener;
    QThreadPool m_looker;
};

} // namespace velmo
