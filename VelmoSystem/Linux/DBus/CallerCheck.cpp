#include "VelmoSystem/Linux/DBus/CallerCheck.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace velmo {

CallerCheck::CallerCheck(QDBusConnection bus, uid_t user) : m_bus(std::move(bus)), m_user(user)
{
}

void CallerCheck::ask(const QString &caller, std::function<void(bool)> take)
{
    if (const bool *isOwn = m_known.object(caller)) {
        take(*isOwn);
        return;
    }
    auto &waiting = m_asking[caller];
    waiting.push_back(std::move(take));
    if (waiting.size() > 1)
        return;
    auto question = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetConnectionUnixUser"));
    question << caller;
    auto *const watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(question), &m_context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &m_context,
                     [this, caller, watcher] {
                         const QDBusPendingReply<uint> user = *watcher;
                         watcher->deleteLater();
                         answer(caller, !user.isError() && user.value() == m_user);
                     });
}

void CallerCheck::answer(const QString &caller, bool isOwn)
{
    m_known.insert(caller, new bool(isOwn));
    const auto waiting = m_asking.extract(caller);
    for (const auto &take : waiting.mapped())
        take(isOwn);
}

} // namespace velmo
