#pragma once

#include <QObject>
#include <QString>

#include <vector>

namespace velmo {

/// The desktop's notification bubbles.
class NotificationServer : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// A button.
    struct Action {
        QString id;
        QString title;

        bool operator==(const Action &) const = default;
    };

    struct Notification {
        QString title;
        QString body;
        std::vector<Action> actions = {}; ///< where the desktop shows buttons

        bool operator==(const Notification &) const = default;
    };

    /// Shows it; one with the same identifier that still shows is replaced.
    virtual void show(const QString &identifier, const Notification &notification) = 0;
    virtual void withdraw(const QString &identifier) = 0;

Q_SIGNALS:
    /// The user clicked it, or one of its buttons; `action` is empty for itself.
    void activated(const QString &identifier, const QString &action);
    /// It shows no more, or never did.
    void closed(const QString &identifier);
    /// Nobody shows notifications; the reason is for the log.
    void failed(const QString &reason);
};

} // namespace velmo
