#include "VelmoSystem/Mail/MailService.h"

#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Mail/MailParser.h"
#include "VelmoSystem/Mail/MailPasswords.h"

#include <algorithm>

namespace velmo {

namespace {

constexpr Seconds refreshPause = 5s;
constexpr Seconds undoTime = 5s;

QString noPassword()
{
    return QStringLiteral("A senha da conta não está no %1.")
        .arg(KeyItemStore::name(KeyItemStore::Place::keyring));
}

} // namespace

MailService::MailService(const std::optional<QString> &path, const DataFiles &files,
                         Scheduler &scheduler, ServerAccess &servers, NetworkMonitor &network,
                         Workspace &workspace)
    : m_scheduler(scheduler), m_servers(servers), m_network(network), m_workspace(workspace),
      m_file(path, files, scheduler, {QStringLiteral("E-mail")}, [this] { return m_accounts; })
{
    m_file.load([this](std::vector<MailAccount> kept) {
        for (MailAccount &account : kept)
            m_accounts.push_back(std::move(account));
        Q_EMIT accountsChanged();
        if (m_isStarted)
            start();
    });
}

MailService::~MailService()
{
    m_stop.request_stop();
    if (m_engine)
        m_servers.thread().runAndWait([this] { m_engine.reset(); });
    m_keyThreads.waitForDone();
}

void MailService::start()
{
    if (!std::exchange(m_isStarted, true)) {
        connect(&m_workspace, &Workspace::didWake, this, [this] {
            stop();
            start();
        });
        connect(&m_network, &NetworkMonitor::changed, this, &MailService::pathChanged);
    }
    for (const MailAccount &account : m_accounts) {
        if (!m_working.contains(account.id))
            startWorker(account);
    }
}

void MailService::stop()
{
    if (m_engine)
        onEngine([](MailEngine &engine) { engine.stopAll(); });
    m_working.clear();
}

void MailService::pathChanged()
{
    const auto path = m_network.path();
    if (!path)
        return;
    const bool wasSatisfied = std::exchange(m_wasPathSatisfied, path->isSatisfied);
    if (path->isSatisfied && !wasSatisfied) {
        stop();
        start();
    }
}

void MailService::refresh()
{
    const Seconds now = m_scheduler.elapsed();
    if (!m_engine || (m_lastRefresh && now - *m_lastRefresh <= refreshPause))
        return;
    m_lastRefresh = now;
    onEngine([](MailEngine &engine) { engine.refresh(); });
}

template <class Body>
void MailService::onEngine(Body body)
{
    Scheduler &scheduler = m_servers.thread().scheduler();
    if (!m_engine)
        m_engine = std::make_unique<MailEngine>(m_servers, scheduler);
    scheduler.post([engine = m_engine.get(), body = std::move(body)] { body(*engine); });
}

template <class... Arguments>
std::function<void(Arguments...)> MailService::onMain(std::function<void(Arguments...)> body)
{
    return [&scheduler = m_scheduler, alive = std::weak_ptr(m_alive),
            body = std::move(body)](const std::remove_cvref_t<Arguments> &...arguments) {
        scheduler.post([alive, body, arguments...] {
            if (!alive.expired())
                body(arguments...);
        });
    };
}

void MailService::startWorker(const MailAccount &account)
{
    m_working.insert(account.id);
    setStatus(account.id, {MailStatus::Connecting{}});
    const Uuid id = account.id;
    MailWorker::Surroundings surroundings{
        .connect = [&servers = m_servers](const QString &host,
                                          int port) { return servers.connect(host, port); },
        .readPassword =
            [this, id](std::function<void(const MailPassword &)> answer) {
                readPassword(id, std::move(answer));
            },
        .statusChanged =
            onMain(std::function([this, id](const MailStatus &status) { setStatus(id, status); })),
        .loaded = onMain(
            std::function([this, id](const MailWorker::Loaded &result) { loaded(id, result); })),
        .synced = onMain(
            std::function([this, id](const MailWorker::Synced &result) { synced(id, result); })),
    };
    onEngine([account, surroundings](MailEngine &engine) { engine.start(account, surroundings); });
}

/// Any thread; answers on the network thread.
void MailService::readPassword(const Uuid &account,
                               std::function<void(const MailPassword &)> answer)
{
    m_keyThreads.start(
        [&servers = m_servers, stop = m_stop.get_token(), account, answer = std::move(answer)] {
            MailPassword password;
            try {
                password.password = MailPasswords::read(*servers.openKeyItems(stop), account);
            } catch (const LocalizedError &refusal) {
                password.refusal = refusal.description();
            }
            servers.thread().scheduler().post([answer, password] { answer(password); });
        });
}

void MailService::setStatus(const Uuid &account, const MailStatus &status)
{
    if (!this->account(account))
        return;
    m_status[account] = status;
    Q_EMIT statusChanged();
}

std::optional<Date> MailService::lastCheck(const Uuid &account) const
{
    const auto check = m_lastChecks.find(account);
    return check == m_lastChecks.end() ? std::nullopt : std::optional(check->second);
}

MailStatus MailService::status(const Uuid &account) const
{
    const auto status = m_status.find(account);
    return status == m_status.end() ? MailStatus() : status->second;
}

std::optional<MailAccount> MailService::account(const Uuid &id) const
{
    const auto account = std::ranges::find(m_accounts, id, &MailAccount::id);
    return account == m_accounts.end() ? std::nullopt : std::optional(*account);
}

void MailService::loaded(const Uuid &account, const MailWorker::Loaded &loaded)
{
    if (!this->account(account))
        return;
    m_mailboxes[account] = loaded.mailboxes;
    m_lastChecks[account] = m_scheduler.now();
    const auto fresh = m_inbox.load(account, loaded.messages, loaded.uidValidity);
    Q_EMIT messagesChanged();
    announce(fresh);
}

void MailService::synced(const Uuid &account, const MailWorker::Synced &synced)
{
    if (!this->account(account))
        return;
    m_lastChecks[account] = m_scheduler.now();
    const auto before = m_inbox.messages();
    const auto fresh = m_inbox.sync(account, synced.messages, synced.flags, synced.from);
    for (const MailMessage &message : fresh)
        qCInfo(Log::mail, "E-mail: chegou com %lld s de atraso",
               (long long)((m_scheduler.now() - message.date).count()));
    if (before != m_inbox.messages())
        Q_EMIT messagesChanged();
    announce(fresh);
}

void MailService::announce(const std::vector<MailMessage> &messages)
{
    const auto news = MailInbox::announced(messages, m_scheduler.now());
    if (!news.empty())
        onNewMail(news);
}

void MailService::verify(const MailAccount &account, const QString &password, Tested tested)
{
    onEngine([account, password,
              tested = onMain(std::function([tested](const std::optional<IMAPError> &error) {
                  tested(error);
              }))](MailEngine &engine) {
        engine.run(
            account, password, [](IMAPConnection &) -> QCoro::Task<> { co_return; }, tested);
    });
}

void MailService::add(const MailAccount &account, const QString &password, Finished finished)
{
    verify(account, password, [=, this](const std::optional<IMAPError> &error) {
        if (error) {
            const QString advice = error->advice();
            finished(advice.isEmpty() ? error->description()
                                      : error->description() + u' ' + advice);
            return;
        }
        const auto saved = onMain(std::function([=, this](const Problem &refusal) {
            if (!refusal)
                store(account);
            finished(refusal);
        }));
        m_keyThreads.start([=, &servers = m_servers, stop = m_stop.get_token()] {
            try {
                MailPasswords::save(*servers.openKeyItems(stop), account.id, password);
                saved(std::nullopt);
            } catch (const LocalizedError &refusal) {
                saved(refusal.description());
            }
        });
    });
}

void MailService::store(const MailAccount &account)
{
    std::vector<Uuid> replaced;
    for (const MailAccount &other : m_accounts) {
        if (other.email.compare(account.email, Qt::CaseInsensitive) == 0)
            replaced.push_back(other.id);
    }
    for (const Uuid &id : replaced)
        remove(id);
    m_accounts.push_back(account);
    m_file.save();
    Q_EMIT accountsChanged();
    startWorker(account);
}

void MailService::remove(const Uuid &id)
{
    if (!account(id))
        return;
    if (m_working.erase(id) > 0)
        onEngine([id](MailEngine &engine) { engine.stop(id); });
    m_keyThreads.start([id, &servers = m_servers, stop = m_stop.get_token()] {
        try {
            MailPasswords::remove(*servers.openKeyItems(stop), id);
        } catch (const LocalizedError &refusal) {
            qCWarning(Log::mail).noquote() << "E-mail: senha não apagada:" << refusal.description();
        }
    });
    std::erase_if(m_pending,
                  [&](const auto &pending) { return pending.second.message.accountID == id; });
    std::erase_if(m_accounts, [&](const MailAccount &account) { return account.id == id; });
    m_inbox.remove(id);
    m_status.erase(id);
    m_lastChecks.erase(id);
    m_mailboxes.erase(id);
    m_file.save();
    Q_EMIT accountsChanged();
    Q_EMIT messagesChanged();
}

std::optional<QString> MailService::target(Action action, const Uuid &account) const
{
    const auto mailboxes = m_mailboxes.find(account);
    if (mailboxes == m_mailboxes.end())
        return std::nullopt;
    return action == Action::archive ? mailboxes->second.archiveTarget() : mailboxes->second.trash;
}

bool MailService::canArchive(const MailMessage &message) const
{
    return target(Action::archive, message.accountID).has_value();
}

void MailService::perform(Action action, const MailMessage &message)
{
    if (!account(message.accountID))
        return;
    const QString id = message.id();
    if (action == Action::markRead) {
        markRead(message);
        return;
    }
    if (!target(action, message.accountID)) {
        onError(action == Action::archive ? QStringLiteral("Esta conta não tem pasta de arquivo.")
                                          : QStringLiteral("Não achei o Lixo desta conta."));
        return;
    }
    const auto taken = m_inbox.take(id);
    if (!taken)
        return;
    m_pending.insert_or_assign(id,
                               Pending{*taken, action, m_scheduler.after(undoTime, [this, id] {
                                           std::vector<Pending> due;
                                           due.push_back(std::move(m_pending.extract(id).mapped()));
                                           execute(due);
                                       })});
    m_lastPending = id;
    Q_EMIT messagesChanged();
}

std::optional<MailService::PendingMove> MailService::lastPending() const
{
    const auto last = m_pending.find(m_lastPending);
    if (last == m_pending.end())
        return std::nullopt;
    return PendingMove{last->first, last->second.action};
}

bool MailService::undo(const QString &messageID)
{
    if (m_pending.erase(messageID) == 0)
        return false;
    m_inbox.giveBack(messageID);
    Q_EMIT messagesChanged();
    return true;
}

void MailService::performPending()
{
    std::map<Uuid, std::vector<Pending>> byAccount;
    for (auto &[id, pending] : std::exchange(m_pending, {}))
        byAccount[pending.message.accountID].push_back(std::move(pending));
    for (const auto &[account, pending] : byAccount)
        execute(pending);
}

void MailService::markRead(const MailMessage &message)
{
    const auto owner = account(message.accountID);
    if (message.isRead || !m_inbox.setRead(message.id(), true))
        return;
    Q_EMIT messagesChanged();
    runErrand(
        *owner,
        [uid = message.uid](IMAPConnection &connection) { return connection.markRead(uid); },
        [this, id = message.id()](const std::optional<IMAPError> &error) {
            if (!error)
                return;
            m_inbox.setRead(id, false);
            Q_EMIT messagesChanged();
            onError(error->description());
        });
}

/// All of one account.
void MailService::execute(const std::vector<Pending> &pending)
{
    const Uuid id = pending.front().message.accountID;
    std::vector<Move> moves;
    for (const Pending &one : pending)
        moves.push_back({one.message, *target(one.action, id)});
    move(*account(id), moves);
    Q_EMIT messagesChanged(); // nothing to undo any more
}

void MailService::move(const MailAccount &account, const std::vector<Move> &moves)
{
    const auto moved = std::make_shared<std::size_t>(0); // of the network thread until it is done
    runErrand(
        account,
        [moves, moved](IMAPConnection &connection) -> QCoro::Task<> {
            for (const Move &one : moves) {
                co_await connection.move(one.message.uid, one.mailbox);
                ++*moved;
            }
        },
        [this, moves, moved](const std::optional<IMAPError> &error) {
            for (std::size_t i = 0; i < moves.size(); ++i) {
                if (i < *moved)
                    m_inbox.forget(moves[i].message.id());
                else
                    m_inbox.giveBack(moves[i].message.id());
            }
            if (!error)
                return;
            Q_EMIT messagesChanged();
            onError(error->description());
        });
}

void MailService::fetchWhole(const MailMessage &message, Fetched fetched)
{
    const auto owner = account(message.accountID);
    if (!owner)
        return;
    const auto mail = std::make_shared<std::optional<ParsedMail>>();
    runErrand(
        *owner,
        [uid = message.uid, mail](IMAPConnection &connection) -> QCoro::Task<> {
            if (const auto raw = co_await connection.fetchWhole(uid))
                *mail = MailParser::parse(*raw);
        },
        [mail, fetched](const std::optional<IMAPError> &error) {
            const QString gone = QStringLiteral("A mensagem não está mais na caixa de entrada.");
            fetched(*mail, *mail ? QString() : error ? error->description() : gone);
        });
}

/// With the password from the key store.
void MailService::runErrand(const MailAccount &account, MailErrand::Work work, Tested finished)
{
    const auto done = onMain(
        std::function([finished](const std::optional<IMAPError> &error) { finished(error); }));
    onEngine([this, account, work = std::move(work), done](MailEngine &engine) {
        readPassword(account.id, [&engine, account, work, done,
                                  alive = engine.alive()](const MailPassword &password) {
            if (alive.expired())
                return;
            if (password.password)
                engine.run(account, *password.password, work, done);
            else
                done(IMAPError::unsupported(password.refusal.isEmpty() ? noPassword()
                                                                       : password.refusal));
        });
    });
}

void MailService::useSignIn(const MailMessage &message)
{
    m_inbox.useSignIn(message);
    Q_EMIT signInsChanged();
}

} // namespace velmo
