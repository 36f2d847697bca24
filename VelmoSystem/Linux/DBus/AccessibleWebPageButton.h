#pragma once

#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoSystem/Ports/WebPageButton.h"

#include <QDBusConnection>
#include <QObject>
#include <QThreadPool>

#include <map>
#include <memory>
#include <stop_token>

namespace velmo {

/// `WebPageButton` by AT-SPI2. A browser that hasn't built its tree yet does so when it is asked,
/// so what isn't found is looked for once more.
class AccessibleWebPageButton : public QObject, public WebPageButton {
    Q_OBJECT

public:
    static constexpr Seconds retryDelay = 0.3s;

    AccessibleWebPageButton(QDBusConnection session, Scheduler &scheduler);
    /// Waits for the thread a moment at most.
    ~AccessibleWebPageButton() override;

    void press(const QStringList &labels, qint64 pid, std::function<void(bool)> answer) override;
    void findName(const QStringList &labels, qint64 pid,
                  std::function<void(const std::optional<QString> &)> answer) override;

private:
    struct Result {
        std::optional<QString> name;
        bool isPressed = false;
    };
    struct Errand {
        QStringList labels;
        qint64 pid = 0;
        bool presses = false;
        std::function<void(const Result &)> answer;
        bool isRetry = false;
        ScheduledTask retry;
    };

    void add(Errand errand);
    void run(std::uint64_t id);
    void finish(std::uint64_t id, const Result &result);

    const QDBusConnection m_session;
    Scheduler &m_scheduler;
    std::map<std::uint64_t, Errand> m_errands;
    std::uint64_t m_lastID = 0;
    std::stop_source m_stop;
    std::unique_ptr<QThreadPool> m_thread;
};

} // namespace velmo
