#pragma once

#include "VelmoSystem/Ports/NotificationServer.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>

#include <functional>
#include <map>
#include <optional>

class QDBusMessage;

namespace velmo {

/// `NotificationServer` with `org.freedesktop.Notifications` (freedesktop's desktop
/// notifications 1.2), asked without waiting. The service is started with the first notification.
class DBusNotifications : public NotificationServer {
    Q_OBJECT

public:
    explicit DBusNotifications(QDBusConnection sessionBus);

    void show(const QString &identifier, const Notification &notification) override;
    void withdraw(const QString &identifier) override;

private Q_SLOTS:
    void notificationClosed(uint id, uint reason);
    void actionInvoked(uint id, const QString &action);

private:
    struct Shown {
        uint id = 0;           ///< the server's; 0 where it shows nothing
        bool isAsking = false; ///< an answer is on its way
        bool isWithdrawn = false;
        std::optional<Notification> next; ///< what to show once it has answered
    };

    void listen();
    void call(const QString &method, const QVariantList &arguments,
              std::function<void(const QDBusMessage &)> answered);
    void showNext(const QString &identifier);
    void askForCapabilities();
    void capabilitiesAnswered(const QDBusMessage &answer);
    void notify(const QString &identifier);
    void answered(const QString &identifier, const QDBusMessage &answer);
    void serverLeft(const QString &server);
    void close(const QString &identifier);
    std::optional<QString> identifierOf(uint id) const;

    QDBusConnection m_bus;
    QDBusServiceWatcher m_watcher;
    bool m_isListening = false;
    std::map<QString, Shown> m_shown;
    std::optional<bool> m_takesMarkup; ///< unknown before the server has said so
    bool m_isAskingForCapabilities = false;
    QString m_formerServer; ///< the last that left, which may still answer
};

} // namespace velmo
