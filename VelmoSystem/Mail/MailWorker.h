#pragma once

#include "VelmoCore/Mail/MailAccount.h"
#include "VelmoSystem/Mail/IMAPConnection.h"
#include "VelmoSystem/Mail/MailStatus.h"
#include "VelmoSystem/Mail/Wakeup.h"
#include "VelmoSystem/Ports/KeyItemStore.h"

#include <functional>
#include <memory>

namespace velmo {

/// What the key store answers: the password, that there is none, or why it doesn't say.
struct MailPassword {
    std::optional<QString> password;
    QString refusal;
};

/// Keeps the inbox of one account in sight: connects, waits for news, and connects again after a
/// failure, later each time. Everything happens on the thread of the scheduler.
class MailWorker {
public:
    struct Loaded {
        MailMailboxes mailboxes;
        std::uint32_t uidValidity = 0;
        std::vector<MailMessage> messages;
    };
    struct Synced {
        std::vector<MailMessage> messages;
        MailInbox::Flags flags;
        std::uint32_t from = 0;
    };

    /// What it works with, and who hears of it.
    struct Surroundings {
        std::function<std::unique_ptr<ByteStream>(const QString &host, int port)> connect;
        /// Answers on this thread.
        std::function<void(std::function<void(const MailPassword &)>)> readPassword;
        std::function<void(const MailStatus &)> statusChanged;
        std::function<void(const Loaded &)> loaded;
        std::function<void(const Synced &)> synced;
    };

    /// Begins at once.
    MailWorker(const MailAccount &account, Surroundings surroundings, Scheduler &scheduler);
    /// Ends whatever is under way; nobody hears of it.
    ~MailWorker();
    Q_DISABLE_COPY_MOVE(MailWorker)

    /// Looks for news now.
    void refresh();

private:
    QCoro::Task<> run();
    QCoro::Task<MailPassword> readPassword();
    /// These throw `IMAPError`.
    QCoro::Task<> connect(QString password);
    QCoro::Task<> follow();
    Seconds untilNextRound() const;
    QCoro::Task<> waitForNews();
    QCoro::Task<> sync();
    QCoro::Task<> pause(Seconds duration);

    const MailAccount m_account;
    const Surroundings m_surroundings;
    Scheduler &m_scheduler;
    MailInbox m_known; ///< of this account
    std::unique_ptr<IMAPConnection> m_connection;
    Wakeup m_wakeup;
    bool m_isEnding = false;
    bool m_isOnline = false; ///< this connection has loaded the inbox
    std::shared_ptr<int> m_alive = std::make_shared<int>();
    QCoro::Task<> m_run; ///< last: it begins with all the others there
};

} // namespace velmo
