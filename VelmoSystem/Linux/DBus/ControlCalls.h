#pragma once

#include "VelmoSystem/Ports/ControlEndpoint.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QVariantMap>

#include <optional>
#include <utility>

namespace velmo {

/// The object behind Orvane's path on the bus: its calls wait for `serve`, and are answered once
/// they have run.
class ControlCalls : public QObject {
    Q_OBJECT

public:
    explicit ControlCalls(QDBusConnection bus);
    /// Answers those who asked to quit.
    ~ControlCalls() override;

    void serve(ControlEndpoint::Commands commands);

    /// A call's work. Gives what to answer; throws `LocalizedError` on a call that makes no sense.
    using Body = std::function<QVariantList(const ControlEndpoint::Commands &)>;
    void take(const QDBusMessage &call, Body body);
    void takeQuit(const QDBusMessage &call);

private:
    void run(const QDBusMessage &call, const Body &body);

    QDBusConnection m_bus;
    std::optional<ControlEndpoint::Commands> m_commands;
    std::vector<std::function<void()>> m_waiting;
    std::vector<QDBusMessage> m_quitCalls;
};

/// What desktops call: a click on the launcher, its desktop actions, files opened with Orvane.
class ApplicationAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit ApplicationAdaptor(ControlCalls &calls);

public Q_SLOTS: // NOLINTBEGIN(readability-identifier-naming): the bus' own names
    void Activate(const QVariantMap &platformData, const QDBusMessage &call);
    void Open(const QStringList &uris, const QVariantMap &platformData, const QDBusMessage &call);
    void ActivateAction(const QString &name, const QVariantList &parameters,
                        const QVariantMap &platformData, const QDBusMessage &call);
    // NOLINTEND(readability-identifier-naming)

private:
    ControlCalls &m_calls;
};

/// What the command line calls.
class ControlAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "app.orvane.Orvane.Control")

public:
    explicit ControlAdaptor(ControlCalls &calls);

public Q_SLOTS: // NOLINTBEGIN(readability-identifier-naming): the bus' own names
    void Open(const QString &module, const QDBusMessage &call);
    void Toggle(const QDBusMessage &call);
    void Hide(const QDBusMessage &call);
    void Show(const QDBusMessage &call);
    void Settings(const QString &pane, const QDBusMessage &call);
    void Drop(const QStringList &uris, const QDBusMessage &call);
    QString Status(const QDBusMessage &call);
    void Quit(const QDBusMessage &call);
    // NOLINTEND(readability-identifier-naming)

private:
    ControlCalls &m_calls;
};

} // namespace velmo
