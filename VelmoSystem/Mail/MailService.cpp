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
    connect(this, &MailService::messagesChanged, this, &MailService::updateSignIns);
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
    const MailErrand::Task task{account, std::nullopt,
                                [](IMAPConnection &) -> QCoro::Task<> { co_return; }};
    const auto done =
        onMain(std::function([tested](const std::optional<IMAPError> &error) { tested(error); }));
    onEngine([task, password, done](MailEngine &engine) { engine.run(task, password, done); });
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
                  [&](const auto &pending) { return pending.second.move.message.accountID == id; });
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
    const auto report = [this](const std::optional<IMAPError> &error) { reportError(error); };
    if (action == Action::markRead) {
        markRead(message, report);
        return;
    }
    std::optional<Move> move;
    try {
        move = take(action, message);
    } catch (const IMAPError &error) {
        report(error);
    }
    if (!move)
        return;
    const QString id = move->message.id();
    m_lastPending = id;
    m_pending.insert_or_assign(
        id, Pending{*move, action, m_scheduler.after(undoTime, [this, id, report] {
                        execute({m_pending.extract(id).mapped().move}, report);
                    })});
    Q_EMIT messagesChanged();
}

void MailService::performNow(Action action, const MailMessage &message, Tested finished)
{
    if (action == Action::markRead) {
        markRead(message, std::move(finished));
        return;
    }
    try {
        if (const auto move = take(action, message))
            execute({*move}, std::move(finished));
        else
            finished(std::nullopt);
    } catch (const IMAPError &error) {
        finished(error);
    }
}

/// Off the list; nothing if it isn't there. Throws `IMAPError` where there is no mailbox for it.
std::optional<MailService::Move> MailService::take(Action action, const MailMessage &message)
{
    const auto mailbox = target(action, message.accountID);
    if (!mailbox)
        throw IMAPError::unsupported(action == Action::archive
                                         ? QStringLiteral("Esta conta não tem pasta de arquivo.")
                                         : QStringLiteral("Não achei o Lixo desta conta."));
    const auto taken = m_inbox.take(message.id());
    if (!taken)
        return std::nullopt;
    return Move{*taken, *mailbox, m_inbox.uidValidity(message.accountID)};
}

void MailService::reportError(const std::optional<IMAPError> &error)
{
    if (error)
        onError(error->description());
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
    std::map<std::pair<Uuid, std::optional<std::uint32_t>>, std::vector<Move>> byMailbox;
    for (auto &[id, pending] : std::exchange(m_pending, {}))
        byMailbox[{pending.move.message.accountID, pending.move.uidValidity}].push_back(
            pending.move);
    for (const auto &[mailbox, moves] : byMailbox)
        execute(moves, [this](const std::optional<IMAPError> &error) { reportError(error); });
}

void MailService::markRead(const MailMessage &message, Tested finished)
{
    const auto owner = account(message.accountID);
    if (!owner || message.isRead || !m_inbox.setRead(message.id(), true)) {
        finished(std::nullopt);
        return;
    }
    Q_EMIT messagesChanged();
    runErrand(
        {*owner, m_inbox.uidValidity(owner->id),
         [uid = message.uid](IMAPConnection &connection) { return connection.markRead(uid); }},
        [this, id = message.id(), finished](const std::optional<IMAPError> &error) {
            if (error) {
                m_inbox.setRead(id, false);
                Q_EMIT messagesChanged();
            }
            finished(error);
        });
}

/// All of one numbering of one inbox.
void MailService::execute(const std::vector<Move> &moves, Tested finished)
{
    const auto owner = account(moves.front().message.accountID);
    const auto moved = std::make_shared<std::size_t>(0); // of the network thread until it is done
    runErrand({*owner, moves.front().uidValidity,
               [moves, moved](IMAPConnection &connection) -> QCoro::Task<> {
                   for (const Move &one : moves) {
                       co_await connection.move(one.message.uid, one.mailbox);
                       ++*moved;
                   }
               }},
              [this, moves, moved, finished](const std::optional<IMAPError> &error) {
                  for (std::size_t i = 0; i < moves.size(); ++i) {
                      if (i < *moved)
                          m_inbox.forget(moves[i].message.id());
                      else
                          m_inbox.giveBack(moves[i].message.id());
                  }
                  if (error)
                      Q_EMIT messagesChanged();
                  finished(error);
              });
    Q_EMIT messagesChanged(); // nothing to undo any more
}

void MailService::fetchWhole(const MailMessage &message, Fetched fetched)
{
    const auto owner = account(message.accountID);
    if (!owner)
        return;
    const auto mail = std::make_shared<std::optional<ParsedMail>>();
    runErrand({*owner, m_inbox.uidValidity(owner->id),
               [uid = message.uid, mail](IMAPConnection &connection) -> QCoro::Task<> {
                   if (const auto raw = co_await connection.fetchWhole(uid))
                       *mail = MailParser::parse(*raw);
               }},
              [mail, fetched](const std::optional<IMAPError> &error) {
                  const QString gone =
                      QStringLiteral("A mensagem não está mais na caixa de entrada.");
                  fetched(*mail, *mail ? QString() : error ? error->description() : gone);
              });
}

/// With the password from the key store.
void MailService::runErrand(const MailErrand::Task &task, Tested finished)
{
    const auto done = onMain(
        std::function([finished](const std::optional<IMAPError> &error) { finished(error); }));
    onEngine([this, task, done](MailEngine &engine) {
        readPassword(task.account.id,
                     [&engine, task, done, alive = engine.alive()](const MailPassword &password) {
                         if (alive.expired())
                             return;
                         if (password.password)
                             engine.run(task, *password.password, done);
                         else
                             done(IMAPError::unsupported(
                                 password.refusal.isEmpty() ? noPassword() : password.refusal));
                     });
    });
}

void MailService::useSignIn(const MailMessage &message)
{
    m_inbox.useSignIn(message);
    updateSignIns();
}

/// Again when the first of them gets too old.
void MailService::updateSignIns()
{
    const Date now = m_scheduler.now();
    QStringList ids;
    std::optional<Date> end;
    for (const MailMessage &message : recentSignIns(now)) {
        ids << message.id();
        end = std::min(end.value_or(Date::max()), message.date + MailInbox::signInAge);
    }
    m_signInEnd = end ? m_scheduler.at(*end, [this] { updateSignIns(); }) : ScheduledTask();
    if (std::exchange(m_signIns, ids) != ids)
        Q_EMIT signInsChanged();
}

} // namespace velmo
