#pragma once

#include "VelmoCore/Mail/MailInbox.h"
#include "VelmoCore/Mail/ParsedMail.h"
#include "VelmoCore/Storage/StateFile.h"
#include "VelmoSystem/Mail/MailEngine.h"
#include "VelmoSystem/Ports/KeyItemStore.h"
#include "VelmoSystem/Ports/NetworkMonitor.h"
#include "VelmoSystem/Ports/ServerAccess.h"
#include "VelmoSystem/Ports/ServiceThread.h"
#include "VelmoSystem/Ports/Workspace.h"

#include <QObject>
#include <QThreadPool>

#include <set>
#include <stop_token>

namespace velmo {

/// A small live inbox for every mail account that the user has connected. Messages are in memory
/// only; the accounts are kept in a file, their passwords in the key store. Main thread only.
class MailService : public QObject {
    Q_OBJECT

public:
    enum class Action { markRead, archive, trash };

    /// What went wrong and what the user can do about it; nothing where it went well.
    using Problem = std::optional<QString>;
    using Finished = std::function<void(const Problem &)>;
    using Tested = std::function<void(const std::optional<IMAPError> &)>;
    /// A message, or why there is none.
    using Fetched = std::function<void(const std::optional<ParsedMail> &, const QString &problem)>;

    /// A message that the server hasn't been told of yet.
    struct PendingMove {
        QString messageID;
        Action action;
    };

    /// Loads the accounts and connects nothing. Without a `path` they are in memory only.
    MailService(const std::optional<QString> &path, const DataFiles &files, Scheduler &scheduler,
                ServerAccess &servers, NetworkMonitor &network, Workspace &workspace);
    /// Ends all connections and waits for that.
    ~MailService() override;

    /// Connects, and again whenever the machine wakes or comes back to a network.
    void start();
    void stop();
    /// Looks for news now, at most once in 5 seconds.
    void refresh();

    /// Tries whether the server takes the password. Nothing is stored.
    void verify(const MailAccount &account, const QString &password, Tested tested);
    /// Tries, stores and connects; replaces the account of the same address.
    void add(const MailAccount &account, const QString &password, Finished finished);
    void remove(const Uuid &id);

    const std::vector<MailAccount> &accounts() const { return m_accounts; }
    std::optional<MailAccount> account(const Uuid &id) const;
    bool isConnected() const { return !m_accounts.empty(); }
    MailStatus status(const Uuid &account) const;
    /// Of all accounts, newest first.
    const std::vector<MailMessage> &messages() const { return m_inbox.messages(); }
    const MailMessage *find(const QString &messageID) const { return m_inbox.find(messageID); }
    int unreadCount() const { return m_inbox.unreadCount(); }
    /// When the server was last asked for news; nothing if it never was.
    std::optional<Date> lastCheck(const Uuid &account) const;

    bool canArchive(const MailMessage &message) const;
    /// Shows the change at once and tells the server: of a message that is moved away after 5
    /// seconds, in which `undo` takes it back. What fails is undone, and `onError` says why.
    void perform(Action action, const MailMessage &message);
    /// Tells the server at once, and says what came of it.
    void performNow(Action action, const MailMessage &message, Tested finished);
    /// False if the server has been told already.
    bool undo(const QString &messageID);
    /// What `undo` would take back first.
    std::optional<PendingMove> lastPending() const;
    /// Tells the servers now.
    void performPending();
    /// Gets the whole message.
    void fetchWhole(const MailMessage &message, Fetched fetched);

    /// What can be offered for a login.
    std::vector<MailMessage> recentSignIns(Date now) const { return m_inbox.recentSignIns(now); }
    void useSignIn(const MailMessage &message);

    /// Set once.
    std::function<void(const std::vector<MailMessage> &)> onNewMail = [](const auto &) {};
    std::function<void(const QString &)> onError = [](const auto &) {};

Q_SIGNALS:
    void accountsChanged();
    void statusChanged();
    void messagesChanged();
    /// Another login can be offered, or one no more.
    void signInsChanged();

private:
    /// A message, the mailbox that it moves to, and the numbering that its UID is of.
    struct Move {
        MailMessage message;
        QString mailbox;
        std::optional<std::uint32_t> uidValidity;
    };
    struct Pending {
        Move move;
        Action action;
        ScheduledTask task;
    };

    template <class Body>
    void onEngine(Body body);
    /// `body`, as something that any thread may call.
    template <class... Arguments>
    std::function<void(Arguments...)> onMain(std::function<void(Arguments...)> body);
    void startWorker(const MailAccount &account);
    void readPassword(const Uuid &account, std::function<void(const MailPassword &)> answer);
    void runErrand(const MailErrand::Task &task, Tested finished);
    void loaded(const Uuid &account, const MailWorker::Loaded &loaded);
    void synced(const Uuid &account, const MailWorker::Synced &synced);
    void announce(const std::vector<MailMessage> &messages);
    void setStatus(const Uuid &account, const MailStatus &status);
    void pathChanged();
    void markRead(const MailMessage &message, Tested finished);
    std::optional<Move> take(Action action, const MailMessage &message);
    void execute(const std::vector<Move> &moves, Tested finished);
    void reportError(const std::optional<IMAPError> &error);
    std::optional<QString> target(Action action, const Uuid &account) const;
    void store(const MailAccount &account);
    void updateSignIns();

    Scheduler &m_scheduler;
    ServerAccess &m_servers;
    NetworkMonitor &m_network;
    Workspace &m_workspace;
    std::vector<MailAccount> m_accounts;
    StateFile<std::vector<MailAccount>> m_file;
    MailInbox m_inbox;
    std::map<Uuid, MailStatus> m_status;
    std::map<Uuid, MailMailboxes> m_mailboxes;
    std::map<Uuid, Date> m_lastChecks;
    std::map<QString, Pending> m_pending; ///< by message
    QString m_lastPending;                ///< one of them, or none any more
    QStringList m_signIns;                ///< ids of those to offer
    ScheduledTask m_signInEnd;
    std::set<Uuid> m_working;
    bool m_isStarted = false;
    bool m_wasPathSatisfied = true;
    std::optional<Seconds> m_lastRefresh;
    std::unique_ptr<MailEngine> m_engine; ///< lives on the network thread
    std::stop_source m_stop;
    QThreadPool m_keyThreads;
    std::shared_ptr<int> m_alive = std::make_shared<int>();
};

} // namespace velmo
