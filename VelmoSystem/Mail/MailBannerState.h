#pragma once

#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoCore/Mail/MailMessage.h"

#include <QObject>

#include <optional>
#include <vector>

namespace velmo {

/// The new message that the collapsed panels show for a while. Main thread only.
class MailBannerState : public QObject {
    Q_OBJECT

public:
    static constexpr Seconds duration = 8s;
    /// For a code that is still to be typed somewhere.
    static constexpr Seconds signInDuration = 20s;

    explicit MailBannerState(Scheduler &scheduler) : m_scheduler(scheduler) {}

    /// The newest sign-in of several messages, else the newest.
    static const MailMessage &foremost(const std::vector<MailMessage> &messages);

    /// Shows the foremost of them in place of what shows.
    void show(const std::vector<MailMessage> &messages);
    void dismiss();
    /// While the pointer is on it, it stays.
    void setHeld(bool isHeld);

    const std::optional<MailMessage> &message() const { return m_message; }
    /// How many came with it.
    int moreCount() const { return m_moreCount; }

Q_SIGNALS:
    void changed();

private:
    void dismissLater();

    Scheduler &m_scheduler;
    std::optional<MailMessage> m_message;
    int m_moreCount = 0;
    ScheduledTask m_end;
};

} // namespace velmo
