#pragma once

#include <QCache>
#include <QDBusConnection>
#include <QObject>

#include <functional>
#include <map>
#include <sys/types.h>
#include <vector>

namespace velmo {

/// Whose connection of the bus a caller is: asked for without waiting, once a caller.
class CallerCheck {
public:
    CallerCheck(QDBusConnection bus, uid_t user);

    /// Gives whether `caller`, a unique name, is the user's. The answers for one caller come in the
    /// order of the questions.
    void ask(const QString &caller, std::function<void(bool isOwn)> take);

private:
    void answer(const QString &caller, bool isOwn);

    QDBusConnection m_bus;
    uid_t m_user;
    QCache<QString, bool> m_known{64}; ///< a bus never gives the same name twice
    std::map<QString, std::vector<std::function<void(bool)>>> m_asking;
    QObject m_context; ///< calls under way end with it
};

} // namespace velmo
