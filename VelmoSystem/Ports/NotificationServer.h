#pragma once

#include <QObject>
#include <QString>

namespace velmo {

/// The desktop's notification bubbles.
class NotificationServer : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    struct Notification {
        QString title;
        QString body;

        bool operator==(const Notification &) const = default;
    };

    /// Shows it; one with the same identifier that still shows is replaced.
    virtual void show(const QString &identifier, const Notification &notification) = 0;
    virtual void withdraw(const QString &identifier) = 0;

Q_SIGNALS:
    /// The user clicked it.
    void activated(const QString &identifier);
    /// It shows no more, or never did.
    void closed(const QString &identifier);
    /// Nobody shows notifications; the reason is for the log.
    void failed(const QString &reason);
};

} // namespace velmo
