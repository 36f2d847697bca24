#pragma once

#include "VelmoCore/Mail/MailAccount.h"
#include "VelmoSystem/Mail/IMAPConnection.h"

#include <functional>
#include <memory>
#include <optional>

namespace velmo {

/// One short visit to an account's inbox on a connection of its own, which leaves the worker's in
/// peace. Lives on the thread of the scheduler.
class MailErrand {
public:
    using Work = std::function<QCoro::Task<>(IMAPConnection &)>;

    struct Listener {
        /// Once, with what went wrong if anything did.
        std::function<void(const std::optional<IMAPError> &)> finished;
        /// It has said goodbye, too, and may be destroyed, but not in this call.
        std::function<void()> ended;
    };

    /// What it is about.
    struct Task {
        MailAccount account;
        /// Of the inbox whose UIDs `work` knows: nothing is done in another. Nothing for none.
        std::optional<std::uint32_t> uidValidity;
        Work work;
    };

    /// Begins at once.
    MailErrand(std::unique_ptr<ByteStream> stream, Task task, const QString &password,
               Listener listener, Scheduler &scheduler);
    /// Ends whatever is under way; nobody hears of it.
    ~MailErrand();
    Q_DISABLE_COPY_MOVE(MailErrand)

private:
    QCoro::Task<> run(QString password);

    const Task m_task;
    const Listener m_listener;
    IMAPConnection m_connection;
    bool m_isEnding = false;
    QCoro::Task<> m_run; ///< last: it begins with all the others there
};

} // namespace velmo
